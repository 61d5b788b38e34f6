// SPDX-License-Identifier: MIT
#include "views/tDrawBatch.h"

#include "support/tVec.h"
#include "views/tDrawRanges.h"
#include "views/tGLState.h"

#include <cstring>
#include <qopengl.h>

// In every OpenGL library since 1.4; the system's header declares it only on demand.
extern "C" void GLAPIENTRY glMultiDrawArrays(GLenum mode, const GLint* first, const GLsizei* count,
                                             GLsizei primitives);

static constexpr float WIDE_LINE = 4.0f;
// Pixels on both sides of an edge: what meets a selected face there may cover the outer ones.
static constexpr float OUTLINE_WIDTH = 2.0f;
static constexpr double RAISED_FAR = 0.999; // depth range of raised lines
static constexpr int MAX_TEXTURES_KEPT = 256;

cDrawBatch& cDrawBatch::shared() {
    static cDrawBatch batch;
    return batch;
}

// ---- Gathering

void cDrawBatch::put(cVertices& vertices, const float* p, const uint8_t* rgba) {
    vertices.emplace_back();
    cBatchVertex& v = vertices.back();
    vecCopy(p, v.xyz);
    memcpy(v.rgba, rgba, sizeof v.rgba);
}

void cDrawBatch::line(const float* a, const float* b, const uint8_t* rgba) {
    put(m_lines, a, rgba);
    put(m_lines, b, rgba);
    if (m_lines.size() >= LIMIT)
        drawLines();
}

void cDrawBatch::wideLine(const float* a, const float* b, const uint8_t* rgba) {
    put(m_wideLines, a, rgba);
    put(m_wideLines, b, rgba);
    if (m_wideLines.size() >= LIMIT)
        drawWideLines();
}

void cDrawBatch::stippledLine(const float* a, const float* b, const uint8_t* rgba) {
    put(m_stippled, a, rgba);
    put(m_stippled, b, rgba);
    if (m_stippled.size() >= LIMIT)
        drawStippled();
}

void cDrawBatch::raisedLine(const float* a, const float* b, const uint8_t* rgba) {
    put(m_raised, a, rgba);
    put(m_raised, b, rgba);
    if (m_raised.size() >= LIMIT)
        drawRaised();
}

void cDrawBatch::point(const float* p, const uint8_t* rgba) {
    put(m_points, p, rgba);
    if (m_points.size() >= LIMIT)
        drawPoints();
}

void cDrawBatch::triangle(const float* a, const float* b, const float* c, const uint8_t* rgba) {
    put(m_triangles, a, rgba);
    put(m_triangles, b, rgba);
    put(m_triangles, c, rgba);
    if (m_triangles.size() >= LIMIT)
        drawTriangles();
}

// Corner i of a box: bit n of i takes the upper bound of axis n.
static void boxCorner(const float* mins, const float* maxs, int i, float* out) {
    for (int axis = 0; axis < 3; ++axis)
        out[axis] = (i & (1 << axis)) ? maxs[axis] : mins[axis];
}

void cDrawBatch::boxLines(const float* mins, const float* maxs, const uint8_t* rgba) {
    for (int i = 0; i < 8; ++i) {
        float a[3], b[3];
        boxCorner(mins, maxs, i, a);
        for (int axis = 0; axis < 3; ++axis) {
            if (i & (1 << axis))
                continue;
            boxCorner(mins, maxs, i | (1 << axis), b);
            line(a, b, rgba);
        }
    }
}

// ---- Edges

void cDrawBatch::beginEdges(int depthAxis) {
    ++m_edgeStamp;
    m_edgeCount = 0;
    m_depthAxis = depthAxis;
}

void cDrawBatch::flattened(const float* p, float* out) const {
    vecCopy(p, out);
    if (m_depthAxis >= 0)
        out[m_depthAxis] = 0;
}

static uint32_t hashPoint(const float* p) {
    uint32_t bits[3];
    memcpy(bits, p, sizeof bits);
    return bits[0] * 0x9e3779b1u ^ bits[1] * 0x85ebca77u ^ bits[2] * 0xc2b2ae3du;
}

static bool samePoint(const float* a, const float* b) {
    return a[0] == b[0] && a[1] == b[1] && a[2] == b[2];
}

static bool sameEdge(const float* ends, const float* a, const float* b) {
    return (samePoint(ends, a) && samePoint(ends + 3, b)) ||
           (samePoint(ends, b) && samePoint(ends + 3, a));
}

// Looks the edge up in a hash table with linear probing; a table half full takes no more and
// calls every edge new, which costs a line drawn twice.
bool cDrawBatch::isNewEdge(const float* from, const float* to, const uint8_t* rgba) {
    float a[3], b[3];
    flattened(from, a);
    flattened(to, b);
    uint32_t color;
    memcpy(&color, rgba, sizeof color);
    const uint32_t sum = hashPoint(a) + hashPoint(b);
    for (uint32_t i = sum ^ (sum >> 15);; ++i) {
        cEdgeSlot& slot = m_edges[i & (EDGE_SLOTS - 1)];
        if (slot.stamp != m_edgeStamp) {
            if (m_edgeCount >= EDGE_SLOTS / 2)
                return true;
            ++m_edgeCount;
            slot.stamp = m_edgeStamp;
            slot.color = color;
            vecCopy(a, slot.ends);
            vecCopy(b, slot.ends + 3);
            return true;
        }
        if (slot.color == color && sameEdge(slot.ends, a, b))
            return false;
    }
}

void cDrawBatch::loop(const cFaceData* face, const uint8_t* rgba) {
    const float* last = face->vertices[face->vertexCount - 1].xyz;
    for (int i = 0; i < face->vertexCount; ++i) {
        const float* next = face->vertices[i].xyz;
        if (isNewEdge(last, next, rgba))
            line(last, next, rgba);
        last = next;
    }
}

void cDrawBatch::stippledLoop(const cFaceData* face, const uint8_t* rgba) {
    const float* last = face->vertices[face->vertexCount - 1].xyz;
    for (int i = 0; i < face->vertexCount; ++i) {
        stippledLine(last, face->vertices[i].xyz, rgba);
        last = face->vertices[i].xyz;
    }
}

void cDrawBatch::vertices(const cFaceData* face, const uint8_t* rgba) {
    for (int i = 0; i < face->vertexCount; ++i) {
        const float* p = face->vertices[i].xyz;
        if (isNewEdge(p, p, rgba))
            point(p, rgba);
    }
}

// ---- Faces

void cDrawBatch::fan(const cFaceData* face, const uint8_t* rgba) {
    const cFaceVertex* v = face->vertices;
    for (int i = 2; i < face->vertexCount; ++i)
        triangle(v[0].xyz, v[i - 1].xyz, v[i].xyz, rgba);
}

static void putTextured(std::vector<cBatchTexVertex>& vertices, const cFaceVertex& from,
                        const uint8_t* rgba) {
    vertices.emplace_back();
    cBatchTexVertex& v = vertices.back();
    vecCopy(from.xyz, v.xyz);
    v.st[0] = from.st[0];
    v.st[1] = from.st[1];
    memcpy(v.rgba, rgba, sizeof v.rgba);
}

void cDrawBatch::texturedFan(const cFaceData* face, const cTextureImage* image,
                             const uint8_t* rgba) {
    std::vector<cBatchTexVertex>& vertices = m_textured[image->glName];
    const cFaceVertex* v = face->vertices;
    for (int i = 2; i < face->vertexCount; ++i) {
        putTextured(vertices, v[0], rgba);
        putTextured(vertices, v[i - 1], rgba);
        putTextured(vertices, v[i], rgba);
    }
    if (vertices.size() >= LIMIT)
        drawTextured(image->glName, vertices);
}

void cDrawBatch::outline(const cFaceData* face, const uint8_t* rgba) {
    m_outlineFirsts.push_back(int(m_outlines.size()));
    m_outlineCounts.push_back(face->vertexCount);
    for (int i = 0; i < face->vertexCount; ++i)
        put(m_outlines, face->vertices[i].xyz, rgba);
    if (m_outlines.size() >= LIMIT) {
        drawTriangles(); // an outline lies over its own fill
        drawAllTextured();
        drawOutlines();
    }
}

// ---- Drawing

static void pointTo(const cBatchVertex* vertices) {
    glVertexPointer(3, GL_FLOAT, sizeof(cBatchVertex), vertices->xyz);
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof(cBatchVertex), vertices->rgba);
}

static void countSent(size_t bytes) {
    ++g_drawTraffic.calls;
    ++g_drawTraffic.ranges;
    g_drawTraffic.bytes += bytes;
}

void cDrawBatch::drawVertices(cVertices& vertices, unsigned primitive) {
    if (vertices.empty())
        return;
    countSent(vertices.size() * sizeof(cBatchVertex));
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    pointTo(vertices.data());
    glDrawArrays(primitive, 0, GLsizei(vertices.size()));
    glDisableClientState(GL_COLOR_ARRAY);
    vertices.clear();
}

void cDrawBatch::drawTriangles() {
    drawVertices(m_triangles, GL_TRIANGLES);
}

void cDrawBatch::drawLines() {
    GL_LineWidth(lineWidth);
    drawVertices(m_lines, GL_LINES);
    GL_LineWidth(1);
}

void cDrawBatch::drawWideLines() {
    GL_LineWidth(WIDE_LINE);
    drawVertices(m_wideLines, GL_LINES);
    GL_LineWidth(1);
}

void cDrawBatch::drawStippled() {
    glEnable(GL_LINE_STIPPLE);
    drawVertices(m_stippled, GL_LINES);
    glDisable(GL_LINE_STIPPLE);
}

void cDrawBatch::drawRaised() {
    glDepthRange(0, RAISED_FAR);
    drawVertices(m_raised, GL_LINES);
    glDepthRange(0, 1);
}

void cDrawBatch::drawPoints() {
    GL_PointSize(pointSize);
    drawVertices(m_points, GL_POINTS);
    GL_PointSize(1);
}

void cDrawBatch::drawTextured(uint32_t glName, std::vector<cBatchTexVertex>& vertices) {
    if (vertices.empty())
        return;
    countSent(vertices.size() * sizeof(cBatchTexVertex));
    glEnable(GL_TEXTURE_2D);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    const cBatchTexVertex* first = vertices.data();
    glVertexPointer(3, GL_FLOAT, sizeof *first, first->xyz);
    glTexCoordPointer(2, GL_FLOAT, sizeof *first, first->st);
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof *first, first->rgba);
    glBindTexture(GL_TEXTURE_2D, glName);
    applyTextureSampling(textureFilter, true, anisotropy);
    glDrawArrays(GL_TRIANGLES, 0, GLsizei(vertices.size()));
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    glDisableClientState(GL_COLOR_ARRAY);
    glDisable(GL_TEXTURE_2D);
    vertices.clear();
}

void cDrawBatch::drawAllTextured() {
    for (auto it = m_textured.begin(); it != m_textured.end(); ++it)
        drawTextured(it.key(), it.value());
    if (m_textured.size() > MAX_TEXTURES_KEPT)
        m_textured.clear();
}

void cDrawBatch::drawOutlines() {
    if (m_outlines.empty())
        return;
    countSent(m_outlines.size() * sizeof(cBatchVertex));
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    if (polygonOffset)
        glEnable(GL_POLYGON_OFFSET_LINE);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    pointTo(m_outlines.data());
    GL_LineWidth(OUTLINE_WIDTH);
    glMultiDrawArrays(GL_POLYGON, m_outlineFirsts.data(), m_outlineCounts.data(),
                      GLsizei(m_outlineCounts.size()));
    glDisableClientState(GL_COLOR_ARRAY);
    GL_LineWidth(1);
    glDisable(GL_POLYGON_OFFSET_LINE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    m_outlines.clear();
    m_outlineFirsts.clear();
    m_outlineCounts.clear();
}

void cDrawBatch::flush() {
    drawTriangles();
    drawAllTextured();
    drawOutlines();
    drawLines();
    drawStippled();
    drawWideLines();
    drawRaised();
    drawPoints();
}

// SPDX-License-Identifier: MIT
#include "views/tOverlay.h"

#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tVec.h"
#include "views/tCanvas.h"
#include "views/tGLState.h"

#include <algorithm>
#include <cmath>

cRgba darker(const uint8_t* rgba, float factor) {
    cRgba out;
    for (size_t i = 0; i < 3; ++i)
        out[i] = uint8_t(std::lround(float(rgba[i]) * factor));
    out[3] = rgba[3];
    return out;
}

cOverlay::cOverlay(cCanvas& canvas)
    : m_canvas(canvas), m_texts(canvas.captionFont, canvas.devicePixelRatioF()) {}

// ---- Gathering

bool cOverlay::cStyle::operator==(const cStyle& other) const {
    return filled == other.filled && width == other.width && stippled == other.stippled &&
           state == other.state;
}

void cOverlay::beginRun(const cStyle& style) {
    if (m_runs.empty() || !(m_runs.back().style == style))
        m_runs.push_back({style, m_vertices.size()});
}

void cOverlay::beginLines(const cStroke& stroke) {
    beginRun({false, stroke.width, stroke.stippled, GLS_DEFAULT});
}

void cOverlay::put(const float* point, const uint8_t* rgba) {
    m_vertices.emplace_back();
    vecCopy(point, m_vertices.back().xyz);
    std::copy_n(rgba, 4, m_vertices.back().rgba);
}

// ---- Lines

void cOverlay::line(const float* a, const float* b, const cStroke& stroke) {
    beginLines(stroke);
    put(a, stroke.rgba);
    put(b, stroke.rgba);
}

void cOverlay::fadingLine(const float* a, const uint8_t* rgbaA, const float* b,
                          const uint8_t* rgbaB) {
    beginRun({false, 1, false, GLS_BLEND_ALPHA});
    put(a, rgbaA);
    put(b, rgbaB);
}

void cOverlay::polyline(const cPoint* points, int count, const cStroke& stroke) {
    for (int i = 1; i < count; ++i)
        line(points[i - 1], points[i], stroke);
}

void cOverlay::outline(const cPoint* points, int count, const cStroke& stroke) {
    polyline(points, count, stroke);
    line(points[count - 1], points[0], stroke);
}

// Corners of a box in the order of the bits x, y, z; its edges; its sides seen from outside.
static const int s_boxEdges[12][2] = {{0, 1}, {2, 3}, {4, 5}, {6, 7}, {0, 2}, {1, 3},
                                      {4, 6}, {5, 7}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
static const int s_boxSides[6][4] = {{0, 4, 6, 2}, {1, 3, 7, 5}, {0, 1, 5, 4},
                                     {2, 6, 7, 3}, {0, 2, 3, 1}, {4, 5, 7, 6}};

static void boxCorners(const float* mins, const float* maxs, float corners[8][3]) {
    for (int i = 0; i < 8; ++i)
        vecSet(corners[i], (i & 1) ? maxs[0] : mins[0], (i & 2) ? maxs[1] : mins[1],
               (i & 4) ? maxs[2] : mins[2]);
}

void cOverlay::edges(const float corners[8][3], const cStroke& stroke) {
    for (const auto& edge : s_boxEdges)
        line(corners[edge[0]], corners[edge[1]], stroke);
}

void cOverlay::box(const float* mins, const float* maxs, const cStroke& stroke) {
    float corners[8][3];
    boxCorners(mins, maxs, corners);
    edges(corners, stroke);
}

void cOverlay::boxTransformed(const float* mins, const float* maxs, int rotAxis, int shearAxis,
                              float angle, float shear, const cStroke& stroke) {
    const int u = rotAxis == 0 ? 1 : 0, v = rotAxis == 2 ? 1 : 2;
    const float sine = std::sin(angle), cosine = std::cos(angle);
    float corners[8][3], center[3];
    boxCorners(mins, maxs, corners);
    vecAdd(mins, maxs, center);
    vecScale(center, 0.5f, center);
    const float extent = std::max(maxs[shearAxis] - mins[shearAxis], 1.0f);
    for (float* corner : corners) {
        corner[rotAxis] += shear * (corner[shearAxis] - mins[shearAxis]) / extent;
        const float du = corner[u] - center[u], dv = corner[v] - center[v];
        corner[u] = center[u] + cosine * du - sine * dv;
        corner[v] = center[v] + sine * du + cosine * dv;
    }
    edges(corners, stroke);
}

// ---- Faces

void cOverlay::polygon(const cPoint* points, int count, const uint8_t* rgba, eFill fill) {
    beginRun({true, 1, false, fill == FILL_BLENDED ? GLS_DEFAULT | GLS_BLEND_ALPHA : GLS_DEFAULT});
    for (int i = 2; i < count; ++i)
        for (const int corner : {0, i - 1, i})
            put(points[corner], rgba);
}

void cOverlay::boxFill(const float* mins, const float* maxs, const uint8_t* rgba, eFill fill) {
    float corners[8][3], points[4][3];
    boxCorners(mins, maxs, corners);
    for (const auto& side : s_boxSides) {
        for (int i = 0; i < 4; ++i)
            vecCopy(corners[side[i]], points[i]);
        polygon(points, 4, rgba, fill);
    }
}

// ---- Marks

static constexpr float EIGHTH_TURN = float(M_PI) / 4;

// Radius of a square's corners.
static float squareRadius(float size) {
    return size * 0.5f * float(M_SQRT2);
}

// World units that one pixel spans at the point.
float cOverlay::unitsPerPixel(const float* point) const {
    if (!m_canvas.isCamera())
        return 1.0f / m_canvas.zoom;
    float away[3];
    vecSubtract(point, m_canvas.origin, away);
    const float distance = std::max(vecDot(away, m_canvas.forward), 1.0f);
    return 2.0f * m_canvas.tanX * distance / float(std::max(1, m_canvas.width()));
}

// A regular polygon that faces the screen; radius in pixels, to its corners.
void cOverlay::discPoints(const float* center, float radius, float turn, int count,
                          cPoint* points) const {
    const cViewInfo& view = m_canvas.viewInfo;
    const float length = radius * unitsPerPixel(center);
    for (int i = 0; i < count; ++i) {
        const float angle = turn + 2.0f * float(M_PI) * float(i) / float(count);
        vecMA(center, length * std::cos(angle), view.right, points[i]);
        vecMA(points[i], length * std::sin(angle), view.up, points[i]);
    }
}

void cOverlay::square(const float* center, float size, const cStroke& stroke) {
    float points[4][3];
    discPoints(center, squareRadius(size), EIGHTH_TURN, 4, points);
    outline(points, 4, stroke);
}

void cOverlay::cross(const float* center, const cStroke& stroke) {
    for (int axis = 0; axis < 3; ++axis) {
        if (axis == m_canvas.axisDepth)
            continue;
        float a[3], b[3];
        vecCopy(center, a);
        vecCopy(center, b);
        a[axis] = -m_canvas.halfWorldSize;
        b[axis] = m_canvas.halfWorldSize;
        line(a, b, stroke);
    }
}

static const uint8_t* bulletColor(eBulletKind kind) {
    static const int colors[] = {COLOR_BULLET_VERTEX, COLOR_BULLET_EDGE, COLOR_CLIP_POINT,
                                 COLOR_CORDON_POINT, COLOR_BULLET_SELECTED};
    return g_host->schemeColor(colors[kind]);
}

void cOverlay::bullet(const float* center, float size, float dx, float dy, eBulletKind kind,
                      eBulletShape shape) {
    static constexpr int ROUND_CORNERS = 12;
    const cViewInfo& view = m_canvas.viewInfo;
    const float unit = unitsPerPixel(center);
    const bool isRound = shape == BULLET_ROUND;
    const int count = isRound ? ROUND_CORNERS : 4;
    float middle[3], points[ROUND_CORNERS][3];
    vecMA(center, dx * unit, view.right, middle);
    vecMA(middle, -dy * unit, view.up, middle);
    discPoints(middle, isRound ? size * 0.5f : squareRadius(size),
               shape == BULLET_SQUARE ? EIGHTH_TURN : 0, count, points);
    polygon(points, count, bulletColor(kind));
    outline(points, count, g_host->schemeColor(COLOR_BULLET_BORDER));
}

// ---- Texts and icons

void cOverlay::text(int x, int y, int width, eTextAlign align, const QString& text,
                    const uint8_t* rgba) {
    const float free = align == TEXT_LEFT ? 0 : float(width) - textWidth(m_texts.font(), text);
    const float share = align == TEXT_CENTER ? 0.5f : 1;
    m_texts.add(float(x) + free * share, float(y), text, rgba);
}

void cOverlay::centerIcon(const QPixmap& icon, eIconEdge edge) {
    m_icons.push_back({icon, edge});
}

// ---- Drawing

void cOverlay::drawRun(const cStyle& style, size_t first, size_t end) const {
    GL_State(style.state);
    GL_LineWidth(style.width);
    if (style.stippled)
        glEnable(GL_LINE_STIPPLE);
    glDrawArrays(style.filled ? GL_TRIANGLES : GL_LINES, GLint(first), GLsizei(end - first));
    glDisable(GL_LINE_STIPPLE);
}

void cOverlay::drawShapes() {
    if (m_vertices.empty())
        return;
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glVertexPointer(3, GL_FLOAT, sizeof(cVertex), m_vertices.front().xyz);
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof(cVertex), m_vertices.front().rgba);
    const uint32_t before = GL_CurrentState();
    for (size_t i = 0; i < m_runs.size(); ++i)
        drawRun(m_runs[i].style, m_runs[i].first,
                i + 1 < m_runs.size() ? m_runs[i + 1].first : m_vertices.size());
    GL_State(before);
    GL_LineWidth(1);
    glDisableClientState(GL_COLOR_ARRAY);
    m_vertices.clear();
    m_runs.clear();
}

void cOverlay::drawIcons() {
    static constexpr int SIZE = 32; // pixels
    const QRect place(m_canvas.centerX - SIZE / 2, m_canvas.centerY - SIZE / 2, SIZE, SIZE);
    const uint32_t before = GL_CurrentState();
    for (const cIcon& icon : m_icons) {
        // Qt keeps the texture for the pixmap.
        const GLuint texture = m_canvas.bindTexture(icon.pixmap, GL_TEXTURE_2D);
        GL_State(GLS_DEFAULT | (icon.edge == ICON_BLENDED ? GLS_BLEND_ALPHA : GLS_ALPHA_TEST));
        glColor4ub(255, 255, 255, 255);
        glEnable(GL_TEXTURE_2D);
        m_canvas.drawTexture(place, texture);
        glDisable(GL_TEXTURE_2D);
    }
    GL_State(before);
    m_icons.clear();
}

void cOverlay::flush() {
    drawShapes();
    drawIcons();
    m_texts.flush();
}

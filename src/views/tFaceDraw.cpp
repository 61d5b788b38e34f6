// SPDX-License-Identifier: MIT
// Faces of the map's picture: which the view shows and how, with the grid drawn on them.
#include "document/tFace.h"

#include "document/tTexture.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tVec.h"
#include "views/tMapPainter.h"

#include <cstring>

static constexpr float BACK_MARGIN = 2.0f;  // units: keeps faces just behind the camera
static constexpr float AXIS_LENGTH = 10.0f; // units, of the texture axes of a selected face
static constexpr float GRID_LIFT = 0.25f;   // units off the face
static constexpr float MIN_GRID_EXTENT = 0.001f;

bool cFace::isVisible(const cViewInfo& view) const {
    if ((data->flags & FF_DIRTY) || data->vertexCount < 3)
        return false;
    if (!view.has(VF_NODRAW) && data->texture && isNodraw(*data->texture))
        return false;
    if (!view.is3D)
        return vecDot(data->normal, view.forward) != 0;
    if (view.isWireframe())
        return true;
    return vecDot(data->normal, view.origin) >= data->dist - BACK_MARGIN;
}

bool cMapPainter::isFaceSelected(const cFaceData* face) const {
    return m_view.is3D && (face->flags & FF_SELECTED);
}

bool cMapPainter::isFaceTransparent(const cFaceData* face, const cBrushLook& look) const {
    if (!m_view.has(VF_TRANSPARENCY))
        return false;
    return look.transparent ||
           (g_host->TextureTransparency && face->texture && isTranslucent(*face->texture));
}

void cMapPainter::fillColor(const cFaceData* face, const cBrushLook& look, uint8_t* rgba) const {
    static const uint8_t white[4] = {255, 255, 255, 255};
    const bool faceMarked = isFaceSelected(face) && !(m_view.hideMask & HM_FACE_MASK);
    const uint8_t* color = look.color;
    if (look.selected || faceMarked)
        color = g_host->schemeColor(COLOR_SELECTED_FILL);
    else if (m_view.is3D && m_view.renderMode == RM_TEXTURED && face->texture)
        color = white;
    memcpy(rgba, color, 4);
}

void cMapPainter::drawFace(cFaceData* face, const cBrushLook& look) {
    if (m_view.isPicking()) {
        ++m_stats.faces;
        drawFacePick(face, look);
        return;
    }
    if (isFaceTransparent(face, look)) {
        putOff(DRAWN_FACE, face, face->face->center);
        return;
    }
    ++m_stats.faces;
    uint8_t rgba[4];
    fillColor(face, look, rgba);
    if (m_view.is3D)
        drawFace3D(face, look, rgba);
    else
        drawFace2D(face, look, rgba);
}

void cMapPainter::drawFacePick(const cFaceData* face, const cBrushLook& look) {
    uint8_t rgba[4];
    memcpy(rgba, look.pickColor, sizeof rgba);
    if (m_view.pickMode == PICK_FACES)
        pickColor(face->face->pickId, rgba);
    if (m_view.is3D && !m_view.isWireframe())
        m_batch.fan(face, rgba);
    else
        m_batch.loop(face, rgba);
}

void cMapPainter::drawFace2D(const cFaceData* face, const cBrushLook& look, const uint8_t* rgba) {
    if (face->flags & FF_MOVING) {
        uint8_t dim[4];
        shadeColor(rgba, MOVING_DIM, dim);
        m_batch.stippledLoop(face, dim);
    } else {
        m_batch.loop(face, rgba);
    }
    if (g_host->DrawVertices)
        m_batch.vertices(face, look.selected ? rgba : g_host->schemeColor(COLOR_2D_VERTEX));
}

// Filled or textured; a texture without an image shows as its colour alone.
void cMapPainter::fillFace(const cFaceData* face, const uint8_t* rgba) {
    uint8_t shaded[4];
    shadeColor(rgba, face->face->shade, shaded);
    const cTextureImage* image = face->texture ? face->texture->image : nullptr;
    if (m_view.renderMode == RM_TEXTURED && image && image->glName)
        m_batch.texturedFan(face, image, shaded);
    else
        m_batch.fan(face, shaded);
}

void cMapPainter::drawFace3D(const cFaceData* face, const cBrushLook& look, const uint8_t* rgba) {
    const bool faceSelected = isFaceSelected(face);
    const uint8_t* lineColor =
        look.selected || faceSelected ? g_host->schemeColor(COLOR_SELECTED_LINE) : rgba;
    if (m_view.isWireframe()) {
        m_batch.loop(face, lineColor);
    } else {
        fillFace(face, rgba);
        if (look.selected && !m_view.has(VF_MORPHING))
            m_batch.outline(face, lineColor);
    }
    if (faceSelected)
        drawTextureAxes(face);
    if (m_view.has(VF_GRID_3D))
        drawFaceGrid(face, rgba);
}

void cMapPainter::drawTextureAxes(const cFaceData* face) {
    static const uint8_t yellow[4] = {255, 255, 0, 255};
    static const uint8_t green[4] = {0, 255, 0, 255};
    const float* center = face->face->center;
    float end[3];
    vecMA(center, AXIS_LENGTH, face->tex.uAxis, end);
    m_batch.raisedLine(center, end, yellow);
    vecMA(center, AXIS_LENGTH, face->tex.vAxis, end);
    m_batch.raisedLine(center, end, green);
}

// ---- Grid

void cMapPainter::drawFaceGrid(const cFaceData* face, const uint8_t* rgba) {
    for (int i = 0; i < 3; ++i)
        if (m_view.origin[i] < face->mins[i] - m_view.gridDepth ||
            m_view.origin[i] > face->maxs[i] + m_view.gridDepth)
            return;
    for (int axis = 0; axis < 3; ++axis) {
        uint8_t color[4] = {0, 0, 0, rgba[3]};
        color[axis] = 255;
        if (face->maxs[axis] - face->mins[axis] > MIN_GRID_EXTENT)
            drawFaceGridAxis(face, axis, color);
    }
}

// Where the plane of that coordinate crosses the face's edges; false without two crossings.
static bool crossFace(const cFaceData* face, int axis, float value, float hits[2][3]) {
    int count = 0;
    const float* a = face->vertices[face->vertexCount - 1].xyz;
    for (int i = 0; i < face->vertexCount && count < 2; ++i) {
        const float* b = face->vertices[i].xyz;
        // Half open, so that a vertex on the plane counts for one of its two edges.
        if ((a[axis] < value) != (b[axis] < value)) {
            float step[3];
            vecSubtract(b, a, step);
            vecMA(a, (value - a[axis]) / step[axis], step, hits[count++]);
        }
        a = b;
    }
    return count == 2;
}

void cMapPainter::drawFaceGridAxis(const cFaceData* face, int axis, const uint8_t* rgba) {
    const float grid = m_view.gridSize;
    const int first = int(std::floor(face->mins[axis] / grid));
    const int last = int(std::ceil(face->maxs[axis] / grid));
    for (int i = first; i <= last; ++i) {
        float hits[2][3];
        if (!crossFace(face, axis, float(i) * grid, hits))
            continue;
        for (float* hit : hits)
            vecMA(hit, GRID_LIFT, face->normal, hit);
        m_batch.line(hits[0], hits[1], rgba);
    }
}

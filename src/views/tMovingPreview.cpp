// SPDX-License-Identifier: MIT
#include "views/tMovingPreview.h"

#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tEntityAngles.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "operations/tTransform.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tVec.h"
#include "views/tDrawBatch.h"
#include "views/tFigureDraw.h"
#include "views/tLooseDraw.h"
#include "views/tViewInfo.h"

#include <algorithm>
#include <qopengl.h>

// A stretched vertex this near the brush's centre goes with the side that moves.
static constexpr float VERTEX_MARGIN = 0.001f;

// Both faces of an edge walk it, each its own way: true for one of the two, by the axis on which
// the ends differ most, so that ends equal but for rounding do not upset it.
static bool isForward(const float* a, const float* b) {
    int axis = 0;
    for (int i = 1; i < 3; ++i)
        if (std::fabs(b[i] - a[i]) > std::fabs(b[axis] - a[axis]))
            axis = i;
    return b[axis] > a[axis];
}

struct cEdge {
    const float* a;
    const float* b;
};

static bool coincide(const float* a, const float* b, int depthAxis) {
    for (int i = 0; i < 3; ++i)
        if (i != depthAxis && a[i] != b[i])
            return false;
    return true;
}

// Seen along the axis the edge is a point, or hidden by one of the others.
static bool isCovered(const cEdge& edge, const std::vector<cEdge>& others, int depthAxis) {
    return coincide(edge.a, edge.b, depthAxis) ||
           std::any_of(others.begin(), others.end(), [&](const cEdge& other) {
               return coincide(edge.a, other.a, depthAxis) && coincide(edge.b, other.b, depthAxis);
           });
}

// With a depth axis only the edges that can be seen along it; a brush of very many edges gives
// them all, so that they need not be compared with each other.
template<class Take> static void eachEdge(const cBrushData* brush, int depthAxis, Take take) {
    static constexpr size_t COMPARED = 128;
    static std::vector<cEdge> taken;
    taken.clear();
    for (const cFaceData* face : facesOf(brush)) {
        for (int i = 0; i < face->vertexCount; ++i) {
            const cEdge edge = {face->vertices[i].xyz,
                                face->vertices[i + 1 < face->vertexCount ? i + 1 : 0].xyz};
            if (!isForward(edge.a, edge.b))
                continue;
            if (depthAxis >= 0 && taken.size() < COMPARED && isCovered(edge, taken, depthAxis))
                continue;
            taken.push_back(edge);
            take(edge.a, edge.b);
        }
    }
}

// The transform mixes the axis with no other, so that what covers each other along it goes on to.
static bool keepsDepth(const float* matrix, int axis) {
    for (int i = 0; i < 3; ++i)
        if (i != axis && (matrix[axis * 4 + i] != 0 || matrix[i * 4 + axis] != 0))
            return false;
    return axis >= 0;
}

// ---- Single objects

// A point entity where the transform would put it.
static void gatherMoved(const cEntityData* entity, const cViewInfo& view,
                        const cTransformRecord& record, cModelBatch& models) {
    float origin[3], shift[3], mins[3], maxs[3], angles[3];
    vecCopy(entity->origin, origin);
    const float* pivot = record.center ? record.center : entity->origin;
    transformPoint(record, pivot, pivot, 0, origin);
    vecSubtract(origin, entity->origin, shift);
    vecAdd(entity->mins, shift, mins);
    vecAdd(entity->maxs, shift, maxs);
    vecCopy(entity->angles, angles);
    if (g_host->TransformAngles)
        rotateAngles(entity->angles, record.matrix, angles);
    if (hasRenderObject(entity, view)) {
        models.addMoved(entity, origin, angles, view.settings.color(COLOR_SELECTED_FILL));
        return;
    }
    cDrawBatch& batch = cDrawBatch::shared();
    gatherFlatBox(batch, view, mins, maxs, view.settings.color(COLOR_SELECTED_LINE), false);
    if (hasArrow(entity))
        gatherArrow(batch, mins, maxs, angles);
}

// ---- The selection

// A point where faces meet counts once; among very many the search is not worth it.
uint32_t cMovingPreview::pointIndex(const cPart& part, const float* point) {
    static constexpr size_t SEARCHED = 64;
    const size_t end = m_points.size() / 3;
    const size_t searchEnd = std::min(end, part.first + SEARCHED);
    for (size_t i = part.first; i < searchEnd; ++i)
        if (std::equal(point, point + 3, &m_points[i * 3]))
            return uint32_t(i);
    m_points.insert(m_points.end(), point, point + 3);
    return uint32_t(end);
}

void cMovingPreview::addBrush(const cBrushData* brush) {
    cPart part = {m_points.size() / 3, 0, {}};
    vecCopy(brush->brush->center, part.center);
    for (const int depthAxis : {0, 1, 2, -1}) {
        cIndices& edges = edgesSeenAlong(depthAxis);
        eachEdge(brush, depthAxis, [&](const float* a, const float* b) {
            edges.push_back(pointIndex(part, a));
            edges.push_back(pointIndex(part, b));
        });
    }
    part.end = m_points.size() / 3;
    m_parts.push_back(part);
}

void cMovingPreview::build(const cMap& map) {
    clear();
    for (const cBrushData* brush : selectedBrushesOf(map.data))
        if (!(brush->flags & (BF_DIRTY | BF_HIDDEN)))
            addBrush(brush);
}

void cMovingPreview::clear() {
    *this = cMovingPreview();
}

// The record's transform in the column order of OpenGL: M (v - pivot) + pivot.
static void multMatrix(const cTransformRecord& record) {
    float columns[16];
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            columns[column * 4 + row] = record.matrix[row * 4 + column];
    const float* pivot = record.center;
    glTranslatef(pivot[0], pivot[1], pivot[2]);
    glMultMatrixf(columns);
    glTranslatef(-pivot[0], -pivot[1], -pivot[2]);
}

const std::vector<float>& cMovingPreview::stretched(const cTransformRecord& record) {
    std::array<float, 20> by;
    by[0] = float(record.sideMask);
    std::copy_n(record.center, 3, by.begin() + 1);
    std::copy_n(record.matrix, 16, by.begin() + 4);
    if (m_stretched.size() == m_points.size() && by == m_stretchedBy)
        return m_stretched;
    m_stretchedBy = by;
    m_stretched = m_points;
    for (const cPart& part : m_parts)
        for (size_t i = part.first; i < part.end; ++i)
            transformPoint(record, record.center, part.center, VERTEX_MARGIN, &m_stretched[i * 3]);
    return m_stretched;
}

void cMovingPreview::drawEdges(const cIndices& edges, const cViewInfo& view,
                               const cTransformRecord& record) {
    if (edges.empty())
        return;
    const bool isStretch = record.sideMask != 0;
    const std::vector<float>& points = isStretch ? stretched(record) : m_points;
    glPushMatrix();
    if (!isStretch)
        multMatrix(record);
    glColor4ubv(view.settings.color(COLOR_SELECTED_FILL));
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, points.data());
    glDrawElements(GL_LINES, GLsizei(edges.size()), GL_UNSIGNED_INT, edges.data());
    glPopMatrix();
}

void cMovingPreview::draw(const cMap& map, const cViewInfo& view, cDrawStats& stats,
                          const cTransformRecord& record) {
    const bool flat = keepsDepth(record.matrix, view.axisDepth);
    drawEdges(edgesSeenAlong(flat ? view.axisDepth : -1), view, record);
    stats.brushes += int(m_parts.size());
    cModelBatch models(view, stats);
    for (const cEntityData* entity : selectedEntitiesOf(map.data)) {
        if ((entity->flags & (EF_DIRTY | EF_HIDDEN)) || entity->brushes)
            continue;
        gatherMoved(entity, view, record, models);
        ++stats.entities;
    }
    models.flush();
    cDrawBatch::shared().flush();
}

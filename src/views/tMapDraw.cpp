// SPDX-License-Identifier: MIT
// The passes of a map's picture, and what all of them share.
#include "document/tCullTree.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tTexture.h"
#include "support/tSettings.h"
#include "support/tVec.h"
#include "views/tCullTreeWalk.h"
#include "views/tDrawScratch.h"
#include "views/tFigureDraw.h"
#include "views/tGLState.h"
#include "views/tMapPainter.h"
#include "views/tPickPainter.h"

#include <qopengl.h>

static constexpr float OVERLAY_WIDTH = 3.0f; // pixels, of pointfile and portals
static constexpr float BACK_MARGIN = 2.0f;   // units: keeps faces just behind the camera

void drawMap(cMap& map, cViewInfo& view, cDrawStats& stats) {
    if (view.isPicking()) {
        cPickPainter(map, view, stats).draw();
        return;
    }
    const cDrawTraffic before = g_drawTraffic;
    cMapPainter(map, view, stats).draw();
    stats.calls = int(g_drawTraffic.calls - before.calls);
    stats.ranges = int(g_drawTraffic.ranges - before.ranges);
    stats.bytes = int(g_drawTraffic.bytes - before.bytes);
}

bool isFaceVisible(const cFaceData* face, const cViewInfo& view) {
    if ((face->flags & FF_DIRTY) || face->vertexCount < 3)
        return false;
    if (!view.has(VF_NODRAW) && face->texture && isNodraw(*face->texture))
        return false;
    if (!view.is3D)
        return vecDot(face->normal, view.forward) != 0;
    return view.isWireframe() || vecDot(face->normal, view.origin) >= face->dist - BACK_MARGIN;
}

cMapPainter::cScratch& cMapPainter::cScratch::shared() {
    static cScratch scratch;
    return scratch;
}

cMapPainter::cMapPainter(cMap& map, cViewInfo& view, cDrawStats& stats)
    : m_map(map),
      m_view(view),
      m_stats(stats),
      m_batch(cDrawBatch::shared()),
      m_buffers(cMapBuffers::of(map)),
      m_scratch(cScratch::shared()),
      m_masks(m_scratch.masks),
      m_ranges(m_scratch.ranges) {
    m_batch.polygonOffset = !view.has(VF_NO_POLYGON_OFFSET);
    m_batch.textureFilter = view.settings.textureFilter;
    m_batch.anisotropy = view.settings.anisotropicFilter;
}

cMapPainter::~cMapPainter() {
    cGLBuffer::unbind();
}

void cMapPainter::draw() {
    cModelPoses::shared().beginDraw();
    m_buffers.update(m_view.detailContentMask, m_view.settings.color(COLOR_SELECTED_FILL));
    findVisible();
    m_indices = m_buffers.indices().bind();
    if (!m_view.is3D)
        drawFlat();
    else if (m_view.isWireframe())
        drawWires();
    else
        drawSolid();
    cGLBuffer::unbind();
    if (m_view.has(VF_DRAW_CULL_TREE) && m_view.has(VF_CULL_TREE) && m_map.cullTree)
        drawCullTree(*m_map.cullTree, m_view);
    if (m_view.has(VF_CONNECTIONS))
        drawConnections();
    drawPointfile();
    if (m_view.is3D)
        drawPortals();
}

// ---- What is visible

// A leaf's faces of one facing are seen only from beyond its farthest one.
static uint8_t facingsSeen(const cDrawLeaf& leaf, const float* origin) {
    uint8_t mask = MASK_VISIBLE;
    for (int axis = 0; axis < 3; ++axis) {
        if (origin[axis] >= leaf.mins[axis] - BACK_MARGIN)
            mask |= uint8_t(1 << axis * 2);
        if (origin[axis] <= leaf.maxs[axis] + BACK_MARGIN)
            mask |= uint8_t(2 << axis * 2);
    }
    return mask;
}

void cMapPainter::findVisible() {
    static constexpr uint8_t ALL_FACINGS = 2 * MASK_VISIBLE - 1;
    const std::vector<cDrawLeaf>& leaves = m_buffers.leaves();
    m_masks.assign(leaves.size(), 0);
    for (size_t i = 0; i < leaves.size(); ++i) {
        const cDrawLeaf& leaf = leaves[i];
        if (leaf.brushes + leaf.entities == 0)
            continue;
        ++m_stats.culls;
        if (m_view.frustum->cullBox(leaf.mins, leaf.maxs))
            continue;
        m_masks[i] = m_view.is3D ? facingsSeen(leaf, m_view.origin) : ALL_FACINGS;
        if (leaf.isWhollySelected())
            m_masks[i] |= MASK_WHOLLY_SELECTED;
        m_stats.brushes += leaf.brushes;
        m_stats.entities += leaf.entities;
        m_stats.faces += leaf.faces;
    }
}

bool cMapPainter::isHiddenByTraits(uint16_t traits) const {
    const uint32_t mask = m_view.hideMask;
    return ((traits & TRAIT_DETAIL) && (mask & HM_DETAIL)) ||
           ((traits & TRAIT_ITEM) && (mask & HM_ITEMS)) ||
           ((traits & TRAIT_PATH) && (mask & HM_PATHS));
}

bool cMapPainter::isHidden(const cDrawKey& key) const {
    if (isHiddenByTraits(key.traits))
        return true;
    if (m_view.has(VF_NODRAW))
        return false;
    return (key.traits & TRAIT_NODRAW) || (key.texture && isNodraw(*key.texture));
}

// Faces that are drawn when all opaque ones are.
bool cMapPainter::isPutOff(const cDrawKey& key) const {
    if (!m_view.has(VF_TRANSPARENCY) || (key.traits & TRAIT_BOX))
        return false;
    return (m_view.settings.entityTransparency && (key.traits & TRAIT_TRANSPARENT)) ||
           (m_view.settings.textureTransparency && key.texture && isTranslucent(*key.texture));
}

// ---- Ranges

// A leaf that is selected as a whole is drawn with what is selected alone. Of another one all is
// drawn, and the selected objects over it.
void cMapPainter::addRow(uint32_t number, eWhich which) {
    const cDrawRow& row = m_buffers.row(number);
    const uint8_t seen = uint8_t(1 << row.key.facing);
    const uint8_t wanted = uint8_t(seen | (which == SELECTED ? MASK_WHOLLY_SELECTED : 0));
    for (const cDrawCell& cell : row.cells)
        if ((m_masks[cell.leaf] & (seen | MASK_WHOLLY_SELECTED)) == wanted)
            m_ranges.add(cell.first, cell.count);
}

void cMapPainter::drawRanges(unsigned primitive) {
    m_ranges.draw(primitive, m_indices);
}

// ---- Arrays

void cMapPainter::pointAtVertices() {
    const uint8_t* base = m_buffers.vertices().bind();
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, sizeof(cShapeVertex), base + offsetof(cShapeVertex, xyz));
}

void cMapPainter::pointAtTextured() {
    const uint8_t* base = m_buffers.vertices().bind();
    glEnableClientState(GL_COLOR_ARRAY);
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof(cShapeVertex), base + offsetof(cShapeVertex, rgba));
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glTexCoordPointer(2, GL_FLOAT, sizeof(cShapeVertex), base + offsetof(cShapeVertex, st));
}

void cMapPainter::pointAtColors(const cGLBuffer& look) {
    const uint8_t* base = look.bind();
    glEnableClientState(GL_COLOR_ARRAY);
    glColorPointer(4, GL_UNSIGNED_BYTE, 0, base);
}

void cMapPainter::noColors() {
    glDisableClientState(GL_COLOR_ARRAY);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
}

// ---- Over the map

void cMapPainter::drawPointfile() {
    if (m_map.pointCount <= 0)
        return;
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof(cPathPoint), m_map.points->color);
    glVertexPointer(3, GL_FLOAT, sizeof(cPathPoint), m_map.points->xyz);
    GL_LineWidth(OVERLAY_WIDTH);
    glDrawArrays(GL_LINE_STRIP, 0, m_map.pointCount);
    GL_LineWidth(1);
    glDisableClientState(GL_COLOR_ARRAY);
}

void cMapPainter::drawPortals() {
    if (!m_map.portals)
        return;
    glEnableClientState(GL_VERTEX_ARRAY);
    glColor4ub(0, 0, 255, 255);
    GL_LineWidth(OVERLAY_WIDTH);
    for (const cPortal* portal = m_map.portals; portal; portal = portal->next) {
        glVertexPointer(3, GL_FLOAT, 0, portal->points);
        glDrawArrays(GL_LINE_LOOP, 0, portal->vertexCount);
    }
    GL_LineWidth(1);
}

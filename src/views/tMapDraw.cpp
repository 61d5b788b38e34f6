// SPDX-License-Identifier: MIT
// The passes of a map's picture: all objects, selected ones last, transparent ones after them,
// then the lines over them.
#include "document/tMap.h"

#include "document/tCullTree.h"
#include "document/tMapLists.h"
#include "views/tGLState.h"
#include "views/tMapPainter.h"

#include <QGLContext>

static constexpr float OVERLAY_WIDTH = 3.0f; // pixels, of pointfile and portals
static constexpr float PICK_WIDTH = 4.0f;    // pixels, so that a line is easy to hit
static constexpr float VERTEX_SIZE = 3.0f;   // pixels

void cMap::draw(cViewInfo& view, cDrawStats& stats) {
    cMapPainter painter(*this, view, stats);
    painter.draw();
}

cMapPainter::cMapPainter(cMap& map, cViewInfo& view, cDrawStats& stats)
    : m_map(map),
      m_view(view),
      m_stats(stats),
      m_batch(cDrawBatch::shared()),
      m_transparent([]() -> std::vector<cTransparentEntry>& {
          static std::vector<cTransparentEntry> entries;
          return entries;
      }()) {
    view.painter = this;
    m_transparent.clear();
    m_batch.polygonOffset = !view.has(VF_NO_POLYGON_OFFSET);
    m_batch.pointSize = VERTEX_SIZE;
    m_batch.lineWidth = 1;
}

cMapPainter::~cMapPainter() {
    m_batch.lineWidth = m_batch.pointSize = 1;
    m_view.painter = nullptr;
}

void cMapPainter::draw() {
    if (m_view.isPicking()) {
        drawPicking();
        return;
    }
    drawPasses();
    if (!m_transparent.empty())
        drawTransparent();
    if (m_view.has(VF_DRAW_CULL_TREE) && m_view.has(VF_CULL_TREE) && m_map.cullTree)
        m_map.cullTree->drawDebug(m_view);
    if (m_view.has(VF_CONNECTIONS))
        drawConnections();
    drawPointfile();
    if (m_view.is3D)
        drawPortals();
}

void cMapPainter::drawPicking() {
    if (!m_view.is3D || m_view.isWireframe())
        m_batch.lineWidth = PICK_WIDTH;
    walk(PASS_UNSELECTED | PASS_SELECTED);
    m_batch.flush();
}

void cMapPainter::drawPasses() {
    walk(PASS_UNSELECTED);
    m_batch.flush();
    if (!m_map.data.selectedEntities && !m_map.data.selectedBrushes)
        return;
    walk(PASS_SELECTED | PASS_WALKED);
    m_batch.flush();
}

void cMapPainter::walk(uint32_t passFlags) {
    if (m_view.has(VF_CULL_TREE) && m_map.cullTree) {
        m_map.cullTree->draw(m_view, m_stats, passFlags);
        return;
    }
    cEntityData* world = m_map.world();
    if (!world)
        return;
    for (cBrushData* brush : brushesOf(world))
        drawBrush(brush, passFlags);
    for (cEntityData* entity : entitiesOf(m_map.data))
        if (entity != world)
            drawEntity(entity, passFlags);
}

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

// SPDX-License-Identifier: MIT
#include "views/tPickPainter.h"

#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tFace.h"
#include "document/tGroup.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tSettings.h"
#include "support/tVec.h"
#include "views/tCullTreeWalk.h"
#include "views/tFigureDraw.h"
#include "views/tGLState.h"
#include "views/tLooseDraw.h"
#include "views/tMapPainter.h"

static constexpr float DIAMOND_HALF = 4.25f; // pixels
static constexpr float PICK_WIDTH = 4.0f;    // pixels, so that a line is easy to hit

cPickPainter::cPickPainter(cMap& map, cViewInfo& view, cDrawStats& stats)
    : m_map(map), m_view(view), m_stats(stats), m_batch(cDrawBatch::shared()) {
    m_batch.lineWidth = !view.is3D || view.isWireframe() ? PICK_WIDTH : 1;
}

cPickPainter::~cPickPainter() {
    m_batch.lineWidth = 1;
}

void cPickPainter::draw() {
    if (m_view.has(VF_CULL_TREE) && m_map.cullTree) {
        const auto visit = [this](const cCullTree::cObject& object, bool inside) {
            if (object.isBrush)
                drawBrush(static_cast<cBrushData*>(object.record), inside);
            else
                drawEntity(static_cast<cEntityData*>(object.record), inside);
        };
        cCullTreeWalk<decltype(visit)>(*m_map.cullTree, m_view, m_stats, visit).run();
    } else if (cEntityData* world = m_map.world()) {
        for (cBrushData* brush : brushesOf(world))
            drawBrush(brush, false);
        for (cEntityData* entity : entitiesOf(m_map.data))
            drawEntity(entity, false);
    }
    m_batch.flush();
}

bool cPickPainter::isCulled(const float* mins, const float* maxs) {
    ++m_stats.culls;
    return m_view.frustum->cullBox(mins, maxs);
}

// ---- Numbers

void pickColor(int number, uint8_t* rgba) {
    const uint32_t bits = number < 0 ? 0u : uint32_t(number);
    rgba[0] = uint8_t(bits);
    rgba[1] = uint8_t(bits >> 8);
    rgba[2] = uint8_t(bits >> 16);
    rgba[3] = 255;
}

// The number that a hit on the brush gives, but for picking faces.
static int brushPick(const cBrushData* brush, int pickMode) {
    const cEntityData* owner = brush->owner;
    if (pickMode != PICK_GROUPS)
        return brush->brush->pickId;
    if (owner->flags & EF_WORLD)
        return brush->rootGroup ? brush->rootGroup->group->pickId : brush->brush->pickId;
    return owner->rootGroup ? owner->rootGroup->group->pickId : owner->entity->pickId;
}

// ---- Objects

static bool isDetailHidden(const cBrushData* brush, const cViewInfo& view) {
    return (view.hideMask & HM_DETAIL) && brush->faces &&
           (brush->faces->tex.contentFlags & view.detailContentMask);
}

void cPickPainter::drawBrush(cBrushData* brush, bool inside) {
    if (brush->lastFrame == m_view.frame || !(m_view.pickFlags & PICK_BRUSHES) ||
        (brush->flags & (BF_DIRTY | BF_HIDDEN)) || isDetailHidden(brush, m_view))
        return;
    if (!inside && isCulled(brush->mins, brush->maxs))
        return;
    brush->lastFrame = m_view.frame;
    ++m_stats.brushes;
    uint8_t color[4];
    pickColor(brushPick(brush, m_view.pickMode), color);
    m_batch.beginEdges(m_view.axisDepth);
    for (const cFaceData* face : facesOf(brush))
        if (isFaceVisible(face, m_view))
            drawFace(face, color);
    if (!m_view.is3D && m_view.has(VF_BY_HANDLES) && m_view.pickMode != PICK_FACES)
        drawHandle(brush->brush->center, color);
}

void cPickPainter::drawFace(const cFaceData* face, const uint8_t* brushColor) {
    ++m_stats.faces;
    uint8_t rgba[4];
    memcpy(rgba, brushColor, sizeof rgba);
    if (m_view.pickMode == PICK_FACES)
        pickColor(face->face->pickId, rgba);
    if (m_view.is3D && !m_view.isWireframe())
        m_batch.fan(face, rgba);
    else
        m_batch.loop(face, rgba);
}

// A filled diamond to hit where views show a cross.
void cPickPainter::drawHandle(const float* center, const uint8_t* rgba) {
    const float half = DIAMOND_HALF * m_view.invZoom;
    const auto shifted = [&](float h, float v, float* out) {
        vecCopy(center, out);
        out[m_view.axisH] += h;
        out[m_view.axisV] += v;
    };
    float left[3], right[3], top[3], bottom[3];
    shifted(-half, 0, left);
    shifted(half, 0, right);
    shifted(0, half, top);
    shifted(0, -half, bottom);
    m_batch.triangle(left, bottom, right, rgba);
    m_batch.triangle(left, right, top, rgba);
}

void cPickPainter::drawEntity(cEntityData* entity, bool inside) {
    const uint32_t mask = m_view.hideMask;
    if (entity->lastFrame == m_view.frame || (entity->flags & (EF_DIRTY | EF_HIDDEN | EF_WORLD)) ||
        ((entity->flags & EF_ITEM) && (mask & HM_ITEMS)) ||
        ((entity->flags & EF_PATH) && (mask & HM_PATHS)))
        return;
    float mins[3], maxs[3];
    cullBounds(entity, mins, maxs);
    if (!inside && isCulled(mins, maxs))
        return;
    entity->lastFrame = m_view.frame;
    if (entity->brushes) {
        for (cBrushData* brush : brushesOf(entity))
            drawBrush(brush, inside);
        return;
    }
    if (!(m_view.pickFlags & PICK_ENTITIES))
        return;
    ++m_stats.entities;
    m_stats.faces += 6;
    uint8_t rgba[4];
    const bool grouped = m_view.pickMode == PICK_GROUPS && entity->rootGroup;
    pickColor(grouped ? entity->rootGroup->group->pickId : entity->entity->pickId, rgba);
    if (hasRenderObject(entity, m_view))
        drawFigure(entity, rgba);
    else if (!m_view.is3D)
        gatherFlatBox(m_batch, m_view, entity->mins, entity->maxs, rgba, false);
    else if (m_view.isWireframe())
        m_batch.boxLines(entity->mins, entity->maxs, rgba);
    else
        gatherSolidBox(m_batch, entity->mins, entity->maxs, rgba);
}

// By its shape. Over what was gathered before it, as nothing else decides in a 2D view.
void cPickPainter::drawFigure(const cEntityData* entity, const uint8_t* rgba) {
    m_batch.flush();
    if (entity->attachKind == AK_MODEL) {
        cModelBatch models(m_view, m_stats);
        models.lineWidth = m_batch.lineWidth;
        models.add(entity, rgba);
        models.flush();
        return;
    }
    GL_LineWidth(m_batch.lineWidth);
    drawSprite(entity, m_view, m_stats, GLS_ALPHA_TEST | GLS_DEPTH_WRITE, rgba);
    GL_LineWidth(1);
}

// SPDX-License-Identifier: MIT
// Entities of the map's picture: their brushes, or the box that stands for a point entity.
#include "views/tMapPainter.h"

#include "document/tEntity.h"
#include "document/tEntityClass.h"
#include "document/tFace.h"
#include "document/tGroup.h"
#include "document/tMapLists.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tMath.h"
#include "support/tVec.h"

#include <cstring>

static bool isHiddenByMask(uint32_t flags, uint32_t hideMask) {
    return ((flags & EF_ITEM) && (hideMask & HM_ITEMS)) ||
           ((flags & EF_PATH) && (hideMask & HM_PATHS));
}

bool cMapPainter::isEntityDrawn(const cEntityData* entity, uint32_t passFlags) {
    // An entity with brushes stands in both passes, so each has its own stamp.
    const uint32_t stamp = (passFlags & PASS_WALKED) ? entity->drawCount : entity->lastFrame;
    if (stamp == m_view.frame || (entity->flags & (EF_DIRTY | EF_HIDDEN | EF_WORLD)))
        return false;
    if (isHiddenByMask(entity->flags, m_view.hideMask))
        return false;
    return (passFlags & PASS_INSIDE) || !isCulled(entity->mins, entity->maxs);
}

static bool isBoxInPass(const cEntityData* entity, uint32_t passFlags) {
    const bool selected = (entity->flags & EF_SELECTED) != 0;
    return (passFlags & (selected ? PASS_SELECTED : PASS_UNSELECTED)) != 0;
}

bool cMapPainter::drawEntity(cEntityData* entity, uint32_t passFlags) {
    if (!isEntityDrawn(entity, passFlags))
        return false;
    ((passFlags & PASS_WALKED) ? entity->drawCount : entity->lastFrame) = m_view.frame;
    if (entity->brushes) {
        if (!drawEntityBrushes(entity, passFlags))
            return false;
    } else {
        if (!isBoxInPass(entity, passFlags))
            return false;
        if (m_view.isPicking() && !(m_view.pickFlags & PICK_ENTITIES))
            return false;
        drawEntityBox(entity);
    }
    ++m_stats.entities;
    return true;
}

bool cMapPainter::drawEntityBrushes(cEntityData* entity, uint32_t passFlags) {
    bool any = false;
    for (cBrushData* brush : brushesOf(entity))
        any |= drawBrush(brush, passFlags);
    return any;
}

static bool hasRenderColor(const cEntityData* entity) {
    return (entity->renderColor[0] | entity->renderColor[1] | entity->renderColor[2]) != 0;
}

// While picking the number; else the selection's colour, the light's own, the class's.
void cMapPainter::entityColor(const cEntityData* entity, uint8_t* rgba) const {
    if (m_view.isPicking()) {
        const bool grouped = m_view.pickMode == PICK_GROUPS && entity->rootGroup;
        pickColor(grouped ? entity->rootGroup->group->pickId : entity->entity->pickId, rgba);
        return;
    }
    const cEntityClass* entityClass = entity->entity->entityClass;
    const uint8_t* color = entity->entity->color;
    if (entity->flags & EF_SELECTED)
        color = g_host->schemeColor(m_view.is3D && !m_view.isWireframe() ? COLOR_SELECTED_FILL
                                                                         : COLOR_SELECTED_LINE);
    else if (entityClass && (entityClass->flags & ECF_LIGHT) && hasRenderColor(entity))
        color = entity->renderColor;
    memcpy(rgba, color, 3);
    rgba[3] = 255;
}

void cMapPainter::drawEntityBox(cEntityData* entity) {
    uint8_t rgba[4];
    entityColor(entity, rgba);
    m_stats.faces += 6;
    if (!m_view.is3D)
        drawBox2D(entity->mins, entity->maxs, rgba, (entity->flags & EF_MOVING) != 0);
    else if (m_view.isWireframe())
        m_batch.boxLines(entity->mins, entity->maxs, rgba);
    else
        drawBoxSolid(entity->mins, entity->maxs, rgba, !m_view.isPicking());
    if (!m_view.isPicking() && m_view.is3D && !m_view.isWireframe() &&
        (entity->flags & EF_SELECTED) && !m_view.has(VF_MORPHING))
        m_batch.boxLines(entity->mins, entity->maxs, g_host->schemeColor(COLOR_SELECTED_LINE));
    drawAngleArrow(entity);
}

void cMapPainter::drawBox2D(const float* mins, const float* maxs, const uint8_t* rgba,
                            bool moving) {
    const int h = m_view.axisH, v = m_view.axisV;
    float corners[4][3];
    for (float* corner : corners)
        vecCopy(maxs, corner);
    corners[0][h] = corners[3][h] = mins[h];
    corners[0][v] = corners[1][v] = mins[v];
    uint8_t dim[4];
    shadeColor(rgba, MOVING_DIM, dim);
    for (int i = 0; i < 4; ++i) {
        const float* next = corners[(i + 1) & 3];
        if (moving)
            m_batch.stippledLine(corners[i], next, dim);
        else
            m_batch.line(corners[i], next, rgba);
    }
}

// Six sides, counter-clockwise seen from outside.
void cMapPainter::drawBoxSolid(const float* mins, const float* maxs, const uint8_t* rgba,
                               bool shaded) {
    for (int axis = 0; axis < 3; ++axis) {
        const int u = (axis + 1) % 3, v = (axis + 2) % 3;
        for (const bool upper : {false, true}) {
            float corners[4][3];
            for (int i = 0; i < 4; ++i) {
                const int turn = upper ? i : 3 - i;
                corners[i][axis] = upper ? maxs[axis] : mins[axis];
                corners[i][u] = (turn == 1 || turn == 2) ? maxs[u] : mins[u];
                corners[i][v] = turn >= 2 ? maxs[v] : mins[v];
            }
            float normal[3] = {0, 0, 0};
            normal[axis] = upper ? 1.0f : -1.0f;
            uint8_t color[4];
            shadeColor(rgba, shaded ? shadeForNormal(normal) : 1.0f, color);
            m_batch.triangle(corners[0], corners[1], corners[2], color);
            m_batch.triangle(corners[0], corners[2], corners[3], color);
        }
    }
}

// The way an entity looks whose class has an angle: 5 quarters of the box's width long.
void cMapPainter::drawAngleArrow(const cEntityData* entity) {
    static constexpr float LENGTH = 5.0f * 0.25f;
    static constexpr float HEAD = 0.25f;
    static const uint8_t white[4] = {255, 255, 255, 255};
    const cEntityClass* entityClass = entity->entity->entityClass;
    if (m_view.isPicking() || !entityClass || !(entityClass->flags & ECF_ANGLE))
        return;
    const float width = entity->maxs[0] - entity->mins[0];
    float forward[3], right[3], center[3], tip[3];
    T_AngleVectors(entity->angles, forward, right, nullptr);
    vecAdd(entity->mins, entity->maxs, center);
    vecScale(center, 0.5f, center);
    vecMA(center, LENGTH * width, forward, tip);
    m_batch.wideLine(center, tip, white);
    for (const float side : {HEAD, -HEAD}) {
        float end[3];
        vecMA(tip, -HEAD * width, forward, end);
        vecMA(end, side * width, right, end);
        m_batch.wideLine(tip, end, white);
    }
}

// SPDX-License-Identifier: MIT
// Brushes of the map's picture: which are drawn, in what colour, and their handles.
#include "views/tMapPainter.h"

#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tFace.h"
#include "document/tGroup.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tVec.h"

static constexpr float CROSS_HALF = 3.5f;    // pixels
static constexpr float DIAMOND_HALF = 4.25f; // pixels

bool cMapPainter::isCulled(const float* mins, const float* maxs) {
    ++m_stats.culls;
    return m_view.frustum->cullBox(mins, maxs);
}

bool cMapPainter::isDetailHidden(const cBrushData* brush) const {
    return (m_view.hideMask & HM_DETAIL) && brush->faces &&
           (brush->faces->tex.contentFlags & m_view.detailContentMask);
}

static bool isInPass(bool selected, uint32_t passFlags) {
    return (passFlags & (selected ? PASS_SELECTED : PASS_UNSELECTED)) != 0;
}

bool cMapPainter::isBrushDrawn(const cBrushData* brush, uint32_t passFlags) {
    // A brush belongs to one of the two passes, so one stamp serves both.
    if (brush->lastFrame == m_view.frame || !isInPass(brush->flags & BF_SELECTED, passFlags))
        return false;
    if (m_view.isPicking() && !(m_view.pickFlags & PICK_BRUSHES))
        return false;
    if ((brush->flags & (BF_DIRTY | BF_HIDDEN)) || isDetailHidden(brush))
        return false;
    return (passFlags & PASS_INSIDE) || !isCulled(brush->mins, brush->maxs);
}

// The colour where neither selection nor texture decides: of the visgroup, of a group, the
// world brush's own, the class's.
const uint8_t* cMapPainter::brushColor(const cBrushData* brush) const {
    const cEntityData* owner = brush->owner;
    const bool ofWorld = (owner->flags & EF_WORLD) != 0;
    if (!m_view.is3D && !g_host->UseVisgroupColors)
        return ofWorld ? g_host->schemeColor(COLOR_BRUSH_DEFAULT) : owner->entity->color;
    if (!brush->brush->visGroups.isEmpty())
        return brush->brush->visGroups.first()->color;
    if (brush->group)
        return brush->group->group->drawColor;
    if (owner->group)
        return owner->group->group->drawColor;
    return ofWorld ? brush->brush->drawColor : owner->entity->color;
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

cMapPainter::cBrushLook cMapPainter::lookOf(const cBrushData* brush) const {
    cBrushLook look;
    look.selected = (brush->flags & BF_SELECTED) != 0;
    look.transparent = g_host->EntityTransparency && (brush->owner->flags & EF_TRANSPARENT) != 0;
    look.color = brushColor(brush);
    pickColor(brushPick(brush, m_view.pickMode), look.pickColor);
    return look;
}

bool cMapPainter::drawBrush(cBrushData* brush, uint32_t passFlags) {
    if (!isBrushDrawn(brush, passFlags))
        return false;
    brush->lastFrame = m_view.frame;
    ++m_stats.brushes;
    const cBrushLook look = lookOf(brush);
    m_batch.beginEdges(m_view.axisDepth);
    for (cFaceData* face : facesOf(brush))
        if (face->face->isVisible(m_view))
            drawFace(face, look);
    if (!m_view.is3D)
        drawHandle(brush, look);
    return true;
}

// The mark at a brush's centre: a cross to see, a filled diamond to hit.
void cMapPainter::drawHandle(const cBrushData* brush, const cBrushLook& look) {
    const float* center = brush->brush->center;
    if (m_view.isPicking()) {
        if (m_view.has(VF_BY_HANDLES) && m_view.pickMode != PICK_FACES)
            handleDiamond(center, look.pickColor);
        return;
    }
    const bool marked = look.selected && !(brush->flags & BF_MOVING);
    handleCross(center, g_host->schemeColor(marked ? COLOR_SELECTED_FILL : COLOR_BRUSH_HANDLE));
}

// center plus h and v on the view's axes
static void shifted(const cViewInfo& view, const float* center, float h, float v, float* out) {
    vecCopy(center, out);
    out[view.axisH] += h;
    out[view.axisV] += v;
}

void cMapPainter::handleCross(const float* center, const uint8_t* rgba) {
    const float half = CROSS_HALF * m_view.invZoom;
    float a[3], b[3];
    for (const float slope : {half, -half}) {
        shifted(m_view, center, -half, -slope, a);
        shifted(m_view, center, half, slope, b);
        m_batch.line(a, b, rgba);
    }
}

void cMapPainter::handleDiamond(const float* center, const uint8_t* rgba) {
    const float half = DIAMOND_HALF * m_view.invZoom;
    float left[3], right[3], top[3], bottom[3];
    shifted(m_view, center, -half, 0, left);
    shifted(m_view, center, half, 0, right);
    shifted(m_view, center, 0, half, top);
    shifted(m_view, center, 0, -half, bottom);
    m_batch.triangle(left, bottom, right, rgba);
    m_batch.triangle(left, right, top, rgba);
}

void shadeColor(const uint8_t* rgba, float shade, uint8_t* out) {
    for (int i = 0; i < 3; ++i)
        out[i] = uint8_t(int(float(rgba[i]) * shade));
    out[3] = rgba[3];
}

void pickColor(int number, uint8_t* rgba) {
    const uint32_t bits = number < 0 ? 0u : uint32_t(number);
    rgba[0] = uint8_t(bits);
    rgba[1] = uint8_t(bits >> 8);
    rgba[2] = uint8_t(bits >> 16);
    rgba[3] = 255;
}

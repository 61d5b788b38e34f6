// SPDX-License-Identifier: MIT
// Making brushes, their colours and whether they show.
#include "document/tBrush.h"

#include "document/tFace.h"
#include "document/tGroup.h"
#include "document/tMap.h"
#include "document/tMapContext.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tSystem.h"

cBrushData* newBrush() {
    auto* brush = static_cast<cBrushData*>(Mem_Alloc(sizeof(cBrushData)));
    brush->brush = new cBrush(brush);
    brush->flags = BF_DIRTY;
    return brush;
}

void cBrush::setBaseColor(const uint8_t* rgba) {
    memcpy(baseColor, rgba, 4);
    updateDrawColor();
}

void cBrush::updateDrawColor() {
    blendSchemeColor(baseColor, COLOR_BRUSH_RANDOM_MIN, COLOR_BRUSH_RANDOM_MAX, drawColor);
    for (cFaceData* face : facesOf(data))
        memcpy(face->face->color, drawColor, 4);
    noteChange(data);
}

bool isDetail(const cBrushData* brush) {
    const uint32_t mask = contextOf(brush).profile().detailContentMask;
    return mask && brush->faces && (brush->faces->tex.contentFlags & mask);
}

bool brushVisible(const cBrushData* brush) {
    if (brush->flags & BF_HIDDEN)
        return false;
    return !(g_host->HideMask & HM_DETAIL) || !isDetail(brush);
}

void touchBrush(cBrushData* brush) {
    brush->flags |= BF_DIRTY;
    if (brush->owner)
        brush->owner->flags |= EF_DIRTY;
}

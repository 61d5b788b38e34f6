// SPDX-License-Identifier: MIT
// What the selection tool draws over the map's picture: the box, its handles, marks, the preview.
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "tools/tToolSelect.h"
#include "views/tCanvas.h"
#include "views/tDocumentViews.h"
#include "views/tOverlay.h"

static constexpr float MARK_SIZE = 16.0f; // pixels

const cSelectionDrag* cToolSelect::dragIn(const cMap& map) const {
    return dragging() && m_drag && m_drag->isIn(map) ? m_drag.get() : nullptr;
}

const uint8_t* cToolSelect::outlineColor(const cCanvas& canvas) const {
    int color = COLOR_SELECTED_FILL;
    if (canvas.isCamera())
        color = COLOR_3D_SELECTION;
    else if (dragIn(*canvas.map()))
        color = COLOR_ACTIVE_SELECTION;
    else if (canvas.project()->selection.rubberBand)
        color = COLOR_2D_SELECTION;
    return g_host->schemeColor(color);
}

static void drawOrigins(cOverlay& overlay, const cMap& map) {
    for (const cEntityData* entity : selectedEntitiesOf(map.data))
        if (entity->flags & EF_POINT)
            overlay.square(entity->origin, MARK_SIZE, g_host->schemeColor(COLOR_SELECTED_FILL));
}

// ---- Handles

struct cHandleLook {
    bool corners;
    bool edges;
    eBulletShape corner;
    eBulletKind edgeKind;
};

static const cHandleLook s_looks[HANDLES_MODES] = {
    {true, true, BULLET_SQUARE, BULLET_VERTEX},
    {true, false, BULLET_ROUND, BULLET_VERTEX},
    {false, true, BULLET_SQUARE, BULLET_VERTEX},
    {true, true, BULLET_DIAMOND, BULLET_EDGE},
};

void cToolSelect::drawHandles(cCanvas* canvas, const cViewInfo& view, cOverlay& overlay) const {
    const cHandleLook& look = s_looks[activeMode(canvas->project()->selection)];
    for (int handle = BH_TOP_LEFT; handle <= BH_BOTTOM; ++handle) {
        const bool corner = handle <= BH_BOTTOM_RIGHT;
        if (corner ? !look.corners : !look.edges)
            continue;
        float point[3];
        boxOf(*canvas).handlePoint(view.axisH, view.axisV, handle, point);
        const cHandleShift shift = handleShift(handle);
        overlay.bullet(point, view.selectionBulletSize, shift.x, shift.y,
                       corner ? BULLET_VERTEX : look.edgeKind,
                       corner ? look.corner : BULLET_SQUARE);
    }
}

void cToolSelect::draw(cCanvas* canvas, const cViewInfo& view, cOverlay& overlay) {
    const cMap& map = *canvas->map();
    const cSelectionBox& box = boxOf(*canvas);
    const uint8_t* color = outlineColor(*canvas);
    if (!box.active || (canvas->isCamera() && !canvas->project()->selection.rubberBand))
        return;
    if (canvas->isCamera()) {
        overlay.box(box.mins, box.maxs, color);
        return;
    }
    if (const cSelectionDrag* drag = dragIn(map)) {
        drag->drawOutline(overlay, color);
        drag->drawReference(*canvas, overlay, color);
        drawOrigins(overlay, map);
        m_drag->drawPreview(*canvas, overlay);
        return;
    }
    overlay.box(box.mins, box.maxs, stippled(color));
    drawOrigins(overlay, map);
    drawHandles(canvas, view, overlay);
}

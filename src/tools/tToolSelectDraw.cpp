// SPDX-License-Identifier: MIT
// What the selection tool draws over the map's picture: the box, its handles, marks, the preview.
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "tools/tToolSelect.h"
#include "views/tCanvas.h"
#include "views/tDocumentViews.h"

static constexpr float MARK_SIZE = 16.0f; // pixels

const cSelectionDrag* cToolSelect::dragIn(const cMap& map) const {
    return dragging() && m_drag && m_drag->isIn(map) ? m_drag.get() : nullptr;
}

void cToolSelect::drawOutline(cCanvas* canvas) const {
    const cSelectionBox& box = boxOf(*canvas);
    const cSelectionDrag* drag = dragIn(*canvas->map());
    int color = COLOR_SELECTED_FILL;
    if (canvas->isCamera())
        color = COLOR_3D_SELECTION;
    else if (drag)
        color = COLOR_ACTIVE_SELECTION;
    else if (canvas->project()->selection.rubberBand)
        color = COLOR_2D_SELECTION;
    glColor4ubv(g_host->schemeColor(color));
    if (!canvas->isCamera())
        glEnable(GL_LINE_STIPPLE);
    if (drag)
        drag->drawOutline(*canvas);
    else
        canvas->drawBoxLines(box.mins, box.maxs);
    glDisable(GL_LINE_STIPPLE);
}

void cToolSelect::drawOrigins(cCanvas* canvas, const cMap& map) const {
    glColor4ubv(g_host->schemeColor(COLOR_SELECTED_FILL));
    for (const cEntityData* entity : selectedEntitiesOf(map.data))
        if (entity->flags & EF_POINT)
            canvas->drawSquareLines(entity->origin, MARK_SIZE);
}

// ---- Handles

struct cHandleLook {
    bool corners;
    bool edges;
    void (cCanvas::*corner)(const float*, float, float, float, int);
    int edgeKind;
};

static const cHandleLook s_looks[HANDLES_MODES] = {
    {true, true, &cCanvas::drawBullet, BULLET_VERTEX},
    {true, false, &cCanvas::drawRoundBullet, BULLET_VERTEX},
    {false, true, &cCanvas::drawBullet, BULLET_VERTEX},
    {true, true, &cCanvas::drawDiamondBullet, BULLET_EDGE},
};

void cToolSelect::drawHandles(cCanvas* canvas, const cViewInfo& view) const {
    const cHandleLook& look = s_looks[activeMode(canvas->project()->selection)];
    const float size = view.selectionBulletSize;
    for (int handle = BH_TOP_LEFT; handle <= BH_BOTTOM; ++handle) {
        const bool corner = handle <= BH_BOTTOM_RIGHT;
        if (corner ? !look.corners : !look.edges)
            continue;
        float point[3];
        boxOf(*canvas).handlePoint(view.axisH, view.axisV, handle, point);
        const cHandleShift shift = handleShift(handle);
        if (corner)
            (canvas->*look.corner)(point, size, shift.x, shift.y, BULLET_VERTEX);
        else
            canvas->drawBullet(point, size, shift.x, shift.y, look.edgeKind);
    }
}

void cToolSelect::draw(cCanvas* canvas, const cViewInfo& view, cDrawStats& stats) {
    cMap& map = *canvas->map();
    if (!boxOf(*canvas).active || (canvas->isCamera() && !canvas->project()->selection.rubberBand))
        return;
    drawOutline(canvas);
    if (canvas->isCamera())
        return;
    const bool drags = dragIn(map) != nullptr;
    if (drags)
        m_drag->drawReference(*canvas);
    drawOrigins(canvas, map);
    if (drags)
        m_drag->drawPreview(*canvas, stats);
    else
        drawHandles(canvas, view);
}

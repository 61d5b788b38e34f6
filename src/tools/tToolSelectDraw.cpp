// SPDX-License-Identifier: MIT
// What the selection tool draws over the map's picture: the box, its handles, marks, the preview.
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "tools/tToolSelect.h"
#include "views/tCanvas.h"
#include "views/tDocumentViews.h"

static constexpr float MARK_SIZE = 16.0f;    // pixels
static constexpr float HANDLE_OFFSET = 6.0f; // pixels off the box

void cToolSelect::drawOutline(cCanvas* canvas, const cSelectionBox& box) const {
    int color = COLOR_SELECTED_FILL;
    if (canvas->isCamera())
        color = COLOR_3D_SELECTION;
    else if (dragging)
        color = COLOR_ACTIVE_SELECTION;
    else if (rubberBand)
        color = COLOR_2D_SELECTION;
    glColor4ubv(g_host->schemeColor(color));
    if (!canvas->isCamera())
        glEnable(GL_LINE_STIPPLE);
    if (dragging && rotAxis >= 0 && shearAxis >= 0)
        canvas->drawBoxLinesTransformed(box.mins, box.maxs, rotAxis, shearAxis, box.rotation,
                                        box.shear);
    else
        canvas->drawBoxLines(box.mins, box.maxs);
    glDisable(GL_LINE_STIPPLE);
}

static bool isOnePointEntity(const cMapData& data) {
    const cEntityData* entity = data.selectedEntities;
    return entity && !entity->nextSelected && (entity->flags & EF_POINT) && !data.selectedBrushes;
}

// The point of the box that the eye may line up with others.
void cToolSelect::drawReference(cCanvas* canvas, const cMap& map, const cSelectionBox& box) const {
    float point[3];
    if (isOnePointEntity(map.data))
        box.handlePoint(canvas->axisH, canvas->axisV, BH_NONE, point);
    else
        box.nearestCorner(canvas->axisH, canvas->axisV, dragPoint, point);
    canvas->drawSquareLines(point, MARK_SIZE);
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

void cToolSelect::drawHandles(cCanvas* canvas, const cViewInfo& view,
                              const cSelectionBox& box) const {
    static const float offsets[][2] = {{0, 0},  {-1, -1}, {1, -1}, {-1, 1}, {1, 1},
                                       {-1, 0}, {1, 0},   {0, -1}, {0, 1}};
    const cHandleLook& look = s_looks[activeMode()];
    for (int handle = BH_TOP_LEFT; handle <= BH_BOTTOM; ++handle) {
        const bool corner = handle <= BH_BOTTOM_RIGHT;
        if (corner ? !look.corners : !look.edges)
            continue;
        float point[3];
        box.handlePoint(view.axisH, view.axisV, handle, point);
        const float dx = offsets[handle][0] * HANDLE_OFFSET;
        const float dy = offsets[handle][1] * HANDLE_OFFSET;
        if (corner)
            (canvas->*look.corner)(point, view.selectionBulletSize, dx, dy, BULLET_VERTEX);
        else
            canvas->drawBullet(point, view.selectionBulletSize, dx, dy, look.edgeKind);
    }
}

void cToolSelect::draw(cCanvas* canvas, const cViewInfo& view, cDrawStats& stats) {
    const cSelectionBox& box = canvas->project()->boxes[TBX_SELECTION];
    cMap& map = *canvas->map();
    if (!box.active || (canvas->isCamera() && !rubberBand))
        return;
    drawOutline(canvas, box);
    if (canvas->isCamera())
        return;
    if (dragging && overBox)
        drawReference(canvas, map, box);
    drawOrigins(canvas, map);
    if (!dragging)
        drawHandles(canvas, view, box);
    if (movingPreview && m_movingIn && m_movingIn->map() == &map)
        m_preview.draw(map, canvas->viewInfo, stats, transformRecord(*canvas, m_modifiers));
}

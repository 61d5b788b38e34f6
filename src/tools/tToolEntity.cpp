// SPDX-License-Identifier: MIT
#include "tools/tToolEntity.h"

#include "document/tEntityClass.h"
#include "document/tMap.h"
#include "operations/tDefaultRoom.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tVec.h"
#include "views/tCanvas.h"
#include "views/tDocumentViews.h"
#include "views/tOverlay.h"
#include "views/tViewHost.h"

#include <QCursor>
#include <QMenu>
#include <algorithm>

static constexpr float HOVER_MARGIN = 12; // pixels about the point
static constexpr float MARK_SIZE = 12;    // pixels

// The point is on a surface clicked in a camera view.
static bool& isOnSurface(const cCanvas& canvas) {
    return canvas.project()->entityOnSurface;
}

// ---- Cursor and menu

bool cToolEntity::setCursor(cCanvas* canvas) {
    if (canvas->isCamera())
        return false;
    const bool cross = hover && g_host->CrosshairCursor;
    canvas->setCursor(g_viewHost->toolCursor(cross ? TC_CROSS : TC_ENTITY));
    return true;
}

bool cToolEntity::contextMenu(cCanvas* canvas, int x, int y, const QPoint& globalPos) {
    if (!canvas->map())
        return false;
    if (canvas->isCamera()) {
        if (!placeOnSurface(canvas, x, y))
            return true;
    } else if (!boxOf(*canvas).active) {
        return false;
    } else if (!hover) {
        return true;
    }
    const cEntityClass* chosen = g_viewHost->currentClass();
    g_viewHost->updateEntityMenus(chosen ? chosen->name : QString(), 0);
    if (QMenu* menu = g_viewHost->popupMenu("Create"))
        menu->popup(globalPos);
    return true;
}

// ---- Keys

bool cToolEntity::escape(cCanvas* canvas) {
    cSelectionBox& box = boxOf(*canvas);
    if (box.active) {
        hover = isOnSurface(*canvas) = false;
        box.clear();
        hideText();
    } else if (clearSelectionByEscape(*canvas)) {
        hover = false;
    } else {
        return false;
    }
    canvas->updateCursor();
    showTool(*canvas);
    return true;
}

bool cToolEntity::keyPress(cCanvas* canvas, int key, Qt::KeyboardModifiers modifiers) {
    if (!canvas->map())
        return false;
    if (key == Qt::Key_Escape)
        return escape(canvas);
    if (!isApplyKey(*canvas, key))
        return false;
    hover = false;
    if (modifiers & Qt::AltModifier)
        return false;
    apply(canvas);
    return true;
}

// ---- Mouse

void cToolEntity::setPoint(cCanvas* canvas, const float* point) {
    boxOf(*canvas).setPoint(point);
    showTool(*canvas);
    showText(*canvas, BT_CENTER);
}

bool cToolEntity::mousePress(cCanvas* canvas, int x, int y, int button, Qt::KeyboardModifiers) {
    if (!canvas->map() || button != TB_LEFT)
        return false;
    if (canvas->isCamera()) {
        if (placeOnSurface(canvas, x, y))
            apply(canvas);
        return true;
    }
    if (isOnSurface(*canvas)) {
        boxOf(*canvas).clear();
        isOnSurface(*canvas) = false;
    }
    hover = canvas->leftDown = true;
    cornerPoint(*canvas, x, y, SW_SNAP | SW_DEPTH, refPoint);
    setPoint(canvas, refPoint);
    canvas->updateCursor();
    return true;
}

// False where there is no surface, or that of a point entity, in a group or not.
bool cToolEntity::placeOnSurface(cCanvas* canvas, int x, int y) {
    const int id = canvas->pickObject(x, y, PICK_ALL, PICK_OBJECTS);
    if (id < 1)
        return false;
    const cEntityData* entity = canvas->map()->findEntityByPick(id);
    float point[3];
    if ((entity && (entity->flags & EF_POINT)) || !canvas->screenToWorld(x, y, 0, point))
        return false;
    isOnSurface(*canvas) = true;
    boxOf(*canvas).setPoint(point);
    return true;
}

bool cToolEntity::mouseMove(cCanvas* canvas, int x, int y, Qt::MouseButtons,
                            Qt::KeyboardModifiers) {
    if (!canvas->map() || canvas->isCamera())
        return false;
    float point[3];
    if (canvas->leftDown) {
        cornerPoint(*canvas, x, y, SW_SNAP | SW_DEPTH, point);
        if (boxOf(*canvas).active) // else it was taken or dropped by a key
            setPoint(canvas, point);
        return true;
    }
    cornerPoint(*canvas, x, y, 0, point);
    const bool near = boxOf(*canvas).containsMargin(point, HOVER_MARGIN / canvas->zoom);
    if (near == hover)
        return false;
    hover = near;
    canvas->updateCursor();
    return true;
}

bool cToolEntity::mouseRelease(cCanvas* canvas, int, int, int button, Qt::KeyboardModifiers) {
    if (!canvas->map() || canvas->isCamera() || button != TB_LEFT)
        return false;
    canvas->updateCursor();
    showTool(*canvas);
    showText(*canvas, BT_CENTER);
    return true;
}

// ---- Creation

void cToolEntity::apply(cCanvas* canvas) {
    if (!canvas->map() || !boxOf(*canvas).active)
        return;
    cSelectionBox& box = boxOf(*canvas);
    createEntity(*canvas->map(), g_viewHost->currentClass(), box.mins, g_viewHost->randomYaw());
    hover = isOnSurface(*canvas) = false;
    box.clear();
    canvas->updateCursor();
    showTool(*canvas);
    hideText();
}

// ---- Drawing

static void drawMark(cOverlay& overlay, const float* center) {
    static constexpr float DIMMED = 0.6f;
    const uint8_t* rgba = g_host->schemeColor(COLOR_ENTITY_CREATION);
    overlay.cross(center, darker(rgba, DIMMED).data());
    overlay.square(center, MARK_SIZE, rgba);
}

// Each axis fades from its own colour, unseen at the ends, to the tool's at the point.
static void drawAxes(cOverlay& overlay, const float* center) {
    static constexpr float LONGEST = 512; // units
    static const uint8_t ends[3][4] = {{255, 0, 0, 0}, {0, 255, 0, 0}, {0, 0, 255, 0}};
    const float reach = std::min(float(g_host->MaxWorldSize) * 0.5f, LONGEST);
    const uint8_t* rgba = g_host->schemeColor(COLOR_ENTITY_CREATION);
    for (int axis = 0; axis < 3; ++axis) {
        for (const float side : {-reach, reach}) {
            float end[3];
            vecCopy(center, end);
            end[axis] += side;
            overlay.fadingLine(end, ends[axis], center, rgba);
        }
    }
}

void cToolEntity::draw(cCanvas* canvas, const cViewInfo& view, cOverlay& overlay) {
    const cSelectionBox& box = boxOf(*canvas);
    if (!box.active || isOnSurface(*canvas))
        return;
    if (!view.is3D) {
        drawMark(overlay, box.mins);
        return;
    }
    drawAxes(overlay, box.mins);
    const cEntityClass* chosen = g_viewHost->currentClass();
    const cEntityClass fallback;
    const cEntityClass& shape = chosen ? *chosen : fallback;
    float mins[3], maxs[3];
    vecAdd(box.mins, shape.mins, mins);
    vecAdd(box.mins, shape.maxs, maxs);
    overlay.box(mins, maxs, chosen ? chosen->color : g_host->schemeColor(COLOR_ENTITY_CREATION));
}

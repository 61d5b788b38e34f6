// SPDX-License-Identifier: MIT
#include "tools/tHandleTool.h"

#include "support/tHost.h"
#include "views/tCanvas.h"
#include "views/tDocumentViews.h"

#include <utility>

static constexpr float HANDLE_OFFSET = 6.0f; // pixels off the box

// ---- The press

// The box may have moved under a mouse at rest.
bool cHandleTool::mousePress(cCanvas* canvas, int x, int y, int button, Qt::KeyboardModifiers) {
    if (!canvas->map() || button != TB_LEFT)
        return false;
    breakOff(); // the release of the last one was not seen
    keepPress();
    look(canvas, x, y);
    return false;
}

bool cHandleTool::mouseDoubleClick(cCanvas* canvas, int x, int y, int button,
                                   Qt::KeyboardModifiers modifiers) {
    return cHandleTool::mousePress(canvas, x, y, button, modifiers);
}

bool cHandleTool::mouseMove(cCanvas* canvas, int x, int y, Qt::MouseButtons buttons,
                            Qt::KeyboardModifiers modifiers) {
    if (!canvas->map())
        return false;
    if (canvas->isCamera()) {
        leaveBox();
        return false;
    }
    if (isUnderWay() && (m_dragCanvas != canvas || !canvas->leftDown))
        breakOff();
    if (!(buttons & Qt::LeftButton)) {
        breakOff();
        m_press = PRESS_NONE;
        return hover(canvas, x, y);
    }
    if (isUnderWay()) {
        m_press = PRESS_DRAGS;
        dragStep(canvas, x, y, modifiers);
    } else if (m_press != PRESS_SPENT) {
        canvas->leftDown = true;
        m_dragCanvas = canvas;
        m_press = startDrag(canvas, x, y) ? PRESS_STARTS : PRESS_SPENT;
    }
    return true;
}

bool cHandleTool::mouseRelease(cCanvas* canvas, int x, int y, int button,
                               Qt::KeyboardModifiers modifiers) {
    if (button != TB_LEFT)
        return false;
    const ePress press = std::exchange(m_press, PRESS_NONE);
    if (!canvas->map() || canvas->isCamera() || press == PRESS_NONE || press == PRESS_SPENT)
        return false;
    if (press != PRESS_DRAGS)
        return click(canvas);
    finishDrag(canvas, x, y, modifiers);
    return true;
}

void cHandleTool::breakOff() {
    const bool dropped = isUnderWay();
    if (m_press != PRESS_NONE)
        m_press = PRESS_SPENT;
    if (dropped && m_dragCanvas && m_dragCanvas->map())
        dropDrag(m_dragCanvas);
}

void cHandleTool::deactivate() {
    breakOff();
    leaveBox();
}

// ---- What lies under the mouse

void cHandleTool::look(cCanvas* canvas, int x, int y) {
    leaveBox();
    if (canvas->isCamera())
        return;
    const cSelectionBox& box = boxOf(*canvas);
    const float pixel = 1.0f / canvas->zoom;
    const float offset = HANDLE_OFFSET * pixel;
    float point[3];
    boxPoint(*canvas, x, y, false, point);
    const int handle =
        box.handleAt(canvas->axisH, canvas->axisV, float(g_host->SelectionBulletSize) * pixel,
                     offset, offset, point);
    if (hasHandle(*canvas, handle))
        m_hoverHandle = handle;
    m_overBox = !m_hoverHandle && box.contains(point);
}

bool cHandleTool::hover(cCanvas* canvas, int x, int y) {
    const int handleBefore = m_hoverHandle;
    const bool overBefore = m_overBox;
    look(canvas, x, y);
    if (m_hoverHandle == handleBefore && m_overBox == overBefore)
        return false;
    canvas->updateCursor();
    return true;
}

void cHandleTool::leaveBox() {
    m_overBox = false;
    m_hoverHandle = BH_NONE;
}

// ---- Handles

cHandleShift handleShift(int handle) {
    static const cHandleShift ways[] = {{0, 0},  {-1, -1}, {1, -1}, {-1, 1}, {1, 1},
                                        {-1, 0}, {1, 0},   {0, -1}, {0, 1}};
    return {ways[handle].x * HANDLE_OFFSET, ways[handle].y * HANDLE_OFFSET};
}

Qt::CursorShape sizeCursor(int handle) {
    static const Qt::CursorShape shapes[] = {
        Qt::ArrowCursor,     Qt::SizeFDiagCursor, Qt::SizeBDiagCursor,
        Qt::SizeBDiagCursor, Qt::SizeFDiagCursor, Qt::SizeHorCursor,
        Qt::SizeHorCursor,   Qt::SizeVerCursor,   Qt::SizeVerCursor};
    return shapes[handle];
}

// SPDX-License-Identifier: MIT
// A tool whose box is dragged by its inside and by the handles around it. What a press of the left
// button does in a 2D view is told here once: the first move with the button held begins a drag,
// each further move is a step of it, the release ends it. Whatever breaks the press off leaves the
// rest of it without effect.
#pragma once

#include "tools/tBoxTool.h"

#include <QPointer>

class cHandleTool : public cBoxTool {
public:
    bool mousePress(cCanvas* canvas, int x, int y, int button,
                    Qt::KeyboardModifiers modifiers) override;
    bool mouseRelease(cCanvas* canvas, int x, int y, int button,
                      Qt::KeyboardModifiers modifiers) override;
    bool mouseDoubleClick(cCanvas* canvas, int x, int y, int button,
                          Qt::KeyboardModifiers modifiers) override;
    bool mouseMove(cCanvas* canvas, int x, int y, Qt::MouseButtons buttons,
                   Qt::KeyboardModifiers modifiers) override;
    void breakOff() override;
    void deactivate() override;

    bool dragging() const { return m_press == PRESS_DRAGS; }
    bool overBox() const { return m_overBox; }        // the mouse is inside the box
    int hoverHandle() const { return m_hoverHandle; } // under the mouse, or BH_NONE

protected:
    using cBoxTool::cBoxTool;

    // False if the press has nothing to drag.
    virtual bool startDrag(cCanvas* canvas, int x, int y) = 0;
    virtual void dragStep(cCanvas* canvas, int x, int y, Qt::KeyboardModifiers modifiers) = 0;
    virtual void finishDrag(cCanvas* canvas, int x, int y, Qt::KeyboardModifiers modifiers) = 0;
    virtual void dropDrag(cCanvas* canvas) = 0;    // it ends without a release
    virtual bool click(cCanvas*) { return false; } // a release without a drag
    virtual bool hasHandle(const cCanvas&, int /*handle*/) const { return true; }

    void look(cCanvas* canvas, int x, int y);  // at what lies under the mouse
    bool hover(cCanvas* canvas, int x, int y); // true if that has changed
    void leaveBox();
    void spendPress() { m_press = PRESS_SPENT; }
    void keepPress() { m_press = PRESS_HELD; }

private:
    enum ePress { PRESS_NONE, PRESS_HELD, PRESS_STARTS, PRESS_DRAGS, PRESS_SPENT };
    bool isUnderWay() const { return m_press == PRESS_STARTS || m_press == PRESS_DRAGS; }

    ePress m_press = PRESS_NONE;
    QPointer<cCanvas> m_dragCanvas;
    bool m_overBox = false;
    int m_hoverHandle = BH_NONE;
};

// Where a handle is drawn, in pixels off its point of the box; y downwards.
struct cHandleShift {
    float x;
    float y;
};
cHandleShift handleShift(int handle);
// The arrow along which a handle changes the size of a box.
Qt::CursorShape sizeCursor(int handle);

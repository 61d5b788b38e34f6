// SPDX-License-Identifier: MIT
// Places point entities of the current class: at a point that is set in a 2D view and taken by
// Enter, or at once on the surface that is clicked in a camera view.
#pragma once

#include "tools/tBoxTool.h"

class cToolEntity : public cBoxTool {
public:
    cToolEntity() : cBoxTool(TBX_ENTITY) {}

    bool setCursor(cCanvas* canvas) override;
    bool contextMenu(cCanvas* canvas, int x, int y, const QPoint& globalPos) override;
    bool keyPress(cCanvas* canvas, int key, Qt::KeyboardModifiers modifiers) override;
    bool mousePress(cCanvas* canvas, int x, int y, int button,
                    Qt::KeyboardModifiers modifiers) override;
    bool mouseRelease(cCanvas* canvas, int x, int y, int button,
                      Qt::KeyboardModifiers modifiers) override;
    bool mouseMove(cCanvas* canvas, int x, int y, Qt::MouseButtons buttons,
                   Qt::KeyboardModifiers modifiers) override;
    void draw(cCanvas* canvas, const cViewInfo& view, cOverlay& overlay) override;
    void apply(cCanvas* canvas) override; // the point is spent, with a class or without

    bool hover = false;     // the mouse is near the point in a 2D view, or drags it
    float refPoint[3] = {}; // where the press put the point

private:
    bool placeOnSurface(cCanvas* canvas, int x, int y);
    void setPoint(cCanvas* canvas, const float* point);
    bool escape(cCanvas* canvas);
};

// SPDX-License-Identifier: MIT
// Drags out a box in a 2D view and turns it into brushes by the current primitive. The box is the
// document's, so each document keeps its own.
#pragma once

#include "views/tTool.h"

class cSelectionBox;

class cToolBlock : public cTool {
public:
    static constexpr float DEPTH = 64; // of a new box, whatever the view

    bool setCursor(cCanvas* canvas) override;
    bool contextMenu(cCanvas* canvas, int x, int y, const QPoint& globalPos) override;
    bool keyPress(cCanvas* canvas, int key, Qt::KeyboardModifiers modifiers) override;
    bool mouseRelease(cCanvas* canvas, int x, int y, int button,
                      Qt::KeyboardModifiers modifiers) override;
    bool mouseMove(cCanvas* canvas, int x, int y, Qt::MouseButtons buttons,
                   Qt::KeyboardModifiers modifiers) override;
    void draw(cCanvas* canvas, const cViewInfo& view, cDrawStats& stats) override;
    void drawOverlay(cCanvas* canvas, const cViewInfo& view) override;
    void apply(cCanvas* canvas) override; // the box is spent, whether or not it made anything

    bool dragging = false;
    bool insideBox = false; // the mouse
    int hoverHandle = 0;
    float refPoint[3] = {}; // where the drag began; follows the mouse

private:
    bool hover(cCanvas* canvas, int x, int y);
    void dragStep(cCanvas* canvas, int x, int y);
    bool escape(cCanvas* canvas);
    void endDrag(const cCanvas& canvas);
    void showText(const cCanvas& canvas, int mode) const;
    const unsigned char* color() const;
    void drawHandles(cCanvas* canvas, const cViewInfo& view, const cSelectionBox& box) const;

    bool m_spent = false; // the box went while the button was held: the rest of the drag is void
};

// SPDX-License-Identifier: MIT
// Drags out a box in a 2D view and turns it into brushes by the current primitive. The box is the
// document's, so each document keeps its own.
#pragma once

#include "tools/tHandleTool.h"

class cToolBlock : public cHandleTool {
public:
    static constexpr float DEPTH = 64; // of a new box, whatever the view

    cToolBlock() : cHandleTool(TBX_BLOCK) {}

    bool setCursor(cCanvas* canvas) override;
    bool contextMenu(cCanvas* canvas, int x, int y, const QPoint& globalPos) override;
    bool keyPress(cCanvas* canvas, int key, Qt::KeyboardModifiers modifiers) override;
    void draw(cCanvas* canvas, const cViewInfo& view, cOverlay& overlay) override;
    void drawOverlay(cCanvas* canvas, const cViewInfo& view, cOverlay& overlay) override;
    void apply(cCanvas* canvas) override; // the box is spent, whether or not it made anything

protected:
    bool startDrag(cCanvas* canvas, int x, int y) override;
    void dragStep(cCanvas* canvas, int x, int y, Qt::KeyboardModifiers modifiers) override;
    void finishDrag(cCanvas* canvas, int x, int y, Qt::KeyboardModifiers modifiers) override;
    void dropDrag(cCanvas* canvas) override;

private:
    bool escape(cCanvas* canvas);
    const unsigned char* color() const;
    void create(cCanvas& canvas) const;
    void drawHandles(cCanvas* canvas, const cViewInfo& view, cOverlay& overlay) const;

    float m_refPoint[3] = {}; // where the drag began; follows the mouse
};

// SPDX-License-Identifier: MIT
// The default tool: picks objects, draws a rubber band, and drags the selection about by its box
// and the handles around it. A drag changes nothing in the map; the release applies what the drag
// has come to in one step of the history.
#pragma once

#include "tools/tHandleTool.h"
#include "tools/tSelectionDrag.h"

#include <memory>

class cToolSelect : public cHandleTool {
public:
    cToolSelect() : cHandleTool(TBX_SELECTION) {}

    bool setCursor(cCanvas* canvas) override;
    bool contextMenu(cCanvas* canvas, int x, int y, const QPoint& globalPos) override;
    bool keyPress(cCanvas* canvas, int key, Qt::KeyboardModifiers modifiers) override;
    bool mousePress(cCanvas* canvas, int x, int y, int button,
                    Qt::KeyboardModifiers modifiers) override;
    bool mouseDoubleClick(cCanvas* canvas, int x, int y, int button,
                          Qt::KeyboardModifiers modifiers) override;
    void draw(cCanvas* canvas, const cViewInfo& view, cOverlay& overlay) override;
    void setCanvas(cCanvas* canvas) override;

protected:
    bool startDrag(cCanvas* canvas, int x, int y) override;
    void dragStep(cCanvas* canvas, int x, int y, Qt::KeyboardModifiers modifiers) override;
    void finishDrag(cCanvas* canvas, int x, int y, Qt::KeyboardModifiers modifiers) override;
    void dropDrag(cCanvas* canvas) override;
    bool click(cCanvas* canvas) override;
    bool hasHandle(const cCanvas& canvas, int handle) const override;

private:
    // tToolSelect.cpp
    bool escape(cCanvas* canvas);
    bool selectInBand(cCanvas* canvas, Qt::KeyboardModifiers modifiers);
    void commit(const cSelectionDrag& drag, cCanvas* canvas, Qt::KeyboardModifiers modifiers);
    void measure(const cCanvas& canvas);
    // tToolSelectDraw.cpp
    const cSelectionDrag* dragIn(const cMap& map) const;
    const uint8_t* outlineColor(const cCanvas& canvas) const;
    void drawHandles(cCanvas* canvas, const cViewInfo& view, cOverlay& overlay) const;

    std::unique_ptr<cSelectionDrag> m_drag; // while one is under way
};

// The objects that the selection box of the canvas's document takes in, whatever their depth in
// that view, join the selection (eBoxMode); the box is spent and the tools are told. False
// without an active box.
bool selectWithBox(cCanvas& canvas, int boxMode);

// SPDX-License-Identifier: MIT
// What a view asks of the current tool. The tools are singletons of the main window and know
// nothing of a document: each call gets the canvas. This base does nothing and takes nothing, so
// an object of it is a tool without effect.
#pragma once

#include <QPoint>
#include <Qt>

class cCanvas;
class cOverlay;
struct cViewInfo;

// Numbers of the tools, which are also their places in cMainWindow::tools.
enum eTool {
    TOOL_SELECT,
    TOOL_MAGNIFY,
    TOOL_CAMERA,
    TOOL_ENTITY,
    TOOL_BLOCK,
    TOOL_TEXTURE,
    TOOL_DECAL,
    TOOL_CLIP,
    TOOL_VERTEX,
    TOOL_CORDON,
    TOOL_PATH,
    TOOL_COUNT
};

// The button argument of the mouse operations.
enum eToolButton { TB_LEFT = 1, TB_RIGHT = 2 };

class cTool {
public:
    virtual ~cTool() = default;

    int getId() const { return m_id; }
    void setId(int id) { m_id = id; }

    // False leaves the cursor to the canvas.
    virtual bool setCursor(cCanvas*) { return false; }
    // True if a menu was opened.
    virtual bool contextMenu(cCanvas*, int /*x*/, int /*y*/, const QPoint& /*globalPos*/) {
        return false;
    }
    // True if the tool used the event. Coordinates are pixels of the canvas.
    virtual bool keyPress(cCanvas*, int /*key*/, Qt::KeyboardModifiers) { return false; }
    virtual bool mousePress(cCanvas*, int, int, int /*button*/, Qt::KeyboardModifiers) {
        return false;
    }
    virtual bool mouseRelease(cCanvas*, int, int, int /*button*/, Qt::KeyboardModifiers) {
        return false;
    }
    virtual bool mouseDoubleClick(cCanvas*, int, int, int /*button*/, Qt::KeyboardModifiers) {
        return false;
    }
    virtual bool mouseMove(cCanvas*, int, int, Qt::MouseButtons, Qt::KeyboardModifiers) {
        return false;
    }
    virtual void draw(cCanvas*, const cViewInfo&, cOverlay&) {}        // world units
    virtual void drawOverlay(cCanvas*, const cViewInfo&, cOverlay&) {} // pixels, after that
    virtual void apply(cCanvas*) {}                                    // carry out what is prepared
    virtual void setCanvas(cCanvas*) {} // the canvas or the selection changed
    virtual void reselect() {}          // its button was pressed again while it was current
    virtual void deactivate() {}        // it stops being current
    // What a press of the mouse began ends here; the button, if it is held, does nothing more.
    virtual void breakOff() {}

private:
    int m_id = -1;
};

// What the tool shows in the views of the canvas's document is another now: the views paint again.
// A change of the map needs no such word.
void showTool(const cCanvas& canvas);

// SPDX-License-Identifier: MIT
// A tool that works on a box in the world. The box is the document's, so each document keeps its
// own while the tool is shared.
#pragma once

#include "document/tSelectionBox.h"
#include "views/tTool.h"

class cBoxTool : public cTool {
protected:
    explicit cBoxTool(eToolBox box) : m_box(box) {}

    cSelectionBox& boxOf(const cCanvas& canvas) const;
    // The world point under a pixel of a 2D view, with the depth of the box's middle while it is
    // active. snap: to the grid, or to whole units while the grid does not hold.
    void boxPoint(cCanvas& canvas, int x, int y, bool snap, float* out) const;
    // The same with the depth of the box's lower side. flags: SW_ bits.
    void cornerPoint(cCanvas& canvas, int x, int y, int flags, float* out) const;
    // What the box of the active document measures (eBoxText), while this tool is current.
    void showText(const cCanvas& canvas, int mode) const;
    void hideText() const;
    // Return or Enter in a 2D view while the box is active.
    bool isApplyKey(const cCanvas& canvas, int key) const;
    // Esc with nothing of the tool's own to give up: drops the selection if the setting says so.
    static bool clearSelectionByEscape(const cCanvas& canvas);

private:
    eToolBox m_box;
};

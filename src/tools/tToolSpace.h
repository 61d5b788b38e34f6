// SPDX-License-Identifier: MIT
// What the tools that work on a box share: where the mouse is in the world, and the cursors of
// the handles.
#pragma once

#include <Qt>

class cCanvas;
class cSelectionBox;

// The world point under a pixel of a 2D view, with the depth of the box's middle while it is
// active. snap: to the grid, or to whole units while the grid does not hold.
void boxPoint(cCanvas& canvas, const cSelectionBox& box, int x, int y, bool snap, float* out);
// Esc with nothing of the tool's own to give up: drops the selection if the setting says so.
bool clearSelectionByEscape(const cCanvas& canvas);
// Return or Enter in a 2D view while the box is active.
bool isApplyKey(const cCanvas& canvas, const cSelectionBox& box, int key);
// The arrow along which a handle changes the size of a box.
Qt::CursorShape sizeCursor(int handle);

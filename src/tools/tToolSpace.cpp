// SPDX-License-Identifier: MIT
#include "tools/tToolSpace.h"

#include "document/tMap.h"
#include "document/tSelectionBox.h"
#include "support/tHost.h"
#include "views/tCanvas.h"
#include "views/tViewHost.h"

void boxPoint(cCanvas& canvas, const cSelectionBox& box, int x, int y, bool snap, float* out) {
    const int depth = canvas.axisDepth;
    canvas.screenToWorld(x, y, snap ? int(SW_SNAP) : 0, out);
    if (box.active)
        out[depth] = (box.mins[depth] + box.maxs[depth]) * 0.5f;
}

bool isApplyKey(const cCanvas& canvas, const cSelectionBox& box, int key) {
    return (key == Qt::Key_Return || key == Qt::Key_Enter) && !canvas.isCamera() && box.active;
}

Qt::CursorShape sizeCursor(int handle) {
    static const Qt::CursorShape shapes[] = {
        Qt::ArrowCursor,     Qt::SizeFDiagCursor, Qt::SizeBDiagCursor,
        Qt::SizeBDiagCursor, Qt::SizeFDiagCursor, Qt::SizeHorCursor,
        Qt::SizeHorCursor,   Qt::SizeVerCursor,   Qt::SizeVerCursor};
    return shapes[handle];
}

bool clearSelectionByEscape(const cCanvas& canvas) {
    cMap& map = *canvas.map();
    if (!g_host->ClearSelectionOnEscape || !map.hasSelection())
        return false;
    map.clearSelection();
    g_viewHost->notifyTools();
    g_viewHost->updateUi();
    return true;
}

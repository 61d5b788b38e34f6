// SPDX-License-Identifier: MIT
#include "tools/tBoxTool.h"

#include "document/tMap.h"
#include "support/tHost.h"
#include "views/tCanvas.h"
#include "views/tDocumentViews.h"
#include "views/tViewHost.h"

static constexpr int BOX_PANE = 4;

cSelectionBox& cBoxTool::boxOf(const cCanvas& canvas) const {
    return canvas.project()->boxes[m_box];
}

void cBoxTool::boxPoint(cCanvas& canvas, int x, int y, bool snap, float* out) const {
    const cSelectionBox& box = boxOf(canvas);
    const int depth = canvas.axisDepth;
    canvas.screenToWorld(x, y, snap ? int(SW_SNAP) : 0, out);
    if (box.active)
        out[depth] = (box.mins[depth] + box.maxs[depth]) * 0.5f;
}

void cBoxTool::cornerPoint(cCanvas& canvas, int x, int y, int flags, float* out) const {
    const cSelectionBox& box = boxOf(canvas);
    canvas.screenToWorld(x, y, flags, out);
    if (box.active)
        out[canvas.axisDepth] = box.mins[canvas.axisDepth];
}

void cBoxTool::showText(const cCanvas& canvas, int mode) const {
    const cCanvas* active = g_viewHost->activeCanvas;
    if (g_viewHost->currentTool == this && active && active->project() == canvas.project())
        g_host->setStatusPane(boxOf(canvas).statusText(canvas.axisH, canvas.axisV, mode), BOX_PANE);
}

void cBoxTool::hideText() const {
    g_host->setStatusPane(QString(), BOX_PANE);
}

bool cBoxTool::isApplyKey(const cCanvas& canvas, int key) const {
    return (key == Qt::Key_Return || key == Qt::Key_Enter) && !canvas.isCamera() &&
           boxOf(canvas).active;
}

bool cBoxTool::clearSelectionByEscape(const cCanvas& canvas) {
    cMap& map = *canvas.map();
    if (!g_host->ClearSelectionOnEscape || !map.hasSelection())
        return false;
    map.clearSelection();
    return true;
}

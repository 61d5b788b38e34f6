// SPDX-License-Identifier: MIT
// The commands of the Map and View menus.
#include "resources/tGameConfigRegistry.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QAction>
#include <QStatusBar>

// ---- Toggles

// Takes the sender's check mark over; its copies in bars and pop-up menus follow.
bool cMainWindow::toggle(bool& setting) {
    const auto* action = qobject_cast<const QAction*>(sender());
    if (!action)
        return false;
    setting = action->isChecked();
    updateSettingChecks();
    return true;
}

bool cMainWindow::toggleAndRedraw(bool& setting, int mask, const char* on, const char* off) {
    if (!toggle(setting))
        return false;
    redrawAllViews(mask);
    if (on)
        statusBar()->showMessage(setting ? tr(on) : tr(off), MESSAGE_TIME);
    return true;
}

void cMainWindow::cmdMapToggleGridSnap() {
    if (toggle(SnapToGrid))
        updateSnapPane();
}

void cMainWindow::cmdMapToggleGrid() {
    toggleAndRedraw(EnableGrid2D, REDRAW_2D, nullptr, nullptr);
}

void cMainWindow::cmdMapToggleGrid3D() {
    toggleAndRedraw(EnableGrid3D, REDRAW_3D, nullptr, nullptr);
}

void cMainWindow::cmdViewToggleConnections() {
    toggleAndRedraw(ShowConnections, REDRAW_ALL, "Entity connections on", "Entity connections off");
}

void cMainWindow::cmdViewToggleModels2D() {
    toggleAndRedraw(DrawModels, REDRAW_2D, "2D rendition of models on",
                    "2D rendition of models off");
}

void cMainWindow::cmdViewToggleNodraw() {
    toggleAndRedraw(DrawNoDraw, REDRAW_3D, "3D rendition of nodraw faces on",
                    "3D rendition of nodraw faces off");
}

void cMainWindow::cmdViewToggleTexTrans() {
    toggleAndRedraw(TextureTransparency, REDRAW_3D, "Transparency of special textures on",
                    "Transparency of special textures off");
}

void cMainWindow::cmdViewToggleEntTrans() {
    toggleAndRedraw(EntityTransparency, REDRAW_3D, "Transparency of entities on",
                    "Transparency of entities off");
}

void cMainWindow::toggleHideBit(int bit) {
    const auto* action = qobject_cast<const QAction*>(sender());
    if (!action)
        return;
    const bool hidden = action->isChecked();
    HideMask = hidden ? HideMask | bit : HideMask & ~bit;
    updateSettingChecks();
    if (hidden)
        dropHiddenEverywhere();
    redrawAllViews(REDRAW_ALL);
}

void cMainWindow::cmdViewToggleItems() {
    toggleHideBit(HM_ITEMS);
}

void cMainWindow::cmdViewTogglePaths() {
    toggleHideBit(HM_PATHS);
}

void cMainWindow::cmdViewToggleDetail() {
    toggleHideBit(HM_DETAIL);
}

// ---- Grid

void cMainWindow::cmdMapSmallerGrid() {
    setGridSize(gridSize / 2);
}

void cMainWindow::cmdMapBiggerGrid() {
    setGridSize(gridSize * 2);
}

// ---- View types

void cMainWindow::setViewType(int type, int mode) {
    if (cCanvas* canvas = commandCanvas()) {
        canvas->setViewType(type, mode);
        canvas->requestRedraw(true);
    }
}

void cMainWindow::cmdView2DXY() {
    setViewType(VIEW_TOP, -1);
}

void cMainWindow::cmdView2DYZ() {
    setViewType(VIEW_FRONT, -1);
}

void cMainWindow::cmdView2DXZ() {
    setViewType(VIEW_SIDE, -1);
}

void cMainWindow::cmdView3DWireframe() {
    setViewType(VIEW_CAMERA, RM_WIREFRAME);
}

void cMainWindow::cmdView3DFilled() {
    setViewType(VIEW_CAMERA, RM_FILLED);
}

void cMainWindow::cmdView3DTextured() {
    setViewType(VIEW_CAMERA, RM_TEXTURED);
}

void cMainWindow::cmdViewAutosize() {
    if (cChildWindow* child = activeChild())
        child->autosize();
}

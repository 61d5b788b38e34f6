// SPDX-License-Identifier: MIT
// The commands of the Map and View menus.
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

// ---- View types

static void setViewType(const cMainWindow& window, int type, int mode) {
    if (cCanvas* canvas = window.commandCanvas())
        canvas->setViewType(type, mode);
}

void cMainWindow::cmdView2DXY() {
    setViewType(*this, VIEW_TOP, -1);
}

void cMainWindow::cmdView2DYZ() {
    setViewType(*this, VIEW_FRONT, -1);
}

void cMainWindow::cmdView2DXZ() {
    setViewType(*this, VIEW_SIDE, -1);
}

void cMainWindow::cmdView3DWireframe() {
    setViewType(*this, VIEW_CAMERA, RM_WIREFRAME);
}

void cMainWindow::cmdView3DFilled() {
    setViewType(*this, VIEW_CAMERA, RM_FILLED);
}

void cMainWindow::cmdView3DTextured() {
    setViewType(*this, VIEW_CAMERA, RM_TEXTURED);
}

void cMainWindow::cmdViewAutosize() {
    if (cChildWindow* child = activeChild())
        child->autosize();
}

// SPDX-License-Identifier: MIT
// Commands that move, turn or mirror the selection, or select by the box of the selection tool.
#include "shell/tMainWindow.h"

void cMainWindow::cmdToolsFlipHorz() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdToolsFlipVert() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdToolsAlignLeft() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdToolsAlignRight() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdToolsAlignTop() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdToolsAlignBottom() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdToolsSnapToGrid() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdToolsSnapToGrid2() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdToolsTransform() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdEditSelectTouching() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdEditSelectInside() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdEditSelectHandles() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdViewCenterOnSelection() {
    msgFeatureUnderDevelopment();
}

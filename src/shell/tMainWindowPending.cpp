// SPDX-License-Identifier: MIT
// Commands whose dialogs and operations are not there yet. Each tells so under its own name.
#include "shell/tMainWindow.h"

void cMainWindow::cmdFileRun() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdMapGotoBrush() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdMapGotoCoords() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdMapShowInfo() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdMapEntityReport() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdMapCheckForProblems() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdMapProperties() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdMapLoadPointfile() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdMapUnloadPointfile() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdMapLoadPortalfile() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdMapUnloadPortalfile() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdToolsCarve() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdToolsMerge() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdToolsHollow() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdToolsTextureReplace() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdToolsTextureAlignToView() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdToolsOptions() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::toolApplyTexture() {
    msgFeatureUnderDevelopment();
}

void cMainWindow::cmdHelpAbout() {
    msgFeatureUnderDevelopment();
}

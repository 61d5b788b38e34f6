// SPDX-License-Identifier: MIT
// The commands that choose a tool, and what leaving the face mode means.
#include "shell/tMainWindow.h"
#include "shell/tObjectsDock.h"
#include "shell/tProject.h"
#include "shell/tToolSwitch.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QMessageBox>

// ---- Switching

void cMainWindow::showTool() {
    for (cProject* project : projects)
        for (const cChildWindow* window : project->windows)
            for (cCanvas* canvas : window->canvases)
                canvas->updateCursor();
    redrawAllViews(REDRAW_ALL);
    updateBoxPane();
    updateCommands();
}

void cMainWindow::setTool(int id) {
    static void (cMainWindow::*const commands[TOOL_COUNT])() = {
        &cMainWindow::toolSelect,
        &cMainWindow::toolMagnify,
        &cMainWindow::toolCamera,
        &cMainWindow::toolEntity,
        &cMainWindow::toolBrush,
        &cMainWindow::toolTextureApplication,
        &cMainWindow::toolApplyDecals,
        &cMainWindow::toolClipper,
        &cMainWindow::toolVertexManipulation,
        &cMainWindow::toolCordon,
        &cMainWindow::toolPath,
    };
    if (id >= 0 && id < TOOL_COUNT)
        (this->*commands[id])();
}

void cMainWindow::toolSelect() {
    if (currentToolId() == TOOL_TEXTURE)
        leaveFaceMode();
    m_tools->switchTo(TOOL_SELECT);
}

void cMainWindow::toolMagnify() {
    m_tools->switchForAWhile(TOOL_MAGNIFY);
}

void cMainWindow::toolCamera() {
    m_tools->switchForAWhile(TOOL_CAMERA);
}

void cMainWindow::toolEntity() {
    if (activeChild() && m_objectsDock->pointClassNames().isEmpty()) {
        QMessageBox::warning(this, QStringLiteral("Karvex"),
                             tr("There are no point entities in current game data!\n"
                                "Entity Tool is not available."));
        toolBrush();
        return;
    }
    leaveFaceMode();
    m_tools->switchTo(TOOL_ENTITY);
}

void cMainWindow::toolBrush() {
    leaveFaceMode();
    m_tools->switchTo(TOOL_BLOCK);
}

// A tool that is not built yet takes its place all the same, and says so.
void cMainWindow::setPendingTool(int id) {
    leaveFaceMode();
    m_tools->switchTo(id);
    msgFeatureUnderDevelopment();
}

void cMainWindow::toolApplyDecals() {
    setPendingTool(TOOL_DECAL);
}

void cMainWindow::toolClipper() {
    setPendingTool(TOOL_CLIP);
}

void cMainWindow::toolVertexManipulation() {
    setPendingTool(TOOL_VERTEX);
}

void cMainWindow::toolCordon() {
    setPendingTool(TOOL_CORDON);
}

void cMainWindow::toolPath() {
    setPendingTool(TOOL_PATH);
}

// ---- Face mode

void cMainWindow::toolTextureApplication() {
    if (currentToolId() == TOOL_TEXTURE) {
        leaveFaceMode();
        return;
    }
    m_tools->switchTo(TOOL_TEXTURE);
    if (cProject* project = activeProject())
        project->map->clearSelection();
    msgFeatureUnderDevelopment();
}

void cMainWindow::leaveFaceMode() {
    if (!KeepHideMask) {
        cSettings after = *this;
        after.HideMask &= ~HM_FACE_MASK;
        applySettings(after);
    }
    if (currentToolId() != TOOL_TEXTURE)
        return;
    m_tools->switchTo(TOOL_SELECT);
    for (cProject* project : qAsConst(projects))
        project->map->clearSelection();
}

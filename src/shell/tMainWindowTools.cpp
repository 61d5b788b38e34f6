// SPDX-License-Identifier: MIT
// The current tool: how one takes another's place, temporary tools that let another go on
// drawing, and the commands of the Tools menu that only set how tools work.
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QAction>
#include <QMessageBox>
#include <QStatusBar>

// What happens when the button of the current tool is pressed again.
static bool reselects(int id) {
    return id == TOOL_CLIP || id == TOOL_VERTEX;
}

// ---- Switching

void cMainWindow::refreshToolViews() {
    for (cProject* project : projects)
        for (const cChildWindow* window : project->windows)
            for (cCanvas* canvas : window->canvases)
                canvas->updateCursor();
    redrawAllViews(REDRAW_ALL);
    updateToolActions();
}

void cMainWindow::endSuspendedTool(int next) {
    if (suspendedTool && suspendedTool->getId() != next)
        suspendedTool->deactivate();
    suspendedTool = nullptr;
}

// The tool that loses its place finishes its work.
void cMainWindow::makeCurrent(int id) {
    cTool* tool = tools[size_t(id)].get();
    if (tool == currentTool)
        return;
    if (currentTool)
        currentTool->deactivate();
    currentTool = tool;
}

void cMainWindow::setTool(int id) {
    static const cCommandSlot commands[TOOL_COUNT] = {
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

void cMainWindow::switchTool(int id) {
    leaveFaceMode();
    endSuspendedTool(id);
    if (currentToolId() == id) {
        if (reselects(id))
            currentTool->reselect();
    } else {
        makeCurrent(id);
    }
    refreshToolViews();
}

void cMainWindow::setTemporaryTool(int id) {
    const int current = currentToolId();
    if (current != TOOL_SELECT && current != TOOL_MAGNIFY && current != TOOL_CAMERA)
        suspendedTool = currentTool;
    if (currentTool)
        currentTool->breakOff();
    currentTool = tools[size_t(id)].get();
    refreshToolViews();
}

void cMainWindow::toolSelect() {
    if (currentToolId() == TOOL_TEXTURE)
        leaveFaceMode();
    endSuspendedTool(TOOL_SELECT);
    makeCurrent(TOOL_SELECT);
    refreshToolViews();
}

void cMainWindow::toolMagnify() {
    setTemporaryTool(TOOL_MAGNIFY);
}

void cMainWindow::toolCamera() {
    setTemporaryTool(TOOL_CAMERA);
}

// A tool that is not built yet takes its place all the same, and says so.
void cMainWindow::setPendingTool(int id) {
    switchTool(id);
    msgFeatureUnderDevelopment();
}

void cMainWindow::toolEntity() {
    if (activeChild() && pointClassNames().isEmpty()) {
        QMessageBox::warning(this, QStringLiteral("Karvex"),
                             tr("There are no point entities in current game data!\n"
                                "Entity Tool is not available."));
        toolBrush();
        return;
    }
    switchTool(TOOL_ENTITY);
}

void cMainWindow::toolBrush() {
    switchTool(TOOL_BLOCK);
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
        refreshToolViews();
        return;
    }
    endSuspendedTool(TOOL_TEXTURE);
    makeCurrent(TOOL_TEXTURE);
    if (cProject* project = activeProject())
        project->map->clearSelection();
    refreshToolViews();
    msgFeatureUnderDevelopment();
}

void cMainWindow::leaveFaceMode() {
    if (!KeepHideMask)
        HideMask &= ~HM_FACE_MASK;
    if (currentToolId() != TOOL_TEXTURE)
        return;
    makeCurrent(TOOL_SELECT);
    for (cProject* project : projects)
        project->map->clearSelection();
}

// ---- How tools work

void cMainWindow::cmdToolsTextureLock() {
    toggleAndRedraw(TextureLock, 0, "Texture locking on", "Texture locking off");
}

void cMainWindow::cmdToolsTextureLockScale() {
    toggleAndRedraw(TextureLockScale, 0, "Texture locking (scale) on",
                    "Texture locking (scale) off");
}

void cMainWindow::cmdToolsTextureAlignment() {
    toggle(TextureFaceAlign);
}

// Checked means that nothing restricts the tool.
void cMainWindow::cmdToolsToggleVertexRes() {
    const auto* action = qobject_cast<const QAction*>(sender());
    if (!action)
        return;
    VertexToolRestrict = !action->isChecked();
    updateSettingChecks();
    statusBar()->showMessage(VertexToolRestrict ? tr("Vertex manipulation restrictions on")
                                                : tr("Vertex manipulation restrictions off"),
                             MESSAGE_TIME);
}

void cMainWindow::cmdToolsCordon() {
    toggleAndRedraw(EnableCordon, REDRAW_ALL, nullptr, nullptr);
}

void cMainWindow::cmdToolsIgnoreGroups() {
    if (!toggle(IgnoreGroups))
        return;
    cProject* project = activeProject();
    if (project) {
        project->map->updateSelectionMode();
        project->map->clearSelectionFull();
    }
    updateActionStates(AS_GROUP);
}

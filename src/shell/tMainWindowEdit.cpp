// SPDX-License-Identifier: MIT
// The commands of the Edit menu: history, deletion, what is selected.
#include "document/tHistory.h"
#include "operations/tStructure.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"

#include <QAction>
#include <QComboBox>
#include <QMessageBox>

// ---- History

bool cMainWindow::confirmLeaveMorph(const QString& question) {
    const bool morphs =
        currentToolId() == TOOL_VERTEX || (suspendedTool && suspendedTool->getId() == TOOL_VERTEX);
    if (!morphs)
        return true;
    const auto answer = QMessageBox::warning(this, QStringLiteral("Karvex"), question,
                                             QMessageBox::Yes | QMessageBox::No);
    if (answer != QMessageBox::Yes)
        return false;
    toolSelect();
    return true;
}

bool cMainWindow::confirmLeaveMorph() {
    return confirmLeaveMorph(tr("You must exit morph mode to perform this operation.\n"
                                "Do you want to do this now?"));
}

void cMainWindow::cmdEditUndo() {
    cProject* project = activeProject();
    if (!project || !project->map->history->canUndo())
        return;
    if (!confirmLeaveMorph(tr("You must exit morph mode to undo changes you've made.\n"
                              "Do you want to do this now?")))
        return;
    project->map->history->undo();
}

void cMainWindow::cmdEditRedo() {
    cProject* project = activeProject();
    if (!project || !project->map->history->canRedo())
        return;
    if (!confirmLeaveMorph(tr("You must exit morph mode to redo some actions.\n"
                              "Do you want to do this now?")))
        return;
    project->map->history->redo();
}

void cMainWindow::cmdEditToggleUndoRedo() {
    if (projects.isEmpty())
        return;
    const bool wasEnabled = projects.first()->map->history->isEnabled();
    for (cProject* project : projects)
        project->map->history->setEnabled(!wasEnabled);
    updateActionStates(AS_UNDO);
}

// ---- Selection

void cMainWindow::cmdEditDelete() {
    cProject* project = activeProject();
    if (!project || !project->map->hasSelection())
        return;
    deleteSelection(*project->map);
}

void cMainWindow::cmdEditSelectNone() {
    if (cProject* project = activeProject())
        project->map->clearSelection();
}

void cMainWindow::cmdEditSelectAll() {
    if (cProject* project = activeProject())
        project->map->selectAll();
}

void cMainWindow::cmdEditSelectByHandles() {
    toggle(SelectByHandles);
}

void cMainWindow::cmdEditSelectAuto() {
    toggle(SelectAuto);
}

// ---- Objects

void cMainWindow::cmdEditCreateObject() {
    if (cCanvas* canvas = currentTool ? commandCanvas() : nullptr)
        currentTool->apply(canvas);
}

void cMainWindow::cmdEditCreateObjectEx() {
    const auto* action = qobject_cast<const QAction*>(sender());
    if (!action || !activeChild() || !currentTool)
        return;
    const int listed = m_listedTool == TOOL_ENTITY ? m_objects->findText(action->text()) : -1;
    if (listed >= 0)
        m_objects->setCurrentIndex(listed);
    currentClassName = action->text();
    currentClassStale = true;
    cmdEditCreateObject();
}

void cMainWindow::cmdEditProperties() {
    if (activeChild() && currentToolId() != TOOL_TEXTURE)
        msgFeatureUnderDevelopment();
}

void cMainWindow::openObjectProperties() {
    for (QAction* action : actions) {
        if (action->objectName() == QLatin1String("EditProps")) {
            action->trigger();
            return;
        }
    }
}

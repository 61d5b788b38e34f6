// SPDX-License-Identifier: MIT
// The commands of the Edit menu: history, deletion, what is selected.
#include "document/tHistory.h"
#include "operations/tStructure.h"
#include "shell/tCommandMenus.h"
#include "shell/tMainWindow.h"
#include "shell/tObjectsDock.h"
#include "shell/tProject.h"
#include "shell/tToolSwitch.h"
#include "views/tTool.h"

#include <QAction>
#include <QMessageBox>

// ---- History

bool cMainWindow::confirmLeaveMorph(const QString& question) {
    if (!m_tools->isInUse(TOOL_VERTEX))
        return true;
    const QString usual = tr("You must exit morph mode to perform this operation.\n"
                             "Do you want to do this now?");
    const auto answer =
        QMessageBox::warning(this, QStringLiteral("Karvex"), question.isEmpty() ? usual : question,
                             QMessageBox::Yes | QMessageBox::No);
    if (answer != QMessageBox::Yes)
        return false;
    toolSelect();
    return true;
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
    updateCommands();
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

// ---- Objects

void cMainWindow::cmdEditCreateObject() {
    if (cCanvas* canvas = currentTool ? commandCanvas() : nullptr)
        currentTool->apply(canvas);
}

void cMainWindow::cmdEditCreateObjectEx() {
    const auto* action = qobject_cast<const QAction*>(sender());
    if (!action || !activeChild() || !currentTool)
        return;
    m_objectsDock->chooseClass(action->text());
    cmdEditCreateObject();
}

void cMainWindow::cmdEditProperties() {
    if (activeChild() && currentToolId() != TOOL_TEXTURE)
        msgFeatureUnderDevelopment();
}

void cMainWindow::openObjectProperties() {
    for (QAction* action : m_menus->actions) {
        if (action->objectName() == QLatin1String("EditProps")) {
            action->trigger();
            return;
        }
    }
}

// SPDX-License-Identifier: MIT
// The commands of groups, of hiding by hand, and of what moves the selection between entities.
#include "document/tMap.h"
#include "operations/tStructure.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "shell/tTieToEntity.h"
#include "support/tConsole.h"

#include <QAction>
#include <QMessageBox>

// ---- Groups

// The map whose selection can be grouped now, or null, with the reason on the console.
static cMap* mapToGroup(const cMainWindow& window, const char* refusal) {
    const cProject* project = window.activeProject();
    if (!project)
        return nullptr;
    cMap& map = *project->map;
    if (!map.data.selectedBrushes && !map.data.selectedEntities)
        return nullptr;
    if (map.updateSelectionMode() == MODE_GROUPS)
        return &map;
    Warning("%s", refusal);
    return nullptr;
}

void cMainWindow::cmdToolsGroup() {
    cMap* map = mapToGroup(*this, "cannot group objects in group ignore mode");
    if (!map)
        return;
    if (!groupSelection(*map))
        Warning("cannot group objects that already belong to the same group");
}

void cMainWindow::cmdToolsUngroup() {
    if (cMap* map = mapToGroup(*this, "cannot ungroup objects in group ignore mode"))
        ungroupSelection(*map);
}

// ---- Entities and detail

void cMainWindow::cmdToolsMoveToWorld() {
    cProject* project = activeProject();
    if (!project || !project->map->data.selectedBrushes)
        return;
    moveSelectionToWorld(*project->map);
}

static void setDetail(cMainWindow& window, bool detail) {
    const cProject* project = window.activeProject();
    if (!project)
        return;
    if (!project->game.profile().detailContentMask) {
        Error("CONTENTS_DETAIL is not supported by the current profile!");
        return;
    }
    if (!project->map->data.selectedBrushes) {
        QMessageBox::warning(&window, QStringLiteral("Karvex"),
                             cMainWindow::tr("There are no eligible selected objects."));
        return;
    }
    if (setSelectionDetail(*project->map, detail) && detail && (window.HideMask & HM_DETAIL))
        project->map->dropHidden();
}

void cMainWindow::cmdToolsMakeStructural() {
    setDetail(*this, false);
}

void cMainWindow::cmdToolsMakeDetail() {
    setDetail(*this, true);
}

void cMainWindow::cmdToolsTieToEntity() {
    m_tieToEntity->run(QString());
}

void cMainWindow::cmdToolsTieToEntityEx() {
    if (const auto* action = qobject_cast<const QAction*>(sender()))
        m_tieToEntity->run(action->text());
}

// ---- Hiding by hand

void cMainWindow::cmdViewHideSelection() {
    if (const cProject* project = activeProject())
        project->map->hideSelection();
}

void cMainWindow::cmdViewHideNotSelection() {
    if (const cProject* project = activeProject())
        project->map->hideUnselected();
}

void cMainWindow::cmdViewShowHidden() {
    const cProject* project = activeProject();
    if (!project)
        return;
    const cMap::cRevealed shown = project->map->showHidden();
    if (!shown.total()) {
        QMessageBox::warning(this, QStringLiteral("Karvex"), tr("There are no hidden objects."));
        return;
    }
    Print("%i object(s) revealed (%i entities, %i brushes and %i groups)", shown.total(),
          shown.entities, shown.brushes, shown.groups);
}

// SPDX-License-Identifier: MIT
// Groups, visgroups, hiding by hand, and what moves the selection between entities: the commands,
// and the Filter Control dock.
#include "dialogs/tEditGroupsDialog.h"
#include "document/tMap.h"
#include "document/tVisGroup.h"
#include "operations/tStructure.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "shell/tVisGroupList.h"
#include "support/tConsole.h"

#include <QDockWidget>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

// ---- Groups

// The map whose selection can be grouped now, or null, with the reason on the console.
cMap* cMainWindow::mapToGroup(const char* refusal) const {
    const cProject* project = activeProject();
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
    cMap* map = mapToGroup("cannot group objects in group ignore mode");
    if (!map)
        return;
    if (!groupSelection(*map))
        Warning("cannot group objects that already belong to the same group");
}

void cMainWindow::cmdToolsUngroup() {
    if (cMap* map = mapToGroup("cannot ungroup objects in group ignore mode"))
        ungroupSelection(*map);
}

// ---- Entities and detail

void cMainWindow::cmdToolsMoveToWorld() {
    cProject* project = activeProject();
    if (!project || !project->map->data.selectedBrushes)
        return;
    moveSelectionToWorld(*project->map);
}

void cMainWindow::setDetail(bool detail) {
    const cProject* project = activeProject();
    if (!project)
        return;
    if (!project->game.profile().detailContentMask) {
        Error("CONTENTS_DETAIL is not supported by the current profile!");
        return;
    }
    if (!project->map->data.selectedBrushes) {
        QMessageBox::warning(this, QStringLiteral("Karvex"),
                             tr("There are no eligible selected objects."));
        return;
    }
    if (!setSelectionDetail(*project->map, detail))
        return;
    if (detail && (HideMask & HM_DETAIL))
        dropHiddenEverywhere();
}

void cMainWindow::cmdToolsMakeStructural() {
    setDetail(false);
}

void cMainWindow::cmdToolsMakeDetail() {
    setDetail(true);
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

void cMainWindow::dropHiddenEverywhere() {
    for (cProject* project : projects)
        project->map->dropHidden();
}

// ---- The dock

static QPushButton* dockButton(const QString& text, const char* name, QWidget* parent) {
    auto* button = new QPushButton(text, parent);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

// Mnemonics that a menu or a command has already are left out.
void cMainWindow::createVisGroupDock() {
    auto* panel = new QWidget;
    auto* label = new QLabel(tr("VisGroups:"), panel);
    m_visGroups = new QVisGroupList(panel);
    m_visGroups->setObjectName(QStringLiteral("lstVisGroups"));
    label->setBuddy(m_visGroups);
    m_btnAssign = dockButton(tr("&Assign"), "btnAssign", panel);
    auto* edit = dockButton(tr("Edit"), "btnEdit", panel);
    m_btnMark = dockButton(tr("Mark"), "btnMark", panel);
    auto* purge = dockButton(tr("Purge"), "btnPurge", panel);
    m_visGroupWidgets = {label, m_visGroups, m_btnAssign, edit, m_btnMark, purge};

    auto* layout = new QGridLayout(panel);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    layout->addWidget(label, 0, 0, 1, 2);
    layout->addWidget(m_visGroups, 1, 0, 1, 2);
    layout->addWidget(m_btnAssign, 2, 0);
    layout->addWidget(edit, 2, 1);
    layout->addWidget(m_btnMark, 3, 0);
    layout->addWidget(purge, 3, 1);

    addDock(tr("Filter Control"), "visgroups", panel, Qt::RightDockWidgetArea,
            Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    connect(m_btnAssign, &QPushButton::clicked, this, &cMainWindow::assignVisGroup);
    connect(edit, &QPushButton::clicked, this, &cMainWindow::editVisGroups);
    connect(m_btnMark, &QPushButton::clicked, this, &cMainWindow::markVisGroup);
    connect(purge, &QPushButton::clicked, this, &cMainWindow::purgeVisGroups);
    connect(m_visGroups, &QListWidget::currentItemChanged, this, &cMainWindow::selectVisGroup);
    connect(m_visGroups, &QListWidget::itemDoubleClicked, this, &cMainWindow::changeVisGroupVis);
    connect(m_visGroups, &QVisGroupList::iconClicked, this, &cMainWindow::changeVisGroupVis);
    connect(m_visGroups, &QVisGroupList::mergeRequested, this, &cMainWindow::mergeVisGroups);
}

// ---- The list

void cMainWindow::rebuildVisGroupList() {
    const cProject* project = activeProject();
    m_visGroups->rebuild(project ? project->map.get() : nullptr);
    for (QWidget* widget : m_visGroupWidgets)
        widget->setEnabled(project != nullptr);
    selectVisGroup(m_visGroups->currentItem());
}

// What these two buttons do needs a visgroup.
void cMainWindow::selectVisGroup(QListWidgetItem* item) {
    const bool enabled = item && activeChild();
    m_btnAssign->setEnabled(enabled);
    m_btnMark->setEnabled(enabled);
}

void cMainWindow::changeVisGroupVis(QListWidgetItem* item) {
    const cProject* project = activeProject();
    if (!item || !project)
        return;
    cMap& map = *project->map;
    if (cVisGroup* group = map.findVisGroup(item->data(QVisGroupList::ID_ROLE).toUInt()))
        map.setVisGroupVisible(group);
}

void cMainWindow::mergeVisGroups(QListWidgetItem* source, QListWidgetItem* target) {
    const cProject* project = activeProject();
    if (!source || !target || !project)
        return;
    const uint32_t sourceId = source->data(QVisGroupList::ID_ROLE).toUInt();
    const uint32_t targetId = target->data(QVisGroupList::ID_ROLE).toUInt();
    project->map->mergeVisGroups(sourceId, targetId); // the target stays current
}

// ---- The buttons

void cMainWindow::assignVisGroup() {
    if (const cProject* project = activeProject())
        project->map->assignVisGroup(m_visGroups->currentId());
}

void cMainWindow::markVisGroup() {
    if (const cProject* project = activeProject())
        project->map->markVisGroup(m_visGroups->currentId());
}

void cMainWindow::purgeVisGroups() {
    const cProject* project = activeProject();
    if (!project)
        return;
    const cVisGroup* current = project->map->findVisGroup(m_visGroups->currentId());
    const uint32_t serial = current ? current->serial : 0;
    if (!project->map->purgeVisGroups())
        return;
    current = project->map->findVisGroupBySerial(serial); // those that stay have new ids
    m_visGroups->rebuild(project->map.get(), current ? current->id : 0);
    selectVisGroup(m_visGroups->currentItem());
}

void cMainWindow::editVisGroups() {
    const cProject* project = activeProject();
    if (!project)
        return;
    cEditGroupsDialog(*project->map, m_visGroups->currentId(), this).exec();
}

// SPDX-License-Identifier: MIT
#include "shell/tTieToEntity.h"

#include "dialogs/tEntityListDialog.h"
#include "operations/tStructure.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "shell/tServices.h"
#include "support/tMapText.h"

#include <QMessageBox>

static const QString PROGRAM_NAME = QStringLiteral("Karvex");

// The window of an object's keys, or null.
QWidget* cTieToEntity::propertiesWindow() const {
    return m_window.findChild<QWidget*>(QStringLiteral("cObjectPropertiesDialog"));
}

QWidget* cTieToEntity::boxParent() const {
    QWidget* properties = propertiesWindow();
    return properties && properties->isVisible() ? properties : &m_window;
}

cTieToEntity::~cTieToEntity() {
    delete m_list;
}

void cTieToEntity::run(const QString& name) {
    if (!name.isEmpty())
        m_className = name;
    const cProject* project = m_window.activeProject();
    if (project && canTie(*project->map) && confirmDeselectPoints(*project->map))
        chooseTarget(*project->map);
    if (!m_list || !m_list->isVisible()) // else it goes on with the name
        m_className.clear();
}

void cTieToEntity::forget(const cProject& project) {
    if (&project != m_project)
        return;
    delete m_list;
    m_className.clear();
    m_project = nullptr;
}

// With a class to make an entity of, and brushes for it.
bool cTieToEntity::canTie(cMap& map) {
    if (m_className.isEmpty() && m_window.services().configs.current)
        m_className = m_window.services().configs.current->defaultSolidClass;
    if (m_className.isEmpty()) {
        QMessageBox::warning(boxParent(), PROGRAM_NAME,
                             cMainWindow::tr("There are no solid entities in current game data!\n"
                                             "TieToEntity function is not available."));
        return false;
    }
    if (!map.data.selectedBrushes) {
        QMessageBox::warning(boxParent(), PROGRAM_NAME,
                             cMainWindow::tr("There are no eligible selected objects."));
        return false;
    }
    return true;
}

bool cTieToEntity::confirmDeselectPoints(cMap& map) {
    const int points = countSelectedPoints(map);
    if (!points)
        return true;
    const auto answer = QMessageBox::question(
        boxParent(), PROGRAM_NAME,
        cMainWindow::tr("There are %1 point entities selected.\n"
                        "They will be deselected before the solids are tied to an entity.\n"
                        "Do you wish to continue?")
            .arg(points),
        QMessageBox::Yes | QMessageBox::No);
    if (answer != QMessageBox::Yes)
        return false;
    deselectPoints(map);
    return true;
}

// ---- Which entity

void cTieToEntity::chooseTarget(cMap& map) {
    delete m_list;
    const std::vector<cEntityData*> owners = ownersOfSelection(map);
    if (owners.empty())
        tie(map, nullptr);
    else if (owners.size() == 1)
        confirmTarget(map, owners.front());
    else
        listTargets(owners);
}

void cTieToEntity::confirmTarget(cMap& map, cEntityData* owner) {
    const uint32_t id = owner->id; // events run while the question is up
    const auto answer = QMessageBox::question(
        boxParent(), PROGRAM_NAME,
        cMainWindow::tr("You have selected an existing entity (a '%1').\n"
                        "Would you like to add the selected solids to the existing entity?\n"
                        "If you select 'No', a new entity ('%2') will be created.")
            .arg(fromMapText(owner->classname), m_className),
        QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    if (answer == QMessageBox::Yes)
        tie(map, map.findEntityById(id));
    else if (answer == QMessageBox::No)
        tie(map, nullptr);
}

void cTieToEntity::listTargets(const std::vector<cEntityData*>& owners) {
    m_project = m_window.activeProject();
    m_list = new cEntityListDialog(&m_window);
    for (const cEntityData* owner : owners)
        m_list->addEntity(fromMapText(owner->classname), owner->id);
    connect(m_list, &QDialog::accepted, this, &cTieToEntity::tieToListed);
    connect(m_list, &QDialog::rejected, this, &cTieToEntity::cancel);
    connect(m_list, &QDialog::finished, m_list, &QObject::deleteLater);
    if (QWidget* properties = propertiesWindow()) {
        properties->show();
        m_list->move(properties->frameGeometry().topRight() + QPoint(1, 0));
    }
    m_list->show();
    m_list->raise();
    m_list->activateWindow();
}

void cTieToEntity::updateList(const cProject& project) {
    if (&project != m_project || !m_list || !m_list->isVisible())
        return;
    const cMap& map = *m_project->map;
    m_list->keep([&](uint32_t id) { return map.findEntityById(id) != nullptr; });
}

// Whoever showed the list's entities goes back to the selection.
void cTieToEntity::cancel() {
    m_className.clear();
    m_project->map->describeSelection();
}

void cTieToEntity::tieToListed() {
    cMap& map = *m_project->map;
    cEntityData* target = map.findEntityById(m_list->currentId());
    if (target && map.data.selectedBrushes)
        tie(map, target);
    m_className.clear();
}

// ---- The operation

void cTieToEntity::tie(cMap& map, cEntityData* target) {
    tieSelectionToEntity(map, toMapText(m_className).constData(), target);
    QWidget* properties = target ? nullptr : propertiesWindow();
    if (properties) // a new entity wants its keys
        properties->show();
}

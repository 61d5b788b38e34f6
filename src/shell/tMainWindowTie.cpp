// SPDX-License-Identifier: MIT
// Tie to Entity: the questions before it, in their order, and the list of entities to choose from.
#include "dialogs/tEntityListDialog.h"
#include "operations/tStructure.h"
#include "resources/tGameConfigRegistry.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "support/tMapText.h"

#include <QAction>
#include <QMessageBox>

static const QString PROGRAM_NAME = QStringLiteral("Karvex");

// The window of an object's keys, or null.
static QWidget* propertiesWindow(const cMainWindow& window) {
    return window.findChild<QWidget*>(QStringLiteral("cObjectPropertiesDialog"));
}

static QWidget* boxParent(cMainWindow& window) {
    QWidget* properties = propertiesWindow(window);
    return properties && properties->isVisible() ? properties : &window;
}

void cMainWindow::cmdToolsTieToEntityEx() {
    if (const auto* action = qobject_cast<const QAction*>(sender())) {
        tieClassName = action->text();
        cmdToolsTieToEntity();
    }
}

void cMainWindow::cmdToolsTieToEntity() {
    const cProject* project = activeProject();
    if (project && canTie(*project->map) && confirmDeselectPoints(*project->map))
        chooseTieTarget(*project->map);
    if (!m_entityList || !m_entityList->isVisible()) // else it goes on with the name
        tieClassName.clear();
}

// With a class to make an entity of, and brushes for it.
bool cMainWindow::canTie(cMap& map) {
    if (tieClassName.isEmpty() && m_configs->current)
        tieClassName = m_configs->current->defaultSolidClass;
    if (tieClassName.isEmpty()) {
        QMessageBox::warning(boxParent(*this), PROGRAM_NAME,
                             tr("There are no solid entities in current game data!\n"
                                "TieToEntity function is not available."));
        return false;
    }
    if (!map.data.selectedBrushes) {
        QMessageBox::warning(boxParent(*this), PROGRAM_NAME,
                             tr("There are no eligible selected objects."));
        return false;
    }
    return true;
}

bool cMainWindow::confirmDeselectPoints(cMap& map) {
    const int points = countSelectedPoints(map);
    if (!points)
        return true;
    const auto answer = QMessageBox::question(
        boxParent(*this), PROGRAM_NAME,
        tr("There are %1 point entities selected.\n"
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

void cMainWindow::chooseTieTarget(cMap& map) {
    delete m_entityList;
    const std::vector<cEntityData*> owners = ownersOfSelection(map);
    if (owners.empty())
        tieSelection(map, nullptr);
    else if (owners.size() == 1)
        confirmTieTo(map, owners.front());
    else
        listTieTargets(owners);
}

void cMainWindow::confirmTieTo(cMap& map, cEntityData* owner) {
    const uint32_t id = owner->id; // events run while the question is up
    const auto answer = QMessageBox::question(
        boxParent(*this), PROGRAM_NAME,
        tr("You have selected an existing entity (a '%1').\n"
           "Would you like to add the selected solids to the existing entity?\n"
           "If you select 'No', a new entity ('%2') will be created.")
            .arg(fromMapText(owner->classname), tieClassName),
        QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    if (answer == QMessageBox::Yes)
        tieSelection(map, map.findEntityById(id));
    else if (answer == QMessageBox::No)
        tieSelection(map, nullptr);
}

void cMainWindow::listTieTargets(const std::vector<cEntityData*>& owners) {
    m_listedProject = activeProject();
    m_entityList = new cEntityListDialog(this);
    for (const cEntityData* owner : owners)
        m_entityList->addEntity(fromMapText(owner->classname), owner->id);
    connect(m_entityList, &QDialog::accepted, this, &cMainWindow::tieToListed);
    connect(m_entityList, &QDialog::rejected, this, &cMainWindow::cancelTie);
    connect(m_entityList, &QDialog::finished, m_entityList, &QObject::deleteLater);
    if (QWidget* properties = propertiesWindow(*this)) {
        properties->show();
        m_entityList->move(properties->frameGeometry().topRight() + QPoint(1, 0));
    }
    m_entityList->show();
    m_entityList->raise();
    m_entityList->activateWindow();
}

void cMainWindow::updateEntityList() {
    if (!m_entityList || !m_entityList->isVisible())
        return;
    const cMap& map = *m_listedProject->map;
    m_entityList->keep([&](uint32_t id) { return map.findEntityById(id) != nullptr; });
}

// Whoever showed the list's entities goes back to the selection.
void cMainWindow::cancelTie() {
    tieClassName.clear();
    m_listedProject->map->describeSelection();
}

void cMainWindow::tieToListed() {
    cMap& map = *m_listedProject->map;
    cEntityData* target = map.findEntityById(m_entityList->currentId());
    if (target && map.data.selectedBrushes)
        tieSelection(map, target);
    tieClassName.clear();
}

// ---- The operation

void cMainWindow::tieSelection(cMap& map, cEntityData* target) {
    tieSelectionToEntity(map, toMapText(tieClassName).constData(), target);
    QWidget* properties = target ? nullptr : propertiesWindow(*this);
    if (properties) // a new entity wants its keys
        properties->show();
}

// SPDX-License-Identifier: MIT
#include "shell/tFilterDock.h"

#include "dialogs/tEditGroupsDialog.h"
#include "document/tMap.h"
#include "document/tVisGroup.h"
#include "shell/tMainWindow.h"
#include "shell/tVisGroupList.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

// Mnemonics that a menu or a command has already are left out.
cFilterDock::cFilterDock(cActiveMap activeMap, QWidget* parent)
    : QDockWidget(cMainWindow::tr("Filter Control"), parent),
      m_activeMap(std::move(activeMap)),
      m_list(new QVisGroupList) {
    setObjectName(QStringLiteral("visgroups"));
    m_list->setObjectName(QStringLiteral("lstVisGroups"));
    m_assign = addButton(cMainWindow::tr("&Assign"), "btnAssign", &cFilterDock::assignVisGroup);
    m_edit = addButton(cMainWindow::tr("Edit"), "btnEdit", &cFilterDock::editVisGroups);
    m_mark = addButton(cMainWindow::tr("Mark"), "btnMark", &cFilterDock::markVisGroup);
    m_purge = addButton(cMainWindow::tr("Purge"), "btnPurge", &cFilterDock::purgeVisGroups);
    auto* panel = new QWidget;
    layOut(panel);
    setWidget(panel);
    connect(m_list, &QListWidget::currentItemChanged, this, &cFilterDock::selectVisGroup);
    connect(m_list, &QListWidget::itemDoubleClicked, this, &cFilterDock::changeVisGroupVis);
    connect(m_list, &QVisGroupList::iconClicked, this, &cFilterDock::changeVisGroupVis);
    connect(m_list, &QVisGroupList::mergeRequested, this, &cFilterDock::mergeVisGroups);
}

QPushButton* cFilterDock::addButton(const QString& text, const char* name,
                                    void (cFilterDock::*slot)()) {
    auto* button = new QPushButton(text);
    button->setObjectName(QString::fromLatin1(name));
    connect(button, &QPushButton::clicked, this, slot);
    return button;
}

void cFilterDock::layOut(QWidget* panel) {
    auto* label = new QLabel(cMainWindow::tr("VisGroups:"));
    label->setBuddy(m_list);
    m_widgets = {label, m_list, m_assign, m_edit, m_mark, m_purge};
    auto* layout = new QGridLayout(panel);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    layout->addWidget(label, 0, 0, 1, 2);
    layout->addWidget(m_list, 1, 0, 1, 2);
    layout->addWidget(m_assign, 2, 0);
    layout->addWidget(m_edit, 2, 1);
    layout->addWidget(m_mark, 3, 0);
    layout->addWidget(m_purge, 3, 1);
}

// ---- The list

void cFilterDock::rebuild() {
    const cMap* map = m_activeMap();
    m_list->rebuild(map);
    for (QWidget* widget : qAsConst(m_widgets))
        widget->setEnabled(map != nullptr);
    selectVisGroup(m_list->currentItem());
}

// What these two buttons do needs a visgroup.
void cFilterDock::selectVisGroup(QListWidgetItem* item) {
    const bool enabled = item && m_activeMap();
    m_assign->setEnabled(enabled);
    m_mark->setEnabled(enabled);
}

static uint32_t idOf(const QListWidgetItem* item) {
    return item ? item->data(QVisGroupList::ID_ROLE).toUInt() : 0;
}

void cFilterDock::changeVisGroupVis(QListWidgetItem* item) {
    cMap* map = m_activeMap();
    cVisGroup* group = map ? map->findVisGroup(idOf(item)) : nullptr;
    if (group)
        map->setVisGroupVisible(group);
}

void cFilterDock::mergeVisGroups(QListWidgetItem* source, QListWidgetItem* target) {
    if (cMap* map = source && target ? m_activeMap() : nullptr)
        map->mergeVisGroups(idOf(source), idOf(target)); // the target stays current
}

// ---- The buttons

void cFilterDock::assignVisGroup() {
    if (cMap* map = m_activeMap())
        map->assignVisGroup(m_list->currentId());
}

void cFilterDock::markVisGroup() {
    if (cMap* map = m_activeMap())
        map->markVisGroup(m_list->currentId());
}

void cFilterDock::purgeVisGroups() {
    cMap* map = m_activeMap();
    if (!map)
        return;
    const cVisGroup* current = map->findVisGroup(m_list->currentId());
    const uint32_t serial = current ? current->serial : 0;
    if (!map->purgeVisGroups())
        return;
    current = map->findVisGroupBySerial(serial); // those that stay have new ids
    m_list->rebuild(map, current ? current->id : 0);
    selectVisGroup(m_list->currentItem());
}

void cFilterDock::editVisGroups() {
    if (cMap* map = m_activeMap())
        cEditGroupsDialog(*map, m_list->currentId(), window()).exec();
}

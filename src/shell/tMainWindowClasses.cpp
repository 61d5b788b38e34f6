// SPDX-License-Identifier: MIT
// The menus of entity classes in the pop-up menus, made from the class trees of the game
// configuration, and the texts of the commands that name a class.
#include "document/tEntityClass.h"
#include "resources/tGameConfigRegistry.h"
#include "shell/tMainWindow.h"

#include <QAction>
#include <QMenu>

// Parts of updateEntityMenus.
enum { EM_HIDE_POINT = 1, EM_POINT = 2, EM_SOLID = 4 };

void cMainWindow::addClassNode(const cEntityClassNode& node, QMenu* menu, cCommandSlot slot) {
    if (node.entityClass) {
        QAction* action = menu->addAction(node.entityClass->name);
        action->setStatusTip(node.entityClass->description);
        connect(action, &QAction::triggered, this, slot);
    }
    if (node.children.isEmpty())
        return;
    QMenu* subMenu = menu->addMenu(node.name);
    for (const cEntityClassNode& child : node.children)
        addClassNode(child, subMenu, slot);
}

// The placeholder is the last entry of its menu; the classes follow it.
void cMainWindow::rebuildClassMenu(const char* placeholder, const cEntityClassNode& root,
                                   cCommandSlot slot, QList<QAction*>& entries) {
    for (QAction* entry : entries) {
        if (QMenu* menu = entry->menu())
            delete menu;
        else
            delete entry;
    }
    entries.clear();
    QMenu* menu = nullptr;
    for (const QAction* action : actions)
        if (action->objectName() == QLatin1String(placeholder))
            menu = qobject_cast<QMenu*>(action->associatedWidgets().value(0));
    if (!menu)
        return;
    const int before = menu->actions().size();
    for (const cEntityClassNode& child : root.children)
        addClassNode(child, menu, slot);
    entries = menu->actions().mid(before);
}

void cMainWindow::rebuildClassMenus(const cGameConfig& config, int parts) {
    if (parts & EM_POINT) {
        rebuildClassMenu("EditCreatePlaceholder", config.pointClassTree,
                         &cMainWindow::cmdEditCreateObjectEx, m_pointClassEntries);
        m_pointClassesHidden = false;
    }
    if (parts & EM_SOLID)
        rebuildClassMenu("ToolsToEntityPlaceholder", config.solidClassTree,
                         &cMainWindow::cmdToolsTieToEntityEx, m_solidClassEntries);
}

void cMainWindow::setTextOf(const char* id, const QString& text) {
    for (QAction* action : actions)
        if (action->objectName() == QLatin1String(id))
            action->setText(text);
}

void cMainWindow::updateEntityMenus(const QString& text, int parts) {
    const cGameConfig* config = m_configs->current;
    if ((parts & (EM_POINT | EM_SOLID)) && config && config != m_classMenuConfig) {
        m_classMenuConfig = config;
        rebuildClassMenus(*config, parts);
    }
    const bool hide = parts & EM_HIDE_POINT;
    if (hide != m_pointClassesHidden) {
        m_pointClassesHidden = hide;
        for (QAction* entry : m_pointClassEntries)
            entry->setVisible(!hide);
    }
    if (!(parts & EM_SOLID) && text == m_createText)
        return;
    m_createText = text;
    setTextOf("EditCreate", text.isEmpty() ? tr("Create &Object") : tr("Create %1").arg(text));
    if (!(parts & EM_SOLID))
        return;
    const QString solid = config ? config->defaultSolidClass : QString();
    setTextOf("ToolsToEntityContext",
              solid.isEmpty() ? tr("&Tie to entity") : tr("&Tie to %1").arg(solid));
}

// SPDX-License-Identifier: MIT
#include "shell/tClassMenus.h"

#include "document/tEntityClass.h"
#include "resources/tGameConfigRegistry.h"
#include "shell/tCommandMenus.h"
#include "shell/tMainWindow.h"

#include <QAction>
#include <QMenu>

cClassMenus::cClassMenus(cMainWindow& window, const cCommandMenus& menus,
                         const cGameConfigRegistry& configs)
    : m_window(window), m_menus(menus), m_configs(configs) {}

void cClassMenus::addNode(const cEntityClassNode& node, QMenu* menu, cCommandSlot slot) {
    if (node.entityClass) {
        QAction* action = menu->addAction(node.entityClass->name);
        action->setStatusTip(node.entityClass->description);
        QObject::connect(action, &QAction::triggered, &m_window, slot);
    }
    if (node.children.isEmpty())
        return;
    QMenu* subMenu = menu->addMenu(node.name);
    for (const cEntityClassNode& child : node.children)
        addNode(child, subMenu, slot);
}

// The placeholder is the last entry of its menu; the classes follow it.
QMenu* cClassMenus::menuOf(const char* placeholder) const {
    for (const QAction* action : m_menus.actions)
        if (action->objectName() == QLatin1String(placeholder))
            return qobject_cast<QMenu*>(action->associatedWidgets().value(0));
    return nullptr;
}

void cClassMenus::rebuild(const char* placeholder, const cEntityClassNode& root, cCommandSlot slot,
                          QList<QAction*>& entries) {
    for (QAction* entry : entries) {
        if (QMenu* menu = entry->menu())
            delete menu;
        else
            delete entry;
    }
    entries.clear();
    QMenu* menu = menuOf(placeholder);
    if (!menu)
        return;
    const int before = menu->actions().size();
    for (const cEntityClassNode& child : root.children)
        addNode(child, menu, slot);
    entries = menu->actions().mid(before);
}

bool cClassMenus::update(const QString& text, int parts) {
    const cGameConfig* config = m_configs.current;
    if ((parts & (POINT | SOLID)) && config && config != m_config) {
        m_config = config;
        if (parts & POINT) {
            rebuild("EditCreatePlaceholder", config->pointClassTree,
                    &cMainWindow::cmdEditCreateObjectEx, m_pointEntries);
            m_pointsHidden = false;
        }
        if (parts & SOLID)
            rebuild("ToolsToEntityPlaceholder", config->solidClassTree,
                    &cMainWindow::cmdToolsTieToEntityEx, m_solidEntries);
    }
    const bool hide = parts & HIDE_POINT;
    if (hide != m_pointsHidden) {
        m_pointsHidden = hide;
        for (QAction* entry : qAsConst(m_pointEntries))
            entry->setVisible(!hide);
    }
    const bool isOther = text != m_text;
    m_text = text;
    return isOther || (parts & SOLID);
}

QString cClassMenus::createText() const {
    return m_text.isEmpty() ? cMainWindow::tr("Create &Object")
                            : cMainWindow::tr("Create %1").arg(m_text);
}

QString cClassMenus::tieText() const {
    const QString solid = m_configs.current ? m_configs.current->defaultSolidClass : QString();
    return solid.isEmpty() ? cMainWindow::tr("&Tie to entity")
                           : cMainWindow::tr("&Tie to %1").arg(solid);
}

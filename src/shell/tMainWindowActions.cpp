// SPDX-License-Identifier: MIT
// Makes menus, bars and pop-up menus from the command table, the plug-in menu from the plug-ins'
// actions, and the menu of screen elements from what the window has.
#include "document/tHistory.h"
#include "document/tMap.h"
#include "pluginhost/tPluginManager.h"
#include "shell/tCustomAction.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "support/tMapText.h"

#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <algorithm>
#include <cstring>

static constexpr int BAR_ICON_SIZE = 16;

static bool sameTitle(const char* a, const char* b) {
    return a == b || (a && b && !strcmp(a, b));
}

static bool isSeparatorRow(const cCommandRow& row) {
    return !row.text;
}

void cMainWindow::createActions() {
    createMenus();
    createRecentActions();
    createBars();
    createPopups();
    buildScreenElementsMenu();
}

// ---- Menus

void cMainWindow::createMenus() {
    const char* menuTitle = nullptr;
    const char* subTitle = nullptr;
    QMenu* menu = nullptr;
    QMenu* subMenu = nullptr;
    for (const cCommandRow& row : commandTable()) {
        if (!(row.flags & CMD_MAIN_MENU))
            continue;
        if (!sameTitle(row.menu, menuTitle)) {
            menuTitle = row.menu;
            menu = openMenu(row.menu);
            subTitle = nullptr;
        }
        if (!sameTitle(row.subMenu, subTitle)) {
            subTitle = row.subMenu;
            subMenu = subTitle ? openSubMenu(subTitle, menu) : nullptr;
        }
        createMenuRow(row, subTitle ? subMenu : menu);
    }
    connect(m_windowMenu, &QMenu::aboutToShow, this, &cMainWindow::updateWindowList);
}

QMenu* cMainWindow::openMenu(const char* title) {
    QMenu* menu = menuBar()->addMenu(tr(title));
    menu->setObjectName(QString::fromLatin1(title));
    m_menus.append(menu);
    return menu;
}

QMenu* cMainWindow::openSubMenu(const char* title, QMenu* menu) {
    QMenu* subMenu = menu->addMenu(tr(title));
    subMenu->setObjectName(QString::fromLatin1(title));
    m_menus.append(subMenu);
    return subMenu;
}

void cMainWindow::createMenuRow(const cCommandRow& row, QMenu* menu) {
    if (row.flags & CMD_PLUGIN_MENU) {
        m_pluginMenu = menu;
        return;
    }
    if (isSeparatorRow(row)) {
        QCustomSeparator* separator = createSeparator(row, menu);
        menu->addAction(separator);
        if (row.flags & CMD_RECENT_BLOCK)
            m_recentSeparator = separator;
        if (row.flags & CMD_RECENT_END)
            m_recentEnd = separator;
        if (row.flags & CMD_WINDOW_LIST) {
            m_windowMenu = menu;
            m_windowSeparator = separator;
            separator->setVisible(false);
        }
        return;
    }
    static constexpr uint32_t subMenus = CMD_WEB_MENU | CMD_ELEMENTS_MENU | CMD_SCHEMES_MENU;
    if (row.flags & subMenus)
        createNamedMenu(row, menu);
    else
        menu->addAction(createAction(row, menu));
}

// A submenu that is filled from elsewhere than the table.
void cMainWindow::createNamedMenu(const cCommandRow& row, QMenu* menu) {
    QMenu* named = openSubMenu(row.text, menu);
    named->menuAction()->setStatusTip(tr(row.statusTip));
    if (row.flags & CMD_ELEMENTS_MENU)
        m_elementsMenu = named;
    if (row.flags & CMD_SCHEMES_MENU)
        m_schemesMenu = named;
    if (row.flags & CMD_WEB_MENU)
        createWebMenu(named);
}

QCustomAction* cMainWindow::createAction(const cCommandRow& row, QObject* parent) {
    QCustomAction* action = makeAction(row, parent);
    actions.push_back(action);
    return action;
}

QCustomAction* cMainWindow::makeAction(const cCommandRow& row, QObject* parent) {
    auto* action = new QCustomAction(tr(row.text), parent);
    action->setObjectName(QString::fromLatin1(row.id));
    if (row.icon)
        action->setIcon(QIcon(QStringLiteral(":/qrc/%1.png").arg(QLatin1String(row.icon))));
    const QKeySequence shortcut =
        row.shortcut ? QKeySequence(tr(row.shortcut)) : QKeySequence(row.standardKey);
    // A second action with the same shortcut would make both dead.
    if (!m_rowsWithShortcut.contains(&row)) {
        action->setShortcut(shortcut);
        m_rowsWithShortcut.append(&row);
    }
    const QString tip = row.statusTip ? tr(row.statusTip) : QString();
    action->setStatusTip(tip);
    const QString text = tr(row.text).remove(QLatin1Char('&'));
    action->setToolTip(tooltipWithShortcut(tip.isEmpty() ? text : tip, shortcut));
    action->setCheckable(row.flags & CMD_CHECKABLE);
    action->hideWithoutDocument = !(row.flags & CMD_SHOW_ALWAYS);
    action->disableWithoutDocument = !(row.flags & CMD_ENABLE_ALWAYS);
    action->toolMask = row.toolMask;
    if (row.slot)
        connect(action, &QAction::triggered, this, row.slot);
    return action;
}

QCustomSeparator* cMainWindow::createSeparator(const cCommandRow& row, QObject* parent) {
    auto* separator = new QCustomSeparator(parent);
    separator->toolMask = row.toolMask;
    if (row.id) {
        separator->setObjectName(QString::fromLatin1(row.id));
        actions.push_back(separator);
    }
    return separator;
}

void cMainWindow::createRecentActions() {
    QMenu* menu = qobject_cast<QMenu*>(m_recentEnd->parent());
    for (int i = 0; i < RECENT_FILES; ++i) {
        auto* action = new QAction(menu);
        action->setVisible(false);
        connect(action, &QAction::triggered, this, &cMainWindow::openRecentFile);
        menu->insertAction(m_recentEnd, action);
        m_recentActions.append(action);
    }
    m_recentSeparator->setVisible(false);
}

// ---- Bars and pop-up menus

static std::vector<const cCommandRow*> rowsOf(uint32_t bit, int cCommandRow::*order) {
    std::vector<const cCommandRow*> rows;
    for (const cCommandRow& row : commandTable())
        if (row.flags & bit)
            rows.push_back(&row);
    std::stable_sort(rows.begin(), rows.end(), [order](const cCommandRow* a, const cCommandRow* b) {
        return a->*order < b->*order;
    });
    return rows;
}

// A menu drops a separator beside which nothing shows; a bar does not.
QCustomSeparator* cMainWindow::createBarSeparator(const cCommandRow& row, QToolBar* bar) {
    QCustomSeparator* separator = createSeparator(row, bar);
    separator->hideWithoutDocument = !(row.flags & CMD_SHOW_ALWAYS);
    m_barSeparators.append(separator);
    return separator;
}

void cMainWindow::createBars() {
    for (const cCommandGroup& group : commandBars()) {
        QToolBar* bar = addToolBar(tr(group.title));
        bar->setObjectName(QString::fromLatin1(group.title));
        bar->setAccessibleName(bar->objectName());
        bar->setIconSize(QSize(BAR_ICON_SIZE, BAR_ICON_SIZE));
        for (const cCommandRow* row : rowsOf(group.bit, &cCommandRow::barOrder))
            if (isSeparatorRow(*row))
                bar->addAction(createBarSeparator(*row, bar));
            else
                bar->addAction(createAction(*row, bar));
        connect(bar, &QToolBar::visibilityChanged, this, &cMainWindow::updateScreenElements);
        m_toolBars.append(bar);
    }
}

void cMainWindow::createPopups() {
    for (const cCommandGroup& group : commandPopups()) {
        auto* popup = new QMenu(this);
        popup->setAccessibleName(QString::fromLatin1(group.title));
        QMenu* menu = popup;
        const char* subTitle = nullptr;
        for (const cCommandRow* row : rowsOf(group.bit, &cCommandRow::popupOrder)) {
            if (!sameTitle(row->subMenu, subTitle)) {
                subTitle = row->subMenu;
                menu = subTitle ? popup->addMenu(tr(subTitle)) : popup;
            }
            if (isSeparatorRow(*row))
                menu->addAction(createSeparator(*row, popup));
            else
                menu->addAction(createAction(*row, popup));
        }
        m_popups.append(popup);
    }
}

// ---- Plug-ins

// The actions come sorted by category; each category is a submenu.
void cMainWindow::createPluginMenu() {
    QString category;
    QMenu* menu = m_pluginMenu;
    int index = 0;
    for (const auto& record : m_plugins->actions) {
        const QString next = fromMapText(record->category);
        if (next != category) {
            category = next;
            menu = category.isEmpty() ? m_pluginMenu : m_pluginMenu->addMenu(category);
            if (category.isEmpty())
                m_pluginMenu->addSeparator();
            else
                m_menus.append(menu);
        }
        const QString title = fromMapText(record->title);
        const QString tip = record->description ? fromMapText(record->description) : title;
        auto* action = new QCustomAction(title, menu);
        action->setShortcut(QKeySequence(fromMapText(record->shortcut)));
        action->setToolTip(tooltipWithShortcut(tip, action->shortcut()));
        action->setStatusTip(tip);
        action->toolIndex = index++;
        action->hideWithoutDocument = record->flags & AF_HIDE_WITHOUT_PROJECT;
        action->disableWithoutDocument = record->flags & AF_DISABLE_WITHOUT_PROJECT;
        connect(action, &QAction::triggered, this, &cMainWindow::runPluginAction);
        menu->addAction(action);
        m_pluginActions.append(action);
    }
}

// Services tell nothing of their own: what the action has done is seen by the maps' counters.
void cMainWindow::runPluginAction() {
    const auto* action = dynamic_cast<const QCustomAction*>(sender());
    if (!action)
        return;
    struct cSeen {
        uint64_t revision, edits;
        uint32_t state;
    };
    const auto look = [](const cProject* project) {
        const cMap& map = *project->map;
        return cSeen{map.revision(), map.edits(), map.history->stateNumber()};
    };
    QHash<const cProject*, cSeen> before;
    for (const cProject* project : projects)
        before.insert(project, look(project));
    m_plugins->runAction(action->toolIndex);
    for (const cProject* project : projects) {
        const cSeen now = look(project), then = before.value(project, now);
        if (now.revision == then.revision)
            continue;
        unsigned what = MC_OBJECTS | MC_SELECTION | MC_VISGROUPS;
        what |= now.edits != then.edits ? MC_EDITED : 0u;
        what |= now.state != then.state ? MC_HISTORY : 0u;
        project->map->computeVisGroupVisibility();
        project->map->changed(what);
    }
}

// ---- Screen elements

QCustomAction* cMainWindow::addElement(const QString& text, void (cMainWindow::*slot)()) {
    auto* action = new QCustomAction(text, m_elementsMenu);
    action->setCheckable(true);
    connect(action, &QAction::triggered, this, slot);
    m_elementsMenu->addAction(action);
    m_elementActions.append(action);
    return action;
}

void cMainWindow::buildScreenElementsMenu() {
    for (const QToolBar* bar : m_toolBars)
        addElement(bar->windowTitle(), &cMainWindow::toggleToolbar);
    m_elementsEnd = m_elementsMenu->addSeparator();
    addElement(tr("New &Objects"), &cMainWindow::toggleDockWidget)->value =
        QStringLiteral("newobjects");
    addElement(tr("&Filter Control"), &cMainWindow::toggleDockWidget)->value =
        QStringLiteral("visgroups");
    m_elementsMenu->addSeparator();
    addElement(tr("&Status Bar"), &cMainWindow::toggleStatusBar);
}

// A bar that is built later stands behind the others all the same.
void cMainWindow::insertBarElement(const QToolBar* bar) {
    QCustomAction* action = addElement(bar->windowTitle(), &cMainWindow::toggleToolbar);
    m_elementsMenu->insertAction(m_elementsEnd, action);
}

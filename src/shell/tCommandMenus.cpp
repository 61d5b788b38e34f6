// SPDX-License-Identifier: MIT
// Menus, bars and pop-up menus out of the command table, and the one pass that applies its rules.
#include "shell/tCommandMenus.h"

#include "shell/tCustomAction.h"
#include "shell/tMainWindow.h"

#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <algorithm>
#include <cstring>

static constexpr int BAR_ICON_SIZE = 16;
static constexpr QSize LARGE_TOOL_ICONS(40, 32);
static constexpr QSize SMALL_TOOL_ICONS(20, 16);

static bool sameTitle(const char* a, const char* b) {
    return a == b || (a && b && !strcmp(a, b));
}

static bool isSeparatorRow(const cCommandRow& row) {
    return !row.text;
}

cCommandMenus::cCommandMenus(cMainWindow& window) : m_window(window) {
    createMenus();
    createBars();
    createPopups();
}

// ---- Menus

void cCommandMenus::createMenus() {
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
            subMenu = subTitle ? openMenu(subTitle, menu) : nullptr;
        }
        createMenuRow(row, subTitle ? subMenu : menu);
    }
}

QMenu* cCommandMenus::openMenu(const char* title, QMenu* parent) {
    const QString text = cMainWindow::tr(title);
    QMenu* menu = parent ? parent->addMenu(text) : m_window.menuBar()->addMenu(text);
    menu->setObjectName(QString::fromLatin1(title));
    m_menus.append(menu);
    return menu;
}

void cCommandMenus::createMenuRow(const cCommandRow& row, QMenu* menu) {
    static constexpr uint32_t subMenus = CMD_WEB_MENU | CMD_ELEMENTS_MENU | CMD_SCHEMES_MENU;
    if (row.flags & CMD_PLUGIN_MENU)
        m_pluginMenu = m_categoryMenu = menu;
    else if (isSeparatorRow(row))
        createMenuSeparator(row, menu);
    else if (row.flags & subMenus)
        createNamedMenu(row, menu);
    else
        menu->addAction(createEntry(row, menu));
}

void cCommandMenus::createMenuSeparator(const cCommandRow& row, QMenu* menu) {
    QAction* separator = createEntry(row, menu);
    menu->addAction(separator);
    if (row.flags & CMD_RECENT_BLOCK)
        recentSeparator = separator;
    if (row.flags & CMD_RECENT_END) {
        fileMenu = menu;
        recentEnd = separator;
    }
    if (row.flags & CMD_WINDOW_LIST) {
        windowMenu = menu;
        windowSeparator = separator;
    }
}

// A submenu that is filled from elsewhere than the table.
void cCommandMenus::createNamedMenu(const cCommandRow& row, QMenu* menu) {
    QMenu* named = openMenu(row.text, menu);
    named->menuAction()->setStatusTip(cMainWindow::tr(row.statusTip));
    if (row.flags & CMD_ELEMENTS_MENU)
        elementsMenu = named;
    if (row.flags & CMD_SCHEMES_MENU)
        schemesMenu = named;
    if (row.flags & CMD_WEB_MENU)
        webMenu = named;
}

// ---- Actions

QAction* cCommandMenus::createEntry(const cCommandRow& row, QObject* parent) {
    QAction* action = nullptr;
    if (isSeparatorRow(row))
        action = makeSeparator(row, parent);
    else
        action = makeAction(row, parent);
    if (row.id)
        actions.push_back(action);
    return action;
}

QCustomAction* cCommandMenus::makeAction(const cCommandRow& row, QObject* parent) {
    auto* action = new QCustomAction(cMainWindow::tr(row.text), parent);
    action->setObjectName(QString::fromLatin1(row.id));
    if (row.icon)
        action->setIcon(QIcon(QStringLiteral(":/qrc/%1.png").arg(QLatin1String(row.icon))));
    const QKeySequence shortcut =
        row.shortcut ? QKeySequence(cMainWindow::tr(row.shortcut)) : QKeySequence(row.standardKey);
    // A second action with the same shortcut would make both dead.
    if (!m_rowsWithShortcut.contains(&row)) {
        action->setShortcut(shortcut);
        m_rowsWithShortcut.append(&row);
    }
    const QString tip = row.statusTip ? cMainWindow::tr(row.statusTip) : QString();
    action->setStatusTip(tip);
    const QString text = action->text().remove(QLatin1Char('&'));
    action->setToolTip(tooltipWithShortcut(tip.isEmpty() ? text : tip, shortcut));
    action->setCheckable(row.flags & CMD_CHECKABLE);
    action->hideWithoutDocument = !(row.flags & CMD_SHOW_ALWAYS);
    action->disableWithoutDocument = !(row.flags & CMD_ENABLE_ALWAYS);
    action->toolMask = row.toolMask;
    action->row = &row;
    if (row.slot)
        QObject::connect(action, &QAction::triggered, &m_window, row.slot);
    return action;
}

// A menu drops a separator beside which nothing shows, so those of menus are always there.
QCustomSeparator* cCommandMenus::makeSeparator(const cCommandRow& row, QObject* parent) {
    auto* separator = new QCustomSeparator(parent);
    separator->toolMask = row.toolMask;
    separator->row = &row;
    if (row.id)
        separator->setObjectName(QString::fromLatin1(row.id));
    return separator;
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

void cCommandMenus::prepareBar(QToolBar* bar, const char* title, const QSize& icons) {
    bar->setObjectName(QString::fromLatin1(title));
    bar->setAccessibleName(bar->objectName());
    bar->setIconSize(icons);
    QObject::connect(bar, &QToolBar::visibilityChanged, &m_window,
                     &cMainWindow::updateScreenElements);
    bars.append(bar);
}

void cCommandMenus::createBars() {
    for (const cCommandGroup& group : commandBars()) {
        QToolBar* bar = m_window.addToolBar(cMainWindow::tr(group.title));
        prepareBar(bar, group.title, QSize(BAR_ICON_SIZE, BAR_ICON_SIZE));
        for (const cCommandRow* row : rowsOf(group.bit, &cCommandRow::barOrder)) {
            if (isSeparatorRow(*row)) { // a bar shows each of its separators
                QCustomSeparator* separator = makeSeparator(*row, bar);
                separator->hideWithoutDocument = !(row->flags & CMD_SHOW_ALWAYS);
                m_barSeparators.append(separator);
                bar->addAction(separator);
            } else {
                bar->addAction(createEntry(*row, bar));
            }
        }
    }
}

void cCommandMenus::createToolBar(bool smallIcons) {
    auto* bar = new QToolBar(cMainWindow::tr("Map&tools Bar"), &m_window);
    prepareBar(bar, "Maptools Bar", smallIcons ? SMALL_TOOL_ICONS : LARGE_TOOL_ICONS);
    for (const cToolRow& row : toolTable()) {
        if (isSeparatorRow(row.command)) {
            bar->addSeparator();
            continue;
        }
        QCustomAction* action = makeAction(row.command, bar);
        action->toolIndex = row.toolIndex;
        bar->addAction(action);
        m_window.addAction(action); // its shortcut holds while the bar is hidden
        toolActions.push_back(action);
    }
    m_window.addToolBar(Qt::LeftToolBarArea, bar);
}

void cCommandMenus::setSmallToolIcons(bool small) {
    bars.last()->setIconSize(small ? SMALL_TOOL_ICONS : LARGE_TOOL_ICONS);
}

void cCommandMenus::createPopups() {
    for (const cCommandGroup& group : commandPopups()) {
        auto* popup = new QMenu(&m_window);
        popup->setAccessibleName(QString::fromLatin1(group.title));
        QMenu* menu = popup;
        const char* subTitle = nullptr;
        for (const cCommandRow* row : rowsOf(group.bit, &cCommandRow::popupOrder)) {
            if (!sameTitle(row->subMenu, subTitle)) {
                subTitle = row->subMenu;
                menu = subTitle ? popup->addMenu(cMainWindow::tr(subTitle)) : popup;
            }
            menu->addAction(createEntry(*row, popup));
        }
        m_popups.append(popup);
    }
}

QMenu* cCommandMenus::popup(const char* title) const {
    const QString name = QString::fromLatin1(title);
    for (QMenu* menu : m_popups)
        if (menu->accessibleName() == name)
            return menu;
    return nullptr;
}

// ---- Plug-ins

void cCommandMenus::addPluginAction(QCustomAction* action, const QString& category) {
    if (category != m_category) {
        m_category = category;
        m_categoryMenu = category.isEmpty() ? m_pluginMenu : m_pluginMenu->addMenu(category);
        if (category.isEmpty())
            m_pluginMenu->addSeparator();
        else
            m_menus.append(m_categoryMenu);
    }
    m_categoryMenu->addAction(action);
    m_pluginActions.append(action);
}

// ---- The state

static bool isEnabled(const cActionRules& rules, const cCommandState& state) {
    if (rules.disableWithoutDocument && !state.hasDocument)
        return false;
    if (state.hasDocument && state.tool >= 0 && (rules.toolMask & (1u << state.tool)))
        return false;
    return !rules.row || !rules.row->rules.enabled || rules.row->rules.enabled(state);
}

static bool isShown(const cActionRules& rules, const cCommandState& state) {
    if (rules.hideWithoutDocument && !state.hasDocument)
        return false;
    return !rules.row || !rules.row->rules.shown || rules.row->rules.shown(state);
}

// Qt has turned the mark of a command that was just given; what it stands for decides.
static void applyTo(QAction* action, const cCommandState& state) {
    const auto& rules = dynamic_cast<const cActionRules&>(*action);
    action->setEnabled(isEnabled(rules, state));
    action->setVisible(isShown(rules, state));
    if (!rules.row)
        return;
    const cCommandRules& own = rules.row->rules;
    if (own.setting)
        action->setChecked(own.setting.isChecked(*state.settings));
    else if (own.checked)
        action->setChecked(own.checked(state));
    if (own.text)
        action->setText(state.*own.text);
}

void cCommandMenus::apply(const cCommandState& state) {
    for (QAction* action : actions)
        applyTo(action, state);
    for (QAction* action : toolActions)
        applyTo(action, state);
    for (QAction* action : qAsConst(m_pluginActions))
        applyTo(action, state);
    for (QAction* separator : qAsConst(m_barSeparators))
        applyTo(separator, state);
    applyToMenus();
}

// A separator keeps no menu visible, and neither does a submenu.
void cCommandMenus::applyToMenus() {
    for (const QMenu* menu : qAsConst(m_menus)) {
        bool visible = false;
        for (const QAction* action : menu->actions())
            visible |= action->isVisible() && !action->isSeparator() && !action->menu();
        menu->menuAction()->setVisible(visible);
    }
    m_pluginMenu->menuAction()->setVisible(!m_pluginActions.isEmpty());
}

// SPDX-License-Identifier: MIT
// The main window's menus, bars and pop-up menus with all their actions: made once from the
// command table, then brought up to date from one cCommandState by the rules of each row. What
// others fill (recent files, windows, screen elements, plug-ins) has its place kept here.
#pragma once

#include "shell/tCommandTable.h"

#include <QList>
#include <QString>
#include <vector>

class QAction;
class QCustomAction;
class QCustomSeparator;
class QMenu;
class QSize;
class QToolBar;
class cMainWindow;

class cCommandMenus {
public:
    explicit cCommandMenus(cMainWindow& window); // all but the bar of the tools

    // The bar of the tools; after the settings are read, which say how large its icons are.
    void createToolBar(bool smallIcons);
    void setSmallToolIcons(bool small);
    // An entry of the plug-in menu, with its shortcut and rules; they come sorted by category,
    // which is a submenu each. An empty category stands in the menu itself.
    void addPluginAction(QCustomAction* action, const QString& category);
    QMenu* pluginMenu() const { return m_pluginMenu; }

    // Whether each action is there, enabled and checked, and how it reads; then which menus show.
    void apply(const cCommandState& state);
    QMenu* popup(const char* title) const; // of that title in the table; null if there is none

    std::vector<QAction*> actions;           // every action and named separator made from the table
    std::vector<QCustomAction*> toolActions; // of the bar of the tools
    QList<QToolBar*> bars;                   // that of the tools last

    // ---- Places for others

    QMenu* fileMenu = nullptr;
    QAction* recentSeparator = nullptr;
    QAction* recentEnd = nullptr; // the recent files stand before it
    QMenu* windowMenu = nullptr;
    QAction* windowSeparator = nullptr; // the windows stand behind it
    QMenu* elementsMenu = nullptr;
    QMenu* schemesMenu = nullptr;
    QMenu* webMenu = nullptr;

private:
    void createMenus();
    QMenu* openMenu(const char* title, QMenu* parent = nullptr);
    void createMenuRow(const cCommandRow& row, QMenu* menu);
    void createMenuSeparator(const cCommandRow& row, QMenu* menu);
    void createNamedMenu(const cCommandRow& row, QMenu* menu);
    void createBars();
    void prepareBar(QToolBar* bar, const char* title, const QSize& icons);
    void createPopups();
    QAction* createEntry(const cCommandRow& row, QObject* parent); // enters it in actions
    QCustomAction* makeAction(const cCommandRow& row, QObject* parent);
    QCustomSeparator* makeSeparator(const cCommandRow& row, QObject* parent);
    void applyToMenus();

    cMainWindow& m_window;
    QList<QMenu*> m_menus; // of the menu bar
    QList<QMenu*> m_popups;
    QMenu* m_pluginMenu = nullptr;
    QString m_category; // of the last entry of a plug-in
    QMenu* m_categoryMenu = nullptr;
    QList<QAction*> m_barSeparators;
    QList<QAction*> m_pluginActions;
    QList<const cCommandRow*> m_rowsWithShortcut; // whose first action exists already
};

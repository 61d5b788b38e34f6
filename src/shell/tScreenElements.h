// SPDX-License-Identifier: MIT
// The menu of screen elements: an entry for each bar, dock and the status bar, which shows and
// hides it and is checked while it is there.
#pragma once

#include <QList>
#include <QPair>

class QAction;
class QDockWidget;
class QMenu;
class QStatusBar;
class QToolBar;
class QWidget;

class cScreenElements {
public:
    // docks with the texts of their entries, which the titles lack mnemonics for.
    cScreenElements(QMenu& menu, const QList<QToolBar*>& bars,
                    const QList<QPair<QDockWidget*, QString>>& docks, QStatusBar* statusBar);

    void addBar(QToolBar* bar); // behind the other bars
    // A dock behind another tab, or before the window shows, is not visible but not hidden either.
    void update();

private:
    void add(QWidget* element, const QString& text, QAction* before = nullptr);

    struct cElement {
        QAction* action;
        QWidget* widget;
    };
    QMenu& m_menu;
    QAction* m_barsEnd;
    QList<cElement> m_elements;
};

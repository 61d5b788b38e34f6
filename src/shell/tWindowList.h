// SPDX-License-Identifier: MIT
// The document windows at the end of the Window menu, numbered, the active one checked.
#pragma once

#include <QList>

class QAction;
class QMdiArea;
class QMenu;
class cChildWindow;

class cWindowList {
public:
    // The entries follow separator, which shows while there are any.
    cWindowList(QMenu& menu, QAction* separator, QMdiArea& area);

    void update(const cChildWindow* active);

private:
    QMenu& m_menu;
    QAction* m_separator;
    QMdiArea& m_area;
    QList<QAction*> m_entries;
};

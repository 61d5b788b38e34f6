// SPDX-License-Identifier: MIT
#include "shell/tWindowList.h"

#include "views/tChildWindow.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>

cWindowList::cWindowList(QMenu& menu, QAction* separator, QMdiArea& area)
    : m_menu(menu), m_separator(separator), m_area(area) {}

// The tenth and later ones have no mnemonic.
static QString entryText(const QString& title, int number) {
    const QString format = number < 10 ? QStringLiteral("&%1 %2") : QStringLiteral("%1 %2");
    return format.arg(number).arg(QString(title).replace(QLatin1Char('&'), QLatin1String("&&")));
}

void cWindowList::update(const cChildWindow* active) {
    for (QAction* entry : qAsConst(m_entries)) {
        m_menu.removeAction(entry);
        entry->deleteLater(); // it may be the one that was just triggered
    }
    m_entries.clear();
    const QList<QMdiSubWindow*> windows = m_area.subWindowList();
    m_separator->setVisible(!windows.isEmpty());
    for (QMdiSubWindow* window : windows) {
        const auto* child = qobject_cast<cChildWindow*>(window->widget());
        if (!child)
            continue;
        QAction* entry = m_menu.addAction(entryText(child->windowTitle(), m_entries.size() + 1));
        entry->setCheckable(true);
        entry->setChecked(child == active);
        QObject::connect(entry, &QAction::triggered, window,
                         [this, window] { m_area.setActiveSubWindow(window); });
        m_entries.append(entry);
    }
}

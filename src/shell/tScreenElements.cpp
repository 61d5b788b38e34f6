// SPDX-License-Identifier: MIT
#include "shell/tScreenElements.h"

#include <QCoreApplication>
#include <QDockWidget>
#include <QMenu>
#include <QStatusBar>
#include <QToolBar>

cScreenElements::cScreenElements(QMenu& menu, const QList<QToolBar*>& bars,
                                 const QList<QPair<QDockWidget*, QString>>& docks,
                                 QStatusBar* statusBar)
    : m_menu(menu), m_barsEnd(menu.addSeparator()) {
    for (QToolBar* bar : bars)
        addBar(bar);
    for (const auto& dock : docks)
        add(dock.first, dock.second);
    menu.addSeparator();
    add(statusBar, QCoreApplication::translate("cMainWindow", "&Status Bar"));
}

void cScreenElements::addBar(QToolBar* bar) {
    add(bar, bar->windowTitle(), m_barsEnd);
}

void cScreenElements::add(QWidget* element, const QString& text, QAction* before) {
    auto* action = new QAction(text, &m_menu);
    action->setCheckable(true);
    QObject::connect(action, &QAction::triggered, element,
                     [element](bool shown) { element->setVisible(shown); });
    m_menu.insertAction(before, action);
    m_elements.append({action, element});
}

void cScreenElements::update() {
    for (const cElement& element : qAsConst(m_elements))
        element.action->setChecked(!element.widget->isHidden());
}

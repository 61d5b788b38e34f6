// SPDX-License-Identifier: MIT
// The bar of the tools.
#include "shell/tCustomAction.h"
#include "shell/tMainWindow.h"

#include <QToolBar>

static constexpr QSize LARGE_ICONS(40, 32);
static constexpr QSize SMALL_ICONS(20, 16);

// After the settings are read, which say how large its icons are.
void cMainWindow::createToolBar() {
    auto* bar = new QToolBar(tr("Map&tools Bar"), this);
    bar->setObjectName(QStringLiteral("Maptools Bar"));
    bar->setAccessibleName(bar->objectName());
    bar->setIconSize(SmallToolIcons ? SMALL_ICONS : LARGE_ICONS);
    for (const cToolRow& row : toolTable()) {
        if (!row.command.text) {
            bar->addSeparator();
            continue;
        }
        QCustomAction* action = makeAction(row.command, bar);
        action->toolIndex = row.toolIndex;
        bar->addAction(action);
        addAction(action); // its shortcut holds while the bar is hidden
        toolActions.push_back(action);
    }
    addToolBar(Qt::LeftToolBarArea, bar);
    connect(bar, &QToolBar::visibilityChanged, this, &cMainWindow::updateScreenElements);
    m_toolBars.append(bar);
    insertBarElement(bar);
}

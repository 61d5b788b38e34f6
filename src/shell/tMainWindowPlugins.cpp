// SPDX-License-Identifier: MIT
// The actions of the plug-ins.
#include "document/tHistory.h"
#include "document/tMap.h"
#include "shell/tCommandMenus.h"
#include "shell/tCustomAction.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "shell/tServices.h"
#include "support/tMapText.h"

#include <QMenu>

// They come sorted by category.
void cMainWindow::createPluginMenu() {
    int index = 0;
    for (const auto& record : m_services->plugins.actions) {
        const QString title = fromMapText(record->title);
        const QString tip = record->description ? fromMapText(record->description) : title;
        auto* action = new QCustomAction(title, m_menus->pluginMenu());
        action->setShortcut(QKeySequence(fromMapText(record->shortcut)));
        action->setToolTip(tooltipWithShortcut(tip, action->shortcut()));
        action->setStatusTip(tip);
        action->toolIndex = index++;
        action->hideWithoutDocument = record->flags & AF_HIDE_WITHOUT_PROJECT;
        action->disableWithoutDocument = record->flags & AF_DISABLE_WITHOUT_PROJECT;
        connect(action, &QAction::triggered, this, &cMainWindow::runPluginAction);
        m_menus->addPluginAction(action, fromMapText(record->category));
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
    m_services->plugins.runAction(action->toolIndex);
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

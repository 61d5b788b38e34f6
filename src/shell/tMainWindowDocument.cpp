// SPDX-License-Identifier: MIT
// The active document: which one it is, what happens when it becomes another, and how what its map
// tells is shown.
#include "document/tMap.h"
#include "shell/tClassMenus.h"
#include "shell/tFilterDock.h"
#include "shell/tMainWindow.h"
#include "shell/tObjectsDock.h"
#include "shell/tProject.h"
#include "shell/tServices.h"
#include "shell/tStatusPanes.h"
#include "shell/tTieToEntity.h"
#include "shell/tToolSwitch.h"
#include "support/tMapText.h"
#include "support/tSystem.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <utility>

// ---- Which one

cChildWindow* cMainWindow::activeChild() const {
    const QMdiSubWindow* window = m_mdiArea->activeSubWindow();
    if (!window)
        window = m_mdiArea->currentSubWindow();
    auto* child = window ? qobject_cast<cChildWindow*>(window->widget()) : nullptr;
    return child && child->project ? child : nullptr;
}

cProject* cMainWindow::activeProject() const {
    const cChildWindow* child = activeChild();
    return child ? static_cast<cProject*>(child->project) : nullptr;
}

const cMapProfile& cMainWindow::profile() const {
    return *m_services->configs.currentProfile;
}

void cMainWindow::changeSubwindowActiveState(QMdiSubWindow*) {
    cProject* project = activeProject();
    if (project)
        activateProject(project);
    checkActiveState(!project);
    updateUi();
}

void cMainWindow::setActiveChildWindow(QWidget* window) {
    if (auto* subWindow = qobject_cast<QMdiSubWindow*>(window))
        m_mdiArea->setActiveSubWindow(subWindow);
}

// What the box of that tool in that document measures.
static QString boxText(const cProject& project, int tool) {
    struct {
        int tool;
        eToolBox box;
        eBoxText text;
    } static const rows[] = {
        {TOOL_SELECT, TBX_SELECTION, BT_EXTENTS},
        {TOOL_BLOCK, TBX_BLOCK, BT_EXTENTS},
        {TOOL_ENTITY, TBX_ENTITY, BT_CENTER},
        {TOOL_CORDON, TBX_CORDON, BT_EXTENTS},
    };
    for (const auto& row : rows)
        if (row.tool == tool)
            return project.boxes[row.box].statusText(0, 1, row.text);
    return QString();
}

void cMainWindow::updateBoxPane() {
    const cProject* project = activeProject();
    const cTool* tool = suspendedTool ? suspendedTool : currentTool;
    setStatusPane(project && tool ? boxText(*project, tool->getId()) : QString(), PANE_BOX);
}

void cMainWindow::activateProject(cProject* project) {
    m_services->configs.setCurrent(project->game.config);
    setActiveConfig(project->game.config);
    m_objectsDock->classesChanged(); // another game may know another class of that name
    updateBoxPane();
    project->map->describeSelection();
    setStatusPane(project->map->selectionSentence(), PANE_SELECTION);
}

// A project that came to nothing has taken over configuration and status panes.
void cMainWindow::returnToActiveProject() {
    cProject* project = activeProject();
    if (project)
        activateProject(project);
    checkActiveState(!project);
}

// ---- Its views

// The position and the zoom of the status bar belong to a view.
static void leaveViews(cMainWindow& window) {
    window.setActiveCanvas(nullptr);
    window.setStatusPane(QString(), PANE_POSITION);
    window.setStatusPane(QString(), PANE_ZOOM);
}

// The focus has gone to whatever view came first in the window.
static void enterViews(cMainWindow& window, const cChildWindow& child) {
    cCanvas* canvas = child.activeView();
    window.setActiveCanvas(canvas);
    const QWidget* focus = QApplication::focusWidget();
    if (canvas && focus && child.isAncestorOf(focus))
        canvas->setFocus();
}

void cMainWindow::checkActiveState(bool clearConfig) {
    cGameConfigRegistry& configs = m_services->configs;
    if (clearConfig)
        configs.setCurrent(nullptr);
    updateTimers();
    const cChildWindow* child = activeChild();
    if (!child)
        leaveViews(*this);
    else if (!activeCanvas || activeCanvas->childWindow != child)
        enterViews(*this, *child);
    QString title;
    if (const cGameConfig* config = configs.current)
        title = QStringLiteral("%1 (%2)").arg(config->title, fromMapText(profile().name));
    updateEntityMenus(QString(), cClassMenus::POINT | cClassMenus::SOLID);
    if (child)
        notifyTools();
    updateCommands();
    setStatusPane(title, PANE_GAME);
}

// A window behind a maximized one is not seen and runs no timers.
void cMainWindow::updateTimers() {
    const cChildWindow* child = activeChild();
    const bool covered = child && child->parentWidget() && child->parentWidget()->isMaximized();
    for (const cProject* project : qAsConst(projects))
        for (cChildWindow* window : project->windows)
            window->setTimersRunning(window->isVisible() && (!covered || window == child));
}

void cMainWindow::notifyTools() {
    if (activeCanvas)
        for (const auto& tool : m_tools->tools)
            tool->setCanvas(activeCanvas);
}

// ---- Changes of maps

void cMainWindow::mapChanged(cMap& map, unsigned what) {
    auto* project = static_cast<cProject*>(map.project);
    if (!project)
        return;
    project->changed(what); // at once: who closes the document asks
    if (m_changes.isEmpty())
        QMetaObject::invokeMethod(this, &cMainWindow::showChanges, Qt::QueuedConnection);
    m_changes[project] |= what;
}

void cMainWindow::showChanges() {
    if (m_changes.isEmpty())
        return;
    const QHash<cProject*, unsigned> changes = std::exchange(m_changes, {});
    cProject* current = activeProject();
    for (auto change = changes.begin(); change != changes.end(); ++change)
        if (change.key() != current && projects.contains(change.key()))
            showChange(*change.key(), change.value());
    if (current && changes.contains(current))
        showChange(*current, changes.value(current));
    updateCommands();
}

// A tool takes what it shows of a document through one of its views; the active view's comes last.
void cMainWindow::showChange(cProject& project, unsigned what) {
    const bool isActive = &project == activeProject();
    if (what & (MC_OBJECTS | MC_SELECTION)) {
        cCanvas* canvas = isActive ? nullptr : project.firstCanvas();
        if (canvas)
            m_tools->tools[TOOL_SELECT]->setCanvas(canvas);
        notifyTools();
    }
    if (what & MC_HISTORY)
        m_tieToEntity->updateList(project);
    if (isActive && (what & MC_SELECTION))
        setStatusPane(project.map->selectionSentence(), PANE_SELECTION);
    if (isActive && (what & MC_VISGROUPS))
        m_filterDock->rebuild();
    if (what & (MC_OBJECTS | MC_SELECTION | MC_VISGROUPS))
        project.redrawViews(REDRAW_ALL);
}

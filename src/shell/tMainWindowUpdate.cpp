// SPDX-License-Identifier: MIT
// What is enabled, visible and checked, and what happens when another document becomes active.
#include "document/tHistory.h"
#include "document/tMap.h"
#include "operations/tClipboard.h"
#include "plugininterface/tPluginInterface.h"
#include "resources/tGameConfigRegistry.h"
#include "shell/tCustomAction.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "support/tMapText.h"
#include "support/tSystem.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QApplication>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QStatusBar>
#include <utility>

static constexpr int SELECTION_PANE = 2;

static const cActionRules* rulesOf(const QAction* action) {
    return dynamic_cast<const cActionRules*>(action);
}

// ---- The active document

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
    return *m_configs->currentProfile;
}

cProject* cMainWindow::projectOf(const cCanvas* canvas) const {
    if (!canvas || !canvas->childWindow)
        return nullptr;
    return static_cast<cProject*>(canvas->childWindow->project);
}

void cMainWindow::changeSubwindowActiveState(QMdiSubWindow*) {
    cProject* project = activeProject();
    if (project)
        activateProject(project);
    checkActiveState(!project);
    updateUi();
}

// What the current tool's box in that document measures.
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

void cMainWindow::activateProject(cProject* project) {
    m_configs->setCurrent(project->game.config);
    setActiveConfig(project->game.config);
    currentClassStale = true; // another game may know another class of that name
    setStatusPane(boxText(*project, currentToolId()), 4);
    project->map->describeSelection();
    setStatusPane(project->map->selectionSentence(), SELECTION_PANE);
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
}

// A tool takes what it shows of a document through one of its views; the active view's comes last.
void cMainWindow::showChange(cProject& project, unsigned what) {
    if (what & (MC_OBJECTS | MC_SELECTION)) {
        cCanvas* canvas = &project == activeProject() ? nullptr : project.firstCanvas();
        if (canvas)
            tools[TOOL_SELECT]->setCanvas(canvas);
        notifyTools();
    }
    if (&project == m_listedProject && (what & MC_HISTORY))
        updateEntityList();
    if (&project == activeProject()) {
        if (what & MC_SELECTION)
            setStatusPane(project.map->selectionSentence(), SELECTION_PANE);
        if (what & MC_VISGROUPS)
            rebuildVisGroupList();
        updateActionStates(AS_UNDO);
    }
    project.redrawViews(REDRAW_ALL);
}

// ---- The views of the active document

void cMainWindow::checkActiveState(bool clearConfig) {
    if (clearConfig)
        m_configs->setCurrent(nullptr);
    updateTimers();
    const cChildWindow* child = activeChild();
    if (!child)
        leaveViews();
    else if (!activeCanvas || activeCanvas->childWindow != child)
        enterViews(*child);
    QString title;
    if (const cGameConfig* config = m_configs->current)
        title = QStringLiteral("%1 (%2)").arg(config->title, fromMapText(profile().name));
    updateEntityMenus(QString(), 6);
    if (child)
        notifyTools();
    updateToolActions();
    setStatusPane(title, 1);
}

// The position and the zoom of the status bar belong to a view.
void cMainWindow::leaveViews() {
    setActiveCanvas(nullptr);
    setStatusPane(QString(), 3);
    setStatusPane(QString(), 5);
}

// The focus has gone to whatever view came first in the window.
void cMainWindow::enterViews(const cChildWindow& child) {
    cCanvas* canvas = child.activeView();
    setActiveCanvas(canvas);
    const QWidget* focus = QApplication::focusWidget();
    if (canvas && focus && child.isAncestorOf(focus))
        canvas->setFocus();
}

// A window behind a maximized one is not seen and runs no timers.
void cMainWindow::updateTimers() {
    const cChildWindow* child = activeChild();
    const bool covered = child && child->parentWidget() && child->parentWidget()->isMaximized();
    for (cProject* project : projects)
        for (cChildWindow* window : project->windows)
            window->setTimersRunning(window->isVisible() && (!covered || window == child));
}

void cMainWindow::setActiveChildWindow(QWidget* window) {
    if (auto* subWindow = qobject_cast<QMdiSubWindow*>(window))
        m_mdiArea->setActiveSubWindow(subWindow);
}

void cMainWindow::notifyTools() {
    if (activeCanvas)
        for (auto& tool : tools)
            tool->setCanvas(activeCanvas);
    updateActionStates(AS_CLIPBOARD | AS_GROUP);
}

void cMainWindow::redrawAllViews(int mask) {
    for (cProject* project : projects)
        project->redrawViews(mask);
}

// ---- Actions

void cMainWindow::updateUi() {
    updateWindowList();
    updateScreenElements();
    updateDocumentActions();
    updateToolActions();
    rebuildVisGroupList();
    updateSnapPane();
}

static void applyDocumentRules(QAction* action, bool hasDocument) {
    const cActionRules* rules = rulesOf(action);
    if (!rules)
        return;
    if (rules->hideWithoutDocument)
        action->setVisible(hasDocument);
    if (rules->disableWithoutDocument)
        action->setEnabled(hasDocument);
}

void cMainWindow::updateDocumentActions() {
    const bool hasDocument = activeChild() != nullptr;
    for (QAction* action : actions)
        applyDocumentRules(action, hasDocument);
    for (QAction* action : m_pluginActions)
        applyDocumentRules(action, hasDocument);
    for (QAction* separator : m_barSeparators)
        applyDocumentRules(separator, hasDocument);
    updateMenuVisibility();
}

// A separator keeps no menu visible, and neither does a submenu.
void cMainWindow::updateMenuVisibility() {
    for (QMenu* menu : m_menus) {
        bool visible = false;
        for (const QAction* action : menu->actions())
            visible |= action->isVisible() && !action->isSeparator() && !action->menu();
        menu->menuAction()->setVisible(visible);
    }
    m_pluginMenu->menuAction()->setVisible(!m_pluginActions.isEmpty());
}

static bool supportsDecals(const cMapProfile& profile) {
    return (profile.flags & PF_DECALS_WITHOUT_CLASS) ||
           ((profile.flags & PF_DECAL_ENTITIES) && profile.decalEntityClass[0]);
}

// Qt has unchecked the current tool's button if it was just pressed.
void cMainWindow::updateToolActions() {
    const bool hasDocument = activeChild() != nullptr;
    const int tool = currentToolId();
    for (QCustomAction* action : toolActions) {
        action->setEnabled(hasDocument &&
                           (action->toolIndex != TOOL_DECAL || supportsDecals(profile())));
        if (action->isCheckable())
            action->setChecked(action->toolIndex == tool);
    }
    if (hasDocument && tool >= 0) {
        setActionChecked("ToolsCordonB", tool == TOOL_CORDON);
        for (QAction* action : actions)
            if (const cActionRules* rules = rulesOf(action))
                action->setEnabled(!(rules->toolMask & (1u << tool)));
    }
    updateObjectDock();
    updateActionStates(AS_ALL);
}

// ---- Computed states

struct cMainWindow::cActionStates {
    bool canCopy = false;
    bool canPaste = false;
    bool canDelete = false;
    bool canTie = false; // and make detail: what is done to brushes
    bool canGroup = false;
    bool detailVisible = false;
    bool historyEnabled = false;
    QString undoName; // null: can't
    QString redoName;
};

cMainWindow::cActionStates cMainWindow::actionStates() const {
    cActionStates states;
    const cProject* project = activeProject();
    if (!project)
        return states;
    const cMap& map = *project->map;
    const cHistory& history = *map.history;
    states.canCopy = cClipboard::canCopy(map);
    states.canDelete = map.hasSelection();
    states.canTie = map.data.selectedBrushes != nullptr;
    states.canPaste = g_clipboard->canPaste(&map);
    states.canGroup = map.hasSelection() && !IgnoreGroups && currentToolId() != TOOL_TEXTURE;
    states.detailVisible = project->game.profile().detailContentMask != 0;
    states.historyEnabled = history.isEnabled();
    if (history.canUndo())
        states.undoName = tr(history.undoName());
    if (history.canRedo())
        states.redoName = tr(history.redoName());
    return states;
}

void cMainWindow::applyHistoryStates(QAction* action, const cActionStates& states) {
    const QString id = action->objectName();
    if (id == QLatin1String("EditUndo")) {
        action->setEnabled(!states.undoName.isNull());
        action->setText(states.undoName.isNull() ? tr("Can't undo")
                                                 : tr("&Undo %1").arg(states.undoName));
    } else if (id == QLatin1String("EditRedo")) {
        action->setEnabled(!states.redoName.isNull());
        action->setText(states.redoName.isNull() ? tr("Can't redo")
                                                 : tr("&Redo %1").arg(states.redoName));
    } else if (id == QLatin1String("EditNoUndo")) {
        action->setText(states.historyEnabled ? tr("Disabl&e Undo/Redo") : tr("Enabl&e Undo/Redo"));
    }
}

void cMainWindow::updateActionStates(int mask) {
    enum eEffect { ENABLE, SHOW };
    struct {
        const char* id;
        int bit;
        eEffect effect;
        bool cActionStates::*state;
    } static const rows[] = {
        {"EditCut", AS_CLIPBOARD, ENABLE, &cActionStates::canCopy},
        {"EditCopy", AS_CLIPBOARD, ENABLE, &cActionStates::canCopy},
        {"EditPaste", AS_CLIPBOARD, ENABLE, &cActionStates::canPaste},
        {"EditPaste2", AS_CLIPBOARD, ENABLE, &cActionStates::canPaste},
        {"EditDelete", AS_CLIPBOARD, ENABLE, &cActionStates::canDelete},
        {"ToolsMakeStruct", AS_GROUP, ENABLE, &cActionStates::canTie},
        {"ToolsMakeDetail", AS_GROUP, ENABLE, &cActionStates::canTie},
        {"ToolsToEntity", AS_GROUP, ENABLE, &cActionStates::canTie},
        {"ToolsToEntityContext", AS_GROUP, ENABLE, &cActionStates::canTie},
        {"ToolsToWorld", AS_GROUP, ENABLE, &cActionStates::canTie},
        {"ToolsGroup", AS_GROUP, ENABLE, &cActionStates::canGroup},
        {"ToolsUngroup", AS_GROUP, ENABLE, &cActionStates::canGroup},
        {"ToolsMakeStruct", AS_DETAIL, SHOW, &cActionStates::detailVisible},
        {"ToolsMakeDetail", AS_DETAIL, SHOW, &cActionStates::detailVisible},
        {"ToolsMakeSep", AS_DETAIL, SHOW, &cActionStates::detailVisible},
        {"ViewDetail", AS_DETAIL, SHOW, &cActionStates::detailVisible},
    };
    const cActionStates states = actionStates();
    for (QAction* action : actions) {
        for (const auto& row : rows) {
            if (!(mask & row.bit) || action->objectName() != QLatin1String(row.id))
                continue;
            if (row.effect == ENABLE)
                action->setEnabled(states.*row.state);
            else
                action->setVisible(states.*row.state);
        }
        if (mask & AS_UNDO)
            applyHistoryStates(action, states);
    }
    for (QWidget* button : m_brushButtons)
        button->setEnabled(states.canTie);
}

void cMainWindow::setActionChecked(const char* id, bool checked) {
    const QString name = QString::fromLatin1(id);
    for (QAction* action : actions)
        if (action->isCheckable() && action->objectName() == name)
            action->setChecked(checked);
}

void cMainWindow::updateSettingChecks() {
    struct {
        const char* id;
        bool checked;
    } const checks[] = {
        {"MapGrid", EnableGrid2D},
        {"MapGrid3D", EnableGrid3D},
        {"MapSnap", SnapToGrid},
        {"ViewConn", ShowConnections},
        {"ViewMod2D", DrawModels},
        {"ViewNodraw", DrawNoDraw},
        {"ViewTexTrans", TextureTransparency},
        {"ViewEntTrans", EntityTransparency},
        {"ViewItems", (HideMask & HM_ITEMS) != 0},
        {"ViewPaths", (HideMask & HM_PATHS) != 0},
        {"ViewDetail", (HideMask & HM_DETAIL) != 0},
        {"EditSelH", SelectByHandles},
        {"EditSelA", SelectAuto},
        {"ToolsIG", IgnoreGroups},
        {"ToolsTexLock", TextureLock},
        {"ToolsTexLockScale", TextureLockScale},
        {"ToolsVertexRes", !VertexToolRestrict},
        {"ToolsTexAlign", TextureFaceAlign},
        {"ToolsCordon", EnableCordon},
    };
    for (const auto& check : checks)
        setActionChecked(check.id, check.checked);
}

void cMainWindow::updateViewControls() {
    struct {
        const char* id;
        int type;
        int mode;
    } static const views[] = {
        {"View2DXY", VIEW_TOP, -1},          {"View2DYZ", VIEW_FRONT, -1},
        {"View2DXZ", VIEW_SIDE, -1},         {"View3DW", VIEW_CAMERA, RM_WIREFRAME},
        {"View3DF", VIEW_CAMERA, RM_FILLED}, {"View3DT", VIEW_CAMERA, RM_TEXTURED},
    };
    const cCanvas* canvas = commandCanvas();
    for (const auto& view : views)
        setActionChecked(view.id, canvas && canvas->viewType == view.type &&
                                      (view.mode < 0 || canvas->renderMode == view.mode));
}

void cMainWindow::updateSnapPane() {
    setStatusPane(tr("Snap: %1 Grid: %2").arg(SnapToGrid ? tr("On") : tr("Off")).arg(gridSize), 6);
}

void cMainWindow::updateStatusBar(const QString& text) {
    setStatusPane(text, 0);
}

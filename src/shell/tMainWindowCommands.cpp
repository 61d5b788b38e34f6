// SPDX-License-Identifier: MIT
// What the commands follow, and the refreshing of menus, bars and docks.
#include "document/tHistory.h"
#include "document/tMap.h"
#include "operations/tClipboard.h"
#include "shell/tClassMenus.h"
#include "shell/tCommandMenus.h"
#include "shell/tConsoleDock.h"
#include "shell/tFilterDock.h"
#include "shell/tMainWindow.h"
#include "shell/tObjectsDock.h"
#include "shell/tProject.h"
#include "shell/tScreenElements.h"
#include "shell/tServices.h"
#include "shell/tTexturesDock.h"
#include "shell/tWindowList.h"
#include "views/tCanvas.h"
#include "views/tTool.h"

static bool supportsDecals(const cMapProfile& profile) {
    return (profile.flags & PF_DECALS_WITHOUT_CLASS) ||
           ((profile.flags & PF_DECAL_ENTITIES) && profile.decalEntityClass[0]);
}

static void takeSelection(const cMap& map, cCommandState& state) {
    state.hasSelection = map.hasSelection();
    state.hasBrushes = map.data.selectedBrushes != nullptr;
    state.canCopy = cClipboard::canCopy(map);
    state.canPaste = g_clipboard->canPaste(&map);
    state.canGroup =
        state.hasSelection && !state.settings->IgnoreGroups && state.tool != TOOL_TEXTURE;
}

// history: null without a document.
static void takeHistory(const cHistory* history, cCommandState& state) {
    using W = cMainWindow;
    state.canUndo = history && history->canUndo();
    state.canRedo = history && history->canRedo();
    state.undoText =
        state.canUndo ? W::tr("&Undo %1").arg(W::tr(history->undoName())) : W::tr("Can't undo");
    state.redoText =
        state.canRedo ? W::tr("&Redo %1").arg(W::tr(history->redoName())) : W::tr("Can't redo");
    state.historyText =
        history && history->isEnabled() ? W::tr("Disabl&e Undo/Redo") : W::tr("Enabl&e Undo/Redo");
}

cCommandState cMainWindow::commandState() const {
    cCommandState state;
    state.settings = this;
    state.tool = currentToolId();
    state.showsConsole = !m_console->isHidden();
    state.createText = m_classMenus->createText();
    state.tieText = m_classMenus->tieText();
    const cProject* project = activeProject();
    takeHistory(project ? project->map->history.get() : nullptr, state);
    if (!project)
        return state;
    state.hasDocument = true;
    takeSelection(*project->map, state);
    state.hasDetail = project->game.profile().detailContentMask != 0;
    state.hasDecals = supportsDecals(project->game.profile());
    if (const cCanvas* canvas = commandCanvas()) {
        state.viewType = canvas->viewType;
        state.renderMode = canvas->renderMode;
    }
    return state;
}

// Bars and docks tell of their visibility while the window is still being made.
void cMainWindow::updateCommands() {
    if (!m_tools)
        return;
    const cCommandState state = commandState();
    m_menus->apply(state);
    m_objectsDock->follow(state);
    m_texturesDock->follow();
}

void cMainWindow::updateScreenElements() {
    if (m_elements)
        m_elements->update();
    updateCommands();
}

void cMainWindow::updateEntityMenus(const QString& text, int parts) {
    if (m_classMenus->update(text, parts))
        updateCommands();
}

void cMainWindow::updateUi() {
    m_windowList->update(activeChild());
    updateScreenElements();
    m_filterDock->rebuild();
    updateSnapPane();
}

void cMainWindow::redrawAllViews(int mask) {
    for (cProject* project : qAsConst(projects))
        project->redrawViews(mask);
}

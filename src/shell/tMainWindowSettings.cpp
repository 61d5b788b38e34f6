// SPDX-License-Identifier: MIT
// How settings change while the program runs: by the effects that their rows carry.
#include "document/tHistory.h"
#include "document/tMap.h"
#include "shell/tCommandMenus.h"
#include "shell/tConsoleDock.h"
#include "shell/tCustomAction.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "shell/tServices.h"
#include "shell/tSettingsStorage.h"
#include "shell/tSettingsTable.h"
#include "shell/tStatusPanes.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QApplication>
#include <QStatusBar>

// ---- Effects on documents

static void recolor(cProject& project) {
    project.map->recolor();
}

static void takeHistoryLevels(cProject& project) {
    project.map->history->applyLevels();
}

static void noteTransparency(cProject& project) {
    project.map->noteFaceTransparency();
}

static void rebuildCullTree(cProject& project) {
    project.map->buildCullTree();
}

static void dropSelection(cProject& project) {
    project.map->updateSelectionMode();
    project.map->clearSelectionFull();
}

static void dropHidden(cProject& project) {
    project.map->dropHidden();
}

static void measureViews(cProject& project) {
    project.applyScrollbarSetting();
    for (const cChildWindow* window : project.windows) {
        for (cCanvas* canvas : window->canvases) {
            canvas->setZoom(canvas->zoom);
            canvas->setOffset(canvas->offsetX, canvas->offsetY);
        }
    }
}

static void updateCursors(cProject& project) {
    for (const cChildWindow* window : project.windows)
        for (cCanvas* canvas : window->canvases)
            canvas->updateCursor();
}

// Those that may run are started again for all documents at once.
static void stopTimers(cProject& project) {
    for (cChildWindow* window : project.windows)
        window->setTimersRunning(false);
}

static const struct {
    unsigned effect;
    void (*apply)(cProject& project);
} g_documentEffects[] = {
    {SE_COLORS, recolor},
    {SE_HISTORY, takeHistoryLevels},
    {SE_TRANSPARENCY, noteTransparency},
    {SE_WORLD, rebuildCullTree},
    {SE_GROUPS, dropSelection},
    {SE_HIDDEN, dropHidden},
    {SE_MEASURES, measureViews},
    {SE_CURSORS, updateCursors},
    {SE_TIMERS, stopTimers},
};

// ---- Changes

static_assert(int(SE_2D) == int(REDRAW_2D) && int(SE_3D) == int(REDRAW_3D));

unsigned cMainWindow::applySettings(const cSettings& after) {
    const unsigned effects = effectsOf(*this, after);
    static_cast<cSettings&>(*this) = after;
    if (effects & SE_COLORS) {
        m_storage->readColorScheme();
        applyPalette();
    }
    if (effects & SE_TEXTURES)
        m_services->configs.reloadTextures();
    if (effects & SE_TOOL_BAR)
        m_menus->setSmallToolIcons(SmallToolIcons);
    for (cProject* project : qAsConst(projects))
        for (const auto& row : g_documentEffects)
            if (effects & row.effect)
                row.apply(*project);
    if (effects & SE_TIMERS)
        updateTimers();
    updateSnapPane();
    redrawAllViews(int(effects & SE_VIEWS));
    updateCommands();
    return effects;
}

void cMainWindow::toggleSetting() {
    const auto* action = dynamic_cast<const QCustomAction*>(sender());
    if (!action || !action->row)
        return;
    const cSettingCheck& setting = action->row->rules.setting;
    cSettings after = *this;
    setting.check(after, action->isChecked());
    applySettings(after);
    if (setting.said)
        statusBar()->showMessage(
            (setting.isOn(*this) ? tr("%1 on") : tr("%1 off")).arg(tr(setting.said)), MESSAGE_TIME);
}

// ---- Grid

void cMainWindow::setGridSize(int size) {
    constexpr int MIN_GRID = 1, MAX_GRID = 512;
    cSettings after = *this;
    after.gridSize = qBound(MIN_GRID, size, MAX_GRID);
    applySettings(after);
}

void cMainWindow::cmdMapSmallerGrid() {
    setGridSize(gridSize / 2);
}

void cMainWindow::cmdMapBiggerGrid() {
    setGridSize(gridSize * 2);
}

void cMainWindow::updateSnapPane() {
    setStatusPane(tr("Snap: %1 Grid: %2").arg(SnapToGrid ? tr("On") : tr("Off")).arg(gridSize),
                  PANE_SNAP);
}

// ---- Colours

// Black leaves the application its own look.
void cMainWindow::applyPalette() {
    const QColor& color = m_services->colors.color(COLOR_APPLICATION);
    if (color.red() || color.green() || color.blue()) {
        QApplication::setPalette(QPalette(color));
        m_paletteChanged = true;
    } else if (m_paletteChanged) {
        QApplication::setPalette(m_startPalette);
        m_paletteChanged = false;
    }
    m_console->lookLikePanel();
}

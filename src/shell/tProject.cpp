// SPDX-License-Identifier: MIT
// How a project comes into being, how it asks before it goes, and its titles.
#include "shell/tProject.h"

#include "dialogs/tSelectGameCfgDialog.h"
#include "document/tEntity.h"
#include "document/tHistory.h"
#include "shell/tFileDialogs.h"
#include "shell/tMainWindow.h"
#include "shell/tRecentFiles.h"
#include "shell/tServices.h"
#include "shell/tStatusPanes.h"
#include "support/tConsole.h"
#include "support/tMapText.h"
#include "support/tSystem.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMessageBox>
#include <algorithm>

static const QString PROGRAM_NAME = QStringLiteral("Karvex");

cProject::cProject()
    : game(g_mainWindow->services().configs, g_mainWindow->services().textures,
           g_mainWindow->services().models),
      map(std::make_unique<cMap>(game, this)) {}

cProject::~cProject() {
    if (game.config)
        --game.config->useCount;
    detachWindows();
    map.reset();
    if (g_mainWindow) {
        g_mainWindow->setStatusPane(QString(), PANE_SELECTION);
        g_mainWindow->setStatusPane(QString(), PANE_BOX);
    }
}

void cProject::detachWindows() {
    for (cChildWindow* window : windows) {
        window->closing = true;
        window->project = nullptr;
    }
    windows.clear();
}

cConfigFolders* cProject::viewConfig() {
    return game.config;
}

// ---- The game configuration

bool cProject::selectGameConfig() {
    const cGameConfigRegistry& registry = g_mainWindow->services().configs;
    if (registry.configs.isEmpty()) {
        refuseWithoutConfig(QCoreApplication::translate(
            "cProject",
            "No game configurations are available. You must set them up in the \"Game Profiles\" "
            "tab of the Options dialog box before creating or loading a map.\n\nDo you want to "
            "create a new game configuration now?"));
        return false;
    }
    QList<cGameConfig*> enabled;
    for (cGameConfig* config : registry.configs)
        if (config->enabled)
            enabled.append(config);
    if (enabled.isEmpty()) {
        refuseWithoutConfig(QCoreApplication::translate(
            "cProject",
            "No game configurations are available. However, there are some configurations set "
            "up, but they are disabled. You must enable them in the \"Game Profiles\" tab of the "
            "Options dialog box before creating or loading a map.\n\nDo you want to do this "
            "now?"));
        return false;
    }
    cGameConfig* chosen = enabled.first();
    if (enabled.size() > 1) {
        cSelectGameCfgDialog dialog(registry, g_mainWindow);
        chosen =
            dialog.exec() == QDialog::Accepted ? registry.find(dialog.selectedName()) : nullptr;
    }
    if (!chosen)
        return false;
    takeConfig(chosen);
    precacheConfig();
    return true;
}

void cProject::refuseWithoutConfig(const QString& text) {
    const auto answer =
        QMessageBox::warning(g_mainWindow, PROGRAM_NAME, text, QMessageBox::Yes | QMessageBox::No);
    if (answer == QMessageBox::Yes)
        g_mainWindow->openGameProfiles();
}

void cProject::takeConfig(cGameConfig* config) {
    game.config = config;
    gameConfigName = config->title;
    ++config->useCount;
}

void cProject::precacheConfig() {
    cGameConfigRegistry& registry = g_mainWindow->services().configs;
    if (registry.needsPrecache(game.config)) {
        const cBusy busy;
        g_mainWindow->showWaitDialog(
            QCoreApplication::translate("cProject", "Precaching game configuration..."));
        registry.precache(game.config);
        g_mainWindow->hideWaitDialog();
    }
    TempBuffer_FreeAll();
}

void cProject::activateConfig() {
    g_mainWindow->services().configs.setCurrent(game.config);
    setActiveConfig(game.config);
}

void cProject::reconfigure() {
    game.config = g_mainWindow->services().configs.find(gameConfigName);
    applyScrollbarSetting();
    redrawViews(REDRAW_ALL);
}

// ---- New

bool cProject::newProject() {
    static int counter = 1;

    const bool withShift = QGuiApplication::keyboardModifiers() & Qt::ShiftModifier;
    if (!selectGameConfig())
        return false;
    map->clearMap();
    activateConfig();
    const cRoomShape* room = nullptr;
    if (!g_mainWindow->askDefaultRoom(withShift, &room))
        return false;
    title = QStringLiteral("Map%1").arg(counter++);
    const cBusy busy;
    activateConfig(); // a window behind the dialog may have taken over
    createWorldspawn();
    if (room)
        createDefaultRoom(*map, *room);
    map->buildCullTree();
    Print("Created new project with game configuration \"%s\"",
          toMapText(gameConfigName).constData());
    return true;
}

void cProject::createWorldspawn() {
    static const float origin[3] = {0, 0, 0};
    const cEntityClass* worldClass = g_mainWindow->services().configs.findWorldspawn(game.config);
    const QByteArray name =
        worldClass ? toMapText(worldClass->name) : QByteArrayLiteral("worldspawn");
    cEntityData* world = map->addEntity(name.constData(), origin, EF_WORLD);
    resetEntityFromClass(world);
    updateEntity(world, 0);
}

// ---- Closing

bool cProject::confirmClose() {
    if (!dirty)
        return true;
    const auto answer = QMessageBox::warning(
        g_mainWindow, PROGRAM_NAME,
        QCoreApplication::translate("cProject", "Save changes to %1?").arg(title),
        QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    if (answer == QMessageBox::No)
        return true;
    if (answer != QMessageBox::Yes)
        return false;
    return path.isEmpty() ? saveAsNewFile() : saveOrBeep(path);
}

// Why it failed stands in the console.
bool cProject::saveOrBeep(const QString& file) {
    const bool saved = saveProject(file);
    if (!saved)
        QApplication::beep();
    return saved;
}

bool cProject::saveAsNewFile() {
    const QString directory = game.config ? game.config->mapSourceFileDirectory : QString();
    const QString name =
        askSaveName(g_mainWindow, directory,
                    {{QStringLiteral("Map Projects (*.kvx)"), QStringLiteral(".kvx")}}, baseName());
    if (name.isEmpty())
        return false;
    if (!saveOrBeep(name))
        return false;
    g_mainWindow->recentFiles().add(name);
    return true;
}

bool cProject::closeProject() {
    if (!closing && !confirmClose())
        return false;
    closing = true;
    const QList<cChildWindow*> all = windows;
    detachWindows();
    for (cChildWindow* window : all)
        if (QWidget* subWindow = window->parentWidget())
            subWindow->close();
    return true;
}

bool cProject::windowClosing(cChildWindow* window) {
    if (windows.size() == 1 && windows.first() == window && !confirmClose())
        return false;
    windows.removeOne(window);
    window->project = nullptr;
    if (!windows.isEmpty()) {
        updateTitles();
        return true;
    }
    closing = true;
    g_mainWindow->removeProject(this); // deletes this
    return true;
}

// ---- Titles

void cProject::setDirty(bool flag) {
    m_changedBeside = flag;
    if (!flag)
        m_savedState = map->history->stateNumber();
    findDirty();
}

void cProject::changed(unsigned what) {
    if (!(what & MC_EDITED))
        return;
    m_changedBeside |= !(what & MC_HISTORY);
    findDirty();
}

void cProject::findDirty() {
    dirty = m_changedBeside || map->history->stateNumber() != m_savedState;
    updateTitles();
}

QString cProject::baseName() const {
    for (const char* extension : {".kvx", ".map"})
        if (title.endsWith(QLatin1String(extension), Qt::CaseInsensitive))
            return title.chopped(int(strlen(extension)));
    return title;
}

void cProject::updateTitles() {
    const QString mark = dirty ? QStringLiteral("*") : QString();
    for (int i = 0; i < windows.size(); ++i) {
        const QString number = windows.size() > 1 ? QStringLiteral(":%1").arg(i + 1) : QString();
        windows[i]->setWindowTitle(title + number + mark);
    }
}

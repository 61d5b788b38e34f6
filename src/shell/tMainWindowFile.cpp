// SPDX-License-Identifier: MIT
// The commands of the File menu and the list of open documents.
#include "dialogs/tDefaultRoomDialog.h"
#include "operations/tClipboard.h"
#include "shell/tFileDialogs.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "shell/tRecentFiles.h"
#include "shell/tServices.h"
#include "shell/tTieToEntity.h"
#include "support/tConsole.h"
#include "support/tMapText.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QStatusBar>

static const QString PROJECT_FILTER = QStringLiteral("Karvex Projects (*.kvx)");

// ---- Open documents

// The same file under another spelling of its path is the same document.
cProject* cMainWindow::findProjectByPath(const QString& path) const {
    const QString canonical = QFileInfo(path).canonicalFilePath();
    for (cProject* project : projects) {
        if (project->path == path)
            return project;
        if (!canonical.isEmpty() && QFileInfo(project->path).canonicalFilePath() == canonical)
            return project;
    }
    return nullptr;
}

void cMainWindow::removeProject(cProject* project) {
    if (!project->closeProject())
        return;
    if (g_clipboard->refersTo(*project->map))
        g_clipboard->forgetSource();
    m_tieToEntity->forget(*project);
    const bool showsIt = activeCanvas && activeCanvas->project() == project;
    if (showsIt || !activeChild())
        setActiveCanvas(nullptr);
    projects.removeOne(project);
    delete project;
    if (cProject* next = activeProject())
        activateProject(next); // the one that went has cleared the status panes
}

static void raiseWindows(const cProject* project) {
    for (const cChildWindow* window : project->windows) {
        auto* subWindow = qobject_cast<QMdiSubWindow*>(window->parentWidget());
        if (!subWindow)
            continue;
        if (subWindow->isMinimized())
            subWindow->showNormal();
        subWindow->raise();
        g_mainWindow->mdiArea()->setActiveSubWindow(subWindow);
    }
}

bool cMainWindow::openFile(const QString& path) {
    if (const cProject* open = findProjectByPath(path)) {
        Print("%s is already opened", toMapText(path).constData());
        raiseWindows(open);
        m_recentFiles->add(open->path);
        return true;
    }
    auto project = std::make_unique<cProject>();
    if (!project->loadProject(path)) {
        QApplication::beep();
        project.reset();
        returnToActiveProject();
        return false;
    }
    cProject* opened = project.release();
    projects.append(opened);
    createProjectWindows(opened);
    m_services->models.purge();
    m_recentFiles->add(path);
    if (cCanvas* canvas = opened->firstCanvas())
        setActiveCanvas(canvas);
    notifyTools();
    statusBar()->showMessage(tr("File loaded"), MESSAGE_TIME);
    return true;
}

void cMainWindow::openArgument(const QString& path) {
    if (path.contains(QLatin1Char('.')))
        openFile(QFileInfo(path).absoluteFilePath());
}

// ---- New, open, close

static void takeTextures(const cMapProfile& profile, cRoomShape& room) {
    room.wall = profile.roomWallTexture;
    room.ceiling = profile.roomCeilingTexture;
    room.floor = profile.roomFloorTexture;
}

bool cMainWindow::askDefaultRoom(bool forced, const cRoomShape** room) {
    *room = nullptr;
    if (SkipDefaultRoomDialog && !forced)
        return true;
    if (m_roomProfile != profile().name) { // another game has other textures
        m_roomProfile = profile().name;
        takeTextures(profile(), m_room);
    }
    cDefaultRoomDialog dialog(m_room, SkipDefaultRoomDialog, this);
    const int answer = dialog.exec();
    SkipDefaultRoomDialog = dialog.skipNext();
    if (answer == QDialog::Accepted) {
        m_room = dialog.shape();
        *room = &m_room;
    }
    return answer != QDialog::Rejected;
}

void cMainWindow::cmdFileNew() {
    auto project = std::make_unique<cProject>();
    if (!project->newProject()) {
        project.reset();
        returnToActiveProject();
        return;
    }
    cProject* made = project.release();
    projects.append(made);
    createProjectWindows(made);
    m_services->models.purge();
}

static QString openFilters(const cPluginManager& plugins) {
    QStringList filters;
    QString all = QStringLiteral("*.kvx");
    for (const cMapFormat& format : plugins.importFormats) {
        filters += QStringLiteral("%1 (*%2)").arg(format.description, format.extension);
        if (!all.contains(format.extension))
            all += QStringLiteral(" *%1").arg(format.extension);
    }
    filters.prepend(PROJECT_FILTER);
    filters.prepend(QStringLiteral("All supported formats (%1)").arg(all));
    return joinFilters(filters);
}

static QString startDirectory(const cGameConfig* config) {
    return config ? config->mapSourceFileDirectory : QString();
}

void cMainWindow::cmdFileOpen() {
    const QString directory = RecentMapDirectory.isEmpty()
                                  ? startDirectory(m_services->configs.current)
                                  : RecentMapDirectory;
    const QString name =
        QFileDialog::getOpenFileName(this, QString(), directory, openFilters(m_services->plugins));
    if (name.isEmpty())
        return;
    RecentMapDirectory = QFileInfo(name).canonicalPath();
    openFile(name);
}

void cMainWindow::cmdFileClose() {
    cProject* project = activeProject();
    if (!project)
        return;
    removeProject(project);
    updateUi();
}

void cMainWindow::cmdFileCloseAll() {
    closeAllWindows();
    updateScreenElements();
}

// ---- Save and export

// The export formats of the current profile: those for ".map", or all others.
static QList<cSaveFilter> exportFilters(const cMainWindow& window, bool mapOnly) {
    QList<cSaveFilter> filters;
    for (const cMapFormat& format : window.services().plugins.exportFormats) {
        const bool isMap = !format.extension.compare(QLatin1String(".map"), Qt::CaseInsensitive);
        if (format.library == window.profile().library && isMap == mapOnly)
            filters.append({QStringLiteral("%1 (*%2)").arg(format.description, format.extension),
                            format.extension});
    }
    return filters;
}

void cMainWindow::cmdFileSave() {
    cProject* project = activeProject();
    if (!project)
        return;
    const bool isMap =
        !QFileInfo(project->path).suffix().compare(QLatin1String("map"), Qt::CaseInsensitive);
    if (project->path.isEmpty() || isMap)
        cmdFileSaveAs();
    else if (project->saveProject(project->path))
        statusBar()->showMessage(tr("File saved"), MESSAGE_TIME);
    else
        QApplication::beep();
}

void cMainWindow::cmdFileSaveAs() {
    cProject* project = activeProject();
    if (!project)
        return;
    QList<cSaveFilter> filters = exportFilters(*this, false);
    filters.prepend({PROJECT_FILTER, QStringLiteral(".kvx")});
    const QString name = askSaveName(this, startDirectory(m_services->configs.current), filters,
                                     project->baseName());
    if (name.isEmpty())
        return;
    if (!project->saveProject(name)) {
        QApplication::beep();
        return;
    }
    m_recentFiles->add(name);
    statusBar()->showMessage(tr("File saved"), MESSAGE_TIME);
}

static void exportOrBeep(cMainWindow& window, cProject& project) {
    if (project.exportProject(project.exportPath))
        window.statusBar()->showMessage(cMainWindow::tr("File exported"),
                                        cMainWindow::MESSAGE_TIME);
    else
        QApplication::beep();
}

void cMainWindow::cmdFileExport() {
    cProject* project = activeProject();
    if (!project)
        return;
    const QList<cSaveFilter> filters = exportFilters(*this, true);
    if (filters.isEmpty()) {
        QMessageBox::warning(this, QStringLiteral("Karvex"),
                             tr("Cannot export MAP: no export formats available!"));
        return;
    }
    const cGameConfig* config = project->game.config;
    const QString base = config ? config->gameBasedir : QString();
    const QString name =
        askSaveName(this, base + QStringLiteral("/maps"), filters, project->baseName());
    if (name.isEmpty())
        return;
    project->exportPath = name;
    exportOrBeep(*this, *project);
}

void cMainWindow::cmdFileExportAgain() {
    cProject* project = activeProject();
    if (!project)
        return;
    if (project->exportPath.isEmpty())
        cmdFileExport();
    else
        exportOrBeep(*this, *project);
}

// ---- What is not built yet

void cMainWindow::tellUnderDevelopment(const QString& command) {
    QString text = tr("We are sorry...\n\nThe command \"%1\" is still under development.\nPlease "
                      "visit the official web site for news and updates.")
                       .arg(command);
    text.remove(QLatin1Char('&'));
    QMessageBox::warning(this, tr("Not available"), text);
}

void cMainWindow::msgFeatureUnderDevelopment() {
    QString command;
    if (const auto* action = qobject_cast<const QAction*>(sender()))
        command = action->text();
    else if (const auto* button = qobject_cast<const QPushButton*>(sender()))
        command = button->text();
    if (!command.isEmpty())
        tellUnderDevelopment(command);
}

void cMainWindow::openGameProfiles() {
    tellUnderDevelopment(tr("&Options..."));
}

void cMainWindow::cmdFileExit() {
    close();
}

// SPDX-License-Identifier: MIT
// The commands of the File menu and the list of open documents.
#include "dialogs/tEntityListDialog.h"
#include "operations/tClipboard.h"
#include "pluginhost/tPluginManager.h"
#include "resources/tGameConfigRegistry.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
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
static const QString FILTER_SEPARATOR = QStringLiteral(";;");

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
    if (project == m_listedProject) {
        delete m_entityList;
        tieClassName.clear();
    }
    if (projectOf(activeCanvas) == project || !activeChild())
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
        addRecentFile(open->path);
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
    addRecentFile(path);
    if (cCanvas* canvas = opened->firstCanvas())
        setActiveCanvas(canvas);
    notifyTools();
    statusBar()->showMessage(tr("File loaded"), MESSAGE_TIME);
    return true;
}

// A project that came to nothing has taken over configuration and status panes.
void cMainWindow::returnToActiveProject() {
    cProject* project = activeProject();
    if (project)
        activateProject(project);
    checkActiveState(!project);
}

void cMainWindow::openArgument(const QString& path) {
    if (path.contains(QLatin1Char('.')))
        openFile(QFileInfo(path).absoluteFilePath());
}

// ---- New, open, close

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
}

QString cMainWindow::openFilters() const {
    QString filters;
    QString all = QStringLiteral("*.kvx");
    for (const cMapFormat& format : m_plugins->importFormats) {
        filters +=
            FILTER_SEPARATOR + QStringLiteral("%1 (*%2)").arg(format.description, format.extension);
        if (!all.contains(format.extension))
            all += QStringLiteral(" *%1").arg(format.extension);
    }
    return QStringLiteral("All supported formats (%1)").arg(all) + FILTER_SEPARATOR +
           PROJECT_FILTER + filters;
}

QString cMainWindow::startDirectory() const {
    const cGameConfig* config = m_configs->current;
    return config ? config->mapSourceFileDirectory : QString();
}

void cMainWindow::cmdFileOpen() {
    const QString directory = RecentMapDirectory.isEmpty() ? startDirectory() : RecentMapDirectory;
    const QString name = QFileDialog::getOpenFileName(this, QString(), directory, openFilters());
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

// The extension is added inside the dialog, so that it asks before the real name is overwritten.
QString cMainWindow::askSaveName(const QString& directory, const QList<cSaveFilter>& filters,
                                 const QString& proposal) {
    QStringList texts;
    for (const cSaveFilter& filter : filters)
        texts.append(filter.filter);
    QFileDialog dialog(this, QString(), directory, texts.join(FILTER_SEPARATOR));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.selectFile(proposal);
    const auto followFilter = [&](const QString& chosen) {
        dialog.setDefaultSuffix(filters[qMax(0, texts.indexOf(chosen))].extension.mid(1));
    };
    followFilter(texts.first());
    connect(&dialog, &QFileDialog::filterSelected, &dialog, followFilter);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    const QString name = dialog.selectedFiles().first();
    for (const cSaveFilter& filter : filters)
        if (name.endsWith(filter.extension, Qt::CaseInsensitive))
            return name;
    return withSuffix(name, dialog.defaultSuffix());
}

// The dialog adds none to a name that holds a point, and has asked of another file than this one.
QString cMainWindow::withSuffix(const QString& name, const QString& suffix) {
    const QString whole = name + QLatin1Char('.') + suffix;
    const QString question =
        tr("%1 already exists.\nDo you want to replace it?").arg(QFileInfo(whole).fileName());
    if (QFileInfo::exists(whole) &&
        QMessageBox::warning(this, QStringLiteral("Karvex"), question,
                             QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes)
        return QString();
    return whole;
}

// The export formats of the current profile: those for ".map", or all others.
QList<cMainWindow::cSaveFilter> cMainWindow::exportFilters(bool mapOnly) const {
    QList<cSaveFilter> filters;
    for (const cMapFormat& format : m_plugins->exportFormats) {
        const bool isMap = !format.extension.compare(QLatin1String(".map"), Qt::CaseInsensitive);
        if (format.library == profile().library && isMap == mapOnly)
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
    QList<cSaveFilter> filters = exportFilters(false);
    filters.prepend({PROJECT_FILTER, QStringLiteral(".kvx")});
    const QString name = askSaveName(startDirectory(), filters, project->baseName());
    if (name.isEmpty())
        return;
    if (!project->saveProject(name)) {
        QApplication::beep();
        return;
    }
    addRecentFile(name);
    statusBar()->showMessage(tr("File saved"), MESSAGE_TIME);
}

void cMainWindow::cmdFileExport() {
    cProject* project = activeProject();
    if (!project)
        return;
    const QList<cSaveFilter> filters = exportFilters(true);
    if (filters.isEmpty()) {
        QMessageBox::warning(this, QStringLiteral("Karvex"),
                             tr("Cannot export MAP: no export formats available!"));
        return;
    }
    const cGameConfig* config = project->game.config;
    const QString base = config ? config->gameBasedir : QString();
    const QString name = askSaveName(base + QStringLiteral("/maps"), filters, project->baseName());
    if (name.isEmpty())
        return;
    project->exportPath = name;
    exportOrBeep(*project);
}

void cMainWindow::exportOrBeep(cProject& project) {
    if (project.exportProject(project.exportPath))
        statusBar()->showMessage(tr("File exported"), MESSAGE_TIME);
    else
        QApplication::beep();
}

void cMainWindow::cmdFileExportAgain() {
    cProject* project = activeProject();
    if (!project)
        return;
    if (project->exportPath.isEmpty())
        cmdFileExport();
    else
        exportOrBeep(*project);
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

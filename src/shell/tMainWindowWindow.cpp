// SPDX-License-Identifier: MIT
// Document windows: which ones a project gets; the commands of the Window menu, with those of the
// message console.
#include "shell/tConsoleDock.h"
#include "shell/tFileDialogs.h"
#include "shell/tLayoutStorage.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "support/tConsole.h"
#include "support/tMapText.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QAction>
#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QTextEdit>

// ---- Making windows

// The system menu's Close would take Ctrl+W away from the commands.
static void stripShortcuts(const QMdiSubWindow* window) {
    if (const QMenu* menu = window->systemMenu())
        for (QAction* action : menu->actions())
            action->setShortcut(QKeySequence());
}

cChildWindow* cMainWindow::addChild(cProject* project) {
    auto* child = new cChildWindow(project);
    QMdiSubWindow* window = m_mdiArea->addSubWindow(child);
    window->setWindowIcon(windowIcon());
    stripShortcuts(window);
    m_mdiArea->setActiveSubWindow(window);
    project->updateTitles();
    return child;
}

static cChildWindow* showFourViews(cMainWindow& main, cProject* project) {
    const QMdiSubWindow* active = main.mdiArea()->currentSubWindow();
    const bool maximize = !active || active->isMaximized();
    cChildWindow* child = main.addChild(project);
    child->createViews(-1);
    if (maximize)
        child->parentWidget()->showMaximized();
    else
        child->parentWidget()->show();
    return child;
}

static cChildWindow* showSingleView(cMainWindow& main, cProject* project, int type) {
    cChildWindow* child = main.addChild(project);
    child->createViews(type);
    child->parentWidget()->show();
    return child;
}

// The types 1, 2 and 3 in turn, for the whole run.
static int nextSingleType() {
    static int counter = 0;
    return counter++ % 3 + 1;
}

static void focusWindow(const cChildWindow* child) {
    cCanvas* canvas = child->findCanvas(-1);
    if (!canvas)
        canvas = child->firstCanvas();
    if (canvas)
        canvas->activate();
}

void cMainWindow::createProjectWindows(cProject* project) {
    cChildWindow* child = nullptr;
    if (!IndependentWindows) {
        child = showFourViews(*this, project);
    } else if (CreateDefaultWindows) {
        const bool first = m_mdiArea->subWindowList().isEmpty();
        for (int type : {VIEW_FRONT, VIEW_SIDE, VIEW_TOP, VIEW_CAMERA})
            child = showSingleView(*this, project, type);
        if (first)
            m_mdiArea->tileSubWindows();
    } else {
        child = showSingleView(*this, project, nextSingleType());
    }
    focusWindow(child);
    updateUi();
}

// ---- The Window menu

void cMainWindow::cmdWindowNew() {
    cProject* project = activeProject();
    if (!project)
        return;
    cChildWindow* child = IndependentWindows ? showSingleView(*this, project, nextSingleType())
                                             : showFourViews(*this, project);
    project->updateTitles();
    focusWindow(child);
    updateUi();
}

void cMainWindow::cmdWindowCascade() {
    m_mdiArea->cascadeSubWindows();
}

void cMainWindow::cmdWindowTile() {
    m_mdiArea->tileSubWindows();
}

void cMainWindow::cmdWindowNext() {
    m_mdiArea->activateNextSubWindow();
}

void cMainWindow::cmdWindowPrev() {
    m_mdiArea->activatePreviousSubWindow();
}

// ---- The stored window

static QMdiSubWindow* frameOf(const cChildWindow* child) {
    return child ? qobject_cast<QMdiSubWindow*>(child->parentWidget()) : nullptr;
}

void cMainWindow::cmdMapSaveWindowState() {
    if (const QMdiSubWindow* frame = frameOf(activeChild()))
        m_layout->takeChild(*frame);
}

void cMainWindow::cmdMapLoadWindowState() {
    if (QMdiSubWindow* frame = frameOf(activeChild()))
        m_layout->placeChild(*frame);
}

// ---- The console

void cMainWindow::cmdWindowMessages() {
    if (const auto* action = qobject_cast<const QAction*>(sender()))
        m_console->setVisible(action->isChecked());
}

void cMainWindow::cmdWindowExportMessages() {
    const QString text = m_console->text()->toPlainText();
    if (text.isEmpty())
        return;
    const QString name =
        askSaveName(this, RecentMapDirectory, {{tr("Text files (*.txt)"), QStringLiteral(".txt")}});
    if (name.isEmpty())
        return;
    QFile file(name);
    const auto writeText = [&] {
        return file.open(QIODevice::WriteOnly | QIODevice::Text) &&
               file.write(toMapText(text)) >= 0 && file.flush();
    };
    if (!writeText()) {
        QMessageBox::warning(this, QStringLiteral("Karvex"),
                             tr("Failed to write: %1\n%2").arg(name, file.errorString()));
        return;
    }
    m_console->append(tr("Messages exported to \"%1\"").arg(name), false, true);
}

// SPDX-License-Identifier: MIT
// Cut, Copy, Paste and Paste Special: what the clipboard's operations are given.
#include "dialogs/tPasteSpecialDialog.h"
#include "dialogs/tWaitDialog.h"
#include "operations/tClipboard.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "views/tCanvas.h"

#include <QApplication>
#include <QElapsedTimer>

// A paste that takes longer than this shows how far it is, in ms.
static constexpr int QUIET_TIME = 1000;
// How often the display changes, in ms.
static constexpr int PROGRESS_INTERVAL = 100;

// ---- Cut and copy

void cMainWindow::cmdEditCut() {
    cProject* project = activeProject();
    if (!project || !cClipboard::canCopy(*project->map))
        return;
    g_clipboard->cutSelection(*project->map, RestoreCutObjects);
}

void cMainWindow::cmdEditCopy() {
    cProject* project = activeProject();
    if (!project || !cClipboard::canCopy(*project->map))
        return;
    g_clipboard->copySelection(*project->map, RestoreCutObjects);
    updateCommands(); // the map may be as it was
}

// ---- Paste

// Where the mouse was last in the view used last, if it has not left it, else in the 2D view used
// last; the world's origin where it met nothing.
static void pasteTarget(const cMainWindow& window, float target[3]) {
    std::fill_n(target, 3, 0.0f);
    float point[3];
    cCanvas* active = window.activeCanvas;
    cCanvas* canvas = active && active == window.commandCanvas() ? active : window.flatCanvas();
    if (canvas && canvas->screenToWorld(canvas->mouseX, canvas->mouseY, SW_SNAP | SW_DEPTH, point))
        std::copy_n(point, 3, target);
}

static void pasteObjects(cMainWindow& window, cMap& map, const cPasteOptions& options,
                         const char* stepName) {
    cPasteOptions shown = options;
    QElapsedTimer total, shownLast;
    total.start();
    shownLast.start();
    shown.progress = [&](qint64 done, qint64 all) {
        if (total.elapsed() < QUIET_TIME || shownLast.elapsed() < PROGRESS_INTERVAL)
            return;
        window.showWaitDialog(cMainWindow::tr("Pasting objects..."));
        window.showProgress(cMainWindow::tr("%1 of %2 objects").arg(done).arg(all));
        shownLast.start();
    };
    g_clipboard->paste(map, shown, stepName);
    if (g_waitDialog) // what was typed and clicked meanwhile meets the modal window, not the map
        QCoreApplication::processEvents();
    window.hideWaitDialog();
}

void cMainWindow::cmdEditPaste() {
    cProject* project = activeProject();
    if (!project || !g_clipboard->canPaste(project->map.get()))
        return;
    float target[3];
    pasteTarget(*this, target);
    cPasteOptions options;
    options.target = target;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    pasteObjects(*this, *project->map, options, "Paste");
    QApplication::restoreOverrideCursor();
}

// Views paint nothing during an operation: a dialog that went just before would stay on them.
static void paintUncovered() {
    constexpr int timeToExpose = 50; // ms, for window manager and server
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < timeToExpose)
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, timeToExpose);
}

void cMainWindow::cmdEditPasteSpecial() {
    cProject* project = activeProject();
    if (!project || !g_clipboard->canPaste(project->map.get()))
        return;
    float target[3];
    pasteTarget(*this, target);
    cPasteSpecialDialog dialog(g_clipboard->mins(), g_clipboard->maxs(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    cPasteOptions options;
    float offset[3], rotation[3];
    options.copies = dialog.copies();
    options.target = dialog.startsAtCenter() ? nullptr : target;
    options.offset = dialog.offset(offset) ? offset : nullptr;
    options.rotation = dialog.rotation(rotation) ? rotation : nullptr;
    options.groupCopies = dialog.groupsCopies();
    paintUncovered();
    pasteObjects(*this, *project->map, options, "Paste Special");
}

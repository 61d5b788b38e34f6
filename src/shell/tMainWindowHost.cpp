// SPDX-License-Identifier: MIT
// What the core and the views ask of the main window.
#include "dialogs/tWaitDialog.h"
#include "shell/tCommandMenus.h"
#include "shell/tConsoleDock.h"
#include "shell/tMainWindow.h"
#include "shell/tObjectsDock.h"
#include "shell/tProject.h"
#include "shell/tServices.h"
#include "shell/tStatusPanes.h"
#include "shell/tTexturesDock.h"
#include "shell/tToolSwitch.h"
#include "support/tMapText.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QCoreApplication>
#include <QSplashScreen>

static const QColor PROGRESS_COLOR(157, 157, 157, 255);

bool cMainWindow::isPrecaching() const {
    return g_splash || g_waitDialog;
}

void cMainWindow::consoleMessage(eMessage level, const char* text) {
    if (m_console)
        m_console->message(level, text);
}

void cMainWindow::showProgress(const QString& text) {
    if (g_splash)
        g_splash->showMessage(text, Qt::AlignBottom | Qt::AlignLeft, PROGRESS_COLOR);
    else if (g_waitDialog)
        g_waitDialog->setText(text);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void cMainWindow::showWaitDialog(const QString& text) {
    if (g_waitDialog)
        return;
    m_waitDialog = std::make_unique<cWaitDialog>(text, QString(), this);
    g_waitDialog = m_waitDialog.get();
    m_waitDialog->centerOnMainWindow(); // before it is seen, or its shadow stays on the views
    m_waitDialog->show();
    m_waitDialog->centerOnMainWindow();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void cMainWindow::hideWaitDialog() {
    if (!m_waitDialog)
        return;
    g_waitDialog = nullptr;
    // A wait window that goes before the window manager has seen it takes the focus along.
    m_waitDialog->hide();
    m_waitDialog.reset();
    activateWindow();
}

void cMainWindow::setStatusPane(const QString& text, int pane) {
    if (m_panes)
        m_panes->setText(text, pane);
}

// ---- Documents

void cMainWindow::busyEnded() {
    for (cProject* project : projects)
        project->paintDropped();
    if (m_texturesDock)
        m_texturesDock->follow();
}

int cMainWindow::currentToolId() const {
    return m_tools ? m_tools->currentId() : -1;
}

bool cMainWindow::picksFaces() const {
    return currentToolId() == TOOL_TEXTURE;
}

const uint8_t* cMainWindow::schemeColor(int index) const {
    static const uint8_t none[4] = {0, 0, 0, 255};
    return m_services ? m_services->colors.bytes(index) : none;
}

// ---- Views

void cMainWindow::setActiveCanvas(cCanvas* canvas) {
    if (canvas == activeCanvas)
        return;
    cCanvas::switchActive(*this, canvas);
    updateViewControls();
}

cCanvas* cMainWindow::commandCanvas() const {
    const cChildWindow* child = activeChild();
    return child ? child->commandView() : nullptr;
}

cCanvas* cMainWindow::flatCanvas() const {
    const cChildWindow* child = activeChild();
    return child ? child->flatCommandView() : nullptr;
}

cTool* cMainWindow::cameraTool() const {
    return m_tools->tools[TOOL_CAMERA].get();
}

QMenu* cMainWindow::popupMenu(const char* title) const {
    return m_menus->popup(title);
}

cGLWidget* cMainWindow::shareWidget() {
    return m_shareWidget.get();
}

bool cMainWindow::isActiveWindow(const cChildWindow* window) const {
    return window && window == activeChild();
}

// ---- What is created next

const cPrimitive* cMainWindow::currentPrimitive() const {
    return m_objectsDock->currentPrimitive();
}

cEntityClass* cMainWindow::currentClass() {
    return m_objectsDock->currentClass();
}

cTexture* cMainWindow::currentTexture() {
    return m_texturesDock->currentTexture();
}

bool cMainWindow::randomYaw() const {
    return m_objectsDock->randomYaw();
}

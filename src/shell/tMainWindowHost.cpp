// SPDX-License-Identifier: MIT
// What the core and the views ask of the main window, and the message console.
#include "dialogs/tWaitDialog.h"
#include "shell/tColorScheme.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "support/tMapText.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QCoreApplication>
#include <QLabel>
#include <QMenu>
#include <QSplashScreen>
#include <QTextEdit>

// How often a run of messages lets the window repaint, in ms.
static constexpr int CONSOLE_EVENT_INTERVAL = 50;

static const QColor PROGRESS_COLOR(157, 157, 157, 255);

// ---- Console

void cMainWindow::consoleMessage(eMessage level, const char* text) {
    QString line = fromMapText(text);
    if (level == eMessage::Warning)
        line = QStringLiteral("<font color=\"#FF6000\"><b>Warning:</b></font> ") + line;
    else if (level == eMessage::Error)
        line = QStringLiteral("<font color=\"red\"><b>Error:</b></font> ") + line;
    appendConsole(line, true, false);
}

void cMainWindow::appendConsole(const QString& text, bool isHtml, bool bold) {
    if (!m_consoleText)
        return;
    QString line = text;
    if (!isHtml)
        line.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    if (bold)
        line = QStringLiteral("<b>%1</b>").arg(line);
    // The element makes the text edit take even a plain line as HTML.
    m_consoleText->append(QStringLiteral("<span>%1</span>").arg(line));
    m_consoleText->moveCursor(QTextCursor::End);
    if (!g_closing && m_consoleEvents.elapsed() >= CONSOLE_EVENT_INTERVAL) {
        m_consoleEvents.start();
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
}

void cMainWindow::appendConsoleColored(const QString& text, bool isHtml, bool bold,
                                       const QColor& color) {
    QString line = text;
    if (!isHtml)
        line.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    line = QStringLiteral("<font color=\"%1\">%2</font>").arg(color.name(), line);
    appendConsole(line, true, bold);
}

bool cMainWindow::isPrecaching() const {
    return g_splash || g_waitDialog;
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
    if (pane < 0 || pane >= STATUS_PANES || !m_statusPanes[size_t(pane)])
        return;
    QLabel* label = m_statusPanes[size_t(pane)];
    label->setText(text);
    label->repaint();
}

// ---- Documents

void cMainWindow::busyEnded() {
    for (cProject* project : projects)
        project->paintDropped();
}

int cMainWindow::currentToolId() const {
    return currentTool ? currentTool->getId() : -1;
}

const uint8_t* cMainWindow::schemeColor(int index) const {
    static const uint8_t none[4] = {0, 0, 0, 255};
    return m_colors ? m_colors->bytes(index) : none;
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
    return tools[TOOL_CAMERA].get();
}

QMenu* cMainWindow::popupMenu(const char* title) const {
    const QString name = QString::fromLatin1(title);
    for (QMenu* menu : m_popups)
        if (menu->accessibleName() == name)
            return menu;
    return nullptr;
}

cGLWidget* cMainWindow::shareWidget() {
    return m_shareWidget.get();
}

bool cMainWindow::isActiveWindow(const cChildWindow* window) const {
    return window && window == activeChild();
}

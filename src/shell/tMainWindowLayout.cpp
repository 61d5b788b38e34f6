// SPDX-License-Identifier: MIT
// Which bars and docks show, and TDKLayout.dat: status bar byte, geometry and state of the main
// window, geometry of the texture browser, then the stored document window. Each length is 16
// bits, least significant byte first, and never 0.
#include "shell/tCustomAction.h"
#include "shell/tMainWindow.h"
#include "support/tSystem.h"
#include "views/tChildWindow.h"

#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QStatusBar>
#include <QToolBar>

// ---- Screen elements

void cMainWindow::toggleToolbar() {
    const auto* action = qobject_cast<const QAction*>(sender());
    if (!action)
        return;
    for (QToolBar* bar : m_toolBars) {
        if (bar->windowTitle() == action->text()) {
            bar->setVisible(action->isChecked());
            return;
        }
    }
}

void cMainWindow::toggleDockWidget() {
    const auto* action = dynamic_cast<const QCustomAction*>(sender());
    if (!action)
        return;
    if (auto* dock = findChild<QDockWidget*>(action->value))
        dock->setVisible(action->isChecked());
}

void cMainWindow::toggleStatusBar() {
    if (const auto* action = qobject_cast<const QAction*>(sender()))
        statusBar()->setVisible(action->isChecked());
}

// A dock behind another tab, or before the window shows, is not visible but not hidden either.
void cMainWindow::updateScreenElements() {
    for (QCustomAction* action : m_elementActions) {
        const QWidget* element = statusBar();
        for (const QToolBar* bar : m_toolBars)
            if (bar->windowTitle() == action->text())
                element = bar;
        if (!action->value.isEmpty())
            element = findChild<QDockWidget*>(action->value);
        action->setChecked(element && !element->isHidden());
    }
    setActionChecked("WindowMsg", !m_consoleDock->isHidden());
}

// ---- The layout file

static QString layoutPath() {
    return QDir(appBaseDir()).filePath(QStringLiteral("TDKLayout.dat"));
}

static bool readByte(QFile& file, quint8* out) {
    return file.read(reinterpret_cast<char*>(out), 1) == 1;
}

static bool writeByte(QFile& file, quint8 value) {
    return file.write(reinterpret_cast<const char*>(&value), 1) == 1;
}

static bool readBlock(QFile& file, QByteArray* out) {
    quint8 low = 0;
    quint8 high = 0;
    if (!readByte(file, &low) || !readByte(file, &high))
        return false;
    const int length = low | high << 8;
    *out = file.read(length);
    return length > 0 && out->size() == length;
}

static bool writeBlock(QFile& file, const QByteArray& bytes) {
    if (bytes.isEmpty() || bytes.size() > 0xffff)
        return false;
    return writeByte(file, quint8(bytes.size() & 0xff)) &&
           writeByte(file, quint8(bytes.size() >> 8)) && file.write(bytes) == bytes.size();
}

static void reportFile(QWidget* parent, const QString& text, const QFile& file) {
    QMessageBox::warning(parent, QStringLiteral("Karvex"),
                         text.arg(file.fileName(), file.errorString()));
}

bool cMainWindow::readMainBlock(QFile& file) {
    quint8 statusVisible = 0;
    QByteArray geometry;
    QByteArray state;
    if (!readByte(file, &statusVisible) || !readBlock(file, &geometry) ||
        !readBlock(file, &state) || !restoreGeometry(geometry) || !restoreState(state, 0))
        return false;
    statusBar()->setVisible(statusVisible != 0);
    return true;
}

bool cMainWindow::readBrowserBlock(QFile& file) {
    QByteArray geometry;
    if (!readBlock(file, &geometry) || !QWidget().restoreGeometry(geometry))
        return false;
    m_browserGeometry = geometry;
    return true;
}

bool cMainWindow::readChildBlock(QFile& file) {
    m_hasChildLayout = 0;
    m_childMaximized = 0;
    m_childGeometry.clear();
    quint8 present = 0;
    if (!readByte(file, &present))
        return false;
    if (!present)
        return true;
    if (!readByte(file, &m_childMaximized) || !readBlock(file, &m_childGeometry))
        return false;
    m_hasChildLayout = 1;
    return true;
}

void cMainWindow::loadLayout() {
    QFile file(layoutPath());
    if (!file.exists())
        return;
    const QString message = tr("Failed to read: %1\n%2");
    if (!file.open(QIODevice::ReadOnly)) {
        reportFile(this, message, file);
        return;
    }
    for (auto read : {&cMainWindow::readMainBlock, &cMainWindow::readBrowserBlock,
                      &cMainWindow::readChildBlock})
        if (!(this->*read)(file))
            reportFile(this, message, file);
}

// A dock that floats is a window of its own. One that came before the main window is taken for no
// part of it and stays beneath.
void cMainWindow::showFloatingDocks() {
    for (auto* dock : findChildren<QDockWidget*>()) {
        if (!dock->isFloating() || dock->isHidden())
            continue;
        const QRect place = dock->geometry();
        dock->hide();
        dock->show();
        dock->setGeometry(place);
    }
}

bool cMainWindow::writeMainBlock(QFile& file) {
    return writeByte(file, !statusBar()->isHidden()) && writeBlock(file, saveGeometry()) &&
           writeBlock(file, saveState(0));
}

bool cMainWindow::writeBrowserBlock(QFile& file) {
    return writeBlock(file,
                      m_browserGeometry.isEmpty() ? QWidget().saveGeometry() : m_browserGeometry);
}

bool cMainWindow::writeChildBlock(QFile& file) {
    if (!writeByte(file, m_hasChildLayout))
        return false;
    return !m_hasChildLayout ||
           (writeByte(file, m_childMaximized) && writeBlock(file, m_childGeometry));
}

void cMainWindow::saveLayout() {
    QFile file(layoutPath());
    const QString message = tr("Failed to write: %1\n%2");
    if (!file.open(QIODevice::WriteOnly)) {
        reportFile(this, message, file);
        return;
    }
    for (auto write : {&cMainWindow::writeMainBlock, &cMainWindow::writeBrowserBlock,
                       &cMainWindow::writeChildBlock})
        if (!(this->*write)(file))
            reportFile(this, message, file);
}

// ---- The stored document window

void cMainWindow::cmdMapSaveWindowState() {
    const cChildWindow* child = activeChild();
    const auto* window = child ? qobject_cast<QMdiSubWindow*>(child->parentWidget()) : nullptr;
    if (!window)
        return;
    m_childMaximized = window->isMaximized();
    m_childGeometry = window->saveGeometry();
    m_hasChildLayout = 1;
}

void cMainWindow::cmdMapLoadWindowState() {
    const cChildWindow* child = activeChild();
    auto* window = child ? qobject_cast<QMdiSubWindow*>(child->parentWidget()) : nullptr;
    if (!m_hasChildLayout || !window)
        return;
    if (m_childMaximized) {
        window->showMaximized();
        return;
    }
    window->showNormal();
    window->restoreGeometry(m_childGeometry);
}

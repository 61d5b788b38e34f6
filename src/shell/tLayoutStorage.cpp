// SPDX-License-Identifier: MIT
#include "shell/tLayoutStorage.h"

#include "shell/tMainWindow.h"
#include "support/tSystem.h"

#include <QDir>
#include <QFile>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QStatusBar>

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

bool cLayoutStorage::readMainBlock(QFile& file) {
    quint8 statusVisible = 0;
    QByteArray geometry;
    QByteArray state;
    if (!readByte(file, &statusVisible) || !readBlock(file, &geometry) ||
        !readBlock(file, &state) || !m_window.restoreGeometry(geometry) ||
        !m_window.restoreState(state, 0))
        return false;
    m_window.statusBar()->setVisible(statusVisible != 0);
    return true;
}

bool cLayoutStorage::readBrowserBlock(QFile& file) {
    QByteArray geometry;
    return readBlock(file, &geometry) && m_browser.restoreGeometry(geometry);
}

bool cLayoutStorage::readChildBlock(QFile& file) {
    m_hasChild = 0;
    m_childMaximized = 0;
    m_childGeometry.clear();
    quint8 present = 0;
    if (!readByte(file, &present))
        return false;
    if (!present)
        return true;
    if (!readByte(file, &m_childMaximized) || !readBlock(file, &m_childGeometry))
        return false;
    m_hasChild = 1;
    return true;
}

void cLayoutStorage::load() {
    QFile file(layoutPath());
    if (!file.exists())
        return;
    const QString message = cMainWindow::tr("Failed to read: %1\n%2");
    if (!file.open(QIODevice::ReadOnly)) {
        reportFile(&m_window, message, file);
        return;
    }
    for (auto read : {&cLayoutStorage::readMainBlock, &cLayoutStorage::readBrowserBlock,
                      &cLayoutStorage::readChildBlock})
        if (!(this->*read)(file))
            reportFile(&m_window, message, file);
}

bool cLayoutStorage::writeMainBlock(QFile& file) {
    return writeByte(file, !m_window.statusBar()->isHidden()) &&
           writeBlock(file, m_window.saveGeometry()) && writeBlock(file, m_window.saveState(0));
}

bool cLayoutStorage::writeBrowserBlock(QFile& file) {
    return writeBlock(file, m_browser.saveGeometry());
}

bool cLayoutStorage::writeChildBlock(QFile& file) {
    if (!writeByte(file, m_hasChild))
        return false;
    return !m_hasChild || (writeByte(file, m_childMaximized) && writeBlock(file, m_childGeometry));
}

void cLayoutStorage::save() {
    QFile file(layoutPath());
    const QString message = cMainWindow::tr("Failed to write: %1\n%2");
    if (!file.open(QIODevice::WriteOnly)) {
        reportFile(&m_window, message, file);
        return;
    }
    for (auto write : {&cLayoutStorage::writeMainBlock, &cLayoutStorage::writeBrowserBlock,
                       &cLayoutStorage::writeChildBlock})
        if (!(this->*write)(file))
            reportFile(&m_window, message, file);
}

// ---- The stored document window

void cLayoutStorage::takeChild(const QMdiSubWindow& window) {
    m_childMaximized = window.isMaximized();
    m_childGeometry = window.saveGeometry();
    m_hasChild = 1;
}

void cLayoutStorage::placeChild(QMdiSubWindow& window) const {
    if (!m_hasChild)
        return;
    if (m_childMaximized) {
        window.showMaximized();
        return;
    }
    window.showNormal();
    window.restoreGeometry(m_childGeometry);
}

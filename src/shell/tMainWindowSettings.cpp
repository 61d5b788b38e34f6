// SPDX-License-Identifier: MIT
// TDKSettings.ini: settings, recent files and colours; read at start, written at an orderly end.
#include "resources/tGameConfigRegistry.h"
#include "shell/tColorScheme.h"
#include "shell/tMainWindow.h"
#include "shell/tSettingsTable.h"
#include "support/tConsole.h"
#include "support/tIniFile.h"
#include "support/tSystem.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileInfo>

static const QString RECENT_GROUP = QStringLiteral("RecentFiles");
static const QString CUSTOM_GROUP = QStringLiteral("ColorSchemeCustom");
static const QString TITLE_KEY = QStringLiteral("Title");

static QString settingsPath() {
    return QDir(appBaseDir()).filePath(QStringLiteral("TDKSettings.ini"));
}

static QString recentKey(int index) {
    return QStringLiteral("RecentFile%1").arg(index + 1);
}

void cMainWindow::loadSettings() {
    const cIniFile file(settingsPath());
    readSettings(file, *this);
    for (int i = 0; i < RECENT_FILES; ++i) {
        const QString path = file.value(RECENT_GROUP, recentKey(i));
        if (!path.isEmpty())
            recentFiles.append(path);
    }
    refreshRecentFiles();
    updateSettingChecks();
    const uint32_t memory = Sys_PhysicalMemory();
    if (clampSettings(*this, memory) && memory)
        Print("Physical RAM: %u Mb", memory);
    TempBuffer_FreeAll();
}

void cMainWindow::saveSettings() {
    cIniFile file(settingsPath());
    writeSettings(file, *this);
    for (int i = 0; i < RECENT_FILES; ++i) {
        if (i < recentFiles.size())
            file.setValue(RECENT_GROUP, recentKey(i), recentFiles[i]);
        else
            file.remove(RECENT_GROUP, recentKey(i));
    }
    m_colors->writeCustom(file, CUSTOM_GROUP);
    if (file.save())
        m_configs->save();
}

// ---- Colours

void cMainWindow::loadColorSchemes() {
    const cIniFile file(settingsPath());
    if (file.contains(CUSTOM_GROUP, TITLE_KEY))
        m_colors->readCustom(file, CUSTOM_GROUP);
    const QString group = QStringLiteral("ColorScheme%1").arg(CurrentColorScheme);
    if (CurrentColorScheme == -1)
        m_colors->useCustom();
    else if (file.contains(group, TITLE_KEY))
        m_colors->readScheme(file, group);
    applyPalette();
}

// Black leaves the application its own look.
void cMainWindow::applyPalette() {
    const QColor& color = m_colors->color(COLOR_APPLICATION);
    if (color.red() || color.green() || color.blue()) {
        QApplication::setPalette(QPalette(color));
        m_paletteChanged = true;
    } else if (m_paletteChanged) {
        QApplication::setPalette(m_startPalette);
        m_paletteChanged = false;
    }
    makeConsoleLookLikePanel();
}

// ---- Recent files

void cMainWindow::addRecentFile(const QString& path) {
    recentFiles.removeAll(path);
    recentFiles.prepend(path);
    refreshRecentFiles();
}

void cMainWindow::refreshRecentFiles() {
    for (int i = recentFiles.size() - 1; i >= 0; --i)
        if (!QFileInfo::exists(recentFiles[i]))
            recentFiles.removeAt(i);
    for (int i = 0; i < RECENT_FILES; ++i) {
        QAction* action = m_recentActions[i];
        action->setVisible(i < recentFiles.size());
        if (i >= recentFiles.size())
            continue;
        const QFileInfo info(recentFiles[i]);
        const QString name = info.fileName().replace(QLatin1Char('&'), QLatin1String("&&"));
        action->setText(QStringLiteral("&%1 %2").arg(i + 1).arg(name));
        action->setStatusTip(info.canonicalFilePath());
        action->setData(info.canonicalFilePath());
    }
    m_recentSeparator->setVisible(!recentFiles.isEmpty());
}

void cMainWindow::openRecentFile() {
    const auto* action = qobject_cast<const QAction*>(sender());
    if (!action)
        return;
    openFile(action->data().toString());
    checkActiveState(false);
}

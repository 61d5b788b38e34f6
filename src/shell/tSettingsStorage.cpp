// SPDX-License-Identifier: MIT
#include "shell/tSettingsStorage.h"

#include "dialogs/tTextureBrowserDialog.h"
#include "shell/tColorScheme.h"
#include "shell/tRecentFiles.h"
#include "shell/tSettingsTable.h"
#include "support/tConsole.h"
#include "support/tIniFile.h"
#include "support/tSystem.h"

#include <QDir>

static const QString CUSTOM_GROUP = QStringLiteral("ColorSchemeCustom");
static const QString BROWSER_GROUP = QStringLiteral("TextureBrowser");
static const QString FILTER_KEY = QStringLiteral("Filter");
static constexpr int MAX_FILTERS = cTextureBrowserDialog::MAX_FILTERS;
static const QString TITLE_KEY = QStringLiteral("Title");

static QString settingsPath() {
    return QDir(appBaseDir()).filePath(QStringLiteral("TDKSettings.ini"));
}

cSettingsStorage::cSettingsStorage(cSettings& settings, cRecentFiles& recentFiles,
                                   cColorScheme& colors, cTextureBrowserDialog& browser)
    : m_settings(settings), m_recentFiles(recentFiles), m_colors(colors), m_browser(browser) {}

void cSettingsStorage::load() {
    const cIniFile file(settingsPath());
    readSettings(file, m_settings);
    m_recentFiles.read(file);
    m_browser.setFilterTexts(file.list(BROWSER_GROUP, FILTER_KEY, MAX_FILTERS));
    const uint32_t memory = Sys_PhysicalMemory();
    if (clampSettings(m_settings, memory) && memory)
        Print("Physical RAM: %u Mb", memory);
    TempBuffer_FreeAll();
}

void cSettingsStorage::loadColors() {
    const cIniFile file(settingsPath());
    if (file.contains(CUSTOM_GROUP, TITLE_KEY))
        m_colors.readCustom(file, CUSTOM_GROUP);
    readColorScheme();
}

void cSettingsStorage::readColorScheme() {
    const int number = m_settings.CurrentColorScheme;
    const QString group = QStringLiteral("ColorScheme%1").arg(number);
    const cIniFile file(settingsPath());
    if (number == -1)
        m_colors.useCustom();
    else if (file.contains(group, TITLE_KEY))
        m_colors.readScheme(file, group);
}

bool cSettingsStorage::save() const {
    cIniFile file(settingsPath());
    writeSettings(file, m_settings);
    m_recentFiles.write(file);
    file.setList(BROWSER_GROUP, FILTER_KEY, MAX_FILTERS, m_browser.filterTexts());
    m_colors.writeCustom(file, CUSTOM_GROUP);
    return file.save();
}

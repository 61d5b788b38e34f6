// SPDX-License-Identifier: MIT
// TDKSettings.ini: settings, recent files, filters of the texture browser and colour schemes; read
// at start, written at an orderly end.
#pragma once

struct cSettings;
class cColorScheme;
class cRecentFiles;
class cTextureBrowserDialog;

class cSettingsStorage {
public:
    // All four outlive it.
    cSettingsStorage(cSettings& settings, cRecentFiles& recentFiles, cColorScheme& colors,
                     cTextureBrowserDialog& browser);

    void load();            // settings within their limits, recent files and filters
    void loadColors();      // the custom scheme, then the one that the settings name
    void readColorScheme(); // the one that the settings name alone; what is no scheme changes none
    bool save() const;      // false: the file can't be written, nothing is

private:
    cSettings& m_settings;
    cRecentFiles& m_recentFiles;
    cColorScheme& m_colors;
    cTextureBrowserDialog& m_browser;
};

// SPDX-License-Identifier: MIT
// One description of all stored settings: group, key and member. Reading and writing the settings
// file both walk it.
#pragma once

#include "support/tSettings.h"

#include <cstdint>
#include <variant>

class cIniFile;

struct cSettingRow {
    const char* group; // null: no group
    const char* key;
    std::variant<bool cSettings::*, int cSettings::*, float cSettings::*, QString cSettings::*>
        member;
};

struct cSettingRows {
    const cSettingRow* first;
    int count;
    const cSettingRow* begin() const { return first; }
    const cSettingRow* end() const { return first + count; }
};

cSettingRows settingsTable();

// A key that the file lacks leaves its member alone.
void readSettings(const cIniFile& file, cSettings& settings);
void writeSettings(cIniFile& file, const cSettings& settings);

// What follows a read: the texture quality for a machine of that many megabytes (0: unknown)
// where none was chosen, and the lower limits. True if the quality was chosen here.
bool clampSettings(cSettings& settings, uint32_t physicalMegabytes);

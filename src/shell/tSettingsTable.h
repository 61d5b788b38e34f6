// SPDX-License-Identifier: MIT
// One description of all stored settings: group, key, member, and what a change of it means for the
// running program. Reading and writing the settings file both walk it, and so does whoever changes
// settings, through cMainWindow::applySettings.
#pragma once

#include "support/tSettings.h"

#include <cstdint>
#include <variant>

class cIniFile;

// What is to be done after a change. The first two are the masks of redrawViews.
enum eSettingEffect : unsigned {
    SE_2D = 1,
    SE_3D = 2,
    SE_VIEWS = SE_2D | SE_3D,
    SE_MEASURES = 4,      // zoom, ranges, scroll bars and projections of the views
    SE_CURSORS = 8,       // of the views
    SE_TIMERS = 16,       // of the camera views
    SE_COLORS = 32,       // the scheme is read; palette and objects take its colours
    SE_TRANSPARENCY = 64, // which faces count as transparent
    SE_WORLD = 128,       // the cull trees
    SE_HISTORY = 256,     // the number of steps
    SE_GROUPS = 512,      // how objects are selected: nothing stays selected
    SE_HIDDEN = 1024,     // what is hidden now leaves the selection
    SE_TOOL_BAR = 2048,   // the size of its icons
    SE_RESTART = 4096,    // the rest of it is seen at the next start
    SE_RESTART_ON = 8192, // the same, where the setting was turned on
    SE_TEXTURES = 16384   // textures are loaded anew
};

struct cSettingRow {
    const char* group; // null: no group
    const char* key;
    std::variant<bool cSettings::*, int cSettings::*, float cSettings::*, QString cSettings::*>
        member;
    unsigned effects = 0; // SE_ bits; 0: read anew whenever it matters
};

struct cSettingRows {
    const cSettingRow* first;
    int count;
    const cSettingRow* begin() const { return first; }
    const cSettingRow* end() const { return first + count; }
};

cSettingRows settingsTable();

// The effects of all that differs, joined. SE_RESTART_ON comes as SE_RESTART or not at all.
unsigned effectsOf(const cSettings& before, const cSettings& after);

// A key that the file lacks leaves its member alone.
void readSettings(const cIniFile& file, cSettings& settings);
void writeSettings(cIniFile& file, const cSettings& settings);

// What follows a read: the texture quality for a machine of that many megabytes (0: unknown)
// where none was chosen, and the lower limits. True if the quality was chosen here.
bool clampSettings(cSettings& settings, uint32_t physicalMegabytes);

// SPDX-License-Identifier: MIT
// The one table of commands: every entry of the menus, bars and pop-up menus is a row of it. The
// rows are data; cCommandMenus makes the actions of them in one loop and brings them up to date in
// another.
#pragma once

#include "shell/tCommandState.h"

#include <QKeySequence>
#include <cstdint>

class cMainWindow;

// cCommandRow::flags
enum eCommandFlag : uint32_t {
    CMD_MAIN_MENU = 0x1,
    CMD_CHECKABLE = 0x2,
    CMD_SHOW_ALWAYS = 0x4,   // stays visible with no document
    CMD_ENABLE_ALWAYS = 0x8, // stays enabled with no document
    CMD_RECENT_BLOCK = 0x10, // separator: opens the block of recent files
    CMD_RECENT_END = 0x20,   // separator: the recent files stand just before it
    CMD_WINDOW_LIST = 0x40,  // separator: opens the list of document windows
    CMD_WEB_MENU = 0x80,
    CMD_ELEMENTS_MENU = 0x100,
    CMD_SCHEMES_MENU = 0x200,
    CMD_PLUGIN_MENU = 0x400,
    CMD_BAR_FILE = 0x100000,
    CMD_BAR_VIEW = 0x200000,
    CMD_BAR_OPERATIONS = 0x400000,
    CMD_POPUP_CANVAS = 0x800000,
    CMD_POPUP_OPERATIONS = 0x1000000,
    CMD_POPUP_CREATE = 0x2000000,
    CMD_POPUP_SELECT = 0x4000000,
    CMD_POPUP_SELECTION = 0x8000000
};

using cCommandSlot = void (cMainWindow::*)();
using cCommandTest = bool (*)(const cCommandState&);

// The setting that a check mark shows, and that its command turns: a flag, or a bit of HideMask.
struct cSettingCheck {
    bool cSettings::*flag;
    int hideBit;
    bool isOpposite;  // checked while the flag is off
    const char* said; // in the status bar, with " on" or " off"; or null

    explicit operator bool() const { return flag || hideBit; }
    bool isOn(const cSettings& settings) const;
    bool isChecked(const cSettings& settings) const { return isOn(settings) != isOpposite; }
    void check(cSettings& settings, bool checked) const;
};

// How a command follows the state of the program, beside what its flags and its tool mask say.
struct cCommandRules {
    cCommandTest enabled;         // null: always
    cCommandTest shown;           // null: always
    cCommandTest checked;         // of a check mark that shows no setting
    cSettingCheck setting;        // of one that does
    QString cCommandState::*text; // null: the row's own text stays
};

// A row with neither id nor text is a separator wherever it is used. Empty texts are null.
struct cCommandRow {
    const char* menu;
    const char* subMenu;
    const char* id;
    const char* text;
    const char* icon;     // ":/qrc/" + icon + ".png"
    const char* shortcut; // run through translation first
    const char* statusTip;
    cCommandSlot slot;
    QKeySequence::StandardKey standardKey; // used when shortcut is empty
    uint32_t flags;
    uint32_t toolMask;
    int barOrder;   // sort key in a toolbar
    int popupOrder; // sort key in a pop-up menu
    cCommandRules rules = {};
};

// A toolbar or pop-up menu, made of the rows that have its bit.
struct cCommandGroup {
    const char* title;
    uint32_t bit;
};

// A row of the tool bar, with the number of its tool.
struct cToolRow {
    cCommandRow command;
    int toolIndex;
};

// The toolIndex of a button in the tool bar that is no tool.
static constexpr int NOT_A_TOOL = 0xffff;

template<typename Row> struct cRowRange {
    const Row* first;
    int count;
    const Row* begin() const { return first; }
    const Row* end() const { return first + count; }
};

using cCommandRows = cRowRange<cCommandRow>;
using cToolRows = cRowRange<cToolRow>;
using cCommandGroups = cRowRange<cCommandGroup>;

cCommandRows commandTable(); // in menu order
cToolRows toolTable();
cCommandGroups commandBars();
cCommandGroups commandPopups();

// SPDX-License-Identifier: MIT
// The rows of the command table, in menu order, and those of the tool bar. A new command is a new
// row here and a slot of cMainWindow; nothing else. Its row ends with its rules, where it has any.
#include "shell/tCommandTable.h"

#include "shell/tMainWindow.h"
#include "views/tTool.h"
#include "views/tViewInfo.h"

#include <iterator>

static constexpr QKeySequence::StandardKey NO_KEY = QKeySequence::UnknownKey;

// Sets of flags that many rows share.
static constexpr uint32_t M = CMD_MAIN_MENU;
static constexpr uint32_t E = CMD_ENABLE_ALWAYS;
static constexpr uint32_t NE = CMD_SHOW_ALWAYS | E;
static constexpr uint32_t C = CMD_CHECKABLE;

static constexpr uint32_t FACE_MODE = 1u << TOOL_TEXTURE;

static constexpr char FILE_MENU[] = "&File";
static constexpr char EDIT_MENU[] = "&Edit";
static constexpr char MAP_MENU[] = "&Map";
static constexpr char VIEW_MENU[] = "&View";
static constexpr char TOOLS_MENU[] = "&Tools";
static constexpr char PLUGIN_MENU[] = "Pl&ugins";
static constexpr char WINDOW_MENU[] = "&Window";
static constexpr char HELP_MENU[] = "&Help";
static constexpr char GRID_MENU[] = "&Grid Settings";
static constexpr char TRANSPARENCY_MENU[] = "T&ransparency";
static constexpr char TIE_MENU[] = "&Tie to entity";
static constexpr char ALIGN_MENU[] = "&Align objects";
static constexpr char FLIP_MENU[] = "&Flip objects";

using W = cMainWindow;
using S = cCommandState;
using O = cSettings;

// ---- Rules

template<bool S::*member> static bool is(const S& state) {
    return state.*member;
}

template<int type, int mode = -1> static bool showsView(const S& state) {
    return state.viewType == type && (mode < 0 || state.renderMode == mode);
}

template<int tool> static bool hasTool(const S& state) {
    return state.tool == tool;
}

static constexpr cCommandRules enabledIf(cCommandTest enabled, cCommandTest shown = nullptr) {
    return {enabled, shown, nullptr, {}, nullptr};
}

static constexpr cCommandRules shownIf(cCommandTest shown) {
    return {nullptr, shown, nullptr, {}, nullptr};
}

static constexpr cCommandRules checkedIf(cCommandTest checked) {
    return {nullptr, nullptr, checked, {}, nullptr};
}

static constexpr cCommandRules turns(bool O::*flag, const char* said = nullptr) {
    return {nullptr, nullptr, nullptr, {flag, 0, false, said}, nullptr};
}

static constexpr cCommandRules turnsOff(bool O::*flag, const char* said) {
    return {nullptr, nullptr, nullptr, {flag, 0, true, said}, nullptr};
}

static constexpr cCommandRules hides(int bit, cCommandTest shown = nullptr) {
    return {nullptr, shown, nullptr, {nullptr, bit, false, nullptr}, nullptr};
}

static constexpr cCommandRules reads(QString S::*text, cCommandTest enabled = nullptr) {
    return {enabled, nullptr, nullptr, {}, text};
}

bool cSettingCheck::isOn(const cSettings& settings) const {
    return flag ? settings.*flag : (settings.HideMask & hideBit) != 0;
}

void cSettingCheck::check(cSettings& settings, bool checked) const {
    const bool on = checked != isOpposite;
    if (flag)
        settings.*flag = on;
    else
        settings.HideMask = on ? settings.HideMask | hideBit : settings.HideMask & ~hideBit;
}

// ---- Rows

static constexpr cCommandSlot TOGGLE = &W::toggleSetting;
static constexpr cCommandSlot NOT_BUILT = &W::msgFeatureUnderDevelopment;

// clang-format off
#define SEPARATOR(menu, subMenu, flags, bar, popup) \
    {menu, subMenu, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, NO_KEY, flags, 0, bar, popup}

static const cCommandRow g_rows[] = {
    // menu, submenu, id, text, icon, shortcut,
    //     status tip, slot, standard key, flags, tool mask, bar order, pop-up order
    {FILE_MENU, nullptr, "FileNew", "&New", "new", nullptr,
        "Create a new document", &W::cmdFileNew, QKeySequence::New, M | NE | CMD_BAR_FILE, 0, 1, 0},
    {FILE_MENU, nullptr, "FileOpen", "&Open...", "open", nullptr,
        "Open an existing document", &W::cmdFileOpen, QKeySequence::Open, M | NE | CMD_BAR_FILE, 0, 2, 0},
    {FILE_MENU, nullptr, "FileClose", "&Close", nullptr, nullptr,
        "Close the active document", &W::cmdFileClose, NO_KEY, M, 0, 0, 0},
    {FILE_MENU, nullptr, "FileCloseAll", "Close A&ll", nullptr, nullptr,
        "Close all active documents", &W::cmdFileCloseAll, NO_KEY, M, 0, 0, 0},
    {FILE_MENU, nullptr, "FileSave", "&Save", "save", nullptr,
        "Save the active document", &W::cmdFileSave, QKeySequence::Save, M | CMD_BAR_FILE, 0, 3, 0},
    {FILE_MENU, nullptr, "FileSaveAs", "Save &As...", "save2", nullptr,
        "Save the active document with a new name", &W::cmdFileSaveAs, NO_KEY, M, 0, 0, 0},
    SEPARATOR(FILE_MENU, nullptr, M, 0, 0),
    {FILE_MENU, nullptr, "FileExport", "Export...", nullptr, nullptr,
        "Export level to external format", &W::cmdFileExport, NO_KEY, M, 0, 0, 0},
    {FILE_MENU, nullptr, "FileExport2", "Export &Again", "savemap", "Alt+B",
        "Export level again to the same format", &W::cmdFileExportAgain, NO_KEY,
        M | CMD_BAR_FILE | CMD_POPUP_OPERATIONS | CMD_POPUP_SELECT | CMD_POPUP_SELECTION, 0, 4, 30},
    SEPARATOR(FILE_MENU, nullptr, M | CMD_BAR_OPERATIONS, 28, 0),
    {FILE_MENU, nullptr, "FileRun", "R&un...", "run", "F9",
        "Run the map in the game", NOT_BUILT, NO_KEY, M | CMD_BAR_OPERATIONS, 0, 27, 0},
    SEPARATOR(FILE_MENU, nullptr, M | CMD_RECENT_BLOCK, 0, 0),
    SEPARATOR(FILE_MENU, nullptr, M | CMD_RECENT_END, 0, 0),
    {FILE_MENU, nullptr, "FileExit", "E&xit", nullptr, nullptr,
        "Quit the application; prompts to save documents", &W::cmdFileExit, NO_KEY, M | NE, 0, 0, 0},

    {EDIT_MENU, nullptr, "EditUndo", "Undo", "undo", nullptr,
        "Undo the last action", &W::cmdEditUndo, QKeySequence::Undo,
        M | CMD_POPUP_OPERATIONS | CMD_POPUP_SELECT | CMD_POPUP_SELECTION, 0, 0, 50,
        reads(&S::undoText, is<&S::canUndo>)},
    {EDIT_MENU, nullptr, "EditRedo", "Redo", "redo", nullptr,
        "Redo the previously undone action", &W::cmdEditRedo, QKeySequence::Redo,
        M | CMD_POPUP_OPERATIONS | CMD_POPUP_SELECT | CMD_POPUP_SELECTION, 0, 0, 60,
        reads(&S::redoText, is<&S::canRedo>)},
    {EDIT_MENU, nullptr, "EditNoUndo", "Disabl&e Undo/Redo", nullptr, nullptr,
        "Toggle Undo/Redo (off conserves memory)", &W::cmdEditToggleUndoRedo, NO_KEY, M, 0, 0, 0,
        reads(&S::historyText)},
    SEPARATOR(EDIT_MENU, nullptr, M | CMD_POPUP_OPERATIONS | CMD_POPUP_SELECT | CMD_POPUP_SELECTION, 0, 40),
    {EDIT_MENU, nullptr, "EditCut", "Cu&t", "cut", nullptr,
        "Cut the selection and put it on the Clipboard", &W::cmdEditCut, QKeySequence::Cut,
        M | CMD_BAR_OPERATIONS | CMD_POPUP_SELECTION, 0, 12, 0,
        enabledIf(is<&S::canCopy>)},
    {EDIT_MENU, nullptr, "EditCopy", "&Copy", "copy", nullptr,
        "Copy the selection and put it on the Clipboard", &W::cmdEditCopy, QKeySequence::Copy,
        M | CMD_BAR_OPERATIONS | CMD_POPUP_SELECTION, 0, 13, 0,
        enabledIf(is<&S::canCopy>)},
    {EDIT_MENU, nullptr, "EditPaste", "Past&e", "paste", nullptr,
        "Insert Clipboard contents", &W::cmdEditPaste, QKeySequence::Paste,
        M | CMD_BAR_OPERATIONS | CMD_POPUP_OPERATIONS | CMD_POPUP_SELECT, 0, 14, 10,
        enabledIf(is<&S::canPaste>)},
    {EDIT_MENU, nullptr, "EditPaste2", "Pa&ste Special...", nullptr, nullptr,
        "Paste objects with special options", &W::cmdEditPasteSpecial, NO_KEY,
        M | CMD_POPUP_OPERATIONS | CMD_POPUP_SELECT | CMD_POPUP_SELECTION, 0, 0, 20,
        enabledIf(is<&S::canPaste>)},
    {EDIT_MENU, nullptr, "EditDelete", "&Delete", "del", nullptr,
        "Delete marked objects", &W::cmdEditDelete, QKeySequence::Delete, M | CMD_POPUP_SELECTION, 0, 0, 0,
        enabledIf(is<&S::hasSelection>)},
    SEPARATOR(EDIT_MENU, nullptr, M | CMD_BAR_OPERATIONS | CMD_POPUP_SELECTION, 15, 70),
    {EDIT_MENU, nullptr, "EditSelTouch", "Select &Touching", nullptr, nullptr,
        "Select all objects touching the selection rectangle", &W::cmdEditSelectTouching, NO_KEY,
        CMD_POPUP_SELECT, 0, 0, 1},
    {EDIT_MENU, nullptr, "EditSelInside", "Select &Inside", nullptr, nullptr,
        "Select all objects completely inside the selection rectangle", &W::cmdEditSelectInside, NO_KEY,
        CMD_POPUP_SELECT, 0, 0, 2},
    {EDIT_MENU, nullptr, "EditSelHandles", "Select &Handles", nullptr, nullptr,
        "Select all objects with their handles inside the selection rectangle", &W::cmdEditSelectHandles, NO_KEY,
        CMD_POPUP_SELECT, 0, 0, 3},
    SEPARATOR(EDIT_MENU, nullptr, CMD_POPUP_SELECT, 0, 4),
    {EDIT_MENU, nullptr, "EditSelNone", "C&lear selection", nullptr, "Ctrl+Q",
        "Unselect all selected objects", &W::cmdEditSelectNone, NO_KEY, M, 0, 0, 0},
    {EDIT_MENU, nullptr, "EditSelAll", "Select &all", nullptr, "Ctrl+A",
        "Select all objects", &W::cmdEditSelectAll, NO_KEY, M, 0, 0, 0},
    SEPARATOR(EDIT_MENU, nullptr, M | CMD_POPUP_SELECTION, 0, 230),
    {EDIT_MENU, nullptr, "EditSelH", "Toggle Select-by-&Handles", "selh", nullptr,
        "Select by handles only", TOGGLE, NO_KEY, C | CMD_BAR_OPERATIONS, 0, 19, 0,
        turns(&O::SelectByHandles)},
    {EDIT_MENU, nullptr, "EditSelA", "Toggle au&to-selection", "sela", nullptr,
        "Toggle auto-selection by mouse dragging", TOGGLE, NO_KEY,
        C | CMD_BAR_OPERATIONS, 0, 20, 0,
        turns(&O::SelectAuto)},
    {EDIT_MENU, nullptr, "EditCreate", "Create &Object", nullptr, nullptr,
        "Create new object here", &W::cmdEditCreateObject, NO_KEY, CMD_POPUP_CREATE, 0, 0, 1,
        reads(&S::createText)},
    {EDIT_MENU, nullptr, "EditProps", "Pr&operties", nullptr, "Alt+Enter",
        "Edit object properties", &W::cmdEditProperties, NO_KEY, M | CMD_POPUP_SELECTION, FACE_MODE, 0, 240},
    {EDIT_MENU, nullptr, "EditCreatePlaceholder", nullptr, nullptr, nullptr,
        nullptr, nullptr, NO_KEY, CMD_POPUP_CREATE, 0, 0, 2},

    {MAP_MENU, nullptr, "MapSnap", "&Snap to Grid", nullptr, "Shift+W",
        "Toggle automatic snapping of vertices to grid", TOGGLE, NO_KEY, M | C, 0, 0, 0,
        turns(&O::SnapToGrid)},
    {MAP_MENU, nullptr, "MapGrid", "Show &Grid", "grid", "Shift+R",
        "Toggle grid", TOGGLE, NO_KEY, M | C | CMD_BAR_VIEW, 0, 1, 0,
        turns(&O::EnableGrid2D)},
    {MAP_MENU, nullptr, "MapGrid3D", "Show 3&D Grid", "grid3d", nullptr,
        "Toggle 3D-grid", TOGGLE, NO_KEY, C | CMD_BAR_VIEW, 0, 2, 0,
        turns(&O::EnableGrid3D)},
    {MAP_MENU, GRID_MENU, "MapGrid-", "&Smaller Grid", "gridm", "[",
        "Lower the size of the grid", &W::cmdMapSmallerGrid, NO_KEY, M | CMD_BAR_VIEW, 0, 3, 0},
    {MAP_MENU, GRID_MENU, "MapGrid+", "&Bigger Grid", "gridp", "]",
        "Raise the size of the grid", &W::cmdMapBiggerGrid, NO_KEY, M | CMD_BAR_VIEW, 0, 4, 0},
    SEPARATOR(MAP_MENU, nullptr, M, 0, 0),
    SEPARATOR(MAP_MENU, nullptr, CMD_BAR_VIEW, 5, 0),
    {MAP_MENU, nullptr, "MapLWS", "&Load window state", "lws", nullptr,
        "Load default window state", &W::cmdMapLoadWindowState, NO_KEY, E | CMD_BAR_VIEW, 0, 6, 0},
    {MAP_MENU, nullptr, "MapSWS", "Sa&ve window state", "sws", nullptr,
        "Save current window state as default", &W::cmdMapSaveWindowState, NO_KEY, E | CMD_BAR_VIEW, 0, 7, 0},
    {MAP_MENU, nullptr, "MapGoto", "Go to &brush number...", "search", "Ctrl+Shift+G",
        "Selects a brush by number", NOT_BUILT, NO_KEY, M, 0, 0, 0},
    {MAP_MENU, nullptr, "MapGoto2", "Go to &coordinates...", nullptr, nullptr,
        "Place camera to the specified coordinates", NOT_BUILT, NO_KEY, M, 0, 0, 0},
    {MAP_MENU, nullptr, "MapInfo", "Show &information...", nullptr, nullptr,
        "Get information about the current map", NOT_BUILT, NO_KEY, M, 0, 0, 0},
    {MAP_MENU, nullptr, "MapEnts", "&Entity report...", nullptr, nullptr,
        "Entity report", NOT_BUILT, NO_KEY, M, 0, 0, 0},
    {MAP_MENU, nullptr, "MapCheck", "Check for &problems", nullptr, "Alt+P",
        "Check map for problems", NOT_BUILT, NO_KEY, M, 0, 0, 0},
    SEPARATOR(MAP_MENU, nullptr, M, 0, 0),
    {MAP_MENU, nullptr, "MapProps", "&Map properties...", nullptr, nullptr,
        "Edit global map properties", NOT_BUILT, NO_KEY, M, FACE_MODE, 0, 0},
    SEPARATOR(MAP_MENU, nullptr, M, 0, 0),
    {MAP_MENU, nullptr, "MapLoadPTS", "&Load Pointfile...", nullptr, nullptr,
        "Load PTS/LIN pointfile to visualize leaks", NOT_BUILT, NO_KEY, M, 0, 0, 0},
    {MAP_MENU, nullptr, "MapUnloadPTS", "&Unload Pointfile", nullptr, nullptr,
        "Unload currently displayed pointfile", NOT_BUILT, NO_KEY, M, 0, 0, 0},
    SEPARATOR(MAP_MENU, nullptr, M, 0, 0),
    {MAP_MENU, nullptr, "MapLoadPTS", "Load Portal file...", nullptr, nullptr,
        "Load portal file to visualize portals generated by a BSP compiler", NOT_BUILT, NO_KEY,
        M, 0, 0, 0},
    {MAP_MENU, nullptr, "MapUnloadPTS", "Unload Portal file", nullptr, nullptr,
        "Unload currently displayed portal file", NOT_BUILT, NO_KEY, M, 0, 0, 0},

    {VIEW_MENU, nullptr, "-", "Screen &Elements", nullptr, nullptr,
        "Toggle visibility of screen elements", nullptr, NO_KEY, M | CMD_ELEMENTS_MENU, 0, 0, 0},
    {VIEW_MENU, nullptr, "-", "&Color Schemes", nullptr, nullptr,
        "Change visual appearance of the editor", nullptr, NO_KEY, M | CMD_SCHEMES_MENU, 0, 0, 0},
    SEPARATOR(VIEW_MENU, nullptr, M, 0, 0),
    {VIEW_MENU, nullptr, "View2DXY", "2D &X/Y", "xy", nullptr,
        "View 2D X/Y axes", &W::cmdView2DXY, NO_KEY, M | C | CMD_POPUP_CANVAS, 0, 0, 1,
        checkedIf(showsView<VIEW_TOP>)},
    {VIEW_MENU, nullptr, "View2DYZ", "2D &Y/Z", "yz", nullptr,
        "View 2D Y/Z axes", &W::cmdView2DYZ, NO_KEY, M | C | CMD_POPUP_CANVAS, 0, 0, 2,
        checkedIf(showsView<VIEW_FRONT>)},
    {VIEW_MENU, nullptr, "View2DXZ", "2D X/&Z", "xz", nullptr,
        "View 2D X/Z axes", &W::cmdView2DXZ, NO_KEY, M | C | CMD_POPUP_CANVAS, 0, 0, 3,
        checkedIf(showsView<VIEW_SIDE>)},
    SEPARATOR(VIEW_MENU, nullptr, M | CMD_POPUP_CANVAS, 0, 4),
    {VIEW_MENU, nullptr, "View3DW", "3D &Wireframe", "threed1", nullptr,
        "View 3D wireframe", &W::cmdView3DWireframe, NO_KEY, M | C | CMD_POPUP_CANVAS, 0, 0, 5,
        checkedIf(showsView<VIEW_CAMERA, RM_WIREFRAME>)},
    {VIEW_MENU, nullptr, "View3DF", "3D &Filled Polygons", "threed2", nullptr,
        "View 3D polygons", &W::cmdView3DFilled, NO_KEY, M | C | CMD_POPUP_CANVAS, 0, 0, 6,
        checkedIf(showsView<VIEW_CAMERA, RM_FILLED>)},
    {VIEW_MENU, nullptr, "View3DT", "3D &Textured Polygons", "threed3", nullptr,
        "View 3D textured polygons", &W::cmdView3DTextured, NO_KEY, M | C | CMD_POPUP_CANVAS, 0, 0, 7,
        checkedIf(showsView<VIEW_CAMERA, RM_TEXTURED>)},
    SEPARATOR(VIEW_MENU, nullptr, M, 0, 0),
    {VIEW_MENU, nullptr, "ViewAuto4", "&Autosize 4 Views", nullptr, "Ctrl+4",
        "Autosize the 4 views in a map window", &W::cmdViewAutosize, NO_KEY, M, 0, 0, 0},
    {VIEW_MENU, nullptr, "ViewCenterSel", "Center &Views on Selection", nullptr, "Ctrl+E",
        "Center the 2D views on the selected objects", &W::cmdViewCenterOnSelection, NO_KEY, M, 0, 0, 0},
    SEPARATOR(VIEW_MENU, nullptr, M, 0, 0),
    {VIEW_MENU, TRANSPARENCY_MENU, "ViewTexTrans", "&Special Textures", "trans", nullptr,
        "Toggle transparency of special textures in 3D", TOGGLE, NO_KEY,
        M | C | CMD_BAR_OPERATIONS, 0, 29, 0,
        turns(&O::TextureTransparency, "Transparency of special textures")},
    {VIEW_MENU, TRANSPARENCY_MENU, "ViewEntTrans", "&Entities", "trans2", nullptr,
        "Toggle transparency of entities with non-standard rendermodes in 3D", TOGGLE, NO_KEY,
        M | C | CMD_BAR_OPERATIONS, 0, 30, 0,
        turns(&O::EntityTransparency, "Transparency of entities")},
    SEPARATOR(VIEW_MENU, nullptr, M, 0, 0),
    {VIEW_MENU, nullptr, "ViewConn", "Show C&onnections", "conn", nullptr,
        "Show/hide connections between Targets and their Triggers", TOGGLE, NO_KEY,
        M | C | CMD_BAR_OPERATIONS, 0, 31, 0,
        turns(&O::ShowConnections, "Entity connections")},
    {VIEW_MENU, nullptr, "ViewMod2D", "Show &Models in 2D", "mod2d", nullptr,
        "Show/hide models in 2D", TOGGLE, NO_KEY, M | C | CMD_BAR_OPERATIONS, 0, 32, 0,
        turns(&O::DrawModels, "2D rendition of models")},
    {VIEW_MENU, nullptr, "ViewNodraw", "Show &Nodraw Faces", "nodraw", nullptr,
        "Show/hide nodraw (invisible) faces in 3D", TOGGLE, NO_KEY,
        M | C | CMD_BAR_OPERATIONS, 0, 33, 0,
        turns(&O::DrawNoDraw, "3D rendition of nodraw faces")},
    SEPARATOR(VIEW_MENU, nullptr, M, 0, 0),
    {VIEW_MENU, nullptr, "ViewItems", "&Hide Items", nullptr, nullptr,
        "Hide all items", TOGGLE, NO_KEY, M | C, 0, 0, 0,
        hides(HM_ITEMS)},
    {VIEW_MENU, nullptr, "ViewPaths", "Hide &Paths", nullptr, nullptr,
        "Hide all paths", TOGGLE, NO_KEY, M | C, 0, 0, 0,
        hides(HM_PATHS)},
    {VIEW_MENU, nullptr, "ViewDetail", "Hide &Detail", nullptr, nullptr,
        "Hide all detail brushes", TOGGLE, NO_KEY, M | C, 0, 0, 0,
        hides(HM_DETAIL, is<&S::hasDetail>)},
    SEPARATOR(VIEW_MENU, nullptr, M | CMD_BAR_OPERATIONS, 11, 0),
    {VIEW_MENU, nullptr, "ViewHideSel", "H&ide Selected Objects", "hidesel", nullptr,
        "Hide the selected objects temporarily", &W::cmdViewHideSelection, NO_KEY,
        M | CMD_BAR_OPERATIONS, 0, 8, 0},
    {VIEW_MENU, nullptr, "ViewHideUnsel", "Hide &Unselected Objects", "hideunsel", nullptr,
        "Hide the unselected objects temporarily", &W::cmdViewHideNotSelection, NO_KEY,
        CMD_BAR_OPERATIONS, 0, 9, 0},
    {VIEW_MENU, nullptr, "ViewShowHidden", "&Show Hidden Objects", "show", nullptr,
        "Show all hidden objects", &W::cmdViewShowHidden, NO_KEY, M | CMD_BAR_OPERATIONS, 0, 10, 0},

    {TOOLS_MENU, nullptr, "ToolsCarve", "&Carve", "carve", "Shift+Ctrl+C",
        "Carve using the selected objects", NOT_BUILT, NO_KEY,
        M | CMD_BAR_OPERATIONS | CMD_POPUP_SELECTION, 0, 1, 110},
    {TOOLS_MENU, nullptr, "ToolsMerge", "&Merge", "merge", "Shift+Ctrl+M",
        "Merge the selected objects", NOT_BUILT, NO_KEY, M | CMD_BAR_OPERATIONS, 0, 2, 0},
    {TOOLS_MENU, nullptr, "ToolsHollow", "Make &Hollow...", nullptr, "Ctrl+H",
        "Make each of the selected solids a group of hollow objects", NOT_BUILT, NO_KEY,
        M | CMD_POPUP_SELECTION, 0, 0, 120},
    SEPARATOR(TOOLS_MENU, nullptr, M | CMD_BAR_OPERATIONS | CMD_POPUP_SELECTION, 3, 130),
    {TOOLS_MENU, nullptr, "ToolsGroup", "&Group", "group", "Ctrl+G",
        "Create an associative group with all the selected objects", &W::cmdToolsGroup, NO_KEY,
        M | CMD_BAR_OPERATIONS | CMD_POPUP_SELECTION, 0, 4, 140,
        enabledIf(is<&S::canGroup>)},
    {TOOLS_MENU, nullptr, "ToolsUngroup", "&Ungroup", "ungroup", "Ctrl+U",
        nullptr, &W::cmdToolsUngroup, NO_KEY, M | CMD_BAR_OPERATIONS | CMD_POPUP_SELECTION, 0, 5, 150,
        enabledIf(is<&S::canGroup>)},
    {TOOLS_MENU, nullptr, "ToolsIG", "Toggle group ignore", "ig", nullptr,
        "Toggle group ignore", TOGGLE, NO_KEY, C | CMD_BAR_OPERATIONS, 0, 6, 0,
        turns(&O::IgnoreGroups)},
    SEPARATOR(TOOLS_MENU, nullptr, M | CMD_BAR_OPERATIONS | CMD_POPUP_SELECTION, 7, 160),
    {TOOLS_MENU, nullptr, "ToolsMakeStruct", "Make &Structural", nullptr, nullptr,
        "Make selected brushes structural (clear CONTENTS_DETAIL flag)", &W::cmdToolsMakeStructural, NO_KEY,
        M | CMD_POPUP_SELECTION, 0, 0, 80,
        enabledIf(is<&S::hasBrushes>, is<&S::hasDetail>)},
    {TOOLS_MENU, nullptr, "ToolsMakeDetail", "Make &Detail", nullptr, nullptr,
        "Make selected brushes detail (set CONTENTS_DETAIL flag)", &W::cmdToolsMakeDetail, NO_KEY,
        M | CMD_POPUP_SELECTION, 0, 0, 90,
        enabledIf(is<&S::hasBrushes>, is<&S::hasDetail>)},
    {TOOLS_MENU, nullptr, "ToolsMakeSep", nullptr, nullptr, nullptr,
        nullptr, nullptr, NO_KEY, M | CMD_POPUP_SELECTION, 0, 0, 100,
        shownIf(is<&S::hasDetail>)},
    {TOOLS_MENU, nullptr, "ToolsToEntity", "&Tie to entity...", nullptr, "Ctrl+T",
        "Create a new entity using the selected solids", &W::cmdToolsTieToEntity, NO_KEY, M, 0, 0, 0,
        enabledIf(is<&S::hasBrushes>)},
    {TOOLS_MENU, nullptr, "ToolsToWorld", "&Move to world", nullptr, "Ctrl+W",
        "Detach the selected solids from their entity", &W::cmdToolsMoveToWorld, NO_KEY,
        M | CMD_POPUP_SELECTION, 0, 0, 190,
        enabledIf(is<&S::hasBrushes>)},
    {TOOLS_MENU, TIE_MENU, "ToolsToEntityContext", "&Tie to entity", nullptr, nullptr,
        "Create a new entity using the selected solids", &W::cmdToolsTieToEntity, NO_KEY,
        CMD_POPUP_SELECTION, 0, 0, 170,
        reads(&S::tieText, is<&S::hasBrushes>)},
    {TOOLS_MENU, TIE_MENU, "ToolsToEntityPlaceholder", nullptr, nullptr, nullptr,
        nullptr, nullptr, NO_KEY, CMD_POPUP_SELECTION, 0, 0, 180},
    SEPARATOR(TOOLS_MENU, nullptr, M | CMD_POPUP_SELECTION, 0, 200),
    {TOOLS_MENU, nullptr, "ToolsTexAppl", "Te&xture application...", nullptr, nullptr,
        "Texture application mode", &W::toolTextureApplication, NO_KEY, M, 0, 0, 0},
    {TOOLS_MENU, nullptr, "ToolsTexRepl", "R&eplace textures...", nullptr, nullptr,
        "Replace textures on all solids", &W::cmdToolsTextureReplace, NO_KEY, M, 0, 0, 0},
    {TOOLS_MENU, nullptr, "ToolsTexLock", "Texture &lock (move+rotate)", "tl", "Shift+L",
        "Toggle texture locking for movements and rotations", TOGGLE, NO_KEY,
        M | C | CMD_BAR_OPERATIONS, 0, 21, 0,
        turns(&O::TextureLock, "Texture locking")},
    {TOOLS_MENU, nullptr, "ToolsTexLockScale", "Texture &lock (scale)", "sl", "Shift+Ctrl+L",
        "Toggle texture locking for scaling", TOGGLE, NO_KEY,
        M | C | CMD_BAR_OPERATIONS, 0, 22, 0,
        turns(&O::TextureLockScale, "Texture locking (scale)")},
    {TOOLS_MENU, nullptr, "ToolsTexA2View", "Align to view", nullptr, "Shift+Ctrl+A",
        "Align texture on selected faces to 3D camera's view", &W::cmdToolsTextureAlignToView, NO_KEY,
        M, 0, 0, 0},
    {TOOLS_MENU, nullptr, "ToolsTexAlign", "Toggle texture alignment", "ta", nullptr,
        "Toggle world/face texture alignment", TOGGLE, NO_KEY,
        C | CMD_BAR_OPERATIONS, 0, 24, 0,
        turns(&O::TextureFaceAlign)},
    SEPARATOR(TOOLS_MENU, nullptr, M | CMD_BAR_OPERATIONS, 23, 0),
    {TOOLS_MENU, nullptr, "ToolsSnapSel", "Snap selected to &grid", nullptr, "Ctrl+B",
        "Snap the selected objects to the grid (without altering size/relativity)", &W::cmdToolsSnapToGrid, NO_KEY,
        M, 0, 0, 0},
    {TOOLS_MENU, nullptr, "ToolsSnapSel2", "Snap selected to grid &individually", nullptr, "Ctrl+Shift+B",
        "Snap each selected object to the grid individually (without altering size/relativity)", &W::cmdToolsSnapToGrid2, NO_KEY,
        M, 0, 0, 0},
    {TOOLS_MENU, nullptr, "ToolsTransform", "Transfor&m...", nullptr, "Ctrl+M",
        "Rotate, scale and/or move the selected objects", &W::cmdToolsTransform, NO_KEY, M, 0, 0, 0},
    {TOOLS_MENU, nullptr, "ToolsVertexRes", "Mo &morph restrictions", "vertexres", nullptr,
        "Toggle solid validity restrictions for the vertex manipulation mode", TOGGLE, NO_KEY,
        C | CMD_BAR_OPERATIONS, 0, 25, 0,
        turnsOff(&O::VertexToolRestrict, "Vertex manipulation restrictions")},
    {TOOLS_MENU, ALIGN_MENU, "ToolsAlignL", "To &Left", nullptr, nullptr,
        "Align the selected objects along the leftmost side", &W::cmdToolsAlignLeft, NO_KEY,
        M | CMD_POPUP_SELECTION, 0, 0, 210},
    {TOOLS_MENU, ALIGN_MENU, "ToolsAlignR", "To &Right", nullptr, nullptr,
        "Align the selected objects along the rightmost side", &W::cmdToolsAlignRight, NO_KEY,
        M | CMD_POPUP_SELECTION, 0, 0, 211},
    {TOOLS_MENU, ALIGN_MENU, "ToolsAlignT", "To &Top", nullptr, nullptr,
        "Align the selected objects along the topmost side", &W::cmdToolsAlignTop, NO_KEY,
        M | CMD_POPUP_SELECTION, 0, 0, 212},
    {TOOLS_MENU, ALIGN_MENU, "ToolsAlignB", "To &Bottom", nullptr, nullptr,
        "Align the selected objects along the bottom-most side", &W::cmdToolsAlignBottom, NO_KEY,
        M | CMD_POPUP_SELECTION, 0, 0, 213},
    {TOOLS_MENU, FLIP_MENU, "ToolsFlipH", "&Horizontally", nullptr, "Ctrl+L",
        "Flip the selected objects horizontally", &W::cmdToolsFlipHorz, NO_KEY,
        M | CMD_POPUP_SELECTION, 0, 0, 220},
    {TOOLS_MENU, FLIP_MENU, "ToolsFlipV", "&Vertically", nullptr, "Ctrl+I",
        "Flip the selected objects vertically", &W::cmdToolsFlipVert, NO_KEY,
        M | CMD_POPUP_SELECTION, 0, 0, 221},
    SEPARATOR(TOOLS_MENU, nullptr, M | CMD_BAR_OPERATIONS, 26, 0),
    {TOOLS_MENU, nullptr, "ToolsCordon", "Toggle cordon tool", "cordon", nullptr,
        "Toggle cordon state", TOGGLE, NO_KEY, C | CMD_BAR_OPERATIONS, 0, 16, 0,
        turns(&O::EnableCordon)},
    {TOOLS_MENU, nullptr, "ToolsCordonB", "Edit cordon bounds", "cordonb", nullptr,
        "Edit cordon boundaries", &W::toolCordon, NO_KEY, C | CMD_BAR_OPERATIONS, 0, 17, 0,
        checkedIf(hasTool<TOOL_CORDON>)},
    SEPARATOR(TOOLS_MENU, nullptr, CMD_BAR_OPERATIONS, 18, 0),
    {TOOLS_MENU, nullptr, "ToolsOptions", "&Options...", nullptr, nullptr,
        "Configuration options", NOT_BUILT, NO_KEY, M | NE, 0, 0, 0},

    SEPARATOR(PLUGIN_MENU, nullptr, M | CMD_PLUGIN_MENU, 0, 0),

    {WINDOW_MENU, nullptr, "WindowNew", "&New Window", "neww", nullptr,
        "Open another window for the active document", &W::cmdWindowNew, NO_KEY, M, 0, 0, 0},
    {WINDOW_MENU, nullptr, "WindowCascade", "&Cascade", "cascade", nullptr,
        "Arrange windows so they overlap", &W::cmdWindowCascade, NO_KEY, M, 0, 0, 0},
    {WINDOW_MENU, nullptr, "WindowTile", "&Tile", "tile", nullptr,
        "Arrange windows as non-overlapping tiles", &W::cmdWindowTile, NO_KEY, M, 0, 0, 0},
    SEPARATOR(WINDOW_MENU, nullptr, M, 0, 0),
    {WINDOW_MENU, nullptr, "WindowNext", "N&ext Window", nullptr, nullptr,
        "Switch to the next document window", &W::cmdWindowNext, QKeySequence::NextChild, M, 0, 0, 0},
    {WINDOW_MENU, nullptr, "WindowPrev", "&Previous Window", nullptr, "Ctrl+Shift+Tab",
        "Switch to the previous document window", &W::cmdWindowPrev, NO_KEY, M, 0, 0, 0},
    SEPARATOR(WINDOW_MENU, nullptr, M, 0, 0),
    {WINDOW_MENU, nullptr, "WindowMsg", "&Messages", "console", "Alt+F3",
        "View message window", &W::cmdWindowMessages, NO_KEY, M | C | NE, 0, 0, 0,
        checkedIf(is<&S::showsConsole>)},
    {WINDOW_MENU, nullptr, "WindowMsgExp", "&Export Messages...", "condump", "Alt+E",
        "Export contents on message window to file", &W::cmdWindowExportMessages, NO_KEY, M | NE, 0, 0, 0},
    SEPARATOR(WINDOW_MENU, nullptr, M | CMD_WINDOW_LIST, 0, 0),

    {HELP_MENU, nullptr, "HelpTopics", "&Help Topics", nullptr, nullptr,
        "Open Karvex reference manual", &W::cmdHelpTopics, QKeySequence::HelpContents, M | NE, 0, 0, 0},
    {HELP_MENU, nullptr, "HelpWeb", "Web &Resources", nullptr, nullptr,
        "Help on the Web", nullptr, NO_KEY, M | NE | CMD_WEB_MENU, 0, 0, 0},
    {HELP_MENU, nullptr, "HelpCommands", "&Command List...", nullptr, nullptr,
        "Display list of commands with shortcuts", &W::cmdHelpCmdList, NO_KEY, M | NE, 0, 0, 0},
    SEPARATOR(HELP_MENU, nullptr, M, 0, 0),
    {HELP_MENU, nullptr, "HelpAbout", "&About...", nullptr, nullptr,
        "Display program information, version number and copyright", NOT_BUILT, NO_KEY,
        M | NE, 0, 0, 0},
};
#undef SEPARATOR

static_assert(std::size(g_rows) == 140);

#define TOOL_ROW(id, text, icon, shortcut, tip, slot, flags, rules, index) \
    {{nullptr, nullptr, id, text, icon, shortcut, tip, &W::slot, NO_KEY, CMD_SHOW_ALWAYS | (flags), \
      0, 0, 0, rules}, index}
#define TOOL(id, text, icon, shortcut, tip, slot, index) \
    TOOL_ROW(id, text, icon, shortcut, tip, slot, C, checkedIf(hasTool<index>), index)
#define TOOL_SEPARATOR {{}, -1}

static constexpr cCommandRules DECALS = {is<&S::hasDecals>, nullptr, hasTool<TOOL_DECAL>, {}, nullptr};

static const cToolRow g_tools[] = {
    TOOL("ToolSel", "Selection Tool", "tool1", "Shift+S", nullptr, toolSelect, TOOL_SELECT),
    TOOL("ToolMag", "Magnify", "tool2", "Shift+G", nullptr, toolMagnify, TOOL_MAGNIFY),
    TOOL("ToolCam", "Camera", "tool3", "Shift+C", nullptr, toolCamera, TOOL_CAMERA),
    TOOL_SEPARATOR,
    TOOL("ToolEnt", "Entity Tool", "tool4", "Shift+E", "Entity Creation Tool", toolEntity, TOOL_ENTITY),
    TOOL("ToolBlk", "Block Tool", "tool5", "Shift+B", "Block Creation Tool", toolBrush, TOOL_BLOCK),
    TOOL_SEPARATOR,
    TOOL("ToolTA", "Texture Application", "tool6", "Shift+A", "Texture Application Mode",
        toolTextureApplication, TOOL_TEXTURE),
    TOOL_ROW("ToolTex", "Apply Current Texture", "tool7", nullptr, "Apply Current Texture to Selection",
        toolApplyTexture, 0, {}, NOT_A_TOOL),
    TOOL_ROW("ToolDec", "Apply Decals", "tool8", "Shift+D", nullptr, toolApplyDecals, C, DECALS, TOOL_DECAL),
    TOOL_SEPARATOR,
    TOOL("ToolC", "Clipping Tool", "tool9", "Shift+X", nullptr, toolClipper, TOOL_CLIP),
    TOOL("ToolV", "Vertex Tool", "tool10", "Shift+V", "Vertex Manipulation", toolVertexManipulation,
        TOOL_VERTEX),
    TOOL_SEPARATOR,
    TOOL("ToolPath", "Path Tool", "tool11", "Shift+P", nullptr, toolPath, TOOL_PATH),
};
#undef TOOL_SEPARATOR
#undef TOOL
#undef TOOL_ROW
// clang-format on

static const cCommandGroup g_bars[] = {
    {"Mapf&ile Bar", CMD_BAR_FILE},
    {"Mapv&iew Bar", CMD_BAR_VIEW},
    {"Mapope&rations Bar", CMD_BAR_OPERATIONS},
};

static const cCommandGroup g_popups[] = {
    {"Canvas", CMD_POPUP_CANVAS},       {"Operations", CMD_POPUP_OPERATIONS},
    {"Create", CMD_POPUP_CREATE},       {"Select", CMD_POPUP_SELECT},
    {"Selection", CMD_POPUP_SELECTION},
};

// ---- The table to its readers

cCommandRows commandTable() {
    return {g_rows, int(std::size(g_rows))};
}

cToolRows toolTable() {
    return {g_tools, int(std::size(g_tools))};
}

cCommandGroups commandBars() {
    return {g_bars, int(std::size(g_bars))};
}

cCommandGroups commandPopups() {
    return {g_popups, int(std::size(g_popups))};
}

// SPDX-License-Identifier: MIT
// The rows of the command table, in menu order. A new command is a new row here and a slot of
// cMainWindow; nothing else.
#include "shell/tCommandTable.h"

#include "shell/tMainWindow.h"

#include <iterator>

static constexpr QKeySequence::StandardKey NO_KEY = QKeySequence::UnknownKey;

// Sets of flags that many rows share.
static constexpr uint32_t M = CMD_MAIN_MENU;
static constexpr uint32_t N = CMD_SHOW_ALWAYS;
static constexpr uint32_t E = CMD_ENABLE_ALWAYS;
static constexpr uint32_t NE = N | E;
static constexpr uint32_t C = CMD_CHECKABLE;

static constexpr char FILE_MENU[] = "&File";
static constexpr char MAP_MENU[] = "&Map";
static constexpr char VIEW_MENU[] = "&View";
static constexpr char PLUGIN_MENU[] = "Pl&ugins";
static constexpr char WINDOW_MENU[] = "&Window";
static constexpr char GRID_MENU[] = "&Grid Settings";
static constexpr char TRANSPARENCY_MENU[] = "&Transparency";

using W = cMainWindow;

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
        M | CMD_BAR_FILE | CMD_POPUP_OPERATIONS, 0, 4, 30},
    SEPARATOR(FILE_MENU, nullptr, M | CMD_RECENT_BLOCK, 0, 0),
    SEPARATOR(FILE_MENU, nullptr, M | CMD_RECENT_END, 0, 0),
    {FILE_MENU, nullptr, "FileExit", "E&xit", nullptr, nullptr,
        "Quit the application; prompts to save documents", &W::cmdFileExit, NO_KEY, M | NE, 0, 0, 0},

    {MAP_MENU, nullptr, "MapSnap", "&Snap to Grid", nullptr, "Shift+W",
        "Toggle automatic snapping of vertices to grid", &W::cmdMapToggleGridSnap, NO_KEY, M | C, 0, 0, 0},
    {MAP_MENU, nullptr, "MapGrid", "Show &Grid", "grid", "Shift+R",
        "Toggle grid", &W::cmdMapToggleGrid, NO_KEY, M | C | CMD_BAR_VIEW, 0, 1, 0},
    {MAP_MENU, nullptr, "MapGrid3D", "Show 3&D Grid", "grid3d", nullptr,
        "Toggle 3D-grid", &W::cmdMapToggleGrid3D, NO_KEY, C | CMD_BAR_VIEW, 0, 2, 0},
    {MAP_MENU, GRID_MENU, "MapGrid-", "&Smaller Grid", "gridm", "[",
        "Lower the size of the grid", &W::cmdMapSmallerGrid, NO_KEY, M | CMD_BAR_VIEW, 0, 3, 0},
    {MAP_MENU, GRID_MENU, "MapGrid+", "&Bigger Grid", "gridp", "]",
        "Raise the size of the grid", &W::cmdMapBiggerGrid, NO_KEY, M | CMD_BAR_VIEW, 0, 4, 0},
    SEPARATOR(MAP_MENU, nullptr, CMD_BAR_VIEW, 5, 0),
    {MAP_MENU, nullptr, "MapLWS", "&Load window state", "lws", nullptr,
        "Load default window state", &W::cmdMapLoadWindowState, NO_KEY, E | CMD_BAR_VIEW, 0, 6, 0},
    {MAP_MENU, nullptr, "MapSWS", "Sa&ve window state", "sws", nullptr,
        "Save current window state as default", &W::cmdMapSaveWindowState, NO_KEY, E | CMD_BAR_VIEW, 0, 7, 0},

    {VIEW_MENU, nullptr, "-", "Screen &Elements", nullptr, nullptr,
        "Toggle visibility of screen elements", nullptr, NO_KEY, M | NE | CMD_ELEMENTS_MENU, 0, 0, 0},
    SEPARATOR(VIEW_MENU, nullptr, M, 0, 0),
    {VIEW_MENU, nullptr, "View2DXY", "2D &X/Y", "xy", nullptr,
        "View 2D X/Y axes", &W::cmdView2DXY, NO_KEY, M | C | CMD_POPUP_CANVAS, 0, 0, 1},
    {VIEW_MENU, nullptr, "View2DYZ", "2D &Y/Z", "yz", nullptr,
        "View 2D Y/Z axes", &W::cmdView2DYZ, NO_KEY, M | C | CMD_POPUP_CANVAS, 0, 0, 2},
    {VIEW_MENU, nullptr, "View2DXZ", "2D X/&Z", "xz", nullptr,
        "View 2D X/Z axes", &W::cmdView2DXZ, NO_KEY, M | C | CMD_POPUP_CANVAS, 0, 0, 3},
    SEPARATOR(VIEW_MENU, nullptr, M | CMD_POPUP_CANVAS, 0, 4),
    {VIEW_MENU, nullptr, "View3DW", "3D &Wireframe", "threed1", nullptr,
        "View 3D wireframe", &W::cmdView3DWireframe, NO_KEY, M | C | CMD_POPUP_CANVAS, 0, 0, 5},
    {VIEW_MENU, nullptr, "View3DF", "3D &Filled Polygons", "threed2", nullptr,
        "View 3D polygons", &W::cmdView3DFilled, NO_KEY, M | C | CMD_POPUP_CANVAS, 0, 0, 6},
    {VIEW_MENU, nullptr, "View3DT", "3D &Textured Polygons", "threed3", nullptr,
        "View 3D textured polygons", &W::cmdView3DTextured, NO_KEY, M | C | CMD_POPUP_CANVAS, 0, 0, 7},
    SEPARATOR(VIEW_MENU, nullptr, M, 0, 0),
    {VIEW_MENU, nullptr, "ViewAuto4", "&Autosize 4 Views", nullptr, "Ctrl+4",
        "Autosize the 4 views in a map window", &W::cmdViewAutosize, NO_KEY, M, 0, 0, 0},
    SEPARATOR(VIEW_MENU, nullptr, M, 0, 0),
    {VIEW_MENU, TRANSPARENCY_MENU, "ViewTexTrans", "&Special Textures", "trans", nullptr,
        "Toggle transparency of special textures in 3D", &W::cmdViewToggleTexTrans, NO_KEY, M | C, 0, 0, 0},
    {VIEW_MENU, TRANSPARENCY_MENU, "ViewEntTrans", "&Entities", "trans2", nullptr,
        "Toggle transparency of entities with non-standard rendermodes in 3D",
        &W::cmdViewToggleEntTrans, NO_KEY, M | C, 0, 0, 0},
    SEPARATOR(VIEW_MENU, nullptr, M, 0, 0),
    {VIEW_MENU, nullptr, "ViewConn", "Show C&onnections", "conn", nullptr,
        "Show/hide connections between Targets and their Triggers",
        &W::cmdViewToggleConnections, NO_KEY, M | C, 0, 0, 0},
    {VIEW_MENU, nullptr, "ViewMod2D", "Show &Models in 2D", "mod2d", nullptr,
        "Show/hide models in 2D", &W::cmdViewToggleModels2D, NO_KEY, M | C, 0, 0, 0},
    {VIEW_MENU, nullptr, "ViewNodraw", "Show &Nodraw Faces", "nodraw", nullptr,
        "Show/hide nodraw (invisible) faces in 3D", &W::cmdViewToggleNodraw, NO_KEY, M | C, 0, 0, 0},
    SEPARATOR(VIEW_MENU, nullptr, M, 0, 0),
    {VIEW_MENU, nullptr, "ViewItems", "&Hide Items", nullptr, nullptr,
        "Hide all items", &W::cmdViewToggleItems, NO_KEY, M | C, 0, 0, 0},
    {VIEW_MENU, nullptr, "ViewPaths", "Hide &Paths", nullptr, nullptr,
        "Hide all paths", &W::cmdViewTogglePaths, NO_KEY, M | C, 0, 0, 0},
    {VIEW_MENU, nullptr, "ViewDetail", "Hide &Detail", nullptr, nullptr,
        "Hide all detail brushes", &W::cmdViewToggleDetail, NO_KEY, M | C, 0, 0, 0},

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
    {WINDOW_MENU, nullptr, "WindowPrev", "&Previous Window", nullptr, nullptr,
        "Switch to the previous document window", &W::cmdWindowPrev, QKeySequence::PreviousChild, M, 0, 0, 0},
    SEPARATOR(WINDOW_MENU, nullptr, M, 0, 0),
    {WINDOW_MENU, nullptr, "WindowMsg", "&Messages", "console", "Alt+F3",
        "View message window", &W::cmdWindowMessages, NO_KEY, M | C | NE, 0, 0, 0},
    {WINDOW_MENU, nullptr, "WindowMsgExp", "&Export Messages...", "condump", "Alt+E",
        "Export contents on message window to file", &W::cmdWindowExportMessages, NO_KEY, M | NE, 0, 0, 0},
    SEPARATOR(WINDOW_MENU, nullptr, M | CMD_WINDOW_LIST, 0, 0),
};
// clang-format on
#undef SEPARATOR

static const cCommandGroup g_bars[] = {
    {"Mapf&ile Bar", CMD_BAR_FILE},
    {"Mapv&iew Bar", CMD_BAR_VIEW},
};

static const cCommandGroup g_popups[] = {
    {"Canvas", CMD_POPUP_CANVAS},
    {"Operations", CMD_POPUP_OPERATIONS},
};

cCommandRows commandTable() {
    return {g_rows, int(std::size(g_rows))};
}

cCommandGroups commandBars() {
    return {g_bars, int(std::size(g_bars))};
}

cCommandGroups commandPopups() {
    return {g_popups, int(std::size(g_popups))};
}

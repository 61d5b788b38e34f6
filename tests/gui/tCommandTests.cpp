// SPDX-License-Identifier: MIT
// Menus, bars and pop-up menus as the user sees them, against lists written down by hand; which
// commands are there and enabled when; shortcuts by real key presses.
#include "document/tHistory.h"
#include "gui/tGuiTest.h"
#include "support/tMapTools.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QApplication>
#include <QDockWidget>
#include <QMenuBar>
#include <QSet>
#include <QTextEdit>
#include <QToolBar>

class CommandTest : public cGuiTest {
protected:
    // A document with one selected block at the origin.
    cBrushData* startWithBlock() {
        const cProject* project = startWithProject();
        static const float mins[3] = {-16, -16, -16};
        static const float maxs[3] = {16, 16, 16};
        cBrushData* brush = addBox(*project->map, project->map->world(), mins, maxs);
        trigger("EditSelAll");
        return brush;
    }
};

// Ids in order, "|" for a separator, "title{...}" for a submenu. Entries that are made while the
// program runs have no id and are left out.
static QString describe(const QList<QAction*>& actions) {
    QStringList words;
    for (const QAction* action : actions) {
        if (action->menu())
            words.append(action->text() + QLatin1Char('{') + describe(action->menu()->actions()) +
                         QLatin1Char('}'));
        else if (!action->objectName().isEmpty())
            words.append(action->objectName());
        else if (action->isSeparator())
            words.append(QStringLiteral("|"));
    }
    return words.join(QLatin1Char(' '));
}

TEST_F(CommandTest, menusHoldTheirCommandsInOrder) {
    start();
    const struct {
        const char* title;
        const char* entries;
    } cases[] = {
        {"&File", "FileNew FileOpen FileClose FileCloseAll FileSave FileSaveAs | FileExport "
                  "FileExport2 | FileRun | | FileExit"},
        {"&Edit", "EditUndo EditRedo EditNoUndo | EditCut EditCopy EditPaste EditPaste2 "
                  "EditDelete | EditSelNone EditSelAll | EditProps"},
        {"&Map", "MapSnap MapGrid &Grid Settings{MapGrid- MapGrid+} | MapGoto MapGoto2 MapInfo "
                 "MapEnts MapCheck | MapProps | MapLoadPTS MapUnloadPTS | MapLoadPTS "
                 "MapUnloadPTS"},
        {"&View",
         "Screen &Elements{| |} &Color Schemes{} | View2DXY View2DYZ View2DXZ | View3DW View3DF "
         "View3DT | ViewAuto4 ViewCenterSel | T&ransparency{ViewTexTrans ViewEntTrans} | ViewConn "
         "ViewMod2D ViewNodraw | ViewItems ViewPaths ViewDetail | ViewHideSel ViewShowHidden"},
        {"&Tools",
         "ToolsCarve ToolsMerge ToolsHollow | ToolsGroup ToolsUngroup | ToolsMakeStruct "
         "ToolsMakeDetail ToolsMakeSep ToolsToEntity ToolsToWorld | ToolsTexAppl ToolsTexRepl "
         "ToolsTexLock ToolsTexLockScale ToolsTexA2View | ToolsSnapSel ToolsSnapSel2 "
         "ToolsTransform &Align objects{ToolsAlignL ToolsAlignR ToolsAlignT ToolsAlignB} &Flip "
         "objects{ToolsFlipH ToolsFlipV} | ToolsOptions"},
        {"&Window", "WindowNew WindowCascade WindowTile | WindowNext WindowPrev | WindowMsg "
                    "WindowMsgExp |"},
        {"&Help", "HelpTopics Web &Resources{|} HelpCommands | HelpAbout"},
        // The pop-up menus.
        {"Canvas", "View2DXY View2DYZ View2DXZ | View3DW View3DF View3DT"},
        {"Operations", "EditPaste EditPaste2 FileExport2 | EditUndo EditRedo"},
        {"Create", "EditCreate EditCreatePlaceholder"},
        {"Select", "EditSelTouch EditSelInside EditSelHandles | EditPaste EditPaste2 FileExport2 "
                   "| EditUndo EditRedo"},
        {"Selection",
         "EditCut EditCopy EditDelete EditPaste2 FileExport2 | EditUndo EditRedo | "
         "ToolsMakeStruct ToolsMakeDetail ToolsMakeSep ToolsCarve ToolsHollow | ToolsGroup "
         "ToolsUngroup | &Tie to entity{ToolsToEntityContext ToolsToEntityPlaceholder} "
         "ToolsToWorld | &Align objects{ToolsAlignL ToolsAlignR ToolsAlignT ToolsAlignB} &Flip "
         "objects{ToolsFlipH ToolsFlipV} | EditProps"},
    };
    for (const auto& c : cases) {
        const QMenu* popup = window->popupMenu(c.title);
        const QMenu* menu = popup ? popup : menuOf(*window, c.title);
        ASSERT_TRUE(menu) << c.title;
        EXPECT_EQ(describe(menu->actions()), QString::fromLatin1(c.entries));
    }
    QStringList titles;
    for (const QAction* a : window->menuBar()->actions())
        titles.append(a->text());
    EXPECT_EQ(titles.join(QLatin1Char(' ')),
              QStringLiteral("&File &Edit &Map &View &Tools Pl&ugins &Window &Help"));
}

TEST_F(CommandTest, barsHoldTheirCommandsInOrder) {
    start();
    const struct {
        const char* name;
        const char* entries;
    } cases[] = {
        {"Mapf&ile Bar", "FileNew FileOpen FileSave FileExport2"},
        {"Mapv&iew Bar", "MapGrid MapGrid3D MapGrid- MapGrid+ | MapLWS MapSWS"},
        {"Mapope&rations Bar",
         "ToolsCarve ToolsMerge | ToolsGroup ToolsUngroup ToolsIG | ViewHideSel ViewHideUnsel "
         "ViewShowHidden | EditCut EditCopy EditPaste | ToolsCordon ToolsCordonB | EditSelH "
         "EditSelA ToolsTexLock ToolsTexLockScale | ToolsTexAlign ToolsVertexRes | FileRun | "
         "ViewTexTrans ViewEntTrans ViewConn ViewMod2D ViewNodraw"},
        {"Maptools Bar", "ToolSel ToolMag ToolCam | ToolEnt ToolBlk | ToolTA ToolTex ToolDec | "
                         "ToolC ToolV | ToolPath"},
    };
    for (const auto& c : cases) {
        const auto* bar = child<QToolBar>(window.get(), c.name);
        EXPECT_EQ(describe(bar->actions()), QString::fromLatin1(c.entries));
        const bool isTools = !qstrcmp(c.name, "Maptools Bar");
        EXPECT_EQ(bar->iconSize(), isTools ? QSize(40, 32) : QSize(16, 16)) << c.name;
        for (const QAction* a : bar->actions())
            EXPECT_TRUE(a->isSeparator() || !a->icon().isNull()) << a->objectName().toStdString();
    }
}

// ---- With and without a document

TEST_F(CommandTest, withoutDocumentOnlySomeCommandsShow) {
    const char* const gone[] = {"&Edit", "&Map", "&View"};
    const char* const detail[] = {"ToolsMakeStruct", "ToolsMakeDetail", "ToolsMakeSep",
                                  "ViewDetail"};
    const auto expectShown = [&](bool shown) {
        for (const char* title : gone)
            EXPECT_EQ(menuOf(*window, title)->menuAction()->isVisible(), shown) << title;
        for (const QAction* a : child<QToolBar>(window.get(), "Mapope&rations Bar")->actions())
            EXPECT_EQ(a->isVisible(), shown) << a->objectName().toStdString() << ", separators too";
        EXPECT_EQ(action("FileClose")->isVisible() && action("FileClose")->isEnabled(), shown);
    };
    for (const char* profile : {"test", "rich"}) {
        const bool isRich = !strcmp(profile, "rich"); // with decals and detail
        writeConfigs(1, 0, profile);
        start();
        expectShown(false);
        EXPECT_EQ(window->windowTitle(), QStringLiteral("Karvex"));
        EXPECT_EQ(pane(6), QStringLiteral("Snap: On Grid: 32"));
        EXPECT_EQ(visibleEntries(menuOf(*window, "&File")).join(QLatin1Char(' ')),
                  QStringLiteral("&New &Open... E&xit"));
        EXPECT_EQ(visibleEntries(menuOf(*window, "&Tools")),
                  QStringList(QStringLiteral("&Options...")));
        EXPECT_TRUE(action("WindowMsg")->isCheckable() && action("WindowMsg")->isEnabled());
        EXPECT_EQ(action("EditUndo")->text(), QStringLiteral("Can't undo"));
        for (const QCustomAction* a : window->menus().toolActions)
            EXPECT_FALSE(a->isEnabled()) << a->objectName().toStdString();
        newProject();
        expectShown(true);
        for (const QCustomAction* a : window->menus().toolActions)
            EXPECT_EQ(a->isEnabled(), isRich || a->toolIndex != TOOL_DECAL) << a->toolIndex;
        for (const char* id : {"EditCut", "EditCopy", "EditPaste", "EditPaste2", "ToolsGroup"})
            EXPECT_FALSE(action(id)->isEnabled()) << id << ": nothing is selected or copied";
        for (const char* id : detail)
            EXPECT_EQ(action(id)->isVisible(), isRich) << id;
        trigger("FileClose");
        settle();
        expectShown(false);
        window.reset();
    }
}

TEST_F(CommandTest, selectionEnablesItsCommandsInEveryCopy) {
    startWithBlock();
    const auto expectEnabled = [&](const char* id, bool enabled) {
        letShow();
        for (int copy = 0; copy < 3; ++copy)
            EXPECT_EQ(action(id, copy)->isEnabled(), enabled) << id << ' ' << copy;
    };
    for (const char* id : {"EditCut", "EditCopy", "ToolsGroup"})
        expectEnabled(id, true);
    action("ToolsIG")->trigger();
    EXPECT_EQ(active()->map->data.selectedBrushes, nullptr);
    trigger("EditSelAll");
    expectEnabled("EditCut", true);
    expectEnabled("ToolsGroup", false); // groups are ignored
    action("ToolsIG")->trigger();
    expectEnabled("EditCut", false); // the selection is dropped
}

// ---- The history in the Edit menu

TEST_F(CommandTest, editMenuNamesTheStepsInEveryCopy) {
    startWithBlock();
    // Whether the commands read so in each copy ("-" for one that is disabled), and the block is
    // there.
    const auto expectMenu = [&](const char* undo, const char* redo, bool block) {
        for (int copy = 0; copy < 3; ++copy)
            for (const char* id : {"EditUndo", "EditRedo"}) {
                const QAction* a = action(id, copy);
                EXPECT_EQ((a->isEnabled() ? QString() : QStringLiteral("-")) + a->text(),
                          QString::fromLatin1(strcmp(id, "EditUndo") ? redo : undo));
            }
        EXPECT_EQ(active()->map->world()->brushes != nullptr, block);
    };
    expectMenu("-Can't undo", "-Can't redo", true);
    trigger("EditDelete");
    expectMenu("&Undo Delete Selection", "-Can't redo", false);
    active()->setDirty(false);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(active()->dirty);
    expectMenu("-Can't undo", "&Redo Delete Selection", true);
    trigger("EditRedo");
    expectMenu("&Undo Delete Selection", "-Can't redo", false);
    for (const char* text : {"Disabl&e Undo/Redo", "Enabl&e Undo/Redo"}) {
        EXPECT_EQ(action("EditNoUndo")->text(), QString::fromLatin1(text));
        trigger("EditNoUndo");
        expectMenu("-Can't undo", "-Can't redo", false);
        EXPECT_EQ(active()->map->history->isEnabled(), text[0] == 'E');
    }
}

TEST_F(CommandTest, morphModeIsLeftOnlyByConsent) {
    startWithBlock();
    EXPECT_TRUE(window->confirmLeaveMorph());
    trigger("EditDelete");
    const struct {
        const char* question;
        std::function<void()> command;
    } cases[] = {{"You must exit morph mode to perform this operation.\n"
                  "Do you want to do this now?",
                  [&] { window->confirmLeaveMorph(); }},
                 {"You must exit morph mode to undo changes you've made.\n"
                  "Do you want to do this now?",
                  [&] { trigger("EditUndo"); }}};
    for (const auto& c : cases) {
        replies.expectBox(QMessageBox::Ok, "Vertex Tool");
        toolAction(TOOL_VERTEX)->trigger();
        toolAction(TOOL_CAMERA)->trigger(); // suspended, it morphs still
        replies.expectBox(QMessageBox::No, c.question);
        c.command();
        EXPECT_EQ(window->currentToolId(), int(TOOL_CAMERA));
        EXPECT_EQ(active()->map->world()->brushes, nullptr);
        replies.expectBox(QMessageBox::Yes, c.question);
        c.command();
        EXPECT_EQ(window->currentToolId(), int(TOOL_SELECT));
    }
    EXPECT_NE(active()->map->world()->brushes, nullptr);
}

// ---- Toggles

TEST_F(CommandTest, togglesSetTheirSettingAndEveryCopyAndSaySo) {
    startWithProject();
    const struct {
        const char* id;
        bool cSettings::*setting;
        const char* text; // what the status bar says is on or off
    } cases[] = {
        {"MapSnap", &cSettings::SnapToGrid, nullptr},
        {"MapGrid", &cSettings::EnableGrid2D, nullptr},
        {"MapGrid3D", &cSettings::EnableGrid3D, nullptr},
        {"ViewConn", &cSettings::ShowConnections, "Entity connections"},
        {"ViewMod2D", &cSettings::DrawModels, "2D rendition of models"},
        {"ViewNodraw", &cSettings::DrawNoDraw, "3D rendition of nodraw faces"},
        {"ViewTexTrans", &cSettings::TextureTransparency, "Transparency of special textures"},
        {"ViewEntTrans", &cSettings::EntityTransparency, "Transparency of entities"},
        {"EditSelH", &cSettings::SelectByHandles, nullptr},
        {"EditSelA", &cSettings::SelectAuto, nullptr},
        {"ToolsIG", &cSettings::IgnoreGroups, nullptr},
        {"ToolsTexLock", &cSettings::TextureLock, "Texture locking"},
        {"ToolsTexLockScale", &cSettings::TextureLockScale, "Texture locking (scale)"},
        {"ToolsTexAlign", &cSettings::TextureFaceAlign, nullptr},
        {"ToolsVertexRes", &cSettings::VertexToolRestrict, "Vertex manipulation restrictions"},
        {"ToolsCordon", &cSettings::EnableCordon, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.id);
        const bool isInverse = !strcmp(c.id, "ToolsVertexRes"); // checked while it is off
        const auto copies = int(std::count_if(
            window->menus().actions.begin(), window->menus().actions.end(),
            [&](const QAction* a) { return a->objectName() == QLatin1String(c.id); }));
        for (int i = 0; i < 2 * copies; ++i) { // by each of its copies, on and off
            const bool after = !(window.get()->*c.setting);
            action(c.id, i % copies)->trigger();
            EXPECT_EQ(window.get()->*c.setting, after);
            for (int copy = 0; copy < copies; ++copy)
                EXPECT_EQ(action(c.id, copy)->isChecked(), after != isInverse);
            if (c.text) {
                EXPECT_EQ(said.last(),
                          QString::fromLatin1(c.text) + QLatin1String(after ? " on" : " off"));
            }
        }
    }
    trigger("ViewItems");
    trigger("ViewPaths");
    EXPECT_EQ(window->HideMask, HM_ITEMS | HM_PATHS);
    trigger("ViewItems");
    EXPECT_EQ(window->HideMask, int(HM_PATHS));
    trigger("MapSnap");
    EXPECT_EQ(pane(6), QStringLiteral("Snap: Off Grid: 32"));
}

TEST_F(CommandTest, hidingAKindDropsItFromTheSelectionOfEveryDocument) {
    writeConfigs(1, 0, "rich");
    cBrushData* brush = startWithBlock();
    trigger("ToolsMakeDetail");
    for (const cFaceData* face = brush->faces; face; face = face->next)
        EXPECT_TRUE(face->tex.contentFlags & 0x8);
    const cMap* first = active()->map.get();
    newProject();
    trigger("ViewDetail");
    EXPECT_EQ(first->data.selectedBrushes, nullptr);
    trigger("ViewDetail");
}

// ---- Keys

TEST_F(CommandTest, shortcutsReachTheirCommandsAndNobodyElse) {
    const cBrushData* brush = startWithBlock();
    cMap& map = *active()->map;
    press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(brush->flags & BF_SELECTED);
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_TRUE(brush->flags & BF_SELECTED);
    press(Qt::Key_W, Qt::ControlModifier);
    settle();
    EXPECT_EQ(windowCount(), 1) << "the window's system menu would close it";
    EXPECT_FALSE(brush->flags & BF_SELECTED) << "Move to World drops brushes of the world";

    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_G, Qt::ControlModifier);
    EXPECT_NE(map.data.selectedGroups, nullptr);
    press(Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(map.data.groups, nullptr);
    press(Qt::Key_Delete);
    EXPECT_EQ(map.world()->brushes, nullptr);

    const auto* console = child<QDockWidget>(window.get(), "console");
    press(Qt::Key_F3, Qt::AltModifier);
    EXPECT_TRUE(console->isHidden());
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    press(Qt::Key_F3, Qt::AltModifier);
    EXPECT_FALSE(console->isHidden());
    for (Qt::Key key : {Qt::Key_E, Qt::Key_B}) { // Export Messages, Export Again
        replies.expectCancel();
        press(key, Qt::AltModifier);
        EXPECT_TRUE(answered()) << int(key);
    }
    press(Qt::Key_N, Qt::ControlModifier);
    settle();
    EXPECT_EQ(window->projects.size(), 2);
}

TEST_F(CommandTest, propertiesAreOffWhileFacesAreEdited) {
    startWithBlock();
    EXPECT_TRUE(action("EditProps")->isEnabled());
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        replies.expectBox(QMessageBox::Ok, "\"Properties\"");
        press(key, Qt::AltModifier);
        EXPECT_TRUE(answered());
    }
    replies.expectBox(QMessageBox::Ok, "Texture Application");
    toolAction(TOOL_TEXTURE)->trigger();
    for (const char* id : {"EditProps", "MapProps", "ToolsGroup"})
        EXPECT_FALSE(action(id)->isEnabled()) << id;
    EXPECT_FALSE(action("EditProps", 1)->isEnabled());
    press(Qt::Key_Return, Qt::AltModifier); // no box comes
    trigger("ToolsTexAppl");                // leaves
    EXPECT_TRUE(action("EditProps")->isEnabled());
    EXPECT_EQ(window->currentToolId(), int(TOOL_SELECT));
}

// ---- Class menus

static QString classesIn(const QList<QAction*>& actions) {
    QStringList names;
    for (const QAction* a : actions)
        if (!a->isSeparator())
            names.append(
                a->menu() ? QStringLiteral("%1{%2}").arg(a->text(), classesIn(a->menu()->actions()))
                          : a->text());
    return names.join(QLatin1Char(' '));
}

TEST_F(CommandTest, classMenusFollowTheGameData) {
    write("test.fgd", "@SolidClass = worldspawn : \"World\" []\n"
                      "@PointClass = light : \"A light\" []\n"
                      "@SolidClass = func_door : \"A door\" []\n"
                      "@PointClass = info_start : \"Start\" []\n");
    startWithProject();
    const QMenu* create = window->popupMenu("Create");
    EXPECT_EQ(classesIn(create->actions()),
              QStringLiteral("Create &Object info{info_start} light"));
    const QString selection = classesIn(window->popupMenu("Selection")->actions());
    const QString tie = selection.mid(selection.indexOf(QStringLiteral("&Tie to entity{")));
    EXPECT_TRUE(tie.contains(QStringLiteral("func{func_door}")));
    EXPECT_FALSE(tie.contains(QStringLiteral("light")));
    window->updateEntityMenus(QString(), 1);
    EXPECT_EQ(visibleEntries(create), QStringList(QStringLiteral("Create &Object")));
    window->updateEntityMenus(QString(), 0);
    EXPECT_EQ(visibleEntries(create).size(), 3);
}

// ---- Help

TEST_F(CommandTest, commandListNamesEachShortcutOnceInOrder) {
    start();
    QStringList lines;
    replies.expect([&](QWidget* modal) {
        EXPECT_EQ(modal->windowTitle(), QStringLiteral("Command List"));
        EXPECT_TRUE(child<QTextEdit>(modal, "textEdit")->isReadOnly());
        lines = child<QTextEdit>(modal, "textEdit")->toPlainText().split(QLatin1Char('\n'));
        modal->close();
    });
    trigger("HelpCommands");
    EXPECT_TRUE(std::is_sorted(lines.begin(), lines.end()));
    EXPECT_EQ(lines.removeDuplicates(), 0);
    for (const char* line : {"Create a new document: Ctrl+N", "Vertex Manipulation: Shift+V"})
        EXPECT_TRUE(lines.contains(QString::fromLatin1(line))) << line;
    EXPECT_EQ(lines.filter(QStringLiteral("Close the active")).size(), 0) << "has no shortcut";
}

TEST_F(CommandTest, textsOfMenusAreReadableAndTheirLettersClear) {
    startWithProject();
    QSet<QChar> letters;
    for (const QAction* entry : menuOf(*window, "&View")->actions()) {
        const int at = entry->text().indexOf(QLatin1Char('&'));
        if (at < 0 || !entry->isVisible())
            continue;
        const QChar letter = entry->text()[at + 1].toUpper();
        EXPECT_FALSE(letters.contains(letter)) << entry->text().toStdString();
        letters.insert(letter);
    }
    for (const QAction* a : window->menus().actions) {
        EXPECT_FALSE(a->shortcut().toString().contains(QStringLiteral("Backtab")));
        EXPECT_FALSE(a->statusTip().contains(QStringLiteral("UNsel")));
    }
    newProject();
    const cProject* second = active();
    press(Qt::Key_Tab, Qt::ControlModifier | Qt::ShiftModifier);
    settle();
    EXPECT_NE(active(), second) << "by the key that the menu names";
}

TEST_F(CommandTest, whatNeedsASelectionWaitsForOne) {
    writeConfigs(1, 0, "rich");
    cMap& map = *startWithProject()->map;
    const float mins[3] = {0, 0, 0}, maxs[3] = {64, 64, 64};
    addBox(map, map.world(), mins, maxs);
    for (const bool selected : {false, true, false}) {
        trigger(selected ? "EditSelAll" : "EditSelNone");
        settle();
        for (const char* id :
             {"EditDelete", "ToolsMakeDetail", "ToolsMakeStruct", "ToolsToEntity", "ToolsToWorld"})
            EXPECT_EQ(action(id)->isEnabled(), selected) << id;
    }
    active()->setDirty(false);
}

TEST_F(CommandTest, whatIsNotBuiltSaysSoByName) {
    startWithProject();
    replies.expectBox(QMessageBox::Ok, "We are sorry...\n\nThe command \"Check for problems\" is "
                                       "still under development.\nPlease visit the official web "
                                       "site for news and updates.");
    trigger("MapCheck");
    window->console().text()->clear();
    trigger("HelpTopics");
    EXPECT_TRUE(console().contains(QStringLiteral("TDKManual.pdf\" doesn't exist!")));
}

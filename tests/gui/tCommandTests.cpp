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
#include <QTextEdit>
#include <QToolBar>

class CommandTest : public cGuiTest {
protected:
    // A document with one selected block at the origin.
    cBrushData* startWithBlock() {
        start();
        cProject* project = newProject();
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
         "View3DT | ViewAuto4 ViewCenterSel | &Transparency{ViewTexTrans ViewEntTrans} | ViewConn "
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
    };
    for (const auto& c : cases)
        EXPECT_EQ(describe(menuOf(*window, c.title)->actions()), QString::fromLatin1(c.entries));
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
        const auto* bar = window->findChild<QToolBar*>(QString::fromLatin1(c.name));
        ASSERT_NE(bar, nullptr) << c.name;
        EXPECT_EQ(describe(bar->actions()), QString::fromLatin1(c.entries));
        const bool isTools = !qstrcmp(c.name, "Maptools Bar");
        EXPECT_EQ(bar->iconSize(), isTools ? QSize(40, 32) : QSize(16, 16)) << c.name;
        for (const QAction* a : bar->actions())
            EXPECT_TRUE(a->isSeparator() || !a->icon().isNull()) << a->objectName().toStdString();
    }
}

TEST_F(CommandTest, popupMenusHoldTheirCommandsInOrder) {
    start();
    const struct {
        const char* title;
        const char* entries;
    } cases[] = {
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
        const QMenu* menu = window->popupMenu(c.title);
        ASSERT_NE(menu, nullptr) << c.title;
        EXPECT_EQ(describe(menu->actions()), QString::fromLatin1(c.entries));
    }
}

// ---- With and without a document

TEST_F(CommandTest, menusWithoutAVisibleCommandAreGone) {
    start();
    const char* const gone[] = {"&Edit", "&Map", "&View"};
    for (const char* title : gone)
        EXPECT_FALSE(menuOf(*window, title)->menuAction()->isVisible()) << title;
    EXPECT_EQ(visibleEntries(menuOf(*window, "&Tools")),
              QStringList(QStringLiteral("&Options...")));
    for (const QCustomAction* a : window->toolActions)
        EXPECT_FALSE(a->isEnabled()) << a->objectName().toStdString();
    const auto* operations = window->findChild<QToolBar*>(QStringLiteral("Mapope&rations Bar"));
    for (const QAction* a : operations->actions())
        EXPECT_FALSE(a->isVisible()) << a->objectName().toStdString() << ", separators too";
    EXPECT_EQ(action("EditUndo")->text(), QStringLiteral("Can't undo"));
    newProject();
    for (const char* title : gone)
        EXPECT_TRUE(menuOf(*window, title)->menuAction()->isVisible()) << title;
    for (const QAction* a : operations->actions())
        EXPECT_TRUE(a->isVisible()) << a->objectName().toStdString();
    for (const QCustomAction* a : window->toolActions)
        EXPECT_EQ(a->isEnabled(), a->toolIndex != TOOL_DECAL) << a->objectName().toStdString();
    for (const char* id : {"EditCut", "EditCopy", "EditPaste", "EditPaste2", "ToolsGroup"})
        EXPECT_FALSE(action(id)->isEnabled()) << id << ": nothing is selected or copied";
    EXPECT_FALSE(action("ToolsMakeDetail")->isVisible());
}

TEST_F(CommandTest, theGamesProfileDecidesOnDecalsAndDetail) {
    writeConfigs(1, 0, "rich");
    start();
    newProject();
    EXPECT_TRUE(toolAction(TOOL_DECAL)->isEnabled());
    for (const char* id : {"ToolsMakeStruct", "ToolsMakeDetail", "ToolsMakeSep", "ViewDetail"})
        EXPECT_TRUE(action(id)->isVisible()) << id;
}

TEST_F(CommandTest, selectionEnablesItsCommandsInEveryCopy) {
    startWithBlock();
    const auto states = [&](const char* id) {
        QString text;
        for (const QAction* a : window->actions)
            if (a->objectName() == QLatin1String(id))
                text += QLatin1Char(a->isEnabled() ? '1' : '0');
        return text;
    };
    for (const char* id : {"EditCut", "EditCopy", "ToolsGroup"})
        EXPECT_EQ(states(id), QStringLiteral("111")) << id;
    action("ToolsIG")->trigger();
    EXPECT_TRUE(window->IgnoreGroups);
    EXPECT_EQ(active()->map->data.selectedBrushes, nullptr);
    trigger("EditSelAll");
    EXPECT_EQ(states("EditCut"), QStringLiteral("111"));
    EXPECT_EQ(states("ToolsGroup"), QStringLiteral("000")) << "groups are ignored";
    action("ToolsIG")->trigger();
    EXPECT_EQ(states("EditCut"), QStringLiteral("000")) << "the selection is dropped";
}

// ---- The history in the Edit menu

TEST_F(CommandTest, editMenuNamesTheStepsInEveryCopy) {
    startWithBlock();
    active()->setDirty(false);
    const auto texts = [&](const char* id) {
        QStringList all;
        for (const QAction* a : window->actions)
            if (a->objectName() == QLatin1String(id))
                all.append(a->text() + QLatin1Char(a->isEnabled() ? '+' : '-'));
        all.removeDuplicates();
        return all.join(QLatin1Char(' '));
    };
    EXPECT_EQ(texts("EditUndo"), QStringLiteral("Can't undo-"));
    trigger("EditDelete");
    EXPECT_EQ(active()->map->world()->brushes, nullptr);
    EXPECT_EQ(texts("EditUndo"), QStringLiteral("&Undo Delete Selection+"));
    EXPECT_EQ(texts("EditRedo"), QStringLiteral("Can't redo-"));
    active()->setDirty(false);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_NE(active()->map->world()->brushes, nullptr);
    EXPECT_TRUE(active()->dirty);
    EXPECT_EQ(texts("EditUndo"), QStringLiteral("Can't undo-"));
    EXPECT_EQ(texts("EditRedo"), QStringLiteral("&Redo Delete Selection+"));
    trigger("EditRedo");
    EXPECT_EQ(active()->map->world()->brushes, nullptr);

    EXPECT_EQ(action("EditNoUndo")->text(), QStringLiteral("Disabl&e Undo/Redo"));
    trigger("EditNoUndo");
    EXPECT_EQ(action("EditNoUndo")->text(), QStringLiteral("Enabl&e Undo/Redo"));
    EXPECT_EQ(texts("EditUndo"), QStringLiteral("Can't undo-"));
    EXPECT_FALSE(active()->map->history->isEnabled());
    trigger("EditNoUndo");
    EXPECT_TRUE(active()->map->history->isEnabled());
}

TEST_F(CommandTest, morphModeAsksBeforeUndo) {
    startWithBlock();
    trigger("EditDelete");
    replies.expectBox(QMessageBox::Ok, QStringLiteral("Vertex Tool"));
    toolAction(TOOL_VERTEX)->trigger();
    replies.expectBox(QMessageBox::No, QStringLiteral("to undo changes you've made.\nDo you"));
    trigger("EditUndo");
    EXPECT_EQ(active()->map->world()->brushes, nullptr);
    replies.expectBox(QMessageBox::Yes, QStringLiteral("You must exit morph mode to undo"));
    trigger("EditUndo");
    EXPECT_NE(active()->map->world()->brushes, nullptr);
    EXPECT_EQ(window->currentToolId(), int(TOOL_SELECT));
}

// ---- Toggles

TEST_F(CommandTest, editingTogglesSetTheirSettingAndEveryCopy) {
    start();
    newProject();
    const struct {
        const char* id;
        bool cSettings::*setting;
        bool inverse;
        const char* on;
        const char* off;
    } cases[] = {
        {"EditSelH", &cSettings::SelectByHandles, false, nullptr, nullptr},
        {"EditSelA", &cSettings::SelectAuto, false, nullptr, nullptr},
        {"ToolsIG", &cSettings::IgnoreGroups, false, nullptr, nullptr},
        {"ToolsTexLock", &cSettings::TextureLock, false, "Texture locking on",
         "Texture locking off"},
        {"ToolsTexLockScale", &cSettings::TextureLockScale, false, "Texture locking (scale) on",
         "Texture locking (scale) off"},
        {"ToolsTexAlign", &cSettings::TextureFaceAlign, false, nullptr, nullptr},
        {"ToolsVertexRes", &cSettings::VertexToolRestrict, true,
         "Vertex manipulation restrictions on", "Vertex manipulation restrictions off"},
        {"ToolsCordon", &cSettings::EnableCordon, false, nullptr, nullptr},
    };
    for (const auto& c : cases) {
        for (int i = 0; i < 2; ++i) {
            const bool before = window.get()->*c.setting;
            trigger(c.id);
            EXPECT_EQ(window.get()->*c.setting, !before) << c.id;
            for (const QAction* a : window->actions)
                if (a->objectName() == QLatin1String(c.id)) {
                    EXPECT_EQ(a->isChecked(), before == c.inverse) << c.id;
                }
            if (c.on) {
                EXPECT_EQ(said.last(), QString::fromLatin1(before ? c.off : c.on));
            }
        }
    }
}

TEST_F(CommandTest, savedTogglesAreCheckedAtStart) {
    write(QStringLiteral("TDKSettings.ini"),
          "[View2D]\nSelectAuto=true\nSelectByHandles=true\n[Tools]\nTextureLock=false\n"
          "TextureLockScale=true\nIgnoreGroups=true\nVertexToolRestrict=true\n"
          "TextureFaceAlign=true\n[Compiler]\nEnableCordon=true\n[General]\n"
          "SmallToolIcons=true\n");
    start();
    for (const char* id :
         {"EditSelH", "EditSelA", "ToolsIG", "ToolsTexLockScale", "ToolsTexAlign", "ToolsCordon"})
        EXPECT_TRUE(action(id)->isChecked()) << id;
    for (const char* id : {"ToolsTexLock", "ToolsVertexRes"})
        EXPECT_FALSE(action(id)->isChecked()) << id;
    EXPECT_EQ(window->findChild<QToolBar*>(QStringLiteral("Maptools Bar"))->iconSize(),
              QSize(20, 16));
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

    auto* console = window->findChild<QDockWidget*>(QStringLiteral("console"));
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
}

TEST_F(CommandTest, propertiesAreOffWhileFacesAreEdited) {
    startWithBlock();
    EXPECT_TRUE(action("EditProps")->isEnabled());
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        replies.expectBox(QMessageBox::Ok, QStringLiteral("\"Properties\""));
        press(key, Qt::AltModifier);
        EXPECT_TRUE(answered());
    }
    replies.expectBox(QMessageBox::Ok, QStringLiteral("Texture Application"));
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
    write(QStringLiteral("test.fgd"), "@SolidClass = worldspawn : \"World\" []\n"
                                      "@PointClass = light : \"A light\" []\n"
                                      "@SolidClass = func_door : \"A door\" []\n"
                                      "@PointClass = info_start : \"Start\" []\n");
    start();
    newProject();
    const QMenu* create = window->popupMenu("Create");
    EXPECT_EQ(classesIn(create->actions()),
              QStringLiteral("Create &Object info{info_start} light"));
    QMenu* tie = nullptr;
    for (const QAction* a : window->popupMenu("Selection")->actions())
        if (a->menu() && a->text() == QLatin1String("&Tie to entity"))
            tie = a->menu();
    ASSERT_NE(tie, nullptr);
    EXPECT_TRUE(classesIn(tie->actions()).contains(QStringLiteral("func{func_door}")));
    EXPECT_FALSE(classesIn(tie->actions()).contains(QStringLiteral("light")));

    window->updateEntityMenus(QStringLiteral("light"), 0);
    EXPECT_EQ(action("EditCreate")->text(), QStringLiteral("Create light"));
    window->updateEntityMenus(QString(), 1);
    EXPECT_EQ(visibleEntries(create), QStringList(QStringLiteral("Create &Object")));
    window->updateEntityMenus(QString(), 0);
    EXPECT_EQ(visibleEntries(create).size(), 3);
    for (const QAction* a : create->actions())
        if (a->text() == QLatin1String("info"))
            a->menu()->actions()[0]->trigger();
    EXPECT_EQ(window->currentClassName, QStringLiteral("info_start"));
}

// ---- Help

TEST_F(CommandTest, commandListNamesEachShortcutOnceInOrder) {
    start();
    QStringList lines;
    replies.expect([&](QWidget* modal) {
        EXPECT_EQ(modal->windowTitle(), QStringLiteral("Command List"));
        EXPECT_EQ(modal->size(), QSize(381, 321));
        const auto* text = modal->findChild<QTextEdit*>(QStringLiteral("textEdit"));
        EXPECT_TRUE(text->isReadOnly());
        lines = text->toPlainText().split(QLatin1Char('\n'));
        modal->close();
    });
    trigger("HelpCommands");
    EXPECT_TRUE(std::is_sorted(lines.begin(), lines.end()));
    EXPECT_EQ(lines.removeDuplicates(), 0);
    EXPECT_TRUE(lines.contains(QStringLiteral("Create a new document [Ctrl+N]: Ctrl+N")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Vertex Manipulation: Shift+V")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Selection Tool: Shift+S")));
    EXPECT_EQ(lines.filter(QStringLiteral("Close the active")).size(), 0) << "has no shortcut";
}

TEST_F(CommandTest, whatIsNotBuiltSaysSoByName) {
    start();
    newProject();
    replies.expectBox(QMessageBox::Ok,
                      QStringLiteral("We are sorry...\n\nThe command \"Check for problems\" is "
                                     "still under development.\nPlease visit the official web "
                                     "site for news and updates."));
    trigger("MapCheck");
    window->consoleText()->clear();
    trigger("HelpTopics");
    EXPECT_TRUE(console().contains(QStringLiteral("TDKManual.pdf\" doesn't exist!")));
}

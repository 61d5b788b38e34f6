// SPDX-License-Identifier: MIT
// Menus, bars and pop-up menus as the user sees them; which commands are there and enabled when;
// shortcuts by real key presses.
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

// Ids in order, through submenus, "|" for a separator. Entries that are made while the program runs
// have no id and are left out.
static QStringList idsOf(const QList<QAction*>& actions) {
    QStringList ids;
    for (const QAction* action : actions) {
        if (action->menu())
            ids += idsOf(action->menu()->actions());
        else if (!action->objectName().isEmpty())
            ids += action->objectName();
        else if (action->isSeparator() && dynamic_cast<const cActionRules*>(action))
            ids += QStringLiteral("|");
    }
    return ids;
}

// Those of the rows that have the bit, by their order there. Of submenus filled from elsewhere
// there is nothing to say.
static QStringList idsOf(uint32_t bit, int cCommandRow::*order, const char* menu = nullptr) {
    constexpr uint32_t elsewhere =
        CMD_WEB_MENU | CMD_ELEMENTS_MENU | CMD_SCHEMES_MENU | CMD_PLUGIN_MENU;
    std::vector<const cCommandRow*> rows;
    for (const cCommandRow& row : commandTable())
        if ((row.flags & bit) && !(row.flags & elsewhere) && (!menu || !strcmp(menu, row.menu)))
            rows.push_back(&row);
    if (order)
        std::stable_sort(rows.begin(), rows.end(),
                         [&](const auto* a, const auto* b) { return a->*order < b->*order; });
    QStringList ids;
    for (const cCommandRow* row : rows)
        ids += row->id ? QString::fromLatin1(row->id) : QStringLiteral("|");
    return ids;
}

TEST_F(CommandTest, menusAndBarsHoldTheirCommandsInOrder) {
    start();
    QStringList titles;
    for (const QAction* entry : window->menuBar()->actions()) {
        titles += entry->text();
        EXPECT_EQ(idsOf(entry->menu()->actions()),
                  idsOf(CMD_MAIN_MENU, nullptr, qPrintable(entry->text())));
    }
    EXPECT_EQ(titles.join(QLatin1Char(' ')),
              QStringLiteral("&File &Edit &Map &View &Tools Pl&ugins &Window &Help"));
    for (const cCommandGroup& group : commandPopups())
        EXPECT_EQ(idsOf(window->popupMenu(group.title)->actions()),
                  idsOf(group.bit, &cCommandRow::popupOrder));
    for (const cCommandGroup& group : commandBars())
        EXPECT_EQ(idsOf(child<QToolBar>(window.get(), group.title)->actions()),
                  idsOf(group.bit, &cCommandRow::barOrder));
    for (const QToolBar* bar : window->menus().bars) {
        const bool isTools = bar == window->menus().bars.last();
        EXPECT_EQ(bar->iconSize(), isTools ? QSize(40, 32) : QSize(16, 16));
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
    int toggles = 0;
    for (const cCommandRow& row : commandTable()) {
        const cSettingCheck& setting = row.rules.setting;
        if (!setting)
            continue;
        SCOPED_TRACE(row.id);
        ++toggles;
        QList<QAction*> copies;
        for (QAction* a : window->menus().actions)
            if (a->objectName() == QLatin1String(row.id))
                copies += a;
        for (int i = 0; i < 2 * copies.size(); ++i) { // by each of its copies, on and off
            const bool after = !setting.isOn(*window);
            copies[i % copies.size()]->trigger();
            EXPECT_EQ(setting.isOn(*window), after);
            for (const QAction* copy : qAsConst(copies))
                EXPECT_EQ(copy->isChecked(), after != setting.isOpposite);
            if (setting.said) {
                EXPECT_EQ(said.last(), QString::fromLatin1(setting.said) +
                                           QLatin1String(after ? " on" : " off"));
            }
        }
    }
    EXPECT_GE(toggles, 19);
    EXPECT_TRUE(action("ToolsVertexRes")->isChecked()) << "nothing restricts the tool";
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

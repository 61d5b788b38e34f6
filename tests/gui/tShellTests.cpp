// SPDX-License-Identifier: MIT
// The frame around the documents: commands, bars, keys, console, settings and layout.
#include "dialogs/tWaitDialog.h"
#include "document/tVisGroup.h"
#include "gui/tGuiTest.h"
#include "shell/tColorScheme.h"
#include "support/tConsole.h"
#include "support/tMapText.h"
#include "support/tMapTools.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMovie>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QTextDocument>
#include <QTextEdit>
#include <QToolBar>

using ShellTest = cGuiTest;

static QMdiSubWindow* frameOf(const cProject* project) {
    return qobject_cast<QMdiSubWindow*>(project->windows[0]->parentWidget());
}

// Two actions with one shortcut would both be dead; the copies in bars show it in the tooltip.
TEST_F(ShellTest, noShortcutStandsTwice) {
    startWithProject();
    QStringList seen;
    for (const QAction* a : window->menus().actions)
        if (!a->shortcut().isEmpty())
            seen.append(a->shortcut().toString());
    EXPECT_TRUE(seen.contains(QStringLiteral("Ctrl+N")));
    EXPECT_EQ(seen.removeDuplicates(), 0);
    EXPECT_TRUE(action("FileNew", 1)->shortcut().isEmpty());
    EXPECT_EQ(action("FileNew", 1)->toolTip(), QStringLiteral("Create a new document [Ctrl+N]"));
    EXPECT_EQ(action("FileClose")->toolTip(), QStringLiteral("Close the active document"));
    for (const QAction* a : frameOf(active())->systemMenu()->actions())
        EXPECT_TRUE(a->shortcut().isEmpty()) << a->text().toStdString();
}

TEST_F(ShellTest, viewTypeCommandsActOnTheActiveView) {
    const cProject* project = startWithProject();
    const struct {
        const char* id;
        int type;
        int mode;
    } cases[] = {{"View2DXY", VIEW_TOP, -1},          {"View2DYZ", VIEW_FRONT, -1},
                 {"View2DXZ", VIEW_SIDE, -1},         {"View3DW", VIEW_CAMERA, RM_WIREFRAME},
                 {"View3DF", VIEW_CAMERA, RM_FILLED}, {"View3DT", VIEW_CAMERA, RM_TEXTURED}};
    for (const auto& c : cases) {
        trigger(c.id);
        EXPECT_EQ(window->activeCanvas->viewType, c.type);
        EXPECT_TRUE(c.mode < 0 || window->activeCanvas->renderMode == c.mode) << c.id;
        for (const auto& other : cases)
            EXPECT_EQ(action(other.id)->isChecked(), other.id == c.id) << other.id;
    }
    cCanvas* top = project->windows[0]->canvases[1];
    top->activate();
    EXPECT_TRUE(action("View2DXY")->isChecked());
    EXPECT_EQ(window->previousCanvas, project->windows[0]->canvases[0]);
    QTest::keyClick(top, Qt::Key_Tab);
    EXPECT_EQ(top->viewType, VIEW_FRONT);
    EXPECT_TRUE(action("View2DYZ")->isChecked() && !action("View2DXY")->isChecked());
}

// On its way to a menu the mouse crosses other views, which become active by it.
TEST_F(ShellTest, commandsGoToTheViewUsedLastAndNotToTheOneUnderTheMouse) {
    const cProject* project = startWithProject();
    const std::vector<cCanvas*>& views = project->windows[0]->canvases;
    cCanvas *camera = views[0], *top = views[1], *side = views[2];
    const auto cross = [](cCanvas* canvas) {
        QEvent enter(QEvent::Enter);
        QApplication::sendEvent(canvas, &enter);
    };
    QTest::mouseClick(side, Qt::LeftButton);
    QTest::mouseClick(camera, Qt::RightButton);
    EXPECT_EQ(window->flatCanvas(), side) << "of the 2D views the one used last";
    cross(top);
    EXPECT_EQ(window->activeCanvas, top);
    EXPECT_TRUE(action("View3DT")->isChecked()) << "the marks tell what the commands act on";
    trigger("View3DF");
    EXPECT_EQ(camera->renderMode, int(RM_FILLED));
    EXPECT_EQ(top->viewType, VIEW_TOP);
    QTest::keyClick(top, Qt::Key_Shift);
    EXPECT_EQ(window->commandCanvas(), camera) << "Shift alone is no use";
    QTest::keyClick(top, Qt::Key_1);
    EXPECT_EQ(window->commandCanvas(), top);
    EXPECT_EQ(window->flatCanvas(), top);
    cross(side);
    QWheelEvent wheel(QPointF(5, 5), side->mapToGlobal(QPoint(5, 5)), QPoint(), QPoint(0, 120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(side, &wheel);
    EXPECT_EQ(window->commandCanvas(), side);
}

TEST_F(ShellTest, whatWasNotPaintedWhileBusyIsPaintedAfter) {
    const cCanvas* top = startWithProject()->windows[0]->canvases[1];
    ASSERT_TRUE(QTest::qWaitFor([&] { return top->viewInfo.frame > 0; }));
    settle();
    uint32_t frame = 0;
    {
        const cBusy outer;
        const cBusy busy;
        window->redrawAllViews(REDRAW_2D);
        settle();
        frame = top->viewInfo.frame;
    }
    settle();
    const uint32_t painted = top->viewInfo.frame;
    EXPECT_GT(painted, frame);
    { const cBusy again; }
    settle();
    EXPECT_EQ(top->viewInfo.frame, painted) << "nothing was dropped, nothing is painted";
}

TEST_F(ShellTest, tenthWindowHasNoMnemonic) {
    startWithProject();
    for (int i = 0; i < 9; ++i)
        trigger("WindowNew");
    settle();
    QMenu* menu = menuOf(*window, "&Window");
    emit menu->aboutToShow();
    const QString title = active()->title;
    const QStringList texts = visibleEntries(menu);
    EXPECT_TRUE(texts.contains(QStringLiteral("&9 %1:9").arg(title)));
    EXPECT_EQ(texts.last(), QStringLiteral("10 %1:10").arg(title));
    for (QAction* a : menu->actions())
        if (a->text().startsWith(QLatin1String("&3 ")))
            a->trigger();
    settle();
    EXPECT_EQ(window->activeChild(), active()->windows[2]);
}

TEST_F(ShellTest, pluginActionsRunFromTheirMenu) {
    start();
    QMenu* menu = menuOf(*window, "Pl&ugins");
    EXPECT_TRUE(menu->menuAction()->isVisible());
    ASSERT_EQ(menu->actions().size(), 1) << "both share the submenu of their category";
    const QList<QAction*> entries = menu->actions()[0]->menu()->actions();
    ASSERT_EQ(entries.size(), 3);
    EXPECT_EQ(entries[0]->toolTip(), QStringLiteral("Says hello [Ctrl+F12]"));
    EXPECT_FALSE(entries[1]->isVisible());
    entries[0]->trigger();
    EXPECT_TRUE(console().contains(QStringLiteral("test action 7 ran")));
    newProject();
    EXPECT_TRUE(entries[1]->isVisible());
    entries[1]->trigger();
    EXPECT_TRUE(console().contains(QStringLiteral("test action 8 ran")));
}

TEST_F(ShellTest, whatAnActionEditsIsShownAndUnsaved) {
    cProject* project = startWithProject();
    cMap& map = *project->map;
    const float mins[3] = {0, 0, 0}, maxs[3] = {64, 64, 64};
    addBox(map, map.world(), mins, maxs);
    replies.expectFile(file("out"));
    trigger("FileExport2");
    project->setDirty(false);
    settle();
    for (QAction* entry : menuOf(*window, "Pl&ugins")->actions()[0]->menu()->actions()) {
        if (entry->text() == QLatin1String("Edit"))
            entry->trigger();
    }
    letShow();
    EXPECT_TRUE(project->dirty);
    ASSERT_EQ(map.visGroups.size(), 1);
    EXPECT_TRUE(map.visGroups.first()->visible);
    EXPECT_EQ(child<QListWidget>(window.get(), "lstVisGroups")->count(), 1);
    EXPECT_EQ(checkMapInvariants(map), QString());
    project->setDirty(false);
    settle();
}

// ---- Keys

TEST_F(ShellTest, gridKeysStepOnceAndStopAtTheEnds) {
    startWithProject();
    press(Qt::Key_Plus);
    EXPECT_EQ(window->gridSize, 64) << "one press, one step";
    press(Qt::Key_Minus);
    EXPECT_EQ(window->gridSize, 32);
    press(Qt::Key_BracketRight);
    EXPECT_EQ(window->gridSize, 64) << "the shortcut";
    for (int i = 0; i < 12; ++i)
        press(Qt::Key_Plus);
    trigger("MapGrid+");
    EXPECT_EQ(window->gridSize, 512);
    for (int i = 0; i < 12; ++i)
        trigger("MapGrid-");
    EXPECT_EQ(pane(6), QStringLiteral("Snap: On Grid: 1"));
}

TEST_F(ShellTest, heldKeysFollowPressAndRelease) {
    startWithProject();
    cCanvas* canvas = window->activeCanvas;
    focus(canvas);
    const auto send = [&](QEvent::Type type, int key, bool repeat) {
        QKeyEvent event(type, key, Qt::NoModifier, QString(), repeat);
        QApplication::sendEvent(canvas, &event);
    };
    const std::pair<int, uint32_t> cases[] = {{Qt::Key_Left, HK_LEFT},
                                              {Qt::Key_Down, HK_DOWN},
                                              {Qt::Key_W, HK_W},
                                              {1062, HK_W},
                                              {1067, HK_S},
                                              {Qt::Key_A, HK_A},
                                              {1042, HK_D},
                                              {1057, HK_C}};
    for (const auto& [key, bit] : cases) {
        send(QEvent::KeyPress, key, false);
        EXPECT_EQ(window->heldKeys, 1u << bit) << key;
        send(QEvent::KeyRelease, key, true);
        EXPECT_EQ(window->heldKeys, 1u << bit) << "a repeat is no release";
        send(QEvent::KeyRelease, key, false);
        EXPECT_EQ(window->heldKeys, 0u);
    }
    // A release goes to a menu that has come up since the press.
    send(QEvent::KeyPress, Qt::Key_W, false);
    QMenu* menu = window->popupMenu("Operations");
    menu->popup(canvas->mapToGlobal(QPoint(20, 20)));
    settle();
    QTest::keyRelease(menu, Qt::Key_W);
    EXPECT_EQ(window->heldKeys, 0u);
    menu->close();
    send(QEvent::KeyPress, Qt::Key_W, false);
    QEvent deactivate(QEvent::WindowDeactivate);
    QApplication::sendEvent(window.get(), &deactivate);
    EXPECT_EQ(window->heldKeys, 0u);
}

TEST_F(ShellTest, keysOfATextEntryAreItsOwn) {
    startWithProject();
    auto* dock = new QDockWidget(window.get());
    auto* edit = new QLineEdit(dock);
    dock->setWidget(edit);
    window->addDockWidget(Qt::TopDockWidgetArea, dock);
    settle();
    focus(edit);
    QTest::keyPress(edit, Qt::Key_W);
    QTest::keyClick(edit, Qt::Key_Plus);
    EXPECT_EQ(window->heldKeys, 0u);
    EXPECT_EQ(window->gridSize, 32);
}

// ---- Console

TEST_F(ShellTest, consoleCutsLongMessagesShowsMarkupOrNotAndLosesNone) {
    start();
    window->console().text()->clear();
    Print("%s", QByteArray(10000, 'x').constData());
    EXPECT_EQ(console().size(), 8191);
    window->console().text()->clear();
    window->console().append(QStringLiteral("a <b>c</b> & d"), false, true);
    Print("plain <b>bold</b>");
    Warning("careful");
    Error("wrong");
    EXPECT_EQ(console(),
              QStringLiteral("a <b>c</b> & d\nplain bold\nWarning: careful\nError: wrong"));
    window->console().text()->moveCursor(QTextCursor::End);
    EXPECT_EQ(window->console().text()->textCursor().charFormat().foreground().color(),
              window->console().text()->palette().color(QPalette::Text));
    for (int i = 0; i < 3000; ++i)
        Print("line %i", i);
    EXPECT_EQ(console().count(QStringLiteral("line ")), 3000);
    EXPECT_TRUE(console().endsWith(QStringLiteral("\nline 2999")));
}

TEST_F(ShellTest, messagesAreExportedUnlessThereAreNone) {
    start();
    window->console().text()->clear();
    trigger("WindowMsgExp"); // no dialog
    settle();
    Print("one");
    Print("two");
    replies.expectFile(file("log"));
    trigger("WindowMsgExp");
    EXPECT_EQ(read("log.txt"), QByteArray("one\ntwo"));
    EXPECT_TRUE(console().contains(QStringLiteral("Messages exported to \"")));
    replies.expectFile(QStringLiteral("/proc/none/log.txt"));
    replies.expectBox(QMessageBox::Ok, "Failed to write: /proc/none/log.txt\n");
    trigger("WindowMsgExp");
}

// While the wait window is up, progress goes to it and debug messages go nowhere.
TEST_F(ShellTest, waitWindowTakesProgressAndStaysUp) {
    start();
    window->console().text()->clear();
    {
        cWaitDialog wait(QStringLiteral("Working"), QString(), window.get());
        g_waitDialog = &wait;
        wait.show();
        window->showProgress(QStringLiteral("one of <many>"));
        EXPECT_EQ(child<QLabel>(&wait, "lblText")->text(), QStringLiteral("one of <many>"));
        const QMovie* drums = child<QLabel>(&wait, "lblDrums")->movie();
        EXPECT_TRUE(drums && drums->isValid());
        DPrint("hidden");
        QTest::keyClick(&wait, Qt::Key_Escape);
        wait.close();
        EXPECT_TRUE(wait.isVisible());
        g_waitDialog = nullptr;
    }
    DPrint("shown");
    EXPECT_EQ(console(), QStringLiteral("shown"));
}

// ---- Settings, recent files, layout

TEST_F(ShellTest, settingsAreReadShownAndWritten) {
    const QColor button = QApplication::palette().color(QPalette::Button);
    write("TDKSettings.ini",
          "[General]\nUndoLevels=3\nCurrentColorScheme=0\nSmallToolIcons=true\n"
          "[View2D]\nGridDefaultSize=8\nSelectAuto=true\nSelectByHandles=true\n"
          "[Map]\nSnapToGrid=false\n[View]\nHideMask=3\n"
          "[Tools]\nTextureLock=false\nTextureLockScale=true\nIgnoreGroups=true\n"
          "VertexToolRestrict=true\nTextureFaceAlign=true\n[Compiler]\nEnableCordon=true\n"
          "[ColorScheme0]\nTitle=Dark\nCOLOR_2D_BACKGROUND=1 2 3\nCOLOR_APPLICATION=40 50 60\n");
    start();
    EXPECT_EQ(window->UndoLevels, 5) << "clamped";
    EXPECT_EQ(pane(6), QStringLiteral("Snap: Off Grid: 8"));
    for (const char* id : {"EditSelH", "EditSelA", "ToolsIG", "ToolsTexLockScale", "ToolsTexAlign",
                           "ToolsCordon", "ViewItems", "ViewPaths"})
        EXPECT_TRUE(action(id)->isChecked()) << id;
    for (const char* id : {"MapSnap", "ToolsTexLock", "ToolsVertexRes"})
        EXPECT_FALSE(action(id)->isChecked()) << id;
    EXPECT_EQ(child<QToolBar>(window.get(), "Maptools Bar")->iconSize(), QSize(20, 16));
    EXPECT_EQ(window->services().colors.color(COLOR_2D_BACKGROUND), QColor(1, 2, 3));
    EXPECT_EQ(QApplication::palette().color(QPalette::Button), QColor(40, 50, 60));
    window->services().colors.setCustomColor("COLOR_APPLICATION", 0, 0, 0);
    window->services().colors.useCustom();
    window->applyPalette();
    EXPECT_EQ(QApplication::palette().color(QPalette::Button), button);
    window->BackClip = 1234;
    ASSERT_TRUE(close());
    QSettings saved(file("TDKSettings.ini"), QSettings::IniFormat);
    EXPECT_EQ(saved.value(QStringLiteral("View3D/BackClip")).toInt(), 1234);
    EXPECT_EQ(saved.value(QStringLiteral("UndoLevels")).toInt(), 5);
    EXPECT_EQ(saved.value(QStringLiteral("ColorScheme0/Title")).toString(), QStringLiteral("Dark"));
}

TEST_F(ShellTest, recentFilesAreEightAndExist) {
    QByteArray ini = "[RecentFiles]\n";
    for (int i = 1; i <= 8; ++i) {
        const QString name = QStringLiteral("r%1.kvx").arg(i);
        if (i != 4)
            write(name, "x");
        ini += "RecentFile" + QByteArray::number(i) + "=" +
               (i == 2 ? QByteArray() : toMapText(file(name))) + "\n";
    }
    write("TDKSettings.ini", ini);
    start();
    EXPECT_EQ(window->recentFiles().paths().size(), 6) << "the hole and the missing file are gone";
    EXPECT_EQ(window->recentFiles().paths()[1], file("r3.kvx"));
    EXPECT_TRUE(visibleEntries(menuOf(*window, "&File")).contains(QStringLiteral("&2 r3.kvx")));
    window->recentFiles().add(file("r5.kvx"));
    EXPECT_EQ(window->recentFiles().paths()[0], file("r5.kvx"));
    for (int i = 10; i < 14; ++i) {
        write(QStringLiteral("r%1.kvx").arg(i), "x");
        window->recentFiles().add(file(QStringLiteral("r%1.kvx").arg(i)));
    }
    EXPECT_EQ(window->recentFiles().paths().size(), 10);
    restart();
    EXPECT_EQ(window->recentFiles().paths().size(), 8);
    for (const QString& path : window->recentFiles().paths())
        QFile::remove(path);
    window->recentFiles().refresh();
    EXPECT_EQ(visibleEntries(menuOf(*window, "&File")).size(), 3);
}

TEST_F(ShellTest, layoutComesBack) {
    start();
    const QStringList hidden = {QStringLiteral("Mapv&iew Bar"), QStringLiteral("New &Objects"),
                                QStringLiteral("&Status Bar")};
    for (const QAction* a : menuOf(*window, "&View")->actions())
        if (a->text() == QLatin1String("Screen &Elements"))
            for (QAction* element : a->menu()->actions())
                if (hidden.contains(element->text()))
                    element->trigger();
    trigger("WindowMsg");
    for (const bool again : {false, true}) {
        if (again)
            restart();
        EXPECT_TRUE(child<QToolBar>(window.get(), "Mapv&iew Bar")->isHidden());
        EXPECT_TRUE(child<QDockWidget>(window.get(), "newobjects")->isHidden());
        EXPECT_TRUE(window->statusBar()->isHidden());
        EXPECT_FALSE(action("WindowMsg")->isChecked());
    }
    EXPECT_EQ(read("TDKLayout.dat").right(1), QByteArray(1, '\0')) << "no stored document window";
}

TEST_F(ShellTest, floatingDockIsSeenAfterARestart) {
    start();
    for (int i = 0; i < 2; ++i) {
        auto* dock = child<QDockWidget>(window.get(), "newobjects");
        if (i == 0)
            dock->setFloating(true);
        dock->move(window->geometry().center() - QPoint(80, 80));
        settle();
        if (i == 0)
            restart();
    }
    const auto* dock = child<QDockWidget>(window.get(), "newobjects");
    EXPECT_TRUE(dock->isFloating());
    const QPoint middle = dock->mapToGlobal(dock->rect().center());
    EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::topLevelAt(middle) == dock; }))
        << "the main window lies over it";
}

TEST_F(ShellTest, textsOfButtonsAndPanesHaveRoom) {
    start();
    for (const char* name : {"btnToWorld", "btnToEntity"}) {
        const auto* button = child<QPushButton>(window.get(), name);
        EXPECT_GT(button->width(), button->fontMetrics().horizontalAdvance(button->text()) + 8);
        EXPECT_FALSE(button->toolTip().isEmpty());
    }
    window->showNormal();
    window->resize(1024, 700);
    settle();
    for (const QLabel* pane : window->statusBar()->findChildren<QLabel*>()) {
        const int wanted = pane->fontMetrics().horizontalAdvance(pane->text());
        EXPECT_GE(pane->width(), wanted) << pane->text().toStdString();
    }
    EXPECT_LE(window->width(), 1024);
}

TEST_F(ShellTest, consoleKeepsItsLastLines) {
    start();
    for (int i = 0; i < cConsoleDock::LINES + 500; ++i)
        window->console().append(QString::number(i), true, false);
    EXPECT_EQ(window->console().text()->document()->blockCount(), cConsoleDock::LINES);
    EXPECT_TRUE(console().endsWith(QString::number(cConsoleDock::LINES + 499)));
}

// What no settings file should hold neither harms nor is lost when the file is written again.
TEST_F(ShellTest, hostileValuesAreNeverBuilt) {
    const QByteArray hostile = "hostile=@Variant(\\0\\0\\0\\x1c\\xff\\xff\\xff\\xf0\\x7f\\xff)\n";
    write("TDKSettings.ini", "[General]\n" + hostile);
    write("TDKGameCfg.ini", read("TDKGameCfg.ini") + hostile);
    start();
    ASSERT_TRUE(close());
    window.reset();
    EXPECT_TRUE(read("TDKSettings.ini").contains(hostile));
    EXPECT_FALSE(read("TDKGameCfg.ini").contains("hostile")) << "is written anew";
    EXPECT_TRUE(read("TDKGameCfg.ini").contains("Title=\"Game 0\"") ||
                read("TDKGameCfg.ini").contains("Title=Game 0"));
}

TEST_F(ShellTest, documentWindowStateIsStoredAndGivenBack) {
    start();
    trigger("MapLWS"); // nothing stored, no document
    auto* frame = frameOf(newProject());
    frame->showNormal();
    frame->setGeometry(30, 40, 500, 300);
    settle();
    trigger("MapSWS");
    const QSize stored = frame->size();
    restart();
    frame = frameOf(newProject());
    EXPECT_TRUE(frame->isMaximized());
    trigger("MapLWS");
    settle();
    EXPECT_FALSE(frame->isMaximized());
    EXPECT_EQ(frame->size(), stored);
}

TEST_F(ShellTest, cutLayoutWarnsOncePerBlock) {
    start();
    ASSERT_TRUE(close());
    window.reset();
    const QByteArray whole = read("TDKLayout.dat");
    ASSERT_GT(whole.size(), 10);
    write("TDKLayout.dat", whole.left(1));
    for (int i = 0; i < 3; ++i)
        replies.expectBox(QMessageBox::Ok, "Failed to read: ");
    start();
    EXPECT_EQ(replies.pending(), 0);
    window.reset();
    write("TDKLayout.dat", whole.left(whole.size() - 1));
    replies.expectBox(QMessageBox::Ok, "TDKLayout.dat");
    start();
}

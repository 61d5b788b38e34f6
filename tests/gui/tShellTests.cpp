// SPDX-License-Identifier: MIT
// The frame around the documents: commands, bars, keys, console, settings and layout.
#include "dialogs/tWaitDialog.h"
#include "gui/tGuiTest.h"
#include "shell/tColorScheme.h"
#include "support/tConsole.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMovie>
#include <QSettings>
#include <QStatusBar>
#include <QTextBlock>
#include <QTextEdit>
#include <QToolBar>

using ShellTest = cGuiTest;

static QMenu* elementsMenu(const cMainWindow& window) {
    for (QAction* action : menuOf(window, "&View")->actions())
        if (action->text() == QLatin1String("Screen &Elements"))
            return action->menu();
    return nullptr;
}

TEST_F(ShellTest, withoutDocumentOnlySomeCommandsShow) {
    start();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Karvex"));
    EXPECT_EQ(pane(6), QStringLiteral("Snap: On Grid: 32"));
    EXPECT_EQ(
        visibleEntries(menuOf(*window, "&File")),
        QStringList({QStringLiteral("&New"), QStringLiteral("&Open..."), QStringLiteral("E&xit")}));
    EXPECT_FALSE(action("FileClose")->isVisible());
    EXPECT_FALSE(action("FileClose")->isEnabled());
    EXPECT_TRUE(action("WindowMsg")->isCheckable() && action("WindowMsg")->isEnabled());
    EXPECT_FALSE(menuOf(*window, "&Map")->menuAction()->isVisible());
    EXPECT_FALSE(action("MapLWS")->isVisible());

    newProject();
    EXPECT_TRUE(action("FileClose")->isVisible() && action("FileClose")->isEnabled());
    EXPECT_TRUE(menuOf(*window, "&Map")->menuAction()->isVisible());
    EXPECT_FALSE(action("ViewDetail")->isVisible()) << "the profile knows no detail";
    trigger("FileClose");
    settle();
    EXPECT_FALSE(menuOf(*window, "&Map")->menuAction()->isVisible());
}

// Two actions with one shortcut would both be dead; the copies in bars show it in the tooltip.
TEST_F(ShellTest, noShortcutStandsTwice) {
    start();
    QStringList seen;
    for (const QAction* a : window->actions) {
        if (a->shortcut().isEmpty())
            continue;
        EXPECT_FALSE(seen.contains(a->shortcut().toString())) << a->objectName().toStdString();
        seen.append(a->shortcut().toString());
    }
    EXPECT_TRUE(seen.contains(QStringLiteral("Ctrl+N")));
    EXPECT_TRUE(action("FileNew", 1)->shortcut().isEmpty());
    EXPECT_EQ(action("FileNew", 1)->toolTip(), QStringLiteral("Create a new document [Ctrl+N]"));
    EXPECT_EQ(action("FileClose")->toolTip(), QStringLiteral("Close the active document"));
    newProject();
    const auto* frame = qobject_cast<QMdiSubWindow*>(active()->windows[0]->parentWidget());
    for (const QAction* a : frame->systemMenu()->actions())
        EXPECT_TRUE(a->shortcut().isEmpty()) << a->text().toStdString();
}

TEST_F(ShellTest, copiesOfACommandShareTheirCheckMark) {
    start();
    newProject();
    ASSERT_TRUE(action("MapGrid")->isChecked());
    action("MapGrid", 1)->trigger(); // the button of the bar
    EXPECT_FALSE(window->EnableGrid2D);
    EXPECT_FALSE(action("MapGrid")->isChecked());
    trigger("MapGrid");
    EXPECT_TRUE(window->EnableGrid2D);
    EXPECT_TRUE(action("MapGrid", 1)->isChecked());
}

TEST_F(ShellTest, togglesSetTheirSettingAndSaySo) {
    start();
    newProject();
    const struct {
        const char* id;
        bool cSettings::*setting;
        const char* on;
        const char* off;
    } cases[] = {
        {"MapSnap", &cSettings::SnapToGrid, nullptr, nullptr},
        {"MapGrid3D", &cSettings::EnableGrid3D, nullptr, nullptr},
        {"ViewConn", &cSettings::ShowConnections, "Entity connections on",
         "Entity connections off"},
        {"ViewMod2D", &cSettings::DrawModels, "2D rendition of models on",
         "2D rendition of models off"},
        {"ViewNodraw", &cSettings::DrawNoDraw, "3D rendition of nodraw faces on",
         "3D rendition of nodraw faces off"},
        {"ViewTexTrans", &cSettings::TextureTransparency, "Transparency of special textures on",
         "Transparency of special textures off"},
        {"ViewEntTrans", &cSettings::EntityTransparency, "Transparency of entities on",
         "Transparency of entities off"},
    };
    for (const auto& c : cases) {
        for (int i = 0; i < 2; ++i) {
            const bool before = window.get()->*c.setting;
            EXPECT_EQ(action(c.id)->isChecked(), before) << c.id;
            trigger(c.id);
            EXPECT_EQ(window.get()->*c.setting, !before) << c.id;
            if (c.on) {
                EXPECT_EQ(said.last(), QString::fromLatin1(before ? c.off : c.on));
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

TEST_F(ShellTest, viewTypeCommandsActOnTheActiveView) {
    start();
    const cProject* project = newProject();
    EXPECT_TRUE(action("View3DF")->isChecked() || action("View3DT")->isChecked() ||
                action("View3DW")->isChecked());
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
        if (c.mode >= 0) {
            EXPECT_EQ(window->activeCanvas->renderMode, c.mode);
        }
        for (const auto& other : cases)
            EXPECT_EQ(action(other.id)->isChecked(), other.id == c.id) << other.id;
    }
    window->setActiveCanvas(project->windows[0]->canvases[1]);
    EXPECT_TRUE(action("View2DXY")->isChecked());
    EXPECT_EQ(window->previousCanvas, project->windows[0]->canvases[0]);
}

// The program's own GL formats must let the views keep their pictures between frames.
TEST_F(ShellTest, viewsOfTheProgramKeepTheirPictures) {
    start();
    for (cCanvas* canvas : newProject()->windows[0]->canvases) {
        canvas->requestRedraw(true);
        EXPECT_GT(canvas->pictureCount(), 0) << canvas->viewType;
    }
}

TEST_F(ShellTest, tenthWindowHasNoMnemonic) {
    start();
    newProject();
    for (int i = 0; i < 9; ++i)
        trigger("WindowNew");
    settle();
    QMenu* menu = menuOf(*window, "&Window");
    emit menu->aboutToShow();
    const QString title = active()->title;
    const QStringList texts = visibleEntries(menu);
    EXPECT_TRUE(texts.contains(QStringLiteral("&9 %1:9").arg(title)));
    EXPECT_EQ(texts.last(), QStringLiteral("10 %1:10").arg(title));
    QAction* third = nullptr;
    for (QAction* a : menu->actions())
        if (a->text().startsWith(QLatin1String("&3 ")))
            third = a;
    ASSERT_NE(third, nullptr);
    third->trigger();
    settle();
    EXPECT_EQ(window->activeChild(), active()->windows[2]);
}

TEST_F(ShellTest, pluginActionsRunFromTheirMenu) {
    start();
    QMenu* menu = menuOf(*window, "Pl&ugins");
    EXPECT_TRUE(menu->menuAction()->isVisible());
    ASSERT_EQ(menu->actions().size(), 1) << "both share the submenu of their category";
    const QList<QAction*> entries = menu->actions()[0]->menu()->actions();
    ASSERT_EQ(entries.size(), 2);
    EXPECT_EQ(entries[0]->toolTip(), QStringLiteral("Says hello [Ctrl+F12]"));
    EXPECT_FALSE(entries[1]->isVisible());
    entries[0]->trigger();
    EXPECT_TRUE(console().contains(QStringLiteral("test action 7 ran")));
    newProject();
    EXPECT_TRUE(entries[1]->isVisible());
    entries[1]->trigger();
    EXPECT_TRUE(console().contains(QStringLiteral("test action 8 ran")));
}

// ---- Keys

TEST_F(ShellTest, gridKeysStepOnceAndStopAtTheEnds) {
    start();
    newProject();
    cCanvas* canvas = window->activeCanvas;
    focus(canvas);
    QTest::keyClick(canvas->windowHandle() ? canvas->windowHandle() : window->windowHandle(),
                    Qt::Key_Plus);
    EXPECT_EQ(window->gridSize, 64) << "one press, one step";
    QTest::keyClick(window->windowHandle(), Qt::Key_Minus);
    EXPECT_EQ(window->gridSize, 32);
    QTest::keyClick(window->windowHandle(), Qt::Key_BracketRight);
    EXPECT_EQ(window->gridSize, 64) << "the shortcut";
    for (int i = 0; i < 12; ++i)
        QTest::keyClick(window->windowHandle(), Qt::Key_Plus);
    EXPECT_EQ(window->gridSize, 512);
    trigger("MapGrid+");
    EXPECT_EQ(window->gridSize, 512);
    for (int i = 0; i < 12; ++i)
        trigger("MapGrid-");
    EXPECT_EQ(window->gridSize, 1);
    EXPECT_EQ(pane(6), QStringLiteral("Snap: On Grid: 1"));
}

TEST_F(ShellTest, heldKeysFollowPressAndRelease) {
    start();
    newProject();
    cCanvas* canvas = window->activeCanvas;
    focus(canvas);
    const auto send = [&](QEvent::Type type, int key, bool repeat) {
        QKeyEvent event(type, key, Qt::NoModifier, QString(), repeat);
        QApplication::sendEvent(canvas, &event);
    };
    const struct {
        int key;
        uint32_t bit;
    } cases[] = {{Qt::Key_Left, HK_LEFT},
                 {Qt::Key_Down, HK_DOWN},
                 {Qt::Key_W, HK_W},
                 {1062, HK_W},
                 {1067, HK_S},
                 {Qt::Key_A, HK_A},
                 {1042, HK_D},
                 {1057, HK_C}};
    for (const auto& c : cases) {
        send(QEvent::KeyPress, c.key, false);
        EXPECT_EQ(window->heldKeys, 1u << c.bit) << c.key;
        send(QEvent::KeyRelease, c.key, true);
        EXPECT_EQ(window->heldKeys, 1u << c.bit) << "a repeat is no release";
        send(QEvent::KeyRelease, c.key, false);
        EXPECT_EQ(window->heldKeys, 0u);
    }
    send(QEvent::KeyPress, Qt::Key_W, false);
    QEvent deactivate(QEvent::WindowDeactivate);
    QApplication::sendEvent(window.get(), &deactivate);
    EXPECT_EQ(window->heldKeys, 0u);
}

TEST_F(ShellTest, keysOfATextEntryAreItsOwn) {
    start();
    newProject();
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

TEST_F(ShellTest, shortcutsWorkFromAView) {
    start();
    newProject();
    focus(window->activeCanvas);
    QTest::keyClick(window->windowHandle(), Qt::Key_N, Qt::ControlModifier);
    settle();
    EXPECT_EQ(window->projects.size(), 2);
    for (int key : {Qt::Key_E, Qt::Key_B}) { // Export Messages, Export Again
        focus(window->activeCanvas);
        replies.expectCancel();
        QTest::keyClick(window->windowHandle(), Qt::Key(key), Qt::AltModifier);
        EXPECT_TRUE(answered()) << key;
    }
}

// ---- Console

TEST_F(ShellTest, consoleCutsLongMessagesAndShowsMarkupOrNot) {
    start();
    window->consoleText()->clear();
    Print("%s", QByteArray(10000, 'x').constData());
    EXPECT_EQ(console().size(), 8191);
    window->consoleText()->clear();

    window->appendConsole(QStringLiteral("a <b>c</b> & d"), false, true);
    EXPECT_EQ(console(), QStringLiteral("a <b>c</b> & d"));
    Print("plain <b>bold</b>");
    EXPECT_EQ(console(), QStringLiteral("a <b>c</b> & d\nplain bold"));
    Warning("careful");
    Error("wrong");
    EXPECT_TRUE(console().endsWith(QStringLiteral("Warning: careful\nError: wrong")));
    window->consoleText()->moveCursor(QTextCursor::End);
    EXPECT_EQ(window->consoleText()->textCursor().charFormat().foreground().color(),
              window->consoleText()->palette().color(QPalette::Text));
}

TEST_F(ShellTest, messagesAreExportedUnlessThereAreNone) {
    start();
    window->consoleText()->clear();
    trigger("WindowMsgExp"); // no dialog
    settle();
    Print("one");
    Print("two");
    replies.expectFile(file(QStringLiteral("log")));
    trigger("WindowMsgExp");
    EXPECT_EQ(read(QStringLiteral("log.txt")), QByteArray("one\ntwo"));
    EXPECT_TRUE(console().contains(QStringLiteral("Messages exported to \"")));
    replies.expectFile(QStringLiteral("/proc/none/log.txt"));
    replies.expectBox(QMessageBox::Ok, QStringLiteral("Failed to write: /proc/none/log.txt\n"));
    trigger("WindowMsgExp");
}

// While the wait window is up, progress goes to it and debug messages go nowhere.
TEST_F(ShellTest, waitWindowTakesProgressAndStaysUp) {
    start();
    window->consoleText()->clear();
    {
        cWaitDialog wait(QStringLiteral("Working"), QString(), window.get());
        g_waitDialog = &wait;
        wait.show();
        wait.centerOnMainWindow();
        window->showProgress(QStringLiteral("one of <many>"));
        EXPECT_EQ(wait.findChild<QLabel*>(QStringLiteral("lblText"))->text(),
                  QStringLiteral("one of <many>"));
        EXPECT_NE(wait.findChild<QLabel*>(QStringLiteral("lblDrums"))->movie(), nullptr);
        EXPECT_TRUE(wait.findChild<QLabel*>(QStringLiteral("lblDrums"))->movie()->isValid());
        DPrint("hidden");
        QTest::keyClick(&wait, Qt::Key_Escape);
        wait.close();
        EXPECT_TRUE(wait.isVisible());
        EXPECT_EQ(wait.size(), QSize(480, 91));
        g_waitDialog = nullptr;
    }
    DPrint("shown");
    EXPECT_EQ(console(), QStringLiteral("shown"));
}

TEST_F(ShellTest, manyMessagesAllArrive) {
    start();
    for (int i = 0; i < 3000; ++i)
        Print("line %i", i);
    EXPECT_EQ(window->consoleText()->document()->lastBlock().text(), QStringLiteral("line 2999"));
    EXPECT_EQ(console().count(QStringLiteral("line ")), 3000);
}

// ---- Settings, recent files, layout

TEST_F(ShellTest, settingsAreReadClampedAndWritten) {
    write(QStringLiteral("TDKSettings.ini"),
          "[General]\nUndoLevels=3\nSelectionBulletSize=3\nDefaultTextureScale=0.05\n"
          "CurrentColorScheme=0\n[View2D]\nGridDefaultSize=8\n[Map]\nSnapToGrid=false\n"
          "[View]\nHideMask=3\n[ColorScheme0]\nTitle=Dark\nCOLOR_2D_BACKGROUND=1 2 3\n");
    start();
    EXPECT_EQ(window->UndoLevels, 5);
    EXPECT_EQ(window->SelectionBulletSize, 4);
    EXPECT_EQ(window->DefaultTextureScale, 1.0f);
    EXPECT_EQ(window->gridSize, 8);
    EXPECT_EQ(pane(6), QStringLiteral("Snap: Off Grid: 8"));
    EXPECT_FALSE(action("MapSnap")->isChecked());
    EXPECT_TRUE(action("ViewItems")->isChecked() && action("ViewPaths")->isChecked());
    EXPECT_EQ(window->colors().color(COLOR_2D_BACKGROUND), QColor(1, 2, 3));
    window->BackClip = 1234;
    ASSERT_TRUE(close());
    QSettings saved(file(QStringLiteral("TDKSettings.ini")), QSettings::IniFormat);
    EXPECT_EQ(saved.value(QStringLiteral("View3D/BackClip")).toInt(), 1234);
    EXPECT_EQ(saved.value(QStringLiteral("UndoLevels")).toInt(), 5);
    EXPECT_EQ(saved.value(QStringLiteral("ColorSchemeCustom/Title")).toString(),
              QStringLiteral("Custom"));
    EXPECT_EQ(saved.value(QStringLiteral("ColorScheme0/Title")).toString(), QStringLiteral("Dark"));
}

TEST_F(ShellTest, paletteComesAndGoesWithTheApplicationColor) {
    const QPalette before = QApplication::palette();
    write(QStringLiteral("TDKSettings.ini"),
          "[General]\nCurrentColorScheme=-1\n[ColorSchemeCustom]\nTitle=Custom\n"
          "COLOR_APPLICATION=40 50 60\n");
    start();
    EXPECT_EQ(QApplication::palette().color(QPalette::Button), QColor(40, 50, 60));
    window->colors().setCustomColor("COLOR_APPLICATION", 0, 0, 0);
    window->colors().useCustom();
    window->applyPalette();
    EXPECT_EQ(QApplication::palette().color(QPalette::Button), before.color(QPalette::Button));
}

TEST_F(ShellTest, recentFilesAreEightAndExist) {
    QByteArray ini = "[RecentFiles]\n";
    for (int i = 1; i <= 8; ++i) {
        const QString name = QStringLiteral("r%1.kvx").arg(i);
        if (i != 4)
            write(name, "x");
        ini += "RecentFile" + QByteArray::number(i) + "=" +
               (i == 2 ? QByteArray() : file(name).toLocal8Bit()) + "\n";
    }
    write(QStringLiteral("TDKSettings.ini"), ini);
    start();
    EXPECT_EQ(window->recentFiles.size(), 6) << "the hole and the missing file are gone";
    EXPECT_EQ(window->recentFiles[1], file(QStringLiteral("r3.kvx")));
    EXPECT_TRUE(visibleEntries(menuOf(*window, "&File")).contains(QStringLiteral("&2 r3.kvx")));
    window->addRecentFile(file(QStringLiteral("r5.kvx")));
    EXPECT_EQ(window->recentFiles.size(), 6);
    EXPECT_EQ(window->recentFiles[0], file(QStringLiteral("r5.kvx")));
    for (int i = 10; i < 14; ++i) {
        write(QStringLiteral("r%1.kvx").arg(i), "x");
        window->addRecentFile(file(QStringLiteral("r%1.kvx").arg(i)));
    }
    EXPECT_EQ(window->recentFiles.size(), 10);
    restart();
    EXPECT_EQ(window->recentFiles.size(), 8);
    for (const QString& path : window->recentFiles)
        QFile::remove(path);
    window->refreshRecentFiles();
    EXPECT_EQ(visibleEntries(menuOf(*window, "&File")).size(), 3);
}

TEST_F(ShellTest, layoutComesBack) {
    start();
    auto* bar = window->findChild<QToolBar*>(QStringLiteral("Mapv&iew Bar"));
    ASSERT_NE(bar, nullptr);
    for (QAction* a : elementsMenu(*window)->actions())
        if (a->text() == QLatin1String("Mapv&iew Bar") || a->text() == QLatin1String("&Status Bar"))
            a->trigger();
    trigger("WindowMsg");
    EXPECT_TRUE(bar->isHidden() && window->statusBar()->isHidden());
    restart();
    bar = window->findChild<QToolBar*>(QStringLiteral("Mapv&iew Bar"));
    EXPECT_TRUE(bar->isHidden());
    EXPECT_TRUE(window->statusBar()->isHidden());
    EXPECT_FALSE(action("WindowMsg")->isChecked());
    EXPECT_EQ(read(QStringLiteral("TDKLayout.dat")).right(1), QByteArray(1, '\0'))
        << "no stored document window";
}

TEST_F(ShellTest, documentWindowStateIsStoredAndGivenBack) {
    start();
    trigger("MapLWS"); // nothing stored, no document
    newProject();
    auto* frame = qobject_cast<QMdiSubWindow*>(active()->windows[0]->parentWidget());
    frame->showNormal();
    frame->setGeometry(30, 40, 500, 300);
    settle();
    trigger("MapSWS");
    const QSize stored = frame->size();
    restart();
    newProject();
    frame = qobject_cast<QMdiSubWindow*>(active()->windows[0]->parentWidget());
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
    const QByteArray whole = read(QStringLiteral("TDKLayout.dat"));
    ASSERT_GT(whole.size(), 10);
    write(QStringLiteral("TDKLayout.dat"), whole.left(1));
    for (int i = 0; i < 3; ++i)
        replies.expectBox(QMessageBox::Ok, QStringLiteral("Failed to read: "));
    start();
    EXPECT_EQ(replies.pending(), 0);
    window.reset();
    write(QStringLiteral("TDKLayout.dat"), whole.left(whole.size() - 1));
    replies.expectBox(QMessageBox::Ok, QStringLiteral("TDKLayout.dat"));
    start();
}

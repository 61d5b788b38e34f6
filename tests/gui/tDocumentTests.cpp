// SPDX-License-Identifier: MIT
// The life of documents as a user leads it: new, save, open, export, close, with every question.
#include "dialogs/tWaitDialog.h"
#include "document/tEntity.h"
#include "document/tMapLists.h"
#include "document/tTexture.h"
#include "gui/tGuiTest.h"
#include "resources/tGameConfigRegistry.h"
#include "resources/tGameDataRegistry.h"
#include "resources/tTextureManager.h"
#include "support/tSystem.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>

using DocumentTest = cGuiTest;

static int mapNumber(const cProject* project) {
    EXPECT_TRUE(project->title.startsWith(QStringLiteral("Map")));
    return project->title.mid(3).toInt();
}

static QMdiSubWindow* frameOf(const cChildWindow* child) {
    return qobject_cast<QMdiSubWindow*>(child->parentWidget());
}

TEST_F(DocumentTest, newMapHasAWorldAndFourViews) {
    start();
    const cProject* project = newProject();
    ASSERT_NE(project, nullptr);
    EXPECT_TRUE(project->isNew);
    EXPECT_FALSE(project->dirty);
    EXPECT_TRUE(project->path.isEmpty());
    ASSERT_EQ(project->windows.size(), 1);
    EXPECT_EQ(project->windows[0]->canvases.size(), 4u);
    EXPECT_TRUE(frameOf(project->windows[0])->isMaximized());
    EXPECT_EQ(project->windows[0]->windowTitle(), project->title);
    EXPECT_EQ(pane(1), QStringLiteral("Game 0 (test)"));
    ASSERT_NE(window->activeCanvas, nullptr);
    EXPECT_TRUE(window->activeCanvas->isCamera());
    EXPECT_EQ(project->gameConfig->useCount, 1);

    const cEntityData* world = project->map->world();
    ASSERT_NE(world, nullptr);
    EXPECT_TRUE(world->flags & EF_WORLD);
    EXPECT_STREQ(world->classname, "worldspawn");
    EXPECT_STREQ(getEpairValue(world, "message"), "hello");
    EXPECT_NE(project->map->cullTree, nullptr);
    EXPECT_TRUE(console().contains(
        QStringLiteral("Created new project with game configuration \"Game 0\"")));
}

TEST_F(DocumentTest, mapNumbersGoOnAfterAClose) {
    start();
    const int first = mapNumber(newProject());
    trigger("FileClose");
    settle();
    EXPECT_TRUE(window->projects.isEmpty());
    EXPECT_EQ(windowCount(), 0);
    EXPECT_EQ(mapNumber(newProject()), first + 1);
}

TEST_F(DocumentTest, savedUnderTheNameOfTheDialogAndOpenedAgain) {
    start();
    newProject()->setDirty(true);
    replies.expectFile(file(QStringLiteral("room")));
    trigger("FileSave");
    EXPECT_EQ(active()->path, file(QStringLiteral("room.kvx"))) << "the filter's extension";
    EXPECT_EQ(active()->title, QStringLiteral("room.kvx"));
    EXPECT_FALSE(active()->dirty);
    EXPECT_FALSE(active()->isNew);
    EXPECT_TRUE(said.contains(QStringLiteral("File saved")));
    EXPECT_EQ(read(QStringLiteral("room.kvx")).left(4), QByteArray("KVXP"));

    active()->setDirty(true);
    EXPECT_EQ(active()->windows[0]->windowTitle(), QStringLiteral("room.kvx*"));
    trigger("FileSave"); // no dialog now
    EXPECT_EQ(active()->windows[0]->windowTitle(), QStringLiteral("room.kvx"));

    trigger("FileClose");
    settle();
    replies.expectFile(file(QStringLiteral("room.kvx")));
    trigger("FileOpen");
    settle();
    ASSERT_NE(active(), nullptr);
    EXPECT_EQ(active()->title, QStringLiteral("room.kvx"));
    EXPECT_TRUE(said.contains(QStringLiteral("File loaded")));
    EXPECT_TRUE(active()->map->world()->flags & EF_WORLD);
    EXPECT_EQ(window->RecentMapDirectory,
              QFileInfo(file(QStringLiteral("room.kvx"))).canonicalPath());
}

TEST_F(DocumentTest, fileThatIsOpenIsRaisedAndMovesToTheTop) {
    start();
    for (const char* name : {"a.kvx", "b.kvx"}) {
        newProject();
        replies.expectFile(file(QString::fromLatin1(name)));
        trigger("FileSaveAs");
    }
    EXPECT_EQ(active()->title, QStringLiteral("b.kvx"));
    EXPECT_EQ(window->recentFiles.first(), file(QStringLiteral("b.kvx")));
    EXPECT_TRUE(window->openFile(file(QStringLiteral("./a.kvx")))) << "another spelling";
    settle();
    EXPECT_EQ(window->projects.size(), 2);
    EXPECT_EQ(active()->title, QStringLiteral("a.kvx"));
    EXPECT_EQ(window->recentFiles,
              QStringList({file(QStringLiteral("a.kvx")), file(QStringLiteral("b.kvx"))}));
    EXPECT_TRUE(console().contains(QStringLiteral("is already opened")));
}

// The four ways to close a document, each with the three answers.
TEST_F(DocumentTest, everyWayToCloseAsksAndObeys) {
    start();
    const std::function<void()> ways[] = {
        [this] { frameOf(active()->windows[0])->close(); },
        [this] { trigger("FileClose"); },
        [this] { trigger("FileCloseAll"); },
    };
    for (const auto& closeBy : ways) {
        cProject* project = newProject();
        project->setDirty(true);
        const QString question = QStringLiteral("Save changes to %1?").arg(project->title);
        replies.expectBox(QMessageBox::Cancel, question);
        closeBy();
        settle();
        ASSERT_EQ(window->projects, QList<cProject*>{project});
        EXPECT_TRUE(project->dirty);
        EXPECT_EQ(windowCount(), 1);

        const QString name = file(QStringLiteral("%1.kvx").arg(project->title));
        replies.expectBox(QMessageBox::Yes, question);
        replies.expectCancel(); // of the file dialog: the document stays
        closeBy();
        settle();
        ASSERT_EQ(window->projects.size(), 1);
        EXPECT_FALSE(QFile::exists(name));

        replies.expectBox(QMessageBox::Yes, question);
        replies.expectFile(name);
        closeBy();
        settle();
        EXPECT_TRUE(window->projects.isEmpty());
        EXPECT_EQ(windowCount(), 0);
        EXPECT_TRUE(QFile::exists(name));
        EXPECT_EQ(window->recentFiles.first(), name);

        newProject()->setDirty(true);
        replies.expectBox(QMessageBox::No, QString());
        closeBy();
        settle();
        EXPECT_TRUE(window->projects.isEmpty());
    }
    EXPECT_EQ(window->activeCanvas, nullptr);
}

TEST_F(DocumentTest, closingTheProgramAsksAndSavesOnlyWhenItEnds) {
    start();
    newProject()->setDirty(true);
    replies.expectBox(QMessageBox::Cancel, QStringLiteral("Save changes"));
    EXPECT_FALSE(close());
    EXPECT_FALSE(g_closing);
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(QFile::exists(file(QStringLiteral("TDKSettings.ini"))));
    EXPECT_FALSE(QFile::exists(file(QStringLiteral("TDKLayout.dat"))));

    replies.expectBox(QMessageBox::No, QStringLiteral("Save changes"));
    EXPECT_TRUE(close());
    EXPECT_TRUE(window->projects.isEmpty());
    EXPECT_TRUE(QFile::exists(file(QStringLiteral("TDKSettings.ini"))));
    EXPECT_TRUE(QFile::exists(file(QStringLiteral("TDKLayout.dat"))));
}

// A refusal keeps its own document only; all others are asked for as well.
TEST_F(DocumentTest, closeAllAsksForEveryDocument) {
    start();
    cProject* first = newProject();
    first->setDirty(true);
    newProject()->setDirty(true);
    replies.expectBox(QMessageBox::Cancel, first->title);
    replies.expectBox(QMessageBox::No, active()->title);
    trigger("FileCloseAll");
    settle();
    EXPECT_EQ(window->projects, QList<cProject*>{first});
    EXPECT_EQ(active(), first);
    EXPECT_TRUE(first->dirty);
}

TEST_F(DocumentTest, windowsOfOneDocumentAreNumberedAndTheLastOneAsks) {
    start();
    cProject* project = newProject();
    const QString title = project->title;
    trigger("WindowNew");
    settle();
    project->setDirty(true);
    ASSERT_EQ(project->windows.size(), 2);
    EXPECT_EQ(project->windows[0]->windowTitle(), title + QStringLiteral(":1*"));
    EXPECT_EQ(project->windows[1]->windowTitle(), title + QStringLiteral(":2*"));
    frameOf(project->windows[0])->close();
    settle();
    ASSERT_EQ(project->windows.size(), 1);
    EXPECT_EQ(project->windows[0]->windowTitle(), title + QStringLiteral("*"));
    replies.expectBox(QMessageBox::No, title);
    frameOf(project->windows[0])->close();
    settle();
    EXPECT_TRUE(window->projects.isEmpty());
}

TEST_F(DocumentTest, exportWritesTheMapAndIsNoSave) {
    start();
    newProject()->setDirty(true);
    const QString title = active()->title;
    ASSERT_TRUE(QDir(file(QString())).mkdir(QStringLiteral("maps")));
    replies.expectFile(file(QStringLiteral("maps/out")));
    trigger("FileExport2"); // nothing exported yet: asks
    EXPECT_EQ(read(QStringLiteral("maps/out.map")), QByteArray("1 1\n"));
    EXPECT_EQ(active()->exportPath, file(QStringLiteral("maps/out.map")));
    EXPECT_TRUE(said.contains(QStringLiteral("File exported")));
    EXPECT_TRUE(active()->dirty);
    EXPECT_EQ(active()->title, title);

    active()->map->addEntity("info_null", active()->map->world()->origin, 0);
    trigger("FileExport2"); // again, without a question
    EXPECT_EQ(read(QStringLiteral("maps/out.map")), QByteArray("1 2\n"));

    replies.expectBox(QMessageBox::No, QString());
    trigger("FileClose");
    settle();
    ASSERT_TRUE(window->openFile(file(QStringLiteral("maps/out.map"))));
    settle();
    EXPECT_TRUE(active()->exportPath.isEmpty());
    replies.expectCancel();
    trigger("FileExport2"); // asks after a load
}

TEST_F(DocumentTest, importedMapIsNeverSavedOverWithoutAQuestion) {
    start();
    write(QStringLiteral("in.map"), "1 3\n");
    ASSERT_TRUE(window->openFile(file(QStringLiteral("in.map"))));
    settle();
    EXPECT_EQ(active()->title, QStringLiteral("in.map"));
    int entities = 0;
    for (const cEntityData* entity : entitiesOf(active()->map->data))
        entities += entity != nullptr;
    EXPECT_EQ(entities, 3);
    replies.expectFile(file(QStringLiteral("in.tst")));
    trigger("FileSave");
    EXPECT_EQ(read(QStringLiteral("in.map")), QByteArray("1 3\n"));
    EXPECT_EQ(read(QStringLiteral("in.tst")), QByteArray("2 3\n"));
    EXPECT_EQ(active()->title, QStringLiteral("in.tst"));
}

TEST_F(DocumentTest, capitalSuffixIsTheProjectFormat) {
    start();
    newProject();
    EXPECT_TRUE(active()->saveProject(file(QStringLiteral("BIG.KVX"))));
    EXPECT_EQ(read(QStringLiteral("BIG.KVX")).left(4), QByteArray("KVXP"));
    EXPECT_FALSE(active()->saveProject(file(QStringLiteral("x.foo"))));
    EXPECT_TRUE(console().contains(QStringLiteral("or any format supported by test plugin")));
    EXPECT_EQ(active()->title, QStringLiteral("BIG.KVX"));
}

// Nothing of a file that failed half-way reaches the screen.
TEST_F(DocumentTest, failedLoadLeavesNothingBehind) {
    start();
    write(QStringLiteral("cut.map"), "1 -2\n");
    write(QStringLiteral("cut.kvx"), "KVXP\x70");
    write(QStringLiteral("odd.xyz"), "?");
    for (const char* name : {"cut.map", "cut.kvx", "odd.xyz", "absent.kvx"}) {
        EXPECT_FALSE(window->openFile(file(QString::fromLatin1(name)))) << name;
        settle();
        EXPECT_TRUE(window->projects.isEmpty()) << name;
        EXPECT_EQ(windowCount(), 0) << name;
        EXPECT_EQ(window->configs().configs[0]->useCount, 0) << name;
    }
    EXPECT_TRUE(console().contains(QStringLiteral("map format is not supported")));
    EXPECT_TRUE(window->recentFiles.isEmpty());
    EXPECT_FALSE(cBusy::isBusy());
}

// Neither the configuration nor the panes of the document that is open may be lost to one that
// came to nothing.
TEST_F(DocumentTest, failedOrCancelledProjectLeavesTheActiveOneInCharge) {
    writeConfigs(2);
    start();
    const auto choose = [](int row) {
        return [row](QWidget* modal) {
            modal->findChild<QListWidget*>(QStringLiteral("lstGameCfg"))->setCurrentRow(row);
            modal->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        };
    };
    replies.expect(choose(0));
    const cProject* project = newProject();
    ASSERT_NE(project, nullptr);
    const QString sentence = pane(2);
    EXPECT_FALSE(sentence.isEmpty());
    replies.expect(choose(1));
    EXPECT_FALSE(window->openFile(file(QStringLiteral("absent.kvx"))));
    EXPECT_EQ(window->configs().current, project->gameConfig);
    EXPECT_EQ(activeConfig(), project->gameConfig);
    EXPECT_EQ(pane(2), sentence);
    replies.expectCancel();
    trigger("FileNew");
    settle();
    EXPECT_EQ(pane(2), sentence);

    replies.expect(choose(1));
    newProject();
    EXPECT_EQ(pane(1), QStringLiteral("Game 1 (test)"));
    trigger("FileClose");
    settle();
    EXPECT_EQ(active(), project);
    EXPECT_EQ(pane(1), QStringLiteral("Game 0 (test)"));
    EXPECT_EQ(pane(2), sentence);
}

class cWaitWatch : public QObject {
public:
    bool seen = false;
    bool eventFilter(QObject* watched, QEvent* event) override {
        seen |=
            event->type() == QEvent::Show && watched->objectName() == QLatin1String("cWaitDialog");
        return false;
    }
};

// The preferences give an edited copy back while a document is open.
TEST_F(DocumentTest, editedConfigurationsReachTheOpenDocument) {
    start();
    cProject* project = newProject();
    ASSERT_NE(project, nullptr);
    cEntityData* world = project->map->world();
    cBrushData* brush = project->map->addBrush(world);
    cFaceTexture texture = {};
    qstrncpy(texture.name, "wall", sizeof texture.name);
    texture.uScale = texture.vScale = 1;
    texture.uAxis[0] = texture.vAxis[1] = 1;
    cFaceData* face = project->map->addFace(brush, texture, 3);
    ASSERT_NE(face->texture, nullptr);
    face->vertices[1].xyz[0] = 64;
    face->vertices[2].xyz[1] = 64;
    face->texture->width = face->texture->height = 128; // as a late file of that name would
    face->texture->flags |= TF_REPLACED;

    cGameConfigRegistry edited(window->gameData(), window->textures(), nullptr);
    edited.assign(window->configs(), false);
    edited.setCurrentByTitle(QStringLiteral("Game 0"));
    write(QStringLiteral("more.fgd"), "@PointClass = lamp : \"Lamp\" []");
    edited.current->gameData << file(QStringLiteral("more.fgd"));
    window->gameData().acquire(edited.current->gameData.last());
    cWaitWatch watch;
    qApp->installEventFilter(&watch);
    window->configs().assign(edited, true);
    EXPECT_TRUE(watch.seen) << "the new file had to be read";
    EXPECT_EQ(g_waitDialog, nullptr);
    EXPECT_EQ(project->gameConfig, window->configs().find(QStringLiteral("Game 0")));
    EXPECT_EQ(window->configs().current, project->gameConfig);
    EXPECT_EQ(project->gameConfig->useCount, 1);
    EXPECT_NE(window->findClass("lamp", CF_POINT), nullptr);
    EXPECT_FLOAT_EQ(face->vertices[1].st[0], 0.5f) << "64 of 128 texels";
    EXPECT_EQ(face->texture->flags & TF_REPLACED, 0u);
}

TEST_F(DocumentTest, commandLineFileWantsAPoint) {
    start();
    write(QStringLiteral("in.map"), "1 2\n");
    write(QStringLiteral("nopoint"), "1 2\n");
    QDir::setCurrent(file(QString()));
    window->openArgument(QStringLiteral("nopoint"));
    EXPECT_TRUE(window->projects.isEmpty());
    window->openArgument(QStringLiteral("in.map"));
    settle();
    ASSERT_NE(active(), nullptr);
    EXPECT_EQ(active()->path, QFileInfo(file(QStringLiteral("in.map"))).absoluteFilePath());
    QDir::setCurrent(QStringLiteral("/"));
}

// The bytes of a UTF-8 name survive the other codec in both directions.
TEST_F(DocumentTest, nameThatIsNotAsciiOpens) {
    start();
    const QByteArray raw = "/\xd0\x98\xd1\x80\xd0\xb0.map";
    const QString path = file(QString()) + QString::fromLocal8Bit(raw);
    FILE* out = fopen((file(QString()).toLocal8Bit() + raw).constData(), "w");
    ASSERT_NE(out, nullptr);
    fputs("1 2\n", out);
    fclose(out);
    window->openArgument(path);
    settle();
    ASSERT_NE(active(), nullptr);
    trigger("FileClose");
}

// ---- The choice of a game configuration

TEST_F(DocumentTest, withoutConfigurationsTheUserIsTold) {
    writeConfigs(0);
    start();
    replies.expectBox(QMessageBox::No, QStringLiteral("No game configurations are available. You"));
    trigger("FileNew");
    EXPECT_TRUE(window->projects.isEmpty());
    close();
    window.reset();

    writeConfigs(0, 2);
    start();
    replies.expectBox(QMessageBox::No, QStringLiteral("but they are disabled"));
    trigger("FileNew");
    EXPECT_TRUE(window->projects.isEmpty());
    EXPECT_EQ(windowCount(), 0);
}

TEST_F(DocumentTest, severalConfigurationsAreAskedFor) {
    writeConfigs(2, 1);
    start();
    replies.expectCancel();
    trigger("FileNew");
    settle();
    EXPECT_TRUE(window->projects.isEmpty());
    EXPECT_EQ(windowCount(), 0);

    replies.expect([](QWidget* modal) {
        auto* list = modal->findChild<QListWidget*>(QStringLiteral("lstGameCfg"));
        ASSERT_NE(list, nullptr);
        EXPECT_EQ(modal->windowTitle(), QStringLiteral("Select a game"));
        EXPECT_EQ(list->count(), 2) << "disabled ones are not offered";
        list->setCurrentRow(1);
        modal->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    const cProject* project = newProject();
    ASSERT_NE(project, nullptr);
    EXPECT_EQ(project->gameConfigName, QStringLiteral("Game 1"));
    EXPECT_EQ(pane(1), QStringLiteral("Game 1 (test)"));
}

// ---- Which windows a project gets

TEST_F(DocumentTest, independentWindowsFollowTheSettings) {
    start();
    window->IndependentWindows = true;
    const cProject* four = newProject();
    ASSERT_EQ(four->windows.size(), 4);
    for (int type = 0; type < 4; ++type) {
        ASSERT_EQ(four->windows[type]->canvases.size(), 1u);
        EXPECT_EQ(four->windows[type]->firstCanvas()->viewType, type);
    }
    trigger("FileClose");
    settle();
    EXPECT_EQ(windowCount(), 0);

    window->CreateDefaultWindows = false;
    int last = newProject()->windows[0]->firstCanvas()->viewType;
    for (int i = 0; i < 3; ++i) {
        const int type = newProject()->windows[0]->firstCanvas()->viewType;
        EXPECT_EQ(type, last % 3 + 1);
        last = type;
    }
}

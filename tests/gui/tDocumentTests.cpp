// SPDX-License-Identifier: MIT
// The life of documents as a user leads it: new, save, open, export, close, with every question.
#include "dialogs/tWaitDialog.h"
#include "document/tTexture.h"
#include "gamedata/tGameDataRegistry.h"
#include "gui/tGuiTest.h"
#include "resources/tGameConfigRegistry.h"
#include "resources/tTextureCatalogue.h"
#include "resources/tTextureManager.h"
#include "support/tMapText.h"
#include "support/tSystem.h"

#include <QMdiSubWindow>

using DocumentTest = cGuiTest;

// Takes that configuration of those that are offered.
static std::function<void(QWidget*)> chooseConfig(int row) {
    return [row](QWidget* modal) {
        EXPECT_EQ(modal->windowTitle(), QStringLiteral("Select a game"));
        auto* offered = child<QListWidget>(modal, "lstGameCfg");
        EXPECT_EQ(offered->count(), 2) << "disabled ones are not offered";
        offered->setCurrentRow(row);
        finish(modal, QDialogButtonBox::Ok);
    };
}

static cBrushData* addBox(cMap& map, const char* texture) {
    const float mins[3] = {0, 0, 0}, maxs[3] = {64, 64, 64};
    return addBox(map, map.world(), mins, maxs, texture);
}

static const cFaceData* firstFace(const cProject& project) {
    return project.map->world()->brushes->faces;
}

static QMdiSubWindow* frameOf(const cChildWindow* child) {
    return qobject_cast<QMdiSubWindow*>(child->parentWidget());
}

TEST_F(DocumentTest, newMapHasAWorldAndFourViewsAndTheNextNumber) {
    const cProject* project = startWithProject();
    ASSERT_NE(project, nullptr);
    EXPECT_TRUE(project->isNew && !project->dirty && project->path.isEmpty());
    ASSERT_EQ(project->windows.size(), 1);
    EXPECT_EQ(project->windows[0]->canvases.size(), 4u);
    for (cCanvas* canvas : project->windows[0]->canvases) {
        canvas->requestRedraw(true);
        EXPECT_GT(canvas->pictureCount(), 0) << "the program's GL formats let it keep a picture";
    }
    EXPECT_TRUE(frameOf(project->windows[0])->isMaximized());
    EXPECT_EQ(project->windows[0]->windowTitle(), project->title);
    EXPECT_EQ(pane(1), QStringLiteral("Game 0 (test)"));
    ASSERT_NE(window->activeCanvas, nullptr);
    EXPECT_TRUE(window->activeCanvas->isCamera());
    EXPECT_EQ(project->game.config->useCount, 1);
    EXPECT_STREQ(project->map->world()->classname, "worldspawn");
    EXPECT_STREQ(getEpairValue(project->map->world(), "message"), "hello");
    EXPECT_TRUE(console().contains(
        QStringLiteral("Created new project with game configuration \"Game 0\"")));

    const int number = project->title.mid(3).toInt();
    trigger("FileClose");
    settle();
    EXPECT_EQ(windowCount(), 0);
    EXPECT_EQ(newProject()->title, QStringLiteral("Map%1").arg(number + 1));
}

TEST_F(DocumentTest, savedUnderTheNameOfTheDialogAndOpenedAgain) {
    startWithProject()->setDirty(true);
    replies.expectFile(file("room"));
    trigger("FileSave");
    EXPECT_EQ(active()->path, file("room.kvx")) << "the filter's extension";
    EXPECT_EQ(active()->title, QStringLiteral("room.kvx"));
    EXPECT_FALSE(active()->dirty || active()->isNew);
    EXPECT_TRUE(said.contains(QStringLiteral("File saved")));
    EXPECT_EQ(read("room.kvx").left(4), QByteArray("KVXP"));
    active()->setDirty(true);
    EXPECT_EQ(active()->windows[0]->windowTitle(), QStringLiteral("room.kvx*"));
    trigger("FileSave"); // no dialog now
    EXPECT_EQ(active()->windows[0]->windowTitle(), QStringLiteral("room.kvx"));

    EXPECT_TRUE(active()->saveProject(file("BIG.KVX"))) << "the case of a suffix is the same";
    EXPECT_EQ(read("BIG.KVX").left(4), QByteArray("KVXP"));
    EXPECT_FALSE(active()->saveProject(file("x.foo")));
    EXPECT_TRUE(console().contains(QStringLiteral("or any format supported by test plugin")));
    EXPECT_EQ(active()->title, QStringLiteral("BIG.KVX"));
    trigger("FileClose");
    settle();
    replies.expectFile(file("room.kvx"));
    trigger("FileOpen");
    settle();
    ASSERT_NE(active(), nullptr);
    EXPECT_EQ(active()->title, QStringLiteral("room.kvx"));
    EXPECT_TRUE(said.contains(QStringLiteral("File loaded")));
    EXPECT_TRUE(active()->map->world()->flags & EF_WORLD);
    EXPECT_EQ(window->RecentMapDirectory, QFileInfo(file("room.kvx")).canonicalPath());

    // A file that is open is raised, and moves to the top of the recent ones.
    EXPECT_TRUE(window->openFile(file("BIG.KVX")));
    EXPECT_TRUE(window->openFile(file("./room.kvx"))) << "another spelling";
    settle();
    EXPECT_EQ(window->projects.size(), 2);
    EXPECT_EQ(active()->title, QStringLiteral("room.kvx"));
    EXPECT_EQ(window->recentFiles().paths(), QStringList({file("room.kvx"), file("BIG.KVX")}));
    EXPECT_TRUE(console().contains(QStringLiteral("is already opened")));
}

// Four ways to close a document, each with the three answers.
TEST_F(DocumentTest, everyWayToCloseAsksAndObeys) {
    start();
    const std::function<void()> ways[] = {
        [this] { frameOf(active()->windows[0])->close(); },
        [this] { trigger("FileClose"); },
        [this] { trigger("FileCloseAll"); },
        [this] { close(); },
    };
    const auto settingsAreSaved = [this] {
        const bool saved = QFile::exists(file("TDKSettings.ini"));
        EXPECT_EQ(QFile::exists(file("TDKLayout.dat")), saved);
        return saved;
    };
    for (const auto& closeBy : ways) {
        cProject* project = newProject();
        project->setDirty(true);
        const QString question = QStringLiteral("Save changes to %1?").arg(project->title);
        const QString name = file(QStringLiteral("%1.kvx").arg(project->title));
        replies.expectBox(QMessageBox::Cancel, question);
        closeBy();
        settle();
        ASSERT_EQ(window->projects, QList<cProject*>{project});
        EXPECT_TRUE(project->dirty);
        EXPECT_FALSE(g_closing);
        EXPECT_TRUE(window->isVisible());
        EXPECT_EQ(windowCount(), 1);

        replies.expectBox(QMessageBox::Yes, question);
        replies.expectCancel(); // of the file dialog: the document stays
        closeBy();
        settle();
        ASSERT_EQ(window->projects.size(), 1);
        EXPECT_FALSE(QFile::exists(name));
        EXPECT_FALSE(settingsAreSaved());

        replies.expectBox(QMessageBox::Yes, question);
        replies.expectFile(name);
        closeBy();
        settle();
        EXPECT_TRUE(window->projects.isEmpty());
        EXPECT_EQ(windowCount(), 0);
        EXPECT_TRUE(QFile::exists(name));
        EXPECT_EQ(window->recentFiles().paths().first(), name);
        if (!window->isVisible())
            break; // the last way ended the program

        newProject()->setDirty(true);
        replies.expectBox(QMessageBox::No, QString());
        closeBy();
        settle();
        EXPECT_TRUE(window->projects.isEmpty());
        EXPECT_EQ(window->activeCanvas, nullptr);
    }
    EXPECT_TRUE(settingsAreSaved());
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

TEST_F(DocumentTest, aSaveThatFailsOnTheWayOutSaysWhyAndTheDocumentStays) {
    cProject* project = startWithProject();
    project->setDirty(true);
    project->path = QStringLiteral("/dev/full/no.kvx");
    replies.expectBox(QMessageBox::Yes, "Save changes");
    trigger("FileClose");
    settle();
    EXPECT_EQ(active(), project);
    EXPECT_TRUE(project->dirty);
    EXPECT_TRUE(console().contains(QStringLiteral("can't write \"/dev/full/no.kvx\" (")));
    project->setDirty(false);
}

TEST_F(DocumentTest, aDamagedProjectOpensUnderANewName) {
    cProject* project = startWithProject();
    const float origin[3] = {0, 0, 0};
    for (int i = 0; i < 3; ++i)
        project->map->addEntity("info_null", origin, EF_POINT);
    ASSERT_TRUE(project->saveProject(file("cut.kvx")));
    trigger("FileClose");
    const QByteArray whole = read("cut.kvx");
    write("cut.kvx", whole.chopped(10));
    ASSERT_TRUE(window->openFile(file("cut.kvx")));
    EXPECT_TRUE(console().contains(
        QStringLiteral("%1 is damaged: read up to entity 4 of 4").arg(file("cut.kvx"))));
    EXPECT_EQ(countOf(entitiesOf(active()->map->data)), 4);
    EXPECT_TRUE(active()->dirty && active()->isNew);
    EXPECT_EQ(active()->windows[0]->windowTitle(), QStringLiteral("cut-recovered*"));
    replies.expectFile(file("kept"));
    trigger("FileSave"); // asks for a name
    EXPECT_EQ(active()->path, file("kept.kvx"));
    EXPECT_EQ(read("cut.kvx"), whole.chopped(10));
}

TEST_F(DocumentTest, windowsOfOneDocumentAreNumberedAndAskOnceBeforeTheLastGoes) {
    cProject* project = startWithProject();
    const QString title = project->title;
    trigger("WindowNew");
    settle();
    project->setDirty(true);
    ASSERT_EQ(project->windows.size(), 2);
    EXPECT_EQ(project->windows[0]->windowTitle(), title + QStringLiteral(":1*"));
    EXPECT_EQ(project->windows[1]->windowTitle(), title + QStringLiteral(":2*"));
    for (const auto& closeBy : {std::function<void()>([this] { trigger("FileCloseAll"); }),
                                std::function<void()>([this] { close(); })}) {
        replies.expectBox(QMessageBox::Cancel, title);
        closeBy();
        settle();
        ASSERT_EQ(window->projects, QList<cProject*>{project});
        EXPECT_EQ(windowCount(), 2);
    }
    frameOf(project->windows[0])->close();
    settle();
    ASSERT_EQ(project->windows.size(), 1);
    EXPECT_EQ(project->windows[0]->windowTitle(), title + QStringLiteral("*"));
    trigger("WindowNew");
    replies.expectBox(QMessageBox::No, title);
    trigger("FileCloseAll");
    settle();
    EXPECT_EQ(windowCount(), 0);
}

TEST_F(DocumentTest, eachDocumentComesBackWithTheViewThatWasActive) {
    start();
    cProject* first = newProject();
    cProject* second = newProject();
    cCanvas* ofFirst = first->windows[0]->canvases[2];
    cCanvas* ofSecond = second->windows[0]->canvases[3];
    focus(ofSecond);
    trigger("WindowPrev");
    settle();
    focus(ofFirst);
    for (int i = 0; i < 3; ++i) {
        trigger("WindowNext");
        settle();
        EXPECT_EQ(window->activeCanvas, ofSecond) << i;
        EXPECT_EQ(QApplication::focusWidget(), ofSecond) << i;
        trigger("WindowPrev");
        settle();
        EXPECT_EQ(window->activeCanvas, ofFirst) << i;
        EXPECT_EQ(QApplication::focusWidget(), ofFirst) << i;
    }
}

TEST_F(DocumentTest, eachDocumentHasItsOwnSelectionAndTheSentenceIsOfTheActiveOne) {
    static constexpr float mins[3] = {0, 0, 0}, maxs[3] = {16, 16, 16};
    start();
    const cSelectionBox* boxes[2] = {};
    for (int i = 0; i < 2; ++i) {
        cProject* project = newProject();
        boxes[i] = &project->boxes[TBX_SELECTION];
        cMap& map = *project->map;
        for (int count = 0; count <= i; ++count)
            addBox(map, map.world(), mins, maxs);
        trigger("EditSelAll");
    }
    EXPECT_EQ(pane(2), QStringLiteral("2 objects selected."));
    for (const char* command : {"ViewItems", "ViewPaths"}) {
        trigger(command); // goes over all documents
        EXPECT_EQ(pane(2), QStringLiteral("2 objects selected.")) << command;
        trigger(command);
    }
    trigger("WindowPrev");
    settle();
    EXPECT_EQ(pane(2), QStringLiteral("solid with 6 faces."));
    EXPECT_TRUE(boxes[0]->active && boxes[1]->active);
    replies.expectBox(QMessageBox::Ok, "is still under development");
    toolAction(TOOL_TEXTURE)->trigger();
    toolAction(TOOL_TEXTURE)->trigger(); // the way out drops all selections
    letShow();
    EXPECT_FALSE(boxes[0]->active || boxes[1]->active);
}

TEST_F(DocumentTest, undoBackToWhatWasSavedTakesTheMarkAway) {
    cProject* project = startWithProject();
    window->UndoLevels = 5;
    project->map->history->applyLevels();
    int steps = 0;
    const auto step = [&] {
        trigger("EditSelAll");
        trigger(steps++ % 2 ? "ToolsUngroup" : "ToolsGroup");
        settle();
    };
    addBox(*project->map, "wall");
    addBox(*project->map, "wall");
    for (int i = 0; i < 2; ++i)
        step();
    ASSERT_TRUE(project->saveProject(file("a.kvx")));
    const auto marked = [&](const char* command) {
        trigger(command);
        settle();
        EXPECT_EQ(project->dirty, project->windows[0]->windowTitle().endsWith(QLatin1Char('*')));
        return project->dirty;
    };
    EXPECT_TRUE(marked("EditUndo"));
    EXPECT_FALSE(marked("EditRedo"));
    step();
    EXPECT_TRUE(project->dirty);
    EXPECT_FALSE(marked("EditUndo"));
    project->map->hideSelection(); // no step
    project->setDirty(true);
    step();
    EXPECT_TRUE(marked("EditUndo")) << "what undo does not take back is still unsaved";
    ASSERT_TRUE(project->saveProject(file("a.kvx")));
    for (int i = 0; i < 9; ++i)
        step();
    bool dirty = true;
    while (project->map->history->canUndo())
        dirty &= marked("EditUndo");
    EXPECT_TRUE(dirty) << "the saved state is beyond what is kept";
    project->setDirty(false);
}

TEST_F(DocumentTest, exportWritesTheMapAndIsNoSave) {
    startWithProject()->setDirty(true);
    const QString title = active()->title;
    replies.expectFile(file("out"));
    trigger("FileExport2"); // nothing exported yet: asks
    EXPECT_EQ(read("out.map"), QByteArray("1 1\n"));
    EXPECT_EQ(active()->exportPath, file("out.map"));
    EXPECT_TRUE(said.contains(QStringLiteral("File exported")));
    EXPECT_TRUE(active()->dirty);
    EXPECT_EQ(active()->title, title);
    active()->map->addEntity("info_null", active()->map->world()->origin, 0);
    trigger("FileExport2"); // again, without a question
    EXPECT_EQ(read("out.map"), QByteArray("1 2\n"));

    replies.expectBox(QMessageBox::No, QString());
    trigger("FileClose");
    settle();
    ASSERT_TRUE(window->openFile(file("out.map")));
    settle();
    EXPECT_EQ(active()->title, QStringLiteral("out.map"));
    EXPECT_EQ(countOf(entitiesOf(active()->map->data)), 2);
    replies.expectCancel();
    trigger("FileExport2"); // asks after a load
    replies.expectFile(file("in.tst"));
    trigger("FileSave"); // and what was imported is not saved over
    EXPECT_EQ(read("out.map"), QByteArray("1 2\n"));
    EXPECT_EQ(read("in.tst"), QByteArray("2 2\n"));
    EXPECT_EQ(active()->title, QStringLiteral("in.tst"));
}

// Nothing of a file that failed half-way reaches the screen.
TEST_F(DocumentTest, failedLoadLeavesNothingBehind) {
    start();
    write("cut.map", "1 -2\n");
    write("cut.kvx", "KVXP\x70");
    write("odd.xyz", "?");
    for (const char* name : {"cut.map", "cut.kvx", "odd.xyz", "absent.kvx"}) {
        EXPECT_FALSE(window->openFile(file(QString::fromLatin1(name)))) << name;
        settle();
        EXPECT_TRUE(window->projects.isEmpty()) << name;
        EXPECT_EQ(windowCount(), 0) << name;
        EXPECT_EQ(window->services().configs.configs[0]->useCount, 0) << name;
    }
    EXPECT_TRUE(console().contains(QStringLiteral("map format is not supported")));
    EXPECT_TRUE(window->recentFiles().paths().isEmpty());
    EXPECT_FALSE(cBusy::isBusy());
}

// Neither the configuration nor the panes of the document that is open may be lost to one that
// came to nothing.
TEST_F(DocumentTest, failedOrCancelledProjectLeavesTheActiveOneInCharge) {
    writeConfigs(2, 1);
    start();
    replies.expectCancel();
    trigger("FileNew");
    settle();
    EXPECT_TRUE(window->projects.isEmpty());
    EXPECT_EQ(windowCount(), 0);

    replies.expect(chooseConfig(0));
    const cProject* project = newProject();
    ASSERT_NE(project, nullptr);
    const QString sentence = pane(2);
    EXPECT_FALSE(sentence.isEmpty());
    replies.expect(chooseConfig(1));
    EXPECT_FALSE(window->openFile(file("absent.kvx")));
    EXPECT_EQ(window->services().configs.current, project->game.config);
    EXPECT_EQ(activeConfig(), project->game.config);
    EXPECT_EQ(pane(2), sentence);
    replies.expectCancel();
    trigger("FileNew");
    settle();
    EXPECT_EQ(pane(2), sentence);

    replies.expect(chooseConfig(1));
    EXPECT_EQ(newProject()->gameConfigName, QStringLiteral("Game 1"));
    EXPECT_EQ(pane(1), QStringLiteral("Game 1 (test)"));
    trigger("FileClose");
    settle();
    EXPECT_EQ(active(), project);
    EXPECT_EQ(pane(1), QStringLiteral("Game 0 (test)"));
    EXPECT_EQ(pane(2), sentence);
}

// Two maps of two games, worked on in turn and each while the other one is active.
TEST_F(DocumentTest, documentsOfTwoGamesKeepTheirTexturesClassesAndDetail) {
    write("small.size", "wall 32 32");
    write("large.size", "WALL 128 64");
    write("hole.size", "hole 16 16");
    write("other.fgd", "@SolidClass = worldspawn []\n@PointClass size(-4 -4 -4, 4 4 4) = lamp []");
    const auto config = [&](const char* number, const char* profile, const char* sets) {
        return QByteArray("[Config") + number + "]\nTitle=Game " + number +
               "\nEnabled=true\nMapProfile=" + profile +
               "\nGameData0=" + toMapText(file(*number == '0' ? "test.fgd" : "other.fgd")) + "\n" +
               QByteArray(sets).replace("@", toMapText(file(""))) + "\n";
    };
    write("TDKGameCfg.ini",
          config("0", "test", "Parcel0=@/small.size::") +
              config("1", "rich", "Parcel0=@/large.size::\nParcel1=@/hole.size::"));
    start();
    window->NoPrecache = true;
    restart();
    std::array<cProject*, 2> projects;
    for (int i = 0; i < 2; ++i) {
        replies.expect(chooseConfig(i));
        projects[size_t(i)] = newProject();
        ASSERT_TRUE(projects[size_t(i)]);
        if (i == 0) // before the other game brings a texture of that name
            addBox(*projects[0]->map, "hole");
    }
    EXPECT_TRUE(firstFace(*projects[0])->texture->flags & TF_PLACEHOLDER);
    EXPECT_EQ(projects[1]->game.findTexture("hole")->width, 16);

    for (cProject* active : projects) {
        window->setActiveChildWindow(active->windows[0]->parentWidget());
        settle();
        EXPECT_EQ(window->services().configs.current, active->game.config);
        for (cProject* project : projects) {
            const bool first = project == projects[0];
            cMap& map = *project->map;
            map.clearSelection();
            {
                const cHistoryStep step(map, "Box");
                step->brushCreated(addBox(map, "wall"));
            }
            map.history->undo();
            map.history->redo();
            EXPECT_EQ(map.world()->brushesTail->faces->texture->width, first ? 32 : 128);
            const float origin[3] = {0, 0, 0};
            const cEntityData* lamp = map.addEntity("lamp", origin, EF_POINT);
            EXPECT_EQ(lamp->entity->entityClass != nullptr, !first);
            window->redrawAllViews(REDRAW_ALL);
            project->windows[0]->canvases[0]->requestRedraw(true);
            EXPECT_EQ(project->windows[0]->canvases[0]->viewInfo.detailContentMask,
                      first ? 0u : 8u);
        }
        EXPECT_EQ(action("ToolsMakeDetail")->isVisible(), active == projects[1]);
    }
    for (cProject* project : projects)
        project->setDirty(false);
}

TEST_F(DocumentTest, windowsHaveASizeToBeMadeWith) {
    const cProject* project = startWithProject();
    const QSize area = window->mdiArea()->viewport()->size();
    const auto isRoomy = [&](const QWidget* frame) {
        return frame->width() * 2 > area.width() && frame->height() * 2 > area.height();
    };
    QMdiSubWindow* frame = frameOf(project->windows[0]);
    frame->showNormal();
    settle();
    EXPECT_TRUE(isRoomy(frame)) << "restored";
    trigger("WindowNew");
    settle();
    EXPECT_FALSE(frameOf(project->windows[1])->isMaximized());
    EXPECT_TRUE(isRoomy(frameOf(project->windows[1]))) << "made beside others";
    trigger("WindowCascade");
    settle();
    for (const cChildWindow* child : project->windows)
        EXPECT_TRUE(isRoomy(child->parentWidget())) << "cascaded";
    EXPECT_GE(frame->minimumSizeHint().width(), 240) << "for who drags its border";
    EXPECT_GE(frame->minimumSizeHint().height(), 180);
}

// The dialogs begin with what is likely to be chosen.
TEST_F(DocumentTest, fileDialogsProposeAllMapsAndTheTitle) {
    startWithProject();
    const auto look = [](std::function<void(QFileDialog*)> check) {
        return [check](QWidget* modal) {
            auto* dialog = qobject_cast<QFileDialog*>(modal);
            ASSERT_TRUE(dialog);
            check(dialog);
            dialog->reject();
        };
    };
    replies.expect(look([](QFileDialog* dialog) {
        EXPECT_EQ(dialog->selectedNameFilter(),
                  QStringLiteral("All supported formats (*.kvx *.map)"));
    }));
    trigger("FileOpen");
    for (const char* command : {"FileSaveAs", "FileExport"}) {
        replies.expect(look([&](QFileDialog* dialog) {
            EXPECT_EQ(child<QLineEdit>(dialog, "fileNameEdit")->text(), active()->title);
        }));
        trigger(command);
    }
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
    cProject* project = startWithProject();
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

    cGameConfigRegistry edited(window->services().gameData, window->services().textures, nullptr);
    edited.assign(window->services().configs, false);
    edited.setCurrentByTitle(QStringLiteral("Game 0"));
    write("more.fgd", "@PointClass = lamp : \"Lamp\" []");
    edited.current->gameData << file("more.fgd");
    window->services().gameData.acquire(edited.current->gameData.last());
    write("wall.size", "wall 128 128");
    edited.current->parcels << file("wall.size") + QStringLiteral("::");
    const quint64 revision = project->map->revision();
    cWaitWatch watch;
    qApp->installEventFilter(&watch);
    window->services().configs.assign(edited, true);
    EXPECT_TRUE(watch.seen) << "the new file had to be read";
    EXPECT_EQ(g_waitDialog, nullptr);
    EXPECT_EQ(project->game.config, window->services().configs.find(QStringLiteral("Game 0")));
    EXPECT_EQ(window->services().configs.current, project->game.config);
    EXPECT_EQ(project->game.config->useCount, 1);
    EXPECT_NE(project->game.findClass("lamp", CF_POINT), nullptr);
    EXPECT_FLOAT_EQ(face->vertices[1].st[0], 0.5f) << "64 of 128 texels";
    EXPECT_EQ(face->texture->flags, 0u) << "it is real, and no mark is left";
    EXPECT_STREQ(face->tex.name, "wall");
    EXPECT_GT(project->map->revision(), revision) << "kept pictures are old";
    EXPECT_EQ(project->game.catalogue()->missingCount, 0);
}

TEST_F(DocumentTest, commandLineFileWantsAPointAndMayHaveAnyName) {
    start();
    const QByteArray cyrillic = "\xd0\x98\xd1\x80\xd0\xb0.map"; // UTF-8, as the disk has it
    QDir::setCurrent(file(""));
    for (const QByteArray& name : {QByteArray("nopoint"), QByteArray("in.map"), cyrillic}) {
        FILE* out = fopen((toMapText(file("")) + '/' + name).constData(), "w");
        ASSERT_NE(out, nullptr);
        fputs("1 2\n", out);
        fclose(out);
        window->openArgument(fromMapText(name));
        settle();
        ASSERT_EQ(window->projects.size(), name.contains('.') ? 1 : 0) << name.constData();
        if (active()) {
            EXPECT_EQ(active()->path, file(fromMapText(name)));
            trigger("FileClose");
            settle();
        }
    }
    QDir::setCurrent(QStringLiteral("/"));
}

TEST_F(DocumentTest, withoutConfigurationsTheUserIsTold) {
    for (const int disabled : {0, 2}) {
        writeConfigs(0, disabled);
        start();
        replies.expectBox(QMessageBox::No, disabled ? "but they are disabled"
                                                    : "No game configurations are available. You");
        trigger("FileNew");
        EXPECT_TRUE(window->projects.isEmpty());
        EXPECT_EQ(windowCount(), 0);
        ASSERT_TRUE(close());
        window.reset();
    }
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

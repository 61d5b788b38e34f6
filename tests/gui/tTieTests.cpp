// SPDX-License-Identifier: MIT
// Tie to Entity through its real boxes: every way of answering each question, and the list.
#include "gui/tToolTest.h"
#include "resources/tGameConfigRegistry.h"

static const QString POINTS_QUESTION =
    QStringLiteral("There are 1 point entities selected.\n"
                   "They will be deselected before the solids are tied to an entity.\n"
                   "Do you wish to continue?");
static const QString OWNER_QUESTION =
    QStringLiteral("You have selected an existing entity (a 'func_wall').\n"
                   "Would you like to add the selected solids to the existing entity?\n"
                   "If you select 'No', a new entity ('func_door') will be created.");
static const QString NOTHING_ELIGIBLE = QStringLiteral("There are no eligible selected objects.");

class TieTest : public cToolTest {
protected:
    void SetUp() override {
        cToolTest::SetUp();
        config().defaultSolidClass = QStringLiteral("func_door");
    }

    cGameConfig& config() const { return *window->services().configs.current; }

    // A wall of that many brushes.
    cEntityData* addWall(float x, int brushes) {
        cEntityData* wall = addSolidEntity();
        for (int i = 0; i < brushes; ++i) {
            const float mins[3] = {x, float(i * 64), 0}, maxs[3] = {x + 32, float(i * 64 + 32), 32};
            addBox(map(), wall, mins, maxs);
        }
        updateEntity(wall, 0);
        return wall;
    }

    int entities() const { return countOf(entitiesOf(map().data)); }
    const cEntityData* newest() const { return map().data.entitiesTail; }
    static int brushesIn(const cEntityData* entity) {
        return entity ? countOf(brushesOf(entity)) : 0;
    }
    // A block of the world at that place, with all that is there selected.
    void addBlock(float x) {
        addBrush({x, 0, 0}, {x + 32, 32, 32});
        objectsAdded();
        trigger("EditSelAll");
    }
    // Two walls of two brushes and one of the world, all selected.
    void addTwoWalls() {
        walls[0] = addWall(0, 2)->id;
        walls[1] = addWall(64, 2)->id;
        addBlock(128);
    }
    void tie() {
        trigger("ToolsToEntity");
        EXPECT_TRUE(answered());
        settle();
        EXPECT_EQ(window->tieToEntity().className(), QString()) << "it holds for one command";
        EXPECT_EQ(checkMapInvariants(map()), QString());
    }

    uint32_t walls[2] = {0, 0};
};

TEST_F(TieTest, withoutAClassOrBrushesThereIsABox) {
    addLight(0, 0, 0);
    objectsAdded();
    trigger("EditSelAll");
    replies.expectBox(QMessageBox::Ok, NOTHING_ELIGIBLE);
    tie();
    EXPECT_EQ(selectedEntities(), 1);

    addBlock(64);
    config().defaultSolidClass.clear();
    replies.expectBox(QMessageBox::Ok, "There are no solid entities in current game data!\n"
                                       "TieToEntity function is not available.");
    tie();
    EXPECT_FALSE(map().history->canUndo());
}

TEST_F(TieTest, brushesOfTheWorldBecomeANewEntityOfTheClassThatAMenuNames) {
    for (const char* name : {"func_door", "func_wall"}) {
        addBlock(0);
        addBlock(64);
        QAction* entry = action("ToolsToEntity");
        for (QAction* a : window->findChildren<QAction*>())
            if (a->text() == QLatin1String(name))
                entry = a; // the default class has none
        expectUndoable([&] { entry->trigger(); });
        EXPECT_STREQ(undoName(), "Tie to Entity");
        EXPECT_TRUE(project->dirty);
        EXPECT_STREQ(newest()->classname, name);
        EXPECT_EQ(brushesIn(newest()), 2);
        EXPECT_EQ(selectedEntities(), 1);
        EXPECT_EQ(window->tieToEntity().className(), QString());
        trigger("EditDelete");
    }
}

TEST_F(TieTest, pointEntitiesAreDeselectedOrNothingHappens) {
    addLight(0, 64, 0);
    addBlock(0);
    const cMapState before = stateOf(map());
    replies.expectBox(QMessageBox::No, POINTS_QUESTION);
    tie();
    EXPECT_EQ(firstDifference(before, stateOf(map())), QString());
    replies.expectBox(QMessageBox::Yes, POINTS_QUESTION);
    expectUndoable([&] { tie(); }, false);
    EXPECT_STREQ(newest()->classname, "func_door");
    EXPECT_EQ(selectedEntities(), 1) << "the light is none of them";
}

TEST_F(TieTest, oneOwnerIsAskedFor) {
    const struct {
        QMessageBox::StandardButton answer;
        bool withBlock;  // one of the world, besides the wall's
        int wallBrushes; // in the one that was there
        bool step;
    } cases[] = {
        {QMessageBox::Cancel, true, 2, false},
        {QMessageBox::Yes, true, 3, true},
        {QMessageBox::Yes, false, 2, true}, // they stay, and yet a step is recorded
        {QMessageBox::No, true, 0, true},   // the wall that has nothing left goes
    };
    for (const auto& c : cases) {
        const uint32_t wall = addWall(0, 2)->id;
        if (c.withBlock)
            addBlock(128);
        objectsAdded();
        map().history->clear();
        trigger("EditSelAll");
        replies.expectBox(c.answer, OWNER_QUESTION);
        if (c.step && c.withBlock)
            expectUndoable([&] { tie(); });
        else
            tie();
        EXPECT_EQ(map().history->canUndo(), c.step);
        EXPECT_EQ(entities(), 2) << "with the world";
        EXPECT_EQ(brushesIn(map().findEntityById(wall)), c.wallBrushes);
        EXPECT_STREQ(newest()->classname, c.answer == QMessageBox::No ? "func_door" : "func_wall");
        trigger("EditSelAll");
        trigger("EditDelete");
    }
}

TEST_F(TieTest, ofSeveralOwnersOneIsPickedFromTheList) {
    enum eEnd { OK, DOUBLE_CLICK, CANCEL };
    for (const eEnd end : {OK, DOUBLE_CLICK, CANCEL}) {
        addTwoWalls();
        map().history->clear();
        uint32_t picked = 0;
        replies.expect([&](QWidget* dialog) {
            EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Select the Destination"));
            EXPECT_EQ(dialog->windowModality(), Qt::WindowModal);
            EXPECT_EQ(dialog->findChild<QLabel*>()->text(),
                      QStringLiteral("Multiple entities are selected - please pick the one you "
                                     "want to keep:"));
            auto* list = child<QListWidget>(dialog, "lstEntities");
            ASSERT_EQ(list->count(), 2) << "each owner once";
            EXPECT_EQ(list->currentRow(), 0);
            const QListWidgetItem* item = list->item(1);
            EXPECT_EQ(item->text(), QStringLiteral("func_wall"));
            picked = item->data(32).toUInt();
            const QPoint at = list->visualItemRect(item).center();
            QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, at);
            if (end == DOUBLE_CLICK)
                QTest::mouseDClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, at);
            else
                finish(dialog, end == OK ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel);
        });
        if (end == CANCEL)
            tie();
        else
            expectUndoable([&] { tie(); });
        EXPECT_EQ(map().history->canUndo(), end != CANCEL);
        EXPECT_TRUE(picked == walls[0] || picked == walls[1]);
        EXPECT_EQ(entities(), end == CANCEL ? 3 : 2);
        const cEntityData* kept = map().findEntityById(picked);
        ASSERT_TRUE(kept);
        EXPECT_EQ(brushesIn(kept), end == CANCEL ? 2 : 5);
        trigger("EditSelAll");
        trigger("EditDelete");
    }
}

TEST_F(TieTest, theListForgetsWhatIsUndoneAndGoesWithItsLast) {
    for (float x : {0.0f, 64.0f}) {
        addBlock(x);
        const cBrushData* block = map().world()->brushesTail;
        trigger("EditSelNone");
        map().selectInBox(block->mins, block->maxs, BOX_CONTAINED);
        tie();
    }
    ASSERT_EQ(entities(), 3);
    trigger("EditSelAll");
    replies.expect([&](QWidget* dialog) {
        const auto* list = child<QListWidget>(dialog, "lstEntities");
        EXPECT_EQ(list->count(), 2);
        trigger("EditUndo");
        EXPECT_EQ(list->count(), 1);
        EXPECT_TRUE(map().findEntityById(list->item(0)->data(32).toUInt()));
        trigger("EditUndo");
        EXPECT_FALSE(dialog->isVisible());
    });
    tie();
    EXPECT_EQ(entities(), 1);
}

TEST_F(TieTest, theListGoesWithItsDocument) {
    cProject* first = project;
    addTwoWalls();
    trigger("ToolsToEntity");
    replies.expect([&](QWidget*) {
        first->dirty = false;
        window->removeProject(first);
    });
    EXPECT_TRUE(answered());
    settle();
    EXPECT_EQ(window->tieToEntity().className(), QString());
    EXPECT_FALSE(window->findChild<QListWidget*>(QStringLiteral("lstEntities")));
    project = newProject();
}

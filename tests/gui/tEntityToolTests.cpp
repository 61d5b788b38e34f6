// SPDX-License-Identifier: MIT
// The entity tool: points set in 2D views, surfaces clicked in the camera view, class menus.
#include "gui/tToolTest.h"

#include <QComboBox>
#include <set>

class EntityToolTest : public cToolTest {
protected:
    void SetUp() override {
        cToolTest::SetUp();
        toolAction(TOOL_ENTITY)->trigger();
    }

    cSelectionBox& point() const { return project->boxes[TBX_ENTITY]; }
    QComboBox* classes() const {
        return window->findChild<QComboBox*>(QStringLiteral("lstObjects"));
    }
    void choose(const char* name) const { classes()->setCurrentText(QString::fromLatin1(name)); }
    const cEntityData* selected() const { return map().data.selectedEntities; }
    void expectOrigin(std::initializer_list<float> wanted) const {
        ASSERT_TRUE(selected());
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(selected()->origin[i], wanted.begin()[i], 1.01f) << i; // whole units
    }
};

TEST_F(EntityToolTest, enterPlacesTheEntityAtThePointAndEscapeDropsIt) {
    window->ClearSelectionOnEscape = true;
    choose("light");
    drag(top, pixel(top, 0, 0), pixel(top, 32, -48));
    ASSERT_TRUE(point().active);
    EXPECT_EQ(pane(4), QStringLiteral("32x -48y 0z"));
    cCanvas* side = view(VIEW_SIDE);
    click(side, pixel(side, 32, 64)); // the other view gives the height
    EXPECT_EQ(pane(4), QStringLiteral("32x -48y 64z"));
    expectUndoable([&] { key(side, Qt::Key_Return); });
    EXPECT_STREQ(undoName(), "Create Entity");
    ASSERT_EQ(selectedEntities(), 1);
    EXPECT_STREQ(selected()->classname, "light");
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(selected()->origin[i], (i == 0 ? 32 : i == 1 ? -48 : 64));
    EXPECT_TRUE(project->dirty);
    EXPECT_FALSE(point().active);
    EXPECT_EQ(pane(4), QString());
    EXPECT_TRUE(console().contains(QStringLiteral("New entity: light")));

    press(top, pixel(top, 64, 64));
    key(top, Qt::Key_Escape);
    moveTo(top, pixel(top, 80, 64));
    release(top, pixel(top, 80, 64));
    EXPECT_FALSE(point().active);
    EXPECT_EQ(selectedEntities(), 1) << "first the point, then the selection";
    key(top, Qt::Key_Escape);
    EXPECT_EQ(selectedEntities(), 0);
}

TEST_F(EntityToolTest, aClickedSurfaceCarriesTheEntityByTheOffsetOfItsClass) {
    addBrush({100, -50, 0}, {150, 50, 100});
    objectsAdded();
    cCanvas* camera = view(VIEW_CAMERA); // looks along x from x = -16, 64 above the ground
    const QPoint middle(camera->width() / 2, camera->height() / 2);
    choose("info_start");
    expectUndoable([&] { click(camera, middle); });
    EXPECT_STREQ(selected()->classname, "info_start");
    expectOrigin({100, 0, 68});
    EXPECT_FALSE(point().active);

    const cEntityData* first = selected();
    const float onEntity[3] = {84, 0, 90};
    float pixel[2];
    ASSERT_TRUE(camera->projectToScreen(onEntity, pixel));
    click(camera, QPoint(qRound(pixel[0]), qRound(pixel[1])));
    EXPECT_EQ(selected(), first) << "no entity on an entity";
    click(camera, QPoint(middle.x(), 4));
    EXPECT_EQ(selected(), first) << "nor in the sky";
    trigger("ToolsGroup");
    click(camera, QPoint(qRound(pixel[0]), qRound(pixel[1])));
    EXPECT_STREQ(undoName(), "Group") << "nor on one of a group";
    trigger("EditUndo");
    trigger("EditUndo");
    choose("light");
    click(camera, middle);
    expectOrigin({100, 0, 64});
}

TEST_F(EntityToolTest, theMenuCreatesTheClassItNames) {
    choose("light");
    click(top, pixel(top, 32, 32));
    EXPECT_EQ(menuAt(top, pixel(top, -64, -64)), QString());
    EXPECT_EQ(menuAt(top, pixel(top, 33, 33)), QStringLiteral("Create"));
    EXPECT_EQ(action("EditCreate")->text(), QStringLiteral("Create light"));
    for (QAction* a : window->popupMenu("Create")->findChildren<QAction*>())
        if (a->text() == QLatin1String("info_start"))
            a->trigger();
    ASSERT_EQ(selectedEntities(), 1);
    EXPECT_STREQ(selected()->classname, "info_start");
    EXPECT_EQ(selected()->origin[2], 4) << "with its offset";
    EXPECT_EQ(classes()->currentText(), QStringLiteral("info_start"));
}

TEST_F(EntityToolTest, theYawIsRandomWhereTheDockSaysSo) {
    std::set<float> yaws;
    for (int i = 0; i < 8; ++i) {
        child<QCheckBox>(window.get(), "cbRandomYaw")->setChecked(i > 0);
        click(top, pixel(top, float(i * 16), 64));
        key(top, Qt::Key_Return);
        ASSERT_EQ(selectedEntities(), 1);
        EXPECT_TRUE(i > 0 || selected()->angles[1] == 0);
        yaws.insert(selected()->angles[1]);
    }
    EXPECT_GT(yaws.size(), 2u);
}

TEST_F(EntityToolTest, aGameWithoutPointClassesHasNoEntityTool) {
    toolAction(TOOL_SELECT)->trigger();
    project->dirty = false;
    ASSERT_TRUE(close());
    window.reset();
    write("test.fgd", "@SolidClass = worldspawn : \"World\" []\n");
    start();
    project = newProject();
    replies.expectBox(QMessageBox::Ok, "There are no point entities in current game data!\n"
                                       "Entity Tool is not available.");
    toolAction(TOOL_ENTITY)->trigger();
    EXPECT_TRUE(answered());
    EXPECT_EQ(window->currentToolId(), int(TOOL_BLOCK));
}

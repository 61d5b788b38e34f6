// SPDX-License-Identifier: MIT
// Clicks, rubber bands, menus, cursors and texts of the selection tool. Its drags stand in
// tSelectDragTests.cpp.
#include "gui/tToolTest.h"

class SelectToolTest : public cToolTest {};

static bool isPicked(const cBrushData* brush) {
    return (brush->flags & BF_SELECTED) != 0;
}

// ---- Clicks

TEST_F(SelectToolTest, aClickSelectsWhatIsUnderItAndEmptySpaceSelectsNothing) {
    cBrushData* other = addBrush({-96, 0, 0}, {-32, 64, 64});
    cBrushData* brush = pickCube();
    EXPECT_TRUE(isPicked(brush));
    EXPECT_TRUE(box().active);
    EXPECT_EQ(pane(2), QStringLiteral("solid with 6 faces."));
    EXPECT_EQ(pane(4), QStringLiteral("64w 64l 64h"));
    drag(top, pixel(top, -96, 32), pixel(top, -48, 80)); // a press that selects cannot drag
    EXPECT_TRUE(isPicked(other) && !isPicked(brush));
    expectBrush(other, {-96, 0, 0}, {-32, 64, 64});
    EXPECT_EQ(frame().handleMode, int(HANDLES_SCALE));
    click(top, pixel(top, -64, 32)); // inside its box: the next mode, and nothing picked
    EXPECT_TRUE(isPicked(other));
    EXPECT_EQ(frame().handleMode, int(HANDLES_ROTATE));
    for (const bool byEscape : {false, true}) {
        pick(brush);
        key(top, Qt::Key_Escape);
        EXPECT_EQ(selectedBrushes(), 1) << "unless it is told to";
        window->ClearSelectionOnEscape = byEscape;
        if (byEscape)
            key(top, Qt::Key_Escape);
        else
            click(top, pixel(top, 0, -90));
        EXPECT_EQ(selectedBrushes(), 0);
        EXPECT_FALSE(box().active || tool().overBox());
        EXPECT_EQ(pane(4), QString());
        EXPECT_EQ(frame().handleMode, int(HANDLES_SCALE));
    }
    EXPECT_FALSE(map().history->canUndo());
}

TEST_F(SelectToolTest, ctrlTakesInAndOut) {
    const cEntityData* light = addLight(-64, 0, 0);
    const cBrushData* brush = pickCube();
    pick(light->mins, light->maxs, Qt::ControlModifier);
    EXPECT_EQ(pane(4), QStringLiteral("136w 72l 72h"));
    click(top, pixel(top, 30, -80), Qt::ControlModifier); // nothing there: all stays
    EXPECT_EQ(selectedBrushes() + selectedEntities(), 2);
    pick(brush, Qt::ControlModifier);
    EXPECT_FALSE(isPicked(brush));
    EXPECT_EQ(selectedEntities(), 1);
    pick(light->mins, light->maxs, Qt::ControlModifier);
    EXPECT_EQ(selectedEntities(), 0);
    EXPECT_FALSE(box().active);
}

TEST_F(SelectToolTest, theCameraPicksTheNearestFace) {
    cBrushData* near = addBrush({100, -50, 0}, {150, 50, 100});
    cBrushData* far = addBrush({200, -200, 0}, {250, 200, 100});
    objectsAdded();
    cCanvas* camera = view(VIEW_CAMERA); // looks along x from x = -16
    const QPoint middle(camera->width() / 2, camera->height() / 2);
    click(camera, middle);
    EXPECT_TRUE(isPicked(near) && !isPicked(far));
    float edge[2];
    const float farPoint[3] = {200, 150, 64};
    ASSERT_TRUE(camera->projectToScreen(farPoint, edge));
    click(camera, QPoint(qRound(edge[0]), qRound(edge[1])), Qt::ControlModifier);
    EXPECT_TRUE(isPicked(near) && isPicked(far));
    click(camera, QPoint(middle.x(), 40));
    EXPECT_EQ(selectedBrushes(), 0) << "the sky";
}

// ---- Rubber band

class RubberBandTest : public cToolTest {
protected:
    void SetUp() override {
        cToolTest::SetUp();
        inside = addBrush({-64, -64, 1000}, {-32, -32, 1032}); // whatever its depth
        touched = addBrush({-16, -64, 0}, {80, -32, 32});      // its centre lies outside
        centred = addBrush({-128, -64, 0}, {-48, -32, 32});
        objectsAdded();
    }
    void drawBand(Qt::KeyboardModifiers modifiers = {}) {
        drag(top, pixel(top, -96, -96), pixel(top, 0, 0), modifiers);
    }
    std::string selected() const {
        return std::string(isPicked(inside) ? "i" : "-") + (isPicked(touched) ? "t" : "-") +
               (isPicked(centred) ? "c" : "-");
    }
    cBrushData* inside = nullptr;
    cBrushData* touched = nullptr;
    cBrushData* centred = nullptr;
};

TEST_F(RubberBandTest, enterAndTheSelectMenuSelectInThreeWays) {
    const struct {
        const char* command; // or Enter
        Qt::KeyboardModifiers modifiers;
        bool byHandles;
        const char* selected;
    } cases[] = {{nullptr, {}, false, "itc"},
                 {nullptr, Qt::ShiftModifier, false, "i--"},
                 {nullptr, {}, true, "i-c"},
                 {nullptr, Qt::ShiftModifier, true, "i-c"},
                 {nullptr, Qt::ShiftModifier | Qt::ControlModifier, false, "itc"},
                 {"EditSelTouch", {}, false, "itc"},
                 {"EditSelInside", {}, false, "i--"},
                 {"EditSelHandles", {}, false, "i-c"}};
    for (const auto& c : cases) {
        window->SelectByHandles = c.byHandles;
        drawBand();
        EXPECT_TRUE(frame().rubberBand);
        EXPECT_EQ(pane(4), QStringLiteral("96w 96l 0h"));
        EXPECT_EQ(selected(), "---");
        if (c.command)
            trigger(c.command);
        else
            key(top, Qt::Key_Return, c.modifiers);
        EXPECT_EQ(selected(), c.selected);
        EXPECT_FALSE(frame().rubberBand);
        click(top, pixel(top, 100, 60));
        EXPECT_EQ(selected(), "---");
    }
    EXPECT_FALSE(map().history->canUndo());
}

TEST_F(RubberBandTest, theTextTellsItsSizeWhileItIsDrawn) {
    dragTo(top, pixel(top, -96, -96), pixel(top, 32, 0));
    EXPECT_EQ(pane(4), QStringLiteral("128 x 96"));
    EXPECT_TRUE(tool().dragging());
    key(top, Qt::Key_Escape);
    EXPECT_FALSE(box().active);
    EXPECT_EQ(pane(4), QString());
    moveTo(top, pixel(top, 48, 0)); // the button is still held
    release(top, pixel(top, 48, 0));
    EXPECT_FALSE(box().active);
    EXPECT_EQ(selected(), "---");
}

TEST_F(RubberBandTest, autoSelectionNeedsNoEnter) {
    window->SelectAuto = true;
    drawBand(Qt::ShiftModifier);
    EXPECT_EQ(selected(), "i--");
    drag(top, pixel(top, 112, -96), pixel(top, 60, -40), Qt::ControlModifier);
    EXPECT_EQ(selected(), "it-") << "with Ctrl it adds";
    EXPECT_FALSE(map().history->canUndo());
}

TEST_F(RubberBandTest, withASelectionItNeedsCtrlAndNeverMovesWhatIsSelected) {
    click(top, pixel(top, 80, -48)); // touched
    EXPECT_EQ(selected(), "-t-");
    // A drag that leaves the press without an object deselects, so the press goes with Ctrl.
    drawBand(Qt::ControlModifier);
    EXPECT_TRUE(frame().rubberBand);
    EXPECT_EQ(selected(), "-t-");
    EXPECT_FALSE(map().history->canUndo());
    // The band is moved and widened by itself.
    drag(top, pixel(top, -50, -20), pixel(top, -18, -20));
    expectBounds(box().mins, box().maxs, {-64, -96, 16}, {32, 0, 16});
    drag(top, handle(top, BH_TOP), handle(top, BH_TOP) - QPoint(0, 32));
    EXPECT_FLOAT_EQ(box().maxs[1], 32);
    EXPECT_FALSE(map().history->canUndo());
    EXPECT_FALSE(touched->flags & BF_MOVING);
    key(top, Qt::Key_Escape);
    EXPECT_EQ(selected(), "-t-");
    expectBounds(box().mins, box().maxs, {-16, -64, 0}, {80, -32, 32});
}

// The key may mean something else with Alt.
TEST_F(RubberBandTest, altGivesItUpAndTheBoxGoesBackToTheSelection) {
    for (const bool automatic : {false, true}) {
        pick(touched);
        ASSERT_EQ(selected(), "-t-");
        window->SelectAuto = automatic;
        if (automatic) {
            drawBand(Qt::ControlModifier | Qt::AltModifier);
        } else {
            drawBand(Qt::ControlModifier);
            replies.expectBox(QMessageBox::Ok, "is still under development");
            key(top, Qt::Key_Return, Qt::AltModifier);
        }
        EXPECT_FALSE(frame().rubberBand);
        expectBounds(box().mins, box().maxs, {-16, -64, 0}, {80, -32, 32});
        drag(top, middleOf(top), middleOf(top) + QPoint(0, 16));
        expectBrush(touched, {-16, -80, 0}, {80, -48, 32});
        trigger("EditUndo");
        click(top, pixel(top, 100, 60));
    }
}

// ---- Menus

TEST_F(SelectToolTest, theMenuFollowsFromWhatIsUnderTheMouse) {
    const cBrushData* brush = addBrush({0, 0, 0}, {64, 64, 64});
    objectsAdded();
    cCanvas* camera = view(VIEW_CAMERA);
    const QPoint middle(camera->width() / 2, camera->height() / 2);
    EXPECT_EQ(menuAt(top, pixel(top, 32, 32)), QStringLiteral("Operations"));
    EXPECT_EQ(menuAt(camera, middle), QString());
    pick(brush);
    EXPECT_EQ(menuAt(top, pixel(top, 32, 32)), QStringLiteral("Selection"));
    EXPECT_EQ(menuAt(top, pixel(top, -64, 32)), QStringLiteral("Operations"));
    EXPECT_EQ(menuAt(camera, middle), QStringLiteral("Selection"));
    EXPECT_EQ(selectedBrushes(), 1);
    focus(top);
    click(top, pixel(top, -90, -90));
    drag(top, pixel(top, -96, -96), pixel(top, -32, -32));
    EXPECT_EQ(menuAt(top, pixel(top, -64, -64)), QStringLiteral("Select"));
    EXPECT_EQ(menuAt(top, pixel(top, 32, 32)), QStringLiteral("Operations"));
}

// ---- Cursors

TEST_F(SelectToolTest, clicksInTheBoxGoThroughTheModesAndTheCursorTells) {
    constexpr auto NONE = Qt::ArrowCursor, TURN = Qt::BitmapCursor;
    constexpr auto FALLING = Qt::SizeFDiagCursor, RISING = Qt::SizeBDiagCursor;
    constexpr auto ACROSS = Qt::SizeHorCursor, ALONG = Qt::SizeVerCursor;
    static const Qt::CursorShape shapes[HANDLES_MODES][8] = {
        // four corners, four sides
        {FALLING, RISING, RISING, FALLING, ACROSS, ACROSS, ALONG, ALONG},
        {TURN, TURN, TURN, TURN, NONE, NONE, NONE, NONE},
        {NONE, NONE, NONE, NONE, ALONG, ALONG, ACROSS, ACROSS},
        {FALLING, RISING, RISING, FALLING, ACROSS, ACROSS, ALONG, ALONG}};
    pickCube(-32);
    for (int mode = HANDLES_SCALE; mode < HANDLES_MODES; ++mode) {
        ASSERT_EQ(frame().handleMode, mode);
        for (int number = BH_TOP_LEFT; number <= BH_BOTTOM; ++number) {
            moveTo(top, pixel(top, 100, -90));
            moveTo(top, handle(top, number));
            EXPECT_EQ(top->cursor().shape(), shapes[mode][number - BH_TOP_LEFT])
                << "mode " << mode << " handle " << number;
        }
        approach(top, pixel(top, 0, 32));
        EXPECT_EQ(top->cursor().shape(), Qt::BitmapCursor) << "the cross inside the box";
        EXPECT_EQ(top->cursor().hotSpot(), QPoint(16, 15));
        click(top, pixel(top, 0, 32));
    }
    EXPECT_EQ(frame().handleMode, int(HANDLES_SCALE)) << "round again";
    click(top, pixel(top, 0, 32));
    addLight(-64, 0, 0);
    objectsAdded();
    click(top, pixel(top, -72, 0));
    EXPECT_EQ(frame().handleMode, int(HANDLES_SCALE)) << "another object starts anew";
    for (const int mode : {HANDLES_ROTATE, HANDLES_SHEAR, HANDLES_SCALE}) {
        click(top, pixel(top, -64, 0));
        EXPECT_EQ(frame().handleMode, mode) << "a point entity has no stretch";
    }
    window->CrosshairCursor = false;
    moveTo(top, pixel(top, 100, -90));
    moveTo(top, pixel(top, -64, 0));
    EXPECT_EQ(top->cursor().shape(), Qt::ArrowCursor);
}

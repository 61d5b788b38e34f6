// SPDX-License-Identifier: MIT
// Drags of the selection by its box and handles, in numbers: what the map holds after the
// release, and that undo takes it back.
#include "gui/tToolTest.h"

#include "support/tVec.h"

#include <QDoubleSpinBox>
#include <QRadioButton>
#include <array>

class SelectDragTest : public cToolTest {
protected:
    void setMode(int mode) {
        for (int i = 0; i < HANDLES_MODES && frame().handleMode != mode; ++i)
            click(top, middleOf(top));
        ASSERT_EQ(frame().handleMode, mode);
    }
    void pickBoth(const cBrushData* brush, const cEntityData* light) {
        objectsAdded();
        pick(brush);
        pick(light->mins, light->maxs, Qt::ControlModifier);
        ASSERT_EQ(frame().count, 2);
    }
    // Drags a handle so far outwards that its sides move by that much.
    void pull(int number, int by) {
        const uint32_t sides = handleSides(number, 0, 1);
        const QPoint way((sides & 1) ? -by : by, (sides & 2) ? by : -by);
        const QPoint from = handle(top, number);
        expectUndoable([&] { drag(top, from, from + way); });
    }
    // The left, lower, right and upper side: how far outwards a handle takes each.
    static std::array<float, 4> sidesMoved(int number, float by) {
        const uint32_t sides = handleSides(number, 0, 1);
        return {(sides & 1) ? by : 0, (sides & 2) ? by : 0, (sides & 8) ? by : 0,
                (sides & 16) ? by : 0};
    }
    static void expectNothingMoves(const cBrushData* brush) {
        EXPECT_FALSE(brush->flags & BF_MOVING);
        EXPECT_FALSE(brush->faces->flags & FF_MOVING);
    }
    // The bounds on one axis of those vertices whose coordinate on another one is at.
    static void expectSlice(const cBrushData* brush, int along, float at, int axis, float low,
                            float high) {
        float least = 1e9f, most = -1e9f;
        for (const cFaceData* face : facesOf(brush))
            for (int i = 0; i < face->vertexCount; ++i)
                if (std::fabs(face->vertices[i].xyz[along] - at) < 0.01f) {
                    least = std::min(least, face->vertices[i].xyz[axis]);
                    most = std::max(most, face->vertices[i].xyz[axis]);
                }
        EXPECT_NEAR(least, low, 0.01f);
        EXPECT_NEAR(most, high, 0.01f);
    }
};

// ---- Move

TEST_F(SelectDragTest, movesInEachView) {
    cBrushData* brush = addBrush({0, 0, 0}, {64, 64, 64});
    cEntityData* light = addLight(-40, 32, 32);
    pickBoth(brush, light);
    for (const int type : {VIEW_TOP, VIEW_FRONT, VIEW_SIDE}) {
        cCanvas* canvas = view(type);
        float mins[3], maxs[3], origin[3];
        vecCopy(brush->mins, mins);
        vecCopy(brush->maxs, maxs);
        vecCopy(light->origin, origin);
        const QPoint from = middleOf(canvas);
        expectUndoable([&] { drag(canvas, from, from + QPoint(32, -16)); });
        for (float* point : {mins, maxs, origin}) {
            point[canvas->axisH] += 32;
            point[canvas->axisV] += 16;
        }
        expectBrush(brush, {mins[0], mins[1], mins[2]}, {maxs[0], maxs[1], maxs[2]});
        for (int i = 0; i < 3; ++i)
            EXPECT_FLOAT_EQ(light->origin[i], origin[i]);
        EXPECT_STREQ(undoName(), "Transformation");
    }
}

TEST_F(SelectDragTest, theTextAndThePreviewGoWithTheMouseAndTheMapStays) {
    const cBrushData* brush = pickCube();
    window->SnapToGrid = false; // whole units
    const QPoint from = middleOf(top);
    dragTo(top, from, from + QPoint(16, 0));
    EXPECT_TRUE(brush->flags & BF_MOVING);
    EXPECT_EQ(pane(4), QString());
    settle();
    const uint64_t revision = map().revision();
    const int pictures = top->pictureCount();
    for (int i = 2; i < 6; ++i) {
        moveTo(top, from + QPoint(17 * i, 4));
        settle();
        EXPECT_FLOAT_EQ(box().mins[0], 17.0f * float(i));
    }
    EXPECT_EQ(map().revision(), revision);
    EXPECT_EQ(top->pictureCount(), pictures) << "a step draws over the kept picture";
    expectBrush(brush, {0, 0, 0}, {64, 64, 64});
    release(top, from + QPoint(85, 4));
    expectNothingMoves(brush);
    EXPECT_EQ(pane(4), QStringLiteral("64w 64l 64h"));
    // The first move lies a pixel lower than the press, and the drag counts from there.
    expectBrush(brush, {85, -3, 0}, {149, 61, 64});
}

TEST_F(SelectDragTest, aDragThatComesBackIsNoStep) {
    pickCube();
    const cMapState before = stateOf(map());
    for (int mode = HANDLES_SCALE; mode < HANDLES_MODES; ++mode) {
        setMode(mode);
        const QPoint from = mode == HANDLES_SHEAR ? handle(top, BH_TOP) : handle(top, BH_TOP_RIGHT);
        dragTo(top, from, from + QPoint(32, -32));
        moveTo(top, from);
        release(top, from);
        EXPECT_EQ(frame().handleMode, mode);
        expectBounds(box().mins, box().maxs, {0, 0, 0}, {64, 64, 64});
    }
    EXPECT_FALSE(map().history->canUndo());
    EXPECT_EQ(firstDifference(before, stateOf(map())), QString());
}

TEST_F(SelectDragTest, shiftAtTheReleaseClones) {
    cBrushData* brush = addBrush({0, 0, 0}, {64, 64, 64});
    cEntityData* light = addLight(-40, 32, 32);
    pickBoth(brush, light);
    const QPoint from = middleOf(top);
    // What undo removes was selected; what was selected before comes back unselected.
    expectUndoable(
        [&] {
            dragTo(top, from, from + QPoint(0, 80));
            release(top, from + QPoint(0, 80), Qt::ShiftModifier);
        },
        false);
    EXPECT_STREQ(undoName(), "Clone Objects");
    expectBrush(brush, {0, 0, 0}, {64, 64, 64});
    EXPECT_FALSE(brush->flags & BF_SELECTED);
    EXPECT_FLOAT_EQ(light->origin[1], 32);
    ASSERT_EQ(selectedBrushes(), 1);
    ASSERT_EQ(selectedEntities(), 1);
    expectBrush(map().data.selectedBrushes, {0, -80, 0}, {64, -16, 64});
    EXPECT_FLOAT_EQ(map().data.selectedEntities->origin[1], -48);
    // The drag inside the box counts until a plain click: a handle clones now, too.
    for (const char* step : {"Clone Objects", "Transformation"}) {
        const QPoint corner = handle(top, BH_BOTTOM_RIGHT);
        dragTo(top, corner, corner + QPoint(16, 16));
        release(top, corner + QPoint(16, 16), Qt::ShiftModifier);
        EXPECT_STREQ(undoName(), step);
        click(top, middleOf(top));
        setMode(HANDLES_SCALE);
    }
}

TEST_F(SelectDragTest, aDragOnNothingWithoutCtrlOnlyLetsTheViewFollow) {
    const cBrushData* brush = pickCube();
    const cMapState before = stateOf(map());
    const QPoint from = pixel(top, -64, -64);
    moveTo(top, from);
    press(top, from, Qt::ControlModifier); // takes nothing out
    moveTo(top, from + QPoint(1, 0));
    moveTo(top, from + QPoint(16, 0));
    const float offset = top->offsetX;
    moveTo(top, QPoint(-20, from.y())); // past the view's edge
    EXPECT_LT(top->offsetX, offset);
    EXPECT_FALSE(brush->flags & BF_MOVING);
    release(top, QPoint(-20, from.y()));
    EXPECT_FALSE(map().history->canUndo());
    EXPECT_EQ(firstDifference(before, stateOf(map())), QString());
    expectBounds(box().mins, box().maxs, {0, 0, 0}, {64, 64, 64});
}

TEST_F(SelectDragTest, aDragCountsFromTheBoxOfItsOwnDocument) {
    cBrushData* brush = pickCube();
    cProject* first = project;
    project = newProject();
    top = view(VIEW_TOP);
    top->zoomTo(1);
    focus(top);
    cBrushData* other = addBrush({-128, 32, 0}, {-32, 64, 16});
    objectsAdded();
    trigger("EditSelAll");
    window->setTool(TOOL_BLOCK);
    trigger("WindowPrev");
    settle();
    project = first;
    top = view(VIEW_TOP);
    focus(top);
    window->setTool(TOOL_SELECT);
    drag(top, middleOf(top), middleOf(top) + QPoint(64, 0));
    expectBrush(brush, {64, 0, 0}, {128, 64, 64});
    expectBrush(other, {-128, 32, 0}, {-32, 64, 16});
}

TEST_F(SelectDragTest, aPressAsksAnewWhatIsUnderAMouseAtRest) {
    cBrushData* brush = addBrush({-32, -32, 0}, {32, 32, 64});
    objectsAdded();
    const QPoint at = pixel(top, 0, 0);
    moveTo(top, at);
    trigger("EditSelAll");
    press(top, at);
    for (int i = 1; i <= 4; ++i)
        moveTo(top, at + QPoint(16 * i, 0));
    release(top, at + QPoint(64, 0));
    expectBrush(brush, {16, -32, 0}, {80, 32, 64}); // the first move begins the drag
}

TEST_F(SelectDragTest, aDragThatIsBrokenOffLeavesNothingBehind) {
    cBrushData* brush = addBrush({0, 0, 0}, {64, 64, 64});
    cEntityData* light = addLight(-40, 32, 32);
    newProject();
    trigger("WindowPrev");
    settle();
    focus(top);
    objectsAdded();
    window->ClearSelectionOnEscape = true;
    const struct {
        const char* what;
        std::function<void()> breakOff;
        std::function<void()> comeBack;
    } cases[] = {
        {"Escape", [&] { key(top, Qt::Key_Escape); }, [] {}},
        {"command", [&] { trigger("EditSelNone"); }, [] {}},
        {"tool", [&] { window->setTool(TOOL_BLOCK); }, [&] { window->toolSelect(); }},
        {"tool for a while", [&] { window->setTool(TOOL_MAGNIFY); }, [&] { window->toolSelect(); }},
        {"view", [&] { trigger("View2DYZ"); }, [&] { trigger("View2DXY"); }},
        {"document", [&] { trigger("WindowNext"); },
         [&] {
             trigger("WindowPrev");
             settle();
         }},
        {"undo", [&] { trigger("EditUndo"); }, [] {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const bool undoes = !strcmp(c.what, "undo");
        click(top, pixel(top, 120, -90));
        pickBoth(brush, light);
        if (undoes)
            drag(top, middleOf(top), middleOf(top) + QPoint(32, 0));
        const QPoint from = middleOf(top);
        dragTo(top, from, from + QPoint(32, 0));
        ASSERT_TRUE(brush->flags & BF_MOVING);
        c.breakOff();
        settle();
        expectNothingMoves(brush);
        EXPECT_FALSE(light->flags & EF_MOVING);
        moveTo(top, from + QPoint(48, 0)); // the button is still held
        release(top, from + QPoint(64, 0));
        c.comeBack();
        moveTo(top, from);
        EXPECT_FALSE(tool().dragging());
        expectNothingMoves(brush);
        expectBrush(brush, {0, 0, 0}, {64, 64, 64});
        if (selectedBrushes())
            expectBounds(box().mins, box().maxs, {-48, 0, 0}, {64, 64, 64});
        EXPECT_FALSE(map().history->canUndo());
        EXPECT_FALSE(project->boxes[TBX_BLOCK].active) << "the next tool gets nothing of the press";
    }
}

// ---- Scale

TEST_F(SelectDragTest, scalingPlacesPointEntitiesAndStopsAtOneUnit) {
    cBrushData* brush = addBrush({0, 0, 0}, {128, 64, 64});
    cEntityData* light = addLight(96, 32, 32);
    pickBoth(brush, light);
    QPoint from = handle(top, BH_RIGHT);
    dragTo(top, from, from - QPoint(64, 0));
    EXPECT_EQ(pane(4), QStringLiteral("64 x 64"));
    release(top, from - QPoint(64, 0));
    expectBrush(brush, {0, 0, 0}, {64, 64, 64});
    EXPECT_NEAR(light->origin[0], 48, 0.01f);
    EXPECT_NEAR(light->maxs[0] - light->mins[0], 16, 0.01f) << "its box keeps its size";
    click(top, pixel(top, 100, -90));
    pick(brush);
    from = handle(top, BH_RIGHT);
    dragTo(top, from, from - QPoint(160, 0));
    EXPECT_EQ(pane(4), QStringLiteral("1 x 64"));
    release(top, from - QPoint(160, 0));
    EXPECT_NEAR(brush->maxs[0] - brush->mins[0], 1, 0.01f);
}

// ---- Rotate

TEST_F(SelectDragTest, rotatesByHalfDegreesAndWithShiftByFifteenInEachView) {
    const cBrushData* brush = addBrush({-64, -32, -16}, {64, 32, 16});
    objectsAdded();
    pick(brush);
    setMode(HANDLES_ROTATE);
    const QPoint from = handle(top, BH_TOP_RIGHT); // the drag begins at 64, 32
    dragTo(top, from, pixel(top, 20, 80));         // at 75.96 degrees, begun at 26.57
    EXPECT_EQ(pane(4), QStringLiteral("49.0\u00b0"));
    moveTo(top, pixel(top, 35, 136), Qt::ShiftModifier);
    EXPECT_EQ(pane(4), QStringLiteral("45.0\u00b0"));
    window->Default15DegreeRotation = true;
    moveTo(top, pixel(top, 34, 136), Qt::ShiftModifier);
    EXPECT_EQ(pane(4), QStringLiteral("49.0\u00b0"));
    moveTo(top, pixel(top, -46, 90)); // at 117.07: past 90 by half a degree
    EXPECT_EQ(pane(4), QStringLiteral("90.0\u00b0"));
    release(top, pixel(top, -46, 90));
    EXPECT_EQ(frame().handleMode, int(HANDLES_ROTATE)) << "its own transform keeps the mode";
    expectBrush(brush, {-32, -64, -16}, {32, 64, 16});
    trigger("EditUndo");

    // From the first axis of the view to the second; the way is told by what lies off the middle.
    cBrushData* small = addBrush({32, 32, 32}, {64, 48, 48});
    addBrush({-64, -64, -64}, {0, 64, 64});
    objectsAdded();
    trigger("EditSelAll");
    setMode(HANDLES_ROTATE);
    for (const int type : {VIEW_TOP, VIEW_FRONT, VIEW_SIDE}) {
        cCanvas* canvas = view(type);
        const int h = canvas->axisH, v = canvas->axisV;
        const float low = small->mins[h], high = small->maxs[h];
        const QPoint corner = handle(canvas, BH_TOP_RIGHT);
        expectUndoable([&] { drag(canvas, corner, pixel(canvas, -72, 65)); });
        EXPECT_NEAR(small->mins[v], low, 0.01f) << type;
        EXPECT_NEAR(small->maxs[v], high, 0.01f) << type;
        EXPECT_LT(small->maxs[h], 0) << type;
        trigger("EditUndo");
    }
}

// ---- Shear

TEST_F(SelectDragTest, eachEdgeShears) {
    cBrushData* brush = addBrush({-32, -32, 0}, {32, 32, 32});
    objectsAdded();
    pick(brush);
    const struct {
        int handle;
        int along; // the axis of the two sides, of which the upper or lower one is moved
        float moved;
        const char* text;
    } cases[] = {{BH_LEFT, 0, -32, "shear: -48"},
                 {BH_RIGHT, 0, 32, "shear: 48"},
                 {BH_TOP, 1, 32, "shear: 48"},
                 {BH_BOTTOM, 1, -32, "shear: -48"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.handle);
        setMode(HANDLES_SHEAR);
        const QPoint from = handle(top, c.handle);
        expectUndoable([&] {
            dragTo(top, from, from + QPoint(48, -48));
            EXPECT_EQ(pane(4), QString::fromLatin1(c.text));
            release(top, from + QPoint(48, -48));
            EXPECT_EQ(frame().handleMode, int(HANDLES_SHEAR));
        });
        const int axis = 1 - c.along;
        expectSlice(brush, c.along, c.moved, axis, 16, 80);
        expectSlice(brush, c.along, -c.moved, axis, -32, 32);
        EXPECT_FLOAT_EQ(brush->maxs[2], 32);
        trigger("EditUndo");
    }
}

// ---- Stretch

class StretchTest : public SelectDragTest {
protected:
    void SetUp() override {
        cToolTest::SetUp();
        wide = addBrush({-64, -32, 0}, {0, 32, 64});
        narrow = addBrush({32, 0, 0}, {64, 32, 64});
        objectsAdded();
        pick(wide);
        pick(narrow, Qt::ControlModifier);
        setMode(HANDLES_STRETCH);
    }
    cBrushData* wide = nullptr;
    cBrushData* narrow = nullptr;
};

TEST_F(StretchTest, eachHandleScalesTheBoxOrStretchesEachObject) {
    for (const int mode : {HANDLES_STRETCH, HANDLES_SCALE}) {
        setMode(mode);
        for (int number = BH_TOP_LEFT; number <= BH_BOTTOM; ++number) {
            SCOPED_TRACE(testing::Message() << "mode " << mode << " handle " << number);
            const auto out = sidesMoved(number, 16);
            pull(number, 16);
            expectBounds(box().mins, box().maxs, {-64 - out[0], -32 - out[1], 0},
                         {64 + out[2], 32 + out[3], 64});
            EXPECT_EQ(frame().handleMode, mode);
            if (mode == HANDLES_STRETCH) {
                expectBrush(wide, {-64 - out[0], -32 - out[1], 0}, {out[2], 32 + out[3], 64});
                expectBrush(narrow, {32 - out[0], -out[1], 0}, {64 + out[2], 32 + out[3], 64});
            }
            trigger("EditUndo");
        }
    }
}

TEST_F(StretchTest, stopsBeforeAFaceIsThinnerThanTheGridOnThatAxisAlone) {
    const QPoint from = handle(top, BH_BOTTOM_LEFT);
    dragTo(top, from, from + QPoint(16, 16)); // the narrow one is a grid step wide now
    moveTo(top, from + QPoint(32, 32));
    EXPECT_FLOAT_EQ(box().mins[0], -48);
    EXPECT_FLOAT_EQ(box().mins[1], -64);
    release(top, from + QPoint(32, 32));
    expectBrush(wide, {-48, -64, 0}, {0, 32, 64});
    expectBrush(narrow, {48, -32, 0}, {64, 32, 64});
}

// ---- Commands

class TransformCommandTest : public SelectDragTest {
protected:
    void SetUp() override {
        cToolTest::SetUp();
        left = addBrush({-64, -32, 0}, {-32, 32, 64});
        right = addBrush({16, 5, 3}, {80, 37, 35});
        objectsAdded();
        pick(left);
        pick(right, Qt::ControlModifier);
    }
    cBrushData* left = nullptr;
    cBrushData* right = nullptr;
};

TEST_F(TransformCommandTest, flipsAndAlignsOnTheAxesOfTheView) {
    struct {
        const char* command;
        const char* step;
        std::initializer_list<float> leftMins, rightMins;
    } const cases[] = {
        {"ToolsFlipH", "Flip Selection", {48, -32, 0}, {-64, 5, 3}},
        {"ToolsFlipV", "Flip Selection", {-64, -27, 0}, {16, -32, 3}},
        {"ToolsAlignL", "Align Selection", {-64, -32, 0}, {-64, 5, 3}},
        {"ToolsAlignR", "Align Selection", {48, -32, 0}, {16, 5, 3}},
        {"ToolsAlignT", "Align Selection", {-64, -27, 0}, {16, 5, 3}},
        {"ToolsAlignB", "Align Selection", {-64, -32, 0}, {16, -32, 3}},
        {"ToolsSnapSel", "Snap to Grid", {-64, -32, 0}, {16, 5, 3}},
        {"ToolsSnapSel2", "Snap to Grid", {-64, -32, 0}, {16, 0, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.command);
        trigger(c.command);
        EXPECT_STREQ(undoName(), c.step);
        for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(left->mins[i], c.leftMins.begin()[i], 0.01f) << "left " << i;
            EXPECT_NEAR(right->mins[i], c.rightMins.begin()[i], 0.01f) << "right " << i;
        }
        EXPECT_FLOAT_EQ(box().mins[0], std::min(left->mins[0], right->mins[0]));
        trigger("EditUndo");
    }
    view(VIEW_CAMERA)->activate();
    trigger("ToolsFlipH"); // a camera view has no such axes: the 2D view used last
    EXPECT_NEAR(right->mins[0], -64, 0.01f);
    trigger("EditUndo");
    top->setViewType(VIEW_CAMERA);
    view(VIEW_SIDE)->setViewType(VIEW_CAMERA);
    view(VIEW_FRONT)->setViewType(VIEW_CAMERA);
    trigger("ToolsFlipH");
    trigger("ToolsAlignL");
    EXPECT_FALSE(map().history->canUndo()) << "no 2D view, no axes";
}

TEST_F(TransformCommandTest, theDialogTurnsScalesAndMoves) {
    static const char* const spinBoxes[] = {"sbX", "sbY", "sbZ"};
    struct {
        const char* mode;
        double values[3];
        std::initializer_list<float> mins, maxs; // of right; the selection is -64 -32 0 to 80 37 64
    } const cases[] = {
        {"rbMove", {16, -8, 4}, {32, -3, 7}, {96, 29, 39}},
        {"rbScale", {2, 0, 1}, {24, 5, 3}, {152, 37, 35}},
        {"rbRotate", {0, 0, 90}, {-26.5f, 10.5f, 3}, {5.5f, 74.5f, 35}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.mode);
        replies.expect([&c](QWidget* dialog) {
            EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Transformation"));
            EXPECT_TRUE(child<QRadioButton>(dialog, "rbRotate")->isChecked());
            child<QRadioButton>(dialog, c.mode)->setChecked(true);
            for (int i = 0; i < 3; ++i)
                child<QDoubleSpinBox>(dialog, spinBoxes[i])->setValue(c.values[i]);
            qobject_cast<QDialog*>(dialog)->accept();
        });
        expectUndoable([&] { trigger("ToolsTransform"); });
        EXPECT_STREQ(undoName(), "Transformation");
        expectBrush(right, c.mins, c.maxs);
        trigger("EditUndo");
    }
    replies.expectCancel();
    trigger("ToolsTransform");
    EXPECT_FALSE(map().history->canUndo());
    trigger("EditSelNone");
    replies.expectBox(QMessageBox::Ok, "You must select some objects before");
    trigger("ToolsTransform");
}

TEST_F(TransformCommandTest, centresTheViewsOnTheFirstBoxInUse) {
    trigger("ViewCenterSel");
    static constexpr float WHOLE_PIXELS = 1;
    EXPECT_NEAR(top->offsetX, 8, WHOLE_PIXELS);
    EXPECT_NEAR(top->offsetY, -2.5f, WHOLE_PIXELS);
    EXPECT_NEAR(view(VIEW_SIDE)->offsetY, -32, WHOLE_PIXELS);
}

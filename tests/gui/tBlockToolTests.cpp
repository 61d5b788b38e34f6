// SPDX-License-Identifier: MIT
// The block tool with the mouse, the primitives by the New Objects dock, the arch by its dialog.
#include "dialogs/tArchPreview.h"
#include "gui/tToolTest.h"
#include "support/tColors.h"
#include "tools/tToolBlock.h"
#include "views/tOverlay.h"

#include <QComboBox>
#include <QSpinBox>

namespace {
// Draws last, so it sees what the others drew.
class cGrabTool : public cTool {
public:
    void drawOverlay(cCanvas* canvas, const cViewInfo&, cOverlay& overlay) override {
        overlay.flush();
        image = canvas->grabFrameBuffer().scaled(canvas->size());
    }
    QImage image;
};
} // namespace

class BlockToolTest : public cToolTest {
protected:
    void SetUp() override {
        cToolTest::SetUp();
        toolAction(TOOL_BLOCK)->trigger();
    }

    cSelectionBox& block() const { return project->boxes[TBX_BLOCK]; }
    QComboBox* list(const char* name) const { return child<QComboBox>(window.get(), name); }
    QSpinBox* faces() const { return child<QSpinBox>(window.get(), "sbFaces"); }
    void choose(const char* primitive) const {
        list("lstObjects")->setCurrentText(QString::fromLatin1(primitive));
        ASSERT_EQ(list("lstObjects")->currentText(), QString::fromLatin1(primitive));
    }
    void dragBox(cCanvas* canvas, float h0, float v0, float h1, float v1) {
        drag(canvas, pixel(canvas, h0, v0), pixel(canvas, h1, v1));
    }
    QPoint handleOf(cCanvas* canvas, int number) const {
        float point[3];
        block().handlePoint(canvas->axisH, canvas->axisV, number, point);
        const QPoint way(number == BH_RIGHT ? 6 : 0, number == BH_BOTTOM ? 6 : 0);
        return pixel(canvas, point[canvas->axisH], point[canvas->axisV]) + way;
    }
    const cBrushData* selectedBrush() const { return map().data.selectedBrushes; }
};

TEST_F(BlockToolTest, aPressAsksAnewWhatIsUnderAMouseAtRest) {
    static constexpr float mins[3] = {-32, -32, 0}, maxs[3] = {32, 32, 64};
    const QPoint at = pixel(top, 0, 0);
    moveTo(top, at);
    block().setFromTwoPoints(mins, maxs);
    press(top, at);
    moveTo(top, at + QPoint(1, 0));
    moveTo(top, at + QPoint(33, 0));
    EXPECT_FLOAT_EQ(block().mins[0], 0);
    window->setTool(TOOL_CAMERA); // in the midst of it
    EXPECT_FALSE(
        static_cast<cToolBlock*>(window->toolSwitch().tools[TOOL_BLOCK].get())->dragging());
    moveTo(top, at + QPoint(97, 0));
    window->setTool(TOOL_BLOCK);
    moveTo(top, at + QPoint(65, 0)); // still held
    release(top, at + QPoint(65, 0));
    EXPECT_FLOAT_EQ(block().mins[0], 0) << "its rest does nothing";
}

TEST_F(BlockToolTest, enterMakesABlockOfExactlyTheBoxInEveryView) {
    for (const int type : {VIEW_TOP, VIEW_FRONT, VIEW_SIDE}) {
        cCanvas* canvas = view(type);
        const int h = canvas->axisH, v = canvas->axisV, depth = canvas->axisDepth;
        dragBox(canvas, -64, -32, 48, 64);
        ASSERT_TRUE(block().active) << type;
        float mins[3], maxs[3];
        mins[h] = -64, maxs[h] = 48, mins[v] = -32, maxs[v] = 64;
        mins[depth] = block().mins[depth], maxs[depth] = mins[depth] + 64;
        project->setDirty(false);
        expectUndoable([&] { key(canvas, Qt::Key_Return); }, false);
        EXPECT_STREQ(undoName(), "Create Block");
        ASSERT_EQ(selectedBrushes(), 1);
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(selectedBrush()->mins[i], mins[i]) << type;
            EXPECT_EQ(selectedBrush()->maxs[i], maxs[i]) << type;
        }
        EXPECT_TRUE(project->dirty);
        EXPECT_FALSE(block().active);
        EXPECT_EQ(window->currentToolId(), int(TOOL_BLOCK));
    }
}

TEST_F(BlockToolTest, aDragOutsideTheBoxLeavesItAndOneInsideMovesIt) {
    dragBox(top, 0, 0, 64, 64);
    EXPECT_EQ(pane(4), QStringLiteral("64w 64l 64h"));
    drag(top, pixel(top, -96, -96), pixel(top, -32, -32));
    expectBounds(block().mins, block().maxs, {0, 0, 0}, {64, 64, 64});
    drag(top, pixel(top, 32, 32), pixel(top, 64, 16));
    expectBounds(block().mins, block().maxs, {32, -16, 0}, {96, 48, 64});
    approach(top, pixel(top, 64, 16));
    EXPECT_EQ(
        top->cursor().pixmap().cacheKey(),
        window->toolCursor(window->CrosshairCursor ? TC_CROSS : TC_BRUSH).pixmap().cacheKey());
}

TEST_F(BlockToolTest, handlesChangeOneSideAndAnotherViewTheDepth) {
    dragBox(top, 0, 0, 64, 64);
    QPoint at = handleOf(top, BH_RIGHT);
    drag(top, at, at + QPoint(32, 0));
    expectBounds(block().mins, block().maxs, {0, 0, 0}, {96, 64, 64});
    cCanvas* side = view(VIEW_SIDE);
    at = handleOf(side, BH_BOTTOM);
    drag(side, at, at + QPoint(0, 16));
    toolAction(TOOL_MAGNIFY)->trigger(); // a tool for a while keeps the box
    toolAction(TOOL_BLOCK)->trigger();
    key(top, Qt::Key_Enter);
    ASSERT_EQ(selectedBrushes(), 1);
    expectBrush(selectedBrush(), {0, 0, -16}, {96, 64, 64});
}

TEST_F(BlockToolTest, escapeDropsTheBoxThenTheSelection) {
    window->ClearSelectionOnEscape = true;
    dragBox(top, 0, 0, 64, 64);
    key(top, Qt::Key_Return);
    dragTo(top, pixel(top, -96, 0), pixel(top, -32, 64));
    ASSERT_TRUE(block().active);
    key(top, Qt::Key_Escape);
    EXPECT_FALSE(block().active);
    EXPECT_EQ(pane(4), QString());
    moveTo(top, pixel(top, 0, 96));
    release(top, pixel(top, 0, 96));
    EXPECT_FALSE(block().active) << "the rest of the drag is void";
    EXPECT_EQ(selectedBrushes(), 1);
    key(top, Qt::Key_Escape);
    EXPECT_EQ(selectedBrushes(), 0);
    dragBox(top, -96, 0, -32, 64);
    EXPECT_TRUE(block().active) << "the next drag counts";
}

TEST_F(BlockToolTest, theMenuCreatesInsideABoxThatIsNotEmpty) {
    drag(top, pixel(top, 0, 0), pixel(top, 0, 64));
    ASSERT_TRUE(block().active);
    replies.expectBox(QMessageBox::Ok, "The box is empty.");
    key(top, Qt::Key_Return);
    EXPECT_TRUE(answered());
    EXPECT_FALSE(block().active || map().history->canUndo());
    dragBox(top, 0, 0, 64, 64);
    EXPECT_EQ(menuAt(top, pixel(top, -80, -80)), QString());
    EXPECT_EQ(menuAt(top, pixel(top, 32, 32)), QStringLiteral("Create"));
    EXPECT_EQ(visibleEntries(window->popupMenu("Create")),
              QStringList(QStringLiteral("Create &Object")));
    trigger("EditCreate");
    EXPECT_EQ(selectedBrushes(), 1);
}

TEST_F(BlockToolTest, sizesStandBelowAndBesideTheBoxWhileWanted) {
    dragBox(top, -64, -64, 48, 64);
    approach(top, pixel(top, -96, -96));
    QImage pictures[2];
    for (const bool wanted : {false, true}) {
        window->DrawSizingInfo = wanted;
        cGrabTool grab;
        window->suspendedTool = window->currentTool;
        window->currentTool = &grab;
        top->requestRedraw(true);
        window->currentTool = window->suspendedTool;
        window->suspendedTool = nullptr;
        ASSERT_EQ(grab.image.size(), top->size());
        pictures[wanted] = grab.image;
    }
    // The middles of the two brackets, six pixels off the sides; the box hides none of them.
    for (const QPoint& at : {pixel(top, -8, -64) + QPoint(0, 6), pixel(top, 48, 0) + QPoint(6, 0)})
        EXPECT_NE(pictures[0].pixel(at), pictures[1].pixel(at));
    const QPoint inside = pixel(top, -8, 0);
    EXPECT_EQ(pictures[0].pixel(inside), pictures[1].pixel(inside));
}

// ---- The dock

TEST_F(BlockToolTest, theDockListsWhatTheToolMakes) {
    const auto objects = [this] {
        QStringList names;
        for (int i = 0; i < list("lstObjects")->count(); ++i)
            names.append(list("lstObjects")->itemText(i));
        return names.join(QLatin1Char(' '));
    };
    EXPECT_EQ(list("lstCategories")->count(), 2);
    EXPECT_EQ(list("lstCategories")->currentText(), QStringLiteral("(primitives)"));
    EXPECT_EQ(objects(), QStringLiteral("block wedge cylinder spike arch"));
    EXPECT_FALSE(faces()->isEnabled());
    choose("cylinder");
    EXPECT_TRUE(faces()->isEnabled());
    EXPECT_EQ(faces()->value(), 8);
    faces()->setValue(1);
    EXPECT_EQ(faces()->value(), 3);
    faces()->setValue(1000);
    EXPECT_EQ(faces()->value(), 128);
    choose("spike");
    EXPECT_EQ(faces()->value(), 4);
    choose("cylinder");
    EXPECT_EQ(faces()->value(), 128);

    toolAction(TOOL_ENTITY)->trigger();
    EXPECT_EQ(list("lstCategories")->currentText(), QStringLiteral("(entities)"));
    EXPECT_EQ(objects(), QStringLiteral("info_start light"));
    EXPECT_FALSE(faces()->isEnabled());
    toolAction(TOOL_SELECT)->trigger();
    EXPECT_EQ(list("lstCategories")->currentText(), QStringLiteral("(no category)"));
    EXPECT_FALSE(list("lstCategories")->isEnabled() || list("lstObjects")->isEnabled());
    toolAction(TOOL_BLOCK)->trigger();
    EXPECT_EQ(list("lstObjects")->currentText(), QStringLiteral("cylinder")) << "kept";
}

TEST_F(BlockToolTest, theListDecidesWhatBecomesOfTheBox) {
    const struct {
        const char* name;
        int sides;
        int faces;
        const char* step;
    } cases[] = {{"wedge", 0, 5, "Create Wedge"},
                 {"cylinder", 5, 7, "Create Cylinder"},
                 {"spike", 6, 7, "Create Spike"},
                 {"block", 0, 6, "Create Block"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        choose(c.name);
        if (c.sides)
            faces()->setValue(c.sides);
        dragBox(top, -64, -64, 64, 64);
        expectUndoable([&] { key(top, Qt::Key_Return); }, false);
        EXPECT_STREQ(undoName(), c.step);
        ASSERT_EQ(selectedBrushes(), 1);
        EXPECT_EQ(countOf(facesOf(selectedBrush())), c.faces);
    }
}

// The axis that the base of a cylinder faces.
static int axisOfBase(const cBrushData* brush, int sides) {
    for (const cFaceData* face : facesOf(brush))
        if (face->vertexCount == sides)
            return face->planeType;
    return -1;
}

TEST_F(BlockToolTest, primitivesStandUprightUnlessTheyTurnToTheView) {
    choose("cylinder");
    for (const bool turned : {false, true}) {
        window->ReorientPrimitives = turned;
        for (const int type : {VIEW_TOP, VIEW_FRONT, VIEW_SIDE}) {
            cCanvas* canvas = view(type);
            dragBox(canvas, -64, -64, 64, 64);
            key(canvas, Qt::Key_Return);
            ASSERT_EQ(selectedBrushes(), 1);
            EXPECT_EQ(axisOfBase(selectedBrush(), 8), turned ? canvas->axisDepth : 2) << type;
        }
    }
}

TEST_F(BlockToolTest, plugInsBringTheirOwn) {
    list("lstCategories")->setCurrentText(QStringLiteral("Test shapes"));
    EXPECT_EQ(list("lstObjects")->currentText(), QStringLiteral("shape"));
    EXPECT_EQ(faces()->value(), 5);
    faces()->setValue(7);
    window->StretchArches = false;
    dragBox(top, 0, 0, 64, 64);
    key(top, Qt::Key_Return);
    EXPECT_TRUE(
        console().contains(QStringLiteral("shape of 7 on 012, flags 3, texture notexture")));
    EXPECT_FALSE(project->dirty) << "it made nothing";
    EXPECT_FALSE(block().active);
}

// ---- The arch

TEST_F(BlockToolTest, theArchIsMadeAsItsDialogSays) {
    choose("arch");
    dragBox(top, -64, -64, 64, 64);
    replies.expect([this](QWidget* dialog) {
        EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Arch Properties"));
        const auto spin = [&](const char* name) { return child<QSpinBox>(dialog, name); };
        const auto* slope = child<QCheckBox>(dialog, "cbSmoothSlope");
        EXPECT_EQ(spin("sbWidth")->maximum(), 64);
        EXPECT_EQ(spin("sbWidth")->value(), 32);
        EXPECT_FALSE(slope->isEnabled());
        spin("sbHeight")->setValue(8);
        EXPECT_TRUE(slope->isEnabled());
        spin("sbWidth")->setValue(16);
        spin("sbSides")->setValue(6);
        child<QPushButton>(dialog, "btnCircle")->click();
        EXPECT_EQ(spin("sbArc")->value(), 360);
        finish(dialog, QDialogButtonBox::Ok);
    });
    expectUndoable(
        [&] {
            key(top, Qt::Key_Return);
            EXPECT_TRUE(answered());
        },
        false);
    focus(top);
    EXPECT_STREQ(undoName(), "Create Arch");
    EXPECT_EQ(selectedBrushes(), 6);
    EXPECT_TRUE(selectedBrush()->group) << "one group of all";

    dragBox(view(VIEW_SIDE), 96, 0, 112, 64);
    replies.expect([this](QWidget* dialog) {
        EXPECT_EQ(child<QSpinBox>(dialog, "sbSides")->value(), 6) << "kept";
        EXPECT_EQ(child<QSpinBox>(dialog, "sbWidth")->maximum(), 8);
        finish(dialog, QDialogButtonBox::Cancel);
    });
    const cMapState before = stateOf(map());
    key(view(VIEW_SIDE), Qt::Key_Return);
    EXPECT_TRUE(answered());
    EXPECT_EQ(firstDifference(before, stateOf(map())), QString());
    EXPECT_FALSE(block().active);
}

TEST_F(BlockToolTest, theArchPreviewFollowsItsValues) {
    cArchPreview preview;
    preview.resize(101, 101);
    cArchShape shape;
    shape.sides = 36;
    shape.width = 16;
    const QPoint out[] = {{1, 0}, {0, 1}, {-1, 0}}; // at 90, 180 and 270 degrees
    const struct {
        int arc;
        int start;
        bool drawn[3];
    } cases[] = {{160, 0, {true, false, false}},
                 {180, 100, {false, true, true}},
                 {360, 0, {true, true, true}}};
    for (const auto& c : cases) {
        shape.arc = c.arc;
        shape.start = c.start;
        preview.setShape(shape, 64);
        const QImage image = preview.grab().toImage().scaled(preview.size());
        for (int i = 0; i < 3; ++i)
            for (const int radius : {49, 25}) { // the outer and the inner outline
                bool drawn = false;
                for (int off = -1; off <= 1; ++off) // lines are a pixel wide
                    drawn |= qGray(image.pixel(QPoint(50, 50) + out[i] * (radius + off))) > 100;
                EXPECT_EQ(drawn, c.drawn[i]) << c.arc << ' ' << c.start << ' ' << i;
            }
        EXPECT_EQ(qGray(image.pixel(50, 50)), 0) << "the hole";
    }
}

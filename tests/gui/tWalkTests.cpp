// SPDX-License-Identifier: MIT
// A user who does anything, by mouse and by command, and goes back and forth: every state on the
// way is the one that was there before.
#include "gui/tToolTest.h"

#include "support/tLaw.h"
#include "support/tRandomWalk.h"

#include <random>

class WalkTest : public cToolTest {
protected:
    int number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(m_random); }
    bool chance(int oneIn) { return number(1, oneIn) == 1; }
    float coordinate() { return float(number(-10, 10) * GRID); }

    void build(unsigned seed) {
        m_random.seed(seed);
        for (int i = 0; i < 12; ++i) {
            const float x = coordinate(), y = coordinate(), z = coordinate();
            addBrush({x, y, z}, {x + 48, y + 32, z + 64});
        }
        for (int i = 0; i < 4; ++i)
            addLight(coordinate(), coordinate(), coordinate());
        cEntityData* door = addSolidEntity();
        const float mins[3] = {0, 0, 0}, maxs[3] = {64, 16, 96};
        addBox(map(), door, mins, maxs);
        updateEntity(door, 0);
        objectsAdded();
        m_states = {stateOf(map(), false)};
    }

    cCanvas* anyView() {
        static constexpr int types[] = {VIEW_TOP, VIEW_FRONT, VIEW_SIDE};
        cCanvas* canvas = view(types[number(0, 2)]);
        focus(canvas);
        return canvas;
    }

    // A click on the caption opens a menu.
    static bool isOnMap(const cCanvas* canvas, const QPoint& at) {
        return canvas->rect().contains(at) && !canvas->captionRect.contains(at);
    }

    // ---- What a user may do

    void clickSomething() {
        cCanvas* canvas = anyView();
        const cBrushData* brush = map().world()->brushes;
        if (!brush)
            return;
        for (int i = number(0, countOf(brushesOf(map().world())) - 1); i > 0; --i)
            brush = brush->next;
        const int h = canvas->axisH, v = canvas->axisV;
        const QPoint at = pixel(canvas, brush->mins[h], (brush->mins[v] + brush->maxs[v]) / 2);
        if (isOnMap(canvas, at))
            click(canvas, at, chance(2) ? Qt::ControlModifier : Qt::NoModifier);
    }

    void bandSomething() {
        cCanvas* canvas = anyView();
        const QPoint from = pixel(canvas, coordinate(), coordinate());
        const QPoint by(number(40, 120), number(-120, -40));
        if (!isOnMap(canvas, from))
            return;
        drag(canvas, from, from + by, Qt::ControlModifier);
        key(canvas, Qt::Key_Return, chance(2) ? Qt::ShiftModifier : Qt::NoModifier);
    }

    void dragSelection() {
        if (!box().active || !map().hasSelection())
            return;
        cCanvas* canvas = anyView();
        const bool onHandle = chance(2);
        const int handles = frame().handleMode == 2 ? number(5, 8) : number(1, 4);
        const QPoint from = onHandle ? handle(canvas, handles) : middleOf(canvas);
        if (!isOnMap(canvas, from))
            return;
        const QPoint by(number(-2, 2) * GRID, number(-2, 2) * GRID);
        if (chance(4))
            return breakDragOff(canvas, from, by);
        drag(canvas, from, from + by, chance(4) ? Qt::ShiftModifier : Qt::NoModifier);
    }

    void breakDragOff(cCanvas* canvas, const QPoint& from, const QPoint& by) {
        const int how = number(0, 2);
        dragTo(canvas, from, from + by);
        if (how == 0) {
            key(canvas, Qt::Key_Escape);
        } else if (how == 1) {
            window->setTool(TOOL_CAMERA);
            window->setTool(TOOL_SELECT);
        } else {
            trigger("EditSelNone");
        }
        release(canvas, from + by);
    }

    void command() {
        static constexpr const char* commands[] = {
            "ToolsFlipH",   "ToolsFlipV",   "ToolsAlignL",   "ToolsAlignR",  "ToolsAlignT",
            "ToolsAlignB",  "ToolsSnapSel", "ToolsSnapSel2", "ToolsGroup",   "ToolsUngroup",
            "ToolsToWorld", "ToolsIG",      "EditSelNone",   "ToolsTexLock", "EditDelete"};
        const char* id = commands[number(0, int(std::size(commands)) - 1)];
        const bool isDelete = !strcmp(id, "EditDelete");
        if (isDelete && selectedBrushes() + selectedEntities() > 3)
            return; // something is to be left
        if (action(id)->isEnabled())
            trigger(id);
    }

    void step() {
        const uint32_t before = map().history->lastStep();
        const int what = number(0, 9);
        if (what == 9)
            return backOrForth();
        if (what < 3)
            clickSomething();
        else if (what < 4)
            bandSomething();
        else if (what < 7)
            dragSelection();
        else
            command();
        if (map().history->lastStep() != before) {
            m_states.resize(++m_at);
            m_states.push_back(stateOf(map(), false));
        }
        compare("do");
        expectBoxOfSelection();
    }

    void expectBoxOfSelection() {
        cSelectionBox want;
        uint32_t flags = 0;
        const auto take = [&](const auto& objects) {
            for (const auto* object : objects) {
                want.addPoint(object->mins);
                want.addPoint(object->maxs);
                flags |= object->flags;
            }
        };
        take(selectedEntitiesOf(map().data));
        take(selectedBrushesOf(map().data));
        ASSERT_FALSE(flags & (EF_MOVING | BF_MOVING));
        ASSERT_EQ(box().active, want.active);
        for (int i = 0; i < 3; ++i) {
            ASSERT_FLOAT_EQ(box().mins[i], want.mins[i]);
            ASSERT_FLOAT_EQ(box().maxs[i], want.maxs[i]);
        }
    }

    // ---- Back and forth

    void compare(const char* what) {
        const QString difference = firstDifference(m_states[m_at], stateOf(map(), false));
        ASSERT_EQ(difference, QString()) << what << " to state " << m_at;
        ASSERT_EQ(checkMapWhole(map()), QString()) << what << " to state " << m_at;
    }

    void go(const char* command, int by) {
        trigger(command);
        m_at += size_t(by);
        compare(command);
    }
    void back() { go("EditUndo", -1); }
    void forth() { go("EditRedo", 1); }

    void backOrForth() {
        if (chance(2) && m_at > 0)
            back();
        else if (m_at + 1 < m_states.size())
            forth();
    }

    std::mt19937 m_random;
    std::vector<cMapState> m_states;
    size_t m_at = 0;
};

TEST_F(WalkTest, everyStateComesBackThroughTheEditMenu) {
    constexpr size_t STEPS = 40;
    constexpr int TRIES = 400;
    const unsigned seed = firstWalkSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    build(seed);
    for (int i = 0; i < TRIES && m_at < STEPS && !HasFailure(); ++i)
        step();
    EXPECT_GT(m_states.size(), 10u);
    EXPECT_EQ(action("EditUndo")->text(),
              m_at > 0 ? QStringLiteral("&Undo %1").arg(QString::fromLatin1(undoName()))
                       : QStringLiteral("Can't undo"));
    while (m_at > 0 && !HasFailure())
        back();
    EXPECT_EQ(action("EditUndo")->text(), QStringLiteral("Can't undo"));
    while (m_at + 1 < m_states.size() && !HasFailure())
        forth();
    EXPECT_EQ(action("EditRedo")->text(), QStringLiteral("Can't redo"));
}

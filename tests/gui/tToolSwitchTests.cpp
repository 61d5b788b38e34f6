// SPDX-License-Identifier: MIT
// How one tool takes another's place: by buttons, by keys, for a while, and with face mode.
#include "gui/tGuiTest.h"

namespace {

// Counts what it is told.
class cSpyTool : public cTool {
public:
    void apply(cCanvas*) override { ++applied; }
    void setCanvas(cCanvas*) override { ++notified; }
    void reselect() override { ++reselected; }
    void deactivate() override { ++deactivated; }

    int applied = 0;
    int notified = 0;
    int reselected = 0;
    int deactivated = 0;
};

} // namespace

class ToolSwitchTest : public cGuiTest {
protected:
    void startWithSpies() {
        write("test.fgd", "@PointClass = light : \"Light\" []\n");
        start();
        for (int id = 0; id < TOOL_COUNT; ++id) {
            auto spy = std::make_unique<cSpyTool>();
            spy->setId(id);
            spies[id] = spy.get();
            window->toolSwitch().tools[size_t(id)] = std::move(spy);
        }
        window->currentTool = window->toolSwitch().tools[TOOL_SELECT].get();
        newProject();
    }

    // A tool that is not built says so after its switch.
    void expectNotice(int id) {
        if (id > TOOL_BLOCK)
            replies.expectBox(QMessageBox::Ok, "is still under development");
    }
    // Presses the tool's button.
    void choose(int id) {
        expectNotice(id);
        toolAction(id)->trigger();
    }

    // The tools whose buttons are checked.
    QString checkedTools() const {
        QString text;
        for (const QCustomAction* a : window->menus().toolActions)
            if (a->isChecked())
                text += QStringLiteral(" %1").arg(a->toolIndex);
        return text.trimmed();
    }

    cSpyTool* spies[TOOL_COUNT] = {};
};

TEST_F(ToolSwitchTest, eachKeyAndButtonMakesItsToolCurrentAndStaysDown) {
    startWithSpies();
    child<QToolBar>(window.get(), "Maptools Bar")->hide(); // its keys work yet
    EXPECT_EQ(checkedTools(), QStringLiteral("0"));
    const std::pair<Qt::Key, int> cases[] = {{Qt::Key_E, TOOL_ENTITY},  {Qt::Key_B, TOOL_BLOCK},
                                             {Qt::Key_X, TOOL_CLIP},    {Qt::Key_V, TOOL_VERTEX},
                                             {Qt::Key_P, TOOL_PATH},    {Qt::Key_S, TOOL_SELECT},
                                             {Qt::Key_A, TOOL_TEXTURE}, {Qt::Key_S, TOOL_SELECT},
                                             {Qt::Key_G, TOOL_MAGNIFY}, {Qt::Key_C, TOOL_CAMERA}};
    int before = TOOL_SELECT;
    for (const auto& [key, id] : cases) {
        SCOPED_TRACE(id);
        for (cSpyTool* spy : spies)
            spy->deactivated = spy->reselected = 0;
        expectNotice(id);
        press(key, Qt::ShiftModifier);
        EXPECT_TRUE(answered());
        EXPECT_EQ(window->currentToolId(), id);
        EXPECT_EQ(checkedTools(), QString::number(id));
        if (id == TOOL_TEXTURE || id == TOOL_MAGNIFY || id == TOOL_CAMERA)
            continue; // left by the second press, or lets another go on
        EXPECT_EQ(spies[before]->deactivated, int(before != id)) << before;
        before = id;
        choose(id); // again
        EXPECT_EQ(checkedTools(), QString::number(id)) << "the press itself would uncheck it";
        EXPECT_EQ(spies[id]->reselected, id == TOOL_CLIP || id == TOOL_VERTEX);
        EXPECT_EQ(spies[id]->deactivated, 0);
    }
    // Not a button of this bar, but one among the operations.
    replies.expectBox(QMessageBox::Ok, "\"Edit cordon bounds\"");
    trigger("ToolsCordonB");
    EXPECT_EQ(window->currentToolId(), int(TOOL_CORDON));
    EXPECT_EQ(checkedTools(), QString());
    EXPECT_TRUE(action("ToolsCordonB")->isChecked());
    choose(TOOL_SELECT);
    EXPECT_FALSE(action("ToolsCordonB")->isChecked());
}

TEST_F(ToolSwitchTest, temporaryToolsLetAnotherGoOn) {
    startWithSpies();
    choose(TOOL_BLOCK);
    choose(TOOL_MAGNIFY);
    EXPECT_EQ(window->suspendedTool, spies[TOOL_BLOCK]);
    choose(TOOL_CAMERA);
    EXPECT_EQ(window->suspendedTool, spies[TOOL_BLOCK]) << "the first one stays";
    EXPECT_EQ(checkedTools(), QStringLiteral("2"));
    choose(TOOL_BLOCK);
    EXPECT_EQ(window->currentTool, spies[TOOL_BLOCK]);
    EXPECT_EQ(window->suspendedTool, nullptr);
    EXPECT_EQ(spies[TOOL_BLOCK]->deactivated, 0) << "it keeps its box";

    choose(TOOL_MAGNIFY);
    choose(TOOL_CLIP);
    EXPECT_EQ(spies[TOOL_BLOCK]->deactivated, 1) << "another tool ends it";
    EXPECT_EQ(window->suspendedTool, nullptr);
    choose(TOOL_CAMERA);
    choose(TOOL_SELECT);
    EXPECT_EQ(spies[TOOL_CLIP]->deactivated, 1);
    choose(TOOL_MAGNIFY);
    EXPECT_EQ(window->suspendedTool, nullptr) << "the selection tool is replaced";
}

TEST_F(ToolSwitchTest, activationShowsTheBoxOfTheCurrentTool) {
    startWithSpies();
    choose(TOOL_BLOCK);
    static const float mins[3] = {0, 0, 0};
    static const float maxs[3] = {16, 32, 64};
    active()->boxes[TBX_BLOCK].setFromTwoPoints(mins, maxs);
    newProject();
    EXPECT_EQ(pane(4), QString());
    trigger("WindowPrev");
    settle();
    EXPECT_EQ(pane(4), QStringLiteral("16w 32l 64h"));
}

TEST_F(ToolSwitchTest, faceModeDropsObjectsAndItsMaskWithoutKeep) {
    startWithSpies();
    static const float mins[3] = {-16, -16, -16};
    static const float maxs[3] = {16, 16, 16};
    cMap& map = *active()->map;
    addBox(map, map.world(), mins, maxs);
    trigger("EditSelAll");
    choose(TOOL_TEXTURE);
    EXPECT_EQ(window->currentToolId(), int(TOOL_TEXTURE));
    EXPECT_FALSE(map.hasSelection());
    window->HideMask |= HM_FACE_MASK;
    toolAction(TOOL_TEXTURE)->trigger(); // the way out
    EXPECT_EQ(window->currentToolId(), int(TOOL_SELECT));
    EXPECT_EQ(checkedTools(), QStringLiteral("0"));
    EXPECT_TRUE(window->HideMask & HM_FACE_MASK);
    window->KeepHideMask = false;
    choose(TOOL_CLIP);
    EXPECT_FALSE(window->HideMask & HM_FACE_MASK);
}

TEST_F(ToolSwitchTest, creatingAppliesTheCurrentToolAndSelectingTellsAll) {
    startWithSpies();
    choose(TOOL_ENTITY);
    trigger("EditCreate");
    EXPECT_EQ(spies[TOOL_ENTITY]->applied, 1);
    EXPECT_EQ(spies[TOOL_SELECT]->applied, 0);
    for (cSpyTool* spy : spies)
        spy->notified = 0;
    trigger("EditSelAll");
    for (const cSpyTool* spy : spies)
        EXPECT_EQ(spy->notified, 1) << spy->getId();
}

// SPDX-License-Identifier: MIT
#include "operations/tClipboard.h"

#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tFaceMapping.h"
#include "document/tGroup.h"
#include "document/tHistory.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "operations/tStructure.h"
#include "support/tLaw.h"
#include "support/tMapTools.h"
#include "support/tTestHost.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <set>

static constexpr float TOLERANCE = 0.002f;

class Clipboard : public testing::Test {
protected:
    void SetUp() override {
        host.SnapToGrid = false;
        world = addWorldTo(map);
    }

    cBrushData* addBoxAt(float x, float y = 0, cEntityData* owner = nullptr) {
        const float mins[3] = {x, y, 0}, maxs[3] = {x + 64, y + 64, 64};
        cBrushData* brush = addBox(map, owner ? owner : world, mins, maxs);
        settle(map);
        return brush;
    }

    cEntityData* addPoint(float x, float y) {
        const float origin[3] = {x, y, 32};
        cEntityData* entity = map.addEntity("light", origin, EF_POINT);
        addEpairLast(entity, "light", "300");
        updateEntity(entity, UM_RENDER_KEYS | UM_ATTACH);
        return entity;
    }

    void select(cBrushData* brush) { selectedPush(map.data.selectedBrushes, brush); }

    void obeysLaw(const std::function<void()>& operation) {
        const QString problem = checkLaw(map, operation, false);
        EXPECT_TRUE(problem.isEmpty()) << qPrintable(problem);
    }

    bool isStep(const char* name) const { return strcmp(map.history->undoName(), name) == 0; }

    // Left edges of the world's brushes. List order is nobody's business: a redo turns it.
    std::vector<float> lefts(const cMap& of) const {
        std::vector<float> list;
        for (const cBrushData* brush : brushesOf(of.world()))
            list.push_back(brush->mins[0]);
        std::sort(list.begin(), list.end());
        return list;
    }

    cTestHost host;
    cMap map{nullptr};
    cClipboard clipboard;
    cEntityData* world = nullptr;
};

TEST_F(Clipboard, pastesStepFromTheTargetOrFromTheirPlace) {
    select(addBoxAt(0));
    clipboard.copySelection(map, true);
    EXPECT_EQ(clipboard.mode(), cClipboard::COPIED);
    const float target[3] = {500, 32, 32}, offset[3] = {64, 0, 0};
    cPasteOptions options;
    options.copies = 3;
    options.target = target;
    options.offset = offset;
    obeysLaw([&] { clipboard.paste(map, options, "Paste Special"); });
    EXPECT_TRUE(isStep("Paste Special"));
    // Each copy counts its own step: none lies on the target itself.
    EXPECT_EQ(lefts(map), std::vector<float>({0, 532, 596, 660}));
    EXPECT_EQ(host.panes[2], QStringLiteral("3 objects selected."));
    options.target = nullptr;
    obeysLaw([&] { clipboard.paste(map, options, "Paste Special"); });
    EXPECT_EQ(lefts(map), std::vector<float>({0, 64, 128, 192, 532, 596, 660}));
    // The snapped middle of the contents goes to the target.
    host.SnapToGrid = true;
    host.gridSize = 64;
    options = cPasteOptions();
    options.target = target;
    obeysLaw([&] { clipboard.paste(map, options, "Paste"); });
    EXPECT_EQ(world->brushesTail->mins[0], 500 - 64);
}

TEST_F(Clipboard, turnsEachCopyAroundTheMiddleWithItsTextures) {
    cEntityData* light = addPoint(200, 0);
    addEpairLast(light, "angle", "0");
    cBrushData* box = addBoxAt(0);
    select(box);
    map.selectEntity(light);
    clipboard.copySelection(map, true);
    const float rotation[3] = {0, 0, 90};
    cPasteOptions options;
    options.copies = 4;
    options.rotation = rotation;
    clipboard.paste(map, options, "Paste Special");
    // The fourth lies as the source does.
    const cBrushData* last = world->brushesTail;
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(last->mins[i], box->mins[i], TOLERANCE);
        EXPECT_NEAR(last->maxs[i], box->maxs[i], TOLERANCE);
    }
    const cEntityData* turned = light->next;
    EXPECT_STREQ(getEpairValue(turned, "angle"), "90");
    EXPECT_NEAR(turned->angles[1], 90, TOLERANCE);
    EXPECT_STREQ(getEpairValue(map.data.entitiesTail, "light"), "300");
    EXPECT_NEAR(map.data.entitiesTail->origin[0], 200, TOLERANCE);
    obeysLaw([&] { clipboard.paste(map, options, "Paste Special"); });
}

TEST_F(Clipboard, texturesStayOnTheObjectWhateverTheLockSays) {
    host.TextureLock = false;
    cBrushData* box = addBoxAt(0);
    select(box);
    clipboard.copySelection(map, true);
    const float target[3] = {1000, 77, 13};
    cPasteOptions options;
    options.target = target;
    clipboard.paste(map, options, "Paste");
    const cBrushData* copy = world->brushesTail;
    ASSERT_NE(copy, box);
    for (const cFaceData* face : facesOf(box)) {
        bool matched = false;
        for (const cFaceData* other : facesOf(copy)) {
            if (std::fabs(other->normal[0] - face->normal[0]) > 0.1f ||
                std::fabs(other->normal[1] - face->normal[1]) > 0.1f ||
                std::fabs(other->normal[2] - face->normal[2]) > 0.1f)
                continue;
            matched = true;
            for (int i = 0; i < face->vertexCount; ++i) {
                EXPECT_NEAR(face->vertices[i].st[0], other->vertices[i].st[0], TOLERANCE);
                EXPECT_NEAR(face->vertices[i].st[1], other->vertices[i].st[1], TOLERANCE);
            }
        }
        EXPECT_TRUE(matched);
    }
}

TEST_F(Clipboard, everyCopyHasGroupsOfItsOwn) {
    cGroupData* inner = map.addGroup();
    cGroupData* outer = map.addGroup();
    cBrushData* a = addBoxAt(0);
    cBrushData* b = addBoxAt(128);
    cEntityData* door = map.addEntity("func_door", world->origin, 0);
    addBoxAt(256, 0, door);
    map.joinGroupBrush(a, inner);
    map.joinGroupGroup(inner, outer);
    map.joinGroupBrush(b, outer);
    map.joinGroupEntity(door, outer);
    map.selectGroup(outer);
    clipboard.copySelection(map, true);
    cPasteOptions options;
    options.copies = 2;
    obeysLaw([&] { clipboard.paste(map, options, "Paste Special"); });
    std::set<const cGroupData*> roots;
    for (const cBrushData* brush : brushesOf(world)) {
        ASSERT_NE(brush->rootGroup, nullptr);
        roots.insert(brush->rootGroup);
        EXPECT_EQ(brush->rootGroup->memberCount, 3);
    }
    EXPECT_EQ(roots.size(), 3u);
    EXPECT_NE(map.data.entitiesTail->rootGroup, door->rootGroup);
    // A group around each copy takes the copied groups in.
    options.groupCopies = true;
    obeysLaw([&] { clipboard.paste(map, options, "Paste Special"); });
    EXPECT_EQ(world->brushesTail->rootGroup->memberCount, 1);
    EXPECT_NE(world->brushesTail->group, world->brushesTail->rootGroup);
    EXPECT_EQ(host.panes[2], QStringLiteral("2 objects selected."));
    // Grouping after a copy leaves the clipboard's groups alone.
    map.clearSelection();
    map.selectGroup(a->rootGroup);
    select(addBoxAt(700));
    clipboard.copySelection(map, true);
    obeysLaw([&] { EXPECT_TRUE(groupSelection(map)); });
    obeysLaw([&] { clipboard.paste(map, cPasteOptions(), "Paste"); });
    // Without groups acting, copies have none.
    host.IgnoreGroups = true;
    map.clearSelectionFull();
    select(a);
    clipboard.copySelection(map, true);
    obeysLaw([&] { clipboard.paste(map, cPasteOptions(), "Paste"); });
    EXPECT_EQ(world->brushesTail->group, nullptr);
}

TEST_F(Clipboard, cutGoesBackUnlessItWasPastedOrUndone) {
    cBrushData* a = addBoxAt(0);
    cBrushData* b = addBoxAt(128);
    select(a);
    obeysLaw([&] { clipboard.cutSelection(map, true); });
    EXPECT_TRUE(isStep("Cut"));
    EXPECT_EQ(lefts(map), std::vector<float>({128}));
    // The next cut restores the first.
    select(b);
    clipboard.cutSelection(map, true);
    EXPECT_EQ(lefts(map), std::vector<float>({0}));
    map.history->undo();
    EXPECT_STREQ(map.history->undoName(), "Restore Cut");
    // That cut is undone: nothing must come back twice.
    EXPECT_EQ(clipboard.mode(), cClipboard::COPIED);
    map.clearSelection();
    select(world->brushes);
    clipboard.copySelection(map, true);
    EXPECT_EQ(lefts(map).size(), 2u);
    // Done again after an undo it counts as cut again.
    clipboard.cutSelection(map, true);
    map.history->undo();
    map.history->redo();
    EXPECT_EQ(clipboard.mode(), cClipboard::CUT);
    // A paste uses the cut up.
    obeysLaw([&] { clipboard.paste(map, cPasteOptions(), "Paste"); });
    const size_t count = lefts(map).size();
    clipboard.cutSelection(map, true);
    EXPECT_EQ(lefts(map).size(), count - 1);
    // Nor is it restored against the setting.
    map.clearSelection();
    select(world->brushes);
    clipboard.copySelection(map, false);
    EXPECT_EQ(lefts(map).size(), count - 1);
}

TEST_F(Clipboard, cutEmptiesOwnersAndUndoFillsGroupsAndVisgroups) {
    cEntityData* door = map.addEntity("func_door", world->origin, 0);
    cBrushData* panel = addBoxAt(0, 0, door);
    cVisGroup* doors = map.createVisGroup("doors");
    panel->brush->addToVisGroup(doors);
    cGroupData* group = map.addGroup();
    cBrushData* wall = addBoxAt(128);
    map.joinGroupBrush(wall, group);
    map.computeVisGroupVisibility();
    host.IgnoreGroups = true;
    map.updateSelectionMode();
    select(panel);
    select(wall);
    obeysLaw([&] { clipboard.cutSelection(map, true); });
    EXPECT_EQ(world->next, nullptr);
    EXPECT_EQ(doors->objectCount, 0);
    EXPECT_EQ(group->memberCount, 0);
    EXPECT_EQ(host.panes[2], QStringLiteral("no selection."));
    map.history->undo();
    EXPECT_EQ(doors->objectCount, 1);
    EXPECT_EQ(group->memberCount, 1);
}

TEST_F(Clipboard, pastesIntoAnotherMapAfterTheSourceHasGone) {
    cMap other(nullptr);
    addWorldTo(other);
    {
        cMap source(nullptr);
        cEntityData* sourceWorld = addWorldTo(source);
        const float mins[3] = {0, 0, 0}, maxs[3] = {64, 64, 64};
        selectedPush(source.data.selectedBrushes, addBox(source, sourceWorld, mins, maxs, "odd"));
        clipboard.cutSelection(source, true);
        EXPECT_TRUE(clipboard.refersTo(source));
        clipboard.forgetSource();
    }
    EXPECT_TRUE(clipboard.canPaste(&other));
    clipboard.restoreCut(); // nowhere to go
    clipboard.paste(other, cPasteOptions(), "Paste");
    clipboard.paste(other, cPasteOptions(), "Paste");
    EXPECT_EQ(lefts(other), std::vector<float>({0, 0}));
    EXPECT_NE(other.world()->brushes->faces->texture, nullptr);
    EXPECT_TRUE(checkMapWhole(other).isEmpty()) << qPrintable(checkMapWhole(other));
    EXPECT_NE(other.world()->brushes->id, other.world()->brushesTail->id);
    clipboard.clear();
    EXPECT_FALSE(clipboard.canPaste(&other));
}

// One copy of much is as long a wait as many copies of little.
TEST_F(Clipboard, tellsHowFarItIsInObjects) {
    constexpr int boxes = 700;
    for (int i = 0; i < boxes; ++i) {
        const float x = float(i) * 64, mins[3] = {x, 0, 0}, maxs[3] = {x + 32, 32, 32};
        select(addBox(map, world, mins, maxs));
    }
    settle(map);
    clipboard.copySelection(map, true);
    std::vector<qint64> told;
    cPasteOptions options;
    options.progress = [&](qint64 done, qint64 total) {
        EXPECT_EQ(total, boxes);
        told.push_back(done);
    };
    clipboard.paste(map, options, "Paste");
    ASSERT_FALSE(told.empty());
    EXPECT_LT(told.front(), boxes) << "while they are made";
    EXPECT_EQ(told.back(), boxes) << "and while they are recorded";
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
}

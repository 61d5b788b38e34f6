// SPDX-License-Identifier: MIT
#include "operations/tClipboard.h"

#include "document/tFaceMapping.h"
#include "operations/tStructure.h"
#include "support/tMapTest.h"

#include <algorithm>
#include <set>

static constexpr float TOLERANCE = 0.002f;

class Clipboard : public cMapTest {
protected:
    void SetUp() override { host.SnapToGrid = false; }

    void copy(std::initializer_list<cBrushData*> brushes) {
        select(brushes);
        clipboard.copySelection(map, true);
    }
    void paste(const cPasteOptions& options = {}, const char* step = "Paste") {
        law([&] { clipboard.paste(map, options, step); }, false);
        EXPECT_TRUE(isStep(step));
    }

    // Left edges of the world's brushes. List order is nobody's business: a redo turns it.
    std::vector<float> lefts(const cMap& of) const {
        std::vector<float> list;
        for (const cBrushData* brush : brushesOf(of.world()))
            list.push_back(brush->mins[0]);
        std::sort(list.begin(), list.end());
        return list;
    }

    cClipboard clipboard;
};

TEST_F(Clipboard, pastesStepFromTheTargetOrFromTheirPlace) {
    copy({cubeAt(0)});
    EXPECT_EQ(clipboard.mode(), cClipboard::COPIED);
    const float target[3] = {500, 32, 32}, offset[3] = {64, 0, 0};
    cPasteOptions options;
    options.copies = 3;
    options.target = target;
    options.offset = offset;
    paste(options, "Paste Special");
    // Each copy counts its own step: none lies on the target itself.
    EXPECT_EQ(lefts(map), std::vector<float>({0, 532, 596, 660}));
    EXPECT_EQ(sentence(), QStringLiteral("3 objects selected."));
    options.target = nullptr;
    paste(options);
    EXPECT_EQ(lefts(map), std::vector<float>({0, 64, 128, 192, 532, 596, 660}));
    // The snapped middle of the contents goes to the target.
    host.SnapToGrid = true;
    host.gridSize = 64;
    options = cPasteOptions();
    options.target = target;
    paste(options);
    EXPECT_EQ(world->brushesTail->mins[0], 500 - 64);
}

TEST_F(Clipboard, turnsEachCopyAroundTheMiddle) {
    cEntityData* light = pointAt(200, 0, 32);
    addEpairLast(light, "angle", "0");
    cBrushData* box = cubeAt(0);
    map.selectEntity(light);
    copy({box});
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
    EXPECT_STREQ(getEpairValue(light->next, "angle"), "90");
    EXPECT_NEAR(light->next->angles[1], 90, TOLERANCE);
    EXPECT_NEAR(map.data.entitiesTail->origin[0], 200, TOLERANCE);
    paste(options);
}

TEST_F(Clipboard, texturesStayOnTheObjectWhateverTheLockSays) {
    host.TextureLock = false;
    const cBrushData* box = cubeAt(0);
    copy({world->brushes});
    const float target[3] = {1000, 77, 13};
    cPasteOptions options;
    options.target = target;
    clipboard.paste(map, options, "Paste");
    int matched = 0;
    for (const cFaceData* face : facesOf(box)) {
        for (const cFaceData* other : facesOf(world->brushesTail)) {
            if (!normalsEqual(other->normal, face->normal))
                continue;
            ++matched;
            for (int i = 0; i < face->vertexCount; ++i) {
                EXPECT_NEAR(face->vertices[i].st[0], other->vertices[i].st[0], TOLERANCE);
                EXPECT_NEAR(face->vertices[i].st[1], other->vertices[i].st[1], TOLERANCE);
            }
        }
    }
    EXPECT_EQ(matched, 6);
    EXPECT_NE(world->brushesTail, box);
}

TEST_F(Clipboard, everyCopyHasGroupsOfItsOwn) {
    cGroupData *inner = map.addGroup(), *outer = map.addGroup();
    cBrushData* a = cubeOf(inner, 0);
    cubeOf(outer, 128);
    cEntityData* door = addDoor();
    cubeIn(door, 256);
    map.joinGroupGroup(inner, outer);
    map.joinGroupEntity(door, outer);
    map.selectGroup(outer);
    clipboard.copySelection(map, true);
    cPasteOptions options;
    options.copies = 2;
    paste(options);
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
    paste(options);
    EXPECT_EQ(world->brushesTail->rootGroup->memberCount, 1);
    EXPECT_NE(world->brushesTail->group, world->brushesTail->rootGroup);
    EXPECT_EQ(sentence(), QStringLiteral("2 objects selected."));
    // Grouping after a copy leaves the clipboard's groups alone.
    map.clearSelection();
    map.selectGroup(a->rootGroup);
    copy({cubeAt(700)});
    law([&] { EXPECT_TRUE(groupSelection(map)); }, false);
    paste();
    // Without groups acting, copies have none.
    host.IgnoreGroups = true;
    map.clearSelectionFull();
    copy({a});
    paste();
    EXPECT_EQ(world->brushesTail->group, nullptr);
}

TEST_F(Clipboard, cutGoesBackUnlessItWasPastedOrUndone) {
    cBrushData* a = cubeAt(0);
    cBrushData* b = cubeAt(128);
    select({a});
    law([&] { clipboard.cutSelection(map, true); });
    EXPECT_TRUE(isStep("Cut"));
    EXPECT_EQ(lefts(map), std::vector<float>({128}));
    // The next cut restores the first.
    select({b});
    clipboard.cutSelection(map, true);
    EXPECT_EQ(lefts(map), std::vector<float>({0}));
    map.history->undo();
    EXPECT_TRUE(isStep("Restore Cut"));
    // That cut is undone: nothing must come back twice.
    EXPECT_EQ(clipboard.mode(), cClipboard::COPIED);
    map.clearSelection();
    copy({world->brushes});
    EXPECT_EQ(lefts(map).size(), 2u);
    // Done again after an undo it counts as cut again.
    clipboard.cutSelection(map, true);
    map.history->undo();
    map.history->redo();
    EXPECT_EQ(clipboard.mode(), cClipboard::CUT);
    // A paste uses the cut up.
    paste();
    const size_t count = lefts(map).size();
    clipboard.cutSelection(map, true);
    EXPECT_EQ(lefts(map).size(), count - 1);
    // Nor is it restored against the setting.
    map.clearSelection();
    select({world->brushes});
    clipboard.copySelection(map, false);
    EXPECT_EQ(lefts(map).size(), count - 1);
}

// Owners and groups that a cut empties go with it, and come back with it.
TEST_F(Clipboard, whatWasCutGoesBackToWhereItWas) {
    cEntityData* door = addDoor();
    addEpairLast(door, "speed", "100");
    cBrushData* panel = cubeIn(door, 0);
    cEntityData* lift = addDoor();
    cBrushData* plate = cubeIn(lift, 512);
    cubeIn(lift, 640);
    cubeAt(1024);
    cVisGroup* doors = map.createVisGroup("doors");
    panel->brush->addToVisGroup(doors);
    door->entity->addToVisGroup(doors);
    cGroupData *inner = map.addGroup(), *outer = map.addGroup();
    cBrushData* wall = cubeOf(inner, 128);
    wall->brush->addToVisGroup(doors);
    map.joinGroupGroup(inner, outer);
    map.joinGroupEntity(door, outer);
    map.computeVisGroupVisibility();
    const cMapState before = stateOf(map, false);
    host.IgnoreGroups = true;
    map.updateSelectionMode();
    select({panel, wall, plate});
    law([&] { clipboard.cutSelection(map, true); });
    EXPECT_EQ(world->next, lift);
    EXPECT_EQ(map.data.groups, nullptr);
    EXPECT_EQ(doors->objectCount, 0);
    EXPECT_EQ(sentence(), QStringLiteral("no selection."));
    deleteSelection(map);
    EXPECT_TRUE(isStep("Cut")) << "nothing is left that a deletion could record";
    law([&] { clipboard.restoreCut(); });
    EXPECT_TRUE(isStep("Restore Cut"));
    EXPECT_EQ(firstDifference(before, stateOf(map, false)), QString());
    // An entity that went meanwhile comes back with its keys.
    map.clearSelection();
    select({lift->brushes});
    clipboard.cutSelection(map, true);
    map.selectEntity(lift);
    deleteSelection(map);
    law([&] { clipboard.restoreCut(); });
    EXPECT_STREQ(map.data.entitiesTail->classname, "func_door");
    // Into an entity that is selected meanwhile: with it.
    cBrushData* second = cubeIn(map.data.entitiesTail, 900);
    map.clearSelection();
    select({second});
    clipboard.cutSelection(map, true);
    map.selectEntity(map.data.entitiesTail);
    clipboard.copySelection(map, true);
    EXPECT_TRUE(isSelected(map.data.entitiesTail->brushesTail));
    map.clearSelection();
    select({map.data.entitiesTail->brushesTail});
    clipboard.cutSelection(map, true);
    EXPECT_EQ(countOf(brushesOf(map.data.entitiesTail)), 1);
}

TEST_F(Clipboard, pastesIntoAnotherMapAfterTheSourceHasGone) {
    cMap other(host);
    addWorldTo(other);
    {
        cMap source(host);
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
        select({addBox(map, world, mins, maxs)});
    }
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

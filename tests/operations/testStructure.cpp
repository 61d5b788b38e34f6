// SPDX-License-Identifier: MIT
#include "operations/tStructure.h"
#include "support/tMapTest.h"

using Structure = cMapTest;

TEST_F(Structure, groupsNestAndUngroupTakesOffOneLevel) {
    cEntityData* light = pointAt(0);
    cBrushData* a = cubeAt(0);
    cBrushData* b = cubeAt(128);
    select({a});
    map.selectEntity(light);
    law([&] { EXPECT_TRUE(groupSelection(map)); });
    EXPECT_TRUE(isStep("Group"));
    EXPECT_EQ(sentence(), QStringLiteral("group of 2 objects."));
    law([&] { EXPECT_FALSE(groupSelection(map)) << "all of it lies in one group"; });
    const cGroupData* inner = a->group;
    select({b});
    law([&] { EXPECT_TRUE(groupSelection(map)); });
    EXPECT_EQ(a->group, inner);
    EXPECT_EQ(a->rootGroup, b->group);
    EXPECT_EQ(b->group->memberCount, 2);
    law([&] { ungroupSelection(map); });
    EXPECT_EQ(b->group, nullptr);
    EXPECT_EQ(a->rootGroup, light->group);
    map.history->undo();
    map.history->redo();
    EXPECT_TRUE(isSelected(a->group)) << "ready for another Ungroup";
    law([&] { ungroupSelection(map); });
    EXPECT_EQ(map.data.groups, nullptr);
    EXPECT_EQ(light->rootGroup, nullptr);
}

TEST_F(Structure, ungroupReachesHiddenMembersAndSolidEntities) {
    cEntityData* door = addDoor();
    cBrushData* panel = cubeIn(door, 0);
    cBrushData* hidden = cubeAt(128);
    select({panel});
    map.selectEntity(door);
    select({hidden});
    law([&] { groupSelection(map); });
    EXPECT_EQ(panel->group, nullptr); // it goes with its entity
    hidden->flags |= BF_HIDDEN;
    map.dropHidden();
    law([&] { ungroupSelection(map); });
    EXPECT_EQ(hidden->group, nullptr);
    EXPECT_EQ(door->group, nullptr);
}

TEST_F(Structure, deletingTheLastBrushTakesEntityAndGroupsAlong) {
    cEntityData* door = addDoor();
    cBrushData* panel = cubeIn(door, 0);
    cGroupData *inner = map.addGroup(), *outer = map.addGroup();
    map.joinGroupEntity(door, inner);
    map.joinGroupGroup(inner, outer);
    cVisGroup* doors = map.createVisGroup("doors");
    door->entity->addToVisGroup(doors);
    panel->brush->addToVisGroup(doors);
    cubeAt(512);
    map.computeVisGroupVisibility();
    map.selectGroup(outer);
    law([&] { deleteSelection(map); });
    EXPECT_TRUE(isStep("Delete Selection"));
    EXPECT_EQ(map.data.groups, nullptr);
    EXPECT_EQ(world->next, nullptr);
    EXPECT_EQ(doors->objectCount, 0);
    EXPECT_EQ(printed("removing the empty solid entity: func_door"), 1);
    EXPECT_EQ(printed("removing the whole group"), 2);
    EXPECT_EQ(sentence(), QStringLiteral("no selection."));
    // Part of an entity, while groups are ignored.
    host.IgnoreGroups = true;
    map.updateSelectionMode();
    door = addDoor();
    cubeIn(door, 128);
    select({cubeIn(door, 0)});
    law([&] { deleteSelection(map); });
    EXPECT_EQ(door->mins[0], 128.0f);
    // All of it, with a brush that is hidden.
    select({cubeIn(door, 0)});
    door->brushes->flags |= BF_HIDDEN;
    selectedPush(map.data.selectedEntities, door);
    law([&] { deleteSelection(map); });
    EXPECT_EQ(world->next, nullptr);
}

TEST_F(Structure, moveToWorldEmptiesEntitiesAndUndoBringsTheBrushesHome) {
    cEntityData* door = addDoor();
    cGroupData* group = map.addGroup();
    map.joinGroupEntity(door, group);
    cBrushData* panel = cubeIn(door, 0);
    cBrushData* wall = cubeAt(512);
    map.selectGroup(group);
    select({wall});
    law([&] { moveSelectionToWorld(map); });
    EXPECT_TRUE(isStep("Move to World"));
    EXPECT_EQ(panel->owner, world);
    EXPECT_EQ(world->next, nullptr);
    EXPECT_EQ(map.data.groups, nullptr);
    EXPECT_EQ(world->maxs[0], 576.0f);
    // World brushes alone: the selection is dropped, without a step.
    law([&] { moveSelectionToWorld(map); });
    EXPECT_FALSE(map.hasSelection());
}

TEST_F(Structure, deselectedPointsAreNoLongerDrawnAsSelected) {
    cEntityData* light = pointAt(0);
    map.selectEntity(light);
    law([&] { deselectPoints(map); });
    EXPECT_FALSE(isSelected(light));
}

TEST_F(Structure, tieMakesAnEntityOrGivesToOne) {
    host.addClass(QStringLiteral("func_door"), CK_SOLID)->variables = {
        {VT_STRING, QStringLiteral("speed"), {}, {}, QStringLiteral("100"), {}}};
    cBrushData* b = cubeAt(128);
    cGroupData* group = map.addGroup();
    cBrushData* a = cubeOf(group, 0);
    map.selectGroup(group);
    law([&] { tieSelectionToEntity(map, "func_door", nullptr); });
    EXPECT_TRUE(isStep("Tie to Entity"));
    ASSERT_NE(a->owner, world);
    EXPECT_STREQ(getEpairValue(a->owner, "speed"), "100");
    EXPECT_EQ(a->group, nullptr);
    EXPECT_EQ(map.data.groups, nullptr) << "it had one member";
    EXPECT_EQ(a->owner->maxs[0], 64.0f);
    map.history->undo();
    map.history->redo();
    EXPECT_TRUE(isSelected(a->owner));
    // To an entity that exists; the one that is emptied goes.
    cBrushData* theirs = cubeIn(addDoor(), 256);
    map.clearSelection();
    select({b, theirs});
    law([&] { tieSelectionToEntity(map, "func_door", a->owner); });
    EXPECT_EQ(theirs->owner, a->owner);
    EXPECT_EQ(b->owner, a->owner);
    EXPECT_EQ(a->owner->maxs[0], 320.0f);
    EXPECT_EQ(map.data.entitiesTail, a->owner);
}

TEST_F(Structure, tieLeavesNoGroupSelectedWithoutAMember) {
    host.addClass(QStringLiteral("func_door"), CK_SOLID);
    cEntityData* light = pointAt(0);
    cGroupData* group = map.addGroup();
    cubeOf(group, 0);
    map.joinGroupEntity(light, group);
    map.selectGroup(group);
    selectedRemove(map.data.selectedEntities, light); // as the user is asked to allow
    const cEntityData* door = tieSelectionToEntity(map, "func_door", nullptr);
    EXPECT_FALSE(isSelected(group));
    EXPECT_EQ(group->memberCount, 1);
    EXPECT_TRUE(isSelected(door));
    EXPECT_EQ(sentence(), QStringLiteral("func_door"));
    map.history->undo();
    EXPECT_TRUE(isSelected(group));
    EXPECT_EQ(group->memberCount, 2);
    EXPECT_TRUE(isWhole());
}

TEST_F(Structure, moveToWorldLeavesNoGroupSelectedForItsHiddenMembers) {
    cEntityData* door = addDoor();
    cubeIn(door, 0);
    cGroupData* group = map.addGroup();
    map.joinGroupEntity(door, group);
    cubeOf(group, 128)->flags |= BF_HIDDEN;
    map.selectEntity(door);
    selectedPush(map.data.selectedGroups, group);
    moveSelectionToWorld(map);
    EXPECT_FALSE(isSelected(group));
    EXPECT_EQ(group->memberCount, 1);
    map.history->undo();
    EXPECT_TRUE(isSelected(group));
    law([&] { moveSelectionToWorld(map); });
}

TEST_F(Structure, detailIsAMatterOfAllFaces) {
    host.mapProfile.detailContentMask = 0x8000000;
    cBrushData* brush = cubeAt(0);
    select({brush});
    law([&] { EXPECT_FALSE(setSelectionDetail(map, false)); });
    law([&] { EXPECT_TRUE(setSelectionDetail(map, true)); });
    EXPECT_TRUE(isStep("Make Detail"));
    EXPECT_TRUE(isDetail(brush));
    law([&] { EXPECT_FALSE(setSelectionDetail(map, true)); });
    law([&] { EXPECT_TRUE(setSelectionDetail(map, false)); });
    EXPECT_FALSE(isDetail(brush));
}

// SPDX-License-Identifier: MIT
#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tGroup.h"
#include "document/tHistory.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "operations/tStructure.h"
#include "support/tLaw.h"
#include "support/tMapTools.h"
#include "support/tTestHost.h"

#include <gtest/gtest.h>

static const float ORIGIN[3] = {10, 20, 30};

class Structure : public testing::Test {
protected:
    void SetUp() override { world = addWorldTo(map); }

    cBrushData* addBoxAt(float x, cEntityData* owner = nullptr) {
        const float mins[3] = {x, 0, 0}, maxs[3] = {x + 64, 64, 64};
        cBrushData* brush = addBox(map, owner ? owner : world, mins, maxs);
        settle(map);
        return brush;
    }

    void select(cBrushData* brush) {
        if (!isSelected(brush))
            selectedPush(map.data.selectedBrushes, brush);
    }

    void obeysLaw(const std::function<void()>& operation) {
        const QString problem = checkLaw(map, operation);
        EXPECT_TRUE(problem.isEmpty()) << qPrintable(problem);
    }

    bool isStep(const char* name) const { return strcmp(map.history->undoName(), name) == 0; }

    cTestHost host;
    cMap map{nullptr};
    cEntityData* world = nullptr;
};

TEST_F(Structure, groupsNestAndUngroupTakesOffOneLevel) {
    cEntityData* light = map.addEntity("light", ORIGIN, EF_POINT);
    cBrushData* a = addBoxAt(0);
    cBrushData* b = addBoxAt(128);
    select(a);
    map.selectEntity(light);
    obeysLaw([&] { EXPECT_TRUE(groupSelection(map)); });
    EXPECT_TRUE(isStep("Group"));
    EXPECT_EQ(host.panes[2], QStringLiteral("group of 2 objects."));
    cGroupData* inner = a->group;
    EXPECT_EQ(light->group, inner);
    // All of it lies in one group: nothing to do.
    obeysLaw([&] { EXPECT_FALSE(groupSelection(map)); });
    select(b);
    obeysLaw([&] { EXPECT_TRUE(groupSelection(map)); });
    EXPECT_EQ(a->group, inner);
    EXPECT_EQ(a->rootGroup, b->group);
    EXPECT_EQ(b->group->memberCount, 2);
    obeysLaw([&] { ungroupSelection(map); });
    inner = a->group;
    EXPECT_EQ(b->group, nullptr);
    EXPECT_EQ(a->rootGroup, inner);
    EXPECT_EQ(inner->parent, nullptr);
    map.history->undo();
    map.history->redo();
    EXPECT_TRUE(isSelected(a->group)); // ready for another Ungroup
    obeysLaw([&] { ungroupSelection(map); });
    EXPECT_EQ(map.data.groups, nullptr);
    EXPECT_EQ(light->rootGroup, nullptr);
}

TEST_F(Structure, ungroupReachesHiddenMembersAndSolidEntities) {
    cEntityData* door = map.addEntity("func_door", ORIGIN, 0);
    cBrushData* panel = addBoxAt(0, door);
    cBrushData* hidden = addBoxAt(128);
    select(panel);
    map.selectEntity(door);
    select(hidden);
    obeysLaw([&] { groupSelection(map); });
    EXPECT_EQ(panel->group, nullptr); // it goes with its entity
    hidden->flags |= BF_HIDDEN;
    map.dropHidden();
    obeysLaw([&] { ungroupSelection(map); });
    EXPECT_EQ(hidden->group, nullptr);
    EXPECT_EQ(door->group, nullptr);
}

TEST_F(Structure, deletingTheLastBrushTakesEntityAndGroupsAlong) {
    cEntityData* door = map.addEntity("func_door", ORIGIN, 0);
    cBrushData* panel = addBoxAt(0, door);
    cGroupData* inner = map.addGroup();
    cGroupData* outer = map.addGroup();
    map.joinGroupEntity(door, inner);
    map.joinGroupGroup(inner, outer);
    cVisGroup* doors = map.createVisGroup("doors");
    door->entity->addToVisGroup(doors);
    panel->brush->addToVisGroup(doors);
    addBoxAt(512);
    map.computeVisGroupVisibility();
    map.selectGroup(outer);
    obeysLaw([&] { deleteSelection(map); });
    EXPECT_TRUE(isStep("Delete Selection"));
    EXPECT_EQ(map.data.groups, nullptr);
    EXPECT_EQ(world->next, nullptr);
    EXPECT_EQ(doors->objectCount, 0);
    EXPECT_EQ(
        host.count(eMessage::Print, QStringLiteral("removing the empty solid entity: func_door")),
        1);
    EXPECT_EQ(host.count(eMessage::Print, QStringLiteral("removing the whole group")), 2);
    EXPECT_EQ(host.panes[2], QStringLiteral("no selection."));
}

TEST_F(Structure, deletedEntityTakesItsHiddenBrushesAlongAndBringsThemBack) {
    cEntityData* door = map.addEntity("func_door", ORIGIN, 0);
    cBrushData* panel = addBoxAt(0, door);
    addBoxAt(128, door)->flags |= BF_HIDDEN;
    select(panel);
    selectedPush(map.data.selectedEntities, door);
    obeysLaw([&] { deleteSelection(map); });
    EXPECT_EQ(world->next, nullptr);
}

TEST_F(Structure, partOfAnEntityIsDeletedWhileGroupsAreIgnored) {
    host.IgnoreGroups = true;
    map.updateSelectionMode();
    cEntityData* door = map.addEntity("func_door", ORIGIN, 0);
    cBrushData* panel = addBoxAt(0, door);
    addBoxAt(128, door);
    select(panel);
    obeysLaw([&] { deleteSelection(map); });
    EXPECT_EQ(door->mins[0], 128.0f);
    EXPECT_EQ(door->brushes, door->brushesTail);
}

TEST_F(Structure, moveToWorldEmptiesEntitiesAndUndoBringsTheBrushesHome) {
    cEntityData* door = map.addEntity("func_door", ORIGIN, 0);
    cGroupData* group = map.addGroup();
    map.joinGroupEntity(door, group);
    cBrushData* panel = addBoxAt(0, door);
    cBrushData* wall = addBoxAt(512);
    map.selectGroup(group);
    select(wall);
    obeysLaw([&] { moveSelectionToWorld(map); });
    EXPECT_TRUE(isStep("Move to World"));
    EXPECT_EQ(panel->owner, world);
    EXPECT_EQ(world->next, nullptr);
    EXPECT_EQ(map.data.groups, nullptr);
    EXPECT_EQ(world->maxs[0], 576.0f);
    // World brushes alone: the selection is dropped, without a step.
    obeysLaw([&] { moveSelectionToWorld(map); });
    EXPECT_FALSE(map.hasSelection());
}

TEST_F(Structure, tieMakesAnEntityOrGivesToOne) {
    cEntityClass* doorClass = host.addClass(QStringLiteral("func_door"), CK_SOLID);
    doorClass->variables.append(cEntityVariable());
    doorClass->variables.last().name = QStringLiteral("speed");
    doorClass->variables.last().defaultValue = QStringLiteral("100");
    cBrushData* a = addBoxAt(0);
    cBrushData* b = addBoxAt(128);
    cGroupData* group = map.addGroup();
    map.joinGroupBrush(a, group);
    map.selectGroup(group);
    cEntityData* door = nullptr;
    obeysLaw([&] { door = tieSelectionToEntity(map, "func_door", nullptr); });
    EXPECT_TRUE(isStep("Tie to Entity"));
    door = a->owner;
    ASSERT_NE(door, world);
    EXPECT_STREQ(getEpairValue(door, "speed"), "100");
    EXPECT_EQ(a->group, nullptr);
    EXPECT_EQ(map.data.groups, nullptr); // it had one member
    EXPECT_EQ(door->maxs[0], 64.0f);
    map.history->undo();
    map.history->redo();
    EXPECT_TRUE(isSelected(a->owner));
    // To an entity that exists; the one that is emptied goes.
    cEntityData* other = map.addEntity("func_wall", ORIGIN, 0);
    cBrushData* theirs = addBoxAt(256, other);
    map.clearSelection();
    select(b);
    select(theirs);
    obeysLaw([&] { tieSelectionToEntity(map, "func_door", a->owner); });
    EXPECT_EQ(theirs->owner, a->owner);
    EXPECT_EQ(b->owner, a->owner);
    EXPECT_EQ(a->owner->maxs[0], 320.0f);
    EXPECT_EQ(map.data.entitiesTail, a->owner);
}

TEST_F(Structure, tieLeavesNoGroupSelectedWithoutAMember) {
    host.addClass(QStringLiteral("func_door"), CK_SOLID);
    cBrushData* brush = addBoxAt(0);
    cEntityData* light = map.addEntity("light", ORIGIN, EF_POINT);
    cGroupData* group = map.addGroup();
    map.joinGroupBrush(brush, group);
    map.joinGroupEntity(light, group);
    map.selectGroup(group);
    selectedRemove(map.data.selectedEntities, light); // as the user is asked to allow
    const cEntityData* door = tieSelectionToEntity(map, "func_door", nullptr);
    EXPECT_FALSE(isSelected(group));
    EXPECT_EQ(group->memberCount, 1);
    EXPECT_TRUE(isSelected(door));
    EXPECT_EQ(host.panes[2], QStringLiteral("func_door"));
    map.history->undo();
    EXPECT_TRUE(isSelected(group));
    EXPECT_EQ(group->memberCount, 2);
    EXPECT_TRUE(checkMapWhole(map).isEmpty()) << qPrintable(checkMapWhole(map));
}

TEST_F(Structure, moveToWorldLeavesNoGroupSelectedForItsHiddenMembers) {
    cEntityData* door = map.addEntity("func_door", ORIGIN, 0);
    addBoxAt(0, door);
    cBrushData* hidden = addBoxAt(128);
    cGroupData* group = map.addGroup();
    map.joinGroupEntity(door, group);
    map.joinGroupBrush(hidden, group);
    hidden->flags |= BF_HIDDEN;
    map.selectEntity(door);
    selectedPush(map.data.selectedGroups, group);
    moveSelectionToWorld(map);
    EXPECT_FALSE(isSelected(group));
    EXPECT_EQ(group->memberCount, 1);
    map.history->undo();
    EXPECT_TRUE(isSelected(group));
    obeysLaw([&] { moveSelectionToWorld(map); });
}

TEST_F(Structure, detailIsAMatterOfAllFaces) {
    host.mapProfile.detailContentMask = 0x8000000;
    cBrushData* brush = addBoxAt(0);
    select(brush);
    obeysLaw([&] { EXPECT_FALSE(setSelectionDetail(map, false)); });
    obeysLaw([&] { EXPECT_TRUE(setSelectionDetail(map, true)); });
    EXPECT_TRUE(isStep("Make Detail"));
    EXPECT_TRUE(isDetail(brush));
    obeysLaw([&] { EXPECT_FALSE(setSelectionDetail(map, true)); });
    obeysLaw([&] { EXPECT_TRUE(setSelectionDetail(map, false)); });
    EXPECT_FALSE(isDetail(brush));
}

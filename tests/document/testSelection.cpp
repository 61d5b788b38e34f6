// SPDX-License-Identifier: MIT
#include "support/tMapTest.h"

#include <set>

class Selection : public cMapTest {
protected:
    void box(float from, float to, int mode = BOX_TOUCHING) {
        const float mins[3] = {from, 0, 0}, maxs[3] = {to, 64, 64};
        map.selectInBox(mins, maxs, mode);
    }

    // Every selected object by its id: g groups, e entities, b brushes, f faces.
    std::set<std::string> chosen() const {
        EXPECT_EQ(checkMapInvariants(map), QString());
        std::set<std::string> ids;
        for (const cGroupData* group : selectedGroupsOf(map.data))
            ids.insert("g" + std::to_string(group->id));
        for (const cEntityData* entity : selectedEntitiesOf(map.data))
            ids.insert("e" + std::to_string(entity->id));
        for (const cBrushData* brush : selectedBrushesOf(map.data))
            ids.insert("b" + std::to_string(brush->id));
        for (const cFaceData* face : selectedFacesOf(map.data))
            ids.insert("f" + std::to_string(face->id));
        return ids;
    }
    static std::string g(const cGroupData* group) { return "g" + std::to_string(group->id); }
    static std::string e(const cEntityData* entity) { return "e" + std::to_string(entity->id); }
    static std::string b(const cBrushData* brush) { return "b" + std::to_string(brush->id); }
    using cIds = std::set<std::string>;
};

TEST_F(Selection, pickTakesTheUnitThatTheModeAsksFor) {
    cGroupData* inner = map.addGroup();
    cGroupData* outer = map.addGroup();
    map.joinGroupGroup(inner, outer);
    cBrushData* one = cubeOf(inner, 0);
    cBrushData* two = cubeOf(outer, 100);
    cBrushData* loose = cubeAt(200);
    cEntityData* door = addDoor();
    cBrushData* panel = cubeIn(door, 300);
    cBrushData* knob = cubeIn(door, 400);
    cEntityData* lamp = pointAt(500);
    map.joinGroupEntity(lamp, outer);
    const cFaceData* face = loose->faces;
    const auto pick = [this](int number, bool toggle = false) {
        if (!toggle)
            map.clearSelection();
        map.selectByPick(number, toggle);
        return chosen();
    };
    EXPECT_EQ(pick(outer->group->pickId), (cIds{g(outer), b(one), b(two), e(lamp)}));
    EXPECT_EQ(sentence(), QStringLiteral("group of 3 objects."));
    EXPECT_EQ(pick(loose->brush->pickId), cIds{b(loose)}) << "no group is not a group of all";
    EXPECT_EQ(pick(door->entity->pickId), (cIds{e(door), b(panel), b(knob)}));
    EXPECT_EQ(pick(world->entity->pickId), cIds{}) << "the world itself is never selected";
    EXPECT_EQ(pick(face->face->pickId), cIds{}) << "faces only while faces are selected";
    for (int number : {0, -1, 1 << 21})
        EXPECT_EQ(pick(number), cIds{}) << number;
    // Toggling: in, beside what is there, and out again with all members.
    pick(loose->brush->pickId);
    EXPECT_EQ(pick(outer->group->pickId, true).size(), 5u);
    EXPECT_TRUE(map.isPickSelected(outer->group->pickId));
    EXPECT_EQ(pick(outer->group->pickId, true), cIds{b(loose)});
    pick(door->entity->pickId, true);
    EXPECT_EQ(pick(door->entity->pickId, true), cIds{b(loose)});
    EXPECT_EQ(pick(loose->brush->pickId, true), cIds{});
    host.IgnoreGroups = true;
    EXPECT_EQ(pick(one->brush->pickId), cIds{b(one)}) << "the group stays out";
    EXPECT_EQ(pick(outer->group->pickId), cIds{});
    EXPECT_EQ(pick(panel->brush->pickId), cIds{b(panel)});
    map.selectEntity(door);
    EXPECT_EQ(pick(knob->brush->pickId, true), cIds{b(panel)}) << "the entity is no longer whole";
    host.pickingFaces = true;
    EXPECT_EQ(pick(face->face->pickId), cIds{"f" + std::to_string(face->id)});
    EXPECT_EQ(sentence(), QStringLiteral("1 face selected."));
    EXPECT_TRUE(map.isPickSelected(face->face->pickId));
    host.pickingFaces = false;
    EXPECT_FALSE(map.isPickSelected(face->face->pickId));
}

TEST_F(Selection, pickOfAFaceMayTakeAllFacesOfItsBrush) {
    cBrushData* brush = cubeAt(0);
    const int pick = brush->faces->next->face->pickId;
    host.pickingFaces = true;
    map.selectByPick(pick, false);
    map.selectBrushFacesByPick(pick, true);
    EXPECT_EQ(sentence(), QStringLiteral("5 faces selected.")) << "each by its own flag";
    map.selectBrushFacesByPick(pick, false);
    EXPECT_EQ(sentence(), QStringLiteral("6 faces selected."));
    map.clearFaces();
    EXPECT_EQ(sentence(), QStringLiteral("no selection."));
}

TEST_F(Selection, boxTestsLeaveAMarginOutward) {
    struct cCase {
        float from, to;
        int mode;
        bool hit;
        bool pointHit; // of an entity from 192 to 208, with its origin at 200
    };
    const cCase cases[] = {{64.0005f, 191.9995f, BOX_TOUCHING, true, true},
                           {64.002f, 191.998f, BOX_TOUCHING, false, false},
                           {0, 64, BOX_CONTAINED, true, false},
                           {0.0005f, 208, BOX_CONTAINED, true, true},
                           {0.002f, 207.99f, BOX_CONTAINED, false, false},
                           {32, 32, BOX_BY_CENTER, true, false},
                           {32.0005f, 200, BOX_BY_CENTER, true, true},
                           {32.002f, 199.998f, BOX_BY_CENTER, false, false}};
    cBrushData* brush = cubeAt(0);
    cEntityData* lamp = pointAt(200, 32, 32);
    for (const cCase& c : cases) {
        map.clearSelection();
        box(c.from, c.to, c.mode);
        EXPECT_EQ(isSelected(brush), c.hit) << c.from << " to " << c.to << " mode " << c.mode;
        EXPECT_EQ(isSelected(lamp), c.pointHit) << c.from << " to " << c.to << " mode " << c.mode;
    }
    // An entity off the middle of its box goes by its origin, a solid one by the middle.
    lamp->maxs[0] = 300;
    map.clearSelection();
    box(199, 201, BOX_BY_CENTER);
    EXPECT_TRUE(isSelected(lamp));
}

TEST_F(Selection, boxTakesWholeGroupsAndSolidEntitiesUnlessIgnored) {
    cGroupData* group = map.addGroup();
    cubeOf(group, 0);
    cBrushData* member = cubeOf(group, 100);
    cubeOf(group, 200);
    cBrushData* loose = cubeAt(600);
    cEntityData* door = addDoor();
    cubeIn(door, 700);
    cBrushData* knob = cubeIn(door, 800);
    cBrushData* jamb = cubeIn(door, 900);
    box(0, 10);
    EXPECT_EQ(sentence(), QStringLiteral("group of 3 objects."));
    EXPECT_EQ(chosen().size(), 4u);
    box(600, 610);
    EXPECT_EQ(sentence(), QStringLiteral("2 objects selected."));
    EXPECT_EQ(map.data.selectedBrushes, loose) << "selected last, so the head";
    box(0, 700 - 1);
    EXPECT_EQ(map.data.selectedBrushes, loose) << "what is selected is not reordered";
    map.clearSelection();
    box(800, 810);
    EXPECT_EQ(sentence(), QStringLiteral("func_door"));
    EXPECT_EQ(chosen().size(), 4u);
    host.IgnoreGroups = true;
    map.clearSelection();
    box(100, 110);
    EXPECT_EQ(chosen(), cIds{b(member)});
    map.clearSelection();
    box(800, 910);
    EXPECT_EQ(chosen(), (cIds{b(knob), b(jamb)})) << "brushes of an entity one by one";
}

TEST_F(Selection, hiddenAndMaskedObjectsAreNotSelected) {
    cBrushData* brush = cubeAt(0);
    cBrushData* detail = cubeAt(100);
    detail->faces->tex.contentFlags = 0x8000000;
    cEntityData* item = pointAt(200, 32, 32, "item_box");
    cEntityData* path = pointAt(300, 32, 32, "path_corner");
    const auto all = [this] {
        map.clearSelection();
        box(-100, 1000);
        const cIds boxed = chosen();
        map.clearSelection();
        map.selectAll();
        EXPECT_EQ(chosen(), boxed);
        return boxed;
    };
    host.HideMask = HM_DETAIL;
    EXPECT_EQ(all().size(), 4u) << "a profile without a detail mask hides nothing";
    host.mapProfile.detailContentMask = 0x8000000;
    EXPECT_EQ(all(), (cIds{b(brush), e(item), e(path)}));
    host.HideMask = HM_ITEMS;
    EXPECT_EQ(all(), (cIds{b(brush), b(detail), e(path)}));
    host.HideMask = HM_PATHS;
    EXPECT_EQ(all(), (cIds{b(brush), b(detail), e(item)}));
    host.HideMask = 0;
    brush->flags |= BF_HIDDEN;
    item->flags |= EF_HIDDEN;
    EXPECT_EQ(all(), (cIds{b(detail), e(path)}));
    // What is hidden after it was selected leaves, faces with their brush and a group with the last
    // of its members.
    cGroupData* group = map.addGroup();
    map.joinGroupBrush(detail, group);
    selectedPush(map.data.selectedGroups, group);
    selectedPush(map.data.selectedFaces, detail->faces);
    host.HideMask = HM_DETAIL;
    map.dropHidden();
    EXPECT_EQ(chosen(), cIds{e(path)});
}

TEST_F(Selection, allTakesOutermostShownGroupsWithMembersOnly) {
    cGroupData *inner = map.addGroup(), *outer = map.addGroup(), *hidden = map.addGroup();
    map.addGroup(); // empty
    map.joinGroupGroup(inner, outer);
    cBrushData* one = cubeOf(inner, 0);
    cBrushData* two = cubeOf(hidden, 100);
    hidden->flags |= GF_HIDDEN;
    cEntityData* door = addDoor();
    cBrushData* panel = cubeIn(door, 200);
    map.selectAll();
    EXPECT_EQ(chosen(), (cIds{g(outer), b(one), b(two), e(door), b(panel)}));
    host.IgnoreGroups = true;
    map.clearSelectionFull();
    EXPECT_EQ(chosen(), cIds{});
    map.selectAll();
    EXPECT_EQ(chosen(), (cIds{b(one), b(two), e(door), b(panel)}));
    map.selectFacesOfBrushes();
    EXPECT_FALSE(map.hasSelection()) << "faces take the place of all others";
    EXPECT_EQ(chosen().size(), 18u);
    EXPECT_EQ(sentence(), QStringLiteral("18 faces selected."));
}

TEST_F(Selection, rootsJoinTheObjectsThatAStepHasBroughtBack) {
    cGroupData *inner = map.addGroup(), *outer = map.addGroup();
    map.joinGroupGroup(inner, outer);
    cBrushData* one = cubeOf(inner, 0);
    cBrushData* two = cubeOf(outer, 100);
    cBrushData* loose = cubeAt(200);
    select({one, loose});
    selectedPush(map.data.selectedGroups, inner);
    map.selectRoots();
    EXPECT_EQ(chosen(), (cIds{g(outer), b(one), b(two), b(loose)}));
    two->flags |= BF_HIDDEN;
    map.dropHidden();
    EXPECT_EQ(chosen(), (cIds{g(outer), b(one), b(loose)})) << "it goes with the last member";
}

TEST_F(Selection, brushIsFoundByItsPlaceWithOrWithoutHiddenOnes) {
    cubeAt(0)->flags |= BF_HIDDEN;
    cBrushData* second = cubeAt(100);
    cBrushData* third = cubeAt(200);
    addDoor()->flags |= EF_HIDDEN;
    cEntityData* door = addDoor();
    cBrushData* panel = cubeIn(door, 300);
    struct cCase {
        int entity, brush;
        bool skipHidden;
        const cBrushData* found;
    };
    const cCase cases[] = {{0, 1, false, second}, {0, 1, true, third},     {0, 2, true, nullptr},
                           {2, 0, false, panel},  {1, 0, true, panel},     {1, 0, false, nullptr},
                           {9, 0, true, nullptr}, {-1, 0, false, nullptr}, {0, -1, false, nullptr}};
    for (const cCase& c : cases) {
        map.clearSelection();
        map.selectBrushByIndex(c.entity, c.brush, c.skipHidden);
        EXPECT_EQ(map.data.selectedBrushes, c.found) << c.entity << " " << c.brush;
    }
}

// ---- Visgroups and hiding

TEST_F(Selection, visgroupsTakeMembersMarkThemAndShowThem) {
    cVisGroup* set = map.createVisGroup("set");
    cBrushData* brush = cubeAt(0);
    cEntityData* door = addDoor();
    cBrushData* panel = cubeIn(door, 100);
    cBrushData* knob = cubeIn(door, 200);
    const int dirty = host.dirtyCount;
    map.assignVisGroup(set->id);
    EXPECT_EQ(host.dirtyCount, dirty) << "nothing was selected";
    select({brush, knob});
    map.assignVisGroup(set->id);
    map.assignVisGroup(99);
    EXPECT_EQ(set->objectCount, 2);
    EXPECT_TRUE(set->visible) << "shown from its first member on";
    map.clearSelection();
    map.markVisGroup(99);
    EXPECT_EQ(chosen(), cIds{});
    door->entity->addToVisGroup(set);
    panel->flags |= BF_HIDDEN;
    map.markVisGroup(set->id);
    EXPECT_EQ(chosen(), (cIds{b(brush), e(door), b(knob)}));
    // Off hides the entity with all of its brushes and drops them, on shows them all again.
    map.setVisGroupVisible(set);
    EXPECT_FALSE(set->visible);
    EXPECT_TRUE(door->flags & brush->flags & panel->flags & knob->flags & OF_HIDDEN);
    map.markVisGroup(set->id);
    EXPECT_EQ(chosen(), cIds{}) << "hidden members are not marked";
    map.setVisGroupVisible(set);
    EXPECT_TRUE(set->visible);
    EXPECT_FALSE((door->flags | brush->flags | panel->flags | knob->flags) & OF_HIDDEN);
    cVisGroup* empty = map.createVisGroup("empty");
    for (const bool visible : {true, false}) {
        map.setVisGroupVisible(empty);
        EXPECT_EQ(empty->visible, visible);
    }
}

TEST_F(Selection, objectOfTwoVisgroupsIsHiddenByEither) {
    cVisGroup* one = map.createVisGroup("one");
    cVisGroup* two = map.createVisGroup("two");
    cBrushData* shared = cubeAt(0);
    cBrushData* own = cubeAt(100);
    for (cVisGroup* visGroup : {one, two})
        shared->brush->addToVisGroup(visGroup);
    own->brush->addToVisGroup(two);
    map.computeVisGroupVisibility();
    map.setVisGroupVisible(one);
    EXPECT_TRUE(two->visible) << "one of its members still shows";
    map.setVisGroupVisible(two);
    EXPECT_FALSE(one->visible || two->visible);
    map.setVisGroupVisible(one);
    EXPECT_TRUE(one->visible && two->visible);
    EXPECT_TRUE(own->flags & BF_HIDDEN);
}

TEST_F(Selection, handHidingSparesEntitiesWithASelectedBrushAndRevealsAll) {
    cGroupData* group = map.addGroup();
    cBrushData* one = cubeOf(group, 0);
    cBrushData* two = cubeAt(100);
    cEntityData* door = addDoor();
    cBrushData* panel = cubeIn(door, 200);
    cBrushData* knob = cubeIn(door, 300);
    cEntityData* lamp = pointAt(400);
    EXPECT_FALSE(map.hideSelection());
    EXPECT_FALSE(map.hideUnselected());
    EXPECT_EQ(map.showHidden().total(), 0);
    map.selectByPick(group->group->pickId, false);
    EXPECT_TRUE(map.hideSelection());
    EXPECT_EQ(chosen(), cIds{});
    EXPECT_TRUE(group->flags & one->flags & OF_HIDDEN);
    host.IgnoreGroups = true;
    map.selectByPick(panel->brush->pickId, false);
    EXPECT_TRUE(map.hideUnselected());
    EXPECT_FALSE((door->flags | panel->flags | world->flags) & OF_HIDDEN);
    EXPECT_TRUE(knob->flags & two->flags & lamp->flags & OF_HIDDEN);
    EXPECT_EQ(chosen(), cIds{b(panel)});
    const cMap::cRevealed revealed = map.showHidden();
    EXPECT_EQ(revealed.entities, 1);
    EXPECT_EQ(revealed.brushes, 3);
    EXPECT_EQ(revealed.groups, 1);
    EXPECT_EQ(map.showHidden().total(), 0);
}

// ---- Many groups at once

TEST_F(Selection, manyGroupsJoinAndDissolveAsOneByOneWould) {
    cMap slow(host);
    addWorldTo(slow);
    std::vector<cGroupData*> gone[2];
    for (cMap* into : {&map, &slow}) {
        T_RandomSeed(5); // of the colours
        std::vector<cGroupData*> groups;
        for (int i = 0; i < 12; ++i) {
            groups.push_back(into->addGroup());
            if (i % 3)
                into->joinGroupGroup(groups[size_t(i) - 1], groups.back());
            if (i % 4 == 0)
                gone[into == &slow].push_back(groups.back());
        }
        for (int i = 0; i < 48; ++i) {
            const float mins[3] = {float(i), 0, 0}, maxs[3] = {float(i) + 1, 1, 1};
            into->joinGroupBrush(addBox(*into, into->world(), mins, maxs), groups[size_t(i) % 12]);
        }
        // All go into one new group, some members staying unselected.
        into->selectAll();
        for (int i = 0; i < 5; ++i)
            selectedRemove(into->data.selectedBrushes, into->data.selectedBrushes);
    }
    T_RandomSeed(6);
    map.joinSelection(map.addGroup());
    T_RandomSeed(6);
    cGroupData* slowAll = slow.addGroup();
    for (cBrushData* brush : selectedBrushesOf(slow.data))
        slow.joinGroupBrush(brush, slowAll);
    EXPECT_EQ(firstDifference(stateOf(slow), stateOf(map)).toStdString(), "");
    EXPECT_EQ(checkMapInvariants(map), QString());
    map.dissolveGroups(gone[0], true);
    for (cGroupData* group : gone[0])
        map.freeGroup(group);
    for (cGroupData* group : gone[1]) {
        slow.dissolveGroup(group, true);
        slow.freeGroup(group);
    }
    EXPECT_EQ(firstDifference(stateOf(slow), stateOf(map)).toStdString(), "");
    EXPECT_EQ(checkMapInvariants(map), QString());
}

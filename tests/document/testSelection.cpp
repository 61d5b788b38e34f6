// SPDX-License-Identifier: MIT
#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tFace.h"
#include "document/tGroup.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "support/tMapTools.h"
#include "support/tTestHost.h"

#include <gtest/gtest.h>
#include <set>

static const float ORIGIN[3] = {0, 0, 0};
static constexpr int TEXTURE_TOOL = 5;

class Selection : public testing::Test {
protected:
    void SetUp() override { world = addWorldTo(map); }

    cBrushData* boxAt(float x, cEntityData* owner = nullptr, cGroupData* group = nullptr) {
        const float mins[3] = {x, 0, 0}, maxs[3] = {x + 64, 64, 64};
        cBrushData* brush = addBox(map, owner ? owner : world, mins, maxs);
        if (group)
            map.joinGroupBrush(brush, group);
        return brush;
    }

    cEntityData* pointAt(float x, const char* classname = "light") {
        const float origin[3] = {x, 32, 32};
        return map.addEntity(classname, origin, EF_POINT);
    }

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

    QString sentence() const { return host.panes.at(2); }

    mutable cTestHost host;
    cMap map{nullptr};
    cEntityData* world = nullptr;
};

TEST_F(Selection, modeFollowsToolFirstThenIgnoredGroups) {
    EXPECT_EQ(map.updateSelectionMode(), MODE_GROUPS);
    host.IgnoreGroups = true;
    EXPECT_EQ(map.updateSelectionMode(), MODE_SINGLE);
    host.toolId = TEXTURE_TOOL;
    EXPECT_EQ(map.updateSelectionMode(), MODE_FACES);
}

TEST_F(Selection, pickTakesTheUnitThatTheModeAsksFor) {
    cGroupData* inner = map.addGroup();
    cGroupData* outer = map.addGroup();
    map.joinGroupGroup(inner, outer);
    cBrushData* one = boxAt(0, nullptr, inner);
    cBrushData* two = boxAt(100, nullptr, outer);
    cBrushData* loose = boxAt(200);
    cEntityData* door = map.addEntity("door", ORIGIN, 0);
    cBrushData* panel = boxAt(300, door);
    cBrushData* knob = boxAt(400, door);
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
    host.toolId = TEXTURE_TOOL;
    EXPECT_EQ(pick(face->face->pickId), cIds{"f" + std::to_string(face->id)});
    EXPECT_EQ(sentence(), QStringLiteral("1 face selected."));
    EXPECT_TRUE(map.isPickSelected(face->face->pickId));
    host.toolId = 0;
    EXPECT_FALSE(map.isPickSelected(face->face->pickId));
}

TEST_F(Selection, pickOfAFaceMayTakeAllFacesOfItsBrush) {
    cBrushData* brush = boxAt(0);
    const int pick = brush->faces->next->face->pickId;
    host.toolId = TEXTURE_TOOL;
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
    cBrushData* brush = boxAt(0);
    const float origin[3] = {200, 32, 32};
    cEntityData* lamp = map.addEntity("light", origin, EF_POINT);
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
    std::vector<cBrushData*> members;
    for (int i = 0; i < 5; ++i)
        members.push_back(boxAt(float(i) * 100, nullptr, group));
    cBrushData* loose = boxAt(600);
    cEntityData* door = map.addEntity("door", ORIGIN, 0);
    boxAt(700, door);
    cBrushData* knob = boxAt(800, door);
    cBrushData* jamb = boxAt(900, door);
    box(0, 10);
    EXPECT_EQ(sentence(), QStringLiteral("group of 5 objects."));
    EXPECT_EQ(chosen().size(), 6u);
    box(600, 610);
    EXPECT_EQ(sentence(), QStringLiteral("2 objects selected."));
    EXPECT_EQ(map.data.selectedBrushes, loose) << "selected last, so the head";
    box(0, 700 - 1);
    EXPECT_EQ(map.data.selectedBrushes, loose) << "what is selected is not reordered";
    map.clearSelection();
    box(800, 810);
    EXPECT_EQ(sentence(), QStringLiteral("door"));
    EXPECT_EQ(chosen().size(), 4u);
    host.IgnoreGroups = true;
    map.clearSelection();
    box(100, 110);
    EXPECT_EQ(chosen(), cIds{b(members[1])});
    map.clearSelection();
    box(800, 910);
    EXPECT_EQ(chosen(), (cIds{b(knob), b(jamb)})) << "brushes of an entity one by one";
    map.clearSelection();
    map.selectEntity(door);
    map.describeSelection();
    EXPECT_EQ(sentence(), QStringLiteral("3 objects selected."));
}

TEST_F(Selection, hiddenAndMaskedObjectsAreNotSelected) {
    cBrushData* brush = boxAt(0);
    cBrushData* detail = boxAt(100);
    detail->faces->tex.contentFlags = 0x8000000;
    cEntityData* item = pointAt(200, "item_box");
    cEntityData* path = pointAt(300, "path_corner");
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
    // What is hidden after it was selected leaves by dropHidden, faces with their brush.
    selectedPush(map.data.selectedFaces, detail->faces);
    host.HideMask = HM_DETAIL;
    map.dropHidden();
    EXPECT_EQ(chosen(), cIds{e(path)});
}

TEST_F(Selection, allTakesOutermostShownGroupsWithMembersOnly) {
    cGroupData* inner = map.addGroup();
    cGroupData* outer = map.addGroup();
    cGroupData* hidden = map.addGroup();
    map.addGroup(); // empty
    map.joinGroupGroup(inner, outer);
    cBrushData* one = boxAt(0, nullptr, inner);
    cBrushData* two = boxAt(100, nullptr, hidden);
    hidden->flags |= GF_HIDDEN;
    cEntityData* door = map.addEntity("door", ORIGIN, 0);
    cBrushData* panel = boxAt(200, door);
    map.selectAll();
    EXPECT_EQ(chosen(), (cIds{g(outer), b(one), b(two), e(door), b(panel)}));
    host.IgnoreGroups = true;
    map.clearSelectionFull();
    EXPECT_EQ(chosen(), cIds{});
    map.selectAll();
    EXPECT_EQ(chosen(), (cIds{b(one), b(two), e(door), b(panel)}));
}

TEST_F(Selection, rootsJoinTheObjectsThatAStepHasBroughtBack) {
    cGroupData* inner = map.addGroup();
    cGroupData* outer = map.addGroup();
    map.joinGroupGroup(inner, outer);
    cBrushData* one = boxAt(0, nullptr, inner);
    cBrushData* two = boxAt(100, nullptr, outer);
    cBrushData* loose = boxAt(200);
    selectedPush(map.data.selectedBrushes, one);
    selectedPush(map.data.selectedBrushes, loose);
    selectedPush(map.data.selectedGroups, inner);
    map.selectRoots();
    EXPECT_EQ(chosen(), (cIds{g(outer), b(one), b(two), b(loose)}));
    // Already a whole: nothing more. Hidden members go, and the group with the last of them.
    map.selectRoots();
    EXPECT_EQ(chosen().size(), 4u);
    two->flags |= BF_HIDDEN;
    map.dropHidden();
    EXPECT_EQ(chosen(), (cIds{g(outer), b(one), b(loose)}));
    one->flags |= BF_HIDDEN;
    map.dropHidden();
    EXPECT_EQ(chosen(), cIds{b(loose)});
    host.IgnoreGroups = true;
    selectedPush(map.data.selectedBrushes, two);
    map.selectRoots();
    EXPECT_EQ(chosen(), (cIds{b(two), b(loose)}));
}

TEST_F(Selection, brushIsFoundByItsPlaceWithOrWithoutHiddenOnes) {
    boxAt(0)->flags |= BF_HIDDEN;
    cBrushData* second = boxAt(100);
    cBrushData* third = boxAt(200);
    map.addEntity("gone", ORIGIN, 0)->flags |= EF_HIDDEN;
    cEntityData* door = map.addEntity("door", ORIGIN, 0);
    cBrushData* panel = boxAt(300, door);
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

TEST_F(Selection, facesTakeThePlaceOfBrushesEntitiesAndGroups) {
    cGroupData* group = map.addGroup();
    boxAt(0, nullptr, group);
    cEntityData* door = map.addEntity("door", ORIGIN, 0);
    boxAt(100, door);
    pointAt(300);
    map.selectAll();
    map.selectFacesOfBrushes();
    EXPECT_FALSE(map.hasSelection());
    EXPECT_EQ(sentence(), QStringLiteral("12 faces selected."));
    EXPECT_EQ(chosen().size(), 12u);
}

// ---- Visgroups and hiding

TEST_F(Selection, visgroupsTakeMembersMarkThemAndShowThem) {
    cVisGroup* set = map.createVisGroup("set");
    cBrushData* brush = boxAt(0);
    cEntityData* door = map.addEntity("door", ORIGIN, 0);
    cBrushData* panel = boxAt(100, door);
    cBrushData* knob = boxAt(200, door);
    const int dirty = host.dirtyCount;
    map.assignVisGroup(set->id);
    EXPECT_EQ(host.dirtyCount, dirty) << "nothing was selected";
    selectedPush(map.data.selectedBrushes, brush);
    selectedPush(map.data.selectedBrushes, knob);
    map.assignVisGroup(set->id);
    map.assignVisGroup(99);
    EXPECT_EQ(set->objectCount, 2);
    EXPECT_TRUE(set->visible) << "shown from its first member on";
    map.clearSelection();
    map.markVisGroup(99);
    EXPECT_EQ(chosen(), cIds{});
    map.markVisGroup(set->id);
    EXPECT_EQ(chosen(), (cIds{b(brush), b(knob)}));
    door->entity->addToVisGroup(set);
    panel->flags |= BF_HIDDEN;
    map.markVisGroup(set->id);
    EXPECT_EQ(chosen(), (cIds{b(brush), e(door), b(knob)}));
    // Off hides the entity with all of its brushes and drops them, on shows them all again.
    map.setVisGroupVisible(set);
    EXPECT_FALSE(set->visible);
    EXPECT_TRUE(door->flags & brush->flags & panel->flags & knob->flags & OF_HIDDEN);
    EXPECT_EQ(chosen(), cIds{});
    map.markVisGroup(set->id);
    EXPECT_EQ(chosen(), cIds{}) << "hidden members are not marked";
    map.setVisGroupVisible(set);
    EXPECT_TRUE(set->visible);
    EXPECT_FALSE((door->flags | brush->flags | panel->flags | knob->flags) & OF_HIDDEN);
    cVisGroup* empty = map.createVisGroup("empty");
    map.setVisGroupVisible(empty);
    EXPECT_TRUE(empty->visible);
    map.setVisGroupVisible(empty);
    EXPECT_FALSE(empty->visible);
}

TEST_F(Selection, objectOfTwoVisgroupsIsHiddenByEither) {
    cVisGroup* one = map.createVisGroup("one");
    cVisGroup* two = map.createVisGroup("two");
    cBrushData* shared = boxAt(0);
    cBrushData* own = boxAt(100);
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
    EXPECT_TRUE(map.mergeVisGroups(one->id, two->id));
    EXPECT_EQ(two->objectCount, 2);
    EXPECT_FALSE(map.mergeVisGroups(two->id, 77));
}

TEST_F(Selection, handHidingSparesEntitiesWithASelectedBrushAndRevealsAll) {
    cGroupData* group = map.addGroup();
    cBrushData* one = boxAt(0, nullptr, group);
    cBrushData* two = boxAt(100);
    cEntityData* door = map.addEntity("door", ORIGIN, 0);
    cBrushData* panel = boxAt(200, door);
    cBrushData* knob = boxAt(300, door);
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
    cMap slow(nullptr);
    cEntityData* slowWorld = addWorldTo(slow);
    const auto fill = [this](cMap& into, cEntityData* owner) {
        std::vector<cGroupData*> groups;
        for (int i = 0; i < 12; ++i) {
            cGroupData* group = into.addGroup();
            if (i % 3)
                into.joinGroupGroup(groups.back(), group);
            groups.push_back(group);
        }
        for (int i = 0; i < 48; ++i) {
            const float mins[3] = {float(i), 0, 0}, maxs[3] = {float(i) + 1, 1, 1};
            cBrushData* brush = addBox(into, owner, mins, maxs);
            into.joinGroupBrush(brush, groups[size_t(i) % 12]);
        }
        return groups;
    };
    fill(map, world);
    fill(slow, slowWorld);
    const auto same = [&] {
        EXPECT_EQ(checkMapInvariants(map), QString());
        EXPECT_EQ(checkMapInvariants(slow), QString());
        QStringList counts, slowCounts;
        for (const cGroupData* group : groupsOf(map.data))
            counts << QString::number(group->memberCount);
        for (const cGroupData* group : groupsOf(slow.data))
            slowCounts << QString::number(group->memberCount);
        const cBrushData* other = slowWorld->brushes;
        for (const cBrushData* brush : brushesOf(world)) {
            EXPECT_EQ(brush->group ? brush->group->id : 0, other->group ? other->group->id : 0);
            EXPECT_EQ(brush->rootGroup ? brush->rootGroup->id : 0,
                      other->rootGroup ? other->rootGroup->id : 0);
            other = other->next;
        }
        EXPECT_EQ(counts, slowCounts);
    };
    // All into one new group, some members staying unselected.
    map.selectAll();
    slow.selectAll();
    for (cMap* into : {&map, &slow}) {
        for (int i = 0; i < 5; ++i)
            selectedRemove(into->data.selectedBrushes, into->data.selectedBrushes);
    }
    map.joinSelection(map.addGroup());
    cGroupData* slowAll = slow.addGroup();
    for (cBrushData* brush : selectedBrushesOf(slow.data))
        slow.joinGroupBrush(brush, slowAll);
    same();
    std::vector<cGroupData*> gone, slowGone;
    for (cGroupData* group : groupsOf(map.data)) {
        if (group->id % 4 == 1)
            gone.push_back(group);
    }
    for (cGroupData* group : groupsOf(slow.data)) {
        if (group->id % 4 == 1)
            slowGone.push_back(group);
    }
    map.dissolveGroups(gone, true);
    for (cGroupData* group : gone)
        map.freeGroup(group);
    for (cGroupData* group : slowGone) {
        slow.dissolveGroup(group, true);
        slow.freeGroup(group);
    }
    same();
}

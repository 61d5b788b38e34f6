// SPDX-License-Identifier: MIT
#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tCullTree.h"
#include "document/tEntity.h"
#include "document/tGroup.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "support/tMapTools.h"
#include "support/tTestHost.h"

#include <gtest/gtest.h>

static const float ORIGIN[3] = {10, 20, 30};

class Map : public testing::Test {
protected:
    void SetUp() override { world = addWorldTo(map); }

    cBrushData* addRandomBox(cEntityData* entity) {
        float mins[3], maxs[3];
        for (int i = 0; i < 3; ++i) {
            mins[i] = float(T_RandomLong(-4500, 4500));
            maxs[i] = mins[i] + float(T_RandomLong(1, T_RandomLong(2, 900)));
        }
        return addBox(map, entity, mins, maxs);
    }

    cTestHost host;
    cMap map{nullptr};
    cEntityData* world = nullptr;
};

TEST(PickPool, numbersComeBackLowestFirst) {
    cTestHost host;
    cPickPool pool;
    for (int i = 1; i <= 10; ++i)
        EXPECT_EQ(pool.take(ePickKind::Face, nullptr), i);
    pool.give(5);
    EXPECT_EQ(pool.take(ePickKind::Face, nullptr), 5);
    EXPECT_EQ(pool.next(), 10);
    EXPECT_EQ(pool.take(ePickKind::Face, nullptr), 11);
    pool.give(-1);
    cPickPool single;
    single.take(ePickKind::Face, nullptr);
    single.give(1);
    EXPECT_EQ(single.high(), 1);
    EXPECT_EQ(single.next(), 1);
    EXPECT_EQ(single.take(ePickKind::Face, nullptr), 1);
}

TEST(PickPool, randomWalkNeverHandsOutANumberTwice) {
    cTestHost host;
    const unsigned seed = 4711;
    T_RandomSeed(seed);
    cPickPool pool;
    std::map<int, int> taken;
    for (int i = 0; i < 20000; ++i) {
        if (taken.empty() || T_RandomLong(0, 99) < 55) {
            const int number = pool.take(ePickKind::Brush, &taken);
            ASSERT_GE(number, 1);
            ASSERT_EQ(taken.count(number), 0u) << "seed " << seed << " step " << i;
            taken[number] = i;
        } else {
            auto some = taken.lower_bound(T_RandomLong(1, pool.high()));
            if (some == taken.end())
                some = taken.begin();
            pool.give(some->first);
            taken.erase(some);
        }
    }
    for (const auto& [number, step] : taken)
        EXPECT_EQ(pool.target(number).record, &taken);
}

TEST(PickPool, limitIsReportedAndPicksNothing) {
    cTestHost host;
    cPickPool pool;
    for (int i = 0; i < cPickPool::LIMIT; ++i)
        pool.take(ePickKind::None, nullptr);
    EXPECT_EQ(pool.take(ePickKind::None, nullptr), -1);
    EXPECT_EQ(host.count(eMessage::Error, QStringLiteral("too many objects")), 1);
    pool.give(4000000);
    EXPECT_EQ(pool.take(ePickKind::None, nullptr), 4000000);
}

TEST_F(Map, worldGoesToTheHeadAndCannotBeDeleted) {
    cMap late(nullptr);
    late.addEntity("light", ORIGIN, EF_POINT);
    cEntityData* added = late.addWorld("worldspawn");
    EXPECT_EQ(late.world(), added);
    late.freeEntity(added);
    EXPECT_EQ(late.world(), added);
}

TEST_F(Map, idsSkipZero) {
    map.lastEntityId = 0xFFFFFFFFu;
    EXPECT_EQ(map.addEntity("light", ORIGIN, EF_POINT)->id, 1u);
}

TEST_F(Map, epairsCompareKeysWithoutCase) {
    cEntityData* entity = map.addEntity("light", ORIGIN, EF_POINT);
    addEpairLast(entity, "Target", "a");
    addEpairFirst(entity, "target", "b");
    EXPECT_STREQ(getEpairValue(entity, "TARGET"), "b");
    EXPECT_EQ(setEpair(entity, "missing", "x"), nullptr);
    setEpair(entity, "TARGET", "c");
    EXPECT_STREQ(entity->epairs->value, "c");
    removeEpair(entity, "tarGET");
    EXPECT_EQ(entity->epairs, nullptr);
}

TEST_F(Map, classlessEntityWithoutBrushesIsAPointOf16Units) {
    cEntityData* entity = map.addEntity("unheard_of", ORIGIN, 0);
    updateEntity(entity, UM_REEVALUATE);
    EXPECT_TRUE(entity->flags & EF_POINT);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(entity->mins[i], ORIGIN[i] - 8);
        EXPECT_EQ(entity->maxs[i], ORIGIN[i] + 8);
    }
    EXPECT_TRUE(map.addEntity("item_box", ORIGIN, 0)->flags & EF_ITEM);
    EXPECT_TRUE(map.addEntity("AnyPathNode", ORIGIN, 0)->flags & EF_PATH);
}

TEST_F(Map, solidEntityHasTheBoundsOfItsBrushesAlone) {
    cEntityData* door = map.addEntity("door", ORIGIN, 0);
    const float mins[3] = {100, 110, 120}, maxs[3] = {130, 140, 150};
    cBrushData* panel = addBox(map, door, mins, maxs);
    cBrushData* hollow = map.addBrush(door);
    updateEntity(door, 0);
    EXPECT_EQ(memcmp(door->mins, mins, sizeof mins), 0) << "a brush without faces has no place";
    EXPECT_EQ(memcmp(door->maxs, maxs, sizeof maxs), 0);
    map.freeBrush(panel);
    EXPECT_FALSE(map.removeEmptySolidEntity(door));
    map.freeBrush(hollow);
    updateEntity(door, 0);
    EXPECT_EQ(door->maxs[0], 0);
    EXPECT_TRUE(map.removeEmptySolidEntity(door));
    EXPECT_EQ(host.count(eMessage::Print, QStringLiteral("removing the empty solid entity: door")),
              1);
}

TEST_F(Map, renderKeysReadColoursAmountsAndModes) {
    struct cCase {
        const char* key;
        const char* value;
        uint8_t color[4];
        int mode;
    };
    const cCase cases[] = {{"_color", "1 0.5 0", {255, 127, 0, 255}, 0},
                           {"_color", "255 128 0", {255, 128, 0, 255}, 0},
                           {"_color", "1.002 0 0", {1, 0, 0, 255}, 0},
                           {"_light", "0 0 0", {255, 255, 255, 255}, 0},
                           {"_light", "bright", {255, 255, 255, 255}, 0},
                           {"color", "nan 255 -5", {0, 255, 0, 255}, 0},
                           {"renderamt", "4294967296", {0, 0, 0, 255}, 0},
                           {"renderamt", "300", {0, 0, 0, 255}, 0},
                           {"renderamt", "-1", {0, 0, 0, 0}, 0},
                           {"alpha", "0.5", {0, 0, 0, 127}, 5},
                           {"rendermode", "4", {0, 0, 0, 255}, 4}};
    host.mapProfile.flags = PF_RENDER_KEYS | PF_ALPHA_KEY;
    for (const cCase& c : cases) {
        cEntityData* entity = map.addEntity("light", ORIGIN, EF_POINT);
        addEpairLast(entity, c.key, c.value);
        readRenderKeys(entity);
        EXPECT_EQ(memcmp(entity->renderColor, c.color, 4), 0) << c.key << " " << c.value;
        EXPECT_EQ(entity->renderMode, c.mode) << c.value;
    }
}

TEST_F(Map, classDefaultsArePrependedAndOwnValuesKept) {
    cEntityClass* c = host.addClass(QStringLiteral("light"), CK_POINT);
    c->variables = {{VT_STRING, QStringLiteral("targetname"), {}, {}, {}, {}},
                    {VT_INTEGER, QStringLiteral("light"), {}, {}, QStringLiteral("300"), {}},
                    {VT_FLAGS, QStringLiteral("bits"), {}, {}, QStringLiteral("6"), {}}};
    cEntityData* entity = map.addEntity("light", ORIGIN, EF_POINT);
    addEpairLast(entity, "light", "150");
    addEpairLast(entity, "model", "lamp");
    addEpairLast(entity, "gone", "x");
    resetEntityFromClass(entity);
    EXPECT_STREQ(entity->flagsKey, "bits");
    EXPECT_EQ(entity->spawnFlags, 6u);
    EXPECT_STREQ(entity->epairs->key, "bits");
    EXPECT_STREQ(getEpairValue(entity, "light"), "150");
    EXPECT_STREQ(getEpairValue(entity, "model"), "lamp");
    EXPECT_EQ(getEpair(entity, "gone"), nullptr);
    EXPECT_EQ(getEpair(entity, "targetname"), nullptr);
}

TEST_F(Map, emptiedChainOfGroupsGoesBottomUp) {
    cGroupData* outer = map.addGroup();
    cGroupData* inner = map.addGroup();
    map.joinGroupGroup(inner, outer);
    cBrushData* brush = addRandomBox(world);
    map.joinGroupBrush(brush, inner);
    EXPECT_EQ(brush->rootGroup, outer);
    EXPECT_EQ(checkMapInvariants(map), QString());
    map.freeBrush(brush);
    EXPECT_EQ(map.data.groups, nullptr);
    EXPECT_EQ(host.count(eMessage::Print, QStringLiteral("last brush deleted")), 2);
}

TEST_F(Map, joiningAWholeGroupCountsItOnce) {
    cGroupData* first = map.addGroup();
    cBrushData* a = addRandomBox(world);
    cBrushData* b = addRandomBox(world);
    map.joinGroupBrush(a, first);
    map.joinGroupBrush(b, first);
    cGroupData* second = map.addGroup();
    map.joinGroupBrush(a, second);
    map.joinGroupBrush(b, second);
    EXPECT_EQ(second->memberCount, 1);
    EXPECT_EQ(first->parent, second);
    EXPECT_EQ(checkMapInvariants(map), QString());
    map.joinGroupBrush(a, first);
    EXPECT_EQ(host.count(eMessage::Warning, QStringLiteral("duplicate group for brush")), 1);
    map.joinGroupGroup(second, first);
    EXPECT_EQ(host.count(eMessage::Warning, QStringLiteral("duplicate group for another")), 1);
    map.dissolveGroup(second, true);
    EXPECT_EQ(a->rootGroup, first);
    EXPECT_TRUE(isSelected(first));
}

TEST_F(Map, nestingGroupsMovesTheRootOfAllMembersAndNeverClosesACircle) {
    cGroupData* inner = map.addGroup();
    cGroupData* outer = map.addGroup();
    cBrushData* a = addRandomBox(world);
    cBrushData* b = addRandomBox(world);
    map.joinGroupBrush(a, inner);
    map.joinGroupBrush(b, inner);
    map.joinGroupGroup(inner, outer);
    EXPECT_EQ(a->rootGroup, outer);
    EXPECT_EQ(checkMapInvariants(map), QString());
    // One member takes its whole group along.
    cGroupData* top = map.addGroup();
    map.joinGroupBrush(a, top);
    EXPECT_EQ(b->rootGroup, top);
    EXPECT_EQ(checkMapInvariants(map), QString());
    // From one parent to another, past an object that stays behind.
    cBrushData* stays = addRandomBox(world);
    map.joinGroupBrush(stays, top);
    cGroupData* elsewhere = map.addGroup();
    map.joinGroupGroup(inner, elsewhere);
    EXPECT_EQ(b->rootGroup, elsewhere);
    EXPECT_EQ(stays->rootGroup, top);
    EXPECT_EQ(checkMapInvariants(map), QString());
    // A direct member of the outer group cannot take it below one of its own children.
    map.joinGroupGroup(outer, top);
    map.joinGroupBrush(stays, outer);
    EXPECT_EQ(host.count(eMessage::Warning, QStringLiteral("duplicate group for brush")), 1);
    EXPECT_EQ(top->parent, nullptr);
    EXPECT_EQ(checkMapInvariants(map), QString());
}

TEST_F(Map, visgroupsCountShowAndRenumber) {
    cVisGroup* one = map.createVisGroup("one");
    cVisGroup* two = map.createVisGroup("two");
    cVisGroup* empty = map.createVisGroup("empty");
    cBrushData* brush = addRandomBox(world);
    brush->brush->addToVisGroup(one);
    brush->brush->addToVisGroup(one);
    brush->brush->addToVisGroup(two);
    EXPECT_EQ(one->objectCount, 1);
    map.computeVisGroupVisibility();
    EXPECT_TRUE(one->visible && two->visible);
    EXPECT_FALSE(empty->visible);
    brush->flags |= BF_HIDDEN;
    map.computeVisGroupVisibility();
    EXPECT_FALSE(one->visible || two->visible);
    EXPECT_TRUE(map.mergeVisGroups(one->id, two->id));
    EXPECT_EQ(two->objectCount, 1);
    EXPECT_TRUE(map.purgeVisGroups());
    EXPECT_FALSE(map.purgeVisGroups());
    EXPECT_EQ(two->id, 1u);
    EXPECT_EQ(map.lastVisGroupId, 1u);
    map.setVisGroupId(two, 0xFFFFFFFFu);
    map.createVisGroup("first");
    map.setVisGroupId(map.findVisGroup(1), 2);
    map.lastVisGroupId = 1;
    EXPECT_EQ(map.createVisGroup("next")->id, 3u) << "an id in use is passed over";
    EXPECT_EQ(checkMapInvariants(map), QString());
}

TEST_F(Map, selectionSentenceSpeaksOfWhatIsSelected) {
    const auto said = [this] {
        map.describeSelection();
        return host.panes[2];
    };
    EXPECT_EQ(said(), QStringLiteral("no selection."));
    cBrushData* brush = addRandomBox(world);
    selectedPush(map.data.selectedBrushes, brush);
    EXPECT_EQ(said(), QStringLiteral("solid with 6 faces."));
    cEntityData* light = map.addEntity("light", ORIGIN, EF_POINT);
    addEpairLast(light, "targetname", "lamp");
    selectedPush(map.data.selectedEntities, light);
    EXPECT_EQ(said(), QStringLiteral("2 objects selected."));
    selectedRemove(map.data.selectedBrushes, brush);
    EXPECT_EQ(said(), QStringLiteral("light - lamp"));
    map.clearSelection();
    cGroupData* group = map.addGroup();
    map.joinGroupBrush(brush, group);
    selectedPush(map.data.selectedGroups, group);
    selectedPush(map.data.selectedBrushes, brush);
    EXPECT_EQ(said(), QStringLiteral("group of 1 objects."));
    map.clearSelection();
    selectedPush(map.data.selectedFaces, brush->faces);
    EXPECT_EQ(said(), QStringLiteral("1 face selected."));
    map.clearSelection();
    cEntityData* door = map.addEntity("door", ORIGIN, 0);
    cBrushData* panel = addRandomBox(door);
    selectedPush(map.data.selectedEntities, door);
    selectedPush(map.data.selectedBrushes, panel);
    EXPECT_EQ(said(), QStringLiteral("door"));
    host.IgnoreGroups = true;
    map.updateSelectionMode();
    EXPECT_EQ(said(), QStringLiteral("solid with 6 faces."));
}

TEST_F(Map, copiesAreWholeAndTheirOwn) {
    cBrushData* brush = addRandomBox(world);
    brush->reserved = 9;
    selectedPush(map.data.selectedBrushes, brush);
    cBrushData* copy = map.copyBrush(brush, world);
    EXPECT_NE(copy->id, brush->id);
    EXPECT_EQ(copy->reserved, 9u);
    EXPECT_FALSE(isSelected(copy));
    EXPECT_EQ(memcmp(copy->mins, brush->mins, sizeof copy->mins), 0);
    cEntityData* light = map.addEntity("light", ORIGIN, EF_POINT);
    addEpairLast(light, "light", "300");
    cEntityData* second = map.copyEntity(light);
    EXPECT_STREQ(getEpairValue(second, "light"), "300");
    EXPECT_NE(second->epairs, light->epairs);
    EXPECT_EQ(checkMapInvariants(map), QString());
}

// ---- The cull tree

// Every object whose box meets the query, by the tree.
static void collect(cCullTree& tree, cCullTree::cNode& node, const float* mins, const float* maxs,
                    std::set<void*>& found) {
    for (int i = 0; i < 3; ++i) {
        if (node.maxs[i] < mins[i] || node.mins[i] > maxs[i])
            return;
    }
    if (node.children) {
        for (cCullTree::cNode& child : *node.children)
            collect(tree, child, mins, maxs, found);
    }
    for (uint32_t index : node.objects)
        found.insert(tree.object(index).record);
}

TEST_F(Map, cullTreeFindsWhatAWalkFindsUnderChanges) {
    const unsigned seed = 99;
    SCOPED_TRACE(seed);
    T_RandomSeed(seed);
    map.buildCullTree();
    std::vector<cBrushData*> brushes;
    cEntityData* door = map.addEntity("door", ORIGIN, 0);
    for (int step = 0; step < 1500; ++step) {
        const int what = T_RandomLong(0, 9);
        if (what < 6 || brushes.empty()) {
            brushes.push_back(addRandomBox(what == 0 ? door : world));
        } else {
            const size_t some = size_t(T_RandomLong(0, int(brushes.size()) - 1));
            if (what < 8) {
                offsetBrushPlanes(brushes[some], float(T_RandomLong(1, 300)));
                updateEntity(brushes[some]->owner, 0);
            } else {
                map.freeBrush(brushes[some]);
                brushes.erase(brushes.begin() + long(some));
            }
        }
    }
    for (int query = 0; query < 200; ++query) {
        float mins[3], maxs[3];
        for (int i = 0; i < 3; ++i) {
            mins[i] = float(T_RandomLong(-4096, 4096));
            maxs[i] = std::min(4096.0f, mins[i] + float(T_RandomLong(0, 500)));
        }
        std::set<void*> found;
        collect(*map.cullTree, map.cullTree->root(), mins, maxs, found);
        for (uint32_t index : map.cullTree->outside())
            found.insert(map.cullTree->object(index).record);
        for (cBrushData* brush : brushes) {
            void* link = brush->owner == world ? static_cast<void*>(brush) : door;
            if (brushTouchesBox(brush, mins, maxs)) {
                EXPECT_TRUE(found.count(link)) << "query " << query;
            }
        }
        EXPECT_EQ(found.count(world), 0u);
    }
    EXPECT_EQ(checkMapInvariants(map), QString());
}

// SPDX-License-Identifier: MIT
#include "document/tCullTree.h"
#include "support/tMapTest.h"

#include <set>

static const float ORIGIN[3] = {10, 20, 30};

class Map : public cMapTest {
protected:
    cBrushData* addRandomBox(cEntityData* entity) {
        float mins[3], maxs[3];
        for (int i = 0; i < 3; ++i) {
            mins[i] = float(T_RandomLong(-4500, 4500));
            maxs[i] = mins[i] + float(T_RandomLong(1, T_RandomLong(2, 900)));
        }
        return addBox(map, entity, mins, maxs);
    }
};

TEST(PickPool, numbersComeBackLowestFirstUpToTheLimit) {
    cTestHost host;
    cPickPool pool;
    for (int i = 1; i <= cPickPool::LIMIT; ++i)
        ASSERT_EQ(pool.take(ePickKind::None, nullptr), i);
    EXPECT_EQ(pool.take(ePickKind::None, nullptr), -1);
    EXPECT_EQ(host.count(eMessage::Error, QStringLiteral("too many objects")), 1);
    pool.give(-1);
    for (int i : {4000000, 5})
        pool.give(i);
    for (int i : {5, 4000000})
        EXPECT_EQ(pool.take(ePickKind::None, nullptr), i);
    cPickPool single;
    single.take(ePickKind::Face, nullptr);
    single.give(1);
    EXPECT_EQ(single.high(), 1);
    EXPECT_EQ(single.next(), 1);
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

TEST_F(Map, worldGoesToTheHeadAndIdsSkipZero) {
    cMap late(host);
    late.lastEntityId = 0xFFFFFFFFu;
    EXPECT_EQ(late.addEntity("light", ORIGIN, EF_POINT)->id, 1u);
    cEntityData* added = late.addWorld("worldspawn");
    EXPECT_EQ(late.world(), added);
    late.freeEntity(added);
    EXPECT_EQ(late.world(), added) << "it cannot be deleted";
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
    cEntityData* door = addDoor();
    const float mins[3] = {100, 110, 120}, maxs[3] = {130, 140, 150};
    cBrushData* panel = addBox(map, door, mins, maxs);
    cBrushData* hollow = map.addBrush(door);
    updateEntity(door, 0);
    EXPECT_EQ(memcmp(door->mins, mins, sizeof mins), 0) << "a brush without faces has no place";
    EXPECT_EQ(memcmp(door->maxs, maxs, sizeof maxs), 0);
    map.freeBrush(panel);
    EXPECT_FALSE(map.removeEmptySolidEntity(door));
    map.freeBrush(hollow);
    EXPECT_TRUE(map.removeEmptySolidEntity(door));
    EXPECT_EQ(printed("removing the empty solid entity: func_door"), 1);
}

TEST_F(Map, attachmentsGiveTheBoxAndFollowScaleAndClass) {
    host.sprite.width = 40;
    host.sprite.height = 20;
    cEntityClass* c = host.addClass(QStringLiteral("prop"), CK_POINT);
    std::fill(c->maxs, c->maxs + 3, 50.0f);
    cEntityData* entity = map.addEntity("prop", ORIGIN, EF_POINT);
    const auto reach = [&] {
        updateEntity(entity, UM_MODEL_KEYS | UM_ATTACH);
        const bool counted = entity->attachment && entity->attachKind != AK_DECAL;
        EXPECT_EQ(host.references, counted ? 1 : 0);
        return entity->maxs[0] - ORIGIN[0];
    };
    EXPECT_EQ(reach(), 50) << "nothing to show: the class's box";
    c->iconSprite = QStringLiteral("icon");
    EXPECT_EQ(reach(), 20);
    EXPECT_EQ(host.asked, "icon");
    c->flags = ECF_SPRITE;
    EXPECT_EQ(reach(), 50) << "a sprite by key, without the key";
    addEpairLast(entity, "model", "lamp.spr");
    addEpairLast(entity, "scale", "0.5");
    EXPECT_EQ(reach(), 10);
    EXPECT_EQ(host.asked, "lamp.spr");
    setEpair(entity, "scale", "0.001");
    EXPECT_EQ(reach(), 1) << "a sprite is never smaller";
    c->flags |= ECF_NOSCALE;
    EXPECT_EQ(reach(), 20);
    c->flags = ECF_STUDIO;
    c->studio = QStringLiteral("own.mdl");
    EXPECT_EQ(reach(), 50) << "a model without bounds";
    EXPECT_EQ(host.asked, "own.mdl");
    host.model.maxs[0] = 30;
    setEpair(entity, "scale", "2");
    EXPECT_EQ(reach(), 60);
    host.addTexture("blood", 16, 24);
    c->flags = ECF_DECAL;
    addEpairLast(entity, "texture", "blood");
    EXPECT_EQ(reach(), 12);
    EXPECT_TRUE(entity->flags & EF_RECOMPUTE_ATTACHMENT);
    EXPECT_EQ(entity->attachKind, AK_DECAL);
    map.freeEntity(entity);
    EXPECT_EQ(host.findTexture("blood")->refCount, 0);
}

static int g_boundsAsked = 0;

static int32_t smallBounds(uint32_t, float* mins, float* maxs, cModelRecord*, cEntityData*) {
    ++g_boundsAsked;
    std::fill_n(mins, 3, -16.0f);
    std::fill_n(maxs, 3, 16.0f);
    return 1;
}

TEST_F(Map, boundsOfModelsAreAskedForOnlyWhenTheyMayHaveChanged) {
    host.addClass(QStringLiteral("prop"), CK_POINT)->flags = ECF_STUDIO;
    host.model.getBounds = smallBounds;
    std::fill_n(host.model.maxs, 3, 48.0f); // in another frame
    map.buildCullTree();
    cEntityData* entity = map.addEntity("prop", ORIGIN, EF_POINT);
    addEpairLast(entity, "model", "it");
    addEpairLast(entity, "scale", "2");
    g_boundsAsked = 0;
    const auto asks = [&](const std::function<void()>& change) {
        const int before = g_boundsAsked;
        change();
        updateEntity(entity, UM_MODEL_KEYS);
        return g_boundsAsked - before;
    };
    updateEntity(entity, UM_MODEL_KEYS | UM_ATTACH);
    EXPECT_EQ(g_boundsAsked, 1);
    EXPECT_EQ(asks([&] { entity->origin[0] += 8; }), 0) << "it only moves along";
    EXPECT_EQ(entity->maxs[0] - entity->origin[0], 32);
    EXPECT_EQ(asks([&] { entity->angles[1] = 90; }), 1);
    EXPECT_EQ(asks([&] { addEpairLast(entity, "sequence", "1"); }), 1);
    for (const char* text : {"0", "-2", "nan", "inf", "none"}) {
        EXPECT_LE(asks([&] { setEpair(entity, "scale", text); }), 1);
        EXPECT_EQ(entity->maxs[0] - entity->origin[0], 16) << text;
    }
    float mins[3], maxs[3];
    cullBounds(entity, mins, maxs);
    for (int i = 0; i < 3; ++i) // any corner of that frame, however it is turned
        EXPECT_GE(maxs[i] - entity->origin[i], 83);
    EXPECT_EQ(asks([] {}), 0);
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

TEST_F(Map, joiningAWholeGroupCountsItOnce) {
    cGroupData* first = map.addGroup();
    cGroupData* second = map.addGroup();
    cBrushData* a = cubeOf(first, 0);
    cBrushData* b = cubeOf(first, 100);
    map.joinGroupBrush(a, second);
    map.joinGroupBrush(b, second);
    EXPECT_EQ(second->memberCount, 1);
    EXPECT_EQ(first->parent, second);
    EXPECT_TRUE(isWhole());
    map.joinGroupBrush(a, first);
    EXPECT_EQ(host.count(eMessage::Warning, QStringLiteral("duplicate group for brush")), 1);
    map.joinGroupGroup(second, first);
    EXPECT_EQ(host.count(eMessage::Warning, QStringLiteral("duplicate group for another")), 1);
    // The last member that goes takes the chain along, from the bottom up.
    map.freeBrush(a);
    EXPECT_EQ(b->rootGroup, second);
    map.freeBrush(b);
    EXPECT_EQ(map.data.groups, nullptr);
    EXPECT_EQ(printed("last brush deleted"), 2);
}

TEST_F(Map, nestingGroupsMovesTheRootOfAllMembersAndNeverClosesACircle) {
    cGroupData *inner = map.addGroup(), *outer = map.addGroup(), *top = map.addGroup();
    cBrushData* a = cubeOf(inner, 0);
    cBrushData* b = cubeOf(inner, 100);
    map.joinGroupGroup(inner, outer);
    EXPECT_TRUE(isWhole());
    map.joinGroupBrush(a, top);
    EXPECT_EQ(b->rootGroup, top) << "one member takes its whole group along";
    EXPECT_TRUE(isWhole());
    // From one parent to another, past an object that stays behind.
    cBrushData* stays = cubeOf(top, 200);
    cGroupData* elsewhere = map.addGroup();
    map.joinGroupGroup(inner, elsewhere);
    EXPECT_EQ(b->rootGroup, elsewhere);
    EXPECT_TRUE(isWhole());
    // A direct member of the outer group cannot take it below one of its own children.
    map.joinGroupGroup(outer, top);
    map.joinGroupBrush(stays, outer);
    EXPECT_EQ(host.count(eMessage::Warning, QStringLiteral("duplicate group for brush")), 1);
    EXPECT_EQ(top->parent, nullptr);
    EXPECT_TRUE(isWhole());
}

TEST_F(Map, visgroupsCountShowAndRenumber) {
    cVisGroup* one = map.createVisGroup("one");
    cVisGroup* two = map.createVisGroup("two");
    cVisGroup* empty = map.createVisGroup("empty");
    cBrushData* brush = cubeAt(0);
    for (cVisGroup* visGroup : {one, one, two})
        brush->brush->addToVisGroup(visGroup);
    map.computeVisGroupVisibility();
    EXPECT_TRUE(one->visible && two->visible && !empty->visible);
    EXPECT_TRUE(isWhole());
    EXPECT_TRUE(map.mergeVisGroups(one->id, two->id));
    EXPECT_FALSE(map.mergeVisGroups(two->id, 77));
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
    EXPECT_TRUE(isWhole());
}

TEST_F(Map, selectionSentenceSpeaksOfWhatIsSelected) {
    cBrushData* brush = cubeAt(0);
    cEntityData* light = pointAt(0);
    addEpairLast(light, "targetname", "lamp");
    cEntityData* door = addDoor();
    cBrushData* panel = cubeIn(door, 100);
    struct cCase {
        std::vector<cBrushData*> brushes;
        std::vector<cEntityData*> entities;
        bool ignoreGroups;
        const char* sentence;
    };
    const cCase cases[] = {{{}, {}, false, "no selection."},
                           {{brush}, {}, false, "solid with 6 faces."},
                           {{brush}, {light}, false, "2 objects selected."},
                           {{}, {light}, false, "light - lamp"},
                           {{panel}, {door}, false, "func_door"},
                           {{panel}, {door}, true, "solid with 6 faces."}};
    for (const cCase& c : cases) {
        map.clearSelection();
        host.IgnoreGroups = c.ignoreGroups;
        map.updateSelectionMode();
        for (cBrushData* each : c.brushes)
            selectedPush(map.data.selectedBrushes, each);
        for (cEntityData* each : c.entities)
            selectedPush(map.data.selectedEntities, each);
        map.describeSelection();
        EXPECT_EQ(sentence().toStdString(), c.sentence);
    }
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
    cEntityData* door = addDoor();
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
            EXPECT_TRUE(found.count(link) || !brushTouchesBox(brush, mins, maxs)) << query;
        }
        EXPECT_EQ(found.count(world), 0u);
    }
    EXPECT_EQ(checkMapInvariants(map), QString());
}

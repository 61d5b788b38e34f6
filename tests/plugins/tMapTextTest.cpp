// SPDX-License-Identifier: MIT
// The two map plug-ins, loaded from disk: what they read, what they write, and that a map comes
// back as it went.
#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tFace.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "plugins/tMapPluginTest.h"
#include "support/tMapTextReader.h"
#include "support/tMapTools.h"
#include "support/tVec.h"

#include <QFile>
#include <cmath>
#include <gmock/gmock.h>

using MapText = cMapPluginTest;

// ---- Reading

static int brushCount(const cEntityData* entity) {
    int count = 0;
    for ([[maybe_unused]] const cBrushData* brush : brushesOf(entity))
        ++count;
    return count;
}

static const char FACES_OF_A_BOX[] = "( 0 0 0 ) ( 0 1 0 ) ( 0 0 1 ) %1 0 0 0 1 1\n"
                                     "( 0 0 0 ) ( 0 0 1 ) ( 1 0 0 ) %1 0 0 0 1 1\n"
                                     "( 0 0 0 ) ( 1 0 0 ) ( 0 1 0 ) %1 0 0 0 1 1\n"
                                     "( 64 64 64 ) ( 64 65 64 ) ( 65 64 64 ) %1 0 0 0 1 1\n"
                                     "( 64 64 64 ) ( 65 64 64 ) ( 64 64 65 ) %1 0 0 0 1 1\n"
                                     "( 64 64 64 ) ( 64 64 65 ) ( 64 65 64 ) %1 0 0 0 1 1\n";

static QByteArray box(const char* texture) {
    return "{\n" + str(FACES_OF_A_BOX).arg(str(texture)).toLatin1() + "}\n";
}

static QByteArray world(const QByteArray& brushes) {
    return "{\n\"classname\" \"worldspawn\"\n" + brushes + "}\n";
}

TEST_F(MapText, namesKeysAndLineEndsAreTakenAsTheyAre) {
    cMap map(host);
    QByteArray text = world("\"wad\" \"C:\\games\\q\\\"\n" + box("{grate") + box("*water1") +
                            box("+0lamp") + box("sky/dusk") + box("\"two words\"")) +
                      "{ \"classname\"\t\"light\" // lamp\n\"origin\" \"1.5 -2 3\" "
                      "\"message\" \"caf\xe9 // no comment\" }";
    text.replace("\n", "\r\n");
    ASSERT_TRUE(importText(map, text));
    EXPECT_TRUE(host.messages.empty());
    EXPECT_STREQ(getEpairValue(map.world(), "wad"), "C:\\games\\q\\");
    const char* const names[] = {"{grate", "*water1", "+0lamp", "sky/dusk", "two words"};
    size_t i = 0;
    for (const cBrushData* brush : brushesOf(map.world())) {
        EXPECT_STREQ(brush->faces->tex.name, names[i++]);
        EXPECT_TRUE(checkBrush(brush, false, nullptr));
    }
    EXPECT_EQ(i, 5u);
    const cEntityData* light = map.data.entitiesTail;
    EXPECT_STREQ(getEpairValue(light, "message"), "caf\xe9 // no comment");
    EXPECT_EQ(getEpair(light, "origin"), nullptr);
    EXPECT_EQ(light->origin[0], 1.5f);
    EXPECT_EQ(checkMapInvariants(map).toStdString(), "");
}

TEST_F(MapText, classicNumbersMeanWhatAnotherReaderMakesOfThem) {
    cMap map(host);
    const QByteArray text = world(box("a").replace("0 0 0 1 1", "7 -3 30 2 -0.5 8 2 50"));
    ASSERT_TRUE(importText(map, text));
    const cTextComparison result =
        compareTexts(text.toStdString(), contents(exportFile(map, "Axial Maps")));
    EXPECT_EQ(result.brushes, 1);
    EXPECT_EQ(result.inexact, 0);
    cMap odd(host);
    ASSERT_TRUE(importText(odd, world(box("a").replace("0 0 0 1 1", "7 -3 30 2 0 8 2 50 9 9"))));
    EXPECT_EQ(odd.world()->brushes->faces->tex.vScale, 1) << "a scale of 0 is none";
    EXPECT_EQ(count(eMessage::Warning, "2 number(s) past the known ones"), 1);
}

TEST_F(MapText, whatIsBrokenIsNamedByLineAndTheRestKept) {
    struct cCase {
        const char* name;
        QByteArray text;
        const char* message;
        int brushes;
    };
    QByteArray brokenFace = box("a");
    brokenFace.replace("( 1 0 0 ) ( 0 1 0 ) a", "( 1 0 x ) ( 0 1 0 ) a");
    QByteArray flat = box("a");
    flat.replace("64 64 64", "64 64 0").replace("64 64 65", "64 64 1");
    const cCase cases[] = {
        {"face", world(box("a") + brokenFace + box("b")), "line 14: broken face line", 2},
        {"flat", world(box("a") + flat), "the brush has no volume", 1},
        {"open", world(box("a") + box("b")).chopped(60), "the entity's brace is not closed", 1},
        {"few", world("{\n( 0 0 0 ) ( 0 1 0 ) ( 0 0 1 ) a 0 0 0 1 1\n}\n" + box("b")),
         "line 3: the brush has no volume", 1},
        {"patch",
         world("{\npatchDef2\n{\nname\n( 3 3 0 0 0 )\n(\n( ( 1 2 3 4 5 ) )\n)\n}\n}\n" + box("b")),
         "1 block(s) that are neither planes nor key/values were skipped, the first one "
         "\"patchDef2\" on line 3",
         1},
    };
    for (const cCase& c : cases) {
        host.messages.clear();
        cMap map(host);
        EXPECT_TRUE(importText(map, c.text)) << c.name;
        EXPECT_EQ(count(eMessage::Error, c.message) + count(eMessage::Warning, c.message), 1)
            << c.name;
        EXPECT_EQ(brushCount(map.world()), c.brushes) << c.name;
        EXPECT_EQ(checkMapInvariants(map).toStdString(), "") << c.name;
    }
    for (const char* nothing : {"", "no map at all", "// only a comment"}) {
        cMap map(host);
        EXPECT_FALSE(importText(map, nothing));
    }
}

TEST_F(MapText, keysMayComeAfterTheBrushes) {
    cMap map(host);
    QByteArray face = box("d");
    face.chop(3); // the brace on the last face's line
    const QByteArray text = world(QByteArray()) + "{\n" + face +
                            " }\n\"classname\" \"func_door\"\n\"speed\" \"9\"\n}\n{\n" + box("g") +
                            "\"classname\" \"func_group\" \"_tb_type\" \"_tb_group\"\n}\n";
    ASSERT_TRUE(importText(map, text));
    const cEntityData* door = map.world()->next;
    ASSERT_NE(door, nullptr);
    EXPECT_STREQ(door->classname, "func_door");
    EXPECT_STREQ(getEpairValue(door, "speed"), "9");
    EXPECT_EQ(brushCount(door), 1);
    ASSERT_NE(map.data.groups, nullptr);
    EXPECT_EQ(map.world()->brushes->group, map.data.groups);
    EXPECT_EQ(checkMapInvariants(map).toStdString(), "");
}

TEST_F(MapText, cutAndFlippedTextsLeaveAConsistentMap) {
    const QByteArray text = world(box("a") + box("{b")) +
                            "{\"classname\" \"func_group\" \"_tb_type\" \"_tb_group\" \"_tb_id\" "
                            "\"1\" \"_tb_group\" \"2\"" +
                            box("c") +
                            "}{\"classname\" \"func_group\" \"_tb_type\" \"_tb_group\" \"_tb_id\" "
                            "\"2\" \"_tb_group\" \"1\"}{\"classname\" \"light\" \"_tb_group\" "
                            "\"1\"}";
    const unsigned seed = 5150;
    T_RandomSeed(seed);
    for (int i = 0; i < 1500; ++i) {
        QByteArray broken = text.left(T_RandomLong(1, text.size()));
        for (int flips = T_RandomLong(0, 3); flips > 0; --flips)
            broken[T_RandomLong(0, broken.size() - 1)] =
                "{}()[]\" 0-9.e\n/x\xff"[T_RandomLong(0, 17)];
        cMap map(host);
        if (importText(map, broken)) {
            ASSERT_EQ(checkMapInvariants(map).toStdString(), "") << seed << " " << i;
        }
    }
}

// ---- Groups and layers

TEST_F(MapText, groupsAndLayersBecomeGroupsAndVisgroups) {
    cMap map(host);
    const QByteArray container = "{\"classname\" \"func_group\" \"_tb_type\" ";
    const QByteArray text =
        world(box("w")) + container +
        "\"_tb_layer\" \"_tb_name\" \"Roof\" \"_tb_id\" \"3\" \"_tb_layer_sort_index\" \"4\"" +
        box("r") + "}\n" + container +
        "\"_tb_group\" \"_tb_name\" \"Tower\" \"_tb_id\" \"7\" \"_tb_layer\" \"3\"" + box("t") +
        "}\n" + container +
        "\"_tb_group\" \"_tb_name\" \"Clock\" \"_tb_id\" \"8\" \"_tb_group\" \"7\"" + box("c") +
        "}\n{\"classname\" \"light\" \"origin\" \"1 2 3\" \"_tb_group\" \"8\"}\n";
    ASSERT_TRUE(importText(map, text));
    EXPECT_EQ(checkMapInvariants(map).toStdString(), "");
    ASSERT_EQ(map.visGroups.size(), 1);
    EXPECT_STREQ(map.visGroups.first()->name, "Roof");
    EXPECT_EQ(map.visGroups.first()->objectCount, 4) << "roof, tower, clock, light";
    const cEntityData* light = map.data.entitiesTail;
    ASSERT_TRUE(light->group && light->group->parent);
    EXPECT_EQ(light->rootGroup, light->group->parent);
    EXPECT_EQ(map.data.entities->next, light) << "containers are no entities";
}

// ---- Export flags

TEST_F(MapText, exportHonoursHiddenObjectsAndSealsTheCordon) {
    cMap map(host);
    cEntityData* w = addWorldTo(map);
    const float in[3] = {0, 0, 0}, inMax[3] = {32, 32, 32};
    const float out[3] = {500, 0, 0}, outMax[3] = {532, 32, 32};
    addBox(map, w, in, inMax, "kept");
    addBox(map, w, out, outMax, "outside");
    addBox(map, w, in, inMax, "hidden")->flags |= BF_HIDDEN;
    const float inside[3] = {50, 50, 50}, outside[3] = {600, 0, 0};
    map.addEntity("light_in", inside, EF_POINT);
    map.addEntity("light_out", outside, EF_POINT);
    const float cordonMins[3] = {-64, -64, -64}, cordonMaxs[3] = {128, 128, 128};
    vecCopy(cordonMins, map.data.cordonMins);
    vecCopy(cordonMaxs, map.data.cordonMaxs);
    map.data.flags |= MF_EXPORT_CORDON | MF_EXPORT_VISIBLE;
    for (const char* kind : {"Axial Maps", "Classic Maps"}) {
        cMap read(host);
        ASSERT_TRUE(importFile(read, exportFile(map, kind)));
        EXPECT_STREQ(read.world()->brushes->faces->tex.name, "kept");
        EXPECT_EQ(brushCount(read.world()), 7) << "six seals";
        // No way out: each of many rays from the middle meets a seal, though none is at its start.
        const auto isSealed = [&](const float* p) {
            bool sealed = false;
            for (const cBrushData* brush : cBrushRange(read.world()->brushes->next))
                sealed |= brushTouchesBox(brush, p, p);
            return sealed;
        };
        for (int i = 0; i < 200; ++i) {
            float way[3], p[3] = {40, 40, 40};
            for (float& c : way)
                c = float(T_RandomLong(-1000, 1000));
            T_VectorNormalize(way);
            int steps = 0;
            for (; steps < 400 && !isSealed(p); ++steps)
                vecMA(p, 1.0f, way, p);
            EXPECT_GT(steps, 80);
            EXPECT_LT(steps, 400);
        }
        ASSERT_NE(read.world()->next, nullptr);
        EXPECT_STREQ(read.world()->next->classname, "light_in");
        EXPECT_EQ(read.world()->next->next, nullptr);
    }
}

TEST_F(MapText, fileThatCannotBeWrittenIsReported) {
    cMap map(host);
    ASSERT_TRUE(importText(map, world(box("a"))));
    const cMapFormat* f = format(manager->exportFormats, "Axial Maps");
    ASSERT_NE(f, nullptr);
    int failures = 0;
    for (const char* target : {"/dev/full", "/no/such/folder/out.map"}) {
        EXPECT_FALSE(f->function(f->id, target, &map.data)) << target;
        EXPECT_EQ(count(eMessage::Error, "can't write \""), ++failures);
    }
}

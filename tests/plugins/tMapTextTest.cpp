// SPDX-License-Identifier: MIT
// The two map plug-ins, loaded from disk: what they read, what they write, and that a map comes
// back as it went.
#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tFace.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tProjectFile.h"
#include "document/tVisGroup.h"
#include "plugins/tMapPluginTest.h"
#include "support/tMapTools.h"
#include "support/tVec.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

using MapText = cMapPluginTest;

// ---- Comparing maps

static const cFaceData* faceOnPlane(const cBrushData* brush, const cPlane& plane) {
    for (const cFaceData* face : facesOf(brush)) {
        if (planesEqual(planeOf(face), plane, false))
            return face;
    }
    return nullptr;
}

static double texel(const float* p, const float* axis, float scale, float shift) {
    return (double(p[0]) * double(axis[0]) + double(p[1]) * double(axis[1]) +
            double(p[2]) * double(axis[2])) /
               double(scale) +
           double(shift);
}

// The worst difference in texels over the vertices of a face.
static double texelError(const cFaceData* a, const cFaceData* b) {
    double worst = 0;
    for (int i = 0; i < a->vertexCount; ++i) {
        const float* p = a->vertices[i].xyz;
        const cFaceTexture &ta = a->tex, &tb = b->tex;
        worst = std::max(worst, std::fabs(texel(p, ta.uAxis, ta.uScale, ta.uShift) -
                                          texel(p, tb.uAxis, tb.uScale, tb.uShift)));
        worst = std::max(worst, std::fabs(texel(p, ta.vAxis, ta.vScale, ta.vShift) -
                                          texel(p, tb.vAxis, tb.vScale, tb.vShift)));
    }
    return worst;
}

static QStringList keyValues(const cEntityData* entity) {
    QStringList pairs;
    for (const cEpair* pair : epairsOf(entity)) {
        const QString key = QString::fromLocal8Bit(pair->key);
        if (!key.startsWith(str("_kvx_")))
            pairs << key + str("=") + QString::fromLocal8Bit(pair->value);
    }
    return pairs;
}

struct cComparison {
    int brushes = 0;
    int faces = 0;
    int inexact = 0; // faces whose texels differ
};

static void compareBrushes(const cBrushData* a, const cBrushData* b, cComparison* result) {
    ++result->brushes;
    int faces = 0;
    for (const cFaceData* face : facesOf(a)) {
        ++faces;
        const cFaceData* other = faceOnPlane(b, planeOf(face));
        ASSERT_NE(other, nullptr) << "brush " << result->brushes;
        ++result->faces;
        EXPECT_STREQ(face->tex.name, other->tex.name);
        EXPECT_EQ(face->tex.contentFlags, other->tex.contentFlags);
        EXPECT_EQ(face->tex.surfaceFlags, other->tex.surfaceFlags);
        EXPECT_EQ(face->tex.value, other->tex.value);
        result->inexact += texelError(face, other) > 0.01 ? 1 : 0;
    }
    for ([[maybe_unused]] const cFaceData* face : facesOf(b))
        --faces;
    EXPECT_EQ(faces, 0) << "brush " << result->brushes;
}

static cComparison compareMaps(const cMap& a, const cMap& b) {
    cComparison result;
    const cEntityData* other = b.data.entities;
    for (const cEntityData* entity : entitiesOf(a.data)) {
        if (!other) {
            ADD_FAILURE() << "entities are missing";
            return result;
        }
        EXPECT_STREQ(entity->classname, other->classname);
        EXPECT_EQ(keyValues(entity).join(str(";")).toStdString(),
                  keyValues(other).join(str(";")).toStdString())
            << entity->classname;
        EXPECT_EQ(entity->spawnFlags, other->spawnFlags);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(entity->origin[i], other->origin[i]);
        const cBrushData* otherBrush = other->brushes;
        for (const cBrushData* brush : brushesOf(entity)) {
            if (!otherBrush) {
                ADD_FAILURE() << "brushes are missing in " << entity->classname;
                return result;
            }
            compareBrushes(brush, otherBrush, &result);
            EXPECT_EQ(brush->group != nullptr, otherBrush->group != nullptr);
            otherBrush = otherBrush->next;
        }
        EXPECT_EQ(otherBrush, nullptr);
        other = other->next;
    }
    EXPECT_EQ(other, nullptr);
    return result;
}

// ---- Reading

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
    cMap map(nullptr);
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

TEST_F(MapText, classicProjectionTurnsTheBaseAxes) {
    cMap map(nullptr);
    QByteArray text = world(box("a"));
    text.replace("( 64 64 64 ) ( 64 65 64 ) ( 65 64 64 ) a 0 0 0 1 1",
                 "( 64 64 64 ) ( 64 65 64 ) ( 65 64 64 ) a 7 -3 30 2 0 8 2 50 9 9");
    ASSERT_TRUE(importText(map, text));
    const cPlane top = {{0, 0, 1}, 64, 2, 0};
    const cFaceData* face = faceOnPlane(map.world()->brushes, top);
    ASSERT_NE(face, nullptr);
    EXPECT_NEAR(face->tex.uAxis[0], std::cos(M_PI / 6), 1e-6);
    EXPECT_NEAR(face->tex.uAxis[1], std::sin(M_PI / 6), 1e-6);
    EXPECT_NEAR(face->tex.vAxis[0], std::sin(M_PI / 6), 1e-6);
    EXPECT_NEAR(face->tex.vAxis[1], -std::cos(M_PI / 6), 1e-6);
    EXPECT_EQ(face->tex.uShift, 7);
    EXPECT_EQ(face->tex.uScale, 2);
    EXPECT_EQ(face->tex.vScale, 1) << "a scale of 0 is none";
    EXPECT_EQ(face->tex.contentFlags, 8u);
    EXPECT_EQ(face->tex.surfaceFlags, 2u);
    EXPECT_EQ(face->tex.value, 50u);
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
        cMap map(nullptr);
        EXPECT_TRUE(importText(map, c.text)) << c.name;
        EXPECT_EQ(count(eMessage::Error, c.message) + count(eMessage::Warning, c.message), 1)
            << c.name;
        int brushes = 0;
        for ([[maybe_unused]] const cBrushData* brush : brushesOf(map.world()))
            ++brushes;
        EXPECT_EQ(brushes, c.brushes) << c.name;
        EXPECT_EQ(checkMapInvariants(map).toStdString(), "") << c.name;
    }
    for (const char* nothing : {"", "no map at all", "// only a comment"}) {
        cMap map(nullptr);
        EXPECT_FALSE(importText(map, nothing));
    }
}

// What an entity is stands fixed once its first brush is read.
TEST_F(MapText, keysMayComeAfterTheBrushes) {
    cMap map(nullptr);
    const QByteArray text = world(QByteArray()) + "{\n" + box("d") +
                            "\"classname\" \"func_door\"\n\"speed\" \"9\"\n}\n{\n" + box("g") +
                            "\"classname\" \"func_group\" \"_tb_type\" \"_tb_group\"\n}\n";
    ASSERT_TRUE(importText(map, text));
    const cEntityData* door = map.world()->next;
    ASSERT_NE(door, nullptr);
    EXPECT_STREQ(door->classname, "func_door");
    EXPECT_STREQ(getEpairValue(door, "speed"), "9");
    ASSERT_NE(door->next, nullptr);
    EXPECT_NE(door->next->brushes, nullptr);
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
        cMap map(nullptr);
        if (importText(map, broken)) {
            ASSERT_EQ(checkMapInvariants(map).toStdString(), "") << seed << " " << i;
        }
    }
}

// ---- Groups and layers

TEST_F(MapText, groupsAndLayersTravelBothWays) {
    cMap map(nullptr), back(nullptr);
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

    const QString file = exportFile(map, "Axial Maps");
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    const QByteArray out = written.readAll();
    for (const char* expected :
         {"\"_tb_name\" \"Tower\"", "\"_tb_id\" \"7\"", "\"_tb_layer_sort_index\" \"4\"",
          "\"_tb_layer\" \"3\"", "\"_tb_group\" \"8\""})
        EXPECT_TRUE(out.contains(expected)) << expected << "\n" << out.constData();
    EXPECT_FALSE(out.contains("_kvx_"));
    ASSERT_TRUE(importFile(back, file));
    EXPECT_EQ(compareMaps(map, back).brushes, 4);
    EXPECT_EQ(back.data.entitiesTail->rootGroup->memberCount,
              map.data.entitiesTail->rootGroup->memberCount);
}

// ---- Export flags

TEST_F(MapText, exportHonoursHiddenObjectsAndSealsTheCordon) {
    cMap map(nullptr);
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
        cMap read(nullptr);
        ASSERT_TRUE(importFile(read, exportFile(map, kind)));
        EXPECT_STREQ(read.world()->brushes->faces->tex.name, "kept");
        int seals = 0;
        for (const cBrushData* brush : cBrushRange(read.world()->brushes->next)) {
            ++seals;
            EXPECT_TRUE(checkBrush(brush, false, nullptr));
            float middle[3] = {32, 32, 32};
            EXPECT_FALSE(brushTouchesBox(brush, middle, middle));
        }
        EXPECT_EQ(seals, 6);
        // No way out: each of many rays from the middle meets a seal.
        for (int i = 0; i < 200; ++i) {
            float end[3];
            for (float& c : end)
                c = float(T_RandomLong(-1000, 1000));
            T_VectorNormalize(end);
            bool met = false;
            for (float t = 0; t < 400 && !met; t += 1) {
                const float p[3] = {32 + end[0] * t, 32 + end[1] * t, 32 + end[2] * t};
                for (const cBrushData* brush : cBrushRange(read.world()->brushes->next))
                    met |= brushTouchesBox(brush, p, p);
            }
            EXPECT_TRUE(met);
        }
        ASSERT_NE(read.world()->next, nullptr);
        EXPECT_STREQ(read.world()->next->classname, "light_in");
        EXPECT_EQ(read.world()->next->next, nullptr);
    }
}

TEST_F(MapText, fileThatCannotBeWrittenIsReported) {
    cMap map(nullptr);
    ASSERT_TRUE(importText(map, world(box("a"))));
    const cMapFormat* f = format(manager->exportFormats, "Axial Maps");
    ASSERT_NE(f, nullptr);
    int failures = 0;
    for (const char* target : {"/dev/full", "/no/such/folder/out.map"}) {
        EXPECT_FALSE(f->function(f->id, target, &map.data)) << target;
        EXPECT_EQ(count(eMessage::Error, "can't write \""), ++failures);
    }
}

// ---- Round trips

// Key/values as an independent look at the text finds them, of entities without containers.
static QStringList pairsInText(const QByteArray& text) {
    static const QRegularExpression pattern(str("^\\s*\"([^\"]*)\"\\s+\"([^\"]*)\""));
    QStringList pairs;
    for (const QString& line : QString::fromLocal8Bit(text).split(QLatin1Char('\n'))) {
        const QRegularExpressionMatch match = pattern.match(line);
        if (match.hasMatch())
            pairs << match.captured(1) + str("=") + match.captured(2);
    }
    pairs.sort();
    return pairs;
}

static QByteArray contents(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

class MapFile : public MapText, public testing::WithParamInterface<std::string> {
protected:
    static QString mapPath() { return QString::fromStdString(GetParam()); }
};

TEST_P(MapFile, comesBackThroughBothTextsAndTheProjectFile) {
    cMap map(nullptr);
    ASSERT_TRUE(importFile(map, mapPath()));
    ASSERT_EQ(checkMapInvariants(map).toStdString(), "");
    EXPECT_EQ(count(eMessage::Error, ""), 0);
    int brushes = 0;
    for (const cEntityData* entity : entitiesOf(map.data)) {
        for (const cBrushData* brush : brushesOf(entity)) {
            ++brushes;
            EXPECT_TRUE(checkBrush(brush, true, nullptr)) << "brush " << brushes;
        }
    }

    const QString axial = exportFile(map, "Axial Maps", "axial.map");
    cMap byAxial(nullptr);
    ASSERT_TRUE(importFile(byAxial, axial));
    cComparison result = compareMaps(map, byAxial);
    EXPECT_EQ(result.brushes, brushes);
    EXPECT_EQ(result.inexact, 0);
    const QStringList written = pairsInText(contents(axial));
    const QStringList original = pairsInText(contents(mapPath()));
    for (const QString& pair : original)
        EXPECT_TRUE(written.contains(pair)) << pair.toStdString();
    EXPECT_EQ(written.size(), original.size());

    host.messages.clear();
    cMap byClassic(nullptr);
    ASSERT_TRUE(importFile(byClassic, exportFile(map, "Classic Maps", "classic.map")));
    result = compareMaps(map, byClassic);
    // Axes that the classic line can't hold are warned of; all others come back exactly.
    if (count(eMessage::Warning, "can't hold exactly") == 0) {
        EXPECT_EQ(result.inexact, 0);
    }
    for (const auto& message : host.messages) {
        if (message.text.contains(str("can't hold exactly"))) {
            EXPECT_EQ(message.text.section(QLatin1Char(' '), 0, 0).toInt(), result.inexact);
        }
    }

    map.clearSelection();
    ASSERT_TRUE(cProjectFile(map, path("map.kvx")).save());
    cMap project(nullptr), after(nullptr);
    ASSERT_TRUE(cProjectFile(project, path("map.kvx")).load());
    project.finishLoad();
    EXPECT_EQ(dumpMap(map), dumpMap(project));
    ASSERT_TRUE(importFile(after, exportFile(project, "Axial Maps", "after.map")));
    result = compareMaps(map, after);
    EXPECT_EQ(result.inexact, 0);
    EXPECT_EQ(result.brushes, brushes);
}

// The maps of the sample game, and those of other makers where their folder is.
static std::vector<std::string> mapFiles() {
    std::vector<std::string> files;
    for (const QString& folder :
         {str(KARVEX_SOURCE) + str("/game/maps"), str(KARVEX_REAL_DATA) + str("/maps")}) {
        const QDir directory(folder);
        if (folder.startsWith(QLatin1Char('/')) && directory.exists()) {
            for (const QString& name : directory.entryList({str("*.map")}, QDir::Files))
                files.push_back(directory.filePath(name).toStdString());
        }
    }
    return files;
}

INSTANTIATE_TEST_SUITE_P(
    All, MapFile, testing::ValuesIn(mapFiles()),
    [](const testing::TestParamInfo<std::string>& file) {
        QString name = QString::fromStdString(file.param).section(QLatin1Char('/'), -1);
        return name.replace(QRegularExpression(str("[^A-Za-z0-9]")), str("_")).toStdString();
    });

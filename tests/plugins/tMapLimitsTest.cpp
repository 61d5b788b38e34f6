// SPDX-License-Identifier: MIT
// Where texts and the editor hold different things: what can't be kept is mended or counted, never
// dropped in silence. And files of a size at which the square of it would never end.
#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tGroup.h"
#include "document/tMapLists.h"
#include "document/tProjectFile.h"
#include "document/tVisGroup.h"
#include "plugins/tMapPluginTest.h"
#include "support/tFileSizeLimit.h"
#include "support/tLaw.h"
#include "support/tMapText.h"
#include "support/tMapTextReader.h"
#include "support/tMapTools.h"

#include <QDir>
#include <QFileInfo>
#include <cmath>
#include <gmock/gmock.h>
#include <map>

using testing::HasSubstr;
using testing::Not;

static const char WORLD[] = "{ \"classname\" \"worldspawn\"\n";

static QByteArray floorAndCeiling() {
    return "( 0 0 0 ) ( 1 0 0 ) ( 0 1 0 ) cap 0 0 0 1 1\n"
           "( 0 0 64 ) ( 0 1 64 ) ( 1 0 64 ) cap 0 0 0 1 1\n";
}

static QByteArray box(const char* mapping = "0 0 0 1 1") {
    return "{\n" + floorAndCeiling() + "( 0 0 0 ) ( 0 1 0 ) ( 0 0 1 ) a " + mapping +
           "\n( 0 0 0 ) ( 0 0 1 ) ( 1 0 0 ) a 0 0 0 1 1\n"
           "( 64 64 64 ) ( 64 65 64 ) ( 64 64 63 ) a 0 0 0 1 1\n"
           "( 64 64 64 ) ( 64 64 63 ) ( 65 64 64 ) a 0 0 0 1 1\n}\n";
}

static QByteArray group(int id, int parent, const QByteArray& inside = QByteArray()) {
    return "{ \"classname\" \"func_group\" \"_tb_type\" \"_tb_group\"" +
           (id ? " \"_tb_id\" \"" + QByteArray::number(id) + "\"" : QByteArray()) +
           (parent ? " \"_tb_group\" \"" + QByteArray::number(parent) + "\"" : QByteArray()) +
           inside + " }\n";
}

class MapLimits : public cMapPluginTest {
protected:
    void read(const QByteArray& text) {
        host.messages.clear();
        map.clearMap();
        ASSERT_TRUE(importText(map, text));
        ASSERT_EQ(checkMapInvariants(map).toStdString(), "");
    }
    std::string written(const char* kind = "Axial Maps") { return contents(exportFile(map, kind)); }
    int warned(const char* text) const { return count(eMessage::Warning, text); }

    cMap map{host};
};

// ---- Geometry and numbers

static double areaOf(const cFaceData* face) {
    double area = 0;
    for (int i = 0; i < face->vertexCount; ++i) {
        const float* p = face->vertices[i].xyz;
        const float* q = face->vertices[(i + 1) % face->vertexCount].xyz;
        area += double(p[0]) * double(q[1]) - double(q[0]) * double(p[1]);
    }
    return area / 2;
}

TEST_F(MapLimits, brushesWithTooManyCornersAreCutIntoPieces) {
    for (const int sides : {128, 129, 192, 1000}) {
        QByteArray text = WORLD + ("{\n" + floorAndCeiling());
        for (int i = 0; i < sides; ++i) {
            const double angle = i * 2 * M_PI / sides, s = 4096 * sin(angle), c = 4096 * cos(angle);
            text += QString::asprintf(
                        "( %.9f %.9f 0 ) ( %.9f %.9f 1 ) ( %.9f %.9f 0 ) side 0 0 0 1 1\n", c, s, c,
                        s, c - s, s + c)
                        .toLatin1();
        }
        read(text + "}\n}\n");
        double area = 0;
        size_t sideFaces = 0;
        for (const cBrushData* brush : brushesOf(map.world())) {
            for (const cFaceData* face : facesOf(brush)) {
                EXPECT_LE(face->vertexCount, 128);
                area += face->normal[2] > 0.9f ? areaOf(face) : 0;
                sideFaces += strcmp(face->tex.name, "side") == 0 ? 1 : 0;
            }
        }
        const double step = M_PI / sides;
        EXPECT_NEAR(area, sides * tan(step) * 4096 * 4096, 2000) << sides;
        EXPECT_GE(sideFaces, size_t(sides)) << "some in two pieces";
        EXPECT_EQ(warned("1 brush(es) with faces of more than 128 corners were cut"),
                  sides > 128 ? 1 : 0);
        EXPECT_EQ(map.world()->brushes->next != nullptr, sides > 128);
        EXPECT_EQ(checkMapWhole(map).toStdString(), "");
    }
}

TEST_F(MapLimits, numbersThatNoFloatHoldsNeverReachATextAgain) {
    struct cCase {
        const char* mapping;
        int brushes;
    };
    static const cCase CASES[] = {{"0 0 0 1e-300 1", 1},
                                  {"0 0 0 1 1e-41", 1},
                                  {"1e300 0 0 1 1", 0},
                                  {"0 0 1e39 1 1", 0},
                                  {"3e38 0 0 1e-30 1", 1},
                                  {"[ 0 1e300 0 0 ] [ 0 0 -1 0 ] 0 1 1", 0},
                                  {"[ 0 3e38 0 3e38 ] [ 0 0 -1 0 ] 0 1e-37 1e37", 1}};
    for (const cCase& c : CASES) {
        read(WORLD + box(c.mapping) +
             "}\n{ \"classname\" \"light\" \"origin\" \"1e300 nan 3\" "
             "\"angles\" \"inf 1e300 0\" }");
        for (const char* kind : {"Axial Maps", "Classic Maps"}) {
            const cMapTextReader text(written(kind));
            EXPECT_EQ(text.error, "") << c.mapping;
            ASSERT_EQ(text.entities.size(), 2u);
            EXPECT_EQ(int(text.entities[0].brushes.size()), c.brushes) << c.mapping;
            EXPECT_EQ(text.entities[1].value("origin"), "0 0 3");
        }
        EXPECT_EQ(warned("1 origin(s) were not three numbers"), 1);
        EXPECT_EQ(map.data.entitiesTail->angles[0], 0);
    }
}

// ---- Keys and groups

TEST_F(MapLimits, theWorldIsTheWorldInAnyCase) {
    read("{ \"classname\" \"WorldSpawn\" \"message\" \"hello\"\n" + box() + "}");
    EXPECT_EQ(map.world()->next, nullptr);
    EXPECT_NE(map.world()->brushes, nullptr);
    EXPECT_THAT(written(), HasSubstr("\"message\" \"hello\""));
}

TEST_F(MapLimits, whatATextCannotHoldIsCounted) {
    read(WORLD + box() + box() + "}\n{ \"classname\" \"func_door\"\n" + box() + "}");
    written();
    EXPECT_TRUE(host.messages.empty());
    cVisGroup* first = map.createVisGroup("first");
    cVisGroup* second = map.createVisGroup("second");
    cEntityData* door = map.data.entitiesTail;
    cBrushData* brush = map.world()->brushes;
    door->brushes->brush->addToVisGroup(first);
    brush->brush->addToVisGroup(first);
    written();
    EXPECT_EQ(warned("1 object(s) change their visgroups"), 1) << "the door's brush";
    door->entity->addToVisGroup(first);
    host.messages.clear();
    written();
    EXPECT_TRUE(host.messages.empty()) << "the door's own holds for its brush";
    brush->brush->addToVisGroup(second);
    cGroupData* both = map.addGroup();
    map.joinGroupBrush(brush->next, both);
    map.joinGroupEntity(door, both);
    map.addGroup();
    addEpairLast(door, "message", "two\nlines \"quoted\"");
    written();
    EXPECT_EQ(warned("1 object(s) change their visgroups"), 1) << "the brush in two of them";
    EXPECT_EQ(warned("1 empty group(s) were left out"), 1);
    EXPECT_EQ(warned("3 double quote(s) and line end(s) in keys, values and"), 1);
}

TEST_F(MapLimits, aNewGroupDoesNotTakeOverWhatIsKeptOfAnOldOne) {
    read(WORLD + box() + "}\n" + group(5, 0, "\"_tb_name\" \"Old\"\n" + box()));
    EXPECT_THAT(written(), HasSubstr("\"_tb_name\" \"Old\""));
    map.freeGroup(map.data.groups);
    ASSERT_TRUE(cProjectFile(map, path("map.kvx")).save());
    map.clearMap();
    ASSERT_TRUE(cProjectFile(map, path("map.kvx")).load());
    cGroupData* fresh = map.addGroup();
    map.joinGroupBrush(map.world()->brushes, fresh);
    EXPECT_EQ(fresh->id, 1u) << "the number of the old one";
    const std::string text = written();
    EXPECT_THAT(text, Not(HasSubstr("Old")));
    EXPECT_THAT(text, HasSubstr("\"_tb_name\" \"Group 1\""));
}

TEST_F(MapLimits, whatIsLostOfKeysThatBecomeFieldsIsTold) {
    const auto light = [](const char* origin) {
        return QByteArray("{ \"classname\" \"light\" \"origin\" \"") + origin + "\" }\n";
    };
    read(WORLD + ("}\n" + light("1 2") + light("here") + light("") + light("1 nan 2")));
    EXPECT_EQ(warned("4 origin(s) were not three numbers; what is none became 0"), 1);
    read(WORLD + ("}\n" + light("1 2 3") + light("  -1e2\t.5 +7 ") +
                  "{ \"classname\" \"func_door\" \"origin\" \"here\"\n" + box() + "}"));
    EXPECT_TRUE(host.messages.empty()) << "with brushes the text stays a key";
    read(WORLD +
         QByteArray("\"CLASSNAME\" \"worldspawn\" }\n{ \"classname\" \"light\" \"origin\" "
                    "\"1 2 3\" \"Origin\" \"4 5 6\" \"message\" \"a\" \"message\" \"b\" }"));
    EXPECT_EQ(warned("2 repeated class name(s) and origin(s) were left out"), 1);
}

// All of a circle are in one group in the end, and its text has none.
TEST_F(MapLimits, aCircleOfGroupsIsTakenApart) {
    for (const int length : {1, 2, 3}) {
        QByteArray text = WORLD + QByteArray("}\n");
        for (int i = 1; i <= length; ++i)
            text += group(i, i % length + 1, "\n" + box()) +
                    "{ \"classname\" \"light\" \"_tb_group\" \"" + QByteArray::number(i) + "\" }\n";
        // Outside of the circle, in one of it.
        read(text + group(9, 1, "\n" + box()));
        EXPECT_EQ(warned("1 group(s) that lie in themselves were taken out"), 1) << length;
        for (const std::string& kept : {written("Axial Maps"), written("Classic Maps")}) {
            read(QByteArray::fromStdString(kept));
            EXPECT_EQ(warned("taken out"), 0) << length;
            const cGroupData* root = map.world()->brushes->rootGroup;
            ASSERT_NE(root, nullptr);
            for (const cBrushData* brush : brushesOf(map.world()))
                EXPECT_EQ(brush->rootGroup, root) << length;
            for (const cEntityData* light = map.world()->next; light; light = light->next)
                EXPECT_EQ(light->rootGroup, root) << length;
        }
    }
}

// What begins like a number is another name than the number, which is nobody's here; nor is a layer
// of that number meant.
TEST_F(MapLimits, groupsAreNamedByAllOfTheirId) {
    const char* const ids[] = {"4", "3_x", "03", " 3", "-3", "99999999999", "x"};
    QByteArray text = WORLD + QByteArray("}\n{ \"classname\" \"func_group\" \"_tb_type\" "
                                         "\"_tb_layer\" \"_tb_id\" \"4\" }\n");
    for (const char* id : ids)
        text += group(0, 0,
                      " \"_tb_name\" \"of " + QByteArray(id) + "\" \"_tb_id\" \"" + id + "\"\n" +
                          box()) +
                "{ \"classname\" \"light\" \"message\" \"of " + id + "\" \"_tb_group\" \"" + id +
                "\" }\n";
    text += "{ \"classname\" \"light\" \"message\" \"of nobody\" \"_tb_group\" \"3\" }\n";
    read(text);
    read(QByteArray::fromStdString(written()));
    const cMapTextReader again(written());
    std::map<std::string, std::string> names; // by number
    for (const cTextEntity& entity : again.entities) {
        if (entity.value("_tb_type") == "_tb_group") {
            EXPECT_TRUE(names.emplace(entity.value("_tb_id"), entity.value("_tb_name")).second);
        }
    }
    EXPECT_EQ(names.size(), std::size(ids));
    EXPECT_TRUE(names.emplace("3", "of nobody").second);
    int members = 0;
    for (const cTextEntity& entity : again.entities) {
        if (entity.value("classname") != "light")
            continue;
        EXPECT_EQ(names[entity.value("_tb_group")], entity.value("message"));
        ++members;
    }
    EXPECT_EQ(members, int(std::size(ids)) + 1);
}

TEST_F(MapLimits, errorsOfAKindAreToldUpToThirtyTimes) {
    read(WORLD + QByteArray("rubbish\n").repeated(1000) + QByteArray("{ ( }\n").repeated(500) +
         "}");
    EXPECT_EQ(count(eMessage::Error, ": unexpected text"), 30 + 1);
    EXPECT_EQ(count(eMessage::Error, "970 more error(s) of this kind: unexpected text"), 1);
    EXPECT_EQ(count(eMessage::Error, "more error(s) of this kind: broken face line"), 1);
    EXPECT_LT(host.messages.size(), 70u);
}

// ---- Files

TEST_F(MapLimits, anExportThatFailsLeavesTheOldFile) {
    QByteArray text = WORLD;
    for (int i = 0; i < 2000; ++i)
        text += box();
    read(text + "}");
    QFile old(writeFile(path("out.map"), "as it was"));
    old.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    ASSERT_TRUE(QFile::link(path("out.map"), path("link.map")));
    const QStringList before = QDir(folder.path()).entryList(QDir::Files);

    const cMapFormat* f = format(manager->exportFormats, "Axial Maps");
    const auto exportTo = [&](const char* name) {
        return f->function(f->id, toMapText(path(name)).constData(), &map.data) != 0;
    };
    {
        const cFileSizeLimit limit;
        EXPECT_FALSE(exportTo("link.map"));
    }
    EXPECT_EQ(contents(path("out.map")), "as it was");
    EXPECT_EQ(count(eMessage::Error, "can't write \""), 1);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), before) << "nothing lies about";

    EXPECT_TRUE(exportTo("link.map"));
    EXPECT_TRUE(QFileInfo(path("link.map")).isSymLink());
    EXPECT_EQ(compareWithSource(text.toStdString() + "}", contents(path("out.map"))).brushes, 2000);
    EXPECT_FALSE(QFileInfo(path("out.map")).permission(QFile::ReadOther));
}

// The square of such numbers is minutes; the time is for the runner to watch.
TEST_F(MapLimits, largeFilesAreReadAndWritten) {
    static constexpr int MANY = 100000;
    struct cCase {
        const char* name;
        std::function<QByteArray(int)> part; // of the text, by its number from 1
        QByteArray end;
    };
    const QByteArray member =
        "{ \"classname\" \"light\" \"_tb_group\" \"" + QByteArray::number(MANY) + "\" }\n";
    const cCase cases[] = {
        {"nested groups", [](int i) { return group(i, i - 1); }, member},
        {"nested groups, inmost first", [](int i) { return group(MANY - i + 1, MANY - i); },
         member},
        {"nested groups with a member each",
         [](int i) {
             return group(i, i - 1) + "{ \"classname\" \"light\" \"_tb_group\" \"" +
                    QByteArray::number(i) + "\" }\n";
         },
         ""},
        {"groups without a number", [](int) { return group(0, 0, "\n" + box()); }, ""},
        {"layers",
         [](int i) {
             return "{ \"classname\" \"func_group\" \"_tb_type\" \"_tb_layer\" \"_tb_name\" \"" +
                    QByteArray::number(i) + "\" }\n";
         },
         ""},
        {"worlds", [](int i) { return WORLD + ("\"k" + QByteArray::number(i) + "\" \"v\" }\n"); },
         ""},
        {"brushes before keys", [](int) { return QByteArray("{ { } \"classname\" \"light\" }\n"); },
         ""},
    };
    for (const cCase& c : cases) {
        SCOPED_TRACE(c.name);
        QByteArray text;
        const int count = strcmp(c.name, "groups without a number") == 0 ? MANY / 10 : MANY;
        for (int i = 1; i <= count; ++i)
            text += c.part(i);
        map.clearMap();
        ASSERT_TRUE(importText(map, text + c.end));
        written();
        ASSERT_TRUE(cProjectFile(map, path("map.kvx")).save());
        cMap project(host);
        ASSERT_TRUE(cProjectFile(project, path("map.kvx")).load());
        EXPECT_EQ(project.lastGroupId != 0, map.data.groups && map.data.groups->memberCount);
    }
}

TEST_F(MapLimits, aBrushOfVeryManyPlanesIsLeftOut) {
    QByteArray text = WORLD + QByteArray("{\n");
    for (int i = 0; i < 200000; ++i)
        text += "( 0 0 " + QByteArray::number(i) + " ) ( 0 1 0 ) ( 1 0 0 ) a 0 0 0 1 1\n";
    read(text + "}\n" + box() + "}");
    EXPECT_EQ(count(eMessage::Error, "line 2: the brush has too many faces"), 1);
    ASSERT_NE(map.world()->brushes, nullptr);
    EXPECT_EQ(map.world()->brushes->next, nullptr);
}

TEST_F(MapLimits, anObjectInVeryManyVisGroupsIsReadBack) {
    read(WORLD + box() + "}");
    QList<cVisGroup*> all;
    for (int i = 0; i < 100000; ++i)
        all.append(map.createVisGroup("v"));
    map.world()->brushes->brush->addToVisGroups(all);
    ASSERT_TRUE(cProjectFile(map, path("map.kvx")).save());
    cMap project(host);
    ASSERT_TRUE(cProjectFile(project, path("map.kvx")).load());
    EXPECT_EQ(project.world()->brushes->brush->visGroups.size(), all.size());
}

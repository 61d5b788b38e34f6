// SPDX-License-Identifier: MIT
// Nothing of a map is lost or changed on its way through the editor: each source is read, goes
// straight out, or by way of the project file, or after an edit and its undo, and what is written
// is compared with the source by a reader that shares nothing with the plug-ins.
#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tHistory.h"
#include "document/tMapLists.h"
#include "document/tProjectFile.h"
#include "operations/tStructure.h"
#include "plugins/tMapPluginTest.h"
#include "resources/tGameContext.h"
#include "support/tLaw.h"
#include "support/tMapTextReader.h"
#include "support/tMapTools.h"

#include <QDir>
#include <QRegularExpression>
#include <gmock/gmock.h>

// ---- Sources

struct cSource {
    std::string name;
    std::string text;
};

static void PrintTo(const cSource& source, std::ostream* out) {
    *out << source.name;
}

static const char BOX[] = "{\n( 0 0 0 ) ( 0 1 0 ) ( 0 0 1 ) a 0 0 0 1 1\n"
                          "( 0 0 0 ) ( 0 0 1 ) ( 1 0 0 ) a 0 0 0 1 1\n"
                          "( 0 0 0 ) ( 1 0 0 ) ( 0 1 0 ) a 0 0 0 1 1\n"
                          "( 64 64 64 ) ( 64 65 64 ) ( 65 64 64 ) a 0 0 0 1 1\n"
                          "( 64 64 64 ) ( 65 64 64 ) ( 64 64 65 ) a 0 0 0 1 1\n"
                          "( 64 64 64 ) ( 64 64 65 ) ( 64 65 64 ) a 0 0 0 1 1 }\n";

static std::string boxOf(const char* texture) {
    return str(BOX).replace(str(" a "), str(" %1 ").arg(str(texture))).toStdString();
}

static const char PATCH[] =
    "{\npatchDef2\n{\n{grate\n( 3 3 0 0 0 )\n(\n( ( 1 2 3 4 5 ) )\n)\n}\n}\n";

static std::string world(const std::string& inside) {
    return "{\n\"classname\" \"worldspawn\"\n" + inside + "}\n";
}

static std::string container(const char* type, const std::string& keys) {
    return std::string("{ \"classname\" \"func_group\" \"_tb_type\" \"_tb_") + type + "\" " + keys +
           "}\n";
}

// A box between two slanted planes: z is free, and which of x and y is the base axis hangs on the
// last digits of two coordinates.
static std::string slantedBox(const char* near, const char* far) {
    const std::string n = near, f = far;
    return "{\n( " + n + " 0 0 ) ( " + n + " 0 64 ) ( 0 64 64 ) a 5 7 30 2 0.5\n( 0 -" + f +
           " 0 ) ( -64 0 0 ) ( -64 0 64 ) a 5 7 30 2 0.5\n" +
           "( 0 0 0 ) ( 1 0 0 ) ( 0 1 0 ) a 0 0 0 1 1\n( 0 0 64 ) ( 0 1 64 ) ( 1 0 64 ) a 0 0 0 1 "
           "1\n"
           "( 64 -64 0 ) ( 65 -63 0 ) ( 64 -64 -1 ) a 0 0 0 1 1\n"
           "( -64 64 0 ) ( -63 65 0 ) ( -64 64 1 ) a 0 0 0 1 1\n}\n";
}

static const cSource MADE[] = {
    {"no class",
     world("") +
         "{ \"origin\" \"1 2 3\" }\n{ \"classname\" \"\" \"light\" \"5\" \"origin\" \"0 0 "
         "0\" }\n{\n" +
         BOX + "}\n{ \"classname\" \"light\" \"origin\" \"4 5 6\" }\n"},
    {"no origin", world("") + "{ \"classname\" \"info_null\" }\n{ \"classname\" \"info_null\" "
                              "\"origin\" \"0 0 0\" }\n"},
    {"two planes under a small angle",
     world("{\n( 60 -528 640 ) ( 92 -552 640 ) ( 60 -528 576 ) a 0 0 0 1 1\n"
           "( 92 -552 640 ) ( 96 -554 576 ) ( 60 -528 576 ) b 0 0 0 1 1\n"
           "( 0 0 576 ) ( 1 0 576 ) ( 0 1 576 ) c 0 0 0 1 1\n"
           "( 0 0 640 ) ( 0 1 640 ) ( 1 0 640 ) d 0 0 0 1 1\n"
           "( 0 -528 0 ) ( 1 -528 0 ) ( 0 -528 1 ) e 0 0 0 1 1\n"
           "( 92 -528 640 ) ( 96 -528 576 ) ( 96 -554 576 ) f 0 0 0 1 1\n}\n")},
    {"ties",
     world(slantedBox("64", "64") + slantedBox("64.000000000001", "64") +
           slantedBox("63.999999999999", "63.999999999999") + slantedBox("64", "64.000000000001"))},
    {"texture names", world(boxOf("\"//x\"") + boxOf("\"two words\"") + boxOf("\"a\vb\"") +
                            boxOf("{x//y\"z") + boxOf("(1"))},
    {"keys last", world("") + "{\n" + BOX + "\"classname\" \"func_door\"\n\"speed\" \"9\"\n}\n"},
    {"patches alone", world(PATCH + std::string(BOX)) +
                          "{ \"classname\" \"misc_patch\" \"origin\" \"8 9 10\"\n" + PATCH + "}\n"},
    {"layers and groups",
     world(BOX) + container("layer", "\"_tb_name\" \"Roof\" \"_tb_id\" \"3\" \"note\" \"a\tb\" ") +
         container("layer", "\"_tb_name\" \"Roof\" \"_tb_id\" \"1\" \"note\" \"other\" ") +
         // A child before its parent, one in a layer of its own, one that names nothing.
         container("group",
                   "\"_tb_name\" \"In\" \"_tb_id\" \"8\" \"_tb_group\" \"7\"" + std::string(BOX)) +
         container("group", "\"_tb_name\" \"Out\tside\" \"_tb_id\" \"7\" \"_tb_layer\" \"3\" "
                            "\"k\" \"v\tw\"" +
                                std::string(BOX)) +
         container("group", "\"_tb_name\" \"Own\" \"_tb_id\" \"9\" \"_tb_group\" \"7\" "
                            "\"_tb_layer\" \"1\"" +
                                std::string(BOX)) +
         container("group", "\"_tb_name\" \"Lost\" \"_tb_id\" \"10\" \"_tb_group\" \"77\" "
                            "\"_tb_layer\" \"78\"" +
                                std::string(BOX)) +
         "{ \"classname\" \"light\" \"origin\" \"1 2 3\" \"_tb_group\" \"8\" \"_tb_layer\" \"1\" "
         "}\n"
         "{ \"classname\" \"light\" \"origin\" \"4 2 3\" \"_tb_group\" \"8\" }\n"
         "{ \"classname\" \"light\" \"origin\" \"5 2 3\" \"_tb_group\" \"55\" \"_tb_layer\" \"1\" "
         "}\n"
         "{ \"classname\" \"light\" \"origin\" \"6 2 3\" \"_tb_layer\" \"56\" }\n"},
};

static std::vector<cSource> sources() {
    std::vector<cSource> list(std::begin(MADE), std::end(MADE));
    for (const QString& folder :
         {str(KARVEX_SOURCE) + str("/game/maps"), str(KARVEX_REAL_DATA) + str("/maps")}) {
        if (!folder.startsWith(QLatin1Char('/')))
            continue;
        for (const QFileInfo& info : QDir(folder).entryInfoList({str("*.map")}, QDir::Files))
            list.push_back(
                {info.fileName().toStdString(), readFile(info.filePath()).toStdString()});
    }
    return list;
}

// ---- The law

class Fidelity : public cMapPluginTest, public testing::WithParamInterface<cSource> {
protected:
    void expectSource(cMap& map, const char* way) {
        SCOPED_TRACE(way);
        EXPECT_EQ(checkMapWhole(map).toStdString(), "");
        for (const char* kind : {"Axial Maps", "Classic Maps"}) {
            SCOPED_TRACE(kind);
            host.messages.clear();
            const std::string written = contents(exportFile(map, kind));
            EXPECT_EQ(compareWithSource(GetParam().text, written).inexact, toldInexact());
            EXPECT_EQ(count(eMessage::Warning, "visgroups"), 0);
        }
    }

    void editAndUndo(cMap& map) {
        for (const auto operation : {deleteSelection, ungroupSelection}) {
            map.selectAll();
            operation(map);
            map.history->undo();
        }
        map.clearSelection();
    }
};

TEST_P(Fidelity, whatWasReadIsWritten) {
    cMap map(host), project(host);
    ASSERT_TRUE(importText(map, QByteArray::fromStdString(GetParam().text)));
    EXPECT_EQ(count(eMessage::Error, ""), 0);
    expectSource(map, "straight");
    ASSERT_TRUE(cProjectFile(map, path("map.kvx")).save());
    ASSERT_TRUE(cProjectFile(project, path("map.kvx")).load());
    project.finishLoad();
    EXPECT_EQ(firstDifference(storedStateOf(map), storedStateOf(project)).toStdString(), "");
    expectSource(project, "by way of the project");
    editAndUndo(map);
    expectSource(map, "with an edit and its undo between");
}

// Real sizes of textures change no alignment: neither those that are known from the start nor those
// that arrive while the map is open.
TEST_P(Fidelity, texturesChangeNothingThatIsWritten) {
    cGameConfig* config = configs.addConfig(str("Game"));
    config->paletteFile = str(KARVEX_SOURCE "/game/palette.pal");
    cGameContext game(configs, textures);
    game.config = config;
    {
        cMap late(game), early(game), project(game);
        configs.callbacks.renewFaces = [&] { late.renewFaces(); };
        ASSERT_TRUE(importText(late, QByteArray::fromStdString(GetParam().text)));
        ASSERT_TRUE(cProjectFile(late, path("map.kvx")).save());
        config->parcels << str(KARVEX_SOURCE "/game/sample.wad::")
                        << str(KARVEX_SOURCE "/game/textures::*.png");
        for (const QFileInfo& file :
             QDir(str(KARVEX_REAL_DATA) + str("/packages")).entryInfoList({str("*.wad")}))
            config->parcels << file.filePath() + str("::");
        configs.precache(config);
        expectSource(late, "the packages arrive");
        ASSERT_TRUE(importText(early, QByteArray::fromStdString(GetParam().text)));
        expectSource(early, "the packages are there");
        ASSERT_TRUE(cProjectFile(project, path("map.kvx")).load());
        project.finishLoad();
        EXPECT_EQ(firstDifference(storedStateOf(late), storedStateOf(project)).toStdString(), "");
        expectSource(project, "by way of a project without them");
        editAndUndo(late);
        expectSource(late, "with an edit and its undo between");
    }
    configs.removeConfig(str("Game"));
}

// What the second text holds is what the first one held, whatever that had lost of the source.
TEST_P(Fidelity, whatWasWrittenIsReadAsItIs) {
    cMap map(host);
    ASSERT_TRUE(importText(map, QByteArray::fromStdString(GetParam().text)));
    for (const char* kind : {"Axial Maps", "Classic Maps"}) {
        SCOPED_TRACE(kind);
        cMap back(host);
        const QString file = exportFile(map, kind);
        ASSERT_TRUE(importFile(back, file));
        EXPECT_EQ(
            compareTexts(contents(file), contents(exportFile(back, "Axial Maps", "2.map"))).inexact,
            0);
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, Fidelity, testing::ValuesIn(sources()), [](const testing::TestParamInfo<cSource>& source) {
        QString name = QString::fromStdString(source.param.name);
        return name.replace(QRegularExpression(str("[^A-Za-z0-9]")), str("_")).toStdString();
    });

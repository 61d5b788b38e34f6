// SPDX-License-Identifier: MIT
// A map made with the editor's own means, written by both map plug-ins and read back by a reader
// that knows nothing of ours: three points of a face give the plane that the editor holds.
#include "document/tBrushGeometry.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "operations/tDefaultRoom.h"
#include "operations/tPrimitives.h"
#include "pluginhost/tPluginManager.h"
#include "resources/tGameConfigRegistry.h"
#include "resources/tGameDataRegistry.h"
#include "resources/tModelManager.h"
#include "resources/tTextureManager.h"
#include "support/tMapTools.h"
#include "support/tTestHost.h"

#include <QTemporaryDir>
#include <array>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

static constexpr double ON_PLANE = 0.02; // units, over all the corners of a face
static constexpr double SAME_WAY = 0.99999;

using cPoint3 = std::array<double, 3>;

struct cTextPlane {
    cPoint3 normal;
    double dist;
};
using cTextBrush = std::vector<cTextPlane>;

struct cTextMap {
    std::vector<cTextBrush> brushes;
    std::vector<std::map<std::string, std::string>> entities;
};

static double dot(const cPoint3& a, const cPoint3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// The points run clockwise, seen from outside.
static cTextPlane planeThrough(const cPoint3& p, const cPoint3& q, const cPoint3& r) {
    cPoint3 a, b;
    for (size_t i = 0; i < 3; ++i) {
        a[i] = p[i] - q[i];
        b[i] = r[i] - q[i];
    }
    cPoint3 normal = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                      a[0] * b[1] - a[1] * b[0]};
    const double length = std::sqrt(dot(normal, normal));
    for (double& component : normal)
        component /= length;
    return {normal, dot(normal, p)};
}

static cTextMap readText(const std::string& path) {
    cTextMap map;
    std::ifstream file(path);
    std::string line;
    int depth = 0;
    while (std::getline(file, line)) {
        std::istringstream in(line);
        std::string word;
        in >> word;
        if (word == "{") {
            if (++depth == 1)
                map.entities.emplace_back();
            else
                map.brushes.emplace_back();
        } else if (word == "}") {
            --depth;
        } else if (word == "(") {
            cPoint3 points[3];
            for (cPoint3& p : points) {
                in >> p[0] >> p[1] >> p[2] >> word; // the closing one
                if (&p != &points[2])
                    in >> word;
            }
            EXPECT_TRUE(in.good()) << line;
            map.brushes.back().push_back(planeThrough(points[0], points[1], points[2]));
        } else if (word[0] == '"') {
            const size_t middle = line.find("\" \"");
            const size_t first = line.find('"'), last = line.rfind('"');
            map.entities.back()[line.substr(first + 1, middle - first - 1)] =
                line.substr(middle + 3, last - middle - 3);
        }
    }
    EXPECT_EQ(depth, 0);
    return map;
}

static bool holds(const cTextPlane& plane, const cFaceData* face) {
    const cPoint3 normal = {double(face->normal[0]), double(face->normal[1]),
                            double(face->normal[2])};
    if (dot(plane.normal, normal) < SAME_WAY)
        return false;
    for (int i = 0; i < face->vertexCount; ++i) {
        const float* p = face->vertices[i].xyz;
        const double above =
            dot(plane.normal, {double(p[0]), double(p[1]), double(p[2])}) - plane.dist;
        if (std::fabs(above) > ON_PLANE)
            return false;
    }
    return true;
}

static bool isSame(const cTextBrush& text, const cBrushData* brush) {
    size_t faces = 0;
    for (const cFaceData* face : facesOf(brush)) {
        ++faces;
        if (std::none_of(text.begin(), text.end(),
                         [face](const cTextPlane& plane) { return holds(plane, face); }))
            return false;
    }
    return faces == text.size();
}

static cPrimitiveParams paramsIn(cMap& map, int way, bool snapped) {
    static constexpr int AXES[3][3] = {{0, 1, 2}, {1, 2, 0}, {0, 2, 1}};
    static constexpr float MINS[3] = {-100.5f, -60.25f, 10}, MAXS[3] = {75.5f, 68, 138.75f};
    cPrimitiveParams params = {};
    params.map = &map.data;
    qstrncpy(params.face.name, "made", sizeof params.face.name);
    params.face.uScale = params.face.vScale = 1;
    params.sides = 17;
    params.flags = (way < 2 ? 1u : 0u) | (snapped ? 2u : 0u) | 4u;
    std::copy(AXES[way], AXES[way] + 3, params.axes);
    std::copy(MINS, MINS + 3, params.mins);
    std::copy(MAXS, MAXS + 3, params.maxs);
    return params;
}

static void makeEverything(cMap& map) {
    cRoomShape room;
    room.wall = "brick";
    ASSERT_TRUE(createDefaultRoom(map, room));
    for (int way = 0; way < 6; ++way) {
        const cPrimitiveParams params = paramsIn(map, way % 3, way < 3);
        for (const auto& create : {createBlock, createWedge, createCylinder, createSpike})
            ASSERT_TRUE(create(params));
        for (const bool ramp : {false, true})
            ASSERT_TRUE(createArch(params, {24, 11, 200, 20, 8, false, ramp}));
    }
}

TEST(MadeMap, bothTextsHoldThePlanesOfTheEditor) {
    cTestHost host;
    cGameDataRegistry gameData;
    cTextureManager textures;
    cModelManager models;
    cGameConfigRegistry configs(gameData, textures, &models);
    cPluginTargets targets;
    targets.configs = &configs;
    cPluginManager manager(targets);
    manager.loadAll(QStringLiteral(KARVEX_PLUGINS));
    ASSERT_EQ(manager.exportFormats.size(), 2);
    qstrncpy(host.mapProfile.startEntityClass, "info_player_start", 64);
    qstrncpy(host.mapProfile.roomEntityClass, "light", 64);

    cMap map(nullptr);
    addWorldTo(map);
    makeEverything(map);
    const QTemporaryDir folder;
    for (const cMapFormat& format : manager.exportFormats) {
        SCOPED_TRACE(qPrintable(format.description));
        const QByteArray path = folder.filePath(QStringLiteral("made.map")).toLocal8Bit();
        ASSERT_TRUE(format.function(format.id, path.constData(), &map.data));
        cTextMap text = readText(path.toStdString());
        int brushes = 0;
        for (const cBrushData* brush : brushesOf(map.world())) {
            ++brushes;
            const auto same = std::find_if(
                text.brushes.begin(), text.brushes.end(),
                [brush](const cTextBrush& candidate) { return isSame(candidate, brush); });
            ASSERT_NE(same, text.brushes.end()) << "brush " << brushes;
            text.brushes.erase(same);
        }
        EXPECT_EQ(brushes, 6 + 6 * (4 + 11 + 22));
        EXPECT_TRUE(text.brushes.empty());
        ASSERT_EQ(text.entities.size(), 3u);
        std::map<std::string, std::string> origins, lights;
        for (auto& pairs : text.entities) {
            origins[pairs["classname"]] = pairs["origin"];
            lights[pairs["classname"]] = pairs["light"];
        }
        EXPECT_EQ(origins["light"], "0 0 128");
        EXPECT_EQ(lights["light"], "400");
        EXPECT_EQ(origins["info_player_start"].substr(0, 7), "-192 0 ");
    }
}

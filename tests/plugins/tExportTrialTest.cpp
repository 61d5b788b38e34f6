// SPDX-License-Identifier: MIT
// A map as a designer makes it from nothing, written by both map plug-ins and read back by a reader
// that shares nothing with them: the text holds what the editor holds, no more and no less.
#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tEntityAngles.h"
#include "document/tFace.h"
#include "document/tFaceMapping.h"
#include "document/tMapLists.h"
#include "operations/tDefaultRoom.h"
#include "operations/tPrimitives.h"
#include "operations/tStructure.h"
#include "operations/tTransform.h"
#include "plugins/tMapPluginTest.h"
#include "support/tLaw.h"
#include "support/tMapTextReader.h"
#include "support/tMapTools.h"
#include "support/tMath.h"
#include "support/tSystem.h"
#include "support/tVec.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <gmock/gmock.h>

// The trial stays within 4,096 units, where floats lie 1/4096 apart: a written number is off by
// half of that, three points 10 units apart or more turn their plane by less than 2e-5. The lever
// from there to the origin is long; the plug-ins look for points that keep the distance all the
// same. Where three such planes meet under small angles ten times their error is left.
static constexpr double NORMAL_TOLERANCE = 2e-5;
static constexpr double DIST_TOLERANCE = 0.0025;
static constexpr double VERTEX_TOLERANCE = 0.005;

// ---- The map

using cCreate = std::function<bool(const cPrimitiveParams&)>;

struct cPiece {
    const char* name;
    cCreate create;
    int sides;
    int way; // row of the axes
    uint32_t flags;
    float turn[3];  // degrees about x, y, z
    float shift;    // texels
    float rotation; // degrees, of the texture
    float scale;    // units a texel
    const char* texture;
};

static cCreate arch(const cArchShape& shape) {
    return [shape](const cPrimitiveParams& params) { return createArch(params, shape); };
}

enum : uint32_t { SNAP = 1u << PP_SNAP_POINTS_BIT, STRETCH = 1u << PP_STRETCH_ARCHES_BIT };
static constexpr uint32_t BOTH = SNAP | STRETCH;

static const cCreate HALF_RING = arch({32, 8, 180, 0, 0, true, false});
static const cCreate RING = arch({32, 24, 360, 0, 0, false, false});
static const cCreate DISC = arch({128, 8, 360, 0, 0, true, false});
static const cCreate FLAT_RING = arch({128, 8, 360, 0, 0, false, false});
static const cCreate STAIR = arch({24, 12, 270, 30, 16, true, false});
static const cCreate RAMP = arch({24, 12, 270, 30, 16, true, true});
static const cCreate SHORT_RAMP = arch({24, 6, 120, 15, 20, true, true});

static const cPiece PIECES[] = {
    {"block", createBlock, 0, 0, BOTH, {0, 0, 0}, 0, 0, 1, "base/wall"},
    {"wedge", createWedge, 0, 0, BOTH, {0, 0, 0}, 12, 0, 0.25f, "{grate"},
    {"wedge on its side", createWedge, 0, 1, STRETCH, {0, 0, 0}, -7.5f, 90, 1, "*water"},
    {"cylinder", createCylinder, 8, 0, BOTH, {0, 0, 0}, 0, 0, 1, "two words"},
    {"fine cylinder", createCylinder, 32, 2, STRETCH, {0, 0, 0}, 3, 30, 2, "+0lamp"},
    {"spike", createSpike, 4, 0, BOTH, {0, 0, 0}, 0, 0, 1, "base/wall"},
    {"fine spike", createSpike, 16, 1, STRETCH, {0, 0, 0}, 0.125f, 0, 0.3f, "sky/dusk"},
    {"turned block", createBlock, 0, 0, BOTH, {0, 0, 45}, 0, 0, 1, "turned"},
    {"block turned all ways", createBlock, 0, 0, STRETCH, {17, 40, -75.5f}, 5, 15, 1, "turned"},
    {"turned spike", createSpike, 6, 2, STRETCH, {45, 0, 10}, 0, 0, 1.5f, "turned"},
    {"half ring", HALF_RING, 0, 0, BOTH, {0, 0, 0}, 0, 0, 1, "arch"},
    {"ring", RING, 0, 1, STRETCH, {0, 0, 0}, 9, 0, 1, "arch"},
    {"disc", DISC, 0, 0, SNAP, {0, 0, 0}, 0, 0, 1, "arch"},
    {"flat ring", FLAT_RING, 0, 0, STRETCH, {0, 0, 0}, 0, 0, 1, "arch"},
    {"stair", STAIR, 0, 0, BOTH, {0, 0, 0}, 0, 0, 1, "arch"},
    {"ramp", RAMP, 0, 0, BOTH, {0, 0, 0}, 0, 45, 1, "arch"},
    {"turned ramp", SHORT_RAMP, 0, 2, 0, {20, 0, 50}, 0, 0, 1, "turned"},
};

class ExportTrial : public cMapPluginTest, public testing::WithParamInterface<const char*> {
protected:
    void SetUp() override {
        addWorldTo(map);
        host.mapProfile = **configs.profiles.cbegin();
        addClasses();
        addEpairLast(map.world(), "message", "caf\xe9 // no comment");
        cRoomShape room;
        room.wall = host.mapProfile.roomWallTexture;
        room.floor = host.mapProfile.roomFloorTexture;
        room.ceiling = host.mapProfile.roomCeilingTexture;
        ASSERT_TRUE(createDefaultRoom(map, room));
        for (const cPiece& piece : PIECES)
            addPiece(piece);
        addEntities();
        ASSERT_EQ(checkMapWhole(map).toStdString(), "");
    }

    void addClasses() {
        host.addClass(str(host.mapProfile.startEntityClass), CK_POINT)->mins[2] = -36;
        host.addClass(str(host.mapProfile.roomEntityClass), CK_POINT);
        cEntityClass* spot = host.addClass(str("light_spot"), CK_POINT);
        spot->offset[2] = 0.5f;
        spot->variables = {{VT_STRING, str("angles"), {}, {}, str("-90 0 0"), {}},
                           {VT_FLAGS, str("spawnflags"), {}, {}, str("1"), {}}};
        host.addClass(str("func_door"), CK_SOLID)->variables = {
            {VT_INTEGER, str("angle"), {}, {}, str("-1"), {}},
            {VT_INTEGER, str("speed"), {}, {}, str("100"), {}}};
    }

    void addPiece(const cPiece& piece) {
        static const int ways[3][3] = {{0, 1, 2}, {1, 2, 0}, {0, 2, 1}};
        const auto place = float(m_pieces++);
        const float fraction = piece.flags & SNAP ? 0 : 0.375f;
        cPrimitiveParams params = {};
        params.map = &map.data;
        T_Sprintf(params.face.name, sizeof params.face.name, "%s", piece.texture);
        params.face.uScale = piece.scale;
        params.face.vScale = -piece.scale * 2;
        params.sides = piece.sides;
        params.flags = piece.flags | (piece.way == 2 ? 0u : 1u << PP_REORIENT_BIT);
        const float mins[3] = {-3600 + 400 * place + fraction, 700 - fraction, -2000 + 200 * place};
        for (int i = 0; i < 3; ++i) {
            params.axes[i] = ways[piece.way][i];
            params.mins[i] = mins[i];
            params.maxs[i] = mins[i] + float(320 - 64 * i);
        }
        ASSERT_TRUE(piece.create(params)) << piece.name;
        turnSelection(piece.turn);
        paintSelection(piece);
    }

    void turnSelection(const float* turn) {
        static const float nowhere[3] = {0, 0, 0};
        if (turn[0] == 0 && turn[1] == 0 && turn[2] == 0)
            return;
        float matrix[16];
        T_BuildTransformMatrix(turn[2], turn[1], turn[0], nowhere, matrix);
        T_TransposeMatrix(matrix, matrix);
        cTransformRecord record;
        record.matrix = matrix;
        transformSelection(map, record);
    }

    void paintSelection(const cPiece& piece) {
        for (cBrushData* brush : selectedBrushesOf(map.data)) {
            for (cFaceData* face : facesOf(brush)) {
                face->tex.uShift += piece.shift;
                face->tex.vShift -= piece.shift * 3;
                face->tex.contentFlags = piece.flags & SNAP ? 0 : 0x8000000;
                if (piece.rotation == 0)
                    continue;
                rotateAxes(face, piece.rotation);
                face->tex.rotation = piece.rotation;
            }
        }
    }

    void addEntities() {
        const float point[3] = {100.125f, -20, 64};
        cEntityData* spot = createEntity(map, host.findClass("light_spot", CF_POINT), point, true);
        ASSERT_TRUE(spot);
        addEpairLast(spot, "noise", "sounds\\hum.wav");
        spot->spawnFlags = 5;
        // A door of two brushes.
        addPiece({"door", createBlock, 0, 0, SNAP, {0, 0, 0}, 0, 0, 1, "door"});
        cBrushData* leaf = map.world()->brushesTail;
        addPiece({"handle", createSpike, 5, 0, 0, {0, 90, 0}, 0, 0, 1, "turned"});
        selectedPush(map.data.selectedBrushes, leaf);
        ASSERT_TRUE(tieSelectionToEntity(map, "func_door", nullptr));
    }

    cMap map{host};
    int m_pieces = 0;
};

static cTextPoint pointOf(const float* p) {
    return {double(p[0]), double(p[1]), double(p[2])};
}

// Without axes a line cannot hold the numbers; the texels that it gives are compared as texts.
static void compareMapping(const cFaceData* face, const cTextFace& text) {
    const cFaceTexture& tex = face->tex;
    if (!text.axial)
        return;
    const float* const axes[2] = {tex.uAxis, tex.vAxis};
    const float shifts[2] = {tex.uShift, tex.vShift}, scales[2] = {tex.uScale, tex.vScale};
    for (size_t i = 0; i < 2; ++i) {
        for (size_t k = 0; k < 3; ++k)
            EXPECT_EQ(float(text.axes[i][k]), axes[i][k]);
        EXPECT_EQ(float(text.shifts[i]), shifts[i]);
        EXPECT_EQ(float(text.scales[i]), scales[i]);
    }
    EXPECT_EQ(float(text.rotation), tex.rotation);
}

static void compareFaces(const cFaceData* face, const cTextFace& text) {
    for (size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(text.normal[i], double(face->normal[i]), NORMAL_TOLERANCE);
    EXPECT_NEAR(text.dist, double(face->dist), DIST_TOLERANCE);
    const cFaceTexture& tex = face->tex;
    EXPECT_EQ(text.texture, tex.name);
    std::vector<double> flags;
    if (tex.contentFlags || tex.surfaceFlags || tex.value)
        flags = {double(tex.contentFlags), double(tex.surfaceFlags), double(tex.value)};
    EXPECT_EQ(text.flags, flags);
    compareMapping(face, text);
}

// The greatest distance from one of these to the nearest of those.
static double farthest(const std::vector<cTextPoint>& these, const std::vector<cTextPoint>& those) {
    double result = 0;
    for (const cTextPoint& p : these) {
        double nearest = 1e9;
        for (const cTextPoint& q : those)
            nearest = std::min(nearest, std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]));
        result = std::max(result, nearest);
    }
    return result;
}

// The half-spaces alone, as a compiler takes them, give a face the corners of its winding.
static void compareCorners(const cFaceData* face, const cTextFace& text,
                           const std::vector<cTextPoint>& corners) {
    std::vector<cTextPoint> winding, cut;
    for (int i = 0; i < face->vertexCount; ++i)
        winding.push_back(pointOf(face->vertices[i].xyz));
    std::copy_if(corners.begin(), corners.end(), std::back_inserter(cut),
                 [&](const cTextPoint& p) { return text.holds(p); });
    EXPECT_LT(farthest(winding, cut), VERTEX_TOLERANCE);
    EXPECT_LT(farthest(cut, winding), VERTEX_TOLERANCE);
}

static void compareBrushes(const std::vector<const cBrushData*>& brushes, const cTextEntity& text) {
    ASSERT_EQ(text.brushes.size(), brushes.size()) << text.value("classname");
    for (size_t i = 0; i < brushes.size(); ++i) {
        SCOPED_TRACE(text.value("classname") + " brush " + std::to_string(i) + " " +
                     brushes[i]->faces->tex.name);
        const std::vector<cTextPoint> corners = text.brushes[i].corners();
        auto part = text.brushes[i].faces.begin();
        for (const cFaceData* face : facesOf(brushes[i])) {
            ASSERT_NE(part, text.brushes[i].faces.end());
            compareFaces(face, *part);
            compareCorners(face, *part++, corners);
        }
        EXPECT_EQ(part, text.brushes[i].faces.end());
    }
}

using cKeys = std::vector<std::pair<std::string, std::string>>;

static cKeys sorted(cKeys keys) {
    std::sort(keys.begin(), keys.end());
    return keys;
}

// The text of a point entity's origin, once it gives the field's numbers.
static std::string originText(const cEntityData* entity, const std::string& text) {
    float read[3] = {};
    EXPECT_EQ(sscanf(text.c_str(), "%f %f %f", read, read + 1, read + 2), 3) << text;
    return memcmp(read, entity->origin, sizeof read) == 0 ? text : "another";
}

// Origin and flags are the fields'.
static void compareKeys(const cEntityData* entity, const cTextEntity& text) {
    cKeys keys = {{"classname", entity->classname}};
    if (entity->flags & EF_POINT)
        keys.emplace_back("origin", originText(entity, text.value("origin")));
    for (const cEpair* pair : epairsOf(entity)) {
        const bool flags = entity->flagsKey && strcmp(pair->key, entity->flagsKey) == 0;
        keys.emplace_back(pair->key, flags ? std::to_string(entity->spawnFlags) : pair->value);
    }
    EXPECT_EQ(sorted(text.keys), sorted(keys));
}

// Brushes of the world by the group they are in; null is none.
static std::vector<const cBrushData*> brushesIn(const cEntityData* entity,
                                                const cGroupData* group) {
    std::vector<const cBrushData*> list;
    for (const cBrushData* brush : brushesOf(entity))
        if (brush->group == group)
            list.push_back(brush);
    return list;
}

TEST_P(ExportTrial, theTextHoldsWhatTheEditorHolds) {
    host.messages.clear();
    const std::string written = contents(exportFile(map, GetParam()));
    const cMapTextReader text(written);
    ASSERT_EQ(text.error, "");

    std::vector<const cGroupData*> groups;
    for (const cBrushData* brush : brushesOf(map.world()))
        if (brush->group && std::find(groups.begin(), groups.end(), brush->group) == groups.end())
            groups.push_back(brush->group);
    EXPECT_EQ(groups.size(), 5u) << "arches";
    std::vector<const cEntityData*> others;
    for (const cEntityData* entity = map.world()->next; entity; entity = entity->next)
        others.push_back(entity);
    EXPECT_EQ(others.size(), 4u) << "start, light, spot, door";
    ASSERT_EQ(text.entities.size(), 1 + groups.size() + others.size());

    auto part = text.entities.begin();
    compareKeys(map.world(), *part);
    compareBrushes(brushesIn(map.world(), nullptr), *part++);
    for (const cGroupData* group : groups) {
        EXPECT_EQ(part->value("classname"), "func_group");
        EXPECT_EQ(part->value("_tb_type"), "_tb_group");
        EXPECT_EQ(part->keys.size(), 4u) << "and a name and a number";
        compareBrushes(brushesIn(map.world(), group), *part++);
    }
    for (const cEntityData* entity : others) {
        compareKeys(entity, *part);
        compareBrushes(brushesIn(entity, nullptr), *part++);
    }
    const std::string axial = contents(exportFile(map, "Axial Maps"));
    const cTextComparison result = compareTexts(axial, written);
    EXPECT_EQ(result.inexact, toldInexact());
    EXPECT_THAT(result.inexactTextures, testing::Each("turned"));
}

INSTANTIATE_TEST_SUITE_P(Both, ExportTrial, testing::Values("Axial Maps", "Classic Maps"),
                         [](const testing::TestParamInfo<const char*>& kind) {
                             return std::string(kind.param).substr(0, 5);
                         });

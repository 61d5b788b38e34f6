// SPDX-License-Identifier: MIT
// A map as a designer makes it from nothing, written by both map plug-ins and read back by a reader
// that shares nothing with them: the text holds what the editor holds, no more and no less.
#include "document/tEntity.h"
#include "document/tFace.h"
#include "document/tMapLists.h"
#include "document/tProjectFile.h"
#include "plugins/tMapPluginTest.h"
#include "support/tLaw.h"
#include "support/tMapTextReader.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>

// The trial stays within 4,096 units, where floats lie 1/4096 apart: a written number is off by
// half of that, three points 10 units apart or more turn their plane by less than 2e-5. The lever
// from there to the origin is long; the plug-ins look for points that keep the distance all the
// same. Where three such planes meet under small angles ten times their error is left.
static constexpr double NORMAL_TOLERANCE = 2e-5;
static constexpr double DIST_TOLERANCE = 0.0025;
static constexpr double VERTEX_TOLERANCE = 0.005;

// The map is a project: all primitives, arches as rings, discs, stairs and ramps, on the grid and
// off it, turned, painted and grouped; four entities, of which one is a door of two brushes.
class ExportTrial : public cMapPluginTest, public testing::WithParamInterface<const char*> {
protected:
    void SetUp() override {
        host.mapProfile = **configs.profiles.cbegin();
        host.addClass(str("light_spot"), CK_POINT)->variables = {
            {VT_FLAGS, str("spawnflags"), {}, {}, str("1"), {}}};
        host.addClass(str("func_door"), CK_SOLID);
        ASSERT_TRUE(cProjectFile(map, str(KARVEX_SOURCE "/tests/plugins/trial.kvx")).load());
        map.finishLoad();
        ASSERT_EQ(checkMapWhole(map).toStdString(), "");
    }

    cMap map{host};
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

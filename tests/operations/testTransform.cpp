// SPDX-License-Identifier: MIT
#include "operations/tTransform.h"

#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tEntityAngles.h"
#include "document/tFace.h"
#include "document/tFaceMapping.h"
#include "document/tGroup.h"
#include "document/tHistory.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "support/tLaw.h"
#include "support/tMapTools.h"
#include "support/tMath.h"
#include "support/tTestHost.h"
#include "support/tVec.h"

#include <cmath>
#include <gtest/gtest.h>

// World units; what a rotation in float leaves of coordinates below a thousand.
static constexpr float TOLERANCE = 0.002f;
// Texels.
static constexpr double TEXEL_TOLERANCE = 0.02;

struct cMatrix {
    float m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    static cMatrix move(float x, float y, float z) {
        cMatrix matrix;
        matrix.m[3] = x;
        matrix.m[7] = y;
        matrix.m[11] = z;
        return matrix;
    }
    static cMatrix scale(float x, float y, float z) {
        cMatrix matrix;
        matrix.m[0] = x;
        matrix.m[5] = y;
        matrix.m[10] = z;
        return matrix;
    }
    static cMatrix turn(float x, float y, float z) {
        const float offset[3] = {0, 0, 0};
        cMatrix matrix;
        T_BuildTransformMatrix(z, y, x, offset, matrix.m);
        T_TransposeMatrix(matrix.m, matrix.m);
        return matrix;
    }
    static cMatrix shear(int row, int column, float amount) {
        cMatrix matrix;
        matrix.m[row * 4 + column] = amount;
        return matrix;
    }
};

class Transform : public testing::Test {
protected:
    void SetUp() override { world = addWorldTo(map); }

    cBrushData* boxAt(float x, float y, float z, float size, cEntityData* owner = nullptr) {
        const float mins[3] = {x, y, z}, maxs[3] = {x + size, y + size, z + size};
        cBrushData* brush = addBox(map, owner ? owner : world, mins, maxs);
        settle(map);
        return brush;
    }

    cEntityData* pointAt(float x, float y, float z, const char* classname = "light") {
        const float origin[3] = {x, y, z};
        cEntityData* entity = map.addEntity(classname, origin, EF_POINT);
        updateEntity(entity, UM_REEVALUATE);
        return entity;
    }

    void select(std::initializer_list<cBrushData*> brushes) {
        map.clearSelection();
        for (cBrushData* brush : brushes)
            selectedPush(map.data.selectedBrushes, brush);
    }

    void law(const std::function<void()>& operation) {
        EXPECT_EQ(checkLaw(map, operation).toStdString(), "");
    }

    void transform(const cMatrix& matrix, const float* center = nullptr, uint32_t sideMask = 0) {
        cTransformRecord record;
        record.center = center;
        record.matrix = matrix.m;
        record.sideMask = sideMask;
        law([&] { transformSelection(map, record); });
    }

    void clone(const cMatrix& matrix) {
        cTransformRecord record;
        record.matrix = matrix.m;
        cloneSelection(map, record);
    }

    static void expectBox(const float* mins, const float* maxs, std::vector<float> expected,
                          const char* what = "") {
        for (size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(mins[i], expected[i], TOLERANCE) << what << " min " << i;
            EXPECT_NEAR(maxs[i], expected[i + 3], TOLERANCE) << what << " max " << i;
        }
    }
    static void expectBox(const cBrushData* brush, std::vector<float> expected,
                          const char* what = "") {
        expectBox(brush->mins, brush->maxs, std::move(expected), what);
    }

    cTestHost host;
    cMap map{nullptr};
    cEntityData* world = nullptr;
};

// ---- Matrices

TEST_F(Transform, matricesMoveVerticesAboutThePivot) {
    struct cCase {
        const char* what;
        cMatrix matrix;
        std::vector<float> box; // of a cube from 0 to 64
    };
    const float center[3] = {64, 0, 0};
    const cCase cases[] = {
        {"move", cMatrix::move(0.3f, -7, 1000), {0.3f, -7, 1000, 64.3f, 57, 1064}},
        {"scale", cMatrix::scale(2, 0.5f, 1), {-64, 0, 0, 64, 32, 64}},
        {"quarter about z", cMatrix::turn(0, 0, 90), {0, -64, 0, 64, 0, 64}},
        {"quarter about y", cMatrix::turn(0, 90, 0), {64, 0, 0, 128, 64, 64}},
        {"quarter about x", cMatrix::turn(90, 0, 0), {0, -64, 0, 64, 0, 64}},
        {"eighth about z",
         cMatrix::turn(0, 0, 45),
         {64 - 64 * 1.41421356f, -45.254834f, 0, 64, 45.254834f, 64}},
        {"shear of y along x", cMatrix::shear(1, 0, 0.5f), {0, -32, 0, 64, 64, 64}},
        {"mirror", cMatrix::scale(-1, 1, 1), {64, 0, 0, 128, 64, 64}},
    };
    for (const cCase& c : cases) {
        SCOPED_TRACE(c.what);
        cBrushData* brush = boxAt(0, 0, 0, 64);
        select({brush});
        transform(c.matrix, center);
        expectBox(brush, c.box, c.what);
        QString error;
        EXPECT_TRUE(checkBrush(brush, false, &error)) << qPrintable(error);
        for (const cFaceData* face : facesOf(brush)) {
            float outward[3];
            vecSubtract(face->face->center, brush->brush->center, outward);
            EXPECT_GT(vecDot(outward, face->normal), 0) << "wound outward";
        }
        EXPECT_EQ(memcmp(world->mins, brush->mins, sizeof world->mins), 0);
        map.freeBrush(brush);
    }
    EXPECT_GT(host.dirtyCount, 0);
}

TEST_F(Transform, withoutAPivotTheMiddleOfAllBoundsStays) {
    cBrushData* one = boxAt(0, 0, 0, 64);
    cBrushData* two = boxAt(128, 128, 0, 32);
    select({one, two});
    transform(cMatrix::scale(2, 2, 1));
    expectBox(one, {-80, -80, 0, 48, 48, 64});
    expectBox(two, {176, 176, 0, 240, 240, 32});
    cEntityData* lamp = pointAt(400, 0, 0);
    map.clearSelection();
    selectedPush(map.data.selectedEntities, lamp);
    transform(cMatrix::turn(0, 0, 90));
    EXPECT_NEAR(lamp->origin[0], 400, TOLERANCE) << "alone, about itself";
}

TEST_F(Transform, fourQuartersGiveBackEveryCoordinate) {
    cBrushData* brush = boxAt(-37, 1000, 513, 64);
    select({brush});
    const float center[3] = {-5, 1032, 545};
    for (int i = 0; i < 4; ++i) {
        const float angle = 1.5707963f; // as a drag builds it
        cMatrix matrix;
        matrix.m[0] = matrix.m[5] = std::cos(angle);
        matrix.m[1] = -std::sin(angle);
        matrix.m[4] = std::sin(angle);
        transform(matrix, center);
    }
    const float mins[3] = {-37, 1000, 513};
    EXPECT_EQ(memcmp(brush->mins, mins, sizeof mins), 0);
}

TEST_F(Transform, identityRecordsNothing) {
    cBrushData* brush = boxAt(0, 0, 0, 64);
    select({brush});
    transform(cMatrix());
    EXPECT_STREQ(map.history->undoName(), "law marker");
    transform(cMatrix::move(1, 0, 0));
    EXPECT_STREQ(map.history->undoName(), "Transformation");
    select({});
    transform(cMatrix::move(1, 0, 0));
    EXPECT_STREQ(map.history->undoName(), "law marker") << "nothing was selected";
}

// ---- Stretch

TEST_F(Transform, stretchMovesOneSideOfEachBrushAboutItsOwnCentre) {
    cBrushData* one = boxAt(0, 0, 0, 64);
    cBrushData* two = boxAt(200, 0, 0, 32);
    cEntityData* left = pointAt(-100, 0, 0);
    cEntityData* right = pointAt(300, 0, 0);
    const float center[3] = {100, 0, 0};
    const auto all = [&] {
        select({one, two});
        selectedPush(map.data.selectedEntities, left);
        selectedPush(map.data.selectedEntities, right);
    };
    all();
    transform(cMatrix::move(-16, 0, 0), center, 1u << 0);
    expectBox(one, {-16, 0, 0, 64, 64, 64});
    expectBox(two, {184, 0, 0, 232, 32, 32});
    EXPECT_EQ(left->origin[0], -116) << "below the pivot it goes along";
    EXPECT_EQ(right->origin[0], 300);
    all();
    transform(cMatrix::move(8, 4, 0), center, (8u << 0) | (8u << 1));
    expectBox(one, {-16, 0, 0, 72, 68, 64});
    expectBox(two, {184, 0, 0, 240, 36, 32});
    EXPECT_EQ(left->origin[0], -116);
    EXPECT_EQ(right->origin[0], 308);
}

TEST_F(Transform, stretchLeavesABrushAloneWhoseFacesItWouldBend) {
    cBrushData* plain = boxAt(0, 0, 0, 64);
    cBrushData* slanted = boxAt(200, 0, 0, 64);
    select({slanted});
    cMatrix shear = cMatrix::move(0, 0, 0); // one corner comes to lie above, three below it
    shear.m[9] = shear.m[8] = 0.9f;
    transform(shear);
    const auto corners = [slanted] {
        std::vector<float> all(slanted->mins, slanted->mins + 3);
        all.insert(all.end(), slanted->maxs, slanted->maxs + 3);
        return all;
    };
    const std::vector<float> before = corners();
    select({plain, slanted});
    const float center[3] = {100, 0, 0};
    const cMatrix up = cMatrix::move(0, 0, 32);
    transform(up, center, 8u << 2);
    EXPECT_EQ(plain->maxs[2], 96);
    EXPECT_EQ(corners(), before);
    EXPECT_EQ(host.count(eMessage::Warning, QStringLiteral("1 brush(es) with slanted")), 1);
    // Along x whole edges go or stay, and each face remains flat.
    select({slanted});
    transform(cMatrix::move(32, 0, 0), center, 8u << 0);
    EXPECT_EQ(slanted->maxs[0], before[3] + 32);
}

TEST_F(Transform, vertexAtTheBrushCentreMovesWithTheStretchedSide) {
    const float pivot[3] = {0, 0, 0}, own[3] = {10, 10, 10};
    const cMatrix matrix = cMatrix::move(5, 0, 0);
    cTransformRecord record;
    record.matrix = matrix.m;
    struct cCase {
        float x;
        uint32_t mask;
        float expected;
    };
    const cCase cases[] = {{10.0005f, 1, 15.0005f}, {10.002f, 1, 10.002f}, {9, 1, 14},
                           {9.9995f, 8, 14.9995f},  {9.998f, 8, 9.998f},   {9, 2, 14}};
    for (const cCase& c : cases) {
        record.sideMask = c.mask;
        float point[3] = {c.x, 0, 0};
        const bool kept = transformPoint(record, pivot, own, 0.001f, point);
        EXPECT_FLOAT_EQ(point[0], c.expected) << c.x;
        EXPECT_EQ(kept, c.expected == c.x) << c.x;
    }
}

// ---- Textures

// Texture coordinates of every vertex in texels, face by face and vertex by vertex in list order.
static std::vector<std::pair<uint32_t, std::vector<double>>> texels(const cBrushData* brush) {
    std::vector<std::pair<uint32_t, std::vector<double>>> all;
    for (const cFaceData* face : facesOf(brush)) {
        std::vector<double> st;
        for (int i = 0; i < face->vertexCount; ++i) {
            st.push_back(double(face->vertices[i].st[0] * float(face->texture->width)));
            st.push_back(double(face->vertices[i].st[1] * float(face->texture->height)));
        }
        all.push_back({face->id, st});
    }
    std::sort(all.begin(), all.end());
    return all;
}

static double apart(double a, double b) { // on a texture of 64 texels that repeats
    return std::fabs(std::remainder(a - b, 64.0));
}

class TextureLock : public Transform {
protected:
    // A box with textures that are shifted, scaled and turned on every face.
    cBrushData* papered() {
        cBrushData* brush = boxAt(3, -40, 11, 64);
        for (cFaceData* face : facesOf(brush)) {
            rotateAxes(face, 30);
            face->tex.uShift = 5;
            face->tex.vShift = -3;
            face->tex.uScale = 0.5f;
            face->tex.vScale = 2;
            face->flags |= FF_DIRTY;
        }
        rebuildBrush(brush, 0);
        return brush;
    }

    // How far the worst texture coordinate went from its vertex.
    double worst(const std::function<void()>& operation, bool reversed = false) {
        cBrushData* brush = papered();
        cBrushData* other = boxAt(-500, 700, 300, 8);
        select({brush, other});
        const auto before = texels(brush);
        law(operation);
        const auto after = texels(brush);
        double distance = 0;
        for (size_t f = 0; f < before.size(); ++f) {
            EXPECT_EQ(before[f].first, after[f].first);
            const size_t corners = before[f].second.size() / 2;
            for (size_t i = 0; i < corners; ++i) {
                const size_t to = reversed ? corners - 1 - i : i;
                for (size_t k = 0; k < 2; ++k)
                    distance = std::max(
                        distance, apart(before[f].second[i * 2 + k], after[f].second[to * 2 + k]));
            }
        }
        map.clearSelection();
        map.freeBrush(brush);
        map.freeBrush(other);
        return distance;
    }
};

TEST_F(TextureLock, coordinatesStayWithTheirVertices) {
    host.TextureLock = true;
    host.TextureLockScale = true;
    const float pivot[3] = {100, -250, 30};
    const auto by = [&](const cMatrix& matrix) {
        return worst([&] {
            cTransformRecord record;
            record.center = pivot;
            record.matrix = matrix.m;
            transformSelection(map, record);
        });
    };
    EXPECT_LT(by(cMatrix::move(17.3f, -5, 900)), TEXEL_TOLERANCE);
    EXPECT_LT(by(cMatrix::turn(0, 0, 90)), TEXEL_TOLERANCE);
    EXPECT_LT(by(cMatrix::turn(15, 70, -40)), TEXEL_TOLERANCE);
    EXPECT_LT(by(cMatrix::scale(2, 2, 2)), TEXEL_TOLERANCE);
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_LT(worst([&] { flipSelection(map, axis); }, true), TEXEL_TOLERANCE) << axis;
        for (bool each : {false, true})
            EXPECT_LT(worst([&] { snapSelection(map, 16, each); }), TEXEL_TOLERANCE);
    }
    for (int axis = 0; axis < 3; ++axis) {
        for (int side : {0, 1})
            EXPECT_LT(worst([&] { alignSelection(map, axis, side); }), TEXEL_TOLERANCE) << axis;
    }
    host.TextureLock = false;
    EXPECT_GT(by(cMatrix::move(17.3f, -5, 900)), 1.0) << "the texture stays in the world";
}

TEST_F(TextureLock, withoutItTheAxesAreTheDefaultOnes) {
    host.TextureLock = false;
    cBrushData* brush = papered();
    select({brush});
    transform(cMatrix::move(16, 0, 0));
    for (const cFaceData* face : facesOf(brush))
        EXPECT_EQ(std::fabs(face->tex.uAxis[0]) + std::fabs(face->tex.uAxis[1]), 1.0f)
            << "still turned";
}

TEST_F(TextureLock, faceWithAHeldVertexKeepsItsBlock) {
    host.TextureLock = true;
    cBrushData* brush = boxAt(0, 0, 0, 64);
    select({brush});
    transform(cMatrix::move(0, 0, 32), nullptr, 8u << 2);
    expectBox(brush, {0, 0, 0, 64, 64, 96});
    for (const cFaceData* face : facesOf(brush)) {
        const float expected = face->normal[2] == 0 ? 0.0f : face->tex.vShift;
        EXPECT_EQ(face->tex.vShift, expected) << "a wall shows more of its texture, unmoved";
    }
}

// ---- Point entities

TEST_F(Transform, pointEntitiesTakeTheirBoxAndAnglesAlong) {
    cEntityData* lamp = pointAt(100, 0, 0);
    addEpairLast(lamp, "Angle", "0");
    selectedPush(map.data.selectedEntities, lamp);
    const float center[3] = {0, 0, 0};
    transform(cMatrix::turn(0, 0, 90), center);
    expectBox(lamp->mins, lamp->maxs, {-8, 92, -8, 8, 108, 8});
    EXPECT_EQ(lamp->angles[1], 90);
    EXPECT_STREQ(getEpairValue(lamp, "angle"), "90");
    EXPECT_EQ(getEpair(lamp, "angles"), nullptr);
    for (const cMatrix& matrix : {cMatrix::scale(3, 1, 1), cMatrix::shear(0, 1, 0.25f),
                                  cMatrix::move(5, 5, 5), cMatrix::scale(-1, 1, 1)}) {
        transform(matrix, center);
        EXPECT_EQ(lamp->angles[1], 90) << "no rotation";
    }
    host.TransformAngles = false;
    transform(cMatrix::turn(0, 0, 90), center);
    EXPECT_EQ(lamp->angles[1], 90);
    EXPECT_STREQ(getEpairValue(lamp, "angle"), "90");
}

// A model 20 wide, 40 deep, 10 high.
class cModelHost : public cTestHost {
public:
    cModelHost() {
        cEntityClass* prop = addClass(QStringLiteral("prop"), CK_POINT);
        prop->flags = ECF_STUDIO;
        prop->studio = QStringLiteral("own.mdl");
        const float mins[3] = {-10, -20, 0}, maxs[3] = {10, 20, 10};
        vecCopy(mins, model.mins);
        vecCopy(maxs, model.maxs);
    }
    void* acquireAttachment(eAttachKind, const char*) override { return &model; }
    void releaseAttachment(eAttachKind, void*) override {}

    cModelRecord model = {};
};

TEST_F(Transform, modelsTakeTheSmallerGrowthOfTheViewAsTheirScale) {
    cModelHost models;
    cEntityData* prop = pointAt(0, 0, 0, "prop");
    selectedPush(map.data.selectedEntities, prop);
    const float center[3] = {0, 0, 0};
    const cMatrix grow = cMatrix::scale(3, 2, 1);
    cTransformRecord record;
    record.center = center;
    record.matrix = grow.m;
    const auto run = [&](bool scaleModels, int h, int v) {
        record.scaleModels = scaleModels;
        record.axisH = h;
        record.axisV = v;
        law([&] { transformSelection(map, record); });
        return prop->scale;
    };
    EXPECT_EQ(run(false, 0, 1), 1);
    EXPECT_EQ(run(true, -1, -1), 1);
    EXPECT_EQ(getEpair(prop, "scale"), nullptr);
    EXPECT_EQ(run(true, 0, 1), 2);
    EXPECT_STREQ(getEpairValue(prop, "scale"), "2");
    expectBox(prop->mins, prop->maxs, {-20, -40, 0, 20, 40, 20});
    map.history->undo();
    EXPECT_EQ(getEpair(prop, "scale"), nullptr);
    expectBox(prop->mins, prop->maxs, {-10, -20, 0, 10, 20, 10});
    map.history->redo();
    expectBox(prop->mins, prop->maxs, {-20, -40, 0, 20, 40, 20});
    map.freeEntity(prop); // before its class goes
}

// ---- Clone

TEST_F(Transform, cloneCopiesObjectsWithTheirGroupsAndSelectsThem) {
    cGroupData* inner = map.addGroup();
    cGroupData* outer = map.addGroup();
    map.joinGroupGroup(inner, outer);
    cBrushData* one = boxAt(0, 0, 0, 64);
    cBrushData* two = boxAt(100, 0, 0, 64);
    cEntityData* door = map.addEntity("door", world->origin, 0);
    boxAt(200, 0, 0, 64, door);
    boxAt(300, 0, 0, 64, door);
    cEntityData* lamp = pointAt(400, 0, 0);
    map.joinGroupBrush(one, inner);
    map.joinGroupBrush(two, outer);
    map.joinGroupEntity(door, inner);
    // Selected inside, so that the selection to come back to is the empty one.
    law([&] {
        map.selectAll();
        clone(cMatrix::move(0, 512, 0));
    });
    EXPECT_STREQ(map.history->undoName(), "Clone Objects");
    map.history->undo();
    EXPECT_FALSE(map.hasSelection());
    map.history->redo();
    cGroupData* top = map.data.selectedGroups;
    ASSERT_TRUE(top && !top->nextSelected);
    EXPECT_EQ(top->memberCount, 2);
    int brushes = 0, entities = 0;
    for (const cBrushData* brush : selectedBrushesOf(map.data)) {
        EXPECT_EQ(brush->mins[1], 512);
        ++brushes;
    }
    for (const cEntityData* entity : selectedEntitiesOf(map.data)) {
        EXPECT_NE(entity, lamp);
        ++entities;
        if (!entity->brushes)
            continue;
        EXPECT_EQ(entity->rootGroup, top);
        EXPECT_EQ(entity->group->parent, top);
        EXPECT_EQ(entity->group->memberCount, 2);
        EXPECT_EQ(entity->mins[1], 512);
    }
    EXPECT_EQ(brushes, 4);
    EXPECT_EQ(entities, 2);
    EXPECT_EQ(outer->memberCount, 2);
}

TEST_F(Transform, cloneOfSingleObjectsGoesToTheWorldWithoutGroups) {
    host.IgnoreGroups = true;
    host.KeepCloneVisGroup = true;
    cGroupData* group = map.addGroup();
    cVisGroup* set = map.createVisGroup("set");
    cBrushData* grouped = boxAt(0, 0, 0, 64);
    map.joinGroupBrush(grouped, group);
    grouped->brush->addToVisGroup(set);
    cEntityData* door = map.addEntity("door", world->origin, 0);
    cBrushData* panel = boxAt(100, 0, 0, 64, door);
    boxAt(200, 0, 0, 64, door);
    map.computeVisGroupVisibility();
    law([&] {
        select({grouped, panel});
        clone(cMatrix());
    });
    EXPECT_EQ(map.data.selectedGroups, nullptr);
    EXPECT_EQ(set->objectCount, 2);
    int made = 0;
    for (const cBrushData* brush : selectedBrushesOf(map.data)) {
        if (brush == grouped || brush == panel)
            continue;
        EXPECT_EQ(brush->owner, world);
        EXPECT_EQ(brush->group, nullptr);
        ++made;
    }
    EXPECT_EQ(made, 2);
}

// ---- Flip, align, snap

TEST_F(Transform, flipMirrorsAllOfTheSelectionInItsBounds) {
    cBrushData* one = boxAt(0, 0, 0, 64);
    cBrushData* two = boxAt(200, 0, 0, 32);
    cEntityData* lamp = pointAt(100, 4, 0);
    const float angles[3] = {10, 30, 5};
    setEntityAngles(lamp, angles);
    select({one, two});
    selectedPush(map.data.selectedEntities, lamp);
    law([this] { flipSelection(map, 0); });
    expectBox(one, {168, 0, 0, 232, 64, 64});
    expectBox(two, {0, 0, 0, 32, 32, 32});
    EXPECT_EQ(lamp->origin[0], 132);
    EXPECT_STREQ(getEpairValue(lamp, "angles"), "10 150 -5");
    host.TransformAngles = false;
    law([this] { flipSelection(map, 2); });
    expectBox(two, {0, 0, 24, 32, 32, 56}, "the lamp reaches below the floor");
    EXPECT_STREQ(getEpairValue(lamp, "angles"), "10 150 -5");
    EXPECT_STREQ(map.history->undoName(), "Flip Selection");
}

TEST_F(Transform, alignMovesSolidEntitiesInOnePiece) {
    cBrushData* one = boxAt(0, 0, 0, 64);
    cEntityData* door = map.addEntity("door", world->origin, 0);
    cBrushData* panel = boxAt(100, 0, 0, 64, door);
    cBrushData* knob = boxAt(200, 0, 0, 32, door);
    cEntityData* lamp = pointAt(400, 0, 0);
    const auto all = [&] {
        select({one});
        map.selectEntity(door);
        map.selectEntity(lamp);
    };
    all();
    law([this] { alignSelection(map, 0, 0); });
    expectBox(panel, {0, 0, 0, 64, 64, 64});
    expectBox(knob, {100, 0, 0, 132, 32, 32});
    expectBox(lamp->mins, lamp->maxs, {0, -8, -8, 16, 8, 8});
    all();
    law([this] { alignSelection(map, 0, 1); });
    expectBox(one, {68, 0, 0, 132, 64, 64});
    expectBox(panel, {0, 0, 0, 64, 64, 64});
    EXPECT_EQ(lamp->origin[0], 124);
    EXPECT_STREQ(map.history->undoName(), "Align Selection");
}

TEST_F(Transform, snapMovesAllByOneOffsetOrEachByItsOwn) {
    cBrushData* one = boxAt(3, 0, 0, 64);
    cEntityData* door = map.addEntity("door", world->origin, 0);
    cBrushData* panel = boxAt(105, 0, 0, 64, door);
    cBrushData* knob = boxAt(210, 0, 0, 32, door);
    cEntityData* lamp = pointAt(401, 8, 8);
    const auto all = [&] {
        select({one});
        map.selectEntity(door);
        map.selectEntity(lamp);
    };
    all();
    law([this] { snapSelection(map, 16, false); });
    EXPECT_EQ(one->mins[0], 0);
    EXPECT_EQ(panel->mins[0], 102);
    EXPECT_EQ(lamp->origin[0], 398);
    all();
    law([this] { snapSelection(map, 16, true); });
    EXPECT_EQ(panel->mins[0], 96);
    EXPECT_EQ(knob->mins[0], 201) << "with its entity";
    EXPECT_EQ(lamp->origin[0], 392);
    all();
    const QStringList before = dumpById(map);
    law([this] { snapSelection(map, 8, true); });
    EXPECT_EQ(firstDifference(before, dumpById(map)), QString()) << "on the grid already";
    EXPECT_STREQ(map.history->undoName(), "Snap to Grid");
}

// ---- Random walk

TEST_F(Transform, randomWalkUndoesToTheBeginning) {
    const unsigned seed = 20231;
    SCOPED_TRACE(seed);
    T_RandomSeed(seed);
    cGroupData* group = map.addGroup();
    cEntityData* door = map.addEntity("door", world->origin, 0);
    for (int i = 0; i < 12; ++i) {
        cBrushData* brush = boxAt(float(i) * 100, float(i * 37 % 200), 0, 64, i < 3 ? door : world);
        if (i > 8)
            map.joinGroupBrush(brush, group);
        pointAt(float(i) * 50, -200, float(i));
    }
    host.UndoLevels = 1000;
    map.history->applyLevels();
    const QStringList first = dumpById(map, false);
    const auto run = [this](int what) {
        const int axis = T_RandomLong(0, 2);
        const float pivot[3] = {float(T_RandomLong(-50, 50)), 0, 10};
        const cMatrix matrices[] = {cMatrix::move(float(T_RandomLong(-9, 9)), 1, -3),
                                    cMatrix::turn(0, 0, float(T_RandomLong(1, 23)) * 15),
                                    cMatrix::turn(float(T_RandomLong(1, 180)), 0, 0),
                                    cMatrix::scale(1, 0.75f, 1.25f),
                                    cMatrix::shear(axis, (axis + 1) % 3, 0.1f)};
        cTransformRecord record;
        record.center = T_RandomLong(0, 1) ? pivot : nullptr;
        record.matrix = matrices[what % 5].m;
        if (what < 5)
            transformSelection(map, record);
        else if (what < 7)
            flipSelection(map, axis);
        else if (what < 8)
            alignSelection(map, axis, T_RandomLong(0, 1));
        else
            snapSelection(map, 16, what % 2 != 0);
    };
    int steps = 0;
    for (int i = 0; i < 150; ++i) {
        host.TextureLock = T_RandomLong(0, 1) != 0;
        host.TextureLockScale = T_RandomLong(0, 1) != 0;
        host.IgnoreGroups = T_RandomLong(0, 3) == 0;
        const float x = float(T_RandomLong(-300, 1200));
        const float mins[3] = {x, -4000, -4000}, maxs[3] = {x + 200, 4000, 4000};
        map.clearSelectionFull();
        map.selectInBox(mins, maxs, T_RandomLong(0, 2));
        const QString problem = checkLaw(map, [&] { run(T_RandomLong(0, 9)); });
        ASSERT_EQ(problem, QString()) << "step " << i;
        ++steps;
    }
    host.IgnoreGroups = false;
    while (map.history->canUndo())
        map.history->undo();
    EXPECT_EQ(firstDifference(first, dumpById(map, false)), QString());
    EXPECT_EQ(steps, 150);
}

// SPDX-License-Identifier: MIT
#include "operations/tTransform.h"

#include "document/tEntityAngles.h"
#include "document/tFaceMapping.h"
#include "support/tMapTest.h"

#include <cmath>

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

class Transform : public cMapTest {
protected:
    // These alone.
    void choose(std::initializer_list<cBrushData*> brushes,
                std::initializer_list<cEntityData*> entities = {}) {
        map.clearSelection();
        select(brushes);
        for (cEntityData* entity : entities)
            map.selectEntity(entity);
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
        cBrushData* brush = cubeAt(0);
        choose({brush});
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
    cBrushData* one = cubeAt(0);
    cBrushData* two = cubeAt(128, 128, 0, 32);
    choose({one, two});
    transform(cMatrix::scale(2, 2, 1));
    expectBox(one, {-80, -80, 0, 48, 48, 64});
    expectBox(two, {176, 176, 0, 240, 240, 32});
    cEntityData* lamp = pointAt(400);
    choose({}, {lamp});
    transform(cMatrix::turn(0, 0, 90));
    EXPECT_NEAR(lamp->origin[0], 400, TOLERANCE) << "alone, about itself";
}

TEST_F(Transform, fourQuartersGiveBackEveryCoordinate) {
    cBrushData* brush = cubeAt(-37, 1000, 513, 64);
    choose({brush});
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
    choose({cubeAt(0)});
    transform(cMatrix());
    EXPECT_TRUE(isStep("law marker"));
    transform(cMatrix::move(1, 0, 0));
    EXPECT_TRUE(isStep("Transformation"));
    choose({});
    transform(cMatrix::move(1, 0, 0));
    EXPECT_TRUE(isStep("law marker")) << "nothing was selected";
}

// ---- Stretch

TEST_F(Transform, stretchMovesOneSideOfEachBrushAboutItsOwnCentre) {
    cBrushData* one = cubeAt(0);
    cBrushData* two = cubeAt(200, 0, 0, 32);
    cEntityData* left = pointAt(-100);
    cEntityData* right = pointAt(300);
    const float center[3] = {100, 0, 0};
    choose({one, two}, {left, right});
    transform(cMatrix::move(-16, 0, 0), center, 1u << 0);
    expectBox(one, {-16, 0, 0, 64, 64, 64});
    expectBox(two, {184, 0, 0, 232, 32, 32});
    EXPECT_EQ(left->origin[0], -116) << "below the pivot it goes along";
    EXPECT_EQ(right->origin[0], 300);
    transform(cMatrix::move(8, 4, 0), center, (8u << 0) | (8u << 1));
    expectBox(one, {-16, 0, 0, 72, 68, 64});
    expectBox(two, {184, 0, 0, 240, 36, 32});
    EXPECT_EQ(left->origin[0], -116);
    EXPECT_EQ(right->origin[0], 308);
}

TEST_F(Transform, stretchLeavesABrushAloneWhoseFacesItWouldBend) {
    cBrushData* plain = cubeAt(0);
    cBrushData* slanted = cubeAt(200);
    choose({slanted});
    cMatrix shear; // one corner comes to lie above, three below it
    shear.m[9] = shear.m[8] = 0.9f;
    transform(shear);
    const float center[3] = {100, 0, 0}, right = slanted->maxs[0], top = slanted->maxs[2];
    choose({plain, slanted});
    transform(cMatrix::move(0, 0, 32), center, 8u << 2);
    EXPECT_EQ(plain->maxs[2], 96);
    EXPECT_EQ(slanted->maxs[2], top);
    EXPECT_EQ(host.count(eMessage::Warning, QStringLiteral("1 brush(es) with slanted")), 1);
    // Along x whole edges go or stay, and each face remains flat.
    choose({slanted});
    transform(cMatrix::move(32, 0, 0), center, 8u << 0);
    EXPECT_EQ(slanted->maxs[0], right + 32);
}

TEST_F(Transform, vertexAtTheBrushCentreMovesWithTheStretchedSide) {
    const float pivot[3] = {0, 0, 0}, own[3] = {10, 10, 10};
    const cMatrix matrix = cMatrix::move(5, 0, 0);
    cTransformRecord record;
    record.matrix = matrix.m;
    struct cCase {
        float x;
        uint32_t mask;
        bool moves;
    };
    const cCase cases[] = {{10.0005f, 1, true}, {10.002f, 1, false}, {9, 1, true},
                           {9.9995f, 8, true},  {9.998f, 8, false},  {9, 2, true}};
    for (const cCase& c : cases) {
        record.sideMask = c.mask;
        float point[3] = {c.x, 0, 0};
        EXPECT_EQ(transformPoint(record, pivot, own, 0.001f, point), !c.moves) << c.x;
        EXPECT_FLOAT_EQ(point[0], c.x + (c.moves ? 5 : 0)) << c.x;
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
        cBrushData* brush = cubeAt(3, -40, 11, 64);
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
        cBrushData* other = cubeAt(-500, 700, 300, 8);
        choose({brush, other});
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
    for (const cMatrix& matrix : {cMatrix::move(17.3f, -5, 900), cMatrix::turn(0, 0, 90),
                                  cMatrix::turn(15, 70, -40), cMatrix::scale(2, 2, 2)})
        EXPECT_LT(by(matrix), TEXEL_TOLERANCE) << matrix.m[3] << ' ' << matrix.m[0];
    for (bool each : {false, true})
        EXPECT_LT(worst([&] { snapSelection(map, 16, each); }), TEXEL_TOLERANCE);
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_LT(worst([&] { flipSelection(map, axis); }, true), TEXEL_TOLERANCE) << axis;
        for (int side : {0, 1})
            EXPECT_LT(worst([&] { alignSelection(map, axis, side); }), TEXEL_TOLERANCE) << axis;
    }
    host.TextureLock = false;
    EXPECT_GT(by(cMatrix::move(17.3f, -5, 900)), 1.0) << "the texture stays in the world";
    cBrushData* brush = papered();
    choose({brush});
    transform(cMatrix::move(16, 0, 0));
    for (const cFaceData* face : facesOf(brush))
        EXPECT_EQ(std::fabs(face->tex.uAxis[0]) + std::fabs(face->tex.uAxis[1]), 1.0f)
            << "still turned";
}

TEST_F(TextureLock, faceWithAHeldVertexKeepsItsBlock) {
    host.TextureLock = true;
    cBrushData* brush = cubeAt(0);
    choose({brush});
    transform(cMatrix::move(0, 0, 32), nullptr, 8u << 2);
    expectBox(brush, {0, 0, 0, 64, 64, 96});
    for (const cFaceData* face : facesOf(brush))
        EXPECT_TRUE(face->normal[2] != 0 || face->tex.vShift == 0) << "a wall shows more of it";
}

// ---- Point entities

TEST_F(Transform, pointEntitiesTakeTheirBoxAndAnglesAlong) {
    cEntityData* lamp = pointAt(100);
    addEpairLast(lamp, "Angle", "0");
    choose({}, {lamp});
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

TEST_F(Transform, modelsTakeTheSmallerGrowthOfTheViewAsTheirScale) {
    cEntityClass* propClass = host.addClass(QStringLiteral("prop"), CK_POINT);
    propClass->flags = ECF_STUDIO;
    propClass->studio = QStringLiteral("own.mdl");
    vecSet(host.model.mins, -10.0f, -20.0f, 0.0f);
    vecSet(host.model.maxs, 10.0f, 20.0f, 10.0f);
    cEntityData* prop = pointAt(0, 0, 0, "prop");
    choose({}, {prop});
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
}

// ---- Clone

TEST_F(Transform, cloneCopiesObjectsWithTheirGroupsAndSelectsThem) {
    cGroupData *inner = map.addGroup(), *outer = map.addGroup();
    cubeOf(inner, 0)->reserved = 9;
    cubeOf(outer, 100)->reserved = 9;
    map.joinGroupGroup(inner, outer);
    cEntityData* door = addDoor();
    cubeIn(door, 200)->reserved = 9;
    map.joinGroupEntity(door, inner);
    for (cEntityData* entity : {door, pointAt(400)})
        addEpairLast(entity, "health", "300");
    // Selected inside, so that the selection to come back to is the empty one.
    law([&] {
        map.selectAll();
        clone(cMatrix::move(0, 512, 0));
    });
    EXPECT_TRUE(isStep("Clone Objects"));
    map.history->undo();
    EXPECT_FALSE(map.hasSelection());
    map.history->redo();
    const cGroupData* top = map.data.selectedGroups;
    ASSERT_TRUE(top && !top->nextSelected);
    EXPECT_EQ(top->memberCount, 2);
    EXPECT_EQ(outer->memberCount, 2);
    EXPECT_EQ(countOf(selectedBrushesOf(map.data)), 3);
    for (const cBrushData* brush : selectedBrushesOf(map.data)) {
        EXPECT_EQ(brush->mins[1], 512);
        EXPECT_EQ(brush->reserved, 9u);
    }
    EXPECT_EQ(countOf(selectedEntitiesOf(map.data)), 2);
    for (const cEntityData* entity : selectedEntitiesOf(map.data)) {
        EXPECT_GE(entity->mins[1], 504);
        EXPECT_STREQ(getEpairValue(entity, "health"), "300");
        EXPECT_EQ(entity->rootGroup, entity->brushes ? top : nullptr);
        EXPECT_TRUE(!entity->brushes || entity->group->memberCount == 2);
    }
}

TEST_F(Transform, cloneOfSingleObjectsGoesToTheWorldWithoutGroups) {
    host.IgnoreGroups = true;
    host.KeepCloneVisGroup = true;
    cGroupData* group = map.addGroup();
    cVisGroup* set = map.createVisGroup("set");
    cBrushData* grouped = cubeOf(group, 0);
    grouped->brush->addToVisGroup(set);
    cEntityData* door = addDoor();
    cBrushData* panel = cubeIn(door, 100);
    cubeIn(door, 200);
    map.computeVisGroupVisibility();
    law([&] {
        choose({grouped, panel});
        clone(cMatrix());
    });
    EXPECT_EQ(map.data.selectedGroups, nullptr);
    EXPECT_EQ(set->objectCount, 2);
    EXPECT_EQ(countOf(brushesOf(world)), 3);
    for (const cBrushData* brush : brushesOf(world))
        EXPECT_EQ(brush->group, brush == grouped ? group : nullptr);
}

// ---- Flip, align, snap

TEST_F(Transform, flipMirrorsAllOfTheSelectionInItsBounds) {
    cBrushData* one = cubeAt(0);
    cBrushData* two = cubeAt(200, 0, 0, 32);
    cEntityData* lamp = pointAt(100, 4, 0);
    const float angles[3] = {10, 30, 5};
    setEntityAngles(lamp, angles);
    choose({one, two}, {lamp});
    law([this] { flipSelection(map, 0); });
    expectBox(one, {168, 0, 0, 232, 64, 64});
    expectBox(two, {0, 0, 0, 32, 32, 32});
    EXPECT_EQ(lamp->origin[0], 132);
    EXPECT_STREQ(getEpairValue(lamp, "angles"), "10 150 -5");
    host.TransformAngles = false;
    law([this] { flipSelection(map, 2); });
    expectBox(two, {0, 0, 24, 32, 32, 56}, "the lamp reaches below the floor");
    EXPECT_STREQ(getEpairValue(lamp, "angles"), "10 150 -5");
    EXPECT_TRUE(isStep("Flip Selection"));
}

TEST_F(Transform, alignMovesSolidEntitiesInOnePiece) {
    cBrushData* one = cubeAt(0);
    cEntityData* door = addDoor();
    cBrushData* panel = cubeIn(door, 100);
    cBrushData* knob = cubeAt(200, 0, 0, 32, door);
    cEntityData* lamp = pointAt(400);
    choose({one}, {door, lamp});
    law([this] { alignSelection(map, 0, 0); });
    expectBox(panel, {0, 0, 0, 64, 64, 64});
    expectBox(knob, {100, 0, 0, 132, 32, 32});
    expectBox(lamp->mins, lamp->maxs, {0, -8, -8, 16, 8, 8});
    law([this] { alignSelection(map, 0, 1); });
    expectBox(one, {68, 0, 0, 132, 64, 64});
    expectBox(panel, {0, 0, 0, 64, 64, 64});
    EXPECT_EQ(lamp->origin[0], 124);
    EXPECT_TRUE(isStep("Align Selection"));
}

TEST_F(Transform, snapMovesAllByOneOffsetOrEachByItsOwn) {
    cBrushData* one = cubeAt(3);
    cEntityData* door = addDoor();
    cBrushData* panel = cubeIn(door, 105);
    cBrushData* knob = cubeAt(210, 0, 0, 32, door);
    cEntityData* lamp = pointAt(401, 8, 8);
    choose({one}, {door, lamp});
    law([this] { snapSelection(map, 16, false); });
    EXPECT_EQ(one->mins[0], 0);
    EXPECT_EQ(panel->mins[0], 102);
    EXPECT_EQ(lamp->origin[0], 398);
    law([this] { snapSelection(map, 16, true); });
    EXPECT_EQ(panel->mins[0], 96);
    EXPECT_EQ(knob->mins[0], 201) << "with its entity";
    EXPECT_EQ(lamp->origin[0], 392);
    const cMapState before = stateOf(map);
    law([this] { snapSelection(map, 8, true); });
    EXPECT_EQ(firstDifference(before, stateOf(map)), QString()) << "on the grid already";
    EXPECT_TRUE(isStep("Snap to Grid"));
}

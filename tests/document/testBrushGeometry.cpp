// SPDX-License-Identifier: MIT
#include "document/tWinding.h"
#include "support/tMapTest.h"

static constexpr float MINS[3] = {-32, -16, 0};
static constexpr float MAXS[3] = {32, 48, 64};

class BrushGeometry : public cMapTest {
protected:
    cBrushData* box() { return addBox(map, world, MINS, MAXS); }

    cFaceData* addPlane(cBrushData* brush, const float* normal, float dist) {
        cFaceTexture tex = {};
        tex.uScale = tex.vScale = 1;
        cFaceData* face = map.addFace(brush, tex, 0);
        vecCopy(normal, face->normal);
        T_VectorNormalize(face->normal);
        face->dist = dist;
        face->planeType = planeTypeForNormal(face->normal);
        face->flags |= FF_RESET_AXES;
        return face;
    }

    // A block cut by a number of random planes that keep its middle.
    cBrushData* addRandomSolid(int cuts) {
        cBrushData* brush = box();
        for (int i = 0; i < cuts; ++i) {
            float normal[3];
            for (float& component : normal)
                component = float(T_RandomLong(-100, 100));
            if (isZeroVector(normal))
                continue;
            T_VectorNormalize(normal);
            const float middle[3] = {0, 16, 32};
            addPlane(brush, normal, vecDot(normal, middle) + float(T_RandomLong(8, 40)));
        }
        rebuildWindings(brush);
        return brush;
    }

    static void rebuildWindings(cBrushData* brush) {
        for (cFaceData* face : facesOf(brush))
            face->flags |= FF_DIRTY;
        rebuildBrush(brush, UM_WINDINGS);
    }
};

static int faceCount(const cBrushData* brush) {
    return countOf(facesOf(brush));
}

// Corners near an integer move onto it, by a hundredth at the most; that tilts a tiny face.
static bool hasTinyEdge(const cBrushData* brush) {
    for (const cFaceData* face : facesOf(brush)) {
        for (int i = 0; i < face->vertexCount; ++i) {
            float edge[3];
            vecSubtract(face->vertices[i].xyz, face->vertices[(i + 1) % face->vertexCount].xyz,
                        edge);
            if (vecLength(edge) < 1.0f)
                return true;
        }
    }
    return false;
}

TEST_F(BrushGeometry, boxHasIntegerVerticesAndSixQuadsOutwardAndGrowsByAnOffset) {
    cBrushData* brush = box();
    ASSERT_EQ(faceCount(brush), 6);
    for (const cFaceData* face : facesOf(brush)) {
        ASSERT_EQ(face->vertexCount, 4);
        EXPECT_EQ(face->face->glMode, 7);
        for (int i = 0; i < 4; ++i) {
            for (int axis = 0; axis < 3; ++axis) {
                const float c = face->vertices[i].xyz[axis];
                EXPECT_TRUE(c == MINS[axis] || c == MAXS[axis]);
            }
            EXPECT_EQ(vecDot(face->normal, face->vertices[i].xyz), face->dist);
        }
        float outward[3];
        vecSubtract(face->face->center, brush->brush->center, outward);
        EXPECT_GT(vecDot(outward, face->normal), 0);
    }
    EXPECT_TRUE(isClosed(brush, 0.001f));
    for (const float offset : {0.0f, 4.0f}) {
        offsetBrushPlanes(brush, offset);
        for (int axis = 0; axis < 3; ++axis) {
            EXPECT_EQ(brush->mins[axis], MINS[axis] - offset);
            EXPECT_EQ(brush->maxs[axis], MAXS[axis] + offset);
        }
    }
}

TEST_F(BrushGeometry, randomSolidsAreClosedConvexAndKeepTheirPlanesThroughVertices) {
    const unsigned seed = 20261122;
    SCOPED_TRACE(seed);
    T_RandomSeed(seed);
    int checked = 0;
    for (int i = 0; i < 300; ++i) {
        cBrushData* brush = addRandomSolid(i % 9);
        QString error;
        if (hasTinyEdge(brush))
            continue;
        ++checked;
        EXPECT_TRUE(checkBrush(brush, false, &error)) << qPrintable(error) << " solid " << i;
        EXPECT_TRUE(isClosed(brush, 0.05f)) << "solid " << i;
        for (cFaceData* face : facesOf(brush)) {
            const cPlane before = planeOf(face);
            ASSERT_TRUE(rebuildFace(face, UM_PLANES));
            // Vertices are rounded to a hundredth at the most, so long thin faces may tilt.
            EXPECT_GT(vecDot(before.normal, face->normal), 0.99f) << "solid " << i;
        }
    }
    EXPECT_GT(checked, 150);
    EXPECT_EQ(checkMapInvariants(map), QString());
}

TEST_F(BrushGeometry, ofEqualPlanesTheLastOneIsBuiltAndAFaceClippedToNothingGoes) {
    const float up[3] = {0, 0, 1};
    cBrushData* brush = box();
    const cFaceData* later = addPlane(brush, up, MAXS[2] + 0.0005f);
    for (cFaceData* face : facesOf(brush)) {
        Mem_Free(face->vertices);
        face->vertices = nullptr;
        face->vertexCount = 0;
    }
    rebuildWindings(brush);
    EXPECT_EQ(later->vertexCount, 4);
    int empty = 0;
    for (const cFaceData* face : facesOf(brush))
        empty += face->vertexCount == 0 ? 1 : 0;
    EXPECT_EQ(empty, 1);
    EXPECT_EQ(removeDuplicatePlanes(brush), 1);
    EXPECT_TRUE(brush->flags & BF_DIRTY);
    EXPECT_EQ(faceCount(brush), 6);
    addPlane(brush, up, MAXS[2] + 100);
    rebuildWindings(brush);
    EXPECT_EQ(faceCount(brush), 6);
    EXPECT_EQ(checkMapInvariants(map), QString());
}

TEST_F(BrushGeometry, facesAreSortedAndTiesTurnRound) {
    cBrushData* brush = box();
    const uint32_t first = brush->faces->id, second = brush->faces->next->id;
    sortFaces(brush);
    EXPECT_EQ(brush->faces->id, second);
    EXPECT_EQ(brush->faces->next->id, first);
    for (const cFaceData* face : facesOf(brush))
        EXPECT_TRUE(!face->next || face->planeType <= face->next->planeType);
}

TEST_F(BrushGeometry, snapTakesCoordinatesNearIntegersOnly) {
    float v[3] = {-3.499f, -3.995f, 2.0099f};
    snapCoordinates(v);
    EXPECT_EQ(v[0], -3.499f);
    EXPECT_EQ(v[1], -4);
    EXPECT_EQ(v[2], 2);
}

TEST_F(BrushGeometry, checkBrushNamesTheFault) {
    const auto faultOf = [](const cBrushData* brush, bool convexOnly) {
        QString error;
        return checkBrush(brush, convexOnly, &error) ? std::string() : error.toStdString();
    };
    cBrushData *bent = box(), *twice = box(), *hollow = box();
    cFaceData* face = bent->faces;
    vecMA(face->vertices[0].xyz, 8.0f, face->normal, face->vertices[0].xyz);
    EXPECT_EQ(faultOf(bent, false), "face is not planar");
    vecCopy(twice->faces->normal, twice->faces->next->normal);
    twice->faces->next->dist = twice->faces->dist;
    EXPECT_EQ(faultOf(twice, false), "brush has coplanar planes");
    twice->faces->next->normal[1] += 0.01f;
    EXPECT_NE(faultOf(twice, false), "brush has coplanar planes") << "under an angle";
    hollow->faces->dist -= 10;
    EXPECT_EQ(faultOf(hollow, true), "brush is not convex");
    hollow->faces->dist += 9.6f;
    EXPECT_EQ(faultOf(hollow, true), "") << "half a unit is allowed";
}

TEST_F(BrushGeometry, splitGivesTwoSolidsThatCoverTheWhole) {
    const unsigned seed = 77;
    T_RandomSeed(seed);
    for (int i = 0; i < 100; ++i) {
        cBrushData* brush = addRandomSolid(i % 6);
        cPlane plane = {};
        for (float& component : plane.normal)
            component = float(T_RandomLong(-100, 100));
        plane.normal[0] += 0.5f;
        T_VectorNormalize(plane.normal);
        plane.dist = vecDot(plane.normal, brush->brush->center) + float(T_RandomLong(-2, 2));
        plane.planeType = planeTypeForNormal(plane.normal);
        cBrushData *front = nullptr, *back = nullptr;
        splitBrush(brush, plane, &front, &back);
        ASSERT_TRUE(front && back) << i;
        for (const cBrushData* part : {front, back}) {
            QString error;
            EXPECT_TRUE(checkBrush(part, false, &error)) << qPrintable(error) << i;
            EXPECT_TRUE(isClosed(part, 0.05f)) << i;
        }
        for (int axis = 0; axis < 3; ++axis) {
            EXPECT_NEAR(std::min(front->mins[axis], back->mins[axis]), brush->mins[axis], 0.02f);
            EXPECT_NEAR(std::max(front->maxs[axis], back->maxs[axis]), brush->maxs[axis], 0.02f);
        }
        EXPECT_FALSE(front->faces->flags & FF_RESET_AXES);
    }
    EXPECT_EQ(checkMapInvariants(map), QString());
}

TEST_F(BrushGeometry, splitMakesOnlyThePieceAskedFor) {
    cBrushData* brush = box();
    const cPlane above = {{0, 0, 1}, 100, 2, 0};
    const cPlane through = {{0, 0, 1}, 16, 2, 0};
    cBrushData *front = brush, *back = nullptr;
    splitBrush(brush, above, &front, nullptr);
    EXPECT_EQ(front, nullptr);
    splitBrush(brush, through, nullptr, &back);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(faceCount(back), 6);
    EXPECT_EQ(back->maxs[2], 16);
    EXPECT_EQ(countOf(brushesOf(world)), 2);
    for (const cFaceData* face : facesOf(back))
        EXPECT_STREQ(face->tex.name, "wall");
    EXPECT_EQ(classifyBrush(back, through.normal, 16), -1);
    EXPECT_EQ(classifyBrush(brush, through.normal, 16), 0);
    EXPECT_EQ(classifyBrush(brush, through.normal, 0), 1);
}

TEST_F(BrushGeometry, vertexGoesInBehindItsIndex) {
    cBrushData* brush = box();
    cFaceData* face = brush->faces;
    const uint32_t last = uint32_t(face->vertexCount) - 1;
    float middle[3];
    for (int i = 0; i < 3; ++i)
        middle[i] = (face->vertices[last].xyz[i] + face->vertices[0].xyz[i]) / 2;
    insertFaceVertex(face, int(last), middle, true);
    ASSERT_EQ(face->vertexCount, 5);
    EXPECT_EQ(memcmp(face->vertices[4].xyz, middle, sizeof middle), 0);
    EXPECT_EQ(face->vertices[4].tag, 1);
    EXPECT_EQ(face->vertices[3].tag, 0);
    // The plane comes through a corner on a straight edge; turned round it looks the other way.
    const float normal[3] = {face->normal[0], face->normal[1], face->normal[2]};
    ASSERT_TRUE(rebuildFace(face, UM_PLANES));
    EXPECT_EQ(memcmp(face->normal, normal, sizeof normal), 0);
    EXPECT_EQ(face->face->glMode, 9);
    reverseFace(face);
    ASSERT_TRUE(rebuildFace(face, UM_PLANES));
    EXPECT_EQ(vecDot(face->normal, normal), -1);
}

TEST_F(BrushGeometry, intersectionSeesTouchingAndApart) {
    const float boxes[][6] = {
        {100, 100, 100, 120, 120, 120}, {32, -16, 0, 64, 48, 64}, {0, 0, 10, 100, 100, 100}};
    const cBrushData* brush = box();
    for (const float* each : boxes)
        EXPECT_EQ(brushesIntersect(brush, addBox(map, world, each, each + 3)), each == boxes[2]);
}

TEST(Shading, fullLightAndTheDarkSide) {
    EXPECT_EQ(shadeForVector(0, 0, 1), 1.0f);
    EXPECT_NEAR(shadeForVector(-0.2672612f, -0.5345225f, -0.8017837f), 0.3f, 0.01f);
    EXPECT_NEAR(shadeForVector(1, 0, 0), 0.93363f, 1e-4f);
}

// SPDX-License-Identifier: MIT
#include "document/tFaceMapping.h"
#include "document/tTexture.h"
#include "support/tMapTest.h"

static constexpr float MINS[3] = {-64, -64, -64};
static constexpr float MAXS[3] = {64, 64, 64};

class FaceMapping : public cMapTest {
protected:
    void SetUp() override {
        host.addTexture("wall", 64, 32);
        brush = addBox(map, world, MINS, MAXS);
    }

    cFaceData* faceTowards(float x, float y, float z) {
        const float normal[3] = {x, y, z};
        for (cFaceData* face : facesOf(brush)) {
            if (normalsEqual(face->normal, normal))
                return face;
        }
        return nullptr;
    }

    void setNormal(cFaceData* face, float x, float y, float z) {
        vecSet(face->normal, x, y, z);
        T_VectorNormalize(face->normal);
    }

    cBrushData* brush = nullptr;
};

static void expectAxis(const float* axis, float x, float y, float z) {
    EXPECT_NEAR(axis[0], x, 1e-5f);
    EXPECT_NEAR(axis[1], y, 1e-5f);
    EXPECT_NEAR(axis[2], z, 1e-5f);
}

TEST_F(FaceMapping, boundaryNormalTakesTheLaterRowAlignedAndTheEarlierOneOtherwise) {
    cFaceData* face = faceTowards(0, 0, 1);
    setNormal(face, 1, 0, 1);
    EXPECT_EQ(majorAxis(face), 5);
    face->tex.alignFlags = FT_ALIGN_WORLD;
    resetAxes(face);
    expectAxis(face->tex.uAxis, 0, 1, 0);
    expectAxis(face->tex.vAxis, 0, 0, -1);
    face->tex.alignFlags = 0;
    resetAxes(face);
    expectAxis(face->tex.uAxis, 1, 0, 0);
    expectAxis(face->tex.vAxis, 0, -1, 0);
    face->tex.alignFlags = FT_ALIGN_FACE;
    resetAxes(face);
    EXPECT_NEAR(vecDot(face->tex.uAxis, face->normal), 0, 1e-6f);
    EXPECT_NEAR(vecDot(face->tex.vAxis, face->normal), 0, 1e-6f);
    vecSet(face->normal, 0.0f, 0.0f, 0.0f);
    EXPECT_EQ(majorAxis(face), 6);
}

TEST_F(FaceMapping, coordinatesFollowAxesScalesAndShiftsThatWrapIntoOnePeriod) {
    cFaceData* face = faceTowards(0, 0, 1);
    face->tex.uShift = 8;
    face->tex.uScale = 2;
    face->tex.vScale = 0.5f;
    computeTexCoords(face);
    for (int i = 0; i < face->vertexCount; ++i) {
        const cFaceVertex& v = face->vertices[i];
        EXPECT_FLOAT_EQ(v.st[0], (v.xyz[0] / 2 + 8) / 64);
        EXPECT_FLOAT_EQ(v.st[1], (-v.xyz[1] / 0.5f) / 32);
    }
    face->tex.uShift = -70;
    face->tex.vShift = 65;
    wrapShifts(face);
    EXPECT_EQ(face->tex.uShift, -6);
    EXPECT_EQ(face->tex.vShift, 1);
    setTextureName(face, "nowhere");
    face->tex.uShift = -70;
    wrapShifts(face);
    EXPECT_EQ(face->tex.uShift, -70) << "a placeholder has no period";
}

TEST_F(FaceMapping, alignFlagsComeFromTheAxes) {
    cFaceData* top = faceTowards(0, 0, 1);
    computeAlignFlags(top);
    EXPECT_EQ(top->tex.alignFlags, uint32_t(FT_ALIGN_WORLD | FT_ALIGN_FACE));
    setNormal(top, 0, 0.5f, 1);
    computeAlignFlags(top);
    EXPECT_EQ(top->tex.alignFlags, uint32_t(FT_ALIGN_WORLD));
    resetAxes(top);
    vecSet(top->tex.uAxis, 0.0f, 0.0f, 1.0f);
    setNormal(top, 0, 0, 1);
    EXPECT_FALSE(axesUsable(top));
}

TEST_F(FaceMapping, turningThereAndBackGivesTheAxesBefore) {
    cFaceData* face = faceTowards(1, 0, 0);
    rotateAxes(face, 90);
    expectAxis(face->tex.uAxis, 0, 0, 1);
    rotateAxes(face, -90);
    expectAxis(face->tex.uAxis, 0, 1, 0);
    expectAxis(face->tex.vAxis, 0, 0, -1);
}

TEST_F(FaceMapping, textureLockLeavesSkewAloneAndShiftsWithoutLockScale) {
    cFaceData* face = faceTowards(0, 0, 1);
    face->tex.uShift = 3;
    const cFaceTexture before = face->tex;
    const float pivot[3] = {0, 0, 0};
    const float skew[16] = {1, 0.5f, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    textureLock(face, pivot, skew, true);
    EXPECT_EQ(memcmp(&before, &face->tex, sizeof before), 0);
    const float stretch[16] = {2, 0, 0, 5, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    textureLock(face, pivot, stretch, false);
    EXPECT_EQ(face->tex.uShift, 3);
    EXPECT_EQ(face->tex.uScale, before.uScale);
}

// Across the shared edge the pattern runs on: the edge's points have the same texels on both.
TEST_F(FaceMapping, wrappingRunsOnAcrossTheEdgeAtAnyAngle) {
    cFaceData* ref = faceTowards(0, 0, 1);
    cFaceData* face = faceTowards(1, 0, 0);
    ref->tex.uShift = 11;
    ref->tex.vShift = -7;
    ref->tex.uScale = 0.5f;
    for (float angle = 10; angle < 175; angle += 15) {
        // The face turns about the edge x = 64, z = 64.
        const float radians = angle * 0.0174532925f;
        setNormal(face, std::sin(radians), 0, std::cos(radians));
        face->dist = vecDot(face->normal, MAXS);
        alignToFace(face, ref);
        EXPECT_NEAR(vecDot(face->tex.uAxis, face->normal), 0, 1e-4f) << angle;
        EXPECT_NEAR(vecDot(face->tex.vAxis, face->normal), 0, 1e-4f) << angle;
        for (const float y : {-64.0f, 0.0f, 40.0f}) {
            const float p[3] = {64, y, 64};
            const cFaceTexture &own = face->tex, &other = ref->tex;
            const float du = vecDot(p, own.uAxis) / own.uScale + own.uShift -
                             vecDot(p, other.uAxis) / other.uScale - other.uShift;
            const float dv = vecDot(p, own.vAxis) / own.vScale + own.vShift -
                             vecDot(p, other.vAxis) / other.vScale - other.vShift;
            EXPECT_NEAR(du / 64, std::round(du / 64), 1e-3f) << angle << " " << y;
            EXPECT_NEAR(dv / 32, std::round(dv / 32), 1e-3f) << angle << " " << y;
        }
    }
    // Parallel planes take the axes and shifts as they are.
    cFaceData* below = faceTowards(0, 0, -1);
    alignToFace(below, ref);
    expectAxis(below->tex.uAxis, 1, 0, 0);
    EXPECT_FLOAT_EQ(below->tex.uShift, 11);
    EXPECT_FLOAT_EQ(below->tex.vShift, -7);
    const cFaceTexture before = face->tex;
    alignToFace(face, nullptr);
    EXPECT_EQ(memcmp(&before, &face->tex, sizeof before), 0);
}

TEST_F(FaceMapping, texturesCountTheirUsers) {
    cTexture* wall = host.findTexture("WALL");
    EXPECT_EQ(wall->useCount, 6);
    cFaceData* face = brush->faces;
    wall->surfaceFlags = 5;
    setTextureName(face, "Wall");
    EXPECT_EQ(face->tex.surfaceFlags, 0u) << "a face that has its texture keeps its flags";
    const std::string name(80, 'x');
    setTextureName(face, name.c_str());
    EXPECT_EQ(strlen(face->tex.name), 63u);
    EXPECT_EQ(wall->useCount, 5);
    setTextureName(face, "wall");
    EXPECT_EQ(face->tex.surfaceFlags, 5u);
    map.freeBrush(brush);
    EXPECT_EQ(wall->useCount, 0);
}

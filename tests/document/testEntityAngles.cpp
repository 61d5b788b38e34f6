// SPDX-License-Identifier: MIT
#include "document/tEntityAngles.h"

#include "support/tMapTest.h"

using EntityAngles = cMapTest;

static constexpr float DEGREE_TOLERANCE = 0.001f;
static constexpr float VECTOR_TOLERANCE = 1e-5f;

static void turnMatrix(float x, float y, float z, float* matrix) {
    const float offset[3] = {4, 5, 6};
    T_BuildTransformMatrix(z, y, x, offset, matrix);
    T_TransposeMatrix(matrix, matrix);
}

TEST_F(EntityAngles, turnedVectorsComeBackAsPitchYawAndRoll) {
    struct cCase {
        float angles[3];
        float turn[3]; // about x, y, z
        float expected[3];
    };
    const cCase cases[] = {{{0, 0, 0}, {0, 0, 90}, {0, 90, 0}},
                           {{0, 350, 0}, {0, 0, 30}, {0, 20, 0}},
                           {{0, 0, 0}, {0, 0, 0.5f}, {0, 0.5f, 0}},
                           {{0, 0, 0}, {30, 0, 0}, {0, 0, 30}},
                           {{0, 0, 0}, {0, -30, 0}, {-30, 0, 0}},
                           // Straight up and down: all of the turn is yaw.
                           {{0, 0, 0}, {0, -90, 0}, {-90, 0, 0}},
                           {{0, 0, 0}, {0, 90, 0}, {90, 0, 0}},
                           {{-90, 0, 0}, {0, 0, 45}, {-90, 45, 0}},
                           {{90, 0, 0}, {0, 0, 45}, {90, 45, 0}},
                           {{86, 0, 0}, {0, 0, 10}, {86, 10, 0}},
                           {{87, 0, 0}, {0, 0, 10}, {90, 10, 0}}};
    for (const cCase& c : cases) {
        float matrix[16], out[3];
        turnMatrix(c.turn[0], c.turn[1], c.turn[2], matrix);
        EXPECT_TRUE(rotateAngles(c.angles, matrix, out));
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(out[i], c.expected[i], DEGREE_TOLERANCE)
                << "from " << c.angles[0] << " " << c.angles[1] << " by " << c.turn[0] << " "
                << c.turn[1] << " " << c.turn[2] << " component " << i;
        EXPECT_EQ(out[1], c.expected[1]) << "put on the step that was meant";
    }
}

TEST_F(EntityAngles, anyTurnCarriesTheThreeVectors) {
    const unsigned seed = 7;
    SCOPED_TRACE(seed);
    T_RandomSeed(seed);
    const auto random = [](int limit) { return float(T_RandomLong(-limit * 7, limit * 7)) / 7.0f; };
    for (int i = 0; i < 500; ++i) {
        const float angles[3] = {random(80), random(180), random(180)};
        float matrix[16], out[3], before[3][3], after[3][3];
        turnMatrix(random(180), random(180), random(180), matrix);
        rotateAngles(angles, matrix, out);
        T_AngleVectors(angles, before[0], before[1], before[2]);
        T_AngleVectors(out, after[0], after[1], after[2]);
        T_VectorRotate(before[0], matrix, before[0]);
        T_VectorRotate(before[2], matrix, before[2]);
        if (std::fabs(before[0][2]) > 0.99f)
            continue; // near the poles the roll is given up
        for (int v : {0, 2}) {
            for (int axis = 0; axis < 3; ++axis)
                EXPECT_NEAR(after[v][axis], before[v][axis], 3 * VECTOR_TOLERANCE) << i;
        }
        EXPECT_TRUE(out[1] >= 0 && out[1] < 360);
    }
}

TEST_F(EntityAngles, scaleShearMirrorAndMoveHoldNoRotation) {
    const float matrices[][16] = {{1, 0, 0, 9, 0, 1, 0, 9, 0, 0, 1, 9, 0, 0, 0, 1},
                                  {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1},
                                  {1, 0.5f, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1},
                                  {-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1},
                                  {0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};
    const float angles[3] = {370, -45.123f, 12};
    for (const float* matrix : matrices) {
        float out[3];
        EXPECT_FALSE(rotateAngles(angles, matrix, out));
        EXPECT_EQ(memcmp(out, angles, sizeof out), 0);
    }
}

TEST_F(EntityAngles, flipMirrorsTheForwardVector) {
    for (int axis = 0; axis < 3; ++axis) {
        const float angles[3] = {20, 35, 10};
        float flipped[3], twice[3], before[3], after[3];
        flipAngles(angles, axis, flipped);
        T_AngleVectors(angles, before, nullptr, nullptr);
        T_AngleVectors(flipped, after, nullptr, nullptr);
        before[axis] = -before[axis];
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(after[i], before[i], VECTOR_TOLERANCE) << axis;
        EXPECT_EQ(flipped[2], -10);
        flipAngles(flipped, axis, twice);
        for (int i = 0; i < 3; ++i)
            EXPECT_FLOAT_EQ(twice[i], angles[i]) << axis;
    }
}

TEST_F(EntityAngles, theFirstKeyTakesTheValueInItsOwnForm) {
    struct cCase {
        std::vector<const char*> keys;
        float angles[3];
        const char* changed;
        const char* value;
    };
    const cCase cases[] = {{{}, {1, 90, 0.5f}, "angles", "1 90 0.5"},
                           {{"ANGLES"}, {0, 12.25f, 0}, "angles", "0 12.25 0"},
                           {{"Angle"}, {0, 90, 0}, "angle", "90"},
                           {{"angle"}, {-90, 0, 0}, "angle", "-1"},
                           {{"angle"}, {90, 45, 0}, "angle", "-2"},
                           {{"angle"}, {0, -1, 0}, "angle", "359"},
                           {{"angle", "angles"}, {0, 30, 0}, "angle", "30"},
                           {{"angles", "angle"}, {0, 30, 0}, "angles", "0 30 0"}};
    for (const cCase& c : cases) {
        cEntityData* entity = pointAt(0);
        for (const char* key : c.keys)
            addEpairLast(entity, key, "old");
        setEntityAngles(entity, c.angles);
        EXPECT_EQ(memcmp(entity->angles, c.angles, sizeof c.angles), 0);
        EXPECT_STREQ(getEpairValue(entity, c.changed), c.value);
        EXPECT_EQ(size_t(countOf(epairsOf(entity))), std::max(c.keys.size(), size_t(1)));
        for (size_t i = 1; i < c.keys.size(); ++i)
            EXPECT_STREQ(getEpairValue(entity, c.keys[i]), "old") << "the second is left alone";
    }
}

TEST_F(EntityAngles, aClassGivesItsDirectionByTheFirstOfTheTwoKeys) {
    struct cCase {
        const char* key;
        const char* value;
        float angles[3];
    };
    const cCase cases[] = {{"angles", "-90 15.5 3", {-90, 15.5f, 3}},
                           {"Angles", "12", {12, 0, 0}},
                           {"angle", "270", {0, 270, 0}},
                           {"ANGLE", "-1", {-90, 0, 0}},
                           {"angle", "-2", {90, 0, 0}},
                           {"other", "5 5 5", {1, 2, 3}}};
    const float before[3] = {1, 2, 3};
    for (const cCase& c : cases) {
        cEntityClass* spot = host.addClass(QString::fromLatin1(c.value), CK_POINT);
        spot->variables = {
            {VT_STRING, QString::fromLatin1(c.key), {}, {}, QString::fromLatin1(c.value), {}}};
        cEntityData* entity = pointAt(0, 0, 0, c.value);
        vecCopy(before, entity->angles);
        resetEntityFromClass(entity);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(entity->angles[i], c.angles[i]) << c.key << " " << c.value << " " << i;
    }
}

// SPDX-License-Identifier: MIT
#include "views/tFrustum.h"

#include "support/tMath.h"

#include <gtest/gtest.h>

// The slab from 0 to 10 on x and y, with planes 0 to 3, and a slanted one, 4: x + y <= 14.
static cFrustum slab() {
    const float planes[5][4] = {
        {1, 0, 0, 0}, {-1, 0, 0, -10}, {0, 1, 0, 0}, {0, -1, 0, -10}, {-0.6f, -0.8f, 0, -12}};
    cFrustum frustum;
    for (const auto& plane : planes)
        frustum.addPlane(plane, plane[3]);
    return frustum;
}

struct cFrustumCase {
    float mins[3];
    float maxs[3];
    eBoxSide side;
    uint32_t maskLeft; // of the planes that the box does not wholly pass
};

TEST(Frustum, boxesAreInsideOutsideOrAcross) {
    const cFrustumCase cases[] = {
        {{1, 1, -99}, {5, 5, 99}, BOX_INSIDE, 0},
        {{-3, 1, 0}, {-1, 5, 1}, BOX_OUTSIDE, 0},
        {{-3, 1, 0}, {1, 5, 1}, BOX_CROSSES, 1},
        {{1, 8, 0}, {5, 12, 1}, BOX_CROSSES, 8 | 16},
        {{9, 9, 0}, {9.5f, 9.5f, 1}, BOX_OUTSIDE, 0},
        {{-100, -100, 0}, {100, 100, 1}, BOX_CROSSES, 31},
    };
    const cFrustum frustum = slab();
    for (const cFrustumCase& c : cases) {
        uint32_t mask = 31;
        EXPECT_EQ(frustum.classifyBox(c.mins, c.maxs, &mask), c.side) << c.mins[0];
        EXPECT_EQ(frustum.cullBox(c.mins, c.maxs), c.side == BOX_OUTSIDE) << c.mins[0];
        if (c.side != BOX_OUTSIDE) {
            EXPECT_EQ(mask, c.maskLeft) << c.mins[0];
        }
    }
    EXPECT_TRUE(frustum.cullBox(cases[1].mins, cases[1].maxs, 1));
    EXPECT_FALSE(frustum.cullBox(cases[1].mins, cases[1].maxs, 2 | 4 | 8)) << "planes not asked";
}

TEST(Frustum, turnedBoxesAreTestedWhereTheyStand) {
    float turn[16], matrix[16];
    const float none[3] = {0, 0, 0};
    T_BuildTransformMatrix(90, 0, 0, none, turn);
    T_TransposeMatrix(turn, matrix);
    // A bar along x becomes one along y.
    const float mins[3] = {-20, -1, -1}, maxs[3] = {20, 1, 1}, origin[3] = {-5, 5, 0};
    EXPECT_FALSE(slab().cullBox(mins, maxs));
    EXPECT_TRUE(slab().cullRotatedBox(mins, maxs, origin, matrix));
    const float within[3] = {5, 5, 0};
    EXPECT_FALSE(slab().cullRotatedBox(mins, maxs, within, matrix));
}

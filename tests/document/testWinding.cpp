// SPDX-License-Identifier: MIT
#include "document/tWinding.h"
#include "support/tTestHost.h"
#include "support/tVec.h"

#include <gtest/gtest.h>

static const double UP[3] = {0, 0, 1};
static const double EAST[3] = {1, 0, 0};

static cWindingD* quad(double half, double z) {
    cWindingD* w = windingAlloc<double>();
    const double corners[4][2] = {{half, half}, {-half, half}, {-half, -half}, {half, -half}};
    for (const auto& corner : corners)
        vecSet(w->points[w->count++], corner[0], corner[1], z);
    return w;
}

TEST(Winding, quadOnPlaneRunsCounterClockwiseFromFront) {
    cTestHost host;
    cWindingD* w = windingAlloc<double>();
    windingInitFromPlane(w, UP, 0.0);
    ASSERT_EQ(w->count, 4);
    const double s = 262144 * 1.732050807569;
    const double expected[4][2] = {{s, s}, {-s, s}, {-s, -s}, {s, -s}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_DOUBLE_EQ(w->points[i][0], expected[i][0]) << i;
        EXPECT_DOUBLE_EQ(w->points[i][1], expected[i][1]) << i;
        EXPECT_EQ(w->points[i][2], 0);
    }
    windingFree(w);
}

TEST(Winding, planeOfAnInitialQuadIsThePlaneItCameFrom) {
    cTestHost host;
    const double normals[][3] = {{0, 0, 1},  {0, 0, -1},    {1, 0, 0},
                                 {0, -1, 0}, {0.6, 0, 0.8}, {-0.48, 0.6, 0.64}};
    for (const auto& normal : normals) {
        cWindingD* w = windingAlloc<double>();
        windingInitFromPlane(w, normal, 37.5);
        double found[3], dist;
        windingPlane(w, found, &dist);
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(found[i], normal[i], 1e-9);
        EXPECT_NEAR(dist, 37.5, 1e-6);
        windingFree(w);
    }
}

TEST(Winding, clipByAxialPlaneIsExact) {
    cTestHost host;
    cWindingD* w = windingAlloc<double>();
    windingInitFromPlane(w, UP, 0.0);
    w = windingClip(w, EAST, 0.0, false);
    ASSERT_TRUE(w && w->count == 4);
    int onPlane = 0;
    for (int i = 0; i < w->count; ++i) {
        EXPECT_GE(w->points[i][0], 0);
        onPlane += w->points[i][0] == 0 ? 1 : 0;
    }
    EXPECT_EQ(onPlane, 2);
    windingFree(w);
}

TEST(Winding, polygonWithinToleranceLiesInThePlane) {
    EXPECT_EQ(windingClip(quad(8, 0.0099), UP, 0.0, false), nullptr);
    cWindingD* kept = windingClip(quad(8, -0.0099), UP, 0.0, true);
    ASSERT_NE(kept, nullptr);
    windingFree(kept);
    cWindingD *front, *back;
    EXPECT_FALSE(windingSplit(quad(8, 0.0099), UP, 0.0, &front, &back));
    EXPECT_EQ(front, nullptr);
    EXPECT_EQ(back, nullptr);
}

TEST(Winding, splitPartsCoverTheWhole) {
    cWindingD *front, *back;
    const double slanted[3] = {0.6, 0.8, 0};
    ASSERT_TRUE(windingSplit(quad(16, 4), slanted, 3.0, &front, &back));
    ASSERT_TRUE(front && back);
    EXPECT_NEAR(windingArea(front) + windingArea(back), 32.0 * 32.0, 1e-9);
    for (int i = 0; i < front->count; ++i)
        EXPECT_GE(vecDot(front->points[i], slanted), 3.0 - 1e-9);
    windingFree(front);
    windingFree(back);
    ASSERT_TRUE(windingSplit(quad(16, 4), UP, 0.0, &front, &back));
    EXPECT_EQ(back, nullptr);
    windingFree(front);
}

TEST(Winding, duplicatesGoAlsoAcrossTheEnd) {
    cWindingD* w = quad(8, 0);
    vecSet(w->points[w->count++], 8.0, -7.995, 0.0);
    vecSet(w->points[w->count++], 8.0, 7.995, 0.0);
    EXPECT_TRUE(windingRemoveDuplicates(w));
    EXPECT_EQ(w->count, 4);
    EXPECT_FALSE(windingRemoveDuplicates(w));
    windingFree(w);
}

TEST(Winding, moreThanTheCapacityIsCut) {
    cWinding* w = windingAlloc<float>();
    w->count = cWinding::CAPACITY;
    for (int i = 0; i < w->count; ++i) {
        const float angle = float(i) * 6.2831853f / float(w->count);
        vecSet(w->points[i], 100 * std::cos(angle), 100 * std::sin(angle), 0.0f);
    }
    const float normal[3] = {0.99996f, 0.00894f, 0};
    w = windingClip(w, normal, 50.0f, false);
    ASSERT_NE(w, nullptr);
    EXPECT_LE(w->count, cWinding::CAPACITY);
    windingFree(w);
}

// SPDX-License-Identifier: MIT
#include "document/tSelectionBox.h"
#include "support/tTestHost.h"

#include <cmath>
#include <gtest/gtest.h>

static constexpr int H = 0, V = 2, DEPTH = 1;                     // a view along y
static constexpr float BULLET = 8, OFFSET = 6;                    // world units
static constexpr float LEFT = 0, RIGHT = 128, LOW = 32, TOP = 96; // of the box on h and v
static constexpr float ROTATION_TOLERANCE = 1e-4f;                // radians

class SelectionBox : public testing::Test {
protected:
    void SetUp() override {
        const float a[3] = {LEFT, -16, TOP}, b[3] = {RIGHT, 16, LOW};
        box.setFromTwoPoints(a, b);
    }
    // The handle at a place on h and v.
    int at(float h, float v) const {
        const float point[3] = {h, 0, v};
        return box.handleAt(H, V, BULLET, OFFSET, OFFSET, point);
    }
    void drag(int handle, float h, float v) {
        const float delta[3] = {h, 0, v};
        box.resize(delta, H, V, handle, reference);
    }
    // A point off the centre, that many degrees from h towards v.
    static void aroundCenter(float degrees, float* out) {
        const float radians = degrees * float(M_PI) / 180;
        out[H] = (LEFT + RIGHT) / 2 + 50 * std::cos(radians);
        out[DEPTH] = 0;
        out[V] = (LOW + TOP) / 2 + 50 * std::sin(radians);
    }
    void expectSides(float left, float right, float low, float top) const {
        EXPECT_FLOAT_EQ(box.mins[H], left);
        EXPECT_FLOAT_EQ(box.maxs[H], right);
        EXPECT_FLOAT_EQ(box.mins[V], low);
        EXPECT_FLOAT_EQ(box.maxs[V], top);
    }

    cTestHost host;
    cSelectionBox box;
    float reference[3] = {0, 0, 0};
};

TEST_F(SelectionBox, anInactiveBoxIgnoresChangesAndFailsTests) {
    const float point[3] = {0, 0, 0}, onHandle[3] = {-6, 0, 0}, delta[3] = {8, 8, 8};
    box.clear();
    box.move(delta, reference);
    box.addToCorner(1, 0, 8);
    box.setShear(8);
    box.setRotation(delta, point, H, V, false);
    box.resize(delta, H, V, BH_TOP_LEFT, reference);
    expectSides(0, 0, 0, 0);
    EXPECT_EQ(reference[0] + box.rotation + box.shear, 0);
    EXPECT_FALSE(box.contains(point));
    EXPECT_EQ(box.handleAt(H, V, BULLET, OFFSET, OFFSET, onHandle), BH_NONE);
    EXPECT_EQ(box.statusText(H, V, BT_EXTENTS), QString());
}

TEST_F(SelectionBox, pointsAreClampedToTheWorldAndResetAngleAndShear) {
    host.MaxWorldSize = 1024;
    box.rotation = box.shear = 1;
    const float a[3] = {-9000, 10, 9000}, b[3] = {100, -10, 20};
    box.setFromTwoPoints(a, b);
    expectSides(-512, 100, 20, 512);
    EXPECT_EQ(box.rotation, 0);
    EXPECT_EQ(box.shear, 0);
    box.clear();
    EXPECT_FALSE(box.active);
    expectSides(0, 0, 0, 0);
    const float c[3] = {5, 6, 7}, d[3] = {-1, 8, 9};
    box.addPoint(c);
    EXPECT_TRUE(box.active);
    box.addPoint(d);
    expectSides(-1, 5, 7, 9);
    box.setPoint(a);
    expectSides(-512, -512, 512, 512);
}

TEST_F(SelectionBox, movesWithItsReference) {
    const float delta[3] = {16, 0, -8};
    box.move(delta, reference);
    expectSides(LEFT + 16, RIGHT + 16, LOW - 8, TOP - 8);
    EXPECT_EQ(reference[H], 16);
    EXPECT_EQ(reference[V], -8);
    box.moveAxis(H, -16);
    for (const int corner : {0, 1})
        box.addToCorner(corner, V, 8);
    expectSides(LEFT, RIGHT, LOW, TOP);
}

TEST_F(SelectionBox, containsWithHalfAUnitAround) {
    const struct {
        float x, y, z;
        bool inside;
    } cases[] = {{64, 0, 64, true},        {LEFT - 0.49f, 0, 64, true}, {LEFT - 0.5f, 0, 64, false},
                 {64, 16.4f, 64, true},    {64, 16.5f, 64, false},      {64, 0, TOP + 0.5f, false},
                 {64, 0, TOP + 0.4f, true}};
    for (const auto& c : cases) {
        const float point[3] = {c.x, c.y, c.z};
        EXPECT_EQ(box.contains(point), c.inside) << c.x << ' ' << c.y << ' ' << c.z;
    }
    const float far[3] = {LEFT - 3, 0, 64};
    EXPECT_TRUE(box.containsMargin(far, 4));
    EXPECT_FALSE(box.containsMargin(far, 3));
}

TEST_F(SelectionBox, handlesLieInTheBandsAroundIt) {
    const float left = LEFT - 7, right = RIGHT + 7, low = LOW - 7, top = TOP + 7; // band middles
    const float middleH = (LEFT + RIGHT) / 2, middleV = (LOW + TOP) / 2;
    const float near = OFFSET / 2, far = OFFSET / 2 + BULLET;
    const struct {
        float h, v;
        int handle;
        const char* what;
    } cases[] = {
        {left, top, BH_TOP_LEFT, ""},
        {right, top, BH_TOP_RIGHT, ""},
        {left, low, BH_BOTTOM_LEFT, ""},
        {right, low, BH_BOTTOM_RIGHT, ""},
        {left, middleV, BH_LEFT, ""},
        {right, middleV, BH_RIGHT, ""},
        {middleH, top, BH_TOP, ""},
        {middleH, low, BH_BOTTOM, ""},
        {middleH, middleV, BH_NONE, "inside"},
        {left, middleV + 20, BH_NONE, "between two rows"},
        {middleH + 20, top, BH_NONE, "between two columns"},
        {LEFT - near, middleV, BH_NONE, "an edge of a band is no hit"},
        {LEFT - far, middleV, BH_NONE, "nor is the other"},
        {RIGHT + near, middleV, BH_NONE, "on the right"},
        {RIGHT + far, middleV, BH_NONE, "on the right, far"},
        {middleH, TOP + near, BH_NONE, "above"},
        {middleH, LOW - far, BH_NONE, "below"},
        {LEFT, middleV, BH_NONE, "the box's own edge"},
        {left, middleV + BULLET / 2, BH_NONE, "the middle row has no edges"},
        {middleH + BULLET / 2, top, BH_TOP, "the middle column has them"},
        {middleH - BULLET / 2, low, BH_BOTTOM, "on both sides"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(at(c.h, c.v), c.handle) << c.h << ' ' << c.v << ' ' << c.what;
}

TEST_F(SelectionBox, handlePointsLieOnTheBox) {
    const auto expectPoint = [](const float* point, float h, float v) {
        EXPECT_EQ(point[H], h);
        EXPECT_EQ(point[V], v);
        EXPECT_EQ(point[DEPTH], 0);
    };
    float point[3];
    box.handlePoint(H, V, BH_TOP_LEFT, point);
    expectPoint(point, LEFT, TOP);
    box.handlePoint(H, V, BH_BOTTOM, point);
    expectPoint(point, 64, LOW);
    box.handlePoint(H, V, BH_RIGHT, point);
    expectPoint(point, RIGHT, 64);
    const float nearTop[3] = {64, 50, 80}, nearLow[3] = {10, 0, 40};
    box.nearestCorner(H, V, nearTop, point);
    expectPoint(point, RIGHT, TOP); // a tie goes to the upper side
    box.nearestCorner(H, V, nearLow, point);
    expectPoint(point, LEFT, LOW);
}

TEST_F(SelectionBox, eachHandleMovesItsSides) {
    host.gridSize = 8;
    const struct {
        int handle;
        float left, right, low, top;
    } cases[] = {
        {BH_TOP_LEFT, 8, 0, 0, 16}, {BH_TOP_RIGHT, 0, 8, 0, 16},    {BH_BOTTOM_LEFT, 8, 0, 16, 0},
        {BH_LEFT, 8, 0, 0, 0},      {BH_BOTTOM_RIGHT, 0, 8, 16, 0}, {BH_RIGHT, 0, 8, 0, 0},
        {BH_TOP, 0, 0, 0, 16},      {BH_BOTTOM, 0, 0, 16, 0},
    };
    for (const auto& c : cases) {
        SetUp();
        drag(c.handle, 8, 16);
        SCOPED_TRACE(c.handle);
        expectSides(LEFT + c.left, RIGHT + c.right, LOW + c.low, TOP + c.top);
        const uint32_t sides = (c.left != 0 ? 1u << H : 0) | (c.right != 0 ? 1u << (H + 3) : 0) |
                               (c.low != 0 ? 1u << V : 0) | (c.top != 0 ? 1u << (V + 3) : 0);
        EXPECT_EQ(handleSides(c.handle, H, V), sides);
    }
    EXPECT_EQ(handleSides(BH_NONE, H, V), 0u);
}

TEST_F(SelectionBox, aResizeStopsOneUnitBeforeTheOppositeSideAndTheReferenceStaysWithTheSide) {
    host.gridSize = 32;
    reference[H] = RIGHT;
    reference[V] = TOP;
    drag(BH_TOP_RIGHT, -320, -320);
    expectSides(LEFT, LEFT + 1, LOW, LOW + 1);
    EXPECT_EQ(reference[H], LEFT + 1);
    EXPECT_EQ(reference[V], LOW + 1);
    // The mouse goes on, from grid line to grid line, and comes back.
    drag(BH_TOP_RIGHT, -224 - reference[H], -256 - reference[V]);
    expectSides(LEFT, LEFT + 1, LOW, LOW + 1);
    drag(BH_TOP_RIGHT, 64 - reference[H], 96 - reference[V]);
    expectSides(LEFT, 64, LOW, 96);
    EXPECT_EQ(reference[H], 64);
    drag(BH_BOTTOM_LEFT, 1000, 1000);
    expectSides(63, 64, 95, 96);
}

TEST_F(SelectionBox, theGridHoldsTheSidesButTakesNothingFromTheReference) {
    host.gridSize = 32;
    drag(BH_RIGHT, 40, 0);
    expectSides(LEFT, 160, LOW, TOP);
    EXPECT_EQ(reference[H], 40);
    drag(BH_LEFT, -1, 0);
    expectSides(-32, 160, LOW, TOP);
    host.SnapToGrid = false;
    drag(BH_LEFT, -1.5f, 0);
    expectSides(-33.5f, 160, LOW, TOP);
    drag(BH_LEFT, 0, 0);
    expectSides(-33.5f, 160, LOW, TOP);
    host.MaxWorldSize = 300;
    drag(BH_RIGHT, 900, 0);
    expectSides(-33.5f, 150, LOW, TOP);
    // A flat box opens to one unit.
    const float point[3] = {64, 0, 64};
    box.setPoint(point);
    host.SnapToGrid = true;
    drag(BH_RIGHT, -32 - reference[H], 0);
    expectSides(64, 65, 64, 64);
}

TEST_F(SelectionBox, rotatesInSteps) {
    const struct {
        float press; // degrees about the centre
        float turn;
        bool snap;
        double expected;
    } cases[] = {
        {45, 37.3f, false, 37.0},
        {45, 37.6f, false, 37.5},
        {45, 37.3f, true, 30.0},
        {45, -10.2f, false, 350},
        {45, -20, true, 345},
        {45, 0.2f, false, 0},
        {-135, 50.2f, true, 45},
        // Across the right, where angles start anew: cut towards zero before the turn is added.
        {1, -37.4f, false, 322.5},
        {-1, 37.4f, false, 37.5},
        {179, 37.4f, false, 37},
        {-10, 60.2f, true, 75},
    };
    for (const auto& c : cases) {
        float press[3], point[3];
        aroundCenter(c.press, press);
        aroundCenter(c.press + c.turn, point);
        box.setRotation(point, press, H, V, c.snap);
        EXPECT_NEAR(double(box.rotation), c.expected * M_PI / 180, double(ROTATION_TOLERANCE))
            << c.press << " by " << c.turn;
    }
}

TEST_F(SelectionBox, tellsItsSizeCentreAngleAndShear) {
    box.maxs[H] = 127.999f;
    box.rotation = float(M_PI) / 24;
    box.shear = -12.345f;
    EXPECT_EQ(box.statusText(H, V, BT_EXTENTS), QStringLiteral("127.99w 32l 64h"));
    EXPECT_EQ(box.statusText(H, V, BT_CENTER), QStringLiteral("63.99x 0y 64z"));
    EXPECT_EQ(box.statusText(H, V, BT_VIEW_EXTENTS), QStringLiteral("127.99 x 64"));
    EXPECT_EQ(box.statusText(H, V, BT_NONE), QString());
    EXPECT_EQ(box.statusText(H, V, BT_ROTATION), QStringLiteral("7.5\u00b0"));
    EXPECT_EQ(box.statusText(H, V, BT_SHEAR), QStringLiteral("shear: -12.35"));
}

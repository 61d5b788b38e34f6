// SPDX-License-Identifier: MIT
// Block, wedge, cylinder and spike.
#include "operations/tPrimitives.h"

#include "operations/tPrimitiveBrush.h"

#include "document/tBrushGeometry.h"
#include "document/tMap.h"
#include "support/tMath.h"
#include "support/tVec.h"

#include <cmath>

static constexpr float FULL_TURN = 6.2831855f;

static bool isReversed(const cPrimitiveParams& params) {
    return (params.flags & (1u << PP_REORIENT_BIT)) != 0;
}

static const float* corner(const cPrimitiveParams& params, bool upper) {
    return upper ? params.maxs : params.mins;
}

// ---- Block

bool createBlock(const cPrimitiveParams& params) {
    // Vertex: which end of x, y, z.
    static constexpr bool UPPER[8][3] = {
        {false, false, false}, {false, false, true}, {false, true, false}, {false, true, true},
        {true, true, false},   {true, true, true},   {true, false, false}, {true, false, true}};
    static const std::vector<std::vector<int>> FACES = {{0, 1, 3, 2}, {2, 3, 5, 4}, {4, 5, 7, 6},
                                                        {6, 7, 1, 0}, {1, 7, 5, 3}, {0, 2, 4, 6}};
    std::vector<cPoint> points(8);
    for (size_t i = 0; i < 8; ++i) {
        for (int axis = 0; axis < 3; ++axis)
            points[i][size_t(axis)] = roundedIf(params, corner(params, UPPER[i][axis])[axis]);
    }
    return createFrom(params, "Create Block", {points, FACES});
}

// ---- Wedge

bool createWedge(const cPrimitiveParams& params) {
    // Vertex: which end of the axes a, b, c.
    static constexpr bool UPPER[6][3] = {{false, false, false}, {false, false, true},
                                         {true, true, false},   {true, true, true},
                                         {true, false, false},  {true, false, true}};
    static const std::vector<std::vector<int>> CLEAR = {
        {0, 2, 3, 1}, {2, 4, 5, 3}, {4, 0, 1, 5}, {0, 4, 2}, {1, 3, 5}};
    static const std::vector<std::vector<int>> SET = {
        {0, 1, 3, 2}, {2, 3, 5, 4}, {4, 5, 1, 0}, {0, 2, 4}, {1, 5, 3}};
    std::vector<cPoint> points(6);
    for (size_t i = 0; i < 6; ++i) {
        for (int k = 0; k < 3; ++k) {
            const int axis = params.axes[k];
            points[i][size_t(axis)] = roundedIf(params, corner(params, UPPER[i][k])[axis]);
        }
    }
    return createFrom(params, "Create Wedge", {points, isReversed(params) ? SET : CLEAR});
}

// ---- Cylinder and spike

static constexpr int FEWEST_SIDES = 3;
static constexpr float SAME_DIST = 0.002f; // planes of equal normals this close count as one
static constexpr float STRAIGHT = 0.01f;   // units that a corner may stand off a line

// Rounding may put points of a fine ring upon each other, in line or inward. What is left turns
// the same way at every corner.
static void keepConvex(std::vector<cPoint>& ring, size_t a, size_t b, bool clockwise) {
    for (size_t i = 0; ring.size() >= size_t(FEWEST_SIDES) && i < ring.size();) {
        const cPoint& before = ring[(i + ring.size() - 1) % ring.size()];
        const cPoint& after = ring[(i + 1) % ring.size()];
        const float t = turnOf(before, ring[i], after, a, b);
        if (clockwise ? t < 0 : t > 0) {
            ++i;
            continue;
        }
        ring.erase(ring.begin() + std::ptrdiff_t(i));
        i = i > 0 ? i - 1 : 0;
    }
}

// The plane over an edge of the base: towards the apex, or straight up along axis c.
static cPlane sideOver(const cPoint& from, const cPoint& to, const cPoint* apex, size_t c) {
    float along[3], up[3] = {0, 0, 0};
    vecSubtract(to.data(), from.data(), along);
    up[c] = 1;
    if (apex)
        vecSubtract(apex->data(), from.data(), up);
    cPlane plane = {};
    vecCross(along, up, plane.normal);
    T_VectorNormalize(plane.normal);
    plane.dist = vecDot(plane.normal, from.data());
    return plane;
}

static bool isStraight(const cPoint& p, const cPoint& q, const cPoint& r, size_t a, size_t b) {
    return std::fabs(turnOf(p, q, r, a, b)) < STRAIGHT * std::hypot(r[a] - p[a], r[b] - p[b]);
}

// The corner to drop, since two sides count as one plane: the one between them if it lies on a
// line, else one beside them, so that the base keeps its extreme corners. -1: there is none.
static int superfluousCorner(const std::vector<cPoint>& ring, const cPoint* apex, size_t a,
                             size_t b, size_t c) {
    const size_t n = ring.size();
    std::vector<cPlane> sides;
    for (size_t i = 0; i < n; ++i)
        sides.push_back(sideOver(ring[i], ring[(i + 1) % n], apex, c));
    for (size_t i = 0; i < n; ++i) {
        for (size_t j = i + 1; j < n; ++j) {
            if (!normalsEqual(sides[i].normal, sides[j].normal) ||
                std::fabs(sides[i].dist - sides[j].dist) >= SAME_DIST)
                continue;
            const bool wraps = i == 0 && j == n - 1;
            const size_t between = wraps ? 0 : j;
            if ((wraps || j == i + 1) && isStraight(ring[(between + n - 1) % n], ring[between],
                                                    ring[(between + 1) % n], a, b))
                return int(between);
            return int(wraps ? j : (j + 1) % n);
        }
    }
    return -1;
}

// Two sides that the validity check takes for one plane would refuse the whole solid.
static void joinFlatSides(std::vector<cPoint>& ring, const cPoint* apex, size_t a, size_t b,
                          size_t c) {
    while (ring.size() > size_t(FEWEST_SIDES)) {
        const int corner = superfluousCorner(ring, apex, a, b, c);
        if (corner < 0)
            return;
        ring.erase(ring.begin() + corner);
    }
}

// The corners of the base on an ellipse that fills the box, at the given height; the sides over it
// end in the apex or stand upright.
static std::vector<cPoint> ringOf(const cPrimitiveParams& params, float height, bool negated,
                                  const cPoint* apex) {
    const auto a = size_t(params.axes[0]), b = size_t(params.axes[1]), c = size_t(params.axes[2]);
    const float centerA = (params.mins[a] + params.maxs[a]) * 0.5f;
    const float centerB = (params.mins[b] + params.maxs[b]) * 0.5f;
    const float radiusA = (params.maxs[a] - params.mins[a]) * 0.5f;
    const float radiusB = (params.maxs[b] - params.mins[b]) * 0.5f;
    std::vector<cPoint> ring(size_t(params.sides));
    for (int i = 0; i < params.sides; ++i) {
        const float angle = float(i) * FULL_TURN / float(params.sides) * (negated ? -1.0f : 1.0f);
        cPoint& point = ring[size_t(i)];
        point[a] = roundedIf(params, centerA + radiusA * std::cos(angle));
        point[b] = roundedIf(params, centerB + radiusB * std::sin(angle));
        point[c] = roundedIf(params, height);
    }
    keepConvex(ring, a, b, negated);
    joinFlatSides(ring, apex, a, b, c);
    return ring;
}

static std::vector<int> inOrder(int first, int count, bool reversed) {
    std::vector<int> face;
    for (int i = 0; i < count; ++i)
        face.push_back(first + (reversed ? count - 1 - i : i));
    return face;
}

bool createCylinder(const cPrimitiveParams& params) {
    if (params.sides < FEWEST_SIDES)
        return false;
    const auto c = size_t(params.axes[2]);
    cSolid solid;
    solid.points = ringOf(params, params.maxs[c], !isReversed(params), nullptr);
    const int n = int(solid.points.size());
    if (n < FEWEST_SIDES)
        return false;
    for (int i = 0; i < n; ++i) {
        cPoint below = solid.points[size_t(i)];
        below[c] = roundedIf(params, params.mins[c]);
        solid.points.push_back(below);
    }
    solid.faces.push_back(inOrder(0, n, false));
    solid.faces.push_back(inOrder(n, n, true));
    for (int i = 0; i < n; ++i) {
        const int next = (i + 1) % n;
        solid.faces.push_back({i, n + i, n + next, next});
    }
    return createFrom(params, "Create Cylinder", solid);
}

bool createSpike(const cPrimitiveParams& params) {
    if (params.sides < FEWEST_SIDES)
        return false;
    const auto c = size_t(params.axes[2]);
    cPoint apex;
    for (size_t axis = 0; axis < 3; ++axis)
        apex[axis] = roundedIf(params, (params.mins[axis] + params.maxs[axis]) * 0.5f);
    apex[c] = roundedIf(params, params.maxs[c]);
    cSolid solid;
    solid.points = ringOf(params, params.mins[c], isReversed(params), &apex);
    const int n = int(solid.points.size());
    if (n < FEWEST_SIDES)
        return false;
    solid.points.push_back(apex);
    solid.faces.push_back(inOrder(0, n, false));
    for (int i = 0; i < n; ++i)
        solid.faces.push_back({(i + 1) % n, i, n});
    return createFrom(params, "Create Spike", solid);
}

// SPDX-License-Identifier: MIT
// The arch: a ring of segments, flat, as a stair or as a ramp.
#include "document/tEntity.h"
#include "document/tMap.h"
#include "operations/tPrimitiveBrush.h"
#include "operations/tPrimitives.h"

#include <algorithm>
#include <cmath>

static constexpr float RADIANS = 0.017453294f;
static constexpr int FULL_CIRCLE = 360;
static constexpr float SAME_POINT = 0.02f; // ends of an inner wall this close are one in a winding
static constexpr float FLAT_TURN = 0.01f;  // square units; a corner that turns less is straight

namespace {
class cArchBuilder {
public:
    cArchBuilder(const cPrimitiveParams& params, const cArchShape& shape);
    bool build();

private:
    // Where two segments meet, on the base.
    struct cSeam {
        cPoint inner, outer;
    };

    cPoint at(float angle, bool outer) const;
    void layOut();
    std::vector<cPoint> segmentPoints(size_t segment) const;
    bool joinInner(std::vector<cPoint>& points) const;
    bool bendsIn(const std::vector<cPoint>& points, int p, int q, int r) const;
    bool isConcave(const std::vector<cPoint>& points) const;
    void slope(std::vector<cPoint>& points, bool degenerate) const;
    void addSegment(size_t segment);
    void addHalves(const std::vector<cPoint>& points);
    void addBrushOf(const std::vector<cPoint>& points, const std::vector<std::vector<int>>& faces);

    const cPrimitiveParams& m_params;
    const cArchShape& m_shape;
    cMap& m_map;
    bool m_reversed; // the corners run the other way round
    size_t m_a, m_b, m_c;
    cPoint m_center; // on the base; rises with every segment
    float m_radiusA, m_radiusB, m_wall, m_height;
    std::vector<cSeam> m_seams; // one more than segments
    std::vector<cBrushData*> m_brushes;
    cGroupData* m_group = nullptr;
};

cArchBuilder::cArchBuilder(const cPrimitiveParams& params, const cArchShape& shape)
    : m_params(params),
      m_shape(shape),
      m_map(*params.map->map),
      m_reversed((params.flags & (1u << PP_REORIENT_BIT)) != 0),
      m_a(size_t(params.axes[0])),
      m_b(size_t(params.axes[1])),
      m_c(size_t(params.axes[2])) {
    m_radiusA = (params.maxs[m_a] - params.mins[m_a]) * 0.5f;
    m_radiusB = (params.maxs[m_b] - params.mins[m_b]) * 0.5f;
    m_height = params.maxs[m_c] - params.mins[m_c];
    m_center[m_a] = params.mins[m_a] + m_radiusA;
    m_center[m_b] = params.mins[m_b] + m_radiusB;
    m_center[m_c] = params.mins[m_c];
    if (!(params.flags & (1u << PP_STRETCH_ARCHES_BIT)))
        m_radiusA = m_radiusB = std::min(m_radiusA, m_radiusB);
    m_wall = std::min({float(shape.width), m_radiusA, m_radiusB});
}

cPoint cArchBuilder::at(float angle, bool outer) const {
    const float in = outer ? 0.0f : m_wall;
    cPoint point = m_center;
    point[m_a] = roundedIf(m_params, m_center[m_a] + (m_radiusA - in) * std::sin(angle));
    point[m_b] = roundedIf(m_params, m_center[m_b] + (m_radiusB - in) * std::cos(angle));
    return point;
}

// Neighbours share the points of their seam to the last bit, so that rounding cannot part them; a
// full circle ends at the very points it began with.
void cArchBuilder::layOut() {
    const float step = float(m_shape.arc) / float(m_shape.sides) * RADIANS;
    for (int i = 0; i <= m_shape.sides; ++i) {
        const float angle = float(m_shape.start) * RADIANS + float(i) * step;
        m_seams.push_back({at(angle, false), at(angle, true)});
    }
    if (m_shape.arc == FULL_CIRCLE)
        m_seams.back() = m_seams.front();
}

// Inner wall 0 and 1, outer wall 2 and 3; the same ones above from 4 on.
std::vector<cPoint> cArchBuilder::segmentPoints(size_t segment) const {
    const cSeam& first = m_seams[segment + (m_reversed ? 0 : 1)];
    const cSeam& second = m_seams[segment + (m_reversed ? 1 : 0)];
    std::vector<cPoint> points = {first.inner, second.inner, first.outer, second.outer};
    for (size_t i = 0; i < 4; ++i) {
        points[i][m_c] = m_center[m_c];
        points.push_back(points[i]);
        points.back()[m_c] += m_height;
    }
    return points;
}

// True if there is no inner wall: the wall is as wide as the radius.
bool cArchBuilder::joinInner(std::vector<cPoint>& points) const {
    if (std::hypot(points[0][m_a] - points[1][m_a], points[0][m_b] - points[1][m_b]) > SAME_POINT)
        return false;
    points[1] = points[0];
    points[5] = points[4];
    return true;
}

bool cArchBuilder::bendsIn(const std::vector<cPoint>& points, int p, int q, int r) const {
    const float turn = turnOf(points[size_t(p)], points[size_t(q)], points[size_t(r)], m_a, m_b);
    return (m_reversed ? turn : -turn) > FLAT_TURN;
}

// A tight inner wall may bend into its segment by rounding, or on an ellipse.
bool cArchBuilder::isConcave(const std::vector<cPoint>& points) const {
    return bendsIn(points, 0, 2, 3) || bendsIn(points, 2, 3, 1) || bendsIn(points, 3, 1, 0) ||
           bendsIn(points, 1, 0, 2);
}

// The far end rises to where the next segment begins.
void cArchBuilder::slope(std::vector<cPoint>& points, bool degenerate) const {
    const size_t risen = m_reversed ? 1 : 0;
    for (size_t i = risen; i < points.size(); i += 2)
        points[i][m_c] += float(m_shape.height);
    if (!degenerate)
        return;
    const size_t other = 1 - risen;
    points[other][m_c] = points[risen][m_c];
    points[other + 4][m_c] = points[risen + 4][m_c];
}

void cArchBuilder::addBrushOf(const std::vector<cPoint>& points,
                              const std::vector<std::vector<int>>& faces) {
    cBrushData* brush = addSolid(m_params, {points, faces});
    if (!makeValid(brush))
        return;
    if (m_group)
        m_map.joinGroupBrush(brush, m_group);
    m_brushes.push_back(brush);
}

// Split along the diagonal that lies inside, a half that faces the wrong way is left out.
void cArchBuilder::addHalves(const std::vector<cPoint>& points) {
    struct cHalf {
        int plan[3];
        std::vector<std::vector<int>> faces;
    };
    static const cHalf ACROSS[2] = {
        {{0, 2, 1}, {{0, 2, 1}, {5, 6, 4}, {2, 0, 4, 6}, {0, 1, 5, 4}, {1, 2, 6, 5}}},
        {{2, 3, 1}, {{2, 3, 1}, {5, 7, 6}, {1, 3, 7, 5}, {3, 2, 6, 7}, {2, 1, 5, 6}}}};
    static const cHalf ALONG[2] = {
        {{0, 2, 3}, {{0, 2, 3}, {7, 6, 4}, {2, 0, 4, 6}, {3, 2, 6, 7}, {0, 3, 7, 4}}},
        {{0, 3, 1}, {{0, 3, 1}, {5, 7, 4}, {0, 1, 5, 4}, {1, 3, 7, 5}, {3, 0, 4, 7}}}};
    const auto isWrong = [&](const cHalf& half) {
        return bendsIn(points, half.plan[0], half.plan[1], half.plan[2]);
    };
    const bool along = isWrong(ACROSS[0]) || isWrong(ACROSS[1]);
    for (const cHalf& half : along ? ALONG : ACROSS)
        if (!isWrong(half))
            addBrushOf(points, half.faces);
}

void cArchBuilder::addSegment(size_t segment) {
    static const std::vector<std::vector<int>> FLAT = {{0, 2, 3, 1}, {5, 7, 6, 4}, {2, 0, 4, 6},
                                                       {1, 3, 7, 5}, {3, 2, 6, 7}, {0, 1, 5, 4}};
    static const std::vector<std::vector<int>> WEDGE = {
        {0, 2, 3}, {5, 7, 6}, {2, 0, 4, 6}, {1, 3, 7, 5}, {3, 2, 6, 7}};
    std::vector<cPoint> points = segmentPoints(segment);
    const bool degenerate = joinInner(points);
    const bool sloped = m_shape.smoothSlope && m_shape.height != 0;
    if (sloped)
        slope(points, degenerate);
    if (degenerate)
        addBrushOf(points, WEDGE);
    else if (sloped || isConcave(points))
        addHalves(points);
    else
        addBrushOf(points, FLAT);
}

bool cArchBuilder::build() {
    if (m_shape.group)
        m_group = m_map.addGroup();
    layOut();
    for (size_t i = 0; i + 1 < m_seams.size(); ++i) {
        addSegment(i);
        m_center[m_c] += float(m_shape.height);
    }
    if (m_brushes.empty()) {
        if (m_group)
            m_map.freeGroup(m_group);
        return false;
    }
    updateEntity(m_map.world(), UM_RESET_AXES);
    enterCreated(m_params, "Create Arch", m_brushes, m_group);
    return true;
}
} // namespace

bool createArch(const cPrimitiveParams& params, const cArchShape& shape) {
    if (!params.map->map->world() || shape.sides < 1)
        return false;
    return cArchBuilder(params, shape).build();
}

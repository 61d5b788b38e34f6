// SPDX-License-Identifier: MIT
// The arch: a ring of segments, flat, as a stair or as a ramp.
#include "document/tEntity.h"
#include "document/tMap.h"
#include "operations/tPrimitiveBrush.h"
#include "operations/tPrimitives.h"

#include <algorithm>
#include <cmath>

static constexpr float RADIANS = 0.017453294f;

namespace {
class cArchBuilder {
public:
    cArchBuilder(const cPrimitiveParams& params, const cArchShape& shape);
    bool build();

private:
    cPoint at(float angle, bool outer) const;
    std::vector<cPoint> segmentPoints(float angle) const;
    void slope(std::vector<cPoint>& points, bool degenerate) const;
    void addSegment(float angle);
    void addBrushOf(const std::vector<cPoint>& points, const std::vector<std::vector<int>>& faces);

    const cPrimitiveParams& m_params;
    const cArchShape& m_shape;
    cMap& m_map;
    bool m_reversed; // the corners run the other way round
    size_t m_a, m_b, m_c;
    cPoint m_center; // on the base; rises with every segment
    float m_radiusA, m_radiusB, m_wall, m_height, m_step;
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
      m_c(size_t(params.axes[2])),
      m_step(float(shape.arc) / float(shape.sides) * RADIANS) {
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
    cPoint point;
    point[m_a] = roundedIf(m_params, m_center[m_a] + (m_radiusA - in) * std::sin(angle));
    point[m_b] = roundedIf(m_params, m_center[m_b] + (m_radiusB - in) * std::cos(angle));
    point[m_c] = m_center[m_c];
    return point;
}

std::vector<cPoint> cArchBuilder::segmentPoints(float angle) const {
    const float first = m_reversed ? angle : angle + m_step;
    const float second = m_reversed ? angle + m_step : angle;
    std::vector<cPoint> points = {at(first, false), at(second, false), at(first, true),
                                  at(second, true)};
    for (size_t i = 0; i < 4; ++i) {
        points.push_back(points[i]);
        points.back()[m_c] += m_height;
    }
    return points;
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

void cArchBuilder::addSegment(float angle) {
    static const std::vector<std::vector<int>> FLAT = {{0, 2, 3, 1}, {5, 7, 6, 4}, {2, 0, 4, 6},
                                                       {1, 3, 7, 5}, {3, 2, 6, 7}, {0, 1, 5, 4}};
    static const std::vector<std::vector<int>> WEDGE = {
        {0, 2, 3}, {5, 7, 6}, {2, 0, 4, 6}, {1, 3, 7, 5}, {3, 2, 6, 7}};
    static const std::vector<std::vector<int>> RAMP_FIRST = {
        {0, 2, 1}, {5, 6, 4}, {2, 0, 4, 6}, {0, 1, 5, 4}, {1, 2, 6, 5}};
    static const std::vector<std::vector<int>> RAMP_SECOND = {
        {2, 3, 1}, {5, 7, 6}, {1, 3, 7, 5}, {3, 2, 6, 7}, {2, 1, 5, 6}};
    std::vector<cPoint> points = segmentPoints(angle);
    const bool degenerate = points[0] == points[1];
    const bool sloped = m_shape.smoothSlope && m_shape.height != 0;
    if (sloped)
        slope(points, degenerate);
    if (degenerate) {
        addBrushOf(points, WEDGE);
    } else if (!sloped) {
        addBrushOf(points, FLAT);
    } else {
        addBrushOf(points, RAMP_FIRST);
        addBrushOf(points, RAMP_SECOND);
    }
}

bool cArchBuilder::build() {
    if (m_shape.group)
        m_group = m_map.addGroup();
    for (int i = 0; i < m_shape.sides; ++i) {
        addSegment(float(m_shape.start) * RADIANS + float(i) * m_step);
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

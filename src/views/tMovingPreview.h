// SPDX-License-Identifier: MIT
// What a drag of the selection shows over the kept picture of the map: the edges of the selected
// objects where the drag would put them. Points and edges are gathered once, when the drag begins.
// A frame draws them with the matrix applied by OpenGL; a stretch, which moves each brush's points
// in its own way, moves them once a step for all views.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

class cMap;
struct cBrushData;
struct cDrawStats;
struct cTransformRecord;
struct cViewInfo;

class cMovingPreview {
public:
    void build(const cMap& map);
    void clear();
    // Into a 2D view. The record names its center.
    void draw(const cMap& map, const cViewInfo& view, cDrawStats& stats,
              const cTransformRecord& record);

private:
    // The points of one brush, and the centre by which a stretch keeps some of them.
    struct cPart {
        size_t first;
        size_t end;
        float center[3];
    };
    using cIndices = std::vector<uint32_t>;

    void addBrush(const cBrushData* brush);
    uint32_t pointIndex(const cPart& part, const float* point);
    const std::vector<float>& stretched(const cTransformRecord& record);
    void drawEdges(const cIndices& edges, const cViewInfo& view, const cTransformRecord& record);
    // -1: all edges, for a transform that turns what is behind to the front.
    cIndices& edgesSeenAlong(int axis) { return m_edges[size_t(axis < 0 ? 3 : axis)]; }

    std::vector<float> m_points; // three numbers each
    std::vector<cPart> m_parts;
    std::array<cIndices, 4> m_edges;          // pairs of points
    std::vector<float> m_stretched;           // the points after a stretch
    std::array<float, 20> m_stretchedBy = {}; // sides, pivot and matrix of that stretch
};

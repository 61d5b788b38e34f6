// SPDX-License-Identifier: MIT
// What a drag of the selection shows over the kept picture of the map: the edges of the selected
// objects where the drag would put them. The edges are gathered once, when the drag begins; a
// frame draws them with the matrix applied. Only a stretch, which moves each brush's vertices in
// its own way, goes over the selected brushes anew.
#pragma once

#include <vector>

class cMap;
struct cDrawStats;
struct cTransformRecord;
struct cViewInfo;

class cMovingPreview {
public:
    void build(const cMap& map);
    void clear();
    // Into a 2D view. The record names its center.
    void draw(cMap& map, cViewInfo& view, cDrawStats& stats, const cTransformRecord& record);

private:
    // -1: all edges, for a transform that turns what is behind to the front.
    std::vector<float>& edgesSeenAlong(int axis) { return m_edges[axis < 0 ? 3 : axis]; }
    void drawEdges(const std::vector<float>& edges, const cTransformRecord& record) const;

    std::vector<float> m_edges[4]; // pairs of points
};

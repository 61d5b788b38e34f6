// SPDX-License-Identifier: MIT
// The edges and corners of a shape, each once, and those that 2D views need.
#include "views/tObjectShape.h"

#include "document/tTexture.h"

#include <algorithm>
#include <tuple>

static constexpr uint32_t FEW_CORNERS = 64; // the bits of a word

static bool samePlace(const float* a, const float* b, int exceptAxis = -1) {
    for (int i = 0; i < 3; ++i)
        if (i != exceptAxis && a[i] != b[i])
            return false;
    return true;
}

void cObjectShape::findCorners() {
    m_corners.clear();
    m_cornerOf.resize(vertices.size());
    for (uint32_t i = 0; i < vertices.size(); ++i) {
        uint32_t at = 0;
        while (at < m_corners.size() &&
               !samePlace(vertices[m_corners[at].vertex].xyz, vertices[i].xyz))
            ++at;
        if (at == m_corners.size()) {
            if (at == FEW_CORNERS) {
                findManyCorners();
                return;
            }
            m_corners.push_back({i, {}});
        }
        m_cornerOf[i] = at;
    }
}

// Too many to be compared with each other: found by sorting them.
void cObjectShape::findManyCorners() {
    std::vector<uint32_t> order(vertices.size());
    for (uint32_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::sort(order.begin(), order.end(), [&](uint32_t a, uint32_t b) {
        const float *p = vertices[a].xyz, *q = vertices[b].xyz;
        return std::lexicographical_compare(p, p + 3, q, q + 3);
    });
    m_corners.clear();
    for (const uint32_t i : order) {
        if (m_corners.empty() || !samePlace(vertices[m_corners.back().vertex].xyz, vertices[i].xyz))
            m_corners.push_back({i, {}});
        m_cornerOf[i] = uint32_t(m_corners.size() - 1);
    }
}

void cObjectShape::cPairSet::clear(size_t corners) {
    std::fill_n(rows, std::min<size_t>(corners, FEW_CORNERS), 0);
}

bool cObjectShape::cPairSet::add(uint32_t a, uint32_t b) {
    if (has(a, b))
        return false;
    rows[a] |= uint64_t(1) << b;
    rows[b] |= uint64_t(1) << a;
    return true;
}

static bool isNodrawFace(const cShapeFace& face) {
    return face.key.texture && isNodraw(*face.key.texture);
}

// Each edge runs the way in which it is met first. With many corners some stand twice.
void cObjectShape::gatherEdges() {
    const bool few = m_corners.size() <= FEW_CORNERS;
    cPairSet met;
    met.clear(m_corners.size());
    m_edges.clear();
    // Faces that are drawn first, so that an edge of both sorts counts as theirs.
    for (const bool nodraw : {false, true}) {
        for (const cShapeFace& face : faces) {
            if (isNodrawFace(face) != nodraw)
                continue;
            uint32_t last = m_cornerOf[face.first + face.count - 1];
            for (uint32_t i = 0; i < face.count; ++i) {
                const uint32_t next = m_cornerOf[face.first + i];
                if (last != next && (!few || met.add(last, next)))
                    m_edges.push_back({last, next, nodraw, true});
                last = next;
            }
        }
    }
}

void cObjectShape::sortEdges() {
    const auto key = [](const cEdge& edge) {
        return std::make_tuple(std::min(edge.a, edge.b), std::max(edge.a, edge.b), edge.nodraw);
    };
    const auto sameEnds = [](const cEdge& x, const cEdge& y) {
        return std::min(x.a, x.b) == std::min(y.a, y.b) && std::max(x.a, x.b) == std::max(y.a, y.b);
    };
    std::sort(m_edges.begin(), m_edges.end(),
              [&](const cEdge& x, const cEdge& y) { return key(x) < key(y); });
    m_edges.erase(std::unique(m_edges.begin(), m_edges.end(), sameEnds), m_edges.end());
}

void cObjectShape::findFlat() {
    for (size_t i = 0; i < m_corners.size(); ++i) {
        const float* xyz = vertices[m_corners[i].vertex].xyz;
        for (int axis = 0; axis < 3; ++axis) {
            uint32_t first = 0;
            while (first < i && !samePlace(vertices[m_corners[first].vertex].xyz, xyz, axis))
                ++first;
            m_corners[i].flat[axis] = first;
        }
    }
}

// One set of edges serves all three 2D views: what is left out of it is covered, along each axis,
// by one that is in it. Those that cover most go first: six of the twelve of a box.
void cObjectShape::chooseFlatEdges() {
    cPairSet covered[3];
    for (cPairSet& set : covered)
        set.clear(m_corners.size());
    for (cEdge& edge : m_edges)
        edge.flat = false;
    for (const int wanted : {3, 2, 1}) {
        for (cEdge& edge : m_edges) {
            if (edge.flat)
                continue;
            const cCorner &a = m_corners[edge.a], &b = m_corners[edge.b];
            int uncovered = 0;
            for (int axis = 0; axis < 3; ++axis)
                uncovered +=
                    a.flat[axis] != b.flat[axis] && !covered[axis].has(a.flat[axis], b.flat[axis]);
            if (uncovered < wanted)
                continue;
            edge.flat = true;
            for (int axis = 0; axis < 3; ++axis)
                covered[axis].add(a.flat[axis], b.flat[axis]);
        }
    }
}

// The same for corners: four of the eight of a box.
void cObjectShape::chooseFlatCorners() {
    uint64_t covered[3] = {0, 0, 0};
    uint64_t taken = 0;
    for (const int wanted : {3, 2, 1}) {
        for (uint32_t i = 0; i < m_corners.size(); ++i) {
            int uncovered = 0;
            for (int axis = 0; axis < 3; ++axis)
                uncovered += (covered[axis] >> m_corners[i].flat[axis] & 1) == 0;
            if ((taken >> i & 1) || uncovered < wanted)
                continue;
            taken |= uint64_t(1) << i;
            flatCorners.push_back(m_corners[i].vertex);
            for (int axis = 0; axis < 3; ++axis)
                covered[axis] |= uint64_t(1) << m_corners[i].flat[axis];
        }
    }
}

void cObjectShape::makeEdges(uint32_t color) {
    for (int i = 0; i < 4; ++i) {
        cDrawKey& key = edges[i].key;
        key = {};
        key.color = color;
        key.kind = i & 1 ? KIND_OTHER_EDGES : KIND_FLAT_EDGES;
        key.traits = uint16_t(lineTraits() | (i & 2 ? TRAIT_NODRAW : 0));
    }
    findCorners();
    gatherEdges();
    if (m_corners.size() <= FEW_CORNERS) {
        findFlat();
        chooseFlatEdges();
        chooseFlatCorners();
    } else {
        sortEdges();
        for (const cCorner& corner : m_corners)
            flatCorners.push_back(corner.vertex);
    }
    for (const cEdge& edge : m_edges) {
        std::vector<uint32_t>& ends = edges[(edge.flat ? 0 : 1) + (edge.nodraw ? 2 : 0)].ends;
        ends.push_back(m_corners[edge.a].vertex);
        ends.push_back(m_corners[edge.b].vertex);
    }
}

// SPDX-License-Identifier: MIT
#include "views/tLeafTree.h"

#include "support/tMath.h"

#include <algorithm>

size_t cLeafTree::leafObjects = 256;

int widestAxis(const float* mins, const float* maxs, float* middle) {
    int axis = 0;
    for (int i = 1; i < 3; ++i)
        if (maxs[i] - mins[i] > maxs[axis] - mins[axis])
            axis = i;
    *middle = mins[axis] + (maxs[axis] - mins[axis]) * 0.5f;
    return *middle > mins[axis] && *middle <= maxs[axis] ? axis : -1;
}

void cLeafTree::build(std::vector<cPlacedObject>& objects, std::vector<uint32_t>& ends) {
    m_nodes.assign(1, {});
    ends.clear();
    m_begin = objects.data();
    m_ends = &ends;
    build(0, objects.data(), objects.data() + objects.size());
    m_begin = nullptr;
    m_ends = nullptr;
}

// Half of the objects to each side: the median decides, unless so many share its place that one
// side would stay empty; then the middle of the spread does.
void cLeafTree::build(uint32_t node, cPlacedObject* first, cPlacedObject* last) {
    float mins[3], maxs[3], value = 0;
    T_ClearBounds(mins, maxs);
    for (const cPlacedObject* object = first; object != last; ++object)
        T_AddPointToBounds(object->center, mins, maxs);
    const int axis = size_t(last - first) > leafObjects ? widestAxis(mins, maxs, &value) : -1;
    if (axis < 0) {
        m_nodes[node].child = uint32_t(m_ends->size());
        m_ends->push_back(uint32_t(last - m_begin));
        return;
    }
    cPlacedObject* half = first + (last - first) / 2;
    std::nth_element(first, half, last, [axis](const cPlacedObject& a, const cPlacedObject& b) {
        return a.center[axis] < b.center[axis];
    });
    if (half->center[axis] > mins[axis])
        value = half->center[axis];
    half = std::partition(first, last, [axis, value](const cPlacedObject& object) {
        return object.center[axis] < value;
    });
    const auto child = uint32_t(m_nodes.size());
    m_nodes[node] = {axis, value, child};
    m_nodes.resize(m_nodes.size() + 2);
    build(child, first, half);
    build(child + 1, half, last);
}

uint32_t cLeafTree::leafAt(const float* center) const {
    uint32_t node = 0;
    while (m_nodes[node].axis >= 0)
        node = m_nodes[node].child + (center[m_nodes[node].axis] < m_nodes[node].value ? 0 : 1);
    return m_nodes[node].child;
}

void cLeafTree::split(uint32_t leaf, int axis, float value, uint32_t newLeaf) {
    const auto node = std::find_if(m_nodes.begin(), m_nodes.end(), [leaf](const cNode& candidate) {
        return candidate.axis < 0 && candidate.child == leaf;
    });
    *node = {axis, value, uint32_t(m_nodes.size())};
    m_nodes.push_back({-1, 0, leaf});
    m_nodes.push_back({-1, 0, newLeaf});
}

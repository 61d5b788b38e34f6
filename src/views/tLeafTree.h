// SPDX-License-Identifier: MIT
// Parts space into leaves of a few hundred objects by their centres: what is drawn, culled and
// renewed together. In the order of the leaves neighbours in space stand near each other.
#pragma once

#include <cstdint>
#include <vector>

struct cPlacedObject {
    void* record;
    float center[3];
    bool isBrush;
};

class cLeafTree {
public:
    static size_t leafObjects; // at most, of a leaf that is made; half of them at least

    // Puts the objects into the order of the leaves; ends holds where each leaf ends.
    void build(std::vector<cPlacedObject>& objects, std::vector<uint32_t>& ends);
    uint32_t leafAt(const float* center) const;
    // Parts a leaf where value divides the axis; the upper half becomes the leaf newLeaf.
    void split(uint32_t leaf, int axis, float value, uint32_t newLeaf);

private:
    struct cNode {
        int axis = -1; // of a leaf
        float value = 0;
        uint32_t child = 0; // the lower one, the upper one follows it; of a leaf its number
    };
    void build(uint32_t node, cPlacedObject* first, cPlacedObject* last);

    std::vector<cNode> m_nodes = std::vector<cNode>(1);
    const cPlacedObject* m_begin = nullptr;
    std::vector<uint32_t>* m_ends = nullptr;
};

// The axis along which the centres spread most, and half way between; -1 if all are one point.
int widestAxis(const float* mins, const float* maxs, float* middle);

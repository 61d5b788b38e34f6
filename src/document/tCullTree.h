// SPDX-License-Identifier: MIT
// The octree that speeds up drawing and picking. Brushes of the world are in it as brushes, every
// other entity as one link with its bounds. Kept current by rebuildBrush, updateEntity and the
// removals; an object's links hang together, so removal never walks the tree. Objects outside
// the root box stand in a list of their own that every walk visits.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <QHash>
#include <array>
#include <memory>
#include <vector>

class cMap;

class cCullTree {
public:
    // A node splits while all its extents are above this many units...
    static constexpr float MIN_NODE_SIZE = 512.0f;
    // ...it holds this many links, and splitting separates something.
    static constexpr int SPLIT_LINKS = 8;

    struct cObject {
        bool isBrush;
        void* record; // cBrushData or cEntityData
    };

    struct cNode {
        float mins[3];
        float maxs[3];
        uint32_t visitFrame = 0;
        std::unique_ptr<std::array<cNode, 8>> children; // bit i of the index: lower half of axis i
        std::vector<uint32_t> objects;                  // indices of objects, in leaves
        bool isEmpty() const { return !children && objects.empty(); }
    };

    cCullTree(cMap& map, float worldSize);
    ~cCullTree();

    void rebuild(float worldSize); // anew from the whole map
    void insertBrush(cBrushData* brush) { updateBrush(brush); }
    void insertEntity(cEntityData* entity) { updateEntity(entity); }
    // Brushes of other entities than the world update their entity instead.
    void updateBrush(cBrushData* brush);
    void updateEntity(cEntityData* entity);
    void remove(void* record);

    cNode& root() { return m_root; }
    const cObject& object(uint32_t index) const;
    const std::vector<uint32_t>& outside() const { return m_outside; }

private:
    struct cEntry;

    void update(void* record, bool isBrush, const float* mins, const float* maxs);
    void insert(cNode& node, uint32_t index);
    void split(cNode& node);
    void unlink(uint32_t index);
    bool contains(const float* mins, const float* maxs) const;

    cMap& m_map;
    cNode m_root;
    std::vector<cEntry> m_entries;
    std::vector<uint32_t> m_freeEntries;
    QHash<void*, uint32_t> m_indexOf;
    std::vector<uint32_t> m_outside;
};

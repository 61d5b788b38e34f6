// SPDX-License-Identifier: MIT
// Keeping the octree: insertion, splitting, removal.
#include "document/tCullTree.h"

#include "document/tEntity.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tMath.h"
#include "support/tVec.h"

#include <algorithm>

// An object in the tree: the bounds it stands under and the leaves that link to it. Each link
// knows its place in its list, so that an object goes without a search.
struct cCullTree::cEntry {
    struct cLink {
        cNode* leaf; // null: the objects outside
        size_t place;
    };
    cObject object;
    float mins[3];
    float maxs[3];
    std::vector<cLink> links;

    cLink& linkTo(const cNode* leaf) {
        return *std::find_if(links.begin(), links.end(),
                             [=](const cLink& link) { return link.leaf == leaf; });
    }
};

static bool overlaps(const float* aMins, const float* aMaxs, const float* bMins,
                     const float* bMaxs) {
    for (int i = 0; i < 3; ++i) {
        if (!(aMins[i] <= bMaxs[i] && aMaxs[i] >= bMins[i]))
            return false;
    }
    return true;
}

static void setRootBox(cCullTree::cNode& root, float worldSize) {
    const float half = worldSize * 0.5f;
    vecSet(root.mins, -half, -half, -half);
    vecSet(root.maxs, half, half, half);
}

cCullTree::cCullTree(cMap& map, float worldSize) : m_map(map) {
    rebuild(worldSize);
}

cCullTree::~cCullTree() = default;

void cCullTree::rebuild(float worldSize) {
    m_entries.clear();
    m_freeEntries.clear();
    m_indexOf.clear();
    m_outside.clear();
    m_root = cNode();
    setRootBox(m_root, worldSize);
    for (cEntityData* entity : entitiesOf(m_map.data)) {
        if (!(entity->flags & EF_WORLD)) {
            updateEntity(entity);
            continue;
        }
        for (cBrushData* brush : brushesOf(entity))
            updateBrush(brush);
    }
}

const cCullTree::cObject& cCullTree::object(uint32_t index) const {
    return m_entries[index].object;
}

bool cCullTree::contains(const float* mins, const float* maxs) const {
    for (int i = 0; i < 3; ++i) {
        if (!(mins[i] >= m_root.mins[i] && maxs[i] <= m_root.maxs[i]))
            return false;
    }
    return true;
}

// ---- Insertion and splitting

static bool isSplittable(const cCullTree::cNode& node) {
    for (int i = 0; i < 3; ++i) {
        if (!(node.maxs[i] - node.mins[i] > cCullTree::MIN_NODE_SIZE))
            return false;
    }
    return true;
}

// At 8, 16, 32 and so on, so that a node that nothing separates is not tried at each link.
static bool isTimeToSplit(size_t links) {
    return links >= size_t(cCullTree::SPLIT_LINKS) && (links & (links - 1)) == 0;
}

static void childBox(const cCullTree::cNode& node, int child, float* mins, float* maxs) {
    for (int axis = 0; axis < 3; ++axis) {
        const float middle = (node.mins[axis] + node.maxs[axis]) * 0.5f;
        const bool lower = (child & (1 << axis)) != 0;
        mins[axis] = lower ? node.mins[axis] : middle;
        maxs[axis] = lower ? middle : node.maxs[axis];
    }
}

void cCullTree::insert(cNode& node, uint32_t index) {
    cEntry& entry = m_entries[index];
    if (node.children) {
        for (cNode& child : *node.children) {
            if (overlaps(entry.mins, entry.maxs, child.mins, child.maxs))
                insert(child, index);
        }
        return;
    }
    node.objects.push_back(index);
    entry.links.push_back({&node, node.objects.size() - 1});
    if (isTimeToSplit(node.objects.size()) && isSplittable(node))
        split(node);
}

void cCullTree::split(cNode& node) {
    auto children = std::make_unique<std::array<cNode, 8>>();
    bool separates = false;
    for (int i = 0; i < 8; ++i) {
        cNode& child = (*children)[size_t(i)];
        childBox(node, i, child.mins, child.maxs);
        for (uint32_t index : node.objects) {
            const cEntry& entry = m_entries[index];
            separates |= !overlaps(entry.mins, entry.maxs, child.mins, child.maxs);
        }
    }
    if (!separates)
        return;
    std::vector<uint32_t> objects;
    objects.swap(node.objects);
    node.children = std::move(children);
    for (uint32_t index : objects) {
        cEntry& entry = m_entries[index];
        entry.linkTo(&node) = entry.links.back();
        entry.links.pop_back();
        insert(node, index);
    }
}

// ---- Updates and removal

// The last of each list takes the place that gets free.
void cCullTree::unlink(uint32_t index) {
    for (const cEntry::cLink& link : m_entries[index].links) {
        std::vector<uint32_t>& list = link.leaf ? link.leaf->objects : m_outside;
        const size_t place = link.place;
        const uint32_t last = list.back();
        list[place] = last;
        list.pop_back();
        m_entries[last].linkTo(link.leaf).place = place;
    }
    m_entries[index].links.clear();
}

void cCullTree::update(void* record, bool isBrush, const float* mins, const float* maxs) {
    uint32_t index;
    const auto known = m_indexOf.constFind(record);
    if (known != m_indexOf.constEnd()) {
        index = *known;
        const cEntry& entry = m_entries[index];
        if (memcmp(entry.mins, mins, sizeof entry.mins) == 0 &&
            memcmp(entry.maxs, maxs, sizeof entry.maxs) == 0)
            return;
        unlink(index);
    } else if (!m_freeEntries.empty()) {
        index = m_freeEntries.back();
        m_freeEntries.pop_back();
        m_indexOf.insert(record, index);
    } else {
        index = uint32_t(m_entries.size());
        m_entries.emplace_back();
        m_indexOf.insert(record, index);
    }
    cEntry& entry = m_entries[index];
    entry.object = {isBrush, record};
    vecCopy(mins, entry.mins);
    vecCopy(maxs, entry.maxs);
    if (contains(mins, maxs)) {
        insert(m_root, index);
        return;
    }
    m_outside.push_back(index);
    entry.links.push_back({nullptr, m_outside.size() - 1});
}

void cCullTree::updateBrush(cBrushData* brush) {
    cEntityData* owner = brush->owner;
    if (owner->flags & EF_WORLD) {
        update(brush, true, brush->mins, brush->maxs);
        return;
    }
    // The entity's own bounds follow later; until then its link must hold the brush as well.
    float mins[3], maxs[3];
    vecCopy(brush->mins, mins);
    vecCopy(brush->maxs, maxs);
    const auto known = m_indexOf.constFind(owner);
    if (known != m_indexOf.constEnd())
        T_AddBoxToBounds(m_entries[*known].mins, m_entries[*known].maxs, mins, maxs);
    update(owner, false, mins, maxs);
}

void cCullTree::updateEntity(cEntityData* entity) {
    if (entity->flags & EF_WORLD)
        return;
    float mins[3], maxs[3];
    cullBounds(entity, mins, maxs);
    // What only a frame of its model sticks out of the tree does not put the entity outside.
    if (contains(entity->mins, entity->maxs)) {
        for (int i = 0; i < 3; ++i) {
            mins[i] = std::max(mins[i], m_root.mins[i]);
            maxs[i] = std::min(maxs[i], m_root.maxs[i]);
        }
    }
    update(entity, false, mins, maxs);
}

void cCullTree::remove(void* record) {
    const auto known = m_indexOf.find(record);
    if (known == m_indexOf.end())
        return;
    const uint32_t index = *known;
    unlink(index);
    m_entries[index].object = {false, nullptr};
    m_freeEntries.push_back(index);
    m_indexOf.erase(known);
}

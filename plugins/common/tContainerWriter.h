// SPDX-License-Identifier: MIT
// Which entities of the class func_group a map's groups and visgroups become in a text, with their
// keys and numbers, and what such a text can't hold of them.
#pragma once

#include "common/tMapContainers.h"

#include <unordered_set>

// One func_group entity to write: a group, or a layer.
struct cTextContainer {
    cGroupData* group;   // null for a layer
    uint32_t visGroup;   // the layer itself, or the one that the group is to lie in
    long id;             // what members refer to it by
    cKeyValues keys;     // all but class name and type, in order
    int parent = -1;     // the container it lies in
    uint32_t layer = 0;  // the visgroup that all members of a group come back in
    bool isSure = false; // a member of its own has told the visgroup
    std::vector<const cBrushData*> brushes = {};
};

class cContainerWriter {
public:
    cContainerWriter(const cHostServices* host, cMapData* map);

    // All objects that are to be written; brushes of the world, then the other entities.
    void addBrush(cBrushData* brush);
    void addEntity(cEntityData* entity);
    void finish();

    // In the order in which brushes, then entities, name them; empty layers last.
    const std::vector<cTextContainer>& containers() const { return m_containers; }
    const std::vector<cBrushData*>& worldBrushes() const { return m_worldBrushes; }
    cKeyValues membershipOf(const cEntityData* entity) const;
    void warnOfLosses() const;

private:
    struct cLayer {
        std::string name;
        cKeyValues keys; // as the world keeps them
        int container = -1;
    };
    using cVisGroupIds = std::vector<uint32_t>;

    void listLayers();
    void reserveIds(const cKeyValues& keys);
    void reserveIds(const cEntityData* entity);
    long takeId(const cKeyValues& kept);
    int layerIndex(uint32_t visGroup);
    int groupIndex(cGroupData* group, uint32_t visGroup);
    void addGroup(cGroupData* group, uint32_t visGroup);
    void setMemberships();
    uint32_t layerOf(const cGroupData* group) const;
    uint32_t ownLayer(const cEntityData* entity, const cVisGroupIds& ids) const;
    void countLosses();
    bool losesVisGroups(const cVisGroupIds& ids, uint32_t result) const;
    bool losesVisGroups(cEntityData* entity) const;
    int brushesWithLosses(cEntityData* entity) const;

    const cHostServices* m_host;
    cMapData* m_map;
    const cKeptContainers m_kept;
    std::vector<cTextContainer> m_containers;
    std::vector<cBrushData*> m_worldBrushes; // in no container
    std::vector<cBrushData*> m_brushes;
    std::vector<cEntityData*> m_entities;
    std::unordered_map<const cGroupData*, int> m_groups; // places in m_containers
    std::unordered_map<uint32_t, cLayer> m_layers;
    std::vector<uint32_t> m_layerOrder;
    std::unordered_set<long> m_reservedIds; // of some container, or named by a key that is none
    std::unordered_set<long> m_usedIds;
    long m_lastId = 0;
    int m_lostMemberships = 0;
};

// SPDX-License-Identifier: MIT
// Map texts keep groups and layers as entities of the class func_group with keys of their own.
// In the editor they are groups and visgroups; what has no place there (names, link ids) is kept
// in a key of the world, so that a map travels both ways.
#pragma once

#include "tPluginInterface.h"

#include <map>
#include <string>
#include <vector>

using cKeyValue = std::pair<std::string, std::string>;
using cKeyValues = std::vector<cKeyValue>;

const std::string* findKey(const cKeyValues& keys, const char* key); // null when absent
void eraseKey(cKeyValues* keys, const char* key);

// True for an entity that stands for a group or a layer.
bool isContainer(const cKeyValues& keys);

// Collects the containers and their members while a map is read, and binds them at the end.
class cContainerReader {
public:
    cContainerReader(const cHostServices* host, cMapData* map) : m_host(host), m_map(map) {}

    // Begins a container; the brushes that follow are its members.
    void begin(const cKeyValues& keys);
    void addBrush(cBrushData* brush);
    void addEntity(cEntityData* entity, cKeyValues* keys); // takes the member keys out
    // Makes groups and visgroups. The world must be there.
    void bind(cEntityData* world);

private:
    struct cContainer {
        cKeyValues keys;
        bool isLayer = false;
        std::string groupId; // the container it lies in, by id
        std::string layerId;
        std::vector<cBrushData*> brushes;
        std::vector<cEntityData*> entities;
        cGroupData* group = nullptr;
        uint32_t visGroup = 0;
    };

    cContainer* find(const std::string& id, bool layer);
    cContainer* layerOf(cContainer& container);
    void joinGroups(cContainer& container);
    void joinLayer(cContainer& container, cContainer& layer);

    const cHostServices* m_host;
    cMapData* m_map;
    std::vector<cContainer> m_containers;
    std::map<std::string, size_t> m_byId;
    struct cMember {
        cEntityData* entity;
        std::string groupId;
        std::string layerId;
    };
    std::vector<cMember> m_members;
};

// What the world keeps of a group or a layer: its keys, in order.
cKeyValues storedGroupKeys(const cEntityData* world, uint32_t groupId);
cKeyValues storedLayerKeys(const cEntityData* world, const std::string& name);
bool isStoredKey(const char* key); // a key of the world that keeps containers

cEpair* makeEpair(const cHostServices* host, const std::string& key, const std::string& value);

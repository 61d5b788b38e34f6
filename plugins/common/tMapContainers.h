// SPDX-License-Identifier: MIT
// Map texts keep groups and layers as entities of the class func_group with keys of their own.
// In the editor they are groups and visgroups; what has no place there (names, link ids) is kept
// in a key of the world, so that a map travels both ways.
#pragma once

#include "tPluginInterface.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

using cKeyValue = std::pair<std::string, std::string>;
using cKeyValues = std::vector<cKeyValue>;

// On an entity without brushes whose text had no origin.
static constexpr char NO_ORIGIN_KEY[] = "_kvx_no_origin";

const std::string* findKey(const cKeyValues& keys, const char* key); // null when absent
int eraseKey(cKeyValues* keys, const char* key); // all of that name; how many there were

// True for an entity that stands for a group or a layer.
bool isContainer(const cKeyValues& keys);

// Appends to the key/values of one entity, however many, without a walk.
class cEpairAppender {
public:
    cEpairAppender(const cHostServices* host, cEntityData* entity);
    void append(const std::string& key, const std::string& value);

private:
    const cHostServices* m_host;
    cEpair** m_end;
};

// Collects the containers and their members while a map is read, and binds them at the end.
class cContainerReader {
public:
    cContainerReader(const cHostServices* host, cMapData* map) : m_host(host), m_map(map) {}

    // Begins a container; the brushes that follow are its members.
    void begin(const cKeyValues& keys);
    void addBrush(cBrushData* brush);
    void addEntity(cEntityData* entity, const cKeyValues& keys);
    // Makes groups and visgroups, and takes the keys that name them out of the members. A name
    // that no container has stays a key.
    void bind(cEpairAppender& world);

private:
    static constexpr size_t NONE = size_t(-1);
    struct cContainer {
        cKeyValues keys;
        bool isLayer = false;
        size_t parent = NONE; // the group it lies in
        size_t layer = NONE;  // the layer that it, or a group around it, names
        std::vector<cBrushData*> brushes;
        cGroupData* group = nullptr;
        uint32_t visGroup = 0;
    };

    size_t find(const std::string& id, bool layer) const;
    void makeContainers();
    std::vector<size_t> parentsFirst();
    void joinParents();
    void joinMembers();
    void joinEntities();
    void joinLayer(cBrushData* brush, size_t layer);
    void joinLayer(cEntityData* entity, size_t layer);
    void keep(cEpairAppender& world);

    const cHostServices* m_host;
    cMapData* m_map;
    std::vector<cContainer> m_containers;
    std::unordered_map<std::string, size_t> m_groupsById, m_layersById; // of one id the first
    int m_circles = 0; // groups that lie in themselves
    struct cMember {
        cEntityData* entity;
        std::string groupId;
        std::string layerId;
    };
    std::vector<cMember> m_members;
};

// What the world keeps of groups and layers: their keys, in order.
class cKeptContainers {
public:
    cKeptContainers(const cHostServices* host, const cEntityData* world);

    std::optional<cKeyValues> keysOf(cGroupData* group) const; // none: not from a text
    // The place counts the layers of one name.
    cKeyValues keysOfLayer(const std::string& name, size_t place) const;
    static bool isKept(const char* key); // a key of the world that keeps containers

private:
    const cHostServices* m_host;
    std::unordered_map<std::string, std::vector<const char*>> m_texts;
};

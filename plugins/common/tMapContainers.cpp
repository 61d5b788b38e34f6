// SPDX-License-Identifier: MIT
#include "common/tMapContainers.h"

#include <cstring>
#include <strings.h>

static const char GROUP_PREFIX[] = "_kvx_group_";
static const char LAYER_PREFIX[] = "_kvx_layer_";
static constexpr char SEPARATOR = '\t'; // no key or value of a map text holds one by custom

const std::string* findKey(const cKeyValues& keys, const char* key) {
    for (const cKeyValue& pair : keys) {
        if (strcasecmp(pair.first.c_str(), key) == 0)
            return &pair.second;
    }
    return nullptr;
}

void eraseKey(cKeyValues* keys, const char* key) {
    for (size_t i = keys->size(); i-- > 0;) {
        if (strcasecmp((*keys)[i].first.c_str(), key) == 0)
            keys->erase(keys->begin() + long(i));
    }
}

static std::string valueOf(const cKeyValues& keys, const char* key) {
    const std::string* value = findKey(keys, key);
    return value ? *value : std::string();
}

bool isContainer(const cKeyValues& keys) {
    const std::string type = valueOf(keys, "_tb_type");
    return valueOf(keys, "classname") == "func_group" &&
           (type == "_tb_group" || type == "_tb_layer");
}

cEpair* makeEpair(const cHostServices* host, const std::string& key, const std::string& value) {
    auto* pair = static_cast<cEpair*>(host->Sys_Alloc(sizeof(cEpair)));
    pair->key = host->Sys_StrDup(key.c_str());
    pair->value = host->Sys_StrDup(value.c_str());
    return pair;
}

// ---- Reading

void cContainerReader::begin(const cKeyValues& keys) {
    cContainer container;
    container.keys = keys;
    container.isLayer = valueOf(keys, "_tb_type") == "_tb_layer";
    container.groupId = valueOf(keys, "_tb_group");
    container.layerId = valueOf(keys, "_tb_layer");
    const std::string id = valueOf(keys, "_tb_id");
    if (!id.empty())
        m_byId.emplace(id, m_containers.size());
    m_containers.push_back(std::move(container));
}

void cContainerReader::addBrush(cBrushData* brush) {
    m_containers.back().brushes.push_back(brush);
}

void cContainerReader::addEntity(cEntityData* entity, cKeyValues* keys) {
    cMember member = {entity, valueOf(*keys, "_tb_group"), valueOf(*keys, "_tb_layer")};
    if (member.groupId.empty() && member.layerId.empty())
        return;
    eraseKey(keys, "_tb_group");
    eraseKey(keys, "_tb_layer");
    m_members.push_back(std::move(member));
}

cContainerReader::cContainer* cContainerReader::find(const std::string& id, bool layer) {
    const auto found = m_byId.find(id);
    if (found == m_byId.end() || m_containers[found->second].isLayer != layer)
        return nullptr;
    return &m_containers[found->second];
}

// A group lies in the layer that it, or a group around it, names.
cContainerReader::cContainer* cContainerReader::layerOf(cContainer& container) {
    cContainer* at = &container;
    for (size_t steps = 0; at && steps <= m_containers.size(); ++steps) {
        if (cContainer* layer = find(at->layerId, true))
            return layer;
        at = find(at->groupId, false);
    }
    return nullptr;
}

static bool liesIn(const cGroupData* group, const cGroupData* other) {
    for (; group; group = group->parent) {
        if (group == other)
            return true;
    }
    return false;
}

void cContainerReader::joinGroups(cContainer& container) {
    cContainer* parent = find(container.groupId, false);
    if (parent && !liesIn(parent->group, container.group))
        m_host->Group_AddGroup(parent->group, container.group);
}

void cContainerReader::joinLayer(cContainer& container, cContainer& layer) {
    for (cBrushData* brush : container.brushes)
        m_host->Brush_AddToVisGroup(m_map, brush, layer.visGroup);
    for (cEntityData* entity : container.entities)
        m_host->Entity_AddToVisGroup(m_map, entity, layer.visGroup);
}

static std::string joinKeys(const cKeyValues& keys) {
    std::string text;
    for (const cKeyValue& pair : keys) {
        if (!text.empty())
            text += SEPARATOR;
        text += pair.first + SEPARATOR + pair.second;
    }
    return text;
}

static void storeKeys(const cHostServices* host, cEntityData* world, const std::string& key,
                      cKeyValues keys) {
    for (const char* known : {"classname", "_tb_type", "_tb_group", "_tb_layer"})
        eraseKey(&keys, known);
    cEpair** end = &world->epairs;
    while (*end)
        end = &(*end)->next;
    *end = makeEpair(host, key, joinKeys(keys));
}

void cContainerReader::bind(cEntityData* world) {
    static const uint8_t layerColors[][4] = {{90, 160, 250, 255},  {250, 170, 80, 255},
                                             {120, 220, 120, 255}, {230, 110, 160, 255},
                                             {220, 210, 90, 255},  {150, 130, 240, 255}};
    size_t layers = 0;
    for (cContainer& container : m_containers) {
        const std::string name = valueOf(container.keys, "_tb_name");
        if (container.isLayer) {
            container.visGroup = m_host->VisGroup_Create(m_map);
            m_host->VisGroup_Set(m_map, container.visGroup, name.c_str(), container.visGroup,
                                 layerColors[layers++ % 6]);
            storeKeys(m_host, world, LAYER_PREFIX + name, container.keys);
        } else {
            container.group = m_host->Group_Create(m_map);
            storeKeys(m_host, world, GROUP_PREFIX + std::to_string(container.group->id),
                      container.keys);
        }
    }
    for (cContainer& container : m_containers) {
        if (!container.isLayer)
            joinGroups(container);
    }
    for (const cMember& member : m_members) {
        cContainer* home = find(member.groupId, false);
        if (!home)
            home = find(member.layerId, true);
        if (home)
            home->entities.push_back(member.entity);
    }
    for (cContainer& container : m_containers) {
        cContainer* layer = container.isLayer ? &container : layerOf(container);
        if (layer)
            joinLayer(container, *layer);
        if (container.isLayer)
            continue;
        for (cBrushData* brush : container.brushes)
            m_host->Group_AddBrush(container.group, brush);
        for (cEntityData* entity : container.entities)
            m_host->Group_AddEntity(container.group, entity);
    }
}

// ---- What the world keeps

static cKeyValues splitKeys(const char* text) {
    cKeyValues keys;
    std::vector<std::string> parts(1);
    for (; *text; ++text) {
        if (*text == SEPARATOR)
            parts.emplace_back();
        else
            parts.back() += *text;
    }
    for (size_t i = 0; i + 1 < parts.size(); i += 2)
        keys.emplace_back(parts[i], parts[i + 1]);
    return keys;
}

static cKeyValues storedKeys(const cEntityData* world, const std::string& key) {
    for (const cEpair* pair = world->epairs; pair; pair = pair->next) {
        if (key == pair->key)
            return splitKeys(pair->value);
    }
    return {};
}

cKeyValues storedGroupKeys(const cEntityData* world, uint32_t groupId) {
    return storedKeys(world, GROUP_PREFIX + std::to_string(groupId));
}

cKeyValues storedLayerKeys(const cEntityData* world, const std::string& name) {
    return storedKeys(world, LAYER_PREFIX + name);
}

bool isStoredKey(const char* key) {
    return strncmp(key, GROUP_PREFIX, sizeof GROUP_PREFIX - 1) == 0 ||
           strncmp(key, LAYER_PREFIX, sizeof LAYER_PREFIX - 1) == 0;
}

// SPDX-License-Identifier: MIT
#include "common/tContainerWriter.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <strings.h>

// The number that a text names a container by, in the one way that it is written; 0 for none.
static long idFrom(const char* text) {
    const long id = strtol(text, nullptr, 10);
    return id > 0 && id <= INT_MAX && std::to_string(id) == text ? id : 0;
}

cContainerWriter::cContainerWriter(const cHostServices* host, cMapData* map)
    : m_host(host), m_map(map), m_kept(host, map->entities) {
    listLayers();
    for (const cEntityData* entity = map->entities; entity; entity = entity->next)
        reserveIds(entity);
    for (const cGroupData* group = map->groups; group; group = group->next)
        reserveIds(m_kept.keysOf(const_cast<cGroupData*>(group)).value_or(cKeyValues()));
}

static bool namesContainer(const char* key) {
    return strcasecmp(key, "_tb_id") == 0 || strcasecmp(key, "_tb_group") == 0 ||
           strcasecmp(key, "_tb_layer") == 0;
}

void cContainerWriter::reserveIds(const cKeyValues& keys) {
    for (const cKeyValue& pair : keys) {
        if (namesContainer(pair.first.c_str()))
            m_reservedIds.insert(idFrom(pair.second.c_str()));
    }
}

void cContainerWriter::reserveIds(const cEntityData* entity) {
    for (const cEpair* pair = entity->epairs; pair; pair = pair->next) {
        if (namesContainer(pair->key))
            m_reservedIds.insert(idFrom(pair->value));
    }
}

static std::string visGroupName(const cHostServices* host, cMapData* map, int index, uint32_t* id) {
    uint8_t color[4];
    std::string name(256, '\0');
    for (;;) {
        host->VisGroup_Get(map, index, &name[0], int32_t(name.size()), id, color);
        const size_t length = strlen(name.c_str());
        if (length + 1 < name.size())
            return name.substr(0, length);
        name.assign(name.size() * 2, '\0');
    }
}

void cContainerWriter::listLayers() {
    std::unordered_map<std::string, size_t> places;
    const int count = m_host->VisGroup_GetCount(m_map);
    for (int i = 0; i < count; ++i) {
        uint32_t id = 0;
        cLayer layer;
        layer.name = visGroupName(m_host, m_map, i, &id);
        layer.keys = m_kept.keysOfLayer(layer.name, places[layer.name]++);
        reserveIds(layer.keys);
        m_layerOrder.push_back(id);
        m_layers.emplace(id, std::move(layer));
    }
}

// ---- Containers

long cContainerWriter::takeId(const cKeyValues& kept) {
    const std::string* own = findKey(kept, "_tb_id");
    const long id = own ? idFrom(own->c_str()) : 0;
    if (id && m_usedIds.insert(id).second)
        return id;
    do {
        ++m_lastId;
    } while (m_reservedIds.count(m_lastId) || m_usedIds.count(m_lastId));
    m_usedIds.insert(m_lastId);
    return m_lastId;
}

// Name and number first, as other programs write them.
static cKeyValues headed(const std::string* name, long id, cKeyValues keys) {
    eraseKey(&keys, "_tb_name");
    eraseKey(&keys, "_tb_id");
    cKeyValues head;
    if (name)
        head.emplace_back("_tb_name", *name);
    head.emplace_back("_tb_id", std::to_string(id));
    head.insert(head.end(), keys.begin(), keys.end());
    return head;
}

int cContainerWriter::layerIndex(uint32_t visGroup) {
    cLayer& layer = m_layers[visGroup];
    if (layer.container >= 0)
        return layer.container;
    layer.container = int(m_containers.size());
    const long id = takeId(layer.keys);
    const bool isNamed = !layer.name.empty() || findKey(layer.keys, "_tb_name");
    m_containers.push_back(
        {nullptr, visGroup, id, headed(isNamed ? &layer.name : nullptr, id, layer.keys)});
    return layer.container;
}

void cContainerWriter::addGroup(cGroupData* group, uint32_t visGroup) {
    const auto parent = m_groups.find(group->parent);
    const std::string byDefault = "Group " + std::to_string(group->id);
    const cKeyValues kept = m_kept.keysOf(group).value_or(cKeyValues{{"_tb_name", byDefault}});
    const std::string* name = findKey(kept, "_tb_name");
    const long id = takeId(kept);
    m_groups[group] = int(m_containers.size());
    m_containers.push_back({group, visGroup, id, headed(name, id, kept),
                            parent == m_groups.end() ? -1 : parent->second});
}

// Whatever holds a group comes before it.
int cContainerWriter::groupIndex(cGroupData* group, uint32_t visGroup) {
    if (visGroup && !m_groups.count(group))
        layerIndex(visGroup);
    std::vector<cGroupData*> chain;
    for (cGroupData* at = group; at && !m_groups.count(at); at = at->parent)
        chain.push_back(at);
    for (; !chain.empty(); chain.pop_back())
        addGroup(chain.back(), visGroup);
    const int index = m_groups[group];
    cTextContainer& container = m_containers[size_t(index)];
    if (!container.isSure)
        container.visGroup = visGroup;
    container.isSure = true;
    return index;
}

void cContainerWriter::addBrush(cBrushData* brush) {
    m_brushes.push_back(brush);
    const uint32_t visGroup = m_host->Brush_GetVisGroupId(brush, 0);
    if (brush->group)
        m_containers[size_t(groupIndex(brush->group, visGroup))].brushes.push_back(brush);
    else if (visGroup)
        m_containers[size_t(layerIndex(visGroup))].brushes.push_back(brush);
    else
        m_worldBrushes.push_back(brush);
}

void cContainerWriter::addEntity(cEntityData* entity) {
    m_entities.push_back(entity);
    const uint32_t visGroup = m_host->Entity_GetVisGroupId(entity, 0);
    if (entity->group)
        groupIndex(entity->group, visGroup);
    else if (visGroup)
        layerIndex(visGroup);
}

void cContainerWriter::finish() {
    for (const uint32_t visGroup : m_layerOrder)
        layerIndex(visGroup);
    setMemberships();
    countLosses();
}

// ---- Memberships

// A group lies in the layer of the group around it, unless it names one of its own.
void cContainerWriter::setMemberships() {
    const auto idOf = [this](int index) { return std::to_string(m_containers[size_t(index)].id); };
    for (cTextContainer& container : m_containers) {
        if (!container.group)
            continue;
        uint32_t around = 0;
        if (container.parent >= 0) {
            around = m_containers[size_t(container.parent)].layer;
            eraseKey(&container.keys, "_tb_group");
            container.keys.emplace_back("_tb_group", idOf(container.parent));
        }
        container.layer = container.visGroup ? container.visGroup : around;
        if (container.layer != around) {
            eraseKey(&container.keys, "_tb_layer");
            container.keys.emplace_back("_tb_layer", idOf(m_layers[container.layer].container));
        }
    }
}

template<class T>
static std::vector<uint32_t> idsOf(T* object, int32_t (*count)(T*), uint32_t (*at)(T*, int32_t)) {
    std::vector<uint32_t> ids(size_t(count(object)));
    for (size_t i = 0; i < ids.size(); ++i)
        ids[i] = at(object, int32_t(i));
    return ids;
}

uint32_t cContainerWriter::layerOf(const cGroupData* group) const {
    return group ? m_containers[size_t(m_groups.at(group))].layer : 0;
}

static bool holds(const std::vector<uint32_t>& ids, uint32_t id) {
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

// The visgroup that an entity's own key names; 0 where its group's will do.
uint32_t cContainerWriter::ownLayer(const cEntityData* entity, const cVisGroupIds& ids) const {
    return ids.empty() || holds(ids, layerOf(entity->group)) ? 0 : ids[0];
}

cKeyValues cContainerWriter::membershipOf(const cEntityData* entity) const {
    cKeyValues keys;
    if (entity->group)
        keys.emplace_back("_tb_group",
                          std::to_string(m_containers[size_t(m_groups.at(entity->group))].id));
    const cVisGroupIds ids = idsOf(const_cast<cEntityData*>(entity),
                                   m_host->Entity_GetVisGroupCount, m_host->Entity_GetVisGroupId);
    if (const uint32_t own = ownLayer(entity, ids)) {
        const int container = m_layers.at(own).container;
        keys.emplace_back("_tb_layer", std::to_string(m_containers[size_t(container)].id));
    }
    return keys;
}

// ---- Losses

bool cContainerWriter::losesVisGroups(const cVisGroupIds& ids, uint32_t result) const {
    return ids.size() > 1 || (ids.empty() ? 0 : ids[0]) != result;
}

bool cContainerWriter::losesVisGroups(cEntityData* entity) const {
    const cVisGroupIds ids =
        idsOf(entity, m_host->Entity_GetVisGroupCount, m_host->Entity_GetVisGroupId);
    const uint32_t own = ownLayer(entity, ids);
    return losesVisGroups(ids, own ? own : layerOf(entity->group));
}

// A brush of a solid entity has no place of its own; what its entity is in, it is in, too.
int cContainerWriter::brushesWithLosses(cEntityData* entity) const {
    cVisGroupIds around =
        idsOf(entity, m_host->Entity_GetVisGroupCount, m_host->Entity_GetVisGroupId);
    std::sort(around.begin(), around.end());
    int lost = 0;
    for (cBrushData* brush = entity->brushes; brush; brush = brush->next) {
        const cVisGroupIds ids =
            idsOf(brush, m_host->Brush_GetVisGroupCount, m_host->Brush_GetVisGroupId);
        const bool all = std::all_of(ids.begin(), ids.end(), [&](uint32_t id) {
            return std::binary_search(around.begin(), around.end(), id);
        });
        lost += all ? 0 : 1;
    }
    return lost;
}

void cContainerWriter::countLosses() {
    for (cBrushData* brush : m_brushes) {
        const cVisGroupIds ids =
            idsOf(brush, m_host->Brush_GetVisGroupCount, m_host->Brush_GetVisGroupId);
        const uint32_t result = brush->group ? layerOf(brush->group) : ids.empty() ? 0 : ids[0];
        m_lostMemberships += losesVisGroups(ids, result) ? 1 : 0;
    }
    for (cEntityData* entity : m_entities) {
        m_lostMemberships += losesVisGroups(entity) ? 1 : 0;
        m_lostMemberships += brushesWithLosses(entity);
    }
}

void cContainerWriter::warnOfLosses() const {
    if (m_lostMemberships)
        m_host->Sys_Warning("%i object(s) change their visgroups in this format",
                            m_lostMemberships);
    if (m_map->flags & (MF_EXPORT_VISIBLE | MF_EXPORT_CORDON))
        return;
    auto empty = -int(m_groups.size());
    for (const cGroupData* group = m_map->groups; group; group = group->next)
        ++empty;
    if (empty > 0)
        m_host->Sys_Warning("%i empty group(s) were left out", empty);
}

// SPDX-License-Identifier: MIT
#include "common/tMapContainers.h"

#include <algorithm>
#include <cstring>
#include <strings.h>

static const char GROUP_PREFIX[] = "_kvx_group_";
static const char LAYER_PREFIX[] = "_kvx_layer_";
// The colour of the group that the keys are of, first of all: a later group of that number has
// another.
static const char COLOR_KEY[] = "_kvx_color";
static constexpr char SEPARATOR = '\t';
// Stands before a letter for a separator, or for itself, within a key or value.
static constexpr char ESCAPE = '\x1b';
static constexpr char ESCAPED_SEPARATOR = 't', ESCAPED_ESCAPE = 'e';

const std::string* findKey(const cKeyValues& keys, const char* key) {
    for (const cKeyValue& pair : keys) {
        if (strcasecmp(pair.first.c_str(), key) == 0)
            return &pair.second;
    }
    return nullptr;
}

int eraseKey(cKeyValues* keys, const char* key) {
    const auto isIt = [key](const cKeyValue& pair) {
        return strcasecmp(pair.first.c_str(), key) == 0;
    };
    const auto kept = std::remove_if(keys->begin(), keys->end(), isIt);
    const auto erased = int(keys->end() - kept);
    keys->erase(kept, keys->end());
    return erased;
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

cEpairAppender::cEpairAppender(const cHostServices* host, cEntityData* entity)
    : m_host(host), m_end(&entity->epairs) {
    while (*m_end)
        m_end = &(*m_end)->next;
}

void cEpairAppender::append(const std::string& key, const std::string& value) {
    auto* pair = static_cast<cEpair*>(m_host->Sys_Alloc(sizeof(cEpair)));
    pair->key = m_host->Sys_StrDup(key.c_str());
    pair->value = m_host->Sys_StrDup(value.c_str());
    *m_end = pair;
    m_end = &pair->next;
}

static void removeEpair(const cHostServices* host, cEntityData* entity, const char* key) {
    for (cEpair** link = &entity->epairs; *link;) {
        cEpair* pair = *link;
        if (strcasecmp(pair->key, key) != 0) {
            link = &pair->next;
            continue;
        }
        *link = pair->next;
        host->Sys_Free(pair->key);
        host->Sys_Free(pair->value);
        host->Sys_Free(pair);
    }
}

// ---- Reading

void cContainerReader::begin(const cKeyValues& keys) {
    cContainer container;
    container.keys = keys;
    container.isLayer = valueOf(keys, "_tb_type") == "_tb_layer";
    const std::string id = valueOf(keys, "_tb_id");
    if (!id.empty())
        (container.isLayer ? m_layersById : m_groupsById).emplace(id, m_containers.size());
    m_containers.push_back(std::move(container));
}

void cContainerReader::addBrush(cBrushData* brush) {
    m_containers.back().brushes.push_back(brush);
}

void cContainerReader::addEntity(cEntityData* entity, const cKeyValues& keys) {
    cMember member = {entity, valueOf(keys, "_tb_group"), valueOf(keys, "_tb_layer")};
    if (!member.groupId.empty() || !member.layerId.empty())
        m_members.push_back(std::move(member));
}

size_t cContainerReader::find(const std::string& id, bool layer) const {
    const auto& ids = layer ? m_layersById : m_groupsById;
    const auto found = ids.find(id);
    return found == ids.end() ? NONE : found->second;
}

void cContainerReader::makeContainers() {
    static const uint8_t layerColors[][4] = {{90, 160, 250, 255},  {250, 170, 80, 255},
                                             {120, 220, 120, 255}, {230, 110, 160, 255},
                                             {220, 210, 90, 255},  {150, 130, 240, 255}};
    size_t layers = 0;
    for (cContainer& container : m_containers) {
        if (!container.isLayer) {
            container.group = m_host->Group_Create(m_map);
            continue;
        }
        const std::string name = valueOf(container.keys, "_tb_name");
        container.visGroup = m_host->VisGroup_Create(m_map);
        m_host->VisGroup_Set(m_map, container.visGroup, name.c_str(), container.visGroup,
                             layerColors[layers++ % 6]);
    }
}

// Of a chain that comes back to itself the last group met lies in none.
std::vector<size_t> cContainerReader::parentsFirst() {
    enum eState : char { NEW, ON_CHAIN, PLACED };
    std::vector<eState> states(m_containers.size(), NEW);
    std::vector<size_t> order, chain;
    for (size_t i = 0; i < m_containers.size(); ++i) {
        size_t at = i;
        for (; at != NONE && states[at] == NEW; at = m_containers[at].parent) {
            states[at] = ON_CHAIN;
            chain.push_back(at);
            if (!m_containers[at].isLayer)
                m_containers[at].parent = find(valueOf(m_containers[at].keys, "_tb_group"), false);
        }
        if (at != NONE && states[at] == ON_CHAIN) {
            m_containers[chain.back()].parent = NONE;
            eraseKey(&m_containers[chain.back()].keys, "_tb_group");
            ++m_circles;
        }
        for (; !chain.empty(); chain.pop_back()) {
            states[chain.back()] = PLACED;
            order.push_back(chain.back());
        }
    }
    return order;
}

// A group without members joins at once, whatever the length of the chain above it.
void cContainerReader::joinParents() {
    for (const size_t index : parentsFirst()) {
        cContainer& container = m_containers[index];
        if (container.isLayer) {
            container.layer = index;
            continue;
        }
        const bool nested = container.parent != NONE;
        if (nested)
            m_host->Group_AddGroup(m_containers[container.parent].group, container.group);
        container.layer = find(valueOf(container.keys, "_tb_layer"), true);
        // What a name stands for need not be kept.
        if (container.layer != NONE)
            eraseKey(&container.keys, "_tb_layer");
        else if (nested)
            container.layer = m_containers[container.parent].layer;
        if (nested)
            eraseKey(&container.keys, "_tb_group");
    }
}

void cContainerReader::joinLayer(cBrushData* brush, size_t layer) {
    if (layer != NONE)
        m_host->Brush_AddToVisGroup(m_map, brush, m_containers[layer].visGroup);
}

void cContainerReader::joinLayer(cEntityData* entity, size_t layer) {
    if (layer != NONE)
        m_host->Entity_AddToVisGroup(m_map, entity, m_containers[layer].visGroup);
}

void cContainerReader::joinMembers() {
    for (const cContainer& container : m_containers) {
        for (cBrushData* brush : container.brushes) {
            joinLayer(brush, container.layer);
            if (container.group)
                m_host->Group_AddBrush(container.group, brush);
        }
    }
}

void cContainerReader::joinEntities() {
    for (const cMember& member : m_members) {
        const size_t home = find(member.groupId, false), own = find(member.layerId, true);
        if (home != NONE) {
            m_host->Group_AddEntity(m_containers[home].group, member.entity);
            removeEpair(m_host, member.entity, "_tb_group");
        }
        if (own != NONE)
            removeEpair(m_host, member.entity, "_tb_layer");
        joinLayer(member.entity, own != NONE || home == NONE ? own : m_containers[home].layer);
    }
}

static void appendEscaped(std::string* text, const std::string& part) {
    for (const char c : part) {
        if (c == SEPARATOR || c == ESCAPE) {
            *text += ESCAPE;
            *text += c == SEPARATOR ? ESCAPED_SEPARATOR : ESCAPED_ESCAPE;
        } else {
            *text += c;
        }
    }
}

static std::string joinKeys(const cKeyValues& keys) {
    std::string text;
    for (const cKeyValue& pair : keys) {
        if (!text.empty())
            text += SEPARATOR;
        appendEscaped(&text, pair.first);
        text += SEPARATOR;
        appendEscaped(&text, pair.second);
    }
    return text;
}

static std::string colorOf(const cHostServices* host, cGroupData* group) {
    uint8_t color[4] = {};
    host->Group_GetColor(group, color);
    std::string text;
    for (int i = 0; i < 3; ++i)
        text += (i ? " " : "") + std::to_string(color[i]);
    return text;
}

void cContainerReader::keep(cEpairAppender& world) {
    for (cContainer& container : m_containers) {
        for (const char* known : {"classname", "_tb_type"})
            eraseKey(&container.keys, known);
        if (container.isLayer) {
            world.append(LAYER_PREFIX + valueOf(container.keys, "_tb_name"),
                         joinKeys(container.keys));
            continue;
        }
        container.keys.insert(container.keys.begin(),
                              {COLOR_KEY, colorOf(m_host, container.group)});
        world.append(GROUP_PREFIX + std::to_string(container.group->id), joinKeys(container.keys));
    }
}

void cContainerReader::bind(cEpairAppender& world) {
    makeContainers();
    joinParents();
    joinMembers();
    joinEntities();
    keep(world);
    if (m_circles)
        m_host->Sys_Warning("%i group(s) that lie in themselves were taken out", m_circles);
}

// ---- What the world keeps

static char unescaped(char letter) {
    return letter == ESCAPED_SEPARATOR ? SEPARATOR : letter == ESCAPED_ESCAPE ? ESCAPE : letter;
}

static cKeyValues splitKeys(const char* text) {
    cKeyValues keys;
    std::vector<std::string> parts(1);
    for (; *text; ++text) {
        if (*text == SEPARATOR)
            parts.emplace_back();
        else if (*text == ESCAPE && text[1])
            parts.back() += unescaped(*++text);
        else
            parts.back() += *text;
    }
    for (size_t i = 0; i + 1 < parts.size(); i += 2)
        keys.emplace_back(std::move(parts[i]), std::move(parts[i + 1]));
    return keys;
}

cKeptContainers::cKeptContainers(const cHostServices* host, const cEntityData* world)
    : m_host(host) {
    for (const cEpair* pair = world ? world->epairs : nullptr; pair; pair = pair->next) {
        if (isKept(pair->key))
            m_texts[pair->key].push_back(pair->value);
    }
}

std::optional<cKeyValues> cKeptContainers::keysOf(cGroupData* group) const {
    const auto found = m_texts.find(GROUP_PREFIX + std::to_string(group->id));
    if (found == m_texts.end())
        return std::nullopt;
    cKeyValues keys = splitKeys(found->second.front());
    if (keys.empty() || keys[0].first != COLOR_KEY)
        return keys; // of before colours were kept
    if (keys[0].second != colorOf(m_host, group))
        return std::nullopt;
    keys.erase(keys.begin());
    return keys;
}

cKeyValues cKeptContainers::keysOfLayer(const std::string& name, size_t place) const {
    const auto found = m_texts.find(LAYER_PREFIX + name);
    if (found == m_texts.end() || place >= found->second.size())
        return {};
    return splitKeys(found->second[place]);
}

bool cKeptContainers::isKept(const char* key) {
    return strncmp(key, GROUP_PREFIX, sizeof GROUP_PREFIX - 1) == 0 ||
           strncmp(key, LAYER_PREFIX, sizeof LAYER_PREFIX - 1) == 0;
}

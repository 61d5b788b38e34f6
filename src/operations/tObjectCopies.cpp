// SPDX-License-Identifier: MIT
// Taking the selection, and making copies with their groups and visgroups.
#include "operations/tObjectCopies.h"

#include "document/tBrush.h"
#include "document/tGroup.h"
#include "document/tHistory.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tHost.h"
#include "support/tMath.h"

#include <algorithm>

// ---- Taking

void cGroupChains::take(const cGroupData* group) {
    for (; group && m_known.insert(group->id).second; group = group->parent) {
        m_states.take(group);
        m_states.groups.back().flags &= ~TRANSIENT_FLAGS;
    }
}

cTakenObjects::cTakenObjects() {
    T_ClearBounds(mins, maxs);
}

template<class Range> static auto oldestFirst(const Range& range) {
    std::vector<decltype(*range.begin())> objects;
    for (auto* object : range)
        objects.push_back(object);
    std::reverse(objects.begin(), objects.end());
    return objects;
}

static void clearTransient(cObjectStates& states) {
    for (cEntityState& entity : states.entities)
        entity.flags &= ~TRANSIENT_FLAGS;
    for (cBrushState& brush : states.brushes)
        brush.flags &= ~TRANSIENT_FLAGS;
    for (cFaceState& face : states.faces)
        face.flags &= ~TRANSIENT_FLAGS;
}

cTakenObjects cTakenObjects::selectionOf(cMap& map) {
    cTakenObjects taken;
    taken.withGroups = map.updateSelectionMode() == MODE_GROUPS;
    cGroupChains chains(taken.states);
    for (const cEntityData* entity : oldestFirst(selectedEntitiesOf(map.data))) {
        T_AddBoxToBounds(entity->mins, entity->maxs, taken.mins, taken.maxs);
        taken.states.take(entity, TAKE_BRUSHES | TAKE_VISGROUPS);
        chains.take(entity->group);
    }
    taken.firstLoose = uint32_t(taken.states.brushes.size());
    cObjectStates::cBrushCounts counts;
    for (const cBrushData* brush : selectedBrushesOf(map.data))
        counts.add(brush);
    taken.states.reserve(counts);
    for (const cBrushData* brush : oldestFirst(selectedBrushesOf(map.data))) {
        if (isSelected(brush->owner))
            continue; // its entity has taken it
        T_AddBoxToBounds(brush->mins, brush->maxs, taken.mins, taken.maxs);
        taken.states.take(brush, TAKE_GEOMETRY | TAKE_VISGROUPS);
        chains.take(brush->group);
    }
    clearTransient(taken.states);
    return taken;
}

// ---- Copies

cObjectCopies::cObjectCopies(cMap& map, const cTakenObjects& source)
    : m_map(map), m_source(source) {
    for (size_t i = 0; i < source.states.groups.size(); ++i)
        m_groupStates.insert(source.states.groups[i].id, i);
}

void cObjectCopies::beginSet(cGroupData* wrapper) {
    m_copied.clear();
    m_wrapper = wrapper;
}

cGroupData* cObjectCopies::addGroup(const uint8_t* color) {
    cGroupData* group = m_map.addGroup();
    if (color)
        group->group->setBaseColor(color);
    groups.push_back(group);
    return group;
}

// The copy of the group in this set, made with those above it where it is met first.
cGroupData* cObjectCopies::copyOfGroup(uint32_t id) {
    std::vector<const cGroupState*> missing;
    cGroupData* parent = m_wrapper;
    for (; id; id = missing.back()->parentId) {
        if (cGroupData* known = m_copied.value(id)) {
            parent = known;
            break;
        }
        missing.push_back(&m_source.states.groups[m_groupStates.value(id)]);
    }
    for (auto state = missing.rbegin(); state != missing.rend(); ++state) {
        cGroupData* group = addGroup((*state)->color.data());
        setParent(group, parent);
        if (parent)
            ++parent->memberCount;
        m_copied.insert((*state)->id, group);
        parent = group;
    }
    return parent;
}

template<class T> void cObjectCopies::join(T* object, uint32_t groupId, cStateRange visGroups) {
    if (cGroupData* group = copyOfGroup(m_source.withGroups ? groupId : 0))
        setGroupById(m_map, object, group->id);
    if (g_host->KeepCloneVisGroup)
        joinVisGroups(m_map, object, m_source.states, visGroups);
}

cEntityData* cObjectCopies::addEntity(const cEntityState& state) {
    cEntityData* entity = makeEntity(m_map, state, false);
    join(entity, state.groupId, state.visGroups);
    entities.push_back(entity);
    return entity;
}

cBrushData* cObjectCopies::addBrush(const cBrushState& state, cEntityData* owner) {
    cBrushData* brush = makeBrush(m_map, m_source.states, state, owner, false);
    if (owner->flags & EF_WORLD)
        join(brush, state.groupId, state.visGroups);
    else if (g_host->KeepCloneVisGroup)
        joinVisGroups(m_map, brush, m_source.states, state.visGroups);
    brushes.push_back(brush);
    return brush;
}

void cObjectCopies::select() {
    const bool groupsAct = m_map.updateSelectionMode() == MODE_GROUPS;
    for (cGroupData* group : groups) {
        if (groupsAct && !group->parent)
            m_map.select(group);
    }
    for (cEntityData* entity : entities)
        m_map.select(entity);
    for (cBrushData* brush : brushes) {
        if (brushVisible(brush))
            m_map.select(brush);
    }
}

void cObjectCopies::capture(const std::function<void()>& tell) const {
    cHistory& history = *m_map.history;
    for (const cGroupData* group : groups)
        history.groupCreated(group);
    for (const cEntityData* entity : entities) {
        history.entityCreated(entity);
        tell();
    }
    for (const cBrushData* brush : brushes) {
        history.brushCreated(brush);
        tell();
    }
}

// SPDX-License-Identifier: MIT
// The selection as values, and new objects made of such values: what clone, copy, cut and paste
// share. Nothing here opens a step of the history.
#pragma once

#include "document/tObjectState.h"

#include <QHash>
#include <functional>
#include <unordered_set>

// The selected objects, oldest of the selection first: entities with their brushes, then brushes
// whose entity is not selected. With them the chains of their groups.
struct cTakenObjects {
    cObjectStates states;    // not selected
    uint32_t firstLoose = 0; // brushes from here on belong to none of the entities
    bool withGroups = false; // groups act as units: copies get groups of their own
    float mins[3];
    float maxs[3];

    cTakenObjects(); // nothing, with cleared bounds
    static cTakenObjects selectionOf(cMap& map);
    size_t count() const { return states.entities.size() + states.brushes.size(); }
    bool isEmpty() const { return count() == 0; }
};

// Each of the groups and those above it, once each.
class cGroupChains {
public:
    explicit cGroupChains(cObjectStates& states) : m_states(states) {}
    void take(const cGroupData* group);

private:
    cObjectStates& m_states;
    std::unordered_set<uint32_t> m_known;
};

// Copies of taken objects, in the same map or another one, any number of times: new ids, groups of
// their own that mirror those of the source, visgroups with the setting KeepCloneVisGroup. What
// has been added is moved and rebuilt by the caller, and then entered.
class cObjectCopies {
public:
    cObjectCopies(cMap& map, const cTakenObjects& source);

    // The next copies share no groups with those before. wrapper: a group that holds all of them.
    void beginSet(cGroupData* wrapper = nullptr);
    cGroupData* addGroup(const uint8_t* color = nullptr); // random without one
    cEntityData* addEntity(const cEntityState& state);    // without its brushes
    cBrushData* addBrush(const cBrushState& state, cEntityData* owner);

    void select(); // all that is visible; outermost groups while groups act as units
    // Into the open step, as created; tell is called for each entity and brush.
    void capture(const std::function<void()>& tell = [] {}) const;

    std::vector<cGroupData*> groups; // parents before their children
    std::vector<cEntityData*> entities;
    std::vector<cBrushData*> brushes;

private:
    cGroupData* copyOfGroup(uint32_t id);
    template<class T> void join(T* object, uint32_t groupId, cStateRange visGroups);

    cMap& m_map;
    const cTakenObjects& m_source;
    QHash<uint32_t, size_t> m_groupStates; // places by id
    QHash<uint32_t, cGroupData*> m_copied; // of this set, by the id in the source
    cGroupData* m_wrapper = nullptr;
};

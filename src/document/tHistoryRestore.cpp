// SPDX-License-Identifier: MIT
// Undo and redo: objects are found by id, changed ones change places with their states, created
// and deleted ones go or come back. A state that can't find its object tells so and is skipped.
// Every owner is updated once, after all its brushes are in place. Lists are walked from the
// newest capture to the oldest.
#include "document/tHistoryRestore.h"

#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tCullTree.h"
#include "document/tEntity.h"
#include "document/tGroup.h"
#include "document/tHistorySteps.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "support/tConsole.h"
#include "support/tHost.h"
#include "support/tVec.h"

#include <cstring>
#include <map>
#include <unordered_map>

namespace {
// The last element first.
template<class T, class Action> void backward(T& list, Action action) {
    for (size_t i = list.size(); i-- > 0;)
        action(list[i]);
}

// Objects that go to the places they had: all are taken out of their lists, then each goes in
// behind the one that was before it, which comes first if it is to be placed itself.
template<class T> class cPlacing {
public:
    void add(T* object, uint32_t previousId) { m_objects.push_back({object, previousId}); }

    template<class Remove, class Insert> void run(Remove remove, Insert insert) {
        std::unordered_map<uint32_t, size_t> pending;
        for (size_t i = 0; i < m_objects.size(); ++i) {
            remove(m_objects[i].first);
            pending.emplace(m_objects[i].first->id, i);
        }
        for (const auto& entry : m_objects) {
            std::vector<size_t> chain;
            auto found = pending.find(entry.first->id);
            while (found != pending.end()) {
                chain.push_back(found->second);
                pending.erase(found);
                found = pending.find(m_objects[chain.back()].second);
            }
            for (auto place = chain.rbegin(); place != chain.rend(); ++place)
                insert(m_objects[*place].first, m_objects[*place].second);
        }
        m_objects.clear();
    }

private:
    std::vector<std::pair<T*, uint32_t>> m_objects; // each once
};

class cRestore {
public:
    explicit cRestore(cMap& map) : m_map(map), m_data(map.data) {}

    void dropSelection();
    void remake(const cObjectStates& states);
    void takeLive(const cObjectStates& recorded); // into the states that the other way needs
    void putFaces(const cObjectStates& recorded);
    void putEntities(const cObjectStates& recorded);
    void putBrushes(cObjectStates& recorded);
    void putGroups(const cObjectStates& recorded);
    void place(); // what was made or moved, in its lists
    void remove(cObjectStates& states);
    void finish();
    void update();

    void keepLive(cObjectStates& recorded); // at the end of a step

    cRemade remade;

private:
    // The next update of the entity has at least these bits.
    void touch(cEntityData* entity, uint32_t mode, const cEntityState* state = nullptr) {
        cTouched& touched = m_touched[entity->id];
        touched.entity = entity;
        touched.mode |= mode;
        touched.state = state ? state : touched.state;
    }
    cEntityData* ownerById(uint32_t id, const char* message);
    cFaceData* loneFace(const cLoneFaceState& state);
    void remakeGroups(const cObjectStates& states);
    void remakeEntity(const cObjectStates& states, const cEntityState& state);
    void remakeBrush(const cObjectStates& states, const cBrushState& state);
    void putEntityOf(const cEntityState& state);
    void takeFaces(const cBrushData* brush, const cBrushState& recorded);
    void putBrushOf(const cObjectStates& states, const cBrushState& state);
    void putGroupOf(const cGroupState& state);
    void settle(cBrushData* brush);
    void setParent(cGroupData* group, cGroupData* parent);
    void selectGroupAlone(cGroupData* group);
    void removeGroups(const cObjectStates& states);
    void recomputeRoots();
    void finishSelection();

    cMap& m_map;
    cMapData& m_data;
    cObjectStates m_live;           // what the other way needs; brushes without their faces
    cObjectStates m_taken;          // the brush that is put, before
    cEntityData* m_owner = nullptr; // found last; states of one entity's brushes stand together
    struct cTouched {
        cEntityData* entity = nullptr;
        uint32_t mode = 0;
        const cEntityState* state = nullptr; // of an entity that was made or put back
    };
    void keepBox(const cTouched& touched);
    std::map<uint32_t, cTouched> m_touched; // by id, so that messages come in one order
    cPlacing<cGroupData> m_placedGroups;
    cPlacing<cEntityData> m_placedEntities;
    cPlacing<cBrushData> m_placedBrushes;
    bool m_parentsChanged = false;
};

void cRestore::dropSelection() {
    selectedClear(m_data.selectedGroups);
    selectedClear(m_data.selectedEntities);
    selectedClear(m_data.selectedBrushes);
    selectedClear(m_data.selectedFaces);
}

template<class T> void reselect(T*& list, T* object, uint32_t recorded) {
    if ((recorded & OF_SELECTED) && !isSelected(object))
        selectedPush(list, object);
}

cEntityData* cRestore::ownerById(uint32_t id, const char* message) {
    if (!m_owner || m_owner->id != id)
        m_owner = m_map.findEntityById(id);
    if (!m_owner)
        Error(message, id);
    return m_owner;
}

// Brushes that are back are rebuilt with the faces in the order they had: no sorting.
void cRestore::settle(cBrushData* brush) {
    rebuildBrush(brush, UM_NO_SORT);
    if (m_map.cullTree)
        m_map.cullTree->updateBrush(brush);
}

// ---- Remaking

void cRestore::remakeGroups(const cObjectStates& states) {
    std::vector<const cGroupState*> made;
    backward(states.groups, [&](const cGroupState& state) {
        if (m_map.findGroupById(state.id))
            return;
        remade.groups.push_back(makeGroup(m_map, state));
        m_placedGroups.add(remade.groups.back(), state.previousId);
        made.push_back(&state);
    });
    for (const cGroupState* state : made) {
        cGroupData* group = m_map.findGroupById(state->id);
        setParent(group, state->parentId ? m_map.findGroupById(state->parentId) : nullptr);
        if (!group->parent)
            reselect(m_data.selectedGroups, group, state->flags);
    }
}

void cRestore::remakeEntity(const cObjectStates& states, const cEntityState& state) {
    if (m_map.findEntityById(state.id))
        return;
    cEntityData* entity = makeEntity(m_map, state, true);
    remade.entities.push_back(entity);
    m_placedEntities.add(entity, state.previousId);
    setGroupById(m_map, entity, state.groupId);
    joinVisGroups(m_map, entity, states, state.visGroups);
    touch(entity, UM_ATTACH, &state);
    reselect(m_data.selectedEntities, entity, state.flags);
}

void cRestore::remakeBrush(const cObjectStates& states, const cBrushState& state) {
    if (m_map.findBrushById(nullptr, state.id))
        return;
    cEntityData* owner = ownerById(state.entityId, "Redo: no such entityId %i");
    if (!owner)
        return;
    cBrushData* brush = makeBrush(m_map, states, state, owner, true);
    remade.brushes.push_back(brush);
    m_placedBrushes.add(brush, state.previousId);
    setGroupById(m_map, brush, state.groupId);
    joinVisGroups(m_map, brush, states, state.visGroups);
    settle(brush);
    touch(owner, 0);
    reselect(m_data.selectedBrushes, brush, state.flags);
}

void cRestore::remake(const cObjectStates& states) {
    remakeGroups(states);
    backward(states.entities, [&](const cEntityState& state) { remakeEntity(states, state); });
    backward(states.brushes, [&](const cBrushState& state) { remakeBrush(states, state); });
}

// ---- What is there now, in the places of what was recorded

cFaceData* cRestore::loneFace(const cLoneFaceState& state) {
    const cEntityData* owner = m_map.findEntityById(state.entityId);
    const cBrushData* brush = owner ? m_map.findBrushById(owner, state.brushId) : nullptr;
    return brush ? m_map.findFaceById(brush, state.face.id) : nullptr;
}

// Becomes the state of the other way; only whether the object is selected again stays.
void keepSelected(uint32_t& flags, uint32_t recorded) {
    flags = (flags & ~TRANSIENT_FLAGS) | (recorded & OF_SELECTED);
}

// Objects that are missing keep what was recorded of them. Faces of brushes change places with the
// recorded ones when these are put, so that a large step takes no memory anew.
void cRestore::takeLive(const cObjectStates& recorded) {
    m_live.reserve({recorded.brushes.size(), 0, 0});
    for (const cGroupState& state : recorded.groups) {
        if (const cGroupData* group = m_map.findGroupById(state.id))
            m_live.take(group);
        else
            m_live.groups.push_back(state);
        keepSelected(m_live.groups.back().flags, state.flags);
    }
    for (const cEntityState& state : recorded.entities) {
        if (const cEntityData* entity = m_map.findEntityById(state.id))
            m_live.take(entity, TAKE_FIELDS);
        else
            m_live.entities.push_back(state);
        keepSelected(m_live.entities.back().flags, state.flags);
    }
    for (const cBrushState& state : recorded.brushes) {
        if (const cBrushData* brush = m_map.findBrushById(nullptr, state.id))
            m_live.takeHead(brush);
        else
            m_live.brushes.push_back(state);
        keepSelected(m_live.brushes.back().flags, state.flags);
    }
    for (const cLoneFaceState& state : recorded.loneFaces) {
        if (const cFaceData* face = loneFace(state))
            m_live.takeLone(face);
        else
            m_live.loneFaces.push_back(state);
        keepSelected(m_live.loneFaces.back().face.flags, state.face.flags);
    }
}

// ---- Changed objects

void cRestore::putFaces(const cObjectStates& recorded) {
    cBrushData* brush = nullptr;
    backward(recorded.loneFaces, [&](const cLoneFaceState& state) {
        cEntityData* owner = ownerById(state.entityId, "Undo/Redo: no such entityId %i");
        if (!owner)
            return;
        if (!brush || brush->id != state.brushId || brush->owner != owner)
            brush = m_map.findBrushById(owner, state.brushId);
        if (!brush) {
            Error("Undo/Redo: no such brushId %i", state.brushId);
            return;
        }
        cFaceData* face = m_map.findFaceById(brush, state.face.id);
        if (!face) {
            Error("Undo/Redo: no such faceId %i", state.face.id);
            return;
        }
        putFace(face, state.face);
        rebuildFace(face, 0);
        reselect(m_data.selectedFaces, face, state.face.flags);
    });
    m_map.markChanged();
}

const char* valueIn(const cEntityState& state, const char* key) {
    for (const auto& [name, value] : state.pairs) {
        if (qstricmp(name.constData(), key) == 0)
            return value.constData();
    }
    return nullptr;
}

// Class and the keys that name what an entity shows are the same.
bool showsSame(const cEntityData* entity, const cEntityState& state) {
    for (const char* key : {"model", "texture"}) {
        if (qstrcmp(getEpairValue(entity, key), valueIn(state, key)) != 0)
            return false;
    }
    return state.classname == entity->classname;
}

void cRestore::putEntityOf(const cEntityState& state) {
    cEntityData* entity = m_map.findEntityById(state.id);
    if (!entity) {
        Error("Undo/Redo: no such entityId %i", state.id);
        return;
    }
    const bool attach = !showsSame(entity, state);
    putEntity(entity, state);
    setGroupById(m_map, entity, state.groupId);
    if (entity->attachKind == AK_DECAL)
        entity->flags |= EF_RECOMPUTE_ATTACHMENT;
    touch(entity, attach ? uint32_t(UM_ATTACH) : 0, &state);
    reselect(m_data.selectedEntities, entity, state.flags);
}

void cRestore::putEntities(const cObjectStates& recorded) {
    backward(recorded.entities, [&](const cEntityState& state) { putEntityOf(state); });
}

void cRestore::putBrushOf(const cObjectStates& states, const cBrushState& state) {
    cEntityData* owner = ownerById(state.entityId, "Undo/Redo: no such entityId %i");
    if (!owner)
        return;
    cBrushData* brush = m_map.findBrushById(nullptr, state.id);
    if (!brush) {
        Error("Undo/Redo: no such brushId %i", state.id);
        return;
    }
    touch(owner, 0);
    if (brush->owner != owner) {
        touch(brush->owner, 0);
        m_map.moveBrush(brush, owner);
        m_placedBrushes.add(brush, state.previousId);
    }
    setGroupById(m_map, brush, state.groupId);
    putBrush(m_map, brush, states, state);
    settle(brush);
    reselect(m_data.selectedBrushes, brush, state.flags);
    uint32_t place = state.faces.first; // as many faces as states, unless one was missing
    for (cFaceData* face : facesOf(brush)) {
        if (place < state.faces.end() && states.faces[place].id == face->id)
            reselect(m_data.selectedFaces, face, states.faces[place].flags);
        ++place;
    }
}

void cRestore::takeFaces(const cBrushData* brush, const cBrushState& recorded) {
    m_taken.clear();
    m_taken.take(brush, recorded.withGeometry ? TAKE_GEOMETRY : TAKE_FIELDS);
    for (cFaceState& face : m_taken.faces)
        face.flags &= ~OF_SELECTED;
}

void cRestore::putBrushes(cObjectStates& recorded) {
    backward(recorded.brushes, [&](cBrushState& state) {
        const cBrushData* brush = m_map.findBrushById(nullptr, state.id);
        if (brush)
            takeFaces(brush, state);
        putBrushOf(recorded, state);
        if (brush)
            recorded.replaceFaces(state, m_taken.brushes.back(), m_taken);
        cBrushState& live = m_live.brushes[size_t(&state - recorded.brushes.data())];
        live.faces = state.faces;
        live.withGeometry = state.withGeometry;
    });
}

// What was taken becomes the record, for the other way.
void cRestore::keepLive(cObjectStates& recorded) {
    recorded.groups = std::move(m_live.groups);
    recorded.entities = std::move(m_live.entities);
    recorded.brushes = std::move(m_live.brushes);
    recorded.loneFaces = std::move(m_live.loneFaces);
    recorded.pack();
}

void cRestore::setParent(cGroupData* group, cGroupData* parent) {
    if (group->parent)
        --group->parent->memberCount;
    if (parent)
        ++parent->memberCount;
    ::setParent(group, parent);
}

// Only outermost groups are selected.
void cRestore::selectGroupAlone(cGroupData* group) {
    for (const cGroupData* parent = group->parent; parent; parent = parent->parent) {
        if (isSelected(parent))
            return;
    }
    if (!isSelected(group))
        selectedPush(m_data.selectedGroups, group);
}

void cRestore::putGroupOf(const cGroupState& state) {
    cGroupData* group = m_map.findGroupById(state.id);
    if (!group) {
        Error("Undo/Redo: no such groupId %i", state.id);
        return;
    }
    group->group->setBaseColor(state.color.data());
    group->flags = (state.flags & ~TRANSIENT_FLAGS) | (group->flags & OF_SELECTED);
    cGroupData* parent = state.parentId ? m_map.findGroupById(state.parentId) : nullptr;
    if (parent != group->parent) {
        setParent(group, parent);
        m_parentsChanged = true; // for objects below that this step does not name
    }
    if (state.flags & GF_SELECTED)
        selectGroupAlone(group);
}

void cRestore::putGroups(const cObjectStates& recorded) {
    backward(recorded.groups, [&](const cGroupState& state) { putGroupOf(state); });
}

// ---- Places in the lists. Where the one before has gone, the tail is as good as any.

void cRestore::place() {
    m_placedGroups.run([this](cGroupData* group) { listRemove(m_data.groups, group); },
                       [this](cGroupData* group, uint32_t previous) {
                           listInsertAfter(m_data.groups, group, m_map.findGroupById(previous));
                       });
    m_placedEntities.run(
        [this](cEntityData* entity) { listRemove(m_data.entities, m_data.entitiesTail, entity); },
        [this](cEntityData* entity, uint32_t previous) {
            cEntityData* before = m_map.findEntityById(previous);
            listInsertAfter(m_data.entities, m_data.entitiesTail, entity,
                            before ? before : m_data.entitiesTail);
        });
    m_placedBrushes.run(
        [](cBrushData* brush) {
            listRemove(brush->owner->brushes, brush->owner->brushesTail, brush);
        },
        [this](cBrushData* brush, uint32_t previous) {
            cEntityData* owner = brush->owner;
            cBrushData* before = previous ? m_map.findBrushById(owner, previous) : nullptr;
            if (previous && !before)
                before = owner->brushesTail;
            listInsertAfter(owner->brushes, owner->brushesTail, brush, before);
        });
}

// ---- Removal. Groups that this empties stay: the step itself says what becomes of them.

template<class T> void leaveGroup(T* object) {
    if (object->group)
        --object->group->memberCount;
    object->group = object->rootGroup = nullptr;
}

void cRestore::removeGroups(const cObjectStates& states) {
    backward(states.groups, [&](const cGroupState& state) {
        cGroupData* group = m_map.findGroupById(state.id);
        if (!group)
            return;
        if (isSelected(group))
            selectedRemove(m_data.selectedGroups, group);
        setParent(group, nullptr);
    });
    for (const cGroupState& state : states.groups) {
        if (cGroupData* group = m_map.findGroupById(state.id))
            m_map.freeGroup(group);
    }
}

// The visgroups of this moment are noted for the way back.
void cRestore::remove(cObjectStates& states) {
    states.serials.clear();
    backward(states.brushes, [&](cBrushState& state) {
        const cEntityData* owner = m_map.findEntityById(state.entityId);
        cBrushData* brush = owner ? m_map.findBrushById(owner, state.id) : nullptr;
        state.visGroups = {};
        if (!brush)
            return;
        state.visGroups = states.takeVisGroups(brush);
        leaveGroup(brush);
        touch(brush->owner, 0);
        m_map.freeBrush(brush);
    });
    backward(states.entities, [&](cEntityState& state) {
        cEntityData* entity = m_map.findEntityById(state.id);
        state.visGroups = {};
        if (!entity || (entity->flags & EF_WORLD))
            return;
        state.visGroups = states.takeVisGroups(entity);
        leaveGroup(entity);
        m_touched.erase(entity->id);
        if (m_owner == entity)
            m_owner = nullptr;
        m_map.freeEntity(entity);
    });
    removeGroups(states);
}

// ---- The end

void cRestore::recomputeRoots() {
    for (cEntityData* entity : entitiesOf(m_data)) {
        entity->rootGroup = outermostGroup(entity->group);
        for (cBrushData* brush : brushesOf(entity))
            brush->rootGroup = outermostGroup(brush->group);
    }
}

void cRestore::finishSelection() {
    for (cEntityData* entity : selectedEntitiesOf(m_data)) {
        for (cBrushData* brush : brushesOf(entity)) {
            if (!isSelected(brush))
                selectedPush(m_data.selectedBrushes, brush);
        }
    }
    const int mode = m_map.updateSelectionMode();
    if (mode == MODE_GROUPS)
        m_map.selectRoots();
    else
        selectedClear(m_data.selectedGroups);
    if (mode != MODE_FACES)
        selectedClear(m_data.selectedFaces);
}

// A point entity that shows nothing has its class's box about its origin, but for the rounding of
// the moves that took it there. A class that was read anew may have another box.
void cRestore::keepBox(const cTouched& touched) {
    constexpr float sameSize = 0.01f;
    cEntityData* entity = touched.entity;
    if (!touched.state || !(entity->flags & EF_POINT) || entity->attachKind != AK_NONE)
        return;
    const auto& mins = touched.state->mins;
    const auto& maxs = touched.state->maxs;
    for (size_t i = 0; i < 3; ++i) {
        if (std::fabs((maxs[i] - mins[i]) - (entity->maxs[i] - entity->mins[i])) > sameSize)
            return;
    }
    vecCopy(mins.data(), entity->mins);
    vecCopy(maxs.data(), entity->maxs);
    if (m_map.cullTree)
        m_map.cullTree->updateEntity(entity);
    noteChange(entity);
}

void cRestore::update() {
    for (const auto& [id, touched] : m_touched) {
        updateEntity(touched.entity, touched.mode);
        keepBox(touched);
    }
    if (m_parentsChanged)
        recomputeRoots();
}

void cRestore::finish() {
    update();
    finishSelection();
    m_map.computeVisGroupVisibility();
    m_map.dropHidden(); // describes the selection, too
}
} // namespace

void undoStep(cMap& map, cUndoStep& step) {
    const cBusy busy;
    cRestore restore(map);
    restore.dropSelection();
    restore.remake(step.deleted);
    restore.takeLive(step.changed);
    restore.putFaces(step.changed);
    restore.putEntities(step.changed);
    restore.putBrushes(step.changed);
    restore.putGroups(step.changed);
    restore.place();
    restore.remove(step.created);
    restore.finish();
    restore.keepLive(step.changed);
}

void redoStep(cMap& map, cUndoStep& step) {
    const cBusy busy;
    cRestore restore(map);
    restore.dropSelection();
    restore.remake(step.created);
    restore.takeLive(step.changed);
    restore.putEntities(step.changed);
    restore.putBrushes(step.changed);
    restore.putGroups(step.changed);
    restore.putFaces(step.changed);
    restore.place();
    restore.remove(step.deleted);
    restore.finish();
    restore.keepLive(step.changed);
}

cRemade remakeObjects(cMap& map, const cObjectStates& states) {
    const cBusy busy;
    cRestore restore(map);
    restore.remake(states);
    restore.place();
    restore.update();
    return std::move(restore.remade);
}

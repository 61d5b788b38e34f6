// SPDX-License-Identifier: MIT
// Undo and redo: objects are found by id, changed ones change places with their records, created
// and deleted ones go or come back. A record that can't find its object tells so and is skipped.
// Every owner is updated once, after all its brushes are in place.
#include "document/tHistoryRestore.h"

#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tEntityClass.h"
#include "document/tFace.h"
#include "document/tFaceMapping.h"
#include "document/tGroup.h"
#include "document/tHistoryRecords.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tConsole.h"
#include "support/tHost.h"
#include "support/tSystem.h"
#include "support/tVec.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

namespace {
constexpr uint32_t ENTITY_KEYS = UM_RENDER_KEYS | UM_MODEL_KEYS;

class cRestore {
public:
    explicit cRestore(cMap& map) : m_map(map), m_data(map.data) { dropSelection(); }

    void remakeGroups(const cGroupRecord* list);
    void remakeEntities(const cEntityRecord* list);
    void remakeBrushes(const cBrushRecord* list);
    void swapFaces(cFaceRecord* list);
    void swapEntities(cEntityRecord* list);
    void swapBrushes(cBrushRecord* list);
    void swapGroups(cGroupRecord* list);
    void removeBrushes(cBrushRecord* list);
    void removeEntities(cEntityRecord* list);
    void removeGroups(const cGroupRecord* list);
    void finish();

private:
    void dropSelection();
    // The next update of the entity has at least these bits.
    void touch(cEntityData* entity, uint32_t mode) { m_touched[entity] |= mode; }
    cEntityData* ownerById(uint32_t id, const char* message);
    template<class T> void setGroup(T* object, uint32_t id);
    template<class T> void joinVisGroups(T* half, const std::vector<uint32_t>& serials);
    void remakeBrush(const cBrushRecord* record, cEntityData* owner);
    void swapFace(cFaceData* face, cFaceRecord* record, uint32_t dirty);
    void swapBrush(cBrushData* brush, cBrushRecord* record);
    void swapBrushTextures(cBrushData* brush, cBrushRecord* record);
    void swapGeometry(cBrushData* brush, cBrushRecord* record);
    void swapEntity(cEntityData* entity, cEntityRecord* record);
    void swapClass(cEntityData* entity, cEntityRecord* record);
    void swapGroup(cGroupData* group, cGroupRecord* record);
    void setParent(cGroupData* group, cGroupData* parent);
    void selectGroupAlone(cGroupData* group);
    void recomputeRoots();
    void finishSelection();

    cMap& m_map;
    cMapData& m_data;
    cEntityData* m_owner = nullptr; // found last; records of one entity stand together
    std::unordered_map<cEntityData*, uint32_t> m_touched;
    std::vector<cFaceData*> m_live; // scratch of swapGeometry
    std::vector<cFaceRecord*> m_swapped;
    bool m_parentsChanged = false;
};

void cRestore::dropSelection() {
    selectedClear(m_data.selectedGroups);
    selectedClear(m_data.selectedEntities);
    selectedClear(m_data.selectedBrushes);
    selectedClear(m_data.selectedFaces);
}

// What an object gets back: no passing state, and to be rebuilt.
uint32_t restoredFlags(uint32_t recorded, uint32_t dirty) {
    return (recorded & ~TRANSIENT_FLAGS) | dirty;
}

// An object's flags take the record's; the record keeps whether the object is to be selected. An
// object that this very step has brought back may be selected already.
void swapFlags(uint32_t& flags, uint32_t& recorded, uint32_t dirty) {
    const uint32_t old = flags;
    flags = restoredFlags(recorded, dirty) | (old & OF_SELECTED);
    recorded = (old & ~TRANSIENT_FLAGS) | (recorded & OF_SELECTED);
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

// ---- Groups and visgroups of an object

// The outermost group follows, at once or, when groups move as well, in one walk at the end.
template<class T> void cRestore::setGroup(T* object, uint32_t id) {
    cGroupData* group = id ? m_map.findGroupById(id) : nullptr;
    if (group != object->group) {
        if (object->group)
            --object->group->memberCount;
        if (group)
            ++group->memberCount;
        object->group = group;
    }
    object->rootGroup = outermostGroup(group);
}

uint32_t idOf(const cGroupData* group) {
    return group ? group->id : 0;
}

template<class T> void cRestore::joinVisGroups(T* half, const std::vector<uint32_t>& serials) {
    for (uint32_t serial : serials) {
        if (cVisGroup* visGroup = m_map.findVisGroupBySerial(serial))
            half->addToVisGroup(visGroup);
    }
}

// The class may have been read anew since the record was made: what follows from it, follows from
// the one of now.
void followClass(cEntityData* entity) {
    const cEntityClass* entityClass = entity->entity->entityClass;
    if (!entityClass)
        return;
    const bool isPoint = entityClass->kind == CK_POINT;
    entity->flags = isPoint ? entity->flags | EF_POINT : entity->flags & ~uint32_t(EF_POINT);
    deriveFlagsKey(entity);
}

// ---- Remaking

void cRestore::remakeGroups(const cGroupRecord* list) {
    for (const cGroupRecord* record = list; record; record = record->next) {
        if (m_map.findGroupById(record->id))
            continue;
        cGroupData* group = m_map.insertGroup(record->id);
        group->flags = restoredFlags(record->flags, 0);
        group->group->setBaseColor(record->baseColor);
    }
    for (const cGroupRecord* record = list; record; record = record->next) {
        cGroupData* group = m_map.findGroupById(record->id);
        setParent(group, record->parentId ? m_map.findGroupById(record->parentId) : nullptr);
        if ((record->flags & GF_SELECTED) && !group->parent && !isSelected(group))
            selectedPush(m_data.selectedGroups, group);
    }
}

void cRestore::remakeEntities(const cEntityRecord* list) {
    for (const cEntityRecord* record = list; record; record = record->next) {
        cEntityData* entity =
            newEntity(record->classname, record->origin, restoredFlags(record->flags, 0));
        m_map.attachEntity(entity);
        m_map.insertEntity(entity, record->id);
        entity->flags = restoredFlags(record->flags, EF_DIRTY);
        entity->spawnFlags = record->spawnFlags;
        entity->epairs = copyEpairs(record->epairs);
        setText(entity->flagsKey, record->flagsKey);
        followClass(entity);
        vecCopy(record->angles, entity->angles);
        vecCopy(record->mins, entity->mins);
        vecCopy(record->maxs, entity->maxs);
        memcpy(entity->entity->color, record->color, sizeof record->color);
        setGroup(entity, record->groupId);
        joinVisGroups(entity->entity, record->visGroups);
        touch(entity, ENTITY_KEYS | UM_ATTACH);
        reselect(m_data.selectedEntities, entity, record->flags);
    }
}

void setPoints(cFaceData* face, const std::vector<float>& points) {
    for (int i = 0; i < face->vertexCount; ++i)
        vecCopy(&points[size_t(i) * 3], face->vertices[i].xyz);
}

void cRestore::remakeBrush(const cBrushRecord* record, cEntityData* owner) {
    cBrushData* brush = newBrush();
    m_map.insertBrush(brush, owner, record->id);
    brush->flags = restoredFlags(record->flags, BF_DIRTY);
    brush->reserved = record->reserved;
    brush->brush->setBaseColor(record->baseColor);
    for (const cFaceRecord* faceRecord = record->faces; faceRecord; faceRecord = faceRecord->next) {
        cFaceData* face = newFace(faceRecord->vertexCount);
        m_map.insertFace(face, brush, faceRecord->id);
        applyTextureBlock(face, faceRecord->tex);
        face->flags = restoredFlags(faceRecord->flags, FF_DIRTY);
        setPoints(face, faceRecord->points);
    }
    setGroup(brush, record->groupId);
    joinVisGroups(brush->brush, record->visGroups);
    touch(owner, UM_PLANES);
    reselect(m_data.selectedBrushes, brush, record->flags);
}

void cRestore::remakeBrushes(const cBrushRecord* list) {
    for (const cBrushRecord* record = list; record; record = record->next) {
        if (cEntityData* owner = ownerById(record->entityId, "Redo: no such entityId %i"))
            remakeBrush(record, owner);
    }
}

// ---- Faces

void cRestore::swapFace(cFaceData* face, cFaceRecord* record, uint32_t dirty) {
    const cFaceTexture old = face->tex;
    if (face->texture && strcmp(old.name, record->tex.name) == 0)
        face->tex = record->tex; // the reference need not move
    else
        applyTextureBlock(face, record->tex);
    record->tex = old;
    swapFlags(face->flags, record->flags, dirty);
    updateFaceTransparency(face);
    reselect(m_data.selectedFaces, face, record->flags);
}

void cRestore::swapFaces(cFaceRecord* list) {
    cBrushData* brush = nullptr;
    for (cFaceRecord* record = list; record; record = record->next) {
        cEntityData* owner = ownerById(record->entityId, "Undo/Redo: no such entityId %i");
        if (!owner)
            continue;
        if (!brush || brush->id != record->brushId || brush->owner != owner)
            brush = m_map.findBrushById(owner, record->brushId);
        if (!brush) {
            Error("Undo/Redo: no such brushId %i", record->brushId);
            continue;
        }
        cFaceData* face = m_map.findFaceById(brush, record->id);
        if (!face) {
            Error("Undo/Redo: no such faceId %i", record->id);
            continue;
        }
        swapFace(face, record, FF_DIRTY);
        rebuildFace(face, 0);
    }
}

// ---- Entities

void cRestore::swapClass(cEntityData* entity, cEntityRecord* record) {
    std::swap(entity->classname, record->classname);
    setEntityClass(entity, findEntityClass(entity, m_map.context));
}

bool sameText(const char* a, const char* b) {
    return a == b || (a && b && strcmp(a, b) == 0);
}

const char* valueIn(const cEpair* list, const char* key) {
    cEntityData holder = {};
    holder.epairs = const_cast<cEpair*>(list);
    return getEpairValue(&holder, key);
}

// The keys that name what an entity shows.
bool showsSame(const cEpair* a, const cEpair* b) {
    return sameText(valueIn(a, "model"), valueIn(b, "model")) &&
           sameText(valueIn(a, "texture"), valueIn(b, "texture"));
}

void cRestore::swapEntity(cEntityData* entity, cEntityRecord* record) {
    const bool otherClass = !sameText(entity->classname, record->classname);
    const bool attach = otherClass || !showsSame(entity->epairs, record->epairs);
    cEntityRecord* now = newEntityRecord(entity);
    now->next = record->next;
    if (otherClass) {
        entity->flags = (entity->flags & ~uint32_t(EF_POINT)) | (record->flags & EF_POINT);
        swapClass(entity, record);
    }
    vecCopy(record->origin, entity->origin);
    vecCopy(record->angles, entity->angles);
    vecCopy(record->mins, entity->mins);
    vecCopy(record->maxs, entity->maxs);
    entity->flags = restoredFlags(record->flags, EF_DIRTY) | (entity->flags & EF_SELECTED);
    entity->spawnFlags = record->spawnFlags;
    memcpy(entity->entity->color, record->color, sizeof record->color);
    std::swap(entity->epairs, record->epairs);
    std::swap(entity->flagsKey, record->flagsKey);
    followClass(entity);
    setGroup(entity, record->groupId);
    if (entity->attachKind == AK_DECAL)
        entity->flags |= EF_RECOMPUTE_ATTACHMENT;
    touch(entity, attach ? ENTITY_KEYS | UM_ATTACH : ENTITY_KEYS);
    reselect(m_data.selectedEntities, entity, record->flags);
    // The record becomes what the entity was; only whether it is selected again stays.
    now->flags = (now->flags & ~TRANSIENT_FLAGS) | (record->flags & OF_SELECTED);
    std::swap(*now, *record);
    releaseRecord(now);
}

void cRestore::swapEntities(cEntityRecord* list) {
    for (cEntityRecord* record = list; record; record = record->next) {
        if (cEntityData* entity = m_map.findEntityById(record->id))
            swapEntity(entity, record);
        else
            Error("Undo/Redo: no such entityId %i", record->id);
    }
}

// ---- Brushes

void cRestore::swapBrushTextures(cBrushData* brush, cBrushRecord* record) {
    cFaceData* next = brush->faces; // the records stand in the brush's order, as a rule
    for (cFaceRecord* faceRecord = record->faces; faceRecord; faceRecord = faceRecord->next) {
        cFaceData* face =
            next && next->id == faceRecord->id ? next : m_map.findFaceById(brush, faceRecord->id);
        if (!face) {
            Error("Undo/Redo: no such faceId %i", faceRecord->id);
            continue;
        }
        next = face->next;
        swapFace(face, faceRecord, FF_DIRTY);
    }
}

void resizeVertices(cFaceData* face, int count) {
    Mem_Free(face->vertices);
    face->vertices = static_cast<cFaceVertex*>(Mem_Alloc(size_t(count) * sizeof(cFaceVertex)));
    face->vertexCount = count;
}

void swapPoints(cFaceData* face, cFaceRecord* record) {
    std::vector<float> old(size_t(face->vertexCount) * 3);
    for (int i = 0; i < face->vertexCount; ++i)
        vecCopy(face->vertices[i].xyz, &old[size_t(i) * 3]);
    if (record->vertexCount != face->vertexCount)
        resizeVertices(face, record->vertexCount);
    for (int i = 0; i < face->vertexCount; ++i)
        face->vertices[i].tag = 0;
    setPoints(face, record->points);
    record->vertexCount = int(old.size() / 3);
    record->points.swap(old);
}

// Faces of the same id change places with their records; the others go into records, and come out
// of records, whole.
void cRestore::swapGeometry(cBrushData* brush, cBrushRecord* record) {
    m_live.clear();
    for (cFaceData* face : facesOf(brush))
        m_live.push_back(face);
    m_swapped.assign(m_live.size(), nullptr);
    brush->faces = brush->facesTail = nullptr;
    size_t hint = 0;
    while (cFaceRecord* faceRecord = record->faces) {
        record->faces = faceRecord->next;
        const auto fits = [this, faceRecord](size_t at) {
            return m_live[at]->id == faceRecord->id && !m_swapped[at];
        };
        size_t place = hint < m_live.size() && fits(hint) ? hint : 0;
        while (place < m_live.size() && !fits(place))
            ++place;
        if (place < m_live.size()) {
            cFaceData* face = m_live[place];
            listPushTail(brush->faces, brush->facesTail, face);
            swapFace(face, faceRecord, FF_DIRTY);
            swapPoints(face, faceRecord);
            m_swapped[place] = faceRecord;
            hint = place + 1;
            continue;
        }
        cFaceData* face = newFace(faceRecord->vertexCount);
        m_map.insertFace(face, brush, faceRecord->id);
        applyTextureBlock(face, faceRecord->tex);
        face->flags = restoredFlags(faceRecord->flags, FF_DIRTY);
        setPoints(face, faceRecord->points);
        reselect(m_data.selectedFaces, face, faceRecord->flags);
        releaseRecord(faceRecord);
    }
    for (size_t place = m_live.size(); place-- > 0;) {
        cFaceRecord* faceRecord = m_swapped[place];
        if (!faceRecord) {
            faceRecord = newFaceRecord(m_live[place], true);
            m_live[place]->brush = nullptr; // it is out of the list already
            m_map.freeFace(m_live[place]);
        }
        faceRecord->next = record->faces;
        record->faces = faceRecord;
    }
}

void cRestore::swapBrush(cBrushData* brush, cBrushRecord* record) {
    cEntityData* owner = m_owner;
    touch(owner, UM_PLANES);
    if (brush->owner != owner) {
        record->entityId = brush->owner->id;
        touch(brush->owner, UM_PLANES);
        m_map.moveBrush(brush, owner);
    }
    swapFlags(brush->flags, record->flags, BF_DIRTY);
    uint8_t color[4];
    memcpy(color, brush->brush->baseColor, sizeof color);
    brush->brush->setBaseColor(record->baseColor);
    memcpy(record->baseColor, color, sizeof color);
    const uint32_t groupId = idOf(brush->group);
    setGroup(brush, record->groupId);
    record->groupId = groupId;
    if (record->withGeometry)
        swapGeometry(brush, record);
    else
        swapBrushTextures(brush, record);
    reselect(m_data.selectedBrushes, brush, record->flags);
}

void cRestore::swapBrushes(cBrushRecord* list) {
    for (cBrushRecord* record = list; record; record = record->next) {
        if (!ownerById(record->entityId, "Undo/Redo: no such entityId %i"))
            continue;
        if (cBrushData* brush = m_map.findBrushById(nullptr, record->id))
            swapBrush(brush, record);
        else
            Error("Undo/Redo: no such brushId %i", record->id);
    }
}

// ---- Groups

void cRestore::setParent(cGroupData* group, cGroupData* parent) {
    if (group->parent)
        --group->parent->memberCount;
    if (parent)
        ++parent->memberCount;
    group->parent = parent;
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

void cRestore::swapGroup(cGroupData* group, cGroupRecord* record) {
    uint8_t color[4];
    memcpy(color, group->group->baseColor, sizeof color);
    group->group->setBaseColor(record->baseColor);
    memcpy(record->baseColor, color, sizeof color);
    swapFlags(group->flags, record->flags, 0);
    const uint32_t parentId = idOf(group->parent);
    if (parentId != record->parentId) {
        setParent(group, record->parentId ? m_map.findGroupById(record->parentId) : nullptr);
        m_parentsChanged = true; // for objects below that this step does not name
        record->parentId = parentId;
    }
    if (record->flags & GF_SELECTED)
        selectGroupAlone(group);
}

void cRestore::swapGroups(cGroupRecord* list) {
    for (cGroupRecord* record = list; record; record = record->next) {
        if (cGroupData* group = m_map.findGroupById(record->id))
            swapGroup(group, record);
        else
            Error("Undo/Redo: no such groupId %i", record->id);
    }
}

// ---- Removal. Groups that this empties stay: the step itself says what becomes of them.

template<class T> void leaveGroup(T* object) {
    if (object->group)
        --object->group->memberCount;
    object->group = object->rootGroup = nullptr;
}

void cRestore::removeBrushes(cBrushRecord* list) {
    for (cBrushRecord* record = list; record; record = record->next) {
        const cEntityData* owner = m_map.findEntityById(record->entityId);
        cBrushData* brush = owner ? m_map.findBrushById(owner, record->id) : nullptr;
        if (!brush)
            continue;
        record->visGroups = serialsOf(brush->brush->visGroups);
        leaveGroup(brush);
        touch(brush->owner, UM_PLANES);
        m_map.freeBrush(brush);
    }
}

void cRestore::removeEntities(cEntityRecord* list) {
    for (cEntityRecord* record = list; record; record = record->next) {
        cEntityData* entity = m_map.findEntityById(record->id);
        if (!entity || (entity->flags & EF_WORLD))
            continue;
        record->visGroups = serialsOf(entity->entity->visGroups);
        leaveGroup(entity);
        m_touched.erase(entity);
        if (m_owner == entity)
            m_owner = nullptr;
        m_map.freeEntity(entity);
    }
}

void cRestore::removeGroups(const cGroupRecord* list) {
    for (const cGroupRecord* record = list; record; record = record->next) {
        cGroupData* group = m_map.findGroupById(record->id);
        if (!group)
            continue;
        if (isSelected(group))
            selectedRemove(m_data.selectedGroups, group);
        setParent(group, nullptr);
    }
    for (const cGroupRecord* record = list; record; record = record->next) {
        if (cGroupData* group = m_map.findGroupById(record->id))
            m_map.freeGroup(group);
    }
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

void cRestore::finish() {
    for (const auto& [entity, mode] : m_touched)
        updateEntity(entity, mode);
    if (m_parentsChanged)
        recomputeRoots();
    finishSelection();
    m_map.computeVisGroupVisibility();
    if (g_host)
        g_host->visGroupsChanged(m_map);
    m_map.dropHidden(); // describes the selection, too
}
} // namespace

void undoStep(cMap& map, cUndoStep& step) {
    const cBusy busy;
    cRestore restore(map);
    restore.remakeGroups(step.groupsDeleted);
    restore.remakeEntities(step.entitiesDeleted);
    restore.remakeBrushes(step.brushesDeleted);
    restore.swapFaces(step.facesChanged);
    restore.swapEntities(step.entitiesChanged);
    restore.swapBrushes(step.brushesChanged);
    restore.swapGroups(step.groupsChanged);
    restore.removeBrushes(step.brushesCreated);
    restore.removeEntities(step.entitiesCreated);
    restore.removeGroups(step.groupsCreated);
    restore.finish();
}

void redoStep(cMap& map, cUndoStep& step) {
    const cBusy busy;
    cRestore restore(map);
    restore.remakeGroups(step.groupsCreated);
    restore.remakeEntities(step.entitiesCreated);
    restore.remakeBrushes(step.brushesCreated);
    restore.swapEntities(step.entitiesChanged);
    restore.swapBrushes(step.brushesChanged);
    restore.swapGroups(step.groupsChanged);
    restore.swapFaces(step.facesChanged);
    restore.removeBrushes(step.brushesDeleted);
    restore.removeEntities(step.entitiesDeleted);
    restore.removeGroups(step.groupsDeleted);
    restore.finish();
}

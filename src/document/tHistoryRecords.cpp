// SPDX-License-Identifier: MIT
// Filling records from objects, and their pools.
#include "document/tHistoryRecords.h"

#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tGroup.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "support/tSystem.h"
#include "support/tVec.h"

#include <cstring>

namespace {
// A chain of released records of one kind. Each take gives a record whose fields are to be set.
template<class T> class cRecordPool {
public:
    T* take() {
        if (!m_free)
            return new T();
        T* record = m_free;
        m_free = record->next;
        return record;
    }
    void give(T* record) {
        record->next = m_free;
        m_free = record;
    }
    void freeAll() {
        while (T* record = m_free) {
            m_free = record->next;
            delete record;
        }
    }

private:
    T* m_free = nullptr;
};

cRecordPool<cEntityRecord> g_entityPool;
cRecordPool<cBrushRecord> g_brushPool;
cRecordPool<cFaceRecord> g_facePool;
cRecordPool<cGroupRecord> g_groupPool;
} // namespace

std::vector<uint32_t> serialsOf(const QList<cVisGroup*>& visGroups) {
    std::vector<uint32_t> serials;
    for (const cVisGroup* visGroup : visGroups)
        serials.push_back(visGroup->serial);
    return serials;
}

static uint32_t idOf(const cGroupData* group) {
    return group ? group->id : 0;
}

cEntityRecord* newEntityRecord(const cEntityData* entity) {
    cEntityRecord* record = g_entityPool.take();
    record->epairs = copyEpairs(entity->epairs);
    record->classname = Mem_StrDup(entity->classname ? entity->classname : "");
    record->flagsKey = entity->flagsKey ? Mem_StrDup(entity->flagsKey) : nullptr;
    record->spawnFlags = entity->spawnFlags;
    record->flags = entity->flags;
    record->id = entity->id;
    record->groupId = idOf(entity->group);
    vecCopy(entity->origin, record->origin);
    vecCopy(entity->angles, record->angles);
    vecCopy(entity->mins, record->mins);
    vecCopy(entity->maxs, record->maxs);
    memcpy(record->color, entity->entity->color, sizeof record->color);
    record->visGroups.clear();
    return record;
}

cFaceRecord* newFaceRecord(const cFaceData* face, bool withGeometry) {
    cFaceRecord* record = g_facePool.take();
    record->flags = face->flags;
    record->id = face->id;
    record->brushId = face->brush->id;
    record->entityId = face->brush->owner->id;
    record->tex = face->tex;
    record->vertexCount = withGeometry ? face->vertexCount : -1;
    record->points.clear();
    if (!withGeometry)
        return record;
    record->points.reserve(size_t(face->vertexCount) * 3);
    for (int i = 0; i < face->vertexCount; ++i)
        record->points.insert(record->points.end(), face->vertices[i].xyz,
                              face->vertices[i].xyz + 3);
    return record;
}

cBrushRecord* newBrushRecord(const cBrushData* brush, bool withGeometry) {
    cBrushRecord* record = g_brushPool.take();
    record->withGeometry = withGeometry;
    record->flags = brush->flags;
    record->id = brush->id;
    record->entityId = brush->owner->id;
    record->groupId = idOf(brush->group);
    record->reserved = brush->reserved;
    memcpy(record->baseColor, brush->brush->baseColor, sizeof record->baseColor);
    record->visGroups.clear();
    record->faces = nullptr;
    for (const cFaceData* face = brush->facesTail; face; face = face->prev) {
        cFaceRecord* faceRecord = newFaceRecord(face, withGeometry);
        faceRecord->next = record->faces;
        record->faces = faceRecord;
    }
    return record;
}

cGroupRecord* newGroupRecord(const cGroupData* group) {
    cGroupRecord* record = g_groupPool.take();
    record->flags = group->flags;
    record->id = group->id;
    record->parentId = idOf(group->parent);
    memcpy(record->baseColor, group->group->baseColor, sizeof record->baseColor);
    return record;
}

// ---- Release

void releaseRecord(cEntityRecord* record) {
    freeEpairs(record->epairs);
    Mem_Free(record->classname);
    Mem_Free(record->flagsKey);
    record->epairs = nullptr;
    record->classname = record->flagsKey = nullptr;
    g_entityPool.give(record);
}

template<class T> static void releaseChain(T*& head) {
    while (T* record = head) {
        head = record->next;
        releaseRecord(record);
    }
}

void releaseRecord(cFaceRecord* record) {
    g_facePool.give(record);
}

void releaseRecord(cBrushRecord* record) {
    releaseChain(record->faces);
    g_brushPool.give(record);
}

void releaseRecord(cGroupRecord* record) {
    g_groupPool.give(record);
}

void releaseStep(cUndoStep& step) {
    releaseChain(step.entitiesChanged);
    releaseChain(step.entitiesCreated);
    releaseChain(step.entitiesDeleted);
    releaseChain(step.brushesChanged);
    releaseChain(step.brushesCreated);
    releaseChain(step.brushesDeleted);
    releaseChain(step.facesChanged);
    releaseChain(step.groupsChanged);
    releaseChain(step.groupsCreated);
    releaseChain(step.groupsDeleted);
}

void freeAllRecords() {
    g_entityPool.freeAll();
    g_brushPool.freeAll();
    g_facePool.freeAll();
    g_groupPool.freeAll();
}

// ---- Sizes

static size_t bytesOf(const cFaceRecord* record) {
    size_t bytes = 0;
    for (; record; record = record->next)
        bytes += sizeof *record + record->points.capacity() * sizeof(float);
    return bytes;
}

static size_t bytesOf(const cBrushRecord* record) {
    size_t bytes = 0;
    for (; record; record = record->next)
        bytes += sizeof *record + bytesOf(record->faces);
    return bytes;
}

static size_t bytesOf(const cEntityRecord* record) {
    size_t bytes = 0;
    for (; record; record = record->next) {
        bytes += sizeof *record;
        for (const cEpair* pair = record->epairs; pair; pair = pair->next)
            bytes += sizeof *pair + strlen(pair->key) + strlen(pair->value) + 2;
    }
    return bytes;
}

static size_t bytesOf(const cGroupRecord* record) {
    size_t bytes = 0;
    for (; record; record = record->next)
        bytes += sizeof *record;
    return bytes;
}

size_t bytesOf(const cUndoStep& step) {
    return bytesOf(step.entitiesChanged) + bytesOf(step.entitiesCreated) +
           bytesOf(step.entitiesDeleted) + bytesOf(step.brushesChanged) +
           bytesOf(step.brushesCreated) + bytesOf(step.brushesDeleted) +
           bytesOf(step.facesChanged) + bytesOf(step.groupsChanged) + bytesOf(step.groupsCreated) +
           bytesOf(step.groupsDeleted);
}

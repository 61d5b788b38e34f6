// SPDX-License-Identifier: MIT
// Captures: records of objects into the open step.
#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tHistory.h"
#include "document/tHistoryRecords.h"
#include "document/tMap.h"
#include "document/tMapLists.h"

// False if this list of the step holds the object already.
static bool isFirst(cHistorySteps& steps, eRecordList list, uint32_t id) {
    return steps.captured[list].insert(id).second;
}

template<class T> static void push(T*& list, T* record) {
    record->next = list;
    list = record;
}

// ---- One object

void cHistory::entityChanged(const cEntityData* entity) {
    if (m_recording && entity && isFirst(*m_steps, RL_ENTITIES_CHANGED, entity->id))
        push(m_steps->undoTop->entitiesChanged, newEntityRecord(entity));
}

static cEntityRecord* wholeRecord(const cEntityData* entity) {
    cEntityRecord* record = newEntityRecord(entity);
    record->visGroups = serialsOf(entity->entity->visGroups);
    return record;
}

static cBrushRecord* wholeRecord(const cBrushData* brush) {
    cBrushRecord* record = newBrushRecord(brush, true);
    record->visGroups = serialsOf(brush->brush->visGroups);
    return record;
}

void cHistory::entityCreated(const cEntityData* entity) {
    if (m_recording && entity && isFirst(*m_steps, RL_ENTITIES_CREATED, entity->id))
        push(m_steps->undoTop->entitiesCreated, wholeRecord(entity));
}

void cHistory::entityDeleted(const cEntityData* entity) {
    if (m_recording && entity && isFirst(*m_steps, RL_ENTITIES_DELETED, entity->id))
        push(m_steps->undoTop->entitiesDeleted, wholeRecord(entity));
}

void cHistory::brushChanged(const cBrushData* brush, bool withGeometry) {
    if (m_recording && brush && isFirst(*m_steps, RL_BRUSHES_CHANGED, brush->id))
        push(m_steps->undoTop->brushesChanged, newBrushRecord(brush, withGeometry));
}

void cHistory::brushCreated(const cBrushData* brush) {
    if (m_recording && brush && isFirst(*m_steps, RL_BRUSHES_CREATED, brush->id))
        push(m_steps->undoTop->brushesCreated, wholeRecord(brush));
}

void cHistory::brushDeleted(const cBrushData* brush) {
    if (m_recording && brush && isFirst(*m_steps, RL_BRUSHES_DELETED, brush->id))
        push(m_steps->undoTop->brushesDeleted, wholeRecord(brush));
}

void cHistory::faceChanged(const cFaceData* face) {
    if (m_recording && face && isFirst(*m_steps, RL_FACES_CHANGED, face->id))
        push(m_steps->undoTop->facesChanged, newFaceRecord(face, false));
}

void cHistory::groupChanged(const cGroupData* group) {
    if (m_recording && group && isFirst(*m_steps, RL_GROUPS_CHANGED, group->id))
        push(m_steps->undoTop->groupsChanged, newGroupRecord(group));
}

void cHistory::groupCreated(const cGroupData* group) {
    if (m_recording && group && isFirst(*m_steps, RL_GROUPS_CREATED, group->id))
        push(m_steps->undoTop->groupsCreated, newGroupRecord(group));
}

void cHistory::groupDeleted(const cGroupData* group) {
    if (m_recording && group && isFirst(*m_steps, RL_GROUPS_DELETED, group->id))
        push(m_steps->undoTop->groupsDeleted, newGroupRecord(group));
}

// ---- All selected ones

void cHistory::entitiesChanged() {
    for (const cEntityData* entity : selectedEntitiesOf(m_map.data))
        entityChanged(entity);
}

void cHistory::entitiesCreated() {
    for (const cEntityData* entity : selectedEntitiesOf(m_map.data))
        entityCreated(entity);
}

void cHistory::entitiesDeleted() {
    for (const cEntityData* entity : selectedEntitiesOf(m_map.data))
        entityDeleted(entity);
}

void cHistory::brushesChanged(bool withGeometry) {
    for (const cBrushData* brush : selectedBrushesOf(m_map.data))
        brushChanged(brush, withGeometry);
}

void cHistory::brushesCreated() {
    for (const cBrushData* brush : selectedBrushesOf(m_map.data))
        brushCreated(brush);
}

void cHistory::brushesDeleted() {
    for (const cBrushData* brush : selectedBrushesOf(m_map.data))
        brushDeleted(brush);
}

void cHistory::facesChanged() {
    for (const cFaceData* face : selectedFacesOf(m_map.data))
        faceChanged(face);
}

void cHistory::groupsChanged() {
    for (const cGroupData* group : selectedGroupsOf(m_map.data))
        groupChanged(group);
}

void cHistory::groupsCreated() {
    for (const cGroupData* group : selectedGroupsOf(m_map.data))
        groupCreated(group);
}

void cHistory::groupsDeleted() {
    for (const cGroupData* group : selectedGroupsOf(m_map.data))
        groupDeleted(group);
}

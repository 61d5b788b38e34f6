// SPDX-License-Identifier: MIT
// Captures: states of objects into the open step.
#include "document/tHistory.h"
#include "document/tHistorySteps.h"
#include "document/tMap.h"
#include "document/tMapLists.h"

static constexpr unsigned WHOLE = TAKE_GEOMETRY | TAKE_VISGROUPS;

cObjectStates& cHistory::statesOf(eRecordList list) {
    cUndoStep& step = *m_steps->undo.back();
    return list == RL_CHANGED ? step.changed : list == RL_CREATED ? step.created : step.deleted;
}

// The list of states of the open step for an object that the list does not hold yet, else null.
cObjectStates* cHistory::listFor(eRecordList list, eKind kind, uint32_t id) {
    if (!m_recording)
        return nullptr;
    cCapturedIds& known = list == RL_CHANGED   ? m_steps->changed
                          : list == RL_CREATED ? m_steps->created
                                               : m_steps->deleted;
    auto& ids = kind == KIND_GROUP    ? known.groups
                : kind == KIND_ENTITY ? known.entities
                : kind == KIND_BRUSH  ? known.brushes
                                      : known.faces;
    if (!ids.insert(id))
        return nullptr;
    return &statesOf(list);
}

void cHistory::capture(eRecordList list, const cEntityData* entity) {
    cObjectStates* states = entity ? listFor(list, KIND_ENTITY, entity->id) : nullptr;
    if (states)
        states->take(entity, list == RL_CHANGED ? unsigned(TAKE_FIELDS) : TAKE_VISGROUPS);
}

void cHistory::capture(eRecordList list, const cBrushData* brush, bool withGeometry) {
    cObjectStates* states = brush ? listFor(list, KIND_BRUSH, brush->id) : nullptr;
    if (states)
        states->take(brush, list != RL_CHANGED ? WHOLE
                            : withGeometry     ? unsigned(TAKE_GEOMETRY)
                                               : TAKE_FIELDS);
}

void cHistory::capture(eRecordList list, const cGroupData* group) {
    cObjectStates* states = group ? listFor(list, KIND_GROUP, group->id) : nullptr;
    if (states)
        states->take(group);
}

void cHistory::faceChanged(const cFaceData* face) {
    cObjectStates* states = face ? listFor(RL_CHANGED, KIND_FACE, face->id) : nullptr;
    if (states)
        states->takeLone(face);
}

// ---- All selected ones

void cHistory::captureEntities(eRecordList list) {
    for (const cEntityData* entity : selectedEntitiesOf(m_map.data))
        capture(list, entity);
}

void cHistory::captureBrushes(eRecordList list, bool withGeometry) {
    if (!m_recording)
        return;
    cObjectStates::cBrushCounts counts;
    for (const cBrushData* brush : selectedBrushesOf(m_map.data))
        counts.add(brush);
    if (!withGeometry)
        counts.points = 0;
    statesOf(list).reserve(counts);
    for (const cBrushData* brush : selectedBrushesOf(m_map.data))
        capture(list, brush, withGeometry);
}

void cHistory::captureGroups(eRecordList list) {
    for (const cGroupData* group : selectedGroupsOf(m_map.data))
        capture(list, group);
}

void cHistory::facesChanged() {
    for (const cFaceData* face : selectedFacesOf(m_map.data))
        faceChanged(face);
}

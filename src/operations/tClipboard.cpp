// SPDX-License-Identifier: MIT
// Taking objects onto the clipboard, and cutting them out of the map.
#include "operations/tClipboard.h"

#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tGroup.h"
#include "document/tHistory.h"
#include "document/tHistoryRecords.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tHost.h"
#include "support/tMath.h"

#include <algorithm>
#include <map>

cClipboard* g_clipboard = nullptr;

cClipboard::cClipboard() {
    T_ClearBounds(m_mins, m_maxs);
}

cClipboard::~cClipboard() {
    forgetSource();
}

bool cClipboard::canCopy(const cMap& map) {
    return map.data.selectedBrushes || map.data.selectedEntities;
}

void cClipboard::forgetSource() {
    if (m_source)
        m_source->history->watchStep(0, nullptr);
    m_source = nullptr;
}

void cClipboard::clear() {
    forgetSource();
    m_entities.clear();
    m_brushes.clear();
    m_mode = PASTED;
    T_ClearBounds(m_mins, m_maxs);
}

// ---- Values of objects

template<class T> static void takeCommon(const T* object, cClipboard::cObjectCopy& copy) {
    for (const cGroupData* group = object->group; group; group = group->parent) {
        const uint8_t* c = group->group->baseColor;
        copy.groups.push_back({group->id, {c[0], c[1], c[2], c[3]}});
    }
}

static cClipboard::cFaceCopy copyOf(const cFaceData* face) {
    cClipboard::cFaceCopy copy;
    copy.tex = face->tex;
    copy.flags = face->flags & ~TRANSIENT_FLAGS;
    for (int i = 0; i < face->vertexCount; ++i) {
        const float* p = face->vertices[i].xyz;
        copy.points.push_back({p[0], p[1], p[2]});
    }
    return copy;
}

static cClipboard::cBrushCopy copyOf(const cBrushData* brush, bool withGroups) {
    cClipboard::cBrushCopy copy;
    if (withGroups)
        takeCommon(brush, copy);
    copy.visGroups = serialsOf(brush->brush->visGroups);
    copy.flags = brush->flags & ~TRANSIENT_FLAGS;
    copy.reserved = brush->reserved;
    std::copy(brush->brush->baseColor, brush->brush->baseColor + 4, copy.color.begin());
    for (const cFaceData* face : facesOf(brush))
        copy.faces.push_back(copyOf(face));
    return copy;
}

static cClipboard::cEntityCopy copyOf(const cEntityData* entity, bool withGroups) {
    cClipboard::cEntityCopy copy;
    if (withGroups)
        takeCommon(entity, copy);
    copy.visGroups = serialsOf(entity->entity->visGroups);
    copy.classname = entity->classname;
    copy.flagsKey = entity->flagsKey;
    copy.flags = entity->flags & ~TRANSIENT_FLAGS;
    copy.spawnFlags = entity->spawnFlags;
    std::copy(entity->origin, entity->origin + 3, copy.origin.begin());
    std::copy(entity->angles, entity->angles + 3, copy.angles.begin());
    std::copy(entity->entity->color, entity->entity->color + 4, copy.color.begin());
    for (const cEpair* pair : epairsOf(entity))
        copy.pairs.push_back({pair->key, pair->value});
    for (const cBrushData* brush : brushesOf(entity))
        copy.brushes.push_back(copyOf(brush, false));
    return copy;
}

// Oldest of the selection first, so that a paste that selects gives the same order again.
void cClipboard::takeSelection(cMap& map, bool withGroups) {
    for (const cEntityData* entity : selectedEntitiesOf(map.data)) {
        T_AddBoxToBounds(entity->mins, entity->maxs, m_mins, m_maxs);
        m_entities.push_back(copyOf(entity, withGroups));
    }
    for (const cBrushData* brush : selectedBrushesOf(map.data)) {
        if (isSelected(brush->owner))
            continue; // its entity has taken it
        T_AddBoxToBounds(brush->mins, brush->maxs, m_mins, m_maxs);
        const bool ofWorld = (brush->owner->flags & EF_WORLD) != 0;
        m_brushes.push_back(copyOf(brush, withGroups && ofWorld));
    }
    std::reverse(m_entities.begin(), m_entities.end());
    std::reverse(m_brushes.begin(), m_brushes.end());
    m_source = &map;
}

void cClipboard::copySelection(cMap& map, bool restore) {
    if (m_mode == CUT && restore)
        restoreCut();
    clear();
    m_mode = COPIED;
    takeSelection(map, map.updateSelectionMode() == MODE_GROUPS);
}

// ---- Cut

static void removeBrush(cMap& map, cHistory& history, cBrushData* brush) {
    history.brushDeleted(brush);
    map.leaveGroupBrush(brush, true, true); // groups stay for the undo, even when emptied
    map.freeBrush(brush);
}

void cClipboard::removeSelection(cMap& map) {
    cHistory& history = *map.history;
    for (cEntityData* entity : selectedEntitiesOf(map.data)) {
        history.entityDeleted(entity);
        for (cBrushData* brush : brushesOf(entity))
            removeBrush(map, history, brush);
        map.leaveGroupEntity(entity, true, true);
        map.freeEntity(entity);
    }
    std::map<uint32_t, cEntityData*> owners;
    for (cBrushData* brush : selectedBrushesOf(map.data)) {
        owners[brush->owner->id] = brush->owner;
        removeBrush(map, history, brush);
    }
    for (const auto& [id, owner] : owners) {
        if (!map.removeEmptySolidEntity(owner, true))
            updateEntity(owner, 0);
    }
}

void cClipboard::cutSelection(cMap& map, bool restore) {
    if (m_mode == CUT && restore)
        restoreCut();
    clear();
    {
        const cHistoryStep step(map, "Cut");
        takeSelection(map, map.updateSelectionMode() == MODE_GROUPS);
        removeSelection(map);
        m_mode = CUT;
        // What an undo has brought back must not be restored once more.
        map.history->watchStep(map.history->lastStep(), [this](bool undone) {
            if (m_mode != PASTED)
                m_mode = undone ? COPIED : CUT;
        });
    }
    map.clearSelection();
    map.computeVisGroupVisibility();
    map.markChanged();
    if (!g_host)
        return;
    g_host->visGroupsChanged(map);
    g_host->projectDirty(map.project);
}

void cClipboard::restoreCut() {
    if (!m_source)
        return;
    cPasteOptions inPlace;
    inPlace.select = false;
    paste(*m_source, inPlace, "Restore Cut");
}

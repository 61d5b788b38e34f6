// SPDX-License-Identifier: MIT
// Group, ungroup, delete, move to world, tie, detail.
#include "operations/tStructure.h"

#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tHistory.h"
#include "document/tMap.h"
#include "document/tMapContext.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "support/tHost.h"

#include <map>
#include <set>
#include <vector>

// Objects that are about to be touched while the selection changes under them.
static std::vector<cBrushData*> selectedBrushes(const cMap& map) {
    std::vector<cBrushData*> brushes;
    for (cBrushData* brush : selectedBrushesOf(map.data))
        brushes.push_back(brush);
    return brushes;
}

static std::vector<cEntityData*> selectedEntities(const cMap& map) {
    std::vector<cEntityData*> entities;
    for (cEntityData* entity : selectedEntitiesOf(map.data))
        entities.push_back(entity);
    return entities;
}

static bool isOfWorld(const cBrushData* brush) {
    return (brush->owner->flags & EF_WORLD) != 0;
}

// ---- Group and ungroup

// All that is selected lies in one outermost group already, or nothing is selected.
static bool isOneGroup(const cMap& map) {
    const cGroupData* root = nullptr;
    for (const cEntityData* entity : selectedEntitiesOf(map.data)) {
        if (!entity->rootGroup || (root && entity->rootGroup != root))
            return false;
        root = entity->rootGroup;
    }
    for (const cBrushData* brush : selectedBrushesOf(map.data)) {
        if (!isOfWorld(brush))
            continue;
        if (!brush->rootGroup || (root && brush->rootGroup != root))
            return false;
        root = brush->rootGroup;
    }
    return true;
}

// The groups that come to lie in the new one; one of them may not be selected itself.
static void captureRoots(const cMap& map, const cHistoryStep& step) {
    for (const cEntityData* entity : selectedEntitiesOf(map.data))
        step->groupChanged(entity->rootGroup);
    for (const cBrushData* brush : selectedBrushesOf(map.data)) {
        if (isOfWorld(brush))
            step->groupChanged(brush->rootGroup);
    }
}

bool groupSelection(cMap& map) {
    if (isOneGroup(map))
        return false;
    const cHistoryStep step(map, "Group");
    cGroupData* group = map.addGroup();
    step->groupsChanged();
    captureRoots(map, step);
    step->entitiesChanged();
    step->brushesChanged(false);
    for (cGroupData* former : selectedGroupsOf(map.data))
        map.deselect(former);
    map.select(group);
    step->groupCreated(group);
    map.joinSelection(group);
    return true;
}

// An object that is below one of the groups, to be seen before they go.
template<class T> static bool isBelow(const T* object, const std::set<const cGroupData*>& groups) {
    for (const cGroupData* group = object->group; group; group = group->parent) {
        if (groups.count(group))
            return true;
    }
    return false;
}

// Members that are hidden are not selected, and change all the same.
static void captureMembers(cMap& map, const cHistoryStep& step,
                           const std::vector<cGroupData*>& groups) {
    const std::set<const cGroupData*> going(groups.begin(), groups.end());
    for (const cEntityData* entity : entitiesOf(map.data)) {
        if (isBelow(entity, going))
            step->entityChanged(entity);
        for (const cBrushData* brush : brushesOf(entity)) {
            if (isBelow(brush, going))
                step->brushChanged(brush, false);
        }
    }
}

void ungroupSelection(cMap& map) {
    std::vector<cGroupData*> groups;
    for (cGroupData* group : selectedGroupsOf(map.data))
        groups.push_back(group);
    if (groups.empty())
        return;
    const cHistoryStep step(map, "Ungroup");
    step->entitiesChanged();
    step->brushesChanged(false);
    captureMembers(map, step, groups);
    for (cGroupData* group : groups)
        step->groupDeleted(group);
    map.dissolveGroups(groups, true);
    for (cGroupData* group : groups)
        map.freeGroup(group);
}

// ---- Delete

// The former owners of brushes, by id.
using cOwners = std::map<uint32_t, cEntityData*>;

// An owner that brushes have left is updated, or goes with its last one.
static void settleOwners(cMap& map, const cOwners& owners) {
    for (const auto& [id, owner] : owners) {
        if (!map.removeEmptySolidEntity(owner, true))
            updateEntity(owner, 0);
    }
}

void removeSelection(cMap& map) {
    cHistory& history = *map.history;
    history.entitiesDeleted();
    history.brushesDeleted();
    map.clearFaces();
    cOwners owners;
    for (cBrushData* brush : selectedBrushes(map)) {
        owners[brush->owner->id] = brush->owner;
        map.leaveGroupBrush(brush, false, true);
        map.freeBrush(brush);
    }
    settleOwners(map, owners);
    for (cEntityData* entity : selectedEntities(map)) {
        for (const cBrushData* brush : brushesOf(entity)) // hidden ones, never selected
            history.brushDeleted(brush);
        map.leaveGroupEntity(entity, false, true);
        map.freeEntity(entity);
    }
}

void deleteSelection(cMap& map) {
    if (!map.data.selectedBrushes && !map.data.selectedEntities)
        return;
    const cHistoryStep step(map, "Delete Selection");
    removeSelection(map);
    map.clearSelection();
}

// ---- Move to world and tie

static bool anyOutsideWorld(const cMap& map) {
    for (const cBrushData* brush : selectedBrushesOf(map.data)) {
        if (!isOfWorld(brush))
            return true;
    }
    return false;
}

void moveSelectionToWorld(cMap& map) {
    if (!anyOutsideWorld(map)) {
        map.clearSelection();
        return;
    }
    const cHistoryStep step(map, "Move to World");
    step->brushesChanged(false);
    step->entitiesChanged();
    cOwners owners;
    for (cBrushData* brush : selectedBrushes(map)) {
        if (isOfWorld(brush))
            continue;
        owners[brush->owner->id] = brush->owner;
        map.moveBrush(brush, map.world());
    }
    settleOwners(map, owners);
    map.dropForsakenGroups(); // an entity may have gone out of one that has hidden members
    updateEntity(map.world(), 0);
}

int countSelectedPoints(const cMap& map) {
    int count = 0;
    for (const cEntityData* entity : selectedEntitiesOf(map.data)) {
        if (entity->flags & EF_POINT)
            ++count;
    }
    return count;
}

void deselectPoints(cMap& map) {
    for (cEntityData* entity : selectedEntitiesOf(map.data)) {
        if (entity->flags & EF_POINT)
            map.deselect(entity);
    }
    map.dropForsakenGroups();
    map.describeSelection();
}

std::vector<cEntityData*> ownersOfSelection(const cMap& map) {
    std::vector<cEntityData*> owners;
    std::set<const cEntityData*> known;
    for (const cBrushData* brush : selectedBrushesOf(map.data)) {
        if (!isOfWorld(brush) && known.insert(brush->owner).second)
            owners.push_back(brush->owner);
    }
    return owners;
}

// A new entity is selected before it is noted, so that a redo selects it again.
static cEntityData* addTarget(cMap& map, const cHistoryStep& step, const char* className) {
    const float origin[3] = {0, 0, 0};
    cEntityData* entity = map.addEntity(className, origin, 0);
    resetEntityFromClass(entity);
    map.select(entity);
    step->entityCreated(entity);
    return entity;
}

cEntityData* tieSelectionToEntity(cMap& map, const char* className, cEntityData* target) {
    const cHistoryStep step(map, "Tie to Entity");
    step->brushesChanged(false);
    if (target)
        step->entityChanged(target);
    else
        target = addTarget(map, step, className);
    cOwners owners;
    for (cBrushData* brush : selectedBrushes(map)) {
        if (brush->owner == target)
            continue;
        owners[brush->owner->id] = brush->owner;
        map.leaveGroupBrush(brush, false, true);
        map.moveBrush(brush, target);
    }
    settleOwners(map, owners);
    map.selectEntity(target);
    map.dropForsakenGroups(); // their brushes have left them
    updateEntity(target, 0);
    return target;
}

// ---- Detail

static bool anyToChange(const cMap& map, uint32_t mask, bool detail) {
    for (const cBrushData* brush : selectedBrushesOf(map.data)) {
        for (const cFaceData* face : facesOf(brush)) {
            const uint32_t bits = face->tex.contentFlags & mask;
            if (detail ? bits != mask : bits != 0)
                return true;
        }
    }
    return false;
}

bool setSelectionDetail(cMap& map, bool detail) {
    const uint32_t mask = map.context.profile().detailContentMask;
    if (!anyToChange(map, mask, detail))
        return false;
    const cHistoryStep step(map, detail ? "Make Detail" : "Make Structural");
    step->brushesChanged(false);
    for (cBrushData* brush : selectedBrushesOf(map.data)) {
        for (cFaceData* face : facesOf(brush)) {
            const uint32_t bits = face->tex.contentFlags;
            face->tex.contentFlags = detail ? bits | mask : bits & ~mask;
        }
        noteChange(brush);
    }
    return true;
}

// SPDX-License-Identifier: MIT
// What is selected in a map, how much goes with a selected object, and the sentence that tells it.
#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tGroup.h"
#include "document/tMap.h"
#include "document/tMapChange.h"
#include "document/tMapLists.h"
#include "support/tHost.h"
#include "support/tMapText.h"

int cMap::wantedSelectionMode() const {
    if (g_host->picksFaces())
        return MODE_FACES;
    return g_host->IgnoreGroups ? MODE_SINGLE : MODE_GROUPS;
}

int cMap::updateSelectionMode() {
    return selectionMode = wantedSelectionMode();
}

bool cMap::hasSelection() const {
    return data.selectedGroups || data.selectedEntities || data.selectedBrushes;
}

// ---- Selecting

template<class T> static void pushOnce(T*& head, T* item) {
    if (!isSelected(item))
        selectedPush(head, item);
}

void cMap::select(cGroupData* group) {
    pushOnce(data.selectedGroups, group);
    ++m_revision;
}

void cMap::select(cEntityData* entity) {
    pushOnce(data.selectedEntities, entity);
    ++m_revision;
}

void cMap::select(cBrushData* brush) {
    pushOnce(data.selectedBrushes, brush);
    ++m_revision;
}

template<class T> static void removeSelected(T*& head, T* item) {
    if (isSelected(item))
        selectedRemove(head, item);
}

void cMap::deselect(cGroupData* group) {
    removeSelected(data.selectedGroups, group);
    ++m_revision;
}

void cMap::deselect(cEntityData* entity) {
    removeSelected(data.selectedEntities, entity);
    ++m_revision;
}

// The world itself is never selected.
void cMap::selectEntity(cEntityData* entity) {
    if (!(entity->flags & EF_WORLD))
        pushOnce(data.selectedEntities, entity);
    for (cBrushData* brush : brushesOf(entity))
        pushOnce(data.selectedBrushes, brush);
    ++m_revision;
}

void cMap::selectGroup(cGroupData* group) {
    selectUnits({group});
}

void cMap::selectUnits(const QSet<const cGroupData*>& roots) {
    if (roots.isEmpty())
        return;
    for (cGroupData* group : groupsOf(data)) {
        if (roots.contains(group))
            pushOnce(data.selectedGroups, group);
    }
    selectMembers(roots);
}

// How many objects lie below those outermost groups, by their counts.
static int objectsBelow(const cMapData& map, const QSet<const cGroupData*>& roots) {
    int count = 0;
    for (cGroupData* group : groupsOf(map)) {
        if (roots.contains(outermostGroup(group)))
            count += group->memberCount - (group->parent ? 1 : 0);
    }
    return count;
}

// Brings in all objects below those outermost groups. One walk, which ends with the last member,
// and none at all while all members are selected already.
void cMap::selectMembers(const QSet<const cGroupData*>& roots) {
    int left = objectsBelow(data, roots);
    const auto isMember = [&](const auto* object) {
        return object->rootGroup && roots.contains(object->rootGroup);
    };
    for (const cEntityData* entity : selectedEntitiesOf(data))
        left -= isMember(entity) ? 1 : 0;
    for (const cBrushData* brush : selectedBrushesOf(data))
        left -= isMember(brush) ? 1 : 0;
    const auto isMissing = [&](const auto* object) {
        const bool missing = isMember(object) && !isSelected(object);
        left -= missing ? 1 : 0;
        return missing;
    };
    for (cEntityData* entity = data.entities; entity && left > 0; entity = entity->next) {
        if (isMissing(entity))
            selectEntity(entity);
        if (!(entity->flags & EF_WORLD))
            continue;
        for (cBrushData* brush = entity->brushes; brush && left > 0; brush = brush->next) {
            if (isMissing(brush))
                selectedPush(data.selectedBrushes, brush);
        }
    }
    ++m_revision;
}

// The outermost groups that selected objects lie in.
QSet<const cGroupData*> cMap::selectedRoots() const {
    QSet<const cGroupData*> roots;
    for (const cEntityData* entity : selectedEntitiesOf(data)) {
        if (entity->rootGroup)
            roots.insert(entity->rootGroup);
    }
    for (const cBrushData* brush : selectedBrushesOf(data)) {
        if (brush->rootGroup)
            roots.insert(brush->rootGroup);
    }
    return roots;
}

void cMap::selectRoots() {
    if (updateSelectionMode() != MODE_GROUPS)
        return;
    // A group inside another one acts through its outermost group alone.
    for (cGroupData* group : selectedGroupsOf(data)) {
        if (group->parent)
            selectedRemove(data.selectedGroups, group);
    }
    selectUnits(selectedRoots());
    describeSelection();
}

void cMap::selectAll() {
    if (updateSelectionMode() == MODE_GROUPS) {
        for (cGroupData* group : groupsOf(data)) {
            if (!group->parent && !(group->flags & GF_HIDDEN) && group->memberCount > 0)
                pushOnce(data.selectedGroups, group);
        }
    }
    for (cEntityData* entity : entitiesOf(data)) {
        if (!entityVisible(entity))
            continue;
        if (!(entity->flags & EF_WORLD))
            pushOnce(data.selectedEntities, entity);
        for (cBrushData* brush : brushesOf(entity)) {
            if (brushVisible(brush))
                pushOnce(data.selectedBrushes, brush);
        }
    }
    describeSelection();
}

void cMap::selectBrushByIndex(int entityIndex, int brushIndex, bool skipHidden) {
    for (cEntityData* entity : entitiesOf(data)) {
        if ((skipHidden && !entityVisible(entity)) || entityIndex-- != 0)
            continue;
        for (cBrushData* brush : brushesOf(entity)) {
            if ((skipHidden && !brushVisible(brush)) || brushIndex-- != 0)
                continue;
            pushOnce(data.selectedBrushes, brush);
            break;
        }
        break;
    }
    describeSelection();
}

// ---- Dropping

void cMap::selectFacesOfBrushes() {
    selectedClear(data.selectedGroups);
    selectedClear(data.selectedEntities);
    for (cBrushData* brush : selectedBrushesOf(data)) {
        selectedRemove(data.selectedBrushes, brush);
        for (cFaceData* face : facesOf(brush))
            pushOnce(data.selectedFaces, face);
    }
    describeSelection();
}

int cMap::selectOnly(const std::vector<cFaceData*>& faces) {
    const cMapChange change(*this, MC_SELECTION);
    const bool picksFaces = updateSelectionMode() == MODE_FACES;
    clearSelection();
    int count = 0;
    for (cFaceData* face : faces) {
        if (isSelected(face->brush))
            continue;
        ++count;
        if (picksFaces)
            pushOnce(data.selectedFaces, face);
        else
            pushOnce(data.selectedBrushes, face->brush);
    }
    describeSelection();
    return count;
}

void cMap::clearFaces() {
    selectedClear(data.selectedFaces);
    describeSelection();
}

void cMap::clearSelection() {
    selectedClear(data.selectedGroups);
    selectedClear(data.selectedEntities);
    selectedClear(data.selectedBrushes);
    selectedClear(data.selectedFaces);
    describeSelection();
}

template<class T> static void unflag(T* item) {
    item->flags &= ~uint32_t(OF_SELECTED);
    item->nextSelected = item->prevSelected = nullptr;
}

void cMap::clearSelectionFull() {
    for (cGroupData* group : groupsOf(data))
        unflag(group);
    for (cEntityData* entity : entitiesOf(data)) {
        unflag(entity);
        for (cBrushData* brush : brushesOf(entity)) {
            unflag(brush);
            for (cFaceData* face : facesOf(brush))
                unflag(face);
        }
    }
    data.selectedGroups = nullptr;
    data.selectedEntities = nullptr;
    data.selectedBrushes = nullptr;
    data.selectedFaces = nullptr;
    describeSelection();
}

template<class T, T* T::*Next, class Test>
static bool dropUnless(T*& head, cListRange<T, Next> range, Test keeps) {
    bool dropped = false;
    for (T* item : range) {
        if (keeps(item))
            continue;
        selectedRemove(head, item);
        dropped = true;
    }
    return dropped;
}

void cMap::dropForsakenGroups() {
    if (!data.selectedGroups)
        return;
    const QSet<const cGroupData*> roots = selectedRoots();
    dropUnless(data.selectedGroups, selectedGroupsOf(data),
               [&](const cGroupData* group) { return roots.contains(group); });
}

void cMap::dropHidden() {
    const auto brushShown = [](const cBrushData* brush) {
        return brushVisible(brush) && entityVisible(brush->owner);
    };
    dropUnless(data.selectedGroups, selectedGroupsOf(data),
               [](const cGroupData* group) { return !(group->flags & GF_HIDDEN); });
    dropUnless(data.selectedFaces, selectedFacesOf(data),
               [&](const cFaceData* face) { return brushShown(face->brush); });
    bool dropped = dropUnless(data.selectedBrushes, selectedBrushesOf(data), brushShown);
    dropped |= dropUnless(data.selectedEntities, selectedEntitiesOf(data), entityVisible);
    if (dropped)
        dropForsakenGroups();
    describeSelection();
}

// ---- The sentence

int cMap::countSelectedUnits() const {
    int count = 0;
    if (selectionMode == MODE_GROUPS) {
        for ([[maybe_unused]] const cGroupData* group : selectedGroupsOf(data))
            ++count;
    }
    for (const cEntityData* entity : selectedEntitiesOf(data)) {
        const bool inGroup =
            selectionMode == MODE_GROUPS && entity->rootGroup && isSelected(entity->rootGroup);
        count += inGroup ? 0 : 1;
    }
    return count;
}

int cMap::countSelectedSolids() const {
    int count = 0;
    for (const cBrushData* brush : selectedBrushesOf(data)) {
        const bool own =
            (brush->owner->flags & EF_WORLD) && !(brush->rootGroup && isSelected(brush->rootGroup));
        count += selectionMode != MODE_GROUPS || own ? 1 : 0;
    }
    return count;
}

QString cMap::entitySentence() const {
    const cEntityData* entity = data.selectedEntities;
    const QString classname = fromMapText(entity->classname);
    const char* target = getEpairValue(entity, "targetname");
    if (!target || !*target)
        return classname;
    return QStringLiteral("%1 - %2").arg(classname, fromMapText(target));
}

static int faceCount(const cBrushData* brush) {
    int count = 0;
    for ([[maybe_unused]] const cFaceData* face : facesOf(brush))
        ++count;
    return count;
}

QString cMap::selectionSentence() const {
    if (data.selectedFaces) {
        int faces = 0;
        for ([[maybe_unused]] const cFaceData* face : selectedFacesOf(data))
            ++faces;
        return faces == 1 ? QStringLiteral("1 face selected.")
                          : QStringLiteral("%1 faces selected.").arg(faces);
    }
    int count = countSelectedUnits();
    const int solids = countSelectedSolids();
    count += solids;
    if (data.selectedBrushes && selectionMode != MODE_GROUPS) {
        for (const cEntityData* entity : selectedEntitiesOf(data))
            count -= entity->brushes ? 1 : 0;
    }
    if (count == 0)
        return data.selectedBrushes ? QStringLiteral("%1 objects selected.").arg(count)
                                    : QStringLiteral("no selection.");
    if (count != 1)
        return QStringLiteral("%1 objects selected.").arg(count);
    if (selectionMode == MODE_GROUPS && data.selectedGroups)
        return QStringLiteral("group of %1 objects.").arg(data.selectedGroups->memberCount);
    if (solids == 1)
        return QStringLiteral("solid with %1 faces.").arg(faceCount(data.selectedBrushes));
    return data.selectedEntities ? entitySentence()
                                 : QStringLiteral("%1 objects selected.").arg(count);
}

void cMap::describeSelection() {
    updateSelectionMode();
    changed(MC_SELECTION);
}

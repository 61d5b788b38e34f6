// SPDX-License-Identifier: MIT
// Visgroups of a map, their members, and hiding by them or by hand.
#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "document/tVisGroup.h"
#include "support/tHost.h"

#include <algorithm>

static void tellVisGroups(cMap& map) {
    map.changed(MC_VISGROUPS | MC_OBJECTS);
}

static void markDirty(cMap& map) {
    map.changed(MC_VISGROUPS | MC_OBJECTS | MC_EDITED);
}

cVisGroup* cMap::createVisGroup(const char* name) {
    auto* visGroup = new cVisGroup(name);
    m_visGroupsBySerial.insert(visGroup->serial, visGroup);
    do { // past the ids that came in from outside
        visGroup->id = nextId(lastVisGroupId);
    } while (visGroups.contains(visGroup->id));
    visGroups.insert(visGroup->id, visGroup);
    markDirty(*this);
    return visGroup;
}

cVisGroup* cMap::findVisGroup(uint32_t id) const {
    return visGroups.value(id);
}

const std::vector<cVisGroup*>& cMap::visGroupList() const {
    if (m_visGroupList.empty())
        m_visGroupList.assign(visGroups.begin(), visGroups.end());
    return m_visGroupList;
}

int cMap::visGroupIndex(uint32_t id) const {
    const std::vector<cVisGroup*>& list = visGroupList();
    const auto place =
        std::lower_bound(list.begin(), list.end(), id, [](const cVisGroup* visGroup, uint32_t key) {
            return visGroup->id < key;
        });
    return place != list.end() && (*place)->id == id ? int(place - list.begin()) : -1;
}

cVisGroup* cMap::findVisGroupBySerial(uint32_t serial) const {
    return m_visGroupsBySerial.value(serial);
}

void cMap::setVisGroupId(cVisGroup* visGroup, uint32_t id) {
    if (visGroup->id == id || visGroups.contains(id))
        return;
    visGroups.remove(visGroup->id);
    visGroup->id = id;
    visGroups.insert(id, visGroup);
    lastVisGroupId = std::max(lastVisGroupId, id);
    tellVisGroups(*this);
}

void cMap::clearVisGroups() {
    freeVisGroups();
    tellVisGroups(*this);
}

void cMap::freeVisGroups() {
    for (cEntityData* entity : entitiesOf(data)) {
        entity->entity->visGroups.clear();
        for (cBrushData* brush : brushesOf(entity))
            brush->brush->visGroups.clear();
    }
    qDeleteAll(visGroups);
    visGroups.clear();
    m_visGroupsBySerial.clear();
    forgetVisGroupList();
    noteChange(*this);
    lastVisGroupId = 0;
}

void cMap::renumberVisGroups() {
    const QList<cVisGroup*> inOrder = visGroups.values();
    visGroups.clear();
    lastVisGroupId = 0;
    for (cVisGroup* visGroup : inOrder) {
        visGroup->id = nextId(lastVisGroupId);
        visGroups.insert(visGroup->id, visGroup);
    }
    tellVisGroups(*this);
}

void cMap::removeVisGroup(cVisGroup* visGroup) {
    for (cEntityData* entity : entitiesOf(data)) {
        entity->entity->removeFromVisGroup(visGroup);
        for (cBrushData* brush : brushesOf(entity))
            brush->brush->removeFromVisGroup(visGroup);
    }
    visGroups.remove(visGroup->id);
    m_visGroupsBySerial.remove(visGroup->serial);
    delete visGroup;
    markDirty(*this);
}

bool cMap::mergeVisGroups(uint32_t sourceId, uint32_t targetId) {
    cVisGroup* source = findVisGroup(sourceId);
    cVisGroup* target = findVisGroup(targetId);
    if (!source || !target || source == target)
        return false;
    for (cEntityData* entity : entitiesOf(data)) {
        if (entity->entity->visGroups.contains(source))
            entity->entity->addToVisGroup(target);
        for (cBrushData* brush : brushesOf(entity)) {
            if (brush->brush->visGroups.contains(source))
                brush->brush->addToVisGroup(target);
        }
    }
    removeVisGroup(source);
    computeVisGroupVisibility();
    return true;
}

bool cMap::purgeVisGroups() {
    bool purged = false;
    for (cVisGroup* visGroup : visGroups.values()) {
        if (visGroup->objectCount > 0)
            continue;
        visGroups.remove(visGroup->id);
        m_visGroupsBySerial.remove(visGroup->serial);
        delete visGroup;
        purged = true;
    }
    if (!purged)
        return false;
    renumberVisGroups();
    markDirty(*this);
    return true;
}

void cMap::computeVisGroupVisibility() {
    int left = 0; // visgroups of which no shown member is known yet
    for (cVisGroup* visGroup : visGroups) {
        visGroup->visible = false;
        left += visGroup->objectCount > 0 ? 1 : 0;
    }
    const auto show = [&left](const QList<cVisGroup*>& memberships) {
        for (cVisGroup* visGroup : memberships) {
            left -= visGroup->visible ? 0 : 1;
            visGroup->visible = true;
        }
    };
    for (const cEntityData* entity = data.entities; entity && left > 0; entity = entity->next) {
        if (!(entity->flags & (EF_WORLD | EF_HIDDEN)))
            show(entity->entity->visGroups);
        for (const cBrushData* brush = entity->brushes; brush && left > 0; brush = brush->next) {
            if (!(brush->flags & BF_HIDDEN))
                show(brush->brush->visGroups);
        }
    }
}

// ---- Members

void cMap::assignVisGroup(uint32_t id) {
    cVisGroup* visGroup = findVisGroup(id);
    if (!visGroup || (!data.selectedEntities && !data.selectedBrushes))
        return;
    for (cEntityData* entity : selectedEntitiesOf(data))
        entity->entity->addToVisGroup(visGroup);
    for (cBrushData* brush : selectedBrushesOf(data))
        brush->brush->addToVisGroup(visGroup);
    computeVisGroupVisibility();
    markDirty(*this);
}

void cMap::markVisGroup(uint32_t id) {
    cVisGroup* visGroup = findVisGroup(id);
    if (!visGroup)
        return;
    clearSelection();
    for (cEntityData* entity : entitiesOf(data)) {
        const bool whole =
            !(entity->flags & EF_WORLD) && entity->entity->visGroups.contains(visGroup);
        if (whole && !(entity->flags & EF_HIDDEN))
            selectedPush(data.selectedEntities, entity);
        else if (whole)
            continue;
        for (cBrushData* brush : brushesOf(entity)) {
            if (!(brush->flags & BF_HIDDEN) &&
                (whole || brush->brush->visGroups.contains(visGroup)))
                selectedPush(data.selectedBrushes, brush);
        }
    }
    describeSelection();
}

// ---- Showing and hiding

static void noteChange(const cGroupData*) {} // shows nothing of its own

template<class T> static void setHidden(T* object, bool hide) {
    if (((object->flags & OF_HIDDEN) != 0) == hide)
        return;
    object->flags ^= uint32_t(OF_HIDDEN);
    noteChange(object);
}

void cMap::setVisGroupVisible(cVisGroup* visGroup) {
    const bool hide = visGroup->visible;
    for (cEntityData* entity : entitiesOf(data)) {
        const bool whole =
            !(entity->flags & EF_WORLD) && entity->entity->visGroups.contains(visGroup);
        if (whole)
            setHidden(entity, hide);
        for (cBrushData* brush : brushesOf(entity)) {
            if (whole || brush->brush->visGroups.contains(visGroup))
                setHidden(brush, hide);
        }
    }
    if (hide)
        dropHidden();
    if (visGroup->objectCount < 1)
        visGroup->visible = !hide;
    else
        computeVisGroupVisibility();
    tellVisGroups(*this);
}

static void finishHiding(cMap& map) {
    map.dropHidden();
    map.computeVisGroupVisibility();
    tellVisGroups(map);
}

bool cMap::hideSelection() {
    if (!data.selectedEntities && !data.selectedBrushes)
        return false;
    for (cEntityData* entity : selectedEntitiesOf(data))
        setHidden(entity, true);
    for (cBrushData* brush : selectedBrushesOf(data))
        setHidden(brush, true);
    for (cGroupData* group : selectedGroupsOf(data))
        setHidden(group, true);
    finishHiding(*this);
    return true;
}

bool cMap::hideUnselected() {
    if (!data.selectedEntities && !data.selectedBrushes)
        return false;
    for (cEntityData* entity : entitiesOf(data)) {
        bool holdsSelected = (entity->flags & (EF_WORLD | EF_SELECTED)) != 0;
        for (cBrushData* brush : brushesOf(entity)) {
            if (isSelected(brush))
                holdsSelected = true;
            else
                setHidden(brush, true);
        }
        if (!holdsSelected)
            setHidden(entity, true);
    }
    finishHiding(*this);
    return true;
}

template<class T> static int reveal(T* object) {
    if (!(object->flags & OF_HIDDEN))
        return 0;
    setHidden(object, false);
    return 1;
}

cMap::cRevealed cMap::showHidden() {
    cRevealed revealed;
    for (cEntityData* entity : entitiesOf(data)) {
        revealed.entities += reveal(entity);
        for (cBrushData* brush : brushesOf(entity))
            revealed.brushes += reveal(brush);
    }
    for (cGroupData* group : groupsOf(data))
        revealed.groups += reveal(group);
    if (revealed.total() == 0)
        return revealed;
    computeVisGroupVisibility();
    tellVisGroups(*this);
    return revealed;
}

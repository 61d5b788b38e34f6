// SPDX-License-Identifier: MIT
// Groups and visgroups of a map.
#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tGroup.h"
#include "document/tHistory.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "support/tConsole.h"
#include "support/tHost.h"

// ---- Joining

static bool onChain(const cGroupData* chain, const cGroupData* group) {
    for (; chain; chain = chain->parent) {
        if (chain == group)
            return true;
    }
    return false;
}

// A group has got another parent: all objects below it have another outermost group.
static void moveRoots(cMapData& map, const cGroupData* moved, const cGroupData* formerRoot) {
    if (moved->memberCount <= 0)
        return;
    const auto move = [moved, formerRoot](auto* object) {
        if (object->rootGroup == formerRoot && onChain(object->group, moved))
            object->rootGroup = outermostGroup(object->group);
    };
    for (cEntityData* entity : entitiesOf(map)) {
        move(entity);
        for (cBrushData* brush : brushesOf(entity))
            move(brush);
    }
}

// What an object's joining does to the groups; false: it is in that group already, below others.
template<class T> static bool joinGroup(cMapData& map, T* object, cGroupData* group) {
    if (onChain(object->group, group)) {
        if (group->parent)
            return false;
        object->rootGroup = group;
        return true;
    }
    if (cGroupData* root = object->rootGroup) {
        // A chain that came back to its own root would have no end.
        if (onChain(group, root))
            return false;
        // The object's whole group becomes a child, once, however many members join.
        if (root->parent != group) {
            root->parent = group;
            ++group->memberCount;
            moveRoots(map, root, root);
        }
    } else {
        object->group = group;
        ++group->memberCount;
    }
    object->rootGroup = outermostGroup(group);
    return true;
}

void cMap::joinGroupEntity(cEntityData* entity, cGroupData* group) {
    if (!joinGroup(data, entity, group))
        Warning("duplicate group for entity %s", entity->classname ? entity->classname : "");
    markChanged();
}

void cMap::joinGroupBrush(cBrushData* brush, cGroupData* group) {
    if (!joinGroup(data, brush, group))
        Warning("duplicate group for brush");
    markChanged();
}

void cMap::joinGroupGroup(cGroupData* child, cGroupData* group) {
    // A chain that came back to the child would have no end.
    if (onChain(child->parent, group) || onChain(group, child)) {
        Warning("duplicate group for another group");
        return;
    }
    const cGroupData* formerRoot = outermostGroup(child);
    if (child->parent)
        --child->parent->memberCount;
    child->parent = group;
    ++group->memberCount;
    moveRoots(data, child, formerRoot);
    markChanged();
}

// ---- Dissolving and leaving

template<class T> static void liftOut(T* object, cGroupData* group) {
    if (object->group == group) {
        --group->memberCount;
        object->group = group->parent;
        if (group->parent)
            ++group->parent->memberCount;
    }
    if (object->rootGroup != group)
        return;
    object->rootGroup = object->group;
    while (object->rootGroup && object->rootGroup->parent && object->rootGroup->parent != group)
        object->rootGroup = object->rootGroup->parent;
}

void cMap::dissolveGroup(cGroupData* group, bool select) {
    for (cEntityData* entity : entitiesOf(data)) {
        if (!(entity->flags & EF_WORLD))
            liftOut(entity, group);
        for (cBrushData* brush : brushesOf(entity))
            liftOut(brush, group);
    }
    for (cGroupData* child : groupsOf(data)) {
        if (child->parent != group)
            continue;
        if (select && !isSelected(child))
            selectedPush(data.selectedGroups, child);
        --group->memberCount;
        child->parent = group->parent;
        if (group->parent)
            ++group->parent->memberCount;
    }
    markChanged();
}

void cMap::removeEmptiedGroups(cGroupData* group, bool record, const char* message,
                               const char* classname) {
    while (group) {
        cGroupData* parent = group->parent;
        if (group->memberCount <= 0) {
            Print(message, classname);
            if (record)
                history->groupDeleted(group);
            if (isSelected(group))
                selectedRemove(data.selectedGroups, group);
            if (parent)
                --parent->memberCount;
            picks.give(group->group->pickId);
            listRemove(data.groups, group);
            m_groupsById.remove(group->id);
            releaseGroup(group);
        }
        group = parent;
    }
}

template<class T> static cGroupData* takeOut(T* object) {
    cGroupData* group = object->group;
    if (group)
        --group->memberCount;
    object->group = object->rootGroup = nullptr;
    return group;
}

void cMap::leaveGroupEntity(cEntityData* entity, bool keepEmpty, bool record) {
    cGroupData* group = takeOut(entity);
    if (!keepEmpty)
        removeEmptiedGroups(group, record, "removing the whole group: last entity deleted (%s)",
                            entity->classname ? entity->classname : "");
}

void cMap::leaveGroupBrush(cBrushData* brush, bool keepEmpty, bool record) {
    cGroupData* group = takeOut(brush);
    if (!keepEmpty)
        removeEmptiedGroups(group, record, "removing the whole group: last brush deleted%s", "");
}

void cMap::freeGroup(cGroupData* group) {
    if (isSelected(group))
        selectedRemove(data.selectedGroups, group);
    dissolveGroup(group, false);
    if (group->parent)
        --group->parent->memberCount;
    picks.give(group->group->pickId);
    listRemove(data.groups, group);
    m_groupsById.remove(group->id);
    releaseGroup(group);
    markChanged();
}

// ---- Visgroups

static void markDirty(cMap& map) {
    map.markChanged();
    if (g_host)
        g_host->projectDirty(map.project);
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
}

void cMap::clearVisGroups() {
    for (cEntityData* entity : entitiesOf(data)) {
        entity->entity->visGroups.clear();
        for (cBrushData* brush : brushesOf(entity))
            brush->brush->visGroups.clear();
    }
    qDeleteAll(visGroups);
    visGroups.clear();
    m_visGroupsBySerial.clear();
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
    for (cVisGroup* visGroup : visGroups)
        visGroup->visible = false;
    if (visGroups.isEmpty())
        return;
    for (const cEntityData* entity : entitiesOf(data)) {
        if (!(entity->flags & (EF_WORLD | EF_HIDDEN))) {
            for (cVisGroup* visGroup : entity->entity->visGroups)
                visGroup->visible = true;
        }
        for (const cBrushData* brush : brushesOf(entity)) {
            if (brush->flags & BF_HIDDEN)
                continue;
            for (cVisGroup* visGroup : brush->brush->visGroups)
                visGroup->visible = true;
        }
    }
}

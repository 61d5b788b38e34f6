// SPDX-License-Identifier: MIT
// Groups of a map: joining, dissolving, leaving.
#include "document/tGroup.h"
#include "document/tHistory.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "support/tConsole.h"

// ---- Joining

static bool onChain(const cGroupData* chain, const cGroupData* group) {
    for (; chain; chain = chain->parent) {
        if (chain == group)
            return true;
    }
    return false;
}

// After a group has got another parent or gone: every grouped object's outermost group anew.
static void renewRoots(cMapData& map) {
    const auto renew = [](auto* object) {
        if (object->group)
            object->rootGroup = outermostGroup(object->group);
    };
    for (cEntityData* entity : entitiesOf(map)) {
        renew(entity);
        if (!(entity->flags & EF_WORLD))
            continue; // brushes of solid entities are never grouped
        for (cBrushData* brush : brushesOf(entity))
            renew(brush);
    }
}

enum class eJoined {
    No,          // it is in that group already, below others
    Alone,       // as the object itself
    WithItsGroup // as a member of a group that became a child: other objects have another root now
};

template<class T> static eJoined joinGroup(T* object, cGroupData* group) {
    if (onChain(object->group, group)) {
        if (group->parent)
            return eJoined::No;
        object->rootGroup = group;
        return eJoined::Alone;
    }
    eJoined joined = eJoined::Alone;
    if (cGroupData* root = object->rootGroup) {
        // A chain that came back to its own root would have no end.
        if (onChain(group, root))
            return eJoined::No;
        // The object's whole group becomes a child, once, however many members join.
        setParent(root, group);
        ++group->memberCount;
        joined = eJoined::WithItsGroup;
    } else {
        object->group = group;
        ++group->memberCount;
        noteChange(object);
    }
    object->rootGroup = outermostGroup(group);
    return joined;
}

static eJoined joinWithWarning(cEntityData* entity, cGroupData* group) {
    const eJoined joined = joinGroup(entity, group);
    if (joined == eJoined::No)
        Warning("duplicate group for entity %s", entity->classname ? entity->classname : "");
    return joined;
}

static eJoined joinWithWarning(cBrushData* brush, cGroupData* group) {
    const eJoined joined = joinGroup(brush, group);
    if (joined == eJoined::No)
        Warning("duplicate group for brush");
    return joined;
}

void cMap::joinGroupEntity(cEntityData* entity, cGroupData* group) {
    if (joinWithWarning(entity, group) == eJoined::WithItsGroup)
        renewRoots(data);
    markChanged();
}

void cMap::joinGroupBrush(cBrushData* brush, cGroupData* group) {
    if (joinWithWarning(brush, group) == eJoined::WithItsGroup)
        renewRoots(data);
    markChanged();
}

void cMap::joinSelection(cGroupData* group) {
    bool nested = false;
    for (cEntityData* entity : selectedEntitiesOf(data))
        nested |= joinWithWarning(entity, group) == eJoined::WithItsGroup;
    for (cBrushData* brush : selectedBrushesOf(data)) {
        if (brush->owner->flags & EF_WORLD)
            nested |= joinWithWarning(brush, group) == eJoined::WithItsGroup;
    }
    if (nested)
        renewRoots(data);
    markChanged();
}

void cMap::joinGroupGroup(cGroupData* child, cGroupData* group) {
    // A chain that came back to the child would have no end. Nothing lies in a group without
    // members, so that the chain above the other one need not be walked.
    if (onChain(child->parent, group) || child == group ||
        (child->memberCount > 0 && onChain(group, child))) {
        Warning("duplicate group for another group");
        return;
    }
    if (child->parent)
        --child->parent->memberCount;
    setParent(child, group);
    ++group->memberCount;
    if (child->memberCount > 0)
        renewRoots(data);
    markChanged();
}

// ---- Dissolving and leaving

using cGroupSet = QSet<const cGroupData*>;

static cGroupData* firstKept(cGroupData* group, const cGroupSet& dissolved) {
    while (group && dissolved.contains(group))
        group = group->parent;
    return group;
}

// A member, object or group, of a dissolved group goes up to the first group that stays.
static bool liftMember(cGroupData*& membership, const cGroupSet& dissolved) {
    cGroupData* group = membership;
    if (!group || !dissolved.contains(group))
        return false;
    --group->memberCount;
    membership = firstKept(group, dissolved);
    if (membership)
        ++membership->memberCount;
    return true;
}

void cMap::dissolveGroup(cGroupData* group, bool select) {
    dissolveGroups({group}, select);
}

void cMap::dissolveGroups(const std::vector<cGroupData*>& groups, bool select) {
    cGroupSet dissolved;
    for (const cGroupData* group : groups)
        dissolved.insert(group);
    std::vector<cGroupData*> children;
    for (cGroupData* group : groupsOf(data)) {
        if (group->parent && dissolved.contains(group->parent) && !dissolved.contains(group))
            children.push_back(group);
    }
    for (cGroupData* child : children) {
        if (select) {
            if (!isSelected(child))
                selectedPush(data.selectedGroups, child);
            history->groupChanged(child); // as selected, for the redo
        }
        cGroupData* parent = child->parent;
        liftMember(parent, dissolved);
        setParent(child, parent);
    }
    const auto lift = [&](auto* object) {
        if (liftMember(object->group, dissolved))
            noteChange(object);
        if (object->rootGroup)
            object->rootGroup = outermostGroup(object->group);
    };
    for (cEntityData* entity : entitiesOf(data)) {
        lift(entity);
        if (!(entity->flags & EF_WORLD))
            continue;
        for (cBrushData* brush : brushesOf(entity))
            lift(brush);
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
    noteChange(object);
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
    if (group->memberCount > 0)
        dissolveGroup(group, false);
    if (group->parent)
        --group->parent->memberCount;
    picks.give(group->group->pickId);
    listRemove(data.groups, group);
    m_groupsById.remove(group->id);
    releaseGroup(group);
    markChanged();
}

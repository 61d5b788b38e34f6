// SPDX-License-Identifier: MIT
// Services 49 to 62: groups and visgroups.
#include "pluginhost/tHostTable.h"

#include "document/tGroup.h"
#include "document/tMap.h"
#include "document/tMapWatcher.h"
#include "document/tVisGroup.h"
#include "support/tHost.h"

#include <QByteArray>
#include <algorithm>

// ---- Groups. Only what lies in one map can be joined.

static cGroupData* groupCreate(cMapData* map) {
    return map ? map->map->addGroup() : nullptr;
}

static void groupDelete(cMapData* map, cGroupData* group) {
    if (map && group && group->owner == map)
        map->map->freeGroup(group);
}

static void groupAddGroup(cGroupData* group, cGroupData* child) {
    if (group && child && group->owner && group->owner == child->owner)
        group->owner->map->joinGroupGroup(child, group);
}

// The brushes of a solid entity go with their entity.
static void groupAddBrush(cGroupData* group, cBrushData* brush) {
    const cEntityData* entity = brush ? brush->owner : nullptr;
    if (group && entity && group->owner && group->owner == entity->owner &&
        (entity->flags & EF_WORLD))
        group->owner->map->joinGroupBrush(brush, group);
}

static void groupAddEntity(cGroupData* group, cEntityData* entity) {
    if (group && entity && group->owner && group->owner == entity->owner &&
        !(entity->flags & EF_WORLD))
        group->owner->map->joinGroupEntity(entity, group);
}

static void groupSetColor(cGroupData* group, const uint8_t* color) {
    if (!group || !color)
        return;
    group->group->setBaseColor(color);
    if (group->owner)
        group->owner->map->markChanged();
}

static uint8_t* groupGetColor(cGroupData* group, uint8_t* out) {
    if (group && out)
        std::copy_n(group->group->baseColor, 4, out);
    return out;
}

// ---- Visgroups

static cVisGroup* visGroupOf(const cMapData* map, uint32_t id) {
    return map ? map->map->findVisGroup(id) : nullptr;
}

static uint32_t visGroupCreate(cMapData* map) {
    return map ? map->map->createVisGroup("")->id : 0;
}

static void visGroupDelete(cMapData* map, uint32_t id) {
    if (cVisGroup* visGroup = visGroupOf(map, id))
        map->map->removeVisGroup(visGroup);
}

static void visGroupSet(cMapData* map, uint32_t id, const char* name, uint32_t newId,
                        const uint8_t* color) {
    cVisGroup* visGroup = visGroupOf(map, id);
    if (!visGroup)
        return;
    if (name)
        visGroup->setName(name);
    if (color) {
        std::copy_n(color, 4, visGroup->color);
        noteChange(*map->map);
    }
    if (newId != 0)
        map->map->setVisGroupId(visGroup, newId);
    map->map->changed(MC_VISGROUPS | MC_OBJECTS | MC_EDITED);
}

static int32_t visGroupGetCount(cMapData* map) {
    return map ? map->map->visGroups.size() : 0;
}

static int32_t visGroupIndexOf(cMapData* map, uint32_t id) {
    return map ? map->map->visGroupIndex(id) : -1;
}

static int32_t visGroupGet(cMapData* map, int32_t index, char* nameOut, int32_t nameSize,
                           uint32_t* idOut, uint8_t* colorOut) {
    if (index < 0 || index >= visGroupGetCount(map))
        return 0;
    const cVisGroup* visGroup = map->map->visGroupList()[size_t(index)];
    if (nameOut && nameSize > 0)
        qstrncpy(nameOut, visGroup->name ? visGroup->name : "", uint(nameSize));
    if (idOut)
        *idOut = visGroup->id;
    if (colorOut)
        std::copy_n(visGroup->color, 4, colorOut);
    return 1;
}

static void visGroupClear(cMapData* map) {
    if (!map)
        return;
    map->map->clearVisGroups();
    map->map->markChanged();
}

void fillGroupServices(cHostServices& table) {
    table.Group_Create = groupCreate;
    table.Group_Delete = groupDelete;
    table.Group_AddGroup = groupAddGroup;
    table.Group_AddBrush = groupAddBrush;
    table.Group_AddEntity = groupAddEntity;
    table.Group_SetColor = groupSetColor;
    table.Group_GetColor = groupGetColor;
    table.VisGroup_Create = visGroupCreate;
    table.VisGroup_Delete = visGroupDelete;
    table.VisGroup_Set = visGroupSet;
    table.VisGroup_GetCount = visGroupGetCount;
    table.VisGroup_IndexOf = visGroupIndexOf;
    table.VisGroup_Get = visGroupGet;
    table.VisGroup_Clear = visGroupClear;
}

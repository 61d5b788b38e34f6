// SPDX-License-Identifier: MIT
// Entities: key/values, creation, class.
#include "document/tEntity.h"

#include "document/tEntityAngles.h"
#include "document/tEntityClass.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "support/tHost.h"
#include "support/tMapText.h"
#include "support/tMath.h"
#include "support/tSystem.h"
#include "support/tVec.h"

#include <strings.h>

static constexpr float DEFAULT_HALF_SIZE = 8.0f;
static constexpr float DEFAULT_FRAME_RATE = 10.0f;
static const uint8_t DEFAULT_COLOR[4] = {220, 30, 220, 255};
static const uint8_t WORLD_COLOR[4] = {255, 255, 255, 255};

// ---- Key/values

cEpair* getEpair(const cEntityData* entity, const char* key) {
    for (cEpair* pair : epairsOf(entity)) {
        if (pair->key && strcasecmp(pair->key, key) == 0)
            return pair;
    }
    return nullptr;
}

const char* getEpairValue(const cEntityData* entity, const char* key) {
    const cEpair* pair = getEpair(entity, key);
    return pair ? pair->value : nullptr;
}

void setText(char*& field, const char* text) {
    char* copy = Mem_StrDup(text);
    Mem_Free(field);
    field = copy;
}

cEpair* setEpair(cEntityData* entity, const char* key, const char* value) {
    cEpair* pair = getEpair(entity, key);
    if (pair)
        setText(pair->value, value);
    return pair;
}

static cEpair* newEpair(const char* key, const char* value, cEpair* next) {
    auto* pair = static_cast<cEpair*>(Mem_Alloc(sizeof(cEpair)));
    pair->key = Mem_StrDup(key);
    pair->value = Mem_StrDup(value);
    pair->next = next;
    return pair;
}

void addEpairLast(cEntityData* entity, const char* key, const char* value) {
    cEpair** end = &entity->epairs;
    while (*end)
        end = &(*end)->next;
    *end = newEpair(key, value, nullptr);
}

void addEpairFirst(cEntityData* entity, const char* key, const char* value) {
    entity->epairs = newEpair(key, value, entity->epairs);
}

static void freeEpair(cEpair* pair) {
    Mem_Free(pair->key);
    Mem_Free(pair->value);
    Mem_Free(pair);
}

void removeEpair(cEntityData* entity, const char* key) {
    for (cEpair** link = &entity->epairs; *link;) {
        cEpair* pair = *link;
        if (!pair->key || strcasecmp(pair->key, key) != 0) {
            link = &pair->next;
            continue;
        }
        *link = pair->next;
        freeEpair(pair);
    }
}

void freeEpairs(cEpair* list) {
    for (cEpair* pair : cEpairRange(list))
        freeEpair(pair);
}

// ---- Creation and class

cEntityData* newEntity(const char* classname, const float* origin, uint32_t flags) {
    auto* entity = static_cast<cEntityData*>(Mem_Alloc(sizeof(cEntityData)));
    entity->entity = new cEntity(entity);
    entity->classname = Mem_StrDup(classname);
    entity->flags = flags | EF_DIRTY;
    vecCopy(origin, entity->origin);
    vecCopy(origin, entity->mins);
    vecCopy(origin, entity->maxs);
    entity->renderColor[3] = 255;
    entity->frameRate = DEFAULT_FRAME_RATE;
    entity->scale = 1.0f;
    return entity;
}

static void setBoxAroundOrigin(cEntityData* entity, const float* mins, const float* maxs) {
    vecAdd(entity->origin, mins, entity->mins);
    vecAdd(entity->origin, maxs, entity->maxs);
}

static void setDefaults(cEntityData* entity) {
    if (!entity->brushes) {
        const float mins[3] = {-DEFAULT_HALF_SIZE, -DEFAULT_HALF_SIZE, -DEFAULT_HALF_SIZE};
        const float maxs[3] = {DEFAULT_HALF_SIZE, DEFAULT_HALF_SIZE, DEFAULT_HALF_SIZE};
        setBoxAroundOrigin(entity, mins, maxs);
    }
    memcpy(entity->entity->color, entity->flags & EF_WORLD ? WORLD_COLOR : DEFAULT_COLOR, 4);
    entity->spawnFlags = 0;
    setText(entity->flagsKey, nullptr);
}

static uint32_t flagsForClassname(const char* classname) {
    uint32_t flags = 0;
    if (!classname)
        return flags;
    if (strncmp(classname, "item_", 5) == 0 || strncmp(classname, "Item", 4) == 0)
        flags |= EF_ITEM;
    if (strncmp(classname, "path_", 5) == 0 || strstr(classname, "Path"))
        flags |= EF_PATH;
    return flags;
}

void setEntityClass(cEntityData* entity, cEntityClass* entityClass) {
    entity->entity->entityClass = entityClass;
    entity->flags &= ~uint32_t(EF_ITEM | EF_PATH);
    entity->flags |= flagsForClassname(entity->classname);
    if (!entityClass) {
        setDefaults(entity);
        noteChange(entity);
        return;
    }
    if (entityClass->kind == CK_POINT) {
        entity->flags |= EF_POINT;
        setBoxAroundOrigin(entity, entityClass->mins, entityClass->maxs);
    } else {
        entity->flags &= ~uint32_t(EF_POINT);
    }
    memcpy(entity->entity->color, entity->flags & EF_WORLD ? WORLD_COLOR : entityClass->color, 4);
    noteChange(entity);
}

cEntityClass* findEntityClass(const cEntityData* entity, cMapContext& context) {
    if (!entity->classname)
        return nullptr;
    const eClassFilter filter = entity->flags & EF_WORLD   ? CF_WORLD
                                : entity->flags & EF_POINT ? CF_POINT
                                                           : CF_SOLID;
    return context.findClass(entity->classname, filter);
}

void deriveFlagsKey(cEntityData* entity) {
    const cEntityClass* entityClass = entity->entity->entityClass;
    if (!entityClass) {
        setText(entity->flagsKey, nullptr);
        return;
    }
    for (const cEntityVariable& variable : entityClass->variables) {
        if (variable.type != VT_FLAGS)
            continue;
        setText(entity->flagsKey, toMapText(variable.name).constData());
        return;
    }
    setText(entity->flagsKey, "spawnflags");
}

// The pair a variable with a default gets: the entity's present value, else the default.
static void prependDefault(cEntityData* fresh, const cEntityData* entity,
                           const cEntityVariable& variable) {
    if (variable.defaultValue.isEmpty())
        return;
    const QByteArray name = toMapText(variable.name);
    const QByteArray byDefault = toMapText(variable.defaultValue);
    const char* present = getEpairValue(entity, name.constData());
    const char* value = present ? present : byDefault.constData();
    addEpairFirst(fresh, name.constData(), value);
    if (variable.type == VT_FLAGS)
        fresh->spawnFlags = uint32_t(strtol(value, nullptr, 10));
}

static void carryOver(cEntityData* fresh, const cEntityData* entity, const char* key) {
    const char* value = getEpairValue(entity, key);
    if (value && !getEpair(fresh, key))
        addEpairLast(fresh, key, value);
}

void resetEntityFromClass(cEntityData* entity) {
    const cEntityClass* entityClass = entity->entity->entityClass;
    setText(entity->flagsKey, nullptr);
    if (!entityClass) {
        setText(entity->flagsKey, "spawnflags");
        attachResource(entity);
        return;
    }
    cEntityData fresh = {};
    fresh.spawnFlags = entity->spawnFlags;
    for (const cEntityVariable& variable : entityClass->variables) {
        if (variable.type == VT_FLAGS && !entity->flagsKey)
            setText(entity->flagsKey, toMapText(variable.name).constData());
        prependDefault(&fresh, entity, variable);
    }
    carryOver(&fresh, entity, "model");
    carryOver(&fresh, entity, "texture");
    freeEpairs(entity->epairs);
    entity->epairs = fresh.epairs;
    entity->spawnFlags = fresh.spawnFlags;
    if (!entity->flagsKey)
        setText(entity->flagsKey, "spawnflags");
    readRenderKeys(entity);
    readModelKeys(entity);
    readAngleKeys(entity);
    attachResource(entity);
}

void touchEntity(cEntityData* entity) {
    entity->flags |= EF_DIRTY;
}

bool entityVisible(const cEntityData* entity) {
    if (entity->flags & EF_HIDDEN)
        return false;
    const int mask = g_host->HideMask;
    if ((entity->flags & EF_ITEM) && (mask & HM_ITEMS))
        return false;
    return !((entity->flags & EF_PATH) && (mask & HM_PATHS));
}

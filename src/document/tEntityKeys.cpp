// SPDX-License-Identifier: MIT
#include "document/tEntityKeys.h"

#include "document/tEntity.h"
#include "document/tEntityAngles.h"
#include "document/tEntityClass.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tMapText.h"
#include "support/tSystem.h"
#include "support/tVec.h"

#include <cstdlib>
#include <string>
#include <strings.h>
#include <utility>

static bool isKey(const char* key, const char* other) {
    return strcasecmp(key, other) == 0;
}

static bool isAngleKey(const char* key) {
    return isKey(key, "angle") || isKey(key, "angles");
}

const char* flagsKeyOf(const cEntityData* entity) {
    return entity->flagsKey ? entity->flagsKey : "spawnflags";
}

static uint32_t readFlags(const cEntityData* entity) {
    const char* value = getEpairValue(entity, flagsKeyOf(entity));
    return value ? uint32_t(strtol(value, nullptr, 10)) : 0;
}

static void followAngles(cEntityData* entity) {
    if (!getEpair(entity, "angle") && !getEpair(entity, "angles"))
        vecSet(entity->angles, 0.0f, 0.0f, 0.0f);
    readAngleKeys(entity);
}

static void followKey(cEntityData* entity, const char* key) {
    uint32_t mode = UM_RENDER_KEYS | UM_MODEL_KEYS;
    if (isAngleKey(key))
        followAngles(entity);
    if (isKey(key, flagsKeyOf(entity)))
        entity->spawnFlags = readFlags(entity);
    if (isKey(key, "model") || isKey(key, "texture"))
        mode |= UM_ATTACH;
    updateEntity(entity, mode);
}

void writeKey(cEntityData* entity, const char* key, const char* value) {
    if (!setEpair(entity, key, value))
        addEpairLast(entity, key, value);
    followKey(entity, key);
}

void eraseKey(cEntityData* entity, const char* key) {
    const std::string gone = key; // it may be the pair's own text
    removeEpair(entity, gone.c_str());
    followKey(entity, gone.c_str());
}

void renameKey(cEntityData* entity, const char* key, const char* newKey) {
    cEpair* pair = getEpair(entity, key);
    if (!pair)
        return;
    const std::string before = pair->key;
    setText(pair->key, newKey);
    followKey(entity, before.c_str());
    followKey(entity, newKey);
}

void writeSpawnFlags(cEntityData* entity, uint32_t flags) {
    writeKey(entity, flagsKeyOf(entity), std::to_string(int32_t(flags)).c_str());
    entity->spawnFlags = flags;
}

// ---- Class

static void keepPair(cEntityData* fresh, const cEntityData* entity, const char* key) {
    const char* value = getEpairValue(entity, key);
    if (value && !getEpair(fresh, key))
        addEpairLast(fresh, key, value);
}

static void fitPairs(cEntityData* entity, const cEntityClass& entityClass) {
    cEntityData fresh = {};
    for (const cEntityVariable& variable : entityClass.variables) {
        const QByteArray name = toMapText(variable.name);
        keepPair(&fresh, entity, name.constData());
        if (!variable.defaultValue.isEmpty() && !getEpair(&fresh, name.constData()))
            addEpairLast(&fresh, name.constData(), toMapText(variable.defaultValue).constData());
    }
    for (const char* key : {"angles", "angle", "model", "texture"})
        keepPair(&fresh, entity, key);
    freeEpairs(std::exchange(entity->epairs, fresh.epairs));
}

void changeClass(cEntityData* entity, const char* classname) {
    setText(entity->classname, classname);
    setEntityClass(entity, findEntityClass(entity, contextOf(entity)));
    if (const cEntityClass* entityClass = entity->entity->entityClass)
        fitPairs(entity, *entityClass);
    deriveFlagsKey(entity);
    entity->spawnFlags = readFlags(entity);
    readAngleKeys(entity);
    updateEntity(entity, UM_RENDER_KEYS | UM_MODEL_KEYS | UM_ATTACH);
}

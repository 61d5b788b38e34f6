// SPDX-License-Identifier: MIT
// Updating entities: bounds, render keys, model keys. What they show is in tEntityAttachment.cpp.
#include "document/tBrushGeometry.h"
#include "document/tCullTree.h"
#include "document/tEntity.h"
#include "document/tEntityClass.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "support/tHost.h"
#include "support/tMath.h"
#include "support/tVec.h"

#include <algorithm>

// Colours whose largest component is below this are given as 0 to 1.
static constexpr float UNIT_COLOR_LIMIT = 1.001f;
static constexpr uint32_t TRANSPARENT_STATE_BITS = 0x10ff;

// ---- Render keys

static uint32_t renderFlagsForMode(int mode) {
    switch (mode) {
    case 1:
    case 2:
        return 4197;
    case 3:
    case 5:
        return 37;
    case 4:
        return 4453;
    default:
        return 256;
    }
}

// What is no number counts as 0.
static uint8_t clampByte(double value) {
    return uint8_t(!(value > 0) ? 0 : value > 255 ? 255 : int(value));
}

static void readColor(cEntityData* entity, const char* text) {
    float rgb[3] = {0, 0, 0};
    if (!text)
        return;
    sscanf(text, "%f %f %f", &rgb[0], &rgb[1], &rgb[2]); // what is missing stays 0
    const float largest = std::fmax(rgb[0], std::fmax(rgb[1], rgb[2]));
    const float factor = largest < UNIT_COLOR_LIMIT ? 255.0f : 1.0f;
    for (int i = 0; i < 3; ++i)
        entity->renderColor[i] = clampByte(double(rgb[i] * factor));
    if (!entity->renderColor[0] && !entity->renderColor[1] && !entity->renderColor[2])
        memset(entity->renderColor, 255, 3);
}

static int intValue(const cEntityData* entity, const char* key, int byDefault) {
    const char* text = getEpairValue(entity, key);
    return text ? int(std::clamp(strtol(text, nullptr, 10), -0x7fffffffL - 1, 0x7fffffffL))
                : byDefault;
}

static float floatValue(const cEntityData* entity, const char* key, float byDefault) {
    const char* text = getEpairValue(entity, key);
    return text ? float(strtod(text, nullptr)) : byDefault;
}

// The colour key that counts: the profile's own, else one of the usual light keys.
static const char* colorText(const cEntityData* entity, bool renderKeys) {
    const char* text = renderKeys ? getEpairValue(entity, "rendercolor") : nullptr;
    for (const char* key : {"color", "_color", "_light"}) {
        if (!text)
            text = getEpairValue(entity, key);
    }
    return text;
}

void readRenderKeys(cEntityData* entity) {
    static const uint8_t reset[4] = {0, 0, 0, 255};
    memcpy(entity->renderColor, reset, 4);
    entity->renderMode = entity->renderFx = 0;
    const uint32_t keyMask = contextOf(entity).profile().flags;
    const bool renderKeys = (keyMask & PF_RENDER_KEYS) != 0;
    if (renderKeys) {
        entity->renderMode = intValue(entity, "rendermode", 0);
        entity->renderFx = intValue(entity, "renderfx", 0);
        entity->renderColor[3] = clampByte(intValue(entity, "renderamt", 255));
    }
    readColor(entity, colorText(entity, renderKeys));
    if ((keyMask & PF_ALPHA_KEY) && getEpair(entity, "alpha")) {
        entity->renderColor[3] = clampByte(double(floatValue(entity, "alpha", 1.0f)) * 255.0);
        if (entity->renderColor[3] >= 1 && entity->renderColor[3] <= 254)
            entity->renderMode = 5;
    }
    entity->renderFlags = renderFlagsForMode(entity->renderMode);
    if (entity->renderMode == 4 && entity->renderColor[3] != 0)
        entity->renderColor[3] = 255;
    noteTransparency(entity);
}

// Whether it is shown is for the views to say.
void noteTransparency(cEntityData* entity) {
    if (entity->renderFlags & TRANSPARENT_STATE_BITS)
        entity->flags |= EF_TRANSPARENT;
    else
        entity->flags &= ~uint32_t(EF_TRANSPARENT);
}

// ---- Model keys

void readModelKeys(cEntityData* entity) {
    const cEntityClass* entityClass = entity->entity->entityClass;
    const int before = entity->sequence;
    entity->body = uint16_t(intValue(entity, "body", entityClass ? entityClass->body : 0));
    entity->skin = uint16_t(intValue(entity, "skin", entityClass ? entityClass->skin : 0));
    entity->sequence = intValue(entity, "sequence", entityClass ? entityClass->sequence : 0);
    entity->frameRate = floatValue(entity, "framerate", 10.0f);
    entity->scale = floatValue(entity, "scale", 1.0f);
    const bool scaled = getEpair(entity, "scale") && entity->attachKind != AK_DECAL;
    if (scaled || (entity->attachKind == AK_MODEL && entity->sequence != before))
        updateAttachmentBox(entity);
}

// ---- The whole

static void updateSolidBounds(cEntityData* entity, uint32_t mode) {
    bool any = false;
    T_ClearBounds(entity->mins, entity->maxs);
    for (cBrushData* brush : brushesOf(entity)) {
        if (brush->flags & BF_DIRTY)
            rebuildBrush(brush, mode);
        if (!brush->faces)
            continue; // no place of its own
        T_AddBoxToBounds(brush->mins, brush->maxs, entity->mins, entity->maxs);
        any = true;
    }
    if (any)
        return;
    vecSet(entity->mins, 0.0f, 0.0f, 0.0f);
    vecSet(entity->maxs, 0.0f, 0.0f, 0.0f);
}

static void reevaluate(cEntityData* entity) {
    if (entity->entity->entityClass || (entity->flags & EF_WORLD))
        return;
    if (entity->brushes)
        entity->flags &= ~uint32_t(EF_POINT);
    else
        entity->flags |= EF_POINT;
}

void updateEntity(cEntityData* entity, uint32_t mode) {
    if (mode & UM_REEVALUATE) {
        reevaluate(entity);
        mode |= UM_RENDER_KEYS | UM_MODEL_KEYS | UM_ATTACH;
    }
    if (!(entity->flags & EF_POINT))
        updateSolidBounds(entity, mode);
    if (mode & UM_RENDER_KEYS)
        readRenderKeys(entity);
    if (mode & UM_MODEL_KEYS)
        readModelKeys(entity);
    if (mode & UM_ATTACH)
        attachResource(entity);
    else if (entity->attachKind == AK_SPRITE || entity->attachKind == AK_MODEL)
        updateAttachmentBox(entity);
    entity->flags &= ~uint32_t(EF_DIRTY);
    cMap* map = entity->owner ? entity->owner->map : nullptr;
    if (!map)
        return;
    if (map->cullTree)
        map->cullTree->updateEntity(entity);
    noteChange(entity);
    map->markChanged();
}

// SPDX-License-Identifier: MIT
// Updating entities: bounds, render keys, model keys, and the model, sprite or decal they show.
#include "document/tBrushGeometry.h"
#include "document/tCullTree.h"
#include "document/tEntity.h"
#include "document/tEntityClass.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "document/tTexture.h"
#include "support/tHost.h"
#include "support/tMapText.h"
#include "support/tMath.h"
#include "support/tSystem.h"
#include "support/tVec.h"

#include <algorithm>

// Colours whose largest component is below this are given as 0 to 1.
static constexpr float UNIT_COLOR_LIMIT = 1.001f;
static constexpr uint32_t TRANSPARENT_STATE_BITS = 0x10ff;
static constexpr float CLASSLESS_HALF_SIZE = 8.0f;

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

// ---- Attachments

static cAttachment* attachmentOf(const cEntityData* entity) {
    return static_cast<cAttachment*>(entity->attachment);
}

static void setBoxAround(const float* center, float half, cAttachment* attachment) {
    for (int i = 0; i < 3; ++i) {
        attachment->mins[i] = center[i] - half;
        attachment->maxs[i] = center[i] + half;
    }
}

static void classBox(const cEntityData* entity, float* mins, float* maxs) {
    const cEntityClass* entityClass = entity->entity->entityClass;
    for (int i = 0; i < 3; ++i) {
        mins[i] = entityClass ? entityClass->mins[i] : -CLASSLESS_HALF_SIZE;
        maxs[i] = entityClass ? entityClass->maxs[i] : CLASSLESS_HALF_SIZE;
    }
}

bool mayScaleModel(const cEntityData* entity) {
    const cEntityClass* entityClass = entity->entity->entityClass;
    return !entityClass || !(entityClass->flags & ECF_NOSCALE);
}

float usedScale(const cEntityData* entity) {
    return mayScaleModel(entity) && std::isfinite(entity->scale) && entity->scale > 0
               ? entity->scale
               : 1.0f;
}

static bool isUsable(const float* mins, const float* maxs) {
    bool isZero = true, isNumber = true;
    for (int i = 0; i < 3; ++i) {
        isZero &= mins[i] == 0 && maxs[i] == 0;
        isNumber &= std::isfinite(mins[i]) && std::isfinite(maxs[i]);
    }
    return isNumber && !isZero;
}

// The plug-in is asked again only when something has changed that it may go by.
static void renewBounds(cEntityData* entity, cAttachment* attachment) {
    const cModelPose pose = {{entity->angles[0], entity->angles[1], entity->angles[2]},
                             attachment->frame,
                             entity->scale,
                             entity->sequence,
                             entity->body,
                             entity->skin};
    if (attachment->isMeasured && memcmp(&pose, &attachment->pose, sizeof pose) == 0)
        return;
    auto* model = static_cast<cModelRecord*>(attachment->record);
    attachment->pose = pose;
    attachment->isMeasured = true;
    if (model->getBounds &&
        model->getBounds(model->formatId, attachment->ownMins, attachment->ownMaxs, model, entity))
        return;
    vecCopy(model->mins, attachment->ownMins);
    vecCopy(model->maxs, attachment->ownMaxs);
}

bool modelBounds(cEntityData* entity, float* mins, float* maxs) {
    cAttachment* attachment = attachmentOf(entity);
    renewBounds(entity, attachment);
    vecCopy(attachment->ownMins, mins);
    vecCopy(attachment->ownMaxs, maxs);
    return isUsable(mins, maxs);
}

static void modelBox(cEntityData* entity, cAttachment* attachment) {
    float mins[3], maxs[3];
    if (!modelBounds(entity, mins, maxs)) {
        classBox(entity, mins, maxs);
    } else {
        vecScale(mins, usedScale(entity), mins);
        vecScale(maxs, usedScale(entity), maxs);
    }
    vecAdd(entity->origin, mins, attachment->mins);
    vecAdd(entity->origin, maxs, attachment->maxs);
}

void updateAttachmentBox(cEntityData* entity) {
    cAttachment* attachment = attachmentOf(entity);
    if (!attachment)
        return;
    if (entity->attachKind == AK_MODEL) {
        modelBox(entity, attachment);
    } else {
        const float scale = entity->attachKind == AK_SPRITE ? usedScale(entity) : 1.0f;
        const float half = attachment->size * scale;
        setBoxAround(entity->origin, entity->attachKind == AK_SPRITE ? std::fmax(half, 1.0f) : half,
                     attachment);
    }
    vecCopy(attachment->mins, entity->mins);
    vecCopy(attachment->maxs, entity->maxs);
}

// Turned by the entity's angles whichever way they count: within the sphere of its corners.
void cullBounds(const cEntityData* entity, float* mins, float* maxs) {
    vecCopy(entity->mins, mins);
    vecCopy(entity->maxs, maxs);
    if (entity->attachKind != AK_MODEL)
        return;
    const auto* model = static_cast<const cModelRecord*>(attachmentOf(entity)->record);
    if (!isUsable(model->mins, model->maxs))
        return;
    float farthest[3];
    for (int i = 0; i < 3; ++i)
        farthest[i] = std::fmax(std::fabs(model->mins[i]), std::fabs(model->maxs[i]));
    const float radius = vecLength(farthest) * usedScale(entity);
    for (int i = 0; i < 3; ++i) {
        mins[i] = std::fmin(mins[i], entity->origin[i] - radius);
        maxs[i] = std::fmax(maxs[i], entity->origin[i] + radius);
    }
}

void detachResource(cEntityData* entity) {
    cAttachment* attachment = attachmentOf(entity);
    if (!attachment)
        return;
    cMapContext& context = contextOf(entity);
    if (entity->attachKind == AK_DECAL)
        context.releaseTexture(static_cast<cTexture*>(attachment->record));
    else
        context.releaseAttachment(eAttachKind(entity->attachKind), attachment->record);
    Mem_Free(attachment);
    entity->attachment = nullptr;
    entity->attachKind = AK_NONE;
}

struct cWantedResource {
    eAttachKind kind;
    QByteArray name;
};

// What the class wants shown: its own resource, else the one that a key names.
static cWantedResource wantedResource(const cEntityData* entity) {
    const cEntityClass& c = *entity->entity->entityClass;
    const auto named = [entity](eAttachKind kind, const QString& own, const char* key) {
        return cWantedResource{kind, own.isEmpty() ? QByteArray(getEpairValue(entity, key))
                                                   : toMapText(own)};
    };
    if (c.flags & ECF_DECAL)
        return named(AK_DECAL, c.decal, "texture");
    if (c.flags & ECF_SPRITE)
        return named(AK_SPRITE, c.sprite, "model");
    if (c.flags & ECF_STUDIO)
        return named(AK_MODEL, c.studio, "model");
    if (!c.iconSprite.isEmpty())
        return {AK_SPRITE, toMapText(c.iconSprite)};
    return {AK_NONE, QByteArray()};
}

static void* acquire(cMapContext& context, const cWantedResource& wanted) {
    if (wanted.kind != AK_DECAL)
        return context.acquireAttachment(wanted.kind, wanted.name.constData());
    cTexture* texture = context.findTexture(wanted.name.constData());
    if (!texture)
        texture = context.addMissingTexture(wanted.name.constData());
    if (texture)
        ++texture->refCount;
    return texture;
}

static float resourceSize(eAttachKind kind, const void* record) {
    if (kind == AK_DECAL) {
        const auto* texture = static_cast<const cTexture*>(record);
        return float(std::max(texture->width, texture->height)) * 0.5f;
    }
    if (kind == AK_SPRITE) {
        const auto* sprite = static_cast<const cSpriteRecord*>(record);
        return float(std::max(sprite->width, sprite->height)) * 0.5f;
    }
    return 0;
}

// A point entity that shows nothing keeps its class's box.
static void showBox(cEntityData* entity) {
    float mins[3], maxs[3];
    classBox(entity, mins, maxs);
    vecAdd(entity->origin, mins, entity->mins);
    vecAdd(entity->origin, maxs, entity->maxs);
}

bool showsFile(const cEntityData* entity) {
    if (!(entity->flags & EF_POINT) || !entity->entity->entityClass)
        return false;
    const cWantedResource wanted = wantedResource(entity);
    return (wanted.kind == AK_SPRITE || wanted.kind == AK_MODEL) && !wanted.name.isEmpty();
}

void attachResource(cEntityData* entity) {
    detachResource(entity);
    if (!(entity->flags & EF_POINT))
        return;
    showBox(entity);
    if (!entity->entity->entityClass)
        return;
    const cWantedResource wanted = wantedResource(entity);
    if (wanted.kind == AK_NONE || wanted.name.isEmpty())
        return;
    void* record = acquire(contextOf(entity), wanted);
    if (!record)
        return;
    auto* attachment = static_cast<cAttachment*>(Mem_Alloc(sizeof(cAttachment)));
    attachment->record = record;
    attachment->size = resourceSize(wanted.kind, record);
    entity->attachment = attachment;
    entity->attachKind = wanted.kind;
    updateAttachmentBox(entity);
    if (wanted.kind == AK_DECAL)
        entity->flags |= EF_RECOMPUTE_ATTACHMENT;
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

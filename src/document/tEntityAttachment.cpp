// SPDX-License-Identifier: MIT
// What an entity shows in place of its box: a model, a sprite or a decal; its bounds follow.
#include "document/tEntity.h"
#include "document/tEntityClass.h"
#include "document/tMap.h"
#include "document/tTexture.h"
#include "support/tMapText.h"
#include "support/tSystem.h"
#include "support/tVec.h"

#include <algorithm>
#include <cmath>
#include <cstring>

static constexpr float CLASSLESS_HALF_SIZE = 8.0f;

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

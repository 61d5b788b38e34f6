// SPDX-License-Identifier: MIT
// The run-time half of an entity, its key/values, and the rules by which class and keys decide
// how it looks. Created and freed by newEntity and cMap::freeEntity.
#pragma once

#include "document/tMapContext.h"
#include "plugininterface/tPluginInterface.h"

#include <QList>

class cVisGroup;
struct cEntityClass;

class cEntity {
public:
    explicit cEntity(cEntityData* record) : data(record) {}

    void addToVisGroup(cVisGroup* visGroup);
    void addToVisGroups(const QList<cVisGroup*>& added); // in one walk
    void removeFromVisGroup(cVisGroup* visGroup);
    void dropVisGroups();

    cEntityData* data;
    cEntityClass* entityClass = nullptr;
    int pickId = -1;
    uint8_t color[4] = {220, 30, 220, 255};
    QList<cVisGroup*> visGroups;
    // The map's watcher's, who keeps them.
    uint32_t viewSlot = 0; // 0 for none
    uint32_t viewLook = 0; // what of the entity shows on its brushes
};

// What the bounds of a model may depend on beside its record.
struct cModelPose {
    float angles[3];
    float frame;
    float scale;
    int32_t sequence;
    uint16_t body;
    uint16_t skin;
};

// What an entity shows in place of its box, owned by it through cEntityData::attachment.
// The record is the shared cSpriteRecord, cModelRecord or cTexture, with a reference held.
struct cAttachment : cAttachmentHead {
    float size;    // half-size of a sprite or decal, before scaling
    float mins[3]; // world space
    float maxs[3];
    cModelPose pose; // that ownMins and ownMaxs were asked for
    bool isMeasured; // they were
    float ownMins[3];
    float ownMaxs[3];
};

// ---- Key/values. Keys compare without regard to case, values exactly.

cEpair* getEpair(const cEntityData* entity, const char* key);          // the first match or null
const char* getEpairValue(const cEntityData* entity, const char* key); // null when absent
cEpair* setEpair(cEntityData* entity, const char* key, const char* value); // existing keys only
void addEpairLast(cEntityData* entity, const char* key, const char* value);
void addEpairFirst(cEntityData* entity, const char* key, const char* value);
void removeEpair(cEntityData* entity, const char* key); // every match
void freeEpairs(cEpair* list);
void setText(char*& field, const char* text); // frees the old text, copies the new one; null clears

// ---- Creation and class

// A detached entity: id 0, bounds at origin, flags plus EF_DIRTY.
cEntityData* newEntity(const char* classname, const float* origin, uint32_t flags);
// Stores the class, sets the flags, box and colour that follow from it; null gives the defaults.
void setEntityClass(cEntityData* entity, cEntityClass* entityClass);
// The lookup of the class by name, by what the entity is: world, point or solid.
cEntityClass* findEntityClass(const cEntityData* entity, cMapContext& context);
// flagsKey from the class: its first flags variable, else "spawnflags"; null without a class.
void deriveFlagsKey(cEntityData* entity);
// New key/values from the class's defaults; the entity's own values of those keys are kept.
void resetEntityFromClass(cEntityData* entity);

// ---- Updates

// Rebuilds what mode (UM_ bits) asks for: bounds from the brushes, render keys, model keys,
// attachment; other bits go to rebuildBrush for each dirty brush. Tells the cull tree.
void updateEntity(cEntityData* entity, uint32_t mode);
void readRenderKeys(cEntityData* entity);
// EF_TRANSPARENT from the render flags, whatever the setting says.
void noteTransparency(cEntityData* entity);
void readModelKeys(cEntityData* entity);
void attachResource(cEntityData* entity); // finds and attaches the model, sprite or decal
void detachResource(cEntityData* entity);
void updateAttachmentBox(cEntityData* entity); // around the origin; the entity's bounds follow
bool showsFile(const cEntityData* entity);     // class and keys name a sprite or a model
// The attached model's own bounds, unscaled; false when it has none, and the class's box counts.
bool modelBounds(cEntityData* entity, float* mins, float* maxs);
bool mayScaleModel(const cEntityData* entity); // the class does not forbid it
float usedScale(const cEntityData* entity);    // of what it shows: 1 where the key makes no sense
// The entity's bounds, grown by all that its model shows in any frame.
void cullBounds(const cEntityData* entity, float* mins, float* maxs);
void touchEntity(cEntityData* entity);

bool entityVisible(const cEntityData* entity); // false with EF_HIDDEN or hidden by HideMask

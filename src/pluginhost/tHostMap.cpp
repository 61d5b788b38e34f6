// SPDX-License-Identifier: MIT
// Services 29 to 48: entities, brushes and faces. A null argument, or an object of another map
// than the one named, makes a call do nothing.
#include "pluginhost/tHostTable.h"

#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tFace.h"
#include "document/tFaceMapping.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "document/tVisGroup.h"
#include "pluginhost/tHostServices.h"
#include "resources/tGameConfig.h"
#include "resources/tTextureManager.h"
#include "support/tConsole.h"
#include "support/tMapText.h"
#include "support/tSystem.h"

#include <QFileInfo>
#include <algorithm>
#include <cstring>

static bool isOf(const cMapData* map, const cEntityData* entity) {
    return map && entity && entity->owner == map;
}

static bool isOf(const cMapData* map, const cBrushData* brush) {
    return brush && isOf(map, brush->owner);
}

// ---- Configuration

static QString keyPath(const QString& key) {
    const int split = key.lastIndexOf(QStringLiteral("::"));
    return split < 0 ? key : key.left(split);
}

static bool isPackage(const cTextureManager& textures, const QString& path) {
    return textures.isPackageExtension(QLatin1Char('.') + QFileInfo(path).suffix().toLower());
}

static int32_t mapGetPackagePaths(cMapData* map, char** out, char separator) {
    const cHostServiceContext& context = hostServiceContext();
    const cGameConfig* config = map && context.configOf ? context.configOf(map) : nullptr;
    if (!config || !out || !context.textures)
        return 0;
    QStringList paths;
    for (const QString& key : config->parcels) {
        const QString path = keyPath(key);
        if (isPackage(*context.textures, path) && !QFileInfo(path).isDir())
            paths.append(path);
    }
    Mem_Free(*out);
    *out = Mem_StrDup(toMapText(paths.join(QLatin1Char(separator))).constData());
    return *out != nullptr;
}

// ---- Entities

static cEntityData* entityCreate(cMapData* map, const char* classname, const float* origin,
                                 uint32_t flags) {
    static const float ZERO[3] = {0, 0, 0};
    if (!map || !classname)
        return nullptr;
    // Flags taken over from another entity: this one stands in no list of selected ones.
    return map->map->addEntity(classname, origin ? origin : ZERO, flags & ~uint32_t(EF_SELECTED));
}

static void entityUpdate(cEntityData* entity, uint32_t mode) {
    if (entity)
        updateEntity(entity, mode);
}

static void entitySetColor(cEntityData* entity, const uint8_t* color) {
    if (!entity || !color)
        return;
    std::copy_n(color, 4, entity->entity->color);
    noteChange(entity);
    if (entity->owner)
        entity->owner->map->markChanged();
}

static uint8_t* entityGetColor(cEntityData* entity, uint8_t* out) {
    if (entity && out)
        std::copy_n(entity->entity->color, 4, out);
    return out;
}

static cEntityData* entityFind(cMapData* map, const char* key, const char* value) {
    if (!map || !key || !value)
        return nullptr;
    for (cEntityData* entity : entitiesOf(*map)) {
        const char* held = getEpairValue(entity, key);
        if (held && strcmp(held, value) == 0)
            return entity;
    }
    return nullptr;
}

// ---- Brushes

static cBrushData* brushCreate(cMapData* map, cEntityData* owner) {
    return isOf(map, owner) ? map->map->addBrush(owner) : nullptr;
}

static void brushDelete(cMapData* map, cBrushData* brush) {
    if (isOf(map, brush))
        map->map->freeBrush(brush);
}

static void brushSetColor(cBrushData* brush, const uint8_t* color) {
    if (!brush || !color)
        return;
    brush->brush->setBaseColor(color);
    if (brush->owner && brush->owner->owner)
        brush->owner->owner->map->markChanged();
}

static uint8_t* brushGetColor(cBrushData* brush, uint8_t* out) {
    if (brush && out)
        std::copy_n(brush->brush->baseColor, 4, out);
    return out;
}

// ---- Membership in visgroups; the same for the two kinds of objects

static cEntity* halfOf(cEntityData* entity) {
    return entity->entity;
}

static cBrush* halfOf(cBrushData* brush) {
    return brush->brush;
}

template<class T> static void addToVisGroup(cMapData* map, T* object, uint32_t id) {
    cVisGroup* visGroup = isOf(map, object) ? map->map->findVisGroup(id) : nullptr;
    if (!visGroup)
        return;
    halfOf(object)->addToVisGroup(visGroup);
    map->map->markChanged();
}

template<class T> static void removeFromVisGroup(cMapData* map, T* object, uint32_t id) {
    cVisGroup* visGroup = isOf(map, object) ? map->map->findVisGroup(id) : nullptr;
    if (!visGroup)
        return;
    halfOf(object)->removeFromVisGroup(visGroup);
    map->map->markChanged();
}

template<class T> static int32_t visGroupCount(T* object) {
    return object ? halfOf(object)->visGroups.size() : 0;
}

template<class T> static uint32_t visGroupId(T* object, int32_t index) {
    if (index < 0 || index >= visGroupCount(object))
        return 0;
    return halfOf(object)->visGroups[index]->id;
}

// ---- Faces

static cFaceData* faceCreate(cMapData* map, cBrushData* brush, const cFaceTexture* tex,
                             int32_t vertexCount) {
    if (!isOf(map, brush) || !tex || vertexCount < 0 || vertexCount > MAX_FACE_VERTICES)
        return nullptr;
    cFaceTexture block = *tex;
    block.name[sizeof block.name - 1] = 0;
    uint32_t flags = 0;
    const bool mended = mendTextureBlock(block, flags);
    if (mended && !map->map->toldMended)
        Warning("a plug-in gave faces texture numbers of no use; they became the default");
    map->map->toldMended |= mended;
    cFaceData* face = map->map->addFace(brush, block, vertexCount);
    face->flags |= flags;
    return face;
}

static void faceDelete(cMapData* map, cFaceData* face) {
    if (face && isOf(map, face->brush))
        map->map->freeFace(face);
}

void fillMapServices(cHostServices& table) {
    table.Map_GetPackagePaths = mapGetPackagePaths;
    table.Entity_Create = entityCreate;
    table.Entity_Update = entityUpdate;
    table.Entity_SetColor = entitySetColor;
    table.Entity_GetColor = entityGetColor;
    table.Entity_AddToVisGroup = addToVisGroup;
    table.Entity_RemoveFromVisGroup = removeFromVisGroup;
    table.Entity_GetVisGroupCount = visGroupCount;
    table.Entity_GetVisGroupId = visGroupId;
    table.Entity_Find = entityFind;
    table.Brush_Create = brushCreate;
    table.Brush_Delete = brushDelete;
    table.Brush_SetColor = brushSetColor;
    table.Brush_GetColor = brushGetColor;
    table.Brush_AddToVisGroup = addToVisGroup;
    table.Brush_RemoveFromVisGroup = removeFromVisGroup;
    table.Brush_GetVisGroupCount = visGroupCount;
    table.Brush_GetVisGroupId = visGroupId;
    table.Face_Create = faceCreate;
    table.Face_Delete = faceDelete;
}

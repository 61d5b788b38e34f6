// SPDX-License-Identifier: MIT
#include "operations/tDefaultRoom.h"

#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tEntityAngles.h"
#include "document/tEntityClass.h"
#include "document/tHistory.h"
#include "document/tMap.h"
#include "document/tMapContext.h"
#include "document/tMapLists.h"
#include "support/tConsole.h"
#include "support/tHost.h"
#include "support/tMapText.h"
#include "support/tMath.h"
#include "support/tSystem.h"
#include "support/tVec.h"

static constexpr float WALL_THICKNESS = 32;
static constexpr float ABOVE_FLOOR = 1; // of the player's feet
static constexpr int SIDES = 6;

// ---- Brushes of the room

// Side i lies at the end of axis i / 2: even ones at its upper end, odd ones at its lower end.
static void boundsOfSide(const float* roomMins, const float* roomMaxs, int side, float* mins,
                         float* maxs) {
    const int axis = side / 2;
    vecCopy(roomMins, mins);
    vecCopy(roomMaxs, maxs);
    if (side % 2 == 0) {
        mins[axis] = maxs[axis];
        maxs[axis] += WALL_THICKNESS;
    } else {
        maxs[axis] = mins[axis];
        mins[axis] -= WALL_THICKNESS;
    }
}

static cFaceTexture textureOf(const QByteArray& name, int face) {
    static constexpr float U_AXES[SIDES][3] = {{0, 1, 0}, {0, 1, 0}, {1, 0, 0},
                                               {1, 0, 0}, {1, 0, 0}, {1, 0, 0}};
    static constexpr float V_AXES[SIDES][3] = {{0, 0, -1}, {0, 0, -1}, {0, 0, -1},
                                               {0, 0, -1}, {0, -1, 0}, {0, -1, 0}};
    cFaceTexture tex = {};
    vecCopy(U_AXES[face], tex.uAxis);
    vecCopy(V_AXES[face], tex.vAxis);
    tex.uScale = tex.vScale = 1;
    T_Sprintf(tex.name, sizeof tex.name, "%s", name.isEmpty() ? "notexture" : name.constData());
    return tex;
}

static void addSide(cMap& map, const float* mins, const float* maxs, const QByteArray& texture) {
    // Corner: 4 upper x, 2 upper y, 1 upper z.
    static constexpr int FACES[SIDES][4] = {{0, 1, 3, 2}, {6, 7, 5, 4}, {2, 3, 7, 6},
                                            {4, 5, 1, 0}, {0, 2, 6, 4}, {1, 5, 7, 3}};
    cBrushData* brush = map.addBrush(map.world());
    for (int i = 0; i < SIDES; ++i) {
        cFaceData* face = map.addFace(brush, textureOf(texture, i), 4);
        for (int k = 0; k < 4; ++k) {
            const int corner = FACES[i][k];
            for (int axis = 0; axis < 3; ++axis)
                face->vertices[k].xyz[axis] = corner & (4 >> axis) ? maxs[axis] : mins[axis];
        }
    }
    touchBrush(brush);
}

// ---- Entities

static cEntityData* addPoint(cMap& map, const char* classname, const float* origin) {
    cEntityData* entity = newEntity(classname, origin, EF_POINT);
    map.attachEntity(entity);
    map.insertEntity(entity);
    resetEntityFromClass(entity);
    return entity;
}

static void addPlayer(cMap& map, const char* classname, const cRoomShape& shape) {
    if (!*classname)
        return;
    const cEntityClass* playerClass = map.context.findClass(classname, CF_POINT);
    const float lowest = playerClass ? playerClass->mins[2] : cEntityClass().mins[2];
    const auto x = float(shape.x);
    const float origin[3] = {x * 0.125f - x / 2, 0, ABOVE_FLOOR - lowest};
    updateEntity(addPoint(map, classname, origin), UM_RENDER_KEYS | UM_MODEL_KEYS | UM_ATTACH);
}

static void addLight(cMap& map, const char* classname, const cRoomShape& shape) {
    if (!*classname)
        return;
    float origin[3] = {0, 0, 0.8f * float(shape.z)};
    if (const cEntityClass* lightClass = map.context.findClass(classname, CF_POINT))
        vecAdd(origin, lightClass->offset, origin);
    cEntityData* entity = addPoint(map, classname, origin);
    if (!setEpair(entity, "light", "400"))
        addEpairLast(entity, "light", "400");
    updateEntity(entity, UM_RENDER_KEYS | UM_MODEL_KEYS | UM_ATTACH);
}

bool createDefaultRoom(cMap& map, const cRoomShape& shape) {
    if (!map.world())
        return false;
    const float half[3] = {float(shape.x) / 2, float(shape.y) / 2, 0};
    const float roomMins[3] = {-half[0], -half[1], 0};
    const float roomMaxs[3] = {half[0], half[1], float(shape.z)};
    for (int side = 0; side < SIDES; ++side) {
        float mins[3], maxs[3];
        boundsOfSide(roomMins, roomMaxs, side, mins, maxs);
        addSide(map, mins, maxs, side < 4 ? shape.wall : side == 4 ? shape.ceiling : shape.floor);
    }
    updateEntity(map.world(), UM_PLANES);
    const cMapProfile& profile = map.context.profile();
    addPlayer(map, profile.startEntityClass, shape);
    addLight(map, profile.roomEntityClass, shape);
    map.markChanged();
    return true;
}

// ---- One entity

cEntityData* createEntity(cMap& map, const cEntityClass* entityClass, const float* point,
                          bool randomYaw) {
    if (!entityClass)
        return nullptr;
    const QByteArray name = toMapText(entityClass->name);
    Print("New entity: %s", name.constData());
    float origin[3];
    vecAdd(point, entityClass->offset, origin);
    const cHistoryStep step(map, "Create Entity");
    cEntityData* entity = addPoint(map, name.constData(), origin);
    if (randomYaw) {
        const float angles[3] = {0, float(T_RandomLong(0, 359)), 0};
        setEntityAngles(entity, angles);
    }
    updateEntity(entity, UM_RENDER_KEYS | UM_MODEL_KEYS | UM_ATTACH);
    map.clearSelection();
    map.select(entity);
    step->entityCreated(entity);
    return entity;
}

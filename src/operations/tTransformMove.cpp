// SPDX-License-Identifier: MIT
// Flip, align and snap of the selected objects, each in a step of its own.
#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tEntityAngles.h"
#include "document/tHistory.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "operations/tTransform.h"
#include "operations/tTransformParts.h"
#include "support/tHost.h"
#include "support/tVec.h"

#include <utility>

static bool texturesLocked() {
    return g_host->TextureLock;
}

static void capture(cHistoryStep& step) {
    step->entitiesChanged();
    step->brushesChanged(true);
}

// ---- Flip

static void flipFace(cFaceData* face, int axis, float sum) {
    cAffine mirror;
    mirror.isMove = false;
    mirror.linear[axis][axis] = -1;
    mirror.shift[axis] = double(sum);
    movePlane(face, mirror);
    for (int i = 0; i < face->vertexCount; ++i)
        face->vertices[i].xyz[axis] = sum - face->vertices[i].xyz[axis];
    reverseFace(face);
    if (!texturesLocked())
        return;
    cFaceTexture& tex = face->tex;
    tex.uAxis[axis] = -tex.uAxis[axis];
    tex.vAxis[axis] = -tex.vAxis[axis];
    tex.uShift -= tex.uAxis[axis] * sum / tex.uScale;
    tex.vShift -= tex.vAxis[axis] * sum / tex.vScale;
}

static void flipEntity(cEntityData* entity, int axis, float sum) {
    entity->origin[axis] = sum - entity->origin[axis];
    const float mirrored = sum - entity->mins[axis];
    entity->mins[axis] = sum - entity->maxs[axis];
    entity->maxs[axis] = mirrored;
    if (g_host->TransformAngles) {
        float angles[3];
        flipAngles(entity->angles, axis, angles);
        if (memcmp(angles, entity->angles, sizeof angles) != 0)
            setEntityAngles(entity, angles);
    }
    finishEntity(entity);
}

void flipSelection(cMap& map, int axis) {
    const cTransformObjects objects = cTransformObjects::selected(map);
    if (objects.isEmpty())
        return;
    cHistoryStep step(map, "Flip Selection");
    capture(step);
    float mins[3], maxs[3];
    objects.bounds(mins, maxs);
    const float sum = mins[axis] + maxs[axis];
    for (cEntityData* entity : objects.entities)
        flipEntity(entity, axis, sum);
    for (cBrushData* brush : objects.brushes) {
        for (cFaceData* face : facesOf(brush))
            flipFace(face, axis, sum);
    }
    finishTransform(map, objects.brushes);
}

// ---- Moves

static void moveFace(cFaceData* face, const float* offset) {
    cAffine map;
    map.move(offset);
    movePlane(face, map);
    for (int i = 0; i < face->vertexCount; ++i)
        vecAdd(face->vertices[i].xyz, offset, face->vertices[i].xyz);
    if (!texturesLocked())
        return;
    cFaceTexture& tex = face->tex;
    tex.uShift -= vecDot(tex.uAxis, offset) / tex.uScale;
    tex.vShift -= vecDot(tex.vAxis, offset) / tex.vScale;
}

static void moveEntity(cEntityData* entity, const float* offset) {
    vecAdd(entity->origin, offset, entity->origin);
    vecAdd(entity->mins, offset, entity->mins);
    vecAdd(entity->maxs, offset, entity->maxs);
    finishEntity(entity);
}

// Each object by the offset that follows from its bounds; a brush of a solid entity has those of
// the entity, so that the entity moves in one piece. What has no offset stays untouched.
template<class Offset>
static void moveObjects(cMap& map, const cTransformObjects& objects, Offset offsetFor) {
    std::vector<cBrushData*> moved;
    float offset[3];
    const auto moves = [&](const float* mins, const float* maxs) {
        vecSet(offset, 0.0f, 0.0f, 0.0f);
        offsetFor(mins, maxs, offset);
        return offset[0] != 0 || offset[1] != 0 || offset[2] != 0;
    };
    for (cEntityData* entity : objects.entities) {
        if (moves(entity->mins, entity->maxs))
            moveEntity(entity, offset);
    }
    for (cBrushData* brush : objects.brushes) {
        const bool own = (brush->owner->flags & EF_WORLD) != 0;
        if (!moves(own ? brush->mins : brush->owner->mins, own ? brush->maxs : brush->owner->maxs))
            continue;
        for (cFaceData* face : facesOf(brush))
            moveFace(face, offset);
        moved.push_back(brush);
    }
    finishTransform(map, moved);
}

void alignSelection(cMap& map, int axis, int side) {
    const cTransformObjects objects = cTransformObjects::selected(map);
    if (objects.isEmpty())
        return;
    cHistoryStep step(map, "Align Selection");
    capture(step);
    float allMins[3], allMaxs[3];
    objects.bounds(allMins, allMaxs);
    const float target = side == 0 ? allMins[axis] : allMaxs[axis];
    moveObjects(map, objects, [&](const float* mins, const float* maxs, float* offset) {
        offset[axis] = target - (side == 0 ? mins[axis] : maxs[axis]);
    });
}

static void snapOffset(const float* mins, float grid, float* offset) {
    for (int i = 0; i < 3; ++i)
        offset[i] = std::floor(mins[i] / grid + 0.5f) * grid - mins[i];
}

void snapSelection(cMap& map, float grid, bool each) {
    const cTransformObjects objects = cTransformObjects::selected(map);
    if (objects.isEmpty() || !(grid > 0))
        return;
    cHistoryStep step(map, "Snap to Grid");
    capture(step);
    float allMins[3], allMaxs[3], common[3];
    objects.bounds(allMins, allMaxs);
    snapOffset(allMins, grid, common);
    moveObjects(map, objects, [&](const float* mins, const float*, float* offset) {
        if (each)
            snapOffset(mins, grid, offset);
        else
            vecCopy(common, offset);
    });
}

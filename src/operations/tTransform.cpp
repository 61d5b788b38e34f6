// SPDX-License-Identifier: MIT
// Objects by a matrix: vertices and textures of brushes; origin, box, angles and scale of point
// entities.
#include "operations/tTransform.h"

#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tEntityAngles.h"
#include "document/tFaceMapping.h"
#include "document/tHistory.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "operations/tTransformParts.h"
#include "support/tConsole.h"
#include "support/tHost.h"
#include "support/tMath.h"
#include "support/tVec.h"

#include <algorithm>

// How far past its brush's centre a vertex must lie to stay while a side is stretched.
static constexpr float CENTER_MARGIN = 0.001f;
// What sine and cosine leave of a quarter turn: entries so near a whole number are meant to be it.
static constexpr float WHOLE_EPSILON = 1e-6f;
static constexpr float NO_PIVOT[3] = {0, 0, 0};

// ---- Points

static bool isTranslation(const float* m) {
    return m[0] == 1 && m[5] == 1 && m[10] == 1 && m[1] == 0 && m[2] == 0 && m[4] == 0 &&
           m[6] == 0 && m[8] == 0 && m[9] == 0;
}

static bool isIdentity(const float* m) {
    return isTranslation(m) && m[3] == 0 && m[7] == 0 && m[11] == 0;
}

static void movePoint(const float* matrix, const float* pivot, float* point) {
    if (isTranslation(matrix)) { // without the rounding that the way by the pivot costs
        for (int i = 0; i < 3; ++i)
            point[i] += matrix[i * 4 + 3];
        return;
    }
    vecSubtract(point, pivot, point);
    T_VectorTransform(point, matrix, point);
    vecAdd(point, pivot, point);
}

unsigned transformPoint(const cTransformRecord& record, const float* pivot, const float* own,
                        float keepMargin, float* point) {
    const float old[3] = {point[0], point[1], point[2]};
    movePoint(record.matrix, pivot, point);
    unsigned kept = 0;
    for (int axis = 0; axis < 3 && record.sideMask; ++axis) {
        const bool minMoves = (record.sideMask & (1u << axis)) != 0;
        const bool maxMoves = (record.sideMask & (8u << axis)) != 0;
        if ((minMoves && old[axis] > own[axis] + keepMargin) ||
            (maxMoves && old[axis] < own[axis] - keepMargin)) {
            point[axis] = old[axis];
            kept |= 1u << axis;
        }
    }
    return kept;
}

// ---- Brushes

static bool mirrors(const float* m) {
    float cross[3];
    vecCross(m, m + 4, cross);
    return vecDot(cross, m + 8) < 0;
}

// Where a stretch takes some corners of a slanted face along and leaves the others, no plane may
// be left that holds all of them.
static bool losesFlatFace(const cTransformRecord& record, const float* pivot,
                          const cBrushData* brush) {
    for (const cFaceData* face : facesOf(brush)) {
        std::vector<cFaceVertex> moved(face->vertices, face->vertices + face->vertexCount);
        for (cFaceVertex& vertex : moved)
            transformPoint(record, pivot, brush->brush->center, CENTER_MARGIN, vertex.xyz);
        cFaceData after = *face;
        after.vertices = moved.data();
        if (!checkFacePlanar(&after, nullptr) && checkFacePlanar(face, nullptr))
            return true;
    }
    return false;
}

// A stretch takes corners by as many maps as there are sets of kept coordinates. Where all of them
// give one plane it is that plane, else only the moved corners can tell.
static bool movePlaneByParts(cFaceData* face, const cAffine& map, unsigned keptSets) {
    constexpr double normalEpsilon = 1e-9, distEpsilon = 1e-6;
    cMovedPlane plane = {};
    for (unsigned kept = 0; kept < 8; ++kept) {
        if (!(keptSets & (1u << kept)))
            continue;
        cAffine part = map;
        for (int axis = 0; axis < 3; ++axis) {
            if (kept & (1u << axis))
                part.keepAxis(axis);
        }
        const cMovedPlane moved = planeThrough(face, part);
        if (!moved.isSound)
            return false;
        bool isSame = std::fabs(moved.dist - plane.dist) < distEpsilon;
        for (int i = 0; i < 3; ++i)
            isSame &= std::fabs(moved.normal[i] - plane.normal[i]) < normalEpsilon;
        if (plane.isSound && !isSame)
            return false;
        plane = moved;
    }
    if (plane.isSound)
        setPlane(face, plane);
    return plane.isSound;
}

static void transformBrush(const cTransformRecord& record, const float* pivot, cBrushData* brush) {
    const bool lock = g_host->TextureLock;
    const bool mirror = mirrors(record.matrix);
    const float* lockPivot = isTranslation(record.matrix) ? NO_PIVOT : pivot;
    const cAffine map = cAffine::around(pivot, record.matrix);
    for (cFaceData* face : facesOf(brush)) {
        unsigned keptSets = 0; // bit by the set of kept axes
        for (int i = 0; i < face->vertexCount; ++i)
            keptSets |= 1u << transformPoint(record, pivot, brush->brush->center, CENTER_MARGIN,
                                             face->vertices[i].xyz);
        if (mirror)
            reverseFace(face);
        if (!movePlaneByParts(face, map, keptSets))
            rebuildFace(face, UM_PLANES);
        if (lock && keptSets == 1)
            textureLock(face, lockPivot, record.matrix, g_host->TextureLockScale);
    }
}

// Brushes that can't be stretched and stay sound are left out.
static void keepUnstretchable(const cTransformRecord& record, const float* pivot,
                              std::vector<cBrushData*>& brushes) {
    const auto end = std::remove_if(brushes.begin(), brushes.end(), [&](const cBrushData* brush) {
        return losesFlatFace(record, pivot, brush);
    });
    if (end == brushes.end())
        return;
    Warning("%i brush(es) with slanted faces can't be stretched this way",
            int(brushes.end() - end));
    brushes.erase(end, brushes.end());
}

// ---- Point entities

// The smaller growth of the box on the two axes of the view, as the model's "scale" key.
static void scaleModel(const cTransformRecord& record, const float* pivot, cEntityData* entity,
                       const float* oldMins, const float* oldMaxs) {
    float mins[3], maxs[3], modelMins[3], modelMaxs[3];
    if (!mayScaleModel(entity) || !modelBounds(entity, modelMins, modelMaxs))
        return;
    vecCopy(oldMins, mins);
    vecCopy(oldMaxs, maxs);
    transformPoint(record, pivot, pivot, 0, mins);
    transformPoint(record, pivot, pivot, 0, maxs);
    float scale = 0;
    for (int axis : {record.axisV, record.axisH}) {
        const float extent = modelMaxs[axis] - modelMins[axis];
        if (!(extent > 0))
            return;
        const float wanted = std::fabs(maxs[axis] - mins[axis]) / extent;
        scale = axis == record.axisV ? wanted : std::fmin(scale, wanted);
    }
    char text[32], present[32];
    T_Sprintf(text, sizeof text, "%.3g", double(scale));
    T_Sprintf(present, sizeof present, "%.3g", double(entity->scale));
    if (!(scale > 0) || strcmp(text, present) == 0)
        return;
    if (!setEpair(entity, "scale", text))
        addEpairLast(entity, "scale", text);
    readModelKeys(entity);
}

static void transformEntity(const cTransformRecord& record, const float* pivot,
                            cEntityData* entity) {
    float oldMins[3], oldMaxs[3], mins[3], maxs[3];
    vecCopy(entity->mins, oldMins);
    vecCopy(entity->maxs, oldMaxs);
    vecSubtract(oldMins, entity->origin, mins);
    vecSubtract(oldMaxs, entity->origin, maxs);
    transformPoint(record, pivot, pivot, 0, entity->origin);
    vecAdd(entity->origin, mins, entity->mins);
    vecAdd(entity->origin, maxs, entity->maxs);
    float angles[3];
    if (g_host->TransformAngles && rotateAngles(entity->angles, record.matrix, angles))
        setEntityAngles(entity, angles);
    if (entity->attachKind == AK_MODEL && record.scaleModels && record.axisH >= 0 &&
        record.axisV >= 0)
        scaleModel(record, pivot, entity, oldMins, oldMaxs);
    finishEntity(entity);
}

// ---- The whole

static void roundMatrix(const float* matrix, float* out) {
    for (int i = 0; i < 16; ++i) {
        const float whole = std::round(matrix[i]);
        const bool isWhole = i % 4 != 3 && std::fabs(matrix[i] - whole) < WHOLE_EPSILON;
        out[i] = isWhole ? whole + 0.0f : matrix[i];
    }
}

void applyTransform(cMap& map, const std::vector<cEntityData*>* entities,
                    const std::vector<cBrushData*>* brushes, const cTransformRecord& record) {
    cTransformObjects objects = cTransformObjects::selected(map);
    if (entities)
        objects.entities = *entities;
    if (brushes)
        objects.brushes = *brushes;
    if (objects.isEmpty())
        return;
    float pivot[3], mins[3], maxs[3], matrix[16];
    if (record.center) {
        vecCopy(record.center, pivot);
    } else {
        objects.bounds(mins, maxs);
        for (int i = 0; i < 3; ++i)
            pivot[i] = (mins[i] + maxs[i]) * 0.5f;
    }
    roundMatrix(record.matrix, matrix);
    cTransformRecord rounded = record;
    rounded.matrix = matrix;
    for (cEntityData* entity : objects.entities) {
        if (entity->flags & EF_POINT)
            transformEntity(rounded, pivot, entity);
    }
    if (record.sideMask)
        keepUnstretchable(rounded, pivot, objects.brushes);
    for (cBrushData* brush : objects.brushes)
        transformBrush(rounded, pivot, brush);
    finishTransform(map, objects.brushes);
}

void transformSelection(cMap& map, const cTransformRecord& record) {
    if (isIdentity(record.matrix) || (!map.data.selectedEntities && !map.data.selectedBrushes))
        return;
    cHistoryStep step(map, "Transformation");
    step->entitiesChanged();
    step->brushesChanged(true);
    applyTransform(map, nullptr, nullptr, record);
}

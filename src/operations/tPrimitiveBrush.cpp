// SPDX-License-Identifier: MIT
#include "operations/tPrimitiveBrush.h"

#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tHistory.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tHost.h"

#include <cmath>

float roundedIf(const cPrimitiveParams& params, float value) {
    return params.flags & (1u << PP_SNAP_POINTS_BIT) ? std::floor(value + 0.5f) : value;
}

float turnOf(const cPoint& p, const cPoint& q, const cPoint& r, size_t a, size_t b) {
    return (q[a] - p[a]) * (r[b] - p[b]) - (q[b] - p[b]) * (r[a] - p[a]);
}

cBrushData* addSolid(const cPrimitiveParams& params, const cSolid& solid) {
    cMap& map = *params.map->map;
    cBrushData* brush = map.addBrush(map.world());
    for (const std::vector<int>& corners : solid.faces) {
        cFaceData* face = map.addFace(brush, params.face, int(corners.size()));
        for (size_t i = 0; i < corners.size(); ++i) {
            const cPoint& point = solid.points[size_t(corners[i])];
            std::copy(point.begin(), point.end(), face->vertices[i].xyz);
        }
    }
    touchBrush(brush);
    return brush;
}

static constexpr int FEWEST_FACES = 4;
static constexpr float LARGEST_SHIFT = 1; // of a side, by planes that take the place of corners

static int touchFaces(cBrushData* brush) {
    int count = 0;
    for (cFaceData* face : facesOf(brush)) {
        face->flags |= FF_DIRTY;
        ++count;
    }
    touchBrush(brush);
    return count;
}

// A sliver without one of its sides may reach to the end of the world.
static bool keepsBounds(const cBrushData* brush, const cPoint& mins, const cPoint& maxs) {
    for (size_t i = 0; i < 3; ++i) {
        if (brush->mins[i] < mins[i] - LARGEST_SHIFT || brush->maxs[i] > maxs[i] + LARGEST_SHIFT)
            return false;
    }
    return true;
}

bool makeValid(cBrushData* brush) {
    cMap& map = *brush->owner->owner->map;
    rebuildBrush(brush, UM_PLANES | UM_RESET_AXES);
    const int merged = mergeCoplanarFaces(brush);
    if (!merged && checkBrush(brush, false, nullptr))
        return true;
    const cPoint mins = {brush->mins[0], brush->mins[1], brush->mins[2]};
    const cPoint maxs = {brush->maxs[0], brush->maxs[1], brush->maxs[2]};
    touchFaces(brush);
    rebuildBrush(brush, UM_WINDINGS | UM_RESET_AXES);
    if (touchFaces(brush) >= FEWEST_FACES && keepsBounds(brush, mins, maxs) &&
        checkBrush(brush, false, nullptr)) {
        rebuildBrush(brush, UM_RESET_AXES);
        return true;
    }
    map.freeBrush(brush);
    return false;
}

void enterCreated(const cPrimitiveParams& params, const char* stepName,
                  const std::vector<cBrushData*>& brushes, cGroupData* group) {
    cMap& map = *params.map->map;
    const cHistoryStep step(map, stepName);
    map.clearSelection();
    if (group && map.updateSelectionMode() == MODE_GROUPS)
        map.select(group);
    for (cBrushData* brush : brushes)
        map.select(brush);
    step->groupCreated(group);
    for (const cBrushData* brush : brushes)
        step->brushCreated(brush);
}

bool createFrom(const cPrimitiveParams& params, const char* stepName, const cSolid& solid) {
    cMap& map = *params.map->map;
    if (!map.world())
        return false;
    cBrushData* brush = addSolid(params, solid);
    const bool valid = makeValid(brush);
    updateEntity(map.world(), UM_PLANES | UM_RESET_AXES);
    if (!valid)
        return false;
    enterCreated(params, stepName, {brush}, nullptr);
    return true;
}

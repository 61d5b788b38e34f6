// SPDX-License-Identifier: MIT
// Gathering the selected objects, and rebuilding what moved: each brush and each owner once.
#include "operations/tTransformParts.h"

#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tHost.h"
#include "support/tMath.h"
#include "support/tVec.h"

#include <QSet>

cTransformObjects cTransformObjects::selected(const cMap& map) {
    cTransformObjects objects;
    for (cEntityData* entity : selectedEntitiesOf(map.data)) {
        if (entity->flags & EF_POINT)
            objects.entities.push_back(entity);
    }
    for (cBrushData* brush : selectedBrushesOf(map.data))
        objects.brushes.push_back(brush);
    return objects;
}

void cTransformObjects::bounds(float* mins, float* maxs) const {
    T_ClearBounds(mins, maxs);
    for (const cEntityData* entity : entities)
        T_AddBoxToBounds(entity->mins, entity->maxs, mins, maxs);
    for (const cBrushData* brush : brushes)
        T_AddBoxToBounds(brush->mins, brush->maxs, mins, maxs);
}

// ---- Planes

// Components of a normal this small are what the sine and cosine of a matrix leave of 0.
static constexpr double AXIS_EPSILON = 1e-6;
// A map that shrinks volumes more than this flattens.
static constexpr double FLAT_DETERMINANT = 1e-12;

cAffine cAffine::around(const float* center, const float* matrix) {
    cAffine map;
    map.isMove = true;
    for (int row = 0; row < 3; ++row) {
        double kept = double(center[row]);
        for (int column = 0; column < 3; ++column) {
            const double value = double(matrix[row * 4 + column]);
            map.linear[row][column] = value;
            map.isMove &= value == (row == column ? 1.0 : 0.0);
            kept -= value * double(center[column]);
        }
        map.shift[row] = double(matrix[row * 4 + 3]) + kept;
    }
    for (int i = 0; i < 3 && map.isMove; ++i)
        map.shift[i] = double(matrix[i * 4 + 3]);
    return map;
}

bool cAffine::isWhole() const {
    for (const auto& row : linear) {
        for (const double value : row) {
            if (value != std::floor(value))
                return false;
        }
    }
    return true;
}

void cAffine::move(const float* offset) {
    for (int i = 0; i < 3; ++i)
        shift[i] += double(offset[i]);
}

void cAffine::keepAxis(int axis) {
    for (int column = 0; column < 3; ++column)
        linear[axis][column] = column == axis ? 1.0 : 0.0;
    shift[axis] = 0;
}

// A normal goes by the cofactors, turned where the map mirrors, and keeps its length.
static double moveNormal(const cAffine& map, const double* normal, double* out) {
    double cofactors[3][3];
    vecCross(map.linear[1], map.linear[2], cofactors[0]);
    vecCross(map.linear[2], map.linear[0], cofactors[1]);
    vecCross(map.linear[0], map.linear[1], cofactors[2]);
    const double determinant = vecDot(map.linear[0], cofactors[0]);
    const double sign = determinant < 0 ? -1 : 1;
    for (int i = 0; i < 3; ++i)
        out[i] = sign * vecDot(cofactors[i], normal);
    for (int i = 0; i < 3 && !map.isWhole(); ++i) {
        if (std::fabs(out[i]) < AXIS_EPSILON * std::sqrt(vecDot(out, out)))
            out[i] = 0;
    }
    const double length = std::sqrt(vecDot(out, out));
    if (length > 0)
        vecScale(out, std::sqrt(vecDot(normal, normal)) / length, out);
    return std::fabs(determinant);
}

cMovedPlane planeThrough(const cFaceData* face, const cAffine& map) {
    cMovedPlane plane = {
        {double(face->normal[0]), double(face->normal[1]), double(face->normal[2])},
        double(face->dist),
        true};
    double normal[3], point[3];
    vecCopy(plane.normal, normal);
    const double square = vecDot(normal, normal);
    if (map.isMove) {
        plane.dist += vecDot(normal, map.shift);
        return plane;
    }
    plane.isSound = moveNormal(map, normal, plane.normal) > FLAT_DETERMINANT && square > 0;
    vecScale(normal, plane.isSound ? plane.dist / square : 0, normal);
    for (int i = 0; i < 3; ++i)
        point[i] = vecDot(map.linear[i], normal) + map.shift[i];
    plane.dist = vecDot(plane.normal, point);
    return plane;
}

void setPlane(cFaceData* face, const cMovedPlane& plane) {
    for (int i = 0; i < 3; ++i)
        face->normal[i] = float(plane.normal[i]);
    face->dist = float(plane.dist);
    face->planeType = planeTypeForNormal(face->normal);
}

bool movePlane(cFaceData* face, const cAffine& map) {
    const cMovedPlane plane = planeThrough(face, map);
    if (plane.isSound)
        setPlane(face, plane);
    return plane.isSound;
}

// ---- Rebuilding

void finishEntity(cEntityData* entity) {
    if (entity->attachKind == AK_DECAL) {
        updateAttachmentBox(entity);
        entity->flags |= EF_RECOMPUTE_ATTACHMENT;
    }
    updateEntity(entity, 0);
}

void finishTransform(cMap& map, const std::vector<cBrushData*>& brushes) {
    const bool lock = g_host->TextureLock;
    const uint32_t mode = lock ? 0 : uint32_t(UM_RESET_AXES);
    QSet<cEntityData*> owners;
    for (cBrushData* brush : brushes) {
        for (cFaceData* face : facesOf(brush))
            face->flags |= FF_DIRTY;
        rebuildBrush(brush, mode);
        owners.insert(brush->owner);
    }
    for (cEntityData* owner : owners)
        updateEntity(owner, mode);
    map.markChanged();
}

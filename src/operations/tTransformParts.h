// SPDX-License-Identifier: MIT
// What the transforms share: the objects they work on, and the rebuild after their vertices moved.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <vector>

class cMap;

struct cTransformObjects {
    std::vector<cEntityData*> entities; // point entities alone move by themselves
    std::vector<cBrushData*> brushes;

    static cTransformObjects selected(const cMap& map); // newest first
    bool isEmpty() const { return entities.empty() && brushes.empty(); }
    void bounds(float* mins, float* maxs) const;
};

// x to linear x + shift, in doubles, so that planes lose nothing on their way.
struct cAffine {
    double linear[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    double shift[3] = {0, 0, 0};
    bool isMove = true; // linear is the identity

    // v to matrix (v - center) + center; matrix is 4x4, row-major, translation in the last column.
    static cAffine around(const float* center, const float* matrix);
    void move(const float* offset); // after all else
    void keepAxis(int axis);        // that coordinate stays as it is
    bool isWhole() const;           // flips and quarter turns, which round nothing
};

struct cMovedPlane {
    double normal[3];
    double dist;
    bool isSound; // false where the map flattens all
};
cMovedPlane planeThrough(const cFaceData* face, const cAffine& map);
// The face's plane, not taken from its corners, whose rounding a short edge would blow up; false
// where the map flattens it, and the plane stays.
bool movePlane(cFaceData* face, const cAffine& map);
void setPlane(cFaceData* face, const cMovedPlane& plane);

// A point entity whose origin and bounds have moved: what it shows and its place in the tree.
void finishEntity(cEntityData* entity);
// Brushes whose planes and corners have moved: rebuilt, with default texture axes unless the
// texture is locked, and one pass over the bounds of each owner. The document is dirty.
void finishTransform(cMap& map, const std::vector<cBrushData*>& brushes);

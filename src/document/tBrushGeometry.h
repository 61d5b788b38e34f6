// SPDX-License-Identifier: MIT
// The geometry kernel over faces and brushes: rebuilding planes, windings and bounds, validity,
// splitting. Touches no history. What is captured for undo is the caller's business.
#pragma once

#include "plugininterface/tPluginInterface.h"
#include "support/tMath.h"
#include "support/tSystem.h"

#include <QString>

int planeTypeForNormal(const float* normal); // 0, 1, 2 for an axial normal, else 3

// mode: UM_PLANES planes from vertices, UM_WINDINGS windings from planes, UM_RESET_AXES default
// texture axes. Always bounds, shade, alignment, texture coordinates. False: the face vanished
// and was freed.
bool rebuildFace(cFaceData* face, uint32_t mode);
// Rebuilds the dirty faces with mode, then bounds, centre and, without UM_NO_SORT, the face order
// and the cull tree.
void rebuildBrush(cBrushData* brush, uint32_t mode);
void sortFaces(cBrushData* brush);

bool checkBrush(const cBrushData* brush, bool allowCoplanar, QString* errorText);
bool checkFacePlanar(const cFaceData* face, QString* errorText);

cPlane planeOf(const cFaceData* face);

inline bool normalsEqual(const float* a, const float* b) {
    return vectorsEqual(a, b);
}
inline bool isZeroVector(const float* v) {
    return vectorIsZero(v);
}
inline void snapCoordinates(float* point) {
    snapVector(point);
}

// Two new brushes in the entity of the given one, which stays as it is. A null out pointer asks
// for no such piece; a piece that does not exist is null.
void splitBrush(cBrushData* brush, const cPlane& plane, cBrushData** frontOut,
                cBrushData** backOut);
int classifyBrush(const cBrushData* brush, const float* normal, float dist); // 1 front, 0, -1
bool brushesIntersect(const cBrushData* a, const cBrushData* b);
int removeDuplicatePlanes(cBrushData* brush);            // number of faces removed
int mergeCoplanarFaces(cBrushData* brush);               // those without extent go as well
void offsetBrushPlanes(cBrushData* brush, float offset); // grows outward for a positive offset
void reverseFace(cFaceData* face);
void insertFaceVertex(cFaceData* face, int index, const float* point, bool tag);

// Tests on a box. Margin 0.001, for boxesOverlap 0.01.
bool boxTouches(const float* mins, const float* maxs, const float* objectMins,
                const float* objectMaxs);
bool boxHolds(const float* mins, const float* maxs, const float* objectMins,
              const float* objectMaxs);
bool brushTouchesBox(const cBrushData* brush, const float* mins, const float* maxs);
bool brushInsideBox(const cBrushData* brush, const float* mins, const float* maxs);
bool brushCenterInBox(const cBrushData* brush, const float* mins, const float* maxs);
bool boxesOverlap(const float* aMins, const float* aMaxs, const float* bMins, const float* bMaxs);

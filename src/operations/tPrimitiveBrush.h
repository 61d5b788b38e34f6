// SPDX-License-Identifier: MIT
// What the primitives share: brushes from points and lists of corners, entered into the map as
// one step.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <array>
#include <vector>

using cPoint = std::array<float, 3>;

// Corners counter-clockwise seen from outside, as indices of points.
struct cSolid {
    std::vector<cPoint> points;
    std::vector<std::vector<int>> faces;
};

// To the next whole number when the primitive's points are snapped.
float roundedIf(const cPrimitiveParams& params, float value);
// Twice the signed area of the triangle on the axes a and b.
float turnOf(const cPoint& p, const cPoint& q, const cPoint& r, size_t a, size_t b);
// A brush of the world with these faces, all of them dirty; not rebuilt.
cBrushData* addSolid(const cPrimitiveParams& params, const cSolid& solid);
// Faces that rounding has left without extent go, and of those in one plane all but one. False:
// no solid is left, and the brush has been freed.
bool makeValid(cBrushData* brush);
// The new brushes become the selection, with their group while groups act as units, and are
// recorded as created. Marks the document dirty.
void enterCreated(const cPrimitiveParams& params, const char* stepName,
                  const std::vector<cBrushData*>& brushes, cGroupData* group);
// One solid as one step. False without a world, or if it is none.
bool createFrom(const cPrimitiveParams& params, const char* stepName, const cSolid& solid);

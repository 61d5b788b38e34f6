// SPDX-License-Identifier: MIT
// The classic face line keeps two offsets, a rotation and two scales over axes that follow from
// the normal; the editor keeps the axes themselves. Both directions of that projection.
#pragma once

#include "tPluginInterface.h"

// A plane as three points give it, in double and as the editor keeps it.
struct cMapPlane {
    double normal[3];
    double dist;
};

// One line of a brush as it is read.
struct cMapFace {
    cMapPlane plane;
    cFaceTexture tex;
};

// The outward plane (p0 - p1) x (p2 - p1); false when the points lie on one line, or so far out
// that a float can't hold the plane.
bool planeFromPoints(const double points[3][3], cMapPlane* out);

// The axis whose sides of a box give a classic line its texture axes: the largest component of the
// normal, and of equal ones z before x before y. Decided in double, by the last digit.
int baseAxisOf(const double* normal);
// A scale as the block holds it: one that is no number as a float, or 0, is 1.
float scaleOf(double scale);

struct cClassicProjection {
    double shift[2];
    double rotation; // degrees
    double scale[2];
};

// Sets axes, shifts, scales and rotation of the block.
void applyClassicProjection(const cClassicProjection& projection, const double* normal,
                            cFaceTexture* tex);

// The projection that lays the block's texture on the plane, exactly or as near as can be.
// The normal is the one that a reader finds in the written points: near a tie it decides which
// axes the line is read with. False when no exact projection exists, that is when some vertex is
// off by more than a hundredth of a texel.
bool classicProjectionOf(const cFaceData* face, const double* readNormal, cClassicProjection* out);

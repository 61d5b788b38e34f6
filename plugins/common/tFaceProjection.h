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

// The outward plane (p0 - p1) x (p2 - p1); false when the points lie on one line.
bool planeFromPoints(const double points[3][3], cMapPlane* out);

struct cClassicProjection {
    double shift[2];
    double rotation; // degrees
    double scale[2];
};

// Sets axes, shifts, scales and rotation of the block.
void applyClassicProjection(const cClassicProjection& projection, const float* normal,
                            cFaceTexture* tex);

// The projection that lays the block's texture on the plane, exactly or as near as can be.
// The normal is the one that a reader finds in the written points: near a tie it decides which
// axes the line is read with. False when no exact projection exists, that is when some vertex is
// off by more than a hundredth of a texel.
bool classicProjectionOf(const cFaceData* face, const float* readNormal, cClassicProjection* out);

// SPDX-License-Identifier: MIT
#include "views/tFrustum.h"

#include "support/tVec.h"

void cFrustum::addPlane(const float* normal, float dist) {
    cPlane& plane = planes[planeCount++];
    vecCopy(normal, plane.normal);
    plane.dist = dist;
    plane.planeType = 3;
    for (int i = 0; i < 3; ++i)
        if (normal[i] == 1.0f || normal[i] == -1.0f)
            plane.planeType = i;
    plane.signBits = T_SignbitsForNormal(normal);
}

// The distance in front of the plane of the box corner that lies deepest in its front.
static float frontDistance(const cPlane& plane, const float* mins, const float* maxs) {
    float sum = -plane.dist;
    for (int i = 0; i < 3; ++i)
        sum += plane.normal[i] * ((plane.signBits & (1 << i)) ? mins[i] : maxs[i]);
    return sum;
}

static bool isMasked(uint32_t mask, int index) {
    return (mask & (1u << index)) != 0;
}

bool cFrustum::cullBox(const float* mins, const float* maxs, uint32_t planeMask) const {
    for (int i = 0; i < planeCount; ++i)
        if (isMasked(planeMask, i) && frontDistance(planes[i], mins, maxs) < 0)
            return true;
    return false;
}

static bool anyInFront(const cPlane& plane, const float corners[8][3]) {
    for (int i = 0; i < 8; ++i)
        if (vecDot(corners[i], plane.normal) >= plane.dist)
            return true;
    return false;
}

bool cFrustum::cullRotatedBox(const float* mins, const float* maxs, const float* origin,
                              const float matrix[16], uint32_t planeMask) const {
    float corners[8][3];
    for (int i = 0; i < 8; ++i) {
        const float corner[3] = {(i & 1) ? maxs[0] : mins[0], (i & 2) ? maxs[1] : mins[1],
                                 (i & 4) ? maxs[2] : mins[2]};
        T_VectorRotate(corner, matrix, corners[i]);
        vecAdd(corners[i], origin, corners[i]);
    }
    for (int i = 0; i < planeCount; ++i)
        if (isMasked(planeMask, i) && !anyInFront(planes[i], corners))
            return true;
    return false;
}

eBoxSide cFrustum::classifyBox(const float* mins, const float* maxs, uint32_t* inOutMask) const {
    eBoxSide side = BOX_INSIDE;
    for (int i = 0; i < planeCount; ++i) {
        if (!isMasked(*inOutMask, i))
            continue;
        if (frontDistance(planes[i], mins, maxs) < 0)
            return BOX_OUTSIDE;
        // With mins and maxs exchanged it is the corner that lies deepest behind.
        if (frontDistance(planes[i], maxs, mins) >= 0)
            *inOutMask &= ~(1u << i);
        else
            side = BOX_CROSSES;
    }
    return side;
}

// SPDX-License-Identifier: MIT
// The clip planes of one view: 4 in a 2D view (left, right, bottom, top), 6 in a camera view.
// The normals point inward. Boxes are tested against it before anything is drawn.
#pragma once

#include "support/tMath.h"

#include <cstdint>

// Result of classifyBox.
enum eBoxSide { BOX_OUTSIDE = 0, BOX_INSIDE = 1, BOX_CROSSES = 2 };

class cFrustum {
public:
    static constexpr int MAX_PLANES = 6;
    static constexpr uint32_t ALL_PLANES = ~0u;

    void clear() { planeCount = 0; }
    void addPlane(const float* normal, float dist);

    // True if the box lies wholly behind one of the masked planes.
    bool cullBox(const float* mins, const float* maxs, uint32_t planeMask = ALL_PLANES) const;
    // The same for a box given about its own origin, turned by a matrix of tMath.h and moved there.
    bool cullRotatedBox(const float* mins, const float* maxs, const float* origin,
                        const float matrix[16], uint32_t planeMask = ALL_PLANES) const;
    // Takes the planes that the box wholly passes out of inOutMask.
    eBoxSide classifyBox(const float* mins, const float* maxs, uint32_t* inOutMask) const;

    cPlane planes[MAX_PLANES];
    int planeCount = 0;
};

// SPDX-License-Identifier: MIT
// The run-time half of a face. Created and freed by newFace and cMap::freeFace.
#pragma once

#include "plugininterface/tPluginInterface.h"

class cFace {
public:
    explicit cFace(cFaceData* record) : data(record) {}

    cFaceData* data;
    int pickId = -1;
    uint8_t color[4] = {0, 0, 0, 255}; // a copy of the brush's drawColor
    float shade = 1.0f;                // light factor of the plane
    int glMode = 9;                    // 4 triangles, 7 quads, 9 polygon, by the vertex count
    float center[3] = {0, 0, 0};
};

// How light a surface of that normal is drawn, from about -0.2 to 1.
float shadeForNormal(const float* normal);
float shadeForVector(float x, float y, float z);

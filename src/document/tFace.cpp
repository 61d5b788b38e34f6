// SPDX-License-Identifier: MIT
// Making faces, and the light on them.
#include "document/tFace.h"

#include "document/tMap.h"
#include "support/tSystem.h"

// The light falls along (1, 2, 3); a surface turned past the threshold is fully lit.
static constexpr float LIGHT[3] = {0.13363062f, 0.26726124f, 0.40089184f};
static constexpr float FULL_LIGHT = 0.19999999f;
static constexpr float AMBIENT = 0.8f;

float shadeForVector(float x, float y, float z) {
    const float d = LIGHT[0] * x + LIGHT[1] * y + LIGHT[2] * z;
    return d > FULL_LIGHT ? 1.0f : d + AMBIENT;
}

float shadeForNormal(const float* normal) {
    return shadeForVector(normal[0], normal[1], normal[2]);
}

cFaceData* newFace(int vertexCount) {
    auto* face = static_cast<cFaceData*>(Mem_Alloc(sizeof(cFaceData)));
    face->face = new cFace(face);
    face->flags = FF_DIRTY;
    face->planeType = 3;
    if (vertexCount > 0) {
        face->vertices =
            static_cast<cFaceVertex*>(Mem_Alloc(size_t(vertexCount) * sizeof(cFaceVertex)));
        face->vertexCount = vertexCount;
    }
    return face;
}

void freeDetachedFace(cFaceData* face) {
    delete face->face;
    Mem_Free(face->vertices);
    Mem_Free(face);
}

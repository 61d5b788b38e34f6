// SPDX-License-Identifier: MIT
// Textures, default axes, texture coordinates and texture lock of one face.
#include "document/tFaceMapping.h"

#include "document/tFace.h"
#include "document/tMap.h"
#include "document/tMapContext.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "document/tTexture.h"
#include "support/tHost.h"
#include "support/tMath.h"
#include "support/tVec.h"

static constexpr float ALIGNED_DOT = 0.9999f;   // axes this square to a normal are aligned
static constexpr float USABLE_EPSILON = 0.001f; // axes flatter to the face than this are useless
static constexpr float SKEW_EPSILON = 0.001f;   // a . b past this: the transform skews
static constexpr float UNIT_EPSILON = 0.0001f;  // a matrix row off this much scales
// One step above the nearest float to pi / 180.
static constexpr float RADIANS_PER_DEGREE = 0.017453294f;
static constexpr int NO_AXIS = 6;

struct cAlignedAxes {
    float normal[3];
    float uAxis[3];
    float vAxis[3];
};

// For world and face alignment; vAxis is the down vector too.
static const cAlignedAxes g_alignedAxes[6] = {
    {{0, 0, 1}, {1, 0, 0}, {0, -1, 0}},  {{0, 0, -1}, {1, 0, 0}, {0, -1, 0}},
    {{0, -1, 0}, {1, 0, 0}, {0, 0, -1}}, {{0, 1, 0}, {1, 0, 0}, {0, 0, -1}},
    {{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}, {{1, 0, 0}, {0, 1, 0}, {0, 0, -1}}};

// For a face with no alignment flag.
static const cAlignedAxes g_baseAxes[6] = {
    {{0, 0, 1}, {1, 0, 0}, {0, -1, 0}}, {{0, 0, -1}, {1, 0, 0}, {0, -1, 0}},
    {{1, 0, 0}, {0, 1, 0}, {0, 0, -1}}, {{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}},
    {{0, 1, 0}, {1, 0, 0}, {0, 0, -1}}, {{0, -1, 0}, {1, 0, 0}, {0, 0, -1}}};

// ---- The texture itself

void dropTexture(cFaceData* face, cMapContext& context) {
    if (!face->texture)
        return;
    --face->texture->useCount;
    context.releaseTexture(face->texture);
    face->texture = nullptr;
}

static void takeTexture(cFaceData* face, cTexture* found, cMapContext& context) {
    face->texture = found ? found : context.addMissingTexture(face->tex.name);
    if (!face->texture)
        return;
    ++face->texture->useCount;
    ++face->texture->refCount;
}

void updateFaceTransparency(cFaceData* face) {
    const bool transparent =
        g_host->TextureTransparency && face->texture && isTranslucent(*face->texture);
    face->flags =
        transparent ? face->flags | FF_TRANSPARENT : face->flags & ~uint32_t(FF_TRANSPARENT);
}

static void mend(float& number, bool isUsable, float byDefault, bool* mended) {
    if (isUsable)
        return;
    number = byDefault;
    *mended = true;
}

bool mendTextureBlock(cFaceTexture& block, uint32_t& faceFlags) {
    bool mended = false;
    for (int i = 0; i < 3; ++i) {
        mend(block.uAxis[i], std::isfinite(block.uAxis[i]), 0, &mended);
        mend(block.vAxis[i], std::isfinite(block.vAxis[i]), 0, &mended);
    }
    if (mended)
        faceFlags |= FF_RESET_AXES;
    for (float* number : {&block.uShift, &block.vShift, &block.rotation})
        mend(*number, std::isfinite(*number), 0, &mended);
    for (float* scale : {&block.uScale, &block.vScale})
        mend(*scale, std::isnormal(*scale), 1, &mended);
    return mended;
}

void applyTextureBlock(cFaceData* face, const cFaceTexture& block) {
    cFaceTexture copy = block;
    copy.name[sizeof copy.name - 1] = 0;
    cMapContext& context = contextOf(face);
    noteChange(face->brush);
    cTexture* found = context.findTexture(copy.name);
    if (found && found == face->texture) {
        face->tex = copy;
        return;
    }
    dropTexture(face, context);
    face->tex = copy;
    takeTexture(face, found, context);
    updateFaceTransparency(face);
}

void setTexture(cFaceData* face, const char* name, cTexture* found) {
    cMapContext& context = contextOf(face);
    noteChange(face->brush);
    if (found && found == face->texture && qstricmp(name, face->tex.name) == 0)
        return;
    char copy[sizeof face->tex.name];
    T_Sprintf(copy, sizeof copy, "%s", name);
    dropTexture(face, context);
    memset(face->tex.name, 0, sizeof face->tex.name);
    memcpy(face->tex.name, copy, strlen(copy));
    takeTexture(face, found, context);
    if (face->texture) {
        face->tex.surfaceFlags = face->texture->surfaceFlags;
        face->tex.contentFlags = face->texture->contentFlags;
        face->tex.value = face->texture->value;
    }
    updateFaceTransparency(face);
}

void setTextureName(cFaceData* face, const char* name) {
    setTexture(face, name, contextOf(face).findTexture(name));
}

void exchangeTexture(cFaceData* face, const char* name, cTexture* found) {
    const cFaceTexture before = face->tex;
    const cTexture* texture = face->texture;
    const bool ownSurface = !texture || before.surfaceFlags != texture->surfaceFlags;
    const bool ownContents = !texture || before.contentFlags != texture->contentFlags;
    const bool ownValue = !texture || before.value != texture->value;
    const uint32_t detail = contextOf(face).profile().detailContentMask;
    setTexture(face, name, found);
    cFaceTexture& tex = face->tex;
    if (ownSurface)
        tex.surfaceFlags = before.surfaceFlags;
    if (ownContents)
        tex.contentFlags = before.contentFlags;
    if (ownValue)
        tex.value = before.value;
    tex.contentFlags = (tex.contentFlags & ~detail) | (before.contentFlags & detail);
}

// ---- Axes

int majorAxis(const cFaceData* face) {
    if (face->normal[0] == 0 && face->normal[1] == 0 && face->normal[2] == 0)
        return NO_AXIS;
    float best = 0;
    int row = NO_AXIS;
    for (int i = 0; i < 6; ++i) {
        const float d = vecDot(face->normal, g_alignedAxes[i].normal);
        if (d >= best) {
            best = d;
            row = i;
        }
    }
    return row;
}

static int baseAxis(const cFaceData* face) {
    float best = 0;
    int row = 0;
    for (int i = 0; i < 6; ++i) {
        const float d = vecDot(face->normal, g_baseAxes[i].normal);
        if (d > best) {
            best = d;
            row = i;
        }
    }
    return row;
}

static void setAxes(cFaceTexture& tex, const cAlignedAxes& axes) {
    vecCopy(axes.uAxis, tex.uAxis);
    vecCopy(axes.vAxis, tex.vAxis);
}

void resetAxes(cFaceData* face) {
    cFaceTexture& tex = face->tex;
    vecSet(tex.uAxis, 1.0f, 0.0f, 0.0f);
    vecSet(tex.vAxis, 0.0f, 1.0f, 0.0f);
    const int row = majorAxis(face);
    if (row == NO_AXIS)
        return;
    if (tex.alignFlags & FT_ALIGN_FACE) {
        vecCross(face->normal, g_alignedAxes[row].vAxis, tex.uAxis);
        T_VectorNormalize(tex.uAxis);
        vecCross(tex.uAxis, face->normal, tex.vAxis);
        T_VectorNormalize(tex.vAxis);
    } else if (tex.alignFlags & FT_ALIGN_WORLD) {
        setAxes(tex, g_alignedAxes[row]);
    } else {
        setAxes(tex, g_baseAxes[baseAxis(face)]);
    }
    if (tex.rotation != 0)
        rotateAxes(face, tex.rotation);
}

// The right-handed rotation about w, taken as unit, row-major.
static void rotationMatrix(const float* w, float radians, float matrix[16]) {
    float s, c;
    T_SinCosPrecise(radians, &s, &c);
    const float x = w[0], y = w[1], z = w[2];
    const float t = 1.0f - c;
    const float rows[16] = {x * x + (1 - x * x) * c,
                            x * y * t - z * s,
                            x * z * t + y * s,
                            0,
                            x * y * t + z * s,
                            y * y + (1 - y * y) * c,
                            y * z * t - x * s,
                            0,
                            x * z * t - y * s,
                            y * z * t + x * s,
                            z * z + (1 - z * z) * c,
                            0,
                            0,
                            0,
                            0,
                            1};
    memcpy(matrix, rows, sizeof rows);
}

void rotateAxes(cFaceData* face, float degrees) {
    float w[3];
    vecCross(face->tex.vAxis, face->tex.uAxis, w);
    T_VectorNormalize(w);
    float matrix[16];
    rotationMatrix(w, degrees * RADIANS_PER_DEGREE, matrix);
    T_VectorRotate(face->tex.uAxis, matrix, face->tex.uAxis);
    T_VectorRotate(face->tex.vAxis, matrix, face->tex.vAxis);
}

void computeAlignFlags(cFaceData* face) {
    cFaceTexture& tex = face->tex;
    tex.alignFlags = 0;
    float w[3];
    vecCross(tex.vAxis, tex.uAxis, w);
    T_VectorNormalize(w);
    if (vecDot(w, face->normal) >= ALIGNED_DOT)
        tex.alignFlags |= FT_ALIGN_FACE;
    const int row = majorAxis(face);
    if (row == NO_AXIS)
        return;
    float aligned[3];
    vecCross(g_alignedAxes[row].vAxis, g_alignedAxes[row].uAxis, aligned);
    if (vecDot(aligned, w) >= ALIGNED_DOT)
        tex.alignFlags |= FT_ALIGN_WORLD;
}

bool axesUsable(const cFaceData* face) {
    float w[3];
    vecCross(face->tex.uAxis, face->tex.vAxis, w);
    return std::fabs(vecDot(w, face->normal)) > USABLE_EPSILON;
}

// ---- Coordinates and shifts

void computeTexCoords(cFaceData* face) {
    const cFaceTexture& tex = face->tex;
    const cTexture* texture = face->texture;
    const float width = float(texture && texture->width ? texture->width : 1);
    const float height = float(texture && texture->height ? texture->height : 1);
    for (int i = 0; i < face->vertexCount; ++i) {
        cFaceVertex& vertex = face->vertices[i];
        vertex.st[0] = (vecDot(vertex.xyz, tex.uAxis) / tex.uScale + tex.uShift) / width;
        vertex.st[1] = (vecDot(vertex.xyz, tex.vAxis) / tex.vScale + tex.vShift) / height;
    }
    if (face->brush)
        noteChange(face->brush);
}

void wrapShifts(cFaceData* face) {
    const cTexture* texture = face->texture;
    if (!texture || (texture->flags & TF_PLACEHOLDER))
        return;
    if (texture->width)
        face->tex.uShift = std::fmod(face->tex.uShift, float(texture->width));
    if (texture->height)
        face->tex.vShift = std::fmod(face->tex.vShift, float(texture->height));
}

// ---- Texture lock

static bool scales(const float matrix[16]) {
    for (int row = 0; row < 3; ++row) {
        const float length = vecLength(matrix + row * 4);
        if (!(std::fabs(1.0f - length) <= UNIT_EPSILON))
            return true;
    }
    return false;
}

void textureLock(cFaceData* face, const float* pivot, const float matrix[16], bool lockScale) {
    cFaceTexture& tex = face->tex;
    float a[3], b[3];
    T_VectorRotate(tex.uAxis, matrix, a);
    T_VectorRotate(tex.vAxis, matrix, b);
    const float lengthA = T_VectorNormalize(a);
    const float lengthB = T_VectorNormalize(b);
    if (std::fabs(vecDot(a, b)) > SKEW_EPSILON)
        return;
    vecCopy(a, tex.uAxis);
    vecCopy(b, tex.vAxis);
    if (lockScale) {
        tex.uScale *= lengthA;
        tex.vScale *= lengthB;
    } else if (scales(matrix)) {
        wrapShifts(face);
        return;
    }
    float d[3];
    vecNegate(pivot, d);
    T_VectorTransform(d, matrix, d);
    vecAdd(d, pivot, d);
    tex.uShift -= vecDot(tex.uAxis, d) / tex.uScale;
    tex.vShift -= vecDot(tex.vAxis, d) / tex.vScale;
    wrapShifts(face);
}

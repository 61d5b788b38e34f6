// SPDX-License-Identifier: MIT
// Texture coordinates, default axes, texture lock, justify and wrap-around of one face.
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

static constexpr float MIN_SCALE = 0.001f;      // a smaller scale counts as none
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

void setTextureName(cFaceData* face, const char* name) {
    cMapContext& context = contextOf(face);
    noteChange(face->brush);
    cTexture* found = context.findTexture(name);
    if (found && found == face->texture)
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

// ---- Justify

void faceExtents(const cFaceData* face, float points[6][3]) {
    if (face->vertexCount == 0)
        return;
    for (int i = 0; i < 6; ++i)
        vecCopy(face->vertices[0].xyz, points[i]);
    for (int i = 1; i < face->vertexCount; ++i) {
        const float* p = face->vertices[i].xyz;
        for (int axis = 0; axis < 3; ++axis) {
            if (p[axis] < points[axis * 2][axis])
                vecCopy(p, points[axis * 2]);
            if (p[axis] > points[axis * 2 + 1][axis])
                vecCopy(p, points[axis * 2 + 1]);
        }
    }
}

void textureBounds(const cFaceData* face, const float points[6][3], float out[4]) {
    const cFaceTexture& tex = face->tex;
    for (int i = 0; i < 6; ++i) {
        const float s = vecDot(points[i], tex.uAxis) / tex.uScale;
        const float t = vecDot(points[i], tex.vAxis) / tex.vScale;
        out[0] = i ? std::fmin(out[0], s) : s;
        out[1] = i ? std::fmin(out[1], t) : t;
        out[2] = i ? std::fmax(out[2], s) : s;
        out[3] = i ? std::fmax(out[3], t) : t;
    }
}

static void justifyFit(cFaceData* face, const float points[6][3], float fitX, float fitY, int width,
                       int height) {
    cFaceTexture& tex = face->tex;
    tex.uScale = tex.vScale = 1.0f;
    float b[4];
    textureBounds(face, points, b);
    tex.uScale = (b[2] - b[0]) / (fitX * float(width));
    tex.vScale = (b[3] - b[1]) / (fitY * float(height));
    if (!(std::fabs(tex.uScale) >= MIN_SCALE))
        tex.uScale = 1.0f;
    if (!(std::fabs(tex.vScale) >= MIN_SCALE))
        tex.vScale = 1.0f;
    tex.uShift = -b[0] / tex.uScale;
    tex.vShift = -b[1] / tex.vScale;
}

void justify(cFaceData* face, int mode, const float points[6][3], float fitX, float fitY) {
    cFaceTexture& tex = face->tex;
    const int width = face->texture ? face->texture->width : 0;
    const int height = face->texture ? face->texture->height : 0;
    float b[4]; // least s, least t, greatest s, greatest t
    textureBounds(face, points, b);
    switch (mode) {
    case JUSTIFY_TOP:
        tex.vShift = -b[1];
        break;
    case JUSTIFY_BOTTOM:
        tex.vShift = float(height) - b[3];
        break;
    case JUSTIFY_LEFT:
        tex.uShift = -b[0];
        break;
    case JUSTIFY_RIGHT:
        tex.uShift = float(width) - b[2];
        break;
    case JUSTIFY_CENTER:
        tex.uShift = float(width >> 1) - (b[0] + b[2]) / 2;
        tex.vShift = float(height >> 1) - (b[1] + b[3]) / 2;
        break;
    case JUSTIFY_FIT:
        justifyFit(face, points, fitX, fitY, width, height);
        break;
    default:
        break;
    }
    wrapShifts(face);
}

// ---- Alignment to another face or a view

// The point on both planes nearest the world's origin; e is the unit direction of their edge.
static bool meetingPoint(const cFaceData* face, const cFaceData* reference, const float* e,
                         float* point) {
    float nxe[3], rxe[3], exn[3];
    vecCross(face->normal, e, nxe);
    const float det = vecDot(reference->normal, nxe);
    if (det == 0)
        return false;
    vecCross(reference->normal, e, rxe);
    vecNegate(nxe, exn);
    for (int i = 0; i < 3; ++i)
        point[i] = (face->dist * rxe[i] + reference->dist * exn[i]) / -det;
    return true;
}

// How far the texture turns about the edge, between the reference's texture plane and the face.
static float foldAngle(const cFaceData* face, const cFaceData* reference, const float* e) {
    constexpr float PI = 3.1415927f;
    float w[3], a[3], b[3];
    vecCross(reference->tex.uAxis, reference->tex.vAxis, w);
    T_VectorNormalize(w);
    T_ProjectPointOnPlane(a, w, e);
    T_VectorNormalize(a);
    T_ProjectPointOnPlane(b, face->normal, e);
    T_VectorNormalize(b);
    const float c = vecDot(a, b);
    float angle = std::atan2(T_Sqrt(std::fmax(0.0f, 1 - c * c)), c);
    if (c < 0)
        angle = PI - angle;
    // Past a right angle between the faces the folded angle would leave the plane.
    return vecDot(face->normal, reference->normal) < 0 ? PI - angle : angle;
}

void alignToFace(cFaceData* face, const cFaceData* reference) {
    if (!reference)
        return;
    const cFaceTexture& ref = reference->tex;
    float e[3], q[3], u[3], v[3], origin[3];
    vecCross(reference->normal, face->normal, e);
    T_VectorNormalize(e);
    vecCopy(ref.uAxis, u);
    vecCopy(ref.vAxis, v);
    vecScale(u, ref.uScale * ref.uShift, origin);
    vecMA(origin, ref.vScale * ref.vShift, v, origin);
    if (meetingPoint(face, reference, e, q)) {
        float matrix[16];
        rotationMatrix(e, foldAngle(face, reference, e), matrix);
        T_VectorRotate(u, matrix, u);
        T_VectorRotate(v, matrix, v);
        vecAdd(origin, q, origin);
        T_VectorRotate(origin, matrix, origin);
        vecSubtract(origin, q, origin);
    }
    cFaceTexture& tex = face->tex;
    vecCopy(u, tex.uAxis);
    vecCopy(v, tex.vAxis);
    tex.uShift = vecDot(u, origin) / ref.uScale;
    tex.vShift = vecDot(v, origin) / ref.vScale;
    wrapShifts(face);
    tex.rotation = 0;
    tex.uScale = ref.uScale;
    tex.vScale = ref.vScale;
}

void alignToPlane(cFaceData* face, const float* point, const float* uAxis, const float* vAxis) {
    cFaceTexture& tex = face->tex;
    if (std::fabs(tex.uScale) < MIN_SCALE)
        tex.uScale = 1.0f;
    if (std::fabs(tex.vScale) < MIN_SCALE)
        tex.vScale = 1.0f;
    vecCopy(uAxis, tex.uAxis);
    vecCopy(vAxis, tex.vAxis);
    tex.uShift = tex.uScale * vecDot(point, uAxis);
    tex.vShift = tex.vScale * vecDot(point, vAxis);
    face->flags |= FF_DIRTY;
    tex.rotation = 0;
    wrapShifts(face);
}

// SPDX-License-Identifier: MIT
// Laying a texture on a face: by its edges, from a neighbour, from a view.
#include "document/tFace.h"
#include "document/tFaceMapping.h"
#include "document/tMapWatcher.h"
#include "document/tTexture.h"
#include "support/tMath.h"
#include "support/tVec.h"

#include <algorithm>

static constexpr double PARALLEL_SINE = 0.001;  // flatter to each other faces count as of one plane
static constexpr float SHARED_DISTANCE = 0.02f; // corners nearer than this are one

float usableScale(float scale) {
    return std::fabs(scale) < MIN_TEXTURE_SCALE ? 1.0f : scale;
}

// ---- Justify

void addFacePoints(const cFaceData* face, cPointList& points) {
    for (int i = 0; i < face->vertexCount; ++i) {
        const float* p = face->vertices[i].xyz;
        points.push_back({p[0], p[1], p[2]});
    }
}

void axisExtent(const float* axis, const cPointList& points, float out[2]) {
    out[0] = out[1] = points.empty() ? 0 : vecDot(points[0].data(), axis);
    for (const auto& point : points) {
        const float along = vecDot(point.data(), axis);
        out[0] = std::min(out[0], along);
        out[1] = std::max(out[1], along);
    }
}

cTextureExtents textureExtents(const cFaceTexture& tex, const cPointList& points) {
    cTextureExtents extents;
    axisExtent(tex.uAxis, points, extents.u);
    axisExtent(tex.vAxis, points, extents.v);
    return extents;
}

// Least and greatest texel without the shift.
static void texelRange(const float extent[2], float scale, float out[2]) {
    out[0] = std::min(extent[0] / scale, extent[1] / scale);
    out[1] = std::max(extent[0] / scale, extent[1] / scale);
}

static void fit(const float extent[2], float repeats, int texels, float& scale, float& shift) {
    const float wanted = (extent[1] - extent[0]) / (repeats * float(texels));
    const bool isUsable = std::isfinite(wanted) && wanted >= MIN_TEXTURE_SCALE;
    scale = std::copysign(isUsable ? wanted : 1.0f, scale);
    float range[2];
    texelRange(extent, scale, range);
    shift = -range[0];
}

void justify(cFaceData* face, int mode, const cTextureExtents& extents, float fitX, float fitY) {
    cFaceTexture& tex = face->tex;
    const int width = face->texture ? face->texture->width : 0;
    const int height = face->texture ? face->texture->height : 0;
    float s[2], t[2];
    texelRange(extents.u, tex.uScale, s);
    texelRange(extents.v, tex.vScale, t);
    switch (mode) {
    case JUSTIFY_TOP:
        tex.vShift = -t[0];
        break;
    case JUSTIFY_BOTTOM:
        tex.vShift = float(height) - t[1];
        break;
    case JUSTIFY_LEFT:
        tex.uShift = -s[0];
        break;
    case JUSTIFY_RIGHT:
        tex.uShift = float(width) - s[1];
        break;
    case JUSTIFY_CENTER:
        tex.uShift = float(width) / 2 - (s[0] + s[1]) / 2;
        tex.vShift = float(height) / 2 - (t[0] + t[1]) / 2;
        break;
    case JUSTIFY_FIT:
        fit(extents.u, fitX, width, tex.uScale, tex.uShift);
        fit(extents.v, fitY, height, tex.vScale, tex.vShift);
        break;
    default:
        break;
    }
    wrapShifts(face);
}

// ---- From a neighbour

static bool isNear(const float* a, const float* b) {
    float way[3];
    vecSubtract(a, b, way);
    return vecDot(way, way) < SHARED_DISTANCE * SHARED_DISTANCE;
}

// How many corners of one are corners of the other; the last of them.
static int sharedCorners(const cFaceData* a, const cFaceData* b, const float** last) {
    int shared = 0;
    for (int i = 0; i < a->vertexCount; ++i) {
        const float* corner = a->vertices[i].xyz;
        const auto isThere = [&](const cFaceVertex& other) { return isNear(other.xyz, corner); };
        if (!std::any_of(b->vertices, b->vertices + b->vertexCount, isThere))
            continue;
        *last = corner;
        ++shared;
    }
    return shared;
}

bool shareEdge(const cFaceData* a, const cFaceData* b) {
    const float* corner = nullptr;
    return a != b && sharedCorners(a, b, &corner) > 1;
}

using cVec = std::array<double, 3>;

static cVec toDouble(const float* v) {
    return {double(v[0]), double(v[1]), double(v[2])};
}

static cVec normalized(cVec v) {
    const double length = std::sqrt(vecDot(v.data(), v.data()));
    if (length > 0)
        vecScale(v.data(), 1 / length, v.data());
    return v;
}

static cVec cross(const cVec& a, const cVec& b) {
    cVec out;
    vecCross(a.data(), b.data(), out.data());
    return out;
}

// v turned about the unit vector e, right-handed.
static cVec turned(const cVec& v, const cVec& e, double sine, double cosine) {
    const cVec side = cross(e, v);
    const double along = vecDot(e.data(), v.data()) * (1 - cosine);
    cVec out;
    for (size_t i = 0; i < 3; ++i)
        out[i] = v[i] * cosine + side[i] * sine + e[i] * along;
    return out;
}

// Where a texture is held while it is folded: a corner that both have, else the point of both
// planes nearest a corner of the face.
static cVec foldPoint(const cFaceData* face, const cFaceData* reference) {
    const float* corner = face->vertexCount > 0 ? face->vertices[0].xyz : face->face->center;
    if (sharedCorners(face, reference, &corner) > 0)
        return toDouble(corner);
    const cVec n = toDouble(face->normal), r = toDouble(reference->normal);
    cVec p = toDouble(corner);
    const double c = vecDot(n.data(), r.data());
    const double offN = double(face->dist) - vecDot(n.data(), p.data());
    const double offR = double(reference->dist) - vecDot(r.data(), p.data());
    const double det = 1 - c * c;
    for (size_t i = 0; i < 3; ++i)
        p[i] += (n[i] * (offN - c * offR) + r[i] * (offR - c * offN)) / det;
    return p;
}

// How far the plane of the texture's axes turns about the edge to lie in the face. It need not lie
// in the reference; its normal is taken on the reference's side, as the axes may be mirrored.
static double foldAngle(const cVec& n, const cVec& r, const cVec& e, const cFaceTexture& tex) {
    cVec w = cross(toDouble(tex.uAxis), toDouble(tex.vAxis));
    vecMA(w.data(), -vecDot(w.data(), e.data()), e.data(), w.data());
    if (vecDot(w.data(), r.data()) < 0)
        vecNegate(w.data(), w.data());
    return std::atan2(vecDot(e.data(), cross(w, n).data()), vecDot(w.data(), n.data()));
}

void alignToFace(cFaceData* face, const cFaceData* reference) {
    if (!reference)
        return;
    const cFaceTexture& ref = reference->tex;
    cFaceTexture& tex = face->tex;
    const cVec n = normalized(toDouble(face->normal)), r = normalized(toDouble(reference->normal));
    const cVec across = cross(r, n);
    tex.uScale = ref.uScale;
    tex.vScale = ref.vScale;
    if (std::sqrt(vecDot(across.data(), across.data())) < PARALLEL_SINE) {
        vecCopy(ref.uAxis, tex.uAxis);
        vecCopy(ref.vAxis, tex.vAxis);
        tex.uShift = ref.uShift;
        tex.vShift = ref.vShift;
        tex.rotation = ref.rotation;
        wrapShifts(face);
        return;
    }
    const cVec e = normalized(across), p = foldPoint(face, reference);
    const double angle = foldAngle(n, r, e, ref);
    const auto fold = [&](const float* axis, float scale, float shift, float* axisOut) {
        const cVec before = toDouble(axis),
                   after = turned(before, e, std::sin(angle), std::cos(angle));
        for (size_t i = 0; i < 3; ++i)
            axisOut[i] = float(after[i]);
        // By the axis as it is kept, or its rounding would tell far from the origin.
        const cVec kept = toDouble(axisOut);
        return float(double(shift) +
                     (vecDot(p.data(), before.data()) - vecDot(p.data(), kept.data())) /
                         double(scale));
    };
    tex.uShift = fold(ref.uAxis, ref.uScale, ref.uShift, tex.uAxis);
    tex.vShift = fold(ref.vAxis, ref.vScale, ref.vShift, tex.vAxis);
    tex.rotation = 0;
    wrapShifts(face);
}

// ---- From a view

void alignToPlane(cFaceData* face, const float* point, const float* uAxis, const float* vAxis) {
    cFaceTexture& tex = face->tex;
    vecCopy(uAxis, tex.uAxis);
    vecCopy(vAxis, tex.vAxis);
    tex.uScale = usableScale(tex.uScale);
    tex.vScale = usableScale(tex.vScale);
    tex.uShift = -vecDot(point, uAxis) / tex.uScale;
    tex.vShift = -vecDot(point, vAxis) / tex.vScale;
    tex.rotation = 0;
    face->flags |= FF_DIRTY;
    wrapShifts(face);
}

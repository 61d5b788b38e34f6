// SPDX-License-Identifier: MIT
#include "common/tFaceProjection.h"

#include "common/tVector.h"

#include <cfloat>

static constexpr double RADIANS_PER_DEGREE = 3.14159265358979323846 / 180.0;
static constexpr double TEXEL_EPSILON = 0.01; // a coordinate this near is the same
static constexpr double MIN_NORMAL_LENGTH = 1e-9;

struct cBaseAxes {
    int normalAxis;
    int normalSign;
    int s; // the place of the only component of the U axis
    int t; // and of the V axis, which is negative
};

static const cBaseAxes g_baseAxes[6] = {{2, 1, 0, 1},  {2, -1, 0, 1}, {0, 1, 1, 2},
                                        {0, -1, 1, 2}, {1, 1, 0, 2},  {1, -1, 0, 2}};

bool planeFromPoints(const double points[3][3], cMapPlane* out) {
    cVec3 p[3];
    for (int i = 0; i < 3; ++i)
        p[i] = {points[i][0], points[i][1], points[i][2]};
    const cVec3 normal = cross(p[0] - p[1], p[2] - p[1]);
    const double size = length(normal);
    if (!(size > MIN_NORMAL_LENGTH))
        return false;
    for (int i = 0; i < 3; ++i)
        out->normal[i] = normal[size_t(i)] / size;
    out->dist = dot(normal, p[1]) / size;
    return std::fabs(out->dist) <= double(FLT_MAX);
}

static const cBaseAxes& baseAxesFor(const double* normal) {
    int row = 0;
    double best = 0;
    for (int i = 0; i < 6; ++i) {
        const double d = normal[g_baseAxes[i].normalAxis] * g_baseAxes[i].normalSign;
        if (d > best) {
            best = d;
            row = i;
        }
    }
    return g_baseAxes[row];
}

int baseAxisOf(const double* normal) {
    return baseAxesFor(normal).normalAxis;
}

float scaleOf(double scale) {
    const auto narrow = float(scale);
    return std::isnormal(narrow) ? narrow : 1.0f;
}

// Sine and cosine without the dust at the quarter turns.
static void exactSinCos(double degrees, double* sine, double* cosine) {
    const double turned = std::fmod(degrees, 360.0);
    const double quarters = turned / 90.0;
    if (quarters == std::floor(quarters)) {
        static const int sines[4] = {0, 1, 0, -1};
        const int quarter = (int(quarters) + 4) % 4;
        *sine = sines[quarter];
        *cosine = sines[(quarter + 1) % 4];
        return;
    }
    *sine = std::sin(turned * RADIANS_PER_DEGREE);
    *cosine = std::cos(turned * RADIANS_PER_DEGREE);
}

void applyClassicProjection(const cClassicProjection& projection, const double* normal,
                            cFaceTexture* tex) {
    const cBaseAxes& base = baseAxesFor(normal);
    double sine, cosine;
    exactSinCos(projection.rotation, &sine, &cosine);
    for (int i = 0; i < 3; ++i)
        tex->uAxis[i] = tex->vAxis[i] = 0;
    tex->uAxis[base.s] = float(cosine);
    tex->uAxis[base.t] = float(sine);
    tex->vAxis[base.s] = float(sine);
    tex->vAxis[base.t] = float(-cosine);
    tex->uShift = float(projection.shift[0]);
    tex->vShift = float(projection.shift[1]);
    tex->uScale = scaleOf(projection.scale[0]);
    tex->vScale = scaleOf(projection.scale[1]);
    tex->rotation = float(projection.rotation);
}

// ---- The way back

// What one texture axis is on the plane: a gradient over the places s and t, and an offset.
struct cPlanarAxis {
    double s;
    double t;
    double offset;
    double length() const { return std::sqrt(s * s + t * t); }
};

static cPlanarAxis planarAxis(const cFaceData* face, const cBaseAxes& base, const float* axis,
                              float scale, float shift) {
    // On the plane the third coordinate follows from the other two.
    const int k = base.normalAxis;
    const double nk = double(face->normal[k]);
    const double lift = double(axis[k]) / double(scale) / nk;
    return {double(axis[base.s]) / double(scale) - lift * double(face->normal[base.s]),
            double(axis[base.t]) / double(scale) - lift * double(face->normal[base.t]),
            double(shift) + lift * double(face->dist)};
}

static double texelOf(const float* p, const float* axis, float scale, float shift) {
    return dot(vec3(p), vec3(axis)) / double(scale) + double(shift);
}

// How far the written projection, as floats, puts any vertex from where the block has it.
static double worstError(const cFaceData* face, const double* readNormal,
                         const cClassicProjection& projection) {
    cFaceTexture written = face->tex;
    applyClassicProjection(projection, readNormal, &written);
    const cFaceTexture& tex = face->tex;
    double worst = 0;
    for (int i = 0; i < face->vertexCount; ++i) {
        const float* p = face->vertices[i].xyz;
        worst =
            std::fmax(worst, std::fabs(texelOf(p, tex.uAxis, tex.uScale, tex.uShift) -
                                       texelOf(p, written.uAxis, written.uScale, written.uShift)));
        worst =
            std::fmax(worst, std::fabs(texelOf(p, tex.vAxis, tex.vScale, tex.vShift) -
                                       texelOf(p, written.vAxis, written.vScale, written.vShift)));
    }
    return worst;
}

static double inverse(double gradient) {
    return std::fabs(gradient) > 1e-12 ? 1.0 / gradient : 1.0;
}

// For a given rotation: the scales that follow, and the shifts that fit the face's middle.
static cClassicProjection projectionAt(const cFaceData* face, const cBaseAxes& base,
                                       const cPlanarAxis& u, const cPlanarAxis& v,
                                       double rotation) {
    double sine, cosine;
    exactSinCos(rotation, &sine, &cosine);
    cClassicProjection result = {{u.offset, v.offset}, rotation, {1, 1}};
    const double gu = u.s * cosine + u.t * sine;
    const double gv = v.s * sine - v.t * cosine;
    result.scale[0] = inverse(gu);
    result.scale[1] = inverse(gv);
    double s = 0, t = 0;
    for (int i = 0; i < face->vertexCount; ++i) {
        s += double(face->vertices[i].xyz[base.s]) / face->vertexCount;
        t += double(face->vertices[i].xyz[base.t]) / face->vertexCount;
    }
    result.shift[0] += (u.s - cosine * gu) * s + (u.t - sine * gu) * t;
    result.shift[1] += (v.s - sine * gv) * s + (v.t + cosine * gv) * t;
    return result;
}

// The block's own numbers where they say the same: they are rounder than computed ones.
static void preferOwn(double* value, float own) {
    if (std::fabs(*value - double(own)) <= 1e-5 * std::fmax(1.0, std::fabs(double(own))))
        *value = double(own);
}

static void roundToOwn(const cFaceTexture& tex, cClassicProjection* p) {
    preferOwn(&p->scale[0], tex.uScale);
    preferOwn(&p->scale[1], tex.vScale);
    preferOwn(&p->shift[0], tex.uShift);
    preferOwn(&p->shift[1], tex.vShift);
}

// Numbers that come back from the text as they are.
static bool isWritable(const cClassicProjection& p) {
    for (const double number : {p.shift[0], p.shift[1], p.rotation}) {
        if (!(std::fabs(number) <= double(FLT_MAX)))
            return false;
    }
    return std::isnormal(float(p.scale[0])) && std::isnormal(float(p.scale[1]));
}

bool classicProjectionOf(const cFaceData* face, const double* readNormal, cClassicProjection* out) {
    const cFaceTexture& tex = face->tex;
    const cBaseAxes& base = baseAxesFor(readNormal);
    *out = {{double(tex.uShift), double(tex.vShift)}, double(tex.rotation), {1, 1}};
    if (face->normal[base.normalAxis] == 0)
        return false;
    const cPlanarAxis u = planarAxis(face, base, tex.uAxis, tex.uScale, tex.uShift);
    const cPlanarAxis v = planarAxis(face, base, tex.vAxis, tex.vScale, tex.vShift);
    const double byU = std::atan2(u.t, u.s) / RADIANS_PER_DEGREE;
    double byV = std::atan2(v.s, -v.t) / RADIANS_PER_DEGREE;
    // The V scale takes the sign, so the two angles lie within a quarter turn of each other.
    byV = byU + std::remainder(byV - byU, 180.0);
    double best = -1;
    for (const double rotation : {double(tex.rotation), std::round(byU), byU, (byU + byV) * 0.5}) {
        cClassicProjection candidate = projectionAt(face, base, u, v, rotation);
        roundToOwn(tex, &candidate);
        const double error = worstError(face, readNormal, candidate);
        if (!isWritable(candidate) || (best >= 0 && !(error < best)))
            continue;
        best = error;
        *out = candidate;
        if (error <= TEXEL_EPSILON)
            return true;
    }
    return false;
}

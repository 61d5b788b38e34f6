// SPDX-License-Identifier: MIT
#include "common/tFacePoints.h"

#include "common/tFaceProjection.h"
#include "common/tVector.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cstdlib>
#include <cstring>

// Three vertices stand for their plane if they give it back this well; else points are made up.
static constexpr double NORMAL_EPSILON = 2e-5;
static constexpr double DIST_EPSILON = 2e-3;
// Two components of a normal this near to each other, but not equal, decide by the last digits of
// a reader in floats which base axes a classic line has; this near, of a reader in doubles.
static constexpr double TIE_EPSILON = 5e-7;
static constexpr double DOUBLE_TIE_EPSILON = 1e-12;
// What turns the order of two components for a reader in doubles, and no float of the normal.
static constexpr double TILT = 1e-9;
static constexpr double TIE_GRID = 1024; // steps a unit, on which sums are exact in floats
// Errors past 1 that tell the better one of two bad choices.
static constexpr double DOUBTFUL = 2, OTHER_AXES = 3, NO_PLANE = 1e9;

std::string digitsOf(double value, eDigits digits) {
    if (!(std::fabs(value) <= double(FLT_MAX)) || value == 0)
        return "0";
    char text[128];
    char* const end = text + sizeof text;
    const auto narrow = float(value);
    const auto written = digits == eDigits::Short
                             ? std::to_chars(text, end, narrow, std::chars_format::fixed)
                         : digits == eDigits::Exact
                             ? std::to_chars(text, end, double(narrow), std::chars_format::fixed)
                             : std::to_chars(text, end, value, std::chars_format::fixed);
    return written.ec == std::errc() ? std::string(text, written.ptr) : "0";
}

// ---- Which base axes a classic line is to have

// The axes by size of their component, largest first; equal ones as readers take them.
static void axesBySize(const double* normal, int axes[3]) {
    axes[0] = 2;
    axes[1] = 0;
    axes[2] = 1;
    std::stable_sort(axes, axes + 3,
                     [&](int a, int b) { return std::fabs(normal[a]) > std::fabs(normal[b]); });
}

static double apartOf(const double* normal) {
    int axes[3];
    axesBySize(normal, axes);
    return std::fabs(normal[axes[0]]) - std::fabs(normal[axes[1]]);
}

struct cWantedAxes {
    int axis = -1;         // of the side of a box that the texture lies in; -1: in none
    bool winsTies = false; // readers take it where the components are equal
};

// Between two sides of a box the texture tells which one its line was read with.
static cWantedAxes wantedAxes(const cFaceData* face) {
    const cVec3 normal = vec3(face->normal);
    int axes[3];
    axesBySize(normal.data(), axes);
    const double largest = std::fabs(normal[size_t(axes[0])]);
    bool isFirst = true;
    for (const int axis : {2, 0, 1}) {
        if (largest - std::fabs(normal[size_t(axis)]) >= TIE_EPSILON)
            continue;
        if (face->tex.uAxis[axis] == 0 && face->tex.vAxis[axis] == 0)
            return {axis, isFirst};
        isFirst = false;
    }
    return {};
}

static double axesError(const cMapPlane& plane, const cWantedAxes& wanted) {
    if (wanted.axis >= 0 && baseAxisOf(plane.normal) != wanted.axis)
        return OTHER_AXES;
    const bool forFloats = wanted.axis < 0 || wanted.winsTies;
    const double apart = apartOf(plane.normal);
    return apart > 0 && apart < (forFloats ? TIE_EPSILON : DOUBLE_TIE_EPSILON) ? DOUBTFUL : 0;
}

// ---- How well points do

namespace {
class cPointFinder {
public:
    cPointFinder(const cFaceData* face, eFaceLine kind)
        : m_face(face), m_classic(kind == eFaceLine::Classic), m_wanted(wantedAxes(face)) {}

    cFacePoints find();

private:
    double errorOf(const double points[3][3], cMapPlane* plane) const;
    double errorOf(const cFacePoints& written, cMapPlane* plane) const;
    void consider(const double points[3][3], eDigits digits);
    bool vertexPoints(double points[3][3]) const;
    cVec3 alongPlane(const cVec3& normal, double tilt, cVec3* point) const;
    void planePoints(double reach, double tilt, double points[3][3]) const;
    void considerPlane(double reach);

    const cFaceData* m_face;
    const bool m_classic;
    const cWantedAxes m_wanted;
    cFacePoints m_best = {};
    double m_error = NO_PLANE;
};
} // namespace

// How far the plane of three points is from the face's own; above 1 is too far.
double cPointFinder::errorOf(const double points[3][3], cMapPlane* plane) const {
    if (!planeFromPoints(points, plane))
        return NO_PLANE;
    double error = m_classic ? axesError(*plane, m_wanted) : 0;
    for (int i = 0; i < 3; ++i)
        error = std::fmax(error, std::fabs(double(float(plane->normal[i]) - m_face->normal[i])) /
                                     NORMAL_EPSILON);
    return std::fmax(error, std::fabs(double(float(plane->dist) - m_face->dist)) / DIST_EPSILON);
}

// What a reader in doubles makes of the text.
static void pointsAsRead(const cFacePoints& written, double points[3][3]) {
    for (int i = 0; i < 3; ++i) {
        for (int axis = 0; axis < 3; ++axis) {
            const double value = written.points[i][axis];
            points[i][axis] = value;
            if (written.digits == eDigits::Short && value != std::floor(value))
                points[i][axis] = strtod(digitsOf(value, eDigits::Short).c_str(), nullptr);
        }
    }
}

// Readers in floats and in doubles are to find the plane.
double cPointFinder::errorOf(const cFacePoints& written, cMapPlane* plane) const {
    const double inFloats = errorOf(written.points, plane);
    if (written.digits != eDigits::Short || inFloats > m_error)
        return inFloats;
    double points[3][3];
    pointsAsRead(written, points);
    return std::fmax(inFloats, errorOf(points, plane));
}

void cPointFinder::consider(const double points[3][3], eDigits digits) {
    if (m_error <= 1)
        return;
    cFacePoints candidate = {};
    memcpy(candidate.points, points, sizeof candidate.points);
    candidate.digits = digits;
    cMapPlane plane;
    const double error = errorOf(candidate, &plane);
    if (!(error < m_error))
        return;
    m_error = error;
    m_best = candidate;
    std::copy(plane.normal, plane.normal + 3, m_best.readNormal);
}

// ---- Candidates

// The vertex triple spread widest about the first vertex, in the order that readers expect.
bool cPointFinder::vertexPoints(double points[3][3]) const {
    const int count = m_face->vertexCount;
    double largest = 0;
    for (int i = 1; i + 1 < count; ++i) {
        const cVec3 a = vec3(m_face->vertices[0].xyz);
        const cVec3 b = vec3(m_face->vertices[i].xyz);
        const cVec3 c = vec3(m_face->vertices[i + 1].xyz);
        const double size = length(cross(b - a, c - a));
        if (!(size > largest))
            continue;
        largest = size;
        // Vertices run counter-clockwise from outside, points clockwise.
        for (size_t axis = 0; axis < 3; ++axis) {
            points[0][axis] = b[axis];
            points[1][axis] = a[axis];
            points[2][axis] = c[axis];
        }
    }
    return largest > 0;
}

// A vector on the plane, about as long as a unit. Between two axes it is an exact diagonal, and the
// point moves to where the points beside it are exact, too, so that they give two equal components;
// with a tilt the one wanted is the larger.
cVec3 cPointFinder::alongPlane(const cVec3& normal, double tilt, cVec3* point) const {
    int axes[3];
    axesBySize(normal.data(), axes);
    if (apartOf(normal.data()) < 2 * TIE_EPSILON) {
        if (m_wanted.axis == axes[2])
            std::swap(axes[1], axes[2]);
        const auto first = size_t(axes[0]), second = size_t(axes[1]);
        cVec3 diagonal = {0, 0, 0};
        for (const size_t axis : {first, second})
            (*point)[axis] = std::round((*point)[axis] * TIE_GRID) / TIE_GRID;
        diagonal[first] = normal[second] < 0 ? -1 : 1;
        diagonal[second] = normal[first] < 0 ? 1 : -1;
        diagonal[m_wanted.axis == axes[0] ? second : first] *= 1 + tilt;
        return diagonal;
    }
    const bool upright = std::fabs(normal[2]) > 0.7;
    const cVec3 help = {upright ? 1.0 : 0.0, 0.0, upright ? 0.0 : 1.0};
    const cVec3 u = cross(help, normal);
    return u * (1 / length(u));
}

// Points far apart on the plane, near the face's middle.
void cPointFinder::planePoints(double reach, double tilt, double points[3][3]) const {
    const cVec3 normal = vec3(m_face->normal);
    cVec3 middle = {0, 0, 0};
    for (int i = 0; i < m_face->vertexCount; ++i)
        middle = middle + vec3(m_face->vertices[i].xyz) * (1.0 / m_face->vertexCount);
    middle = middle + normal * ((double(m_face->dist) - dot(middle, normal)) / dot(normal, normal));
    const cVec3 u = alongPlane(normal, tilt, &middle) * reach;
    const cVec3 v = cross(normal, u);
    const cVec3 corners[3] = {middle + u, middle, middle + v};
    for (size_t i = 0; i < 3; ++i) {
        for (size_t axis = 0; axis < 3; ++axis)
            points[i][axis] = tilt > 0 ? corners[i][axis] : double(float(corners[i][axis]));
    }
}

void cPointFinder::considerPlane(double reach) {
    double points[3][3];
    planePoints(reach, 0, points);
    consider(points, eDigits::Short);
    consider(points, eDigits::Exact);
    if (!m_classic || m_wanted.axis < 0)
        return;
    planePoints(reach, TILT, points);
    consider(points, eDigits::Double);
}

// The vertices, else made-up points ever farther apart; in short digits where those do.
cFacePoints cPointFinder::find() {
    double points[3][3];
    if (vertexPoints(points)) {
        consider(points, eDigits::Short);
        consider(points, eDigits::Exact);
    }
    for (double reach = 64; m_error > 1 && reach <= 8192; reach *= 4)
        considerPlane(reach);
    return m_best;
}

cFacePoints pointsOf(const cFaceData* face, eFaceLine kind) {
    return cPointFinder(face, kind).find();
}

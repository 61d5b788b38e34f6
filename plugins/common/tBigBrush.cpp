// SPDX-License-Identifier: MIT
#include "common/tBigBrush.h"

#include "common/tVector.h"

#include <algorithm>
#include <numeric>

static constexpr double ON_EPSILON = 0.01;    // as the editor clips
static constexpr double HALF_WORLD = 262144;  // a plane begins as a square about this large
static constexpr double MIN_CUT_EXTENT = 4.0; // what is smaller is dust and no face to cut

using cPolygon = std::vector<cVec3>;

static cVec3 normalOf(const cMapPlane& plane) {
    return {plane.normal[0], plane.normal[1], plane.normal[2]};
}

static cPolygon squareOn(const cMapPlane& plane) {
    const cVec3 normal = normalOf(plane);
    const cVec3 help = {std::fabs(normal[2]) > 0.7 ? 1.0 : 0.0, 0,
                        std::fabs(normal[2]) > 0.7 ? 0.0 : 1.0};
    cVec3 right = cross(help, normal);
    right = right * (2 * HALF_WORLD / length(right));
    const cVec3 up = cross(normal, right), middle = normal * plane.dist;
    return {middle - right - up, middle + right - up, middle + right + up, middle - right + up};
}

// What a plane can't touch is told by one product.
struct cSphere {
    cVec3 middle = {0, 0, 0};
    double radius = 0;
};

static cSphere sphereAbout(const cPolygon& polygon) {
    cSphere sphere;
    for (const cVec3& p : polygon)
        sphere.middle = sphere.middle + p * (1.0 / double(polygon.size()));
    for (const cVec3& p : polygon)
        sphere.radius = std::max(sphere.radius, dot(p - sphere.middle, p - sphere.middle));
    sphere.radius = std::sqrt(sphere.radius);
    return sphere;
}

// Leaves what lies behind the plane. False where that was all.
static bool clip(cPolygon* polygon, const cMapPlane& plane) {
    const cVec3 normal = normalOf(plane);
    const auto above = [&](const cVec3& p) { return dot(p, normal) - plane.dist; };
    double lowest = HALF_WORLD, highest = -HALF_WORLD;
    for (const cVec3& p : *polygon) {
        lowest = std::min(lowest, above(p));
        highest = std::max(highest, above(p));
    }
    if (highest <= ON_EPSILON && lowest < -ON_EPSILON)
        return false;
    cPolygon kept;
    kept.reserve(polygon->size() + 1);
    for (size_t i = 0; i < polygon->size() && lowest < -ON_EPSILON; ++i) {
        const cVec3 &p = (*polygon)[i], &q = (*polygon)[(i + 1) % polygon->size()];
        const double dp = above(p), dq = above(q);
        if (dp <= ON_EPSILON)
            kept.push_back(p);
        if ((dp > ON_EPSILON && dq < -ON_EPSILON) || (dp < -ON_EPSILON && dq > ON_EPSILON))
            kept.push_back(p + (q - p) * (dp / (dp - dq)));
    }
    *polygon = std::move(kept);
    return true;
}

static bool isSamePlane(const cMapPlane& a, const cMapPlane& b) {
    return dot(normalOf(a), normalOf(b)) > 1 - 1e-9 && std::fabs(a.dist - b.dist) < ON_EPSILON;
}

// Planes far apart in the list come one after the other: neighbours there are often neighbours in
// space, and would each take a sliver of what is left by the one before.
static size_t stepThrough(size_t count) {
    size_t step = count * 5 / 8;
    while (std::gcd(step, count) != 1)
        ++step;
    return step;
}

static cPolygon polygonOf(const cMapFaces& faces, size_t index) {
    const cMapPlane& plane = faces[index].plane;
    const size_t count = faces.size(), step = stepThrough(count);
    cPolygon polygon = squareOn(plane);
    cSphere sphere = sphereAbout(polygon);
    for (size_t i = (index + step) % count; i != index && !polygon.empty();
         i = (i + step) % count) {
        const cMapPlane& other = faces[i].plane;
        if (dot(sphere.middle, normalOf(other)) - other.dist < -sphere.radius ||
            isSamePlane(plane, other))
            continue;
        if (clip(&polygon, other))
            sphere = sphereAbout(polygon);
    }
    return polygon;
}

// An upright or level plane, on whole units, that has about half of the corners on either side.
static bool halvingPlane(const cPolygon& polygon, cMapPlane* out) {
    cVec3 mins = polygon[0], maxs = polygon[0];
    for (const cVec3& p : polygon) {
        for (size_t i = 0; i < 3; ++i) {
            mins[i] = std::fmin(mins[i], p[i]);
            maxs[i] = std::fmax(maxs[i], p[i]);
        }
    }
    const cVec3 extent = maxs - mins;
    const auto axis = size_t(std::max_element(extent.begin(), extent.end()) - extent.begin());
    if (!(extent[axis] > MIN_CUT_EXTENT))
        return false;
    std::vector<double> places;
    for (const cVec3& p : polygon)
        places.push_back(p[axis]);
    const auto middle = places.begin() + std::ptrdiff_t(places.size() / 2);
    std::nth_element(places.begin(), middle, places.end());
    *out = {{0, 0, 0}, std::clamp(std::round(*middle), mins[axis] + 1, maxs[axis] - 1)};
    out->normal[axis] = 1;
    return true;
}

// The cut comes first: what it takes away never counts as a corner while a face is built.
static cMapFaces withCut(const cMapFaces& faces, const cMapPlane& plane) {
    cMapFace cut = {plane, faces[0].tex};
    applyClassicProjection({{0, 0}, 0, {1, 1}}, plane.normal, &cut.tex);
    cMapFaces all = {cut};
    all.insert(all.end(), faces.begin(), faces.end());
    return all;
}

static void addPieces(const cMapFaces& faces, std::vector<cMapFaces>* pieces) {
    cMapFaces kept;
    cPolygon widest;
    for (size_t i = 0; i < faces.size(); ++i) {
        cPolygon polygon = polygonOf(faces, i);
        if (polygon.size() > 2)
            kept.push_back(faces[i]);
        if (polygon.size() > widest.size())
            widest = std::move(polygon);
    }
    cMapPlane plane;
    if (widest.size() <= MAX_CORNERS || !halvingPlane(widest, &plane)) {
        pieces->push_back(std::move(kept));
        return;
    }
    addPieces(withCut(kept, plane), pieces);
    for (double& component : plane.normal)
        component = -component;
    plane.dist = -plane.dist;
    addPieces(withCut(kept, plane), pieces);
}

std::vector<cMapFaces> cutBigBrush(const cMapFaces& faces) {
    std::vector<cMapFaces> pieces;
    // A polygon has at most one corner for each other face.
    if (faces.size() > MAX_CORNERS + 1)
        addPieces(faces, &pieces);
    if (pieces.size() > 1)
        return pieces;
    return {faces};
}

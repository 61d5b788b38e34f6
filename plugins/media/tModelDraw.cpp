// SPDX-License-Identifier: MIT
#include "media/tModelDraw.h"

#include <cmath>

static constexpr float RADIANS_PER_DEGREE = 0.017453292519943295f;

static cPoint cross(const cPoint& a, const cPoint& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

static cPoint between(const cPoint& from, const cPoint& to) {
    return {to[0] - from[0], to[1] - from[1], to[2] - from[2]};
}

cPlacement::cPlacement(const cEntityData& entity, float itsScale)
    : scale(std::isfinite(itsScale) && itsScale > 0 ? itsScale : 1.0f) {
    std::copy_n(entity.origin, 3, origin.begin());
    const float pitch = entity.angles[0] * RADIANS_PER_DEGREE;
    const float yaw = entity.angles[1] * RADIANS_PER_DEGREE;
    const float roll = entity.angles[2] * RADIANS_PER_DEGREE;
    const float sp = std::sin(pitch), cp = std::cos(pitch);
    const float sy = std::sin(yaw), cy = std::cos(yaw);
    const float sr = std::sin(roll), cr = std::cos(roll);
    forward = {cp * cy, cp * sy, -sp};
    left = {sr * sp * cy - cr * sy, sr * sp * sy + cr * cy, sr * cp};
    up = cross(forward, left);
}

cPoint cPlacement::turned(const cPoint& v) const {
    cPoint out;
    for (size_t i = 0; i < 3; ++i)
        out[i] = v[0] * forward[i] + v[1] * left[i] + v[2] * up[i];
    return out;
}

cPoint cPlacement::placed(const cPoint& v) const {
    const cPoint t = turned(v);
    return {origin[0] + scale * t[0], origin[1] + scale * t[1], origin[2] + scale * t[2]};
}

// Of each vertex the sum of the normals of its triangles, so that large ones count for more.
static std::vector<cPoint> normalsOf(const cModelSurface& surface, const cPoint* positions) {
    std::vector<cPoint> normals(surface.vertexCount, cPoint{});
    for (size_t i = 0; i < surface.corners.size(); i += 3) {
        const cModelCorner* corner = &surface.corners[i];
        const cPoint& first = positions[corner[0].vertex];
        const cPoint normal = cross(between(first, positions[corner[2].vertex]),
                                    between(first, positions[corner[1].vertex]));
        for (int k = 0; k < 3; ++k) {
            for (size_t axis = 0; axis < 3; ++axis)
                normals[corner[k].vertex][axis] += normal[axis];
        }
    }
    return normals;
}

static std::vector<float> shadesOf(const cHostServices& host, const std::vector<cPoint>& normals,
                                   const cPlacement& placement) {
    std::vector<float> shades;
    shades.reserve(normals.size());
    for (const cPoint& normal : normals) {
        cPoint n = placement.turned(normal);
        const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
        for (float& value : n)
            value = length > 0 ? value / length : 0;
        shades.push_back(std::max(host.Render_Shade(n.data()), host.Render_ShadeFloor()));
    }
    return shades;
}

static const cTextureImage* skinOf(const cModelSurface& surface,
                                   const std::vector<const cTextureImage*>& images, size_t skin) {
    if (surface.skins.empty())
        return nullptr;
    return images[surface.skins[skin < surface.skins.size() ? skin : 0]];
}

static void drawPlain(const cHostServices& host, const cModelSurface& surface,
                      const std::vector<cPoint>& points) {
    for (const cModelCorner& corner : surface.corners)
        host.Render_Vertex(points[corner.vertex].data());
}

// White where there is a skin, else the entity's colour; the alpha is the entity's.
static void drawShaded(const cHostServices& host, const cModelSurface& surface,
                       const std::vector<cPoint>& points, const std::vector<float>& shades,
                       bool hasSkin, cEntityData& entity) {
    uint8_t color[4] = {255, 255, 255, 255};
    if (!hasSkin)
        host.Entity_GetColor(&entity, color);
    for (const cModelCorner& corner : surface.corners) {
        const float shade = shades[corner.vertex];
        const auto shaded = [&](int i) { return uint8_t(float(color[i]) * shade); };
        host.Render_Color(shaded(0), shaded(1), shaded(2), entity.renderColor[3]);
        host.Render_TexCoord(corner.s, corner.t);
        host.Render_Vertex(points[corner.vertex].data());
    }
}

static float positionOf(const cEntityData& entity) {
    return entity.attachment ? static_cast<const cAttachmentHead*>(entity.attachment)->frame : 0;
}

void drawModel(const cHostServices& host, const cModel& model,
               const std::vector<const cTextureImage*>& images, int mode, cEntityData& entity) {
    const cPlacement placement(entity, mode & RM_NO_SCALE ? 1.0f : entity.scale);
    const size_t frame = model.frameAt(entity.sequence, positionOf(entity));
    for (const cModelSurface& surface : model.surfaces) {
        const cPoint* positions = surface.positions.data() + frame * surface.vertexCount;
        std::vector<cPoint> points;
        points.reserve(surface.vertexCount);
        for (size_t i = 0; i < surface.vertexCount; ++i)
            points.push_back(placement.placed(positions[i]));
        const auto* skin = mode & RM_PLAIN ? nullptr : skinOf(surface, images, entity.skin);
        host.Render_Texture(skin);
        host.Render_Primitive(RP_TRIANGLES);
        if (mode & RM_PLAIN)
            drawPlain(host, surface, points);
        else
            drawShaded(host, surface, points,
                       shadesOf(host, normalsOf(surface, positions), placement), skin, entity);
        host.Render_Flush();
    }
}

cModelFrame turnedBox(const cModel& model, const cEntityData& entity) {
    const cModelFrame box = model.box(model.sequence(entity.sequence));
    const cPlacement placement(entity, 1.0f);
    cModelFrame out;
    for (unsigned corner = 0; corner < 8; ++corner) {
        const cPoint point = placement.turned({corner & 1 ? box.maxs[0] : box.mins[0],
                                               corner & 2 ? box.maxs[1] : box.mins[1],
                                               corner & 4 ? box.maxs[2] : box.mins[2]});
        for (size_t i = 0; i < 3; ++i) {
            out.mins[i] = corner ? std::min(out.mins[i], point[i]) : point[i];
            out.maxs[i] = corner ? std::max(out.maxs[i], point[i]) : point[i];
        }
    }
    return out;
}

// SPDX-License-Identifier: MIT
// Models (.md2) with one surface, skins in files, and vertices in bytes within a box of each frame.
#include "media/tModel.h"

static constexpr uint64_t TEXEL_SIZE = 4, TRIANGLE_SIZE = 12, FRAME_HEADER_SIZE = 40;
static constexpr uint64_t VERTEX_SIZE = 4, NAME_SIZE = 64;
static constexpr int32_t VERSION = 8;

static bool readSkins(cBytes file, cModel& model) {
    const uint64_t count = file.u32(20), at = file.u32(44);
    if (!file.holds(at, count * NAME_SIZE))
        return false;
    for (uint64_t i = 0; i < count; ++i) {
        model.surfaces[0].skins.push_back(i);
        model.skins.push_back({cImage(), file.text(at + i * NAME_SIZE, NAME_SIZE)});
    }
    return true;
}

static bool readTriangles(cBytes file, cModelSurface& surface) {
    const uint64_t texels = file.u32(48), triangles = file.u32(52), count = file.u32(32);
    if (!file.holds(triangles, count * TRIANGLE_SIZE))
        return false;
    const float width = float(std::max(file.i32(8), 1)), height = float(std::max(file.i32(12), 1));
    for (uint64_t i = 0; i < 3 * count; ++i) {
        const uint64_t at = triangles + i / 3 * TRIANGLE_SIZE + i % 3 * 2;
        const uint64_t texel = texels + file.u16(at + 6) * TEXEL_SIZE;
        surface.corners.push_back(
            {file.u16(at), float(file.i16(texel)) / width, float(file.i16(texel + 2)) / height});
    }
    return true;
}

static bool readFrames(cBytes file, cModel& model) {
    cModelSurface& surface = model.surfaces[0];
    const uint64_t vertices = file.u32(24), count = file.u32(40), size = file.u32(16);
    if (size < FRAME_HEADER_SIZE + vertices * VERTEX_SIZE ||
        !file.holds(file.u32(56), count * size))
        return false;
    surface.vertexCount = vertices;
    for (uint64_t i = 0; i < count; ++i) {
        const cBytes frame = file.part(file.u32(56) + i * size, size);
        model.frames.push_back({frame.text(24, 16)});
        for (uint64_t v = 0; v < vertices; ++v) {
            cPoint point;
            for (size_t k = 0; k < 3; ++k)
                point[k] =
                    float(frame.u8(FRAME_HEADER_SIZE + v * VERTEX_SIZE + k)) * frame.f32(4 * k) +
                    frame.f32(12 + 4 * k);
            surface.positions.push_back(point);
        }
    }
    return true;
}

cProblem readMd2(cBytes file, const cPalette*, cImageBudget&, cModel& model) {
    if (!file.startsWith("IDP2") || file.i32(4) != VERSION)
        return "this is no model of its kind";
    model.surfaces.emplace_back();
    if (!readSkins(file, model) || !readTriangles(file, model.surfaces[0]) ||
        !readFrames(file, model))
        return "the model is cut off";
    return finishModel(model);
}

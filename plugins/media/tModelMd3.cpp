// SPDX-License-Identifier: MIT
// Models (.md3) of several surfaces, each with skins in files and vertices in steps of 1/64.
#include "media/tModel.h"

namespace {

constexpr uint64_t FRAME_SIZE = 56, SURFACE_HEADER_SIZE = 108, SHADER_SIZE = 68, NAME_SIZE = 64;
constexpr uint64_t TRIANGLE_SIZE = 12, TEXEL_SIZE = 8, VERTEX_SIZE = 8;
constexpr int32_t VERSION = 15;
constexpr float STEP = 1.0f / 64;

class cMd3Reader {
public:
    explicit cMd3Reader(cBytes file) : m_file(file) {}

    cProblem read(cModel& model) {
        if (!m_file.startsWith("IDP3") || m_file.i32(4) != VERSION)
            return "this is no model of its kind";
        if (!readFrames(model))
            return "the frames of the model are cut off";
        uint64_t at = m_file.u32(100);
        const uint32_t count = m_file.u32(84);
        for (uint32_t i = 0; i < count; ++i) {
            const cBytes surface = m_file.from(at);
            const uint64_t size = surface.u32(104);
            if (size < SURFACE_HEADER_SIZE || !readSurface(surface.part(0, size), model))
                return "a surface of the model is cut off";
            at += size;
        }
        return finishModel(model);
    }

private:
    bool readFrames(cModel& model) const {
        const uint64_t count = m_file.u32(76), at = m_file.u32(92);
        if (!m_file.holds(at, count * FRAME_SIZE))
            return false;
        for (uint64_t i = 0; i < count; ++i)
            model.frames.push_back({m_file.text(at + i * FRAME_SIZE + 40, 16)});
        return true;
    }

    // Surfaces follow each other, so that together they hold no more than the file.
    static bool readSurface(cBytes bytes, cModel& model) {
        const uint64_t frames = bytes.u32(72), vertices = bytes.u32(80);
        const uint64_t triangles = bytes.u32(84), texelsAt = bytes.u32(96);
        const uint64_t trianglesAt = bytes.u32(88), verticesAt = bytes.u32(100);
        if (frames != model.frames.size() || vertices > bytes.size() / TEXEL_SIZE ||
            !bytes.holds(texelsAt, vertices * TEXEL_SIZE) ||
            !bytes.holds(trianglesAt, triangles * TRIANGLE_SIZE) ||
            !bytes.holds(verticesAt, vertices * frames * VERTEX_SIZE))
            return false;
        model.surfaces.emplace_back();
        cModelSurface& surface = model.surfaces.back();
        surface.vertexCount = vertices;
        for (uint64_t i = 0; i < 3 * triangles; ++i) {
            const uint32_t vertex = bytes.u32(trianglesAt + 4 * i);
            const uint64_t texel = texelsAt + vertex * TEXEL_SIZE;
            surface.corners.push_back({vertex, bytes.f32(texel), bytes.f32(texel + 4)});
        }
        for (uint64_t i = 0; i < vertices * frames; ++i) {
            const uint64_t at = verticesAt + i * VERTEX_SIZE;
            surface.positions.push_back({float(bytes.i16(at)) * STEP,
                                         float(bytes.i16(at + 2)) * STEP,
                                         float(bytes.i16(at + 4)) * STEP});
        }
        return readSkins(bytes, model);
    }

    static bool readSkins(cBytes bytes, cModel& model) {
        const uint64_t count = bytes.u32(76), at = bytes.u32(92);
        if (!bytes.holds(at, count * SHADER_SIZE))
            return false;
        for (uint64_t i = 0; i < count; ++i) {
            model.surfaces.back().skins.push_back(model.skins.size());
            model.skins.push_back({cImage(), bytes.text(at + i * SHADER_SIZE, NAME_SIZE)});
        }
        return true;
    }

    cBytes m_file;
};

} // namespace

cProblem readMd3(cBytes file, const cPalette*, cImageBudget&, cModel& model) {
    return cMd3Reader(file).read(model);
}

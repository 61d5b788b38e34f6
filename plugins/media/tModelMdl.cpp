// SPDX-License-Identifier: MIT
// Models (.mdl) with one surface, its skins in indices of the game's palette, and vertices in bytes
// within one box.
#include "media/tFrameGroup.h"
#include "media/tModel.h"

namespace {

constexpr uint64_t HEADER_SIZE = 84, TEXEL_SIZE = 12, TRIANGLE_SIZE = 16, VERTEX_SIZE = 4;
constexpr uint64_t FRAME_BOX_SIZE = 8, FRAME_NAME_SIZE = 16;
constexpr int32_t VERSION = 6;

class cMdlReader {
public:
    cMdlReader(cBytes file, const cPalette* palette)
        : m_file(file),
          m_palette(palette ? *palette : GREY_PALETTE),
          m_width(file.i32(52)),
          m_height(file.i32(56)),
          m_vertexCount(file.u32(60)),
          m_triangleCount(file.u32(64)) {}

    cProblem read(cImageBudget& budget, cModel& model) {
        if (!m_file.startsWith("IDPO") || m_file.i32(4) != VERSION)
            return "this is no model of its kind";
        model.surfaces.emplace_back();
        if (const cProblem problem = readSkins(budget, model))
            return problem;
        if (!readTriangles(model.surfaces[0]))
            return "the triangles of the model are cut off";
        model.surfaces[0].vertexCount = m_vertexCount;
        const uint32_t frames = m_file.u32(68);
        for (uint32_t i = 0; i < frames; ++i) {
            for (uint64_t left = enterGroup(m_file, m_at, FRAME_BOX_SIZE); left > 0; --left) {
                if (!readFrame(model))
                    return "a frame of the model is cut off";
            }
        }
        return finishModel(model);
    }

private:
    // Of a group of skins, which follow each other in time, the first stands for all.
    cProblem readSkins(cImageBudget& budget, cModel& model) {
        const uint32_t count = m_file.u32(48);
        for (uint32_t i = 0; i < count; ++i) {
            if (const cProblem problem = budget.take(m_width, m_height))
                return problem;
            const uint64_t inGroup = enterGroup(m_file, m_at);
            const uint64_t size = uint64_t(m_width) * uint64_t(m_height);
            if (inGroup == 0 || !m_file.holds(m_at, inGroup * size))
                return "a skin of the model is cut off";
            model.surfaces[0].skins.push_back(model.skins.size());
            model.skins.emplace_back();
            model.skins.back().image.resize(m_width, m_height);
            paint(m_file.data() + m_at, m_palette, false, model.skins.back().image);
            m_at += inGroup * size;
        }
        return nullptr;
    }

    bool readTriangles(cModelSurface& surface) {
        const uint64_t texels = m_at, triangles = texels + m_vertexCount * TEXEL_SIZE;
        m_at = triangles + m_triangleCount * TRIANGLE_SIZE;
        if (!m_file.holds(texels, m_at - texels))
            return false;
        for (uint64_t i = 0; i < m_triangleCount; ++i) {
            const uint64_t triangle = triangles + i * TRIANGLE_SIZE;
            const bool isFront = m_file.i32(triangle) != 0;
            for (uint64_t k = 0; k < 3; ++k)
                surface.corners.push_back(
                    corner(texels, m_file.u32(triangle + 4 + 4 * k), isFront));
        }
        return true;
    }

    // The back of the skin lies to the right of its front; vertices between stand on the left one.
    cModelCorner corner(uint64_t texels, uint32_t vertex, bool isFront) const {
        const uint64_t at = texels + vertex * TEXEL_SIZE;
        const bool onSeam = m_file.i32(at) != 0;
        const float s =
            float(m_file.i32(at + 4)) + (onSeam && !isFront ? float(m_width / 2) : 0.0f);
        return {vertex, (s + 0.5f) / float(m_width),
                (float(m_file.i32(at + 8)) + 0.5f) / float(m_height)};
    }

    bool readFrame(cModel& model) {
        const uint64_t vertices = m_at + FRAME_BOX_SIZE + FRAME_NAME_SIZE;
        const uint64_t end = vertices + m_vertexCount * VERTEX_SIZE;
        if (!m_file.holds(m_at, end - m_at))
            return false;
        model.frames.push_back({m_file.text(m_at + FRAME_BOX_SIZE, FRAME_NAME_SIZE)});
        for (m_at = vertices; m_at < end; m_at += VERTEX_SIZE) {
            cPoint point;
            for (size_t i = 0; i < 3; ++i)
                point[i] =
                    float(m_file.u8(m_at + i)) * m_file.f32(8 + 4 * i) + m_file.f32(20 + 4 * i);
            model.surfaces[0].positions.push_back(point);
        }
        return true;
    }

    cBytes m_file;
    cPalette m_palette;
    int32_t m_width, m_height; // of the skins
    uint64_t m_vertexCount, m_triangleCount;
    uint64_t m_at = HEADER_SIZE;
};

} // namespace

cProblem readMdl(cBytes file, const cPalette* palette, cImageBudget& budget, cModel& model) {
    return cMdlReader(file, palette).read(budget, model);
}

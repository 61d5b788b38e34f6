// SPDX-License-Identifier: MIT
#include "media/tSprite.h"

#include "media/tFrameGroup.h"

#include <cstdlib>

namespace {

enum eVersion { SharedPalette = 1, OwnPalette = 2 };
// How a sprite with its own palette is drawn over what is behind it.
enum eDrawing { Additive = 1, IndexAlpha = 2, AlphaTest = 3 };
constexpr uint64_t FRAME_HEADER_SIZE = 16;

// A frame as it stands in the file: where it lies from the sprite's origin, y up.
struct cFrame {
    int left = 0, top = 0, width = 0, height = 0;
    uint64_t at = 0;
};

class cSpriteReader {
public:
    cSpriteReader(cBytes file, const cPalette* palette)
        : m_file(file), m_palette(palette ? *palette : GREY_PALETTE) {}

    cProblem read(cImageBudget& budget, cSprite& sprite) {
        if (!m_file.startsWith("IDSP"))
            return "this is no sprite";
        const int version = m_file.i32(4);
        if (version != SharedPalette && version != OwnPalette)
            return "this version of sprites is not known";
        sprite.orientation = orientation(m_file.i32(8));
        if (const cProblem problem = version == OwnPalette ? readPalette() : nullptr)
            return problem;
        if (const cProblem problem = findFrames(version == OwnPalette ? 28 : 24))
            return problem;
        return paintFrames(budget, sprite);
    }

private:
    // Parallel upright, facing upright, parallel, oriented, parallel oriented.
    static int orientation(int type) {
        static constexpr int ORIENTATIONS[] = {3, 2, 0, 1, 4};
        return type >= 0 && type < 5 ? ORIENTATIONS[type] : 0;
    }

    cProblem readPalette() {
        m_drawing = m_file.i32(12);
        const uint64_t size = uint64_t(m_file.u16(40)) * 3;
        if (size == 0 || size > m_palette.size() || !m_file.holds(42, size))
            return "the palette of the sprite is cut off";
        m_palette.fill(0);
        memcpy(m_palette.data(), m_file.data() + 42, size);
        m_at = 42 + size;
        return nullptr;
    }

    cProblem findFrames(uint64_t countAt) {
        const uint32_t count = m_file.u32(countAt);
        for (uint32_t i = 0; i < count; ++i) {
            if (!m_file.holds(m_at, 4))
                return "the sprite is cut off";
            for (uint64_t left = enterGroup(m_file, m_at); left > 0; --left) {
                if (!findFrame())
                    return "a frame of the sprite is cut off";
            }
        }
        return m_frames.empty() ? "the sprite has no frames" : nullptr;
    }

    bool findFrame() {
        cFrame frame;
        frame.left = m_file.i32(m_at);
        frame.top = m_file.i32(m_at + 4);
        frame.width = m_file.i32(m_at + 8);
        frame.height = m_file.i32(m_at + 12);
        frame.at = m_at + FRAME_HEADER_SIZE;
        const int most = cImageBudget::MAX_SIDE;
        if (frame.width < 1 || frame.width > most || frame.height < 1 || frame.height > most ||
            std::abs(int64_t(frame.left)) > most || std::abs(int64_t(frame.top)) > most)
            return false;
        const uint64_t size = uint64_t(frame.width) * uint64_t(frame.height);
        if (!m_file.holds(frame.at, size))
            return false;
        m_frames.push_back(frame);
        m_at = frame.at + size;
        return true;
    }

    cProblem paintFrames(cImageBudget& budget, cSprite& sprite) const {
        int halfWidth = 0, halfHeight = 0;
        for (const cFrame& f : m_frames) {
            halfWidth = std::max({halfWidth, -f.left, f.left + f.width});
            halfHeight = std::max({halfHeight, f.top, f.height - f.top});
        }
        for (const cFrame& frame : m_frames) {
            if (const cProblem problem = budget.take(2 * halfWidth, 2 * halfHeight))
                return problem;
            sprite.frames.emplace_back();
            cImage& canvas = sprite.frames.back();
            canvas.resize(2 * halfWidth, 2 * halfHeight);
            std::fill(canvas.texels.begin(), canvas.texels.end(), cColor{0, 0, 0, 0});
            place(painted(frame), halfWidth + frame.left, halfHeight - frame.top, canvas);
            bleedColors(canvas);
        }
        return nullptr;
    }

    cImage painted(const cFrame& frame) const {
        cImage image;
        image.resize(frame.width, frame.height);
        const uint8_t* indices = m_file.data() + frame.at;
        paint(indices, m_palette, m_drawing == AlphaTest, image);
        const uint8_t* last = m_palette.data() + m_palette.size() - 3;
        for (cColor& texel : image.texels) {
            const uint8_t index = *indices++;
            if (m_drawing == Additive)
                texel.a = std::max({texel.r, texel.g, texel.b});
            else if (m_drawing == IndexAlpha)
                texel = {last[0], last[1], last[2], index};
        }
        return image;
    }

    static void place(cImage image, int x, int y, cImage& canvas) {
        for (int row = 0; row < image.height; ++row)
            std::copy_n(image.row(row), image.width, canvas.row(y + row) + x);
    }

    cBytes m_file;
    cPalette m_palette;
    int m_drawing = AlphaTest; // as all sprites with the shared palette are
    uint64_t m_at = 36;        // behind the header
    std::vector<cFrame> m_frames;
};

} // namespace

cProblem readSprite(cBytes file, const cPalette* palette, cImageBudget& budget, cSprite& sprite) {
    return cSpriteReader(file, palette).read(budget, sprite);
}

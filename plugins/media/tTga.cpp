// SPDX-License-Identifier: MIT
// TGA files: with a colour map, in true colour or in greys, each plain or run-length coded.
#include "media/tImageReaders.h"

namespace {

constexpr uint64_t HEADER_SIZE = 18;
constexpr uint64_t LONGEST_RUN = 128;

enum eKind { Mapped = 1, TrueColor = 2, Grey = 3 };

class cTgaReader {
public:
    explicit cTgaReader(cBytes file) : m_file(file) {}

    cProblem read(cImageBudget& budget, cImage& image) {
        if (const cProblem problem = readHeader())
            return problem;
        const uint64_t count = uint64_t(m_width) * m_height;
        const uint64_t least =
            m_coded ? (count + LONGEST_RUN - 1) / LONGEST_RUN * (1 + m_bytes) : count * m_bytes;
        if (!m_texels.holds(0, least))
            return "the file ends within the picture";
        if (const cProblem problem = budget.take(m_width, m_height))
            return problem;
        image.resize(int(m_width), int(m_height));
        if (!(m_coded ? readRuns(image) : readPlain(image)))
            return "the file ends within the picture";
        finishAlpha(image);
        return nullptr;
    }

private:
    cProblem readHeader() {
        if (!m_file.holds(0, HEADER_SIZE))
            return "the file ends within its header";
        const int type = m_file.u8(2);
        m_coded = (type & 8) != 0;
        m_kind = type & ~8;
        m_mapFirst = m_file.u16(3);
        m_mapLength = m_file.u8(1) ? m_file.u16(5) : 0;
        m_mapBits = m_file.u8(7);
        m_width = m_file.u16(12);
        m_height = m_file.u16(14);
        m_bits = m_file.u8(16);
        m_bytes = (m_bits + 7u) / 8;
        m_descriptor = m_file.u8(17);
        if (!isKnown())
            return "this kind of TGA is not known";
        const uint64_t mapAt = HEADER_SIZE + m_file.u8(0);
        const uint64_t mapSize = uint64_t(m_mapLength) * ((m_mapBits + 7u) / 8);
        m_map = m_file.part(mapAt, mapSize);
        m_texels = m_file.from(mapAt + mapSize);
        return nullptr;
    }

    static bool isColor(unsigned bits) {
        return bits == 15 || bits == 16 || bits == 24 || bits == 32;
    }

    bool isKnown() const {
        switch (m_kind) {
        case Mapped:
            return (m_bits == 8 || m_bits == 16) && isColor(m_mapBits);
        case TrueColor:
            return isColor(m_bits);
        case Grey:
            return m_bits == 8 || m_bits == 16;
        default:
            return false;
        }
    }

    cColor color(cBytes from, uint64_t at, unsigned bits) const {
        if (bits >= 24)
            return {from.u8(at + 2), from.u8(at + 1), from.u8(at),
                    bits == 32 ? from.u8(at + 3) : uint8_t(255)};
        const unsigned word = from.u16(at);
        const auto wide = [](unsigned five) { return uint8_t(five << 3 | five >> 2); };
        const bool hole = bits == 16 && (m_descriptor & 15) == 1 && !(word & 0x8000);
        return {wide(word >> 10 & 31), wide(word >> 5 & 31), wide(word & 31),
                uint8_t(hole ? 0 : 255)};
    }

    cColor texel(uint64_t at) const {
        if (m_kind == TrueColor)
            return color(m_texels, at, m_bits);
        if (m_kind == Grey) {
            const uint8_t grey = m_texels.u8(at);
            return {grey, grey, grey, m_bits == 16 ? m_texels.u8(at + 1) : uint8_t(255)};
        }
        const unsigned index = m_bits == 16 ? m_texels.u16(at) : m_texels.u8(at);
        // An index outside of the map is black.
        return index < m_mapFirst
                   ? cColor()
                   : color(m_map, uint64_t(index - m_mapFirst) * ((m_mapBits + 7u) / 8), m_mapBits);
    }

    void put(cImage& image, uint64_t index, cColor value) const {
        const int x = int(index % m_width), y = int(index / m_width);
        const bool fromRight = m_descriptor & 0x10, fromTop = m_descriptor & 0x20;
        image.row(fromTop ? y : image.height - 1 - y)[fromRight ? image.width - 1 - x : x] = value;
    }

    bool readPlain(cImage& image) const {
        for (uint64_t i = 0; i < image.texels.size(); ++i)
            put(image, i, texel(i * m_bytes));
        return true;
    }

    bool readRuns(cImage& image) const {
        uint64_t at = 0;
        for (uint64_t i = 0; i < image.texels.size();) {
            const unsigned head = m_texels.u8(at++);
            const uint64_t end = std::min<uint64_t>(i + (head & 127) + 1, image.texels.size());
            const bool repeated = head & 128;
            if (!m_texels.holds(at, repeated ? m_bytes : (end - i) * m_bytes))
                return false;
            for (const uint64_t start = i; i < end; ++i)
                put(image, i, texel(repeated ? at : at + (i - start) * m_bytes));
            at += (repeated ? 1 : (head & 127) + 1) * uint64_t(m_bytes);
        }
        return true;
    }

    // Not every writer of 32 bits fills the alpha.
    static void finishAlpha(cImage& image) {
        for (const cColor& texel : image.texels) {
            if (texel.a)
                return;
        }
        for (cColor& texel : image.texels)
            texel.a = 255;
    }

    cBytes m_file, m_map, m_texels;
    int m_kind = 0;
    bool m_coded = false;
    unsigned m_mapFirst = 0, m_mapLength = 0, m_mapBits = 0;
    unsigned m_width = 0, m_height = 0, m_bits = 0, m_bytes = 0, m_descriptor = 0;
};

} // namespace

cProblem readTga(cBytes file, cImageBudget& budget, cImage& image) {
    return cTgaReader(file).read(budget, image);
}

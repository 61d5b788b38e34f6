// SPDX-License-Identifier: MIT
// PCX files: 256 colours, true colour in planes, or up to 16 colours.
#include "media/tImageReaders.h"

namespace {

constexpr uint64_t HEADER_SIZE = 128;
constexpr uint64_t PALETTE_SIZE = 768; // at the end of the file, after one byte that announces it
constexpr uint8_t PALETTE_FOLLOWS = 12;
constexpr uint8_t LONGEST_RUN = 63, RUN = 0xC0;

class cPcxReader {
public:
    explicit cPcxReader(cBytes file)
        : m_file(file),
          m_coded(file.u8(2) == 1),
          m_bits(file.u8(3)),
          m_planes(file.u8(65)),
          m_width(file.u16(8) - file.u16(4) + 1),
          m_height(file.u16(10) - file.u16(6) + 1),
          m_lineBytes(file.u16(66)) {}

    cProblem read(cImageBudget& budget, cImage& image) {
        if (!m_file.holds(0, HEADER_SIZE) || m_file.u8(0) != 10)
            return "this is no picture of its kind";
        if (!isKnown())
            return "this kind of PCX is not known";
        if (const cProblem problem = budget.take(m_width, m_height))
            return problem;
        if (m_lineBytes * 8 < unsigned(m_width) * m_bits)
            return "its rows are shorter than the picture is wide";
        const uint64_t size = uint64_t(m_height) * m_planes * m_lineBytes;
        const uint64_t stored = m_file.size() - HEADER_SIZE;
        if (size > (m_coded ? stored * LONGEST_RUN : stored))
            return "the file ends within the picture";
        findPalette();
        image.resize(m_width, m_height);
        return readRows(image);
    }

private:
    bool isKnown() const {
        const bool wide = m_bits == 8 && (m_planes == 1 || m_planes == 3 || m_planes == 4);
        return wide || (m_bits == 1 && m_planes >= 1 && m_planes <= 4) ||
               ((m_bits == 2 || m_bits == 4) && m_planes == 1);
    }

    void findPalette() {
        static constexpr uint8_t BLACK_AND_WHITE[] = {0, 0, 0, 255, 255, 255};
        const uint64_t at = m_file.size() - PALETTE_SIZE;
        if (m_bits == 8)
            m_palette =
                m_file.size() > HEADER_SIZE + PALETTE_SIZE && m_file.u8(at - 1) == PALETTE_FOLLOWS
                    ? m_file.from(at)
                    : cBytes(GREY_PALETTE.data(), GREY_PALETTE.size());
        else if (m_bits * m_planes == 1)
            m_palette = cBytes(BLACK_AND_WHITE, sizeof BLACK_AND_WHITE);
        else
            m_palette = m_file.part(16, 48);
    }

    // Runs may go on from row to row.
    bool next(uint8_t& value) {
        while (m_run == 0) {
            if (!m_file.holds(m_at, 1))
                return false;
            m_value = m_file.u8(m_at++);
            m_run = 1;
            if (m_coded && m_value >= RUN) {
                m_run = m_value - RUN;
                m_value = m_file.u8(m_at++);
            }
        }
        --m_run;
        value = m_value;
        return true;
    }

    cProblem readRows(cImage& image) {
        std::vector<uint8_t> line(size_t(m_planes) * m_lineBytes);
        for (int y = 0; y < m_height; ++y) {
            for (uint8_t& byte : line) {
                if (!next(byte))
                    return "the file ends within the picture";
            }
            for (int x = 0; x < m_width; ++x)
                image.row(y)[x] = texel(line, unsigned(x));
        }
        return nullptr;
    }

    cColor texel(const std::vector<uint8_t>& line, unsigned x) const {
        const auto sample = [&](unsigned plane) {
            const unsigned bit = x * m_bits;
            const unsigned byte = line[plane * m_lineBytes + bit / 8];
            return byte >> (8 - m_bits - bit % 8) & ((1u << m_bits) - 1);
        };
        if (m_bits == 8 && m_planes >= 3)
            return {uint8_t(sample(0)), uint8_t(sample(1)), uint8_t(sample(2)),
                    uint8_t(m_planes == 4 ? sample(3) : 255)};
        unsigned index = 0;
        for (unsigned plane = 0; plane < m_planes; ++plane)
            index |= sample(plane) << plane * m_bits;
        return {m_palette.u8(3 * index), m_palette.u8(3 * index + 1), m_palette.u8(3 * index + 2)};
    }

    cBytes m_file, m_palette;
    bool m_coded;
    unsigned m_bits, m_planes;
    int m_width, m_height;
    unsigned m_lineBytes; // of one plane
    uint64_t m_at = HEADER_SIZE;
    int m_run = 0;
    uint8_t m_value = 0;
};

} // namespace

cProblem readPcx(cBytes file, cImageBudget& budget, cImage& image) {
    return cPcxReader(file).read(budget, image);
}

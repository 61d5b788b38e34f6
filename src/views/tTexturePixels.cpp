// SPDX-License-Identifier: MIT
// All loops run over whole rows, so that the compiler may work on many bytes at a time.
#include "views/tTexturePixels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <utility>

static size_t rowSize(const cPixels& image) {
    return size_t(image.width) * size_t(image.channels);
}

static const uint8_t* rowOf(const cPixels& image, int row) {
    return image.bytes + rowSize(image) * size_t(row);
}

// ---- Brightness

cBrightnessTable brightnessTable(double factor) {
    cBrightnessTable table;
    for (int i = 0; i < 256; ++i)
        table[size_t(i)] = uint8_t(std::clamp(std::lround(i * factor), 0L, 255L));
    return table;
}

void brighten(const cPixels& image, const cBrightnessTable& table, uint8_t* out) {
    const size_t channels = size_t(image.channels);
    const size_t count = rowSize(image) * size_t(image.height);
    const size_t colors = channels % 2 == 0 ? channels - 1 : channels; // the last one is alpha
    for (size_t i = 0; i < count; i += channels) {
        for (size_t c = 0; c < channels; ++c)
            out[i + c] = c < colors ? table[image.bytes[i + c]] : image.bytes[i + c];
    }
}

// ---- Halving

// Of two rows, or of one row given twice.
template<int CHANNELS>
static void halveColumns(const uint8_t* upper, const uint8_t* lower, int width, uint8_t* out) {
    for (int x = 0; x < width; ++x, upper += 2 * CHANNELS, lower += 2 * CHANNELS, out += CHANNELS) {
        for (int c = 0; c < CHANNELS; ++c)
            out[c] = uint8_t((upper[c] + upper[c + CHANNELS] + lower[c] + lower[c + CHANNELS]) / 4);
    }
}

static void averageRows(const uint8_t* upper, const uint8_t* lower, size_t size, uint8_t* out) {
    for (size_t i = 0; i < size; ++i)
        out[i] = uint8_t((upper[i] + lower[i]) / 2);
}

cPixels halve(const cPixels& image, bool halveWidth, bool halveHeight, uint8_t* out) {
    static constexpr decltype(&halveColumns<1>) HALVE[] = {halveColumns<1>, halveColumns<2>,
                                                           halveColumns<3>, halveColumns<4>};
    const cPixels result = {halveWidth ? image.width / 2 : image.width,
                            halveHeight ? image.height / 2 : image.height, image.channels, out};
    for (int y = 0; y < result.height; ++y, out += rowSize(result)) {
        const uint8_t* upper = rowOf(image, halveHeight ? 2 * y : y);
        const uint8_t* lower = halveHeight ? upper + rowSize(image) : upper;
        if (halveWidth)
            HALVE[image.channels - 1](upper, lower, result.width, out);
        else
            averageRows(upper, lower, rowSize(result), out);
    }
    return result;
}

// ---- Resampling, in 16.16 fixed point

cPixels resamplePoint(const cPixels& image, int width, int height, uint8_t* out) {
    const cPixels result = {width, height, image.channels, out};
    const int step = int((int64_t(image.width) << 16) / width);
    const size_t channels = size_t(image.channels);
    for (int y = 0; y < height; ++y) {
        const uint8_t* row = rowOf(image, int(int64_t(y) * image.height / height));
        for (int x = 0, at = step / 2; x < width; ++x, at += step, out += channels)
            memcpy(out, row + size_t(at >> 16) * channels, channels);
    }
    return result;
}

static int stepOf(int source, int target) {
    return int(source * 65536.0 / target);
}

template<int CHANNELS>
static void expandRow(const uint8_t* row, int sourceWidth, int width, uint8_t* out) {
    const int step = stepOf(sourceWidth, width);
    for (int x = 0, at = 0; x < width; ++x, at += step, out += CHANNELS) {
        const uint8_t* p = row + (at >> 16) * CHANNELS;
        const int next = (at >> 16) < sourceWidth - 1 ? CHANNELS : 0;
        for (int c = 0; c < CHANNELS; ++c)
            out[c] = uint8_t(((p[c + next] - p[c]) * (at & 0xffff) >> 16) + p[c]);
    }
}

static void blendRows(const uint8_t* upper, const uint8_t* lower, int fraction, size_t size,
                      uint8_t* out) {
    for (size_t i = 0; i < size; ++i)
        out[i] = uint8_t(((lower[i] - upper[i]) * fraction >> 16) + upper[i]);
}

// Two rows of the image that lie one below the other, as wide as wanted; each is widened once.
class cRowPair {
public:
    cRowPair(const cPixels& image, int width) : m_image(image), m_width(width) {}

    void moveTo(int row) {
        if (row == m_row)
            return;
        if (row == m_row + 1)
            std::swap(upper, lower);
        else
            expand(row, upper);
        m_row = row;
        expand(std::min(row + 1, m_image.height - 1), lower);
    }

private:
    using cRow = std::array<uint8_t, size_t(MAX_RESAMPLED_WIDTH) * 4>;

    void expand(int row, uint8_t* out) {
        static constexpr decltype(&expandRow<1>) EXPAND[] = {expandRow<1>, expandRow<2>,
                                                             expandRow<3>, expandRow<4>};
        EXPAND[m_image.channels - 1](rowOf(m_image, row), m_image.width, m_width, out);
    }

    const cPixels& m_image;
    int m_width;
    int m_row = -2; // none
    cRow m_rows[2];

public:
    uint8_t* upper = m_rows[0].data();
    uint8_t* lower = m_rows[1].data();
};

cPixels resampleSmooth(const cPixels& image, int width, int height, uint8_t* out) {
    const cPixels result = {width, height, image.channels, out};
    const int step = stepOf(image.height, height);
    cRowPair rows(image, width);
    for (int y = 0, at = 0; y < height; ++y, at += step, out += rowSize(result)) {
        rows.moveTo(at >> 16);
        blendRows(rows.upper, rows.lower, at & 0xffff, rowSize(result), out);
    }
    return result;
}

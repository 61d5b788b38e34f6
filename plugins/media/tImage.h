// SPDX-License-Identifier: MIT
// A decoded picture, and what one may take of memory.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

// What is wrong with a file, for the console; null when nothing is.
using cProblem = const char*;

struct cColor {
    uint8_t r = 0, g = 0, b = 0, a = 255;
};
static_assert(sizeof(cColor) == 4);

struct cImage {
    int width = 0;
    int height = 0;
    std::vector<cColor> texels; // row by row, the top one first

    void resize(int w, int h);
    cColor* row(int y) { return texels.data() + size_t(y) * size_t(width); }
};

// What of a picture can be seen through.
enum class eAlpha { None, Holes, Blended }; // holes: every texel is either solid or not there
eAlpha alphaOf(const cImage& image);

// Gives texels that are not there the colour of a neighbour, so that no edge shows another when
// the picture is scaled.
void bleedColors(cImage& image);

// Colours of the indices of a picture.
using cPalette = std::array<uint8_t, 768>;
extern const cPalette GREY_PALETTE;
static constexpr int HOLE_INDEX = 255; // of pictures with holes

// width times height indices to colours.
void paint(const uint8_t* indices, const cPalette& palette, bool withHoles, cImage& image);

// The sizes a picture may have, and how much the pictures of one set or file may take together.
// Asked before memory is taken.
class cImageBudget {
public:
    static constexpr int MAX_SIDE = 16384;
    static constexpr int64_t MAX_TEXELS = 64000000;
    static constexpr uint64_t SET_BYTES = uint64_t(4) << 30;

    explicit cImageBudget(uint64_t bytes = SET_BYTES) : m_left(bytes) {}
    cProblem take(int64_t width, int64_t height);

private:
    uint64_t m_left;
};

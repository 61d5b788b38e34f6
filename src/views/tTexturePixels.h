// SPDX-License-Identifier: MIT
// Decoded images on their way to the card: reduction, resampling, brightness. Rows of bytes, the
// first row first, without padding. Nothing here allocates or knows of OpenGL.
#pragma once

#include <array>
#include <cstdint>

struct cPixels {
    int width;
    int height;
    int channels; // 1 grey, 2 grey and alpha, 3 colour, 4 colour and alpha
    const uint8_t* bytes;
};

// What each value of a colour becomes.
using cBrightnessTable = std::array<uint8_t, 256>;
cBrightnessTable brightnessTable(double factor);

// Alpha stays. out may be the image itself.
void brighten(const cPixels& image, const cBrightnessTable& table, uint8_t* out);

// Averages blocks of 2 by 2, of 2 by 1 or of 1 by 2, rounded down; what is left over at an odd
// edge goes. A side that is to be halved is at least 2.
cPixels halve(const cPixels& image, bool halveWidth, bool halveHeight, uint8_t* out);

// The pixels nearest to the middles of the columns, for thumbnails.
cPixels resamplePoint(const cPixels& image, int width, int height, uint8_t* out);

constexpr int MAX_RESAMPLED_WIDTH = 512;
// Blends linearly; the width is at most MAX_RESAMPLED_WIDTH.
cPixels resampleSmooth(const cPixels& image, int width, int height, uint8_t* out);

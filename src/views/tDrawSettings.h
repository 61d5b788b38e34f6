// SPDX-License-Identifier: MIT
// What drawing knows of the settings, by value: painters see nothing else of them, and the key of a
// kept picture compares it as bytes.
#pragma once

#include "support/tColors.h"

#include <cstdint>
#include <cstring>

struct cDrawSettings {
    // Every byte counts in a comparison, those between the fields as well.
    cDrawSettings() { memset(static_cast<void*>(this), 0, sizeof *this); }
    static cDrawSettings current(); // of the host

    const uint8_t* color(int index) const { return colors[index]; } // eColor, RGBA
    bool operator==(const cDrawSettings& other) const {
        return memcmp(this, &other, sizeof *this) == 0;
    }
    bool operator!=(const cDrawSettings& other) const { return !(*this == other); }

    uint8_t colors[COLOR_COUNT][4];
    int32_t gridSize;
    int32_t gridHighlightStep;
    int32_t backClip;
    int32_t maxWorldSize;
    int32_t modelRenderDistance;
    int32_t textureFilter;
    bool gridHighlight;
    bool hideSmallGrid;
    bool dottedGrid;
    bool enableGrid2D;
    bool drawVertices;
    bool useVisgroupColors;
    bool textureTransparency;
    bool entityTransparency;
    bool anisotropicFilter;
    bool antialiasing;
};

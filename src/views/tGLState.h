// SPDX-License-Identifier: MIT
// One packed word for blending, depth writes and alpha test, with a cached setter, the widths of
// lines and points, and the sampling of textures. The cached word is one for all views; whoever
// changes it in a draw puts it back before the draw returns. Calls want a current context.
#pragma once

#include <cstdint>

// Bits 0 to 3 are the source factor's code, 4 to 7 the destination's; both 0: no blending.
enum : uint32_t {
    GLS_BLEND_MASK = 0x00ff,
    GLS_DEPTH_WRITE = 0x0100,
    GLS_ALPHA_TEST = 0x1000,
    GLS_DEFAULT = GLS_DEPTH_WRITE,
    GLS_BLEND_ALPHA = 0x65 // source alpha over one minus source alpha
};

// Programs all of it, whatever was set before.
void GL_ResetState(uint32_t bits);
// Touches only what differs from the word set last.
void GL_State(uint32_t bits);
uint32_t GL_CurrentState();

// Device pixels a pixel in the view that is drawn from now on: the widths below are in pixels. Both
// are 1 after it, and between two draws.
void GL_SetPixelRatio(float ratio);
void GL_LineWidth(float pixels);
void GL_PointSize(float pixels);

// To be called right after binding a texture for drawing. filter 0 is nearest, 1 linear.
void applyTextureSampling(int filter, bool mipmapped, bool anisotropy);

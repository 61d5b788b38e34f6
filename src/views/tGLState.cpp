// SPDX-License-Identifier: MIT
#include "views/tGLState.h"

#include "support/tConsole.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <qopengl.h>

#ifndef GL_TEXTURE_MAX_ANISOTROPY_EXT
#define GL_TEXTURE_MAX_ANISOTROPY_EXT 0x84FE
#define GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT 0x84FF
#endif

static uint32_t s_state = 0;
static float s_pixelRatio = 1;

// By code; code 0 stands for no blending and is as invalid beside another code as one too high.
static const GLenum s_sourceFactors[] = {
    0,
    GL_ZERO,
    GL_ONE,
    GL_DST_COLOR,
    GL_ONE_MINUS_DST_COLOR,
    GL_SRC_ALPHA,
    GL_ONE_MINUS_SRC_ALPHA,
    GL_DST_ALPHA,
    GL_ONE_MINUS_DST_ALPHA,
    GL_SRC_ALPHA_SATURATE,
    GL_SRC_COLOR,
};
static const GLenum s_destinationFactors[] = {
    0,
    GL_ZERO,
    GL_ONE,
    GL_SRC_COLOR,
    GL_ONE_MINUS_SRC_COLOR,
    GL_SRC_ALPHA,
    GL_ONE_MINUS_SRC_ALPHA,
    GL_DST_ALPHA,
    GL_ONE_MINUS_DST_ALPHA,
};

template<size_t N>
static GLenum factor(const GLenum (&table)[N], uint32_t code, const char* caller,
                     const char* which) {
    if (code > 0 && code < N)
        return table[code];
    Warning("%s: invalid %s blend state bits", caller, which);
    return GL_ONE;
}

static void setBlendFactors(uint32_t bits, const char* caller) {
    const GLenum source = factor(s_sourceFactors, bits & 15, caller, "src");
    const GLenum destination = factor(s_destinationFactors, (bits >> 4) & 15, caller, "dst");
    glBlendFunc(source, destination);
}

static void setEnabled(GLenum what, bool on) {
    if (on)
        glEnable(what);
    else
        glDisable(what);
}

void GL_ResetState(uint32_t bits) {
    s_state = bits;
    setEnabled(GL_BLEND, (bits & GLS_BLEND_MASK) != 0);
    if (bits & GLS_BLEND_MASK)
        setBlendFactors(bits, "GL_ResetState");
    glDepthMask((bits & GLS_DEPTH_WRITE) != 0);
    setEnabled(GL_ALPHA_TEST, (bits & GLS_ALPHA_TEST) != 0);
}

static void changeBlending(uint32_t bits, uint32_t before) {
    if ((bits & GLS_BLEND_MASK) == 0) {
        glDisable(GL_BLEND);
        return;
    }
    if ((before & GLS_BLEND_MASK) == 0)
        glEnable(GL_BLEND);
    setBlendFactors(bits, "GL_State");
}

void GL_State(uint32_t bits) {
    const uint32_t before = s_state;
    const uint32_t changed = bits ^ before;
    s_state = bits;
    if (changed & GLS_BLEND_MASK)
        changeBlending(bits, before);
    if (changed & GLS_DEPTH_WRITE)
        glDepthMask((bits & GLS_DEPTH_WRITE) != 0);
    if (changed & GLS_ALPHA_TEST)
        setEnabled(GL_ALPHA_TEST, (bits & GLS_ALPHA_TEST) != 0);
}

uint32_t GL_CurrentState() {
    return s_state;
}

void GL_SetPixelRatio(float ratio) {
    static constexpr float STIPPLE_PIXELS = 2; // a bit of the pattern
    s_pixelRatio = ratio;
    GL_LineWidth(1);
    GL_PointSize(1);
    glLineStipple(GLint(std::lround(STIPPLE_PIXELS * ratio)), 0x9999);
}

void GL_LineWidth(float pixels) {
    glLineWidth(pixels * s_pixelRatio);
}

void GL_PointSize(float pixels) {
    glPointSize(pixels * s_pixelRatio);
}

static bool hasAnisotropy() {
    const auto* text = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    return text && QByteArray(text).contains("GL_EXT_texture_filter_anisotropic");
}

// 0 until it was read, and where there is no such filter.
static float maxAnisotropy(bool read) {
    static float maximum = 0;
    static bool known = false;
    if (read && !known) {
        known = true;
        if (hasAnisotropy())
            glGetFloatv(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, &maximum);
    }
    return maximum;
}

void applyTextureSampling(int filter, bool mipmapped, bool anisotropy) {
    static const GLint minFilters[] = {GL_NEAREST, GL_LINEAR, GL_NEAREST_MIPMAP_NEAREST,
                                       GL_LINEAR_MIPMAP_NEAREST};
    const int index = filter ? 1 : 0;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, minFilters[index]);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, minFilters[index + (mipmapped ? 2 : 0)]);
    const float maximum = maxAnisotropy(anisotropy);
    if (maximum < 1.0f)
        return;
    const bool on = index == 1 && anisotropy;
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAX_ANISOTROPY_EXT,
                    on ? std::min(4.0f, maximum) : 1.0f);
}

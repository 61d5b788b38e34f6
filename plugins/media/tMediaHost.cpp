// SPDX-License-Identifier: MIT
#include "media/tMediaHost.h"

#include <optional>

const cHostServices* g_services = nullptr;
static std::optional<cPalette> s_palette;

enum eGLFormat : uint32_t {
    Rgb = 0x1907,
    Rgba = 0x1908,
    CompressedRgb = 0x84ED,
    CompressedRgba = 0x84EE
};

TP_EXPORT int32_t tpMain(const cHostServices* host) {
    // An older host lacks services that are called here.
    if (!host || host->size < sizeof(cHostServices))
        return 0;
    g_services = host;
    return 1;
}

TP_EXPORT void tpSetPalette(const uint8_t* palette) {
    s_palette.reset();
    if (palette)
        std::copy_n(palette, s_palette.emplace().size(), s_palette->begin());
}

const cPalette* currentPalette() {
    return s_palette ? &*s_palette : nullptr;
}

cHostImage::cHostImage(const cImage& image)
    : width(image.width),
      height(image.height),
      alpha(alphaOf(image)),
      pixelFormat(alpha == eAlpha::None ? Rgb : Rgba),
      compressedFormat(alpha == eAlpha::None ? CompressedRgb : CompressedRgba) {
    const size_t channels = alpha == eAlpha::None ? 3 : 4;
    pixels.resize(image.texels.size() * channels);
    uint8_t* out = pixels.data();
    for (const cColor& texel : image.texels) {
        memcpy(out, &texel, channels);
        out += channels;
    }
}

bool cFileReport::add(cProblem problem, const std::string& name) {
    if (!problem)
        return false;
    if (m_count++ == 0)
        m_first = name.empty() ? problem : "\"" + name + "\": " + problem;
    return true;
}

cFileReport::~cFileReport() {
    if (m_count == 1)
        g_services->Sys_Warning("%s: %s", m_path.c_str(), m_first.c_str());
    else if (m_count > 1)
        g_services->Sys_Warning("%s: %i entries can't be read, the first is %s", m_path.c_str(),
                                m_count, m_first.c_str());
}

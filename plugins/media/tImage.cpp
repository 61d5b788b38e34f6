// SPDX-License-Identifier: MIT
#include "media/tImage.h"

void cImage::resize(int w, int h) {
    width = w;
    height = h;
    texels.assign(size_t(w) * size_t(h), cColor());
}

eAlpha alphaOf(const cImage& image) {
    eAlpha alpha = eAlpha::None;
    for (const cColor& texel : image.texels) {
        if (texel.a != 0 && texel.a != 255)
            return eAlpha::Blended;
        if (texel.a == 0)
            alpha = eAlpha::Holes;
    }
    return alpha;
}

// From the last solid texel before; then back again for what stands before the first one.
template<class Step> static void bleedAlong(cColor* line, int count, Step step) {
    const auto bleed = [&](int from, int to, int way) {
        for (int i = from; i != to; i += way) {
            cColor& texel = line[step(i)];
            const cColor& before = line[step(i - way)];
            if (texel.a == 0 && !(texel.r | texel.g | texel.b))
                texel = {before.r, before.g, before.b, 0};
        }
    };
    bleed(1, count, 1);
    bleed(count - 2, -1, -1);
}

void bleedColors(cImage& image) {
    if (alphaOf(image) != eAlpha::Holes)
        return;
    for (cColor& texel : image.texels) {
        if (texel.a == 0)
            texel = {0, 0, 0, 0};
    }
    for (int y = 0; y < image.height; ++y)
        bleedAlong(image.row(y), image.width, [](int i) { return ptrdiff_t(i); });
    for (int x = 0; x < image.width; ++x)
        bleedAlong(image.row(0) + x, image.height,
                   [&](int i) { return ptrdiff_t(i) * image.width; });
}

static cPalette greys() {
    cPalette palette = {};
    for (size_t i = 0; i < palette.size(); ++i)
        palette[i] = uint8_t(i / 3);
    return palette;
}

const cPalette GREY_PALETTE = greys();

void paint(const uint8_t* indices, const cPalette& palette, bool withHoles, cImage& image) {
    std::array<cColor, 256> colors;
    for (size_t i = 0; i < colors.size(); ++i)
        colors[i] = {palette[3 * i], palette[3 * i + 1], palette[3 * i + 2], 255};
    if (withHoles)
        colors[HOLE_INDEX].a = 0;
    for (cColor& texel : image.texels)
        texel = colors[*indices++];
    if (withHoles)
        bleedColors(image);
}

cProblem cImageBudget::take(int64_t width, int64_t height) {
    if (width < 1 || height < 1)
        return "the picture has no size";
    if (width > MAX_SIDE || height > MAX_SIDE || width * height > MAX_TEXELS)
        return "the picture is too large";
    const uint64_t bytes = uint64_t(width) * uint64_t(height) * sizeof(cColor);
    if (bytes > m_left)
        return "too many pictures for one set";
    m_left -= bytes;
    return nullptr;
}

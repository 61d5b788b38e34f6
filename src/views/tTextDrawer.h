// SPDX-License-Identifier: MIT
// Texts drawn by OpenGL. A character is asked of the font engine once for each font and scale of a
// window; from then on it is a quad over a texture that all views share, and measuring adds kept
// numbers. Characters are set side by side as they are: no kerning, no joined forms.
#pragma once

#include <QFont>
#include <QString>
#include <array>
#include <cstdint>
#include <vector>

class cGlyphAtlas;

// Pixels from the left end of the text to where the next would begin. Wants no context.
float textWidth(const QFont& font, const QString& text);
int textLineSpacing(const QFont& font);

class cTextDrawer {
public:
    // pixelRatio: device pixels a pixel.
    cTextDrawer(const QFont& font, qreal pixelRatio) : m_font(font), m_pixelRatio(pixelRatio) {}

    const QFont& font() const { return m_font; }
    // x, y: the left end of the baseline, in pixels with y downwards.
    void add(float x, float y, const QString& text, const uint8_t* rgba);
    // Draws what was added, the later over the earlier, and forgets it. Wants a context whose
    // matrices count in such pixels; sharp where its viewport is of device pixels.
    void flush();

private:
    struct cText {
        float x;
        float y;
        QString text;
        std::array<uint8_t, 4> rgba;
    };
    struct cVertex {
        float xy[2];
        float uv[2];
        std::array<uint8_t, 4> rgba;
    };

    void put(const cText& text, cGlyphAtlas& atlas);
    void drawQuads(const cGlyphAtlas& atlas);

    QFont m_font;
    qreal m_pixelRatio;
    std::vector<cText> m_texts;
    std::vector<cVertex> m_vertices; // four a glyph
};

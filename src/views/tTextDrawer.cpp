// SPDX-License-Identifier: MIT
#include "views/tTextDrawer.h"

#include "views/tGLState.h"
#include "views/tGlyphAtlas.h"

#include <QFontMetricsF>
#include <cmath>
#include <list>
#include <qopengl.h>

// ---- Measures

namespace {

// What one font measures, in pixels.
struct cMetrics {
    QFont font;
    int lineSpacing;
    QHash<uint, float> advances;

    float advance(uint character) {
        const auto found = advances.constFind(character);
        if (found != advances.constEnd())
            return *found;
        const qreal width = QFontMetricsF(font).horizontalAdvance(characterText(character));
        return *advances.insert(character, float(width));
    }
};

} // namespace

static cMetrics& metricsOf(const QFont& font) {
    static std::list<cMetrics> all;
    for (cMetrics& metrics : all)
        if (metrics.font == font)
            return metrics;
    return all.emplace_back(cMetrics{font, qRound(QFontMetricsF(font).lineSpacing()), {}});
}

template<class Body> static void forEachCharacter(const QString& text, Body body) {
    for (int i = 0; i < text.size(); ++i) {
        const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size();
        body(isPair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode());
        i += isPair ? 1 : 0;
    }
}

float textWidth(const QFont& font, const QString& text) {
    cMetrics& metrics = metricsOf(font);
    float width = 0;
    forEachCharacter(text, [&](uint character) { width += metrics.advance(character); });
    return width;
}

int textLineSpacing(const QFont& font) {
    return metricsOf(font).lineSpacing;
}

// ---- Drawing

void cTextDrawer::add(float x, float y, const QString& text, const uint8_t* rgba) {
    if (!text.isEmpty())
        m_texts.push_back({x, y, text, {rgba[0], rgba[1], rgba[2], rgba[3]}});
}

// Each glyph begins at a whole device pixel, or it would be blurred.
void cTextDrawer::put(const cText& text, cGlyphAtlas& atlas) {
    const auto ratio = float(m_pixelRatio);
    cMetrics& metrics = metricsOf(m_font);
    const float baseline = std::round(text.y * ratio);
    float pen = text.x;
    forEachCharacter(text.text, [&](uint character) {
        const cGlyph* glyph = atlas.find(character);
        if (!glyph) {
            drawQuads(atlas);
            atlas.clear();
            glyph = atlas.find(character);
        }
        if (glyph && glyph->width > 0) {
            const float x0 = (std::round(pen * ratio) + glyph->left) / ratio;
            const float y0 = (baseline + glyph->top) / ratio;
            const float x1 = x0 + glyph->width / ratio, y1 = y0 + glyph->height / ratio;
            m_vertices.push_back({{x0, y0}, {glyph->u0, glyph->v0}, text.rgba});
            m_vertices.push_back({{x0, y1}, {glyph->u0, glyph->v1}, text.rgba});
            m_vertices.push_back({{x1, y1}, {glyph->u1, glyph->v1}, text.rgba});
            m_vertices.push_back({{x1, y0}, {glyph->u1, glyph->v0}, text.rgba});
        }
        pen += metrics.advance(character);
    });
}

void cTextDrawer::drawQuads(const cGlyphAtlas& atlas) {
    if (m_vertices.empty())
        return;
    const uint32_t before = GL_CurrentState();
    GL_State(GLS_BLEND_ALPHA);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, atlas.texture());
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    const cVertex& first = m_vertices.front();
    glVertexPointer(2, GL_FLOAT, sizeof first, first.xy);
    glTexCoordPointer(2, GL_FLOAT, sizeof first, first.uv);
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof first, first.rgba.data());
    glDrawArrays(GL_QUADS, 0, GLsizei(m_vertices.size()));
    glDisableClientState(GL_COLOR_ARRAY);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    glBindTexture(GL_TEXTURE_2D, 0);
    glDisable(GL_TEXTURE_2D);
    GL_State(before);
    m_vertices.clear();
}

void cTextDrawer::flush() {
    if (m_texts.empty())
        return;
    cGlyphAtlas& atlas = cGlyphAtlas::of(m_font, m_pixelRatio);
    for (const cText& text : m_texts)
        put(text, atlas);
    drawQuads(atlas);
    m_texts.clear();
}

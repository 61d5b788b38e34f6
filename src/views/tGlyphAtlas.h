// SPDX-License-Identifier: MIT
// The characters of one font at one scale, in one texture that fills as they are met. There is one
// for each group of contexts that share, and it goes with the group.
#pragma once

#include <QFont>
#include <QHash>

// A character's picture, in device pixels from the point where it is set, y downwards, and in the
// texture from 0 to 1. Blanks have no picture.
struct cGlyph {
    float left, top, width, height;
    float u0, v0, u1, v1;
};

class cGlyphAtlas {
public:
    // That of the current context.
    static cGlyphAtlas& of(const QFont& font, qreal pixelRatio);

    cGlyphAtlas(const QFont& font, qreal pixelRatio) : m_font(font), m_pixelRatio(pixelRatio) {}
    cGlyphAtlas(const cGlyphAtlas&) = delete;
    cGlyphAtlas& operator=(const cGlyphAtlas&) = delete;

    // Null: it is not there yet and the texture is full. After a clear() all find room again, but
    // what was given before is no longer right.
    const cGlyph* find(uint character);
    void clear();
    unsigned texture() const { return m_texture; }

private:
    bool findRoom(QSize size, QPoint* place);
    const cGlyph* add(uint character);
    void createTexture();

    QFont m_font;
    qreal m_pixelRatio;
    unsigned m_texture = 0;
    int m_side = 0; // texels
    QHash<uint, cGlyph> m_glyphs;
    QPoint m_next; // in the line of characters that is being filled
    int m_lineHeight = 0;
};

QString characterText(uint character);

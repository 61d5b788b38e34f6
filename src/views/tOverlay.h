// SPDX-License-Identifier: MIT
// What is drawn over the map's picture: the shapes and texts of tools and markers. They are
// gathered and drawn by flush(), those of one kind that follow each other in one call; the later
// lies over the earlier, icons over shapes, texts over both. Nothing is kept from the arguments.
//
// Points are world units where a view asks a tool to draw, pixels of the canvas with y downwards
// and a third coordinate of 0 where it asks for the overlay. Colours are four bytes, red first.
#pragma once

#include "views/tTextDrawer.h"

#include <QPixmap>
#include <QString>
#include <array>
#include <cstdint>
#include <vector>

class cCanvas;

// How lines are drawn; a colour alone stands for a line a pixel wide.
struct cStroke {
    cStroke(const uint8_t* color, float pixels = 1, bool isStippled = false)
        : rgba(color), width(pixels), stippled(isStippled) {}

    const uint8_t* rgba;
    float width; // pixels
    bool stippled;
};

inline cStroke stippled(const uint8_t* rgba) {
    return {rgba, 1, true};
}

using cRgba = std::array<uint8_t, 4>;
cRgba darker(const uint8_t* rgba, float factor); // alpha stays

enum eFill { FILL_OPAQUE, FILL_BLENDED }; // FILL_BLENDED goes by alpha

// What a bullet stands for; decides its colour.
enum eBulletKind { BULLET_VERTEX, BULLET_EDGE, BULLET_CLIP, BULLET_CORDON, BULLET_SELECTED };

enum eBulletShape { BULLET_SQUARE, BULLET_DIAMOND, BULLET_ROUND };

// Of a text within its field.
enum eTextAlign { TEXT_LEFT, TEXT_CENTER, TEXT_RIGHT };

// Of an icon by alpha: cut out texel by texel, or blended.
enum eIconEdge { ICON_CUT_OUT, ICON_BLENDED };

class cOverlay {
public:
    using cPoint = float[3];

    explicit cOverlay(cCanvas& canvas);

    // ---- Lines

    void line(const float* a, const float* b, const cStroke& stroke);
    // Goes over from one colour to the other, blended by alpha, and hides nothing behind it.
    void fadingLine(const float* a, const uint8_t* rgbaA, const float* b, const uint8_t* rgbaB);
    void polyline(const cPoint* points, int count, const cStroke& stroke);
    void outline(const cPoint* points, int count, const cStroke& stroke); // closed
    void box(const float* mins, const float* maxs, const cStroke& stroke);
    // Turned about rotAxis by angle (radians), from the lower to the higher of the other axes; and
    // sheared along rotAxis by an amount that grows from 0 at the lower side of shearAxis to shear
    // at its upper side.
    void boxTransformed(const float* mins, const float* maxs, int rotAxis, int shearAxis,
                        float angle, float shear, const cStroke& stroke);

    // ---- Faces, seen from the side where the points go counterclockwise

    void polygon(const cPoint* points, int count, const uint8_t* rgba, // convex
                 eFill fill = FILL_OPAQUE);
    void boxFill(const float* mins, const float* maxs, const uint8_t* rgba,
                 eFill fill = FILL_OPAQUE);

    // ---- Marks at a point of the world, facing the screen, with sizes in pixels

    void square(const float* center, float size, const cStroke& stroke);
    void cross(const float* center, const cStroke& stroke); // through the whole of a 2D view
    // In the colour of its kind, with a frame. dx, dy: pixels aside of the point, dy downwards.
    void bullet(const float* center, float size, float dx, float dy, eBulletKind kind,
                eBulletShape shape = BULLET_SQUARE);

    // ---- In pixels

    // x, y is the left end of the baseline of a field of that width.
    void text(int x, int y, int width, eTextAlign align, const QString& text, const uint8_t* rgba);
    void centerIcon(const QPixmap& icon, eIconEdge edge); // in the middle of the view

    // Draws what has been gathered and forgets it. Who draws by other means between two shapes
    // calls it first.
    void flush();

private:
    struct cStyle {
        bool filled;
        float width;
        bool stippled;
        uint32_t state; // GLS_ bits
        bool operator==(const cStyle& other) const;
    };
    struct cRun { // up to the first vertex of the next
        cStyle style;
        size_t first;
    };
    struct cVertex {
        float xyz[3];
        uint8_t rgba[4];
    };
    struct cIcon {
        QPixmap pixmap;
        eIconEdge edge;
    };

    float unitsPerPixel(const float* point) const;
    void discPoints(const float* center, float radius, float turn, int count, cPoint* points) const;
    void edges(const float corners[8][3], const cStroke& stroke);
    void beginRun(const cStyle& style);
    void beginLines(const cStroke& stroke);
    void put(const float* point, const uint8_t* rgba);
    void drawRun(const cStyle& style, size_t first, size_t end) const;
    void drawShapes();
    void drawIcons();

    cCanvas& m_canvas;
    std::vector<cVertex> m_vertices;
    std::vector<cRun> m_runs;
    std::vector<cIcon> m_icons;
    cTextDrawer m_texts;
};

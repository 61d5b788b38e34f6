// SPDX-License-Identifier: MIT
// Where the texture browser's tiles lie: rows of images with a label beneath each. Painting, mouse,
// keys and scrolling all ask the one layout. Pixels, y downwards from the top of the content.
#pragma once

#include <QRect>
#include <QString>
#include <utility>
#include <vector>

struct cTexture;

// How large the tiles are, in the order of the browser's list of sizes.
struct cTextureScale {
    const char* text;
    float value; // above 0: pixels of every tile; below: the texture's size is divided by it
};
constexpr cTextureScale TEXTURE_SCALES[] = {
    {"2:1 (200%)", -0.5f}, {"1:1 (100%)", -1}, {"1:2 (50%)", -2},  {"1:4 (25%)", -4},
    {"32 x 32", 32},       {"64 x 64", 64},    {"128 x 128", 128}, {"256 x 256", 256},
};
constexpr int TEXTURE_SCALE_COUNT = int(std::size(TEXTURE_SCALES));

// What is shown of one texture.
struct cShownTexture {
    const cTexture* texture;
    QString name;
    int labelWidth; // pixels
};

struct cTextureTile {
    QRect image; // as it is drawn
    int x;
    int y;
    int cell;   // width of tile and label
    int height; // of the tile without its label

    QRect label() const;
    QRect bounds() const; // with the label
};

class cTextureTiles {
public:
    // scaleMode: a place in TEXTURE_SCALES. viewWidth: pixels.
    void layOut(const std::vector<cShownTexture>& shown, int scaleMode, int viewWidth);

    // By number of the shown texture.
    const std::vector<cTextureTile>& tiles() const { return m_tiles; }
    int contentHeight() const { return m_contentHeight; }
    int at(int x, int y) const; // the tile there, with its label; -1: none
    // First and one past the last of the tiles in rows that reach into [top, bottom).
    std::pair<int, int> between(int top, int bottom) const;

    // ---- Ways of the keys; the tile itself where there is no further one

    int beside(int tile, int step) const;
    int inRow(int tile, int rows) const; // so many rows below, or above: the one nearest in x
    int rowsIn(int height) const;        // full rows that fit, by the first; at least 1

private:
    struct cRow {
        int first; // tile
        int y;
        int height; // to the next row
    };

    int rowOf(int tile) const;
    int rowAt(int y) const; // the last that begins at or above it; -1: above all
    int endOf(int row) const;
    void closeRow(int height);

    std::vector<cTextureTile> m_tiles;
    std::vector<cRow> m_rows;
    int m_contentHeight = 0;
};

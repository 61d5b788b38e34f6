// SPDX-License-Identifier: MIT
#include "views/tTextureTiles.h"

#include "document/tTexture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

static constexpr int GAP = 8;
static constexpr int LABEL_TOP = 4; // below the image
static constexpr int LABEL_BOTTOM = 15;
static constexpr int ROW_STEP = LABEL_BOTTOM + GAP;
static constexpr int LABEL_MARGIN = 4; // both sides of the name together

// ---- Tiles

QRect cTextureTile::label() const {
    return {x, y + height + LABEL_TOP, cell, LABEL_BOTTOM - LABEL_TOP};
}

QRect cTextureTile::bounds() const {
    return {x, y, cell, height + LABEL_BOTTOM};
}

// ---- Layout

static QSize tileSize(const cTexture& texture, float scale) {
    if (scale > 0)
        return {int(scale), int(scale)};
    const auto scaled = [scale](int side) { return std::max(1, int(float(side) / -scale)); };
    return {scaled(texture.width), scaled(texture.height)};
}

// A small texture is not stretched in a tile of fixed size.
static QRect imageIn(const cTextureTile& tile, QSize size, const cTexture& texture, bool enlarged) {
    const QSize own(texture.width, texture.height);
    const QSize drawn = enlarged ? size : size.boundedTo(own);
    return {QPoint(tile.x + (tile.cell - drawn.width()) / 2, tile.y), drawn};
}

void cTextureTiles::closeRow(int height) {
    m_rows.back().height = height + ROW_STEP;
}

// The height of a tile that moves down counts in the row that it leaves as well. One that is wider
// than the view stays where its row begins.
void cTextureTiles::layOut(const std::vector<cShownTexture>& shown, int scaleMode, int viewWidth) {
    const float scale = TEXTURE_SCALES[scaleMode].value;
    m_tiles.clear();
    m_rows.clear();
    m_tiles.reserve(shown.size());
    int x = GAP, y = GAP, rowHeight = 0;
    for (const cShownTexture& one : shown) {
        const QSize size = tileSize(*one.texture, scale);
        const int cell = std::max(size.width(), one.labelWidth + LABEL_MARGIN);
        rowHeight = std::max(rowHeight, size.height());
        if (x > GAP && x + cell + GAP > viewWidth) {
            closeRow(rowHeight);
            y += m_rows.back().height;
            x = GAP;
            rowHeight = size.height();
        }
        if (x == GAP)
            m_rows.push_back({int(m_tiles.size()), y, 0});
        cTextureTile tile = {QRect(), x, y, cell, size.height()};
        tile.image = imageIn(tile, size, *one.texture, scaleMode == 0);
        m_tiles.push_back(tile);
        x += cell + GAP;
    }
    if (!m_rows.empty())
        closeRow(rowHeight);
    m_contentHeight = m_rows.empty() ? 0 : y + m_rows.back().height;
}

// ---- What is where

int cTextureTiles::rowAt(int y) const {
    const auto below = std::upper_bound(m_rows.begin(), m_rows.end(), y,
                                        [](int value, const cRow& row) { return value < row.y; });
    return int(below - m_rows.begin()) - 1;
}

int cTextureTiles::rowOf(int tile) const {
    return rowAt(m_tiles[size_t(tile)].y);
}

int cTextureTiles::endOf(int row) const {
    return size_t(row + 1) < m_rows.size() ? m_rows[size_t(row + 1)].first : int(m_tiles.size());
}

int cTextureTiles::at(int x, int y) const {
    const int row = rowAt(y);
    if (row < 0)
        return -1;
    const auto begin = m_tiles.begin() + m_rows[size_t(row)].first;
    const auto end = m_tiles.begin() + endOf(row);
    const auto right = std::upper_bound(
        begin, end, x, [](int value, const cTextureTile& tile) { return value < tile.x; });
    if (right == begin || !(right - 1)->bounds().contains(x, y))
        return -1;
    return int(right - 1 - m_tiles.begin());
}

std::pair<int, int> cTextureTiles::between(int top, int bottom) const {
    const int last = rowAt(bottom - 1);
    if (last < 0)
        return {0, 0};
    const int first = std::max(0, rowAt(top));
    return {m_rows[size_t(first)].first, endOf(last)};
}

// ---- Ways of the keys

int cTextureTiles::beside(int tile, int step) const {
    return std::clamp(tile + step, 0, int(m_tiles.size()) - 1);
}

int cTextureTiles::inRow(int tile, int rows) const {
    const int row = std::clamp(rowOf(tile) + rows, 0, int(m_rows.size()) - 1);
    if (row == rowOf(tile))
        return tile;
    const auto middle = [](const cTextureTile& of) { return 2 * of.x + of.cell; };
    const int from = middle(m_tiles[size_t(tile)]);
    const auto found =
        std::min_element(m_tiles.begin() + m_rows[size_t(row)].first, m_tiles.begin() + endOf(row),
                         [&](const cTextureTile& a, const cTextureTile& b) {
                             return std::abs(middle(a) - from) < std::abs(middle(b) - from);
                         });
    return int(found - m_tiles.begin());
}

int cTextureTiles::rowsIn(int height) const {
    return m_rows.empty() ? 1 : std::max(1, height / m_rows.front().height);
}

// SPDX-License-Identifier: MIT
#include "document/tSelectionBox.h"

#include "support/tHost.h"
#include "support/tVec.h"

#include <algorithm>
#include <iterator>
#include <utility>

static constexpr float INSIDE_MARGIN = 0.5f;          // units, around the box
static constexpr float SMALLEST_SIDE = 1.0f;          // units; a resize cannot turn a box over
static constexpr float COARSE_STEP = 0.2617994f;      // radians, 15 degrees
static constexpr float FINE_STEP = 0.008726646f;      // radians, half a degree
static constexpr float FULL_TURN = 6.2831855f;        // radians
static constexpr double DEGREES = 180.0 / 3.14159265; // of a radian

// ---- Handles

// Which way a handle lies from the centre on the view's axes.
struct cHandlePlace {
    int h;
    int v;
};

static const cHandlePlace s_places[] = {
    {0, 0}, {-1, 1}, {1, 1}, {-1, -1}, {1, -1}, {-1, 0}, {1, 0}, {0, 1}, {0, -1},
};

static cHandlePlace placeOf(int handle) {
    const bool known = handle >= 0 && handle < int(std::size(s_places));
    return s_places[known ? handle : BH_NONE];
}

static int handleAtPlace(int h, int v) {
    for (int handle = BH_TOP_LEFT; handle <= BH_BOTTOM; ++handle)
        if (s_places[handle].h == h && s_places[handle].v == v)
            return handle;
    return BH_NONE;
}

static uint32_t sideBit(int side, int axis) {
    if (side == 0)
        return 0;
    return 1u << uint32_t(side < 0 ? axis : axis + 3);
}

uint32_t handleSides(int handle, int h, int v) {
    const cHandlePlace place = placeOf(handle);
    return sideBit(place.h, h) | sideBit(place.v, v);
}

// ---- Bounds

static float clampToWorld(float value) {
    const float half = float(g_host->MaxWorldSize) * 0.5f;
    return std::clamp(value, -half, half);
}

void cSelectionBox::clear() {
    *this = cSelectionBox();
}

void cSelectionBox::setPoint(const float* point) {
    setFromTwoPoints(point, point);
}

void cSelectionBox::setFromTwoPoints(const float* a, const float* b) {
    active = true;
    rotation = shear = 0;
    for (int i = 0; i < 3; ++i) {
        mins[i] = clampToWorld(std::min(a[i], b[i]));
        maxs[i] = clampToWorld(std::max(a[i], b[i]));
    }
}

void cSelectionBox::addPoint(const float* point) {
    if (!active) {
        vecCopy(point, mins);
        vecCopy(point, maxs);
        active = true;
        return;
    }
    for (int i = 0; i < 3; ++i) {
        mins[i] = std::min(mins[i], point[i]);
        maxs[i] = std::max(maxs[i], point[i]);
    }
}

// ---- Changes

void cSelectionBox::move(const float* delta, float* reference) {
    if (!active)
        return;
    vecAdd(mins, delta, mins);
    vecAdd(maxs, delta, maxs);
    vecAdd(reference, delta, reference);
}

void cSelectionBox::moveAxis(int axis, float distance) {
    if (!active)
        return;
    mins[axis] += distance;
    maxs[axis] += distance;
}

void cSelectionBox::addToCorner(int which, int axis, float distance) {
    if (active)
        (which == 0 ? mins : maxs)[axis] += distance;
}

void cSelectionBox::setShear(float amount) {
    if (active)
        shear = amount;
}

static float middle(const cSelectionBox& box, int axis) {
    return (box.mins[axis] + box.maxs[axis]) * 0.5f;
}

void cSelectionBox::setRotation(const float* point, const float* pressPoint, int h, int v,
                                bool snap) {
    if (!active)
        return;
    const float centerH = middle(*this, h), centerV = middle(*this, v);
    const float angle = std::atan2(centerV - point[v], centerH - point[h]) -
                        std::atan2(centerV - pressPoint[v], centerH - pressPoint[h]);
    const float step = snap ? COARSE_STEP : FINE_STEP;
    rotation = angle - std::fmod(angle, step);
    if (rotation < 0)
        rotation += FULL_TURN;
}

static float snapDown(float value) {
    if (!g_host->SnapToGrid)
        return value;
    const float grid = float(g_host->gridSize);
    return std::floor(value / grid) * grid;
}

// Moves one side by delta; what the smallest side takes from the move it takes from delta.
static void moveSide(cSelectionBox& box, int axis, int direction, float& delta) {
    float& side = (direction < 0 ? box.mins : box.maxs)[axis];
    const float opposite = (direction < 0 ? box.maxs : box.mins)[axis];
    const float wanted = snapDown(side + delta);
    side = wanted;
    if (float(direction) * (side - opposite) < SMALLEST_SIDE)
        side = opposite + float(direction) * SMALLEST_SIDE;
    delta += side - wanted;
}

void cSelectionBox::resize(const float* delta, int h, int v, int handle, float* reference) {
    if (!active || (delta[h] == 0 && delta[v] == 0))
        return;
    const cHandlePlace place = placeOf(handle);
    float possible[3];
    vecCopy(delta, possible);
    for (const auto& [axis, direction] : {std::pair(h, place.h), std::pair(v, place.v)})
        if (direction != 0)
            moveSide(*this, axis, direction, possible[axis]);
    vecAdd(reference, possible, reference);
    for (const int axis : {h, v}) {
        mins[axis] = clampToWorld(mins[axis]);
        maxs[axis] = clampToWorld(maxs[axis]);
    }
}

// ---- Tests

bool cSelectionBox::contains(const float* point) const {
    return containsMargin(point, INSIDE_MARGIN);
}

bool cSelectionBox::containsMargin(const float* point, float margin) const {
    if (!active)
        return false;
    for (int i = 0; i < 3; ++i)
        if (!(mins[i] - margin < point[i] && point[i] < maxs[i] + margin))
            return false;
    return true;
}

static bool isBetween(float low, float value, float high) {
    return low < value && value < high;
}

// -1 or 1 in the band before the lower or behind the upper bound.
static int outerBand(float low, float high, float bullet, float offset, float value) {
    const float gap = offset * 0.5f;
    if (isBetween(low - gap - bullet, value, low - gap))
        return -1;
    return isBetween(high + gap, value, high + gap + bullet) ? 1 : 0;
}

int cSelectionBox::handleAt(int h, int v, float bulletSize, float offsetH, float offsetV,
                            const float* point) const {
    if (!active)
        return BH_NONE;
    const float half = bulletSize * 0.5f;
    const float centerH = middle(*this, h), centerV = middle(*this, v);
    const bool middleColumn = point[h] >= centerH - half && point[h] <= centerH + half;
    const bool middleRow = isBetween(centerV - half, point[v], centerV + half);
    const int row = outerBand(mins[v], maxs[v], bulletSize, offsetV, point[v]);
    if (middleColumn)
        return row ? handleAtPlace(0, row) : int(BH_NONE);
    // A band counts on its own side of the centre only, should the box be thinner than a handle.
    const int column = outerBand(mins[h], maxs[h], bulletSize, offsetH, point[h]);
    if (column == 0 || (column < 0) != (point[h] < centerH))
        return BH_NONE;
    return row || middleRow ? handleAtPlace(column, row) : int(BH_NONE);
}

static float nearerSide(float low, float high, float value) {
    return std::fabs(value - low) < std::fabs(high - value) ? low : high;
}

void cSelectionBox::nearestCorner(int h, int v, const float* point, float* out) const {
    vecSet(out, 0.0f, 0.0f, 0.0f);
    if (!active)
        return;
    for (const int axis : {h, v})
        out[axis] = nearerSide(mins[axis], maxs[axis], point[axis]);
}

static float placedOn(const cSelectionBox& box, int axis, int direction) {
    if (direction == 0)
        return middle(box, axis);
    return direction < 0 ? box.mins[axis] : box.maxs[axis];
}

void cSelectionBox::handlePoint(int h, int v, int handle, float* out) const {
    const cHandlePlace place = placeOf(handle);
    for (int i = 0; i < 3; ++i)
        out[i] = middle(*this, i);
    out[h] = placedOn(*this, h, place.h);
    out[v] = placedOn(*this, v, place.v);
}

// ---- Text

// Cut to hundredths.
static double hundredths(double value) {
    return std::floor(100.0 * value) * 0.01;
}

static double extent(const cSelectionBox& box, int axis) {
    return hundredths(double(box.maxs[axis] - box.mins[axis]));
}

static double centerText(const cSelectionBox& box, int axis) {
    return std::floor(50.0 * double(box.mins[axis] + box.maxs[axis])) / 100.0;
}

QString cSelectionBox::statusText(int h, int v, int mode) const {
    if (!active)
        return QString();
    switch (mode) {
    case BT_EXTENTS:
        return QStringLiteral("%1w %2l %3h")
            .arg(extent(*this, 0))
            .arg(extent(*this, 1))
            .arg(extent(*this, 2));
    case BT_CENTER:
        return QStringLiteral("%1x %2y %3z")
            .arg(centerText(*this, 0))
            .arg(centerText(*this, 1))
            .arg(centerText(*this, 2));
    case BT_VIEW_EXTENTS:
        return h < 0 || v < 0
                   ? QString()
                   : QStringLiteral("%1 x %2").arg(extent(*this, h)).arg(extent(*this, v));
    case BT_ROTATION:
        return QStringLiteral("%1\u00b0").arg(double(rotation) * DEGREES, 0, 'f', 1);
    case BT_SHEAR:
        return QStringLiteral("shear: %1").arg(hundredths(double(shear)));
    default:
        return QString();
    }
}

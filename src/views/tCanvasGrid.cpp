// SPDX-License-Identifier: MIT
// The grid of the 2D views, drawn under the map. Only what the view shows is walked.
#include "views/tCanvas.h"

#include "support/tColors.h"
#include "views/tDrawBatch.h"

#include <cmath>

// Indices of grid lines from first to last, counted from the edge of the world.
struct cGridRange {
    int first;
    int last;
    int stride; // above 1 where lines lie closer than a pixel
};

// A power of two, so that highlighted lines stay among those drawn.
static int strideFor(float pixelsPerStep) {
    int stride = 1;
    while (float(stride * 2) * pixelsPerStep <= 1.0f)
        stride *= 2;
    return stride;
}

static float shownStep(const cCanvas& canvas) {
    static constexpr float MIN_PIXELS = 4, COARSER = 8;
    float step = float(canvas.viewInfo.settings.gridSize);
    if (canvas.viewInfo.settings.hideSmallGrid)
        while (step * canvas.zoom <= MIN_PIXELS && step < canvas.halfWorldSize * 0.25f)
            step *= COARSER;
    return step;
}

static cGridRange visibleRange(const cCanvas& canvas, float center, int pixels, float step) {
    const float half = float(pixels) * 0.5f / canvas.zoom;
    const float low = (center - half + canvas.halfWorldSize) / step;
    const float high = (center + half + canvas.halfWorldSize) / step;
    const int count = int(2 * canvas.halfWorldSize / step);
    const int stride = strideFor(step * canvas.zoom);
    // From a multiple of the stride: the same lines whatever part of the world is seen.
    const int first = std::max(0, int(std::floor(low))) / stride * stride;
    return {first, std::min(count, int(std::ceil(high))), stride};
}

static cGridRange rangeH(const cCanvas& canvas, float step) {
    return visibleRange(canvas, canvas.offsetX / canvas.zoom, canvas.width(), step);
}

static cGridRange rangeV(const cCanvas& canvas, float step) {
    return visibleRange(canvas, -canvas.offsetY / canvas.zoom, canvas.height(), step);
}

static bool isMajor(const cDrawSettings& settings, int index) {
    return settings.gridHighlight && settings.gridHighlightStep > 0 &&
           index % settings.gridHighlightStep == 0;
}

static const uint8_t* gridColor(const cDrawSettings& settings, bool major) {
    return settings.color(major ? COLOR_2D_GRID_MAJOR : COLOR_2D_GRID_MINOR);
}

// The lines that are upright on the screen, or those that lie.
void cCanvas::drawGridLines(bool vertical, float step) {
    const cGridRange range = vertical ? rangeH(*this, step) : rangeV(*this, step);
    const int fixed = vertical ? axisH : axisV;
    const int along = vertical ? axisV : axisH;
    float a[3] = {0, 0, 0}, b[3] = {0, 0, 0};
    a[along] = -halfWorldSize;
    b[along] = halfWorldSize;
    for (int i = range.first; i <= range.last; i += range.stride) {
        a[fixed] = b[fixed] = float(i) * step - halfWorldSize;
        if (a[fixed] != 0)
            cDrawBatch::shared().line(a, b,
                                      gridColor(viewInfo.settings, isMajor(viewInfo.settings, i)));
    }
}

void cCanvas::drawGridDots(float step) {
    const cDrawSettings& shown = viewInfo.settings;
    const cGridRange columns = rangeH(*this, step);
    const cGridRange rows = rangeV(*this, step);
    float p[3] = {0, 0, 0};
    for (int i = columns.first; i <= columns.last; i += columns.stride) {
        p[axisH] = float(i) * step - halfWorldSize;
        if (p[axisH] == 0)
            continue;
        for (int k = rows.first; k <= rows.last; k += rows.stride) {
            p[axisV] = float(k) * step - halfWorldSize;
            if (p[axisV] != 0)
                cDrawBatch::shared().point(
                    p, gridColor(shown, isMajor(shown, i) || isMajor(shown, k)));
        }
    }
}

void cCanvas::drawGrid() {
    if (!viewInfo.settings.enableGrid2D)
        return;
    const float step = shownStep(*this);
    cDrawBatch& batch = cDrawBatch::shared();
    if (viewInfo.settings.dottedGrid) {
        drawGridDots(step);
    } else {
        drawGridLines(true, step);
        drawGridLines(false, step);
    }
    batch.flush();
    const uint8_t* color = viewInfo.settings.color(COLOR_2D_GRID_AXIS);
    for (const int axis : {axisV, axisH}) {
        float a[3] = {0, 0, 0}, b[3] = {0, 0, 0};
        a[axis] = -halfWorldSize;
        b[axis] = halfWorldSize;
        batch.line(a, b, color);
    }
    batch.flush();
}

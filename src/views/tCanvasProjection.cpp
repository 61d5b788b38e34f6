// SPDX-License-Identifier: MIT
// Zoom, scrolling, coordinates, matrices and the frustum of a view.
#include "views/tCanvas.h"

#include "support/tHost.h"
#include "support/tVec.h"
#include "views/tCachedPicture.h"
#include "views/tChildWindow.h"
#include "views/tDocumentViews.h"
#include "views/tViewHost.h"

#include <QScrollBar>

static constexpr float ZOOM_REFERENCE_WORLD = 8192.0f; // minZoomFactor is meant for this world
static constexpr float NEAR_PLANE = 1.0f;

// ---- Zoom

float cCanvas::minZoom() const {
    return ZOOM_REFERENCE_WORLD / float(g_host->MaxWorldSize) * minZoomFactor;
}

void cCanvas::zoomTo(float value) {
    value = std::clamp(value, minZoom(), maxZoom);
    if (value == zoom)
        return;
    zoom = value;
    clampOffset();
}

void cCanvas::zoomAt(float value, int x, int y) {
    value = std::clamp(value, minZoom(), maxZoom);
    if (value == zoom)
        return;
    const float dx = float(int(float(x) - float(width()) * 0.5f));
    const float dy = float(int(float(y) - float(height()) * 0.5f));
    offsetX = (offsetX + dx) / zoom * value - dx;
    offsetY = (offsetY + dy) / zoom * value - dy;
    zoom = value;
    clampOffset();
    showZoom();
}

void cCanvas::setZoom(float value) {
    if (isCamera())
        return;
    zoomAt(value, width() / 2, height() / 2);
    updateScrollBars();
    requestRedraw(false);
}

// ---- Scrolling

// Half of what lies outside the view along one extent, in pixels; 0 or less when all is seen.
float cCanvas::scrollRange(float extent) const {
    return 0.5f * zoom * (worldSize - extent / zoom);
}

static float clampToRange(float offset, float range) {
    return range <= 0 ? 0.0f : std::clamp(offset, -range, range);
}

void cCanvas::clampOffset() {
    worldSize = float(g_host->MaxWorldSize);
    halfWorldSize = worldSize * 0.5f;
    offsetX = clampToRange(offsetX, scrollRange(float(width())));
    offsetY = clampToRange(offsetY, scrollRange(float(height())));
    viewDirty = true;
    viewInfo.invZoom = 1.0f / zoom;
}

void cCanvas::pan(float dx, float dy) {
    offsetX -= dx;
    offsetY -= dy;
    clampOffset();
}

void cCanvas::setOffset(float x, float y) {
    if (isCamera())
        return;
    offsetX = x;
    offsetY = y;
    clampOffset();
    updateScrollBars();
    requestRedraw(false);
}

void cCanvas::updateScrollBar(QScrollBar* bar, float extent, float offset) {
    static constexpr int MAX_STEPS = 2000;
    if (!bar || bar->isHidden())
        return;
    const float range = scrollRange(extent);
    const int steps = range <= 0 ? 0 : std::min(int(std::sqrt(range) * 10.0f), MAX_STEPS);
    bar->setMaximum(steps);
    bar->setValue(range <= 0 ? 0 : int((offset / range + 1.0f) * 0.5f * float(steps)));
}

void cCanvas::updateScrollBars() {
    scrollUpdating = true;
    updateScrollBar(m_horizontal, float(width()), offsetX);
    updateScrollBar(m_vertical, float(height()), offsetY);
    scrollUpdating = false;
}

static float offsetOfBar(const QScrollBar* bar, int value, float range) {
    const int maximum = bar->maximum();
    return maximum > 0 && range > 0 ? (float(value) / float(maximum) * 2.0f - 1.0f) * range : 0.0f;
}

void cCanvas::horizontalScroll(int value) {
    if (scrollUpdating || !m_horizontal)
        return;
    activate();
    offsetX = offsetOfBar(m_horizontal, value, scrollRange(float(width())));
    clampOffset();
    requestRedraw(true);
}

void cCanvas::verticalScroll(int value) {
    if (scrollUpdating || !m_vertical)
        return;
    activate();
    offsetY = offsetOfBar(m_vertical, value, scrollRange(float(height())));
    clampOffset();
    requestRedraw(true);
}

void cCanvas::centerOn(const float* point) {
    if (isCamera())
        return;
    const int dx = int(point[axisH] * zoom - offsetX);
    const int dy = int(-zoom * point[axisV] - offsetY);
    if (dx == 0 && dy == 0)
        return;
    setOffset(offsetX + float(dx), offsetY + float(dy));
}

// How far a pixel lies outside 0 to extent.
static float overshoot(float pixel, float extent) {
    if (pixel < 0)
        return pixel;
    return pixel > extent ? pixel - extent : 0.0f;
}

void cCanvas::ensureVisible(const float* point) {
    if (isCamera())
        return;
    float pixel[2];
    projectToScreen(point, pixel);
    const float dx = overshoot(pixel[0], float(width()));
    const float dy = overshoot(pixel[1], float(height()));
    if (dx == 0 && dy == 0)
        return;
    offsetX += dx;
    offsetY += dy;
    clampOffset();
    updateScrollBars();
}

// ---- Coordinates

// As Qt rounds the size of the native window.
QSize cCanvas::deviceSize() const {
    return size() * devicePixelRatioF();
}

QPoint cCanvas::devicePixel(int x, int y) const {
    const QSize device = deviceSize();
    return {(2 * x + 1) * device.width() / (2 * width()),
            device.height() - 1 - (2 * y + 1) * device.height() / (2 * height())};
}

// The middle of that device pixel, in pixels.
static void readMiddle(const cCanvas& canvas, int x, int y, float out[2]) {
    const QSize device = canvas.deviceSize();
    const QPoint at = canvas.devicePixel(x, y);
    out[0] = (float(at.x()) + 0.5f) * float(canvas.width()) / float(device.width());
    out[1] = float(canvas.height()) -
             (float(at.y()) + 0.5f) * float(canvas.height()) / float(device.height());
}

// With the grid when it is on; else to whole units. True with the grid.
bool cCanvas::snapPoint(float* point, int count) const {
    const bool onGrid = g_host->SnapToGrid;
    const float grid = onGrid ? float(g_host->gridSize) : 1.0f;
    for (int i = 0; i < count; ++i)
        point[i] = std::floor(point[i] / grid + 0.5f) * grid;
    return onGrid;
}

void cCanvas::screenToWorld2D(float x, float y, bool snap, float out[2]) const {
    out[0] = (offsetX - float(width()) * 0.5f + x) / zoom;
    out[1] = (float(height()) * 0.5f - offsetY - y) / zoom;
    if (snap)
        snapPoint(out, 2);
}

// The centre of another view along this one's depth axis; false if it does not show that axis.
bool cCanvas::depthOf(const cCanvas* other, float* depth) const {
    if (!other || other->isCamera() || other->viewType == viewType)
        return false;
    if (other->axisH == axisDepth)
        *depth = other->offsetX / other->zoom;
    else if (other->axisV == axisDepth)
        *depth = -other->offsetY / other->zoom;
    else
        return false;
    return true;
}

bool cCanvas::depthFromOtherView(float* depth) const {
    if (depthOf(g_viewHost->activeCanvas, depth) || depthOf(g_viewHost->previousCanvas, depth))
        return true;
    return project() && depthOf(project()->findCanvas(axisDepth), depth);
}

bool cCanvas::screenToWorld(int x, int y, int flags, float out[3]) {
    if (isCamera()) {
        float depth = 1.0f;
        if (!readDepth(x, y, &depth) || depth >= 1.0f)
            return false;
        float read[3] = {0, 0, depth};
        readMiddle(*this, x, y, read);
        if (!unproject(read, out))
            return false;
        if (flags & SW_SNAP)
            snapPoint(out, 3);
        else
            for (int i = 0; i < 3; ++i)
                out[i] = std::floor(out[i] + 0.5f);
        return true;
    }
    float flat[2];
    screenToWorld2D(float(x), float(y), false, flat);
    out[axisH] = flat[0];
    out[axisV] = flat[1];
    out[axisDepth] = 0;
    if (flags & SW_DEPTH)
        depthFromOtherView(&out[axisDepth]);
    if (flags & SW_SNAP)
        snapPoint(out, 3);
    return true;
}

static void multiply(const float a[16], const float b[16], double out[16]) {
    for (int column = 0; column < 4; ++column)
        for (int row = 0; row < 4; ++row) {
            double sum = 0;
            for (int k = 0; k < 4; ++k)
                sum += double(a[k * 4 + row]) * double(b[column * 4 + k]);
            out[column * 4 + row] = sum;
        }
}

// Exchanges the pivot row of a column with the row of its largest entry; false if all are 0.
static bool choosePivot(double rows[4][5], int column) {
    int best = column;
    for (int row = column + 1; row < 4; ++row)
        if (std::fabs(rows[row][column]) > std::fabs(rows[best][column]))
            best = row;
    std::swap_ranges(rows[column], rows[column] + 5, rows[best]);
    return rows[column][column] != 0;
}

// Solves matrix * x = rhs by elimination with row pivoting.
static bool solve(const double matrix[16], const double rhs[4], double x[4]) {
    double rows[4][5];
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column)
            rows[row][column] = matrix[column * 4 + row];
        rows[row][4] = rhs[row];
    }
    for (int column = 0; column < 4; ++column) {
        if (!choosePivot(rows, column))
            return false;
        for (int row = 0; row < 4; ++row) {
            if (row == column)
                continue;
            const double factor = rows[row][column] / rows[column][column];
            for (int k = column; k < 5; ++k)
                rows[row][k] -= factor * rows[column][k];
        }
    }
    for (int row = 0; row < 4; ++row)
        x[row] = rows[row][4] / rows[row][row];
    return true;
}

bool cCanvas::unproject(const float in[3], float out[3]) const {
    if (!isCamera()) {
        float flat[2];
        screenToWorld2D(in[0], in[1], false, flat);
        out[axisH] = flat[0];
        out[axisV] = flat[1];
        out[axisDepth] = in[2];
        return true;
    }
    double matrix[16], point[4];
    multiply(projection, modelview, matrix);
    const double clip[4] = {double(in[0]) * 2.0 / width() - 1.0,
                            1.0 - double(in[1]) * 2.0 / height(), double(in[2]) * 2.0 - 1.0, 1.0};
    if (!solve(matrix, clip, point) || point[3] == 0)
        return false;
    for (int i = 0; i < 3; ++i)
        out[i] = float(point[i] / point[3]);
    return true;
}

bool cCanvas::project3D(const float in[3], float out[3]) const {
    double matrix[16], clip[4];
    multiply(projection, modelview, matrix);
    for (int row = 0; row < 4; ++row)
        clip[row] = matrix[row] * double(in[0]) + matrix[4 + row] * double(in[1]) +
                    matrix[8 + row] * double(in[2]) + matrix[12 + row];
    if (clip[3] == 0)
        return false;
    out[0] = float((clip[0] / clip[3] + 1) * width() * 0.5);
    out[1] = float((1 - clip[1] / clip[3]) * height() * 0.5);
    out[2] = float((clip[2] / clip[3] + 1) * 0.5);
    return out[2] >= 0 && out[2] <= 1;
}

bool cCanvas::project(const float in[3], float out[3]) const {
    if (isCamera())
        return project3D(in, out);
    out[0] = float(width()) * 0.5f - offsetX + in[axisH] * zoom;
    out[1] = float(height()) * 0.5f - in[axisV] * zoom - offsetY;
    out[2] = in[axisDepth];
    return true;
}

bool cCanvas::projectToScreen(const float in[3], float out[2]) const {
    float point[3];
    const bool visible = project(in, point);
    out[0] = point[0];
    out[1] = point[1];
    return visible;
}

// ---- Matrices, in the column order of OpenGL

// A back clip that leaves nothing to see counts as none.
static float farPlaneDistance() {
    static constexpr float WITHOUT_CLIP = 500.0f;
    return float(g_host->BackClip) > NEAR_PLANE ? float(g_host->BackClip) : WITHOUT_CLIP;
}

void cCanvas::buildProjection() {
    const float farPlane = farPlaneDistance();
    tanX = std::tan(fov * float(M_PI) / 360.0f);
    tanY = float(height()) / float(std::max(1, width())) * tanX;
    fovV = std::atan2(tanY, 1.0f) * 360.0f / float(M_PI);
    std::fill_n(projection, 16, 0.0f);
    projection[0] = 1.0f / tanX;
    projection[5] = 1.0f / std::max(tanY, 1e-6f);
    projection[10] = (1.0f + farPlane) / (1.0f - farPlane);
    projection[11] = -1.0f;
    projection[14] = 2.0f * farPlane / (1.0f - farPlane);
    projectionDirty = false;
    viewDirty = true;
}

void cCanvas::buildModelview() {
    normalizeCamera();
    const float turned[3] = {-angles[0], angles[1], angles[2]};
    T_AngleVectors(turned, forward, right, up);
    for (int i = 0; i < 3; ++i) {
        modelview[i * 4] = right[i];
        modelview[i * 4 + 1] = up[i];
        modelview[i * 4 + 2] = -forward[i];
        modelview[i * 4 + 3] = 0;
    }
    modelview[12] = -vecDot(right, origin);
    modelview[13] = -vecDot(up, origin);
    modelview[14] = vecDot(forward, origin);
    modelview[15] = 1;
    modelviewDirty = false;
    viewDirty = true;
}

// The view's edges, or those of a rectangle in it, in the world.
static void addEdges2D(const cCanvas& canvas, const float low[2], const float high[2],
                       cFrustum& out) {
    const int axes[2] = {canvas.axisH, canvas.axisV};
    for (int i = 0; i < 2; ++i) {
        float normal[3] = {0, 0, 0};
        normal[axes[i]] = 1;
        out.addPlane(normal, low[i]);
        normal[axes[i]] = -1;
        out.addPlane(normal, -high[i]);
    }
}

void cCanvas::buildFrustum2D() {
    float low[2], high[2];
    screenToWorld2D(0, float(height()), false, low);
    screenToWorld2D(float(width()), 0, false, high);
    frustum.clear();
    addEdges2D(*this, low, high, frustum);
}

static void addThrough(cFrustum& frustum, const float* normal, const float* point) {
    frustum.addPlane(normal, vecDot(normal, point));
}

static void addSide(cFrustum& frustum, const float* axis, const float* forward, const float* origin,
                    float degrees) {
    float normal[3];
    T_RotatePointAroundVector(normal, axis, forward, degrees);
    addThrough(frustum, normal, origin);
}

void cCanvas::buildFrustum3D() {
    const float sideH = 90.0f - fov * 0.5f;
    const float sideV = 90.0f - fovV * 0.5f;
    frustum.clear();
    addSide(frustum, up, forward, origin, sideH);
    addSide(frustum, up, forward, origin, -sideH);
    addSide(frustum, right, forward, origin, sideV);
    addSide(frustum, right, forward, origin, -sideV);
    addThrough(frustum, forward, origin);
    float back[3], farPoint[3];
    vecNegate(forward, back);
    vecMA(origin, farPlaneDistance(), forward, farPoint);
    addThrough(frustum, back, farPoint);
}

static constexpr float PICK_MARGIN = 6; // pixels; lines are drawn wide while picking

static void pickFrustum2D(const cCanvas& canvas, float x, float y, cFrustum& out) {
    float low[2], high[2];
    canvas.screenToWorld2D(x - PICK_MARGIN, y + PICK_MARGIN, false, low);
    canvas.screenToWorld2D(x + PICK_MARGIN, y - PICK_MARGIN, false, high);
    addEdges2D(canvas, low, high, out);
}

// What lies near a pixel. In a camera view planes through the camera and the four edges of a
// square of pixels, turned inward.
void cCanvas::buildPickFrustum(int x, int y, cFrustum& out) const {
    out.clear();
    if (!isCamera()) {
        pickFrustum2D(*this, float(x), float(y), out);
        return;
    }
    static const float corners[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    float rays[4][3];
    for (int i = 0; i < 4; ++i) {
        const float px = float(x) + corners[i][0] * PICK_MARGIN;
        const float py = float(y) + corners[i][1] * PICK_MARGIN;
        vecMA(forward, (px * 2.0f / float(width()) - 1.0f) * tanX, right, rays[i]);
        vecMA(rays[i], (1.0f - py * 2.0f / float(height())) * tanY, up, rays[i]);
    }
    for (int i = 0; i < 4; ++i) {
        float normal[3];
        vecCross(rays[i], rays[(i + 1) & 3], normal);
        vecNormalize(normal);
        addThrough(out, normal, origin);
    }
    addThrough(out, forward, origin);
}

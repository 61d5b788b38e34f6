// SPDX-License-Identifier: MIT
// Shapes that tools draw in a view: boxes, squares, bullets, texts.
#include "views/tCanvas.h"

#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tVec.h"
#include "views/tGLState.h"

#include <QFontMetrics>
#include <cmath>
#include <iterator>

// Corners of a box in the order of the bits x, y, z; its edges; its sides seen from outside.
static const int s_boxEdges[12][2] = {{0, 1}, {2, 3}, {4, 5}, {6, 7}, {0, 2}, {1, 3},
                                      {4, 6}, {5, 7}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
static const int s_boxSides[6][4] = {{0, 4, 6, 2}, {1, 3, 7, 5}, {0, 1, 5, 4},
                                     {2, 6, 7, 3}, {0, 2, 3, 1}, {4, 5, 7, 6}};

static void boxCorners(const float* mins, const float* maxs, float corners[8][3]) {
    for (int i = 0; i < 8; ++i)
        vecSet(corners[i], (i & 1) ? maxs[0] : mins[0], (i & 2) ? maxs[1] : mins[1],
               (i & 4) ? maxs[2] : mins[2]);
}

static void drawEdges(const float corners[8][3]) {
    glBegin(GL_LINES);
    for (const auto& edge : s_boxEdges) {
        glVertex3fv(corners[edge[0]]);
        glVertex3fv(corners[edge[1]]);
    }
    glEnd();
}

void cCanvas::drawBoxFill(const float* mins, const float* maxs) {
    float corners[8][3];
    boxCorners(mins, maxs, corners);
    glBegin(GL_QUADS);
    for (const auto& side : s_boxSides)
        for (const int corner : side)
            glVertex3fv(corners[corner]);
    glEnd();
}

void cCanvas::drawBoxLines(const float* mins, const float* maxs) {
    float corners[8][3];
    boxCorners(mins, maxs, corners);
    drawEdges(corners);
}

void cCanvas::drawBoxLinesTransformed(const float* mins, const float* maxs, int rotAxis,
                                      int shearAxis, float angle, float shear) {
    const int u = rotAxis == 0 ? 1 : 0, v = rotAxis == 2 ? 1 : 2;
    const float sine = std::sin(angle), cosine = std::cos(angle);
    float corners[8][3], center[3];
    boxCorners(mins, maxs, corners);
    vecAdd(mins, maxs, center);
    vecScale(center, 0.5f, center);
    const float extent = std::max(maxs[shearAxis] - mins[shearAxis], 1.0f);
    for (float* corner : corners) {
        corner[rotAxis] += shear * (corner[shearAxis] - mins[shearAxis]) / extent;
        const float du = corner[u] - center[u], dv = corner[v] - center[v];
        corner[u] = center[u] + cosine * du - sine * dv;
        corner[v] = center[v] + sine * du + cosine * dv;
    }
    drawEdges(corners);
}

// World units that one pixel spans at the point.
float cCanvas::unitsPerPixel(const float* point) const {
    if (!isCamera())
        return 1.0f / zoom;
    float away[3];
    vecSubtract(point, origin, away);
    const float distance = std::max(vecDot(away, forward), 1.0f);
    return 2.0f * tanX * distance / float(std::max(1, width()));
}

// A regular polygon that faces the screen; radius to its corners.
void cCanvas::drawDisc(const float* center, int corners, float turn, float radiusPixels,
                       bool filled) {
    const float radius = radiusPixels * unitsPerPixel(center);
    glBegin(filled ? GL_POLYGON : GL_LINE_LOOP);
    for (int i = 0; i < corners; ++i) {
        const float angle = turn + 2.0f * float(M_PI) * float(i) / float(corners);
        float p[3];
        vecMA(center, radius * std::cos(angle), viewInfo.right, p);
        vecMA(p, radius * std::sin(angle), viewInfo.up, p);
        glVertex3fv(p);
    }
    glEnd();
}

static constexpr float EIGHTH_TURN = float(M_PI) / 4;
static constexpr int ROUND_CORNERS = 12;

static float squareRadius(float sizePixels) {
    return sizePixels * 0.5f * float(M_SQRT2);
}

void cCanvas::drawSquare(const float* center, float sizePixels) {
    drawDisc(center, 4, EIGHTH_TURN, squareRadius(sizePixels), true);
}

void cCanvas::drawSquareLines(const float* center, float sizePixels) {
    drawDisc(center, 4, EIGHTH_TURN, squareRadius(sizePixels), false);
}

static const uint8_t* bulletColor(int kind) {
    static const int colors[] = {COLOR_BULLET_VERTEX, COLOR_BULLET_EDGE, COLOR_CLIP_POINT,
                                 COLOR_CORDON_POINT, COLOR_BULLET_SELECTED};
    const bool known = kind >= 0 && kind < int(std::size(colors));
    return g_host->schemeColor(known ? colors[kind] : COLOR_BULLET_VERTEX);
}

void cCanvas::drawFramed(const float* center, int corners, float turn, float radiusPixels, float dx,
                         float dy, int kind) {
    const float unit = unitsPerPixel(center);
    float p[3];
    vecMA(center, dx * unit, viewInfo.right, p);
    vecMA(p, -dy * unit, viewInfo.up, p);
    glColor4ubv(bulletColor(kind));
    drawDisc(p, corners, turn, radiusPixels, true);
    glColor4ubv(g_host->schemeColor(COLOR_BULLET_BORDER));
    drawDisc(p, corners, turn, radiusPixels, false);
}

void cCanvas::drawBullet(const float* center, float sizePixels, float dx, float dy, int kind) {
    drawFramed(center, 4, EIGHTH_TURN, squareRadius(sizePixels), dx, dy, kind);
}

void cCanvas::drawDiamondBullet(const float* center, float sizePixels, float dx, float dy,
                                int kind) {
    drawFramed(center, 4, 0, squareRadius(sizePixels), dx, dy, kind);
}

void cCanvas::drawRoundBullet(const float* center, float sizePixels, float dx, float dy, int kind) {
    drawFramed(center, ROUND_CORNERS, 0, sizePixels * 0.5f, dx, dy, kind);
}

// At the view's centre, in pixel space.
void cCanvas::drawCenterIcon(const QPixmap& icon, uint32_t state) {
    static constexpr int SIZE = 32;                          // pixels
    const GLuint texture = bindTexture(icon, GL_TEXTURE_2D); // kept by Qt for the pixmap
    GL_State(state);
    glColor4ub(255, 255, 255, 255);
    glEnable(GL_TEXTURE_2D);
    drawTexture(QRect(centerX - SIZE / 2, centerY - SIZE / 2, SIZE, SIZE), texture);
    glDisable(GL_TEXTURE_2D);
    GL_State(GLS_DEFAULT);
}

void cCanvas::drawCrossLines(const float* point) {
    float a[3], b[3];
    glBegin(GL_LINES);
    for (int axis = 0; axis < 3; ++axis) {
        if (axis == axisDepth)
            continue;
        vecCopy(point, a);
        vecCopy(point, b);
        a[axis] = -halfWorldSize;
        b[axis] = halfWorldSize;
        glVertex3fv(a);
        glVertex3fv(b);
    }
    glEnd();
}

void cCanvas::drawScreenText(int x, int y, int width, int align, const QString& text) {
    const int free = width - QFontMetrics(captionFont).horizontalAdvance(text);
    if (align == TEXT_CENTER)
        x += free / 2;
    else if (align == TEXT_RIGHT)
        x += free;
    renderText(x, y, text, captionFont);
}

// SPDX-License-Identifier: MIT
#include "tools/tToolBlock.h"

#include "document/tMap.h"
#include "document/tTexture.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tSystem.h"
#include "support/tVec.h"
#include "tools/tToolSpace.h"
#include "views/tCanvas.h"
#include "views/tDocumentViews.h"
#include "views/tViewHost.h"

#include <QCursor>
#include <QMenu>
#include <QMessageBox>
#include <algorithm>

static constexpr int BOX_PANE = 4;
static constexpr float MARK_SIZE = 16;    // pixels
static constexpr float HANDLE_OFFSET = 6; // pixels off the box

static cSelectionBox& boxOf(const cCanvas& canvas) {
    return canvas.project()->boxes[TBX_BLOCK];
}

// A new box gets its depth from the other views; one that is there keeps the depth it begins at.
static void pointAt(cCanvas& canvas, int x, int y, int flags, float* out) {
    const cSelectionBox& box = boxOf(canvas);
    canvas.screenToWorld(x, y, flags, out);
    if (box.active)
        out[canvas.axisDepth] = box.mins[canvas.axisDepth];
}

void cToolBlock::showText(const cCanvas& canvas, int mode) const {
    g_host->setStatusPane(boxOf(canvas).statusText(canvas.axisH, canvas.axisV, mode), BOX_PANE);
}

// ---- Cursor and menu

bool cToolBlock::setCursor(cCanvas* canvas) {
    if (canvas->isCamera())
        return false;
    if (hoverHandle)
        canvas->setCursor(sizeCursor(hoverHandle));
    else if ((dragging || insideBox) && g_host->CrosshairCursor)
        canvas->setCursor(g_viewHost->toolCursor(TC_CROSS));
    else
        canvas->setCursor(g_viewHost->toolCursor(TC_BRUSH));
    return true;
}

bool cToolBlock::contextMenu(cCanvas* canvas, int x, int y, const QPoint& globalPos) {
    if (!canvas->map() || !boxOf(*canvas).active)
        return false;
    if (canvas->isCamera())
        return true;
    float point[3];
    pointAt(*canvas, x, y, 0, point);
    if (!boxOf(*canvas).contains(point))
        return true;
    g_viewHost->updateEntityMenus(QString(), 1);
    if (QMenu* menu = g_viewHost->popupMenu("Create"))
        menu->popup(globalPos);
    return true;
}

// ---- Keys

void cToolBlock::endDrag(const cCanvas& canvas) {
    dragging = insideBox = false;
    m_spent = canvas.leftDown;
}

bool cToolBlock::escape(cCanvas* canvas) {
    cSelectionBox& box = boxOf(*canvas);
    if (box.active) {
        endDrag(*canvas);
        hoverHandle = 0;
        box.clear();
        showText(*canvas, BT_EXTENTS);
    } else if (clearSelectionByEscape(*canvas)) {
        insideBox = false;
        hoverHandle = 0;
    } else {
        return false;
    }
    canvas->updateCursor();
    canvas->project()->redrawViews(REDRAW_ALL);
    return true;
}

bool cToolBlock::keyPress(cCanvas* canvas, int key, Qt::KeyboardModifiers modifiers) {
    if (!canvas->map())
        return false;
    if (key == Qt::Key_Escape)
        return escape(canvas);
    if (!isApplyKey(*canvas, boxOf(*canvas), key))
        return false;
    endDrag(*canvas);
    if (modifiers & Qt::AltModifier)
        return false;
    apply(canvas);
    return true;
}

// ---- Mouse

bool cToolBlock::mouseRelease(cCanvas* canvas, int, int, int button, Qt::KeyboardModifiers) {
    if (button != TB_LEFT)
        return false;
    m_spent = false;
    if (!canvas->map() || canvas->isCamera() || !dragging)
        return false;
    dragging = false;
    canvas->updateCursor();
    canvas->project()->redrawViews(REDRAW_ALL);
    showText(*canvas, BT_EXTENTS);
    return true;
}

bool cToolBlock::mouseMove(cCanvas* canvas, int x, int y, Qt::MouseButtons buttons,
                           Qt::KeyboardModifiers) {
    if (!canvas->map() || canvas->isCamera())
        return false;
    if (canvas->leftDown) {
        if (!m_spent)
            dragStep(canvas, x, y);
        return true;
    }
    m_spent = false;
    if (buttons & Qt::LeftButton) {
        canvas->leftDown = true;
        pointAt(*canvas, x, y, SW_SNAP | SW_DEPTH, refPoint);
        return true;
    }
    return hover(canvas, x, y);
}

void cToolBlock::dragStep(cCanvas* canvas, int x, int y) {
    cSelectionBox& box = boxOf(*canvas);
    float point[3], delta[3];
    pointAt(*canvas, x, y, SW_SNAP | SW_DEPTH, point);
    vecSubtract(point, refPoint, delta);
    if (insideBox && box.active) {
        dragging = true;
        box.move(delta, refPoint);
        showText(*canvas, BT_NONE);
    } else if (hoverHandle && box.active) {
        dragging = true;
        box.resize(delta, canvas->axisH, canvas->axisV, hoverHandle, refPoint);
        showText(*canvas, BT_VIEW_EXTENTS);
    } else if (dragging || !box.active) {
        dragging = true;
        box.setFromTwoPoints(refPoint, point);
        box.addToCorner(1, canvas->axisDepth, DEPTH);
        showText(*canvas, BT_VIEW_EXTENTS);
    }
    canvas->ensureVisible(point);
    canvas->project()->redrawViews(REDRAW_ALL);
}

// True if what lies under the mouse has changed.
bool cToolBlock::hover(cCanvas* canvas, int x, int y) {
    const cSelectionBox& box = boxOf(*canvas);
    const float pixel = 1.0f / canvas->zoom;
    const float offset = HANDLE_OFFSET * pixel;
    float point[3];
    dragging = false; // it may have ended without a release
    pointAt(*canvas, x, y, 0, point);
    const int handle =
        box.handleAt(canvas->axisH, canvas->axisV, float(g_host->SelectionBulletSize) * pixel,
                     offset, offset, point);
    const bool inside = box.contains(point);
    if (handle == hoverHandle && inside == insideBox)
        return false;
    hoverHandle = handle;
    insideBox = inside;
    canvas->updateCursor();
    return true;
}

// ---- Making brushes

static cFaceTexture faceTemplate() {
    cFaceTexture face = {};
    const cTexture* texture = g_viewHost->currentTexture();
    T_Sprintf(face.name, sizeof face.name, "%s", texture ? texture->name : "notexture");
    if (texture) {
        face.value = texture->value;
        face.surfaceFlags = texture->surfaceFlags;
        face.contentFlags = texture->contentFlags;
    }
    face.alignFlags = g_host->TextureFaceAlign ? FT_ALIGN_FACE : FT_ALIGN_WORLD;
    face.uScale = face.vScale = g_host->DefaultTextureScale;
    return face;
}

static cPrimitiveParams paramsOf(const cCanvas& canvas, const cPrimitive& primitive) {
    cPrimitiveParams params = {};
    params.map = &canvas.map()->data;
    params.face = faceTemplate();
    params.sides = primitive.sides;
    const bool turned = g_host->ReorientPrimitives;
    const int axes[2][3] = {{0, 1, 2}, {canvas.axisH, canvas.axisV, canvas.axisDepth}};
    std::copy(axes[turned], axes[turned] + 3, params.axes);
    const bool bits[] = {!turned || canvas.axisSign != 0, !g_host->DontSnapPrimitivePoints,
                         g_host->StretchArches};
    for (const int bit : {PP_REORIENT_BIT, PP_SNAP_POINTS_BIT, PP_STRETCH_ARCHES_BIT})
        if (bits[bit])
            params.flags |= 1u << bit;
    vecCopy(boxOf(canvas).mins, params.mins);
    vecCopy(boxOf(canvas).maxs, params.maxs);
    return params;
}

static bool isEmpty(const cSelectionBox& box) {
    for (int i = 0; i < 3; ++i)
        if (!(box.maxs[i] > box.mins[i]))
            return true;
    return false;
}

static void create(cCanvas& canvas) {
    const cPrimitive* primitive = g_viewHost->currentPrimitive();
    if (!primitive)
        return;
    cPrimitiveParams params = paramsOf(canvas, *primitive);
    if (!primitive->dispatch(&params))
        return;
    g_host->projectDirty(canvas.map()->project);
    g_viewHost->notifyTools();
}

void cToolBlock::apply(cCanvas* canvas) {
    if (!canvas->map() || canvas->isCamera())
        return;
    if (isEmpty(boxOf(*canvas)))
        QMessageBox::warning(canvas->window(), QStringLiteral("Karvex"),
                             QCoreApplication::translate("cToolBlock", "The box is empty."));
    else
        create(*canvas);
    boxOf(*canvas).clear();
    endDrag(*canvas);
    hoverHandle = 0;
    canvas->updateCursor();
    canvas->project()->redrawViews(REDRAW_ALL);
    g_host->setStatusPane(QString(), BOX_PANE);
}

// ---- Drawing

const unsigned char* cToolBlock::color() const {
    return g_host->schemeColor(dragging ? COLOR_ACTIVE_SELECTION : COLOR_BRUSH_CREATION);
}

void cToolBlock::drawHandles(cCanvas* canvas, const cViewInfo& view,
                             const cSelectionBox& box) const {
    static const float ways[][2] = {{0, 0},  {-1, -1}, {1, -1}, {-1, 1}, {1, 1},
                                    {-1, 0}, {1, 0},   {0, -1}, {0, 1}};
    for (int handle = BH_TOP_LEFT; handle <= BH_BOTTOM; ++handle) {
        float point[3];
        box.handlePoint(view.axisH, view.axisV, handle, point);
        canvas->drawBullet(point, view.selectionBulletSize, ways[handle][0] * HANDLE_OFFSET,
                           ways[handle][1] * HANDLE_OFFSET, BULLET_VERTEX);
    }
}

void cToolBlock::draw(cCanvas* canvas, const cViewInfo& view, cDrawStats&) {
    const cSelectionBox& box = boxOf(*canvas);
    if (!box.active)
        return;
    if (view.is3D) {
        glColor4ubv(g_host->schemeColor(COLOR_BRUSH_CREATION));
        canvas->drawBoxLines(box.mins, box.maxs);
        return;
    }
    glColor4ubv(color());
    glEnable(GL_LINE_STIPPLE);
    canvas->drawBoxLines(box.mins, box.maxs);
    glDisable(GL_LINE_STIPPLE);
    if (!dragging) {
        drawHandles(canvas, view, box);
    } else if (insideBox) {
        float corner[3];
        box.nearestCorner(view.axisH, view.axisV, refPoint, corner);
        canvas->drawSquareLines(corner, MARK_SIZE);
    }
}

// ---- Sizes beside the box

static void drawBracket(const int points[4][2]) {
    glBegin(GL_LINE_STRIP);
    for (int i = 0; i < 4; ++i)
        glVertex2f(float(points[i][0]) + 0.5f, float(points[i][1]) + 0.5f);
    glEnd();
}

static void setShadow(const unsigned char* rgba) {
    static constexpr float SHADOW = 0.45f;
    glColor4f(float(rgba[0]) / 255 * SHADOW, float(rgba[1]) / 255 * SHADOW,
              float(rgba[2]) / 255 * SHADOW, float(rgba[3]) / 255);
}

static QString axisLabel(int axis, float value) {
    return QStringLiteral("%1 %2").arg(QLatin1Char("xyz"[axis])).arg(int(value));
}

void cToolBlock::drawOverlay(cCanvas* canvas, const cViewInfo& view) {
    if (view.is3D || !g_host->DrawSizingInfo || !canvas->map() || !boxOf(*canvas).active)
        return;
    const cSelectionBox& box = boxOf(*canvas);
    const int h = view.axisH, v = view.axisV;
    float a[2], b[2];
    canvas->projectToScreen(box.mins, a);
    canvas->projectToScreen(box.maxs, b);
    const int left = int(std::min(a[0], b[0])), right = int(std::max(a[0], b[0]));
    const int top = int(std::min(a[1], b[1])), bottom = int(std::max(a[1], b[1]));
    glColor4ubv(color());
    canvas->drawScreenText(
        left, top - 8, 0, TEXT_LEFT,
        QStringLiteral("(%1 %2)").arg(axisLabel(h, box.mins[h]), axisLabel(v, box.maxs[v])));
    if (right - left >= 1) {
        const int bracket[4][2] = {
            {left, bottom + 3}, {left, bottom + 6}, {right, bottom + 6}, {right, bottom + 3}};
        setShadow(color());
        drawBracket(bracket);
        glColor4ubv(color());
        canvas->drawScreenText(left, bottom + 20, right - left, TEXT_CENTER,
                               axisLabel(h, box.maxs[h] - box.mins[h]));
    }
    if (bottom - top >= 1) {
        const int bracket[4][2] = {
            {right + 3, top}, {right + 6, top}, {right + 6, bottom}, {right + 3, bottom}};
        setShadow(color());
        drawBracket(bracket);
        glColor4ubv(color());
        canvas->drawScreenText(right + 15, (top + bottom) / 2 + 5, 0, TEXT_LEFT,
                               axisLabel(v, box.maxs[v] - box.mins[v]));
    }
}

// SPDX-License-Identifier: MIT
#include "tools/tToolBlock.h"

#include "document/tHistory.h"
#include "document/tMap.h"
#include "document/tTexture.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tSystem.h"
#include "support/tVec.h"
#include "views/tCanvas.h"
#include "views/tDocumentViews.h"
#include "views/tOverlay.h"
#include "views/tViewHost.h"

#include <QCursor>
#include <QMenu>
#include <QMessageBox>
#include <algorithm>

static constexpr float MARK_SIZE = 16; // pixels

// ---- Cursor and menu

bool cToolBlock::setCursor(cCanvas* canvas) {
    if (canvas->isCamera())
        return false;
    if (hoverHandle())
        canvas->setCursor(sizeCursor(hoverHandle()));
    else if ((dragging() || overBox()) && g_host->CrosshairCursor)
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
    cornerPoint(*canvas, x, y, 0, point);
    if (!boxOf(*canvas).contains(point))
        return true;
    g_viewHost->updateEntityMenus(QString(), 1);
    if (QMenu* menu = g_viewHost->popupMenu("Create"))
        menu->popup(globalPos);
    return true;
}

// ---- Keys

bool cToolBlock::escape(cCanvas* canvas) {
    if (boxOf(*canvas).active) {
        breakOff();
        boxOf(*canvas).clear();
        showText(*canvas, BT_EXTENTS);
    } else if (!clearSelectionByEscape(*canvas)) {
        return false;
    }
    leaveBox();
    canvas->updateCursor();
    showTool(*canvas);
    return true;
}

bool cToolBlock::keyPress(cCanvas* canvas, int key, Qt::KeyboardModifiers modifiers) {
    if (!canvas->map())
        return false;
    if (key == Qt::Key_Escape)
        return escape(canvas);
    if (!isApplyKey(*canvas, key))
        return false;
    breakOff();
    leaveBox();
    if (modifiers & Qt::AltModifier)
        return false;
    apply(canvas);
    return true;
}

// ---- Drags

// Outside a box that is there the mouse has nothing to drag.
bool cToolBlock::startDrag(cCanvas* canvas, int x, int y) {
    cornerPoint(*canvas, x, y, SW_SNAP | SW_DEPTH, m_refPoint);
    return overBox() || hoverHandle() || !boxOf(*canvas).active;
}

void cToolBlock::dragStep(cCanvas* canvas, int x, int y, Qt::KeyboardModifiers) {
    cSelectionBox& box = boxOf(*canvas);
    float point[3], delta[3];
    cornerPoint(*canvas, x, y, SW_SNAP | SW_DEPTH, point);
    vecSubtract(point, m_refPoint, delta);
    if (overBox()) {
        box.move(delta, m_refPoint);
    } else if (hoverHandle()) {
        box.resize(delta, canvas->axisH, canvas->axisV, hoverHandle(), m_refPoint);
    } else {
        box.setFromTwoPoints(m_refPoint, point);
        box.addToCorner(1, canvas->axisDepth, DEPTH);
    }
    showText(*canvas, overBox() ? BT_NONE : BT_VIEW_EXTENTS);
    canvas->ensureVisible(point);
    showTool(*canvas);
}

void cToolBlock::finishDrag(cCanvas* canvas, int, int, Qt::KeyboardModifiers) {
    canvas->updateCursor();
    dropDrag(canvas);
}

// The box stays as it is.
void cToolBlock::dropDrag(cCanvas* canvas) {
    showTool(*canvas);
    showText(*canvas, BT_EXTENTS);
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

static cPrimitiveParams paramsOf(const cCanvas& canvas, const cPrimitive& primitive,
                                 const cSelectionBox& box) {
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
    vecCopy(box.mins, params.mins);
    vecCopy(box.maxs, params.maxs);
    return params;
}

static bool isEmpty(const cSelectionBox& box) {
    for (int i = 0; i < 3; ++i)
        if (!(box.maxs[i] > box.mins[i]))
            return true;
    return false;
}

void cToolBlock::create(cCanvas& canvas) const {
    const cPrimitive* primitive = g_viewHost->currentPrimitive();
    if (!primitive)
        return;
    cPrimitiveParams params = paramsOf(canvas, *primitive, boxOf(canvas));
    const uint32_t state = canvas.map()->history->stateNumber();
    const bool made = primitive->dispatch(&params) != 0;
    if (made && canvas.map()->history->stateNumber() == state) // a plug-in's that opens no step
        canvas.map()->changed(MC_OBJECTS | MC_SELECTION | MC_EDITED);
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
    breakOff();
    leaveBox();
    canvas->updateCursor();
    showTool(*canvas);
    hideText();
}

// ---- Drawing

const unsigned char* cToolBlock::color() const {
    return g_host->schemeColor(dragging() ? COLOR_ACTIVE_SELECTION : COLOR_BRUSH_CREATION);
}

void cToolBlock::drawHandles(cCanvas* canvas, const cViewInfo& view, cOverlay& overlay) const {
    for (int handle = BH_TOP_LEFT; handle <= BH_BOTTOM; ++handle) {
        float point[3];
        boxOf(*canvas).handlePoint(view.axisH, view.axisV, handle, point);
        const cHandleShift shift = handleShift(handle);
        overlay.bullet(point, view.selectionBulletSize, shift.x, shift.y, BULLET_VERTEX);
    }
}

void cToolBlock::draw(cCanvas* canvas, const cViewInfo& view, cOverlay& overlay) {
    const cSelectionBox& box = boxOf(*canvas);
    if (!box.active)
        return;
    if (view.is3D) {
        overlay.box(box.mins, box.maxs, g_host->schemeColor(COLOR_BRUSH_CREATION));
        return;
    }
    overlay.box(box.mins, box.maxs, stippled(color()));
    if (!dragging()) {
        drawHandles(canvas, view, overlay);
    } else if (overBox()) {
        float corner[3];
        box.nearestCorner(view.axisH, view.axisV, m_refPoint, corner);
        overlay.square(corner, MARK_SIZE, color());
    }
}

// ---- Sizes beside the box

// Through the middles of pixels.
static void drawBracket(cOverlay& overlay, const int (&corners)[4][2], const uint8_t* rgba) {
    static constexpr float SHADOW = 0.45f;
    float points[4][3];
    for (int i = 0; i < 4; ++i)
        vecSet(points[i], float(corners[i][0]) + 0.5f, float(corners[i][1]) + 0.5f, 0.0f);
    overlay.polyline(points, 4, darker(rgba, SHADOW).data());
}

static QString axisLabel(int axis, float value) {
    return QStringLiteral("%1 %2").arg(QLatin1Char("xyz"[axis])).arg(int(value));
}

void cToolBlock::drawOverlay(cCanvas* canvas, const cViewInfo& view, cOverlay& overlay) {
    if (view.is3D || !g_host->DrawSizingInfo || !canvas->map() || !boxOf(*canvas).active)
        return;
    const cSelectionBox& box = boxOf(*canvas);
    const int h = view.axisH, v = view.axisV;
    float a[2], b[2];
    canvas->projectToScreen(box.mins, a);
    canvas->projectToScreen(box.maxs, b);
    const int left = int(std::min(a[0], b[0])), right = int(std::max(a[0], b[0]));
    const int top = int(std::min(a[1], b[1])), bottom = int(std::max(a[1], b[1]));
    overlay.text(
        left, top - 8, 0, TEXT_LEFT,
        QStringLiteral("(%1 %2)").arg(axisLabel(h, box.mins[h]), axisLabel(v, box.maxs[v])),
        color());
    if (right - left >= 1) {
        drawBracket(
            overlay,
            {{left, bottom + 3}, {left, bottom + 6}, {right, bottom + 6}, {right, bottom + 3}},
            color());
        overlay.text(left, bottom + 20, right - left, TEXT_CENTER,
                     axisLabel(h, box.maxs[h] - box.mins[h]), color());
    }
    if (bottom - top >= 1) {
        drawBracket(overlay,
                    {{right + 3, top}, {right + 6, top}, {right + 6, bottom}, {right + 3, bottom}},
                    color());
        overlay.text(right + 15, (top + bottom) / 2 + 5, 0, TEXT_LEFT,
                     axisLabel(v, box.maxs[v] - box.mins[v]), color());
    }
}

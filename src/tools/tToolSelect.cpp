// SPDX-License-Identifier: MIT
// Events of the selection tool and what it derives from the selection. The steps of a drag stand
// in tToolSelectDrag.cpp, the drawing in tToolSelectDraw.cpp.
#include "tools/tToolSelect.h"

#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tHost.h"
#include "support/tVec.h"
#include "tools/tToolSpace.h"
#include "views/tCanvas.h"
#include "views/tDocumentViews.h"
#include "views/tViewHost.h"

#include <QCursor>
#include <QMenu>
#include <algorithm>

static constexpr int BOX_PANE = 4;
static constexpr float HANDLE_OFFSET = 6.0f; // pixels off the box

static const float s_identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

static bool hasObjects(const cMap& map) {
    return map.data.selectedEntities || map.data.selectedBrushes;
}

static cSelectionBox& boxOf(const cCanvas& canvas) {
    return canvas.project()->boxes[TBX_SELECTION];
}

// What the tool knows of the selection is of the document whose view is active.
static bool isOfActiveDocument(const cCanvas& canvas) {
    const cCanvas* active = g_viewHost->activeCanvas;
    return active && active->project() == canvas.project();
}

int cToolSelect::activeMode() const {
    return rubberBand ? int(HANDLES_SCALE) : handleMode;
}

void cToolSelect::showText(const cCanvas& canvas, int mode) const {
    if (g_viewHost->currentTool == this)
        g_host->setStatusPane(boxOf(canvas).statusText(canvas.axisH, canvas.axisV, mode), BOX_PANE);
}

// ---- Cursor

bool cToolSelect::setCursor(cCanvas* canvas) {
    static const Qt::CursorShape shear[] = {
        Qt::ArrowCursor,   Qt::ArrowCursor,   Qt::ArrowCursor,   Qt::ArrowCursor,  Qt::ArrowCursor,
        Qt::SizeVerCursor, Qt::SizeVerCursor, Qt::SizeHorCursor, Qt::SizeHorCursor};
    if (canvas->isCamera())
        return false;
    if (hoverHandle && activeMode() == HANDLES_ROTATE)
        canvas->setCursor(g_viewHost->toolCursor(TC_ROTATE));
    else if (hoverHandle && activeMode() == HANDLES_SHEAR)
        canvas->setCursor(shear[hoverHandle]);
    else if (hoverHandle)
        canvas->setCursor(sizeCursor(hoverHandle));
    else if (overBox && g_host->CrosshairCursor)
        canvas->setCursor(g_viewHost->toolCursor(TC_CROSS));
    else
        return false;
    return true;
}

// ---- Menus

static bool popupMenu(const char* title, const QPoint& at) {
    QMenu* menu = g_viewHost->popupMenu(title);
    if (menu)
        menu->popup(at);
    return menu != nullptr;
}

bool cToolSelect::contextMenu(cCanvas* canvas, int x, int y, const QPoint& globalPos) {
    const cMap* map = canvas->map();
    if (!map)
        return false;
    if (canvas->isCamera())
        return hasObjects(*map) && popupMenu("Selection", globalPos);
    const cSelectionBox& box = boxOf(*canvas);
    float point[3];
    boxPoint(*canvas, box, x, y, false, point);
    overBox = box.contains(point);
    if (!overBox)
        return false;
    return popupMenu(rubberBand || !hasObjects(*map) ? "Select" : "Selection", globalPos);
}

// ---- Keys

// Ends the rubber band. A button still held starts no other one.
bool cToolSelect::escape(cCanvas* canvas) {
    cMap& map = *canvas->map();
    cSelectionBox& box = boxOf(*canvas);
    if (rubberBand && box.active) {
        dragging = rubberBand = false;
        box.clear();
        leaveBox();
        clickConsumed = canvas->leftDown;
        skipModeReset = true;
        setCanvas(canvas);
    } else if (g_host->ClearSelectionOnEscape && hasObjects(map)) {
        map.clearSelection();
        setCanvas(canvas);
        g_viewHost->updateUi();
    } else {
        return false;
    }
    canvas->updateCursor();
    canvas->project()->redrawViews(REDRAW_ALL);
    return true;
}

bool cToolSelect::selectInBand(cCanvas* canvas, Qt::KeyboardModifiers modifiers) {
    static constexpr Qt::KeyboardModifiers RELEVANT =
        Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (canvas->isCamera() || !rubberBand || !boxOf(*canvas).active)
        return false;
    dragging = overBox = rubberBand = false;
    if (modifiers & Qt::AltModifier)
        return false;
    int mode = BOX_TOUCHING;
    if (g_host->SelectByHandles)
        mode = BOX_BY_CENTER;
    else if ((modifiers & RELEVANT) == Qt::ShiftModifier)
        mode = BOX_CONTAINED;
    return selectWithBox(*canvas, mode);
}

bool cToolSelect::keyPress(cCanvas* canvas, int key, Qt::KeyboardModifiers modifiers) {
    if (!canvas->map())
        return false;
    if (key == Qt::Key_Escape)
        return escape(canvas);
    if (key == Qt::Key_Return || key == Qt::Key_Enter)
        return selectInBand(canvas, modifiers);
    return false;
}

bool selectWithBox(cCanvas& canvas, int boxMode) {
    cDocumentViews* document = canvas.project();
    if (!document || canvas.isCamera() || !document->boxes[TBX_SELECTION].active)
        return false;
    cSelectionBox& box = document->boxes[TBX_SELECTION];
    float mins[3], maxs[3];
    vecCopy(box.mins, mins);
    vecCopy(box.maxs, maxs);
    mins[canvas.axisDepth] -= float(g_host->MaxWorldSize);
    maxs[canvas.axisDepth] += float(g_host->MaxWorldSize);
    canvas.map()->selectInBox(mins, maxs, boxMode);
    box.clear();
    g_viewHost->notifyTools();
    canvas.updateCursor();
    document->redrawViews(REDRAW_ALL);
    return true;
}

// ---- Mouse buttons

bool cToolSelect::mousePress(cCanvas* canvas, int x, int y, int button,
                             Qt::KeyboardModifiers modifiers) {
    const bool withCtrl = (modifiers & Qt::ControlModifier) != 0;
    cMap* map = canvas->map();
    if (!map || button != TB_LEFT)
        return false;
    if (!withCtrl && (overBox || hoverHandle))
        return false;
    const int pick = canvas->pickObject(x, y);
    if (!withCtrl)
        map->clearSelection();
    map->selectByPick(pick, withCtrl);
    setCanvas(canvas);
    g_viewHost->updateUi();
    clickConsumed = hasObjects(*map) && (!withCtrl || pick != 0);
    if (!canvas->isCamera()) {
        const cSelectionBox& box = boxOf(*canvas);
        float point[3];
        boxPoint(*canvas, box, x, y, true, dragPoint);
        boxPoint(*canvas, box, x, y, false, point);
        overBox = box.contains(point);
        canvas->updateCursor();
    }
    canvas->project()->redrawViews(REDRAW_ALL);
    return true;
}

bool cToolSelect::mouseRelease(cCanvas* canvas, int x, int y, int button,
                               Qt::KeyboardModifiers modifiers) {
    if (button != TB_LEFT)
        return false;
    if (clickConsumed) {
        clickConsumed = false;
        return false;
    }
    if (!canvas->map() || canvas->isCamera() || !isOfActiveDocument(*canvas))
        return false;
    setMoving(canvas, false);
    if (dragging)
        finishDrag(canvas, x, y, modifiers);
    else
        advanceMode(canvas);
    return true;
}

void cToolSelect::finishDrag(cCanvas* canvas, int x, int y, Qt::KeyboardModifiers modifiers) {
    const bool onBox = m_drag == DRAG_BOX || m_drag == DRAG_HANDLE;
    const bool withShift = (modifiers & Qt::ShiftModifier) != 0;
    dragging = false;
    m_drag = DRAG_NONE;
    if (rubberBand) {
        if (g_host->SelectAuto)
            keyPress(canvas, Qt::Key_Enter, modifiers);
    } else if (onBox && hasObjects(*canvas->map())) {
        commit(canvas, moved && withShift, modifiers);
    }
    mouseMove(canvas, x, y, Qt::NoButton, modifiers);
    canvas->project()->redrawViews(REDRAW_ALL);
    showText(*canvas, BT_EXTENTS);
    sideMask = 0;
}

// A plain click inside the selection's box.
void cToolSelect::advanceMode(cCanvas* canvas) {
    const cMap& map = *canvas->map();
    moved = false;
    if (!overBox || rubberBand || !hasObjects(map))
        return;
    const int modes = map.data.selectedBrushes ? HANDLES_MODES : HANDLES_STRETCH;
    handleMode = handleMode + 1 < modes ? handleMode + 1 : int(HANDLES_SCALE);
    canvas->project()->redrawViews(REDRAW_ALL);
}

void cToolSelect::commit(cCanvas* canvas, bool clone, Qt::KeyboardModifiers modifiers) {
    cMap& map = *canvas->map();
    const bool changes = !std::equal(matrix, matrix + 16, s_identity);
    const cTransformRecord record = transformRecord(*canvas, modifiers);
    if (clone)
        cloneSelection(map, record);
    else if (changes)
        transformSelection(map, record);
    if (clone || changes)
        map.describeSelection();
    skipModeReset = true;
    setCanvas(canvas);
}

bool cToolSelect::mouseDoubleClick(cCanvas* canvas, int, int, int, Qt::KeyboardModifiers) {
    if (!canvas->map() || !canvas->isCamera() || !boxOf(*canvas).active)
        return false;
    g_viewHost->openObjectProperties();
    return true;
}

// ---- Mouse moves

bool cToolSelect::mouseMove(cCanvas* canvas, int x, int y, Qt::MouseButtons buttons,
                            Qt::KeyboardModifiers modifiers) {
    if (!canvas->map())
        return false;
    if (canvas->isCamera()) {
        leaveBox();
        return false;
    }
    if (clickConsumed)
        return true;
    if (!isOfActiveDocument(*canvas)) // the button was held while another document became active
        return false;
    if (canvas->leftDown) {
        dragStep(canvas, x, y, modifiers);
        return true;
    }
    if (buttons & Qt::LeftButton) {
        startDrag(canvas, x, y);
        return true;
    }
    if (dragging)
        cancelDrag(canvas);
    return hover(canvas, x, y);
}

int cToolSelect::handleUnder(const cCanvas& canvas, const float* point) const {
    const float pixel = 1.0f / canvas.zoom;
    const float offset = HANDLE_OFFSET * pixel;
    const int handle =
        boxOf(canvas).handleAt(canvas.axisH, canvas.axisV,
                               float(g_host->SelectionBulletSize) * pixel, offset, offset, point);
    const bool isCorner = handle <= BH_BOTTOM_RIGHT;
    if ((activeMode() == HANDLES_ROTATE && !isCorner) ||
        (activeMode() == HANDLES_SHEAR && isCorner))
        return BH_NONE;
    return handle;
}

// True if what lies under the mouse has changed.
bool cToolSelect::hover(cCanvas* canvas, int x, int y) {
    const cSelectionBox& box = boxOf(*canvas);
    float point[3];
    boxPoint(*canvas, box, x, y, false, point);
    const int handle = handleUnder(*canvas, point);
    if (handle != hoverHandle) {
        hoverHandle = handle;
        overBox = false;
        canvas->updateCursor();
        return true;
    }
    if (handle)
        return false;
    const bool inside = box.contains(point);
    const bool changed = inside != overBox;
    overBox = inside;
    if (changed)
        canvas->updateCursor();
    return changed;
}

void cToolSelect::leaveBox() {
    overBox = false;
    hoverHandle = BH_NONE;
}

// ---- The selection

void cToolSelect::measureSelection(const cCanvas& canvas, cSelectionBox& box) {
    const cMapData& data = canvas.map()->data;
    for (const cEntityData* entity : selectedEntitiesOf(data)) {
        box.addPoint(entity->mins);
        box.addPoint(entity->maxs);
        ++selectedCount;
    }
    for (const cBrushData* brush : selectedBrushesOf(data)) {
        box.addPoint(brush->mins);
        box.addPoint(brush->maxs);
        ++selectedCount;
    }
    for (int i = 0; i < 3; ++i) {
        origCenter[i] = (box.mins[i] + box.maxs[i]) * 0.5f;
        origSize[i] = box.maxs[i] - box.mins[i];
    }
}

void cToolSelect::setCanvas(cCanvas* canvas) {
    if (!canvas || !canvas->map())
        return;
    cSelectionBox& box = boxOf(*canvas);
    const bool keepMode = skipModeReset;
    if (dragging && canvas->leftDown) // a command broke the drag off: its rest does nothing
        clickConsumed = true;
    dragging = rubberBand = skipModeReset = false;
    m_drag = DRAG_NONE;
    selectedCount = 0;
    box.clear();
    setMoving(canvas, false);
    if (!hasObjects(*canvas->map())) {
        handleMode = HANDLES_SCALE;
        leaveBox();
        showText(*canvas, BT_NONE);
        return;
    }
    measureSelection(*canvas, box);
    if (!keepMode && selectedCount == 1)
        handleMode = HANDLES_SCALE;
    std::copy(s_identity, s_identity + 16, matrix);
    vecSet(center, 0.0f, 0.0f, 0.0f);
    showText(*canvas, BT_EXTENTS);
}

// The drag ended without a release: the box goes back to the selection.
void cToolSelect::cancelDrag(cCanvas* canvas) {
    if (rubberBand) {
        dragging = false;
        m_drag = DRAG_NONE;
        return;
    }
    skipModeReset = true;
    setCanvas(canvas);
    canvas->project()->redrawViews(REDRAW_ALL);
}

void cToolSelect::deactivate() {
    cCanvas* canvas = g_viewHost->activeCanvas;
    if (canvas && canvas->map() && dragging)
        cancelDrag(canvas);
    clickConsumed = false;
    leaveBox();
}

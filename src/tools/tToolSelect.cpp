// SPDX-License-Identifier: MIT
// Events of the selection tool and what it derives from the selection. The drag itself stands in
// tSelectionDrag.cpp, the drawing in tToolSelectDraw.cpp.
#include "tools/tToolSelect.h"

#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tHost.h"
#include "support/tVec.h"
#include "views/tCanvas.h"
#include "views/tDocumentViews.h"
#include "views/tViewHost.h"

#include <QCursor>
#include <QMenu>

static bool hasObjects(const cMap& map) {
    return map.data.selectedEntities || map.data.selectedBrushes;
}

static cSelectionFrame& frameOf(const cCanvas& canvas) {
    return canvas.project()->selection;
}

// ---- Cursor

bool cToolSelect::hasHandle(const cCanvas& canvas, int handle) const {
    const int mode = activeMode(frameOf(canvas));
    const bool isCorner = handle <= BH_BOTTOM_RIGHT;
    return isCorner ? mode != HANDLES_SHEAR : mode != HANDLES_ROTATE;
}

bool cToolSelect::setCursor(cCanvas* canvas) {
    static const Qt::CursorShape shear[] = {
        Qt::ArrowCursor,   Qt::ArrowCursor,   Qt::ArrowCursor,   Qt::ArrowCursor,  Qt::ArrowCursor,
        Qt::SizeVerCursor, Qt::SizeVerCursor, Qt::SizeHorCursor, Qt::SizeHorCursor};
    if (canvas->isCamera() || !canvas->project())
        return false;
    const int mode = activeMode(frameOf(*canvas));
    if (hoverHandle() && mode == HANDLES_ROTATE)
        canvas->setCursor(g_viewHost->toolCursor(TC_ROTATE));
    else if (hoverHandle() && mode == HANDLES_SHEAR)
        canvas->setCursor(shear[hoverHandle()]);
    else if (hoverHandle())
        canvas->setCursor(sizeCursor(hoverHandle()));
    else if (overBox() && g_host->CrosshairCursor)
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
    float point[3];
    boxPoint(*canvas, x, y, false, point);
    if (!boxOf(*canvas).contains(point))
        return false;
    const bool isBand = frameOf(*canvas).rubberBand || !hasObjects(*map);
    return popupMenu(isBand ? "Select" : "Selection", globalPos);
}

// ---- Keys

// Ends a drag and the rubber band. A button still held starts no other one.
bool cToolSelect::escape(cCanvas* canvas) {
    const bool wasDragging = dragging();
    breakOff();
    if (frameOf(*canvas).rubberBand && boxOf(*canvas).active) {
        measure(*canvas);
        leaveBox();
    } else if (!clearSelectionByEscape(*canvas) && !wasDragging) {
        return false;
    }
    canvas->updateCursor();
    showTool(*canvas);
    return true;
}

// With Alt the band is given up, and the key may mean something else.
bool cToolSelect::selectInBand(cCanvas* canvas, Qt::KeyboardModifiers modifiers) {
    static constexpr Qt::KeyboardModifiers RELEVANT =
        Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (canvas->isCamera() || !frameOf(*canvas).rubberBand || !boxOf(*canvas).active)
        return false;
    breakOff();
    leaveBox();
    if (modifiers & Qt::AltModifier) {
        measure(*canvas);
        showTool(*canvas);
        return false;
    }
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
    document->selection.selection = 0; // the band's box goes back, even if nothing new is selected
    canvas.updateCursor();
    showTool(canvas);
    return true;
}

// ---- Mouse buttons

bool cToolSelect::mousePress(cCanvas* canvas, int x, int y, int button,
                             Qt::KeyboardModifiers modifiers) {
    const bool withCtrl = (modifiers & Qt::ControlModifier) != 0;
    cMap* map = canvas->map();
    if (!map || button != TB_LEFT)
        return false;
    cHandleTool::mousePress(canvas, x, y, button, modifiers);
    if (!withCtrl && (overBox() || hoverHandle()))
        return false;
    const int pick = canvas->pickObject(x, y);
    if (!withCtrl)
        map->clearSelection();
    map->selectByPick(pick, withCtrl);
    setCanvas(canvas); // a drag may follow at once
    if (hasObjects(*map) && (!withCtrl || pick != 0))
        spendPress(); // it has changed the selection and starts no drag
    else
        keepPress();
    look(canvas, x, y);
    canvas->updateCursor();
    showTool(*canvas);
    return true;
}

bool cToolSelect::mouseDoubleClick(cCanvas* canvas, int x, int y, int button,
                                   Qt::KeyboardModifiers modifiers) {
    if (!canvas->map() || !canvas->isCamera())
        return cHandleTool::mouseDoubleClick(canvas, x, y, button, modifiers);
    if (!boxOf(*canvas).active)
        return false;
    g_viewHost->openObjectProperties();
    return true;
}

// The next mode of the handles, if it was inside the selection's box.
bool cToolSelect::click(cCanvas* canvas) {
    const cMap& map = *canvas->map();
    cSelectionFrame& frame = frameOf(*canvas);
    frame.moved = false;
    if (!overBox() || frame.rubberBand || !hasObjects(map))
        return true;
    const int modes = map.data.selectedBrushes ? HANDLES_MODES : HANDLES_STRETCH;
    frame.handleMode = frame.handleMode + 1 < modes ? frame.handleMode + 1 : int(HANDLES_SCALE);
    showTool(*canvas);
    return true;
}

// ---- Drags

bool cToolSelect::startDrag(cCanvas* canvas, int x, int y) {
    float point[3];
    boxPoint(*canvas, x, y, true, point);
    m_drag = std::make_unique<cSelectionDrag>(canvas, point, hoverHandle(), overBox());
    return true;
}

void cToolSelect::dragStep(cCanvas* canvas, int x, int y, Qt::KeyboardModifiers modifiers) {
    float point[3];
    boxPoint(*canvas, x, y, true, point);
    const int text = m_drag->step(point, x, y, modifiers);
    if (text >= 0)
        showText(*canvas, text);
    canvas->ensureVisible(point);
    showTool(*canvas);
}

void cToolSelect::finishDrag(cCanvas* canvas, int x, int y, Qt::KeyboardModifiers modifiers) {
    const std::unique_ptr<cSelectionDrag> drag = std::move(m_drag);
    drag->endMoving();
    if (frameOf(*canvas).rubberBand) {
        if (g_host->SelectAuto)
            selectInBand(canvas, modifiers);
    } else if (drag->changesSelection() && hasObjects(*canvas->map())) {
        commit(*drag, canvas, modifiers);
    }
    hover(canvas, x, y);
    showTool(*canvas);
    showText(*canvas, BT_EXTENTS);
}

void cToolSelect::commit(const cSelectionDrag& drag, cCanvas* canvas,
                         Qt::KeyboardModifiers modifiers) {
    cMap& map = *canvas->map();
    const bool clones = frameOf(*canvas).moved && (modifiers & Qt::ShiftModifier);
    const cTransformRecord record = drag.record(modifiers);
    if (clones)
        cloneSelection(map, record);
    else if (!drag.changesNothing())
        transformSelection(map, record);
    measure(*canvas);
}

// The box goes back to the selection; a rubber band stays as far as it was drawn.
void cToolSelect::dropDrag(cCanvas* canvas) {
    m_drag.reset();
    if (!frameOf(*canvas).rubberBand)
        measure(*canvas);
    showTool(*canvas);
}

// ---- The selection

template<class Range> static int addBounds(const Range& objects, cSelectionBox& box) {
    int count = 0;
    for (const auto* object : objects) {
        box.addPoint(object->mins);
        box.addPoint(object->maxs);
        ++count;
    }
    return count;
}

// Box and frame of the document follow its selection; the mode of the handles stays.
// Tells one set of selected objects from another.
static uint64_t identityOf(const cMapData& data) {
    constexpr uint64_t prime = 0x100000001b3;
    uint64_t identity = 0xcbf29ce484222325;
    for (const cEntityData* entity : selectedEntitiesOf(data))
        identity = (identity ^ entity->id) * prime;
    identity = (identity ^ 0xffffffff) * prime;
    for (const cBrushData* brush : selectedBrushesOf(data))
        identity = (identity ^ brush->id) * prime;
    return identity;
}

void cToolSelect::measure(const cCanvas& canvas) {
    const cMapData& data = canvas.map()->data;
    cSelectionBox& box = boxOf(canvas);
    cSelectionFrame& frame = frameOf(canvas);
    frame.rubberBand = false;
    frame.selection = identityOf(data);
    frame.edits = canvas.map()->edits();
    box.clear();
    frame.count = addBounds(selectedEntitiesOf(data), box);
    frame.count += addBounds(selectedBrushesOf(data), box);
    for (int i = 0; i < 3; ++i) {
        frame.center[i] = (box.mins[i] + box.maxs[i]) * 0.5f;
        frame.size[i] = box.maxs[i] - box.mins[i];
    }
    if (!frame.count) {
        frame.handleMode = HANDLES_SCALE;
        leaveBox();
    }
    showText(canvas, BT_EXTENTS);
}

// What was selected or changed since the box was measured breaks off a drag, whose rest then does
// nothing, and a rubber band. Nothing else does: one's own transform keeps the handles.
void cToolSelect::setCanvas(cCanvas* canvas) {
    if (!canvas || !canvas->map())
        return;
    const cSelectionFrame& frame = frameOf(*canvas);
    const bool isOther = identityOf(canvas->map()->data) != frame.selection;
    if (!isOther && canvas->map()->edits() == frame.edits)
        return;
    breakOff();
    measure(*canvas);
    if (isOther && frame.count == 1)
        frameOf(*canvas).handleMode = HANDLES_SCALE;
}

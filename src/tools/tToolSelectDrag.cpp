// SPDX-License-Identifier: MIT
// The steps of a drag: what the mouse does to the box, and the matrix that follows from the box.
#include "document/tBrush.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tHost.h"
#include "support/tVec.h"
#include "tools/tToolSelect.h"
#include "tools/tToolSpace.h"
#include "views/tCanvas.h"
#include "views/tDocumentViews.h"

#include <algorithm>

void cToolSelect::startDrag(cCanvas* canvas, int x, int y) {
    canvas->leftDown = true;
    boxPoint(*canvas, canvas->project()->boxes[TBX_SELECTION], x, y, true, dragPoint);
    vecCopy(dragPoint, pressPoint);
}

cToolSelect::eDrag cToolSelect::dragKind(const cMap& map, Qt::KeyboardModifiers modifiers) const {
    const bool selected = map.data.selectedEntities || map.data.selectedBrushes;
    if (overBox)
        return DRAG_BOX;
    if (hoverHandle)
        return DRAG_HANDLE;
    if (m_drag == DRAG_BAND) // Ctrl may be let go once the band is drawn
        return DRAG_BAND;
    return selected && !(modifiers & Qt::ControlModifier) ? DRAG_VIEW : DRAG_BAND;
}

void cToolSelect::dragStep(cCanvas* canvas, int x, int y, Qt::KeyboardModifiers modifiers) {
    cSelectionBox& box = canvas->project()->boxes[TBX_SELECTION];
    cMap& map = *canvas->map();
    float point[3];
    boxPoint(*canvas, box, x, y, true, point);
    m_drag = dragKind(map, modifiers);
    m_modifiers = modifiers;
    rotAxis = shearAxis = -1;
    sideMask = 0;
    dragging = true;
    if (m_drag == DRAG_BOX || m_drag == DRAG_HANDLE)
        setMoving(canvas, true);
    if (m_drag == DRAG_BOX)
        showText(*canvas, dragBox(*canvas, box, point));
    else if (m_drag == DRAG_HANDLE)
        showText(*canvas, dragHandle(*canvas, box, point, x, y, modifiers));
    else if (m_drag == DRAG_BAND)
        showText(*canvas, dragBand(box, point));
    canvas->ensureVisible(point);
    canvas->project()->redrawViews(REDRAW_ALL);
}

// Each kind of drag gives the mode of its text.

int cToolSelect::dragBox(const cCanvas& canvas, cSelectionBox& box, const float* point) {
    float delta[3];
    moved = moved || !rubberBand;
    vecSubtract(point, dragPoint, delta);
    box.move(delta, dragPoint);
    buildMatrix(canvas, box, MATRIX_MOVE);
    return BT_NONE;
}

int cToolSelect::dragHandle(const cCanvas& canvas, cSelectionBox& box, const float* point, int x,
                            int y, Qt::KeyboardModifiers modifiers) {
    switch (activeMode()) {
    case HANDLES_ROTATE:
        return dragRotate(canvas, box, x, y, (modifiers & Qt::ShiftModifier) != 0);
    case HANDLES_SHEAR:
        return dragShear(canvas, box, point);
    case HANDLES_STRETCH:
        return dragStretch(canvas, box, point);
    default:
        return dragScale(canvas, box, point);
    }
}

int cToolSelect::dragBand(cSelectionBox& box, const float* point) {
    rubberBand = true;
    box.setFromTwoPoints(dragPoint, point);
    return BT_VIEW_EXTENTS;
}

int cToolSelect::dragScale(const cCanvas& canvas, cSelectionBox& box, const float* point) {
    float delta[3];
    vecSubtract(point, dragPoint, delta);
    box.resize(delta, canvas.axisH, canvas.axisV, hoverHandle, dragPoint);
    buildMatrix(canvas, box, MATRIX_SCALE);
    return BT_VIEW_EXTENTS;
}

int cToolSelect::dragRotate(const cCanvas& canvas, cSelectionBox& box, int x, int y, bool shift) {
    float point[2], place[3] = {0, 0, 0};
    canvas.screenToWorld2D(float(x), float(y), false, point);
    place[canvas.axisH] = point[0];
    place[canvas.axisV] = point[1];
    rotAxis = canvas.axisDepth;
    shearAxis = canvas.axisH;
    box.setRotation(place, pressPoint, canvas.axisH, canvas.axisV,
                    shift != g_host->Default15DegreeRotation);
    buildMatrix(canvas, box, MATRIX_ROTATE);
    return BT_ROTATION;
}

// The sides at handles 5 and 8 are the lower ones: there the whole box follows the mouse, and the
// shear takes the upper side back.
int cToolSelect::dragShear(const cCanvas& canvas, cSelectionBox& box, const float* point) {
    const bool isSide = hoverHandle == BH_LEFT || hoverHandle == BH_RIGHT;
    const bool isLower = hoverHandle == BH_LEFT || hoverHandle == BH_BOTTOM;
    rotAxis = isSide ? canvas.axisV : canvas.axisH;
    shearAxis = isSide ? canvas.axisH : canvas.axisV;
    const float way = point[rotAxis] - pressPoint[rotAxis];
    if (isLower) {
        box.moveAxis(rotAxis, point[rotAxis] - dragPoint[rotAxis]);
        dragPoint[rotAxis] = point[rotAxis];
    }
    box.setShear(isLower ? -way : way);
    buildMatrix(canvas, box, MATRIX_SHEAR);
    return BT_SHEAR;
}

int cToolSelect::dragStretch(const cCanvas& canvas, cSelectionBox& box, const float* point) {
    const cSelectionBox savedBox = box;
    float delta[3], savedPoint[3];
    sideMask = handleSides(hoverHandle, canvas.axisH, canvas.axisV);
    vecCopy(dragPoint, savedPoint);
    vecSubtract(point, dragPoint, delta);
    box.resize(delta, canvas.axisH, canvas.axisV, hoverHandle, dragPoint);
    buildMatrix(canvas, box, MATRIX_STRETCH);
    bool mended = false;
    for (const int axis : {canvas.axisH, canvas.axisV}) {
        if (stretchFits(*canvas.map(), axis))
            continue;
        box.mins[axis] = savedBox.mins[axis];
        box.maxs[axis] = savedBox.maxs[axis];
        dragPoint[axis] = savedPoint[axis];
        mended = true;
    }
    if (mended) {
        const cSelectionBox corners = box;
        box.setFromTwoPoints(corners.mins, corners.maxs);
        buildMatrix(canvas, box, MATRIX_STRETCH);
    }
    return BT_VIEW_EXTENTS;
}

// ---- Stretch

// False if a face would become thinner than the grid. Faces that are so already do not count.
bool cToolSelect::stretchFits(const cMap& map, int axis) const {
    const bool minMoves = (sideMask & (1u << uint32_t(axis))) != 0;
    const bool maxMoves = (sideMask & (1u << uint32_t(axis + 3))) != 0;
    const float grid = float(g_host->gridSize);
    const float shift = matrix[axis * 4 + 3];
    // The matrix of a stretch only moves, so a bound on one axis depends on that axis alone.
    const auto stretched = [&](float bound, float middle) {
        const bool kept = (minMoves && bound > middle) || (maxMoves && bound < middle);
        return kept ? bound : bound + shift;
    };
    for (const cBrushData* brush : selectedBrushesOf(map.data)) {
        const float middle = brush->brush->center[axis];
        for (const cFaceData* face : facesOf(brush)) {
            if (face->maxs[axis] - face->mins[axis] < grid)
                continue;
            if (stretched(face->maxs[axis], middle) - stretched(face->mins[axis], middle) < grid)
                return false;
        }
    }
    return true;
}

// ---- Matrix

static void turnAbout(int depthAxis, float angle, float matrix[16]) {
    // The axes of the plane, such that a positive angle goes from the first to the second.
    static const int planes[3][2] = {{1, 2}, {0, 2}, {0, 1}};
    const int a = planes[depthAxis][0], b = planes[depthAxis][1];
    const float sine = std::sin(angle), cosine = std::cos(angle);
    matrix[a * 4 + a] = matrix[b * 4 + b] = cosine;
    matrix[a * 4 + b] = -sine;
    matrix[b * 4 + a] = sine;
}

void cToolSelect::buildMatrix(const cCanvas& canvas, const cSelectionBox& box, eMatrix mode) {
    float size[3];
    for (int i = 0; i < 3; ++i) {
        center[i] = (box.mins[i] + box.maxs[i]) * 0.5f;
        size[i] = box.maxs[i] - box.mins[i];
    }
    for (int i = 0; i < 16; ++i)
        matrix[i] = i % 5 == 0 ? 1.0f : 0.0f;
    if (mode == MATRIX_ROTATE) {
        turnAbout(canvas.axisDepth, box.rotation, matrix);
        return;
    }
    const float factor = mode == MATRIX_STRETCH ? 2.0f : 1.0f;
    for (int i = 0; i < 3; ++i)
        matrix[i * 4 + 3] = factor * (center[i] - origCenter[i]);
    // A flat selection has nothing to scale or shear on its axis.
    if (mode == MATRIX_SCALE)
        for (int i = 0; i < 3; ++i)
            if (origSize[i] > 0)
                matrix[i * 5] = size[i] / origSize[i];
    if (mode == MATRIX_SHEAR && size[shearAxis] > 0) {
        matrix[rotAxis * 4 + shearAxis] = box.shear / size[shearAxis];
        matrix[rotAxis * 4 + 3] += box.shear * 0.5f;
    }
}

// ---- Preview

static void setFlag(uint32_t& flags, uint32_t flag, bool on) {
    flags = on ? flags | flag : flags & ~flag;
}

static void setMovingFlags(cBrushData* brush, bool moving) {
    setFlag(brush->flags, BF_MOVING, moving);
    for (cFaceData* face : facesOf(brush))
        setFlag(face->flags, FF_MOVING, moving);
}

void cToolSelect::startMoving(cCanvas* canvas) {
    const cMap& map = *canvas->map();
    for (cEntityData* entity : selectedEntitiesOf(map.data)) {
        setFlag(entity->flags, EF_MOVING, true);
        m_movingEntities.push_back(entity->id);
    }
    for (cBrushData* brush : selectedBrushesOf(map.data)) {
        setMovingFlags(brush, true);
        m_movingBrushes.push_back(brush->id);
    }
    m_movingIn = canvas;
    m_preview.build(map);
}

// By id: a command in the midst of the drag may have changed the selection, or the objects. The
// document is the one of the drag, though another may be active by now, or it may be closed.
void cToolSelect::endMoving() {
    cMap* map = m_movingIn ? m_movingIn->map() : nullptr;
    for (const uint32_t id : m_movingEntities)
        if (cEntityData* entity = map ? map->findEntityById(id) : nullptr)
            setFlag(entity->flags, EF_MOVING, false);
    for (const uint32_t id : m_movingBrushes)
        if (cBrushData* brush = map ? map->findBrushById(nullptr, id) : nullptr)
            setMovingFlags(brush, false);
    m_movingEntities.clear();
    m_movingBrushes.clear();
    m_movingIn = nullptr;
    m_preview.clear();
}

// The map's picture changes once here; the steps of the drag leave it alone.
void cToolSelect::setMoving(cCanvas* canvas, bool moving) {
    if (moving == movingPreview || (moving && rubberBand))
        return;
    const QPointer<cCanvas> changed = moving ? QPointer<cCanvas>(canvas) : m_movingIn;
    movingPreview = moving;
    if (moving)
        startMoving(canvas);
    else
        endMoving();
    if (changed && changed->map()) {
        changed->map()->markChanged();
        changed->project()->redrawViews(REDRAW_ALL);
    }
}

cTransformRecord cToolSelect::transformRecord(const cCanvas& canvas,
                                              Qt::KeyboardModifiers modifiers) const {
    cTransformRecord record;
    record.center = origCenter;
    record.matrix = matrix;
    record.sideMask = sideMask;
    record.axisH = canvas.axisH;
    record.axisV = canvas.axisV;
    record.scaleModels = g_host->ModelAltScale && (modifiers & Qt::AltModifier);
    return record;
}

// SPDX-License-Identifier: MIT
#include "tools/tSelectionDrag.h"

#include "document/tBrush.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "support/tHost.h"
#include "support/tVec.h"
#include "views/tCanvas.h"
#include "views/tDocumentViews.h"
#include "views/tOverlay.h"

#include <algorithm>

static constexpr float MARK_SIZE = 16.0f; // pixels
static constexpr float s_identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

int activeMode(const cSelectionFrame& frame) {
    return frame.rubberBand ? int(HANDLES_SCALE) : frame.handleMode;
}

cSelectionDrag::cSelectionDrag(cCanvas* canvas, const float* point, int handle, bool overBox)
    : m_canvas(canvas), m_handle(handle), m_overBox(overBox) {
    vecCopy(point, m_point);
    vecCopy(point, m_pressPoint);
    vecCopy(frame().center, m_pivot);
    vecCopy(frame().size, m_size);
}

cSelectionBox& cSelectionDrag::box() const {
    return m_canvas->project()->boxes[TBX_SELECTION];
}

cSelectionFrame& cSelectionDrag::frame() const {
    return m_canvas->project()->selection;
}

bool cSelectionDrag::isIn(const cMap& map) const {
    return m_canvas && m_canvas->map() == &map;
}

bool cSelectionDrag::changesNothing() const {
    return std::equal(m_matrix, m_matrix + 16, s_identity);
}

// ---- Steps

cSelectionDrag::eDrag cSelectionDrag::kindOfStep() const {
    const cMapData& data = m_canvas->map()->data;
    if (m_overBox)
        return DRAG_BOX;
    if (m_handle)
        return DRAG_HANDLE;
    if (m_kind == DRAG_BAND) // Ctrl may be let go once the band is drawn
        return DRAG_BAND;
    const bool selected = data.selectedEntities || data.selectedBrushes;
    return selected && !(m_modifiers & Qt::ControlModifier) ? DRAG_VIEW : DRAG_BAND;
}

int cSelectionDrag::step(const float* point, int x, int y, Qt::KeyboardModifiers modifiers) {
    m_modifiers = modifiers;
    m_kind = kindOfStep();
    m_rotAxis = m_shearAxis = -1;
    m_sideMask = 0;
    if (changesSelection() && !frame().rubberBand && !m_moving)
        startMoving();
    switch (m_kind) {
    case DRAG_BOX:
        return dragBox(point);
    case DRAG_HANDLE:
        return dragHandle(point, x, y);
    case DRAG_BAND:
        return dragBand(point);
    default:
        return -1;
    }
}

// Each kind of drag gives the mode of its text.

int cSelectionDrag::dragBox(const float* point) {
    float delta[3];
    frame().moved = frame().moved || !frame().rubberBand;
    vecSubtract(point, m_point, delta);
    box().move(delta, m_point);
    buildMatrix(MATRIX_MOVE);
    return BT_NONE;
}

int cSelectionDrag::dragHandle(const float* point, int x, int y) {
    switch (activeMode(frame())) {
    case HANDLES_ROTATE:
        return dragRotate(x, y);
    case HANDLES_SHEAR:
        return dragShear(point);
    case HANDLES_STRETCH:
        return dragStretch(point);
    default:
        return dragScale(point);
    }
}

int cSelectionDrag::dragBand(const float* point) {
    frame().rubberBand = true;
    box().setFromTwoPoints(m_point, point);
    return BT_VIEW_EXTENTS;
}

int cSelectionDrag::dragScale(const float* point) {
    float delta[3];
    vecSubtract(point, m_point, delta);
    box().resize(delta, m_canvas->axisH, m_canvas->axisV, m_handle, m_point);
    buildMatrix(MATRIX_SCALE);
    return BT_VIEW_EXTENTS;
}

int cSelectionDrag::dragRotate(int x, int y) {
    const bool shift = (m_modifiers & Qt::ShiftModifier) != 0;
    float point[2], place[3] = {0, 0, 0};
    m_canvas->screenToWorld2D(float(x), float(y), false, point);
    place[m_canvas->axisH] = point[0];
    place[m_canvas->axisV] = point[1];
    m_rotAxis = m_canvas->axisDepth;
    m_shearAxis = m_canvas->axisH;
    box().setRotation(place, m_pressPoint, m_canvas->axisH, m_canvas->axisV,
                      shift != g_host->Default15DegreeRotation);
    buildMatrix(MATRIX_ROTATE);
    return BT_ROTATION;
}

// The sides at handles 5 and 8 are the lower ones: there the whole box follows the mouse, and the
// shear takes the upper side back.
int cSelectionDrag::dragShear(const float* point) {
    const bool isSide = m_handle == BH_LEFT || m_handle == BH_RIGHT;
    const bool isLower = m_handle == BH_LEFT || m_handle == BH_BOTTOM;
    m_rotAxis = isSide ? m_canvas->axisV : m_canvas->axisH;
    m_shearAxis = isSide ? m_canvas->axisH : m_canvas->axisV;
    const float way = point[m_rotAxis] - m_pressPoint[m_rotAxis];
    if (isLower) {
        box().moveAxis(m_rotAxis, point[m_rotAxis] - m_point[m_rotAxis]);
        m_point[m_rotAxis] = point[m_rotAxis];
    }
    box().setShear(isLower ? -way : way);
    buildMatrix(MATRIX_SHEAR);
    return BT_SHEAR;
}

int cSelectionDrag::dragStretch(const float* point) {
    const int h = m_canvas->axisH, v = m_canvas->axisV;
    const cSelectionBox savedBox = box();
    float delta[3], savedPoint[3];
    m_sideMask = handleSides(m_handle, h, v);
    vecCopy(m_point, savedPoint);
    vecSubtract(point, m_point, delta);
    box().resize(delta, h, v, m_handle, m_point);
    buildMatrix(MATRIX_STRETCH);
    bool mended = false;
    for (const int axis : {h, v}) {
        if (stretchFits(axis))
            continue;
        box().mins[axis] = savedBox.mins[axis];
        box().maxs[axis] = savedBox.maxs[axis];
        m_point[axis] = savedPoint[axis];
        mended = true;
    }
    if (mended) {
        const cSelectionBox corners = box();
        box().setFromTwoPoints(corners.mins, corners.maxs);
        buildMatrix(MATRIX_STRETCH);
    }
    return BT_VIEW_EXTENTS;
}

// ---- Stretch

// False if a face would become thinner than the grid. Faces that are so already do not count.
bool cSelectionDrag::stretchFits(int axis) const {
    const bool minMoves = (m_sideMask & (1u << uint32_t(axis))) != 0;
    const bool maxMoves = (m_sideMask & (1u << uint32_t(axis + 3))) != 0;
    const float grid = float(g_host->gridSize);
    const float shift = m_matrix[axis * 4 + 3];
    // The matrix of a stretch only moves, so a bound on one axis depends on that axis alone.
    const auto stretched = [&](float bound, float middle) {
        const bool kept = (minMoves && bound > middle) || (maxMoves && bound < middle);
        return kept ? bound : bound + shift;
    };
    for (const cBrushData* brush : selectedBrushesOf(m_canvas->map()->data)) {
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

void cSelectionDrag::buildMatrix(eMatrix mode) {
    float center[3], size[3];
    for (int i = 0; i < 3; ++i) {
        center[i] = (box().mins[i] + box().maxs[i]) * 0.5f;
        size[i] = box().maxs[i] - box().mins[i];
    }
    std::copy(s_identity, s_identity + 16, m_matrix);
    if (mode == MATRIX_ROTATE) {
        turnAbout(m_canvas->axisDepth, box().rotation, m_matrix);
        return;
    }
    const float factor = mode == MATRIX_STRETCH ? 2.0f : 1.0f;
    for (int i = 0; i < 3; ++i)
        m_matrix[i * 4 + 3] = factor * (center[i] - m_pivot[i]);
    // A flat selection has nothing to scale or shear on its axis.
    if (mode == MATRIX_SCALE)
        for (int i = 0; i < 3; ++i)
            if (m_size[i] > 0)
                m_matrix[i * 5] = size[i] / m_size[i];
    if (mode == MATRIX_SHEAR && size[m_shearAxis] > 0) {
        m_matrix[m_rotAxis * 4 + m_shearAxis] = box().shear / size[m_shearAxis];
        m_matrix[m_rotAxis * 4 + 3] += box().shear * 0.5f;
    }
}

cTransformRecord cSelectionDrag::record(Qt::KeyboardModifiers modifiers) const {
    cTransformRecord record;
    record.center = m_pivot;
    record.matrix = m_matrix;
    record.sideMask = m_sideMask;
    record.axisH = m_canvas->axisH;
    record.axisV = m_canvas->axisV;
    record.scaleModels = g_host->ModelAltScale && (modifiers & Qt::AltModifier);
    return record;
}

// ---- Preview

static void setFlag(uint32_t& flags, uint32_t flag, bool on) {
    flags = on ? flags | flag : flags & ~flag;
}

static void setMovingFlags(cBrushData* brush, bool moving) {
    setFlag(brush->flags, BF_MOVING, moving);
    for (cFaceData* face : facesOf(brush))
        setFlag(face->flags, FF_MOVING, moving);
    noteChange(brush);
}

// The map's picture changes at the start and at the end; the steps between leave it alone.
void cSelectionDrag::showMoving() const {
    m_canvas->map()->changed(MC_OBJECTS);
}

void cSelectionDrag::startMoving() {
    const cMap& map = *m_canvas->map();
    for (cEntityData* entity : selectedEntitiesOf(map.data)) {
        setFlag(entity->flags, EF_MOVING, true);
        noteChange(entity);
        m_movingEntities.push_back(entity->id);
    }
    for (cBrushData* brush : selectedBrushesOf(map.data)) {
        setMovingFlags(brush, true);
        m_movingBrushes.push_back(brush->id);
    }
    m_preview.build(map);
    m_moving = true;
    showMoving();
}

// By id: a command in the midst of the drag may have changed the selection, or the objects, and
// the document may be closed by now.
void cSelectionDrag::endMoving() {
    cMap* map = m_canvas ? m_canvas->map() : nullptr;
    if (!m_moving || !map)
        return;
    for (const uint32_t id : m_movingEntities)
        if (cEntityData* entity = map->findEntityById(id)) {
            setFlag(entity->flags, EF_MOVING, false);
            noteChange(entity);
        }
    for (const uint32_t id : m_movingBrushes)
        if (cBrushData* brush = map->findBrushById(nullptr, id))
            setMovingFlags(brush, false);
    m_moving = false;
    showMoving();
}

// ---- Drawing

void cSelectionDrag::drawOutline(cOverlay& overlay, const uint8_t* rgba) const {
    const cSelectionBox& b = box();
    if (m_rotAxis >= 0 && m_shearAxis >= 0)
        overlay.boxTransformed(b.mins, b.maxs, m_rotAxis, m_shearAxis, b.rotation, b.shear,
                               stippled(rgba));
    else
        overlay.box(b.mins, b.maxs, stippled(rgba));
}

static bool isOnePointEntity(const cMapData& data) {
    const cEntityData* entity = data.selectedEntities;
    return entity && !entity->nextSelected && (entity->flags & EF_POINT) && !data.selectedBrushes;
}

void cSelectionDrag::drawReference(cCanvas& canvas, cOverlay& overlay, const uint8_t* rgba) const {
    if (m_kind != DRAG_BOX)
        return;
    float point[3];
    if (isOnePointEntity(canvas.map()->data))
        box().handlePoint(canvas.axisH, canvas.axisV, BH_NONE, point);
    else
        box().nearestCorner(canvas.axisH, canvas.axisV, m_point, point);
    overlay.square(point, MARK_SIZE, rgba);
}

void cSelectionDrag::drawPreview(cCanvas& canvas, cOverlay& overlay) {
    if (!m_moving)
        return;
    overlay.flush();
    m_preview.draw(*canvas.map(), canvas.viewInfo, canvas.stats, record(m_modifiers));
}

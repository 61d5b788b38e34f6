// SPDX-License-Identifier: MIT
// 2D views: edges, the crosses at the centres of brushes, and what a drag is moving.
#include "document/tFace.h"
#include "document/tMapLists.h"
#include "support/tVec.h"
#include "views/tDrawScratch.h"
#include "views/tFigureDraw.h"
#include "views/tGLState.h"
#include "views/tLooseDraw.h"

#include <algorithm>
#include <qopengl.h>

static constexpr float VERTEX_SIZE = 3.0f; // pixels
static constexpr float MARK_HALF = 3.5f;   // pixels

void cMapPainter::drawFlat() {
    for (const eWhich which : {UNSELECTED, SELECTED}) {
        drawFlatEdges(which);
        drawFigures(which);
        drawMarks(which);
        if (which == SELECTED)
            drawMoving();
        drawArrows(which);
        if (m_view.settings.drawVertices)
            drawVertices(which);
        if (!m_map.data.selectedEntities && !m_map.data.selectedBrushes)
            return;
    }
}

// The colour of each line is one of a few, unless it follows groups and visgroups.
void cMapPainter::drawFlatEdges(eWhich which) {
    const bool byVertex = which == UNSELECTED && m_view.settings.useVisgroupColors;
    if (byVertex)
        pointAtColors(m_buffers.look(LOOK_LINES));
    pointAtVertices();
    const auto setColor = [&](const cDrawKey& key) {
        if (which == SELECTED)
            glColor4ubv(m_view.settings.color(key.traits & TRAIT_BOX ? COLOR_SELECTED_LINE
                                                                     : COLOR_SELECTED_FILL));
        else if (key.color == 0)
            glColor4ubv(m_view.settings.color(COLOR_BRUSH_DEFAULT));
        else
            glColor4ubv(reinterpret_cast<const uint8_t*>(&key.color));
    };
    cDrawKey last;
    eachRow(KIND_FLAT_EDGES, [&](uint32_t number, const cDrawKey& key) {
        if ((key.traits & TRAIT_MOVING) || isReplaced(key))
            return;
        if (!byVertex && (key.color != last.color || key.traits != last.traits)) {
            drawRanges(GL_LINES);
            setColor(key);
        }
        if (m_ranges.isEmpty() && !byVertex)
            setColor(key);
        last = key;
        addRow(number, which);
    });
    drawRanges(GL_LINES);
    noColors();
    if (which == UNSELECTED)
        return;
    eachSelectedCell([&](const cDrawKey& key, const cSelectedCell& cell) {
        if (key.kind != KIND_FLAT_EDGES || (key.traits & TRAIT_MOVING) || isReplaced(key))
            return;
        setColor(key);
        m_ranges.add(cell.first, cell.count);
        drawRanges(GL_LINES);
    });
}

// The marks hold -1 and 1 in place of the depth; the matrix makes pixels of it, so that the crosses
// keep their size at any zoom. slope: the way the line goes up or down.
static void loadMarkMatrix(const cViewInfo& view, float slope) {
    float matrix[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, matrix);
    float* depth = matrix + view.axisDepth * 4;
    depth[0] = MARK_HALF;
    depth[1] = MARK_HALF * slope;
    depth[2] = 0;
    glPushMatrix();
    glLoadMatrixf(matrix);
}

void cMapPainter::drawMarks(eWhich which) {
    const uint8_t* plain = m_view.settings.color(COLOR_BRUSH_HANDLE);
    const uint8_t* marked = m_view.settings.color(COLOR_SELECTED_FILL);
    const uint8_t* base = m_buffers.marks(m_view.axisDepth).bind();
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, base);
    for (const float slope : {1.0f, -1.0f}) {
        loadMarkMatrix(m_view, slope);
        for (const bool moving : {false, true}) {
            glColor4ubv(which == SELECTED && !moving ? marked : plain);
            const auto isDrawn = [moving](const cDrawKey& key) {
                return ((key.traits & TRAIT_MOVING) != 0) == moving;
            };
            eachRow(KIND_MARKS, [&](uint32_t number, const cDrawKey& key) {
                if (isDrawn(key))
                    addRow(number, which);
            });
            drawRanges(GL_LINES);
            if (which == UNSELECTED)
                continue;
            eachSelectedCell([&](const cDrawKey& key, const cSelectedCell& cell) {
                if (key.kind != KIND_MARKS || !isDrawn(key))
                    return;
                m_ranges.add(cell.first, cell.count);
                drawRanges(GL_LINES);
            });
        }
        glPopMatrix();
    }
}

void cMapPainter::drawVertices(eWhich which) {
    pointAtVertices();
    glColor4ubv(m_view.settings.color(which == SELECTED ? COLOR_SELECTED_FILL : COLOR_2D_VERTEX));
    GL_PointSize(VERTEX_SIZE);
    eachRow(KIND_CORNERS, [&](uint32_t number, const cDrawKey&) { addRow(number, which); });
    drawRanges(GL_POINTS);
    if (which == SELECTED) {
        eachSelectedCell([&](const cDrawKey& key, const cSelectedCell& cell) {
            if (key.kind != KIND_CORNERS)
                return;
            m_ranges.add(cell.first, cell.count);
            drawRanges(GL_POINTS);
        });
    }
    GL_PointSize(1);
}

// Stippled, edge by edge and both ways, as the pattern starts anew with each line.
void cMapPainter::drawMoving() {
    if (m_buffers.movingSlots().empty())
        return;
    cGLBuffer::unbind();
    uint8_t brushDim[4], boxDim[4];
    shadeColor(m_view.settings.color(COLOR_SELECTED_FILL), MOVING_DIM, brushDim);
    shadeColor(m_view.settings.color(COLOR_SELECTED_LINE), MOVING_DIM, boxDim);
    for (const uint32_t number : m_buffers.movingSlots()) {
        const cDrawSlot& slot = m_buffers.slot(number);
        if (!slot.is(SLOT_MOVING) || !slot.is(SLOT_SHOWN) || !isLeafVisible(slot.leaf))
            continue;
        const cEntityData* entity = slot.entity();
        if (entity && hasRenderObject(entity, m_view))
            drawMovingModel(entity);
        else if (entity)
            gatherFlatBox(m_batch, m_view, entity->mins, entity->maxs, boxDim, true);
        else
            for (const cFaceData* face : facesOf(slot.brush()))
                if (isFaceVisible(face, m_view))
                    m_batch.stippledLoop(face, brushDim);
    }
    m_batch.flush();
    m_indices = m_buffers.indices().bind();
}

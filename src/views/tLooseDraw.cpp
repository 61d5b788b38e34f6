// SPDX-License-Identifier: MIT
#include "views/tLooseDraw.h"

#include "document/tEntity.h"
#include "document/tEntityClass.h"
#include "document/tFace.h"
#include "document/tMapLists.h"
#include "support/tMath.h"
#include "support/tVec.h"
#include "views/tDrawScratch.h"
#include "views/tFigureDraw.h"

#include <cmath>

static constexpr float AXIS_LENGTH = 10.0f; // units, of the texture axes of a selected face
static constexpr float GRID_LIFT = 0.25f;   // units off the face
static constexpr float MIN_GRID_EXTENT = 0.001f;

// ---- Boxes

void gatherFlatBox(cDrawBatch& batch, const cViewInfo& view, const float* mins, const float* maxs,
                   const uint8_t* rgba, bool stippled) {
    const int h = view.axisH, v = view.axisV;
    float corners[4][3];
    for (float* corner : corners)
        vecCopy(maxs, corner);
    corners[0][h] = corners[3][h] = mins[h];
    corners[0][v] = corners[1][v] = mins[v];
    for (int i = 0; i < 4; ++i) {
        const float* next = corners[(i + 1) & 3];
        if (stippled)
            batch.stippledLine(corners[i], next, rgba);
        else
            batch.line(corners[i], next, rgba);
    }
}

void gatherSolidBox(cDrawBatch& batch, const float* mins, const float* maxs, const uint8_t* rgba) {
    for (int axis = 0; axis < 3; ++axis) {
        const int u = (axis + 1) % 3, v = (axis + 2) % 3;
        for (const bool upper : {false, true}) {
            float corners[4][3];
            for (int i = 0; i < 4; ++i) {
                const int turn = upper ? i : 3 - i;
                corners[i][axis] = upper ? maxs[axis] : mins[axis];
                corners[i][u] = (turn == 1 || turn == 2) ? maxs[u] : mins[u];
                corners[i][v] = turn >= 2 ? maxs[v] : mins[v];
            }
            batch.triangle(corners[0], corners[1], corners[2], rgba);
            batch.triangle(corners[0], corners[2], corners[3], rgba);
        }
    }
}

// ---- Arrows

bool hasArrow(const cEntityData* entity) {
    const cEntityClass* entityClass = entity->entity->entityClass;
    return entityClass && (entityClass->flags & ECF_ANGLE);
}

// 5 quarters of the box's width long.
void gatherArrow(cDrawBatch& batch, const float* mins, const float* maxs, const float* angles) {
    static constexpr float LENGTH = 5.0f * 0.25f;
    static constexpr float HEAD = 0.25f;
    static const uint8_t white[4] = {255, 255, 255, 255};
    const float width = maxs[0] - mins[0];
    float forward[3], right[3], center[3], tip[3];
    T_AngleVectors(angles, forward, right, nullptr);
    vecAdd(mins, maxs, center);
    vecScale(center, 0.5f, center);
    vecMA(center, LENGTH * width, forward, tip);
    batch.wideLine(center, tip, white);
    for (const float side : {HEAD, -HEAD}) {
        float end[3];
        vecMA(tip, -HEAD * width, forward, end);
        vecMA(end, side * width, right, end);
        batch.wideLine(tip, end, white);
    }
}

void cMapPainter::drawArrows(eWhich which) {
    cGLBuffer::unbind();
    for (uint32_t leaf = 0; leaf < m_masks.size(); ++leaf) {
        if (!isLeafVisible(leaf))
            continue;
        for (const uint32_t number : m_buffers.leaves()[leaf].arrows) {
            const cDrawSlot& slot = m_buffers.slot(number);
            const cEntityData* entity = slot.entity();
            if (slot.is(SLOT_SELECTED) != (which == SELECTED) || isHiddenByTraits(slot.traits))
                continue;
            if (entity->attachKind == AK_MODEL && hasRenderObject(entity, m_view))
                continue; // the model itself shows it
            gatherArrow(m_batch, entity->mins, entity->maxs, entity->angles);
        }
    }
    m_batch.flush();
    m_indices = m_buffers.indices().bind();
}

// ---- Faces

void drawTextureAxes(cDrawBatch& batch, const cFaceData* face) {
    static const uint8_t yellow[4] = {255, 255, 0, 255};
    static const uint8_t green[4] = {0, 255, 0, 255};
    const float* center = face->face->center;
    float end[3];
    vecMA(center, AXIS_LENGTH, face->tex.uAxis, end);
    batch.raisedLine(center, end, yellow);
    vecMA(center, AXIS_LENGTH, face->tex.vAxis, end);
    batch.raisedLine(center, end, green);
}

// Where the plane of that coordinate crosses the face's edges; false without two crossings.
static bool crossFace(const cFaceData* face, int axis, float value, float hits[2][3]) {
    int count = 0;
    const float* a = face->vertices[face->vertexCount - 1].xyz;
    for (int i = 0; i < face->vertexCount && count < 2; ++i) {
        const float* b = face->vertices[i].xyz;
        // Half open, so that a vertex on the plane counts for one of its two edges.
        if ((a[axis] < value) != (b[axis] < value)) {
            float step[3];
            vecSubtract(b, a, step);
            vecMA(a, (value - a[axis]) / step[axis], step, hits[count++]);
        }
        a = b;
    }
    return count == 2;
}

static void gatherGridAxis(cDrawBatch& batch, const cFaceData* face, float grid, int axis) {
    uint8_t rgba[4] = {0, 0, 0, 255};
    rgba[axis] = 255;
    const int first = int(std::floor(face->mins[axis] / grid));
    const int last = int(std::ceil(face->maxs[axis] / grid));
    for (int i = first; i <= last; ++i) {
        float hits[2][3];
        if (!crossFace(face, axis, float(i) * grid, hits))
            continue;
        for (float* hit : hits)
            vecMA(hit, GRID_LIFT, face->normal, hit);
        batch.line(hits[0], hits[1], rgba);
    }
}

static bool isNear(const float* origin, const float* mins, const float* maxs, float margin) {
    for (int i = 0; i < 3; ++i)
        if (origin[i] < mins[i] - margin || origin[i] > maxs[i] + margin)
            return false;
    return true;
}

void cMapPainter::drawFaceGrids() {
    cGLBuffer::unbind();
    for (uint32_t number = 0; number < m_masks.size(); ++number) {
        const cDrawLeaf& leaf = m_buffers.leaves()[number];
        if (!isLeafVisible(number) ||
            !isNear(m_view.origin, leaf.mins, leaf.maxs, m_view.gridDepth))
            continue;
        for (const uint32_t slotNumber : leaf.objects) {
            const cDrawSlot& slot = m_buffers.slot(slotNumber);
            if (!slot.is(SLOT_BRUSH) || !slot.is(SLOT_SHOWN) || isHiddenByTraits(slot.traits))
                continue;
            for (const cFaceData* face : facesOf(slot.brush())) {
                if (!isFaceVisible(face, m_view) ||
                    !isNear(m_view.origin, face->mins, face->maxs, m_view.gridDepth))
                    continue;
                for (int axis = 0; axis < 3; ++axis)
                    if (face->maxs[axis] - face->mins[axis] > MIN_GRID_EXTENT)
                        gatherGridAxis(m_batch, face, m_view.gridSize, axis);
            }
        }
    }
    m_batch.flush();
    m_indices = m_buffers.indices().bind();
}

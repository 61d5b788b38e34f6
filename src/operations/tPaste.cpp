// SPDX-License-Identifier: MIT
// New objects from the clipboard: one copy or a row of them, moved and turned step by step.
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tEntityAngles.h"
#include "document/tFaceMapping.h"
#include "document/tHistory.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "operations/tClipboard.h"
#include "operations/tObjectCopies.h"
#include "operations/tTransformParts.h"
#include "support/tHost.h"
#include "support/tMath.h"
#include "support/tVec.h"

#include <cmath>

namespace {
class cPasting {
public:
    cPasting(cMap& map, const cPasteOptions& options, const cTakenObjects& source);

    void pasteCopy(int number);
    void enter(); // selects and records what has been made

private:
    void setMatrix(int number);
    void movePoint(float* point) const;
    void tell();
    void addEntity(const cEntityState& state);
    void addBrush(uint32_t place, cEntityData* owner);
    void moveFace(cFaceData* face) const;

    cMap& m_map;
    const cPasteOptions& m_options;
    const cTakenObjects& m_source;
    cObjectCopies m_copies;
    float m_center[3];
    float m_delta[3] = {0, 0, 0};
    int m_steps = 0; // for the progress
    bool m_turns;    // or moves from copy to copy
    float m_matrix[16];
    cAffine m_affine;
};

bool isGiven(const float* vector) {
    return vector && (vector[0] != 0 || vector[1] != 0 || vector[2] != 0);
}

cPasting::cPasting(cMap& map, const cPasteOptions& options, const cTakenObjects& source)
    : m_map(map),
      m_options(options),
      m_source(source),
      m_copies(map, source),
      m_turns(isGiven(options.offset) || isGiven(options.rotation)) {
    const float grid = g_host->SnapToGrid ? float(g_host->gridSize) : 0;
    for (int i = 0; i < 3; ++i) {
        m_center[i] = (source.mins[i] + source.maxs[i]) * 0.5f;
        if (grid > 0)
            m_center[i] = std::floor(m_center[i] / grid + 0.5f) * grid;
        if (options.target)
            m_delta[i] = options.target[i] - m_center[i];
    }
}

void cPasting::setMatrix(int number) {
    float angles[3], shift[3], columns[16];
    for (int i = 0; i < 3; ++i) {
        angles[i] = m_options.rotation ? m_options.rotation[i] * float(number) : 0;
        shift[i] = m_options.offset ? m_options.offset[i] * float(number) : 0;
    }
    T_BuildTransformMatrix(angles[2], angles[1], angles[0], shift, columns);
    T_TransposeMatrix(columns, m_matrix);
    m_affine = m_turns ? cAffine::around(m_center, m_matrix) : cAffine();
    m_affine.move(m_delta);
}

// The last objects are made long before they are all selected and recorded: it is told then, too.
void cPasting::tell() {
    constexpr int stride = 256;
    if (m_options.progress && ++m_steps % stride == 0)
        m_options.progress(qint64(m_copies.brushes.size() + m_copies.entities.size()),
                           qint64(m_source.count()) * m_options.copies);
}

void cPasting::movePoint(float* point) const {
    if (m_turns) {
        vecSubtract(point, m_center, point);
        T_VectorTransform(point, m_matrix, point);
        vecAdd(point, m_center, point);
    }
    vecAdd(point, m_delta, point);
}

// ---- Objects

void cPasting::moveFace(cFaceData* face) const {
    for (int i = 0; i < face->vertexCount; ++i)
        movePoint(face->vertices[i].xyz);
    if (!movePlane(face, m_affine))
        rebuildFace(face, UM_PLANES);
    if (m_turns)
        textureLock(face, m_center, m_matrix, false);
    cFaceTexture& tex = face->tex;
    tex.uShift -= vecDot(m_delta, tex.uAxis) / tex.uScale;
    tex.vShift -= vecDot(m_delta, tex.vAxis) / tex.vScale;
}

void cPasting::addBrush(uint32_t place, cEntityData* owner) {
    cBrushData* brush = m_copies.addBrush(m_source.states.brushes[place], owner);
    for (cFaceData* face : facesOf(brush)) {
        moveFace(face);
        face->flags |= FF_DIRTY;
    }
    rebuildBrush(brush, 0);
    tell();
}

void cPasting::addEntity(const cEntityState& state) {
    cEntityData* entity = m_copies.addEntity(state);
    const bool isPoint = (entity->flags & EF_POINT) != 0;
    if (isPoint)
        movePoint(entity->origin);
    else
        vecAdd(entity->origin, m_delta, entity->origin);
    float angles[3];
    if (isPoint && m_turns && g_host->TransformAngles &&
        rotateAngles(entity->angles, m_matrix, angles))
        setEntityAngles(entity, angles);
    for (uint32_t i = state.brushes.first; i < state.brushes.end(); ++i)
        addBrush(i, entity);
    updateEntity(entity, UM_RENDER_KEYS | UM_MODEL_KEYS | UM_ATTACH);
    tell();
}

void cPasting::pasteCopy(int number) {
    setMatrix(number);
    m_copies.beginSet(m_options.groupCopies ? m_copies.addGroup() : nullptr);
    for (const cEntityState& state : m_source.states.entities)
        addEntity(state);
    for (uint32_t i = m_source.firstLoose; i < m_source.states.brushes.size(); ++i)
        addBrush(i, m_map.world());
}

void cPasting::enter() {
    if (!m_copies.brushes.empty())
        updateEntity(m_map.world(), 0);
    if (m_options.select)
        m_copies.select();
    m_copies.capture([this] { tell(); });
}
} // namespace

void cClipboard::paste(cMap& map, const cPasteOptions& options, const char* stepName) {
    if (isEmpty() || !map.world())
        return;
    const cHistoryStep step(map, stepName);
    m_mode = PASTED;
    if (options.select)
        map.clearSelection();
    cPasting pasting(map, options, *m_contents);
    for (int i = 1; i <= options.copies; ++i)
        pasting.pasteCopy(i);
    pasting.enter();
    map.dropHidden();
}

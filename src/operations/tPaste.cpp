// SPDX-License-Identifier: MIT
// New objects from the clipboard: one copy or a row of them, moved and turned step by step.
#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tEntityAngles.h"
#include "document/tFaceMapping.h"
#include "document/tGroup.h"
#include "document/tHistory.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "operations/tClipboard.h"
#include "support/tHost.h"
#include "support/tMath.h"
#include "support/tVec.h"

#include <QHash>
#include <cmath>

namespace {
class cPasting {
public:
    cPasting(cMap& map, const cPasteOptions& options, const float* mins, const float* maxs,
             qint64 total);

    void pasteCopy(int number, const std::vector<cClipboard::cEntityCopy>& entities,
                   const std::vector<cClipboard::cBrushCopy>& brushes);
    void enter(); // selects and records what has been made

private:
    void setMatrix(int number);
    void movePoint(float* point) const;
    void tell();
    cGroupData* newGroup(const uint8_t* color);
    cGroupData* groupOf(const std::vector<cClipboard::cGroupCopy>& chain, size_t place);
    template<class T> void join(const cClipboard::cObjectCopy& copy, T* object);
    template<class T> void joinVisGroups(const cClipboard::cObjectCopy& copy, T* half);
    void addEntity(const cClipboard::cEntityCopy& copy);
    void addBrush(const cClipboard::cBrushCopy& copy, cEntityData* owner);
    void addFace(const cClipboard::cFaceCopy& copy, cBrushData* brush);

    cMap& m_map;
    const cPasteOptions& m_options;
    float m_center[3];
    float m_delta[3] = {0, 0, 0};
    qint64 m_total;  // objects in all copies
    int m_steps = 0; // for the progress
    bool m_turns;    // or moves from copy to copy
    float m_matrix[16];
    cGroupData* m_wrapper = nullptr;
    QHash<uint32_t, cGroupData*> m_copied; // of this copy, by the id in the source
    std::vector<cGroupData*> m_groups;
    std::vector<cEntityData*> m_entities;
    std::vector<cBrushData*> m_brushes;
};

bool isGiven(const float* vector) {
    return vector && (vector[0] != 0 || vector[1] != 0 || vector[2] != 0);
}

cPasting::cPasting(cMap& map, const cPasteOptions& options, const float* mins, const float* maxs,
                   qint64 total)
    : m_map(map),
      m_options(options),
      m_total(total),
      m_turns(isGiven(options.offset) || isGiven(options.rotation)) {
    const float grid = g_host && g_host->SnapToGrid ? float(g_host->gridSize) : 0;
    for (int i = 0; i < 3; ++i) {
        m_center[i] = (mins[i] + maxs[i]) * 0.5f;
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
}

// The last objects are made long before they are all selected and recorded: it is told then, too.
void cPasting::tell() {
    constexpr int stride = 256;
    if (m_options.progress && ++m_steps % stride == 0)
        m_options.progress(qint64(m_brushes.size() + m_entities.size()), m_total);
}

void cPasting::movePoint(float* point) const {
    if (m_turns) {
        vecSubtract(point, m_center, point);
        T_VectorTransform(point, m_matrix, point);
        vecAdd(point, m_center, point);
    }
    vecAdd(point, m_delta, point);
}

// ---- Groups

cGroupData* cPasting::newGroup(const uint8_t* color) {
    cGroupData* group = m_map.addGroup();
    if (color)
        group->group->setBaseColor(color);
    m_groups.push_back(group);
    return group;
}

// The copy of a group of the chain, inside the copies of its parents.
cGroupData* cPasting::groupOf(const std::vector<cClipboard::cGroupCopy>& chain, size_t place) {
    if (place == chain.size())
        return m_wrapper;
    if (cGroupData* known = m_copied.value(chain[place].id))
        return known;
    cGroupData* parent = groupOf(chain, place + 1);
    cGroupData* group = newGroup(chain[place].color.data());
    group->parent = parent;
    if (parent)
        ++parent->memberCount;
    m_copied.insert(chain[place].id, group);
    return group;
}

template<class T> void cPasting::join(const cClipboard::cObjectCopy& copy, T* object) {
    object->group = groupOf(copy.groups, 0);
    if (!object->group)
        return;
    ++object->group->memberCount;
    object->rootGroup = outermostGroup(object->group);
}

template<class T> void cPasting::joinVisGroups(const cClipboard::cObjectCopy& copy, T* half) {
    if (!g_host || !g_host->KeepCloneVisGroup)
        return;
    for (uint32_t serial : copy.visGroups) {
        if (cVisGroup* visGroup = m_map.findVisGroupBySerial(serial))
            half->addToVisGroup(visGroup);
    }
}

// ---- Objects

void cPasting::addFace(const cClipboard::cFaceCopy& copy, cBrushData* brush) {
    cFaceData* face = m_map.addFace(brush, copy.tex, int(copy.points.size()));
    face->flags |= copy.flags | FF_DIRTY;
    for (size_t i = 0; i < copy.points.size(); ++i) {
        vecCopy(copy.points[i].data(), face->vertices[i].xyz);
        movePoint(face->vertices[i].xyz);
    }
    updateFaceTransparency(face);
    if (m_turns)
        textureLock(face, m_center, m_matrix, false);
    cFaceTexture& tex = face->tex;
    tex.uShift -= vecDot(m_delta, tex.uAxis) / tex.uScale;
    tex.vShift -= vecDot(m_delta, tex.vAxis) / tex.vScale;
}

void cPasting::addBrush(const cClipboard::cBrushCopy& copy, cEntityData* owner) {
    cBrushData* brush = m_map.addBrush(owner);
    brush->flags |= copy.flags;
    brush->reserved = copy.reserved;
    brush->brush->setBaseColor(copy.color.data());
    for (const cClipboard::cFaceCopy& face : copy.faces)
        addFace(face, brush);
    if (owner->flags & EF_WORLD)
        join(copy, brush);
    joinVisGroups(copy, brush->brush);
    rebuildBrush(brush, UM_PLANES);
    m_brushes.push_back(brush);
    tell();
}

void cPasting::addEntity(const cClipboard::cEntityCopy& copy) {
    float origin[3];
    vecCopy(copy.origin.data(), origin);
    if (copy.flags & EF_POINT)
        movePoint(origin);
    else
        vecAdd(origin, m_delta, origin);
    cEntityData* entity = newEntity(copy.classname.constData(), origin, copy.flags);
    m_map.attachEntity(entity);
    m_map.insertEntity(entity);
    entity->flags = copy.flags | EF_DIRTY;
    entity->spawnFlags = copy.spawnFlags;
    setText(entity->flagsKey, copy.flagsKey.isNull() ? nullptr : copy.flagsKey.constData());
    std::copy(copy.color.begin(), copy.color.end(), entity->entity->color);
    vecCopy(copy.angles.data(), entity->angles);
    for (const auto& [key, value] : copy.pairs)
        addEpairLast(entity, key.constData(), value.constData());
    float angles[3];
    if ((copy.flags & EF_POINT) && m_turns && g_host && g_host->TransformAngles &&
        rotateAngles(entity->angles, m_matrix, angles))
        setEntityAngles(entity, angles);
    for (const cClipboard::cBrushCopy& brush : copy.brushes)
        addBrush(brush, entity);
    join(copy, entity);
    joinVisGroups(copy, entity->entity);
    updateEntity(entity, UM_PLANES | UM_RENDER_KEYS | UM_MODEL_KEYS | UM_ATTACH);
    m_entities.push_back(entity);
    tell();
}

void cPasting::pasteCopy(int number, const std::vector<cClipboard::cEntityCopy>& entities,
                         const std::vector<cClipboard::cBrushCopy>& brushes) {
    m_copied.clear();
    m_wrapper = nullptr;
    setMatrix(number);
    if (m_options.groupCopies)
        m_wrapper = newGroup(nullptr);
    for (const cClipboard::cEntityCopy& copy : entities)
        addEntity(copy);
    for (const cClipboard::cBrushCopy& copy : brushes)
        addBrush(copy, m_map.world());
}

void cPasting::enter() {
    if (!m_brushes.empty())
        updateEntity(m_map.world(), 0);
    if (m_options.select) {
        const bool groupsAct = m_map.updateSelectionMode() == MODE_GROUPS;
        for (cGroupData* group : m_groups) {
            if (groupsAct && !group->parent)
                m_map.select(group);
        }
        for (cEntityData* entity : m_entities)
            m_map.select(entity);
        for (cBrushData* brush : m_brushes) {
            if (brushVisible(brush))
                m_map.select(brush);
        }
    }
    cHistory& history = *m_map.history;
    for (const cGroupData* group : m_groups)
        history.groupCreated(group);
    for (const cEntityData* entity : m_entities) {
        history.entityCreated(entity);
        tell();
    }
    for (const cBrushData* brush : m_brushes) {
        history.brushCreated(brush);
        tell();
    }
}
} // namespace

qint64 cClipboard::objectCount() const {
    size_t count = m_entities.size() + m_brushes.size();
    for (const cEntityCopy& entity : m_entities)
        count += entity.brushes.size();
    return qint64(count);
}

void cClipboard::paste(cMap& map, const cPasteOptions& options, const char* stepName) {
    if (isEmpty() || !map.world())
        return;
    {
        const cHistoryStep step(map, stepName);
        m_mode = PASTED;
        if (options.select)
            map.clearSelection();
        cPasting pasting(map, options, m_mins, m_maxs, objectCount() * options.copies);
        for (int i = 1; i <= options.copies; ++i)
            pasting.pasteCopy(i, m_entities, m_brushes);
        pasting.enter();
    }
    map.dropHidden(); // describes the selection, too
    map.computeVisGroupVisibility();
    map.markChanged();
    if (!g_host)
        return;
    g_host->visGroupsChanged(map);
    g_host->projectDirty(map.project);
}

// SPDX-License-Identifier: MIT
// Making the buffers of a whole map.
#include "views/tMapBuffers.h"

#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tMapLists.h"

#include <cmath>

static constexpr uint32_t BOX_VERTICES = 24; // what most objects have

void cMapBuffers::collect(std::vector<cPlacedObject>& objects) {
    const auto add = [&objects](void* record, const float* center, bool isBrush) {
        cPlacedObject object = {record, {0, 0, 0}, isBrush};
        for (int i = 0; i < 3; ++i)
            if (std::isfinite(center[i])) // no other number has a place among the others
                object.center[i] = center[i];
        objects.push_back(object);
    };
    for (cEntityData* entity : entitiesOf(m_map.data)) {
        entity->entity->viewSlot = 0;
        entity->entity->viewLook = lookOnBrushes(entity);
        for (cBrushData* brush : brushesOf(entity))
            add(brush, brush->brush->center, true);
        if (entity->brushes || (entity->flags & EF_WORLD))
            continue;
        float center[3];
        for (int i = 0; i < 3; ++i)
            center[i] = (entity->mins[i] + entity->maxs[i]) * 0.5f;
        add(entity, center, false);
    }
}

void cMapBuffers::clear() {
    m_slots.assign(1, {}); // number 0 is none
    m_freeSlots.clear();
    m_oldSlots.clear();
    m_oldLeaves.clear();
    m_selectedSlots.clear();
    m_moving.clear();
    m_leaves.clear();
    m_rows.clear();
    m_rowOf.clear();
    m_lastRows = {};
    m_order.clear();
    m_lists.clear();
    m_listed.clear();
    m_freeRooms.clear();
    m_vertexEnd = m_indexEnd = m_lostIndices = m_freeVertices = 0;
    m_bufferKind = cGLBuffer::kind();
    m_selectedIndices.release();
    m_allOld = false;
    m_selectionOld = true;
}

// One object of a leaf that is filled for the first time; writeStaged follows.
void cMapBuffers::fillSlot(const cPlacedObject& object, uint32_t leaf) {
    const uint32_t number = takeSlot(object.record, object.isBrush);
    (object.isBrush ? static_cast<cBrushData*>(object.record)->brush->viewSlot
                    : static_cast<cEntityData*>(object.record)->entity->viewSlot) = number;
    makeShape(number, keptLooks());
    cDrawSlot& slot = m_slots[number];
    slot.leaf = leaf;
    slot.count = uint32_t(m_shape.vertices.size());
    slot.first = roomFor(slot.count);
    takeShape(slot);
    if (slot.is(SLOT_MOVING))
        m_moving.push_back(number);
    stage(m_shape);
    stageMark(number);
    m_leaves[leaf].objects.push_back(number);
    listObject(number);
}

void cMapBuffers::build() {
    std::vector<cPlacedObject> objects;
    std::vector<uint32_t> ends;
    collect(objects);
    clear();
    m_tree.build(objects, ends);
    m_slots.reserve(objects.size() + objects.size() / 16);
    const size_t room = bufferRoom(objects.size() * BOX_VERTICES);
    m_vertices.allocate(room * VERTEX_SIZE);
    for (cGLBuffer& look : m_looks)
        if (!look.isEmpty())
            look.allocate(room * sizeof(uint32_t));
    std::vector<cIndexList> joined; // by row, of all leaves
    m_leaves.resize(ends.size());
    size_t next = 0;
    for (uint32_t leaf = 0; leaf < ends.size(); ++leaf) {
        const uint32_t first = m_vertexEnd;
        m_leaves[leaf].clear();
        m_leaves[leaf].objects.reserve(ends[leaf] - next);
        for (; next < ends[leaf]; ++next)
            fillSlot(objects[next], leaf);
        m_leaves[leaf].keepCore();
        writeStaged(first);
        joined.resize(m_rows.size());
        for (const uint32_t row : m_listed) {
            cIndexList& list = m_lists[row];
            const auto count = uint32_t(list.size());
            m_rows[row].cells.push_back({leaf, uint32_t(joined[row].size()), count, count});
            joined[row].insert(joined[row].end(), list.begin(), list.end());
            list.clear();
        }
        m_listed.clear();
    }
    sortRows();
    writeRows(joined);
    writeMarks();
}

// Row after row, so that neighbouring cells of a row are drawn as one range.
void cMapBuffers::writeRows(const std::vector<cIndexList>& joined) {
    size_t count = 0;
    for (const cIndexList& list : joined)
        count += list.size();
    m_indices.allocate(bufferRoom(count) * sizeof(uint32_t));
    for (const uint32_t row : m_order) {
        m_indices.write(m_indexEnd * sizeof(uint32_t), joined[row].data(),
                        joined[row].size() * sizeof(uint32_t));
        for (cDrawCell& cell : m_rows[row].cells)
            cell.first += m_indexEnd;
        m_indexEnd += uint32_t(joined[row].size());
    }
}

void cMapBuffers::writeMarks() {
    for (int axis = 0; axis < 3; ++axis) {
        cGLBuffer& marks = m_marks[size_t(axis)];
        std::vector<float>& ends = m_stagedMarks[size_t(axis)];
        marks.allocate(bufferRoom(m_slots.size()) * MARK_SIZE);
        marks.write(0, ends.data(), ends.size() * sizeof(float));
        ends = {};
    }
}

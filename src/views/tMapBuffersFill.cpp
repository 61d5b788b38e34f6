// SPDX-License-Identifier: MIT
// Filling the buffers: rows, slots, one leaf. All of a map is in tMapBuffersBuild.cpp.
#include "views/tMapBuffers.h"

#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tFace.h"
#include "document/tMapLists.h"
#include "support/tMath.h"
#include "support/tVec.h"

#include <algorithm>

// ---- Rows

size_t cMapBuffers::cKeyHash::operator()(const cDrawKey& key) const {
    const auto texture = reinterpret_cast<uintptr_t>(key.texture);
    const uint64_t rest = uint64_t(key.color) << 32 | uint64_t(key.kind) << 24 |
                          uint64_t(key.facing) << 16 | key.traits;
    const uint64_t mixed = (texture ^ rest * 0x9e3779b97f4a7c15u) * 0xff51afd7ed558ccdu;
    return size_t(mixed ^ mixed >> 32);
}

uint32_t cMapBuffers::rowOf(const cDrawKey& key) {
    cLastRow& last = m_lastRows[size_t(key.kind * 8 + key.facing)];
    if (last.row != NO_ROW && last.key == key)
        return last.row;
    const auto [found, isNew] = m_rowOf.emplace(key, uint32_t(m_rows.size()));
    if (isNew) {
        m_rows.push_back({key, {}});
        m_lists.emplace_back();
        m_order.clear();
    }
    last = {key, found->second};
    return found->second;
}

// Textures in the order in which they were met, so that no address decides what is drawn first.
void cMapBuffers::sortRows() {
    if (m_order.size() == m_rows.size())
        return;
    std::unordered_map<const cTexture*, uint32_t> met;
    m_order.resize(m_rows.size());
    for (uint32_t row = 0; row < m_rows.size(); ++row) {
        met.emplace(m_rows[row].key.texture, row);
        m_order[row] = row;
    }
    const auto rank = [&](uint32_t row) {
        const cDrawKey& key = m_rows[row].key;
        return std::make_tuple(key.kind, met[key.texture], key.color, key.traits, key.facing);
    };
    std::sort(m_order.begin(), m_order.end(),
              [&](uint32_t a, uint32_t b) { return rank(a) < rank(b); });
}

// ---- Slots

void cMapBuffers::makeShape(uint32_t number, uint32_t looks) {
    const cDrawSlot& slot = m_slots[number];
    const cShapeWish wish = {m_detailMask, m_markColor.data(), looks};
    if (slot.is(SLOT_BRUSH))
        m_shape.make(slot.brush(), wish);
    else
        m_shape.make(slot.entity(), wish);
}

uint32_t cMapBuffers::keptLooks() const {
    uint32_t looks = 0;
    for (size_t i = 0; i < LOOK_COUNT; ++i)
        looks |= m_looks[i].isEmpty() ? 0 : 1u << i;
    return looks;
}

void cMapBuffers::freeRoom(uint32_t first, uint32_t count) {
    if (count == 0)
        return;
    m_freeRooms[count].push_back(first);
    m_freeVertices += count;
}

uint32_t cMapBuffers::roomFor(uint32_t count) {
    const auto found = m_freeRooms.find(count);
    if (found != m_freeRooms.end() && !found->second.empty()) {
        const uint32_t first = found->second.back();
        found->second.pop_back();
        m_freeVertices -= count;
        return first;
    }
    growVertices(count);
    m_vertexEnd += count;
    return m_vertexEnd - count;
}

void cMapBuffers::growVertices(uint32_t count) {
    const size_t wanted = size_t(m_vertexEnd) + count;
    if (wanted * VERTEX_SIZE <= m_vertices.size())
        return;
    m_vertices.grow(bufferRoom(wanted) * VERTEX_SIZE);
    for (cGLBuffer& look : m_looks)
        if (!look.isEmpty())
            look.grow(bufferRoom(wanted) * sizeof(uint32_t));
}

void cMapBuffers::stage(const cObjectShape& shape) {
    m_stagedVertices.insert(m_stagedVertices.end(), shape.vertices.begin(), shape.vertices.end());
    for (size_t i = 0; i < LOOK_COUNT; ++i)
        m_stagedLooks[i].insert(m_stagedLooks[i].end(), shape.looks[i].begin(),
                                shape.looks[i].end());
}

void cMapBuffers::writeStaged(uint32_t first) {
    m_vertices.write(size_t(first) * VERTEX_SIZE, m_stagedVertices.data(),
                     m_stagedVertices.size() * VERTEX_SIZE);
    m_stagedVertices.clear();
    for (size_t i = 0; i < LOOK_COUNT; ++i) {
        m_looks[i].write(size_t(first) * sizeof(uint32_t), m_stagedLooks[i].data(),
                         m_stagedLooks[i].size() * sizeof(uint32_t));
        m_stagedLooks[i].clear();
    }
}

static void markOf(const float* center, int axis, float* ends) {
    vecCopy(center, ends);
    vecCopy(center, ends + 3);
    ends[axis] = -1;
    ends[axis + 3] = 1;
}

void cMapBuffers::stageMark(uint32_t number) {
    for (int axis = 0; axis < 3; ++axis) {
        std::vector<float>& ends = m_stagedMarks[size_t(axis)];
        ends.resize((size_t(number) + 1) * 6);
        markOf(m_shape.center, axis, &ends[size_t(number) * 6]);
    }
}

void cMapBuffers::writeMark(uint32_t number) {
    for (int axis = 0; axis < 3; ++axis) {
        float ends[6];
        markOf(m_shape.center, axis, ends);
        m_marks[size_t(axis)].write(size_t(number) * MARK_SIZE, ends, MARK_SIZE);
    }
}

void cMapBuffers::growMarks() {
    for (cGLBuffer& marks : m_marks)
        if (m_slots.size() * MARK_SIZE > marks.size())
            marks.grow(bufferRoom(m_slots.size()) * MARK_SIZE);
}

void cMapBuffers::writeSlot(uint32_t number) {
    stage(m_shape);
    writeStaged(m_slots[number].first);
    writeMark(number);
}

const cGLBuffer& cMapBuffers::look(eLook look) {
    if (m_looks[look].isEmpty())
        makeLook(look);
    return m_looks[look];
}

void cMapBuffers::makeLook(eLook look) {
    std::vector<uint32_t> colors(m_vertices.size() / VERTEX_SIZE);
    for (uint32_t number = 1; number < m_slots.size(); ++number) {
        if (!m_slots[number].record)
            continue;
        makeShape(number, 1u << look);
        const std::vector<uint32_t>& made = m_shape.looks[look];
        std::copy(made.begin(), made.end(), colors.begin() + m_slots[number].first);
    }
    m_looks[look].allocate(colors.size() * sizeof(uint32_t));
    m_looks[look].write(0, colors.data(), colors.size() * sizeof(uint32_t));
}

// ---- Indices

void cMapBuffers::addIndices(uint32_t number) {
    const cDrawSlot& slot = m_slots[number];
    const auto listOf = [this](const cDrawKey& key) -> cIndexList& {
        const uint32_t row = rowOf(key);
        if (m_lists[row].empty())
            m_listed.push_back(row);
        return m_lists[row];
    };
    for (const cShapeFace& face : m_shape.faces) {
        cIndexList& list = listOf(face.key);
        const uint32_t first = slot.first + face.first;
        for (uint32_t i = 2; i < face.count; ++i)
            list.insert(list.end(), {first, first + i - 1, first + i});
    }
    for (const cShapeEdges& edges : m_shape.edges) {
        if (edges.ends.empty())
            continue;
        cIndexList& list = listOf(edges.key);
        for (const uint32_t end : edges.ends)
            list.push_back(slot.first + end);
    }
    if (!slot.is(SLOT_BRUSH))
        return;
    cIndexList& corners = listOf(m_shape.cornerKey);
    for (const uint32_t corner : m_shape.flatCorners)
        corners.push_back(slot.first + corner);
    cIndexList& marks = listOf(m_shape.markKey);
    marks.insert(marks.end(), {number * 2, number * 2 + 1});
}

void addBounds(const cDrawSlot& slot, cDrawLeaf& leaf) {
    float mins[3], maxs[3];
    if (const cEntityData* entity = slot.entity()) {
        cullBounds(entity, mins, maxs);
    } else {
        vecCopy(slot.brush()->mins, mins);
        vecCopy(slot.brush()->maxs, maxs);
    }
    for (int i = 0; i < 3; ++i) {
        leaf.mins[i] = std::min(leaf.mins[i], mins[i]);
        leaf.maxs[i] = std::max(leaf.maxs[i], maxs[i]);
    }
}

void cDrawLeaf::clear() {
    isOld = false;
    isReselected = true;
    brushes = entities = faces = 0;
    translucent.clear();
    arrows.clear();
    figures.clear();
    T_ClearBounds(mins, maxs);
}

void cDrawLeaf::keepCore() {
    std::copy_n(mins, 3, coreMins);
    std::copy_n(maxs, 3, coreMaxs);
}

// Takes the object in m_shape into the counts and lists of its leaf, and its indices into those of
// the rows.
void cMapBuffers::listObject(uint32_t number) {
    const cDrawSlot& slot = m_slots[number];
    cDrawLeaf& leaf = m_leaves[slot.leaf];
    addBounds(slot, leaf);
    if (!m_shape.isShown)
        return;
    (slot.is(SLOT_BRUSH) ? leaf.brushes : leaf.entities) += 1;
    leaf.faces += int(m_shape.faces.size());
    if (m_shape.hasArrow)
        leaf.arrows.push_back(number);
    if (m_shape.isFigure())
        leaf.figures.push_back(number);
    addIndices(number);
    if (m_shape.isTranslucent)
        listTranslucent(leaf, number);
}

void cMapBuffers::listTranslucent(cDrawLeaf& leaf, uint32_t number) {
    for (const cShapeFace& face : m_shape.faces) {
        if (!face.isTranslucent)
            continue;
        const cFaceData* record = face.face;
        leaf.translucent.push_back({record,
                                    {},
                                    {},
                                    record->dist,
                                    m_slots[number].first + face.first,
                                    face.count,
                                    rowOf(face.key),
                                    number});
        vecCopy(record->face->center, leaf.translucent.back().center);
        vecCopy(record->normal, leaf.translucent.back().normal);
    }
}

void cMapBuffers::putCell(uint32_t row, uint32_t leaf, const cIndexList& indices) {
    std::vector<cDrawCell>& cells = m_rows[row].cells;
    auto cell = std::lower_bound(cells.begin(), cells.end(), leaf,
                                 [](const cDrawCell& a, uint32_t b) { return a.leaf < b; });
    if (cell == cells.end() || cell->leaf != leaf)
        cell = cells.insert(cell, {leaf, 0, 0, 0});
    const auto count = uint32_t(indices.size());
    if (count > cell->room) {
        m_lostIndices += cell->room;
        cell->first = m_indexEnd;
        cell->room = count + count / 4;
        m_indexEnd += cell->room;
        if (m_indexEnd * sizeof(uint32_t) > m_indices.size())
            m_indices.grow(bufferRoom(m_indexEnd) * sizeof(uint32_t));
    }
    cell->count = count;
    m_indices.write(cell->first * sizeof(uint32_t), indices.data(), count * sizeof(uint32_t));
}

void cMapBuffers::renewLeaf(uint32_t number) {
    if (m_leaves[number].objects.size() > 2 * cLeafTree::leafObjects)
        splitLeaf(number);
    buildLeaf(number);
    for (uint32_t row = 0; row < m_rows.size(); ++row) {
        std::vector<cDrawCell>& cells = m_rows[row].cells;
        const auto cell =
            std::lower_bound(cells.begin(), cells.end(), number,
                             [](const cDrawCell& a, uint32_t b) { return a.leaf < b; });
        if (!m_lists[row].empty())
            putCell(row, number, m_lists[row]);
        else if (cell != cells.end() && cell->leaf == number)
            cell->count = 0;
        m_lists[row].clear();
    }
    m_listed.clear();
    sortRows();
}

// Half of a leaf that has grown goes to a new one. What can't be parted stays.
void cMapBuffers::splitLeaf(uint32_t number) {
    float mins[3], maxs[3], middle = 0;
    T_ClearBounds(mins, maxs);
    const auto centerOf = [this](uint32_t slot, float* center) {
        makeShape(slot);
        vecCopy(m_shape.center, center);
    };
    std::vector<std::pair<float, uint32_t>> along;
    float center[3];
    for (const uint32_t slot : m_leaves[number].objects) {
        centerOf(slot, center);
        T_AddPointToBounds(center, mins, maxs);
    }
    const int axis = widestAxis(mins, maxs, &middle);
    if (axis < 0)
        return;
    const auto added = uint32_t(m_leaves.size());
    m_leaves.emplace_back();
    cDrawLeaf& low = m_leaves[number];
    cDrawLeaf& high = m_leaves[added];
    std::vector<uint32_t> kept;
    for (const uint32_t slot : low.objects) {
        centerOf(slot, center);
        if (center[axis] < middle) {
            kept.push_back(slot);
            continue;
        }
        high.objects.push_back(slot);
        m_slots[slot].leaf = added;
    }
    low.objects = std::move(kept);
    m_tree.split(number, axis, middle, added);
    m_oldLeaves.push_back(added);
}

void cMapBuffers::buildLeaf(uint32_t number) {
    m_leaves[number].clear();
    for (const uint32_t slot : m_leaves[number].objects) {
        makeShape(slot);
        listObject(slot);
    }
    m_leaves[number].keepCore();
}

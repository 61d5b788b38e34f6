// SPDX-License-Identifier: MIT
// What has become old since the last draw, and what is selected.
#include "views/tMapBuffers.h"

#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tMapLists.h"
#include "support/tMath.h"

#include <algorithm>

static constexpr size_t MANY_SLOTS = 1024;

cMapBuffers& cMapBuffers::of(cMap& map) {
    if (!map.watcher)
        map.watcher = std::make_unique<cMapBuffers>(map);
    return static_cast<cMapBuffers&>(*map.watcher);
}

cMapBuffers::cMapBuffers(cMap& map) : m_map(map) {}

cMapBuffers::~cMapBuffers() = default;

// ---- What is told

void cMapBuffers::allChanged() {
    m_allOld = true;
}

// While all is old a number may be one of an earlier build.
void cMapBuffers::noteOld(uint32_t number) {
    if (m_slots[number].is(SLOT_OLD))
        return;
    m_slots[number].flags |= SLOT_OLD;
    m_oldSlots.push_back(number);
}

uint32_t cMapBuffers::takeSlot(void* record, bool isBrush) {
    auto number = uint32_t(m_slots.size());
    if (m_freeSlots.empty()) {
        m_slots.emplace_back();
    } else {
        number = m_freeSlots.back();
        m_freeSlots.pop_back();
    }
    m_slots[number] = {};
    m_slots[number].record = record;
    m_slots[number].flags = uint16_t(SLOT_STRAY | (isBrush ? SLOT_BRUSH : 0));
    return number;
}

// The number is given anew only when the list of old slots has been worked off.
void cMapBuffers::freeSlot(uint32_t& number) {
    if (number == 0 || m_allOld)
        return;
    cDrawSlot& slot = m_slots[number];
    if (!slot.is(SLOT_STRAY)) {
        cDrawLeaf& leaf = m_leaves[slot.leaf];
        leaf.objects.erase(std::find(leaf.objects.begin(), leaf.objects.end(), number));
        leaf.isOld = true;
        m_oldLeaves.push_back(slot.leaf);
        freeRoom(slot.first, slot.count);
    }
    slot.record = nullptr;
    slot.flags &= ~uint16_t(SLOT_MOVING | SLOT_SELECTED);
    noteOld(number);
    number = 0;
}

void cMapBuffers::brushChanged(cBrushData* brush) {
    if (m_allOld)
        return;
    uint32_t& number = brush->brush->viewSlot;
    if (number == 0)
        number = takeSlot(brush, true);
    noteOld(number);
}

void cMapBuffers::brushGone(cBrushData* brush) {
    freeSlot(brush->brush->viewSlot);
}

void cMapBuffers::entityGone(cEntityData* entity) {
    freeSlot(entity->entity->viewSlot);
}

// What of an entity decides how its brushes look.
uint32_t lookOnBrushes(const cEntityData* entity) {
    static constexpr uint32_t OF_OTHERS = EF_DIRTY | EF_HIDDEN | EF_ITEM | EF_PATH;
    const uint32_t seen = EF_TRANSPARENT | (entity->flags & EF_WORLD ? 0 : OF_OTHERS);
    uint32_t look = (entity->flags & seen) ^ entity->renderFlags * 0x9e3779b1u;
    const uint8_t* const colors[] = {entity->entity->color, entity->renderColor};
    for (const uint8_t* color : colors)
        for (int i = 0; i < 4; ++i)
            look = (look ^ color[i]) * 0x01000193u;
    const uint64_t group = reinterpret_cast<uintptr_t>(entity->group);
    return look ^ uint32_t(group) ^ uint32_t(group >> 32);
}

void cMapBuffers::entityChanged(cEntityData* entity) {
    if (m_allOld)
        return;
    uint32_t& number = entity->entity->viewSlot;
    const uint32_t look = lookOnBrushes(entity);
    if (entity->flags & EF_WORLD) {
        m_allOld = look != entity->entity->viewLook;
        return;
    }
    if (look != entity->entity->viewLook)
        for (cBrushData* brush : brushesOf(entity))
            brushChanged(brush);
    entity->entity->viewLook = look;
    if (entity->brushes) {
        freeSlot(number);
        return;
    }
    if (number == 0)
        number = takeSlot(entity, false);
    noteOld(number);
}

// ---- Renewal

void cMapBuffers::update(uint32_t detailMask, const uint8_t* markColor) {
    if (detailMask != m_detailMask ||
        !std::equal(m_markColor.begin(), m_markColor.end(), markColor))
        m_allOld = true;
    // One by one they would take longer than all at once.
    if (m_bufferKind != cGLBuffer::kind() || m_oldSlots.size() > MANY_SLOTS + m_slots.size() / 4)
        m_allOld = true;
    const bool reselected = m_allOld || m_map.revision() != m_seenRevision;
    if (!m_allOld && !reselected && m_oldSlots.empty())
        return;
    m_detailMask = detailMask;
    std::copy_n(markColor, 4, m_markColor.begin());
    m_seenRevision = m_map.revision();
    if (!m_allOld)
        renewSlots();
    if (m_allOld || m_lostIndices > m_indexEnd / 2 || m_freeVertices > m_vertexEnd / 2)
        build();
    compareSelection();
    for (cDrawLeaf& leaf : m_leaves) {
        if (!leaf.isReselected)
            continue;
        countSelected(leaf);
        m_selectionOld = true;
    }
    if (m_selectionOld)
        gatherSelected();
    cGLBuffer::unbind();
}

void cMapBuffers::renewSlots() {
    growMarks();
    for (const uint32_t number : m_oldSlots) {
        m_slots[number].flags &= ~uint16_t(SLOT_OLD);
        if (m_slots[number].record)
            renewSlot(number);
        else
            m_freeSlots.push_back(number);
    }
    m_oldSlots.clear();
    for (size_t i = 0; i < m_oldLeaves.size(); ++i) // a split adds to them
        if (m_leaves[m_oldLeaves[i]].isOld)
            renewLeaf(m_oldLeaves[i]);
    m_oldLeaves.clear();
    m_moving.erase(std::remove_if(m_moving.begin(), m_moving.end(),
                                  [this](uint32_t slot) { return !m_slots[slot].is(SLOT_MOVING); }),
                   m_moving.end());
}

// An object far outside of what its leaf covers goes to the one where it belongs.
static bool hasStrayed(const cDrawLeaf& leaf, const float* center) {
    for (int i = 0; i < 3; ++i) {
        const float margin = (leaf.coreMaxs[i] - leaf.coreMins[i]) * 0.5f;
        if (center[i] < leaf.coreMins[i] - margin || center[i] > leaf.coreMaxs[i] + margin)
            return true;
    }
    return false;
}

void cMapBuffers::renewSlot(uint32_t number) {
    makeShape(number, keptLooks());
    cDrawSlot& slot = m_slots[number];
    const uint32_t signature = m_shape.signature;
    const auto count = uint32_t(m_shape.vertices.size());
    const auto markOld = [this](uint32_t leaf) {
        m_leaves[leaf].isOld = true;
        m_oldLeaves.push_back(leaf);
    };
    if (!slot.is(SLOT_STRAY) && hasStrayed(m_leaves[slot.leaf], m_shape.center)) {
        std::vector<uint32_t>& held = m_leaves[slot.leaf].objects;
        held.erase(std::find(held.begin(), held.end(), number));
        markOld(slot.leaf);
        freeRoom(slot.first, slot.count);
        slot.count = 0;
        slot.flags |= SLOT_STRAY;
    }
    const bool same = !slot.is(SLOT_STRAY) && signature == slot.signature && count == slot.count &&
                      !m_shape.isTranslucent && !slot.is(SLOT_TRANSLUCENT);
    if (slot.is(SLOT_STRAY))
        placeStray(number);
    if (count != slot.count) {
        freeRoom(slot.first, slot.count);
        slot.first = roomFor(count);
        slot.count = count;
    }
    if (!same)
        markOld(slot.leaf);
    if (m_shape.isMoving && !slot.is(SLOT_MOVING))
        m_moving.push_back(number);
    takeShape(slot);
    cDrawLeaf& leaf = m_leaves[slot.leaf];
    addBounds(slot, leaf);
    writeSlot(number);
}

// What the slot keeps of the shape in work.
void cMapBuffers::takeShape(cDrawSlot& slot) {
    const auto set = [&slot](eSlotFlag flag, bool on) {
        slot.flags = uint16_t(on ? slot.flags | flag : slot.flags & ~flag);
    };
    slot.signature = m_shape.signature;
    slot.traits = m_shape.traits;
    set(SLOT_STRAY, false);
    set(SLOT_SHOWN, m_shape.isShown);
    set(SLOT_MOVING, m_shape.isMoving);
    set(SLOT_QUADS, m_shape.isQuads);
    set(SLOT_TRANSLUCENT, m_shape.isTranslucent);
}

void cMapBuffers::placeStray(uint32_t number) {
    cDrawSlot& slot = m_slots[number];
    slot.leaf = m_tree.leafAt(m_shape.center);
    m_leaves[slot.leaf].objects.push_back(number);
}

// ---- Selection

void cMapBuffers::markSelected(uint32_t number) {
    if (number == 0)
        return;
    cDrawSlot& slot = m_slots[number];
    if (!slot.is(SLOT_SELECTED)) {
        slot.flags |= SLOT_SELECTED;
        m_leaves[slot.leaf].isReselected = true;
    }
    slot.flags |= SLOT_STILL;
    m_selectedSlots.push_back(number);
}

void cMapBuffers::compareSelection() {
    const std::vector<uint32_t> before = std::move(m_selectedSlots);
    m_selectedSlots.clear();
    for (const cBrushData* brush : selectedBrushesOf(m_map.data))
        markSelected(brush->brush->viewSlot);
    for (const cEntityData* entity : selectedEntitiesOf(m_map.data))
        markSelected(entity->entity->viewSlot);
    for (const uint32_t number : before) {
        cDrawSlot& slot = m_slots[number];
        if (slot.is(SLOT_STILL) || !slot.is(SLOT_SELECTED))
            continue;
        slot.flags &= ~uint16_t(SLOT_SELECTED);
        m_leaves[slot.leaf].isReselected = true;
    }
    for (const uint32_t number : m_selectedSlots)
        m_slots[number].flags &= ~uint16_t(SLOT_STILL);
}

void cMapBuffers::countSelected(cDrawLeaf& leaf) {
    leaf.isReselected = false;
    leaf.selected = 0;
    leaf.outlines.clear();
    for (const uint32_t number : leaf.objects) {
        const cDrawSlot& slot = m_slots[number];
        if (!slot.is(SLOT_SHOWN) || !slot.is(SLOT_SELECTED))
            continue;
        ++leaf.selected;
        if (slot.is(SLOT_BRUSH))
            addOutlines(leaf, number);
    }
}

void cMapBuffers::addOutlines(cDrawLeaf& leaf, uint32_t number) {
    const cDrawSlot& slot = m_slots[number];
    if (slot.is(SLOT_QUADS) && !slot.is(SLOT_TRANSLUCENT)) {
        std::vector<cOutlineRun>& runs = leaf.outlines;
        if (!runs.empty() && runs.back().row == cOutlineRun::MANY &&
            runs.back().first + runs.back().count == slot.first)
            runs.back().count += slot.count;
        else
            runs.push_back({slot.first, slot.count, cOutlineRun::MANY});
        return;
    }
    makeShape(number);
    for (const cShapeFace& face : m_shape.faces)
        leaf.outlines.push_back({slot.first + face.first, face.count, rowOf(face.key)});
}

// The selected objects of leaves that hold others, too.
void cMapBuffers::gatherSelected() {
    m_selectionOld = false;
    for (const uint32_t number : m_selectedSlots) {
        const cDrawSlot& slot = m_slots[number];
        if (!slot.is(SLOT_SHOWN) || m_leaves[slot.leaf].isWhollySelected())
            continue;
        makeShape(number);
        addIndices(number);
    }
    m_selectedCells.clear();
    cIndexList all;
    std::sort(m_listed.begin(), m_listed.end());
    for (const uint32_t row : m_listed) {
        const auto count = uint32_t(m_lists[row].size());
        m_selectedCells.push_back({row, uint32_t(all.size()), count});
        all.insert(all.end(), m_lists[row].begin(), m_lists[row].end());
        m_lists[row].clear();
    }
    m_listed.clear();
    if (!all.empty())
        m_selectedIndices.replace(all.data(), all.size() * sizeof(uint32_t));
}

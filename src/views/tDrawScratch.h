// SPDX-License-Identifier: MIT
// The painter's own: arrays that are kept from draw to draw, and its walks over rows.
#pragma once

#include "document/tEntity.h"
#include "views/tMapPainter.h"

struct cMapPainter::cScratch {
    static cScratch& shared();

    std::vector<uint8_t> masks;
    cDrawRanges ranges;
    std::vector<int32_t> firsts; // vertices of outlines
    std::vector<int32_t> counts;
    std::vector<uint64_t> distances;           // far first, of the same what was met first
    std::vector<cTranslucentItem> translucent; // as they were met
    std::vector<uint32_t> indices;             // of the faces in the order drawn
    cGLBuffer indexBuffer{cGLBuffer::INDICES};
};

// take(number, key) for each row of that kind the view does not hide, in the order to be drawn.
template<class Take> void cMapPainter::eachRow(eDrawKind kind, Take take) {
    for (const uint32_t number : m_buffers.order()) {
        const cDrawKey& key = m_buffers.row(number).key;
        if (key.kind == kind && !isHidden(key))
            take(number, key);
    }
}

// take(slot, entity) for each entity in view that has a sprite or a model and is not hidden.
template<class Take> void cMapPainter::eachFigure(Take take) {
    for (uint32_t leaf = 0; leaf < m_masks.size(); ++leaf) {
        if (!isLeafVisible(leaf))
            continue;
        for (const uint32_t number : m_buffers.leaves()[leaf].figures) {
            const cDrawSlot& slot = m_buffers.slot(number);
            if (isHiddenByTraits(slot.traits))
                continue;
            float mins[3], maxs[3];
            cullBounds(slot.entity(), mins, maxs);
            if (!m_view.frustum->cullBox(mins, maxs))
                take(slot, slot.entity());
        }
    }
}

// draw(key, cell) for the selected objects of leaves that hold others too, with their indices
// bound.
template<class Draw> void cMapPainter::eachSelectedCell(Draw draw) {
    if (m_buffers.selectedCells().empty())
        return;
    const uint8_t* const before = m_indices;
    m_indices = m_buffers.selectedIndices().bind();
    for (const cSelectedCell& cell : m_buffers.selectedCells()) {
        const cDrawKey& key = m_buffers.row(cell.row).key;
        if (!isHidden(key))
            draw(key, cell);
    }
    m_buffers.indices().bind();
    m_indices = before;
}

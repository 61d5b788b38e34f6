// SPDX-License-Identifier: MIT
// What is seen through: drawn when all opaque objects are, far first.
#include "document/tEntity.h"
#include "document/tFace.h"
#include "document/tTexture.h"
#include "support/tSettings.h"
#include "support/tVec.h"
#include "views/tDrawScratch.h"
#include "views/tFigureDraw.h"
#include "views/tGLState.h"

#include <algorithm>
#include <qopengl.h>

static constexpr float BACK_MARGIN = 2.0f; // units: keeps faces just behind the camera

// The texture's word, with the entity's where the texture does not blend.
static uint32_t stateOf(const cTranslucentFace& face, const cDrawKey& key) {
    uint32_t state = key.texture ? key.texture->renderState : 0;
    if ((state & GLS_BLEND_MASK) == 0)
        state |= face.face->brush->owner->renderFlags;
    return state;
}

bool cMapPainter::isFaceSeenThrough(const cTranslucentFace& face) const {
    const cDrawKey& key = m_buffers.row(face.row).key;
    return vecDot(face.normal, m_view.origin) >= face.dist - BACK_MARGIN && !isHidden(key) &&
           isPutOff(key);
}

// Far first; of the same distance, or without sorting, what was met first.
void cMapPainter::addTranslucent(const cTranslucentItem& item, const float* place) {
    uint32_t rank = 0;
    if (m_view.has(VF_TRANSPARENT_SORT)) {
        float away[3];
        vecSubtract(place, m_view.origin, away);
        static constexpr float FARTHEST = 1e9f; // so is what is no number
        const float distance = vecLength(away);
        rank = ~uint32_t(distance < FARTHEST ? distance : FARTHEST);
    }
    m_scratch.distances.push_back(uint64_t(rank) << 32 | m_scratch.translucent.size());
    m_scratch.translucent.push_back(item);
}

void cMapPainter::gatherTranslucent() {
    std::vector<uint64_t>& distances = m_scratch.distances;
    m_scratch.translucent.clear();
    distances.clear();
    for (uint32_t leaf = 0; leaf < m_masks.size(); ++leaf) {
        if (!isLeafVisible(leaf))
            continue;
        for (const cTranslucentFace& face : m_buffers.leaves()[leaf].translucent)
            if (isFaceSeenThrough(face))
                addTranslucent({&face, &m_buffers.slot(face.slot)}, face.center);
    }
    eachFigure([&](const cDrawSlot& slot, const cEntityData* entity) {
        if (hasRenderObject(entity, m_view) && isFigurePutOff(entity))
            addTranslucent({nullptr, &slot}, entity->origin);
    });
    std::sort(distances.begin(), distances.end());
    for (uint64_t& entry : distances)
        entry = uint32_t(entry);
}

// Runs of one state word and one texture share a call, so the order from far to near is kept. A
// selected face has its outline drawn before the next face.
void cMapPainter::drawTranslucent() {
    gatherTranslucent();
    if (m_scratch.translucent.empty())
        return;
    std::vector<uint32_t>& indices = m_scratch.indices;
    indices.clear();
    for (const uint64_t place : m_scratch.distances) {
        const cTranslucentFace* face = m_scratch.translucent[size_t(place)].face;
        for (uint32_t i = 2; face && i < face->count; ++i)
            indices.insert(indices.end(), {face->first, face->first + i - 1, face->first + i});
    }
    cGLBuffer& buffer = m_scratch.indexBuffer;
    buffer.replace(indices.data(), indices.size() * sizeof(uint32_t));
    m_indices = buffer.bind();
    GL_ResetState(GLS_ALPHA_TEST);
    drawTranslucentRuns();
    GL_ResetState(GLS_DEFAULT);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    m_stats.faces += int(m_scratch.translucent.size());
    m_indices = m_buffers.indices().bind();
}

struct cTranslucentRun {
    uint32_t state;
    const cTextureImage* image;
    bool marked; // in the colour of what is selected
    bool outlined;
    bool operator==(const cTranslucentRun& other) const {
        return state == other.state && image == other.image && marked == other.marked &&
               !outlined && !other.outlined;
    }
};

void cMapPainter::drawTranslucentRuns() {
    const std::vector<uint64_t>& order = m_scratch.distances;
    uint32_t firstIndex = 0;
    for (size_t next = 0; next < order.size();) {
        const cTranslucentItem& item = m_scratch.translucent[size_t(order[next])];
        if (item.face) {
            drawTranslucentFaces(next, firstIndex);
            continue;
        }
        drawTranslucentFigure(item);
        ++next;
    }
    bindImage(nullptr);
    noColors();
}

// The run of faces that begins there.
void cMapPainter::drawTranslucentFaces(size_t& next, uint32_t& firstIndex) {
    const auto itemAt = [this](size_t place) -> const cTranslucentItem& {
        return m_scratch.translucent[size_t(m_scratch.distances[place])];
    };
    const auto runOf = [this](const cTranslucentItem& item) {
        const cDrawKey& key = m_buffers.row(item.face->row).key;
        const bool selected = item.slot->is(SLOT_SELECTED);
        const bool ofFace =
            (item.face->face->flags & FF_SELECTED) && !(m_view.hideMask & HM_FACE_MASK);
        return cTranslucentRun{stateOf(*item.face, key), imageOf(key), selected || ofFace,
                               selected && !m_view.has(VF_MORPHING)};
    };
    const cTranslucentFace& face = *itemAt(next).face;
    const cTranslucentRun run = runOf(itemAt(next));
    uint32_t count = 0;
    do {
        count += (itemAt(next).face->count - 2) * 3;
        ++next;
    } while (next < m_scratch.distances.size() && itemAt(next).face && runOf(itemAt(next)) == run);
    drawTranslucentRun(run, firstIndex, count);
    if (run.outlined)
        drawTranslucentOutline(face);
    firstIndex += count;
}

void cMapPainter::drawTranslucentRun(const cTranslucentRun& run, uint32_t first, uint32_t count) {
    GL_State(run.state);
    bindImage(run.image);
    if (m_view.renderMode == RM_TEXTURED)
        pointAtTextured();
    if (run.marked)
        pointAtColors(m_buffers.look(LOOK_MARKED));
    else if (m_view.renderMode != RM_TEXTURED)
        pointAtColors(m_buffers.look(LOOK_FILLED));
    pointAtVertices();
    m_ranges.add(first, count);
    drawRanges(GL_TRIANGLES);
}

void cMapPainter::drawTranslucentOutline(const cTranslucentFace& face) {
    bindImage(nullptr);
    noColors();
    cGLBuffer::unbind();
    m_batch.outline(face.face, m_view.settings.color(COLOR_SELECTED_LINE));
    m_batch.flush();
    m_indices = m_scratch.indexBuffer.bind();
}

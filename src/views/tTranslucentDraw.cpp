// SPDX-License-Identifier: MIT
// What is seen through: drawn when all opaque objects are, far first.
#include "document/tEntity.h"
#include "document/tFace.h"
#include "document/tTexture.h"
#include "support/tSettings.h"
#include "support/tVec.h"
#include "views/tDrawScratch.h"
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

void cMapPainter::gatherTranslucent() {
    std::vector<const cTranslucentFace*>& faces = m_scratch.translucent;
    std::vector<uint64_t>& distances = m_scratch.distances;
    faces.clear();
    distances.clear();
    const bool sorted = m_view.has(VF_TRANSPARENT_SORT);
    for (uint32_t leaf = 0; leaf < m_masks.size(); ++leaf) {
        if (!isLeafVisible(leaf))
            continue;
        for (const cTranslucentFace& face : m_buffers.leaves()[leaf].translucent) {
            const cDrawKey& key = m_buffers.row(face.row).key;
            if (vecDot(face.normal, m_view.origin) < face.dist - BACK_MARGIN || isHidden(key) ||
                !isPutOff(key))
                continue;
            uint32_t rank = 0; // far first; of the same distance what was met last
            if (sorted) {
                float away[3];
                vecSubtract(face.center, m_view.origin, away);
                rank = ~uint32_t(int(vecLength(away)));
            }
            const auto met = uint32_t(faces.size());
            distances.push_back(uint64_t(rank) << 32 | (sorted ? ~met : met));
            faces.push_back(&face);
        }
    }
    if (sorted)
        std::sort(distances.begin(), distances.end());
    for (uint64_t& entry : distances)
        entry = sorted ? ~uint32_t(entry) : uint32_t(entry);
}

// Runs of one state word and one texture share a call, so the order from far to near is kept. A
// selected face has its outline drawn before the next face.
void cMapPainter::drawTranslucent() {
    gatherTranslucent();
    const std::vector<const cTranslucentFace*>& faces = m_scratch.translucent;
    if (faces.empty())
        return;
    std::vector<uint32_t>& indices = m_scratch.indices;
    indices.clear();
    for (const uint64_t place : m_scratch.distances) {
        const cTranslucentFace& face = *faces[size_t(place)];
        for (uint32_t i = 2; i < face.count; ++i)
            indices.insert(indices.end(), {face.first, face.first + i - 1, face.first + i});
    }
    cGLBuffer& buffer = m_scratch.indexBuffer;
    buffer.replace(indices.data(), indices.size() * sizeof(uint32_t));
    m_indices = buffer.bind();
    GL_ResetState(GLS_ALPHA_TEST);
    drawTranslucentRuns();
    GL_ResetState(GLS_DEFAULT);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    m_stats.faces += int(faces.size());
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
    const auto runOf = [this](const cTranslucentFace& face) {
        const cDrawKey& key = m_buffers.row(face.row).key;
        const bool selected = m_buffers.slot(face.slot).is(SLOT_SELECTED);
        const bool ofFace = (face.face->flags & FF_SELECTED) && !(m_view.hideMask & HM_FACE_MASK);
        return cTranslucentRun{stateOf(face, key), imageOf(key), selected || ofFace,
                               selected && !m_view.has(VF_MORPHING)};
    };
    const std::vector<uint64_t>& order = m_scratch.distances;
    uint32_t firstIndex = 0;
    for (size_t i = 0; i < order.size();) {
        const cTranslucentFace& face = *m_scratch.translucent[size_t(order[i])];
        const cTranslucentRun run = runOf(face);
        uint32_t count = 0;
        do {
            count += (m_scratch.translucent[size_t(order[i])]->count - 2) * 3;
            ++i;
        } while (i < order.size() && runOf(*m_scratch.translucent[size_t(order[i])]) == run);
        drawTranslucentRun(run, firstIndex, count);
        if (run.outlined)
            drawTranslucentOutline(face);
        firstIndex += count;
    }
    bindImage(nullptr);
    noColors();
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

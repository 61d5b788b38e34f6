// SPDX-License-Identifier: MIT
// What is seen through: put off while the opaque objects are drawn, then drawn far first.
#include "views/tMapPainter.h"

#include "document/tBrush.h"
#include "document/tFace.h"
#include "document/tTexture.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tVec.h"
#include "views/tGLState.h"

#include <QGLContext>
#include <algorithm>

void cMapPainter::putOff(eDrawnKind kind, void* object, const float* center) {
    int distance = 0;
    if (m_view.has(VF_TRANSPARENT_SORT)) {
        float away[3];
        vecSubtract(center, m_view.origin, away);
        distance = int(vecLength(away));
    }
    m_transparent.push_back({distance, kind, object});
}

void cMapPainter::drawTransparent() {
    // Of the same distance, what was met last goes first.
    if (m_view.has(VF_TRANSPARENT_SORT)) {
        std::reverse(m_transparent.begin(), m_transparent.end());
        std::stable_sort(m_transparent.begin(), m_transparent.end(),
                         [](const cTransparentEntry& a, const cTransparentEntry& b) {
                             return a.distance > b.distance;
                         });
    }
    GL_ResetState(GLS_ALPHA_TEST);
    for (const cTransparentEntry& entry : m_transparent)
        if (entry.kind == DRAWN_FACE)
            drawTransparentFace(static_cast<const cFaceData*>(entry.object));
    m_batch.flush();
    GL_ResetState(GLS_DEFAULT);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    m_transparent.clear();
}

// The texture's word, with the entity's where the texture does not blend.
static uint32_t transparentState(const cFaceData* face) {
    uint32_t state = face->texture ? face->texture->renderState : 0;
    if ((state & GLS_BLEND_MASK) == 0)
        state |= face->brush->owner->renderFlags;
    return state;
}

static float transparentAlpha(const cFaceData* face) {
    static constexpr float MIN_ALPHA = 0.2f;
    const cEntityData* owner = face->brush->owner;
    float alpha = face->texture ? face->texture->opacity : 1.0f;
    if (!(owner->flags & EF_WORLD))
        alpha *= float(owner->renderColor[3]) / 255.0f;
    return std::clamp(alpha, MIN_ALPHA, 1.0f);
}

// Runs of one state word and one texture share a call, so the order from far to near is kept.
void cMapPainter::drawTransparentFace(const cFaceData* face) {
    const uint32_t state = transparentState(face);
    const cTextureImage* image =
        face->texture && m_view.renderMode == RM_TEXTURED ? face->texture->image : nullptr;
    if (state != GL_CurrentState() || !m_batch.keepsOrder(image))
        m_batch.flush();
    GL_State(state);
    ++m_stats.faces;
    const cBrushLook look = lookOf(face->brush);
    uint8_t rgba[4];
    fillColor(face, look, rgba);
    rgba[3] = uint8_t(float(rgba[3]) * transparentAlpha(face));
    drawFace3D(face, look, rgba);
}

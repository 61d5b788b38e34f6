// SPDX-License-Identifier: MIT
// The figures of a map's picture: what entities show in place of their boxes. Gathered anew each
// frame from the leaves in view; the corners stand in the recordings of their models.
#include "document/tEntity.h"
#include "support/tVec.h"
#include "views/tDrawScratch.h"
#include "views/tFigureDraw.h"
#include "views/tGLState.h"
#include "views/tLooseDraw.h"

#include <qopengl.h>

// In every OpenGL library since 1.4; the system's header declares it only on demand.
extern "C" void GLAPIENTRY glMultiDrawArrays(GLenum mode, const GLint* first, const GLsizei* count,
                                             GLsizei primitives);

// A box that is not drawn, as all of its kind show something else.
bool cMapPainter::isReplaced(const cDrawKey& key) const {
    if (key.traits & TRAIT_SPRITE)
        return m_view.is3D;
    return (key.traits & TRAIT_MODEL) && m_view.has(VF_MODELS);
}

// Drawn when all opaque objects are.
bool cMapPainter::isFigurePutOff(const cEntityData* entity) const {
    if (!m_view.has(VF_TRANSPARENCY))
        return false;
    const void* record = static_cast<const cAttachment*>(entity->attachment)->record;
    const bool byModel = entity->attachKind == AK_MODEL &&
                         static_cast<const cModelRecord*>(record)->transparent != 0;
    return (m_view.settings.entityTransparency && (entity->flags & EF_TRANSPARENT)) ||
           (m_view.settings.textureTransparency && byModel);
}

void cMapPainter::figureColor(const cEntityData* entity, bool isSelected, uint8_t* rgba) const {
    static const uint8_t white[4] = {255, 255, 255, 255};
    const bool isWired = m_view.is3D && m_view.isWireframe();
    if (isSelected)
        memcpy(rgba, m_view.settings.color(isWired ? COLOR_SELECTED_LINE : COLOR_SELECTED_FILL), 4);
    else if (entity->attachKind == AK_SPRITE && !isWired)
        memcpy(rgba, white, 4);
    else
        entityColor(entity, rgba);
}

void cMapPainter::drawFigures(eWhich which) {
    cGLBuffer::unbind();
    cModelBatch models(m_view, m_stats);
    m_scratch.firsts.clear();
    m_scratch.counts.clear();
    eachFigure([&](const cDrawSlot& slot, const cEntityData* entity) {
        if (slot.is(SLOT_SELECTED) != (which == SELECTED) || (slot.is(SLOT_MOVING) && !m_view.is3D))
            return;
        uint8_t rgba[4];
        figureColor(entity, which == SELECTED, rgba);
        if (!hasRenderObject(entity, m_view))
            addFarBox(slot, rgba);
        else if (isFigurePutOff(entity))
            return;
        else if (entity->attachKind == AK_MODEL)
            models.add(entity, rgba);
        else
            drawSprite(entity, m_view, m_stats, GLS_ALPHA_TEST | GLS_DEPTH_WRITE, rgba);
    });
    models.flush();
    m_batch.flush();
    drawFarBoxes(which);
    m_indices = m_buffers.indices().bind();
}

// ---- Models too far away to be shown

// The edges of a selected one are drawn with those of the others.
void cMapPainter::addFarBox(const cDrawSlot& slot, const uint8_t* rgba) {
    if (!m_view.is3D)
        return; // as all boxes of its row
    if (m_view.isWireframe()) {
        if (!slot.is(SLOT_SELECTED))
            m_batch.boxLines(slot.entity()->mins, slot.entity()->maxs, rgba);
        return;
    }
    m_scratch.firsts.push_back(int32_t(slot.first));
    m_scratch.counts.push_back(int32_t(slot.count));
}

void cMapPainter::drawFarBoxes(eWhich which) {
    if (m_scratch.firsts.empty())
        return;
    if (which == SELECTED)
        pointAtColors(m_buffers.look(LOOK_MARKED));
    else
        pointAtTextured(); // without a texture these are their colours
    pointAtVertices();
    glMultiDrawArrays(GL_QUADS, m_scratch.firsts.data(), m_scratch.counts.data(),
                      GLsizei(m_scratch.firsts.size()));
    ++g_drawTraffic.calls;
    g_drawTraffic.ranges += m_scratch.firsts.size();
    noColors();
}

// ---- Seen through

void cMapPainter::drawTranslucentFigure(const cTranslucentItem& item) {
    const cEntityData* entity = item.slot->entity();
    bindImage(nullptr);
    noColors();
    cGLBuffer::unbind();
    uint8_t rgba[4];
    figureColor(entity, item.slot->is(SLOT_SELECTED), rgba);
    if (entity->attachKind == AK_SPRITE) {
        rgba[3] = translucentAlpha(entity);
        drawSprite(entity, m_view, m_stats, translucentWord(entity), rgba);
    } else {
        cModelBatch models(m_view, m_stats);
        models.addTranslucent(entity, rgba);
        models.flush();
    }
    m_indices = m_scratch.indexBuffer.bind();
}

// ---- Moving ones, in 2D views

void cMapPainter::drawMovingModel(const cEntityData* entity) {
    uint8_t rgba[4];
    shadeColor(m_view.settings.color(COLOR_SELECTED_FILL), MOVING_DIM, rgba);
    cModelBatch models(m_view, m_stats);
    glEnable(GL_LINE_STIPPLE);
    models.add(entity, rgba);
    models.flush();
    glDisable(GL_LINE_STIPPLE);
}

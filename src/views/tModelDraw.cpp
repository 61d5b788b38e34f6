// SPDX-License-Identifier: MIT
// Models of entities, and what is the same for sprites.
#include "document/tEntity.h"
#include "support/tVec.h"
#include "views/tFigureDraw.h"
#include "views/tGLState.h"

#include <algorithm>
#include <cmath>
#include <qopengl.h>

bool hasRenderObject(const cEntityData* entity, const cViewInfo& view) {
    if (entity->attachKind == AK_SPRITE)
        return view.is3D;
    // A decal has no shape before it is cut by the faces it lies on.
    if (entity->attachKind != AK_MODEL || !view.has(VF_MODELS))
        return false;
    float away[3];
    vecSubtract(entity->origin, view.origin, away);
    return !view.is3D || vecLength(away) < view.modelRenderDistance;
}

uint32_t translucentWord(const cEntityData* entity) {
    return entity->renderFlags & GLS_BLEND_MASK ? entity->renderFlags : uint32_t(GLS_BLEND_ALPHA);
}

uint8_t translucentAlpha(const cEntityData* entity) {
    return std::max(entity->renderColor[3], uint8_t(51));
}

// ---- Frames

float framePosition(const cEntityData* entity, float step, const cViewInfo& view,
                    double& changesAt) {
    const auto rate = double(entity->frameRate); // frames a second
    if (!(step > 0) || !(rate > 0) || !std::isfinite(rate))
        return 0;
    const double steps = std::floor(view.seconds * rate / double(step));
    if (view.has(VF_ANIMATE))
        changesAt = std::min(changesAt, (steps + 1) * double(step) / rate);
    return float(steps * double(step));
}

// ---- Models

// Bits of the mode of tpRenderModel.
static int modeOf(const cViewInfo& view) {
    static constexpr int FLAT = 1, CAMERA = 2;
    if (view.isPicking() || (view.is3D && view.renderMode != RM_TEXTURED))
        return CAMERA | FLAT;
    return view.is3D ? CAMERA : FLAT;
}

cModelCall cModelBatch::callOf(const cEntityData* entity) {
    const float step = cModelPoses::shared().frameStep(entity, m_view);
    const float frame = framePosition(entity, step, m_view, m_stats.changesAt);
    return {entity, entity->angles, modeOf(m_view), GLS_DEFAULT, 255, frame};
}

void cModelBatch::add(const cEntityData* entity, const uint8_t* rgba) {
    addCall(callOf(entity), entity->origin, rgba);
}

void cModelBatch::addTranslucent(const cEntityData* entity, const uint8_t* rgba) {
    cModelCall call = callOf(entity);
    call.word = translucentWord(entity);
    call.alpha = translucentAlpha(entity);
    const uint8_t color[4] = {rgba[0], rgba[1], rgba[2], call.alpha};
    addCall(call, entity->origin, color);
}

void cModelBatch::addMoved(const cEntityData* entity, const float* origin, const float* angles,
                           const uint8_t* rgba) {
    cModelCall call = callOf(entity);
    call.angles = angles;
    addCall(call, origin, rgba);
}

void cModelBatch::addCall(const cModelCall& call, const float* origin, const uint8_t* rgba) {
    if (const auto* pose = cModelPoses::shared().find(call, m_view)) {
        const cModelPlace place = {{origin[0], origin[1], origin[2]},
                                   usedScale(call.entity),
                                   {rgba[0], rgba[1], rgba[2], rgba[3]}};
        m_entries.push_back({pose, place});
        return;
    }
    beginModels();
    GL_LineWidth(lineWidth);
    glColor4ubv(rgba);
    cModelPoses::shared().drawUnkept(call, origin, m_view);
    endModels();
}

void cModelBatch::beginModels() const {
    glCullFace(GL_FRONT); // their triangles come clockwise
    if (!m_view.is3D)
        glDisable(GL_CULL_FACE);
    if (showsLines())
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
}

void cModelBatch::endModels() {
    GL_LineWidth(1);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);
}

void cModelBatch::flush() {
    if (m_entries.empty())
        return;
    std::stable_sort(m_entries.begin(), m_entries.end(), [](const cEntry& a, const cEntry& b) {
        return a.pose->number < b.pose->number;
    });
    beginModels();
    for (auto entry = m_entries.begin(); entry != m_entries.end();) {
        const auto* pose = entry->pose;
        m_places.clear();
        for (; entry != m_entries.end() && entry->pose == pose; ++entry)
            m_places.push_back(entry->place);
        GL_LineWidth(lineWidth);
        pose->recording.draw(m_view, m_places);
    }
    endModels();
    m_entries.clear();
}

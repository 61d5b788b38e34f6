// SPDX-License-Identifier: MIT
// Sprites of entities: a quad about the origin that turns to the viewer as its file tells.
#include "document/tEntity.h"
#include "support/tMath.h"
#include "support/tVec.h"
#include "views/tFigureDraw.h"
#include "views/tGLState.h"

#include <algorithm>
#include <cmath>
#include <qopengl.h>

#ifndef GL_CLAMP_TO_EDGE
#define GL_CLAMP_TO_EDGE 0x812F
#endif

// cSpriteRecord::orientation
enum eOrientation { BY_VIEW, BY_ANGLES, UPRIGHT_TO_EYE, UPRIGHT_BY_VIEW, BY_ROLL };

// Upright and square to the line of sight; false where that is nearly upright itself.
static bool uprightAxes(const float* sight, float* right, float* up) {
    static constexpr float STEEPEST = 0.999848f;
    if (!(std::fabs(sight[2]) <= STEEPEST))
        return false;
    vecSet(right, sight[1], -sight[0], 0.0f);
    vecSet(up, 0.0f, 0.0f, 1.0f);
    return vecNormalize(right) > 0;
}

// As the right and up of one who looks the way of the view and rolls.
static void rolledAxes(float roll, const cViewInfo& view, float* right, float* up) {
    const float angles[3] = {0, 0, roll};
    float forward[3], rolledRight[3], rolledUp[3];
    T_AngleVectors(angles, forward, rolledRight, rolledUp);
    const auto place = [&view](const float* rolled, float* out) {
        vecScale(view.right, -rolled[1], out);
        vecMA(out, rolled[2], view.up, out);
    };
    place(rolledRight, right);
    place(rolledUp, up);
}

static bool spriteAxes(const cEntityData* entity, int orientation, const cViewInfo& view,
                       float* right, float* up) {
    float sight[3];
    switch (orientation) {
    case BY_ANGLES:
        T_AngleVectors(entity->angles, sight, right, up);
        return true;
    case UPRIGHT_TO_EYE:
        vecSubtract(entity->origin, view.origin, sight);
        vecNormalize(sight);
        return uprightAxes(sight, right, up);
    case UPRIGHT_BY_VIEW:
        return uprightAxes(view.forward, right, up);
    case BY_ROLL:
        rolledAxes(entity->angles[2], view, right, up);
        return true;
    default:
        vecCopy(view.right, right);
        vecCopy(view.up, up);
        return true;
    }
}

// Counter-clockwise from the lower left.
static void spriteCorners(const cEntityData* entity, float* right, float* up, float corners[4][3]) {
    const auto* attachment = static_cast<const cAttachment*>(entity->attachment);
    const auto* sprite = static_cast<const cSpriteRecord*>(attachment->record);
    const float half = attachment->size * usedScale(entity);
    const auto larger = float(std::max({sprite->width, sprite->height, 1}));
    vecScale(right, std::max(half * float(sprite->width) / larger, 1.0f), right);
    vecScale(up, std::max(half * float(sprite->height) / larger, 1.0f), up);
    static const float signs[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    for (int i = 0; i < 4; ++i) {
        vecMA(entity->origin, signs[i][0], right, corners[i]);
        vecMA(corners[i], signs[i][1], up, corners[i]);
    }
}

static const cTextureImage* frameOf(const cEntityData* entity, const cViewInfo& view,
                                    cDrawStats& stats) {
    const auto* sprite = static_cast<const cSpriteRecord*>(
        static_cast<const cAttachment*>(entity->attachment)->record);
    const float step = sprite->frameCount > 1 ? 1 : 0;
    const float position = framePosition(entity, step, view, stats.changesAt);
    const cTextureImage* frame = sprite->frames;
    for (int i = int(std::fmod(position, float(sprite->frameCount))); i > 0 && frame->next; --i)
        frame = frame->next;
    return frame;
}

// The colour that is set, in the shape of the picture.
static void setShapeAlone(bool on) {
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, on ? GL_COMBINE : GL_MODULATE);
    if (!on)
        return;
    glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_RGB, GL_REPLACE);
    glTexEnvi(GL_TEXTURE_ENV, GL_SOURCE0_RGB, GL_PRIMARY_COLOR);
    glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_ALPHA, GL_REPLACE);
    glTexEnvi(GL_TEXTURE_ENV, GL_SOURCE0_ALPHA, GL_TEXTURE);
}

static void bindFrame(const cTextureImage* frame, const cViewInfo& view) {
    if (!frame->glName)
        return;
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, frame->glName);
    applyTextureSampling(view.settings.textureFilter, true, view.settings.anisotropicFilter);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

static void drawQuad(unsigned primitive, const float corners[4][3]) {
    static const float st[4][2] = {{0, 1}, {1, 1}, {1, 0}, {0, 0}};
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, corners);
    glTexCoordPointer(2, GL_FLOAT, 0, st);
    glDrawArrays(primitive, 0, 4);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
}

void drawSprite(const cEntityData* entity, const cViewInfo& view, cDrawStats& stats, uint32_t word,
                const uint8_t* rgba) {
    float right[3], up[3], corners[4][3];
    const auto* sprite = static_cast<const cSpriteRecord*>(
        static_cast<const cAttachment*>(entity->attachment)->record);
    if (!spriteAxes(entity, sprite->orientation, view, right, up))
        return;
    spriteCorners(entity, right, up, corners);
    const uint32_t before = GL_CurrentState();
    glColor4ubv(rgba);
    if (view.isWireframe()) {
        drawQuad(GL_LINE_LOOP, corners);
        return;
    }
    GL_State(word);
    glDisable(GL_CULL_FACE); // one that does not turn to the viewer has two sides
    setShapeAlone(view.isPicking());
    bindFrame(frameOf(entity, view, stats), view);
    drawQuad(GL_QUADS, corners);
    glDisable(GL_TEXTURE_2D);
    setShapeAlone(false);
    glEnable(GL_CULL_FACE);
    GL_State(before);
}

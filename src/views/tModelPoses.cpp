// SPDX-License-Identifier: MIT
#include "views/tModelPoses.h"

#include "document/tEntity.h"
#include "support/tVec.h"
#include "views/tGLState.h"
#include "views/tModelStream.h"
#include "views/tViewInfo.h"

#include <QHash>
#include <algorithm>

// Bit of the mode: the class forbids a scale.
static constexpr int MODE_NO_SCALE = 4;

cModelPoses& cModelPoses::shared() {
    static cModelPoses poses;
    return poses;
}

void cModelPoses::clear() {
    m_poses.clear();
    m_steps.clear();
    m_goesByView.clear();
    m_bytes = 0;
}

// Frames of animations that have gone by come back seldom; the rest stays while there is room.
void cModelPoses::beginDraw() {
    static constexpr size_t ROOM = size_t(64) << 20;
    static constexpr uint32_t FEW_DRAWS = 16;
    if (m_bufferKind != cGLBuffer::kind())
        clear();
    m_bufferKind = cGLBuffer::kind();
    ++m_draw;
    const bool isFull = m_bytes > ROOM;
    if (!isFull && m_draw % FEW_DRAWS != 0)
        return;
    for (auto it = m_poses.begin(); it != m_poses.end();) {
        const cPose& pose = it->second;
        const uint32_t kept = isFull && pose.isOfAnimation ? 1 : FEW_DRAWS;
        if (m_draw - pose.lastDraw <= kept || !(isFull || pose.isOfAnimation)) {
            ++it;
            continue;
        }
        m_bytes -= pose.recording.bytes();
        it = m_poses.erase(it);
    }
}

// ---- Calls

static cModelRecord* modelOf(const cEntityData* entity) {
    return static_cast<cModelRecord*>(static_cast<cAttachment*>(entity->attachment)->record);
}

// The plug-in sees the entity as it is to be drawn; the record itself stays as it is.
static void callPlugin(const cModelCall& call, const float* origin, float scale) {
    cAttachmentHead head = *static_cast<const cAttachment*>(call.entity->attachment);
    head.frame = call.frame;
    cEntityData shown = *call.entity;
    shown.attachment = &head;
    shown.scale = scale;
    shown.renderColor[3] = call.alpha;
    vecCopy(origin, shown.origin);
    vecCopy(call.angles, shown.angles);
    cModelRecord* model = modelOf(call.entity);
    const int noScale = mayScaleModel(call.entity) ? 0 : MODE_NO_SCALE;
    model->render(model->formatId, call.mode | noScale, 0, model, &shown);
}

bool cModelPoses::record(const cModelCall& call, const cViewInfo& view,
                         cModelRecording& recording) {
    static const float origin[3] = {0, 0, 0};
    cModelStream::instance().beginRecording(view, call.word, recording);
    callPlugin(call, origin, 1);
    return cModelStream::instance().endRecording();
}

void cModelPoses::drawUnkept(const cModelCall& call, const float* origin, const cViewInfo& view) {
    const uint32_t before = GL_CurrentState();
    GL_State(call.word);
    cModelStream::instance().beginModelDraw(view);
    callPlugin(call, origin, usedScale(call.entity));
    cModelStream::instance().endModelDraw();
    GL_State(before);
}

// ---- Poses

// No byte lies between the fields.
size_t cModelPoses::cHash::operator()(const cKey& key) const {
    static_assert(sizeof(cKey) == sizeof(void*) + 48);
    return qHashBits(&key, sizeof key);
}

cModelPoses::cKey cModelPoses::keyOf(const cModelCall& call) {
    const cEntityData& entity = *call.entity;
    cKey key;
    key.model = modelOf(&entity);
    vecCopy(call.angles, key.angles);
    key.frame = call.frame;
    key.mode = call.mode;
    key.word = call.word;
    key.sequence = entity.sequence;
    key.renderMode = entity.renderMode;
    key.renderFx = entity.renderFx;
    key.body = entity.body;
    key.skin = entity.skin;
    memcpy(key.renderColor, entity.renderColor, 3);
    key.renderColor[3] = call.alpha;
    memcpy(key.color, entity.entity->color, sizeof key.color);
    return key;
}

const cModelPoses::cPose* cModelPoses::find(const cModelCall& call, const cViewInfo& view) {
    if (m_goesByView.count(modelOf(call.entity)))
        return nullptr;
    cPose& pose = m_poses[keyOf(call)];
    pose.lastDraw = m_draw;
    if (pose.number != 0)
        return &pose;
    pose.number = ++m_nextNumber;
    pose.isOfAnimation = call.frame != 0;
    if (!record(call, view, pose.recording)) {
        m_poses.erase(keyOf(call));
        m_goesByView.emplace(modelOf(call.entity), true);
        return nullptr;
    }
    pose.recording.seal();
    m_bytes += pose.recording.bytes();
    return &pose;
}

// ---- Animation

float cModelPoses::frameStep(const cEntityData* entity, const cViewInfo& view) {
    cKey key;
    key.model = modelOf(entity);
    key.sequence = entity->sequence;
    key.body = entity->body;
    const auto known = m_steps.find(key);
    if (known != m_steps.end())
        return known->second;
    return m_steps.emplace(key, findStep(entity, view)).first->second;
}

// Nothing but the plug-in knows how many frames there are and what lies between two of them.
float cModelPoses::findStep(const cEntityData* entity, const cViewInfo& view) {
    static constexpr int TEXTURED = 2;
    static constexpr float BETWEEN = 1.0f / 8;
    cModelCall call = {entity, entity->angles, TEXTURED, GLS_DEFAULT, 255, 0};
    cModelRecording first;
    const bool goesByView = !record(call, view, first);
    const auto differsAt = [&](float frame) {
        cModelRecording other;
        call.frame = frame;
        record(call, view, other);
        return !first.sendsSame(other);
    };
    if (goesByView || differsAt(0.5f))
        return BETWEEN;
    static constexpr float TRIED[] = {1, 2,  3,  4,  6,
                                      8, 12, 16, 24, 32}; // it may begin with a pause
    return std::any_of(std::begin(TRIED), std::end(TRIED), differsAt) ? 1 : 0;
}

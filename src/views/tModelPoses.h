// SPDX-License-Identifier: MIT
// What plug-ins have sent of the models in view, kept by all that it depends on: entities that look
// alike are drawn from one recording. One for all views, whose contexts share it.
#pragma once

#include "views/tModelRecording.h"

#include <cstring>
#include <memory>
#include <unordered_map>
#include <vector>

// How a plug-in is to send the model of an entity.
struct cModelCall {
    const cEntityData* entity;
    const float* angles; // the entity's, or those a drag gives it
    int mode;            // of tpRenderModel
    uint32_t word;       // the state it finds
    uint8_t alpha;       // in place of the entity's amount
    float frame;
};

class cModelPoses {
public:
    static cModelPoses& shared();

    void clear(); // records have been freed
    // A draw of a map begins: what has not been used for long may go.
    void beginDraw();
    // Around the origin and not scaled; null for a plug-in that goes by the view. The number
    // tells recordings in the order they were made. Good until the next beginDraw or clear.
    struct cPose {
        cModelRecording recording;
        uint32_t number = 0;
        uint32_t lastDraw = 0;
        bool isOfAnimation = false;
    };
    const cPose* find(const cModelCall& call, const cViewInfo& view);
    // Straight to OpenGL, where the entity stands. origin: in place of the entity's.
    void drawUnkept(const cModelCall& call, const float* origin, const cViewInfo& view);
    // How many frames lie between two pictures of the model that differ: 0 if it stands still.
    float frameStep(const cEntityData* entity, const cViewInfo& view);

    size_t bytes() const { return m_bytes; }

private:
    // All that the call may depend on; compared as bytes, so none of them is left unset.
    struct cKey {
        const cModelRecord* model = nullptr;
        float angles[3] = {};
        float frame = 0;
        int32_t mode = 0;
        uint32_t word = 0;
        int32_t sequence = 0;
        int32_t renderMode = 0;
        int32_t renderFx = 0;
        uint16_t body = 0;
        uint16_t skin = 0;
        uint8_t renderColor[4] = {};
        uint8_t color[4] = {};
        bool operator==(const cKey& other) const { return memcmp(this, &other, sizeof *this) == 0; }
    };
    struct cHash {
        size_t operator()(const cKey& key) const;
    };
    static cKey keyOf(const cModelCall& call);
    bool record(const cModelCall& call, const cViewInfo& view, cModelRecording& recording);
    float findStep(const cEntityData* entity, const cViewInfo& view);

    std::unordered_map<cKey, cPose, cHash> m_poses;
    std::unordered_map<cKey, float, cHash> m_steps;
    std::unordered_map<const cModelRecord*, bool> m_goesByView;
    size_t m_bytes = 0;
    uint32_t m_draw = 0;
    uint32_t m_nextNumber = 0;
    uint32_t m_bufferKind = 0; // of cGLBuffer, when they were made
};

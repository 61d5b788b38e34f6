// SPDX-License-Identifier: MIT
// What a plug-in has sent through the model stream, kept to be drawn again: corners in one buffer,
// in runs of one primitive and one state.
#pragma once

#include "plugininterface/tPluginInterface.h"
#include "views/tGLBuffer.h"

#include <vector>

struct cViewInfo;

struct cModelVertex {
    uint8_t color[4];
    float st[2];
    float xyz[3];
};
static_assert(sizeof(cModelVertex) == 24);

// What the stream was set to when corners were sent.
struct cModelState {
    const cTextureImage* image = nullptr;
    uint32_t word = 0;   // as GL_State takes it
    float pointSize = 0; // pixels; 0: as it is
    float lineWidth = 0;
    bool hasColors = false; // else in the colour that is set when it is drawn

    bool operator==(const cModelState& other) const;
};

struct cModelPlace {
    float origin[3];
    float scale;
    uint8_t color[4]; // of what was sent without
};

class cModelRecording {
public:
    void clear();
    void add(const cModelState& state, unsigned primitive, const cModelVertex* vertices, int count);
    void seal(); // what has been added goes to OpenGL, with a current context

    // At each of the places. Leaves no texture, no colours, widths of 1 and the state word that was
    // set before.
    void draw(const cViewInfo& view, const std::vector<cModelPlace>& places) const;

    size_t bytes() const { return m_buffer.size(); }
    bool isEmpty() const { return m_runs.empty(); }
    bool sendsSame(const cModelRecording& other) const; // neither is sealed

private:
    struct cRun {
        cModelState state;
        unsigned primitive;
        int first;
        int count;
    };
    void drawRun(const cRun& run, const std::vector<cModelPlace>& places) const;

    std::vector<cRun> m_runs;
    std::vector<cModelVertex> m_vertices; // until it is sealed
    cGLBuffer m_buffer{cGLBuffer::VERTICES};
};

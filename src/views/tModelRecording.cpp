// SPDX-License-Identifier: MIT
#include "views/tModelRecording.h"

#include "views/tDrawRanges.h"
#include "views/tGLState.h"
#include "views/tViewInfo.h"

#include <cstddef>
#include <cstring>
#include <qopengl.h>

bool cModelState::operator==(const cModelState& other) const {
    return image == other.image && word == other.word && pointSize == other.pointSize &&
           lineWidth == other.lineWidth && hasColors == other.hasColors;
}

void cModelRecording::clear() {
    m_runs.clear();
    m_vertices.clear();
    m_buffer.release();
}

void cModelRecording::add(const cModelState& state, unsigned primitive,
                          const cModelVertex* vertices, int count) {
    const bool joins = primitive == GL_TRIANGLES || primitive == GL_LINES;
    if (joins && !m_runs.empty() && m_runs.back().primitive == primitive &&
        m_runs.back().state == state)
        m_runs.back().count += count;
    else
        m_runs.push_back({state, primitive, int(m_vertices.size()), count});
    m_vertices.insert(m_vertices.end(), vertices, vertices + count);
}

void cModelRecording::seal() {
    m_buffer.replace(m_vertices.data(), m_vertices.size() * sizeof(cModelVertex));
    cGLBuffer::unbind();
    m_vertices = {};
}

bool cModelRecording::sendsSame(const cModelRecording& other) const {
    const auto same = [](const cRun& a, const cRun& b) {
        return a.state == b.state && a.primitive == b.primitive && a.count == b.count;
    };
    return m_vertices.size() == other.m_vertices.size() &&
           std::equal(m_runs.begin(), m_runs.end(), other.m_runs.begin(), other.m_runs.end(),
                      same) &&
           memcmp(m_vertices.data(), other.m_vertices.data(),
                  m_vertices.size() * sizeof(cModelVertex)) == 0;
}

// ---- Drawing

static void applyState(const cModelState& state, const cViewInfo& view) {
    GL_State(state.word);
    if (state.pointSize > 0)
        GL_PointSize(state.pointSize);
    if (state.lineWidth > 0)
        GL_LineWidth(state.lineWidth);
    if (state.hasColors)
        glEnableClientState(GL_COLOR_ARRAY);
    else
        glDisableClientState(GL_COLOR_ARRAY);
    if (!state.image || !state.image->glName) {
        glDisable(GL_TEXTURE_2D);
        return;
    }
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, state.image->glName);
    applyTextureSampling(view.settings.textureFilter, true, view.settings.anisotropicFilter);
}

void cModelRecording::drawRun(const cRun& run, const std::vector<cModelPlace>& places) const {
    for (const cModelPlace& place : places) {
        if (!run.state.hasColors)
            glColor4ubv(place.color);
        glPushMatrix();
        glTranslatef(place.origin[0], place.origin[1], place.origin[2]);
        glScalef(place.scale, place.scale, place.scale);
        glDrawArrays(run.primitive, run.first, run.count);
        glPopMatrix();
    }
    g_drawTraffic.calls += places.size();
    g_drawTraffic.ranges += places.size();
}

void cModelRecording::draw(const cViewInfo& view, const std::vector<cModelPlace>& places) const {
    const uint32_t before = GL_CurrentState();
    const uint8_t* base = m_buffer.bind();
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof(cModelVertex), base + offsetof(cModelVertex, color));
    glTexCoordPointer(2, GL_FLOAT, sizeof(cModelVertex), base + offsetof(cModelVertex, st));
    glVertexPointer(3, GL_FLOAT, sizeof(cModelVertex), base + offsetof(cModelVertex, xyz));
    for (const cRun& run : m_runs) {
        applyState(run.state, view);
        drawRun(run, places);
    }
    applyState({nullptr, before, 1, 1, false}, view);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    cGLBuffer::unbind();
}

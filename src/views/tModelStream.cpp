// SPDX-License-Identifier: MIT
#include "views/tModelStream.h"

#include "pluginhost/tRenderServices.h"
#include "support/tHost.h"
#include "support/tVec.h"
#include "views/tGLState.h"
#include "views/tViewInfo.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <qopengl.h>

cModelStream& cModelStream::instance() {
    static cModelStream stream;
    return stream;
}

void cModelStream::begin(const cViewInfo& view, uint32_t state) {
    m_count = 0;
    m_primitive = -1;
    m_dirty = 0;
    memset(m_color, 0, sizeof m_color);
    m_st[0] = m_st[1] = 0;
    m_filter = view.settings.textureFilter;
    m_state = {};
    m_state.word = m_savedState = state;
    m_viewAsked = false;
    vecCopy(view.origin, m_view);
    vecCopy(view.forward, m_view + 3);
    vecCopy(view.right, m_view + 6);
    vecCopy(view.up, m_view + 9);
}

void cModelStream::beginModelDraw(const cViewInfo& view) {
    begin(view, GL_CurrentState());
    m_recording = nullptr;
    glCullFace(GL_FRONT);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof(cModelVertex), m_vertices[0].color);
    glTexCoordPointer(2, GL_FLOAT, sizeof(cModelVertex), m_vertices[0].st);
    glVertexPointer(3, GL_FLOAT, sizeof(cModelVertex), m_vertices[0].xyz);
}

void cModelStream::endModelDraw() {
    flush();
    if (m_dirty & POINT_SIZE)
        GL_PointSize(1);
    if (m_dirty & LINE_WIDTH)
        GL_LineWidth(1);
    if (m_dirty & TEXTURE)
        glDisable(GL_TEXTURE_2D);
    if (m_dirty & COLOR_ARRAY)
        glDisableClientState(GL_COLOR_ARRAY);
    if (m_dirty & STATE)
        GL_State(m_savedState);
    m_dirty = 0;
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    glCullFace(GL_BACK);
}

void cModelStream::beginRecording(const cViewInfo& view, uint32_t state,
                                  cModelRecording& recording) {
    begin(view, state);
    m_recording = &recording;
}

bool cModelStream::endRecording() {
    flush();
    m_dirty = 0;
    m_recording = nullptr;
    return !m_viewAsked;
}

void cModelStream::pointSize(float size) {
    flush();
    m_state.pointSize = size;
    m_dirty |= POINT_SIZE;
    if (!m_recording)
        GL_PointSize(size);
}

void cModelStream::lineWidth(float width) {
    flush();
    m_state.lineWidth = width;
    m_dirty |= LINE_WIDTH;
    if (!m_recording)
        GL_LineWidth(width);
}

void cModelStream::texture(const cTextureImage* image) {
    flush();
    m_state.image = image;
    m_dirty |= TEXTURE;
    if (m_recording)
        return;
    if (!image) {
        glDisable(GL_TEXTURE_2D);
        return;
    }
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, image->glName);
    applyTextureSampling(m_filter, true, g_host->AnisotropicFilter);
}

// What is pending belongs to the primitive it was sent under; strips and fans end here.
void cModelStream::primitive(int code) {
    static const int primitives[] = {-1,         GL_LINES,          GL_TRIANGLES,
                                     GL_POLYGON, GL_TRIANGLE_STRIP, GL_TRIANGLE_FAN};
    flush();
    const bool known = code > 0 && code < int(std::size(primitives));
    m_primitive = known ? primitives[code] : -1;
}

void cModelStream::draw(int count) {
    if (count <= 0 || m_primitive < 0)
        return;
    if (m_recording)
        m_recording->add(m_state, GLenum(m_primitive), m_vertices, count);
    else
        glDrawArrays(GLenum(m_primitive), 0, count);
}

void cModelStream::flush() {
    draw(m_count);
    m_count = 0;
}

// Draws what is whole of a full buffer; what goes on beyond it begins the next one. A strip has an
// even number of triangles here, so the next ones keep their side.
void cModelStream::makeRoom() {
    const bool turnsAroundFirst = m_primitive == GL_TRIANGLE_FAN || m_primitive == GL_POLYGON;
    const int rest = m_primitive == GL_TRIANGLES ? m_count % 3 : 0;
    const int kept = m_primitive == GL_TRIANGLE_STRIP ? 2 : turnsAroundFirst ? 1 : rest;
    draw(m_count - rest);
    cModelVertex* to = m_vertices + (turnsAroundFirst ? 1 : 0);
    std::copy(m_vertices + m_count - kept, m_vertices + m_count, to);
    m_count = int(to - m_vertices) + kept;
}

void cModelStream::color(uint8_t r, uint8_t g, uint8_t b, uint8_t a) {
    const uint8_t rgba[4] = {r, g, b, a};
    colorV(rgba);
}

void cModelStream::colorV(const uint8_t* rgba) {
    if (rgba)
        memcpy(m_color, rgba, sizeof m_color);
    if (m_state.hasColors == (rgba != nullptr))
        return;
    flush();
    m_state.hasColors = rgba != nullptr;
    m_dirty = rgba ? m_dirty | COLOR_ARRAY : m_dirty & ~COLOR_ARRAY;
    if (m_recording)
        return;
    if (rgba)
        glEnableClientState(GL_COLOR_ARRAY);
    else
        glDisableClientState(GL_COLOR_ARRAY);
}

void cModelStream::texCoord(float s, float t) {
    m_st[0] = s;
    m_st[1] = t;
}

void cModelStream::vertex(const float* xyz) {
    cModelVertex& v = m_vertices[m_count++];
    memcpy(v.color, m_color, sizeof v.color);
    v.st[0] = m_st[0];
    v.st[1] = m_st[1];
    vecCopy(xyz, v.xyz);
    if (m_count == CAPACITY)
        makeRoom();
}

void cModelStream::setState(uint32_t state) {
    flush();
    m_state.word = state;
    m_dirty |= STATE;
    if (!m_recording)
        GL_State(state);
}

void cModelStream::getView(float* out) {
    m_viewAsked = true;
    memcpy(out, m_view, sizeof m_view);
}

void cModelStream::install() {
    cRenderServices& services = g_renderServices;
    services.pointSize = [](float size) { instance().pointSize(size); };
    services.lineWidth = [](float width) { instance().lineWidth(width); };
    services.texture = [](const cTextureImage* image) { instance().texture(image); };
    services.primitive = [](int32_t code) { instance().primitive(code); };
    services.flush = [] { instance().flush(); };
    services.color = [](uint8_t r, uint8_t g, uint8_t b, uint8_t a) {
        instance().color(r, g, b, a);
    };
    services.colorV = [](const uint8_t* rgba) { instance().colorV(rgba); };
    services.texCoord = [](float s, float t) { instance().texCoord(s, t); };
    services.vertex = [](const float* xyz) { instance().vertex(xyz); };
    services.getState = [] { return instance().state(); };
    services.setState = [](uint32_t state) { instance().setState(state); };
    services.getView = [](float* out) { instance().getView(out); };
}

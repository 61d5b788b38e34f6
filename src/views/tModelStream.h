// SPDX-License-Identifier: MIT
// The vertex stream through which model plug-ins draw: one buffer of 8192 vertices, which goes to
// OpenGL, or into a recording, when it is full or when a state changes. The services Render_* of
// the plug-in border call the members.
#pragma once

#include "views/tModelRecording.h"

struct cViewInfo;

class cModelStream {
public:
    static constexpr int CAPACITY = 8192;

    static cModelStream& instance();
    static void install(); // makes it the drawing behind the Render_ services

    // Around the call of a plug-in's render function, with a current context.
    void beginModelDraw(const cViewInfo& view);
    void endModelDraw();
    // The same, but nothing is drawn: all goes into the recording. The state is what the plug-in
    // finds set. False: the plug-in asked for the view, so the recording is good for it alone.
    void beginRecording(const cViewInfo& view, uint32_t state, cModelRecording& recording);
    bool endRecording();

    void pointSize(float size);
    void lineWidth(float width);
    void texture(const cTextureImage* image); // null turns texturing off
    void primitive(int code);                 // RP_ codes; any other means none
    void flush();
    void color(uint8_t r, uint8_t g, uint8_t b, uint8_t a);
    void colorV(const uint8_t* rgba); // null turns the colour array off
    void texCoord(float s, float t);
    void vertex(const float* xyz);
    uint32_t state() const { return m_state.word; }
    void setState(uint32_t state);
    void getView(float* out); // origin, forward, right, up

    int pending() const { return m_count; }

private:
    void begin(const cViewInfo& view, uint32_t state);
    void draw(int count);
    void makeRoom();

    enum eDirty { POINT_SIZE = 1, LINE_WIDTH = 2, STATE = 4, TEXTURE = 8, COLOR_ARRAY = 16 };

    cModelVertex m_vertices[CAPACITY];
    int m_count = 0;
    int m_primitive = -1; // a GL primitive, or -1 for none
    uint8_t m_color[4] = {255, 255, 255, 255};
    float m_st[2] = {0, 0};
    float m_view[12] = {};
    int m_filter = 0;
    uint32_t m_savedState = 0;
    int m_dirty = 0;
    cModelState m_state;
    cModelRecording* m_recording = nullptr; // null: to OpenGL
    bool m_viewAsked = false;
};

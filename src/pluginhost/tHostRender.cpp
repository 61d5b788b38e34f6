// SPDX-License-Identifier: MIT
// Services 99 to 113: the model stream, behind the functions that the views set.
#include "pluginhost/tHostTable.h"

#include "document/tFace.h"
#include "pluginhost/tRenderServices.h"

#include <algorithm>

static constexpr float SHADE_FLOOR = 0.2f;

template<class... Arguments> static void nothing(Arguments...) {}

static uint32_t noState() {
    return 0;
}

static void noView(float* out) {
    std::fill_n(out, 12, 0.0f);
}

cRenderServices g_renderServices = {nothing, nothing, nothing, nothing, nothing, nothing,
                                    nothing, nothing, nothing, noState, nothing, noView};

// The table is handed out once; these forward to what is set at the time of the call.

static void pointSize(float size) {
    g_renderServices.pointSize(size);
}

static void lineWidth(float width) {
    g_renderServices.lineWidth(width);
}

static void texture(const cTextureImage* image) {
    g_renderServices.texture(image);
}

static void primitive(int32_t code) {
    g_renderServices.primitive(code);
}

static void flush() {
    g_renderServices.flush();
}

static void color(uint8_t r, uint8_t g, uint8_t b, uint8_t a) {
    g_renderServices.color(r, g, b, a);
}

static void colorV(const uint8_t* rgba) {
    g_renderServices.colorV(rgba);
}

static void texCoord(float s, float t) {
    g_renderServices.texCoord(s, t);
}

static void texCoordV(const float* st) {
    if (st)
        g_renderServices.texCoord(st[0], st[1]);
}

static void vertex(const float* xyz) {
    if (xyz)
        g_renderServices.vertex(xyz);
}

static uint32_t getState() {
    return g_renderServices.getState();
}

static void setState(uint32_t state) {
    g_renderServices.setState(state);
}

static void getView(float* out) {
    if (out)
        g_renderServices.getView(out);
}

static float shadeFloor() {
    return SHADE_FLOOR;
}

static float shade(const float* normal) {
    return normal ? shadeForNormal(normal) : 1.0f;
}

void fillRenderServices(cHostServices& table) {
    table.Render_PointSize = pointSize;
    table.Render_LineWidth = lineWidth;
    table.Render_Texture = texture;
    table.Render_Primitive = primitive;
    table.Render_Flush = flush;
    table.Render_Color = color;
    table.Render_ColorV = colorV;
    table.Render_TexCoord = texCoord;
    table.Render_TexCoordV = texCoordV;
    table.Render_Vertex = vertex;
    table.Render_GetState = getState;
    table.Render_SetState = setState;
    table.Render_GetView = getView;
    table.Render_ShadeFloor = shadeFloor;
    table.Render_Shade = shade;
}

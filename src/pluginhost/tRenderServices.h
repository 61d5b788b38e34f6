// SPDX-License-Identifier: MIT
// The drawing behind the Render_ services. The views set it at start-up; until then the calls do
// nothing. Meaningful only inside tpRenderModel.
#pragma once

#include "plugininterface/tPluginInterface.h"

struct cRenderServices {
    void (*pointSize)(float size);
    void (*lineWidth)(float width);
    void (*texture)(const cTextureImage* image);
    void (*primitive)(int32_t code);
    void (*flush)();
    void (*color)(uint8_t r, uint8_t g, uint8_t b, uint8_t a);
    void (*colorV)(const uint8_t* rgba);
    void (*texCoord)(float s, float t);
    void (*vertex)(const float* xyz);
    uint32_t (*getState)();
    void (*setState)(uint32_t state);
    void (*getView)(float* out); // 12 floats: origin and the three axes
};

extern cRenderServices g_renderServices;

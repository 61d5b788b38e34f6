// SPDX-License-Identifier: MIT
// A texture as faces know it. The texture manager makes and frees these records; faces hold a
// reference through refCount and useCount.
#pragma once

#include "plugininterface/tPluginInterface.h"

class QIcon;

// cTexture::flags
enum { TF_PLACEHOLDER = 1, TF_REPLACED = 2 };

struct cTexture {
    char name[64];
    int refCount; // packages and faces
    int useCount; // faces
    int width;    // texels, as the source gave it; texture mapping divides by it
    int height;
    uint32_t flags; // TF_ bits
    int labelWidth;
    QIcon* icon;
    cTextureImage* image;
    uint32_t renderState; // GL state word; non-zero marks it translucent
    uint32_t surfaceFlags;
    uint32_t contentFlags;
    uint32_t extraFlags; // TX_ bits
    uint32_t value;
    float opacity;
    float reserved;
};

inline bool isNodraw(const cTexture& texture) {
    return (texture.extraFlags & TX_NODRAW) != 0;
}

inline bool isTranslucent(const cTexture& texture) {
    return texture.renderState != 0;
}

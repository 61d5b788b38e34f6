// SPDX-License-Identifier: MIT
// Sends a model to the host's stream, placed as its entity stands.
#pragma once

#include "media/tModel.h"

#include <tPluginInterface.h>

// Bits of the mode of tpRenderModel.
enum { RM_PLAIN = 1, RM_NO_SCALE = 4 }; // plain: in the colour set by the host, without texture

struct cPlacement {
    explicit cPlacement(const cEntityData& entity, float scale);

    cPoint turned(const cPoint& v) const;
    cPoint placed(const cPoint& v) const;

    cPoint origin, forward, left, up;
    float scale;
};

// Images are those of the model's skins, null for one that could not be read.
void drawModel(const cHostServices& host, const cModel& model,
               const std::vector<const cTextureImage*>& images, int mode, cEntityData& entity);

// The turned box of the entity's sequence, around the origin and not scaled.
cModelFrame turnedBox(const cModel& model, const cEntityData& entity);

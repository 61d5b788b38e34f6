// SPDX-License-Identifier: MIT
// Every reader of models: each frame of what is read can be walked, at any position.
#include "media/tModel.h"

#include <cstdlib>
#include <limits>

static void demand(bool holds) {
    if (!holds)
        abort();
}

static void walk(const cModel& model) {
    for (const float position : {0.0f, 1e9f, -1.0f, std::numeric_limits<float>::infinity()}) {
        for (const int sequence : {-1, 0, 1, 1 << 30}) {
            const size_t frame = model.frameAt(sequence, position);
            demand(frame < model.frames.size());
            for (const cModelSurface& surface : model.surfaces)
                demand((frame + 1) * surface.vertexCount <= surface.positions.size());
        }
    }
    for (const cModelSurface& surface : model.surfaces) {
        for (const cModelCorner& corner : surface.corners)
            demand(corner.vertex < surface.vertexCount);
        for (const size_t skin : surface.skins)
            demand(skin < model.skins.size());
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    for (const cModelReader read : {readMdl, readMd2, readMd3, readObj}) {
        cImageBudget budget(16 << 20);
        cModel model;
        if (!read(cBytes(bytes, size), nullptr, budget, model))
            walk(model);
    }
    return 0;
}

// SPDX-License-Identifier: MIT
// Sprites: frames of one size, or none.
#include "media/tSprite.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    cImageBudget budget(16 << 20);
    cSprite sprite;
    if (readSprite(cBytes(bytes, size), nullptr, budget, sprite))
        return 0;
    for (const cImage& frame : sprite.frames) {
        if (frame.width != sprite.frames[0].width || frame.height != sprite.frames[0].height ||
            frame.texels.size() != size_t(frame.width) * size_t(frame.height))
            abort();
    }
    return sprite.frames.empty() ? abort(), 0 : 0;
}

// SPDX-License-Identifier: MIT
// Sprite files (.spr) of both kinds: painted with the palette of the game, or with their own.
#pragma once

#include "media/tBytes.h"
#include "media/tImage.h"

#include <vector>

struct cSprite {
    int orientation = 0; // as cSpriteRecord takes it
    // Of one size, that of the sprite, with the sprite's origin in the middle of each.
    std::vector<cImage> frames;
};

cProblem readSprite(cBytes file, const cPalette* palette, cImageBudget& budget, cSprite& sprite);

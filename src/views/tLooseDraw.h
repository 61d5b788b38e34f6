// SPDX-License-Identifier: MIT
// What is gathered anew each frame, as there is little of it: boxes and arrows of point entities,
// the axes of selected faces. Into a batch that the caller flushes.
#pragma once

#include "views/tDrawBatch.h"
#include "views/tViewInfo.h"

constexpr float MOVING_DIM = 0.75f; // on the colour of what is being dragged

// The outline of a box in a 2D view.
void gatherFlatBox(cDrawBatch& batch, const cViewInfo& view, const float* mins, const float* maxs,
                   const uint8_t* rgba, bool stippled);
// The six sides, counter-clockwise seen from outside, without a shade.
void gatherSolidBox(cDrawBatch& batch, const float* mins, const float* maxs, const uint8_t* rgba);
// The way an entity looks whose class has an angle; none for others. mins, maxs: its box.
bool hasArrow(const cEntityData* entity);
void gatherArrow(cDrawBatch& batch, const float* mins, const float* maxs, const float* angles);
void drawTextureAxes(cDrawBatch& batch, const cFaceData* face);

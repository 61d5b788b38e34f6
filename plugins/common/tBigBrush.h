// SPDX-License-Identifier: MIT
// A polygon of the editor holds a limited number of corners. A brush with a face of more is cut
// into as many as it takes.
#pragma once

#include "common/tFaceProjection.h"

#include <vector>

using cMapFaces = std::vector<cMapFace>;

static constexpr size_t MAX_CORNERS = 128; // of one face

// The brush itself, when no face has too many corners. Takes the square of the number of faces.
std::vector<cMapFaces> cutBigBrush(const cMapFaces& faces);

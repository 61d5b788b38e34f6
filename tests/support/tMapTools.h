// SPDX-License-Identifier: MIT
// What tests of maps share: building brushes, states to compare maps by, and the laws that
// every map obeys at every moment.
#pragma once

#include "document/tMap.h"
#include "support/tMapState.h"

#include <QString>

// A block with that texture, built from its six planes.
cBrushData* addBox(cMap& map, cEntityData* entity, const float* mins, const float* maxs,
                   const char* texture = "wall");
// An empty map with its world.
cEntityData* addWorldTo(cMap& map);

// Every edge of one face is an edge of another, the other way round.
bool isClosed(const cBrushData* brush, float tolerance);
// Empty when all lists, counts, pick numbers and flags agree; else what is wrong.
QString checkMapInvariants(const cMap& map);

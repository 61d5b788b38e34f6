// SPDX-License-Identifier: MIT
// What tests of maps share: building brushes, a dump to compare maps by, and the laws that every
// map obeys at every moment.
#pragma once

#include "document/tMap.h"
#include "support/tMapState.h"

#include <QString>
#include <QStringList>

// A block with that texture, built from its six planes.
cBrushData* addBox(cMap& map, cEntityData* entity, const float* mins, const float* maxs,
                   const char* texture = "wall");
// An empty map with its world.
cEntityData* addWorldTo(cMap& map);

// One line an object: flags, key/values, geometry, texture blocks, groups, memberships. Tied
// faces of a brush are put into one order, since theirs turns at every rebuild.
QStringList dumpMap(const cMap& map);

// Empty for equal dumps, else the first lines that differ.
QString firstDifference(const QStringList& expected, const QStringList& got);
// Empty when all lists, counts, pick numbers and flags agree; else what is wrong.
QString checkMapInvariants(const cMap& map);

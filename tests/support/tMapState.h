// SPDX-License-Identifier: MIT
// All that a map holds at a moment, to compare maps by: objects in the order of their lists, with
// planes and corners to the last bit, and visgroups.
#pragma once

#include "document/tObjectState.h"

#include <QString>
#include <QStringList>

struct cMapState {
    cObjectStates objects;
    QStringList visGroups;
    QStringList derived; // of entities: what follows from their keys
};

// Without the selection the selected flags are left out.
cMapState stateOf(const cMap& map, bool withSelection = true);
// What a project file keeps of it: ids of entities and brushes are their places, serials of
// visgroups their ids, and faces of a brush stand in one order, since tied ones turn at every
// rebuild.
cMapState storedStateOf(const cMap& map);
// Empty for equal states, else the first object that differs, as it was and as it is.
QString firstDifference(const cMapState& expected, const cMapState& got);

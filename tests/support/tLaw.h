// SPDX-License-Identifier: MIT
// The law that every operation on a map obeys: undo gives back the map before, redo the map after,
// and the map's invariants hold at each point.
#pragma once

#include "document/tMap.h"

#include <QString>
#include <functional>

// Runs the operation, undoes it, redoes it. Empty when the law holds, else what broke it. The map
// is left as after the operation. An operation that opens no step must leave the map alone, but
// for the selection. Views find out what has changed, be it the selection.
// An operation that puts new objects in place of the selection does not bring the former one back.
QString checkLaw(cMap& map, const std::function<void()>& operation, bool selectionComesBack = true);

// Empty when invariants hold and every brush is valid.
QString checkMapWhole(const cMap& map);

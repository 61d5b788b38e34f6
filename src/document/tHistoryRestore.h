// SPDX-License-Identifier: MIT
// What undo and redo of a step do to the map. The states of a step change sides: after an undo
// they hold what the redo needs.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <vector>

class cMap;
class cObjectStates;
struct cUndoStep;

void undoStep(cMap& map, cUndoStep& step);
void redoStep(cMap& map, cUndoStep& step);

struct cRemade {
    std::vector<cGroupData*> groups;
    std::vector<cEntityData*> entities;
    std::vector<cBrushData*> brushes;
};

// Objects that have gone come back under their ids, with owner, groups and visgroups, rebuilt and
// not selected. What is in the map already stays as it is; a brush whose owner is missing is
// reported and left out. Returned is what was made, for the caller to capture.
cRemade remakeObjects(cMap& map, const cObjectStates& states);

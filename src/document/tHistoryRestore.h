// SPDX-License-Identifier: MIT
// What undo and redo of a step do to the map. The records of a step change sides: after an undo
// they hold what the redo needs.
#pragma once

class cMap;
struct cUndoStep;

void undoStep(cMap& map, cUndoStep& step);
void redoStep(cMap& map, cUndoStep& step);

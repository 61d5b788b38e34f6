// SPDX-License-Identifier: MIT
// Operations on the selection that move objects between groups and entities, or remove them.
// Each opens its own history step and leaves selection and lists consistent.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <vector>

class cMap;

// All selected objects into one new outermost group, which becomes the selection. False without
// a step: they belong to one outermost group already.
bool groupSelection(cMap& map); // "Group"
// Takes one level off the selected groups; their child groups stand selected after.
void ungroupSelection(cMap& map); // "Ungroup"
// Selected brushes and entities, and groups and entities that are empty without them. Nothing
// selected, no step.
void deleteSelection(cMap& map); // "Delete Selection"
// The same within the step of another operation.
void removeSelection(cMap& map);
// Selected brushes of entities become brushes of the world.
void moveSelectionToWorld(cMap& map); // "Move to World"
int countSelectedPoints(const cMap& map);
// Point entities leave the selection, which is described. No step.
void deselectPoints(cMap& map);
// The entities that own selected brushes, each once; the world is none of them.
std::vector<cEntityData*> ownersOfSelection(const cMap& map);
// Selected brushes become brushes of target, or of a new entity of the class without one.
// Returns the entity, which is selected with all of its brushes.
cEntityData* tieSelectionToEntity(cMap& map, const char* className,
                                  cEntityData* target); // "Tie to Entity"
// Sets or clears the profile's detail bits on all faces of the selected brushes. False without a
// step: they are so already. "Make Detail", "Make Structural"
bool setSelectionDetail(cMap& map, bool detail);

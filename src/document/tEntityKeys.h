// SPDX-License-Identifier: MIT
// The one way to edit a key of an entity: the pair and the fields that follow from it (angles,
// flags, render and model state, what is attached) together. Nothing is captured for undo; the
// callers do.
#pragma once

#include "plugininterface/tPluginInterface.h"

// The first pair of the key takes the value; without one a pair is added at the end.
void writeKey(cEntityData* entity, const char* key, const char* value);
// Every pair of the key; its fields go back to what they are without it.
void eraseKey(cEntityData* entity, const char* key);
// The first pair of the key is called otherwise.
void renameKey(cEntityData* entity, const char* key, const char* newKey);

const char* flagsKeyOf(const cEntityData* entity); // "spawnflags" where the class has no other
void writeSpawnFlags(cEntityData* entity, uint32_t flags);

// Another class, by name; the class may be unknown, and the pairs stay as they are then. Else there
// is a pair for each variable of the class that the entity had or that has a default, in class
// order; of other pairs the angles, "model" and "texture" stay.
void changeClass(cEntityData* entity, const char* classname);

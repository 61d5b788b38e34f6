// SPDX-License-Identifier: MIT
// What the transforms share: the objects they work on, and the rebuild after their vertices moved.
#pragma once

#include "pluginhost/tPluginInterface.h"

#include <vector>

class cMap;

struct cTransformObjects {
    std::vector<cEntityData*> entities; // point entities alone move by themselves
    std::vector<cBrushData*> brushes;

    static cTransformObjects selected(const cMap& map); // newest first
    bool isEmpty() const { return entities.empty() && brushes.empty(); }
    void bounds(float* mins, float* maxs) const;
};

// A point entity whose origin and bounds have moved: what it shows and its place in the tree.
void finishEntity(cEntityData* entity);
// Brushes whose vertices have moved: planes anew, with default texture axes unless the texture is
// locked, and one pass over the bounds of each owner. The document is dirty.
void finishTransform(cMap& map, const std::vector<cBrushData*>& brushes);

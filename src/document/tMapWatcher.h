// SPDX-License-Identifier: MIT
// Who keeps something made of a map's objects (the views their geometry in buffers) hears here
// which of it is out of date. What is selected, nobody tells: compare the map's lists when its
// revision has grown.
#pragma once

#include "document/tMap.h"

#include <cstdint>

class cMapWatcher {
public:
    virtual ~cMapWatcher() = default;

    // Anything but its selection: corners, textures, flags, colours, group, visgroups, owner.
    virtual void brushChanged(cBrushData* brush) = 0;
    // The same for an entity; with what it means for its brushes.
    virtual void entityChanged(cEntityData* entity) = 0;
    virtual void brushGone(cBrushData* brush) = 0;
    virtual void entityGone(cEntityData* entity) = 0;
    // Any object; some may have gone without a word, so none that was heard of may be touched.
    virtual void allChanged() = 0;
};

// Tell the watcher of the map that holds the object, if there are both.
inline void noteChange(cBrushData* brush) {
    if (brush->owner && brush->owner->owner && brush->owner->owner->map->watcher)
        brush->owner->owner->map->watcher->brushChanged(brush);
}
inline void noteChange(cEntityData* entity) {
    if (entity->owner && entity->owner->map->watcher)
        entity->owner->map->watcher->entityChanged(entity);
}
inline void noteChange(const cMap& map) {
    if (map.watcher)
        map.watcher->allChanged();
}

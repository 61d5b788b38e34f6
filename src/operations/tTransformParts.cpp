// SPDX-License-Identifier: MIT
// Gathering the selected objects, and rebuilding what moved: each brush and each owner once.
#include "operations/tTransformParts.h"

#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tHost.h"
#include "support/tMath.h"

#include <QSet>

cTransformObjects cTransformObjects::selected(const cMap& map) {
    cTransformObjects objects;
    for (cEntityData* entity : selectedEntitiesOf(map.data)) {
        if (entity->flags & EF_POINT)
            objects.entities.push_back(entity);
    }
    for (cBrushData* brush : selectedBrushesOf(map.data))
        objects.brushes.push_back(brush);
    return objects;
}

void cTransformObjects::bounds(float* mins, float* maxs) const {
    T_ClearBounds(mins, maxs);
    for (const cEntityData* entity : entities)
        T_AddBoxToBounds(entity->mins, entity->maxs, mins, maxs);
    for (const cBrushData* brush : brushes)
        T_AddBoxToBounds(brush->mins, brush->maxs, mins, maxs);
}

void finishEntity(cEntityData* entity) {
    if (entity->attachKind == AK_DECAL) {
        updateAttachmentBox(entity);
        entity->flags |= EF_RECOMPUTE_ATTACHMENT;
    }
    updateEntity(entity, 0);
}

void finishTransform(cMap& map, const std::vector<cBrushData*>& brushes) {
    const bool lock = g_host && g_host->TextureLock;
    const uint32_t mode = lock ? UM_PLANES : UM_PLANES | UM_RESET_AXES;
    QSet<cEntityData*> owners;
    for (cBrushData* brush : brushes) {
        for (cFaceData* face : facesOf(brush))
            face->flags |= FF_DIRTY;
        rebuildBrush(brush, mode);
        owners.insert(brush->owner);
    }
    for (cEntityData* owner : owners)
        updateEntity(owner, mode);
    map.markChanged();
    if (g_host)
        g_host->projectDirty(map.project);
}

// SPDX-License-Identifier: MIT
// Copies of the selected objects, with their groups, in place of them as the selection.
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tHistory.h"
#include "document/tMap.h"
#include "operations/tObjectCopies.h"
#include "operations/tTransform.h"

static void addCopies(cMap& map, const cTakenObjects& source, cObjectCopies& copies) {
    const std::vector<cBrushState>& brushes = source.states.brushes;
    const auto addBrush = [&](uint32_t place, cEntityData* owner) {
        rebuildBrush(copies.addBrush(brushes[place], owner), 0);
    };
    for (const cEntityState& state : source.states.entities) {
        cEntityData* entity = copies.addEntity(state);
        for (uint32_t i = state.brushes.first; i < state.brushes.end(); ++i)
            addBrush(i, entity);
        updateEntity(entity, UM_RENDER_KEYS | UM_MODEL_KEYS | UM_ATTACH);
    }
    for (uint32_t i = source.firstLoose; i < brushes.size(); ++i)
        addBrush(i, map.world());
}

void cloneSelection(cMap& map, const cTransformRecord& record) {
    if (!map.data.selectedEntities && !map.data.selectedBrushes)
        return;
    cHistoryStep step(map, "Clone Objects");
    const cTakenObjects source = cTakenObjects::selectionOf(map);
    map.clearSelection();
    cObjectCopies copies(map, source);
    addCopies(map, source, copies);
    copies.select();
    applyTransform(map, &copies.entities, &copies.brushes, record);
    copies.capture();
}

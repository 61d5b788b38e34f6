// SPDX-License-Identifier: MIT
// Services 63 to 80: undo. A map keeps no history, so no step is ever open, and a capture without
// an open step does nothing.
#include "pluginhost/tHostTable.h"

template<class... Arguments> static void nothing(Arguments...) {}

void fillHistoryServices(cHostServices& table) {
    table.History_Begin = nothing;
    table.History_End = nothing;
    table.History_EntityCreated = nothing;
    table.History_BrushCreated = nothing;
    table.History_GroupCreated = nothing;
    table.History_EntityDeleted = nothing;
    table.History_BrushDeleted = nothing;
    table.History_GroupDeleted = nothing;
    table.History_EntityChanged = nothing;
    table.History_BrushChanged = nothing;
    table.History_FaceChanged = nothing;
    table.History_SelectedBrushesCreated = nothing;
    table.History_SelectedEntitiesCreated = nothing;
    table.History_SelectedBrushesDeleted = nothing;
    table.History_SelectedEntitiesDeleted = nothing;
    table.History_SelectedBrushesChanged = nothing;
    table.History_SelectedEntitiesChanged = nothing;
    table.History_SelectedFacesChanged = nothing;
}

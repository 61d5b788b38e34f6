// SPDX-License-Identifier: MIT
// Services 63 to 80: undo. An object that is in no map yet can't be noted.
#include "document/tHistory.h"
#include "document/tMap.h"
#include "pluginhost/tHostServices.h"

#include <set>
#include <string>

static cHistory* historyOf(const cMapData* map) {
    return map && map->map ? map->map->history.get() : nullptr;
}
static cHistory* historyOf(const cEntityData* entity) {
    return entity ? historyOf(entity->owner) : nullptr;
}
static cHistory* historyOf(const cBrushData* brush) {
    return brush ? historyOf(brush->owner) : nullptr;
}
static cHistory* historyOf(const cFaceData* face) {
    return face ? historyOf(face->brush) : nullptr;
}
static cHistory* historyOf(const cGroupData* group) {
    return group ? historyOf(group->owner) : nullptr;
}

// The name of a step outlives the call, whatever memory the plug-in has it in.
static void historyBegin(cMapData* map, const char* name) {
    static std::set<std::string> names;
    if (cHistory* history = historyOf(map))
        history->begin(names.insert(name ? name : "").first->c_str());
}

template<class T, void (cHistory::*Capture)(const T*)> static void note(T* object) {
    if (cHistory* history = historyOf(object))
        (history->*Capture)(object);
}

template<void (cHistory::*Operation)()> static void onMap(cMapData* map) {
    if (cHistory* history = historyOf(map))
        (history->*Operation)();
}

static void brushChanged(cBrushData* brush, int32_t withGeometry) {
    if (cHistory* history = historyOf(brush))
        history->brushChanged(brush, withGeometry != 0);
}

static void selectedBrushesChanged(cMapData* map, int32_t withGeometry) {
    if (cHistory* history = historyOf(map))
        history->brushesChanged(withGeometry != 0);
}

void fillHistoryServices(cHostServices& table) {
    table.History_Begin = historyBegin;
    table.History_End = onMap<&cHistory::end>;
    table.History_EntityCreated = note<cEntityData, &cHistory::entityCreated>;
    table.History_BrushCreated = note<cBrushData, &cHistory::brushCreated>;
    table.History_GroupCreated = note<cGroupData, &cHistory::groupCreated>;
    table.History_EntityDeleted = note<cEntityData, &cHistory::entityDeleted>;
    table.History_BrushDeleted = note<cBrushData, &cHistory::brushDeleted>;
    table.History_GroupDeleted = note<cGroupData, &cHistory::groupDeleted>;
    table.History_EntityChanged = note<cEntityData, &cHistory::entityChanged>;
    table.History_BrushChanged = brushChanged;
    table.History_FaceChanged = note<cFaceData, &cHistory::faceChanged>;
    table.History_SelectedBrushesCreated = onMap<&cHistory::brushesCreated>;
    table.History_SelectedEntitiesCreated = onMap<&cHistory::entitiesCreated>;
    table.History_SelectedBrushesDeleted = onMap<&cHistory::brushesDeleted>;
    table.History_SelectedEntitiesDeleted = onMap<&cHistory::entitiesDeleted>;
    table.History_SelectedBrushesChanged = selectedBrushesChanged;
    table.History_SelectedEntitiesChanged = onMap<&cHistory::entitiesChanged>;
    table.History_SelectedFacesChanged = onMap<&cHistory::facesChanged>;
}

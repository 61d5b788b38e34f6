// SPDX-License-Identifier: MIT
// What is selected in a map, and the sentence that tells it.
#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tHost.h"

// The tool whose picks are faces.
static constexpr int TEXTURE_TOOL = 5;
static constexpr int SELECTION_PANE = 2;

int cMap::updateSelectionMode() {
    if (g_host && g_host->currentToolId() == TEXTURE_TOOL)
        selectionMode = MODE_FACES;
    else
        selectionMode = g_host && g_host->IgnoreGroups ? MODE_SINGLE : MODE_GROUPS;
    return selectionMode;
}

template<class T, T* T::*Next> static void dropAll(T*& head, cListRange<T, Next> range) {
    for (T* item : range) {
        item->flags &= ~uint32_t(OF_SELECTED);
        item->nextSelected = item->prevSelected = nullptr;
    }
    head = nullptr;
}

void cMap::clearFaces() {
    dropAll(data.selectedFaces, selectedFacesOf(data));
    markChanged();
    describeSelection();
}

void cMap::clearSelection() {
    dropAll(data.selectedGroups, selectedGroupsOf(data));
    dropAll(data.selectedEntities, selectedEntitiesOf(data));
    dropAll(data.selectedBrushes, selectedBrushesOf(data));
    dropAll(data.selectedFaces, selectedFacesOf(data));
    markChanged();
    describeSelection();
}

void cMap::dropHidden() {
    for (cGroupData* group : selectedGroupsOf(data)) {
        if (group->flags & GF_HIDDEN)
            selectedRemove(data.selectedGroups, group);
    }
    const auto shown = [](const cBrushData* brush) {
        return brushVisible(brush) && entityVisible(brush->owner);
    };
    for (cFaceData* face : selectedFacesOf(data)) {
        if (!shown(face->brush))
            selectedRemove(data.selectedFaces, face);
    }
    for (cBrushData* brush : selectedBrushesOf(data)) {
        if (!shown(brush))
            selectedRemove(data.selectedBrushes, brush);
    }
    for (cEntityData* entity : selectedEntitiesOf(data)) {
        if (!entityVisible(entity))
            selectedRemove(data.selectedEntities, entity);
    }
    markChanged();
    describeSelection();
}

// ---- The sentence

int cMap::countSelectedUnits() const {
    int count = 0;
    if (selectionMode == MODE_GROUPS) {
        for ([[maybe_unused]] const cGroupData* group : selectedGroupsOf(data))
            ++count;
    }
    for (const cEntityData* entity : selectedEntitiesOf(data)) {
        const bool inGroup =
            selectionMode == MODE_GROUPS && entity->rootGroup && isSelected(entity->rootGroup);
        count += inGroup ? 0 : 1;
    }
    return count;
}

int cMap::countSelectedSolids() const {
    int count = 0;
    for (const cBrushData* brush : selectedBrushesOf(data)) {
        const bool own =
            (brush->owner->flags & EF_WORLD) && !(brush->rootGroup && isSelected(brush->rootGroup));
        count += selectionMode != MODE_GROUPS || own ? 1 : 0;
    }
    return count;
}

QString cMap::entitySentence() const {
    const cEntityData* entity = data.selectedEntities;
    const QString classname = QString::fromLocal8Bit(entity->classname);
    const char* target = getEpairValue(entity, "targetname");
    if (!target || !*target)
        return classname;
    return QStringLiteral("%1 - %2").arg(classname, QString::fromLocal8Bit(target));
}

static int faceCount(const cBrushData* brush) {
    int count = 0;
    for ([[maybe_unused]] const cFaceData* face : facesOf(brush))
        ++count;
    return count;
}

QString cMap::selectionSentence() const {
    if (data.selectedFaces) {
        int faces = 0;
        for ([[maybe_unused]] const cFaceData* face : selectedFacesOf(data))
            ++faces;
        return faces == 1 ? QStringLiteral("1 face selected.")
                          : QStringLiteral("%1 faces selected.").arg(faces);
    }
    int count = countSelectedUnits();
    const int solids = countSelectedSolids();
    count += solids;
    if (data.selectedBrushes && selectionMode != MODE_GROUPS) {
        for (const cEntityData* entity : selectedEntitiesOf(data))
            count -= entity->brushes ? 1 : 0;
    }
    if (count == 0)
        return data.selectedBrushes ? QStringLiteral("%1 objects selected.").arg(count)
                                    : QStringLiteral("no selection.");
    if (count != 1)
        return QStringLiteral("%1 objects selected.").arg(count);
    if (selectionMode == MODE_GROUPS && data.selectedGroups)
        return QStringLiteral("group of %1 objects.").arg(data.selectedGroups->memberCount);
    if (solids == 1)
        return QStringLiteral("solid with %1 faces.").arg(faceCount(data.selectedBrushes));
    return data.selectedEntities ? entitySentence()
                                 : QStringLiteral("%1 objects selected.").arg(count);
}

void cMap::describeSelection() {
    if (!g_host)
        return;
    g_host->setStatusPane(selectionSentence(), SELECTION_PANE);
    if (!data.selectedFaces)
        g_host->selectionDescribed(*this);
}

// SPDX-License-Identifier: MIT
// Selecting by pick number and by box. A pick number goes through the pool of numbers, so a click
// walks the map at most for the members of a group.
#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tMap.h"
#include "document/tMapLists.h"

template<class T> static void setSelected(T*& head, T* item, bool select) {
    if (isSelected(item) == select)
        return;
    if (select)
        selectedPush(head, item);
    else
        selectedRemove(head, item);
}

// ---- By pick number

bool cMap::isPickSelected(int pick) const {
    const cPickTarget target = picks.target(pick);
    const int mode = wantedSelectionMode();
    switch (target.kind) {
    case ePickKind::Group:
        return mode == MODE_GROUPS && isSelected(static_cast<cGroupData*>(target.record));
    case ePickKind::Entity:
        return isSelected(static_cast<cEntityData*>(target.record));
    case ePickKind::Brush:
        return isSelected(static_cast<cBrushData*>(target.record));
    case ePickKind::Face:
        return mode == MODE_FACES && isSelected(static_cast<cFaceData*>(target.record));
    case ePickKind::None:
        break;
    }
    return false;
}

void cMap::deselectEntity(cEntityData* entity) {
    setSelected(data.selectedEntities, entity, false);
    for (cBrushData* brush : brushesOf(entity))
        setSelected(data.selectedBrushes, brush, false);
}

void cMap::deselectGroup(cGroupData* group) {
    for (cEntityData* entity : selectedEntitiesOf(data)) {
        if (entity->rootGroup == group)
            deselectEntity(entity);
    }
    for (cBrushData* brush : selectedBrushesOf(data)) {
        if (brush->rootGroup == group)
            selectedRemove(data.selectedBrushes, brush);
    }
    setSelected(data.selectedGroups, group, false);
}

void cMap::pickGroup(cGroupData* group, bool toggle) {
    if (toggle && isSelected(group))
        deselectGroup(group);
    else
        selectGroup(group);
}

void cMap::pickEntity(cEntityData* entity, bool toggle) {
    if (toggle && isSelected(entity))
        deselectEntity(entity);
    else if (!(entity->flags & EF_WORLD))
        selectEntity(entity);
}

// An entity that loses a brush is no longer selected as a whole.
void cMap::pickBrush(cBrushData* brush, bool toggle) {
    const bool select = !(toggle && isSelected(brush));
    setSelected(data.selectedBrushes, brush, select);
    if (!select)
        setSelected(data.selectedEntities, brush->owner, false);
}

void cMap::selectByPick(int pick, bool toggle) {
    const int mode = updateSelectionMode();
    const cPickTarget target = picks.target(pick);
    if (target.kind == ePickKind::Group && mode == MODE_GROUPS)
        pickGroup(static_cast<cGroupData*>(target.record), toggle);
    else if (target.kind == ePickKind::Entity)
        pickEntity(static_cast<cEntityData*>(target.record), toggle);
    else if (target.kind == ePickKind::Brush)
        pickBrush(static_cast<cBrushData*>(target.record), toggle);
    else if (target.kind == ePickKind::Face && mode == MODE_FACES) {
        auto* face = static_cast<cFaceData*>(target.record);
        setSelected(data.selectedFaces, face, !(toggle && isSelected(face)));
    }
    describeSelection();
}

void cMap::selectBrushFacesByPick(int pick, bool toggle) {
    if (const cFaceData* picked = findFaceByPick(pick)) {
        for (cFaceData* face : facesOf(picked->brush))
            setSelected(data.selectedFaces, face, !(toggle && isSelected(face)));
    }
    describeSelection();
}

// ---- By box

struct cMap::cBoxTest {
    const float* mins;
    const float* maxs;
    int mode; // eBoxMode

    bool touches(const float* objectMins, const float* objectMaxs) const {
        return boxTouches(mins, maxs, objectMins, objectMaxs);
    }

    bool passes(const float* objectMins, const float* objectMaxs, const float* center) const {
        if (mode == BOX_TOUCHING)
            return touches(objectMins, objectMaxs);
        return mode == BOX_CONTAINED ? boxHolds(mins, maxs, objectMins, objectMaxs)
                                     : boxHolds(mins, maxs, center, center);
    }

    bool passes(const cBrushData* brush) const {
        return passes(brush->mins, brush->maxs, brush->brush->center);
    }

    bool passes(const cEntityData* entity) const {
        float center[3];
        for (int i = 0; i < 3; ++i)
            center[i] =
                entity->brushes ? (entity->mins[i] + entity->maxs[i]) * 0.5f : entity->origin[i];
        return passes(entity->mins, entity->maxs, center);
    }
};

void cMap::boxBrushes(cEntityData* container, const cBoxTest& test,
                      QSet<const cGroupData*>& touched) {
    if (!test.touches(container->mins, container->maxs))
        return;
    for (cBrushData* brush : brushesOf(container)) {
        if (isSelected(brush) || !brushVisible(brush) || !test.passes(brush))
            continue;
        selectedPush(data.selectedBrushes, brush);
        if (brush->rootGroup && !isSelected(brush->rootGroup))
            touched.insert(brush->rootGroup);
    }
}

void cMap::selectInBox(const float* mins, const float* maxs, int boxMode) {
    const int mode = updateSelectionMode();
    const cBoxTest test = {mins, maxs, boxMode};
    // Outermost groups with a member in the box; their other members come in by one walk.
    QSet<const cGroupData*> touched;
    for (cEntityData* entity : entitiesOf(data)) {
        if (!entityVisible(entity))
            continue;
        if ((entity->flags & EF_WORLD) || (mode == MODE_SINGLE && entity->brushes)) {
            boxBrushes(entity, test, touched);
            continue;
        }
        if (isSelected(entity) || !test.passes(entity))
            continue;
        selectEntity(entity);
        if (entity->rootGroup && !isSelected(entity->rootGroup))
            touched.insert(entity->rootGroup);
    }
    if (mode == MODE_GROUPS)
        selectUnits(touched);
    describeSelection();
}

// SPDX-License-Identifier: MIT
// Copies of the selected objects, with their groups, in place of them as the selection.
#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tGroup.h"
#include "document/tHistory.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "operations/tTransform.h"
#include "support/tHost.h"

#include <QHash>
#include <algorithm>

namespace {
// One clone: what is copied, and what has been made of it.
class cCloning {
public:
    explicit cCloning(cMap& map) : m_map(map) {}

    void takeSelection();
    void copyObjects(bool withGroups);
    void select();
    void capture(cHistory& history) const;

    std::vector<cEntityData*> entities; // the copies
    std::vector<cBrushData*> brushes;

private:
    void copyEntity(const cEntityData* source);
    void copyBrush(const cBrushData* source, cEntityData* owner);
    cGroupData* copyGroup(const cGroupData* source);
    template<class T> void join(const T* source, T* copy);

    cMap& m_map;
    bool m_withGroups = false;
    std::vector<const cEntityData*> m_entities; // the sources, oldest of the selection first
    std::vector<const cBrushData*> m_brushes;   // those that belong to none of them
    QHash<const cGroupData*, cGroupData*> m_groups;
    std::vector<cGroupData*> m_newGroups; // parents before their children
};
} // namespace

void cCloning::takeSelection() {
    for (const cEntityData* entity : selectedEntitiesOf(m_map.data))
        m_entities.push_back(entity);
    for (const cBrushData* brush : selectedBrushesOf(m_map.data)) {
        if (!isSelected(brush->owner))
            m_brushes.push_back(brush);
    }
    std::reverse(m_entities.begin(), m_entities.end());
    std::reverse(m_brushes.begin(), m_brushes.end());
}

void cCloning::copyObjects(bool withGroups) {
    m_withGroups = withGroups;
    for (const cEntityData* source : m_entities)
        copyEntity(source);
    for (const cBrushData* source : m_brushes)
        copyBrush(source, m_map.world());
}

void cCloning::copyEntity(const cEntityData* source) {
    cEntityData* copy = m_map.copyEntity(source);
    entities.push_back(copy);
    join(source, copy);
    for (const cBrushData* brush : brushesOf(source))
        copyBrush(brush, copy);
}

void cCloning::copyBrush(const cBrushData* source, cEntityData* owner) {
    cBrushData* copy = m_map.copyBrush(source, owner);
    brushes.push_back(copy);
    if (owner->flags & EF_WORLD)
        join(source, copy);
}

// The group and its parents, each once.
cGroupData* cCloning::copyGroup(const cGroupData* source) {
    if (!source)
        return nullptr;
    if (cGroupData* known = m_groups.value(source))
        return known;
    cGroupData* parent = copyGroup(source->parent);
    cGroupData* copy = m_map.addGroup();
    copy->group->setBaseColor(source->group->baseColor);
    copy->parent = parent;
    if (parent)
        ++parent->memberCount;
    m_groups.insert(source, copy);
    m_newGroups.push_back(copy);
    return copy;
}

template<class T> void cCloning::join(const T* source, T* copy) {
    if (!m_withGroups || !source->group)
        return;
    copy->group = copyGroup(source->group);
    ++copy->group->memberCount;
    copy->rootGroup = outermostGroup(copy->group);
}

void cCloning::select() {
    for (cGroupData* group : m_newGroups) {
        if (!group->parent)
            m_map.select(group);
    }
    for (cEntityData* entity : entities)
        m_map.select(entity);
    for (cBrushData* brush : brushes) {
        if (brushVisible(brush))
            m_map.select(brush);
    }
}

void cCloning::capture(cHistory& history) const {
    for (const cGroupData* group : m_newGroups)
        history.groupCreated(group);
    for (const cEntityData* entity : entities)
        history.entityCreated(entity);
    for (const cBrushData* brush : brushes)
        history.brushCreated(brush);
}

void cloneSelection(cMap& map, const cTransformRecord& record) {
    if (!map.data.selectedEntities && !map.data.selectedBrushes)
        return;
    cHistoryStep step(map, "Clone Objects");
    const bool withGroups = map.updateSelectionMode() == MODE_GROUPS;
    cCloning cloning(map);
    cloning.takeSelection();
    map.clearSelection();
    cloning.copyObjects(withGroups);
    cloning.select();
    applyTransform(map, &cloning.entities, &cloning.brushes, record);
    cloning.capture(*map.history);
    if (g_host && g_host->KeepCloneVisGroup && !map.visGroups.isEmpty()) {
        map.computeVisGroupVisibility();
        g_host->visGroupsChanged(map);
    }
    map.describeSelection();
}

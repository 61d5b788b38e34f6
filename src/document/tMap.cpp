// SPDX-License-Identifier: MIT
// The map: lookups, creation and removal of its objects.
#include "document/tMap.h"

#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tCullTree.h"
#include "document/tEntity.h"
#include "document/tFace.h"
#include "document/tFaceMapping.h"
#include "document/tGroup.h"
#include "document/tHistory.h"
#include "document/tMapContext.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "document/tTexture.h"
#include "document/tVisGroup.h"
#include "support/tConsole.h"
#include "support/tHost.h"
#include "support/tVec.h"

cMap::cMap(cMapContext& game, cProject* owner) : context(game), project(owner), data() {
    data.map = this;
    history = std::make_unique<cHistory>(*this);
    updateSelectionMode();
}

cMap::~cMap() {
    clearMap();
}

uint32_t cMap::nextId(uint32_t& counter) {
    if (++counter == 0)
        counter = 1;
    return counter;
}

// ---- Changes

void cMap::changed(unsigned what) {
    ++m_revision;
    m_edits += what & MC_EDITED ? 1 : 0;
    if (what & MC_VISGROUPS)
        forgetVisGroupList();
    m_changes |= what;
    if (m_openChanges == 0)
        g_host->mapChanged(*this, std::exchange(m_changes, 0u));
}

void cMap::closeChange(unsigned what) {
    --m_openChanges;
    changed(what);
}

// ---- Clearing

void cMap::freeOverlays() {
    Mem_Free(points);
    points = nullptr;
    pointCount = 0;
    while (cPortal* portal = portals) {
        portals = portal->next;
        Mem_Free(portal);
    }
}

void cMap::clearMap() {
    data.flags |= MF_CLEARING;
    cullTree.reset();
    noteChange(*this);
    for (cGroupData* group : groupsOf(data))
        releaseGroup(group);
    for (cEntityData* entity : entitiesOf(data)) {
        for (cBrushData* brush : brushesOf(entity)) {
            for (cFaceData* face : facesOf(brush))
                releaseFace(face);
            releaseBrush(brush);
        }
        releaseEntity(entity);
    }
    data = {};
    data.map = this;
    toldMended = false;
    m_entitiesById.clear();
    m_brushesById.clear();
    m_groupsById.clear();
    freeVisGroups();
    freeOverlays();
    picks.clear();
    markChanged();
}

// The record and its class half, with what they own; all lists are the caller's business.
void cMap::releaseFace(cFaceData* face) {
    dropTexture(face, context);
    delete face->face;
    Mem_Free(face->vertices);
    Mem_Free(face);
}

void cMap::releaseBrush(cBrushData* brush) {
    brush->brush->dropVisGroups();
    if (watcher)
        watcher->brushGone(brush);
    delete brush->brush;
    Mem_Free(brush);
}

void cMap::releaseEntity(cEntityData* entity) {
    entity->entity->dropVisGroups();
    detachResource(entity);
    freeEpairs(entity->epairs);
    Mem_Free(entity->classname);
    Mem_Free(entity->flagsKey);
    if (watcher)
        watcher->entityGone(entity);
    delete entity->entity;
    Mem_Free(entity);
}

void cMap::releaseGroup(cGroupData* group) {
    forgetOutermostGroups();
    delete group->group;
    Mem_Free(group);
}

// ---- Lookups

cGroupData* cMap::findGroupById(uint32_t id) const {
    return m_groupsById.value(id);
}

cEntityData* cMap::findEntityById(uint32_t id) const {
    return m_entitiesById.value(id);
}

cBrushData* cMap::findBrushById(const cEntityData* entity, uint32_t id) const {
    cBrushData* brush = m_brushesById.value(id);
    return brush && (!entity || brush->owner == entity) ? brush : nullptr;
}

cFaceData* cMap::findFaceById(const cBrushData* brush, uint32_t id) const {
    for (cFaceData* face : facesOf(brush)) {
        if (face->id == id)
            return face;
    }
    return nullptr;
}

template<class T> static T* recordOf(const cPickPool& picks, int pick, ePickKind kind) {
    const cPickTarget target = picks.target(pick);
    return target.kind == kind ? static_cast<T*>(target.record) : nullptr;
}

cGroupData* cMap::findGroupByPick(int pick) const {
    return recordOf<cGroupData>(picks, pick, ePickKind::Group);
}

cEntityData* cMap::findEntityByPick(int pick) const {
    return recordOf<cEntityData>(picks, pick, ePickKind::Entity);
}

cBrushData* cMap::findBrushByPick(int pick) const {
    return recordOf<cBrushData>(picks, pick, ePickKind::Brush);
}

cFaceData* cMap::findFaceByPick(int pick) const {
    return recordOf<cFaceData>(picks, pick, ePickKind::Face);
}

// ---- Creation

void cMap::attachEntity(cEntityData* entity) {
    entity->entity->pickId = picks.take(ePickKind::Entity, entity);
    setEntityClass(entity, findEntityClass(entity, context));
    if (!entity->flagsKey)
        deriveFlagsKey(entity);
}

void cMap::insertEntity(cEntityData* entity, uint32_t id) {
    entity->owner = &data;
    entity->id = id ? id : nextId(lastEntityId);
    if (entity->flags & EF_WORLD)
        listPushHead(data.entities, data.entitiesTail, entity);
    else
        listPushTail(data.entities, data.entitiesTail, entity);
    m_entitiesById.insert(entity->id, entity);
    markChanged();
}

void cMap::insertBrush(cBrushData* brush, cEntityData* entity, uint32_t id) {
    brush->owner = entity;
    brush->brush->pickId = picks.take(ePickKind::Brush, brush);
    brush->id = id ? id : nextId(lastBrushId);
    listPushTail(entity->brushes, entity->brushesTail, brush);
    noteChange(entity);
    m_brushesById.insert(brush->id, brush);
    markChanged();
}

void cMap::insertFace(cFaceData* face, cBrushData* brush, uint32_t id) {
    face->brush = brush;
    face->face->pickId = picks.take(ePickKind::Face, face);
    face->id = id ? id : nextId(lastFaceId);
    listPushTail(brush->faces, brush->facesTail, face);
}

cGroupData* cMap::insertGroup(uint32_t id) {
    auto* group = static_cast<cGroupData*>(Mem_Alloc(sizeof(cGroupData)));
    group->group = new cGroup(group);
    group->owner = &data;
    group->id = id;
    group->group->pickId = picks.take(ePickKind::Group, group);
    listPushHead(data.groups, group);
    m_groupsById.insert(id, group);
    return group;
}

cEntityData* cMap::addEntity(const char* classname, const float* origin, uint32_t flags) {
    cEntityData* entity = newEntity(classname, origin, flags);
    attachEntity(entity);
    insertEntity(entity);
    return entity;
}

cEntityData* cMap::addWorld(const char* classname) {
    const float origin[3] = {0, 0, 0};
    cEntityData* entity = addEntity(classname, origin, EF_WORLD);
    resetEntityFromClass(entity);
    updateEntity(entity, 0);
    return entity;
}

cBrushData* cMap::addBrush(cEntityData* entity) {
    cBrushData* brush = newBrush();
    insertBrush(brush, entity);
    return brush;
}

cFaceData* cMap::addFace(cBrushData* brush, const cFaceTexture& tex, int vertexCount) {
    cFaceData* face = newFace(vertexCount);
    if (!face)
        return nullptr;
    insertFace(face, brush);
    applyTextureBlock(face, tex);
    return face;
}

cGroupData* cMap::addGroup() {
    cGroupData* group = insertGroup(nextId(lastGroupId));
    const uint8_t color[4] = {uint8_t(T_RandomLong(0, 255)), uint8_t(T_RandomLong(0, 255)),
                              uint8_t(T_RandomLong(0, 255)), 255};
    group->group->setBaseColor(color);
    return group;
}

// ---- Removal

void cMap::freeFace(cFaceData* face) {
    if (isSelected(face))
        selectedRemove(data.selectedFaces, face);
    picks.give(face->face->pickId);
    if (face->brush) {
        noteChange(face->brush);
        listRemove(face->brush->faces, face->brush->facesTail, face);
    }
    releaseFace(face);
    markChanged();
}

void cMap::freeBrush(cBrushData* brush, bool record) {
    if (isSelected(brush))
        selectedRemove(data.selectedBrushes, brush);
    for (cFaceData* face : facesOf(brush))
        freeFace(face);
    if (cullTree)
        cullTree->remove(brush);
    picks.give(brush->brush->pickId);
    leaveGroupBrush(brush, false, record);
    listRemove(brush->owner->brushes, brush->owner->brushesTail, brush);
    noteChange(brush->owner);
    m_brushesById.remove(brush->id);
    releaseBrush(brush);
    markChanged();
}

void cMap::freeEntity(cEntityData* entity, bool record) {
    if (entity->flags & EF_WORLD)
        return;
    for (cBrushData* brush : brushesOf(entity))
        freeBrush(brush, record);
    if (isSelected(entity))
        selectedRemove(data.selectedEntities, entity);
    if (cullTree)
        cullTree->remove(entity);
    picks.give(entity->entity->pickId);
    leaveGroupEntity(entity, false, record);
    listRemove(data.entities, data.entitiesTail, entity);
    m_entitiesById.remove(entity->id);
    releaseEntity(entity);
    markChanged();
}

bool cMap::removeEmptySolidEntity(cEntityData* entity, bool record) {
    if (entity->brushes || (entity->flags & (EF_WORLD | EF_POINT)))
        return false;
    Print("removing the empty solid entity: %s", entity->classname ? entity->classname : "");
    if (record)
        history->entityDeleted(entity);
    freeEntity(entity, record);
    return true;
}

void cMap::removeEntityWhole(cEntityData* entity, bool record) {
    if (entity->flags & EF_WORLD)
        return;
    if (record) {
        for (const cBrushData* brush : brushesOf(entity))
            history->brushDeleted(brush);
        history->entityDeleted(entity);
    }
    freeEntity(entity, record);
}

void cMap::moveBrush(cBrushData* brush, cEntityData* entity) {
    if (brush->owner == entity)
        return;
    if (cullTree)
        cullTree->remove(brush);
    listRemove(brush->owner->brushes, brush->owner->brushesTail, brush);
    brush->owner->flags |= EF_DIRTY;
    noteChange(brush->owner);
    brush->owner = entity;
    listPushTail(entity->brushes, entity->brushesTail, brush);
    noteChange(entity);
    entity->flags |= EF_DIRTY;
    // An entity's link follows with its update; once a brush would be once too often.
    if (cullTree && (entity->flags & EF_WORLD))
        cullTree->updateBrush(brush);
    noteChange(brush);
    markChanged();
}

// ---- Finishing

void cMap::buildCullTree() {
    const float worldSize = float(g_host->MaxWorldSize);
    if (cullTree)
        cullTree->rebuild(worldSize);
    else
        cullTree = std::make_unique<cCullTree>(*this, worldSize);
}

void cMap::noteFaceTransparency() {
    for (cEntityData* entity : entitiesOf(data))
        for (cBrushData* brush : brushesOf(entity))
            for (cFaceData* face : facesOf(brush))
                updateFaceTransparency(face);
}

void cMap::finishLoad() {
    for (cEntityData* entity : entitiesOf(data))
        noteTransparency(entity);
    noteFaceTransparency();
    computeVisGroupVisibility();
    buildCullTree();
    noteChange(*this);
    markChanged();
}

void cMap::renewFaces() {
    QHash<QByteArray, const cTexture*> meant; // by what each name means now
    const auto stale = [&](const cFaceData* face) {
        const QByteArray name = face->tex.name;
        if (!meant.contains(name))
            meant.insert(name, context.findTexture(name));
        const cTexture* texture = face->texture;
        return texture && ((texture->flags & TF_REPLACED) || meant.value(name) != texture);
    };
    for (cEntityData* entity : entitiesOf(data)) {
        if (entity->attachKind == AK_DECAL)
            attachResource(entity);
        else if (showsFile(entity))
            updateEntity(entity, UM_ATTACH);
        for (cBrushData* brush : brushesOf(entity)) {
            for (cFaceData* face : facesOf(brush)) {
                if (!stale(face))
                    continue;
                applyTextureBlock(face, face->tex);
                updateFaceTransparency(face);
                rebuildFace(face, 0);
            }
        }
    }
    noteChange(*this);
    markChanged();
}

void cMap::recolor() {
    for (cGroupData* group : groupsOf(data))
        group->group->updateDrawColor();
    for (cEntityData* entity : entitiesOf(data)) {
        for (cBrushData* brush : brushesOf(entity))
            brush->brush->updateDrawColor();
    }
    noteChange(*this);
    markChanged();
}

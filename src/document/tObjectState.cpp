// SPDX-License-Identifier: MIT
// Taking states of objects, and putting them back.
#include "document/tObjectState.h"

#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tEntityClass.h"
#include "document/tFace.h"
#include "document/tFaceMapping.h"
#include "document/tGroup.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "document/tVisGroup.h"
#include "support/tConsole.h"
#include "support/tSystem.h"
#include "support/tVec.h"

#include <algorithm>
#include <cstring>

// ---- Taking

template<class T> static uint32_t idOf(const T* object) {
    return object ? object->id : 0;
}

template<size_t N, class T> static std::array<T, N> arrayOf(const T* values) {
    std::array<T, N> result;
    std::copy(values, values + N, result.begin());
    return result;
}

void cObjectStates::take(const cGroupData* group) {
    groups.push_back({group->id, idOf(group->prev), idOf(group->parent), group->flags,
                      group->memberCount, arrayOf<4>(group->group->baseColor)});
}

static cStateRange append(std::vector<uint32_t>& serials, const QList<cVisGroup*>& visGroups) {
    const cStateRange range = {uint32_t(serials.size()), uint32_t(visGroups.size())};
    for (const cVisGroup* visGroup : visGroups)
        serials.push_back(visGroup->serial);
    return range;
}

cStateRange cObjectStates::takeVisGroups(const cBrushData* brush) {
    return append(serials, brush->brush->visGroups);
}

cStateRange cObjectStates::takeVisGroups(const cEntityData* entity) {
    return append(serials, entity->entity->visGroups);
}

cFaceState cObjectStates::takeFace(const cFaceData* face, bool withGeometry) {
    cFaceState state = {};
    state.id = face->id;
    state.flags = face->flags;
    state.tex = face->tex;
    vecCopy(face->normal, state.normal);
    state.dist = face->dist;
    state.planeType = face->planeType;
    if (!withGeometry)
        return state;
    state.points = {uint32_t(points.size()), uint32_t(face->vertexCount)};
    for (int i = 0; i < face->vertexCount; ++i)
        points.push_back(arrayOf<3>(face->vertices[i].xyz));
    return state;
}

void cObjectStates::takeLone(const cFaceData* face) {
    loneFaces.push_back({face->brush->id, face->brush->owner->id, takeFace(face, false)});
}

void cObjectStates::takeHead(const cBrushData* brush) {
    cBrushState state = {};
    state.id = brush->id;
    state.previousId = idOf(brush->prev);
    state.entityId = brush->owner->id;
    state.groupId = idOf(brush->group);
    state.rootGroupId = idOf(brush->rootGroup);
    state.flags = brush->flags;
    state.reserved = brush->reserved;
    state.color = arrayOf<4>(brush->brush->baseColor);
    brushes.push_back(state);
}

void cObjectStates::take(const cBrushData* brush, unsigned what) {
    takeHead(brush);
    cBrushState& state = brushes.back();
    state.withGeometry = (what & TAKE_GEOMETRY) != 0;
    state.faces.first = uint32_t(faces.size());
    for (const cFaceData* face : facesOf(brush))
        faces.push_back(takeFace(face, state.withGeometry));
    state.faces.count = uint32_t(faces.size()) - state.faces.first;
    if (what & TAKE_VISGROUPS)
        state.visGroups = takeVisGroups(brush);
}

void cObjectStates::take(const cEntityData* entity, unsigned what) {
    cEntityState state = {};
    state.id = entity->id;
    state.previousId = idOf(entity->prev);
    state.groupId = idOf(entity->group);
    state.rootGroupId = idOf(entity->rootGroup);
    state.flags = entity->flags;
    state.spawnFlags = entity->spawnFlags;
    state.classname = entity->classname; // null stays null
    state.flagsKey = entity->flagsKey;
    state.origin = arrayOf<3>(entity->origin);
    state.angles = arrayOf<3>(entity->angles);
    state.mins = arrayOf<3>(entity->mins);
    state.maxs = arrayOf<3>(entity->maxs);
    state.color = arrayOf<4>(entity->entity->color);
    state.renderFlags = entity->renderFlags;
    state.renderColor = arrayOf<4>(entity->renderColor);
    state.renderMode = entity->renderMode;
    state.renderFx = entity->renderFx;
    state.body = entity->body;
    state.skin = entity->skin;
    state.sequence = entity->sequence;
    state.frameRate = entity->frameRate;
    state.scale = entity->scale;
    for (const cEpair* pair : epairsOf(entity))
        state.pairs.push_back({pair->key, pair->value});
    if (what & TAKE_VISGROUPS)
        state.visGroups = takeVisGroups(entity);
    state.brushes.first = uint32_t(brushes.size());
    if (what & TAKE_BRUSHES) {
        for (const cBrushData* brush : brushesOf(entity))
            take(brush, what | TAKE_GEOMETRY);
    }
    state.brushes.count = uint32_t(brushes.size()) - state.brushes.first;
    entities.push_back(std::move(state));
}

template<class T>
static cStateRange append(std::vector<T>& list, const std::vector<T>& from, cStateRange range) {
    const cStateRange placed = {uint32_t(list.size()), range.count};
    list.insert(list.end(), from.begin() + range.first, from.begin() + range.end());
    return placed;
}

bool cObjectStates::isSameShape(cStateRange own, cStateRange other,
                                const cObjectStates& from) const {
    if (own.count != other.count)
        return false;
    for (uint32_t i = 0; i < own.count; ++i) {
        if (faces[own.first + i].points.count != from.faces[other.first + i].points.count)
            return false;
    }
    return true;
}

// Of from, with their points, behind all that are there.
cStateRange cObjectStates::appendFaces(const cObjectStates& from, cStateRange range) {
    const cStateRange placed = append(faces, from.faces, range);
    for (uint32_t i = placed.first; i < placed.end(); ++i)
        faces[i].points = append(points, from.points, faces[i].points);
    return placed;
}

void cObjectStates::replaceFaces(cBrushState& state, const cBrushState& by,
                                 const cObjectStates& from) {
    if (!isSameShape(state.faces, by.faces, from)) {
        state.faces = appendFaces(from, by.faces);
        return;
    }
    for (uint32_t i = 0; i < by.faces.count; ++i) {
        cFaceState& face = faces[state.faces.first + i];
        const cStateRange own = face.points;
        face = from.faces[by.faces.first + i];
        std::copy_n(from.points.begin() + face.points.first, own.count, points.begin() + own.first);
        face.points = own;
    }
}

void cObjectStates::pack() {
    size_t used = 0;
    for (const cBrushState& brush : brushes)
        used += brush.faces.count;
    if (used == faces.size())
        return;
    cObjectStates packed;
    for (cBrushState& brush : brushes)
        brush.faces = packed.appendFaces(*this, brush.faces);
    packed.shrink();
    faces = std::move(packed.faces);
    points = std::move(packed.points);
}

// ---- Sizes

void cObjectStates::cBrushCounts::add(const cBrushData* brush) {
    ++brushes;
    for (const cFaceData* face : facesOf(brush)) {
        ++faces;
        points += size_t(face->vertexCount);
    }
}

template<class T> static void reserveMore(std::vector<T>& list, size_t count) {
    if (list.size() + count > list.capacity())
        list.reserve(std::max(list.size() + count, list.capacity() * 2));
}

void cObjectStates::reserve(const cBrushCounts& counts) {
    reserveMore(brushes, counts.brushes);
    reserveMore(faces, counts.faces);
    reserveMore(points, counts.points);
}

bool cObjectStates::isEmpty() const {
    return groups.empty() && entities.empty() && brushes.empty() && loneFaces.empty();
}

void cObjectStates::clear() {
    groups.clear();
    entities.clear();
    brushes.clear();
    loneFaces.clear();
    faces.clear();
    points.clear();
    serials.clear();
}

template<class T> static size_t bytesOf(const std::vector<T>& list) {
    return list.capacity() * sizeof(T);
}

size_t cObjectStates::bytes() const {
    size_t sum = bytesOf(groups) + bytesOf(entities) + bytesOf(brushes) + bytesOf(loneFaces) +
                 bytesOf(faces) + bytesOf(points) + bytesOf(serials);
    for (const cEntityState& entity : entities) {
        sum += bytesOf(entity.pairs);
        for (const auto& [key, value] : entity.pairs)
            sum += size_t(key.size() + value.size());
    }
    return sum;
}

void cObjectStates::shrink() {
    groups.shrink_to_fit();
    entities.shrink_to_fit();
    brushes.shrink_to_fit();
    loneFaces.shrink_to_fit();
    faces.shrink_to_fit();
    points.shrink_to_fit();
    serials.shrink_to_fit();
}

// ---- Memberships

template<class T> static void setGroup(cMap& map, T* object, uint32_t id) {
    cGroupData* group = id ? map.findGroupById(id) : nullptr;
    if (group != object->group) {
        if (object->group)
            --object->group->memberCount;
        if (group)
            ++group->memberCount;
        object->group = group;
        noteChange(object);
    }
    object->rootGroup = outermostGroup(group);
}

void setGroupById(cMap& map, cEntityData* entity, uint32_t id) {
    setGroup(map, entity, id);
}

void setGroupById(cMap& map, cBrushData* brush, uint32_t id) {
    setGroup(map, brush, id);
}

template<class Half>
static void join(cMap& map, Half* half, const cObjectStates& states, cStateRange serials) {
    for (uint32_t i = serials.first; i < serials.end(); ++i) {
        if (cVisGroup* visGroup = map.findVisGroupBySerial(states.serials[i]))
            half->addToVisGroup(visGroup);
    }
}

void joinVisGroups(cMap& map, cEntityData* entity, const cObjectStates& states,
                   cStateRange serials) {
    join(map, entity->entity, states, serials);
}

void joinVisGroups(cMap& map, cBrushData* brush, const cObjectStates& states, cStateRange serials) {
    join(map, brush->brush, states, serials);
}

// ---- Faces

// An object's flags take the state's, but for what happens to the object at this moment.
static void putFlags(uint32_t& flags, uint32_t state, uint32_t dirty) {
    flags = (state & ~TRANSIENT_FLAGS) | dirty | (flags & OF_SELECTED);
}

void putFace(cFaceData* face, const cFaceState& state) {
    if (face->texture && strcmp(face->tex.name, state.tex.name) == 0)
        face->tex = state.tex; // the reference need not move
    else
        applyTextureBlock(face, state.tex);
    putFlags(face->flags, state.flags, FF_DIRTY);
    updateFaceTransparency(face);
}

static void resizeVertices(cFaceData* face, int count) {
    Mem_Free(face->vertices);
    face->vertices = static_cast<cFaceVertex*>(Mem_Alloc(size_t(count) * sizeof(cFaceVertex)));
    face->vertexCount = count;
}

static void putGeometry(cFaceData* face, const cObjectStates& states, const cFaceState& state) {
    if (face->vertexCount != int(state.points.count))
        resizeVertices(face, int(state.points.count));
    for (uint32_t i = 0; i < state.points.count; ++i) {
        face->vertices[i] = {};
        vecCopy(states.points[state.points.first + i].data(), face->vertices[i].xyz);
    }
    vecCopy(state.normal, face->normal);
    face->dist = state.dist;
    face->planeType = state.planeType;
    // Taken in the midst of a change, when only the corners were settled.
    if ((state.flags & FF_DIRTY) && state.points.count > 2)
        rebuildFace(face, UM_PLANES);
}

static cFaceData* makeFace(cMap& map, cBrushData* brush, const cObjectStates& states,
                           const cFaceState& state, bool keepId) {
    cFaceData* face = newFace(int(state.points.count));
    map.insertFace(face, brush, keepId ? state.id : 0);
    putFace(face, state);
    putGeometry(face, states, state);
    return face;
}

// ---- Brushes

cBrushData* makeBrush(cMap& map, const cObjectStates& states, const cBrushState& state,
                      cEntityData* owner, bool keepIds) {
    cBrushData* brush = newBrush();
    map.insertBrush(brush, owner, keepIds ? state.id : 0);
    putFlags(brush->flags, state.flags, BF_DIRTY);
    brush->reserved = state.reserved;
    brush->brush->setBaseColor(state.color.data());
    for (uint32_t i = state.faces.first; i < state.faces.end(); ++i)
        makeFace(map, brush, states, states.faces[i], keepIds);
    return brush;
}

// The faces of a brush out of its list, so that they go back in another order.
static std::vector<cFaceData*> takeOut(cBrushData* brush) {
    std::vector<cFaceData*> live;
    for (cFaceData* face : facesOf(brush))
        live.push_back(face);
    brush->faces = brush->facesTail = nullptr;
    return live;
}

// The face of that id, out of the list; the search begins where the last one ended.
static cFaceData* pick(std::vector<cFaceData*>& live, size_t& hint, uint32_t id) {
    for (size_t tries = 0; tries < live.size(); ++tries, ++hint) {
        cFaceData*& place = live[hint % live.size()];
        if (!place || place->id != id)
            continue;
        cFaceData* face = place;
        place = nullptr;
        ++hint;
        return face;
    }
    return nullptr;
}

void putBrush(cMap& map, cBrushData* brush, const cObjectStates& states, const cBrushState& state) {
    putFlags(brush->flags, state.flags, BF_DIRTY);
    brush->reserved = state.reserved;
    brush->brush->setBaseColor(state.color.data());
    std::vector<cFaceData*> live = takeOut(brush);
    size_t hint = 0;
    for (uint32_t i = state.faces.first; i < state.faces.end(); ++i) {
        const cFaceState& faceState = states.faces[i];
        cFaceData* face = pick(live, hint, faceState.id);
        if (face) {
            listPushTail(brush->faces, brush->facesTail, face);
            putFace(face, faceState);
            if (state.withGeometry)
                putGeometry(face, states, faceState);
        } else if (state.withGeometry) {
            makeFace(map, brush, states, faceState, true);
        } else {
            Error("Undo/Redo: no such faceId %i", faceState.id);
        }
    }
    for (cFaceData* face : live) {
        if (!face)
            continue;
        listPushTail(brush->faces, brush->facesTail, face);
        if (state.withGeometry)
            map.freeFace(face);
    }
}

// ---- Entities

// The class may have been read anew since the state was taken: what follows from it, follows from
// the one of now.
static void followClass(cEntityData* entity) {
    const cEntityClass* entityClass = entity->entity->entityClass;
    if (!entityClass)
        return;
    const bool isPoint = entityClass->kind == CK_POINT;
    entity->flags = isPoint ? entity->flags | EF_POINT : entity->flags & ~uint32_t(EF_POINT);
    deriveFlagsKey(entity);
}

static void putPairs(cEntityData* entity, const cEntityState& state) {
    freeEpairs(entity->epairs);
    entity->epairs = nullptr;
    cEpair** end = &entity->epairs;
    for (const auto& [key, value] : state.pairs) {
        auto* pair = static_cast<cEpair*>(Mem_Alloc(sizeof(cEpair)));
        pair->key = Mem_StrDup(key.constData());
        pair->value = Mem_StrDup(value.constData());
        *end = pair;
        end = &pair->next;
    }
}

static const char* textOf(const QByteArray& text) {
    return text.isNull() ? nullptr : text.constData();
}

void putKeys(cEntityData* entity, const cEntityState& state) {
    entity->spawnFlags = state.spawnFlags;
    vecCopy(state.angles.data(), entity->angles);
    std::copy(state.color.begin(), state.color.end(), entity->entity->color);
    entity->renderFlags = state.renderFlags;
    std::copy(state.renderColor.begin(), state.renderColor.end(), entity->renderColor);
    entity->renderMode = state.renderMode;
    entity->renderFx = state.renderFx;
    entity->body = state.body;
    entity->skin = state.skin;
    entity->sequence = state.sequence;
    entity->frameRate = state.frameRate;
    entity->scale = state.scale;
    putPairs(entity, state);
    setText(entity->flagsKey, textOf(state.flagsKey));
}

void putEntity(cEntityData* entity, const cEntityState& state) {
    if (state.classname != entity->classname) {
        entity->flags = (entity->flags & ~uint32_t(EF_POINT)) | (state.flags & EF_POINT);
        setText(entity->classname, textOf(state.classname));
        setEntityClass(entity, findEntityClass(entity, contextOf(entity)));
    }
    putFlags(entity->flags, state.flags, EF_DIRTY);
    vecCopy(state.origin.data(), entity->origin);
    vecCopy(state.mins.data(), entity->mins);
    vecCopy(state.maxs.data(), entity->maxs);
    putKeys(entity, state);
    followClass(entity);
}

cEntityData* makeEntity(cMap& map, const cEntityState& state, bool keepId) {
    cEntityData* entity =
        newEntity(textOf(state.classname), state.origin.data(), state.flags & ~TRANSIENT_FLAGS);
    map.attachEntity(entity);
    map.insertEntity(entity, keepId ? state.id : 0);
    putEntity(entity, state);
    return entity;
}

// ---- Groups

cGroupData* makeGroup(cMap& map, const cGroupState& state) {
    cGroupData* group = map.insertGroup(state.id);
    putFlags(group->flags, state.flags, 0);
    group->group->setBaseColor(state.color.data());
    return group;
}

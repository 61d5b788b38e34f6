// SPDX-License-Identifier: MIT
// Reading the project file; tProjectFileSave.cpp writes it.
#include "document/tProjectFile.h"

#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tFace.h"
#include "document/tFaceMapping.h"
#include "document/tGroup.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tProjectStream.h"
#include "document/tStateFields.h"
#include "document/tVisGroup.h"
#include "support/tConsole.h"
#include "support/tMapText.h"
#include "support/tSystem.h"
#include "support/tVec.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

static const char MAGIC[4] = {'K', 'V', 'X', 'P'};
static constexpr int MAX_ERROR_TEXT = 255;
// The least a record takes in the file; a count that promises more than is left is a lie.
static constexpr size_t MIN_GROUP = 20, MIN_VISGROUP = 13, MIN_FACE = 152;

cProjectFile::cProjectFile(cMap& map, const QString& path) : m_map(map), m_path(path) {}

// ---- For both directions

bool cProjectFile::header(cProjectStream& stream) {
    char magic[4] = {};
    memcpy(magic, MAGIC, sizeof magic);
    return stream.value(magic) && memcmp(magic, MAGIC, sizeof magic) == 0 &&
           stream.value(m_version);
}

void cProjectFile::reportFailure(const char* action, const QByteArray& path, const char* why) {
    Error("can't %s \"%s\" (%.*s)", action, path.constData(), MAX_ERROR_TEXT, why);
}

// ---- Loading

bool cProjectFile::load() {
    const QByteArray path = toMapText(m_path);
    Print("Loading: \"%s\"", path.constData());
    int size = 0;
    cProjectStream stream(File_Open(path.constData(), &size), false);
    if (!stream.isOpen()) {
        reportFailure("read", path, strerror(errno));
        return false;
    }
    return readMap(stream);
}

bool cProjectFile::loadBytes(const QByteArray& bytes) {
    QByteArray copy = bytes;
    if (copy.isEmpty())
        return false;
    cProjectStream stream(fmemopen(copy.data(), size_t(copy.size()), "rb"), false);
    return stream.isOpen() && readMap(stream);
}

bool cProjectFile::readMap(cProjectStream& stream) {
    if (!header(stream)) {
        Error("bad file header");
        return false;
    }
    if (m_version < OLDEST_VERSION) {
        Error("bad file version (%i should be %i or higher)", m_version, OLDEST_VERSION);
        return false;
    }
    int32_t entities = 0, reserved = 0;
    if (!readGroups(stream) || !readVisGroups(stream) ||
        !stream.numbers(m_map.data.cordonMins, 3) || !stream.numbers(m_map.data.cordonMaxs, 3) ||
        !stream.value(entities) || !stream.value(reserved)) {
        Error("%s is damaged: nothing of it can be read", toMapText(m_path).constData());
        return false;
    }
    while (!stream.atEnd() && !m_damaged)
        m_damaged = !readEntity(stream);
    m_damaged |= entities > 0 && entities != m_entitiesRead;
    if (m_damaged)
        reportDamage(entities);
    if (stream.mended())
        Warning("%i number(s) of no use became the default", stream.mended());
    finishMap();
    return true;
}

// Files of before entities were counted say 0.
void cProjectFile::reportDamage(int entities) const {
    const QString total = entities > 0 ? QString::number(entities) : QStringLiteral("?");
    Error("%s is damaged: read up to entity %i of %s", toMapText(m_path).constData(),
          m_entitiesRead, total.toLatin1().constData());
}

bool cProjectFile::readGroups(cProjectStream& stream) {
    int32_t count = 0;
    if (!stream.checkedCount(count, MIN_GROUP))
        return false;
    m_maxGroupId = 0;
    for (int i = 0; i < count; ++i) {
        cGroupState state = {};
        if (!walkAllFields(state, m_version, stream))
            return false;
        m_maxGroupId = std::max({m_maxGroupId, state.id, state.parentId});
        // No object could name such a group.
        if (state.id == 0 || m_map.findGroupById(state.id))
            continue;
        // Looked up before the group itself is there, so that no group is its own parent.
        cGroupData* parent = state.parentId ? m_map.findGroupById(state.parentId) : nullptr;
        cGroupData* made = m_map.insertGroup(state.id);
        made->flags = state.flags & ~uint32_t(GF_WRITTEN);
        setParent(made, parent);
        made->group->setBaseColor(state.color.data());
        if (isSelected(made))
            selectedPush(m_map.data.selectedGroups, made);
    }
    return true;
}

bool cProjectFile::readVisGroups(cProjectStream& stream) {
    int32_t count = 0;
    if (!stream.checkedCount(count, MIN_VISGROUP))
        return false;
    for (int i = 0; i < count; ++i) {
        cVisGroup* visGroup = m_map.createVisGroup(nullptr);
        QByteArray name;
        uint8_t visible = 0;
        if (!stream.text(name) || !stream.value(visGroup->id) || !stream.value(visGroup->color) ||
            !stream.value(visible))
            return false;
        setText(visGroup->name, name.isNull() ? nullptr : name.constData());
        visGroup->visible = visible != 0;
    }
    return true;
}

// The members of a group count for what they are, also in a file that was cut short.
static void recountMembers(cMap& map) {
    for (cGroupData* group : groupsOf(map.data))
        group->memberCount = 0;
    for (cGroupData* group : groupsOf(map.data)) {
        if (group->parent)
            ++group->parent->memberCount;
    }
    for (cEntityData* entity : entitiesOf(map.data)) {
        if (entity->group)
            ++entity->group->memberCount;
        for (cBrushData* brush : brushesOf(entity)) {
            if (brush->group)
                ++brush->group->memberCount;
        }
    }
}

// Each group read went to the head; the file's order is the list's.
static void reverseGroups(cMap& map) {
    cGroupData* head = nullptr;
    for (cGroupData* group : groupsOf(map.data)) {
        listRemove(map.data.groups, group);
        listPushHead(head, group);
    }
    map.data.groups = head;
}

void cProjectFile::finishMap() {
    reverseGroups(m_map);
    const cEntityData* first = m_map.data.entities;
    if (!first || !(first->flags & EF_WORLD))
        m_map.addWorld("worldspawn");
    recountMembers(m_map);
    m_map.lastGroupId = m_maxGroupId;
    m_map.renumberVisGroups();
}

void cProjectFile::setGroup(cGroupData*& group, cGroupData*& rootGroup, uint32_t id) {
    group = id ? m_map.findGroupById(id) : nullptr;
    rootGroup = outermostGroup(group);
}

template<class T> bool cProjectFile::readMemberships(cProjectStream& stream, T* object) {
    int32_t count = 0;
    if (!stream.listCount(count))
        return false;
    QList<cVisGroup*> visGroups;
    bool complete = true;
    for (int i = 0; i < count && complete; ++i) {
        uint32_t id = 0;
        complete = stream.value(id);
        if (cVisGroup* visGroup = complete ? m_map.findVisGroup(id) : nullptr)
            visGroups.append(visGroup);
    }
    object->addToVisGroups(visGroups);
    return complete;
}

// A pair without a key or a value is left out.
bool cProjectFile::readPairs(cProjectStream& stream, cEntityState& state) {
    int32_t count = 0;
    if (!stream.listCount(count))
        return false;
    for (int i = 0; i < count; ++i) {
        QByteArray key, value;
        if (!stream.text(key) || !stream.text(value))
            return false;
        if (!key.isNull() && !value.isNull())
            state.pairs.push_back({key, value});
    }
    return true;
}

void cProjectFile::finishEntity(cEntityData* entity, uint32_t groupId) {
    if (!entity->flagsKey)
        deriveFlagsKey(entity);
    updateEntity(entity, UM_ATTACH | UM_RESET_AXES | UM_PLANES);
    if (!(entity->flags & EF_WORLD))
        setGroup(entity->group, entity->rootGroup, groupId);
    if (isSelected(entity) && !(entity->flags & EF_WORLD))
        selectedPush(m_map.data.selectedEntities, entity);
    else
        entity->flags &= ~uint32_t(EF_SELECTED);
}

cEntityData* cProjectFile::insertEntity(const cEntityState& state) {
    uint32_t flags = state.flags;
    if (m_map.data.entities)
        flags &= ~uint32_t(EF_WORLD);
    const char* classname = state.classname.isNull() ? nullptr : state.classname.constData();
    cEntityData* entity = newEntity(classname, state.origin.data(), flags);
    m_map.attachEntity(entity);
    m_map.insertEntity(entity);
    putKeys(entity, state);
    ++m_entitiesRead;
    return entity;
}

// False where the file is cut short. An entity keeps what was read of it.
bool cProjectFile::readEntity(cProjectStream& stream) {
    cEntityState state = {};
    const size_t read = walkFields(state, m_version, stream);
    if (read < ENTITY_HEAD)
        return false;
    bool complete = read == fieldsOf(state).size() && readPairs(stream, state);
    cEntityData* entity = insertEntity(state);
    complete = complete && readMemberships(stream, entity->entity) && readBrushes(stream, entity);
    finishEntity(entity, state.groupId);
    return complete;
}

bool cProjectFile::readBrushes(cProjectStream& stream, cEntityData* entity) {
    int32_t count = 0;
    if (!stream.listCount(count))
        return false;
    for (int i = 0; i < count; ++i) {
        if (!readBrush(stream, entity))
            return false;
    }
    return true;
}

bool cProjectFile::readBrush(cProjectStream& stream, cEntityData* entity) {
    cBrushState state = {};
    if (!walkAllFields(state, m_version, stream))
        return false;
    cBrushData* brush = newBrush();
    brush->reserved = state.reserved;
    brush->flags |= state.flags;
    brush->brush->setBaseColor(state.color.data());
    m_map.insertBrush(brush, entity);
    int32_t faces = 0;
    bool complete = readMemberships(stream, brush->brush) && stream.checkedCount(faces, MIN_FACE);
    for (int i = 0; complete && i < faces; ++i)
        complete = readFace(stream, brush);
    brush->flags &= ~uint32_t(BF_SELECTED);
    if (!complete) {
        m_map.freeBrush(brush);
        return false;
    }
    rebuildBrush(brush, UM_RESET_AXES | UM_PLANES);
    // Brushes of other entities go with their entity's group.
    if (entity->flags & EF_WORLD)
        setGroup(brush->group, brush->rootGroup, state.groupId);
    if (state.flags & BF_SELECTED)
        selectedPush(m_map.data.selectedBrushes, brush);
    return true;
}

bool cProjectFile::readFace(cProjectStream& stream, cBrushData* brush) {
    cFaceState state = {};
    cFaceData* face = nullptr;
    if (walkAllFields(state, m_version, stream))
        face = newFace(int(state.points.count));
    if (!face)
        return false;
    if (!stream.vertices(face->vertices, state.points.count)) {
        freeDetachedFace(face);
        return false;
    }
    if (mendTextureBlock(state.tex, state.flags))
        stream.countMended();
    vecCopy(state.normal, face->normal);
    face->dist = state.dist;
    const bool known = state.planeType >= 0 && state.planeType <= 3;
    face->planeType = known ? state.planeType : planeTypeForNormal(face->normal);
    face->flags = (face->flags | state.flags) & ~uint32_t(FF_SELECTED);
    m_map.insertFace(face, brush);
    applyTextureBlock(face, state.tex);
    rebuildFace(face, 0);
    return true;
}

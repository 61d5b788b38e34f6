// SPDX-License-Identifier: MIT
// Reading and writing the project file.
#include "document/tProjectFile.h"

#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tFace.h"
#include "document/tFaceMapping.h"
#include "document/tGroup.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "support/tConsole.h"
#include "support/tMapText.h"
#include "support/tSystem.h"

#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <unistd.h>

static const char MAGIC[4] = {'K', 'V', 'X', 'P'};
static constexpr int MAX_ERROR_TEXT = 255;
static constexpr float DEFAULT_FRAME_RATE = 10;
// The least a record takes in the file; a count that promises more than is left is a lie.
static constexpr size_t MIN_GROUP = 20, MIN_VISGROUP = 13, MIN_FACE = 152;

// ---- The stream: one call serves both directions

class cProjectFile::cStream {
public:
    cStream(FILE* file, bool writing) : m_file(file), m_writing(writing) {
        if (!file || writing)
            return;
        fseek(file, 0, SEEK_END);
        m_left = size_t(std::max(0L, ftell(file)));
        rewind(file);
    }
    ~cStream() {
        if (m_file)
            fclose(m_file);
    }
    cStream(const cStream&) = delete;
    cStream& operator=(const cStream&) = delete;

    bool isOpen() const { return m_file != nullptr; }
    bool isWriting() const { return m_writing; }

    bool raw(void* bytes, size_t size) {
        if (m_writing)
            return fwrite(bytes, 1, size, m_file) == size;
        if (size > m_left)
            return false;
        m_left -= size;
        return fread(bytes, 1, size, m_file) == size;
    }
    template<class T> bool value(T& field) { return raw(&field, sizeof field); }
    // What is no finite number in a file becomes the default.
    bool number(float& field, float byDefault = 0) {
        if (!value(field))
            return false;
        if (!m_writing && !std::isfinite(field)) {
            field = byDefault;
            ++m_mended;
        }
        return true;
    }
    template<size_t N> bool numbers(float (&fields)[N]) {
        return std::all_of(fields, fields + N, [this](float& field) { return number(field); });
    }
    bool numbers(cFaceVertex& vertex) {
        return numbers(vertex.xyz) && numbers(vertex.st) && value(vertex.tag);
    }

    // Text of a record; what it held before is freed. Null and empty differ.
    bool text(char*& field) {
        int32_t length = field && m_writing ? int32_t(strlen(field)) : -1;
        if (!value(length))
            return false;
        if (m_writing)
            return length <= 0 || raw(field, size_t(length));
        setText(field, nullptr);
        if (length < 0)
            return length == -1;
        if (size_t(length) > m_left)
            return false;
        field = static_cast<char*>(Mem_Alloc(size_t(length) + 1));
        return field && raw(field, size_t(length));
    }

    // A count of records, each of at least that many bytes, that takes memory at once.
    bool count(int32_t& number, size_t recordSize) {
        return value(number) &&
               (m_writing || (number >= 0 && size_t(number) <= m_left / recordSize));
    }
    // A count of records that are read one by one: of a list that the end of the file cuts short,
    // what is there counts.
    bool listCount(int32_t& number) { return value(number) && number >= 0; }

    bool atEnd() const { return m_left == 0; }
    void countMended() { ++m_mended; }
    int mended() const { return m_mended; }

    bool close() {
        const bool closed = fclose(m_file) == 0;
        m_file = nullptr;
        return closed;
    }

private:
    FILE* m_file;
    bool m_writing;
    size_t m_left = 0;
    int m_mended = 0; // numbers of no use that became the default
};

struct cProjectFile::cGroupRecord {
    uint32_t id;
    uint32_t parentId;
    uint32_t flags;
    int32_t memberCount;
    uint8_t color[4];
};

cProjectFile::cProjectFile(cMap& map, const QString& path) : m_map(map), m_path(path) {}

// ---- What a record holds, for both directions

bool cProjectFile::header(cStream& stream) {
    char magic[4] = {};
    memcpy(magic, MAGIC, sizeof magic);
    return stream.value(magic) && memcmp(magic, MAGIC, sizeof magic) == 0 &&
           stream.value(m_version);
}

bool cProjectFile::group(cStream& stream, cGroupRecord& record) {
    return stream.value(record.id) && stream.value(record.parentId) && stream.value(record.flags) &&
           stream.value(record.memberCount) && stream.value(record.color);
}

// From the flags key to the model block; what comes before makes the entity.
bool cProjectFile::entity(cStream& stream, cEntityData* entity) {
    return stream.text(entity->flagsKey) && stream.value(entity->spawnFlags) &&
           stream.numbers(entity->angles) && stream.value(entity->renderFlags) &&
           stream.value(entity->renderColor) && stream.value(entity->renderMode) &&
           stream.value(entity->renderFx) && stream.value(entity->body) &&
           stream.value(entity->skin) && stream.value(entity->sequence) &&
           stream.number(entity->frameRate, DEFAULT_FRAME_RATE) && stream.number(entity->scale, 1);
}

// From the texture block to the vertices; flags and vertex count come before.
bool cProjectFile::face(cStream& stream, cFaceData* face) {
    if (!stream.value(face->tex) || !stream.numbers(face->normal) || !stream.number(face->dist) ||
        !stream.value(face->planeType))
        return false;
    return std::all_of(face->vertices, face->vertices + face->vertexCount,
                       [&stream](cFaceVertex& vertex) { return stream.numbers(vertex); });
}

static void reportFailure(const char* action, const QByteArray& path, const char* why) {
    Error("can't %s \"%s\" (%.*s)", action, path.constData(), MAX_ERROR_TEXT, why);
}

// ---- Loading

bool cProjectFile::load() {
    const QByteArray path = toMapText(m_path);
    Print("Loading: \"%s\"", path.constData());
    int size = 0;
    cStream stream(File_Open(path.constData(), &size), false);
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
    cStream stream(fmemopen(copy.data(), size_t(copy.size()), "rb"), false);
    return stream.isOpen() && readMap(stream);
}

bool cProjectFile::readMap(cStream& stream) {
    if (!header(stream)) {
        Error("bad file header");
        return false;
    }
    if (m_version < OLDEST_VERSION) {
        Error("bad file version (%i should be %i or higher)", m_version, OLDEST_VERSION);
        return false;
    }
    int32_t entities = 0, reserved = 0;
    if (!readGroups(stream) || !readVisGroups(stream) || !stream.numbers(m_map.data.cordonMins) ||
        !stream.numbers(m_map.data.cordonMaxs) || !stream.value(entities) ||
        !stream.value(reserved)) {
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

bool cProjectFile::readGroups(cStream& stream) {
    int32_t count = 0;
    if (!stream.count(count, MIN_GROUP))
        return false;
    m_maxGroupId = 0;
    for (int i = 0; i < count; ++i) {
        cGroupRecord record = {};
        if (!group(stream, record))
            return false;
        m_maxGroupId = std::max({m_maxGroupId, record.id, record.parentId});
        // No object could name such a group.
        if (record.id == 0 || m_map.findGroupById(record.id))
            continue;
        // Looked up before the group itself is there, so that no group is its own parent.
        cGroupData* parent = record.parentId ? m_map.findGroupById(record.parentId) : nullptr;
        cGroupData* made = m_map.insertGroup(record.id);
        made->flags = record.flags & ~uint32_t(GF_WRITTEN);
        made->memberCount = record.memberCount;
        setParent(made, parent);
        made->group->setBaseColor(record.color);
        if (isSelected(made))
            selectedPush(m_map.data.selectedGroups, made);
    }
    return true;
}

bool cProjectFile::readVisGroups(cStream& stream) {
    int32_t count = 0;
    if (!stream.count(count, MIN_VISGROUP))
        return false;
    for (int i = 0; i < count; ++i) {
        cVisGroup* visGroup = m_map.createVisGroup(nullptr);
        uint8_t visible = 0;
        if (!stream.text(visGroup->name) || !stream.value(visGroup->id) ||
            !stream.value(visGroup->color) || !stream.value(visible))
            return false;
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

template<class T> bool cProjectFile::readMemberships(cStream& stream, T* object) {
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

bool cProjectFile::readEpairs(cStream& stream, cEntityData* entity) {
    int32_t count = 0;
    if (!stream.listCount(count))
        return false;
    cEpair** end = &entity->epairs;
    for (int i = 0; i < count; ++i) {
        cEpair pair = {};
        const bool read = stream.text(pair.key) && stream.text(pair.value);
        if (!read || !pair.key || !pair.value) {
            Mem_Free(pair.key);
            Mem_Free(pair.value);
            if (!read)
                return false;
            continue;
        }
        *end = static_cast<cEpair*>(Mem_Alloc(sizeof(cEpair)));
        **end = pair;
        end = &(*end)->next;
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

// False where the file is cut short. An entity keeps what was read of it.
bool cProjectFile::readEntity(cStream& stream) {
    char* classname = nullptr;
    float origin[3];
    uint32_t flags = 0, groupId = 0, rootGroupId = 0;
    uint8_t color[4];
    const bool made = stream.text(classname) && stream.numbers(origin) && stream.value(flags) &&
                      stream.value(groupId) && stream.value(rootGroupId) && stream.value(color);
    if (!made) {
        Mem_Free(classname);
        return false;
    }
    if (m_map.data.entities)
        flags &= ~uint32_t(EF_WORLD);
    cEntityData* entity = newEntity(classname, origin, flags);
    Mem_Free(classname);
    m_map.attachEntity(entity);
    m_map.insertEntity(entity);
    ++m_entitiesRead;
    memcpy(entity->entity->color, color, sizeof color);
    const bool complete = this->entity(stream, entity) && readEpairs(stream, entity) &&
                          readMemberships(stream, entity->entity) && readBrushes(stream, entity);
    finishEntity(entity, groupId);
    return complete;
}

bool cProjectFile::readBrushes(cStream& stream, cEntityData* entity) {
    int32_t count = 0;
    if (!stream.listCount(count))
        return false;
    for (int i = 0; i < count; ++i) {
        if (!readBrush(stream, entity))
            return false;
    }
    return true;
}

bool cProjectFile::readBrush(cStream& stream, cEntityData* entity) {
    uint32_t reserved = 0, flags = 0, groupId = 0, rootGroupId = 0;
    uint8_t color[4];
    if ((m_version > OLDEST_VERSION && !stream.value(reserved)) || !stream.value(flags) ||
        !stream.value(groupId) || !stream.value(rootGroupId) || !stream.value(color))
        return false;
    cBrushData* brush = newBrush();
    brush->reserved = reserved;
    brush->flags |= flags;
    brush->brush->setBaseColor(color);
    m_map.insertBrush(brush, entity);
    int32_t faces = 0;
    bool complete = readMemberships(stream, brush->brush) && stream.count(faces, MIN_FACE);
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
        setGroup(brush->group, brush->rootGroup, groupId);
    if (flags & BF_SELECTED)
        selectedPush(m_map.data.selectedBrushes, brush);
    return true;
}

bool cProjectFile::readFace(cStream& stream, cBrushData* brush) {
    uint32_t flags = 0;
    int32_t vertexCount = 0;
    if (!stream.value(flags) || !stream.count(vertexCount, sizeof(cFaceVertex)))
        return false;
    cFaceData* face = newFace(vertexCount);
    if (!face)
        return false;
    if (!this->face(stream, face)) {
        freeDetachedFace(face);
        return false;
    }
    if (mendTextureBlock(face->tex, flags))
        stream.countMended();
    if (face->planeType < 0 || face->planeType > 3)
        face->planeType = planeTypeForNormal(face->normal);
    face->flags = (face->flags | flags) & ~uint32_t(FF_SELECTED);
    m_map.insertFace(face, brush);
    const cFaceTexture block = face->tex;
    applyTextureBlock(face, block);
    rebuildFace(face, 0);
    return true;
}

// ---- Saving

// Beside the old file, which only a whole one replaces; what is no plain file is written itself.
bool cProjectFile::save() {
    const QByteArray path = toMapText(m_path);
    Print("Saving: \"%s\"", path.constData());
    const QFileInfo old(m_path);
    if (old.exists() && !old.isFile())
        return saveTo(fopen(path.constData(), "wb"));
    QSaveFile file(m_path);
    file.setDirectWriteFallback(true); // where the folder takes no new file
    const bool isOpen = file.open(QIODevice::WriteOnly);
    if (isOpen && !saveTo(fdopen(dup(file.handle()), "wb")))
        return false;
    if (isOpen && file.commit())
        return true;
    reportFailure("write", path, toMapText(file.errorString()).constData());
    return false;
}

bool cProjectFile::saveTo(FILE* file) {
    const QByteArray path = toMapText(m_path);
    cStream stream(file, true);
    if (!stream.isOpen()) {
        reportFailure("write", path, strerror(errno));
        return false;
    }
    m_version = VERSION;
    if (!header(stream)) {
        Error("can't write file header");
        return false;
    }
    clearWritten();
    const bool written = writeMap(stream);
    const int error = errno;
    clearWritten();
    if (stream.close() && written)
        return true;
    if (!written)
        errno = error;
    reportFailure("write", path, strerror(errno));
    return false;
}

void cProjectFile::clearWritten() {
    for (cGroupData* group : groupsOf(m_map.data))
        group->flags &= ~uint32_t(GF_WRITTEN);
}

template<class Range> static int32_t countOf(const Range& range) {
    int32_t count = 0;
    for ([[maybe_unused]] const auto* item : range)
        ++count;
    return count;
}

bool cProjectFile::writeMap(cStream& stream) {
    int32_t groups = 0;
    int ignored = 0;
    for (const cGroupData* group : groupsOf(m_map.data))
        ++(group->memberCount >= 1 ? groups : ignored);
    if (!stream.value(groups))
        return false;
    for (cGroupData* group : groupsOf(m_map.data)) {
        if (!writeGroup(stream, group))
            return false;
    }
    int32_t entities = countOf(entitiesOf(m_map.data)), reserved = 0;
    if (!writeVisGroups(stream) || !stream.numbers(m_map.data.cordonMins) ||
        !stream.numbers(m_map.data.cordonMaxs) || !stream.value(entities) ||
        !stream.value(reserved))
        return false;
    for (cEntityData* entity : entitiesOf(m_map.data)) {
        if (!writeEntity(stream, entity))
            return false;
    }
    if (ignored)
        Print("%i empty group(s) ignored", ignored);
    return true;
}

// A parent always precedes its children.
bool cProjectFile::writeGroup(cStream& stream, cGroupData* group) {
    std::vector<cGroupData*> chain;
    for (; group && group->memberCount >= 1 && !(group->flags & GF_WRITTEN); group = group->parent)
        chain.push_back(group);
    for (auto next = chain.rbegin(); next != chain.rend(); ++next) {
        cGroupData* g = *next;
        cGroupRecord record = {g->id, g->parent ? g->parent->id : 0, g->flags, g->memberCount, {}};
        memcpy(record.color, g->group->baseColor, sizeof record.color);
        g->flags |= GF_WRITTEN;
        if (!this->group(stream, record))
            return false;
    }
    return true;
}

// Numbered by their places, for the file alone.
bool cProjectFile::writeVisGroups(cStream& stream) {
    int32_t count = m_map.visGroups.size();
    if (!stream.value(count))
        return false;
    for (cVisGroup* visGroup : m_map.visGroups) {
        auto number = uint32_t(m_visGroupNumbers.size() + 1);
        m_visGroupNumbers.insert(visGroup, number);
        uint8_t visible = visGroup->visible ? 1 : 0;
        if (!stream.text(visGroup->name) || !stream.value(number) ||
            !stream.value(visGroup->color) || !stream.value(visible))
            return false;
    }
    return true;
}

bool cProjectFile::writeMemberships(cStream& stream, const QList<cVisGroup*>& visGroups) {
    int32_t count = visGroups.size();
    if (!stream.value(count))
        return false;
    for (cVisGroup* visGroup : visGroups) {
        uint32_t number = m_visGroupNumbers.value(visGroup);
        if (!stream.value(number))
            return false;
    }
    return true;
}

static uint32_t idOf(const cGroupData* group) {
    return group ? group->id : 0;
}

bool cProjectFile::writeEntity(cStream& stream, cEntityData* entity) {
    uint32_t groupId = idOf(entity->group), rootGroupId = idOf(entity->rootGroup);
    int32_t pairs = countOf(epairsOf(entity)), brushes = countOf(brushesOf(entity));
    if (!stream.text(entity->classname) || !stream.numbers(entity->origin) ||
        !stream.value(entity->flags) || !stream.value(groupId) || !stream.value(rootGroupId) ||
        !stream.value(entity->entity->color) || !this->entity(stream, entity) ||
        !stream.value(pairs))
        return false;
    for (cEpair* pair : epairsOf(entity)) {
        if (!stream.text(pair->key) || !stream.text(pair->value))
            return false;
    }
    if (!writeMemberships(stream, entity->entity->visGroups) || !stream.value(brushes))
        return false;
    for (cBrushData* brush : brushesOf(entity)) {
        if (!writeBrush(stream, brush))
            return false;
    }
    return true;
}

bool cProjectFile::writeBrush(cStream& stream, cBrushData* brush) {
    uint32_t groupId = idOf(brush->group), rootGroupId = idOf(brush->rootGroup);
    int32_t faces = countOf(facesOf(brush));
    if (!stream.value(brush->reserved) || !stream.value(brush->flags) || !stream.value(groupId) ||
        !stream.value(rootGroupId) || !stream.value(brush->brush->baseColor) ||
        !writeMemberships(stream, brush->brush->visGroups) || !stream.value(faces))
        return false;
    for (cFaceData* face : facesOf(brush)) {
        if (!stream.value(face->flags) || !stream.value(face->vertexCount) ||
            !this->face(stream, face))
            return false;
    }
    return true;
}

// SPDX-License-Identifier: MIT
// Writing the project file.
#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tProjectFile.h"
#include "document/tProjectStream.h"
#include "document/tStateFields.h"
#include "document/tVisGroup.h"
#include "support/tConsole.h"
#include "support/tMapText.h"

#include <QFileInfo>
#include <QSaveFile>
#include <cerrno>
#include <cstring>
#include <unistd.h>

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
    cProjectStream stream(file, true);
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

bool cProjectFile::writeMap(cProjectStream& stream) {
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
    if (!writeVisGroups(stream) || !stream.numbers(m_map.data.cordonMins, 3) ||
        !stream.numbers(m_map.data.cordonMaxs, 3) || !stream.value(entities) ||
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
bool cProjectFile::writeGroup(cProjectStream& stream, cGroupData* group) {
    std::vector<cGroupData*> chain;
    for (; group && group->memberCount >= 1 && !(group->flags & GF_WRITTEN); group = group->parent)
        chain.push_back(group);
    for (auto next = chain.rbegin(); next != chain.rend(); ++next) {
        m_states.clear();
        m_states.take(*next);
        (*next)->flags |= GF_WRITTEN;
        if (!walkAllFields(m_states.groups.back(), m_version, stream))
            return false;
    }
    return true;
}

// Numbered by their places, for the file alone.
bool cProjectFile::writeVisGroups(cProjectStream& stream) {
    int32_t count = m_map.visGroups.size();
    if (!stream.value(count))
        return false;
    for (cVisGroup* visGroup : m_map.visGroups) {
        auto number = uint32_t(m_visGroupNumbers.size() + 1);
        m_visGroupNumbers.insert(visGroup, number);
        uint8_t visible = visGroup->visible ? 1 : 0;
        QByteArray name = visGroup->name; // null stays null
        if (!stream.text(name) || !stream.value(number) || !stream.value(visGroup->color) ||
            !stream.value(visible))
            return false;
    }
    return true;
}

bool cProjectFile::writeMemberships(cProjectStream& stream, const QList<cVisGroup*>& visGroups) {
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

bool cProjectFile::writeEntity(cProjectStream& stream, cEntityData* entity) {
    m_states.clear();
    m_states.take(entity, TAKE_FIELDS);
    cEntityState& state = m_states.entities.back();
    auto pairs = int32_t(state.pairs.size()), brushes = countOf(brushesOf(entity));
    if (!walkAllFields(state, m_version, stream) || !stream.value(pairs))
        return false;
    for (auto& [key, value] : state.pairs) {
        if (!stream.text(key) || !stream.text(value))
            return false;
    }
    if (!writeMemberships(stream, entity->entity->visGroups) || !stream.value(brushes))
        return false;
    for (const cBrushData* brush : brushesOf(entity)) {
        if (!writeBrush(stream, brush))
            return false;
    }
    return true;
}

// Vertices go as they are: the file has their texture coordinates and tags, which states have not.
bool cProjectFile::writeBrush(cProjectStream& stream, const cBrushData* brush) {
    m_states.clear();
    m_states.take(brush, TAKE_FIELDS);
    auto faces = int32_t(m_states.faces.size());
    if (!walkAllFields(m_states.brushes.back(), m_version, stream) ||
        !writeMemberships(stream, brush->brush->visGroups) || !stream.value(faces))
        return false;
    auto state = m_states.faces.begin();
    for (const cFaceData* face : facesOf(brush)) {
        state->points.count = uint32_t(face->vertexCount);
        if (!walkAllFields(*state, m_version, stream) ||
            !stream.vertices(face->vertices, state->points.count))
            return false;
        ++state;
    }
    return true;
}

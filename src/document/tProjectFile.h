// SPDX-License-Identifier: MIT
// The project file (.kvx): magic "KVXP", int32 version, groups, visgroups, cordon, the number of
// entities, entities to the end of the file. Little-endian, no padding; a string is an int32 length
// (-1: null) and its bytes. The fields of each object are those of its state (tStateFields.h), for
// reader and writer.
#pragma once

#include "document/tObjectState.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <cstdio>

class cMap;
class cProjectStream;
class cVisGroup;

class cProjectFile {
public:
    static constexpr int VERSION = 112;
    static constexpr int OLDEST_VERSION = 111;

    cProjectFile(cMap& map, const QString& path);

    // Into an empty map. True when the head was read whole and as many entities as there were.
    // The caller finishes with cMap::finishLoad().
    bool load();
    // False, with an error message and the old file as it was, when not everything was written.
    bool save();

    // The same from memory.
    bool loadBytes(const QByteArray& bytes);

    // After a load: the file ended before its entities did; the console has been told.
    bool isDamaged() const { return m_damaged; }

private:
    bool header(cProjectStream& stream);
    static void reportFailure(const char* action, const QByteArray& path, const char* why);

    bool readMap(cProjectStream& stream);
    bool readGroups(cProjectStream& stream);
    bool readVisGroups(cProjectStream& stream);
    bool readEntity(cProjectStream& stream);
    bool readPairs(cProjectStream& stream, cEntityState& state);
    bool readBrushes(cProjectStream& stream, cEntityData* entity);
    bool readBrush(cProjectStream& stream, cEntityData* entity);
    bool readFace(cProjectStream& stream, cBrushData* brush);
    template<class T> bool readMemberships(cProjectStream& stream, T* object);
    cEntityData* insertEntity(const cEntityState& state);
    void setGroup(cGroupData*& group, cGroupData*& rootGroup, uint32_t id);
    void finishEntity(cEntityData* entity, uint32_t groupId);
    void finishMap();
    void reportDamage(int entities) const;

    bool saveTo(FILE* file); // and closes it
    bool writeMap(cProjectStream& stream);
    bool writeGroup(cProjectStream& stream, cGroupData* group);
    bool writeVisGroups(cProjectStream& stream);
    bool writeEntity(cProjectStream& stream, cEntityData* entity);
    bool writeBrush(cProjectStream& stream, const cBrushData* brush);
    bool writeMemberships(cProjectStream& stream, const QList<cVisGroup*>& visGroups);
    void clearWritten();

    cMap& m_map;
    QString m_path;
    int m_version = VERSION;
    uint32_t m_maxGroupId = 0;
    int m_entitiesRead = 0; // the one that the file cuts short among them
    bool m_damaged = false;
    QHash<const cVisGroup*, uint32_t> m_visGroupNumbers; // as written
    cObjectStates m_states;                              // of the object that is written
};

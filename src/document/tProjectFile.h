// SPDX-License-Identifier: MIT
// The project file (.kvx): magic "KVXP", int32 version, groups, visgroups, cordon, the number of
// entities, entities to the end of the file. Little-endian, no padding; a string is an int32 length
// (-1: null) and its bytes. One description of each record serves reader and writer. Counts and
// lengths are checked against what is left of the file before memory is taken.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <cstdio>

class cMap;
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
    class cStream;
    struct cGroupRecord;

    bool header(cStream& stream);
    bool group(cStream& stream, cGroupRecord& record);
    bool entity(cStream& stream, cEntityData* entity);
    bool face(cStream& stream, cFaceData* face);

    bool readMap(cStream& stream);
    bool readGroups(cStream& stream);
    bool readVisGroups(cStream& stream);
    bool readEntity(cStream& stream);
    bool readEpairs(cStream& stream, cEntityData* entity);
    bool readBrushes(cStream& stream, cEntityData* entity);
    bool readBrush(cStream& stream, cEntityData* entity);
    bool readFace(cStream& stream, cBrushData* brush);
    template<class T> bool readMemberships(cStream& stream, T* object);
    void setGroup(cGroupData*& group, cGroupData*& rootGroup, uint32_t id);
    void finishEntity(cEntityData* entity, uint32_t groupId);
    void finishMap();
    void reportDamage(int entities) const;

    bool saveTo(FILE* file); // and closes it
    bool writeMap(cStream& stream);
    bool writeGroup(cStream& stream, cGroupData* group);
    bool writeVisGroups(cStream& stream);
    bool writeEntity(cStream& stream, cEntityData* entity);
    bool writeBrush(cStream& stream, cBrushData* brush);
    bool writeMemberships(cStream& stream, const QList<cVisGroup*>& visGroups);
    void clearWritten();

    cMap& m_map;
    QString m_path;
    int m_version = VERSION;
    uint32_t m_maxGroupId = 0;
    int m_entitiesRead = 0; // the one that the file cuts short among them
    bool m_damaged = false;
    QHash<const cVisGroup*, uint32_t> m_visGroupNumbers; // as written
};

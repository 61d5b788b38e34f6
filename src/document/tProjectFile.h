// SPDX-License-Identifier: MIT
// The project file (.kvx): magic "KVXP", int32 version, groups, visgroups, cordon, entities to
// the end of the file. Little-endian, no padding; a string is an int32 length (-1: null) and its
// bytes. One description of each record serves reader and writer. Counts and lengths are checked
// against what is left of the file before memory is taken.
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>

class cMap;

class cProjectFile {
public:
    static constexpr int VERSION = 112;
    static constexpr int OLDEST_VERSION = 111;

    cProjectFile(cMap& map, const QString& path);
    ~cProjectFile();

    // Into an empty map. True when the head was read whole and as many entities as there were.
    // The caller finishes with cMap::finishLoad().
    bool load();
    bool save();

    // The same from and to memory; for tests and fuzzing.
    bool loadBytes(const QByteArray& bytes);

private:
    class cStream;

    bool readMap(cStream& stream);
    bool writeMap(cStream& stream);

    cMap& m_map;
    QString m_path;
    int m_version = VERSION;
    uint32_t m_maxGroupId = 0;
};

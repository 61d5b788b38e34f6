// SPDX-License-Identifier: MIT
// Writes a map as text, in the classic or the axial kind of face line. Honours the map's export
// flags: visible objects only, and the cordon. Groups and visgroups are written as the entities
// that map texts keep them in.
#pragma once

#include "common/tContainerWriter.h"
#include "common/tFacePoints.h"
#include "common/tSafeFile.h"
#include "tPluginInterface.h"

#include <optional>

class cMapWriter {
public:
    cMapWriter(const cHostServices* host, cMapData* map, eFaceLine kind, const char* sealTexture);

    bool write(const char* path); // false with an error message, and the old file as it was

private:
    bool isWritten(const cEntityData* entity) const;
    bool isWritten(const cBrushData* brush) const;
    bool insideCordon(const float* mins, const float* maxs) const;

    void collectContainers();
    void writeMap();
    void writeContainer(const cTextContainer& container);
    void writeWorld(const cEntityData* world);
    void writeEntity(const cEntityData* entity);
    void writeKeys(const cEntityData* entity);
    void writePairs(const cKeyValues& pairs);
    void writePair(const std::string& key, const std::string& value);
    void writeText(const std::string& text);
    void writeBrush(const cBrushData* brush);
    void writeFace(const cFaceData* face);
    void writeTexture(const cFaceData* face, const double* readNormal);
    void writeSeal();
    void writeBox(const float* mins, const float* maxs);
    void numbers(std::initializer_list<double> values); // each behind a blank
    void flush(size_t keep); // hands the text to the file once there is more of it than that
    void warnOfLosses() const;

    const cHostServices* m_host;
    cMapData* m_map;
    eFaceLine m_kind;
    std::string m_sealTexture;
    std::optional<cSafeFile> m_file;
    std::string m_text; // what has not gone to the file yet
    cContainerWriter m_containers;
    bool m_cordon = false;
    int m_inexactFaces = 0;
    int m_replacedCharacters = 0;
};

// SPDX-License-Identifier: MIT
// Writes a map as text, in the classic or the axial kind of face line. Honours the map's export
// flags: visible objects only, and the cordon. Groups and visgroups are written as the entities
// that map texts keep them in.
#pragma once

#include "common/tMapContainers.h"
#include "tPluginInterface.h"

#include <cstdio>

enum class eFaceLine { Classic, Axial };

class cMapWriter {
public:
    cMapWriter(const cHostServices* host, cMapData* map, eFaceLine kind, const char* sealTexture);

    bool write(const char* path); // false with an error message

private:
    // One func_group entity to write: a group, or a layer.
    struct cContainer {
        const cGroupData* group; // null for a layer
        uint32_t visGroup;       // the layer itself, or the one that the group lies in
        int id;                  // what members refer to it by
        cKeyValues keys;
        std::vector<const cBrushData*> brushes;
    };

    bool isWritten(const cEntityData* entity) const;
    bool isWritten(const cBrushData* brush) const;
    bool insideCordon(const float* mins, const float* maxs) const;

    void collectContainers();
    void collectEntity(const cEntityData* entity);
    void collectBrush(cBrushData* brush);
    int containerOf(const cGroupData* group, uint32_t visGroup);
    int layerOf(uint32_t visGroup);
    int homeOf(const cGroupData* group, uint32_t visGroup);
    int freshId(const cKeyValues& stored);
    void writeContainer(const cContainer& container);
    void writeWorld(const cEntityData* world);
    void writeEntity(const cEntityData* entity);
    void writeMembership(const cGroupData* group, uint32_t visGroup);
    void writePair(const std::string& key, const std::string& value);
    void writeBrush(const cBrushData* brush);
    void writeFace(const cFaceData* face);
    void writePoints(const cFaceData* face, float* readNormal);
    void writeTexture(const cFaceData* face, const float* readNormal);
    void writeSeal();
    void writeBox(const float* mins, const float* maxs);
    void number(double value);
    void flush(size_t keep); // hands the text to the file once there is more of it than that

    const cHostServices* m_host;
    cMapData* m_map;
    eFaceLine m_kind;
    std::string m_sealTexture;
    FILE* m_file = nullptr;
    bool m_failed = false;
    std::string m_text; // what has not gone to the file yet
    std::vector<cContainer> m_containers;
    std::vector<const cBrushData*> m_worldBrushes;
    std::map<const cGroupData*, int> m_containerOfGroup;
    std::map<uint32_t, int> m_containerOfLayer;
    std::map<int, bool> m_usedIds;
    bool m_cordon = false;
    int m_inexactFaces = 0;
    int m_quotesReplaced = 0;
    int m_lostMemberships = 0;
};

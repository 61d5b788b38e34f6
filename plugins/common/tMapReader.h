// SPDX-License-Identifier: MIT
// Reads a map text into an empty map: entities with key/values, brushes whose face lines are of
// the classic or the axial kind, each as it is found. What cannot be read is reported with its
// line and left out; all else is kept.
#pragma once

#include "common/tBigBrush.h"
#include "common/tFaceProjection.h"
#include "common/tMapContainers.h"
#include "common/tMapScanner.h"
#include "tPluginInterface.h"

#include <array>
#include <optional>

class cMapReader {
public:
    cMapReader(const cHostServices* host, cMapData* map, const char* text, size_t size);

    // False when the text holds no entity at all.
    bool read();

private:
    // What may be wrong at a line; the texts stand in a table.
    enum eComplaint {
        NO_ENTITY,
        BROKEN_PAIR,
        OPEN_ENTITY,
        UNEXPECTED,
        OPEN_BRUSH,
        BROKEN_FACE,
        TOO_MANY_FACES,
        NO_VOLUME,
        COMPLAINT_COUNT
    };
    static const char* const COMPLAINTS[COMPLAINT_COUNT];

    // A brush as it stands in the text. Brushes wait for the end of their entity, whose keys may
    // come after them.
    struct cSolid {
        cMapFaces faces;
        int line;
    };
    struct cMade {
        cBrushData* brush;
        int line;
    };
    using cSolids = std::vector<cSolid>;
    using cMadeList = std::vector<cMade>;

    void readEntity();
    void readPair(cKeyValues* keys);
    void makeEntity(cKeyValues* keys, const cSolids& solids);
    cEntityData* createEntity(const cKeyValues& keys, uint32_t flags);
    void makeObject(cKeyValues* keys, const cSolids& solids);
    void dropKey(cKeyValues* keys, const char* key);
    void takeOrigin(cEntityData* entity, cKeyValues* keys);
    void makeContainer(const cKeyValues& keys, const cSolids& solids);
    void addToWorld(cKeyValues* keys, const cSolids& solids);
    cEntityData* theWorld();
    void finishWorld();

    void readBrush(cSolids* solids);
    bool readPart(cSolid* solid, bool* isOther);
    bool readFace(cMapFace* face);
    bool readPoint(double* point);
    bool readTexture(cMapFace* face);
    bool readAxis(float* axis, float* shift);
    void readFlags(cFaceTexture* tex);
    void skipBlock(const std::string& kind, int line);
    cMadeList makeBrushes(cEntityData* owner, const cSolids& solids);
    cBrushData* makeBrush(cEntityData* owner, const cMapFaces& faces);
    void checkBrushes(cEntityData* owner, const cMadeList& made);
    void complain(eComplaint complaint, int line);
    void reportCounts();

    const cHostServices* m_host;
    cMapData* m_map;
    cMapScanner m_scan;
    cContainerReader m_containers;
    cEntityData* m_world = nullptr;
    std::optional<cEpairAppender> m_worldKeys;
    cMadeList m_worldMade; // brushes of the world, built when all are there
    int m_entities = 0;
    std::array<int, COMPLAINT_COUNT> m_complaints = {};
    int m_brokenBrushes = 0;
    int m_cutBrushes = 0;
    int m_extraNumbers = 0;
    int m_cutNumbers = 0;
    int m_cutOrigins = 0;
    int m_repeatedKeys = 0;
    int m_longNames = 0;
    int m_skippedBlocks = 0;
    std::string m_firstBlock;
    int m_firstBlockLine = 0;
};

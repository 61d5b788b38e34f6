// SPDX-License-Identifier: MIT
// Reads a map text into an empty map: entities with key/values, brushes whose face lines are of
// the classic or the axial kind, each as it is found. What cannot be read is reported with its
// line and left out; all else is kept.
#pragma once

#include "common/tFaceProjection.h"
#include "common/tMapContainers.h"
#include "common/tMapScanner.h"
#include "tPluginInterface.h"

class cMapReader {
public:
    cMapReader(const cHostServices* host, cMapData* map, const char* text, size_t size);

    // False when the text holds no entity at all.
    bool read();

private:
    struct cFace {
        double points[3][3];
        cMapPlane plane;
        cFaceTexture tex;
    };

    void readEntity();
    bool readPair(cKeyValues* keys);
    std::string lookAheadClassname() const;
    cEntityData* beginEntity(cKeyValues* keys, bool solid);
    void finishContainer();
    void finishEntity(cEntityData* entity, cKeyValues* keys, bool solid);
    cEntityData* theWorld();
    void setEpairs(cEntityData* entity, const cKeyValues& keys);

    void readBrush(cEntityData* owner);
    bool readFace(cFace* face);
    bool readPoint(double* point);
    bool readTexture(cFace* face);
    bool readAxis(float* axis, float* shift);
    void readFlags(cFaceTexture* tex);
    void skipBlock(const std::string& kind, int line);
    void makeBrush(cEntityData* owner, int line);
    void checkBrushes(cEntityData* owner);
    void reportCounts();
    bool mayReport(); // the first few errors have their own line, all are counted

    const cHostServices* m_host;
    cMapData* m_map;
    cMapScanner m_scan;
    cContainerReader m_containers;
    cEntityData* m_world = nullptr;
    std::vector<cFace> m_faces; // of the brush being read
    struct cMade {
        cBrushData* brush;
        int line;
    };
    std::vector<cMade> m_made;      // brushes of the entity being read
    std::vector<cMade> m_worldMade; // brushes of the world, built when all are there
    int m_entities = 0;
    int m_reported = 0;
    int m_brokenBrushes = 0;
    int m_extraNumbers = 0;
    int m_longNames = 0;
    int m_skippedBlocks = 0;
    std::string m_firstBlock;
    int m_firstBlockLine = 0;
};

// SPDX-License-Identifier: MIT
// What a step of the history is made of: records of objects by id, in ten chains by kind of object
// and kind of change, newest first. Released records wait in pools of the whole program, so that
// one edit after the other costs no allocation.
#pragma once

#include "pluginhost/tPluginInterface.h"

#include <QList>
#include <cstdint>
#include <unordered_set>
#include <vector>

class cVisGroup;

// Flags that say what happens to an object at this moment. Only the selected bit means something
// in a record: whether the object is selected again when the record is put back.
constexpr uint32_t TRANSIENT_FLAGS = OF_SELECTED | BF_MOVING | BF_MARK | BF_MORPHED;

struct cEntityRecord {
    cEntityRecord* next;
    cEpair* epairs;  // owned
    char* classname; // owned
    char* flagsKey;  // owned, or null
    uint32_t spawnFlags;
    uint32_t flags;
    uint32_t id;
    uint32_t groupId; // 0 without one; the outermost group follows from it
    float origin[3];
    float angles[3];
    float mins[3];
    float maxs[3];
    uint8_t color[4];
    std::vector<uint32_t> visGroups; // serials; of created and deleted objects only
};

struct cFaceRecord {
    cFaceRecord* next;
    uint32_t flags;
    uint32_t id;
    uint32_t brushId;
    uint32_t entityId;
    cFaceTexture tex;
    int vertexCount;           // -1 without geometry
    std::vector<float> points; // 3 a vertex
};

struct cBrushRecord {
    cBrushRecord* next;
    cFaceRecord* faces; // in the brush's order
    bool withGeometry;
    uint32_t flags;
    uint32_t id;
    uint32_t entityId;
    uint32_t groupId;
    uint32_t reserved;
    uint8_t baseColor[4];
    std::vector<uint32_t> visGroups;
};

struct cGroupRecord {
    cGroupRecord* next;
    uint32_t flags;
    uint32_t id;
    uint32_t parentId;
    uint8_t baseColor[4];
};

// The chains of a step, which are also the kinds of capture.
enum eRecordList {
    RL_ENTITIES_CHANGED,
    RL_ENTITIES_CREATED,
    RL_ENTITIES_DELETED,
    RL_BRUSHES_CHANGED,
    RL_BRUSHES_CREATED,
    RL_BRUSHES_DELETED,
    RL_FACES_CHANGED,
    RL_GROUPS_CHANGED,
    RL_GROUPS_CREATED,
    RL_GROUPS_DELETED,
    RL_COUNT
};

struct cUndoStep {
    cUndoStep* next; // toward the older one in its stack, or the next free one
    // In the undo stack: of the top step the oldest step, of any other the next newer one.
    cUndoStep* ring;
    const char* name;
    uint32_t number; // never given twice in a history
    cEntityRecord* entitiesChanged;
    cEntityRecord* entitiesCreated;
    cEntityRecord* entitiesDeleted;
    cBrushRecord* brushesChanged;
    cBrushRecord* brushesCreated;
    cBrushRecord* brushesDeleted;
    cFaceRecord* facesChanged;
    cGroupRecord* groupsChanged;
    cGroupRecord* groupsCreated;
    cGroupRecord* groupsDeleted;
};

// The stacks of one history, and what the open step has captured already.
struct cHistorySteps {
    std::vector<cUndoStep> places; // as many as there are levels; made at the first step
    cUndoStep* free = nullptr;
    cUndoStep* undoTop = nullptr;
    cUndoStep* redoTop = nullptr;
    std::unordered_set<uint32_t> captured[RL_COUNT];
};

cEntityRecord* newEntityRecord(const cEntityData* entity);
cBrushRecord* newBrushRecord(const cBrushData* brush, bool withGeometry);
cFaceRecord* newFaceRecord(const cFaceData* face, bool withGeometry);
cGroupRecord* newGroupRecord(const cGroupData* group);

void releaseRecord(cEntityRecord* record);
void releaseRecord(cBrushRecord* record); // with its faces
void releaseRecord(cFaceRecord* record);
void releaseRecord(cGroupRecord* record);
void releaseStep(cUndoStep& step); // all its records; the links stay
void freeAllRecords();             // the pools
size_t bytesOf(const cUndoStep& step);

std::vector<uint32_t> serialsOf(const QList<cVisGroup*>& visGroups);

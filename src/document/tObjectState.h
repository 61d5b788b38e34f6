// SPDX-License-Identifier: MIT
// What an object of a map is, beside its links: plain values that refer to other objects by id.
// The history keeps them, the clipboard carries them, clones are made of them, tests compare them.
// Derived values (bounds of brushes, texture coordinates, shades) follow when an object is rebuilt;
// planes and corners do not: they come back to the last bit. tStateFields.h tells the fields as
// bytes; the project file is written and read by it.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <QByteArray>
#include <QPair>
#include <array>
#include <cstdint>
#include <vector>

class cMap;

// Flags that say what happens to an object at this moment. Only the selected bit means something
// in a state: whether the history selects the object when it comes back.
constexpr uint32_t TRANSIENT_FLAGS = OF_SELECTED | BF_MOVING | BF_MARK | BF_MORPHED;

// Places first to first + count of a list of cObjectStates.
struct cStateRange {
    uint32_t first = 0;
    uint32_t count = 0;
    uint32_t end() const { return first + count; }
};

// previousId is the object before in its list, 0 for the first.

struct cGroupState {
    uint32_t id;
    uint32_t previousId;
    uint32_t parentId; // 0 without one
    uint32_t flags;
    int32_t memberCount; // derived, for the project file
    std::array<uint8_t, 4> color;
};

struct cFaceState {
    uint32_t id;
    uint32_t flags;
    cFaceTexture tex;
    float normal[3];
    float dist;
    int32_t planeType;
    cStateRange points; // of faces of brushes with geometry
};

// A face without its brush: flags and texture block alone.
struct cLoneFaceState {
    uint32_t brushId;
    uint32_t entityId;
    cFaceState face;
};

struct cBrushState {
    uint32_t id;
    uint32_t previousId;
    uint32_t entityId;
    uint32_t groupId;     // 0 without one
    uint32_t rootGroupId; // derived, for the project file
    uint32_t flags;
    uint32_t reserved;
    std::array<uint8_t, 4> color;
    bool withGeometry;
    cStateRange faces;
    cStateRange visGroups; // serials
};

struct cEntityState {
    uint32_t id;
    uint32_t previousId;
    uint32_t groupId;
    uint32_t rootGroupId; // derived, for the project file
    uint32_t flags;
    uint32_t spawnFlags;
    QByteArray classname;
    QByteArray flagsKey; // null without one
    std::array<float, 3> origin;
    std::array<float, 3> angles;
    std::array<float, 3> mins;
    std::array<float, 3> maxs;
    std::array<uint8_t, 4> color;
    // What was made of the keys when they were read last.
    uint32_t renderFlags;
    std::array<uint8_t, 4> renderColor = {0, 0, 0, 255};
    int32_t renderMode;
    int32_t renderFx;
    uint16_t body;
    uint16_t skin;
    int32_t sequence;
    float frameRate = 10;
    float scale = 1;
    std::vector<QPair<QByteArray, QByteArray>> pairs;
    cStateRange brushes; // where they were taken along
    cStateRange visGroups;
};

// What is taken of an object beside its own fields.
enum eTake : unsigned {
    TAKE_FIELDS = 0,
    TAKE_GEOMETRY = 1,  // planes and corners of a brush's faces
    TAKE_VISGROUPS = 2, // memberships
    TAKE_BRUSHES = 4    // an entity's brushes, with geometry
};

// States of any number of objects, in the order they were taken.
class cObjectStates {
public:
    void take(const cGroupData* group);
    void take(const cBrushData* brush, unsigned what);
    void take(const cEntityData* entity, unsigned what);
    void takeLone(const cFaceData* face);
    // The fields of a brush alone, its faces to come.
    void takeHead(const cBrushData* brush);
    // The faces of a brush of this bag become those of a brush of another one: in their places if
    // they are as many with as many points, else behind all others. pack() then gives back the
    // places they have left.
    void replaceFaces(cBrushState& state, const cBrushState& by, const cObjectStates& from);
    void pack();

    // Room for so many brushes more, at once: growing by halves copies all of a large step.
    struct cBrushCounts {
        size_t brushes = 0, faces = 0, points = 0;
        void add(const cBrushData* brush);
    };
    void reserve(const cBrushCounts& counts);

    bool isEmpty() const;
    void clear();         // and keeps the memory
    size_t bytes() const; // of memory, for measurements
    void shrink();        // gives back what growing took too much

    std::vector<cGroupState> groups;
    std::vector<cEntityState> entities;
    std::vector<cBrushState> brushes;
    std::vector<cLoneFaceState> loneFaces;
    std::vector<cFaceState> faces;            // of the brushes
    std::vector<std::array<float, 3>> points; // of the faces
    std::vector<uint32_t> serials;            // of visgroups

    cStateRange takeVisGroups(const cBrushData* brush);
    cStateRange takeVisGroups(const cEntityData* entity);

private:
    bool isSameShape(cStateRange own, cStateRange other, const cObjectStates& from) const;
    cStateRange appendFaces(const cObjectStates& from, cStateRange range);
    cFaceState takeFace(const cFaceData* face, bool withGeometry);
};

// ---- Back into a map. Nothing here is captured for undo, selected or rebuilt: what is put is
// marked dirty, and its owner wants updateEntity with no more than UM_ATTACH. Classes and textures
// are looked up by name, groups by id, visgroups by serial; what is not there any more is left out.

// New objects at the tails of their lists. With keepId under the state's id, which must be free,
// else under the next one. In no group yet.
cGroupData* makeGroup(cMap& map, const cGroupState& state);
cEntityData* makeEntity(cMap& map, const cEntityState& state, bool keepId);
cBrushData* makeBrush(cMap& map, const cObjectStates& states, const cBrushState& state,
                      cEntityData* owner, bool keepIds);

// Into an object that lives; whether it is selected stays as it is.
// What does not follow from class, flags and place: keys, angles, colour, render and model block.
void putKeys(cEntityData* entity, const cEntityState& state);
void putEntity(cEntityData* entity, const cEntityState& state);
// Flags, colour and faces. With geometry faces that the state lacks go, those that it has more are
// made; without it they only take flags and texture blocks. In both cases they stand in the
// state's order afterwards. A face that should be there and is not is reported and left out.
void putBrush(cMap& map, cBrushData* brush, const cObjectStates& states, const cBrushState& state);
void putFace(cFaceData* face, const cFaceState& state);

// Membership in a group by id, 0 for none; counts of members follow, roots of the object as well.
void setGroupById(cMap& map, cEntityData* entity, uint32_t id);
void setGroupById(cMap& map, cBrushData* brush, uint32_t id);
void joinVisGroups(cMap& map, cEntityData* entity, const cObjectStates& states,
                   cStateRange serials);
void joinVisGroups(cMap& map, cBrushData* brush, const cObjectStates& states, cStateRange serials);

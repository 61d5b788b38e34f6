// SPDX-License-Identifier: MIT
// What one brush, or the box of one point entity, looks like, in the form that buffers hold: its
// corners face by face, their colours in each look, its edges, and what decides where it is drawn.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <vector>

struct cTexture;

// What is drawn together stands under one key.
enum eDrawKind : uint8_t {
    KIND_FACES,       // triangles
    KIND_FLAT_EDGES,  // those that can be seen along one of the axes
    KIND_OTHER_EDGES, // the rest of them
    KIND_CORNERS,     // of brushes, as points: those that can be seen along one of the axes
    KIND_MARKS        // the crosses of brushes: two points each of the marks
};

// Faces that look along one of the axes can be left out a leaf at a time.
enum eFacing : uint8_t { FACING_OTHER = 6 }; // below it 2 * axis, plus 1 for its lower side

enum eDrawTrait : uint16_t {
    TRAIT_DETAIL = 0x01,
    TRAIT_ITEM = 0x02,
    TRAIT_PATH = 0x04,
    TRAIT_TRANSPARENT = 0x08, // by its entity
    TRAIT_BOX = 0x10,         // of a point entity
    TRAIT_NODRAW = 0x20,      // an edge of such faces alone
    TRAIT_MOVING = 0x40,      // a line that 2D views show in another way
    TRAIT_SPRITE = 0x80,      // the box of an entity with a sprite
    TRAIT_MODEL = 0x100       // with a model
};

struct cDrawKey {
    const cTexture* texture = nullptr; // of faces
    uint32_t color = 0;                // of lines in 2D views; 0 is the scheme's for brushes
    eDrawKind kind = KIND_FACES;
    uint8_t facing = FACING_OTHER;
    uint16_t traits = 0;

    bool operator==(const cDrawKey& other) const;
};

struct cShapeVertex {
    float xyz[3];
    float st[2];
    uint8_t rgba[4]; // as textured views show it
};
static_assert(sizeof(cShapeVertex) == 24);

struct cShapeFace {
    cDrawKey key;
    uint32_t first; // vertex
    uint32_t count;
    bool isTranslucent;    // by its texture or its entity
    const cFaceData* face; // null in a box
};

// Pairs of vertices.
struct cShapeEdges {
    cDrawKey key;
    std::vector<uint32_t> ends;
};

// Colours by vertex, beside those of textured views.
enum eLook {
    LOOK_FILLED, // shaded
    LOOK_LINES,  // unshaded
    LOOK_MARKED, // selected, shaded
    LOOK_COUNT
};

// What a shape is made for.
struct cShapeWish {
    uint32_t detailMask;      // content flags of detail brushes
    const uint8_t* markColor; // of selected faces, RGBA
    uint32_t looks;           // bit n: look n
};

class cObjectShape {
public:
    // Of the object's record; what was made before is lost.
    void make(const cBrushData* brush, const cShapeWish& wish);
    void make(const cEntityData* entity, const cShapeWish& wish);

    std::vector<cShapeVertex> vertices;
    // Of each vertex in the looks wished for; a word holds R, G, B, A in memory's order.
    std::vector<uint32_t> looks[LOOK_COUNT];
    std::vector<cShapeFace> faces;
    cShapeEdges edges[4]; // flat, other; then the same of nodraw faces alone
    cDrawKey cornerKey;
    std::vector<uint32_t> flatCorners; // vertices
    cDrawKey markKey;
    float center[3];
    uint16_t traits; // of all keys
    bool isShown;    // by its own flags and its entity's
    bool isMoving;
    bool isQuads;       // all faces have four corners, and none is nodraw
    bool isTranslucent; // a face is
    bool hasArrow;      // shows the way it looks
    bool isFigure() const { return (traits & (TRAIT_SPRITE | TRAIT_MODEL)) != 0; }
    // Two shapes of one signature differ in coordinates, texture coordinates and colours alone.
    uint32_t signature;

private:
    // One place where faces meet.
    struct cCorner {
        uint32_t vertex;  // one of those that stand there
        uint32_t flat[3]; // the first corner that covers it along each axis
    };
    // Which pairs of the first 64 corners were met.
    struct cPairSet {
        uint64_t rows[64];
        void clear(size_t corners); // no more will be used
        bool add(uint32_t a, uint32_t b);
        bool has(uint32_t a, uint32_t b) const { return (rows[a] >> b & 1) != 0; }
    };

    void clear();
    void sign();
    void addFaces(const cBrushData* brush, const uint8_t* color);
    void addFace(const cBrushData* brush, const cFaceData* face, const uint8_t* color);
    void addColors(const uint8_t* color, float shade, float alpha);
    uint16_t lineTraits() const { return uint16_t(traits | (isMoving ? TRAIT_MOVING : 0)); }
    void makeEdges(uint32_t color);
    void findCorners();
    void findManyCorners();
    void gatherEdges();
    void sortEdges();
    void findFlat();
    void chooseFlatEdges();
    void chooseFlatCorners();

    const uint8_t* m_markColor = nullptr;
    uint32_t m_looks = 0;
    std::vector<const cFaceData*> m_inOrder;
    std::vector<cCorner> m_corners;
    std::vector<uint32_t> m_cornerOf; // of each vertex
                                      // Each edge once, in the order met; its ends are corners.
    struct cEdge {
        uint32_t a;
        uint32_t b;
        bool nodraw;
        bool flat;
    };
    std::vector<cEdge> m_edges;
};

// The colour of a brush where neither selection nor texture decides: of the visgroup, of a group,
// the world brush's own, the class's.
const uint8_t* brushColor(const cBrushData* brush);
// Of a point entity without selection: the light's own, or the class's. RGBA, opaque.
void entityColor(const cEntityData* entity, uint8_t* rgba);
// rgba with the shade on its colours, cut to bytes as it stands: a negative shade wraps.
void shadeColor(const uint8_t* rgba, float shade, uint8_t* out);
// How solid a face that is seen through is, 0.2 to 1.
float transparentAlpha(const cFaceData* face);

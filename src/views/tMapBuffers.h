// SPDX-License-Identifier: MIT
// The geometry of a map in buffer objects, for all views of it: corners in slots by object, indices
// in rows by what is drawn together and in cells by leaf, so that a frame sends nothing and a
// change only what became old. Objects are heard of as the map's watcher, the selection is compared
// by its lists. Nothing of it stands in main memory beside the records, but for the numbers of
// slots.
#pragma once

#include "document/tMapWatcher.h"
#include "views/tGLBuffer.h"
#include "views/tLeafTree.h"
#include "views/tObjectShape.h"

#include <array>
#include <map>
#include <unordered_map>

// A run of indices of one row in one leaf.
struct cDrawCell {
    uint32_t leaf;
    uint32_t first;
    uint32_t count;
    uint32_t room; // indices that fit in
};

struct cDrawRow {
    cDrawKey key;
    std::vector<cDrawCell> cells; // by leaf
};

// Those of the selected objects that are drawn one by one.
struct cSelectedCell {
    uint32_t row;
    uint32_t first;
    uint32_t count;
};

// Corners of a selected object in a row: the outline of a face, or of many with four corners each.
struct cOutlineRun {
    static constexpr uint32_t MANY = ~0u;
    uint32_t first; // vertex
    uint32_t count;
    uint32_t row; // of the face, or MANY
};

// A face that is drawn when all opaque ones are, by its distance.
struct cTranslucentFace {
    const cFaceData* face;
    float center[3];
    float normal[3];
    float dist;
    uint32_t first; // vertex
    uint32_t count;
    uint32_t row;
    uint32_t slot;
};

struct cDrawLeaf {
    std::vector<uint32_t> objects;     // slots
    std::vector<cOutlineRun> outlines; // of what is selected
    std::vector<cTranslucentFace> translucent;
    std::vector<uint32_t> arrows;  // slots of entities that show the way they look
    std::vector<uint32_t> figures; // slots of those with a sprite or model
    float mins[3];                 // of all its objects
    float maxs[3];
    float coreMins[3]; // as they were when its cells were made
    float coreMaxs[3];
    int brushes = 0; // shown ones
    int entities = 0;
    int faces = 0;
    int selected = 0;
    bool isOld = true;        // its cells
    bool isReselected = true; // its count of selected objects and its outlines
    void clear();             // all but the objects and what was selected of them
    void keepCore();
    bool isWhollySelected() const { return selected > 0 && selected == brushes + entities; }
};

enum eSlotFlag : uint16_t {
    SLOT_BRUSH = 0x01, // else the box of a point entity
    SLOT_OLD = 0x02,   // its record has changed
    SLOT_SHOWN = 0x04,
    SLOT_SELECTED = 0x08,
    SLOT_STILL = 0x10, // met in the list of what is selected
    SLOT_MOVING = 0x20,
    SLOT_QUADS = 0x40,
    SLOT_TRANSLUCENT = 0x80,
    SLOT_STRAY = 0x100 // not yet in a leaf
};

struct cDrawSlot {
    void* record = nullptr; // null: free
    uint32_t leaf = 0;
    uint32_t first = 0; // vertex
    uint32_t count = 0;
    uint32_t signature = 0;
    uint16_t flags = 0;
    uint16_t traits = 0; // of all that is drawn of it
    bool is(eSlotFlag flag) const { return (flags & flag) != 0; }
    cBrushData* brush() const {
        return is(SLOT_BRUSH) ? static_cast<cBrushData*>(record) : nullptr;
    }
    cEntityData* entity() const {
        return is(SLOT_BRUSH) ? nullptr : static_cast<cEntityData*>(record);
    }
};

// What a buffer gets that is to grow by and by.
inline size_t bufferRoom(size_t count) {
    return count + count / 32 + 1024;
}
// The leaf covers the object as well.
void addBounds(const cDrawSlot& slot, cDrawLeaf& leaf);
// What of an entity decides how its brushes look, as one number.
uint32_t lookOnBrushes(const cEntityData* entity);

class cMapBuffers : public cMapWatcher {
public:
    static cMapBuffers& of(cMap& map); // made when it is first asked for
    explicit cMapBuffers(cMap& map);
    ~cMapBuffers() override;

    void brushChanged(cBrushData* brush) override;
    void entityChanged(cEntityData* entity) override;
    void brushGone(cBrushData* brush) override;
    void entityGone(cEntityData* entity) override;
    void allChanged() override;

    // Before each draw, with a current context. The mask and the colour of selected faces go into
    // what is kept; where they differ from the last call all is made anew.
    void update(uint32_t detailMask, const uint8_t* markColor);
    // Makes a look that nothing has shown yet.
    const cGLBuffer& look(eLook look);

    const cGLBuffer& vertices() const { return m_vertices; }
    const cGLBuffer& indices() const { return m_indices; }
    // Those of selected objects in leaves that hold others as well.
    const cGLBuffer& selectedIndices() const { return m_selectedIndices; }
    // Per slot two points at the brush's centre, -1 and 1 in the place of that axis.
    const cGLBuffer& marks(int axis) const { return m_marks[size_t(axis)]; }
    const std::vector<cDrawLeaf>& leaves() const { return m_leaves; }
    const cDrawSlot& slot(uint32_t number) const { return m_slots[number]; }
    const cDrawRow& row(uint32_t number) const { return m_rows[number]; }
    // Rows by kind, then texture, traits, facing.
    const std::vector<uint32_t>& order() const { return m_order; }
    const std::vector<cSelectedCell>& selectedCells() const { return m_selectedCells; }
    const std::vector<uint32_t>& movingSlots() const { return m_moving; }

private:
    struct cKeyHash {
        size_t operator()(const cDrawKey& key) const;
    };
    using cIndexList = std::vector<uint32_t>;
    static constexpr size_t VERTEX_SIZE = sizeof(cShapeVertex);
    static constexpr size_t MARK_SIZE = 2 * 3 * sizeof(float);

    // tMapBuffers.cpp
    uint32_t takeSlot(void* record, bool isBrush);
    void freeSlot(uint32_t& number);
    void noteOld(uint32_t number);
    void renewSlots();
    void renewSlot(uint32_t number);
    void placeStray(uint32_t number);
    void compareSelection();
    void markSelected(uint32_t number);
    // tMapBuffersBuild.cpp
    void build();
    void collect(std::vector<cPlacedObject>& objects);
    void clear();
    void fillSlot(const cPlacedObject& object, uint32_t leaf);
    void writeRows(const std::vector<cIndexList>& joined);
    void writeMarks();
    // tMapBuffersFill.cpp
    void buildLeaf(uint32_t leaf);
    void renewLeaf(uint32_t leaf);
    void splitLeaf(uint32_t leaf);
    void makeShape(uint32_t number, uint32_t looks = 0);
    uint32_t keptLooks() const;
    void takeShape(cDrawSlot& slot);
    void listObject(uint32_t number);
    void listTranslucent(cDrawLeaf& leaf, uint32_t number);
    void addIndices(uint32_t number);
    void putCell(uint32_t row, uint32_t leaf, const cIndexList& indices);
    uint32_t rowOf(const cDrawKey& key);
    void sortRows();
    void countSelected(cDrawLeaf& leaf);
    void addOutlines(cDrawLeaf& leaf, uint32_t number);
    void gatherSelected();
    uint32_t roomFor(uint32_t count);
    void freeRoom(uint32_t first, uint32_t count);
    void growVertices(uint32_t count);
    void writeSlot(uint32_t number);
    void stageMark(uint32_t number);
    void writeMark(uint32_t number);
    void growMarks();
    void stage(const cObjectShape& shape);
    void writeStaged(uint32_t first);
    void makeLook(eLook look);

    cMap& m_map;
    cObjectShape m_shape; // of the slot in work
    uint32_t m_detailMask = 0;
    std::array<uint8_t, 4> m_markColor = {};
    uint64_t m_seenRevision = 0;
    bool m_allOld = true;
    bool m_selectionOld = false;

    std::vector<cDrawSlot> m_slots;
    std::vector<uint32_t> m_freeSlots;
    std::vector<uint32_t> m_oldSlots;
    std::vector<uint32_t> m_selectedSlots;
    std::vector<uint32_t> m_moving;
    cLeafTree m_tree;
    std::vector<cDrawLeaf> m_leaves;
    std::vector<uint32_t> m_oldLeaves;

    std::vector<cDrawRow> m_rows;
    std::unordered_map<cDrawKey, uint32_t, cKeyHash> m_rowOf;
    static constexpr uint32_t NO_ROW = ~0u;
    struct cLastRow {
        cDrawKey key;
        uint32_t row = NO_ROW;
    };
    std::array<cLastRow, 64> m_lastRows; // by kind and facing
    std::vector<uint32_t> m_order;
    std::vector<cIndexList> m_lists; // by row, of the leaf or the selection in work
    std::vector<uint32_t> m_listed;  // rows with a list that is not empty
    std::vector<cSelectedCell> m_selectedCells;

    cGLBuffer m_vertices{cGLBuffer::VERTICES};
    std::array<cGLBuffer, LOOK_COUNT> m_looks{cGLBuffer{cGLBuffer::VERTICES},
                                              cGLBuffer{cGLBuffer::VERTICES},
                                              cGLBuffer{cGLBuffer::VERTICES}};
    std::array<cGLBuffer, 3> m_marks{cGLBuffer{cGLBuffer::VERTICES}, cGLBuffer{cGLBuffer::VERTICES},
                                     cGLBuffer{cGLBuffer::VERTICES}};
    cGLBuffer m_indices{cGLBuffer::INDICES};
    cGLBuffer m_selectedIndices{cGLBuffer::INDICES};
    uint32_t m_vertexEnd = 0; // of what was ever taken
    uint32_t m_indexEnd = 0;
    uint32_t m_lostIndices = 0;                            // rooms that cells have left
    uint32_t m_freeVertices = 0;                           // in m_freeRooms
    uint32_t m_bufferKind = 0;                             // of cGLBuffer, when all was made
    std::map<uint32_t, std::vector<uint32_t>> m_freeRooms; // first vertices by count
    std::vector<cShapeVertex> m_stagedVertices;
    std::array<std::vector<float>, 3> m_stagedMarks;
    std::array<std::vector<uint32_t>, LOOK_COUNT> m_stagedLooks;
};

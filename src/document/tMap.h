// SPDX-License-Identifier: MIT
// One map: its records, the counters and indices behind them, groups, visgroups and selection.
// Knows nothing of windows; whoever shows it compares revision(). Operations here open no
// history step and show no message box.
#pragma once

#include "document/tPickPool.h"
#include "plugininterface/tPluginInterface.h"

#include <QHash>
#include <QMap>
#include <QSet>
#include <QString>
#include <memory>
#include <vector>

class cCullTree;
class cHistory;
class cMapContext;
class cMapWatcher;
class cProject;
class cVisGroup;
struct cPortal;

// One point of a loaded pointfile; the array serves as an interleaved GL array.
struct cPathPoint {
    uint8_t color[4];
    float xyz[3];
};

// A polygon of a loaded portal file.
struct cPortal {
    int vertexCount;
    float points[128][3];
    cPortal* next;
};

// Values of cMap::selectionMode.
enum eSelectionMode { MODE_GROUPS = 1, MODE_SINGLE = 2, MODE_FACES = 3 };

// How selectInBox tests an object.
enum eBoxMode { BOX_TOUCHING, BOX_CONTAINED, BOX_BY_CENTER };

class cMap {
public:
    explicit cMap(cMapContext& game, cProject* owner = nullptr);
    ~cMap();
    cMap(const cMap&) = delete;
    cMap& operator=(const cMap&) = delete;

    static cMap* of(cMapData* record) { return record->map; }

    // Everything goes but the id counters of entities, brushes, faces and groups. Silent.
    void clearMap();
    cEntityData* world() const { return data.entities; }

    // ---- Lookups. What a walk of the lists would find first, through an index; null if absent.

    cGroupData* findGroupById(uint32_t id) const;
    cEntityData* findEntityById(uint32_t id) const;
    cBrushData* findBrushById(const cEntityData* entity, uint32_t id) const; // null: all entities
    cFaceData* findFaceById(const cBrushData* brush, uint32_t id) const;
    cGroupData* findGroupByPick(int pick) const;
    cEntityData* findEntityByPick(int pick) const;
    cBrushData* findBrushByPick(int pick) const;
    cFaceData* findFaceByPick(int pick) const;

    // ---- Creation. Each gives a pick number and, unless it says otherwise, the next id.

    void attachEntity(cEntityData* entity); // pick number and class only
    cEntityData* addEntity(const char* classname, const float* origin, uint32_t flags);
    // The world, at the head of the list, with its class's default keys.
    cEntityData* addWorld(const char* classname);
    cBrushData* addBrush(cEntityData* entity);
    cFaceData* addFace(cBrushData* brush, const cFaceTexture& tex, int vertexCount);
    cGroupData* addGroup();

    // For readers and the history, which make the objects themselves: enter a detached object at
    // the tail of its list. id 0 takes the next id, another one is kept.
    void insertEntity(cEntityData* entity, uint32_t id = 0);
    void insertBrush(cBrushData* brush, cEntityData* entity, uint32_t id = 0);
    void insertFace(cFaceData* face, cBrushData* brush, uint32_t id = 0);
    cGroupData* insertGroup(uint32_t id); // at the head of the list, black

    // ---- Removal: out of all lists, pick numbers back, deleted.

    void freeFace(cFaceData* face);
    // With record the open history step takes the groups that go with the object; the object
    // itself is the caller's to capture.
    void freeBrush(cBrushData* brush, bool record = false); // never removes an emptied entity
    // With its brushes; the world is refused silently.
    void freeEntity(cEntityData* entity, bool record = false);
    void freeGroup(cGroupData* group);
    // Removes a solid entity that has lost its last brush, with a message; true if it went.
    // With record the open history step takes it.
    bool removeEmptySolidEntity(cEntityData* entity, bool record = false);
    // The entity with its brushes, without a message; the world is refused silently. With record
    // the open history step takes all of it.
    void removeEntityWhole(cEntityData* entity, bool record);
    // Moves a brush to the tail of another entity's list; both owners want an update after.
    void moveBrush(cBrushData* brush, cEntityData* entity);

    // ---- Groups

    void joinGroupEntity(cEntityData* entity, cGroupData* group);
    void joinGroupBrush(cBrushData* brush, cGroupData* group);
    void joinGroupGroup(cGroupData* child, cGroupData* group);
    // All selected entities and all selected brushes of the world join, in one walk.
    void joinSelection(cGroupData* group);
    // Members and child groups go up one level; with select the child groups become selected and
    // the open history step takes them. The group itself stays, empty. Several at once: one walk.
    void dissolveGroup(cGroupData* group, bool select);
    void dissolveGroups(const std::vector<cGroupData*>& groups, bool select);
    // For an object that goes: its group's count falls, and emptied groups go with it, bottom up,
    // unless keepEmpty is set. With record the open history step takes what goes.
    void leaveGroupEntity(cEntityData* entity, bool keepEmpty, bool record = false);
    void leaveGroupBrush(cBrushData* brush, bool keepEmpty, bool record = false);

    // ---- Visgroups

    cVisGroup* createVisGroup(const char* name);
    cVisGroup* findVisGroup(uint32_t id) const;
    const std::vector<cVisGroup*>& visGroupList() const; // by id
    int visGroupIndex(uint32_t id) const;                // in that list; -1 for none
    void forgetVisGroupList() { m_visGroupList.clear(); }
    void setVisGroupId(cVisGroup* visGroup, uint32_t id);
    void clearVisGroups();
    void renumberVisGroups();
    void removeVisGroup(cVisGroup* visGroup);
    bool mergeVisGroups(uint32_t sourceId, uint32_t targetId);
    bool purgeVisGroups();
    void computeVisGroupVisibility(); // one pass over the map
    cVisGroup* findVisGroupBySerial(uint32_t serial) const;
    void assignVisGroup(uint32_t id);             // all selected objects join it
    void markVisGroup(uint32_t id);               // its members become the selection
    void setVisGroupVisible(cVisGroup* visGroup); // flips: hides or shows its members
    // Hiding by hand; what is hidden leaves the selection. False: nothing was selected.
    bool hideSelection();
    bool hideUnselected();
    struct cRevealed {
        int entities = 0;
        int brushes = 0;
        int groups = 0;
        int total() const { return entities + brushes + groups; }
    };
    cRevealed showHidden(); // every hidden object, whatever hid it

    // ---- Selection

    // Nobody else changes the lists or flags of what is selected, but for history and readers.
    // Every operation ends by describing the selection, unless it says otherwise; none opens a
    // history step. Selected objects stand in their list newest first.

    int updateSelectionMode(); // 3 faces, 2 single objects, 1 groups as units
    bool isPickSelected(int pick) const;
    // That object alone, in or out. Describes nothing.
    void select(cGroupData* group);
    void select(cEntityData* entity);
    void select(cBrushData* brush);
    void deselect(cGroupData* group);
    void deselect(cEntityData* entity);
    void selectEntity(cEntityData* entity); // with its brushes
    void selectGroup(cGroupData* group);    // with its members; neither describes anything
    // Counted from 0 in list order; with skipHidden hidden ones are not counted.
    void selectBrushByIndex(int entityIndex, int brushIndex, bool skipHidden);
    void selectInBox(const float* mins, const float* maxs, int boxMode); // eBoxMode
    void selectAll();
    void selectFacesOfBrushes(); // of the selected brushes, in place of them
    // In place of the selection: the faces while faces are picked, else their brushes, each once.
    // Gives how many.
    int selectOnly(const std::vector<cFaceData*>& faces);
    // toggle takes a selected object out; without it the caller has cleared the selection.
    void selectBrushFacesByPick(int pick, bool toggle);
    void selectByPick(int pick, bool toggle);
    // While groups act as units: with each selected object its outermost group and all members.
    void selectRoots();
    void clearFaces();
    void clearSelection();
    void clearSelectionFull(); // by a walk of the whole map, where the lists can't be relied on
    bool hasSelection() const; // an object: group, entity or brush
    void dropHidden();
    // Groups of which no member is selected any more; describes nothing.
    void dropForsakenGroups();
    void describeSelection(); // tells MC_SELECTION
    QString selectionSentence() const;

    // ---- Finishing

    // Transparency flags, visgroup visibility, the cull tree: after a read.
    void finishLoad();
    void buildCullTree();
    // Textures have come or gone: faces and decals take what their names mean in this game now.
    void renewFaces();
    void recolor();              // after a change of the colour scheme
    void noteFaceTransparency(); // after a change of the setting TextureTransparency

    // Grows with every change that a view could show.
    uint64_t revision() const { return m_revision; }
    // Grows with those of them that are more than a selection.
    uint64_t edits() const { return m_edits; }
    void markChanged() {
        ++m_revision;
        ++m_edits;
    }
    // The views' next frame shows it, and the host hears of it (MC_ bits): at once, or when the
    // outermost cMapChange closes.
    void changed(unsigned what);
    void openChange() { ++m_openChanges; }
    void closeChange(unsigned what);

    cMapContext& context; // the game whose textures, classes and profile count
    cProject* project;
    std::unique_ptr<cHistory> history;    // never null
    std::unique_ptr<cCullTree> cullTree;  // null until built
    std::unique_ptr<cMapWatcher> watcher; // of the views; null until one has shown the map
    cMapData data;
    cPickPool picks;
    int selectionMode = 1;
    uint32_t lastGroupId = 0;
    uint32_t lastEntityId = 0;
    uint32_t lastBrushId = 0;
    uint32_t lastFaceId = 0;
    uint32_t lastVisGroupId = 0;
    int pointCount = 0;
    cPathPoint* points = nullptr;
    cPortal* portals = nullptr;
    QMap<uint32_t, cVisGroup*> visGroups;
    bool toldMended = false; // a plug-in's faces have been warned of

    // counter plus one, skipping 0
    static uint32_t nextId(uint32_t& counter);

private:
    struct cBoxTest;
    void releaseFace(cFaceData* face);
    void releaseBrush(cBrushData* brush);
    void releaseEntity(cEntityData* entity);
    void releaseGroup(cGroupData* group);
    void removeEmptiedGroups(cGroupData* group, bool record, const char* message,
                             const char* classname);
    void freeOverlays();
    void freeVisGroups();
    int wantedSelectionMode() const;
    void selectUnits(const QSet<const cGroupData*>& roots);
    void selectMembers(const QSet<const cGroupData*>& roots);
    QSet<const cGroupData*> selectedRoots() const;
    void deselectEntity(cEntityData* entity);
    void deselectGroup(cGroupData* group);
    void pickGroup(cGroupData* group, bool toggle);
    void pickEntity(cEntityData* entity, bool toggle);
    void pickBrush(cBrushData* brush, bool toggle);
    void boxBrushes(cEntityData* container, const cBoxTest& test, QSet<const cGroupData*>& touched);
    int countSelectedUnits() const;
    int countSelectedSolids() const;
    QString entitySentence() const;

    QHash<uint32_t, cEntityData*> m_entitiesById;
    QHash<uint32_t, cBrushData*> m_brushesById;
    QHash<uint32_t, cGroupData*> m_groupsById;
    QHash<uint32_t, cVisGroup*> m_visGroupsBySerial;
    mutable std::vector<cVisGroup*> m_visGroupList; // empty until asked for
    uint64_t m_revision = 1;
    uint64_t m_edits = 0;
    int m_openChanges = 0;
    unsigned m_changes = 0; // MC_ bits that are not told yet
};

// No face has more vertices.
static constexpr int MAX_FACE_VERTICES = 1 << 16;

// The game of an object that is entered in a map.
inline cMapContext& contextOf(const cEntityData* entity) {
    return entity->owner->map->context;
}
inline cMapContext& contextOf(const cBrushData* brush) {
    return contextOf(brush->owner);
}
inline cMapContext& contextOf(const cFaceData* face) {
    return contextOf(face->brush);
}

// Detached objects; freed by the map once they are inserted.
cBrushData* newBrush();
cFaceData* newFace(int vertexCount); // null for a count that no face has
// A face that was never entered in a brush.
void freeDetachedFace(cFaceData* face);

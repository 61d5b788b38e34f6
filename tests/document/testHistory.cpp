// SPDX-License-Identifier: MIT
#include "document/tEntityClass.h"
#include "support/tMapState.h"
#include "support/tMapTest.h"

#include <cmath>

class History : public cMapTest {
protected:
    // Every vertex goes up; the smallest possible edit of geometry.
    void raise(cBrushData* brush, float distance) {
        for (cFaceData* face : facesOf(brush)) {
            for (int i = 0; i < face->vertexCount; ++i)
                face->vertices[i].xyz[2] += distance;
            face->flags |= FF_DIRTY;
        }
        touchBrush(brush);
        updateEntity(brush->owner, UM_PLANES);
    }

    void raiseStep(cBrushData* brush, const char* name) {
        const cHistoryStep step(map, name);
        step->brushChanged(brush, true);
        raise(brush, 16);
    }

    cHistory& history = *map.history;
};

TEST_F(History, forgetsTheOldestWhenNoLevelIsFree) {
    host.UndoLevels = 2;
    history.applyLevels();
    cBrushData* brush = cubeAt(0);
    for (const char* name : {"first", "second", "third"})
        raiseStep(brush, name);
    history.undo();
    EXPECT_STREQ(history.undoName(), "second");
    EXPECT_STREQ(history.redoName(), "third");
    history.undo();
    EXPECT_FALSE(history.canUndo());
    EXPECT_EQ(brush->mins[2], 16.0f) << "the first step stays done";
    EXPECT_STREQ(history.undoName(), "???");
    history.redo();
    history.redo();
    EXPECT_FALSE(history.canRedo());
    EXPECT_EQ(brush->mins[2], 48.0f);
    history.undo();
    raiseStep(brush, "last");
    EXPECT_FALSE(history.canRedo()) << "a new step ends all redo";
    // Another number of levels frees all steps.
    host.UndoLevels = 7;
    history.applyLevels();
    EXPECT_FALSE(history.canUndo());
}

TEST_F(History, whileOffNothingIsRecorded) {
    cBrushData* brush = cubeAt(0);
    raiseStep(brush, "before");
    history.setEnabled(false);
    EXPECT_EQ(history.recordBytes(), 0u);
    raiseStep(brush, "off");
    history.setEnabled(true);
    history.brushChanged(brush, true); // no step is open
    raiseStep(brush, "on");
    history.undo();
    EXPECT_EQ(brush->mins[2], 32.0f);
    EXPECT_FALSE(history.canUndo());
    history.redo();
    EXPECT_EQ(brush->mins[2], 48.0f);
}

TEST_F(History, firstCaptureOfAnObjectDecides) {
    cBrushData* brush = cubeAt(0);
    cBrushData* other = cubeAt(128);
    history.begin("both");
    history.brushChanged(brush, true);
    history.brushChanged(other, false);
    raise(brush, 16);
    raise(other, 16);
    history.brushChanged(brush, true); // too late
    history.brushChanged(other, true);
    raise(brush, 16);
    history.end();
    history.undo();
    EXPECT_EQ(brush->mins[2], 0.0f);
    EXPECT_EQ(other->mins[2], 16.0f); // without geometry the vertices stay
}

TEST_F(History, stepThatWasLeftOpenKeepsNothingFromTheNext) {
    cBrushData* brush = cubeAt(0);
    history.begin("left open");
    history.brushChanged(brush, true);
    raise(brush, 16);
    raiseStep(brush, "next");
    history.undo();
    EXPECT_EQ(brush->mins[2], 16.0f);
    history.undo();
    EXPECT_EQ(brush->mins[2], 0.0f);
    // Given up while it is open: later captures have no step to go to.
    history.begin("cleared");
    history.clear();
    EXPECT_FALSE(history.isRecording());
    history.brushChanged(brush, true);
    EXPECT_FALSE(history.canUndo());
}

TEST_F(History, facesComeAndGoWithTheGeometryOfTheirBrush) {
    cBrushData* brush = cubeAt(0);
    cBrushData* other = cubeAt(100);
    law([&] {
        const cHistoryStep step(map, "cut");
        step->brushChanged(brush, true);
        step->brushChanged(other, true); // its record stands behind the one that changes its size
        // A corner is cut off: one face more, three others with another number of vertices.
        cFaceTexture tex = brush->faces->tex;
        tex.uShift = 7;
        cFaceData* face = map.addFace(brush, tex, 0);
        const float third = 1 / std::sqrt(3.0f);
        for (float& component : face->normal)
            component = third;
        face->dist = third * 176;
        for (cFaceData* each : facesOf(brush))
            each->flags |= FF_DIRTY;
        touchBrush(brush);
        updateEntity(world, UM_WINDINGS);
    });
    EXPECT_EQ(countOf(facesOf(brush)), 7);
    const cMapState cut = stateOf(map);
    const size_t bytes = history.recordBytes();
    for (int i = 0; i < 3; ++i) {
        history.undo();
        history.redo();
    }
    EXPECT_EQ(firstDifference(cut, stateOf(map)).toStdString(), "");
    EXPECT_EQ(history.recordBytes(), bytes) << "a record takes no more from undo to undo";
}

TEST_F(History, selectionAtTheTimeOfRecordingComesBackAlone) {
    cBrushData* first = cubeAt(0);
    cBrushData* second = cubeAt(128);
    first->flags |= BF_MOVING | BF_MARK;
    select({first});
    raiseStep(first, "raise");
    map.clearSelection();
    select({second});
    history.undo();
    EXPECT_TRUE(isSelected(first) && !isSelected(second));
    EXPECT_EQ(first->flags & (BF_MOVING | BF_MARK), 0u);
    EXPECT_EQ(sentence(), QStringLiteral("solid with 6 faces."));
    map.clearSelection();
    history.redo();
    EXPECT_TRUE(isSelected(first));
    // What was hidden then is not selected again.
    first->flags |= BF_HIDDEN;
    raiseStep(first, "while hidden");
    history.undo();
    EXPECT_FALSE(isSelected(first));
}

TEST_F(History, memberOfGroupsBringsItsOutermostGroupBack) {
    cGroupData* inner = map.addGroup();
    cGroupData* outer = map.addGroup();
    cBrushData* brush = cubeOf(inner, 0);
    cBrushData* mate = cubeOf(outer, 128);
    map.joinGroupGroup(inner, outer);
    select({brush});
    raiseStep(brush, "raise");
    map.clearSelection();
    history.undo();
    EXPECT_TRUE(isSelected(outer));
    EXPECT_FALSE(isSelected(inner));
    EXPECT_TRUE(isSelected(mate));
    EXPECT_EQ(sentence(), QStringLiteral("group of 2 objects."));
    host.IgnoreGroups = true;
    history.redo();
    EXPECT_FALSE(isSelected(outer));
    EXPECT_FALSE(isSelected(mate));
    EXPECT_TRUE(isSelected(brush));
    EXPECT_TRUE(isWhole());
}

TEST_F(History, membershipsSurviveRenumberingAndVisgroupsThatHaveGone) {
    cVisGroup* empty = map.createVisGroup("empty");
    cVisGroup* walls = map.createVisGroup("walls");
    cVisGroup* gone = map.createVisGroup("gone");
    cBrushData* brush = cubeAt(0);
    const uint32_t id = brush->id;
    brush->brush->addToVisGroup(walls);
    brush->brush->addToVisGroup(gone);
    {
        const cHistoryStep step(map, "delete");
        step->brushDeleted(brush);
        map.freeBrush(brush);
        updateEntity(world, 0);
    }
    EXPECT_EQ(empty->objectCount, 0);
    map.removeVisGroup(empty);
    map.removeVisGroup(gone);
    map.renumberVisGroups();
    EXPECT_EQ(walls->id, 1u);
    history.undo();
    brush = map.findBrushById(world, id);
    EXPECT_EQ(brush->brush->visGroups, QList<cVisGroup*>{walls});
    EXPECT_EQ(walls->objectCount, 1);
    EXPECT_TRUE(walls->visible);
    history.redo();
    EXPECT_EQ(walls->objectCount, 0);
    EXPECT_FALSE(walls->visible);
}

TEST_F(History, entityTakesBackClassKeysAndWhatItShows) {
    cEntityClass* light = host.addClass(QStringLiteral("light"), CK_POINT);
    cEntityData* entity = pointAt(0);
    resetEntityFromClass(entity);
    addEpairLast(entity, "_light", "255 0 0 200");
    updateEntity(entity, UM_RENDER_KEYS | UM_ATTACH);
    law([&] {
        const cHistoryStep step(map, "change");
        step->entityChanged(entity);
        setText(entity->classname, "unknown_thing");
        setEntityClass(entity, nullptr);
        setEpair(entity, "_light", "1 2 3");
        entity->angles[1] = 90;
        updateEntity(entity, UM_RENDER_KEYS | UM_MODEL_KEYS | UM_ATTACH);
    });
    history.undo();
    EXPECT_EQ(entity->entity->entityClass, light);
    EXPECT_EQ(entity->renderColor[0], 255);
}

TEST_F(History, entityFollowsAClassThatWasReadAnew) {
    const auto addFlags = [](cEntityClass* entityClass, const char* name) {
        entityClass->variables = {{VT_FLAGS, QString::fromLatin1(name), {}, {}, {}, {}}};
    };
    cEntityClass* light = host.addClass(QStringLiteral("light"), CK_POINT);
    addFlags(light, "spawnflags");
    cEntityData* changed = pointAt(0);
    cEntityData* deleted = pointAt(64);
    const uint32_t deletedId = deleted->id;
    {
        const cHistoryStep step(map, "mixed");
        step->entityChanged(changed);
        step->entityDeleted(deleted);
        map.freeEntity(deleted);
    }
    addFlags(light, "lightflags");
    deriveFlagsKey(changed);
    history.undo();
    EXPECT_STREQ(changed->flagsKey, "lightflags");
    EXPECT_STREQ(map.findEntityById(deletedId)->flagsKey, "lightflags");
    history.redo();
    EXPECT_STREQ(changed->flagsKey, "lightflags");
}

TEST_F(History, recordsWithoutTheirObjectTellAndTheRestGoesOn) {
    cEntityData* door = addDoor();
    cBrushData* lost = cubeIn(door, 0);
    cBrushData* alone = cubeAt(256);
    cBrushData* kept = cubeAt(128);
    cGroupData* group = map.addGroup();
    history.begin("many");
    history.entityChanged(door);
    for (cBrushData* brush : {lost, alone, kept})
        history.brushChanged(brush, true);
    history.groupChanged(group);
    history.faceChanged(lost->faces);
    raise(kept, 16);
    history.end();
    map.freeEntity(door);
    map.freeBrush(alone);
    map.freeGroup(group);
    history.undo();
    EXPECT_EQ(kept->mins[2], 0.0f);
    EXPECT_EQ(failed("Undo/Redo: no such entityId"), 3);
    EXPECT_EQ(failed("Undo/Redo: no such brushId"), 1);
    EXPECT_EQ(failed("Undo/Redo: no such groupId"), 1);
    history.redo();
    EXPECT_EQ(kept->mins[2], 16.0f);
    EXPECT_TRUE(isWhole());
}

TEST_F(History, morphEndsBeforeAStepAndTheMenuHearsOfIt) {
    class cListening : public cTestHost {
    public:
        void mapChanged(cMap&, unsigned what) override {
            if (what & MC_HISTORY)
                heard << QStringLiteral("history");
        }
        void endMorph() override { heard << QStringLiteral("morph"); }
        QStringList heard;
    };
    cBrushData* brush = cubeAt(0); // its texture belongs to the host that outlives the map
    cListening listening;
    raiseStep(brush, "raise");
    EXPECT_EQ(listening.heard, QStringList({QStringLiteral("morph"), QStringLiteral("history")}));
}

// SPDX-License-Identifier: MIT
#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tEntityClass.h"
#include "document/tGroup.h"
#include "document/tHistory.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "support/tLaw.h"
#include "support/tMapTools.h"
#include "support/tTestHost.h"

#include <cmath>
#include <gtest/gtest.h>

static const float ORIGIN[3] = {10, 20, 30};

class History : public testing::Test {
protected:
    void SetUp() override { world = addWorldTo(map); }

    cBrushData* addBoxAt(float x, cEntityData* owner = nullptr) {
        const float mins[3] = {x, 0, 0}, maxs[3] = {x + 64, 64, 64};
        cBrushData* brush = addBox(map, owner ? owner : world, mins, maxs);
        settle(map);
        return brush;
    }

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

    void select(cBrushData* brush) { selectedPush(map.data.selectedBrushes, brush); }

    cTestHost host;
    cMap map{nullptr};
    cHistory& history = *map.history;
    cEntityData* world = nullptr;
};

TEST_F(History, forgetsTheOldestWhenNoLevelIsFree) {
    host.UndoLevels = 2;
    history.applyLevels();
    cBrushData* brush = addBoxAt(0);
    for (const char* name : {"first", "second", "third"})
        raiseStep(brush, name);
    EXPECT_STREQ(history.undoName(), "third");
    history.undo();
    EXPECT_STREQ(history.undoName(), "second");
    EXPECT_STREQ(history.redoName(), "third");
    history.undo();
    EXPECT_FALSE(history.canUndo());
    EXPECT_EQ(brush->mins[2], 16.0f); // the first step stays done
    EXPECT_STREQ(history.undoName(), "???");
    history.redo();
    history.redo();
    EXPECT_FALSE(history.canRedo());
    EXPECT_EQ(brush->mins[2], 48.0f);
    for (int i = 0; i < 7; ++i)
        raiseStep(brush, "more");
    history.undo();
    history.undo();
    history.undo();
    EXPECT_EQ(brush->mins[2], 48.0f + 5 * 16);
    // A new step ends all redo.
    raiseStep(brush, "last");
    EXPECT_FALSE(history.canRedo());
    // Another number of levels frees all steps.
    host.UndoLevels = 7;
    history.applyLevels();
    EXPECT_FALSE(history.canUndo());
}

TEST_F(History, whileOffNothingIsRecorded) {
    cBrushData* brush = addBoxAt(0);
    raiseStep(brush, "before");
    history.setEnabled(false);
    EXPECT_FALSE(history.canUndo());
    EXPECT_EQ(history.recordBytes(), 0u);
    raiseStep(brush, "off");
    history.setEnabled(true);
    EXPECT_FALSE(history.canUndo());
    history.brushChanged(brush, true); // no step is open
    raiseStep(brush, "on");
    history.undo();
    EXPECT_EQ(brush->mins[2], 32.0f);
    EXPECT_FALSE(history.canUndo());
    cHistory::freeRecordPools();
    history.redo();
    EXPECT_EQ(brush->mins[2], 48.0f);
}

TEST_F(History, firstCaptureOfAnObjectDecides) {
    cBrushData* brush = addBoxAt(0);
    cBrushData* other = addBoxAt(128);
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
    cBrushData* brush = addBoxAt(0);
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
    raiseStep(brush, "after");
    history.undo();
    EXPECT_EQ(brush->mins[2], 0.0f);
}

TEST_F(History, facesComeAndGoWithTheGeometryOfTheirBrush) {
    cBrushData* brush = addBoxAt(0);
    const QString problem = checkLaw(map, [&] {
        const cHistoryStep step(map, "cut");
        step->brushChanged(brush, true);
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
        settle(map);
        EXPECT_NE(brush->facesTail->prev, nullptr);
    });
    EXPECT_TRUE(problem.isEmpty()) << qPrintable(problem);
    int faces = 0;
    for ([[maybe_unused]] const cFaceData* face : facesOf(brush))
        ++faces;
    EXPECT_EQ(faces, 7);
}

TEST_F(History, deletedObjectsComeBackUnderTheirIdsForEarlierSteps) {
    cEntityData* door = map.addEntity("func_door", ORIGIN, 0);
    addEpairLast(door, "speed", "100");
    cBrushData* brush = addBoxAt(0, door);
    const uint32_t brushId = brush->id, doorId = door->id;
    raiseStep(brush, "raise");
    select(brush);
    selectedPush(map.data.selectedEntities, door);
    const QString problem = checkLaw(map, [&] {
        const cHistoryStep step(map, "delete");
        step->entitiesDeleted();
        step->brushesDeleted();
        map.freeEntity(door);
    });
    EXPECT_TRUE(problem.isEmpty()) << qPrintable(problem);
    history.undo();
    history.undo(); // the marker of the law
    history.undo();
    door = map.findEntityById(doorId);
    ASSERT_NE(door, nullptr);
    EXPECT_STREQ(getEpairValue(door, "speed"), "100");
    EXPECT_EQ(map.findBrushById(door, brushId)->mins[2], 0.0f);
    EXPECT_EQ(door->mins[2], 0.0f);
    EXPECT_TRUE(checkMapWhole(map).isEmpty()) << qPrintable(checkMapWhole(map));
}

TEST_F(History, selectionAtTheTimeOfRecordingComesBackAlone) {
    cBrushData* first = addBoxAt(0);
    cBrushData* second = addBoxAt(128);
    first->flags |= BF_MOVING | BF_MARK;
    select(first);
    raiseStep(first, "raise");
    first->flags &= ~uint32_t(BF_MOVING | BF_MARK);
    map.clearSelection();
    select(second);
    history.undo();
    EXPECT_TRUE(isSelected(first));
    EXPECT_FALSE(isSelected(second));
    EXPECT_EQ(first->flags & (BF_MOVING | BF_MARK), 0u);
    EXPECT_EQ(host.panes[2], QStringLiteral("solid with 6 faces."));
    map.clearSelection();
    history.redo();
    EXPECT_TRUE(isSelected(first));
    // What is hidden meanwhile is not selected again.
    first->flags |= BF_HIDDEN;
    history.undo();
    EXPECT_TRUE(isSelected(first)); // its flags came from the record
    first->flags |= BF_HIDDEN;
    raiseStep(first, "while hidden");
    history.undo();
    EXPECT_FALSE(isSelected(first));
}

TEST_F(History, memberOfGroupsBringsItsOutermostGroupBack) {
    cGroupData* inner = map.addGroup();
    cGroupData* outer = map.addGroup();
    cBrushData* brush = addBoxAt(0);
    cBrushData* mate = addBoxAt(128);
    map.joinGroupBrush(brush, inner);
    map.joinGroupGroup(inner, outer);
    map.joinGroupBrush(mate, outer);
    select(brush);
    raiseStep(brush, "raise");
    map.clearSelection();
    history.undo();
    EXPECT_TRUE(isSelected(outer));
    EXPECT_FALSE(isSelected(inner));
    EXPECT_TRUE(isSelected(mate));
    EXPECT_EQ(host.panes[2], QStringLiteral("group of 2 objects."));
    host.IgnoreGroups = true;
    history.redo();
    EXPECT_FALSE(isSelected(outer));
    EXPECT_FALSE(isSelected(mate));
    EXPECT_TRUE(isSelected(brush));
    EXPECT_TRUE(checkMapWhole(map).isEmpty()) << qPrintable(checkMapWhole(map));
}

TEST_F(History, membershipsSurviveRenumberingAndVisgroupsThatHaveGone) {
    cVisGroup* empty = map.createVisGroup("empty");
    cVisGroup* walls = map.createVisGroup("walls");
    cVisGroup* gone = map.createVisGroup("gone");
    cBrushData* brush = addBoxAt(0);
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

TEST_F(History, brushFindsItsFormerEntityAndBothAreUpdated) {
    cEntityData* door = map.addEntity("func_door", ORIGIN, 0);
    addBoxAt(0, door);
    cBrushData* brush = addBoxAt(512);
    const QString problem = checkLaw(map, [&] {
        const cHistoryStep step(map, "tie");
        step->brushChanged(brush, false);
        map.moveBrush(brush, door);
        updateEntity(door, 0);
        updateEntity(world, 0);
        EXPECT_EQ(door->maxs[0], 576.0f);
    });
    EXPECT_TRUE(problem.isEmpty()) << qPrintable(problem);
    history.undo();
    EXPECT_EQ(door->maxs[0], 64.0f);
    EXPECT_EQ(world->mins[0], 512.0f);
}

TEST_F(History, entityTakesBackClassKeysAndWhatItShows) {
    cEntityClass* light = host.addClass(QStringLiteral("light"), CK_POINT);
    light->color[0] = 9;
    cEntityData* entity = map.addEntity("light", ORIGIN, EF_POINT);
    resetEntityFromClass(entity);
    addEpairLast(entity, "_light", "255 0 0 200");
    updateEntity(entity, UM_RENDER_KEYS | UM_ATTACH);
    ASSERT_EQ(entity->entity->entityClass, light);
    const QString problem = checkLaw(map, [&] {
        const cHistoryStep step(map, "change");
        step->entityChanged(entity);
        setText(entity->classname, "unknown_thing");
        setEntityClass(entity, nullptr);
        setEpair(entity, "_light", "1 2 3");
        entity->angles[1] = 90;
        updateEntity(entity, UM_RENDER_KEYS | UM_MODEL_KEYS | UM_ATTACH);
    });
    EXPECT_TRUE(problem.isEmpty()) << qPrintable(problem);
    history.undo();
    EXPECT_EQ(entity->entity->entityClass, light);
    EXPECT_STREQ(entity->flagsKey, "spawnflags");
    EXPECT_EQ(entity->renderColor[0], 255);
    EXPECT_EQ(entity->angles[1], 0.0f);
}

TEST_F(History, entityFollowsAClassThatWasReadAnew) {
    const auto addFlags = [](cEntityClass* entityClass, const char* name) {
        cEntityVariable variable;
        variable.name = QString::fromLatin1(name);
        variable.type = VT_FLAGS;
        entityClass->variables = {variable};
    };
    cEntityClass* light = host.addClass(QStringLiteral("light"), CK_POINT);
    addFlags(light, "spawnflags");
    cEntityData* changed = map.addEntity("light", ORIGIN, EF_POINT);
    cEntityData* deleted = map.addEntity("light", ORIGIN, EF_POINT);
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
    cEntityData* door = map.addEntity("func_door", ORIGIN, 0);
    cBrushData* lost = addBoxAt(0, door);
    cBrushData* alone = addBoxAt(256);
    cBrushData* kept = addBoxAt(128);
    cGroupData* group = map.addGroup();
    history.begin("many");
    history.entityChanged(door);
    history.brushChanged(lost, true);
    history.brushChanged(alone, true);
    history.brushChanged(kept, true);
    history.groupChanged(group);
    history.faceChanged(lost->faces);
    raise(kept, 16);
    history.end();
    map.freeEntity(door);
    map.freeBrush(alone);
    map.freeGroup(group);
    history.undo();
    EXPECT_EQ(kept->mins[2], 0.0f);
    EXPECT_EQ(host.count(eMessage::Error, QStringLiteral("Undo/Redo: no such entityId")), 3);
    EXPECT_EQ(host.count(eMessage::Error, QStringLiteral("Undo/Redo: no such brushId")), 1);
    EXPECT_EQ(host.count(eMessage::Error, QStringLiteral("Undo/Redo: no such groupId")), 1);
    history.redo();
    EXPECT_EQ(kept->mins[2], 16.0f);
    EXPECT_TRUE(checkMapWhole(map).isEmpty()) << qPrintable(checkMapWhole(map));
}

TEST_F(History, morphEndsBeforeAStepAndTheMenuHearsOfIt) {
    class cListening : public cTestHost {
    public:
        void historyChanged() override { heard << QStringLiteral("history"); }
        void endMorph() override { heard << QStringLiteral("morph"); }
        QStringList heard;
    };
    cBrushData* brush = addBoxAt(0); // its texture belongs to the host that outlives the map
    cListening listening;
    raiseStep(brush, "raise");
    EXPECT_EQ(listening.heard, QStringList({QStringLiteral("morph"), QStringLiteral("history")}));
}

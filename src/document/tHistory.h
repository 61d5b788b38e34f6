// SPDX-License-Identifier: MIT
// Undo and redo of one map. A step is a set of states of objects (tObjectState.h): an operation
// opens a step, declares what it is going to change, changes it and closes the step. The history
// knows nothing of operations. The state of a changed object changes places with the live object,
// so the same states serve undo and redo, to the last bit.
//
// An operation uses cHistoryStep, which closes on every way out.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <functional>
#include <memory>

class cMap;
class cObjectStates;
struct cHistorySteps;

class cHistory {
public:
    // Enabled by the setting UndoEnabled, with the setting UndoLevels as the number of steps.
    explicit cHistory(cMap& map);
    ~cHistory();
    cHistory(const cHistory&) = delete;
    cHistory& operator=(const cHistory&) = delete;

    // Opens a step and ends all redo; the oldest step gives way when none is free. name is static
    // text. Nothing happens while disabled. A running morph ends first.
    void begin(const char* name);
    void end(); // closes the open step, if any
    void undo();
    void redo();

    bool canUndo() const;
    bool canRedo() const;
    const char* undoName() const; // of the newest step, "???" without one
    const char* redoName() const;
    bool isEnabled() const { return m_enabled; }
    bool isRecording() const { return m_recording; }
    void setEnabled(bool enabled); // disabling frees all steps
    void applyLevels();            // the setting UndoLevels; another number frees all steps
    void clear();                  // every step

    // ---- Captures, into the open step; nothing happens without one, or for null. Changed and
    // Deleted stand before the change, Created after the object is complete. The first capture of
    // an object in a list stands. Without an argument: all objects of the selection list of the
    // kind. An entity's capture does not hold its brushes.

    void entityChanged(const cEntityData* entity) { capture(RL_CHANGED, entity); }
    void entityCreated(const cEntityData* entity) { capture(RL_CREATED, entity); }
    void entityDeleted(const cEntityData* entity) { capture(RL_DELETED, entity); }
    // Flags, ids, groups, colour, texture blocks; planes and corners only with geometry.
    void brushChanged(const cBrushData* brush, bool withGeometry) {
        capture(RL_CHANGED, brush, withGeometry);
    }
    void brushCreated(const cBrushData* brush) { capture(RL_CREATED, brush, true); }
    void brushDeleted(const cBrushData* brush) { capture(RL_DELETED, brush, true); }
    void faceChanged(const cFaceData* face); // flags and texture block
    void groupChanged(const cGroupData* group) { capture(RL_CHANGED, group); }
    void groupCreated(const cGroupData* group) { capture(RL_CREATED, group); }
    void groupDeleted(const cGroupData* group) { capture(RL_DELETED, group); }

    void entitiesChanged() { captureEntities(RL_CHANGED); }
    void entitiesCreated() { captureEntities(RL_CREATED); }
    void entitiesDeleted() { captureEntities(RL_DELETED); }
    void brushesChanged(bool withGeometry) { captureBrushes(RL_CHANGED, withGeometry); }
    void brushesCreated() { captureBrushes(RL_CREATED, true); }
    void brushesDeleted() { captureBrushes(RL_DELETED, true); }
    void facesChanged();
    void groupsChanged() { captureGroups(RL_CHANGED); }
    void groupsCreated() { captureGroups(RL_CREATED); }
    void groupsDeleted() { captureGroups(RL_DELETED); }

    // The number of the newest step, 0 without one. The watcher hears when that step is undone or
    // redone; there is one watcher, and 0 takes it off.
    uint32_t lastStep() const;
    // Of the map as the steps have left it: the same number stands for the same map, as far as
    // steps have changed it.
    uint32_t stateNumber() const;
    void watchStep(uint32_t number, std::function<void(bool undone)> watcher);

    size_t recordBytes() const; // memory that the steps take, for measurements

private:
    enum eRecordList { RL_CHANGED, RL_CREATED, RL_DELETED };
    enum eKind { KIND_GROUP, KIND_ENTITY, KIND_BRUSH, KIND_FACE };
    cObjectStates& statesOf(eRecordList list);
    cObjectStates* listFor(eRecordList list, eKind kind, uint32_t id);
    void capture(eRecordList list, const cEntityData* entity);
    void capture(eRecordList list, const cBrushData* brush, bool withGeometry);
    void capture(eRecordList list, const cGroupData* group);
    void captureEntities(eRecordList list);
    void captureBrushes(eRecordList list, bool withGeometry);
    void captureGroups(eRecordList list);
    void tellWatcher(uint32_t number, bool undone) const;
    void closeStep();
    void forgetOldest();

    cMap& m_map;
    std::unique_ptr<cHistorySteps> m_steps;
    bool m_enabled = true;
    bool m_recording = false;
    int m_levels = 50;
    uint32_t m_stepNumber = 0; // of the step opened last
    uint32_t m_baseState = 0;  // before the oldest step that is left
    uint32_t m_watchedStep = 0;
    std::function<void(bool)> m_watcher;
};

// An open step for the length of a block: cHistoryStep step(map, "Carve"); step->brushesChanged();
// At its end visgroups and the selection are looked at anew, and the host hears of the change in
// one word: an operation has no tail of its own. Views paint nothing meanwhile, since log lines run
// events while the map is half changed.
class cHistoryStep {
public:
    cHistoryStep(cMap& map, const char* name);
    ~cHistoryStep();
    cHistoryStep(const cHistoryStep&) = delete;
    cHistoryStep& operator=(const cHistoryStep&) = delete;

    cHistory* operator->() const;

private:
    cMap& m_map;
    std::unique_ptr<class cMapChange> m_change;
    std::unique_ptr<class cBusy> m_busy;
};

// SPDX-License-Identifier: MIT
// The stacks of steps: opening, closing, undoing and giving up the oldest. What undo and redo do
// to the map stands in tHistoryRestore.cpp.
#include "document/tHistory.h"

#include "document/tHistoryRecords.h"
#include "document/tHistoryRestore.h"
#include "document/tMap.h"
#include "support/tConsole.h"
#include "support/tHost.h"

#include <new>

cHistory::cHistory(cMap& map) : m_map(map), m_steps(std::make_unique<cHistorySteps>()) {
    if (!g_host)
        return;
    m_enabled = g_host->UndoEnabled;
    m_levels = g_host->UndoLevels;
}

cHistory::~cHistory() {
    freeAll();
}

// ---- Stacks

static void push(cUndoStep*& stack, cUndoStep* step) {
    step->next = stack;
    stack = step;
}

// The oldest step and every step its next newer one stay known, so that giving up the oldest
// needs no walk.
static void pushUndo(cHistorySteps& steps, cUndoStep* step) {
    cUndoStep* top = steps.undoTop;
    step->ring = top ? top->ring : step;
    if (top)
        top->ring = step;
    push(steps.undoTop, step);
}

static cUndoStep* popUndo(cHistorySteps& steps) {
    cUndoStep* step = steps.undoTop;
    steps.undoTop = step->next;
    if (steps.undoTop)
        steps.undoTop->ring = step->ring;
    return step;
}

static cUndoStep* takeOldest(cHistorySteps& steps) {
    cUndoStep* oldest = steps.undoTop->ring;
    if (oldest == steps.undoTop) {
        steps.undoTop = nullptr;
    } else {
        cUndoStep* newer = oldest->ring;
        newer->next = nullptr;
        steps.undoTop->ring = newer;
    }
    releaseStep(*oldest);
    return oldest;
}

static void releaseStack(cUndoStep*& stack, cUndoStep*& free) {
    while (cUndoStep* step = stack) {
        stack = step->next;
        releaseStep(*step);
        push(free, step);
    }
}

static bool makePlaces(cHistorySteps& steps, int levels) {
    try {
        steps.places.resize(size_t(levels));
    } catch (const std::exception&) {
        Error("Failed to allocate %i undo levels", levels);
        return false;
    }
    for (auto place = steps.places.rbegin(); place != steps.places.rend(); ++place)
        push(steps.free, &*place);
    return true;
}

// ---- Steps

void cHistory::begin(const char* name) {
    if (g_host)
        g_host->endMorph();
    closeStep(); // one that was left open holds nothing of this one
    if (!m_enabled || m_levels < 1)
        return;
    if (m_steps->places.empty() && !makePlaces(*m_steps, m_levels))
        return;
    releaseStack(m_steps->redoTop, m_steps->free);
    cUndoStep* step = m_steps->free;
    if (step)
        m_steps->free = step->next;
    else
        step = takeOldest(*m_steps);
    step->name = name;
    step->number = ++m_stepNumber;
    pushUndo(*m_steps, step);
    m_recording = true;
}

void cHistory::closeStep() {
    m_recording = false;
    for (auto& ids : m_steps->captured)
        ids.clear();
}

void cHistory::end() {
    closeStep();
    if (g_host)
        g_host->historyChanged();
}

void cHistory::undo() {
    if (!canUndo())
        return;
    end();
    cUndoStep* step = popUndo(*m_steps);
    push(m_steps->redoTop, step);
    undoStep(m_map, *step);
    tellWatcher(step->number, true);
}

void cHistory::redo() {
    if (!canRedo())
        return;
    end();
    cUndoStep* step = m_steps->redoTop;
    m_steps->redoTop = step->next;
    pushUndo(*m_steps, step);
    redoStep(m_map, *step);
    tellWatcher(step->number, false);
}

void cHistory::tellWatcher(uint32_t number, bool undone) const {
    if (m_watcher && number == m_watchedStep)
        m_watcher(undone);
}

uint32_t cHistory::lastStep() const {
    return m_steps->undoTop ? m_steps->undoTop->number : 0;
}

void cHistory::watchStep(uint32_t number, std::function<void(bool undone)> watcher) {
    m_watchedStep = number;
    m_watcher = number ? std::move(watcher) : nullptr;
}

// ---- State

static const char* nameOf(const cUndoStep* step) {
    return step && step->name ? step->name : "???";
}

bool cHistory::canUndo() const {
    return m_enabled && m_steps->undoTop;
}

bool cHistory::canRedo() const {
    return m_enabled && m_steps->redoTop;
}

const char* cHistory::undoName() const {
    return nameOf(m_steps->undoTop);
}

const char* cHistory::redoName() const {
    return nameOf(m_steps->redoTop);
}

void cHistory::setEnabled(bool enabled) {
    m_enabled = enabled;
    if (!enabled)
        freeAll();
}

void cHistory::applyLevels() {
    if (!g_host || g_host->UndoLevels == m_levels)
        return;
    freeAll();
    m_levels = g_host->UndoLevels;
}

void cHistory::clear() {
    closeStep();
    releaseStack(m_steps->undoTop, m_steps->free);
    releaseStack(m_steps->redoTop, m_steps->free);
}

void cHistory::freeAll() {
    clear();
    *m_steps = cHistorySteps();
}

void cHistory::freeRecordPools() {
    freeAllRecords();
}

size_t cHistory::recordBytes() const {
    size_t bytes = 0;
    for (const cUndoStep* step = m_steps->undoTop; step; step = step->next)
        bytes += bytesOf(*step);
    for (const cUndoStep* step = m_steps->redoTop; step; step = step->next)
        bytes += bytesOf(*step);
    return bytes;
}

// ---- The scope of a step

cHistoryStep::cHistoryStep(cMap& map, const char* name)
    : m_history(map.history.get()), m_busy(std::make_unique<cBusy>()) {
    m_history->begin(name);
}

cHistoryStep::~cHistoryStep() {
    m_history->end();
}

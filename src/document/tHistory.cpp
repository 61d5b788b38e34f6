// SPDX-License-Identifier: MIT
// The stacks of steps: opening, closing, undoing and giving up the oldest. What undo and redo do
// to the map stands in tHistoryRestore.cpp.
#include "document/tHistory.h"

#include "document/tHistoryRestore.h"
#include "document/tHistorySteps.h"
#include "document/tMapChange.h"
#include "support/tHost.h"

cHistory::cHistory(cMap& map) : m_map(map), m_steps(std::make_unique<cHistorySteps>()) {
    m_enabled = g_host->UndoEnabled;
    m_levels = g_host->UndoLevels;
}

cHistory::~cHistory() = default;

// ---- Steps

void cHistory::begin(const char* name) {
    g_host->endMorph();
    closeStep(); // one that was left open holds nothing of this one
    if (!m_enabled || m_levels < 1) {
        m_baseState = ++m_stepNumber; // it changes the map all the same
        return;
    }
    m_steps->redo.clear();
    if (m_steps->undo.size() >= size_t(m_levels))
        forgetOldest();
    auto step = std::make_unique<cUndoStep>();
    step->name = name;
    step->number = ++m_stepNumber;
    m_steps->undo.push_back(std::move(step));
    m_recording = true;
}

void cHistory::closeStep() {
    if (m_recording) {
        cUndoStep& step = *m_steps->undo.back();
        for (cObjectStates* states : {&step.changed, &step.created, &step.deleted})
            states->shrink();
    }
    m_recording = false;
    m_steps->changed = m_steps->created = m_steps->deleted = cCapturedIds();
}

void cHistory::end() {
    closeStep();
    m_map.changed(MC_HISTORY);
}

void cHistory::undo() {
    if (!canUndo())
        return;
    const cMapChange change(m_map, MC_ALL);
    end();
    m_steps->redo.push_back(std::move(m_steps->undo.back()));
    m_steps->undo.pop_back();
    undoStep(m_map, *m_steps->redo.back());
    tellWatcher(m_steps->redo.back()->number, true);
}

void cHistory::redo() {
    if (!canRedo())
        return;
    const cMapChange change(m_map, MC_ALL);
    end();
    m_steps->undo.push_back(std::move(m_steps->redo.back()));
    m_steps->redo.pop_back();
    redoStep(m_map, *m_steps->undo.back());
    tellWatcher(m_steps->undo.back()->number, false);
}

void cHistory::tellWatcher(uint32_t number, bool undone) const {
    if (m_watcher && number == m_watchedStep)
        m_watcher(undone);
}

uint32_t cHistory::lastStep() const {
    return m_steps->undo.empty() ? 0 : m_steps->undo.back()->number;
}

void cHistory::watchStep(uint32_t number, std::function<void(bool undone)> watcher) {
    m_watchedStep = number;
    m_watcher = number ? std::move(watcher) : nullptr;
}

// ---- State

template<class Stack> static const char* nameOfTop(const Stack& stack) {
    return !stack.empty() && stack.back()->name ? stack.back()->name : "???";
}

bool cHistory::canUndo() const {
    return m_enabled && !m_steps->undo.empty();
}

bool cHistory::canRedo() const {
    return m_enabled && !m_steps->redo.empty();
}

const char* cHistory::undoName() const {
    return nameOfTop(m_steps->undo);
}

const char* cHistory::redoName() const {
    return nameOfTop(m_steps->redo);
}

void cHistory::setEnabled(bool enabled) {
    m_enabled = enabled;
    if (!enabled)
        clear();
}

void cHistory::applyLevels() {
    if (g_host->UndoLevels == m_levels)
        return;
    clear();
    m_levels = g_host->UndoLevels;
}

void cHistory::clear() {
    m_recording = false;
    *m_steps = cHistorySteps();
    m_baseState = ++m_stepNumber; // which of its states the map is in is forgotten
}

void cHistory::forgetOldest() {
    m_baseState = m_steps->undo.front()->number;
    m_steps->undo.pop_front();
}

uint32_t cHistory::stateNumber() const {
    return m_steps->undo.empty() ? m_baseState : m_steps->undo.back()->number;
}

size_t cHistory::recordBytes() const {
    size_t bytes = 0;
    for (const auto& step : m_steps->undo)
        bytes += step->bytes();
    for (const auto& step : m_steps->redo)
        bytes += step->bytes();
    return bytes;
}

// ---- The scope of a step

cHistoryStep::cHistoryStep(cMap& map, const char* name)
    : m_map(map),
      m_change(std::make_unique<cMapChange>(map, MC_ALL)),
      m_busy(std::make_unique<cBusy>()) {
    map.history->begin(name);
}

cHistoryStep::~cHistoryStep() {
    m_map.history->end();
    m_map.computeVisGroupVisibility();
    m_map.describeSelection();
}

cHistory* cHistoryStep::operator->() const {
    return m_map.history.get();
}

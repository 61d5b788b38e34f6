// SPDX-License-Identifier: MIT
// The steps of one history: states of objects by what happened to them, newest capture last.
#pragma once

#include "document/tObjectState.h"

#include <deque>
#include <memory>
#include <unordered_set>
#include <vector>

struct cUndoStep {
    const char* name;
    uint32_t number; // never given twice in a history
    // Of the moment before the step; after an undo, of the moment after it.
    cObjectStates changed;
    cObjectStates created;
    cObjectStates deleted;

    size_t bytes() const { return changed.bytes() + created.bytes() + deleted.bytes(); }
};

// Ids that one list of states holds already.
struct cCapturedIds {
    std::unordered_set<uint32_t> groups, entities, brushes, faces;
};

struct cHistorySteps {
    std::deque<std::unique_ptr<cUndoStep>> undo;  // the oldest first
    std::vector<std::unique_ptr<cUndoStep>> redo; // the next one last
    cCapturedIds changed, created, deleted;       // of the open step
};

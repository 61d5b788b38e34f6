// SPDX-License-Identifier: MIT
// The steps of one history: states of objects by what happened to them, newest capture last.
#pragma once

#include "document/tObjectState.h"

#include <bitset>
#include <deque>
#include <memory>
#include <unordered_map>
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

// A set of ids, which are dense: a bit each, in pages.
class cIdSet {
public:
    // False when the id was there.
    bool insert(uint32_t id) {
        auto bit = m_pages[id / PAGE][id % PAGE];
        const bool isNew = !bit;
        bit = true;
        return isNew;
    }

private:
    static constexpr uint32_t PAGE = 4096;
    std::unordered_map<uint32_t, std::bitset<PAGE>> m_pages;
};

// Ids that one list of states holds already.
struct cCapturedIds {
    cIdSet groups, entities, brushes, faces;
};

struct cHistorySteps {
    std::deque<std::unique_ptr<cUndoStep>> undo;  // the oldest first
    std::vector<std::unique_ptr<cUndoStep>> redo; // the next one last
    cCapturedIds changed, created, deleted;       // of the open step
};

// SPDX-License-Identifier: MIT
// The stacks of steps: opening, closing, undoing and giving up the oldest.
#include "document/tHistory.h"

#include "document/tMap.h"
#include "support/tHost.h"

struct cHistorySteps {};

cHistory::cHistory(cMap& map) : m_map(map) {
    if (g_host)
        m_enabled = g_host->UndoEnabled;
}

cHistory::~cHistory() = default;

void cHistory::entityDeleted(const cEntityData*) {}
void cHistory::groupDeleted(const cGroupData*) {}

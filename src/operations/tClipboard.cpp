// SPDX-License-Identifier: MIT
// Taking objects onto the clipboard, cutting them out of the map, and putting them back.
#include "operations/tClipboard.h"

#include "document/tHistory.h"
#include "document/tHistoryRestore.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "operations/tObjectCopies.h"
#include "operations/tStructure.h"

cClipboard* g_clipboard = nullptr;

cClipboard::cClipboard() : m_contents(std::make_unique<cTakenObjects>()) {}

cClipboard::~cClipboard() {
    forgetSource();
}

bool cClipboard::isEmpty() const {
    return m_contents->isEmpty();
}

const float* cClipboard::mins() const {
    return m_contents->mins;
}

const float* cClipboard::maxs() const {
    return m_contents->maxs;
}

bool cClipboard::canCopy(const cMap& map) {
    return map.data.selectedBrushes || map.data.selectedEntities;
}

void cClipboard::forgetSource() {
    if (m_source)
        m_source->history->watchStep(0, nullptr);
    m_source = nullptr;
}

void cClipboard::clear() {
    forgetSource();
    m_contents = std::make_unique<cTakenObjects>();
    m_owners.reset();
    m_mode = PASTED;
}

void cClipboard::copySelection(cMap& map, bool restore) {
    if (restore)
        restoreCut();
    clear();
    m_mode = COPIED;
    m_source = &map;
    *m_contents = cTakenObjects::selectionOf(map);
}

// ---- Cut

// The entities that lose brushes and are not taken themselves, with their groups.
static std::unique_ptr<cObjectStates> takeOwners(const cMap& map) {
    auto owners = std::make_unique<cObjectStates>();
    cGroupChains chains(*owners);
    for (const cEntityData* owner : ownersOfSelection(map)) {
        if (isSelected(owner))
            continue;
        owners->take(owner, TAKE_VISGROUPS);
        owners->entities.back().flags &= ~TRANSIENT_FLAGS;
        chains.take(owner->group);
    }
    return owners;
}

void cClipboard::cutSelection(cMap& map, bool restore) {
    if (restore)
        restoreCut();
    clear();
    const cHistoryStep step(map, "Cut");
    *m_contents = cTakenObjects::selectionOf(map);
    m_owners = takeOwners(map);
    removeSelection(map);
    m_source = &map;
    m_mode = CUT;
    // What an undo has brought back must not be restored once more.
    map.history->watchStep(map.history->lastStep(), [this](bool undone) {
        if (m_mode != PASTED)
            m_mode = undone ? COPIED : CUT;
    });
    map.clearSelection();
}

static void capture(cHistory& history, const cRemade& made) {
    for (const cGroupData* group : made.groups)
        history.groupCreated(group);
    for (const cEntityData* entity : made.entities)
        history.entityCreated(entity);
    for (const cBrushData* brush : made.brushes)
        history.brushCreated(brush);
}

void cClipboard::restoreCut() {
    if (!m_source || m_mode != CUT)
        return;
    cMap& map = *m_source;
    const cHistoryStep step(map, "Restore Cut");
    m_mode = PASTED;
    capture(*map.history, remakeObjects(map, *m_owners));
    capture(*map.history, remakeObjects(map, m_contents->states));
    if (map.updateSelectionMode() == MODE_GROUPS)
        map.selectRoots(); // what came back into a selected group belongs to it
}

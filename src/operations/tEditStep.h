// SPDX-License-Identifier: MIT
// A step of the history that edits of one control join: what is typed, turned or dragged without
// anything between is undone at once.
#pragma once

#include "document/tHistory.h"
#include "document/tMapChange.h"

#include <cstring>
#include <optional>

// Joined: the newest step, which has this title, takes the edit as well, as it has captured the
// same objects. Where it has another one, as when the first edit found nothing to do, a new one
// opens.
enum class eStep { New, Joined };

class cEditStep {
public:
    cEditStep(cMap& map, const char* title, eStep step) {
        if (step == eStep::New || strcmp(map.history->undoName(), title) != 0)
            m_step.emplace(map, title);
        else
            m_change.emplace(map, MC_OBJECTS | MC_SELECTION | MC_EDITED);
    }

    // capture(history) declares what will change; a step that is joined has it already.
    template<class Capture> void capture(Capture capture) const {
        if (m_step)
            capture(*m_step->operator->());
    }

private:
    std::optional<cHistoryStep> m_step;
    std::optional<cMapChange> m_change;
};

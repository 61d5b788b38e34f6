// SPDX-License-Identifier: MIT
// Colours and chains of groups.
#include "document/tGroup.h"

#include "document/tMapWatcher.h"
#include "support/tColors.h"
#include "support/tHost.h"

#include <cstring>

void blendSchemeColor(const uint8_t* base, int minIndex, int maxIndex, uint8_t* out) {
    const uint8_t* min = g_host->schemeColor(minIndex);
    const uint8_t* max = g_host->schemeColor(maxIndex);
    for (int i = 0; i < 3; ++i) {
        const int range = base[i] * (max[i] - min[i]);
        out[i] = uint8_t(min[i] + ((range > 0 ? range : 0) >> 8));
    }
    out[3] = 255;
}

void cGroup::setBaseColor(const uint8_t* rgba) {
    memcpy(baseColor, rgba, 4);
    updateDrawColor();
}

void cGroup::updateDrawColor() {
    uint8_t before[4];
    memcpy(before, drawColor, sizeof before);
    blendSchemeColor(baseColor, COLOR_GROUP_RANDOM_MIN, COLOR_GROUP_RANDOM_MAX, drawColor);
    if (data->owner && data->memberCount > 0 && memcmp(before, drawColor, sizeof before) != 0)
        noteChange(*data->owner->map);
}

// ---- Chains

static uint64_t g_chainsChanged = 1; // times, over all maps

cGroupData* outermostGroup(cGroupData* group) {
    cGroupData* end = group;
    while (end && end->parent && end->group->rootFoundAt != g_chainsChanged)
        end = end->parent;
    cGroupData* root = end && end->parent ? end->group->root : end;
    for (; group != end; group = group->parent) {
        group->group->root = root;
        group->group->rootFoundAt = g_chainsChanged;
    }
    return root;
}

void setParent(cGroupData* group, cGroupData* parent) {
    group->parent = parent;
    group->group->rootFoundAt = 0;
    // No other chain leads through a group without members.
    if (group->memberCount > 0)
        forgetOutermostGroups();
}

void forgetOutermostGroups() {
    ++g_chainsChanged;
}

// SPDX-License-Identifier: MIT
// Colours and chains of groups.
#include "document/tGroup.h"

#include "support/tColors.h"
#include "support/tHost.h"

#include <cstring>

void blendSchemeColor(const uint8_t* base, int minIndex, int maxIndex, uint8_t* out) {
    if (!g_host) {
        memcpy(out, base, 4);
        return;
    }
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
    blendSchemeColor(baseColor, COLOR_GROUP_RANDOM_MIN, COLOR_GROUP_RANDOM_MAX, drawColor);
}

cGroupData* outermostGroup(cGroupData* group) {
    while (group && group->parent)
        group = group->parent;
    return group;
}

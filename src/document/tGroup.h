// SPDX-License-Identifier: MIT
// The run-time half of a group. Created and freed by cMap.
#pragma once

#include "plugininterface/tPluginInterface.h"

class cGroup {
public:
    explicit cGroup(cGroupData* record) : data(record) {}

    // Sets the stored colour and blends the one it is drawn in between two scheme colours.
    void setBaseColor(const uint8_t* rgba);
    void updateDrawColor();

    cGroupData* data;
    int pickId = -1;
    cGroupData* root = nullptr; // what outermostGroup found when no chain was changed since
    uint64_t rootFoundAt = 0;
    uint8_t baseColor[4] = {0, 0, 0, 255};
    uint8_t drawColor[4] = {0, 0, 0, 255};
};

// base blended between two scheme colours: min + max(0, base * (max - min)) / 256, alpha 255.
void blendSchemeColor(const uint8_t* base, int minIndex, int maxIndex, uint8_t* out);

// The end of the chain from group through parent; null for null. Each group on the way keeps it
// until a chain is changed, so that asking for many members of one long chain walks it once.
cGroupData* outermostGroup(cGroupData* group);
// The one way to give a group another parent. Member counts and the outermost groups that objects
// hold are the caller's.
void setParent(cGroupData* group, cGroupData* parent);
// When a group goes.
void forgetOutermostGroups();

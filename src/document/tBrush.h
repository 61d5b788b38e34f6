// SPDX-License-Identifier: MIT
// The run-time half of a brush. Created and freed by newBrush and cMap::freeBrush.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <QList>

class cVisGroup;

class cBrush {
public:
    explicit cBrush(cBrushData* record) : data(record) {}

    void setBaseColor(const uint8_t* rgba);
    void updateDrawColor(); // blends between the scheme's brush colours, and copies into the faces

    void addToVisGroup(cVisGroup* visGroup);
    void addToVisGroups(const QList<cVisGroup*>& added); // in one walk
    void removeFromVisGroup(cVisGroup* visGroup);
    void dropVisGroups();

    cBrushData* data;
    int pickId = -1;
    uint8_t baseColor[4] = {0, 0, 0, 255}; // as stored; black asks for a random one
    uint8_t drawColor[4] = {0, 0, 0, 255};
    float center[3] = {0, 0, 0}; // middle of the bounds
    QList<cVisGroup*> visGroups;
    uint32_t viewSlot = 0; // the map's watcher's, who keeps it; 0 for none
};

// False with BF_HIDDEN, and for a detail brush while detail is hidden.
bool brushVisible(const cBrushData* brush);
// The detail mask of the current profile meets the first face's content flags.
bool isDetail(const cBrushData* brush);
void touchBrush(cBrushData* brush); // marks it and its owner dirty, for the next rebuild

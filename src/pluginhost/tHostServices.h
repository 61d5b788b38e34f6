// SPDX-License-Identifier: MIT
// The table of services that every plug-in gets. Its entries lie by subject in tHostSystem.cpp,
// tHostMap.cpp, tHostGroups.cpp, tHostHistory.cpp, tHostDialog.cpp and tHostRender.cpp.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <functional>

struct cGameConfig;
class cTextureManager;

// What the services ask of the program above them. An unset one gives nothing.
struct cHostServiceContext {
    std::function<const cGameConfig*(const cMapData* map)> configOf; // of the map's project
    const cTextureManager* textures = nullptr;
};

void setHostServiceContext(const cHostServiceContext& context);
const cHostServiceContext& hostServiceContext();

// Filled at the first call; valid for the whole life of the process.
const cHostServices* hostServices();

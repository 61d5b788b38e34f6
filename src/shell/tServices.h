// SPDX-License-Identifier: MIT
// The long-lived services of the program, in the order of their making; they go in the opposite
// one, so the plug-ins' libraries leave before what they have filled.
#pragma once

#include "gamedata/tGameDataRegistry.h"
#include "pluginhost/tFlagCaptions.h"
#include "pluginhost/tPluginManager.h"
#include "pluginhost/tPrimitiveList.h"
#include "resources/tGameConfigRegistry.h"
#include "resources/tModelManager.h"
#include "resources/tTextureManager.h"
#include "shell/tColorScheme.h"

struct cServices {
    cServices(); // with the built-in primitives; the plug-ins are not loaded yet
    ~cServices();
    cServices(const cServices&) = delete;
    cServices& operator=(const cServices&) = delete;

    cPrimitiveList primitives;
    cFlagCaptions captions;
    cModelManager models;
    cTextureManager textures;
    cGameDataRegistry gameData;
    cGameConfigRegistry configs;
    cPluginManager plugins;
    cColorScheme colors;
};

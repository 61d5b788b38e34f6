// SPDX-License-Identifier: MIT
// What the benchmarks share: a host, the plug-ins as loaded from disk, and cities imported by them.
#pragma once

#include "document/tMap.h"
#include "gamedata/tGameDataRegistry.h"
#include "pluginhost/tPluginManager.h"
#include "resources/tGameConfigRegistry.h"
#include "resources/tModelManager.h"
#include "resources/tTextureManager.h"
#include "support/tTestHost.h"

#include <QTemporaryDir>
#include <memory>

struct cBench {
    cBench();

    QString cityFile(int brushes); // made at its first use
    bool import(cMap& map, int brushes);
    QString path(const char* name) const { return folder.filePath(QString::fromLatin1(name)); }

    QTemporaryDir folder;
    cTestHost host;
    cGameDataRegistry gameData;
    cTextureManager textures;
    cModelManager models;
    cGameConfigRegistry configs{gameData, textures, &models};
    std::unique_ptr<cPluginManager> manager;
};

cBench& bench(); // once for all runs

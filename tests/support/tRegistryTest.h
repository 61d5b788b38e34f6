// SPDX-License-Identifier: MIT
// The fixture of tests on what the program keeps of games: the registries on their own, and a
// folder for the files that they read.
#pragma once

#include "gamedata/tGameDataRegistry.h"
#include "resources/tGameConfigRegistry.h"
#include "resources/tModelManager.h"
#include "resources/tTextureManager.h"
#include "support/tFiles.h"
#include "support/tTestHost.h"

#include <QTemporaryDir>

class cRegistryTest : public testing::Test {
protected:
    QString path(const QString& name) const { return folder.filePath(name); }
    QString path(const char* name) const { return path(str(name)); }
    QString write(const char* name, const QByteArray& bytes) const {
        return writeFile(path(name), bytes);
    }
    int count(eMessage level, const char* text) const { return host.count(level, str(text)); }

    QTemporaryDir folder;
    cTestHost host;
    cGameDataRegistry gameData;
    cTextureManager textures;
    cModelManager models;
    cGameConfigRegistry configs{gameData, textures, &models};
};

// SPDX-License-Identifier: MIT
// What tests of the map plug-ins share: the plug-ins, loaded from disk, and files to read and
// write.
#pragma once

#include "document/tMap.h"
#include "gamedata/tGameDataRegistry.h"
#include "pluginhost/tPluginManager.h"
#include "resources/tGameConfigRegistry.h"
#include "resources/tModelManager.h"
#include "resources/tTextureManager.h"
#include "support/tMapText.h"
#include "support/tTestHost.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

inline QString str(const char* text) {
    return QString::fromLatin1(text);
}

class cMapPluginTest : public testing::Test {
protected:
    cMapPluginTest() {
        cPluginTargets targets;
        targets.configs = &configs;
        manager = std::make_unique<cPluginManager>(targets);
        manager->loadAll(str(KARVEX_PLUGINS));
        host.messages.clear();
    }

    const cMapFormat* format(const QList<cMapFormat>& formats, const char* description) const {
        for (const cMapFormat& f : formats) {
            if (f.description == str(description))
                return &f;
        }
        return nullptr;
    }

    bool importFile(cMap& map, const QString& path) {
        const cMapFormat& f = manager->importFormats.first();
        const bool read = f.function(f.id, toMapText(path).constData(), &map.data) != 0;
        if (read)
            map.finishLoad();
        return read;
    }

    bool importText(cMap& map, const QByteArray& text) {
        QFile file(path("in.map"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        return importFile(map, path("in.map"));
    }

    // The path of the written file.
    QString exportFile(cMap& map, const char* description, const char* name = "out.map") {
        const cMapFormat* f = format(manager->exportFormats, description);
        EXPECT_NE(f, nullptr);
        EXPECT_TRUE(f->function(f->id, toMapText(path(name)).constData(), &map.data));
        return path(name);
    }

    static std::string contents(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll().toStdString();
    }

    // How many faces the last export said that it can't hold.
    int toldInexact() const {
        int told = 0;
        for (const auto& message : host.messages)
            if (message.text.contains(str("can't hold exactly")))
                told = message.text.section(QLatin1Char(' '), 0, 0).toInt();
        return told;
    }

    QString path(const char* name) const { return folder.filePath(str(name)); }
    int count(eMessage level, const char* text) const { return host.count(level, str(text)); }

    QTemporaryDir folder;
    cTestHost host;
    cGameDataRegistry gameData;
    cTextureManager textures;
    cModelManager models;
    cGameConfigRegistry configs{gameData, textures, &models};
    std::unique_ptr<cPluginManager> manager;
};

// SPDX-License-Identifier: MIT
// What tests of the map plug-ins share: the plug-ins, loaded from disk, and files to read and
// write.
#pragma once

#include "document/tMap.h"
#include "pluginhost/tPluginManager.h"
#include "support/tMapText.h"
#include "support/tRegistryTest.h"

class cMapPluginTest : public cRegistryTest {
protected:
    cMapPluginTest() {
        cPluginTargets targets;
        targets.configs = &configs;
        targets.textures = &textures;
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
        return importFile(map, write("in.map", text));
    }

    // The path of the written file.
    QString exportFile(cMap& map, const char* description, const char* name = "out.map") {
        const cMapFormat* f = format(manager->exportFormats, description);
        EXPECT_NE(f, nullptr);
        EXPECT_TRUE(f->function(f->id, toMapText(path(name)).constData(), &map.data));
        return path(name);
    }

    static std::string contents(const QString& path) { return readFile(path).toStdString(); }

    // How many faces the last export said that it can't hold.
    int toldInexact() const {
        int told = 0;
        for (const auto& message : host.messages)
            if (message.text.contains(str("can't hold exactly")))
                told = message.text.section(QLatin1Char(' '), 0, 0).toInt();
        return told;
    }

    std::unique_ptr<cPluginManager> manager;
};

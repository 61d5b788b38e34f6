// SPDX-License-Identifier: MIT
// The reader of game configurations: whatever it makes of a file, saving that and reading it
// again gives the same list.
#include "resources/tGameConfigRegistry.h"
#include "resources/tGameDataRegistry.h"
#include "resources/tTextureManager.h"
#include "tFuzzHost.h"

#include <QFile>
#include <QTemporaryDir>
#include <cstdlib>

static QStringList titles(const cGameConfigRegistry& registry) {
    QStringList list;
    for (const cGameConfig* config : registry.configs)
        list << config->title;
    return list;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    static cFuzzHost host;
    static QTemporaryDir folder;
    static unsigned number = 0;
    // A name of its own each time: the settings of a file are cached by its name.
    const QString path = folder.filePath(QStringLiteral("%1.ini").arg(++number));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return 0;
    file.write(reinterpret_cast<const char*>(bytes), qint64(size));
    file.close();

    cGameDataRegistry gameData;
    cTextureManager textures;
    cGameConfigRegistry registry(gameData, textures, nullptr);
    registry.load(path);
    const QString saved = path + QStringLiteral(".saved");
    registry.save(saved);
    cGameConfigRegistry again(gameData, textures, nullptr);
    again.load(saved);
    if (titles(again) != titles(registry))
        abort();
    QFile::remove(path);
    QFile::remove(saved);
    return 0;
}

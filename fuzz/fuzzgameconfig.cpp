// SPDX-License-Identifier: MIT
// Settings files: whatever the reader of game configurations makes of one, saving that over it and
// reading it again gives the same list, and what nobody has changed is written as it was read.
#include "gamedata/tGameDataRegistry.h"
#include "resources/tGameConfigRegistry.h"
#include "resources/tTextureManager.h"
#include "support/tIniFile.h"
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

static QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The first save brings a file into its form; after that only what is set may change.
static void checkKept(const QString& path) {
    if (!cIniFile(path).save())
        abort();
    const QByteArray before = contents(path);
    cIniFile file(path);
    file.setValue(QStringLiteral("A group/of ours"), QStringLiteral("k\n"), QStringLiteral("=\\;"));
    file.save();
    cIniFile changed(path);
    if (changed.value(QStringLiteral("A group/of ours"), QStringLiteral("k\n")) !=
        QStringLiteral("=\\;"))
        abort();
    changed.remove(QStringLiteral("A group/of ours"), QStringLiteral("k\n"));
    changed.save();
    if (contents(path) != before)
        abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    static cFuzzHost host;
    static QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.ini"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return 0;
    file.write(reinterpret_cast<const char*>(bytes), qint64(size));
    file.close();

    cGameDataRegistry gameData;
    cTextureManager textures;
    cGameConfigRegistry registry(gameData, textures, nullptr);
    registry.load(path);
    checkKept(path);
    registry.save(path);
    cGameConfigRegistry again(gameData, textures, nullptr);
    again.load(path);
    if (titles(again) != titles(registry))
        abort();
    QFile::remove(path);
    return 0;
}

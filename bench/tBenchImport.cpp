// SPDX-License-Identifier: MIT
#include "tBenchImport.h"

#include "support/tMapText.h"
#include "tBenchCity.h"

#include <QFile>

cBench::cBench() {
    cPluginTargets targets;
    targets.configs = &configs;
    targets.models = &models;
    targets.textures = &textures;
    manager = std::make_unique<cPluginManager>(targets);
    manager->loadAll(QStringLiteral(KARVEX_PLUGINS));
}

QString cBench::cityFile(int brushes) {
    const QString path = folder.filePath(QStringLiteral("city%1.map").arg(brushes));
    if (!QFile::exists(path)) {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(QByteArray::fromStdString(cityText(brushes)));
    }
    return path;
}

bool cBench::import(cMap& map, int brushes) {
    const cMapFormat& f = manager->importFormats.first();
    const QByteArray path = toMapText(cityFile(brushes));
    const bool read = f.function(f.id, path.constData(), &map.data) != 0;
    map.finishLoad();
    host.messages.clear();
    return read;
}

cBench& bench() {
    static cBench instance;
    return instance;
}

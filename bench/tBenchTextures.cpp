// SPDX-License-Identifier: MIT
// Texture sets through the media plug-in to OpenGL: a package by the number of its textures, and a
// folder of images of another maker where the data of others is at hand.
#include "resources/tTextureManager.h"
#include "support/tSystem.h"
#include "tBenchImport.h"
#include "views/tTextureUpload.h"
#include "views/tViewHost.h"

#include <QDir>
#include <QtEndian>
#include <benchmark/benchmark.h>

static constexpr int SIDE = 128;

static void putWord(QByteArray& bytes, int word) {
    const quint32 little = qToLittleEndian(quint32(word));
    bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
}

// A picture with its three copies, without a palette.
static QByteArray lump(const QByteArray& name, int number) {
    QByteArray bytes = name.leftJustified(16, '\0');
    putWord(bytes, SIDE);
    putWord(bytes, SIDE);
    int at = 40;
    for (int level = 0; level < 4; ++level) {
        putWord(bytes, at);
        at += (SIDE >> level) * (SIDE >> level);
    }
    for (quint32 i = 40; i < quint32(at); ++i)
        bytes.append(char((i * 2654435761u + quint32(number)) >> 24));
    return bytes;
}

static QString packageOf(int textures) {
    QByteArray body("WAD2"), directory;
    putWord(body, textures);
    putWord(body, 0);
    for (int i = 0; i < textures; ++i) {
        const QByteArray name = "wall" + QByteArray::number(i);
        const QByteArray picture = lump(name, i);
        for (int word : {body.size(), picture.size(), picture.size(), 0x44})
            putWord(directory, word);
        directory += name.leftJustified(16, '\0');
        body += picture;
    }
    const quint32 at = qToLittleEndian(quint32(body.size()));
    memcpy(body.data() + 8, &at, sizeof at);
    QFile file(bench().folder.filePath(QStringLiteral("set%1.wad").arg(textures)));
    if (file.open(QIODevice::WriteOnly))
        file.write(body + directory);
    return file.fileName();
}

static void load(benchmark::State& state, const QString& key) {
    cTextureManager& textures = bench().textures;
    cTextureUpload upload(*g_viewHost->shareWidget());
    textures.setUploader(&upload);
    size_t count = 0;
    for (auto _ : state) {
        cTexturePackage* package = textures.acquirePackage(key);
        textures.loadPackage(package, QString());
        count = package->textures.size();
        state.PauseTiming();
        textures.releasePackage(package);
        state.ResumeTiming();
    }
    textures.setUploader(nullptr);
    state.counters["textures"] = double(count);
    state.counters["each"] = benchmark::Counter(
        double(count), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

static void loadPackage(benchmark::State& state) {
    load(state, packageOf(int(state.range(0))) + QStringLiteral("::"));
}
BENCHMARK(loadPackage)
    ->ArgName("textures")
    ->Arg(100)
    ->Arg(1000)
    ->Arg(5000)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

static void loadFolder(benchmark::State& state) {
    const QString folder = QStringLiteral(KARVEX_SOURCE "/../shared/data/textures/dev");
    if (!QDir(folder).exists())
        state.SkipWithError("no images of other makers here");
    load(state, folder + QStringLiteral("::*.png"));
}
BENCHMARK(loadFolder)->UseRealTime()->Unit(benchmark::kMillisecond);

// SPDX-License-Identifier: MIT
// Import, export, project save and load of generated cities; windings; game data. Time is given
// per run and, as a counter, per brush; memory is what a loaded map keeps resident per brush.
#include "document/tBrushGeometry.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tProjectFile.h"
#include "gamedata/tGameData.h"
#include "gamedata/tGameDataRegistry.h"
#include "support/tMapText.h"
#include "tBenchCity.h"
#include "tBenchImport.h"

#include <QFile>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <iostream>
#include <malloc.h>

static void countPerBrush(benchmark::State& state) {
    state.counters["brushes/s"] =
        benchmark::Counter(double(state.range(0)), benchmark::Counter::kIsIterationInvariantRate);
    state.SetComplexityN(state.range(0));
}

static void importCity(benchmark::State& state) {
    bench().cityFile(int(state.range(0)));
    double perBrush = 0;
    for (auto _ : state) {
        state.PauseTiming();
        malloc_trim(0);
        const long before = residentKilobytes();
        auto map = std::make_unique<cMap>(bench().host);
        state.ResumeTiming();
        bench().import(*map, int(state.range(0)));
        state.PauseTiming();
        malloc_trim(0);
        perBrush = double(residentKilobytes() - before) * 1024.0 / double(state.range(0));
        map.reset();
        state.ResumeTiming();
    }
    state.counters["bytes/brush"] = perBrush;
    countPerBrush(state);
}

static void exportCity(benchmark::State& state) {
    cMap map(bench().host);
    bench().import(map, int(state.range(0)));
    const cMapFormat& f = bench().manager->exportFormats.first();
    for (auto _ : state)
        f.function(f.id, toMapText(bench().path("out.map")).constData(), &map.data);
    countPerBrush(state);
}

static void saveProject(benchmark::State& state) {
    cMap map(bench().host);
    bench().import(map, int(state.range(0)));
    for (auto _ : state)
        cProjectFile(map, bench().path("out.kvx")).save();
    countPerBrush(state);
}

static void loadProject(benchmark::State& state) {
    {
        cMap map(bench().host);
        bench().import(map, int(state.range(0)));
        cProjectFile(map, bench().path("in.kvx")).save();
    }
    double perBrush = 0;
    for (auto _ : state) {
        state.PauseTiming();
        malloc_trim(0);
        const long before = residentKilobytes();
        auto map = std::make_unique<cMap>(bench().host);
        state.ResumeTiming();
        cProjectFile(*map, bench().path("in.kvx")).load();
        map->finishLoad();
        state.PauseTiming();
        malloc_trim(0);
        perBrush = double(residentKilobytes() - before) * 1024.0 / double(state.range(0));
        map.reset();
        bench().host.messages.clear();
        state.ResumeTiming();
    }
    state.counters["bytes/brush"] = perBrush;
    countPerBrush(state);
}

static void planesToWindings(benchmark::State& state) {
    cMap map(bench().host);
    bench().import(map, int(state.range(0)));
    int64_t faces = 0;
    for (auto _ : state) {
        for (cBrushData* brush : brushesOf(map.world())) {
            for (cFaceData* face : facesOf(brush)) {
                face->flags |= FF_DIRTY;
                ++faces;
            }
            rebuildBrush(brush, UM_WINDINGS);
        }
    }
    state.counters["faces/s"] = benchmark::Counter(double(faces), benchmark::Counter::kIsRate);
}

// The sample game's classes again and again under other names, to that many megabytes.
static QString bigGameData(int megabytes) {
    const QString path = bench().path("big.fgd");
    QFile source(QStringLiteral(KARVEX_SOURCE "/game/sample.fgd"));
    QFile out(path);
    if (!source.open(QIODevice::ReadOnly) || !out.open(QIODevice::WriteOnly))
        return path;
    const QByteArray text = source.readAll();
    for (int i = 0; out.size() < qint64(megabytes) * 1024 * 1024; ++i) {
        QByteArray copy = text;
        copy.replace("= func_", QByteArray("= f") + QByteArray::number(i) + "_");
        out.write(copy);
        out.flush();
    }
    return path;
}

static void gameDataFile(benchmark::State& state) {
    const QString path = bigGameData(int(state.range(0)));
    for (auto _ : state) {
        cGameDataRegistry registry;
        cGameData* data = registry.acquire(path);
        data->load(false);
        benchmark::DoNotOptimize(data);
        bench().host.messages.clear();
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * QFile(path).size());
}

#define KVX_SIZES Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Complexity()
BENCHMARK(importCity)->KVX_SIZES;
BENCHMARK(exportCity)->KVX_SIZES;
BENCHMARK(saveProject)->KVX_SIZES;
BENCHMARK(loadProject)->KVX_SIZES;
BENCHMARK(planesToWindings)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(gameDataFile)->Arg(1)->Arg(8)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    // The readers' messages are no result.
    if (!freopen("/dev/null", "w", stdout))
        return 1;
    benchmark::Initialize(&argc, argv);
    benchmark::ConsoleReporter reporter(benchmark::ConsoleReporter::OO_Tabular);
    reporter.SetOutputStream(&std::cerr);
    reporter.SetErrorStream(&std::cerr);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}

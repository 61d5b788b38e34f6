// SPDX-License-Identifier: MIT
// A frame of the four views of a generated city, a pick, and a step of a drag, on a real display.
// Run under tools/run-under-x.sh; the camera flies low over one end of the city and looks along it.
#include "document/tBrush.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "document/tTexture.h"
#include "operations/tTransform.h"
#include "support/tSystem.h"
#include "tBenchCity.h"
#include "tBenchShown.h"
#include "tools/tToolSelect.h"
#include "views/tDrawRanges.h"
#include "views/tGLState.h"

#include <QApplication>
#include <benchmark/benchmark.h>
#include <clocale>
#include <cstdio>
#include <iostream>

// Arguments: brushes, cull tree on.
static void frameAnew(benchmark::State& state) {
    bench().host.UseCullTree = state.range(1) != 0;
    cShownCity city(int(state.range(0)));
    if (!city.isShown()) {
        state.SkipWithError("the views were not shown");
        return;
    }
    for (auto _ : state) {
        cCanvas::invalidatePictures();
        city.frame();
    }
    state.counters["culls"] = city.camera()->stats.culls;
    state.counters["drawn3D"] = city.camera()->stats.brushes;
    state.counters["drawn2D"] = city.top()->stats.brushes;
}

static void frameKept(benchmark::State& state) {
    bench().host.UseCullTree = state.range(1) != 0;
    cShownCity city(int(state.range(0)));
    const int before = city.camera()->pictureCount();
    for (auto _ : state)
        city.frame();
    if (city.camera()->pictureCount() != before || before == 0)
        state.SkipWithError("the picture was not kept");
}

// One view alone, by its place in the window, drawn anew.
static void oneView(benchmark::State& state, cCanvas* (cShownCity::*which)() const) {
    bench().host.UseCullTree = state.range(1) != 0;
    cShownCity city(int(state.range(0)));
    cCanvas* canvas = (city.*which)();
    for (auto _ : state) {
        cCanvas::invalidatePictures();
        canvas->requestRedraw(true);
        canvas->makeCurrent();
        glFinish();
    }
}

static void pick(benchmark::State& state, cCanvas* (cShownCity::*which)() const) {
    bench().host.UseCullTree = state.range(1) != 0;
    cShownCity city(int(state.range(0)));
    cCanvas* canvas = (city.*which)();
    int x = 0, hits = 0;
    for (auto _ : state) {
        x = (x + 37) % canvas->width();
        hits += canvas->pickObject(x, canvas->height() * 3 / 4) != 0;
    }
    state.counters["hits"] = benchmark::Counter(hits, benchmark::Counter::kAvgIterations);
}

// Inside the selection's box, or on one of its handles on the right side.
static void placeOf(cCanvas* canvas, int handle, int* x, int* y) {
    float point[3], pixel[2];
    canvas->project()->boxes[TBX_SELECTION].handlePoint(canvas->axisH, canvas->axisV, handle,
                                                        point);
    canvas->projectToScreen(point, pixel);
    *x = int(pixel[0]) + (handle == BH_NONE ? 0 : 6);
    *y = int(pixel[1]);
}

// A mouse move in the top view that drags the selection in a city of 10,000 brushes, and the frame
// of all views after it. By the box, or by the right handle as a stretch.
static void dragStep(benchmark::State& state, eHandleMode mode, int handle) {
    static constexpr int CITY = 10000;
    cShownCity city(CITY);
    cCanvas* top = city.top();
    city.select(int(state.range(0)));
    top->activate();
    cToolSelect tool;
    g_viewHost->currentTool = &tool;
    tool.setCanvas(top);
    top->project()->selection.handleMode = mode;
    int x = 0, y = 0;
    placeOf(top, handle, &x, &y);
    const int start = x;
    tool.mousePress(top, x, y, TB_LEFT, {});
    tool.mouseMove(top, x, y, Qt::LeftButton, {});
    tool.mouseMove(top, x + 1, y, Qt::LeftButton, {});
    city.frame(); // the picture changes once, when the drag begins
    const int before = top->pictureCount();
    for (auto _ : state) {
        x = x < start + 64 ? x + 4 : start;
        tool.mouseMove(top, x, y, Qt::LeftButton, {});
        city.frame();
    }
    if (!tool.dragging() || top->pictureCount() != before)
        state.SkipWithError("no drag over the kept picture");
    g_viewHost->currentTool = nullptr;
}

// ---- What is kept. Under GALLIUM_NOOP=1 GALLIUM_THREAD=0 nothing is drawn: the time is our own
// and that of the calls.

static constexpr int TEXTURES = 50;

static void countTraffic(benchmark::State& state, const cCanvas* canvas) {
    state.counters["calls"] = canvas->stats.calls;
    state.counters["ranges"] = canvas->stats.ranges;
    state.counters["bytes"] = canvas->stats.bytes;
}

static void drawNow(cCanvas* canvas) {
    canvas->requestRedraw(true);
    canvas->makeCurrent();
    glFinish();
}

static void flyToAndFro(benchmark::State& state, cCanvas* camera) {
    drawNow(camera);
    float step = 4;
    for (auto _ : state) {
        camera->moveForward(step);
        step = -step;
        drawNow(camera);
    }
}

// Arguments: brushes, textures in use; 0 textures is filled. The camera moves, so no picture is
// kept.
static void texturedFrame(benchmark::State& state) {
    cShownCity city(int(state.range(0)));
    const int textures = int(state.range(1));
    city.wear(std::max(textures, 1));
    cCanvas* camera = city.camera();
    camera->setViewType(VIEW_CAMERA, textures ? RM_TEXTURED : RM_FILLED);
    flyToAndFro(state, camera);
    countTraffic(state, camera);
}

static void zoomed2D(benchmark::State& state) {
    bench().host.EnableGrid2D = false;
    cShownCity city(int(state.range(0)));
    cCanvas* top = city.top();
    drawNow(top);
    bool nearer = false;
    for (auto _ : state) {
        nearer = !nearer;
        top->setZoom(nearer ? 0.07f : 0.0625f);
        drawNow(top);
    }
    countTraffic(state, top);
    bench().host.EnableGrid2D = true;
}

static void oneMoved(benchmark::State& state) {
    static const float MOVE[16] = {1, 0, 0, 8, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    static const float BACK[16] = {1, 0, 0, -8, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    bench().host.EnableGrid2D = false;
    cShownCity city(int(state.range(0)));
    city.wear(TEXTURES);
    city.camera()->setViewType(VIEW_CAMERA, RM_TEXTURED);
    city.select(1);
    city.frame();
    bool there = false;
    uint64_t sent = 0;
    for (auto _ : state) {
        state.PauseTiming();
        cTransformRecord record;
        record.matrix = there ? BACK : MOVE;
        there = !there;
        transformSelection(city.map(), record);
        const uint64_t before = g_drawTraffic.bytes;
        state.ResumeTiming();
        city.frame();
        sent += g_drawTraffic.bytes - before;
    }
    state.counters["bytes"] = benchmark::Counter(double(sent), benchmark::Counter::kAvgIterations);
    bench().host.EnableGrid2D = true;
}

static void allSelected(benchmark::State& state) {
    bench().host.EnableGrid2D = false;
    cShownCity city(int(state.range(0)));
    city.wear(TEXTURES);
    city.camera()->setViewType(VIEW_CAMERA, RM_TEXTURED);
    city.frame();
    for (auto _ : state) {
        state.PauseTiming();
        city.map().clearSelection();
        city.frame();
        city.map().selectAll();
        state.ResumeTiming();
        city.frame();
    }
    bench().host.EnableGrid2D = true;
}

// 2,000 boxes of glass, with one texture or three.
static void seenThrough(benchmark::State& state) {
    static constexpr int BOXES = 2000;
    bench().host.Transparency = bench().host.TextureTransparency = true;
    bench().host.TransparentSort = true;
    cShownCity city(BOXES);
    city.wear(int(state.range(0)));
    for (cBrushData* brush : brushesOf(city.map().world()))
        for (cFaceData* face : facesOf(brush))
            static_cast<cTexture*>(face->texture)->renderState = GLS_BLEND_ALPHA;
    noteChange(city.map());
    cCanvas* camera = city.camera();
    camera->setViewType(VIEW_CAMERA, RM_TEXTURED);
    flyToAndFro(state, camera);
    state.counters["faces"] = camera->stats.faces;
    countTraffic(state, camera);
    bench().host.Transparency = false;
}

static void firstPicture(benchmark::State& state) {
    cShownCity city(int(state.range(0)));
    city.wear(TEXTURES);
    city.camera()->setViewType(VIEW_CAMERA, RM_TEXTURED);
    for (auto _ : state) {
        city.map().watcher.reset();
        cCanvas::invalidatePictures();
        city.frame();
    }
}

// Resident kilobytes of the whole process, with the map and all that its views hold.
static void memory(benchmark::State& state) {
    const long before = residentKilobytes();
    cShownCity city(int(state.range(0)));
    city.wear(TEXTURES);
    city.camera()->setViewType(VIEW_CAMERA, RM_TEXTURED);
    for (auto _ : state)
        city.frame();
    state.counters["kB/brush"] = double(residentKilobytes() - before) / double(state.range(0));
}

#define KVX_KEPT_SIZES                                                                             \
    ArgName("brushes")->Arg(25000)->Arg(50000)->Arg(100000)->Unit(benchmark::kMillisecond)
BENCHMARK(memory)->ArgName("brushes")->Arg(100000)->Iterations(2);
BENCHMARK(texturedFrame)
    ->ArgNames({"brushes", "textures"})
    ->ArgsProduct({{1000, 10000, 100000}, {0, 1, 50, 500}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(zoomed2D)->KVX_KEPT_SIZES;
BENCHMARK(oneMoved)->KVX_KEPT_SIZES;
BENCHMARK(allSelected)->KVX_KEPT_SIZES;
BENCHMARK(firstPicture)->KVX_KEPT_SIZES;
BENCHMARK(seenThrough)->ArgName("textures")->Arg(1)->Arg(3)->Unit(benchmark::kMillisecond);

#define KVX_VIEW_SIZES                                                                             \
    ArgNames({"brushes", "tree"})                                                                  \
        ->ArgsProduct({{1000, 10000, 50000}, {0, 1}})                                              \
        ->UseRealTime()                                                                            \
        ->Unit(benchmark::kMillisecond)
BENCHMARK(frameAnew)->KVX_VIEW_SIZES;
BENCHMARK(frameKept)->KVX_VIEW_SIZES;
BENCHMARK_CAPTURE(oneView, camera, &cShownCity::camera)->KVX_VIEW_SIZES;
BENCHMARK_CAPTURE(oneView, top, &cShownCity::top)->KVX_VIEW_SIZES;
BENCHMARK_CAPTURE(pick, camera, &cShownCity::camera)->KVX_VIEW_SIZES;
BENCHMARK_CAPTURE(pick, top, &cShownCity::top)->KVX_VIEW_SIZES;

#define KVX_DRAG_SIZES                                                                             \
    ArgName("selected")->Arg(500)->Arg(5000)->UseRealTime()->Unit(benchmark::kMillisecond)
BENCHMARK_CAPTURE(dragStep, move, HANDLES_SCALE, BH_NONE)->KVX_DRAG_SIZES;
BENCHMARK_CAPTURE(dragStep, stretch, HANDLES_STRETCH, BH_RIGHT)->KVX_DRAG_SIZES;

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    setlocale(LC_ALL, "C");
    benchmark::Initialize(&argc, argv);
    // The readers' messages are no result.
    if (!freopen("/dev/null", "w", stdout))
        return 1;
    bench();
    const cBenchViewHost views;
    benchmark::ConsoleReporter reporter(benchmark::ConsoleReporter::OO_Tabular);
    reporter.SetOutputStream(&std::cerr);
    reporter.SetErrorStream(&std::cerr);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}

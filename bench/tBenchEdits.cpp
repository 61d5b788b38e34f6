// SPDX-License-Identifier: MIT
// Selecting, moving, undoing and redoing in generated cities: all brushes, and one among them.
// The counter brushes/s holds what one run works on; record bytes are per captured brush.
#include "document/tBrush.h"
#include "document/tGroup.h"
#include "document/tHistory.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "operations/tClipboard.h"
#include "operations/tStructure.h"
#include "operations/tTransform.h"
#include "tBenchImport.h"

#include <benchmark/benchmark.h>

static const float MOVE[16] = {1, 0, 0, 8, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
static const float ALL_MINS[3] = {-9000, -9000, -9000}, ALL_MAXS[3] = {9000, 9000, 9000};

namespace {
class cCity {
public:
    explicit cCity(benchmark::State& state) : m_state(state) {
        bench().import(map, int(state.range(0)));
    }
    ~cCity() {
        m_state.counters["brushes/s"] = benchmark::Counter(
            double(m_state.range(0)), benchmark::Counter::kIsIterationInvariantRate);
        m_state.SetComplexityN(m_state.range(0));
        bench().host.messages.clear();
    }

    void selectOne() {
        cBrushData* brush = map.world()->brushes;
        for (int64_t i = 0; i < m_state.range(0) / 2; ++i)
            brush = brush->next;
        map.clearSelection();
        selectedPush(map.data.selectedBrushes, brush);
    }

    void move() {
        cTransformRecord record;
        record.matrix = MOVE;
        transformSelection(map, record);
    }

    template<class Before, class Work> void run(Before before, Work work) {
        for (auto _ : m_state) {
            m_state.PauseTiming();
            before();
            m_state.ResumeTiming();
            work();
        }
    }

    cMap map{bench().host};

private:
    benchmark::State& m_state;
};
} // namespace

static void selectAllBrushes(benchmark::State& state) {
    cCity city(state);
    city.run([&] { city.map.clearSelection(); }, [&] { city.map.selectAll(); });
}

static void deselectAllBrushes(benchmark::State& state) {
    cCity city(state);
    city.run([&] { city.map.selectAll(); }, [&] { city.map.clearSelection(); });
}

static void selectInBox(benchmark::State& state) {
    cCity city(state);
    city.run([&] { city.map.clearSelection(); },
             [&] { city.map.selectInBox(ALL_MINS, ALL_MAXS, BOX_CONTAINED); });
}

// Half of the brushes grouped by tens, so that every group has members in the box.
static void selectInBoxGroups(benchmark::State& state) {
    cCity city(state);
    cGroupData* group = nullptr;
    int i = 0;
    for (cBrushData* brush : brushesOf(city.map.world())) {
        if (i % 20 == 0)
            group = city.map.addGroup();
        if (i++ % 20 < 10)
            city.map.joinGroupBrush(brush, group);
    }
    city.run([&] { city.map.clearSelection(); },
             [&] { city.map.selectInBox(ALL_MINS, ALL_MAXS, BOX_BY_CENTER); });
}

static void captureAll(benchmark::State& state) {
    cCity city(state);
    city.map.selectAll();
    size_t bytes = 0;
    city.run([&] { city.map.history->clear(); },
             [&] {
                 cHistoryStep step(city.map, "Capture");
                 step->brushesChanged(true);
             });
    bytes = city.map.history->recordBytes();
    state.counters["bytes/brush"] = double(bytes) / double(state.range(0));
}

static void moveAll(benchmark::State& state) {
    cCity city(state);
    city.map.selectAll();
    city.run([&] { city.map.history->clear(); }, [&] { city.move(); });
}

static void undoAll(benchmark::State& state) {
    cCity city(state);
    city.map.selectAll();
    city.run(
        [&] {
            city.map.history->clear();
            city.move();
        },
        [&] { city.map.history->undo(); });
}

static void redoAll(benchmark::State& state) {
    cCity city(state);
    city.map.selectAll();
    city.move();
    city.run([&] { city.map.history->undo(); }, [&] { city.map.history->redo(); });
}

static void cloneAll(benchmark::State& state) {
    cCity city(state);
    cTransformRecord record;
    record.matrix = MOVE;
    city.run(
        [&] {
            if (city.map.history->canUndo())
                city.map.history->undo();
            city.map.selectAll();
        },
        [&] { cloneSelection(city.map, record); });
}

static void groupAll(benchmark::State& state) {
    cCity city(state);
    city.run(
        [&] {
            if (city.map.history->canUndo())
                city.map.history->undo();
            city.map.selectAll();
        },
        [&] { groupSelection(city.map); });
}

static void pickOne(benchmark::State& state) {
    cCity city(state);
    city.selectOne();
    int pick = 1;
    for (auto _ : state) {
        city.map.clearSelection();
        city.map.selectByPick(pick++ % 1000 + 1, false);
    }
}

static void moveOne(benchmark::State& state) {
    cCity city(state);
    city.selectOne();
    for (auto _ : state)
        city.move();
}

static void undoOne(benchmark::State& state) {
    cCity city(state);
    city.selectOne();
    city.run([&] { city.move(); }, [&] { city.map.history->undo(); });
}

static void redoOne(benchmark::State& state) {
    cCity city(state);
    city.selectOne();
    city.move();
    city.run([&] { city.map.history->undo(); }, [&] { city.map.history->redo(); });
}

// Among groups of ten, and with visgroups of which one is hidden: what an undo looks after.
static void undoOneOrganised(benchmark::State& state) {
    cCity city(state);
    cVisGroup* sets[3] = {city.map.createVisGroup("a"), city.map.createVisGroup("b"),
                          city.map.createVisGroup("c")};
    cGroupData* group = nullptr;
    int i = 0;
    for (cBrushData* brush : brushesOf(city.map.world())) {
        if (i % 10 == 0)
            group = city.map.addGroup();
        city.map.joinGroupBrush(brush, group);
        brush->brush->addToVisGroup(sets[i++ % 100 == 0 ? 0 : 1 + i % 2]);
    }
    city.map.computeVisGroupVisibility();
    city.map.setVisGroupVisible(sets[0]);
    city.map.clearSelection();
    city.map.selectByPick(city.map.world()->brushesTail->rootGroup->group->pickId, false);
    city.run([&] { city.move(); }, [&] { city.map.history->undo(); });
}

// Back to where the last run began, with everything selected.
static void takeBackAndSelectAll(cMap& map) {
    if (map.history->canUndo())
        map.history->undo();
    map.selectAll();
}

static void deleteAll(benchmark::State& state) {
    cCity city(state);
    city.run([&] { takeBackAndSelectAll(city.map); }, [&] { deleteSelection(city.map); });
}

static void undoDeleteAll(benchmark::State& state) {
    cCity city(state);
    city.run(
        [&] {
            city.map.history->clear();
            city.map.selectAll();
            deleteSelection(city.map);
        },
        [&] { city.map.history->undo(); });
}

static void tieAll(benchmark::State& state) {
    cCity city(state);
    city.run([&] { takeBackAndSelectAll(city.map); },
             [&] { tieSelectionToEntity(city.map, "func_wall", nullptr); });
}

static void undoTieAll(benchmark::State& state) {
    cCity city(state);
    city.run(
        [&] {
            city.map.history->clear();
            city.map.selectAll();
            tieSelectionToEntity(city.map, "func_wall", nullptr);
        },
        [&] { city.map.history->undo(); });
}

static void cutAll(benchmark::State& state) {
    cCity city(state);
    cClipboard clipboard;
    city.run([&] { takeBackAndSelectAll(city.map); },
             [&] { clipboard.cutSelection(city.map, false); });
}

// Rows of a group of ten brushes, moved and turned from copy to copy; the number is of copies.
namespace {
class cRow {
public:
    static constexpr int GROUP = 10;

    explicit cRow(benchmark::State& state) : m_state(state) {
        bench().import(map, 1000);
        cBrushData* brush = map.world()->brushes;
        for (int i = 0; i < GROUP; ++i, brush = brush->next)
            selectedPush(map.data.selectedBrushes, brush);
        groupSelection(map);
        m_clipboard.copySelection(map, false);
        map.history->clear();
        m_options.copies = int(state.range(0));
        m_options.offset = m_offset;
        m_options.rotation = m_rotation;
    }
    ~cRow() {
        m_state.counters["brushes/s"] = benchmark::Counter(
            double(m_state.range(0)) * GROUP, benchmark::Counter::kIsIterationInvariantRate);
        m_state.SetComplexityN(m_state.range(0));
        bench().host.messages.clear();
    }
    void paste() { m_clipboard.paste(map, m_options, "Paste Special"); }

    cMap map{bench().host};

private:
    benchmark::State& m_state;
    cClipboard m_clipboard;
    cPasteOptions m_options;
    const float m_offset[3] = {1, 0, 0};
    const float m_rotation[3] = {0, 0, 15};
};
} // namespace

static void pasteSpecial(benchmark::State& state) {
    cRow row(state);
    for (auto _ : state) {
        state.PauseTiming();
        if (row.map.history->canUndo())
            row.map.history->undo();
        state.ResumeTiming();
        row.paste();
    }
}

static void undoPasteSpecial(benchmark::State& state) {
    cRow row(state);
    for (auto _ : state) {
        state.PauseTiming();
        row.paste();
        state.ResumeTiming();
        row.map.history->undo();
    }
}

#define KVX_EDITS Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)
BENCHMARK(selectAllBrushes)->KVX_EDITS->Complexity();
BENCHMARK(deselectAllBrushes)->KVX_EDITS->Complexity();
BENCHMARK(selectInBox)->KVX_EDITS->Complexity();
BENCHMARK(selectInBoxGroups)->KVX_EDITS->Complexity();
BENCHMARK(captureAll)->KVX_EDITS->Complexity();
BENCHMARK(moveAll)->KVX_EDITS->Complexity();
BENCHMARK(undoAll)->KVX_EDITS->Complexity();
BENCHMARK(redoAll)->KVX_EDITS->Complexity();
BENCHMARK(cloneAll)->KVX_EDITS->Complexity();
BENCHMARK(groupAll)->KVX_EDITS->Complexity();
BENCHMARK(pickOne)->KVX_EDITS;
BENCHMARK(moveOne)->KVX_EDITS;
BENCHMARK(undoOne)->KVX_EDITS;
BENCHMARK(redoOne)->KVX_EDITS;
BENCHMARK(undoOneOrganised)->KVX_EDITS;
BENCHMARK(deleteAll)->KVX_EDITS->Complexity();
BENCHMARK(undoDeleteAll)->KVX_EDITS->Complexity();
BENCHMARK(tieAll)->KVX_EDITS->Complexity();
BENCHMARK(undoTieAll)->KVX_EDITS->Complexity();
BENCHMARK(cutAll)->KVX_EDITS->Complexity();
#define KVX_COPIES Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)
BENCHMARK(pasteSpecial)->KVX_COPIES->Complexity();
BENCHMARK(undoPasteSpecial)->KVX_COPIES->Complexity();

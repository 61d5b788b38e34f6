// SPDX-License-Identifier: MIT
// A camera frame of 1,000 entities with models, turned in eight ways, of one model and of twenty,
// and what their pictures take.
#include "document/tEntity.h"
#include "tBenchShown.h"
#include "views/tModelPoses.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <benchmark/benchmark.h>
#include <cmath>
#include <qopengl.h>

static constexpr int ENTITIES = 1000;

// A ball of some 800 triangles.
static void writeModel(const QString& path) {
    static constexpr int RINGS = 20, SIDES = 20;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    QTextStream out(&file);
    for (int ring = 0; ring <= RINGS; ++ring)
        for (int side = 0; side < SIDES; ++side) {
            const double a = M_PI * ring / RINGS, b = 2 * M_PI * side / SIDES;
            out << "v " << 24 * sin(a) * cos(b) << ' ' << 24 * cos(a) << ' ' << 24 * sin(a) * sin(b)
                << '\n';
        }
    for (int ring = 0; ring < RINGS; ++ring)
        for (int side = 0; side < SIDES; ++side) {
            const int a = ring * SIDES + side + 1, b = ring * SIDES + (side + 1) % SIDES + 1;
            out << "f " << a << ' ' << b << ' ' << b + SIDES << ' ' << a + SIDES << '\n';
        }
}

class cBenchModels {
public:
    explicit cBenchModels(int count) {
        for (int i = 0; i < count; ++i)
            writeModel(path(i));
        bench().host.addClass(QStringLiteral("bench_guard"), CK_POINT)->flags = ECF_STUDIO;
        bench().host.acquire = [](eAttachKind, const char* name) {
            return bench().models.loadModel(QString::fromUtf8(name), nullptr);
        };
        bench().host.giveBack = [](eAttachKind, void* record) {
            bench().models.releaseModel(static_cast<cModelRecord*>(record));
        };
    }
    ~cBenchModels() {
        bench().models.clear();
        cModelPoses::shared().clear();
    }

    void place(cMap& map, int count) {
        for (int i = 0; i < ENTITIES; ++i) {
            const float origin[3] = {float(i / 32) * 64 - 2000, float(i % 32) * 64 - 1000, 600};
            cEntityData* entity = map.addEntity("bench_guard", origin, EF_POINT);
            addEpairLast(entity, "model", path(i % count).toUtf8().constData());
            entity->angles[1] = float(i % 8) * 45;
            updateEntity(entity, UM_MODEL_KEYS | UM_ATTACH);
        }
        map.markChanged();
    }

private:
    QString path(int i) const { return m_folder.filePath(QStringLiteral("%1.obj").arg(i)); }

    QTemporaryDir m_folder;
};

static void models(benchmark::State& state) {
    static constexpr int CITY = 1000;
    const auto count = int(state.range(0));
    bench().host.ModelRenderDistance = 100000;
    bench().host.AnimateModels = false;
    cBenchModels models(count);
    cShownCity city(CITY);
    models.place(city.map(), count);
    cCanvas* camera = city.camera();
    camera->setViewType(VIEW_CAMERA, RM_TEXTURED);
    for (auto _ : state) {
        cCanvas::invalidatePictures();
        camera->requestRedraw(true);
        camera->makeCurrent();
        glFinish();
    }
    state.counters["calls"] = camera->stats.calls;
    state.counters["bytes"] = camera->stats.bytes;
    state.counters["kept kB"] = double(cModelPoses::shared().bytes()) / 1024;
}
BENCHMARK(models)->ArgName("models")->Arg(1)->Arg(20)->Unit(benchmark::kMillisecond);

// SPDX-License-Identifier: MIT
// The texture browser with thousands of textures, on a real display: its first picture, a step of
// the scroll bar, another filter.
#include "resources/tTextureCatalogue.h"
#include "support/tTestHost.h"
#include "tBenchCity.h"
#include "views/tTextureBrowser.h"
#include "views/tTextureUpload.h"
#include "views/tViewHost.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QWindow>
#include <benchmark/benchmark.h>

// A shown browser over that many textures of some sizes.
class cShownBrowser {
public:
    explicit cShownBrowser(int textures);
    void frame();

    cTextureBrowser browser{nullptr};
    cTextureCatalogue catalogue{m_manager};

private:
    cTextureUpload m_upload{*g_viewHost->shareWidget()};
    cTextureManager m_manager;
    cTexturePackage m_package;
};

cShownBrowser::cShownBrowser(int textures) {
    static constexpr int SIDES[] = {16, 32, 64, 128}, LARGEST = 128;
    static constexpr int SETTLE_TIME = 20000; // ms
    const std::vector<uint32_t> pixels(size_t(LARGEST) * LARGEST, 0xff8090a0u);
    m_manager.setUploader(&m_upload);
    m_package.manager = &m_manager;
    for (int i = 0; i < textures; ++i) {
        const QByteArray name = "folder/texture_" + QByteArray::number(i);
        const int width = SIDES[i % 4], height = SIDES[i / 4 % 4];
        cTextureManager::addTexture(name.constData(), name.constData(), GL_RGBA, GL_RGBA,
                                    width * height * 4, width, height, 0, nullptr, pixels.data(),
                                    &m_package);
    }
    for (cTexture* texture : m_package.textures)
        catalogue.entries.insert(QString::fromLatin1(texture->name).toUpper(),
                                 {QStringLiteral("folder"), &m_package, texture});
    browser.setCatalogue(&catalogue);
    browser.resize(1000, 800);
    browser.show();
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < SETTLE_TIME &&
           !(browser.windowHandle() && browser.windowHandle()->isExposed()))
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
}

void cShownBrowser::frame() {
    browser.updateGL();
    glFinish();
}

// Everything that is kept is made anew.
static void browserFirstPicture(benchmark::State& state) {
    cShownBrowser shown(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        for (cTextureEntry& entry : shown.catalogue.entries)
            entry.texture->labelWidth = 0;
        shown.browser.setCatalogue(&shown.catalogue);
        state.ResumeTiming();
        shown.frame();
    }
}

static void browserScrollStep(benchmark::State& state) {
    static constexpr float STEP = 0.01f;
    cShownBrowser shown(int(state.range(0)));
    float scroll = 0;
    for (auto _ : state) {
        scroll = scroll + STEP > 1 ? 0 : scroll + STEP;
        shown.browser.setScroll(scroll);
        shown.frame();
    }
}

static void browserFilter(benchmark::State& state) {
    cShownBrowser shown(int(state.range(0)));
    int digit = 0;
    for (auto _ : state) {
        shown.browser.setFilter(QString::number(digit = (digit + 1) % 10));
        shown.frame();
    }
}

#define KVX_BROWSER_SIZES                                                                          \
    ArgName("textures")->Arg(100)->Arg(5000)->Unit(benchmark::kMillisecond)->UseRealTime()
BENCHMARK(browserFirstPicture)->KVX_BROWSER_SIZES;
BENCHMARK(browserScrollStep)->KVX_BROWSER_SIZES;
BENCHMARK(browserFilter)->KVX_BROWSER_SIZES;

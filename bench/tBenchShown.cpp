// SPDX-License-Identifier: MIT
#include "tBenchShown.h"

#include "document/tMapLists.h"
#include "document/tMapWatcher.h"

#include <QApplication>
#include <QElapsedTimer>
#include <qopengl.h>

void cShownCity::wear(int textures) {
    static constexpr int SIZE = 64, IN_DISTRICT = 8;
    static constexpr float DISTRICT = 1000; // units
    std::vector<uint32_t> texels(SIZE * SIZE);
    m_textures.assign(size_t(textures), {});
    m_images.assign(size_t(textures), {});
    camera()->makeCurrent();
    for (size_t i = 0; i < m_textures.size(); ++i) {
        for (size_t texel = 0; texel < texels.size(); ++texel)
            texels[texel] = 0xff000000u | uint32_t((texel * 2654435761u + i * 40503u) & 0xffffff);
        cTextureImage& image = m_images[i];
        image.width = image.height = SIZE;
        glGenTextures(1, &image.glName);
        glBindTexture(GL_TEXTURE_2D, image.glName);
        glTexParameteri(GL_TEXTURE_2D, 0x8191 /* GL_GENERATE_MIPMAP */, 1);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, SIZE, SIZE, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     texels.data());
        m_textures[i].width = m_textures[i].height = SIZE;
        m_textures[i].image = &image;
        m_textures[i].opacity = 1;
    }
    int place = 0;
    for (cBrushData* brush : brushesOf(map().world())) {
        const int district =
            int((brush->mins[0] + 4000) / DISTRICT) * 8 + int((brush->mins[1] + 4000) / DISTRICT);
        for (cFaceData* face : facesOf(brush))
            face->texture =
                &m_textures[size_t((district * IN_DISTRICT + place++ % IN_DISTRICT) % textures)];
    }
    noteChange(map());
    map().markChanged();
}

cShownCity::cShownCity(int brushes) {
    static constexpr int SETTLE_TIME = 20000; // ms
    bench().host.EnergySavingMode = true;     // frames come from here alone
    bench().host.DrawCamera = false;
    bench().import(m_document.map, brushes);
    m_window = std::make_unique<cChildWindow>(&m_document);
    m_window->setAttribute(Qt::WA_DeleteOnClose, false);
    m_window->resize(WIDTH, HEIGHT);
    m_window->createViews(-1);
    m_window->show();
    QElapsedTimer time;
    time.start();
    while (!isShown() && time.elapsed() < SETTLE_TIME)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    m_window->autosize();
    QApplication::processEvents();
    static const float place[3] = {-3800, 0, 500}, direction[3] = {-10, 0, 0};
    camera()->setViewType(VIEW_CAMERA, RM_FILLED);
    camera()->setCameraOrigin(place);
    camera()->setCameraAngles(direction);
    m_document.setZoomAll(0.0625f);
    frame();
}

bool cShownCity::isShown() const {
    for (const cCanvas* canvas : m_window->canvases)
        if (canvas->viewInfo.frame == 0 || canvas->width() < WIDTH / 3)
            return false;
    return true;
}

void cShownCity::select(int brushes) {
    cMap& map = m_document.map;
    for (cBrushData* brush : brushesOf(map.world()))
        if (brushes-- > 0)
            selectedPush(map.data.selectedBrushes, brush);
    map.markChanged();
}

void cShownCity::frame() {
    for (cCanvas* canvas : m_window->canvases) {
        canvas->requestRedraw(true);
        canvas->makeCurrent();
        glFinish();
    }
}

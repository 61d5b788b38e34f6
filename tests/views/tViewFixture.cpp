// SPDX-License-Identifier: MIT
#include "views/tViewFixture.h"

#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tMapLists.h"
#include "support/tMapTools.h"
#include "support/tPatience.h"
#include "views/tOverlay.h"

#include <QApplication>
#include <QKeyEvent>
#include <QtTest/QTest>
#include <algorithm>

const uint8_t* cColorHost::schemeColor(int index) const {
    static const uint8_t grey[4] = {40, 40, 40, 255};
    const auto found = m_colors.find(index);
    return found == m_colors.end() ? grey : found->second.data();
}

void cColorHost::setColor(int index, uint8_t r, uint8_t g, uint8_t b) {
    m_colors[index] = {r, g, b, 255};
}

cFakeViewHost::cFakeViewHost() : m_share(std::make_unique<cGLWidget>(eGLBuffers::Depth)) {
    g_viewHost = this;
}

ViewFixture::ViewFixture() {
    const float origin[3] = {0, 0, 0};
    host.EnableGrid2D = false;
    host.DrawCamera = false;
    world = document.map.addEntity("worldspawn", origin, EF_WORLD);
    updateEntity(world, 0);
}

ViewFixture::~ViewFixture() {
    while (!document.windows.isEmpty())
        delete document.windows.first();
}

// Every view has its share of the window, and has painted at that size.
static bool isSettled(const cChildWindow& window) {
    return std::all_of(window.canvases.begin(), window.canvases.end(), [&](const cCanvas* c) {
        return c->width() > window.width() / 3 && c->height() > window.height() / 3 &&
               c->viewInfo.frame > 0 && c->centerX == c->width() / 2 &&
               c->centerY == c->height() / 2;
    });
}

cChildWindow* ViewFixture::openWindow(int type, int width, int height) {
    auto* window = new cChildWindow(&document);
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    window->resize(width, height);
    window->createViews(type);
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window, PATIENCE));
    window->autosize();
    EXPECT_TRUE(QTest::qWaitFor([window] { return isSettled(*window); }, PATIENCE));
    return window;
}

cCanvas* ViewFixture::openCanvas(int type, int width, int height) {
    host.EnableScrollbars = false;
    cCanvas* canvas = openWindow(type, width, height)->firstCanvas();
    canvas->activate();
    return canvas;
}

cBrushData* ViewFixture::addBoxTo(cEntityData* entity, const float* mins, const float* maxs) {
    cBrushData* brush = ::addBox(document.map, entity, mins, maxs);
    document.map.markChanged();
    return brush;
}

cBrushData* ViewFixture::addBox(float x0, float y0, float z0, float x1, float y1, float z1) {
    const float mins[3] = {x0, y0, z0}, maxs[3] = {x1, y1, z1};
    return addBoxTo(world, mins, maxs);
}

cEntityData* ViewFixture::addPointEntity(float x, float y, float z) {
    const float origin[3] = {x, y, z};
    cEntityData* entity = document.map.addEntity("light", origin, EF_POINT);
    updateEntity(entity, UM_REEVALUATE);
    document.map.markChanged();
    return entity;
}

void ViewFixture::select(cBrushData* brush) {
    selectedPush(document.map.data.selectedBrushes, brush);
    document.map.markChanged();
}

// Reads the frame before it is swapped away: what the back buffer holds later is nobody's promise.
class cGrabTool : public cTool {
public:
    void drawOverlay(cCanvas* canvas, const cViewInfo&, cOverlay& overlay) override {
        overlay.flush();
        image = QImage(canvas->deviceSize(), QImage::Format_RGBA8888);
        glReadPixels(0, 0, image.width(), image.height(), GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
        image = image.mirrored();
    }
    QImage image;
};

QImage ViewFixture::picture(cCanvas* canvas) {
    cGrabTool grab;
    viewHost.suspendedTool = &grab;
    canvas->requestRedraw(true);
    viewHost.suspendedTool = nullptr;
    EXPECT_EQ(grab.image.size(), canvas->deviceSize()) << "the view did not paint";
    return grab.image.scaled(canvas->size());
}

void ViewFixture::pressKey(cCanvas* canvas, int key, Qt::KeyboardModifiers modifiers) {
    QKeyEvent press(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(canvas, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers);
    QApplication::sendEvent(canvas, &release);
}

// SPDX-License-Identifier: MIT
// Projection, zoom, scrolling, keys and camera of a view.
#include "views/tViewFixture.h"

#include "support/tVec.h"

#include <QApplication>
#include <QScrollBar>
#include <QWheelEvent>
#include <cmath>

class CanvasTest : public ViewFixture {};

TEST_F(CanvasTest, worldPointsComeBackFromTheScreen) {
    const struct {
        int type, right, up; // the axes
    } cases[] = {{VIEW_FRONT, 1, 2}, {VIEW_SIDE, 0, 2}, {VIEW_TOP, 0, 1}, {VIEW_CAMERA, -1, -1}};
    cCanvas* canvas = openCanvas(VIEW_TOP);
    const float origin[3] = {-10, 50, 60}, angles[3] = {20, -60, 0};
    for (const auto& c : cases) {
        canvas->setViewType(c.type);
        canvas->zoomTo(1.7f);
        canvas->setOffset(113, -41);
        canvas->setCameraOrigin(origin);
        canvas->setCameraAngles(angles);
        canvas->requestRedraw(true);
        float point[3] = {17, -29, 43}, screen[3], other[3], back[3];
        ASSERT_TRUE(canvas->project(point, screen)) << c.type;
        ASSERT_TRUE(canvas->unproject(screen, back)) << c.type;
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(back[i], point[i], 0.1f) << "type " << c.type << " axis " << i;
        if (c.type == VIEW_CAMERA)
            continue;
        point[c.right] += 10;
        point[c.up] += 10;
        ASSERT_TRUE(canvas->project(point, other));
        EXPECT_NEAR(other[0], screen[0] + 17, 0.1f) << c.type;
        EXPECT_NEAR(other[1], screen[1] - 17, 0.1f) << c.type;
    }
    float behind[3], screen[3];
    vecMA(origin, -300.0f, canvas->forward, behind);
    EXPECT_FALSE(canvas->project(behind, screen)) << "a point behind the camera";
}

TEST_F(CanvasTest, everyPixelIsReadWithinItself) {
    const cCanvas* canvas = openCanvas(VIEW_TOP, 401, 301);
    const QSize device = canvas->deviceSize();
    EXPECT_NEAR(device.width(), canvas->width() * canvas->devicePixelRatioF(), 0.5);
    const auto pixelAt = [](int position, int deviceExtent, int extent) {
        return int(std::floor((float(position) + 0.5f) * float(extent) / float(deviceExtent)));
    };
    for (int x = 0; x < canvas->width(); ++x)
        EXPECT_EQ(pixelAt(canvas->devicePixel(x, 0).x(), device.width(), canvas->width()), x);
    for (int y = 0; y < canvas->height(); ++y) {
        const int fromTop = device.height() - 1 - canvas->devicePixel(0, y).y();
        EXPECT_EQ(pixelAt(fromTop, device.height(), canvas->height()), y);
    }
}

TEST_F(CanvasTest, cameraAnglesFollowTheConvention) {
    cCanvas* canvas = openCanvas(VIEW_CAMERA);
    const float left[3] = {30, 90, 0}, beyond[3] = {120, 190, 0};
    canvas->setCameraAngles(left);
    EXPECT_NEAR(canvas->forward[1], std::sqrt(0.75), 1e-5);
    EXPECT_NEAR(canvas->forward[2], 0.5, 1e-5) << "up";
    EXPECT_NEAR(canvas->right[0], 1, 1e-5);
    canvas->setCameraAngles(beyond);
    EXPECT_FLOAT_EQ(canvas->angles[0], 90);
    EXPECT_FLOAT_EQ(canvas->angles[1], -170);
}

TEST_F(CanvasTest, depthUnderThePixelGivesTheSurface) {
    addBox(100, -200, -200, 160, 200, 200);
    cCanvas* canvas = openCanvas(VIEW_CAMERA);
    const float origin[3] = {0, 0, 0};
    canvas->setCameraOrigin(origin);
    canvas->setViewType(VIEW_CAMERA, RM_FILLED);
    canvas->requestRedraw(true);
    const int x = canvas->width() / 2 + 31, y = canvas->height() / 2 - 22;
    float hit[3];
    ASSERT_TRUE(canvas->screenToWorld(x, y, 0, hit));
    EXPECT_FLOAT_EQ(hit[0], 100);
    // The view spans 2 units in 400 pixels at distance 1.
    EXPECT_NEAR(hit[1], -31.5f * 100 / 200, 0.51f);
    EXPECT_NEAR(hit[2], 21.5f * 100 / 200, 0.51f);
    const float away[3] = {0, 180, 0};
    canvas->setCameraAngles(away);
    EXPECT_FALSE(canvas->screenToWorld(x, y, 0, hit)) << "nothing is there";
}

TEST_F(CanvasTest, snapFollowsGridAndSetting) {
    cCanvas* canvas = openCanvas(VIEW_TOP);
    canvas->setOffset(5, 9);
    host.gridSize = 32;
    float free[3], p[3];
    canvas->screenToWorld(251, 87, 0, free);
    for (const float grid : {32.0f, 1.0f}) {
        canvas->screenToWorld(251, 87, SW_SNAP, p);
        for (int i = 0; i < 2; ++i) {
            EXPECT_FLOAT_EQ(std::fmod(p[i], grid), 0);
            EXPECT_NEAR(p[i], free[i], grid / 2);
        }
        host.SnapToGrid = false;
    }
}

TEST_F(CanvasTest, depthComesFromAnotherViewOfTheDocument) {
    cChildWindow* window = openWindow(-1, 800, 600);
    cCanvas* top = window->canvases[1];
    cCanvas* front = window->canvases[3];
    front->zoomTo(1);
    front->setOffset(0, -96); // looks at height 96
    front->activate();
    top->activate();
    float p[3];
    top->screenToWorld(10, 10, SW_DEPTH, p);
    EXPECT_FLOAT_EQ(p[2], 96);
}

TEST_F(CanvasTest, zoomAndOffsetStayWithinTheWorld) {
    cCanvas* canvas = openCanvas(VIEW_TOP);
    canvas->zoomTo(1e9f);
    EXPECT_FLOAT_EQ(canvas->zoom, 256);
    canvas->zoomTo(0);
    EXPECT_FLOAT_EQ(canvas->zoom, 0.03125f);
    EXPECT_FLOAT_EQ(canvas->offsetX, 0) << "the world is smaller than the view";
    host.MaxWorldSize = 32768;
    canvas->zoomTo(0);
    EXPECT_FLOAT_EQ(canvas->zoom, 256.0f / 32768);
    host.MaxWorldSize = 8192;
    canvas->zoomTo(1);
    canvas->setOffset(1e6f, -1e6f);
    EXPECT_FLOAT_EQ(canvas->offsetX, (8192.0f - float(canvas->width())) / 2);
    EXPECT_FLOAT_EQ(canvas->offsetY, -(8192.0f - float(canvas->height())) / 2);
}

TEST_F(CanvasTest, wheelZoomsAboutThePointerAndWithCtrlAllViewsFollow) {
    cChildWindow* window = openWindow(-1, 800, 600);
    cCanvas* top = window->canvases[1];
    const auto wheel = [&](int delta, Qt::KeyboardModifiers modifiers) {
        QWheelEvent event(QPointF(20, 20), top->mapToGlobal(QPoint(20, 20)), QPoint(),
                          QPoint(0, delta), Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(top, &event);
    };
    top->zoomTo(0.5f);
    float before[2], after[2];
    top->screenToWorld2D(20, 20, false, before);
    wheel(120, Qt::NoModifier);
    top->screenToWorld2D(20, 20, false, after);
    EXPECT_NEAR(top->zoom, 0.6f, 1e-4);
    EXPECT_NEAR(after[0], before[0], 0.05f);
    EXPECT_NEAR(after[1], before[1], 0.05f);
    EXPECT_EQ(host.panes[5], QStringLiteral("Zoom: 0.60"));
    EXPECT_NEAR(window->canvases[3]->zoom, 0.25f, 1e-4);
    wheel(-120, Qt::ControlModifier);
    EXPECT_NEAR(top->zoom, 0.5f, 1e-4);
    for (const int i : {1, 2, 3})
        EXPECT_FLOAT_EQ(window->canvases[size_t(i)]->zoom, top->zoom);
}

TEST_F(CanvasTest, scrollBarsSpanTheWorld) {
    cChildWindow* window = openWindow(VIEW_TOP, 400, 300);
    cCanvas* canvas = window->firstCanvas();
    canvas->zoomTo(1);
    canvas->updateScrollBars();
    QScrollBar* bar = canvas->horizontalBar();
    const float range = 0.5f * (8192 - float(canvas->width()));
    EXPECT_EQ(bar->maximum(), int(std::sqrt(range) * 10));
    EXPECT_EQ(bar->value(), bar->maximum() / 2);
    bar->setValue(bar->maximum());
    EXPECT_NEAR(canvas->offsetX, range, 0.01f);
    bar->setValue(0);
    EXPECT_NEAR(canvas->offsetX, -range, 0.01f);
    canvas->zoomTo(256);
    canvas->updateScrollBars();
    EXPECT_EQ(bar->maximum(), 2000);
}

TEST_F(CanvasTest, ensureVisibleScrollsJustEnough) {
    cCanvas* canvas = openCanvas(VIEW_TOP);
    canvas->zoomTo(1);
    const float inside[3] = {100, 50, 0}, outside[3] = {500, -400, 0};
    canvas->ensureVisible(inside);
    EXPECT_FLOAT_EQ(canvas->offsetX, 0);
    canvas->ensureVisible(outside);
    float pixel[2];
    canvas->projectToScreen(outside, pixel);
    EXPECT_NEAR(pixel[0], float(canvas->width()), 0.01f);
    EXPECT_NEAR(pixel[1], float(canvas->height()), 0.01f);
    canvas->centerOn(outside);
    canvas->projectToScreen(outside, pixel);
    EXPECT_NEAR(pixel[0], float(canvas->width()) / 2, 1.0f);
    EXPECT_NEAR(pixel[1], float(canvas->height()) / 2, 1.0f);
}

TEST_F(CanvasTest, tabGoesRoundThe2DTypesOnly) {
    cCanvas* canvas = openCanvas(VIEW_FRONT);
    for (const int expected : {VIEW_SIDE, VIEW_TOP, VIEW_FRONT, VIEW_SIDE}) {
        pressKey(canvas, Qt::Key_Tab);
        EXPECT_EQ(canvas->viewType, expected);
    }
    canvas->setViewType(VIEW_CAMERA);
    pressKey(canvas, Qt::Key_Tab);
    EXPECT_EQ(canvas->viewType, VIEW_CAMERA);
}

TEST_F(CanvasTest, keysZoomPanAndToggleOnBothLayouts) {
    cCanvas* canvas = openCanvas(VIEW_TOP);
    pressKey(canvas, Qt::Key_6);
    EXPECT_FLOAT_EQ(canvas->zoom, 1);
    pressKey(canvas, Qt::Key_Right);
    EXPECT_FLOAT_EQ(canvas->offsetX, 64);
    pressKey(canvas, Qt::Key_Up);
    EXPECT_FLOAT_EQ(canvas->offsetY, -64);
    const std::pair<int, float> zoomKeys[] = {
        {Qt::Key_D, 1.2f}, {1042, 1.2f}, {Qt::Key_C, 0.8333333f}, {1057, 0.8333333f}};
    for (const auto& [key, factor] : zoomKeys) {
        const float before = canvas->zoom;
        pressKey(canvas, key);
        EXPECT_NEAR(canvas->zoom, before * factor, 1e-3) << key;
    }
    pressKey(canvas, 1065); // O
    EXPECT_TRUE(canvas->showStats);
    pressKey(canvas, Qt::Key_O);
    EXPECT_FALSE(canvas->showStats);
    pressKey(canvas, Qt::Key_Return, Qt::AltModifier);
    EXPECT_EQ(viewHost.propertiesCount, 1);
    canvas->setViewType(VIEW_CAMERA);
    pressKey(canvas, 1071); // Z
    EXPECT_TRUE(canvas->mouselook);
}

TEST(Ramp, followsInputAtOnceOrInTime) {
    EXPECT_FLOAT_EQ(ramp(0, 0, -1, 0.01f, 100), -100) << "no time to top speed";
    EXPECT_FLOAT_EQ(ramp(80, 200, 0, 0.01f, 100), 0) << "stops at once";
    EXPECT_FLOAT_EQ(ramp(-50, 200, 1, 0.1f, 100), 20) << "turns from a stand";
    EXPECT_FLOAT_EQ(ramp(95, 200, 1, 0.1f, 100), 100);
}

TEST_F(CanvasTest, heldKeysFlyTheCameraAlsoWhenTheMouseLeaves) {
    cCanvas* canvas = openCanvas(VIEW_CAMERA);
    host.TimeToTopSpeed = 0;
    host.ForwardSpeed = 100;
    const float start[3] = {0, 0, 0};
    canvas->setCameraOrigin(start);
    const auto fly = [&](int key, float seconds) {
        viewHost.heldKeys = key < 0 ? 0u : 1u << key;
        return canvas->runMotion(seconds);
    };
    EXPECT_TRUE(fly(HK_W, 0.5f));
    EXPECT_NEAR(canvas->origin[0], 50, 0.01f);
    fly(HK_A, 0.5f);
    EXPECT_NEAR(canvas->origin[1], 37.5, 0.01f) << "sideways at three quarters";
    fly(HK_LEFT, 0.5f);
    EXPECT_NEAR(canvas->angles[1], 90, 0.01f);
    fly(-1, 0.01f);
    host.TimeToTopSpeed = 1000;
    fly(HK_W, 0.5f);
    const float speed = canvas->velocity[0];
    EXPECT_GE(speed, 50);
    canvas->resetInputState(true);
    fly(HK_W, 0.25f);
    EXPECT_GT(canvas->velocity[0], speed);
    fly(-1, 0.01f);
    EXPECT_FLOAT_EQ(canvas->velocity[0], 0);
    host.Mouselook = false;
    EXPECT_FALSE(fly(HK_W, 0.5f));
    viewHost.heldKeys = 0;
}

TEST_F(CanvasTest, projectionWorksWithoutBackClip) {
    host.BackClip = 1;
    cCanvas* canvas = openCanvas(VIEW_CAMERA);
    canvas->requestRedraw(true);
    EXPECT_FLOAT_EQ(canvas->projection[10], -1.004008f);
    EXPECT_FLOAT_EQ(canvas->projection[14], -2.004008f);
}

TEST_F(CanvasTest, timersRunForCamerasAndWithoutEnergySaving) {
    cCanvas* canvas = openCanvas(VIEW_CAMERA);
    EXPECT_EQ(canvas->timerInterval(), 25);
    viewHost.setActiveCanvas(nullptr);
    EXPECT_EQ(canvas->timerInterval(), 40);
    host.EnergySavingMode = true;
    canvas->setViewType(VIEW_CAMERA);
    EXPECT_EQ(canvas->timerInterval(), 0);
}

TEST_F(CanvasTest, activeAndPreviousCanvasAreForgottenWithTheView) {
    cChildWindow* window = openWindow(-1, 800, 600);
    window->canvases[1]->activate();
    window->canvases[2]->activate();
    EXPECT_EQ(viewHost.activeCanvas, window->canvases[2]);
    EXPECT_EQ(viewHost.previousCanvas, window->canvases[1]);
    delete window;
    EXPECT_EQ(viewHost.activeCanvas, nullptr);
    EXPECT_EQ(viewHost.previousCanvas, nullptr);
}

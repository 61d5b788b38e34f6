// SPDX-License-Identifier: MIT
#include "gui/tToolTest.h"

#include <QWindow>
#include <QtTest/qtestmouse.h>

static constexpr double BOUNDS_TOLERANCE = 0.01; // units

// A unit a pixel, with the origin in the middle of the view and whole units on whole pixels.
static void placeOnPixels(cCanvas* canvas) {
    if (canvas->isCamera())
        return;
    canvas->zoomTo(1);
    canvas->setOffset(float(canvas->width() % 2) * 0.5f, float(canvas->height() % 2) * 0.5f);
}

void cToolTest::SetUp() {
    cGuiTest::SetUp();
    write("test.fgd", "@SolidClass = worldspawn : \"World\" []\n"
                      "@PointClass size(-8 -8 -8, 8 8 8) = light : \"Light\" []\n"
                      "@PointClass size(-16 -16 0, 16 16 72) "
                      "offset(0 0 4) = info_start : \"Start\" []\n"
                      "@SolidClass = func_wall : \"Wall\" []\n");
    furnish();
    start();
    project = newProject();
    ASSERT_TRUE(project);
    window->gridSize = GRID;
    top = view(VIEW_TOP);
    ASSERT_TRUE(top);
    ASSERT_TRUE(QTest::qWaitFor([this] { return top->viewInfo.frame > 0 && top->width() > 200; },
                                PATIENCE));
    for (cCanvas* canvas : project->windows.first()->canvases)
        placeOnPixels(canvas);
    focus(top);
}

void cToolTest::TearDown() {
    project->dirty = false; // nobody asks
    cGuiTest::TearDown();
}

// ---- Objects

cBrushData* cToolTest::addBrush(std::initializer_list<float> mins,
                                std::initializer_list<float> maxs) {
    return addBox(map(), map().world(), mins.begin(), maxs.begin());
}

cEntityData* cToolTest::addLight(float x, float y, float z) {
    const float origin[3] = {x, y, z};
    cEntityData* entity = map().addEntity("light", origin, EF_POINT);
    updateEntity(entity, UM_REEVALUATE);
    return entity;
}

cEntityData* cToolTest::addSolidEntity() {
    const float origin[3] = {0, 0, 0};
    return map().addEntity("func_wall", origin, 0);
}

void cToolTest::objectsAdded() {
    updateEntity(map().world(), 0);
    map().buildCullTree();
    map().markChanged();
    settle();
}

cBrushData* cToolTest::pickCube(float x) {
    cBrushData* brush = addBrush({x, 0, 0}, {x + 64, 64, 64});
    objectsAdded();
    pick(brush);
    return brush;
}

int cToolTest::selectedBrushes() const {
    return countOf(selectedBrushesOf(map().data));
}

int cToolTest::selectedEntities() const {
    return countOf(selectedEntitiesOf(map().data));
}

void cToolTest::expectUndoable(const std::function<void()>& change, bool withSelection) {
    const cMapState before = stateOf(map(), withSelection);
    change();
    const cMapState after = stateOf(map(), withSelection);
    EXPECT_NE(firstDifference(before, after), QString());
    EXPECT_EQ(checkMapInvariants(map()), QString());
    trigger("EditUndo");
    EXPECT_EQ(firstDifference(before, stateOf(map(), withSelection)), QString());
    trigger("EditRedo");
    EXPECT_EQ(firstDifference(after, stateOf(map(), withSelection)), QString());
}

// ---- Mouse

cCanvas* cToolTest::view(int type) const {
    for (cCanvas* canvas : project->windows.first()->canvases)
        if (canvas->viewType == type)
            return canvas;
    ADD_FAILURE() << "no view of type " << type;
    return nullptr;
}

QPoint cToolTest::pixel(const cCanvas* canvas, float h, float v) const {
    float point[3] = {0, 0, 0}, out[2];
    point[canvas->axisH] = h;
    point[canvas->axisV] = v;
    canvas->projectToScreen(point, out);
    return QPoint(qRound(out[0]), qRound(out[1]));
}

QPoint cToolTest::handle(const cCanvas* canvas, int number) const {
    static constexpr int OFF = 5; // pixels from the box, inside the band
    static const int ways[][2] = {{0, 0},  {-1, -1}, {1, -1}, {-1, 1}, {1, 1},
                                  {-1, 0}, {1, 0},   {0, -1}, {0, 1}};
    float point[3];
    box().handlePoint(canvas->axisH, canvas->axisV, number, point);
    return pixel(canvas, point[canvas->axisH], point[canvas->axisV]) +
           QPoint(ways[number][0] * OFF, ways[number][1] * OFF);
}

QPoint cToolTest::middleOf(const cCanvas* canvas) const {
    return handle(canvas, BH_NONE);
}

void cToolTest::send(cCanvas* canvas, QEvent::Type type, const QPoint& at, Qt::MouseButton button,
                     Qt::KeyboardModifiers modifiers) {
    static constexpr int APART = 1000; // ms, so that no two presses make a double click
    static int now = 0;
    if (type == QEvent::MouseButtonPress)
        m_held |= button;
    else if (type == QEvent::MouseButtonRelease)
        m_held &= ~Qt::MouseButtons(button);
    QWindow* target = canvas->windowHandle();
    ASSERT_TRUE(target);
    qt_handleMouseEvent(target, at, target->mapToGlobal(at), m_held, button, type, modifiers,
                        now += APART);
    QApplication::processEvents();
}

void cToolTest::moveTo(cCanvas* canvas, const QPoint& at, Qt::KeyboardModifiers modifiers) {
    send(canvas, QEvent::MouseMove, at, Qt::NoButton, modifiers);
}

void cToolTest::press(cCanvas* canvas, const QPoint& at, Qt::KeyboardModifiers modifiers,
                      Qt::MouseButton button) {
    send(canvas, QEvent::MouseButtonPress, at, button, modifiers);
}

void cToolTest::release(cCanvas* canvas, const QPoint& at, Qt::KeyboardModifiers modifiers,
                        Qt::MouseButton button) {
    send(canvas, QEvent::MouseButtonRelease, at, button, modifiers);
}

// The first move leaves a handle, the second one finds the inside of the box.
void cToolTest::approach(cCanvas* canvas, const QPoint& at, Qt::KeyboardModifiers modifiers) {
    moveTo(canvas, at - QPoint(1, 0), modifiers);
    moveTo(canvas, at, modifiers);
}

void cToolTest::click(cCanvas* canvas, const QPoint& at, Qt::KeyboardModifiers modifiers) {
    approach(canvas, at, modifiers);
    press(canvas, at, modifiers);
    release(canvas, at, modifiers);
}

QString cToolTest::menuAt(cCanvas* canvas, const QPoint& at) {
    approach(canvas, at);
    press(canvas, at, {}, Qt::RightButton);
    QWidget* menu = QApplication::activePopupWidget();
    const QString name = menu ? menu->accessibleName() : QString();
    if (menu)
        menu->close();
    release(canvas, at, {}, Qt::RightButton);
    settle();
    return name;
}

void cToolTest::pick(const float* mins, const float* maxs, Qt::KeyboardModifiers modifiers) {
    click(top, pixel(top, mins[0], (mins[1] + maxs[1]) / 2), modifiers);
}

void cToolTest::dragTo(cCanvas* canvas, const QPoint& from, const QPoint& to,
                       Qt::KeyboardModifiers modifiers) {
    approach(canvas, from, modifiers);
    press(canvas, from, modifiers);
    moveTo(canvas, from + QPoint(0, 1), modifiers);
    moveTo(canvas, (from + to) / 2, modifiers);
    moveTo(canvas, to, modifiers);
}

void cToolTest::drag(cCanvas* canvas, const QPoint& from, const QPoint& to,
                     Qt::KeyboardModifiers modifiers) {
    dragTo(canvas, from, to, modifiers);
    release(canvas, to, modifiers);
}

void cToolTest::key(cCanvas* canvas, int code, Qt::KeyboardModifiers modifiers) {
    focus(canvas);
    QTest::keyClick(canvas, Qt::Key(code), modifiers);
    QApplication::processEvents();
}

void cToolTest::expectBounds(const float* mins, const float* maxs,
                             std::initializer_list<float> wantMins,
                             std::initializer_list<float> wantMaxs) const {
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(double(mins[i]), double(wantMins.begin()[i]), BOUNDS_TOLERANCE) << "mins " << i;
        EXPECT_NEAR(double(maxs[i]), double(wantMaxs.begin()[i]), BOUNDS_TOLERANCE) << "maxs " << i;
    }
}

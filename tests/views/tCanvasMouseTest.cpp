// SPDX-License-Identifier: MIT
// Which events of a view reach the tool, and what the view answers itself.
#include "views/tViewFixture.h"

#include "support/tPatience.h"
#include "views/tGLState.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStringList>
#include <QtTest/QTest>
#include <cstdlib>

// Writes down what it is asked; takes what it is told to take.
class cRecordingTool : public cTool {
public:
    bool setCursor(cCanvas* canvas) override {
        canvas->setCursor(Qt::CrossCursor);
        return true;
    }
    bool contextMenu(cCanvas*, int, int, const QPoint&) override { return note("menu"); }
    bool keyPress(cCanvas*, int key, Qt::KeyboardModifiers) override { return note("key %d", key); }
    bool mousePress(cCanvas*, int x, int y, int button, Qt::KeyboardModifiers) override {
        return note("press %d %d %d", x, y, button) && takesPresses;
    }
    bool mouseRelease(cCanvas*, int, int, int button, Qt::KeyboardModifiers) override {
        return note("release %d", button);
    }
    bool mouseMove(cCanvas*, int x, int, Qt::MouseButtons, Qt::KeyboardModifiers) override {
        return note("move %d", x) && takesMoves;
    }

    template<class... T> bool note(const char* format, T... values) {
        notes += QString::asprintf(format, values...);
        return true;
    }
    QStringList taken() {
        QStringList result;
        result.swap(notes);
        return result;
    }

    QStringList notes;
    bool takesMoves = false;
    bool takesPresses = false;
};

static QStringList calls(std::initializer_list<const char*> names) {
    QStringList list;
    for (const char* name : names)
        list << QString::fromLatin1(name);
    return list;
}

class CanvasMouseTest : public ViewFixture {
protected:
    void SetUp() override {
        canvas = openCanvas(VIEW_TOP);
        canvas->zoomTo(1);
        viewHost.currentTool = &tool;
        QApplication::processEvents();
        tool.taken();
    }
    void TearDown() override { viewHost.currentTool = nullptr; }

    void mouse(QEvent::Type type, int x, int y, Qt::MouseButton button, Qt::MouseButtons held) {
        const QPoint at(x, y);
        QMouseEvent event(type, at, canvas->mapToGlobal(at), button, held, Qt::NoModifier);
        QApplication::sendEvent(canvas, &event);
    }
    void press(int x, int y, Qt::MouseButton button) {
        mouse(QEvent::MouseButtonPress, x, y, button, button);
    }
    void release(int x, int y, Qt::MouseButton button) {
        mouse(QEvent::MouseButtonRelease, x, y, button, Qt::NoButton);
    }
    void move(int x, int y, Qt::MouseButtons held = Qt::NoButton) {
        mouse(QEvent::MouseMove, x, y, Qt::NoButton, held);
    }

    cRecordingTool tool;
    cCanvas* canvas = nullptr;
};

TEST_F(CanvasMouseTest, buttonsGoToTheToolByNumber) {
    press(200, 150, Qt::LeftButton);
    EXPECT_EQ(tool.taken(), calls({"press 200 150 1"}));
    canvas->leftDown = true;
    release(200, 150, Qt::LeftButton);
    EXPECT_EQ(tool.taken(), calls({"release 1"}));
    EXPECT_FALSE(canvas->leftDown);
    EXPECT_TRUE(canvas->cameraMoved);
    press(210, 150, Qt::RightButton);
    EXPECT_EQ(tool.taken(), calls({"press 210 150 2", "menu"}));
    tool.takesPresses = true;
    press(210, 150, Qt::RightButton);
    EXPECT_EQ(tool.taken(), calls({"press 210 150 2"})) << "no menu then";
}

TEST_F(CanvasMouseTest, captionAndSpaceKeepPressesFromTheTool) {
    move(3, 3);
    EXPECT_TRUE(canvas->captionHover);
    EXPECT_EQ(canvas->cursor().shape(), Qt::ArrowCursor);
    tool.taken();
    press(3, 3, Qt::LeftButton);
    EXPECT_TRUE(tool.taken().isEmpty());
    move(200, 150);
    EXPECT_FALSE(canvas->captionHover);
    EXPECT_EQ(canvas->cursor().shape(), Qt::CrossCursor);
    canvas->spaceLook = true;
    tool.taken();
    press(200, 150, Qt::LeftButton);
    EXPECT_TRUE(tool.taken().isEmpty());
}

TEST_F(CanvasMouseTest, movesShowTheSnappedPlaceAndActivateInTheActiveWindowOnly) {
    viewHost.setActiveCanvas(nullptr);
    viewHost.windowIsActive = false;
    move(100, 100);
    EXPECT_EQ(viewHost.activeCanvas, nullptr);
    EXPECT_TRUE(tool.taken().isEmpty());
    viewHost.windowIsActive = true;
    host.gridSize = 32;
    move(240, canvas->height() / 2 + 70);
    EXPECT_EQ(viewHost.activeCanvas, canvas);
    EXPECT_EQ(tool.taken(), calls({"move 240"}));
    EXPECT_EQ(host.panes[3], QStringLiteral("@32, -64"));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(canvas, &leave);
    EXPECT_EQ(host.panes[3], QString());
}

TEST_F(CanvasMouseTest, middleButtonDragsTheView) {
    const int x = canvas->centerX, y = canvas->centerY;
    move(150, 120, Qt::MiddleButton);
    EXPECT_TRUE(canvas->middleDown);
    EXPECT_EQ(canvas->cursor().shape(), Qt::BlankCursor);
    EXPECT_FLOAT_EQ(canvas->offsetX, 0);
    move(x + 10, y - 4, Qt::MiddleButton);
    EXPECT_FLOAT_EQ(canvas->offsetX, -20);
    EXPECT_FLOAT_EQ(canvas->offsetY, 8);
    release(x, y, Qt::MiddleButton);
    EXPECT_FALSE(canvas->middleDown);
    EXPECT_NE(canvas->cursor().shape(), Qt::BlankCursor);
    tool.takesMoves = true;
    move(150, 120, Qt::MiddleButton);
    EXPECT_FALSE(canvas->middleDown) << "a move that the tool took pans nothing";
}

// Under a window scale positions are rounded, other ones in the view than on the screen.
TEST_F(CanvasMouseTest, theEchoOfAWarpIsNoMoveWhereverTheWindowStands) {
    const auto mouseIsNear = [this](int x, int y) {
        return std::abs(canvas->mouseX - x) <= 1 && std::abs(canvas->mouseY - y) <= 1;
    };
    int aside = 0; // a mouse at rest under a window that the manager moves sends nothing
    const auto goToCorner = [&] {
        aside ^= 1;
        QCursor::setPos(canvas->mapToGlobal(QPoint(20 + aside, 60)));
        return mouseIsNear(20, 60);
    };
    for (const int place : {100, 131, 162, 193}) {
        canvas->window()->move(place, place);
        ASSERT_TRUE(QTest::qWaitFor(goToCorner, PATIENCE));
        canvas->warpCursorToCenter();
        ASSERT_TRUE(QTest::qWaitFor([&] { return mouseIsNear(canvas->centerX, canvas->centerY); },
                                    PATIENCE));
        EXPECT_TRUE(canvas->movedSinceWarp().isNull()) << place;
    }
}

TEST_F(CanvasMouseTest, keysReachTheToolWhateverTheViewDidWithThem) {
    for (const int key : {Qt::Key_6, Qt::Key_Left, Qt::Key_Tab, Qt::Key_Escape})
        pressKey(canvas, key);
    EXPECT_EQ(tool.taken().size(), 4);
    QKeyEvent repeatedArrow(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier, QString(), true);
    QKeyEvent repeatedDigit(QEvent::KeyPress, Qt::Key_8, Qt::NoModifier, QString(), true);
    const float offset = canvas->offsetX, zoom = canvas->zoom;
    QApplication::sendEvent(canvas, &repeatedArrow);
    QApplication::sendEvent(canvas, &repeatedDigit);
    EXPECT_FLOAT_EQ(canvas->offsetX, offset - 64);
    EXPECT_FLOAT_EQ(canvas->zoom, zoom);
    EXPECT_TRUE(tool.taken().isEmpty());
}

TEST_F(CanvasMouseTest, cameraReleaseEndsMotionAndSpaceLook) {
    canvas->setViewType(VIEW_CAMERA);
    pressKey(canvas, Qt::Key_P);
    EXPECT_FALSE(canvas->cameraMoved);
    for (const int key : {int(Qt::Key_W), 1067, int(Qt::Key_Up)}) {
        canvas->cameraMoved = false;
        pressKey(canvas, key);
        EXPECT_TRUE(canvas->cameraMoved) << key;
    }
    QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
    QApplication::sendEvent(canvas, &space);
    EXPECT_TRUE(canvas->spaceLook);
    pressKey(canvas, Qt::Key_Space);
    EXPECT_FALSE(canvas->spaceLook);
}

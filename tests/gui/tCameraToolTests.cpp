// SPDX-License-Identifier: MIT
// The two temporary tools: flight by mouse drags, zoom by clicks.
#include "gui/tToolTest.h"

#include <QCursor>

class CameraToolTest : public cToolTest {
protected:
    void SetUp() override {
        cToolTest::SetUp();
        camera = view(VIEW_CAMERA);
        window->EnergySavingMode = true; // no timer redraws in between
        focus(camera);
    }
    QPoint center() const { return QPoint(camera->centerX, camera->centerY); }
    // A drag step: the pointer stands so far from the view's centre.
    void step(int dx, int dy) { moveTo(camera, center() + QPoint(dx, dy)); }
    void expectOrigin(float x, float y, float z) const {
        EXPECT_NEAR(camera->origin[0], x, 0.01f);
        EXPECT_NEAR(camera->origin[1], y, 0.01f);
        EXPECT_NEAR(camera->origin[2], z, 0.01f);
    }
    cCanvas* camera = nullptr;
};

TEST_F(CameraToolTest, theLeftButtonLooksAfterAFirstMoveThatCentresThePointer) {
    window->toolCamera();
    window->Sensitivity = 10;
    press(camera, center() + QPoint(40, 30));
    step(50, 30);
    EXPECT_TRUE(camera->leftDown);
    EXPECT_EQ(camera->cursor().shape(), Qt::BlankCursor);
    EXPECT_FLOAT_EQ(camera->angles[1], 0);
    settle();
    EXPECT_EQ(QCursor::pos(), camera->mapToGlobal(center()));
    step(20, 8);
    EXPECT_FLOAT_EQ(camera->angles[1], -10) << "yaw";
    EXPECT_FLOAT_EQ(camera->angles[0], -4) << "pitch";
    window->MouseReverseY = true;
    step(0, 8);
    EXPECT_FLOAT_EQ(camera->angles[0], 0);
    release(camera, center());
    EXPECT_FALSE(camera->leftDown);
    EXPECT_EQ(camera->cursor().shape(), Qt::ArrowCursor);
    EXPECT_FALSE(map().history->canUndo());
    expectOrigin(-16, 0, 64);
}

TEST_F(CameraToolTest, theRightButtonMovesAndBothGoForward) {
    window->toolCamera();
    press(camera, center(), {}, Qt::RightButton);
    step(1, 0);
    step(10, -6); // right is -y
    expectOrigin(-16, -20, 76);
    press(camera, center());
    step(2, 2); // the second button's first move
    expectOrigin(-16, -20, 76);
    step(0, -25);
    expectOrigin(34, -20, 76);
    release(camera, center());
    step(0, -2);
    expectOrigin(34, -20, 80); // back to the right button alone
    release(camera, center(), {}, Qt::RightButton);
    EXPECT_FLOAT_EQ(camera->angles[1], 0);
}

TEST_F(CameraToolTest, freeLookAndTheSpaceBarServeOtherTools) {
    addBrush({100, -50, 0}, {150, 50, 100});
    objectsAdded();
    key(camera, Qt::Key_Z);
    EXPECT_EQ(camera->cursor().shape(), Qt::BlankCursor);
    step(12, 0);
    EXPECT_FLOAT_EQ(camera->angles[1], -6);
    key(camera, Qt::Key_Z);
    float yaw = -6;
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
        QTest::keyPress(camera, Qt::Key_Space);
        step(12, 4);
        EXPECT_FLOAT_EQ(camera->angles[1], yaw) << "no look without a button";
        press(camera, center(), {}, button);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        step(1, 0);
        step(12, 0);
        EXPECT_FLOAT_EQ(camera->angles[1], yaw = -12) << "the right button flies";
        release(camera, center(), {}, button);
        QTest::keyRelease(camera, Qt::Key_Space);
        EXPECT_FALSE(camera->spaceLook);
        EXPECT_EQ(map().hasSelection(), button == Qt::RightButton) << "the press is not the tool's";
        EXPECT_EQ(camera->origin[1] != 0, button == Qt::RightButton);
        map().selectAll(); // which the right button would have a menu for
    }
}

// ---- Magnify

TEST_F(CameraToolTest, magnifiesByClicks) {
    window->toolMagnify();
    const QPoint at = pixel(top, 40, 20);
    moveTo(top, at);
    EXPECT_EQ(top->cursor().hotSpot(), QPoint(9, 9));
    click(top, at);
    EXPECT_FLOAT_EQ(top->zoom, 2);
    EXPECT_LE((pixel(top, 40, 20) - at).manhattanLength(), 2) << "the point under the mouse stays";
    EXPECT_FLOAT_EQ(view(VIEW_FRONT)->zoom, 1);
    EXPECT_EQ(menuAt(top, at), QString());
    EXPECT_FLOAT_EQ(top->zoom, 1);
    click(top, at, Qt::ControlModifier);
    EXPECT_FLOAT_EQ(view(VIEW_FRONT)->zoom, 2);
    EXPECT_FLOAT_EQ(view(VIEW_SIDE)->zoom, 2);
    for (int i = 0; i < 12; ++i)
        click(top, at);
    EXPECT_FLOAT_EQ(top->zoom, 256);
    click(camera, center());
    EXPECT_FLOAT_EQ(top->zoom, 256);
}

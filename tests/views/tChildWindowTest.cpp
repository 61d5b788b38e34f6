// SPDX-License-Identifier: MIT
// The layout of a document window, and its close.
#include "views/tViewFixture.h"

#include <QApplication>
#include <QScrollBar>
#include <QSplitter>

class ChildWindowTest : public ViewFixture {
protected:
    void SetUp() override { window = openWindow(-1, 800, 600); }
    cChildWindow* window;
};

TEST_F(ChildWindowTest, fourViewsStandInTheirOrderAndShareTheSpace) {
    const int types[] = {VIEW_CAMERA, VIEW_TOP, VIEW_SIDE, VIEW_FRONT};
    ASSERT_EQ(window->canvases.size(), 4u);
    for (size_t i = 0; i < 4; ++i)
        EXPECT_EQ(window->canvases[i]->viewType, types[i]);
    const int column = (window->width() - window->splitterTop->handleWidth()) / 2;
    EXPECT_NEAR(window->splitterTop->sizes()[0], column, 1);
    EXPECT_NEAR(window->splitterBottom->sizes()[1], column, 1);
    EXPECT_EQ(window->findCanvas(-1), window->canvases[0]);
    EXPECT_EQ(window->findCanvas(2), window->canvases[2]) << "the first that shows z";
    EXPECT_EQ(document.findCanvas(0), window->canvases[1]);
    const float place[3] = {32, -64, 96};
    document.centerViews(place);
    EXPECT_NEAR(window->canvases[1]->offsetX, 32 * window->canvases[1]->zoom, 1);
    EXPECT_NEAR(window->canvases[3]->offsetY, -96 * window->canvases[3]->zoom, 1);
}

TEST_F(ChildWindowTest, eachViewMayFillTheWindowAndGoBack) {
    const int w = window->width() - window->splitterTop->handleWidth();
    const int h = window->height() - window->splitterVertical->handleWidth();
    for (int i = 0; i < 4; ++i) {
        cCanvas* canvas = window->canvases[size_t(i)];
        pressKey(canvas, i % 2 ? int(Qt::Key_Z) : 1071, Qt::ShiftModifier);
        EXPECT_EQ(window->maximizedCanvas, canvas);
        const QSplitter* row = i < 2 ? window->splitterTop : window->splitterBottom;
        EXPECT_EQ(row->sizes()[i % 2], w) << i;
        EXPECT_EQ(window->splitterVertical->sizes()[i / 2], h) << i;
        for (const cCanvas* other : window->canvases)
            EXPECT_EQ(!other->horizontalBar()->isHidden(), other == canvas && i > 0);
        if (i == 2)
            window->autosize(); // ends it, too
        else
            window->toggleMaximized(canvas);
        EXPECT_EQ(window->maximizedCanvas, nullptr);
        EXPECT_NEAR(window->splitterTop->sizes()[0], w / 2, 1);
        for (size_t k = 0; k < 4; ++k)
            EXPECT_EQ(window->canvases[k]->horizontalBar()->isHidden(), k == 0) << i;
    }
}

TEST_F(ChildWindowTest, rowsKeepTheirColumnsAligned) {
    window->splitterTop->setSizes({200, 590});
    emit window->splitterTop->splitterMoved(200, 1);
    EXPECT_EQ(window->splitterBottom->sizes(), window->splitterTop->sizes());
    window->splitterBottom->setSizes({500, 290});
    emit window->splitterBottom->splitterMoved(500, 1);
    EXPECT_EQ(window->splitterTop->sizes(), window->splitterBottom->sizes());
}

TEST_F(ChildWindowTest, scrollBarSettingHidesAll) {
    EXPECT_TRUE(window->canvases[0]->horizontalBar()->isHidden()) << "never on the camera";
    host.EnableScrollbars = false;
    document.applyScrollbarSetting();
    for (const cCanvas* canvas : window->canvases)
        EXPECT_TRUE(canvas->verticalBar()->isHidden());
}

TEST_F(ChildWindowTest, oneViewWindowNeitherMaximizesNorSizes) {
    cChildWindow* single = openWindow(VIEW_SIDE, 300, 200);
    single->toggleMaximized(single->firstCanvas());
    single->autosize();
    EXPECT_EQ(single->maximizedCanvas, nullptr);
}

TEST_F(ChildWindowTest, closeAsksTheDocumentUnlessTheProgramCloses) {
    document.agreesToClose = false;
    EXPECT_FALSE(window->close());
    EXPECT_EQ(window->project, &document);
    window->closing = true;
    EXPECT_TRUE(window->close());
    EXPECT_EQ(window->project, nullptr);
    EXPECT_TRUE(document.windows.isEmpty());
    window->canvases[0]->requestRedraw(true); // without a document it paints nothing
    delete window;
}

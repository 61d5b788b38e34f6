// SPDX-License-Identifier: MIT
// What the views show and what a click finds, read back from real pictures.
#include "views/tMapPainter.h"
#include "views/tViewFixture.h"

#include "document/tBrush.h"
#include "document/tCullTree.h"
#include "document/tEntity.h"
#include "document/tEntityClass.h"
#include "document/tFace.h"
#include "document/tGroup.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "pluginhost/tRenderServices.h"
#include "support/tColors.h"
#include "support/tVec.h"
#include "views/tGLState.h"
#include "views/tModelStream.h"
#include "views/tOverlay.h"

#include <cstring>
#include <functional>
#include <random>

class DrawTest : public ViewFixture {
protected:
    void SetUp() override {
        host.DrawVertices = false;
        host.setColor(COLOR_2D_BACKGROUND, 0, 0, 0);
        host.setColor(COLOR_3D_BACKGROUND, 0, 0, 0);
        host.setColor(COLOR_SELECTED_FILL, 255, 0, 0);
        host.setColor(COLOR_SELECTED_LINE, 255, 0, 0);
    }

    // A pixel a unit.
    cCanvas* openTop(int type = VIEW_TOP) {
        cCanvas* canvas = openCanvas(type);
        canvas->zoomTo(1);
        return canvas;
    }

    cCanvas* openCamera(int mode, float x, float y, float z) {
        cCanvas* canvas = openCanvas(VIEW_CAMERA);
        canvas->setViewType(VIEW_CAMERA, mode);
        moveCamera(canvas, x, y, z);
        return canvas;
    }

    static void moveCamera(cCanvas* canvas, float x, float y, float z) {
        const float origin[3] = {x, y, z};
        canvas->setCameraOrigin(origin);
    }

    static void paint(cBrushData* brush, uint8_t r, uint8_t g, uint8_t b) {
        const uint8_t color[4] = {r, g, b, 255};
        memcpy(brush->brush->drawColor, color, 4);
        for (cFaceData* face : facesOf(brush))
            memcpy(face->face->color, color, 4);
    }

    // The pixel of a world point.
    static QPoint pixelOf(cCanvas* canvas, float x, float y, float z) {
        const float point[3] = {x, y, z};
        float pixel[2];
        EXPECT_TRUE(canvas->projectToScreen(point, pixel));
        return {int(std::floor(pixel[0])), int(std::floor(pixel[1]))};
    }

    int pickAt(cCanvas* canvas, float x, float y, float z, int flags = PICK_ALL) {
        const QPoint p = pixelOf(canvas, x, y, z);
        return canvas->pickObject(p.x(), p.y(), flags);
    }

    // Pixels that differ in colour.
    static int countDifferent(const QImage& a, const QImage& b) {
        int count = 0;
        for (int y = 0; y < a.height(); ++y)
            for (int x = 0; x < a.width(); ++x)
                count += (a.pixel(x, y) & 0xffffff) != (b.pixel(x, y) & 0xffffff);
        return count;
    }

    // The pixel of a 5 by 5 field that has the most of a channel: lines may lie a pixel aside.
    static QRgb most(const QImage& image, const QPoint& p, int (*channel)(QRgb)) {
        QRgb best = qRgb(0, 0, 0);
        for (int dy = -2; dy <= 2; ++dy)
            for (int dx = -2; dx <= 2; ++dx) {
                const QRgb c = image.pixel(p + QPoint(dx, dy));
                if (channel(c) > channel(best))
                    best = c;
            }
        return best;
    }

    // The greenest pixel about a world point in a fresh frame.
    QRgb greenestAt(cCanvas* canvas, float x, float y, float z) {
        return most(picture(canvas), pixelOf(canvas, x, y, z), qGreen);
    }
    int greenAt(cCanvas* canvas, float x, float y, float z) {
        return qGreen(greenestAt(canvas, x, y, z));
    }
};

// ---- Picks

TEST_F(DrawTest, twoDimensionalPickFindsBrushLinesEntityAndNothing) {
    cBrushData* a = addBox(0, 0, 0, 64, 64, 64);
    cBrushData* b = addBox(100, 0, 0, 164, 64, 64);
    cEntityData* light = addPointEntity(-100, -100, 0);
    cCanvas* canvas = openTop();
    EXPECT_EQ(pickAt(canvas, 0, 32, 0), a->brush->pickId);
    EXPECT_EQ(pickAt(canvas, 164, 32, 0), b->brush->pickId);
    EXPECT_EQ(pickAt(canvas, -108, -100, 0), light->entity->pickId);
    EXPECT_EQ(pickAt(canvas, -108, -100, 0, PICK_BRUSHES), 0);
    EXPECT_EQ(pickAt(canvas, 32, 20, 0), 0) << "inside a brush there is no line";
    EXPECT_EQ(canvas->pickObject(-1, 5), 0);
    EXPECT_EQ(canvas->pickObject(5, canvas->height()), 0);
    const int own = a->brush->pickId;
    for (const int number : {1, 255, 256, 0x1234, 0x3fedcb, 0x400000}) {
        a->brush->pickId = number;
        EXPECT_EQ(pickAt(canvas, 0, 32, 0), number);
    }
    a->brush->pickId = own;
}

TEST_F(DrawTest, overlappingBrushesPickTheLaterIn2DAndTheNearerIn3D) {
    cBrushData* nearer = addBox(100, -50, -50, 150, 50, 50);
    cBrushData* farther = addBox(200, -50, -50, 250, 50, 50);
    EXPECT_EQ(pickAt(openTop(VIEW_FRONT), 0, 50, 0), farther->brush->pickId);
    const float back[3] = {0, 180, 0};
    for (const int mode : {RM_FILLED, RM_TEXTURED}) {
        cCanvas* camera = openCamera(mode, 0, 0, 0);
        EXPECT_EQ(pickAt(camera, 125, 0, 0), nearer->brush->pickId);
        moveCamera(camera, 350, 0, 0);
        camera->setCameraAngles(back);
        EXPECT_EQ(pickAt(camera, 125, 0, 0), farther->brush->pickId);
    }
}

TEST_F(DrawTest, pickModesGiveGroupEntityBrushOrFace) {
    cEntityData* door = document.map.addEntity("func_door", world->origin, 0);
    const float mins[3] = {100, -50, -50}, maxs[3] = {150, 50, 50};
    cBrushData* panel = addBoxTo(door, mins, maxs);
    cBrushData* wall = addBox(100, 60, -50, 150, 160, 50);
    cGroupData* group = document.map.addGroup();
    document.map.joinGroupBrush(wall, group);
    cCanvas* camera = openCamera(RM_FILLED, 0, 40, 0);
    EXPECT_EQ(pickAt(camera, 100, 0, 0), door->entity->pickId);
    EXPECT_EQ(pickAt(camera, 100, 100, 0), group->group->pickId);
    host.IgnoreGroups = true;
    EXPECT_EQ(pickAt(camera, 100, 0, 0), panel->brush->pickId);
    EXPECT_EQ(pickAt(camera, 100, 100, 0), wall->brush->pickId);
    host.pickingFaces = true;
    const cFaceData* hit = document.map.findFaceByPick(pickAt(camera, 100, 0, 0));
    ASSERT_NE(hit, nullptr);
    EXPECT_EQ(hit->brush, panel);
    EXPECT_FLOAT_EQ(hit->normal[0], -1);
}

TEST_F(DrawTest, hiddenObjectsAreNotPickedAndHandlesOnlyWhenAskedFor) {
    cBrushData* brush = addBox(0, 0, 0, 64, 64, 64);
    cEntityData* item = addPointEntity(-100, 0, 0);
    item->flags |= EF_ITEM;
    cCanvas* canvas = openTop();
    brush->flags |= BF_HIDDEN;
    EXPECT_EQ(pickAt(canvas, 0, 32, 0), 0);
    EXPECT_NE(pickAt(canvas, -108, 0, 0), 0);
    host.HideMask = HM_ITEMS;
    EXPECT_EQ(pickAt(canvas, -108, 0, 0), 0);
    brush->flags &= ~uint32_t(BF_HIDDEN);
    host.HideMask = HM_DETAIL;
    host.mapProfile.detailContentMask = 0x80;
    EXPECT_NE(pickAt(canvas, 0, 32, 0), 0);
    brush->faces->tex.contentFlags = 0x80;
    EXPECT_EQ(pickAt(canvas, 0, 32, 0), 0);

    host.HideMask = 0;
    select(brush);
    EXPECT_EQ(pickAt(canvas, 32, 32, 0), 0);
    host.SelectByHandles = true;
    EXPECT_EQ(pickAt(canvas, 32, 32, 0), brush->brush->pickId);
    EXPECT_EQ(pickAt(canvas, 32, 38, 0), 0) << "the diamond ends 4.25 pixels from the centre";
    host.pickingFaces = true;
    EXPECT_EQ(pickAt(canvas, 32, 32, 0), 0) << "no handles among faces";
}

TEST_F(DrawTest, smoothedViewsPickExactlyToo) {
    host.Antialiasing = true;
    cBrushData* brush = addBox(100, -50, -50, 150, 50, 50);
    brush->brush->pickId = 0x123456;
    cCanvas* camera = openCamera(RM_FILLED, 0, 0, 0);
    if (!camera->hasMultisample)
        GTEST_LOG_(INFO) << "the driver gives no samples";
    EXPECT_GT(qGray(picture(camera).pixel(pixelOf(camera, 100, 10, 10))), 10);
    for (int x = 0; x < camera->width(); x += 7) {
        const int number = camera->pickObject(x, camera->height() / 2);
        EXPECT_TRUE(number == 0 || number == 0x123456) << x;
    }
    EXPECT_EQ(pickAt(camera, 100, 0, 0), 0x123456);
}

// ---- Pictures

TEST_F(DrawTest, selectedBrushOverdrawsWhateverTheOrder) {
    cBrushData* first = addBox(0, 0, 0, 64, 64, 64);
    cBrushData* second = addBox(0, 0, 0, 64, 64, 64);
    host.UseVisgroupColors = false;
    host.setColor(COLOR_BRUSH_DEFAULT, 0, 255, 0);
    cCanvas* canvas = openTop();
    EXPECT_EQ(greenAt(canvas, 0, 20, 0), 255);
    for (cBrushData* brush : {first, second}) {
        select(brush);
        EXPECT_EQ(qRed(most(picture(canvas), pixelOf(canvas, 0, 20, 0), qRed)), 255);
        EXPECT_EQ(greenAt(canvas, 0, 20, 0), 0) << "the unselected line is covered";
        selectedRemove(document.map.data.selectedBrushes, brush);
    }
}

TEST_F(DrawTest, pictureIsTheSameWithAndWithoutCullTree) {
    std::mt19937 random(7);
    const auto place = [&random] { return float(int(random() % 120) - 60) * 32; };
    for (int i = 0; i < 300; ++i) {
        const float x = place(), y = place(), z = place() / 4;
        addBox(x, y, z, x + 29, y + 31, z + 30);
    }
    select(addBox(-1200, -1900, -90, -1100, 1900, -60)); // in many leaves, but drawn once
    addPointEntity(300, 40, 0);
    document.map.buildCullTree();
    cCanvas* camera = openCamera(RM_FILLED, -1500, 0, 200);
    for (const int mode : {RM_WIREFRAME, RM_FILLED}) {
        camera->setViewType(VIEW_CAMERA, mode);
        host.UseCullTree = true;
        const QImage with = picture(camera);
        const cDrawStats withTree = camera->stats;
        host.UseCullTree = false;
        const QImage without = picture(camera);
        EXPECT_EQ(withTree.brushes, camera->stats.brushes) << mode;
        EXPECT_EQ(withTree.faces, camera->stats.faces) << mode;
        QImage black(with.size(), QImage::Format_RGB32);
        black.fill(Qt::black);
        const int lit = countDifferent(with, black);
        EXPECT_GT(lit, 1000) << mode;
        // In wireframe the order decides where two lines of the same depth cross.
        EXPECT_LE(countDifferent(with, without), mode == RM_FILLED ? 0 : lit / 50) << mode;
    }
}

TEST_F(DrawTest, transparentFaceIsDrawnAfterOpaqueOnesBehindIt) {
    cTexture* glass = host.addTexture("glass", 64, 64);
    glass->renderState = GLS_BLEND_ALPHA;
    glass->opacity = 0.5f;
    cBrushData* pane = addBox(100, -50, -50, 110, 50, 50);
    for (cFaceData* face : facesOf(pane))
        face->texture = glass;
    paint(pane, 0, 255, 0);
    paint(addBox(200, -100, -100, 250, 100, 100), 0, 0, 255);
    cCanvas* camera = openCamera(RM_FILLED, 0, 0, 0);
    const QPoint middle = pixelOf(camera, 100, 10, 10);
    for (const bool sorted : {true, false}) {
        host.TransparentSort = sorted;
        const QRgb mixed = picture(camera).pixel(middle);
        EXPECT_GT(qGreen(mixed), 50) << "the pane";
        EXPECT_GT(qBlue(mixed), 50) << "the wall through it";
    }
    host.TextureTransparency = false;
    EXPECT_EQ(qBlue(picture(camera).pixel(middle)), 0) << "opaque again";
}

TEST_F(DrawTest, transparencyOfEntitiesSwitchesAtOnce) {
    static const float mins[3] = {100, -50, -50}, maxs[3] = {110, 50, 50}, origin[3] = {};
    host.mapProfile.flags |= PF_RENDER_KEYS;
    host.EntityTransparency = false; // while it is read
    cEntityData* wall = document.map.addEntity("func_wall", origin, 0);
    addEpairLast(wall, "rendermode", "2");
    addEpairLast(wall, "renderamt", "128");
    addBoxTo(wall, mins, maxs);
    vecSet<uint8_t>(wall->entity->color, 0, 255, 0);
    updateEntity(wall, UM_RENDER_KEYS);
    document.map.finishLoad();
    paint(addBox(200, -100, -100, 250, 100, 100), 0, 0, 255);
    cCanvas* camera = openCamera(RM_FILLED, 0, 0, 0);
    const QPoint middle = pixelOf(camera, 100, 10, 10);
    for (const bool shown : {false, true, false}) {
        host.EntityTransparency = shown;
        EXPECT_EQ(qBlue(picture(camera).pixel(middle)) > 50, shown);
    }
}

TEST_F(DrawTest, cameraTwoUnitsBehindAPlaneStillSeesIt) {
    cBrushData* brush = addBox(0, 0, 0, 64, 64, 64);
    const cFaceData* top = brush->faces;
    while (top->normal[2] != 1)
        top = top->next;
    cViewInfo view;
    view.is3D = true;
    view.renderMode = RM_FILLED;
    view.flags = VF_NODRAW;
    vecSet(view.origin, 0.0f, 0.0f, 62.0f);
    EXPECT_TRUE(isFaceVisible(top, view));
    view.origin[2] = 61.9f;
    EXPECT_FALSE(isFaceVisible(top, view));
    view.renderMode = RM_WIREFRAME;
    EXPECT_TRUE(isFaceVisible(top, view));
    view.is3D = false;
    vecSet(view.forward, -1.0f, 0.0f, 0.0f);
    EXPECT_FALSE(isFaceVisible(top, view)) << "seen edge on";
}

TEST_F(DrawTest, pictureIsKeptUntilSomethingItShowsChanges) {
    addBox(0, 0, 0, 64, 64, 64);
    cCanvas* canvas = openTop();
    canvas->requestRedraw(true);
    const int first = canvas->pictureCount();
    ASSERT_GT(first, 0);
    canvas->requestRedraw(true);
    EXPECT_EQ(canvas->pictureCount(), first) << "a hover costs no walk over the map";
    EXPECT_EQ(canvas->stats.brushes, 1);
    const std::function<void()> changes[] = {
        [&] { addBox(100, 0, 0, 164, 64, 64); },
        [&] { canvas->zoomTo(2); },
        [&] { canvas->pan(10, 0); },
        [&] { host.setColor(COLOR_BRUSH_HANDLE, 9, 9, 9); },
        [&] { host.DrawVertices = true; },
        [&] { host.HideMask = HM_ITEMS; },
        [&] { cCanvas::invalidatePictures(); },
        [&] { canvas->setViewType(VIEW_SIDE); },
    };
    int expected = first;
    for (const auto& change : changes) {
        change();
        canvas->requestRedraw(true);
        EXPECT_EQ(canvas->pictureCount(), ++expected);
    }
    const uint32_t frame = canvas->viewInfo.frame;
    const cBusy busy;
    canvas->requestRedraw(true);
    canvas->runFrame();
    EXPECT_EQ(canvas->viewInfo.frame, frame) << "nothing is painted while busy";
}

TEST_F(DrawTest, keptPictureLooksLikeOneDrawnDirectly) {
    for (int i = 0; i < 12; ++i)
        addBox(float(100 + i * 60), float(i * 37 % 200 - 100), -30, float(140 + i * 60),
               float(i * 37 % 200 - 60), 30);
    select(addBox(90, -20, -80, 130, 30, -40));
    cCanvas* canvas = openCamera(RM_FILLED, 0, 0, 20);
    const auto difference = [&] {
        const QImage kept = picture(canvas);
        cCanvas::setKeepPictures(false);
        const QImage direct = picture(canvas);
        cCanvas::setKeepPictures(true);
        return countDifferent(kept, direct);
    };
    // A window counts its rows the other way round, so the last pixel of a line may differ.
    const int lineEnds = 12;
    EXPECT_EQ(difference(), 0);
    canvas->setViewType(VIEW_CAMERA, RM_WIREFRAME);
    EXPECT_LE(difference(), lineEnds);
    canvas->setViewType(VIEW_TOP);
    EXPECT_LE(difference(), lineEnds);
}

TEST_F(DrawTest, toolsDrawBehindAndBeforeTheMapByDepth) {
    class cMarkTool : public cTool {
    public:
        void draw(cCanvas*, const cViewInfo&, cOverlay& overlay) override {
            const float nearMins[3] = {50, -5, -5}, nearMaxs[3] = {55, 5, 5};
            const float farMins[3] = {300, -200, -5}, farMaxs[3] = {305, 200, 5};
            static constexpr uint8_t green[4] = {0, 255, 0, 255};
            overlay.boxFill(nearMins, nearMaxs, green);
            overlay.boxFill(farMins, farMaxs, green);
        }
    } tool;
    paint(addBox(100, -50, -50, 150, 50, 50), 0, 0, 255);
    cCanvas* canvas = openCamera(RM_FILLED, 0, 0, 0);
    viewHost.currentTool = &tool;
    const QImage image = picture(canvas);
    viewHost.currentTool = nullptr;
    EXPECT_EQ(qGreen(image.pixel(pixelOf(canvas, 50, 0, 0))), 255) << "before the wall";
    EXPECT_EQ(qGreen(image.pixel(pixelOf(canvas, 100, 40, 0))), 0) << "behind it";
    EXPECT_EQ(qGreen(image.pixel(pixelOf(canvas, 300, 190, 0))), 255) << "beside it";
}

TEST_F(DrawTest, anOverlayShowsTheLaterShapeOverTheEarlierOne) {
    class cLayersTool : public cTool {
    public:
        void draw(cCanvas*, const cViewInfo&, cOverlay& overlay) override {
            static constexpr uint8_t red[4] = {255, 0, 0, 255}, green[4] = {0, 255, 0, 255},
                                     half[4] = {0, 0, 255, 128};
            static constexpr float low[3][3] = {{-90, -90, 0}, {90, -90, 0}, {0, 90, 0}},
                                   left[3][3] = {{-95, -60, 0}, {-30, -60, 0}, {-30, 60, 0}},
                                   from[3] = {-120, -40, 0}, to[3] = {120, -40, 0};
            overlay.polygon(low, 3, red);
            overlay.line(from, to, {green, 5});
            overlay.polygon(left, 3, red);
            overlay.polygon(left, 3, half, FILL_BLENDED);
            overlay.polygon(low, 3, half);
            overlay.square(from, 20, stippled(green));
            overlay.line(from, to, {green, 5});
        }
    } tool;
    cCanvas* canvas = openTop();
    viewHost.currentTool = &tool;
    const QImage image = picture(canvas);
    viewHost.currentTool = nullptr;
    const struct {
        float x, y;
        QRgb color;
    } cases[] = {
        {0, 0, qRgb(0, 0, 255)},   {0, -38, qRgb(0, 255, 0)},   {0, -42, qRgb(0, 255, 0)},
        {0, -50, qRgb(0, 0, 255)}, {-40, -57, qRgb(0, 0, 255)}, {-32, 50, qRgb(127, 0, 128)},
    };
    for (const auto& c : cases)
        EXPECT_EQ(image.pixel(pixelOf(canvas, c.x, c.y, 0)), c.color) << c.x << " " << c.y;
}

TEST_F(DrawTest, connectionsJoinTargetToItsName) {
    cEntityData* button = addPointEntity(-100, 0, 0);
    cEntityData* lamp = addPointEntity(100, 0, 0);
    addEpairLast(button, "target", "+lamp1");
    addEpairLast(lamp, "targetname", "lamp1");
    const uint8_t green[4] = {0, 255, 0, 255};
    memcpy(lamp->entity->color, green, 4);
    cCanvas* canvas = openTop();
    EXPECT_EQ(greenAt(canvas, 30, 0, 0), 0);
    host.ShowConnections = true;
    EXPECT_EQ(greenAt(canvas, 30, 0, 0), 0) << "another name";
    strcpy(host.mapProfile.targetPrefixCharacters, "+-");
    document.map.markChanged();
    EXPECT_EQ(greenestAt(canvas, 30, 0, 0), qRgb(0, 255, 0));
}

TEST_F(DrawTest, cordonIsAnOutlineIn2DAndABoxBetweenTwoSetCornersIn3D) {
    host.setColor(COLOR_CORDON_LINE, 0, 255, 0);
    host.EnableCordon = true;
    cMapData& shown = document.map.data;
    vecSet(shown.cordonMins, 0.0f, 0.0f, 0.0f);
    vecSet(shown.cordonMaxs, 100.0f, 80.0f, 60.0f);
    cCanvas* canvas = openTop();
    EXPECT_EQ(greenestAt(canvas, 100, 40, 0), qRgb(0, 255, 0)) << "a corner may be 0";
    EXPECT_EQ(greenAt(canvas, 50, 40, 0), 0) << "not filled";
    canvas->setViewType(VIEW_CAMERA, RM_FILLED);
    moveCamera(canvas, -200, 0, 30);
    const QPoint side = pixelOf(canvas, 0, 10, 40);
    EXPECT_EQ(qGreen(picture(canvas).pixel(side)), 0);
    vecSet(shown.cordonMins, 0.0f, -80.0f, 5.0f);
    EXPECT_NEAR(qGreen(picture(canvas).pixel(side)), 127, 2) << "half seen through";
    EXPECT_EQ(greenAt(canvas, 0, 10, 60), 255) << "an edge";
    class cCordonTool : public cTool {
    } tool;
    tool.setId(TOOL_CORDON);
    viewHost.currentTool = &tool;
    EXPECT_EQ(qGreen(picture(canvas).pixel(side)), 0) << "its tool draws it";
    viewHost.currentTool = nullptr;
}

TEST_F(DrawTest, cameraMarkerPointsWhereTheCameraLooks) {
    cChildWindow* window = openWindow(-1, 900, 700);
    host.DrawCamera = true;
    host.setColor(COLOR_2D_CAMERA, 0, 255, 0);
    const float place[3] = {64, 32, 0}, angles[3] = {-45, 135, 0};
    document.setCameraOrigin(place);
    document.setCameraAngles(angles);
    const struct {
        float zoom;
        size_t view;
        float dh, dv;
        bool lit;
        const char* why;
    } cases[] = {
        {1, 1, -40, 0, true, "yaw 135 plus 45"},
        {1, 1, 0, 40, true, "yaw 135 minus 45"},
        {1, 1, 40, 0, false, "behind it"},
        {1, 1, -56, 0, false, "48 pixels long"},
        {1, 2, 40, 0, true, "pitch -45 plus 45"},
        {1, 2, 0, -40, true, "pitch -45 minus 45"},
        {1, 1, 12, 2, true, "the diamond"},
        {2, 1, -20, 0, true, "of the same size in pixels"},
        {2, 1, -28, 0, false, "48 pixels long"},
    };
    for (const auto& c : cases) {
        document.setZoomAll(c.zoom);
        cCanvas* canvas = window->canvases[c.view];
        float p[3];
        vecCopy(place, p);
        p[canvas->axisH] += c.dh;
        p[canvas->axisV] += c.dv;
        EXPECT_EQ(greenAt(canvas, p[0], p[1], p[2]) == 255, c.lit) << c.why;
    }
}

TEST_F(DrawTest, gridOnFacesOnlyNearTheCamera) {
    addBox(100, -100, -100, 150, 100, 100);
    host.gridSize = 32;
    cCanvas* canvas = openCamera(RM_FILLED, 0, 0, 10);
    const auto isLit = [&] { return greenAt(canvas, 99.75f, 32, 15) == 255; };
    EXPECT_FALSE(isLit());
    host.EnableGrid3D = true;
    EXPECT_TRUE(isLit()) << "a line of constant y";
    moveCamera(canvas, -600, 0, 10);
    EXPECT_FALSE(isLit()) << "further off than 16 grid steps";
}

TEST_F(DrawTest, gridShowsMinorMajorAndAxisLines) {
    host.EnableGrid2D = true;
    host.gridSize = 32;
    host.setColor(COLOR_2D_GRID_AXIS, 255, 0, 0);
    host.setColor(COLOR_2D_GRID_MAJOR, 0, 255, 0);
    host.setColor(COLOR_2D_GRID_MINOR, 0, 0, 255);
    cCanvas* canvas = openTop();
    const auto lineAt = [&](float x) {
        return most(picture(canvas), pixelOf(canvas, x, 16, 0), qGray);
    };
    EXPECT_EQ(lineAt(0), qRgb(255, 0, 0));
    EXPECT_EQ(lineAt(32), qRgb(0, 0, 255));
    canvas->setOffset(256, 0);
    EXPECT_EQ(lineAt(256), qRgb(0, 255, 0));
    EXPECT_EQ(lineAt(240), qRgb(0, 0, 0));
    host.EnableGrid2D = false;
    EXPECT_EQ(lineAt(256), qRgb(0, 0, 0));
}

TEST_F(DrawTest, stippledAndDarkerWhileMoving) {
    cBrushData* brush = addBox(0, 0, 0, 120, 120, 64);
    host.setColor(COLOR_SELECTED_FILL, 0, 200, 0);
    document.map.select(brush);
    cCanvas* canvas = openTop();
    // How many of 40 pixels along an edge are lit, and the brightest.
    const auto edge = [&] {
        const QImage image = picture(canvas);
        int lit = 0, brightest = 0;
        for (int i = 0; i < 40; ++i) {
            const QPoint at = pixelOf(canvas, 0, 10, 0) + QPoint(0, -i);
            int green = 0; // the line may lie a pixel aside, or be two wide
            for (int dx = -1; dx <= 1; ++dx)
                green = std::max(green, qGreen(image.pixel(at + QPoint(dx, 0))));
            lit += green > 50;
            brightest = std::max(brightest, green);
        }
        return std::make_pair(lit, brightest);
    };
    EXPECT_EQ(edge(), std::make_pair(40, 200));
    brush->flags |= BF_MOVING;
    noteChange(brush);
    document.map.markChanged();
    const auto moving = edge();
    EXPECT_EQ(moving.second, 150);
    EXPECT_LT(moving.first, 40);
    EXPECT_GT(moving.first, 10);
}

TEST_F(DrawTest, pointfileAndPortalsLieOverTheMap) {
    cMap& map = document.map;
    map.points = static_cast<cPathPoint*>(Mem_Alloc(2 * sizeof(cPathPoint)));
    map.points[0] = {{255, 0, 0, 255}, {-100, 0, 0}};
    map.points[1] = {{0, 0, 255, 255}, {100, 0, 0}};
    map.pointCount = 2;
    cCanvas* top = openTop();
    const QImage image = picture(top);
    EXPECT_GT(qRed(image.pixel(pixelOf(top, -80, 0, 0))), 200);
    EXPECT_GT(qBlue(image.pixel(pixelOf(top, 80, 0, 0))), 200);
    map.portals = static_cast<cPortal*>(Mem_Alloc(sizeof(cPortal)));
    map.portals->vertexCount = 3;
    const float corners[3][3] = {{100, -50, -50}, {100, 50, -50}, {100, 0, 50}};
    memcpy(map.portals->points, corners, sizeof corners);
    cCanvas* camera = openCamera(RM_FILLED, 0, 0, 0);
    EXPECT_EQ(picture(camera).pixel(pixelOf(camera, 100, 20, -50)), qRgb(0, 0, 255));
}

static int countOf(const QImage& image, QRgb color) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += (image.pixel(x, y) & 0xffffff) == (color & 0xffffff);
    return count;
}

TEST_F(DrawTest, aSelectedFaceSeenNearlyEdgeOnStaysBehindTheWall) {
    host.setColor(COLOR_SELECTED_LINE, 0, 255, 0);
    addBox(100, -200, -200, 110, 200, 200);
    select(addBox(150, 0, -40, 400, 40, 40));
    cCanvas* camera = openCamera(RM_FILLED, 0, 0, 0);
    for (const float y : {0.0f, 0.01f, -0.01f, -0.1f, -1.0f, -4.0f}) {
        moveCamera(camera, 0, y, 0);
        EXPECT_EQ(countOf(picture(camera), qRgb(0, 255, 0)), 0) << y;
    }
}

// The edges that it shares with floor and side walls show all the way.
TEST_F(DrawTest, aSelectedWallOfARoomHasItsOutline) {
    host.setColor(COLOR_SELECTED_LINE, 0, 255, 0);
    addBox(-300, -100, -16, 300, 100, 0);
    addBox(-300, -100, 128, 300, 100, 144);
    addBox(-300, -116, 0, 300, -100, 128);
    addBox(-300, 100, 0, 300, 116, 128);
    select(addBox(300, -100, 0, 316, 100, 128));
    cCanvas* camera = openCamera(RM_FILLED, 0, 0, 64);
    for (const float x : {-250.0f, -100.3f, 0.0f, 33.3f, 120.7f}) {
        moveCamera(camera, x, 7.7f, 61.3f);
        const QImage image = picture(camera);
        for (int i = 1; i < 20; ++i) {
            const float y = -100 + float(i) * 10, z = float(i) * 6.4f;
            for (const float at : {0.0f, 128.0f})
                EXPECT_EQ(qGreen(most(image, pixelOf(camera, 300, y, at), qGreen)), 255)
                    << x << " " << y << " " << at;
            for (const float at : {-100.0f, 100.0f})
                EXPECT_EQ(qGreen(most(image, pixelOf(camera, 300, at, z), qGreen)), 255)
                    << x << " " << at << " " << z;
        }
    }
}

TEST_F(DrawTest, entityBoxIsShadedAndCovers) {
    addPointEntity(100, 0, 0);
    cCanvas* camera = openCamera(RM_FILLED, 0, 0, 60);
    const QImage image = picture(camera);
    const QRgb top = image.pixel(pixelOf(camera, 100, 0, 8));
    const QRgb side = image.pixel(pixelOf(camera, 92, 0, 0));
    EXPECT_EQ(qRed(top), 220) << "the default colour in full light";
    EXPECT_GT(qRed(top), qRed(side));
    EXPECT_GT(qRed(side), 100);
}

// ---- Model stream and GL state

TEST_F(DrawTest, modelStreamDrawsWhenFullAndPutsStateBack) {
    cCanvas* canvas = openTop();
    canvas->makeCurrent();
    GL_ResetState(GLS_DEFAULT);
    cModelStream& stream = cModelStream::instance();
    stream.beginModelDraw(canvas->viewInfo);
    const float p[3] = {1, 2, 3};
    g_renderServices.primitive(RP_TRIANGLES);
    for (int i = 0; i < cModelStream::CAPACITY - 1; ++i)
        g_renderServices.vertex(p);
    EXPECT_EQ(stream.pending(), cModelStream::CAPACITY - 1);
    g_renderServices.vertex(p);
    EXPECT_EQ(stream.pending(), cModelStream::CAPACITY % 3) << "what is whole has been drawn";
    g_renderServices.vertex(p);
    g_renderServices.lineWidth(3);
    EXPECT_EQ(stream.pending(), 0) << "a change of state draws what came before it";
    g_renderServices.color(1, 2, 3, 4);
    g_renderServices.setState(GLS_BLEND_ALPHA);
    EXPECT_EQ(g_renderServices.getState(), uint32_t(GLS_BLEND_ALPHA));
    float view[12];
    g_renderServices.getView(view);
    EXPECT_FLOAT_EQ(view[5], canvas->viewInfo.forward[2]);
    stream.endModelDraw();
    GLfloat width = 0;
    GLint culled = 0;
    glGetFloatv(GL_LINE_WIDTH, &width);
    glGetIntegerv(GL_CULL_FACE_MODE, &culled);
    EXPECT_FLOAT_EQ(width, float(canvas->devicePixelRatioF()));
    EXPECT_EQ(culled, GL_BACK);
    EXPECT_FALSE(glIsEnabled(GL_COLOR_ARRAY));
    EXPECT_EQ(GL_CurrentState(), uint32_t(GLS_DEFAULT));
    canvas->doneCurrent();
}

TEST_F(DrawTest, stateWordTouchesWhatDiffers) {
    cCanvas* canvas = openTop();
    canvas->makeCurrent();
    const auto blendFactors = [] {
        GLint source = 0, destination = 0;
        glGetIntegerv(GL_BLEND_SRC, &source);
        glGetIntegerv(GL_BLEND_DST, &destination);
        return std::make_pair(source, destination);
    };
    GL_ResetState(GLS_DEFAULT);
    GL_State(GLS_BLEND_ALPHA | GLS_ALPHA_TEST);
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
    EXPECT_TRUE(glIsEnabled(GL_ALPHA_TEST));
    EXPECT_EQ(blendFactors(), std::make_pair(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA));
    GLboolean depthWrite = GL_TRUE;
    glGetBooleanv(GL_DEPTH_WRITEMASK, &depthWrite);
    EXPECT_FALSE(depthWrite);
    GL_State(0x22);
    EXPECT_EQ(blendFactors(), std::make_pair(GL_ONE, GL_ONE));
    GL_State(GLS_DEFAULT);
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    GL_State(0xfb);
    EXPECT_EQ(blendFactors(), std::make_pair(GL_ONE, GL_ONE));
    for (const char* bits : {"src", "dst"})
        EXPECT_EQ(
            host.count(
                eMessage::Warning,
                QStringLiteral("GL_State: invalid %1 blend state bits").arg(QLatin1String(bits))),
            1);
    GL_ResetState(GLS_DEFAULT);
    canvas->doneCurrent();
}

// SPDX-License-Identifier: MIT
// Sprites and models through the media plug-in, as views show and pick them.
#include "document/tEntity.h"
#include "document/tHistory.h"
#include "operations/tTransform.h"
#include "pluginhost/tPluginManager.h"
#include "resources/tModelManager.h"
#include "support/tMath.h"
#include "support/tPatience.h"
#include "views/tModelPoses.h"
#include "views/tModelStream.h"
#include "views/tTextureUpload.h"
#include "views/tViewFixture.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <algorithm>

static const QRgb BACK = qRgb(0, 0, 80);
static const char* const TETRA = KARVEX_SOURCE "/fuzz/corpus/models/tetra.mdl";
static const char* const STILL = KARVEX_SOURCE "/fuzz/corpus/models/tetra.obj";

class FigureTest : public ViewFixture {
protected:
    FigureTest() {
        cPluginTargets targets;
        targets.models = &models;
        plugins = std::make_unique<cPluginManager>(targets);
        EXPECT_TRUE(plugins->load(QStringLiteral(KARVEX_PLUGINS "/tpmedia.so")));
        models.setUploader(&uploader);
        models.recordsGone = [] { cModelPoses::shared().clear(); };
        host.setColor(COLOR_2D_BACKGROUND, 0, 0, 80);
        host.setColor(COLOR_3D_BACKGROUND, 0, 0, 80);
        host.setColor(COLOR_SELECTED_FILL, 250, 200, 10);
        host.AnimateModels = false;
        host.acquire = [this](eAttachKind kind, const char* name) -> void* {
            const QString path = QString::fromUtf8(name);
            return kind == AK_SPRITE ? static_cast<void*>(models.loadSprite(path, palette.data()))
                                     : models.loadModel(path, palette.data());
        };
        host.giveBack = [this](eAttachKind kind, void* record) {
            if (kind == AK_SPRITE)
                models.releaseSprite(static_cast<cSpriteRecord*>(record));
            else
                models.releaseModel(static_cast<cModelRecord*>(record));
        };
        host.addClass(QStringLiteral("torch"), CK_POINT)->flags = ECF_SPRITE;
        host.addClass(QStringLiteral("guard"), CK_POINT)->flags = ECF_STUDIO;
    }
    ~FigureTest() override { document.map.clearMap(); }

    cEntityData* add(const char* classname, const QString& file, float x = 0, float y = 0,
                     float z = 0) {
        const float origin[3] = {x, y, z};
        cEntityData* entity = document.map.addEntity(classname, origin, EF_POINT);
        addEpairLast(entity, "model", file.toUtf8().constData());
        return renew(entity);
    }
    cEntityData* renew(cEntityData* entity) {
        updateEntity(entity, UM_REEVALUATE | UM_RENDER_KEYS | UM_MODEL_KEYS | UM_ATTACH);
        document.map.markChanged();
        return entity;
    }
    // A sprite of 32 by 16, all of one colour.
    QString spriteFile(int type) {
        const int words[] = {0x50534449, 1, type, 0, 32, 16, 1, 0, 0, 0, -16, 8, 32, 16};
        QByteArray bytes(reinterpret_cast<const char*>(words), sizeof words);
        bytes += QByteArray(32 * 16, 5);
        QFile file(folder.filePath(QStringLiteral("%1.spr").arg(type)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    cCanvas* openCamera(int mode = RM_TEXTURED) {
        cCanvas* camera = openCanvas(VIEW_CAMERA);
        camera->setViewType(VIEW_CAMERA, mode);
        look(camera, {-100, 0, 0}, {0, 0, 0});
        return camera;
    }
    using cTriple = std::array<float, 3>;
    static void look(cCanvas* camera, const cTriple& origin, const cTriple& angles) {
        camera->setCameraOrigin(origin.data());
        camera->setCameraAngles(angles.data());
    }
    static int pickAt(cCanvas* canvas, const cTriple& point) {
        float pixel[2];
        EXPECT_TRUE(canvas->projectToScreen(point.data(), pixel));
        return canvas->pickObject(int(pixel[0]), int(pixel[1]), PICK_ALL);
    }
    bool isDrawnNear(cCanvas* canvas, const cTriple& point) {
        float pixel[2];
        EXPECT_TRUE(canvas->projectToScreen(point.data(), pixel));
        const QImage image = picture(canvas);
        bool found = false;
        for (int i = 0; i < 9; ++i)
            found |= isDrawn(image, int(pixel[0]) + i % 3 - 1, int(pixel[1]) + i / 3 - 1);
        return found;
    }
    // Where anything is drawn.
    QRect drawnRect(cCanvas* canvas) {
        const QImage image = picture(canvas);
        QRect rect;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (isDrawn(image, x, y))
                    rect |= QRect(x, y, 1, 1);
        return rect;
    }
    // Not the background, and not the axes at the world's origin.
    static bool isDrawn(const QImage& image, int x, int y) {
        const QRgb c = image.pixel(x, y);
        const bool isAxis = (qRed(c) == 255 || qGreen(c) == 255 || qBlue(c) == 255) &&
                            qRed(c) + qGreen(c) + qBlue(c) == 255;
        return (c | 0xff000000) != BACK && !isAxis;
    }

    std::vector<uint8_t> palette = std::vector<uint8_t>(768, 200);
    QTemporaryDir folder;
    cTextureUpload uploader{*viewHost.shareWidget()};
    cModelManager models;
    std::unique_ptr<cPluginManager> plugins;
};

// What is drawn is what is picked; by the box without precise selection.
TEST_F(FigureTest, modelsAndSpritesArePickedWhereTheyAreSeen) {
    cEntityData* guard = add("guard", QLatin1String(TETRA), 20, 30, 0);
    guard->angles[1] = 200;
    updateEntity(guard, 0);
    cEntityData* torch = add("torch", spriteFile(2), 20, -40, 10);
    cCanvas* camera = openCamera();
    for (const int mode : {RM_TEXTURED, RM_FILLED}) {
        camera->setViewType(VIEW_CAMERA, mode);
        look(camera, {-100, 0, 20}, {10, 5, 0});
        const QImage image = picture(camera);
        int checked[2] = {0, 0};
        for (int y = 24; y < image.height() - 8; y += 7)
            for (int x = 8; x < image.width() - 8; x += 7) {
                int drawn = 0;
                for (int i = 0; i < 9; ++i)
                    drawn += isDrawn(image, x + i % 3 - 1, y + i / 3 - 1);
                if (drawn % 9 != 0)
                    continue; // at an edge
                const int hit = camera->pickObject(x, y, PICK_ALL);
                EXPECT_EQ(hit == guard->entity->pickId || hit == torch->entity->pickId, drawn > 0)
                    << x << " " << y << " in mode " << mode;
                ++checked[drawn > 0];
            }
        EXPECT_GT(checked[0], 500);
        EXPECT_GT(checked[1], 50);
    }
    const cTriple corner = {guard->mins[0] + 1, guard->maxs[1] - 1, guard->maxs[2] - 1};
    EXPECT_EQ(pickAt(camera, corner), 0) << "in its box, beside the model";
    host.PreciseModelSelection = false;
    EXPECT_EQ(pickAt(camera, corner), guard->entity->pickId);
}

TEST_F(FigureTest, linesAreThoseOfTheModelNotOfItsBox) {
    add("guard", QLatin1String(TETRA));
    cCanvas* camera = openCamera(RM_WIREFRAME);
    look(camera, {-100, 0, 10}, {0, 0, 0});
    const cTriple onBoth = {-16, -16, 16}, onBox = {-16, 48, 30};
    for (cCanvas* canvas : {camera, openCanvas(VIEW_FRONT)}) {
        EXPECT_TRUE(isDrawnNear(canvas, onBoth));
        EXPECT_FALSE(isDrawnNear(canvas, onBox));
    }
    host.ModelRenderDistance = 0;
    EXPECT_TRUE(isDrawnNear(camera, onBox));
}

TEST_F(FigureTest, modelsFollowTheirEntityAndUndo) {
    cEntityData* guard = add("guard", QLatin1String(TETRA));
    cCanvas* top = openCanvas(VIEW_TOP);
    const auto isAt = [&](float x) { return pickAt(top, {x, -16, 0}) == guard->entity->pickId; };
    EXPECT_TRUE(isAt(0)) << "an edge of the model in the view from above";
    EXPECT_FALSE(isAt(100));
    document.map.select(guard);
    static const float matrix[16] = {1, 0, 0, 100, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    cTransformRecord record;
    record.matrix = matrix;
    transformSelection(document.map, record);
    EXPECT_TRUE(isAt(100));
    EXPECT_FALSE(isAt(0));
    document.map.history->undo();
    EXPECT_TRUE(isAt(0));
}

TEST_F(FigureTest, spritesTurnAsTheirFilesTell) {
    // By the file's type: how wide the picture is for its height, 0 for nothing to be seen.
    const struct {
        const char* what;
        cTriple angles, eye, look;
        float aspect[5];
    } cases[] = {
        {"from the front", {0, 0, 0}, {-100, 0, 0}, {0, 0, 0}, {2, 2, 2, 2, 2}},
        {"from above", {0, 0, 0}, {-70, 0, 70}, {-45, 0, 0}, {2.83f, 2.83f, 2, 2.83f, 2}},
        {"from right above", {0, 0, 0}, {0, 0, 100}, {-90, 0, 0}, {0, 0, 2, 0, 2}},
        {"at the side", {0, 0, 0}, {-100, 70, 0}, {0, 0, 0}, {2, 2.44f, 2, 2, 2}},
        {"rolled", {0, 0, 90}, {-100, 0, 0}, {0, 0, 0}, {2, 2, 2, 0.5f, 0.5f}},
        {"turned away", {0, 90, 0}, {-100, 0, 0}, {0, 0, 0}, {2, 2, 2, 0, 2}},
    };
    cCanvas* camera = openCamera();
    for (int type = 0; type < 5; ++type) {
        cEntityData* torch = add("torch", spriteFile(type));
        for (const auto& c : cases) {
            std::copy_n(c.angles.begin(), 3, torch->angles);
            updateEntity(torch, 0);
            document.map.markChanged();
            look(camera, c.eye, c.look);
            const QRect rect = drawnRect(camera);
            const bool isSeen = rect.width() > 2 && rect.height() > 2;
            EXPECT_EQ(isSeen, c.aspect[type] != 0) << "type " << type << " " << c.what;
            if (isSeen) {
                EXPECT_NEAR(float(rect.width()) / float(rect.height()) / c.aspect[type], 1, 0.12)
                    << "type " << type << " " << c.what;
            }
        }
        document.map.freeEntity(torch);
    }
}

TEST_F(FigureTest, boxesStandForModelsThatAreFarOrNotToBeShown) {
    cEntityData* guard = add("guard", QLatin1String(TETRA), 100);
    cCanvas* camera = openCamera();
    const cTriple corner = {guard->mins[0], guard->maxs[1] - 2, guard->maxs[2] - 2};
    const auto isBox = [&] {
        float pixel[2];
        camera->projectToScreen(corner.data(), pixel);
        const bool isDrawnThere = isDrawn(picture(camera), int(pixel[0]), int(pixel[1]));
        EXPECT_EQ(pickAt(camera, corner) == guard->entity->pickId, isDrawnThere);
        return isDrawnThere;
    };
    for (const int mode : {RM_TEXTURED, RM_FILLED}) {
        camera->setViewType(VIEW_CAMERA, mode);
        look(camera, {-100, 0, 0}, {0, 0, 0});
        host.ModelRenderDistance = 201;
        EXPECT_FALSE(isBox());
        host.ModelRenderDistance = 199;
        EXPECT_TRUE(isBox());
        host.ModelRenderDistance = 0;
        EXPECT_TRUE(isBox());
    }
    cCanvas* top = openCanvas(VIEW_TOP);
    const auto isBoxFromAbove = [&] {
        return pickAt(top, {guard->maxs[0], guard->maxs[1] - 4, 0}) == guard->entity->pickId;
    };
    EXPECT_FALSE(isBoxFromAbove());
    host.DrawModels = false;
    EXPECT_TRUE(isBoxFromAbove());
}

// Two at one place: the one met last lies over the other, always.
TEST_F(FigureTest, whatIsSeenThroughIsDrawnByDistanceThenAsItWasMet) {
    host.mapProfile.flags = PF_RENDER_KEYS;
    cCanvas* camera = openCamera();
    host.Transparency = host.EntityTransparency = host.TransparentSort = true;
    cEntityData* first = add("torch", spriteFile(2), 0, 20, 30);
    cEntityData* second = add("torch", spriteFile(2), 0, 20, 30);
    const auto make = [&](cEntityData* entity, const char* amount) {
        removeEpair(entity, "rendermode");
        removeEpair(entity, "renderamt");
        addEpairLast(entity, "rendermode", "1");
        addEpairLast(entity, "renderamt", amount);
        renew(entity);
    };
    const auto shown = [&] {
        float pixel[2];
        camera->projectToScreen(first->origin, pixel);
        return qRed(picture(camera).pixel(int(pixel[0]), int(pixel[1])));
    };
    make(first, "128");
    make(second, "0");
    const int both = shown(); // a half, then at least a fifth over it
    EXPECT_NEAR(both, 0.2 * 200 + 0.8 * 0.5 * 200, 4);
    document.map.select(second); // over it in a colour of its own
    document.map.markChanged();
    EXPECT_GT(shown(), 0);
    first->origin[0] = 5; // farther: the order stays
    renew(first);
    EXPECT_NEAR(shown(), 0.2 * 200 * 250 / 255 + 0.8 * 0.5 * 200, 4);
}

TEST_F(FigureTest, pictureIsDrawnAnewOnlyForWhatMoves) {
    cEntityData* guard = add("guard", QLatin1String(TETRA));
    addEpairLast(guard, "framerate", "100");
    cCanvas* camera = openCamera();
    const auto drawsIn = [&](int milliseconds) {
        picture(camera);
        const int before = camera->pictureCount();
        QTest::qWait(milliseconds);
        return camera->pictureCount() - before;
    };
    renew(guard);
    EXPECT_EQ(drawsIn(300), 0) << "animation is off";
    host.AnimateModels = true;
    picture(camera);
    const int before = camera->pictureCount();
    EXPECT_TRUE(QTest::qWaitFor([&] { return camera->pictureCount() > before + 2; }, PATIENCE));
    removeEpair(guard, "model");
    addEpairLast(guard, "model", STILL);
    renew(guard);
    EXPECT_EQ(drawsIn(300), 0) << "one frame";
}

// Whole primitives leave a full buffer; what goes on beyond it begins the next.
TEST_F(FigureTest, streamCutsNoTriangleAndNoLine) {
    constexpr int SENT = 30000;
    cCanvas* camera = openCamera();
    camera->makeCurrent();
    cModelStream& stream = cModelStream::instance();
    for (const auto& [code, primitive] :
         {std::pair(RP_TRIANGLES, GL_TRIANGLES), {RP_LINES, GL_LINES}}) {
        cModelRecording recording, whole;
        std::vector<cModelVertex> vertices(SENT);
        stream.beginRecording(camera->viewInfo, 0, recording);
        stream.primitive(code);
        for (int i = 0; i < SENT; ++i) {
            vertices[size_t(i)].xyz[0] = float(i);
            stream.vertex(vertices[size_t(i)].xyz);
        }
        EXPECT_TRUE(stream.endRecording());
        whole.add({}, GLenum(primitive), vertices.data(), SENT);
        EXPECT_TRUE(recording.sendsSame(whole)) << code;
    }
    camera->doneCurrent();
}

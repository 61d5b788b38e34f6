// SPDX-License-Identifier: MIT
// Sprites and models through the media plug-in: what it hands over and what it sends to be drawn,
// against values worked out by hand.
#include "document/tEntity.h"
#include "pluginhost/tRenderServices.h"
#include "plugins/tMediaTest.h"
#include "support/tMath.h"
#include "support/tSystem.h"

#include <QDir>
#include <QtEndian>
#include <cmath>

using testing::SizeIs;

// ---- A host that keeps what it gets

struct cSentVertex {
    float xyz[3];
    float st[2];
    const cTextureImage* image;
    bool isColored;
};

static std::vector<cSentVertex> g_sent;
static cSentVertex g_current;

static const cRenderServices KEEPING_STREAM = [] {
    cRenderServices services = g_renderServices;
    services.texture = [](const cTextureImage* image) { g_current.image = image; };
    services.color = [](uint8_t, uint8_t, uint8_t, uint8_t) { g_current.isColored = true; };
    services.texCoord = [](float s, float t) {
        g_current.st[0] = s;
        g_current.st[1] = t;
    };
    services.vertex = [](const float* xyz) {
        std::copy_n(xyz, 3, g_current.xyz);
        g_sent.push_back(g_current);
    };
    return services;
}();

enum eDrawMode { TEXTURED = 2, FLAT = 3, TEXTURED_UNSCALED = 6 };

class cMediaModels : public cMediaTest {
protected:
    cMediaModels() : m_services(g_renderServices) { g_renderServices = KEEPING_STREAM; }
    ~cMediaModels() override {
        g_renderServices = m_services;
        if (model.unload && model.ownsData)
            model.unload(model.formatId, &model);
    }

    // The block goes to the plug-in; what it keeps or loses shows under the leak checker.
    template<class Format, class Record>
    bool loadRecord(const QList<Format>& formats, const QString& path, Record& record) {
        for (const Format& format : formats) {
            if (!path.endsWith(format.extension))
                continue;
            palette.resize(768);
            format.setPalette(reinterpret_cast<const uint8_t*>(palette.constData()));
            int size = 0;
            void* data = File_Load(path.toLocal8Bit().constData(), &size);
            record.formatId = format.id;
            return format.load(format.id, path.toLocal8Bit().constData(), data, size, &record,
                               keep<Record>, nullptr) != 0;
        }
        return false;
    }
    bool loadSprite(const QString& path) {
        s_pictures.clear();
        sprite = {};
        return loadRecord(models.spriteFormats, path, sprite);
    }
    bool loadModel(const QString& path) {
        s_pictures.clear();
        if (model.unload && model.ownsData)
            model.unload(model.formatId, &model);
        model = {};
        const bool loaded = loadRecord(models.modelFormats, path, model);
        for (const cModelFormat& format : models.modelFormats) {
            if (format.id == model.formatId) {
                model.unload = format.unload;
                model.render = format.render;
                model.getBounds = format.getBounds;
            }
        }
        return loaded;
    }
    const std::vector<cSentVertex>& draw(eDrawMode mode) {
        g_sent.clear();
        g_current = {};
        entity.attachment = &attachment;
        entity.entity = &half;
        model.render(model.formatId, mode, 0, &model, &entity);
        return g_sent;
    }

    template<class Record>
    static void keep(Record* record, uint32_t glFormat, uint32_t, int32_t, int32_t width,
                     int32_t height, const void* pixels) {
        s_images.push_back(std::make_unique<cTextureImage>());
        s_pictures.push_back(pictureOf(glFormat, width, height, pixels));
        if constexpr (std::is_same_v<Record, cModelRecord>)
            record->lastSkin = s_images.back().get();
        else
            record->lastFrame = s_images.back().get();
    }

    static std::vector<std::unique_ptr<cTextureImage>> s_images;
    static std::vector<QImage> s_pictures;
    QByteArray palette;
    cSpriteRecord sprite = {};
    cModelRecord model = {};
    cEntityData entity = [] {
        cEntityData e = {};
        e.scale = 1;
        return e;
    }();
    cAttachmentHead attachment = {};
    cEntity half{&entity};

private:
    cRenderServices m_services;
};

std::vector<std::unique_ptr<cTextureImage>> cMediaModels::s_images;
std::vector<QImage> cMediaModels::s_pictures;

class cRealModels : public cMediaModels, public testing::WithParamInterface<QString> {};
INSTANTIATE_TEST_SUITE_P(Data, cRealModels, testing::ValuesIn(realData()),
                         [](const auto&) { return std::string("OfOthers"); });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(cRealModels);

static std::vector<std::vector<int>> alphaRows(const QImage& image) {
    std::vector<std::vector<int>> rows;
    for (int y = 0; y < image.height(); ++y) {
        rows.emplace_back();
        for (int x = 0; x < image.width(); ++x)
            rows.back().push_back(qAlpha(image.pixel(x, y)));
    }
    return rows;
}

// ---- Sprites

TEST_P(cRealModels, realSpritesHoldWhatTheirBytesTell) {
    const QString real = GetParam();
    palette = contents(real + QStringLiteral("/palette/classic.pal"));
    for (const QFileInfo& file :
         QDir(real + QStringLiteral("/sprites")).entryInfoList(QDir::Files)) {
        const QByteArray bytes = contents(file.filePath());
        const auto word = [&](int at) { return qFromLittleEndian<qint32>(bytes.constData() + at); };
        ASSERT_TRUE(loadSprite(file.filePath()));
        EXPECT_EQ(sprite.orientation, 0) << "parallel to the view";
        EXPECT_EQ(sprite.width, word(16));
        EXPECT_EQ(sprite.height, word(20));
        ASSERT_EQ(sprite.frameCount, word(24));
        ASSERT_THAT(s_pictures, SizeIs(size_t(sprite.frameCount)));
        int at = 36 + 20; // behind the header and that of the first frame
        for (const QImage& frame : s_pictures) {
            ASSERT_EQ(frame.size(), QSize(word(at - 8), word(at - 4)));
            for (int i = 0; i < frame.width() * frame.height(); ++i, ++at) {
                const int index = uchar(bytes[at]);
                const QRgb texel = frame.pixel(i % frame.width(), i / frame.width());
                ASSERT_EQ(qAlpha(texel), index == 255 ? 0 : 255);
                ASSERT_TRUE(index == 255 || qRed(texel) == uchar(palette[3 * index]));
            }
            at += 20;
        }
    }
    EXPECT_EQ(warnings(), 0);
}

TEST_F(cMediaModels, framesLieWhereTheirOffsetsTell) {
    ASSERT_TRUE(loadSprite(seed(QStringLiteral("sprites/group.spr"))));
    EXPECT_EQ(sprite.frameCount, 3) << "a group's frames count each";
    EXPECT_EQ(QSize(sprite.width, sprite.height), QSize(4, 4));
    ASSERT_THAT(s_pictures, SizeIs(3));
    const std::vector<std::vector<int>> expected = {
        {0, 255, 255, 255}, {0, 0, 255, 255}, {0, 0, 0, 0}, {0, 0, 0, 0}};
    EXPECT_EQ(alphaRows(s_pictures[0]), expected);
}

TEST_F(cMediaModels, spritesWithTheirOwnPaletteAreDrawnAsTheyTell) {
    const auto pal = [](int i) {
        return qRgb(i * 7 % 256, (i * 7 + 31) % 256, (i * 7 + 62) % 256);
    };
    ASSERT_TRUE(loadSprite(seed(QStringLiteral("sprites/alpha-test.spr"))));
    EXPECT_EQ(sprite.orientation, 1) << "as the entity is turned";
    EXPECT_EQ(s_pictures.at(0).pixel(1, 0), pal(100));
    EXPECT_EQ(qAlpha(s_pictures.at(0).pixel(0, 1)), 0);
    ASSERT_TRUE(loadSprite(seed(QStringLiteral("sprites/index-alpha.spr"))));
    EXPECT_EQ(alphaRows(s_pictures.at(0)), (std::vector<std::vector<int>>{{0, 100}, {255, 30}}));
    EXPECT_EQ(s_pictures.at(0).pixel(0, 1), pal(255));
    ASSERT_TRUE(loadSprite(seed(QStringLiteral("sprites/additive.spr"))));
    EXPECT_EQ(qAlpha(s_pictures.at(0).pixel(0, 0)), 62) << "as bright as its brightest part";
}

// ---- Models

// One tetrahedron in each format: with corner 3 above the others, it stands 8 higher a frame.
static const float CORNERS[4][3] = {
    {-16, -16, -16}, {48, -16, -16}, {-16, 48, -16}, {-16, -16, 48}};
static const int TRIANGLES[12] = {0, 1, 2, 0, 3, 1, 0, 2, 3, 1, 3, 2};
static const float TEXELS[4][2] = {{1.5f, 2.5f}, {7.5f, 2.5f}, {1.5f, 6.5f}, {5.5f, 5.5f}}; // of 8

TEST_F(cMediaModels, everyFormatGivesTheSameTriangles) {
    for (const char* name : {"tetra.mdl", "tetra.md2", "tetra.md3", "tetra.obj"}) {
        ASSERT_TRUE(loadModel(seed(QStringLiteral("models/") + QLatin1String(name)))) << name;
        attachment.frame = 1.9f;
        const auto& sent = draw(TEXTURED);
        ASSERT_THAT(sent, SizeIs(12)) << name;
        for (size_t i = 0; i < sent.size(); ++i) {
            const float* corner = CORNERS[TRIANGLES[i]];
            EXPECT_EQ(sent[i].xyz[0], corner[0]) << name;
            EXPECT_EQ(sent[i].xyz[1], corner[1]) << name;
            EXPECT_EQ(sent[i].xyz[2], corner[2] + 8) << name << ": the second frame";
            EXPECT_EQ(sent[i].st[0], TEXELS[TRIANGLES[i]][0] / 8) << name;
            EXPECT_EQ(sent[i].st[1], TEXELS[TRIANGLES[i]][1] / 8) << name;
            EXPECT_TRUE(sent[i].isColored) << name;
        }
        EXPECT_FALSE(draw(FLAT).at(0).isColored) << "the host has set the colour";
        EXPECT_EQ(g_sent[0].image, nullptr);
        const bool isStill = QLatin1String(name) == QLatin1String("tetra.obj");
        EXPECT_EQ(model.maxs[2], isStill ? 56 : 64) << name << ": over all frames";
    }
    EXPECT_EQ(warnings(), 0);
}

TEST_F(cMediaModels, theKeysOfTheEntityChooseFrameSkinPlaceAndSize) {
    ASSERT_TRUE(loadModel(seed(QStringLiteral("models/tetra.mdl"))));
    ASSERT_THAT(s_pictures, SizeIs(2)) << "of a group of skins the first";
    const auto& sent = g_sent;
    const auto firstZ = [&](int sequence, float frame) {
        entity.sequence = sequence;
        attachment.frame = frame;
        return draw(TEXTURED).at(0).xyz[2];
    };
    EXPECT_EQ(firstZ(0, 0), -16);
    EXPECT_EQ(firstZ(0, 3.5f), -8) << "the first sequence has two frames and begins anew";
    EXPECT_EQ(firstZ(1, 5), 0) << "the second has one";
    EXPECT_EQ(firstZ(7, -1), -16);
    EXPECT_EQ(firstZ(0, NAN), -16);
    const cTextureImage* first = sent.at(0).image;
    entity.skin = 1;
    EXPECT_NE(draw(TEXTURED).at(0).image, first);
    entity.skin = 9;
    EXPECT_EQ(draw(TEXTURED).at(0).image, first);

    entity.origin[0] = 100;
    entity.angles[1] = 90;
    entity.scale = 2;
    EXPECT_NEAR(draw(TEXTURED).at(1).xyz[0], 100 + 32, 0.001) << "+x turned to +y, +y to -x";
    EXPECT_NEAR(sent.at(1).xyz[1], 96, 0.001);
    EXPECT_NEAR(draw(TEXTURED_UNSCALED).at(1).xyz[1], 48, 0.001);
    entity.scale = 0;
    EXPECT_NEAR(draw(TEXTURED).at(1).xyz[1], 48, 0.001);
}

using cAngles = std::array<float, 3>;

// For any angles the box holds all that is drawn, and what is drawn turns as entities do.
TEST_F(cMediaModels, modelsTurnWithTheirEntity) {
    ASSERT_TRUE(loadModel(seed(QStringLiteral("models/tetra.md3"))));
    for (const auto& angles : {cAngles{30, 40, 50}, cAngles{-90, 10, 0}, cAngles{0, 200, 300}}) {
        std::copy_n(angles.begin(), 3, entity.angles);
        float forward[3], right[3], up[3], mins[3], maxs[3];
        T_AngleVectors(entity.angles, forward, right, up);
        ASSERT_TRUE(model.getBounds(model.formatId, mins, maxs, &model, &entity));
        const auto& sent = draw(TEXTURED);
        for (size_t i = 0; i < sent.size(); ++i) {
            const float* c = CORNERS[TRIANGLES[i]];
            for (int k = 0; k < 3; ++k) {
                EXPECT_NEAR(sent[i].xyz[k], c[0] * forward[k] - c[1] * right[k] + c[2] * up[k],
                            0.001);
                EXPECT_LE(mins[k], sent[i].xyz[k] + 0.001f);
                EXPECT_GE(maxs[k], sent[i].xyz[k] - 0.001f);
            }
        }
    }
}

TEST_F(cMediaModels, skinsAreFoundBesideTheModelInAnyFormat) {
    write(QStringLiteral("one.png"), contents(seed(QStringLiteral("images/base.png"))));
    for (const char* name : {"tetra.md2", "tetra.md3"}) {
        const QByteArray bytes = contents(seed(QStringLiteral("models/") + QLatin1String(name)));
        ASSERT_TRUE(loadModel(write(QLatin1String(name), bytes)));
        ASSERT_THAT(s_pictures, SizeIs(1)) << "the other skin is nowhere";
        EXPECT_EQ(s_pictures[0].size(), QSize(7, 5));
        entity.skin = 0;
        EXPECT_NE(draw(TEXTURED).at(0).image, nullptr);
        entity.skin = 1;
        EXPECT_EQ(draw(TEXTURED).at(0).image, nullptr);
    }
}

// Six times; positive for triangles that come counter-clockwise.
static double volumeOf(const std::vector<cSentVertex>& sent) {
    double volume = 0;
    for (size_t i = 0; i + 2 < sent.size(); i += 3) {
        const float *a = sent[i].xyz, *b = sent[i + 1].xyz, *c = sent[i + 2].xyz;
        for (int k = 0; k < 3; ++k) {
            const int l = (k + 1) % 3, m = (k + 2) % 3;
            volume += double(a[k] * (b[l] * c[m] - b[m] * c[l]));
        }
    }
    return volume;
}

TEST_P(cRealModels, realModelsAreClosedAndComeClockwise) {
    const QString real = GetParam();
    palette = contents(real + QStringLiteral("/palette/classic.pal"));
    const struct {
        const char* name;
        int triangles;
        double least, most;
    } cases[] = {{"/models/soldier.mdl", 886, -1e9, -10000},
                 {"/models/blinky.obj", 512, -20.861, -20.860}};
    for (const auto& c : cases) {
        ASSERT_TRUE(loadModel(real + QLatin1String(c.name)));
        EXPECT_THAT(draw(TEXTURED), SizeIs(c.triangles * 3));
        EXPECT_GT(volumeOf(g_sent), c.least) << c.name;
        EXPECT_LT(volumeOf(g_sent), c.most) << c.name;
    }
    ASSERT_TRUE(loadModel(real + QStringLiteral("/models/soldier.mdl")));
    EXPECT_EQ(s_pictures.at(0).size(), QSize(296, 194));
    float mins[3], maxs[3];
    ASSERT_TRUE(model.getBounds(model.formatId, mins, maxs, &model, &entity));
    EXPECT_GT(maxs[2] - mins[2], maxs[1] - mins[1]) << "it stands upright in its first sequence";
}

// Every file cut off anywhere is refused with one line, and nothing of it stays.
TEST_F(cMediaModels, whatIsCutOffIsRefused) {
    for (const char* name : {"models/tetra.mdl", "models/tetra.md2", "models/tetra.md3",
                             "sprites/group.spr", "sprites/additive.spr"}) {
        const QString path = QString::fromLatin1(name);
        const QByteArray whole = contents(seed(path));
        for (int size = 0; size < whole.size(); size += 7) {
            host.messages.clear();
            const QString cut = write(QStringLiteral("cut.") + path.right(3), whole.left(size));
            ASSERT_FALSE(path.endsWith(QStringLiteral("spr")) ? loadSprite(cut) : loadModel(cut))
                << name << " cut to " << size;
            ASSERT_EQ(warnings(), 1);
            ASSERT_EQ(model.ownsData, 0u);
        }
    }
}

static double determinant(const float* a, const float* b, const float* c) {
    return double(a[0]) * (b[1] * c[2] - b[2] * c[1]) + double(a[1]) * (b[2] * c[0] - b[0] * c[2]) +
           double(a[2]) * (b[0] * c[1] - b[1] * c[0]);
}

TEST_F(cMediaModels, theSampleGameCanBeRead) {
    const QString game = QStringLiteral(KARVEX_SOURCE "/game/");
    palette = contents(game + QStringLiteral("palette.pal"));
    for (const QFileInfo& file : QDir(game + QStringLiteral("models")).entryInfoList(QDir::Files)) {
        ASSERT_TRUE(loadModel(file.filePath())) << qPrintable(file.fileName());
        // Seen from outside the triangles go clockwise: their volume is negative by the right hand.
        double volume = 0;
        const std::vector<cSentVertex>& sent = draw(TEXTURED);
        for (size_t i = 0; i < sent.size(); i += 3)
            volume += determinant(sent[i].xyz, sent[i + 1].xyz, sent[i + 2].xyz);
        EXPECT_LT(volume, 0) << qPrintable(file.fileName());
    }
    for (const QFileInfo& file : QDir(game + QStringLiteral("sprites")).entryInfoList(QDir::Files))
        EXPECT_TRUE(loadSprite(file.filePath())) << qPrintable(file.fileName());
    EXPECT_EQ(warnings(), 0);
}

// SPDX-License-Identifier: MIT
// Textures through the media plug-in: every kind of file gives the texels that another reader, or
// a walk of its bytes by hand, finds in it.
#include "plugins/tMediaTest.h"

#include <QDir>
#include <QtEndian>

using testing::ElementsAre;
using testing::IsEmpty;

using cMediaTextures = cMediaTest;

class cRealTextures : public cMediaTest, public testing::WithParamInterface<QString> {};
INSTANTIATE_TEST_SUITE_P(Data, cRealTextures, testing::ValuesIn(realData()),
                         [](const auto&) { return std::string("OfOthers"); });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(cRealTextures);

static QImage asRead(const QString& path) {
    return QImage(path).convertToFormat(QImage::Format_ARGB32);
}

// One picture without any symmetry, written by other programs and by hand in every kind.
TEST_F(cMediaTextures, everyKindOfImageFileGivesTheSameTexels) {
    const QImage expected = asRead(seed(QStringLiteral("images/base.png")));
    const QDir files(seed(QStringLiteral("images")), QStringLiteral("*.png *.bmp *.tga *.pcx"));
    ASSERT_GE(files.count(), 12u);
    for (const QFileInfo& file : files.entryInfoList()) {
        const cTexturePackage* set = load(file.filePath());
        ASSERT_EQ(set->textures.size(), 1u) << file.fileName().toStdString();
        EXPECT_EQ(picture(set->textures[0]), expected) << file.fileName().toStdString();
    }
    const QString jpeg = seed(QStringLiteral("images/base.jpg"));
    EXPECT_EQ(picture(load(jpeg)->textures[0]), asRead(jpeg));
    EXPECT_EQ(warnings(), 0);
}

TEST_F(cMediaTextures, filesAreReadByTheirNamesAndNeverGuessed) {
    const QByteArray png = contents(seed(QStringLiteral("images/base.png")));
    for (const char* name : {"png.bmp", "png.jpg", "png.tga", "png.pcx"})
        EXPECT_FALSE(load(write(QString::fromLatin1(name), png))->loaded) << name;
    EXPECT_EQ(warnings(), 4) << "one line a file";
    EXPECT_TRUE(load(write(QStringLiteral("upper.PNG"), png))->loaded);
}

TEST_F(cMediaTextures, transparencyIsToldByTheStateWord) {
    QImage image(4, 1, QImage::Format_ARGB32);
    image.fill(QColor(10, 20, 30));
    const auto stateOf = [&](int alpha) {
        image.setPixelColor(1, 0, QColor(10, 20, 30, alpha));
        const QString path = folder.filePath(QStringLiteral("a%1.png").arg(alpha));
        EXPECT_TRUE(image.save(path));
        const cTexture* texture = load(path)->textures.at(0);
        EXPECT_EQ(picture(texture), image);
        return texture->renderState;
    };
    EXPECT_EQ(stateOf(255), 0u);
    EXPECT_EQ(stateOf(0), 0x1100u);
    EXPECT_EQ(stateOf(100), 0x65u);
}

TEST_F(cMediaTextures, hugePicturesAreRefusedBeforeTheyAreDecoded) {
    QByteArray tga = contents(seed(QStringLiteral("images/rgb-runs.tga")));
    qToLittleEndian(quint16(60000), tga.data() + 12);
    QByteArray bmp = contents(seed(QStringLiteral("images/base.bmp")));
    qToLittleEndian(qint32(16385), bmp.data() + 18);
    QByteArray pcx = contents(seed(QStringLiteral("images/rgb.pcx")));
    qToLittleEndian(quint16(16000), pcx.data() + 8);
    qToLittleEndian(quint16(16000), pcx.data() + 10);
    QByteArray png = contents(seed(QStringLiteral("images/base.png")));
    qToBigEndian(qint32(8001), png.data() + 16);
    qToBigEndian(qint32(8000), png.data() + 20);
    EXPECT_FALSE(load(write(QStringLiteral("a.tga"), tga))->loaded);
    EXPECT_FALSE(load(write(QStringLiteral("a.bmp"), bmp))->loaded);
    EXPECT_FALSE(load(write(QStringLiteral("a.pcx"), pcx))->loaded);
    EXPECT_FALSE(load(write(QStringLiteral("a.png"), png))->loaded);
    EXPECT_EQ(warnings(), 4);
}

TEST_F(cMediaTextures, namesAreThePathsBelowTheTexturesFolder) {
    QDir(folder.path()).mkpath(QStringLiteral("textures/old/Textures/base"));
    const QByteArray png = contents(seed(QStringLiteral("images/base.png")));
    const QString long63 = QString(63, QLatin1Char('n'));
    const struct {
        QString path, name;
    } cases[] = {
        {QStringLiteral("textures/old/Textures/base/Wall.v2.png"), QStringLiteral("base/Wall.v2")},
        {QStringLiteral("textures/old/floor.png"), QStringLiteral("old/floor")},
        {QStringLiteral("plain.png"), QStringLiteral("plain")},
        {long63 + QStringLiteral(".png"), long63},
        {long63 + QStringLiteral("n.png"), QString()}};
    for (const auto& c : cases) {
        const auto found = names(load(write(c.path, png)));
        EXPECT_EQ(found, c.name.isEmpty() ? std::vector<std::string>()
                                          : std::vector<std::string>{c.name.toStdString()});
    }
    EXPECT_EQ(host.count(eMessage::Warning, QStringLiteral("longer than 63")), 1);
}

TEST_P(cRealTextures, aFolderOfImagesIsASet) {
    const QString real = GetParam();
    const cTexturePackage* set = load(real + QStringLiteral("/textures/dev"));
    EXPECT_EQ(set->textures.size(), 228u);
    for (const cTexture* texture : set->textures) {
        const QString name = QString::fromLatin1(texture->name);
        ASSERT_TRUE(name.startsWith(QStringLiteral("dev/")));
        EXPECT_EQ(picture(texture), asRead(real + QStringLiteral("/textures/%1.png").arg(name)));
    }
    EXPECT_EQ(warnings(), 0);
}

// ---- Packages

// A texture of a package as its bytes tell it, walked by hand: indices at the first of its four
// offsets, and the palette given.
static QImage byHand(const QByteArray& wad, int entry, const QByteArray& palette) {
    const auto word = [&](int at) { return qFromLittleEndian<qint32>(wad.constData() + at); };
    const int at = word(word(8) + 32 * entry);
    QImage image(word(at + 16), word(at + 20), QImage::Format_ARGB32);
    const auto* texel = reinterpret_cast<const uchar*>(wad.constData()) + at + word(at + 24);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x, ++texel) {
            const auto* color = reinterpret_cast<const uchar*>(palette.constData()) + 3 * *texel;
            image.setPixel(x, y, qRgb(color[0], color[1], color[2]));
        }
    }
    return image;
}

// Where no mipmap is left out, the palette is the end of an image: 768 bytes and a word.
static QByteArray ownPalette(const QByteArray& wad, int entry) {
    const auto word = [&](int at) { return qFromLittleEndian<qint32>(wad.constData() + at); };
    const int row = word(8) + 32 * entry;
    return wad.mid(word(row) + word(row + 4) - 770, 768);
}

static int compare(const std::map<const cTextureImage*, QImage>& pictures,
                   const cTexturePackage* set, const QByteArray& wad, const QByteArray& shared) {
    int entry = 0;
    for (const cTexture* texture : set->textures) {
        const QImage expected =
            byHand(wad, entry, shared.isEmpty() ? ownPalette(wad, entry) : shared);
        EXPECT_EQ(pictures.at(texture->image), expected) << texture->name;
        ++entry;
    }
    return entry;
}

TEST_P(cRealTextures, packagesHoldWhatTheirBytesTell) {
    const QString real = GetParam();
    const QString palette = real + QStringLiteral("/palette/classic.pal");
    const struct {
        const char* name;
        int count;
        bool ownPalettes;
    } packages[] = {{"blink", 6, false},         {"books", 1, false},  {"fullbrights", 7, false},
                    {"lq_medieval", 161, false}, {"mayan", 76, false}, {"currents", 6, true},
                    {"small-wad3", 2, true}};
    for (const auto& p : packages) {
        const QString path = real + QStringLiteral("/packages/%1.wad").arg(QLatin1String(p.name));
        cTexturePackage* set = load(path, palette);
        EXPECT_EQ(textures.packageInfo(set)->count, p.count) << p.name;
        EXPECT_EQ(compare(uploader.pictures, set, contents(path),
                          p.ownPalettes ? QByteArray() : contents(palette)),
                  p.count);
    }
    EXPECT_EQ(warnings(), 0);
}

TEST_F(cMediaTextures, packageNamesAndHoles) {
    QByteArray palette(768, '\0');
    palette[3 * 3] = '\x77'; // index 3 is a dark red, 4 is black
    const QString file = write(QStringLiteral("a.pal"), palette);
    const cTexturePackage* set = load(seed(QStringLiteral("packages/shared-palette.wad")), file);
    ASSERT_THAT(names(set), ElementsAre("brick", "{grate")) << "a menu's picture is no texture";
    EXPECT_EQ(set->textures[0]->renderState, 0u) << "the last index is a colour elsewhere";
    EXPECT_EQ(set->textures[1]->renderState, 0x1100u);
    const QImage grate = picture(set->textures[1]); // rows of hole, hole, 3, 4
    EXPECT_EQ(grate.pixel(2, 0), qRgb(0x77, 0, 0));
    EXPECT_EQ(qAlpha(grate.pixel(0, 0)) + qAlpha(grate.pixel(1, 5)), 0);
    EXPECT_EQ(qRed(grate.pixel(1, 0)), 0x77) << "a hole has the colour beside it";
    EXPECT_THAT(names(load(seed(QStringLiteral("packages/own-palettes.wad")))),
                ElementsAre("sky", "{fence"));
}

TEST_F(cMediaTextures, archivesGiveTheImagesBelowTheirTexturesFolder) {
    const QImage expected = asRead(seed(QStringLiteral("images/base.png")));
    const cTexturePackage* folders = load(seed(QStringLiteral("packages/folders.pk3")));
    EXPECT_THAT(names(folders), ElementsAre("base/wall", "floor"));
    const cTexturePackage* flat = load(seed(QStringLiteral("packages/flat.zip")));
    EXPECT_THAT(names(flat), ElementsAre("one", "two", "three.v2"));
    for (const cTexturePackage* set : {folders, flat}) {
        for (const cTexture* texture : set->textures)
            EXPECT_EQ(picture(texture), expected) << texture->name;
    }
    EXPECT_EQ(warnings(), 0);
}

TEST_F(cMediaTextures, whatIsDamagedIsLeftOutWithOneLineAFile) {
    EXPECT_THAT(names(load(seed(QStringLiteral("packages/damaged.wad")))), ElementsAre("good"));
    EXPECT_EQ(host.count(eMessage::Warning, QStringLiteral("5 entries")), 1);
    EXPECT_THAT(names(load(seed(QStringLiteral("packages/damaged.pk3")))), ElementsAre("good"));
    EXPECT_EQ(host.count(eMessage::Warning, QStringLiteral("3 entries")), 1);
    for (const char* name : {"own-palettes.wad", "flat.zip"}) {
        const QByteArray whole = contents(seed(QStringLiteral("packages/") + QLatin1String(name)));
        host.messages.clear();
        const QString cut = write(QLatin1String(name), whole.left(whole.size() * 3 / 4));
        EXPECT_THAT(names(load(cut)), IsEmpty());
        EXPECT_EQ(warnings(), 1) << name;
    }
}

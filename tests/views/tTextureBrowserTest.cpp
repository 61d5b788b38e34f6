// SPDX-License-Identifier: MIT
// The tiles of the texture browser at random sizes, modes and filters: one layout for painting,
// mouse and keys.
#include "views/tTextureBrowser.h"
#include "support/tPatience.h"
#include "views/tViewFixture.h"

#include "document/tTexture.h"
#include "resources/tTextureCatalogue.h"
#include "support/tColors.h"
#include "support/tMapText.h"
#include "views/tTextDrawer.h"
#include "views/tTextureUpload.h"

#include <QOpenGLFramebufferObject>
#include <QtTest/QTest>
#include <cmath>
#include <random>
#include <utility>

class cPaintedBrowser : public cTextureBrowser {
public:
    cPaintedBrowser() : cTextureBrowser(nullptr) {}

    // In device pixels. Not through the window, whose buffer follows a change of size in its time.
    QImage picture() {
        makeCurrent();
        QOpenGLFramebufferObject buffer(size() * devicePixelRatioF());
        buffer.bind();
        paintGL();
        return buffer.toImage();
    }
    // The pixel's middle.
    static QRgb at(const QImage& picture, QPoint pixel, qreal ratio) {
        return picture.pixel(int((pixel.x() + 0.5) * ratio), int((pixel.y() + 0.5) * ratio));
    }
};

class TextureBrowserTest : public ViewFixture {
protected:
    TextureBrowserTest() {
        host.setColor(COLOR_TEXBROWSER_BACKGROUND, 1, 2, 3);
        host.setColor(COLOR_TEXBROWSER_TEXT_BGCOLOR, 0, 0, 220);
        host.setColor(COLOR_TEXBROWSER_LINE, 255, 255, 255);
        m_manager.setUploader(&m_upload);
        m_package.manager = &m_manager;
    }
    ~TextureBrowserTest() override { browser.reset(); }

    // One colour all over, which no other texture has.
    cTexture* add(const QString& name, int width, int height, const char* group = "a.wad") {
        const auto number = uint32_t(m_package.textures.size() + 1);
        const std::vector<uint32_t> pixels(size_t(width * height),
                                           0xff000000u | number * 0x010503u);
        const QByteArray text = toMapText(name);
        cTextureManager::addTexture(text.constData(), text.constData(), GL_RGBA, GL_RGBA,
                                    width * height * 4, width, height, 0, nullptr, pixels.data(),
                                    &m_package);
        cTexture* texture = m_package.textures.back();
        m_colors[texture] = qRgb(int(number * 3 & 255), int(number * 5 & 255), int(number & 255));
        catalogue.entries.insert(name.toUpper(), {QString::fromLatin1(group), &m_package, texture});
        return texture;
    }
    void show(int width, int height) {
        browser = std::make_unique<cPaintedBrowser>();
        browser->setCatalogue(&catalogue);
        resize(width, height);
    }
    void resize(int width, int height) {
        browser->resize(width, height);
        browser->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(browser.get(), PATIENCE));
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return browser->size() == QSize(width, height); }, PATIENCE));
    }
    QStringList shownNames() {
        QStringList names;
        for (const cShownTexture& one : browser->shown())
            names.append(one.name);
        return names;
    }
    const cTextureTile& tileOf(const cTexture* texture) {
        for (size_t i = 0; i < browser->shown().size(); ++i)
            if (browser->shown()[i].texture == texture)
                return browser->tiles().tiles()[i];
        throw std::logic_error("not shown");
    }
    void checkLayout();
    void checkPicture();

    cTextureUpload m_upload{*viewHost.shareWidget()};
    cTextureManager m_manager;
    cTexturePackage m_package;
    cTextureCatalogue catalogue{m_manager};
    std::map<const cTexture*, QRgb> m_colors;
    std::unique_ptr<cPaintedBrowser> browser;
};

// Tiles lie apart, within the view or alone in their row, and are found where they lie.
void TextureBrowserTest::checkLayout() {
    const auto& tiles = browser->tiles().tiles();
    ASSERT_EQ(tiles.size(), browser->shown().size());
    for (int i = 0; i < int(tiles.size()); ++i) {
        const QRect bounds = tiles[size_t(i)].bounds();
        EXPECT_TRUE(bounds.right() < browser->width() || bounds.left() == 8) << i;
        EXPECT_LE(bounds.bottom(), browser->tiles().contentHeight());
        EXPECT_EQ(browser->tiles().at(bounds.left(), bounds.top()), i);
        EXPECT_EQ(browser->tiles().at(bounds.right(), bounds.bottom()), i);
        EXPECT_EQ(browser->tiles().at(bounds.right() + 4, bounds.center().y()), -1);
        EXPECT_EQ(browser->tiles().at(bounds.center().x(), bounds.bottom() + 1), -1);
        for (int j = 0; j < i; ++j)
            EXPECT_FALSE(bounds.intersects(tiles[size_t(j)].bounds())) << i << " and " << j;
        const auto [first, end] = browser->tiles().between(bounds.bottom(), bounds.bottom() + 1);
        EXPECT_TRUE(first <= i && i < end) << i;
    }
}

// Smoothing rounds.
static bool isNear(QRgb a, QRgb b) {
    return std::abs(qRed(a) - qRed(b)) <= 1 && std::abs(qGreen(a) - qGreen(b)) <= 1 &&
           std::abs(qBlue(a) - qBlue(b)) <= 1;
}

// Each tile in view shows its own colour over its strip, and nobody else's anywhere in it.
void TextureBrowserTest::checkPicture() {
    const QImage picture = browser->picture();
    const qreal ratio = browser->devicePixelRatioF();
    const int offset = browser->scrollOffset();
    for (size_t i = 0; i < browser->tiles().tiles().size(); ++i) {
        const cTextureTile& tile = browser->tiles().tiles()[i];
        const QRgb color = m_colors[browser->shown()[i].texture];
        const std::pair<QPoint, QRgb> places[] = {
            {tile.image.topLeft(), color},
            {tile.image.bottomRight(), color},
            {tile.label().topLeft(), qRgb(0, 0, 220)},
            {tile.label().bottomRight(), qRgb(0, 0, 220)},
            {tile.label().bottomLeft() + QPoint(0, 1), qRgb(1, 2, 3)}};
        for (const auto& [place, wanted] : places) {
            const QPoint pixel = place - QPoint(0, offset);
            if (!browser->rect().contains(pixel))
                continue;
            EXPECT_TRUE(isNear(cPaintedBrowser::at(picture, pixel, ratio), wanted))
                << i << " at " << pixel.x() << ", " << pixel.y();
        }
    }
}

TEST_F(TextureBrowserTest, tilesLieApartAndArePaintedAndFoundWhereTheyLie) {
    std::random_device seeds;
    const auto seed = seeds();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto upTo = [&](int count) { return int(random() % unsigned(count)); };
    static const int sides[] = {1, 8, 16, 64, 96, 128, 256};
    for (int i = 0; i < 60; ++i)
        add(QString::number(upTo(1000)) + QString(upTo(20), QLatin1Char('x')) + QString::number(i),
            sides[upTo(7)], sides[upTo(7)], upTo(2) ? "a.wad" : "b.wad");
    show(400, 300);
    for (int round = 0; round < 12; ++round) {
        resize(150 + upTo(500), 120 + upTo(300));
        browser->setScaleMode(upTo(TEXTURE_SCALE_COUNT));
        browser->setGroup(upTo(2) ? QStringLiteral("a.wad") : QString());
        browser->setFilter(upTo(2) ? QString::number(upTo(10)) : QString());
        checkLayout();
        browser->setScroll(float(upTo(101)) / 100);
        checkPicture();
    }
}

TEST_F(TextureBrowserTest, sizesOfTilesGoByTheMode) {
    const cTexture* square = add(QStringLiteral("s"), 64, 64);
    const cTexture* narrow = add(QStringLiteral("quite_a_long_name"), 16, 32);
    show(900, 400);
    const int label =
        int(std::ceil(textWidth(browser->labelFont, QStringLiteral("quite_a_long_name"))));
    const struct {
        int mode;
        QSize image, narrowImage;
        int cell, height;
    } cases[] = {{0, {128, 128}, {32, 64}, 128, 128},
                 {1, {64, 64}, {16, 32}, 64, 64},
                 {3, {16, 16}, {4, 8}, 16, 16},
                 {4, {32, 32}, {16, 32}, 32, 32},
                 {7, {64, 64}, {16, 32}, 256, 256}};
    for (const auto& c : cases) {
        browser->setScaleMode(c.mode);
        EXPECT_EQ(tileOf(square).image.size(), c.image) << c.mode;
        EXPECT_EQ(tileOf(narrow).image.size(), c.narrowImage) << c.mode;
        EXPECT_EQ(tileOf(square).cell, c.cell);
        EXPECT_EQ(tileOf(square).height, c.height);
        EXPECT_EQ(tileOf(narrow).cell, std::max(c.mode == 7 ? 256 : 0, label + 4));
        EXPECT_NEAR(tileOf(narrow).image.center().x(), tileOf(narrow).bounds().center().x(), 1);
    }
}

TEST_F(TextureBrowserTest, theFilterTakesAnyOfItsWords) {
    const cTexture* used = add(QStringLiteral("Wall_a"), 16, 16);
    add(QStringLiteral("floor.b"), 16, 16);
    add(QStringLiteral("sky"), 16, 16, "b.wad");
    show(400, 300);
    const QStringList all = {QStringLiteral("floor.b"), QStringLiteral("sky"),
                             QStringLiteral("Wall_a")};
    const std::pair<const char*, QStringList> cases[] = {
        {"", all},          {" ,; ", all},
        {"wall", {all[2]}}, {"SKY;or.", {all[0], all[1]}},
        {".*", {}},         {"a sky", {all[1], all[2]}}};
    for (const auto& [text, names] : cases) {
        browser->setFilter(QString::fromLatin1(text));
        EXPECT_EQ(shownNames(), names) << text;
    }
    browser->setFilter(QString());
    browser->setOnlyUsed(true);
    EXPECT_EQ(shownNames(), QStringList());
    EXPECT_EQ(browser->tiles().contentHeight(), 0);
    browser->setUsed({used});
    EXPECT_EQ(shownNames(), QStringList({all[2]}));
    browser->setGroup(QStringLiteral("b.wad"));
    EXPECT_EQ(shownNames(), QStringList());
    browser->setOnlyUsed(false);
    EXPECT_EQ(shownNames(), QStringList({all[1]}));
}

TEST_F(TextureBrowserTest, keysReachEveryTileAndBringItIntoView) {
    for (int i = 0; i < 40; ++i)
        add(QStringLiteral("t%1").arg(i, 2, 10, QLatin1Char('0')), 32 + 16 * (i % 5), 48);
    show(300, 200);
    std::vector<const cTexture*> met;
    QObject::connect(browser.get(), &cTextureBrowser::chosen,
                     [&](const cTexture* texture) { met.push_back(texture); });
    const auto press = [&](int key) {
        QTest::keyClick(browser.get(), Qt::Key(key));
        const QRect bounds = tileOf(browser->selected()).bounds();
        const int offset = browser->scrollOffset();
        EXPECT_TRUE(bounds.top() >= offset && bounds.bottom() < offset + browser->height());
        return browser->selected();
    };
    for (int i = 0; i < 40; ++i)
        press(Qt::Key_Right);
    ASSERT_EQ(met.size(), 40u);
    for (size_t i = 0; i < met.size(); ++i)
        EXPECT_EQ(met[i], browser->shown()[i].texture);
    const cTexture* last = met[39];
    EXPECT_EQ(press(Qt::Key_Right), last) << "there is no further one";
    EXPECT_EQ(press(Qt::Key_Home), met[0]);
    for (int y = 0; y < tileOf(last).y;) {
        const int above = std::exchange(y, tileOf(press(Qt::Key_Down)).y);
        ASSERT_GT(y, above);
    }
    press(Qt::Key_PageUp);
    EXPECT_LT(tileOf(browser->selected()).y, tileOf(last).y);
    EXPECT_EQ(press(Qt::Key_End), last);
    EXPECT_EQ(press(Qt::Key_Left), met[38]);
}

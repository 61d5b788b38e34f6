// SPDX-License-Identifier: MIT
// Texts from the glyph atlas against those that Qt paints.
#include "views/tTextDrawer.h"
#include "support/tPatience.h"
#include "views/tGLState.h"
#include "views/tPlainGL.h"
#include "views/tViewFixture.h"

#include <QPainter>
#include <QtTest/QTest>
#include <cmath>

static constexpr uint8_t WHITE[4] = {255, 255, 255, 255};
static constexpr int X = 8, BASELINE = 20; // whole pixels at a scale of 1.5 as well

// Shows what it is told to draw, on black.
class cTextCanvas : public cGLWidget {
public:
    cTextCanvas() : cGLWidget(eGLBuffers::Color, nullptr, g_viewHost->shareWidget()) {
        resize(300, 40);
        show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(this, PATIENCE));
    }

    QImage draw(const QFont& font, const QStringList& texts) {
        static constexpr uint8_t black[4] = {0, 0, 0, 255};
        makeCurrent();
        initializePlainGL();
        beginPlainFrame(*this, black);
        cTextDrawer drawer(font, devicePixelRatioF());
        for (const QString& text : texts)
            drawer.add(X, BASELINE, text, WHITE);
        drawer.flush();
        QImage image(size() * devicePixelRatioF(), QImage::Format_RGBX8888);
        glReadPixels(0, 0, image.width(), image.height(), GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
        return image.mirrored().convertToFormat(QImage::Format_Grayscale8);
    }

    QImage painted(const QFont& font, const QString& text) const {
        QImage image(size() * devicePixelRatioF(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.scale(devicePixelRatioF(), devicePixelRatioF());
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(X, BASELINE, text);
        painter.end();
        return image.convertToFormat(QImage::Format_Alpha8);
    }

protected:
    void paintGL() override {}
};

class TextDrawerTest : public ViewFixture {
protected:
    static QFont mono() { return QFont(QStringLiteral("DejaVu Sans Mono"), 9); }

    cTextCanvas canvas;
};

// Shares of full ink that two pictures differ by, over all pixels.
static double difference(const QImage& a, const QImage& b) {
    double sum = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            sum += std::abs(a.constScanLine(y)[x] - b.constScanLine(y)[x]) / 255.0;
    return sum;
}

static double ink(const QImage& image) {
    QImage none(image.size(), QImage::Format_Grayscale8);
    none.fill(0);
    return difference(image, none);
}

TEST_F(TextDrawerTest, aCharacterLooksAsQtPaintsIt) {
    for (const char* text : {"W", "g", "\xc4\x96", "\xd0\x96", "\xd1\x84", "\xe2\x82\xac"}) {
        const QString character = QString::fromUtf8(text);
        const QImage wanted = canvas.painted(mono(), character);
        const QImage drawn = canvas.draw(mono(), {character});
        EXPECT_GT(ink(wanted), 5) << text;
        EXPECT_LT(difference(drawn, wanted), 0.06 * ink(wanted)) << text;
    }
}

// In a font of one width no rounding adds up over the text, so all of it lies where Qt paints it.
TEST_F(TextDrawerTest, aTextIsAsLongAsItsMeasure) {
    const QString text = QStringLiteral("wall_blue-01");
    const QImage drawn = canvas.draw(mono(), {text + QLatin1Char('|')});
    const QImage bare = canvas.draw(mono(), {text});
    int first = drawn.width();
    for (int y = 0; y < drawn.height(); ++y)
        for (int x = 0; x < drawn.width(); ++x)
            if (std::abs(drawn.constScanLine(y)[x] - bare.constScanLine(y)[x]) > 30)
                first = std::min(first, x);
    const auto ratio = float(canvas.devicePixelRatioF());
    const float cell = textWidth(mono(), QStringLiteral("|")) * ratio;
    EXPECT_NEAR(float(first), (X + textWidth(mono(), text)) * ratio + cell / 2, cell / 3);
    EXPECT_FLOAT_EQ(textWidth(mono(), text + text), 2 * textWidth(mono(), text));
}

TEST_F(TextDrawerTest, aFullTextureLosesNoCharacter) {
    const QFont large(QStringLiteral("DejaVu Sans"), 26);
    QStringList texts;
    for (ushort c = 0x21; c < 0x580; ++c)
        if (QChar(c).isPrint())
            texts.append(QString(QChar(c)));
    const QImage first = canvas.draw(large, {texts.first()});
    QStringList inTheEnd = texts;
    inTheEnd.append(texts.first());
    const QImage all = canvas.draw(large, inTheEnd);
    EXPECT_EQ(difference(canvas.draw(large, {texts.first()}), first), 0);
    for (const QString& text : {texts.first(), texts[500], texts.last()}) {
        const QImage alone = canvas.draw(large, {text});
        for (int y = 0; y < all.height(); ++y)
            for (int x = 0; x < all.width(); ++x)
                ASSERT_LE(alone.constScanLine(y)[x], all.constScanLine(y)[x] + 1)
                    << text.toStdString() << " is not among all";
    }
}

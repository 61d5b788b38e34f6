// SPDX-License-Identifier: MIT
// The Textures dock and the browser, over folders of images that a plug-in reads.
#include "gui/tGuiTest.h"

#include "document/tTexture.h"
#include "resources/tTextureCatalogue.h"
#include "shell/tTexturesDock.h"
#include "support/tMapText.h"
#include "views/tTextureBrowser.h"

#include <QComboBox>
#include <QScrollBar>

class TextureDockTest : public cGuiTest {
protected:
    void SetUp() override {
        cGuiTest::SetUp();
        ASSERT_TRUE(
            QFile::copy(QStringLiteral(KARVEX_PLUGINS "/tpmedia.so"), file("plugins/tpmedia.so")));
        QByteArray config = read("TDKGameCfg.ini");
        int number = 0;
        const QStringList folders = {QStringLiteral("stone"), QStringLiteral("wood")};
        for (const QString& folder : folders) {
            ASSERT_TRUE(QDir(file(".")).mkdir(folder));
            config += "Parcel" + QByteArray::number(number++) + "=" + toMapText(file(folder)) +
                      "::*.png\n";
        }
        write("TDKGameCfg.ini", config);
        addImage("stone/floor", 64, 32);
        addImage("stone/ruined_wall", 32, 32);
        addImage("wood/plank", 16, 16);
    }
    void addImage(const char* name, int width, int height) const {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        ASSERT_TRUE(image.save(file(QString::fromLatin1(name) + QStringLiteral(".png"))));
    }

    QComboBox* groups() const { return child<QComboBox>(window.get(), "lstTextureGroup"); }
    QComboBox* names() const { return child<QComboBox>(window.get(), "lstTexture"); }
    QString sizeText() const { return child<QLabel>(window.get(), "lblTexSize")->text(); }
    QString current() const {
        const cTexture* texture = window->currentTexture();
        return texture ? fromMapText(texture->name) : QString();
    }
    // As by the keys in an open list.
    void pick(QComboBox* box, const QString& text) const {
        const int row = box->findText(text);
        ASSERT_GE(row, 0) << text.toStdString();
        box->setCurrentIndex(row);
        emit box->activated(row);
    }
    static QStringList textsOf(const QComboBox* box) {
        QStringList texts;
        for (int i = 0; i < box->count(); ++i)
            texts.append(box->itemText(i));
        return texts;
    }
    // The dock's button, and what the user does in the browser.
    void browse(const std::function<void(QWidget*)>& use) {
        replies.expect(use);
        child<QPushButton>(child<QDockWidget>(window.get(), "textures"), "btnBrowse")->click();
        ASSERT_TRUE(answered());
        settle(); // or the replies take the next opening for the same one
    }
    static void type(QWidget* dialog, const char* keys) {
        QWidget* grid = child<cTextureBrowser>(dialog, "browser");
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog, PATIENCE));
        EXPECT_TRUE(QTest::qWaitFor([=] { return grid->hasFocus(); }, PATIENCE));
        QTest::keyClicks(grid, QString::fromLatin1(keys));
    }
    static void clickTile(QWidget* dialog, const char* name, bool twice = false) {
        auto* grid = child<cTextureBrowser>(dialog, "browser");
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog, PATIENCE));
        for (size_t i = 0; i < grid->shown().size(); ++i) {
            if (grid->shown()[i].name != QLatin1String(name))
                continue;
            const QPoint middle =
                grid->tiles().tiles()[i].bounds().center() - QPoint(0, grid->scrollOffset());
            if (twice)
                QTest::mouseDClick(grid, Qt::LeftButton, Qt::NoModifier, middle);
            else
                QTest::mouseClick(grid, Qt::LeftButton, Qt::NoModifier, middle);
            return;
        }
        ADD_FAILURE() << name << " is not shown";
    }
    static int shownIn(QWidget* dialog) {
        return int(child<cTextureBrowser>(dialog, "browser")->shown().size());
    }
};

TEST_F(TextureDockTest, itsListsFollowTheActiveDocument) {
    start();
    EXPECT_FALSE(names()->isEnabled());
    EXPECT_EQ(names()->count(), 0);
    EXPECT_EQ(window->currentTexture(), nullptr);
    newProject();
    EXPECT_TRUE(names()->isEnabled());
    EXPECT_EQ(textsOf(groups()).first(), cTextureCatalogue::allTextures());
    EXPECT_EQ(groups()->count(), 3);
    EXPECT_EQ(names()->count(), 3);
    EXPECT_FALSE(names()->itemData(0, Qt::DecorationRole).isNull());
    EXPECT_TRUE(current().endsWith(QLatin1String("ruined_wall"))) << "no other name holds wall";
    EXPECT_EQ(names()->currentText(), current());
    EXPECT_EQ(sizeText(), QStringLiteral("32 x 32"));
    trigger("FileClose");
    settle();
    EXPECT_FALSE(names()->isEnabled());
    EXPECT_EQ(names()->count() + groups()->count(), 0);
}

TEST_F(TextureDockTest, eachDocumentKeepsItsTextureAndANewOneTakesTheDocks) {
    cProject* first = startWithProject();
    const QString wood = groups()->itemText(2);
    pick(groups(), wood);
    EXPECT_EQ(names()->count(), 1);
    EXPECT_EQ(names()->currentText(), current());
    const QString plank = current();
    EXPECT_TRUE(plank.endsWith(QLatin1String("plank")));
    newProject();
    EXPECT_EQ(current(), plank);
    EXPECT_EQ(groups()->currentText(), cTextureCatalogue::allTextures());
    const QString floor =
        names()->itemText(names()->findText(QStringLiteral("floor"), Qt::MatchEndsWith));
    pick(names(), floor);
    EXPECT_EQ(current(), floor);
    EXPECT_EQ(sizeText(), QStringLiteral("64 x 32"));
    window->setActiveChildWindow(first->windows.first()->parentWidget());
    settle();
    EXPECT_EQ(current(), plank);
    EXPECT_EQ(names()->currentText(), plank);
    EXPECT_EQ(groups()->currentText(), wood);
}

TEST_F(TextureDockTest, aMissingTextureHasItsGroupAndIsNamed) {
    cProject* project = startWithProject();
    EXPECT_LT(groups()->findText(cTextureCatalogue::missing()), 0);
    project->game.addMissingTexture("gone");
    window->updateCommands();
    EXPECT_EQ(groups()->itemText(0), cTextureCatalogue::missing());
    pick(groups(), cTextureCatalogue::missing());
    EXPECT_EQ(current(), QStringLiteral("gone"));
    EXPECT_EQ(sizeText(), QStringLiteral("(not found: gone)"));
}

TEST_F(TextureDockTest, whatIsPickedInTheBrowserIsCurrent) {
    startWithProject();
    const QString before = current();
    browse([](QWidget* dialog) { clickTile(dialog, "plank", true); });
    EXPECT_NE(current(), before);
    const QString picked = current();
    EXPECT_EQ(names()->currentText(), picked);
    browse([](QWidget* dialog) {
        clickTile(dialog, "floor");
        EXPECT_EQ(child<QLabel>(dialog, "lblTextureSize")->text(), QStringLiteral("64 x 32"));
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(current(), picked) << "Esc takes it back";
    browse([](QWidget* dialog) {
        clickTile(dialog, "floor");
        dialog->close();
    });
    EXPECT_TRUE(current().endsWith(QLatin1String("floor"))) << "a closed window leaves it";
}

TEST_F(TextureDockTest, theBrowserIsUsedByKeysAlone) {
    startWithProject();
    browse([](QWidget* dialog) {
        EXPECT_EQ(shownIn(dialog), 3);
        type(dialog, "plank");
        EXPECT_EQ(shownIn(dialog), 3) << "it waits until no more is typed";
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        EXPECT_EQ(shownIn(dialog), 1) << "but no longer than a Return";
        EXPECT_TRUE(dialog->isVisible());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    });
    EXPECT_TRUE(current().endsWith(QLatin1String("plank")));
    browse([](QWidget* dialog) {
        EXPECT_EQ(shownIn(dialog), 1) << "the filter stays";
        type(dialog, "wall,floor");
        EXPECT_TRUE(QTest::qWaitFor([=] { return shownIn(dialog) == 2; }, PATIENCE));
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
}

TEST_F(TextureDockTest, marksAndCountsWhatTheMapUses) {
    const cProject* project = startWithProject();
    const float mins[3] = {0, 0, 0}, maxs[3] = {64, 64, 64}, aside[3] = {128, 128, 128};
    const cBrushData* other = addBox(*project->map, project->map->world(), maxs, aside, "plank");
    const cBrushData* brush = addBox(*project->map, project->map->world(), mins, maxs, "floor");
    browse([=](QWidget* dialog) {
        child<QCheckBox>(dialog, "cbOnlyUsed")->click();
        EXPECT_EQ(shownIn(dialog), 2);
        clickTile(dialog, "floor");
        child<QPushButton>(dialog, "btnMark")->click();
        EXPECT_TRUE(dialog->isVisible());
        dialog->close();
    });
    EXPECT_TRUE(isSelected(brush));
    EXPECT_FALSE(isSelected(other));
    EXPECT_TRUE(pane(PANE_SELECTION).contains(QLatin1String("solid")));
}

TEST_F(TextureDockTest, sizeFilterAndPlaceOfTheBrowserComeBack) {
    startWithProject();
    QRect place;
    browse([&](QWidget* dialog) {
        type(dialog, "wood");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        child<QComboBox>(dialog, "lstScaleMode")->setCurrentIndex(5);
        dialog->setGeometry(200, 150, 520, 410);
        QTest::qWait(50);
        place = dialog->geometry();
        dialog->close();
    });
    EXPECT_EQ(window->TextureBrowserScaleMode, 5);
    restart();
    newProject();
    browse([&](QWidget* dialog) {
        EXPECT_EQ(child<QComboBox>(dialog, "lstScaleMode")->currentIndex(), 5);
        EXPECT_EQ(textsOf(child<QComboBox>(dialog, "lstFilter")),
                  QStringList(QStringLiteral("wood")));
        EXPECT_EQ(dialog->size(), place.size());
        EXPECT_LT((dialog->geometry().topLeft() - place.topLeft()).manhattanLength(), 60);
        dialog->close();
    });
}

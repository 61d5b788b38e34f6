// SPDX-License-Identifier: MIT
// The room that a new map begins with: asked for, refused, skipped, and brought back by Shift.
#include "document/tHistory.h"
#include "document/tMapLists.h"
#include "gui/tGuiTest.h"
#include "support/tMapTools.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QToolBar>

class NewRoomTest : public cGuiTest {
protected:
    void startAsking() {
        write(QStringLiteral("test.fgd"),
              "@SolidClass = worldspawn : \"World\" []\n"
              "@PointClass size(-16 -16 -36, 16 16 36) = info_start : \"Start\" []\n"
              "@PointClass = light : \"Light\" []\n");
        writeConfigs(1, 0, "rich");
        start();
        window->SkipDefaultRoomDialog = false;
    }

    void TearDown() override {
        if (window)
            for (cProject* project : window->projects)
                project->dirty = false;
        cGuiTest::TearDown();
    }

    void answer(QDialogButtonBox::StandardButton button,
                std::function<void(QWidget*)> change = nullptr) {
        replies.expect([button, change](QWidget* dialog) {
            EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Default Room Properties"));
            if (change)
                change(dialog);
            dialog->findChild<QDialogButtonBox*>()->button(button)->click();
        });
    }
    static QSpinBox* size(const QWidget* dialog, const char* name) {
        return dialog->findChild<QSpinBox*>(QString::fromLatin1(name));
    }
    static QString texture(const QWidget* dialog, const char* name) {
        return dialog->findChild<QLineEdit*>(QString::fromLatin1(name))->text();
    }
    // A click on the button of the file bar.
    void clickNew(Qt::KeyboardModifiers modifiers = {}) {
        QAction* button = action("FileNew", 1);
        for (QWidget* bar : button->associatedWidgets())
            if (auto* toolBar = qobject_cast<QToolBar*>(bar))
                QTest::mouseClick(toolBar->widgetForAction(button), Qt::LeftButton, modifiers);
        EXPECT_TRUE(answered());
        releaseShift();
        settle();
    }
    int brushCount() const {
        int count = 0;
        for ([[maybe_unused]] const cBrushData* brush : brushesOf(active()->map->world()))
            ++count;
        return count;
    }
};

TEST_F(NewRoomTest, anAcceptedRoomIsInTheMapWithoutAStep) {
    startAsking();
    answer(QDialogButtonBox::Ok, [](QWidget* dialog) {
        EXPECT_EQ(size(dialog, "sbX")->value(), 512);
        EXPECT_EQ(size(dialog, "sbY")->value(), 512);
        EXPECT_EQ(size(dialog, "sbZ")->value(), 160);
        EXPECT_EQ(texture(dialog, "txtWall"), QStringLiteral("brick"));
        EXPECT_EQ(texture(dialog, "txtFloor"), QStringLiteral("tiles"));
        EXPECT_EQ(texture(dialog, "txtCeil"), QString());
        size(dialog, "sbX")->setValue(2000);
        size(dialog, "sbY")->setValue(1);
    });
    clickNew();
    ASSERT_TRUE(active());
    EXPECT_EQ(brushCount(), 6);
    float mins[3] = {0, 0, 0}, maxs[3] = {0, 0, 0};
    QStringList textures;
    for (const cBrushData* brush : brushesOf(active()->map->world())) {
        for (int i = 0; i < 3; ++i) {
            mins[i] = std::min(mins[i], brush->mins[i]);
            maxs[i] = std::max(maxs[i], brush->maxs[i]);
        }
        textures.append(QString::fromLatin1(brush->faces->tex.name));
    }
    const float wanted[2][3] = {{-544, -96, -32}, {544, 96, 192}}; // 1024, 128 and 160 inside
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(mins[i], wanted[0][i]);
        EXPECT_EQ(maxs[i], wanted[1][i]);
    }
    EXPECT_EQ(textures.count(QStringLiteral("brick")), 4);
    EXPECT_EQ(textures.count(QStringLiteral("tiles")), 1);
    EXPECT_EQ(textures.count(QStringLiteral("notexture")), 1);
    QStringList entities;
    for (const cEntityData* entity : entitiesOf(active()->map->data))
        entities.append(QString::fromLatin1(entity->classname));
    entities.sort();
    EXPECT_EQ(entities.join(QLatin1Char(' ')), QStringLiteral("info_start light worldspawn"));
    EXPECT_EQ(checkMapInvariants(*active()->map), QString());
    EXPECT_FALSE(active()->dirty);
    EXPECT_FALSE(active()->map->history->canUndo());

    answer(QDialogButtonBox::Cancel, [](QWidget* dialog) {
        EXPECT_EQ(size(dialog, "sbX")->value(), 1024) << "kept";
        size(dialog, "sbX")->setValue(300);
    });
    clickNew();
    EXPECT_EQ(window->projects.size(), 2);
    EXPECT_EQ(brushCount(), 0) << "a refused room leaves the map empty";
    answer(QDialogButtonBox::Cancel, [](QWidget* dialog) {
        EXPECT_EQ(size(dialog, "sbX")->value(), 1024) << "what was refused is not kept";
    });
    clickNew();
}

TEST_F(NewRoomTest, theDialogStaysAwayByItsBoxAndComesBackByShift) {
    startAsking();
    replies.expect([](QWidget* dialog) { // the notice comes up over it
        auto* box = dialog->findChild<QCheckBox*>(QStringLiteral("cbNoShow"));
        QTimer::singleShot(0, box, &QCheckBox::click);
    });
    replies.expectBox(
        QMessageBox::Ok,
        QStringLiteral("You have chosen not to display the dialog later upon creation of a new "
                       "map. To invoke it again, click the \"New\" button (or a corresponding "
                       "menu item) holding the SHIFT key."));
    answer(QDialogButtonBox::Ok);
    clickNew();
    EXPECT_EQ(brushCount(), 6);
    EXPECT_TRUE(window->SkipDefaultRoomDialog);
    clickNew(); // nothing is asked
    EXPECT_EQ(window->projects.size(), 2);
    EXPECT_EQ(brushCount(), 0);

    answer(QDialogButtonBox::Ok, [](QWidget* dialog) {
        auto* box = dialog->findChild<QCheckBox*>(QStringLiteral("cbNoShow"));
        EXPECT_TRUE(box->isChecked());
        box->click();
    });
    clickNew(Qt::ShiftModifier);
    EXPECT_EQ(brushCount(), 6);
    EXPECT_FALSE(window->SkipDefaultRoomDialog);
}

// SPDX-License-Identifier: MIT
// The room that a new map begins with: asked for, refused, skipped, and brought back by Shift.
#include "gui/tGuiTest.h"
#include "resources/tGameConfigRegistry.h"

#include <QSpinBox>

class NewRoomTest : public cGuiTest {
protected:
    void startAsking() {
        write("test.fgd", "@SolidClass = worldspawn : \"World\" []\n"
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
        return child<QSpinBox>(dialog, name);
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
    int brushCount() const { return countOf(brushesOf(active()->map->world())); }
};

TEST_F(NewRoomTest, anAcceptedRoomIsInTheMapWithoutAStep) {
    startAsking();
    answer(QDialogButtonBox::Ok, [](QWidget* dialog) {
        EXPECT_EQ(size(dialog, "sbX")->value(), 512);
        size(dialog, "sbX")->setValue(2000);
        size(dialog, "sbY")->setValue(1);
    });
    clickNew();
    ASSERT_TRUE(active());
    EXPECT_EQ(brushCount(), 6);
    const cEntityData* world = active()->map->world();
    const float mins[3] = {-544, -96, -32}, maxs[3] = {544, 96, 192}; // 1024, 128 and 160 inside
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(world->mins[i], mins[i]);
        EXPECT_EQ(world->maxs[i], maxs[i]);
    }
    QStringList names; // of the textures and the classes
    for (const cBrushData* brush : brushesOf(world))
        names.append(QString::fromLatin1(brush->faces->tex.name));
    for (const cEntityData* entity : entitiesOf(active()->map->data))
        names.append(QString::fromLatin1(entity->classname));
    names.sort();
    EXPECT_EQ(
        names.join(QLatin1Char(' ')),
        QStringLiteral("brick brick brick brick info_start light notexture tiles worldspawn"));
    EXPECT_EQ(checkMapInvariants(*active()->map), QString());
    EXPECT_FALSE(active()->dirty);
    EXPECT_FALSE(active()->map->history->canUndo());

    const cProject* first = active();
    answer(QDialogButtonBox::Cancel, [](QWidget* dialog) {
        EXPECT_EQ(size(dialog, "sbX")->value(), 1024) << "kept";
        size(dialog, "sbX")->setValue(300);
    });
    clickNew();
    EXPECT_EQ(window->projects.size(), 1) << "no map is wanted at all";
    EXPECT_EQ(active(), first);
    EXPECT_EQ(window->services().configs.current, first->game.config);
    replies.expect([](QWidget* dialog) {
        EXPECT_EQ(size(dialog, "sbX")->value(), 1024) << "what was refused is not kept";
        for (QAbstractButton* button : dialog->findChild<QDialogButtonBox*>()->buttons())
            if (button->text() == QStringLiteral("&Empty Map"))
                button->click();
    });
    clickNew();
    EXPECT_EQ(window->projects.size(), 2);
    EXPECT_EQ(brushCount(), 0);
    EXPECT_EQ(active()->title.mid(3).toInt(), first->title.mid(3).toInt() + 1);
}

TEST_F(NewRoomTest, theDialogStaysAwayByItsBoxAndComesBackByShift) {
    startAsking();
    replies.expect([](QWidget* dialog) { // the notice comes up over it
        auto* box = child<QCheckBox>(dialog, "cbNoShow");
        QTimer::singleShot(0, box, &QCheckBox::click);
    });
    replies.expectBox(QMessageBox::Ok,
                      "You have chosen not to display the dialog later upon creation of a new "
                      "map. To invoke it again, click the \"New\" button (or a corresponding "
                      "menu item) holding the SHIFT key.");
    answer(QDialogButtonBox::Ok);
    clickNew();
    EXPECT_EQ(brushCount(), 6);
    EXPECT_TRUE(window->SkipDefaultRoomDialog);
    clickNew(); // nothing is asked
    EXPECT_EQ(window->projects.size(), 2);
    EXPECT_EQ(brushCount(), 0);

    answer(QDialogButtonBox::Ok, [](QWidget* dialog) {
        auto* box = child<QCheckBox>(dialog, "cbNoShow");
        EXPECT_TRUE(box->isChecked());
        box->click();
    });
    clickNew(Qt::ShiftModifier);
    EXPECT_EQ(brushCount(), 6);
    EXPECT_FALSE(window->SkipDefaultRoomDialog);
}

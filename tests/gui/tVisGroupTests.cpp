// SPDX-License-Identifier: MIT
// The Filter Control dock by clicks, double clicks and drops, its dialog, hiding by hand.
#include "document/tBrush.h"
#include "document/tVisGroup.h"
#include "gui/tGuiTest.h"
#include "shell/tVisGroupList.h"

#include <QImage>
#include <QProcess>

static QImage imageOf(const QListWidgetItem* item, QIcon::Mode mode) {
    return item->icon().pixmap(16, mode).toImage();
}

class VisGroupTest : public cGuiTest {
protected:
    // Three blocks; "walls" holds two of them, "lights" none.
    void startWithGroups() {
        startWithProject();
        for (int i = 0; i < 3; ++i) {
            const float mins[3] = {float(i * 64), 0, 0};
            const float maxs[3] = {float(i * 64 + 32), 32, 32};
            brushes[i] = addBox(map(), map().world(), mins, maxs);
        }
        walls = map().createVisGroup("walls");
        lights = map().createVisGroup("lights");
        brushes[0]->brush->addToVisGroup(walls);
        brushes[1]->brush->addToVisGroup(walls);
        map().computeVisGroupVisibility();
        window->updateUi();
        active()->setDirty(false);
    }

    cMap& map() const { return *active()->map; }

    QVisGroupList* list() const { return child<QVisGroupList>(window.get(), "lstVisGroups"); }

    QPushButton* button(const char* name) const {
        return child<QPushButton>(child<QDockWidget>(window.get(), "visgroups"), name);
    }

    QString texts() const {
        QStringList all;
        for (int row = 0; row < list()->count(); ++row)
            all.append(list()->item(row)->text());
        return all.join(QStringLiteral(", "));
    }

    QPoint placeOf(int row) const { return list()->visualItemRect(list()->item(row)).center(); }
    void clickRow(int row) const {
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(row));
    }
    void clickButton(const char* name) const {
        QTest::mouseClick(button(name), Qt::LeftButton);
        letShow();
    }
    void doubleClickRow(int row) const {
        clickRow(row);
        QTest::mouseDClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(row));
    }

    // By the pointer of the X server, through the window system's own drag.
    void dragRow(int from, int to) const {
        static constexpr int STEPS = 8;
        const QPoint start = list()->viewport()->mapToGlobal(placeOf(from));
        const QPoint end = list()->viewport()->mapToGlobal(placeOf(to)) + QPoint(30, 0);
        QStringList words;
        const auto say = [&words](const QString& text) { words += text.split(QLatin1Char(' ')); };
        for (int step = 0; step <= STEPS; ++step) {
            const QPoint at = start + (end - start) * step / STEPS;
            say(QStringLiteral("mousemove %1 %2 sleep 0.05").arg(at.x()).arg(at.y()));
            if (step == 0)
                say(QStringLiteral("mousedown 1"));
        }
        say(QStringLiteral("sleep 0.2 mouseup 1"));
        QProcess hand;
        hand.start(QStringLiteral("xdotool"), words);
        EXPECT_TRUE(answered());
        EXPECT_TRUE(QTest::qWaitFor([&hand] { return hand.state() == QProcess::NotRunning; }));
        EXPECT_EQ(hand.exitCode(), 0);
        settle();
    }

    cBrushData* brushes[3] = {};
    cVisGroup* walls = nullptr;
    cVisGroup* lights = nullptr;
};

TEST_F(VisGroupTest, dockShowsTheGroupsOfTheActiveDocument) {
    const auto expectEnabled = [this](bool enabled) {
        for (const char* name : {"btnAssign", "btnEdit", "btnMark", "btnPurge"})
            EXPECT_EQ(button(name)->isEnabled(), enabled) << name;
    };
    start();
    EXPECT_FALSE(list()->isEnabled());
    expectEnabled(false);
    window.reset();
    startWithGroups();
    EXPECT_TRUE(list()->isEnabled());
    EXPECT_EQ(texts(), QStringLiteral("lights, walls (2 objects)"));
    clickRow(1);
    expectEnabled(true);
    window->updateUi();
    EXPECT_EQ(list()->currentId(), walls->id) << "survives a rebuild";
    trigger("EditSelAll");
    trigger("EditDelete");
    EXPECT_EQ(texts(), QStringLiteral("lights, walls"));
    trigger("EditUndo");
    EXPECT_EQ(texts(), QStringLiteral("lights, walls (2 objects)"));
    EXPECT_TRUE(walls->visible);
    newProject();
    EXPECT_EQ(list()->count(), 0);
    EXPECT_FALSE(button("btnAssign")->isEnabled());
    trigger("FileClose");
    settle();
    EXPECT_EQ(list()->count(), 2);
}

TEST_F(VisGroupTest, assignMarkAndPurge) {
    startWithGroups();
    map().selectBrushByIndex(0, 2, false);
    clickRow(0);
    clickButton("btnAssign");
    EXPECT_EQ(texts(), QStringLiteral("lights (1 object), walls (2 objects)"));
    EXPECT_TRUE(active()->dirty);

    clickRow(1);
    clickButton("btnMark");
    EXPECT_TRUE(brushes[0]->flags & brushes[1]->flags & BF_SELECTED);
    EXPECT_FALSE(brushes[2]->flags & BF_SELECTED);
    EXPECT_TRUE(action("EditCut")->isEnabled()) << "the tools and commands know";

    active()->setDirty(false);
    clickButton("btnPurge");
    EXPECT_EQ(list()->count(), 2);
    EXPECT_FALSE(active()->dirty) << "none is empty";
    trigger("EditDelete");
    clickRow(0);
    clickButton("btnPurge");
    EXPECT_EQ(texts(), QStringLiteral("lights (1 object)"));
    EXPECT_EQ(list()->currentId(), 1u) << "still current, under its new id";
}

TEST_F(VisGroupTest, aDropMergesAfterAQuestion) {
    startWithGroups();
    map().createVisGroup("doors");
    window->updateUi();
    active()->setDirty(false);
    replies.expectBox(QMessageBox::No, "Combine groups?");
    dragRow(2, 1);
    EXPECT_EQ(texts(), QStringLiteral("doors, lights, walls (2 objects)"));
    EXPECT_EQ(list()->currentId(), walls->id) << "the source is current again";
    dragRow(2, 2); // nothing is asked
    EXPECT_FALSE(active()->dirty);
    replies.expectBox(QMessageBox::Yes, "Combine groups?");
    dragRow(2, 1);
    EXPECT_EQ(texts(), QStringLiteral("doors, lights (2 objects)"));
    EXPECT_EQ(list()->currentId(), lights->id);
    EXPECT_EQ(map().visGroups.size(), 2);
    EXPECT_TRUE(active()->dirty);
    EXPECT_EQ(checkMapInvariants(map()), QString());
}

TEST_F(VisGroupTest, dialogChangesGroupsAsOneTypesAndAsksBeforeItRemovesMembers) {
    startWithGroups();
    clickRow(1);
    replies.expect([&](QWidget* modal) {
        EXPECT_EQ(modal->windowTitle(), QStringLiteral("Object Groups"));
        auto* all = child<QListWidget>(modal, "lstVisGroups");
        auto* name = child<QLineEdit>(modal, "txtName");
        auto* remove = child<QPushButton>(modal, "btnRemove");
        EXPECT_EQ(name->text(), QStringLiteral("walls")) << "starts on the dock's item";
        QTest::keyClicks(name, QStringLiteral("2"));
        EXPECT_STREQ(walls->name, "walls2");
        EXPECT_EQ(all->currentItem()->text(), QStringLiteral("walls2"));
        EXPECT_TRUE(active()->dirty);
        child<QPushButton>(modal, "btnNew")->click();
        EXPECT_EQ(name->text(), QStringLiteral("new group"));
        remove->click(); // empty: no question
        EXPECT_EQ(map().visGroups.size(), 2);
        QTimer::singleShot(0, modal, [modal, all, remove] {
            all->setCurrentItem(all->findItems(QStringLiteral("walls2"), Qt::MatchExactly).first());
            remove->click(); // No
            remove->click(); // Yes
            modal->close();
        });
    });
    const char* question = "Are you sure to remove visgroup \"walls2\" containing 2 objects?";
    replies.expectBox(QMessageBox::No, question);
    replies.expectBox(QMessageBox::Yes, question);
    clickButton("btnEdit");
    EXPECT_EQ(texts(), QStringLiteral("lights"));
    EXPECT_EQ(checkMapInvariants(map()), QString());
}

TEST_F(VisGroupTest, hidingByHandAndShowingAll) {
    startWithGroups();
    const auto hidden = [this] {
        return ((brushes[0]->flags & BF_HIDDEN) ? 1 : 0) +
               ((brushes[1]->flags & BF_HIDDEN) ? 2 : 0) +
               ((brushes[2]->flags & BF_HIDDEN) ? 4 : 0);
    };
    replies.expectBox(QMessageBox::Ok, "There are no hidden objects.");
    trigger("ViewShowHidden");
    const std::pair<const char*, int> cases[] = {{"ViewHideSel", 1}, {"ViewHideUnsel", 6}};
    for (const auto& [command, wanted] : cases) {
        trigger(command); // nothing was selected
        EXPECT_EQ(hidden(), 0);
        map().selectBrushByIndex(0, 0, false);
        trigger(command);
        EXPECT_EQ(hidden(), wanted);
        trigger("ViewShowHidden");
        EXPECT_EQ(hidden(), 0);
        trigger("EditSelNone");
    }
    EXPECT_TRUE(console().contains(
        QStringLiteral("2 object(s) revealed (0 entities, 2 brushes and 0 groups)")));
}

TEST_F(VisGroupTest, aDoubleClickAndAClickOnTheIconHideAndShow) {
    startWithGroups();
    const int row = 1; // walls, behind lights
    const QRect place = list()->visualItemRect(list()->item(row));
    const QPoint icon(place.left() + 9, place.center().y());
    trigger("EditSelAll");
    for (const bool twice : {true, false}) {
        for (const bool visible : {false, true}) {
            if (twice)
                doubleClickRow(row);
            else
                QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, icon);
            EXPECT_EQ(walls->visible, visible);
            EXPECT_EQ((brushes[0]->flags & BF_HIDDEN) == 0, visible);
        }
    }
    EXPECT_FALSE(brushes[0]->flags & BF_SELECTED);
    EXPECT_TRUE(brushes[2]->flags & BF_SELECTED);
    clickRow(row);
    EXPECT_TRUE(walls->visible) << "a click on the name only chooses";
    QTest::mousePress(list()->viewport(), Qt::LeftButton, Qt::NoModifier, icon);
    QTest::mouseRelease(list()->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(row));
    EXPECT_TRUE(walls->visible);
    doubleClickRow(0);
    EXPECT_TRUE(lights->visible) << "an empty one just flips";
    doubleClickRow(0);

    const QListWidgetItem *empty = list()->item(0), *full = list()->item(row);
    EXPECT_EQ(imageOf(empty, QIcon::Normal), imageOf(full, QIcon::Normal))
        << "what holds nothing does not look hidden";
    const QImage selected = imageOf(full, QIcon::Selected);
    EXPECT_EQ(selected.pixelColor(4, 4), QColor(Qt::white)) << "the tick stands out";
    EXPECT_NE(selected.pixelColor(7, 9), QColor(Qt::white));
    active()->setDirty(false);
}

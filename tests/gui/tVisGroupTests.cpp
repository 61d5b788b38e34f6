// SPDX-License-Identifier: MIT
// The Filter Control dock by clicks, double clicks and drops, its dialog, hiding by hand.
#include "document/tBrush.h"
#include "document/tVisGroup.h"
#include "gui/tGuiTest.h"
#include "shell/tVisGroupList.h"
#include "support/tMapTools.h"

#include <QDockWidget>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QProcess>
#include <QPushButton>

class VisGroupTest : public cGuiTest {
protected:
    // Three blocks; "walls" holds two of them, "lights" none.
    void startWithGroups() {
        start();
        newProject();
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

    QVisGroupList* list() const {
        return window->findChild<QVisGroupList*>(QStringLiteral("lstVisGroups"));
    }

    QPushButton* button(const char* name) const {
        return window->findChild<QDockWidget*>(QStringLiteral("visgroups"))
            ->findChild<QPushButton*>(QString::fromLatin1(name));
    }

    QStringList texts() const {
        QStringList all;
        for (int row = 0; row < list()->count(); ++row)
            all.append(list()->item(row)->text());
        return all;
    }

    QPoint placeOf(int row) const { return list()->visualItemRect(list()->item(row)).center(); }
    void clickRow(int row) const {
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(row));
    }
    void clickButton(const char* name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    void doubleClickRow(int row) const {
        clickRow(row);
        QTest::mouseDClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(row));
    }

    // The events of a drag of one row onto another, after the press that begins it.
    void dropRow(int from, int to) const {
        QTest::mousePress(list()->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(from));
        QMimeData data;
        data.setData(QStringLiteral("application/x-qabstractitemmodeldatalist"), QByteArray());
        const auto send = [&](QDropEvent&& event) {
            QCoreApplication::sendEvent(list()->viewport(), &event);
        };
        const QPoint start = placeOf(from);
        const QPoint place = placeOf(to);
        const auto move = Qt::MoveAction;
        send(QDragEnterEvent(place, move, &data, Qt::LeftButton, Qt::NoModifier));
        send(QDragMoveEvent(place, move, &data, Qt::LeftButton, Qt::NoModifier));
        send(QDropEvent(place, move, &data, Qt::LeftButton, Qt::NoModifier));
        QTest::mouseRelease(list()->viewport(), Qt::LeftButton, Qt::NoModifier, start);
    }

    // The whole of it by the pointer of the X server, through the window system's own drag.
    void dragRow(int from, int to) const {
        static constexpr int STEPS = 8;
        const QPoint start = list()->viewport()->mapToGlobal(placeOf(from));
        const QPoint end = list()->viewport()->mapToGlobal(placeOf(to));
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
    start();
    const char* const buttons[] = {"btnAssign", "btnEdit", "btnMark", "btnPurge"};
    EXPECT_FALSE(list()->isEnabled());
    for (const char* name : buttons)
        EXPECT_FALSE(button(name)->isEnabled()) << name;
    window.reset();
    startWithGroups();
    EXPECT_TRUE(list()->isEnabled());
    EXPECT_EQ(texts(),
              QStringList({QStringLiteral("lights"), QStringLiteral("walls (2 objects)")}));
    EXPECT_EQ(list()->item(1)->data(32).toUInt(), walls->id);
    clickRow(1);
    for (const char* name : buttons)
        EXPECT_TRUE(button(name)->isEnabled()) << name;
    window->updateUi();
    EXPECT_EQ(list()->currentId(), walls->id) << "survives a rebuild";
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
    EXPECT_EQ(texts()[0], QStringLiteral("lights (1 object)"));
    EXPECT_TRUE(active()->dirty);
    EXPECT_TRUE(lights->visible);

    clickRow(1);
    clickButton("btnMark");
    EXPECT_TRUE(brushes[0]->flags & brushes[1]->flags & BF_SELECTED);
    EXPECT_FALSE(brushes[2]->flags & BF_SELECTED);
    EXPECT_TRUE(action("EditCut")->isEnabled()) << "the tools and commands know";

    active()->setDirty(false);
    clickButton("btnPurge");
    EXPECT_EQ(texts().size(), 2);
    EXPECT_FALSE(active()->dirty) << "none is empty";
    trigger("EditDelete");
    EXPECT_EQ(texts()[1], QStringLiteral("walls"));
    clickRow(0);
    clickButton("btnPurge");
    EXPECT_EQ(texts(), QStringList(QStringLiteral("lights (1 object)")));
    EXPECT_EQ(lights->id, 1u);
    EXPECT_EQ(list()->currentId(), 1u) << "still current, under its new id";
}

TEST_F(VisGroupTest, doubleClickHidesAndShowsAtOnce) {
    startWithGroups();
    trigger("EditSelAll");
    EXPECT_TRUE(walls->visible);
    doubleClickRow(1);
    EXPECT_FALSE(walls->visible);
    EXPECT_TRUE(brushes[0]->flags & BF_HIDDEN);
    EXPECT_FALSE(brushes[0]->flags & BF_SELECTED);
    EXPECT_TRUE(brushes[2]->flags & BF_SELECTED);
    doubleClickRow(1);
    EXPECT_TRUE(walls->visible);
    EXPECT_FALSE(brushes[0]->flags & BF_HIDDEN);
    doubleClickRow(0);
    EXPECT_TRUE(lights->visible) << "an empty one just flips";
}

TEST_F(VisGroupTest, aDropMergesAfterAQuestion) {
    startWithGroups();
    replies.expectBox(QMessageBox::No, QStringLiteral("Combine groups?"));
    dropRow(1, 0);
    EXPECT_EQ(texts().size(), 2);
    EXPECT_EQ(list()->currentId(), walls->id) << "the source is current again";
    dropRow(1, 1); // nothing is asked
    replies.expectBox(QMessageBox::Yes, QStringLiteral("Combine groups?"));
    dropRow(1, 0);
    EXPECT_EQ(texts(), QStringList(QStringLiteral("lights (2 objects)")));
    EXPECT_EQ(map().visGroups.size(), 1);
    EXPECT_TRUE(active()->dirty);
    EXPECT_EQ(checkMapInvariants(map()), QString());
}

TEST_F(VisGroupTest, aRealDragLeavesTheTargetCurrent) {
    startWithGroups();
    map().createVisGroup("doors");
    window->updateUi();
    replies.expectBox(QMessageBox::Yes, QStringLiteral("Combine groups?"));
    dragRow(2, 1);
    EXPECT_EQ(texts(),
              QStringList({QStringLiteral("doors"), QStringLiteral("lights (2 objects)")}));
    EXPECT_EQ(list()->currentId(), lights->id);
}

TEST_F(VisGroupTest, dialogChangesGroupsAsOneTypes) {
    startWithGroups();
    clickRow(1);
    replies.expect([&](QWidget* modal) {
        EXPECT_EQ(modal->windowTitle(), QStringLiteral("Object Groups"));
        EXPECT_EQ(modal->minimumSize(), modal->maximumSize());
        auto* all = modal->findChild<QListWidget*>(QStringLiteral("lstVisGroups"));
        auto* name = modal->findChild<QLineEdit*>(QStringLiteral("txtName"));
        const auto click = [&](const char* id) {
            modal->findChild<QPushButton*>(QLatin1String(id))->click();
        };
        EXPECT_EQ(name->text(), QStringLiteral("walls")) << "starts on the dock's item";
        QTest::keyClicks(name, QStringLiteral("2"));
        EXPECT_STREQ(walls->name, "walls2");
        EXPECT_EQ(all->currentItem()->text(), QStringLiteral("walls2"));
        click("btnNew");
        EXPECT_EQ(name->text(), QStringLiteral("new group"));
        EXPECT_EQ(map().visGroups.size(), 3);
        click("btnRemove"); // empty: no question
        EXPECT_EQ(map().visGroups.size(), 2);
        modal->close();
    });
    clickButton("btnEdit");
    EXPECT_EQ(texts(),
              QStringList({QStringLiteral("lights"), QStringLiteral("walls2 (2 objects)")}));
    EXPECT_TRUE(active()->dirty);
}

TEST_F(VisGroupTest, dialogAsksBeforeItRemovesMembers) {
    startWithGroups();
    clickRow(1);
    QPointer<QWidget> dialog;
    replies.expect([&](QWidget* modal) {
        dialog = modal;
        QTimer::singleShot(0, modal, [modal] {
            auto* remove = modal->findChild<QPushButton*>(QStringLiteral("btnRemove"));
            remove->click(); // No
            remove->click(); // Yes
            modal->close();
        });
    });
    const QString question =
        QStringLiteral("Are you sure to remove visgroup \"walls\" containing 2 objects?");
    replies.expectBox(QMessageBox::No, question);
    replies.expectBox(QMessageBox::Yes, question);
    clickButton("btnEdit");
    EXPECT_EQ(texts(), QStringList(QStringLiteral("lights")));
    EXPECT_EQ(checkMapInvariants(map()), QString());
}

TEST_F(VisGroupTest, hidingByHandAndShowingAll) {
    startWithGroups();
    replies.expectBox(QMessageBox::Ok, QStringLiteral("There are no hidden objects."));
    trigger("ViewShowHidden");
    trigger("ViewHideSel");
    EXPECT_FALSE(brushes[0]->flags & BF_HIDDEN) << "nothing was selected";
    map().selectBrushByIndex(0, 0, false);
    trigger("ViewHideSel");
    EXPECT_TRUE(brushes[0]->flags & BF_HIDDEN);
    EXPECT_EQ(map().data.selectedBrushes, nullptr);
    EXPECT_TRUE(walls->visible) << "the other member still shows";
    map().selectBrushByIndex(0, 2, false);
    trigger("ViewHideUnsel");
    EXPECT_TRUE(brushes[1]->flags & BF_HIDDEN);
    EXPECT_FALSE(brushes[2]->flags & BF_HIDDEN);
    EXPECT_FALSE(walls->visible);
    trigger("ViewShowHidden");
    EXPECT_TRUE(walls->visible);
    EXPECT_TRUE(console().contains(
        QStringLiteral("2 object(s) revealed (0 entities, 2 brushes and 0 groups)")));
}

TEST_F(VisGroupTest, undoBringsTheCountsBack) {
    startWithGroups();
    trigger("EditSelAll");
    trigger("EditDelete");
    EXPECT_EQ(texts()[1], QStringLiteral("walls"));
    trigger("EditUndo");
    EXPECT_EQ(texts()[1], QStringLiteral("walls (2 objects)"));
    EXPECT_TRUE(walls->visible);
}

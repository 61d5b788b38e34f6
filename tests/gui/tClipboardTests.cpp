// SPDX-License-Identifier: MIT
// Cut, Copy, Paste and Paste Special by their actions, with a real mouse and the real dialog.
#include "dialogs/tWaitDialog.h"
#include "document/tMapLists.h"
#include "gui/tToolTest.h"
#include "operations/tClipboard.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <algorithm>

class ClipboardCommandTest : public cToolTest {
protected:
    void pick(const cBrushData* brush) {
        click(top, pixel(top, brush->mins[0], (brush->mins[1] + brush->maxs[1]) / 2));
        ASSERT_EQ(selectedBrushes(), 1);
    }

    // "x y z" of the lower corners of the world's brushes, sorted.
    static QStringList corners(const cMap& map) {
        QStringList all;
        for (const cBrushData* brush : brushesOf(map.world())) {
            const float* m = brush->mins;
            all.append(
                QStringLiteral("%1 %2 %3").arg(qRound(m[0])).arg(qRound(m[1])).arg(qRound(m[2])));
        }
        all.sort();
        return all;
    }
    QStringList corners() const { return corners(map()); }

    // The mouse is in the top view; the depth is the middle of the front view.
    void pointAt(float x, float y, float z) {
        cCanvas* front = view(VIEW_FRONT);
        const float middle[3] = {0, 0, z};
        focus(front);
        front->centerOn(middle);
        focus(top);
        moveTo(top, pixel(top, x, y));
    }

    template<class T> static T* child(QWidget* dialog, const char* name) {
        T* found = dialog->findChild<T*>(QString::fromLatin1(name));
        EXPECT_TRUE(found) << name;
        return found;
    }
    static void type(QWidget* dialog, const char* spinBox, const char* text) {
        auto* box = child<QAbstractSpinBox>(dialog, spinBox);
        box->setFocus();
        box->selectAll();
        QTest::keyClicks(box, QString::fromLatin1(text));
    }
    static void clickOn(QWidget* dialog, const char* button) {
        auto* box = child<QAbstractButton>(dialog, button);
        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(8, box->height() / 2));
    }
    static double shown(QWidget* dialog, const char* spinBox) {
        return child<QDoubleSpinBox>(dialog, spinBox)->value();
    }
    static void tick(QWidget* dialog, const char* group) {
        child<QGroupBox>(dialog, group)->setChecked(true);
    }
    static void accept(QWidget* dialog) { QTest::keyClick(dialog, Qt::Key_Return); }
};

TEST_F(ClipboardCommandTest, pastesAtTheMouseAsOftenAsOneLikes) {
    EXPECT_FALSE(action("EditCopy")->isEnabled());
    cBrushData* brush = addBrush({0, 0, 0}, {64, 64, 64});
    objectsAdded();
    EXPECT_FALSE(action("EditPaste")->isEnabled());
    pick(brush);
    trigger("EditCopy");
    EXPECT_FALSE(map().history->canUndo()) << "a copy changes nothing";
    for (const char* id : {"EditPaste", "EditPaste2"})
        EXPECT_TRUE(action(id)->isEnabled()) << id;
    pointAt(192, -96, 64);
    expectUndoable([&] { trigger("EditPaste"); }, false);
    EXPECT_STREQ(undoName(), "Paste");
    EXPECT_TRUE(project->dirty);
    EXPECT_EQ(corners(), QStringList({QStringLiteral("0 0 0"), QStringLiteral("160 -128 32")}));
    EXPECT_EQ(selectedBrushes(), 1) << "what was pasted";
    EXPECT_FALSE(isSelected(map().world()->brushes));
    pointAt(195, -90, 60); // on the grid again
    key(top, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(corners().count(QStringLiteral("160 -128 32")), 2);
}

TEST_F(ClipboardCommandTest, whatWasCutGoesBackUnlessItWasPastedOrUndone) {
    enum eThen { NOTHING, PASTE, UNDO };
    const struct {
        eThen then;
        bool restore;
        const char* left; // after a cut of the left one and a copy of the right one
    } cases[] = {
        {NOTHING, true, "0 0 0,128 0 0"},
        {NOTHING, false, "128 0 0"},
        {PASTE, true, "128 0 0,160 -128 0"},
        {UNDO, true, "0 0 0,128 0 0"},
    };
    for (const auto& c : cases) {
        cBrushData* left = addBrush({0, 0, 0}, {64, 64, 64});
        const cBrushData* right = addBrush({128, 0, 0}, {192, 64, 64});
        objectsAdded();
        window->RestoreCutObjects = c.restore;
        pick(left);
        expectUndoable([&] { trigger("EditCut"); });
        EXPECT_STREQ(undoName(), "Cut");
        EXPECT_EQ(corners(), QStringList(QStringLiteral("128 0 0")));
        EXPECT_FALSE(action("EditCut")->isEnabled()) << "nothing is selected";
        pointAt(192, -96, 32);
        if (c.then == PASTE)
            trigger("EditPaste");
        else if (c.then == UNDO)
            trigger("EditUndo");
        trigger("EditSelNone");
        pick(right);
        trigger("EditCopy");
        EXPECT_EQ(corners().join(QLatin1Char(',')), QString::fromLatin1(c.left));
        EXPECT_EQ(checkMapInvariants(map()), QString());
        if (c.then == NOTHING && c.restore) {
            EXPECT_STREQ(undoName(), "Restore Cut");
            trigger("EditUndo");
            EXPECT_EQ(corners(), QStringList(QStringLiteral("128 0 0")));
        }
        trigger("EditSelAll");
        trigger("EditDelete");
        g_clipboard->clear();
    }
}

TEST_F(ClipboardCommandTest, pasteSpecialStepsAndTurnsAsTheDialogSays) {
    const struct {
        const char* what;
        std::function<void(QWidget*)> fill;
        const char* pasted;
        int groups;
    } cases[] = {
        {"the default of five, at the mouse", [](QWidget*) {},
         "160 -112 48,160 -112 48,160 -112 48,160 -112 48,160 -112 48", 0},
        {"each copy counts its own step",
         [](QWidget* d) {
             type(d, "sbCopies", "3");
             tick(d, "groupOffset");
             type(d, "sbX", "64");
             type(d, "sbZ", "-8");
         },
         "224 -112 40,288 -112 32,352 -112 24", 0},
        {"edge to edge from the original",
         [](QWidget* d) {
             type(d, "sbCopies", "2");
             clickOn(d, "cbStartCenter");
             tick(d, "groupOffset");
             clickOn(d, "btnX");
             EXPECT_EQ(shown(d, "sbX"), 64);
         },
         "128 0 0,64 0 0", 0},
        {"the other way, each axis with its own extent",
         [](QWidget* d) {
             type(d, "sbCopies", "1");
             clickOn(d, "cbStartCenter");
             tick(d, "groupOffset");
             for (const char* button : {"btnX", "btnX", "btnX", "btnY", "btnZ", "btnZ"})
                 clickOn(d, button);
             EXPECT_EQ(shown(d, "sbX"), 64) << "the third press turns it back";
             EXPECT_EQ(shown(d, "sbY"), 32);
             EXPECT_EQ(shown(d, "sbZ"), -32);
         },
         "64 32 -32", 0},
        {"what is not checked is not given",
         [](QWidget* d) {
             type(d, "sbCopies", "1");
             clickOn(d, "cbStartCenter");
             child<QDoubleSpinBox>(d, "sbX")->setValue(500);
             child<QDoubleSpinBox>(d, "sbZr")->setValue(45);
         },
         "0 0 0", 0},
        {"a full turn around the middle, each copy a group",
         [](QWidget* d) {
             type(d, "sbCopies", "4");
             clickOn(d, "cbStartCenter");
             clickOn(d, "cbGroup");
             tick(d, "groupRotation");
             type(d, "sbZr", "90");
         },
         "0 0 0,0 0 0,16 -16 0,16 -16 0", 4},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        cBrushData* brush = addBrush({0, 0, 0}, {64, 32, 32});
        objectsAdded();
        pick(brush);
        trigger("EditCopy");
        pointAt(192, -96, 64);
        replies.expect([&](QWidget* dialog) {
            EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Paste Special"));
            c.fill(dialog);
            accept(dialog);
        });
        expectUndoable([&] { trigger("EditPaste2"); }, false);
        EXPECT_STREQ(undoName(), "Paste Special");
        QStringList all = corners();
        EXPECT_TRUE(all.removeOne(QStringLiteral("0 0 0"))) << "the original";
        EXPECT_EQ(all.join(QLatin1Char(',')), QString::fromLatin1(c.pasted));
        EXPECT_EQ(selectedBrushes(), all.size());
        int groups = 0;
        for ([[maybe_unused]] const cGroupData* group : selectedGroupsOf(map().data))
            ++groups;
        EXPECT_EQ(groups, c.groups);
        trigger("EditSelAll");
        trigger("EditDelete");
    }
}

TEST_F(ClipboardCommandTest, aCancelledPasteSpecialChangesNothing) {
    cBrushData* brush = addBrush({0, 0, 0}, {64, 64, 64});
    objectsAdded();
    pick(brush);
    trigger("EditCopy");
    replies.expectCancel();
    trigger("EditPaste2");
    EXPECT_FALSE(map().history->canUndo());
    EXPECT_EQ(corners().size(), 1);
}

TEST_F(ClipboardCommandTest, whatWasTakenOutlivesItsDocument) {
    for (const char* take : {"EditCopy", "EditCut"}) {
        SCOPED_TRACE(take);
        cBrushData* brush = addBrush({0, 0, 0}, {64, 64, 64});
        objectsAdded();
        pick(brush);
        trigger(take);
        cProject* first = project;
        project = newProject();
        ASSERT_NE(project, first);
        EXPECT_TRUE(action("EditPaste")->isEnabled());
        first->dirty = false;
        window->removeProject(first);
        settle();
        for (cCanvas* canvas : project->windows.first()->canvases)
            if (canvas->viewType == VIEW_TOP)
                focus(top = canvas);
        replies.expect([](QWidget* dialog) {
            type(dialog, "sbCopies", "1");
            clickOn(dialog, "cbStartCenter");
            accept(dialog);
        });
        expectUndoable([&] { trigger("EditPaste2"); }, false);
        EXPECT_EQ(corners(), QStringList(QStringLiteral("0 0 0")));
        trigger("EditCut"); // and nothing can go back to the first
        trigger("EditUndo");
        EXPECT_EQ(corners(), QStringList(QStringLiteral("0 0 0")));
        trigger("EditSelAll");
        trigger("EditDelete");
        window->gridSize = GRID;
    }
}

TEST_F(ClipboardCommandTest, aCutGoesBackIntoTheDocumentItCameFrom) {
    cBrushData* brush = addBrush({0, 0, 0}, {64, 64, 64});
    objectsAdded();
    pick(brush);
    trigger("EditCut");
    project->setDirty(false);
    cProject* first = project;
    project = newProject();
    addBrush({128, 0, 0}, {192, 64, 64});
    objectsAdded();
    trigger("EditSelAll");
    trigger("EditCut");
    EXPECT_EQ(corners(*first->map), QStringList(QStringLiteral("0 0 0")));
    EXPECT_STREQ(first->map->history->undoName(), "Restore Cut");
    EXPECT_TRUE(first->dirty);
    EXPECT_EQ(corners(), QStringList());
    EXPECT_EQ(checkMapInvariants(*first->map), QString());
    first->dirty = false;
}

// However fast the machine is: ever more copies until a paste has taken long enough.
TEST_F(ClipboardCommandTest, aLongPasteShowsHowFarItIsAndLetsNothingElseHappen) {
    static constexpr int MOST = 400000;
    cBrushData* brush = addBrush({0, 0, 0}, {64, 64, 64});
    objectsAdded();
    pick(brush);
    trigger("EditCopy");
    bool seen = false;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        auto* text = g_waitDialog ? child<QLabel>(g_waitDialog, "lblText") : nullptr;
        if (seen || !text || text->text().isEmpty())
            return;
        seen = true;
        EXPECT_TRUE(g_waitDialog->isVisible());
        EXPECT_TRUE(text->text().contains(QStringLiteral(" of "))) << qPrintable(text->text());
        // They wait in the queue, as from a user who can't wait; on the map they deselect.
        QWindow* target = top->windowHandle();
        const QPoint at = pixel(top, -200, 200);
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
            qt_handleMouseEvent(target, at, target->mapToGlobal(at),
                                type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                                Qt::LeftButton, type, {}, 0);
    });
    watch.start(0);
    for (int copies = 5000; !seen && copies < MOST; copies *= 4) {
        replies.expect([=](QWidget* dialog) {
            type(dialog, "sbCopies", QByteArray::number(copies).constData());
            accept(dialog);
        });
        trigger("EditPaste2");
        settle();
        EXPECT_EQ(selectedBrushes(), copies) << "a click into the wait reached the map";
        EXPECT_STREQ(undoName(), "Paste Special");
        trigger("EditUndo");
        EXPECT_FALSE(map().history->canUndo()) << "one step";
    }
    EXPECT_TRUE(seen);
    EXPECT_FALSE(g_waitDialog) << "gone after the paste";
}

// SPDX-License-Identifier: MIT
// Cut, Copy, Paste and Paste Special by their actions, with a real mouse and the real dialog.
#include "dialogs/tWaitDialog.h"
#include "gui/tToolTest.h"
#include "operations/tClipboard.h"

#include <QDoubleSpinBox>
#include <QGroupBox>
#include <algorithm>

class ClipboardCommandTest : public cToolTest {
protected:
    // "x y z" of the lower corners of the world's brushes, sorted.
    static QString corners(const cMap& map) {
        QStringList all;
        for (const cBrushData* brush : brushesOf(map.world())) {
            const float* m = brush->mins;
            all.append(
                QStringLiteral("%1 %2 %3").arg(qRound(m[0])).arg(qRound(m[1])).arg(qRound(m[2])));
        }
        all.sort();
        return all.join(QLatin1Char(','));
    }
    QString corners() const { return corners(map()); }

    // The mouse is in the top view; the depth is the middle of the front view.
    void pointAt(float x, float y, float z) {
        cCanvas* front = view(VIEW_FRONT);
        const float middle[3] = {0, 0, z};
        focus(front);
        front->centerOn(middle);
        focus(top);
        moveTo(top, pixel(top, x, y));
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
    EXPECT_FALSE(action("EditCopy")->isEnabled() || action("EditPaste")->isEnabled());
    pickCube();
    EXPECT_FALSE(action("EditPaste")->isEnabled());
    trigger("EditCopy");
    EXPECT_FALSE(map().history->canUndo()) << "a copy changes nothing";
    for (const char* id : {"EditPaste", "EditPaste2"})
        EXPECT_TRUE(action(id)->isEnabled()) << id;
    pointAt(192, -96, 64);
    expectUndoable([&] { trigger("EditPaste"); }, false);
    EXPECT_STREQ(undoName(), "Paste");
    EXPECT_TRUE(project->dirty);
    EXPECT_EQ(corners(), QStringLiteral("0 0 0,160 -128 32"));
    EXPECT_EQ(selectedBrushes(), 1) << "what was pasted";
    EXPECT_FALSE(isSelected(map().world()->brushes));
    pointAt(195, -90, 60); // on the grid again
    key(top, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(corners(), QStringLiteral("0 0 0,160 -128 32,160 -128 32"));
    trigger("EditUndo");
    const QString before = corners();
    replies.expectCancel();
    trigger("EditPaste2");
    EXPECT_EQ(corners(), before);
    EXPECT_STREQ(undoName(), "Paste") << "a cancelled one is no step";
}

TEST_F(ClipboardCommandTest, whatWasCutGoesBackIfOneLikes) {
    const cBrushData* right = addBrush({128, 0, 0}, {192, 64, 64});
    for (const bool restore : {true, false}) {
        window->RestoreCutObjects = restore;
        pickCube();
        expectUndoable([&] { trigger("EditCut"); });
        EXPECT_FALSE(action("EditCut")->isEnabled()) << "nothing is selected";
        pick(right);
        trigger("EditCopy");
        EXPECT_STREQ(undoName(), restore ? "Restore Cut" : "Cut");
        if (restore)
            trigger("EditUndo");
        EXPECT_EQ(corners(), QStringLiteral("128 0 0"));
        trigger("EditSelNone");
    }
}

TEST_F(ClipboardCommandTest, pasteSpecialStepsAndTurnsAsTheDialogSays) {
    const struct {
        const char* what;
        std::function<void(QWidget*)> fill;
        const char* corners; // the original is the first one
        int groups;
    } cases[] = {
        {"the default of five, at the mouse", [](QWidget*) {},
         "0 0 0,160 -112 48,160 -112 48,160 -112 48,160 -112 48,160 -112 48", 0},
        {"steps by the extents, turned by a quarter, each copy a group",
         [](QWidget* d) {
             type(d, "sbCopies", "2");
             clickOn(d, "cbStartCenter");
             clickOn(d, "cbGroup");
             tick(d, "groupOffset");
             for (const char* button : {"btnX", "btnX", "btnX", "btnY", "btnZ", "btnZ"})
                 clickOn(d, button);
             EXPECT_EQ(shown(d, "sbX"), 64) << "the third press turns it back";
             EXPECT_EQ(shown(d, "sbY"), 32);
             EXPECT_EQ(shown(d, "sbZ"), -32);
             tick(d, "groupRotation");
             type(d, "sbZr", "90");
         },
         "0 0 0,128 64 -64,80 16 -32", 2},
        {"what is not checked is not given",
         [](QWidget* d) {
             type(d, "sbCopies", "1");
             clickOn(d, "cbStartCenter");
             child<QDoubleSpinBox>(d, "sbX")->setValue(500);
             child<QDoubleSpinBox>(d, "sbZr")->setValue(45);
         },
         "0 0 0,0 0 0", 0},
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
        EXPECT_EQ(corners(), QString::fromLatin1(c.corners));
        EXPECT_EQ(selectedBrushes(), corners().count(QLatin1Char(',')));
        EXPECT_EQ(countOf(selectedGroupsOf(map().data)), c.groups);
        trigger("EditSelAll");
        trigger("EditDelete");
    }
}

TEST_F(ClipboardCommandTest, whatWasTakenOutlivesItsDocument) {
    pickCube();
    trigger("EditCut");
    cProject* first = project;
    project = newProject();
    ASSERT_NE(project, first);
    first->dirty = false;
    window->removeProject(first);
    settle();
    focus(top = view(VIEW_TOP));
    replies.expect([](QWidget* dialog) {
        type(dialog, "sbCopies", "1");
        clickOn(dialog, "cbStartCenter");
        accept(dialog);
    });
    expectUndoable([&] { trigger("EditPaste2"); }, false);
    trigger("EditCut"); // and nothing can go back to the first
    trigger("EditUndo");
    EXPECT_EQ(corners(), QStringLiteral("0 0 0"));
}

TEST_F(ClipboardCommandTest, aCutGoesBackIntoTheDocumentItCameFrom) {
    pickCube();
    trigger("EditCut");
    cProject* first = project;
    for (const char* command : {"FileClose", "FileCloseAll"}) { // begun, and thought better of
        replies.expectBox(QMessageBox::Cancel, first->title);
        trigger(command);
    }
    project->setDirty(false);
    project = newProject();
    addBrush({128, 0, 0}, {192, 64, 64});
    objectsAdded();
    trigger("EditSelAll");
    trigger("EditCut");
    EXPECT_EQ(corners(*first->map), QStringLiteral("0 0 0"));
    EXPECT_STREQ(first->map->history->undoName(), "Restore Cut");
    EXPECT_TRUE(first->dirty);
    EXPECT_EQ(corners(), QString());
    EXPECT_EQ(checkMapInvariants(*first->map), QString());
    first->dirty = false;
}

// However fast the machine is: ever more copies until a paste has taken long enough.
TEST_F(ClipboardCommandTest, aLongPasteShowsHowFarItIsAndLetsNothingElseHappen) {
    static constexpr int MOST = 400000;
    pickCube();
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

// SPDX-License-Identifier: MIT
// Putting textures on faces by command: replacing by name, applying, aligning to the view.
#include "document/tHistory.h"
#include "document/tMapLists.h"
#include "gui/tGuiTest.h"
#include "support/tMapTools.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

class TextureReplaceTest : public cGuiTest {
protected:
    void SetUp() override {
        cGuiTest::SetUp();
        cMap& map = *startWithProject()->map;
        const float mins[3] = {0, 0, 0}, maxs[3] = {64, 64, 64};
        brush = addBox(map, map.world(), mins, maxs);
    }
    // The dialog comes up with the name; fill types into it, and ok presses its button.
    void replaceIn(const std::function<void(QDialog*)>& fill, bool ok = true) {
        replies.expect([=](QWidget* modal) {
            EXPECT_EQ(modal->windowTitle(), QStringLiteral("Replace Textures"));
            fill(static_cast<QDialog*>(modal));
            auto* button =
                child<QDialogButtonBox>(modal, "buttonBox")->button(QDialogButtonBox::Ok);
            EXPECT_EQ(button->isEnabled(), ok);
            // Later: a box comes up that has an answer of its own.
            if (ok)
                QTimer::singleShot(0, button, &QPushButton::click);
            else
                modal->close();
        });
    }
    static void type(QWidget* dialog, const char* field, const char* text) {
        auto* line = child<QLineEdit>(dialog, field);
        line->selectAll();
        QTest::keyClicks(line, QString::fromLatin1(text));
    }
    int wearing(const char* name) const {
        int count = 0;
        for (const cFaceData* face : facesOf(brush))
            count += strcmp(face->tex.name, name) == 0 ? 1 : 0;
        return count;
    }

    cBrushData* brush = nullptr;
};

TEST_F(TextureReplaceTest, replacesMarksAndTellsTheCount) {
    replaceIn([](QDialog* dialog) {
        EXPECT_FALSE(child<QRadioButton>(dialog, "rbInMarked")->isEnabled());
        type(dialog, "txtFind", "WALL");
        type(dialog, "txtReplace", "stone");
    });
    replies.expectBox(QMessageBox::Ok, "6 textures replaced.");
    trigger("ToolsTexRepl");
    EXPECT_TRUE(answered());
    EXPECT_EQ(wearing("stone"), 6);
    replaceIn([](QDialog* dialog) { // what was typed stays
        type(dialog, "txtFind", "wall");
        EXPECT_EQ(child<QLineEdit>(dialog, "txtReplace")->text(), QStringLiteral("stone"));
    });
    replies.expectBox(QMessageBox::Ok, "No textures replaced.");
    trigger("ToolsTexRepl");
    replaceIn([](QDialog* dialog) {
        type(dialog, "txtFind", "stone");
        EXPECT_FALSE(
            child<QDialogButtonBox>(dialog, "buttonBox")->button(QDialogButtonBox::Ok)->isEnabled())
            << "by itself";
        child<QCheckBox>(dialog, "cbMark")->click();
        EXPECT_FALSE(child<QLineEdit>(dialog, "txtReplace")->isEnabled());
    });
    replies.expectBox(QMessageBox::Ok, "1 objects marked.");
    trigger("ToolsTexRepl");
    EXPECT_TRUE(isSelected(brush));
    trigger("EditUndo");
    EXPECT_EQ(wearing("wall"), 6);
    replaceIn([](QDialog* dialog) { type(dialog, "txtFind", " "); }, false);
    trigger("ToolsTexRepl");
    EXPECT_TRUE(answered());
    active()->setDirty(false);
}

TEST_F(TextureReplaceTest, theCurrentTextureAndTheViewGoOnWhatIsSelected) {
    const cHistory& history = *active()->map->history;
    trigger("EditSelAll");
    active()->texture.name = QStringLiteral("brick");
    window->toolApplyTexture();
    EXPECT_EQ(wearing("brick"), 6);
    EXPECT_STREQ(history.undoName(), "Apply Texture");
    trigger("ToolsTexA2View");
    EXPECT_STREQ(history.undoName(), "Align to View");
    trigger("EditUndo");
    trigger("EditUndo");
    EXPECT_EQ(wearing("wall"), 6);
    active()->setDirty(false);
}

// SPDX-License-Identifier: MIT
// Nothing that is shown is ever old: after every command and every change of a setting, views,
// docks, panes, titles and commands are what they become when all of them are made anew.
#include "document/tBrush.h"
#include "document/tCullTree.h"
#include "document/tEntity.h"
#include "document/tGroup.h"
#include "document/tHistory.h"
#include "document/tVisGroup.h"
#include "gui/tGuiTest.h"
#include "operations/tStructure.h"
#include "shell/tSettingsTable.h"
#include "support/tMapTools.h"
#include "support/tPatience.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QSet>
#include <QSpinBox>
#include <QToolBar>
#include <QWindow>

// All that is shown: a line for each thing that can be told in words, then the views' pictures.
struct cShown {
    QStringList texts;
    QList<QImage> pictures;
};

class StaleTest : public cGuiTest {
protected:
    // Camera views draw when they are told to, and not by their timers. Grids and the cordon show.
    void SetUp() override {
        cGuiTest::SetUp();
        writeConfigs(1, 0, "rich");
        write("test.fgd", "@SolidClass = worldspawn : \"World\" []\n"
                          "@PointClass size(-8 -8 -8, 8 8 8) = light : \"Light\" []\n"
                          "@SolidClass = func_wall : \"Wall\" []\n");
        write("TDKSettings.ini", "[View3D]\nEnergySavingMode=true\n[Map]\nEnableGrid3D=true\n"
                                 "[Compiler]\nEnableCordon=true\n");
        replies.answerAll(agree);
        start();
    }

    void TearDown() override {
        for (cProject* project : window->projects)
            project->setDirty(false);
        cGuiTest::TearDown();
    }

    // Says yes to questions, takes what dialogs propose, and chooses no file.
    static void agree(QWidget* modal) {
        auto* box = qobject_cast<QMessageBox*>(modal);
        auto* buttons = modal->findChild<QDialogButtonBox*>();
        QAbstractButton* yes = box ? box->button(QMessageBox::Yes) : nullptr;
        if (!yes && buttons)
            yes = buttons->button(QDialogButtonBox::Ok);
        if (yes && yes->isEnabled() && !qobject_cast<QFileDialog*>(modal))
            yes->click();
        else
            modal->close();
    }

    cBrushData* addBlock(cEntityData* owner, float x) {
        const float mins[3] = {x, 0, 0}, maxs[3] = {x + 48, 64, 32};
        return addBox(map(), owner, mins, maxs);
    }

    // Brushes of the world and of an entity, a point entity, a group, visgroups of which one is
    // off, steps to undo and to redo, something on the clipboard; all that is seen is selected.
    void makeDocument() {
        newProject();
        const float origin[3] = {-64, -64, 16};
        cEntityData* light = map().addEntity("light", origin, EF_POINT);
        cEntityData* wall = map().addEntity("func_wall", origin, 0);
        cBrushData* brushes[] = {addBlock(map().world(), 0), addBlock(map().world(), 64),
                                 addBlock(map().world(), 128), addBlock(map().world(), 192),
                                 addBlock(wall, -128)};
        updateEntity(light, UM_REEVALUATE);
        updateEntity(wall, UM_REEVALUATE);
        brushes[0]->brush->addToVisGroup(map().createVisGroup("seen"));
        cVisGroup* unseen = map().createVisGroup("unseen");
        brushes[1]->brush->addToVisGroup(unseen);
        map().createVisGroup("empty");
        map().setVisGroupVisible(unseen);
        map().select(brushes[2]);
        map().select(brushes[3]);
        groupSelection(map());
        trigger("EditSelAll");
        trigger("EditCopy");
        trigger("ToolsFlipH");
        trigger("ToolsFlipV");
        trigger("EditUndo");
        trigger("EditSelAll");
        settle();
    }

    // Whether the last command has left the document, or undo brought it back, as it was made.
    bool isUsable(const cMapState& asMade) {
        if (window->projects.size() != 1 || active()->windows.size() != 1)
            return false;
        trigger("EditSelAll");
        return map().history->canUndo() && map().history->canRedo() &&
               firstDifference(asMade, stateOf(map())).isEmpty();
    }

    void closeDocument() {
        for (cProject* project : window->projects)
            project->setDirty(false);
        window->closeAllWindows();
        settle();
    }

    cMap& map() const { return *active()->map; }

    // ---- What is shown

    static QString wordsOf(const QWidget* widget) {
        if (const auto* list = qobject_cast<const QListWidget*>(widget)) {
            QString words = QString::number(list->currentRow());
            for (int row = 0; row < list->count(); ++row)
                words += list->item(row)->text() + imageWords(list->item(row)->icon());
            return words;
        }
        if (const auto* combo = qobject_cast<const QComboBox*>(widget)) {
            QString words = QString::number(combo->currentIndex());
            for (int i = 0; i < combo->count(); ++i)
                words += QLatin1Char(' ') + combo->itemText(i);
            return words;
        }
        if (const auto* spin = qobject_cast<const QSpinBox*>(widget))
            return QStringLiteral("%1 of %2").arg(spin->value()).arg(spin->maximum());
        if (const auto* label = qobject_cast<const QLabel*>(widget))
            return label->text();
        return QString();
    }

    static QString imageWords(const QIcon& icon) {
        const QImage image = icon.pixmap(16).toImage();
        return QString::number(qHash(QByteArray::fromRawData(
            reinterpret_cast<const char*>(image.constBits()), int(image.sizeInBytes()))));
    }

    static QString flagsOf(bool enabled, bool visible, bool checked) {
        return QStringLiteral("%1%2%3").arg(enabled).arg(visible).arg(checked);
    }

    QStringList textsShown() const {
        QStringList texts;
        for (const QWidget* parent : window->findChildren<QDockWidget*>())
            if (parent->objectName() != QLatin1String("console"))
                for (const QWidget* w : parent->findChildren<QWidget*>())
                    texts += w->objectName() + QLatin1Char(' ') + wordsOf(w) +
                             flagsOf(w->isEnabled(), !w->isHidden(), false);
        for (int pane = PANE_MESSAGE + 1; pane < PANE_COUNT; ++pane)
            texts += QStringLiteral("pane ") + window->panes().label(pane)->text();
        for (const cProject* project : window->projects)
            for (const cChildWindow* child : project->windows)
                texts += QStringLiteral("title ") + child->windowTitle();
        for (const QAction* a : window->findChildren<QAction*>())
            texts += QStringLiteral("%1 %2 ").arg(a->objectName(), a->text()) +
                     flagsOf(a->isEnabled(), a->isVisible(), a->isChecked());
        return texts;
    }

    // The pixels that lie on the screen.
    static QImage pictureOf(const cCanvas* canvas) {
        return canvas->window()->windowHandle()->screen()->grabWindow(canvas->winId()).toImage();
    }

    template<class Visit> void eachView(const Visit& visit) const {
        for (const cProject* project : window->projects)
            for (const cChildWindow* child : project->windows)
                for (cCanvas* canvas : child->canvases)
                    if (canvas->isVisible() && !canvas->visibleRegion().isEmpty())
                        visit(canvas);
    }

    cShown look() const {
        emit window->menus().windowMenu->aboutToShow(); // filled as it opens
        settle();
        cShown shown;
        shown.texts = textsShown();
        eachView([&](const cCanvas* canvas) { shown.pictures += pictureOf(canvas); });
        return shown;
    }

    void makeAllAnew() const {
        window->changeSubwindowActiveState(nullptr);
        for (const cProject* project : window->projects)
            const_cast<cProject*>(project)->updateTitles();
        cCanvas::invalidatePictures();
        eachView([](cCanvas* canvas) {
            canvas->viewDirty = canvas->projectionDirty = canvas->modelviewDirty = true;
            canvas->requestRedraw(true);
        });
    }

    void expectNothingStale() const {
        const cShown now = look();
        makeAllAnew();
        const cShown anew = look();
        EXPECT_EQ(anew.texts.join(QLatin1Char('\n')).toStdString(),
                  now.texts.join(QLatin1Char('\n')).toStdString());
        ASSERT_EQ(now.pictures.size(), anew.pictures.size());
        for (int i = 0; i < now.pictures.size(); ++i)
            EXPECT_TRUE(now.pictures[i] == anew.pictures[i]) << "view " << i;
    }
};

// Left out are those that end the program.
static bool endsTheProgram(const cCommandRow& row) {
    return !strcmp(row.id, "FileExit");
}

TEST_F(StaleTest, afterAnyCommandAllThatIsShownIsAsMadeAnew) {
    std::vector<QCustomAction*> commands;
    QSet<const cCommandRow*> seen; // copies in bars and pop-up menus have the same row
    for (QAction* a : window->menus().actions) {
        auto* command = dynamic_cast<QCustomAction*>(a);
        if (command && !seen.contains(command->row) && !endsTheProgram(*command->row)) {
            seen.insert(command->row);
            commands.push_back(command);
        }
    }
    const auto& tools = window->menus().toolActions;
    commands.insert(commands.end(), tools.begin(), tools.end());
    EXPECT_GT(commands.size(), 100u);
    const cSettings usual = *window;
    cMapState asMade;
    for (QCustomAction* command : commands) {
        SCOPED_TRACE(command->row->id);
        if (!isUsable(asMade)) {
            closeDocument();
            makeDocument();
            asMade = stateOf(map());
        }
        EXPECT_TRUE(command->isEnabled() && command->isVisible());
        const uint32_t before = map().history->lastStep();
        command->trigger();
        expectNothingStale();
        if (active() && map().history->lastStep() != before && map().history->canUndo()) {
            trigger("EditUndo");
            expectNothingStale();
        }
        window->applySettings(usual);
        window->setTool(TOOL_SELECT);
    }
}

// ---- Settings

namespace {

// Makes another value of whatever a member is.
struct cOther {
    cSettings& settings;
    void operator()(bool cSettings::*m) const { settings.*m = !(settings.*m); }
    void operator()(int cSettings::*m) const { settings.*m = settings.*m * 2 + 1; }
    void operator()(float cSettings::*m) const { settings.*m *= 2; }
    void operator()(QString cSettings::*m) const { settings.*m += QLatin1Char('x'); }
};

} // namespace

TEST_F(StaleTest, afterAnyChangeOfASettingAllThatIsShownIsAsMadeAnew) {
    makeDocument();
    const cSettings usual = *window;
    const auto tryOut = [&](const char* key, const cSettings& other) {
        SCOPED_TRACE(key);
        for (const cSettings* settings : {&other, &usual}) {
            window->applySettings(*settings);
            expectNothingStale();
        }
    };
    for (const cSettingRow& row : settingsTable()) {
        cSettings other = usual;
        std::visit(cOther{other}, row.member);
        tryOut(row.key, other);
    }
    cSettings other = usual;
    other.gridSize *= 2;
    tryOut("grid size", other);
    EXPECT_EQ(pane(PANE_SNAP), QStringLiteral("Snap: On Grid: 32"));
}

TEST_F(StaleTest, settingsReachWhatLastsBeyondAPicture) {
    write("TDKSettings.ini", "[ColorScheme7]\nTitle=Red\nCOLOR_BRUSH_RANDOM_MIN=255 0 0\n"
                             "COLOR_BRUSH_RANDOM_MAX=255 0 0\nCOLOR_APPLICATION=40 50 60\n");
    makeDocument();
    const auto change = [&](auto member, auto value) {
        cSettings after = *window;
        after.*member = value;
        return window->applySettings(after);
    };
    EXPECT_TRUE(map().history->canUndo());
    change(&cSettings::UndoLevels, 7);
    EXPECT_FALSE(map().history->canUndo());
    EXPECT_EQ(action("EditUndo")->text(), QStringLiteral("Can't undo"));

    change(&cSettings::CurrentColorScheme, 7);
    const uint8_t* color = map().world()->brushes->brush->drawColor;
    EXPECT_EQ(QColor(color[0], color[1], color[2]), QColor(255, 0, 0));
    EXPECT_EQ(QApplication::palette().color(QPalette::Button), QColor(40, 50, 60));

    change(&cSettings::MaxWorldSize, 16384);
    EXPECT_EQ(map().cullTree->root().maxs[0], 8192.0f);
    for (const bool isSmall : {true, false}) {
        change(&cSettings::SmallToolIcons, isSmall);
        EXPECT_EQ(window->menus().bars.last()->iconSize(), isSmall ? QSize(20, 16) : QSize(40, 32));
    }
    change(&cSettings::IgnoreGroups, true);
    EXPECT_FALSE(map().hasSelection());
    EXPECT_EQ(map().selectionMode, int(MODE_SINGLE));

    const cCanvas* camera = active()->findCanvas(-1);
    for (const bool saves : {false, true}) {
        change(&cSettings::EnergySavingMode, saves);
        EXPECT_EQ(camera->timerInterval() > 0, !saves);
    }
    EXPECT_FALSE(change(&cSettings::Mouselook, false) & SE_RESTART);
    EXPECT_TRUE(change(&cSettings::TextureQuality, 2) & SE_RESTART);
    EXPECT_TRUE(change(&cSettings::Antialiasing, true) & SE_RESTART);
    EXPECT_FALSE(change(&cSettings::Antialiasing, false) & SE_RESTART);
}

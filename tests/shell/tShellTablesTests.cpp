// SPDX-License-Identifier: MIT
// The tables of the shell on their own: settings, colours, commands; and the small rules of
// start-up.
#include "shell/tColorScheme.h"
#include "shell/tCommandTable.h"
#include "shell/tSettingsTable.h"
#include "shell/tStartup.h"
#include "support/tBuildNumber.h"
#include "support/tFiles.h"
#include "support/tIniFile.h"

#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

QString iniIn(const QTemporaryDir& folder) {
    return folder.filePath(QStringLiteral("test.ini"));
}

struct cChange {
    cSettings& settings;
    void operator()(bool cSettings::*m) const { settings.*m = !(settings.*m); }
    void operator()(int cSettings::*m) const { settings.*m += 7; }
    void operator()(float cSettings::*m) const { settings.*m += 0.25f; }
    void operator()(QString cSettings::*m) const { settings.*m += QStringLiteral("/мир"); }
};

} // namespace

TEST(SettingsTable, everyRowComesBackOrKeepsItsDefault) {
    const QTemporaryDir folder;
    const cSettings defaults;
    cSettings changed, loaded;
    readSettings(cIniFile(iniIn(folder)), loaded);
    QSet<QString> keys;
    for (const cSettingRow& row : settingsTable()) {
        std::visit([&](auto m) { EXPECT_EQ(loaded.*m, defaults.*m) << row.key; }, row.member);
        std::visit(cChange{changed}, row.member);
        EXPECT_FALSE(keys.contains(QString::fromLatin1(row.key))) << row.key;
        keys.insert(QString::fromLatin1(row.key));
    }
    cIniFile file(iniIn(folder));
    writeSettings(file, changed);
    ASSERT_TRUE(file.save());
    readSettings(cIniFile(iniIn(folder)), loaded);
    for (const cSettingRow& row : settingsTable())
        std::visit([&](auto m) { EXPECT_EQ(loaded.*m, changed.*m) << row.key; }, row.member);
    EXPECT_EQ(loaded.gridSize, changed.GridDefaultSize);
}

TEST(SettingsTable, clampsWhatIsTooSmall) {
    struct {
        int undo, wantedUndo, bullet, wantedBullet;
        float scale, wantedScale;
    } const cases[] = {{3, 5, 3, 4, 0.05f, 1.0f}, {5, 5, 4, 4, 0.1f, 0.1f}, {4, 5, 9, 9, 2, 2}};
    for (const auto& c : cases) {
        cSettings s;
        s.UndoLevels = c.undo;
        s.SelectionBulletSize = s.VertexToolBulletSize = c.bullet;
        s.DefaultTextureScale = c.scale;
        clampSettings(s, 2048);
        EXPECT_EQ(s.UndoLevels, c.wantedUndo);
        EXPECT_EQ(s.SelectionBulletSize, c.wantedBullet);
        EXPECT_EQ(s.VertexToolBulletSize, c.wantedBullet);
        EXPECT_EQ(s.DefaultTextureScale, c.wantedScale);
    }
}

TEST(SettingsTable, choosesTextureQualityByMemory) {
    struct {
        uint32_t megabytes;
        int quality;
    } const cases[] = {{0, 5}, {127, 1}, {128, 2}, {1023, 4}, {1024, 5}};
    for (const auto& c : cases) {
        cSettings s;
        EXPECT_TRUE(clampSettings(s, c.megabytes));
        EXPECT_EQ(s.TextureQuality, c.quality) << c.megabytes;
        s.TextureQuality = 2;
        EXPECT_FALSE(clampSettings(s, c.megabytes)) << "the user's choice stays";
    }
}

// What another program would build from such a value is no text for us.
TEST(SettingsTable, objectsInTheFileAreNotBuilt) {
    const QTemporaryDir folder;
    writeFile(iniIn(folder),
              "UndoLevels=30\n[View2D]\nGridDefaultSize=@Variant(\\0\\0\\0\\x2\\0\\0\\0\\x10)\n"
              "DottedGrid=@Variant(\\0\\0\\0\\t\\x7f\\xff\\xff\\xff\n");
    cSettings loaded;
    readSettings(cIniFile(iniIn(folder)), loaded);
    EXPECT_EQ(loaded.UndoLevels, 30) << "a key before the first group";
    EXPECT_EQ(loaded.gridSize, 1) << "16 if the object were built";
}

TEST(ColorScheme, readsNumbersClampedAndMissingOnesAsBlack) {
    const QTemporaryDir folder;
    writeFile(iniIn(folder), "[ColorScheme1]\nCOLOR_TEXT=300  -5 7\nCOLOR_CAPTION=10 20\n"
                             "COLOR_2D_VERTEX=1 2 3 128\nCOLOR_2D_CAMERA=red 2 3\n");
    cColorScheme scheme;
    scheme.readScheme(cIniFile(iniIn(folder)), QStringLiteral("ColorScheme1"));
    EXPECT_EQ(scheme.color(COLOR_TEXT), QColor(255, 0, 7, 255));
    EXPECT_EQ(scheme.color(COLOR_CAPTION), QColor(10, 20, 0));
    EXPECT_EQ(scheme.color(COLOR_2D_VERTEX), QColor(1, 2, 3, 128));
    EXPECT_EQ(scheme.color(COLOR_2D_CAMERA), QColor(0, 2, 3));
    EXPECT_EQ(scheme.color(COLOR_SELECTED_FILL), QColor(0, 0, 0)) << "a scheme without the key";
    EXPECT_EQ(scheme.bytes(COLOR_2D_VERTEX)[3], 128);
}

TEST(ColorScheme, customColorsComeBackAndReplaceTheCurrentOnes) {
    const QTemporaryDir folder;
    const QString group = QStringLiteral("Custom");
    cIniFile file(iniIn(folder));
    file.setValue(group, QStringLiteral("COLOR_2D_GRID_MAJOR"), QStringLiteral("1 2 3 128"));
    cColorScheme first;
    first.readCustom(file, group);
    EXPECT_TRUE(first.setCustomColor("COLOR_TEXT", 9, 8, 7));
    EXPECT_FALSE(first.setCustomColor("COLOR_NONE", 9, 8, 7));
    first.writeCustom(file, group);
    ASSERT_TRUE(file.save());
    const cIniFile written(iniIn(folder));
    EXPECT_EQ(written.value(group, QStringLiteral("COLOR_TEXT")), QStringLiteral("9 8 7"));

    cColorScheme second;
    second.readCustom(written, group);
    EXPECT_EQ(second.color(COLOR_TEXT), QColor(255, 255, 255)) << "the current copy is untouched";
    second.useCustom();
    EXPECT_EQ(second.color(COLOR_2D_GRID_MAJOR), QColor(1, 2, 3, 128));
    for (int i = 0; i < cColorScheme::colorCount(); ++i)
        EXPECT_EQ(second.color(i), first.customColor(i)) << i;
}

TEST(ColorScheme, unknownIndicesAndKeysNeverFail) {
    const cColorScheme scheme;
    for (int index : {-1, int(COLOR_COUNT)}) {
        EXPECT_EQ(scheme.colorRgba(index), (std::array<uint8_t, 4>{0, 0, 0, 255}));
        EXPECT_TRUE(cColorScheme::colorKey(index).isEmpty());
    }
    EXPECT_EQ(scheme.colorRgba("COLOR_2D_GRID_AXIS"), (std::array<uint8_t, 4>{50, 100, 100, 255}));
    EXPECT_EQ(scheme.colorRgba("color_2d_grid_axis"), (std::array<uint8_t, 4>{0, 0, 0, 255}));
}

TEST(CommandTable, everyRowIsWhole) {
    const QSet<QString> shared = {QStringLiteral("-"), QStringLiteral("MapLoadPTS"),
                                  QStringLiteral("MapUnloadPTS")};
    constexpr uint32_t menus = CMD_ELEMENTS_MENU | CMD_SCHEMES_MENU | CMD_WEB_MENU;
    QSet<QString> ids;
    int named = 0;
    int separators = 0;
    for (const cCommandRow& row : commandTable()) {
        ASSERT_NE(row.menu, nullptr);
        ++(row.id ? named : separators);
        EXPECT_EQ(row.slot != nullptr, row.text && !(row.flags & menus)) << row.menu;
        const QString id = QString::fromLatin1(row.id);
        EXPECT_TRUE(!row.id || shared.contains(id) || !ids.contains(id)) << row.id;
        ids.insert(id);
        if (row.icon) {
            EXPECT_TRUE(QFile::exists(QStringLiteral(":/qrc/%1.png").arg(QLatin1String(row.icon))))
                << row.icon;
        }
    }
    EXPECT_EQ(named, 109);
    EXPECT_EQ(separators, 31) << "27 of menus, 3 of bars and pop-ups, the plug-in menu's row";
}

TEST(Startup, programFolderIsBesideSystemFolders) {
    const struct {
        const char* application;
        const char* expected;
    } cases[] = {
        {"/opt/karvex", "/opt/karvex"},
        {"/opt/system", "/opt/system/../sdk"},
        {"/opt/system64", "/opt/system64/../sdk"},
        {"/opt/ecosystem", "/opt/ecosystem/../sdk"},
        {"/opt/system/bin", "/opt/system/bin"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(programDirectory(QString::fromLatin1(c.application)),
                  QString::fromLatin1(c.expected));
}

TEST(Startup, buildNumberCountsDays) {
    const struct {
        const char* date;
        int number;
    } cases[] = {{"Jan 23 2014", 155}, {"Mar  1 2016", 922}, {"DEC 31 2014", 497}};
    for (const auto& c : cases)
        EXPECT_EQ(buildNumberOf(c.date), c.number) << c.date;
}

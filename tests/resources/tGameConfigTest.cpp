// SPDX-License-Identifier: MIT
// Game configurations: the ini file, the list, class lookups and trees, precaching, assign.

#include "resources/tGameConfigRegistry.h"

#include "gamedata/tGameData.h"
#include "resources/tTextureCatalogue.h"
#include "support/tMapText.h"
#include "support/tRegistryTest.h"

#include <gmock/gmock.h>

class cGameConfigTest : public cRegistryTest {
protected:
    cGameConfigTest() : m_baseBefore(appBaseDir()) { setAppBaseDir(folder.path()); }
    ~cGameConfigTest() override {
        setActiveConfig(nullptr);
        setActiveConfig(nullptr);
        setAppBaseDir(m_baseBefore);
    }

    cGameConfig* gameOf(const QByteArray& classes) {
        cGameConfig* config = configs.addConfig(str("Game"));
        config->gameData << write("game.fgd", classes);
        gameData.acquire(config->gameData[0]);
        return config;
    }
    bool warned(const char* text) { return host.count(eMessage::Warning, str(text)) == 1; }

    QString m_baseBefore;
};

static QString dump(const cEntityClassNode& node) {
    QStringList children;
    for (const cEntityClassNode& child : node.children)
        children << dump(child);
    const QString name = node.entityClass ? node.entityClass->name : node.name + str("/");
    return children.isEmpty() ? name : name + str("(") + children.join(str(" ")) + str(")");
}

TEST_F(cGameConfigTest, fileIsReadUpToTheFirstGap) {
    write("TDKGameCfg.ini", "[Config0]\nTitle=One\nEnabled=true\nParcel0=/x.pak::\n"
                            "GameData0=/a.fgd\nGameData1=/b.fgd\nGameData3=/d.fgd\n"
                            "GameCommandLine=-a, -b\n"
                            "[Config1]\nTitle=Two\n[Config3]\nTitle=Four\n");
    configs.load();
    ASSERT_EQ(configs.configs.size(), 2);
    const cGameConfig& one = *configs.configs[0];
    EXPECT_EQ(one.gameData, QStringList({str("/a.fgd"), str("/b.fgd")}));
    EXPECT_EQ(one.gameCommandLine, str("-a, -b"));
    EXPECT_EQ(one.textureBrightness, 50);
    EXPECT_TRUE(gameData.find(str("/a.fgd")));
    EXPECT_EQ(one.packages.at(0)->path, str("/x.pak"));
    const cGameConfig* two = configs.find(str("Two"));
    ASSERT_EQ(two, configs.configs[1]);
    EXPECT_FALSE(two->enabled) << "absent reads as false";
    EXPECT_TRUE(host.messages.empty()) << "acquired is not read";

    write("TDKGameCfg.ini", "[Config0]\nEnabled=true\n[Config1]\nTitle=Two\n");
    configs.load();
    EXPECT_TRUE(configs.configs.isEmpty());
    EXPECT_FALSE(gameData.find(str("/a.fgd")));
}

static QStringList sortedLines(const QByteArray& text) {
    QStringList lines = fromMapText(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    lines.sort();
    return lines;
}

TEST_F(cGameConfigTest, everyKeyComesBack) {
    const QByteArray text("[Config0]\nTitle=One\nEnabled=true\nTextureFormat=3\n"
                          "MapProfile=classic\nDefaultPointClass=light\nDefaultSolidClass=door\n"
                          "GameExecutable=/bin/game\nGameBasedir=/games/base\n"
                          "GameCommandLine=\"-x \\\"y z\\\" a,b; %1\"\nGameModdir=/games/mod\n"
                          "MapSourceFileDirectory=/maps\nPaletteFile=/p.lmp\n"
                          "TextureBrightness=7\nParcel0=\"/t::*.tga;*.png\"\nParcel1=/u.pak::\n"
                          "GameData0=/a.fgd\nGameData1=/b c.fgd\nMapTool0=0\nMapTool1=a\n"
                          "MapTool2=b\nMapTool3=c\n");
    configs.load(write("in.ini", text));
    const QString out = path("out.ini");
    configs.save(out);
    EXPECT_EQ(sortedLines(readFile(out)), sortedLines(text));

    const QString title = fromMapText("Gr\xF6\xDF, \"x\"");
    configs.addConfig(title)->enabled = false;
    configs.save(out);
    cGameConfigRegistry other(gameData, textures, nullptr);
    other.load(out);
    ASSERT_TRUE(other.find(title));
    EXPECT_FALSE(other.find(title)->enabled);
    configs.save(path("out.ini/below.ini"));
    EXPECT_EQ(count(eMessage::Error, "can't write"), 1);
}

TEST_F(cGameConfigTest, relativePathsLieInTheGameOrBesideTheProgram) {
    ASSERT_TRUE(QDir(folder.path()).mkpath(str("game/textures")));
    write("game/base.fgd", "@pointclass = light []");
    write("top.fgd", "@solidclass = door []");
    const QByteArray text("[Config0]\nTitle=Game\nGameBasedir=game\nGameData0=base.fgd\n"
                          "GameData1=top.fgd\nGameData2=absent.fgd\nParcel0=textures::*.tga\n"
                          "PaletteFile=game/palette.lmp\nGameExecutable=run\n");
    configs.load(write("rel.ini", text));
    const QString base = folder.path() + QLatin1Char('/');
    cGameConfig* config = configs.configs.value(0);
    ASSERT_TRUE(config);
    EXPECT_EQ(config->gameBasedir, base + str("game"));
    EXPECT_EQ(config->gameData, QStringList({base + str("game/base.fgd"), base + str("top.fgd"),
                                             base + str("absent.fgd")}));
    EXPECT_EQ(config->parcels, QStringList(base + str("game/textures::*.tga")));
    EXPECT_EQ(config->paletteFile, base + str("game/palette.lmp"));
    EXPECT_EQ(config->gameExecutable, str("run"));
    EXPECT_EQ(config->packages.at(0)->kind, PK_DIRECTORY);
    configs.precache(config);
    EXPECT_TRUE(configs.findClass(config, str("light"), CF_POINT));

    const QString out = path("saved.ini");
    configs.save(out);
    for (const char* line :
         {"GameBasedir=game\n", "GameData0=base.fgd\n", "GameData1=top.fgd\n",
          "GameData2=absent.fgd\n", "Parcel0=textures::*.tga\n", "PaletteFile=game/palette.lmp\n"})
        EXPECT_TRUE(readFile(out).contains(line)) << line;
}

TEST_F(cGameConfigTest, listOperationsKeepTablesAndReferencesRight) {
    cGameConfig* a = gameOf("@pointclass = light []");
    cGameData* data = gameData.find(a->gameData[0]);
    a->useCount = 2;
    EXPECT_TRUE(configs.copyConfig(str("Game"), str("Copy")));
    cGameConfig* copy = configs.find(str("Copy"));
    EXPECT_EQ(copy->useCount, 0);
    EXPECT_EQ(data->refCount, 2);
    configs.setCurrent(copy);
    cTextureCatalogue* catalogue = configs.currentCatalogue;
    configs.renameConfig(str("Copy"), str("Other"));
    EXPECT_EQ(configs.find(str("Other")), copy);
    EXPECT_EQ(configs.catalogues.value(str("Other")), catalogue);
    configs.renameConfig(str("Other"), str("Game"));
    EXPECT_EQ(copy->title, str("Other")) << "the title is taken";
    EXPECT_FALSE(configs.copyConfig(str("Game"), str("Other")));

    configs.removeConfig(str("Game"));
    EXPECT_TRUE(warned("tried to remove in-use config: Game"));
    setActiveConfig(copy);
    configs.removeConfig(str("Other"));
    EXPECT_EQ(configs.configs.size(), 1);
    EXPECT_EQ(configs.current, nullptr);
    EXPECT_EQ(activeConfig(), nullptr);
    EXPECT_EQ(data->refCount, 1);

    configs.removeConfig(str("x"));
    configs.renameConfig(str("y"), str("z"));
    EXPECT_FALSE(configs.copyConfig(str("w"), str("z")));
    for (const char* title : {"x", "y", "w"})
        EXPECT_EQ(host.count(eMessage::Warning, str("no such config: ") + str(title)), 1);
    EXPECT_EQ(configs.addConfig(str("Game"))->title, str("Game (1)"));
}

TEST_F(cGameConfigTest, profileFollowsTheCurrentConfiguration) {
    cMapProfile record = {};
    strcpy(record.name, "classic");
    record.flags = PF_LIGHT_VALUE;
    configs.registerProfile(3, &record);
    configs.addConfig(str("A"))->mapProfile = str("classic");
    configs.addConfig(str("B"))->mapProfile = str("nobody's");
    configs.setCurrentByTitle(str("A"));
    EXPECT_EQ(configs.currentProfile->library, 3u);
    EXPECT_EQ(configs.currentProfile->flags, uint32_t(PF_LIGHT_VALUE));
    for (const char* title : {"B", "unknown"}) {
        configs.setCurrentByTitle(str(title));
        EXPECT_STREQ(configs.currentProfile->name, "") << title;
        EXPECT_EQ(configs.currentProfile->flags, 0u) << title;
    }
    EXPECT_EQ(configs.current, nullptr);
    EXPECT_EQ(configs.currentCatalogue, nullptr);
}

TEST_F(cGameConfigTest, classesAreFoundInFileOrder) {
    cGameConfig* config = gameOf("@solidclass = worldspawn [] @solidclass = door []"
                                 "@pointclass color(1 1 1) = light [] @baseclass = Base []");
    config->gameData << write("second.fgd", "@pointclass color(2 2 2) = light []"
                                            "@pointclass = lamp []");
    gameData.acquire(config->gameData[1]);
    EXPECT_FALSE(configs.findClass(config, str("door"), CF_SOLID)) << "nothing is read yet";
    EXPECT_TRUE(configs.needsPrecache(config));
    configs.precache(config);
    EXPECT_FALSE(configs.needsPrecache(config));
    EXPECT_EQ(configs.findClass(config, str("light"), CF_POINT)->color[0], 1);
    EXPECT_TRUE(configs.findClass(config, str("lamp"), CF_ANY));
    EXPECT_FALSE(configs.findClass(config, str("Base"), CF_POINT));
    EXPECT_FALSE(configs.findClass(config, str("light"), CF_SOLID));
    ASSERT_TRUE(configs.findWorldspawn(config));
    EXPECT_EQ(configs.findClass(config, str("worldspawn"), CF_WORLD),
              configs.findWorldspawn(config));
    EXPECT_FALSE(configs.findClass(nullptr, str("light"), CF_ANY));
}

TEST_F(cGameConfigTest, treesShowGroupsBeforeLeaves) {
    cGameConfig* config = gameOf("@groupclass = zed [] @groupclass base(zed) = deep []"
                                 "@pointclass = aaa [] @pointclass group(deep) = x []"
                                 "@pointclass group(zed) = b [] @pointclass group(deep) = a []"
                                 "@solidclass group(zed) = door [] @solidclass = worldspawn []");
    configs.precache(config);
    EXPECT_EQ(dump(config->pointClassTree), str("/(zed/(deep/(a x) b) aaa)"));
    EXPECT_EQ(dump(config->solidClassTree), str("/(zed/(door))"));
    configs.precache(config);
    EXPECT_EQ(dump(config->solidClassTree), str("/(zed/(door))")) << "not twice";
}

TEST_F(cGameConfigTest, whatCannotBeReadIsTriedAgain) {
    cGameConfig* config = configs.addConfig(str("Game"));
    config->gameData << path("late.fgd");
    config->parcels << path("late.img::");
    config->paletteFile = write("short.pal", QByteArray(767, '\0'));
    gameData.acquire(config->gameData[0]);
    configs.precache(config);
    EXPECT_TRUE(configs.needsPrecache(config));
    EXPECT_EQ(count(eMessage::Error, "can't open"), 1);
    EXPECT_TRUE(warned("palette must contain exactly 256 colors"));
    ASSERT_TRUE(textures.findPalette(config->paletteFile));
    EXPECT_EQ(textures.findPalette(config->paletteFile)[767], 0xFF);
    write("late.fgd", "@pointclass = light []");
    configs.precache(config);
    EXPECT_TRUE(configs.findClass(config, str("light"), CF_POINT));
    EXPECT_TRUE(configs.needsPrecache(config)) << "no plug-in reads the texture file";
    EXPECT_EQ(activeConfig(), nullptr) << "restored";
}

TEST_F(cGameConfigTest, onlyTheStartReadsUnlessSwitchedOff) {
    write("a.fgd", "@pointclass = light []");
    const QString ini = write("x.ini", "[Config0]\nTitle=Game\nEnabled=1\nGameData0=a.fgd\n"
                                       "[Config1]\nTitle=Other\n");
    cGameConfigRegistry taking(gameData, textures, nullptr);
    for (const bool switchedOff : {true, false}) {
        host.NoPrecache = switchedOff;
        configs.load(ini);
        EXPECT_EQ(configs.needsPrecache(configs.configs[0]), switchedOff);
        if (!switchedOff) {
            write("x.ini", readFile(ini) + "Enabled=1\nGameData0=b.fgd\n");
            configs.load(ini);
            EXPECT_TRUE(configs.needsPrecache(configs.configs[1]))
                << "there are two to choose from";
            continue;
        }
        configs.configs[0]->useCount = 1;
        taking.assign(configs, false);
        EXPECT_TRUE(taking.needsPrecache(taking.find(str("Game")))) << "nobody asked for it";
        EXPECT_EQ(gameData.find(configs.configs[0]->gameData[0])->refCount, 2);
    }
}

TEST_F(cGameConfigTest, assignTakesOverAnEditedCopyWithoutReadingAgain) {
    cGameConfig* config = gameOf("@pointclass = light []");
    config->useCount = 1;
    cMapProfile record = {};
    strcpy(record.name, "classic");
    config->mapProfile = str("classic");
    configs.registerProfile(1, &record);
    configs.precache(config);
    configs.setCurrent(config);
    setActiveConfig(config);
    setActiveConfig(config);
    const cEntityClass* light = configs.findClass(config, str("light"), CF_POINT);

    cGameConfigRegistry edited(gameData, textures, nullptr);
    edited.assign(configs, false);
    EXPECT_EQ(activeConfig(), config) << "a copy for a dialog changes nothing that runs";
    edited.setCurrentByTitle(str("Game"));
    edited.addConfig(str("New"));
    const QString second = write("second.fgd", "@pointclass = lamp []");
    edited.find(str("Game"))->gameData << second;
    gameData.acquire(second);

    QStringList calls;
    configs.callbacks.showWaitDialog = [&](const QString& text) { calls << text; };
    configs.callbacks.hideWaitDialog = [&] { calls << str("hide"); };
    configs.callbacks.reconfigureProjects = [&] {
        calls << str("projects");
        EXPECT_TRUE(cBusy::isBusy());
        EXPECT_EQ(configs.findClass(configs.current, str("light"), CF_POINT), light);
    };
    configs.callbacks.renewFaces = [&] { calls << str("faces"); };
    configs.assign(edited, true);
    EXPECT_EQ(calls, QStringList({str("Precaching game configuration..."), str("hide"),
                                  str("projects"), str("faces")}));
    ASSERT_EQ(configs.configs.size(), 2);
    cGameConfig* renewed = configs.find(str("Game"));
    EXPECT_EQ(configs.current, renewed);
    EXPECT_EQ(configs.currentCatalogue, configs.catalogues.value(str("Game")));
    EXPECT_STREQ(configs.currentProfile->name, "classic");
    EXPECT_EQ(activeConfig(), renewed);
    restoreActiveConfig();
    EXPECT_EQ(activeConfig(), nullptr) << "the remembered one is gone too";
    EXPECT_EQ(renewed->useCount, 1);
    EXPECT_FALSE(configs.needsPrecache(renewed));
    EXPECT_EQ(dump(renewed->pointClassTree), str("/(light lamp)"));
    EXPECT_FALSE(cBusy::isBusy());
}

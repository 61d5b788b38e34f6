// SPDX-License-Identifier: MIT
// Game configurations: the ini file, the list, class lookups and trees, precaching, assign.
#include "resources/tGameConfigRegistry.h"

#include "gamedata/tGameData.h"
#include "gamedata/tGameDataRegistry.h"
#include "resources/tModelManager.h"
#include "resources/tTextureCatalogue.h"
#include "resources/tTextureManager.h"
#include "support/tMapText.h"
#include "support/tTestHost.h"

#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>

static QString str(const char* text) {
    return QString::fromLatin1(text);
}

class cGameConfigTest : public testing::Test {
protected:
    cGameConfigTest() : m_baseBefore(appBaseDir()) { setAppBaseDir(m_folder.path()); }
    ~cGameConfigTest() override {
        setActiveConfig(nullptr);
        setActiveConfig(nullptr);
        setAppBaseDir(m_baseBefore);
    }

    QString write(const char* name, const QByteArray& text) {
        QFile file(m_folder.filePath(str(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return file.fileName();
    }
    QByteArray read(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    cGameConfig* gameOf(const QByteArray& classes) {
        cGameConfig* config = m_registry.addConfig(str("Game"));
        config->gameData << write("game.fgd", classes);
        m_gameData.acquire(config->gameData[0]);
        return config;
    }
    bool warned(const char* text) { return m_host.count(eMessage::Warning, str(text)) == 1; }

    cTestHost m_host;
    QTemporaryDir m_folder;
    QString m_baseBefore;
    cGameDataRegistry m_gameData;
    cTextureManager m_textures;
    cModelManager m_models;
    cGameConfigRegistry m_registry{m_gameData, m_textures, &m_models};
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
    m_registry.load();
    ASSERT_EQ(m_registry.configs.size(), 2);
    const cGameConfig& one = *m_registry.configs[0];
    EXPECT_EQ(one.gameData, QStringList({str("/a.fgd"), str("/b.fgd")}));
    EXPECT_EQ(one.gameCommandLine, str("-a, -b"));
    EXPECT_EQ(one.textureBrightness, 50);
    EXPECT_TRUE(m_gameData.find(str("/a.fgd")));
    EXPECT_TRUE(m_textures.findPackage(str("/x.pak::")));
    const cGameConfig* two = m_registry.find(str("Two"));
    ASSERT_EQ(two, m_registry.configs[1]);
    EXPECT_FALSE(two->enabled) << "absent reads as false";
    EXPECT_TRUE(m_host.messages.empty()) << "acquired is not read";

    write("TDKGameCfg.ini", "[Config0]\nEnabled=true\n[Config1]\nTitle=Two\n");
    m_registry.load();
    EXPECT_TRUE(m_registry.configs.isEmpty());
    EXPECT_FALSE(m_gameData.find(str("/a.fgd")));
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
    m_registry.load(write("in.ini", text));
    const QString path = m_folder.filePath(str("out.ini"));
    m_registry.save(path);
    EXPECT_EQ(sortedLines(read(path)), sortedLines(text));

    const QString title = fromMapText("Gr\xF6\xDF, \"x\"");
    m_registry.addConfig(title)->enabled = false;
    m_registry.save(path);
    cGameConfigRegistry other(m_gameData, m_textures, nullptr);
    other.load(path);
    ASSERT_TRUE(other.find(title));
    EXPECT_FALSE(other.find(title)->enabled);
    m_registry.save(m_folder.filePath(str("out.ini/below.ini")));
    EXPECT_EQ(m_host.count(eMessage::Error, str("can't write")), 1);
}

TEST_F(cGameConfigTest, relativePathsLieInTheGameOrBesideTheProgram) {
    ASSERT_TRUE(QDir(m_folder.path()).mkpath(str("game/textures")));
    write("game/base.fgd", "@pointclass = light []");
    write("top.fgd", "@solidclass = door []");
    const QByteArray text("[Config0]\nTitle=Game\nGameBasedir=game\nGameData0=base.fgd\n"
                          "GameData1=top.fgd\nGameData2=absent.fgd\nParcel0=textures::*.tga\n"
                          "PaletteFile=game/palette.lmp\nGameExecutable=run\n");
    m_registry.load(write("rel.ini", text));
    const QString base = m_folder.path() + QLatin1Char('/');
    cGameConfig* config = m_registry.configs.value(0);
    ASSERT_TRUE(config);
    EXPECT_EQ(config->gameBasedir, base + str("game"));
    EXPECT_EQ(config->gameData, QStringList({base + str("game/base.fgd"), base + str("top.fgd"),
                                             base + str("absent.fgd")}));
    EXPECT_EQ(config->parcels, QStringList(base + str("game/textures::*.tga")));
    EXPECT_EQ(config->paletteFile, base + str("game/palette.lmp"));
    EXPECT_EQ(config->gameExecutable, str("run"));
    EXPECT_EQ(m_textures.findPackage(config->parcels[0])->kind, PK_DIRECTORY);
    m_registry.precache(config);
    EXPECT_TRUE(m_registry.findClass(config, str("light"), CF_POINT));

    const QString out = m_folder.filePath(str("saved.ini"));
    m_registry.save(out);
    for (const char* line :
         {"GameBasedir=game\n", "GameData0=base.fgd\n", "GameData1=top.fgd\n",
          "GameData2=absent.fgd\n", "Parcel0=textures::*.tga\n", "PaletteFile=game/palette.lmp\n"})
        EXPECT_TRUE(read(out).contains(line)) << line;
}

TEST_F(cGameConfigTest, listOperationsKeepTablesAndReferencesRight) {
    cGameConfig* a = gameOf("@pointclass = light []");
    cGameData* data = m_gameData.find(a->gameData[0]);
    a->useCount = 2;
    EXPECT_TRUE(m_registry.copyConfig(str("Game"), str("Copy")));
    cGameConfig* copy = m_registry.find(str("Copy"));
    EXPECT_EQ(copy->useCount, 0);
    EXPECT_EQ(data->refCount, 2);
    m_registry.setCurrent(copy);
    cTextureCatalogue* catalogue = m_registry.currentCatalogue;
    m_registry.renameConfig(str("Copy"), str("Other"));
    EXPECT_EQ(m_registry.find(str("Other")), copy);
    EXPECT_EQ(m_registry.catalogues.value(str("Other")), catalogue);
    m_registry.renameConfig(str("Other"), str("Game"));
    EXPECT_EQ(copy->title, str("Other")) << "the title is taken";
    EXPECT_FALSE(m_registry.copyConfig(str("Game"), str("Other")));

    m_registry.removeConfig(str("Game"));
    EXPECT_TRUE(warned("tried to remove in-use config: Game"));
    setActiveConfig(copy);
    m_registry.removeConfig(str("Other"));
    EXPECT_EQ(m_registry.configs.size(), 1);
    EXPECT_EQ(m_registry.current, nullptr);
    EXPECT_EQ(activeConfig(), nullptr);
    EXPECT_EQ(data->refCount, 1);

    m_registry.removeConfig(str("x"));
    m_registry.renameConfig(str("y"), str("z"));
    EXPECT_FALSE(m_registry.copyConfig(str("w"), str("z")));
    for (const char* title : {"x", "y", "w"})
        EXPECT_EQ(m_host.count(eMessage::Warning, str("no such config: ") + str(title)), 1);
    EXPECT_EQ(m_registry.addConfig(str("Game"))->title, str("Game (1)"));
}

TEST_F(cGameConfigTest, profileFollowsTheCurrentConfiguration) {
    cMapProfile record = {};
    strcpy(record.name, "classic");
    record.flags = PF_LIGHT_VALUE;
    m_registry.registerProfile(3, &record);
    m_registry.addConfig(str("A"))->mapProfile = str("classic");
    m_registry.addConfig(str("B"))->mapProfile = str("nobody's");
    m_registry.setCurrentByTitle(str("A"));
    EXPECT_EQ(m_registry.currentProfile->library, 3u);
    EXPECT_EQ(m_registry.currentProfile->flags, uint32_t(PF_LIGHT_VALUE));
    for (const char* title : {"B", "unknown"}) {
        m_registry.setCurrentByTitle(str(title));
        EXPECT_STREQ(m_registry.currentProfile->name, "") << title;
        EXPECT_EQ(m_registry.currentProfile->flags, 0u) << title;
    }
    EXPECT_EQ(m_registry.current, nullptr);
    EXPECT_EQ(m_registry.currentCatalogue, nullptr);
}

TEST_F(cGameConfigTest, classesAreFoundInFileOrder) {
    cGameConfig* config = gameOf("@solidclass = worldspawn [] @solidclass = door []"
                                 "@pointclass color(1 1 1) = light [] @baseclass = Base []");
    config->gameData << write("second.fgd", "@pointclass color(2 2 2) = light []"
                                            "@pointclass = lamp []");
    m_gameData.acquire(config->gameData[1]);
    EXPECT_FALSE(m_registry.findClass(config, str("door"), CF_SOLID)) << "nothing is read yet";
    EXPECT_TRUE(m_registry.needsPrecache(config));
    m_registry.precache(config);
    EXPECT_FALSE(m_registry.needsPrecache(config));
    EXPECT_EQ(m_registry.findClass(config, str("light"), CF_POINT)->color[0], 1);
    EXPECT_TRUE(m_registry.findClass(config, str("lamp"), CF_ANY));
    EXPECT_FALSE(m_registry.findClass(config, str("Base"), CF_POINT));
    EXPECT_FALSE(m_registry.findClass(config, str("light"), CF_SOLID));
    ASSERT_TRUE(m_registry.findWorldspawn(config));
    EXPECT_EQ(m_registry.findClass(config, str("worldspawn"), CF_WORLD),
              m_registry.findWorldspawn(config));
    EXPECT_FALSE(m_registry.findClass(nullptr, str("light"), CF_ANY));
}

TEST_F(cGameConfigTest, treesShowGroupsBeforeLeaves) {
    cGameConfig* config = gameOf("@groupclass = zed [] @groupclass base(zed) = deep []"
                                 "@pointclass = aaa [] @pointclass group(deep) = x []"
                                 "@pointclass group(zed) = b [] @pointclass group(deep) = a []"
                                 "@solidclass group(zed) = door [] @solidclass = worldspawn []");
    m_registry.precache(config);
    EXPECT_EQ(dump(config->pointClassTree), str("/(zed/(deep/(a x) b) aaa)"));
    EXPECT_EQ(dump(config->solidClassTree), str("/(zed/(door))"));
    m_registry.precache(config);
    EXPECT_EQ(dump(config->solidClassTree), str("/(zed/(door))")) << "not twice";
}

TEST_F(cGameConfigTest, whatCannotBeReadIsTriedAgain) {
    cGameConfig* config = m_registry.addConfig(str("Game"));
    config->gameData << m_folder.filePath(str("late.fgd"));
    config->parcels << m_folder.filePath(str("late.img::"));
    config->paletteFile = write("short.pal", QByteArray(767, '\0'));
    m_gameData.acquire(config->gameData[0]);
    m_textures.acquirePackage(config->parcels[0]);
    m_registry.precache(config);
    EXPECT_TRUE(m_registry.needsPrecache(config));
    EXPECT_EQ(m_host.count(eMessage::Error, str("can't open")), 1);
    EXPECT_TRUE(warned("palette must contain exactly 256 colors"));
    ASSERT_TRUE(m_textures.findPalette(config->paletteFile));
    EXPECT_EQ(m_textures.findPalette(config->paletteFile)[767], 0xFF);
    write("late.fgd", "@pointclass = light []");
    m_registry.precache(config);
    EXPECT_TRUE(m_registry.findClass(config, str("light"), CF_POINT));
    EXPECT_TRUE(m_registry.needsPrecache(config)) << "no plug-in reads the texture file";
    EXPECT_EQ(activeConfig(), nullptr) << "restored";
}

TEST_F(cGameConfigTest, onlyTheStartReadsUnlessSwitchedOff) {
    write("a.fgd", "@pointclass = light []");
    const QString ini = write("x.ini", "[Config0]\nTitle=Game\nGameData0=a.fgd\n");
    cGameConfigRegistry taking(m_gameData, m_textures, nullptr);
    for (const bool switchedOff : {true, false}) {
        m_host.NoPrecache = switchedOff;
        m_registry.load(ini);
        EXPECT_EQ(m_registry.needsPrecache(m_registry.configs[0]), switchedOff);
        if (!switchedOff)
            continue;
        m_registry.configs[0]->useCount = 1;
        taking.assign(m_registry, false);
        EXPECT_TRUE(taking.needsPrecache(taking.find(str("Game")))) << "nobody asked for it";
        EXPECT_EQ(m_gameData.find(m_registry.configs[0]->gameData[0])->refCount, 2);
    }
}

TEST_F(cGameConfigTest, assignTakesOverAnEditedCopyWithoutReadingAgain) {
    cGameConfig* config = gameOf("@pointclass = light []");
    config->useCount = 1;
    cMapProfile record = {};
    strcpy(record.name, "classic");
    config->mapProfile = str("classic");
    m_registry.registerProfile(1, &record);
    m_registry.precache(config);
    m_registry.setCurrent(config);
    setActiveConfig(config);
    setActiveConfig(config);
    const cEntityClass* light = m_registry.findClass(config, str("light"), CF_POINT);

    cGameConfigRegistry edited(m_gameData, m_textures, nullptr);
    edited.assign(m_registry, false);
    EXPECT_EQ(activeConfig(), config) << "a copy for a dialog changes nothing that runs";
    edited.setCurrentByTitle(str("Game"));
    edited.addConfig(str("New"));
    const QString second = write("second.fgd", "@pointclass = lamp []");
    edited.find(str("Game"))->gameData << second;
    m_gameData.acquire(second);

    QStringList calls;
    m_registry.callbacks.showWaitDialog = [&](const QString& text) { calls << text; };
    m_registry.callbacks.hideWaitDialog = [&] { calls << str("hide"); };
    m_registry.callbacks.reconfigureProjects = [&] {
        calls << str("projects");
        EXPECT_TRUE(cBusy::isBusy());
        EXPECT_EQ(m_registry.findClass(m_registry.current, str("light"), CF_POINT), light);
    };
    m_registry.callbacks.renewFaces = [&] { calls << str("faces"); };
    m_registry.assign(edited, true);
    EXPECT_EQ(calls, QStringList({str("Precaching game configuration..."), str("hide"),
                                  str("projects"), str("faces")}));
    ASSERT_EQ(m_registry.configs.size(), 2);
    cGameConfig* renewed = m_registry.find(str("Game"));
    EXPECT_EQ(m_registry.current, renewed);
    EXPECT_EQ(m_registry.currentCatalogue, m_registry.catalogues.value(str("Game")));
    EXPECT_STREQ(m_registry.currentProfile->name, "classic");
    EXPECT_EQ(activeConfig(), renewed);
    restoreActiveConfig();
    EXPECT_EQ(activeConfig(), nullptr) << "the remembered one is gone too";
    EXPECT_EQ(renewed->useCount, 1);
    EXPECT_FALSE(m_registry.needsPrecache(renewed));
    EXPECT_EQ(dump(renewed->pointClassTree), str("/(light lamp)"));
    EXPECT_FALSE(cBusy::isBusy());
}

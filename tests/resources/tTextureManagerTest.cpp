// SPDX-License-Identifier: MIT
// Texture sets through a plug-in loaded from disk, placeholders, catalogues.
#include "resources/tTextureManager.h"

#include "pluginhost/tPluginManager.h"
#include "resources/tGameConfig.h"
#include "resources/tTextureCatalogue.h"
#include "support/tRegistryTest.h"

#include <gmock/gmock.h>

class cTestUploader : public cTextureUploader {
public:
    void makeContextCurrent() override { ++contexts; }
    void upload(cTextureImage*, const void*, QIcon**) override { ++alive; }
    void free(cTextureImage*) override { --alive; }

    int contexts = 0;
    int alive = 0;
};

class cTextureManagerTest : public cRegistryTest {
protected:
    cTextureManagerTest() {
        cPluginTargets targets;
        targets.textures = &textures;
        m_plugins = std::make_unique<cPluginManager>(targets);
        EXPECT_TRUE(m_plugins->load(str(KARVEX_TEST_PLUGINS "/tpfull.so")));
        textures.setUploader(&m_uploader);
        host.messages.clear();
    }
    ~cTextureManagerTest() override {
        textures.clear();
        textures.setUploader(nullptr);
        EXPECT_EQ(m_uploader.alive, 0) << "every image was given back";
    }

    QString writeGrey(const char* name, int width, int height) {
        QByteArray bytes(2 + width * height, '\x55');
        bytes[0] = char(width);
        bytes[1] = char(height);
        return write(name, bytes);
    }
    cTexturePackage* load(const QString& key) {
        cTexturePackage* package = textures.acquirePackage(key);
        textures.loadPackage(package, folder.path());
        return package;
    }

    cTestUploader m_uploader;
    std::unique_ptr<cPluginManager> m_plugins;
};

TEST_F(cTextureManagerTest, kindOfASetFollowsFromItsPath) {
    const std::pair<QString, int> cases[] = {
        {folder.path() + str("::*.grey;*.png"), PK_DIRECTORY},
        {str("/a/b.NAMES::"), PK_PACKAGE},
        {str("/a/b.grey::"), PK_FILE},
        {str("/a::b/c.names"), PK_FILE},
    };
    for (const auto& c : cases)
        EXPECT_EQ(textures.acquirePackage(c.first)->kind, c.second) << qPrintable(c.first);
    EXPECT_EQ(textures.acquirePackage(cases[3].first)->path, str("/a"));
    cTexturePackage* shared = textures.acquirePackage(cases[1].first);
    EXPECT_EQ(shared->refCount, 2);
    cTexturePackage* painted = textures.acquirePackage(cases[1].first, str("/other.pal"));
    EXPECT_NE(painted, shared) << "another game's palette";
    textures.releasePackage(shared);
    EXPECT_EQ(textures.packages.size(), 5);
    textures.releasePackage(shared);
    EXPECT_EQ(textures.packages.size(), 4);
}

TEST_F(cTextureManagerTest, packageIsLoadedAndUnloadedWhole) {
    const QString key = write("set.names", "brick001grass002") + str("::");
    cTexturePackage* package = load(key);
    EXPECT_EQ(package->size, 16);
    ASSERT_EQ(package->textures.size(), 2u);
    EXPECT_STREQ(package->textures[1]->name, "grass002");
    EXPECT_EQ(package->textures[1]->opacity, 1.0f);
    EXPECT_EQ(m_uploader.contexts, 1);
    EXPECT_EQ(host.count(eMessage::Print, str("Loading textures from \"") + package->path), 1);
    cTexture* held = package->textures[0];
    ++held->refCount; // a face
    textures.releasePackage(package);
    EXPECT_EQ(textures.textures.size(), 1) << "a texture lives while any holder does";
    textures.releaseTexture(held);
    EXPECT_TRUE(textures.textures.isEmpty());
    EXPECT_TRUE(textures.images.isEmpty());
}

TEST_F(cTextureManagerTest, directoryTakesWhatItsPatternsAndThePluginAccept) {
    writeGrey("a.grey", 4, 2);
    writeGrey("skipped.grey", 4, 2);
    writeGrey("b.other", 4, 2);
    write("broken.grey", "x");
    cTexturePackage* package = load(folder.path() + str("::*.grey;"));
    ASSERT_EQ(package->textures.size(), 1u);
    const cTexture& texture = *package->textures[0];
    EXPECT_STREQ(texture.name, "a");
    EXPECT_EQ(texture.height, 2);
    EXPECT_TRUE(isNodraw(texture));
    EXPECT_EQ(texture.value, 4u);
    EXPECT_EQ(texture.opacity, 0.5f);
    EXPECT_FALSE(textures.acceptsName(str("/x/skip.GREY")));
    EXPECT_TRUE(textures.acceptsName(str("/x/skip.png")));

    cTexturePackage* again = load(package->path + str("/a.grey::"));
    EXPECT_EQ(again->textures[0], package->textures[0]);
    EXPECT_EQ(texture.refCount, 2);
    EXPECT_EQ(count(eMessage::Warning, "duplicate texture \"a\""), 1);
}

TEST_F(cTextureManagerTest, whatNoPluginReadsStaysUnloaded) {
    write("x.unknown", "abc");
    EXPECT_FALSE(load(path("x.unknown::"))->loaded);
    EXPECT_FALSE(load(path("absent.grey::"))->loaded);
    EXPECT_TRUE(load(write("empty.names", "") + str("::"))->loaded) << "nothing to load";
    QDir(folder.path()).mkdir(str("refused"));
    writeGrey("refused/skip.grey", 1, 1);
    EXPECT_FALSE(load(path("refused::"))->loaded);
}

TEST_F(cTextureManagerTest, paletteIsGivenBeforeEveryLoad) {
    const QString good = write("good.pal", QByteArray(768, '\x07'));
    EXPECT_TRUE(textures.loadPalette(good, folder.path()));
    EXPECT_TRUE(textures.loadPalette(good, folder.path()));
    const QString bad = write("bad.pal", QByteArray(769, '\x07'));
    EXPECT_FALSE(textures.loadPalette(bad, folder.path()));
    EXPECT_TRUE(textures.loadPalette(bad, folder.path())) << "from now on all white";
    EXPECT_EQ(textures.findPalette(str("/none")), nullptr);

    const QLibrary& library = *m_plugins->libraries[0];
    const auto resolve = [&](const char* name) {
        return reinterpret_cast<void*>(const_cast<QLibrary&>(library).resolve(name));
    };
    const auto& given = *static_cast<const uint8_t**>(resolve("g_palette"));
    const auto& calls = *static_cast<const int32_t*>(resolve("g_paletteCalls"));
    const int32_t before = calls;
    for (const char* name : {"a.grey", "b.grey"}) {
        cTexturePackage* package = textures.acquirePackage(writeGrey(name, 1, 1) + str("::"), good);
        EXPECT_TRUE(textures.loadPackage(package, QString()));
    }
    EXPECT_EQ(calls, before + 2) << "the format is not told, so nobody knows what was set before";
    EXPECT_EQ(given, textures.findPalette(good));
}

TEST_F(cTextureManagerTest, missingTextureBecomesRealInPlace) {
    cTextureCatalogue catalogue(textures);
    cTexture* hole = catalogue.addMissing(str("Brick001"));
    EXPECT_EQ(catalogue.addMissing(str("BRICK001")), hole);
    EXPECT_STREQ(hole->name, "Brick001") << "the name is kept as given";
    EXPECT_EQ(hole->width, 64);
    EXPECT_TRUE(hole->flags & TF_PLACEHOLDER);
    EXPECT_EQ(catalogue.groupOf(str("brick001")), cTextureCatalogue::missing());
    ++hole->refCount;
    cTextureCatalogue second(textures);
    EXPECT_NE(second.addMissing(str("brick001")), hole) << "another configuration has its own";
    second.refreshMissing();
    EXPECT_EQ(second.missingCount, 0) << "nobody uses it there";

    cGameConfig config;
    config.gameBasedir = folder.path();
    textures.adoptFrom(&catalogue.placeholders);
    config.packages << load(write("set.names", "brick001") + str("::"));
    textures.adoptFrom(nullptr);
    EXPECT_EQ(config.packages[0]->textures[0], hole);
    EXPECT_EQ(hole->flags, uint32_t(TF_REPLACED));
    EXPECT_EQ(hole->width, 8);
    EXPECT_TRUE(catalogue.placeholders.isEmpty());
    textures.clearReplacedMarks();
    EXPECT_EQ(hole->flags, 0u);
    catalogue.rebuild(config);
    catalogue.addMissingEntries();
    EXPECT_EQ(catalogue.find(str("BRICK001")), hole);
    EXPECT_EQ(catalogue.missingCount, 0);
    textures.releaseTexture(hole);
}

TEST_F(cTextureManagerTest, catalogueGroupsSetsAndTheFirstNameWins) {
    cGameConfig config;
    config.gameBasedir = folder.path();
    writeGrey("one.grey", 2, 2);
    QDir(folder.path()).mkdir(str("decals"));
    writeGrey("decals/spot.grey", 2, 2);
    for (const QString& key :
         {write("a.names", "brick001") + str("::"),
          write("b.names", "BRICK001other001") + str("::"), write("none.names", "") + str("::"),
          path("one.grey::"), path("decals::*.grey")})
        config.packages << load(key);
    cTextureCatalogue catalogue(textures);
    cTexture* gone = catalogue.addMissing(str("gone"));
    ++gone->refCount; // a face
    catalogue.rebuild(config);
    catalogue.addMissingEntries();
    EXPECT_EQ(catalogue.find(str("brick001")), config.packages[0]->textures[0]);
    const QString prefix = QDir(folder.path()).dirName() + QLatin1Char('/');
    EXPECT_EQ(catalogue.groupOf(str("Other001")), prefix + str("b.names"));
    EXPECT_EQ(catalogue.groupOf(str("one")), cTextureCatalogue::miscellaneous());
    EXPECT_EQ(catalogue.groupOf(str("unheard of")), cTextureCatalogue::allTextures());
    EXPECT_EQ(catalogue.decalGroup(), prefix + str("decals"));
    QStringList groups;
    for (const cTextureGroup& group : catalogue.groupList)
        groups << group.name + group.icon;
    EXPECT_EQ(
        groups,
        QStringList({str("(All Textures):/qrc/l_all.png"), str("(Miscellaneous):/qrc/l_all.png"),
                     prefix + str("a.names:/qrc/l_wad.png"), prefix + str("b.names:/qrc/l_wad.png"),
                     prefix + str("decals:/qrc/l_dir.png")}));
    EXPECT_EQ(catalogue.missingCount, 1);
    textures.releaseTexture(gone);
}

TEST_F(cTextureManagerTest, hostileDeliveriesAreRefused) {
    cTexturePackage* package = textures.acquirePackage(str("/a.grey::"));
    const uint8_t pixels[4] = {};
    cTextureManager::addTexture("id", nullptr, 0, 0, 4, 2, 2, 0, nullptr, pixels, package);
    cTextureManager::addTexture("id", "n", 0, 0, 4, 0, 2, 0, nullptr, pixels, package);
    cTextureManager::addTexture("id", "n", 0, 0, 4, 2, 2, 0, nullptr, nullptr, package);
    cTextureManager::addTexture("id", "n", 0, 0, 4, 2, 2, 0, nullptr, pixels, nullptr);
    EXPECT_TRUE(package->textures.empty());
    for (int i = 0; i < 2; ++i)
        cTextureManager::addTexture("img", "n", 0, 0, 4, 2, 2, TT_IMAGE_ONLY, nullptr, pixels,
                                    package);
    EXPECT_EQ(textures.images.size(), 1);
    EXPECT_TRUE(textures.textures.isEmpty());
    const QByteArray longName(64, 'n');
    cTextureManager::addTexture("long", longName, 0, 0, 4, 2, 2, 0, nullptr, pixels, package);
    cTextureManager::addTexture("wide", "n", 0, 0, 4, 16385, 2, 0, nullptr, pixels, package);
    cTextureManager::addTexture("low", "n", 0, 0, 4, 2, -1, 0, nullptr, pixels, package);
    EXPECT_TRUE(package->textures.empty());
    // Two textures under one id: the first stays.
    for (const char* name : {"first", "second"})
        cTextureManager::addTexture("id", name, 0, 0, 4, 2, 2, 0, nullptr, pixels, package);
    ASSERT_EQ(package->textures.size(), 1u);
    EXPECT_STREQ(package->textures[0]->name, "first");
    textures.unloadPackage(package);
    EXPECT_TRUE(textures.textures.isEmpty());
}

TEST_F(cTextureManagerTest, laterLoadsRenewTheSameTextures) {
    const QString file = writeGrey("a.grey", 4, 2);
    QStringList keys = {file + str("::"), folder.path() + str("::a.grey"),
                        write("set.names", "brick001grass002") + str("::")};
    std::vector<cTexturePackage*> sets;
    std::vector<cTexture*> first;
    for (const QString& key : keys) {
        sets.push_back(load(key));
        first.insert(first.end(), sets.back()->textures.begin(), sets.back()->textures.end());
    }
    ASSERT_EQ(first.size(), 4u);
    cTexture* held = first.back();
    ++held->refCount; // a face
    writeGrey("a.grey", 8, 16);
    write("set.names", "brick001");
    for (const QString& key : keys)
        EXPECT_TRUE(load(key)->loaded) << "files that have changed are read again";
    EXPECT_EQ(sets[0]->textures[0], first[0]);
    EXPECT_EQ(sets[1]->textures[0], first[0]);
    EXPECT_EQ(first[0]->refCount, 2);
    EXPECT_EQ(first[0]->width, 8);
    EXPECT_EQ(first[0]->image->height, 16);
    EXPECT_TRUE(first[0]->flags & TF_REPLACED);
    EXPECT_EQ(sets[2]->textures, std::vector<cTexture*>({first[2]}));
    EXPECT_EQ(held->refCount, 1) << "what the set has no more goes with its faces";
    textures.releaseTexture(held);

    const int contexts = m_uploader.contexts;
    load(keys[0]);
    EXPECT_EQ(m_uploader.contexts, contexts) << "nothing has changed";
    cConfigFolders game;
    game.textureBrightness = 80;
    const cActiveConfigScope active(&game);
    EXPECT_NE(load(keys[0])->textures[0], first[0]) << "of another brightness";
}

TEST_F(cTextureManagerTest, brokenSetIsToldOnceAndTriedAgainWhenItsFileChanges) {
    const QString key = write("late.grey", "broken") + str("::");
    for (int i = 0; i < 2; ++i)
        EXPECT_FALSE(load(key)->loaded);
    EXPECT_EQ(host.count(eMessage::Warning, str("can't read textures from")), 1);
    writeGrey("late.grey", 3, 3);
    EXPECT_TRUE(load(key)->loaded);
}

TEST_F(cTextureManagerTest, settingsAndBrightnessReachTheFacesOfOpenMaps) {
    cGameConfig* config = configs.addConfig(str("Game"));
    config->parcels << write("set.names", "brick001") + str("::");
    configs.precache(config);
    const cTextureCatalogue& catalogue = *configs.catalogueOf(config);
    const cTexture* texture = catalogue.find(str("brick001"));
    ASSERT_TRUE(texture);
    uint32_t marks = 0;
    configs.callbacks.renewFaces = [&] { marks = texture->flags; };
    configs.reloadTextures();
    EXPECT_EQ(marks, uint32_t(TF_REPLACED));
    EXPECT_EQ(texture->flags, 0u);
    EXPECT_FALSE(configs.needsPrecache(config));
    config->textureBrightness = 80;
    EXPECT_TRUE(configs.needsPrecache(config));
    configs.callbacks.renewFaces = nullptr;
    configs.precache(config);
    EXPECT_FALSE(configs.needsPrecache(config));
    EXPECT_NE(catalogue.find(str("brick001")), nullptr);
    EXPECT_EQ(textures.packages.size(), 1) << "that of the old brightness went";
    write("set.names", "brick002brick003");
    EXPECT_TRUE(configs.needsPrecache(config));
    configs.removeConfig(str("Game"));
}

TEST_F(cTextureManagerTest, aFolderTreeIsASetForEachFolderWithImages) {
    ASSERT_TRUE(QDir(folder.path()).mkpath(str("tree/b/deep")));
    ASSERT_TRUE(QDir(folder.path()).mkpath(str("tree/a")));
    cGameConfig* config = configs.addConfig(str("Game"));
    config->gameBasedir = folder.path();
    config->parcels << path("tree::*.grey") << path("tree/a::*.grey");
    writeGrey("tree/a/one.grey", 1, 1);
    writeGrey("tree/b/deep/two.grey", 1, 1);
    write("tree/b/notes.txt", "none");
    configs.precache(config);
    const cTextureCatalogue& catalogue = *configs.catalogueOf(config);
    const QString prefix = QDir(folder.path()).dirName() + QLatin1Char('/');
    EXPECT_EQ(
        QStringList(catalogue.groups.uniqueKeys()),
        QStringList({str("(All Textures)"), prefix + str("tree/a"), prefix + str("tree/b/deep")}));
    EXPECT_EQ(catalogue.entries.size(), 2);
    writeGrey("tree/three.grey", 1, 1);
    EXPECT_TRUE(configs.needsPrecache(config)) << "a folder has images now";
    configs.precache(config);
    EXPECT_EQ(catalogue.entries.size(), 3);
    EXPECT_EQ(config->parcels.size(), 2) << "what is written stays";
    configs.removeConfig(str("Game"));
}

TEST_F(cTextureManagerTest, aBareNameShowsTheOnlyTextureOfThatNameInAFolder) {
    cGameConfig config;
    config.packages << load(write("set.names", "a/stone1b/stone1a/brick1brick002") + str("::"));
    cTextureCatalogue catalogue(textures);
    catalogue.rebuild(config);
    const auto shown = [&](const char* name) -> QByteArray {
        const cTexture* texture = catalogue.findShown(str(name));
        return texture ? texture->name : "";
    };
    cTexture* hole = catalogue.addMissing(str("brick1"));
    EXPECT_EQ(shown("BRICK1"), "a/brick1") << "before its placeholder";
    EXPECT_EQ(shown("stone1"), "") << "of two nobody knows which";
    EXPECT_EQ(shown("c/brick1"), "") << "names with a folder are meant";
    EXPECT_EQ(catalogue.find(str("brick1")), hole) << "by its own name";
    EXPECT_STREQ(catalogue.defaultTexture(str("B/STONE1"))->name, "b/stone1");
    EXPECT_STREQ(catalogue.defaultTexture(str("brick1"))->name, "a/brick1") << "the first";
}

// What two games share is read once; both know of it, and neither of what has gone.
TEST_F(cTextureManagerTest, gamesThatShareASetSeeItAlike) {
    QDir(folder.path()).mkdir(str("pics"));
    writeGrey("pics/one.grey", 8, 8);
    writeGrey("pics/two.grey", 8, 8);
    const QString key = path("pics") + str("::*.grey");
    cGameConfig *a = configs.addConfig(str("A")), *b = configs.addConfig(str("B"));
    a->parcels << key;
    b->parcels << key;
    configs.precache(a);
    configs.precache(b);
    const auto known = [&](const char* game) {
        return configs.catalogues.value(str(game))->entries.size();
    };
    EXPECT_EQ(known("A"), 2);
    EXPECT_EQ(known("B"), 2);
    QFile::remove(path("pics/two.grey"));
    configs.precache(a);
    EXPECT_EQ(known("B"), 1) << "the other one has been freed";
    ASSERT_TRUE(configs.copyConfig(str("A"), str("C")));
    EXPECT_EQ(known("C"), 1);
    for (const char* game : {"A", "B", "C"})
        configs.removeConfig(str(game)); // before the textures go
}

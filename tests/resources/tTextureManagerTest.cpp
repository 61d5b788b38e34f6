// SPDX-License-Identifier: MIT
// Texture sets through a plug-in loaded from disk, placeholders, catalogues.
#include "resources/tTextureManager.h"

#include "pluginhost/tPluginManager.h"
#include "resources/tGameConfig.h"
#include "resources/tTextureCatalogue.h"
#include "support/tTestHost.h"

#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>

static QString str(const char* text) {
    return QString::fromLatin1(text);
}

class cTestUploader : public cTextureUploader {
public:
    void makeContextCurrent() override { ++contexts; }
    void upload(cTextureImage*, const void*, QIcon**) override { ++alive; }
    void free(cTextureImage*) override { --alive; }

    int contexts = 0;
    int alive = 0;
};

class cTextureManagerTest : public testing::Test {
protected:
    cTextureManagerTest() {
        cPluginTargets targets;
        targets.textures = &m_textures;
        m_plugins = std::make_unique<cPluginManager>(targets);
        EXPECT_TRUE(m_plugins->load(str(KARVEX_TEST_PLUGINS "/tpfull.so")));
        m_textures.setUploader(&m_uploader);
        m_host.messages.clear();
    }
    ~cTextureManagerTest() override {
        m_textures.clear();
        EXPECT_EQ(m_uploader.alive, 0) << "every image was given back";
    }

    QString write(const char* name, const QByteArray& bytes) {
        QFile file(m_folder.filePath(str(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }
    QString writeGrey(const char* name, int width, int height) {
        QByteArray bytes(2 + width * height, '\x55');
        bytes[0] = char(width);
        bytes[1] = char(height);
        return write(name, bytes);
    }
    cTexturePackage* load(const QString& key) {
        cTexturePackage* package = m_textures.acquirePackage(key);
        m_textures.loadPackage(package, m_folder.path(), QString());
        return package;
    }

    cTestHost m_host;
    QTemporaryDir m_folder;
    cTestUploader m_uploader;
    cTextureManager m_textures;
    std::unique_ptr<cPluginManager> m_plugins;
};

TEST_F(cTextureManagerTest, kindOfASetFollowsFromItsPath) {
    const std::pair<QString, int> cases[] = {
        {m_folder.path() + str("::*.grey;*.png"), PK_DIRECTORY},
        {str("/a/b.NAMES::"), PK_PACKAGE},
        {str("/a/b.grey::"), PK_FILE},
        {str("/a::b/c.names"), PK_FILE},
    };
    for (const auto& c : cases)
        EXPECT_EQ(m_textures.acquirePackage(c.first)->kind, c.second) << qPrintable(c.first);
    EXPECT_EQ(m_textures.findPackage(cases[3].first)->path, str("/a"));
    EXPECT_EQ(m_textures.acquirePackage(cases[1].first)->refCount, 2);
    m_textures.releasePackage(cases[1].first);
    EXPECT_TRUE(m_textures.findPackage(cases[1].first));
    m_textures.releasePackage(cases[1].first);
    EXPECT_FALSE(m_textures.findPackage(cases[1].first));
}

TEST_F(cTextureManagerTest, packageIsLoadedAndUnloadedWhole) {
    const QString key = write("set.names", "brick001grass002") + str("::");
    cTexturePackage* package = load(key);
    EXPECT_EQ(package->size, 16);
    ASSERT_EQ(package->textures.size(), 2u);
    EXPECT_STREQ(package->textures[1]->name, "grass002");
    EXPECT_EQ(package->textures[1]->opacity, 1.0f);
    EXPECT_EQ(m_uploader.contexts, 1);
    EXPECT_EQ(m_host.count(eMessage::Print, str("Loading textures from \"") + package->path), 1);
    cTexture* held = package->textures[0];
    ++held->refCount; // a face
    m_textures.releasePackage(key);
    EXPECT_EQ(m_textures.textures.size(), 1) << "a texture lives while any holder does";
    m_textures.releaseTexture(held);
    EXPECT_TRUE(m_textures.textures.isEmpty());
    EXPECT_TRUE(m_textures.images.isEmpty());
}

TEST_F(cTextureManagerTest, directoryTakesWhatItsPatternsAndThePluginAccept) {
    writeGrey("a.grey", 4, 2);
    writeGrey("skipped.grey", 4, 2);
    writeGrey("b.other", 4, 2);
    write("broken.grey", "x");
    cTexturePackage* package = load(m_folder.path() + str("::*.grey;"));
    ASSERT_EQ(package->textures.size(), 1u);
    const cTexture& texture = *package->textures[0];
    EXPECT_STREQ(texture.name, "a");
    EXPECT_EQ(texture.height, 2);
    EXPECT_TRUE(isNodraw(texture));
    EXPECT_EQ(texture.value, 4u);
    EXPECT_EQ(texture.opacity, 0.5f);
    EXPECT_FALSE(m_textures.acceptsName(str("/x/skip.GREY")));
    EXPECT_TRUE(m_textures.acceptsName(str("/x/skip.png")));

    cTexturePackage* again = load(package->path + str("/a.grey::"));
    EXPECT_EQ(again->textures[0], package->textures[0]);
    EXPECT_EQ(texture.refCount, 2);
    EXPECT_EQ(m_host.count(eMessage::Warning, str("duplicate texture \"a\"")), 1);
}

TEST_F(cTextureManagerTest, whatNoPluginReadsStaysUnloaded) {
    write("x.unknown", "abc");
    EXPECT_FALSE(load(m_folder.filePath(str("x.unknown::")))->loaded);
    EXPECT_FALSE(load(m_folder.filePath(str("absent.grey::")))->loaded);
    EXPECT_TRUE(load(write("empty.names", "") + str("::"))->loaded) << "nothing to load";
    QDir(m_folder.path()).mkdir(str("refused"));
    writeGrey("refused/skip.grey", 1, 1);
    EXPECT_FALSE(load(m_folder.filePath(str("refused::")))->loaded);
}

TEST_F(cTextureManagerTest, paletteIsGivenToAFormatWhenItChanges) {
    const QString good = write("good.pal", QByteArray(768, '\x07'));
    EXPECT_TRUE(m_textures.loadPalette(good, m_folder.path()));
    EXPECT_TRUE(m_textures.loadPalette(good, m_folder.path()));
    const QString bad = write("bad.pal", QByteArray(769, '\x07'));
    EXPECT_FALSE(m_textures.loadPalette(bad, m_folder.path()));
    EXPECT_TRUE(m_textures.loadPalette(bad, m_folder.path())) << "from now on all white";
    EXPECT_EQ(m_textures.findPalette(str("/none")), nullptr);

    const QLibrary& library = *m_plugins->libraries[0];
    const auto resolve = [&](const char* name) {
        return reinterpret_cast<void*>(const_cast<QLibrary&>(library).resolve(name));
    };
    const auto& given = *static_cast<const uint8_t**>(resolve("g_palette"));
    const auto& calls = *static_cast<const int32_t*>(resolve("g_paletteCalls"));
    const int32_t before = calls;
    for (const char* name : {"a.grey", "b.grey"}) {
        cTexturePackage* package = m_textures.acquirePackage(writeGrey(name, 1, 1) + str("::"));
        EXPECT_TRUE(m_textures.loadPackage(package, QString(), good));
    }
    EXPECT_EQ(calls, before + 1);
    EXPECT_EQ(given, m_textures.findPalette(good));
}

TEST_F(cTextureManagerTest, missingTextureBecomesRealInPlace) {
    cTextureCatalogue catalogue(m_textures);
    cTexture* hole = catalogue.addMissing(str("Brick001"));
    EXPECT_EQ(catalogue.addMissing(str("BRICK001")), hole);
    EXPECT_STREQ(hole->name, "Brick001") << "the name is kept as given";
    EXPECT_EQ(hole->width, 64);
    EXPECT_TRUE(hole->flags & TF_PLACEHOLDER);
    EXPECT_EQ(catalogue.groupOf(str("brick001")), cTextureCatalogue::missing());
    ++hole->refCount;
    m_textures.releaseTexture(hole);
    EXPECT_EQ(m_textures.findPlaceholder(str("brick001")), hole) << "it holds itself";
    cTextureCatalogue second(m_textures);
    EXPECT_EQ(second.addMissing(str("brick001")), hole) << "also in another configuration";

    cGameConfig config;
    config.gameBasedir = m_folder.path();
    config.parcels << write("set.names", "brick001") + str("::");
    cTexturePackage* package = load(config.parcels[0]);
    EXPECT_EQ(package->textures[0], hole);
    EXPECT_EQ(hole->flags, uint32_t(TF_REPLACED));
    EXPECT_EQ(hole->width, 8);
    EXPECT_TRUE(m_textures.placeholders.isEmpty());
    m_textures.clearReplacedMarks();
    EXPECT_EQ(hole->flags, 0u);
    catalogue.removeMissingEntries();
    catalogue.rebuild(config);
    catalogue.addMissingEntries();
    EXPECT_EQ(catalogue.find(str("BRICK001")), hole);
    EXPECT_EQ(catalogue.missingCount, 0);
}

TEST_F(cTextureManagerTest, catalogueGroupsSetsAndTheFirstNameWins) {
    cGameConfig config;
    config.gameBasedir = m_folder.path();
    writeGrey("one.grey", 2, 2);
    QDir(m_folder.path()).mkdir(str("decals"));
    writeGrey("decals/spot.grey", 2, 2);
    config.parcels << write("a.names", "brick001") + str("::")
                   << write("b.names", "BRICK001other001") + str("::")
                   << write("none.names", "") + str("::") << m_folder.filePath(str("one.grey::"))
                   << m_folder.filePath(str("decals::*.grey")) << str("/never/acquired::");
    for (int i = 0; i < 5; ++i)
        load(config.parcels[i]);
    cTextureCatalogue catalogue(m_textures);
    catalogue.addMissing(str("gone"));
    catalogue.rebuild(config);
    catalogue.addMissingEntries();
    EXPECT_EQ(catalogue.find(str("brick001")),
              m_textures.findPackage(config.parcels[0])->textures[0]);
    const QString folder = QDir(m_folder.path()).dirName() + QLatin1Char('/');
    EXPECT_EQ(catalogue.groupOf(str("Other001")), folder + str("b.names"));
    EXPECT_EQ(catalogue.groupOf(str("one")), cTextureCatalogue::miscellaneous());
    EXPECT_EQ(catalogue.groupOf(str("unheard of")), cTextureCatalogue::allTextures());
    EXPECT_EQ(catalogue.decalGroup(), folder + str("decals"));
    QStringList groups;
    for (const cTextureGroup& group : catalogue.groupList)
        groups << group.name + group.icon;
    EXPECT_EQ(
        groups,
        QStringList({str("(All Textures):/qrc/l_all.png"), str("(Miscellaneous):/qrc/l_all.png"),
                     folder + str("a.names:/qrc/l_wad.png"), folder + str("b.names:/qrc/l_wad.png"),
                     folder + str("decals:/qrc/l_dir.png")}));
    EXPECT_EQ(catalogue.missingCount, 1);
}

TEST_F(cTextureManagerTest, hostileDeliveriesAreRefused) {
    cTexturePackage* package = m_textures.acquirePackage(str("/a.grey::"));
    const uint8_t pixels[4] = {};
    cTextureManager::addTexture("id", nullptr, 0, 0, 4, 2, 2, 0, nullptr, pixels, package);
    cTextureManager::addTexture("id", "n", 0, 0, 4, 0, 2, 0, nullptr, pixels, package);
    cTextureManager::addTexture("id", "n", 0, 0, 4, 2, 2, 0, nullptr, nullptr, package);
    cTextureManager::addTexture("id", "n", 0, 0, 4, 2, 2, 0, nullptr, pixels, nullptr);
    EXPECT_TRUE(package->textures.empty());
    for (int i = 0; i < 2; ++i)
        cTextureManager::addTexture("img", "n", 0, 0, 4, 2, 2, TT_IMAGE_ONLY, nullptr, pixels,
                                    package);
    EXPECT_EQ(m_textures.images.size(), 1);
    EXPECT_TRUE(m_textures.textures.isEmpty());
    // Two textures under one id: both live until their holders go.
    for (int i = 0; i < 2; ++i)
        cTextureManager::addTexture("id", "n", 0, 0, 4, 2, 2, 0, nullptr, pixels, package);
    EXPECT_EQ(package->textures.size(), 2u);
    m_textures.unloadPackage(package);
    EXPECT_TRUE(m_textures.textures.isEmpty());
}

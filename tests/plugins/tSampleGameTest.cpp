// SPDX-License-Identifier: MIT
// The sample game is whole: what its configuration, maps and classes name is there and can be read.
#include "gamedata/tGameData.h"
#include "gamedata/tGameDataRegistry.h"
#include "plugins/tMapPluginTest.h"
#include "resources/tGameContext.h"
#include "resources/tTextureCatalogue.h"
#include "support/tSystem.h"

#include <QDir>

class SampleGame : public cMapPluginTest {
protected:
    SampleGame() : m_baseBefore(appBaseDir()) {
        setAppBaseDir(str(KARVEX_SOURCE));
        configs.load(str(KARVEX_SOURCE "/game/TDKGameCfg.ini"));
        config = configs.configs.value(0);
        configs.precache(config);
    }
    ~SampleGame() override {
        configs.removeConfig(config->title);
        setAppBaseDir(m_baseBefore);
    }

    cGameConfig* config = nullptr;

private:
    QString m_baseBefore;
};

TEST_F(SampleGame, mapsFindAllTheirTextures) {
    cGameContext game(configs, textures);
    game.config = config;
    for (const QFileInfo& file : QDir(str(KARVEX_SOURCE "/game/maps")).entryInfoList(QDir::Files)) {
        cMap map(game);
        ASSERT_TRUE(importFile(map, file.filePath()));
        game.catalogue()->refreshMissing();
        EXPECT_EQ(
            QStringList(game.catalogue()->placeholders.keys()).join(QLatin1Char(' ')).toStdString(),
            "")
            << qPrintable(file.fileName());
    }
    EXPECT_EQ(host.count(eMessage::Warning, QString()), 0);
    EXPECT_EQ(host.count(eMessage::Error, QString()), 0);
}

TEST_F(SampleGame, classesFindTheirModelsAndSprites) {
    int found = 0;
    for (const cEntityClass* c : gameData.find(config->gameData[0])->classes) {
        for (const QString& name : {c->studio, c->sprite, c->iconSprite}) {
            if (name.isEmpty())
                continue;
            EXPECT_TRUE(QFileInfo::exists(config->gameBasedir + QLatin1Char('/') + name))
                << qPrintable(name);
            ++found;
        }
    }
    EXPECT_GE(found, 7);
}

// SPDX-License-Identifier: MIT
// Sprites and models as the entities of open maps share them, through the media plug-in.
#include "document/tEntity.h"
#include "document/tMapLists.h"
#include "plugins/tMediaTest.h"
#include "support/tRandomWalk.h"
#include "support/tSystem.h"
#include "support/tWalkedBoxes.h"

#include <map>

class ModelManager : public cMediaTest {
protected:
    ModelManager() { models.setUploader(&uploader); }
    ~ModelManager() override { models.clear(); }

    QString copyOf(const char* seedPath, const QString& name) {
        return write(name, contents(seed(QLatin1String(seedPath))));
    }
    cConfigFolders folders;
};

TEST_F(ModelManager, aFileIsReadOnceForAllItsUsers) {
    copyOf("sprites/group.spr", QStringLiteral("torch.spr"));
    folders.gameBasedir = folder.path();
    const cActiveConfigScope scope(&folders);
    cSpriteRecord* sprite = models.loadSprite(QStringLiteral("torch.spr"), nullptr);
    ASSERT_TRUE(sprite->loaded);
    EXPECT_EQ(sprite->frameCount, 3);
    EXPECT_EQ(uploader.pictures.size(), 3u);
    const QString other = QStringLiteral(".\\torch.spr");
    EXPECT_EQ(models.loadSprite(other, nullptr), sprite) << "another way to say it";
    EXPECT_EQ(sprite->refCount, 2);
    models.purge();
    EXPECT_EQ(uploader.pictures.size(), 3u) << "in use";

    folders.textureBrightness = 90;
    cSpriteRecord* bright = models.loadSprite(other, nullptr);
    EXPECT_NE(bright, sprite);
    const std::vector<uint8_t> palette(768, 7);
    EXPECT_NE(models.loadSprite(other, palette.data()), bright);
    models.outdate();
    EXPECT_NE(models.loadSprite(other, nullptr), bright);
    EXPECT_EQ(uploader.pictures.size(), 12u);

    models.releaseSprite(bright);
    models.purge();
    EXPECT_EQ(uploader.pictures.size(), 9u);
    models.clear();
    EXPECT_TRUE(uploader.pictures.empty());
    EXPECT_EQ(warnings(), 0);
}

TEST_F(ModelManager, whatCanNotBeReadCostsOneTryAndOneLine) {
    const QString broken = write(QStringLiteral("broken.mdl"), "IDPO");
    const auto lines = [this] { return warnings() + host.count(eMessage::Error, QString()); };
    const struct {
        QString path;
        int lines;
    } cases[] = {{broken, 1},
                 {folder.filePath(QStringLiteral("none.mdl")), 1},
                 {folder.filePath(QStringLiteral("none.bsp")), 0}}; // which no plug-in reads
    for (const auto& c : cases) {
        host.messages.clear();
        cModelRecord* model = models.loadModel(c.path, nullptr);
        EXPECT_FALSE(model->loaded);
        EXPECT_EQ(lines(), c.lines) << c.path.toStdString();
        copyOf("models/tetra.mdl", QFileInfo(c.path).fileName());
        EXPECT_EQ(models.loadModel(c.path, nullptr), model);
        EXPECT_FALSE(model->loaded) << "not tried again";
        EXPECT_EQ(lines(), c.lines);
    }
    models.clear();
    cModelRecord* mended = models.loadModel(broken, nullptr);
    EXPECT_TRUE(mended->loaded);
    EXPECT_TRUE(mended->render && mended->getBounds && mended->unload && mended->skins);
}

// The block of each try is the plug-in's: this one gives it back, which the leak checker holds.
static int32_t refuse(uint32_t, const char*, void* data, int32_t, cSpriteRecord* sprite,
                      tpAddFrame add, void*) {
    const uint8_t texel[4] = {};
    add(sprite, 0x1908, 0, 4, 1, 1, texel);
    sprite->orientation = 4;
    sprite->ownsData = 1;
    Mem_Free(data);
    return 0;
}

TEST_F(ModelManager, nothingOfARefusedTryStays) {
    cSpriteFormat refusing = {};
    refusing.extension = QStringLiteral(".spr");
    refusing.load = refuse;
    models.spriteFormats.prepend(refusing);
    cSpriteRecord* sprite = models.loadSprite(seed(QStringLiteral("sprites/group.spr")), nullptr);
    EXPECT_TRUE(sprite->loaded);
    EXPECT_EQ(sprite->refCount, 1);
    EXPECT_EQ(sprite->frameCount, 3);
    EXPECT_EQ(sprite->ownsData, 0u);
    EXPECT_NE(sprite->orientation, 4);
    EXPECT_EQ(uploader.pictures.size(), 3u);
}

TEST_F(ModelManager, picturesOfBadSizesAreRefused) {
    cModelRecord model = {};
    const std::vector<uint8_t> texels(4 * 16384);
    const int sizes[][2] = {{0, 1}, {1, -1}, {16385, 1}, {1, 1 << 20}};
    for (const auto& size : sizes)
        models.addSkin(&model, 0x1908, 0, 0, size[0], size[1], texels.data());
    EXPECT_EQ(model.skins, nullptr);
    EXPECT_EQ(warnings(), 4);
}

// ---- Under any changes of maps

// Files by name: three of them can be read.
class cWalkedModels {
public:
    cWalkedModels(cModelManager& models, unsigned seed) : boxes(seed), m_models(models) {
        cEntityClass* light = boxes.host.findClass("light", CF_POINT);
        light->flags |= ECF_STUDIO;
        boxes.host.acquire = [this](eAttachKind, const char* name) -> void* {
            const QString path =
                QStringLiteral(KARVEX_SOURCE "/fuzz/corpus/models/") + QLatin1String(name);
            cModelRecord* model = m_models.loadModel(path, nullptr);
            if (model->loaded)
                return model;
            m_models.releaseModel(model);
            return nullptr;
        };
        boxes.host.giveBack = [this](eAttachKind, void* record) {
            m_models.releaseModel(static_cast<cModelRecord*>(record));
        };
    }

    void nameModels(cRandomWalk& walk) {
        static const char* const names[] = {"tetra.mdl", "tetra.md2", "tetra.obj", "none.md3", ""};
        for (cEntityData* entity : entitiesOf(boxes.map.data)) {
            if (!(entity->flags & EF_POINT))
                continue;
            removeEpair(entity, "model");
            addEpairLast(entity, "model", names[walk.number(0, 4)]);
            updateEntity(entity, UM_ATTACH);
        }
    }

    QString check() {
        std::map<const void*, int> held;
        for (const cEntityData* entity : entitiesOf(boxes.map.data))
            if (entity->attachKind == AK_MODEL)
                ++held[static_cast<const cAttachment*>(entity->attachment)->record];
        seen += int(held.size());
        for (const auto& [source, model] : m_models.models)
            if (held[&model] != model.refCount)
                return QStringLiteral("%1 is held %2 times, not %3")
                    .arg(source.path)
                    .arg(held[&model])
                    .arg(model.refCount);
        return {};
    }

    cWalkedBoxes boxes;
    int seen = 0; // models in use, over all checks

private:
    cModelManager& m_models;
};

TEST_F(ModelManager, whateverHappensToMapsEachEntityHoldsOneReference) {
    constexpr int SEGMENTS = 4, OPERATIONS = 40;
    const unsigned seed = firstWalkSeed();
    {
        cWalkedModels walked(models, seed);
        cRandomWalk walk(walked.boxes.host, walked.boxes.map, seed);
        walk.check = [&] { return walked.check(); };
        for (int i = 0; i < SEGMENTS; ++i) {
            walked.nameModels(walk);
            const QString problem = walk.runSegment(OPERATIONS);
            ASSERT_TRUE(problem.isEmpty()) << "seed " << seed << "\n" << qPrintable(problem);
            walk.changeWithoutHistory();
            models.purge();
        }
        EXPECT_GT(walked.seen, 0);
    }
    models.purge();
    EXPECT_TRUE(models.models.empty()) << "the map has gone";
    EXPECT_TRUE(uploader.pictures.empty());
}

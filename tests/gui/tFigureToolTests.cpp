// SPDX-License-Identifier: MIT
// Models in the whole program: found in the game's folder, picked, moved, and given back.
#include "gui/tToolTest.h"

#include <QFile>

class FigureToolTest : public cToolTest {
protected:
    void furnish() override {
        write("test.fgd", "@SolidClass = worldspawn : \"World\" []\n"
                          "@PointClass studio() = statue : \"Statue\" [ model(string) : \"M\" ]\n");
        for (const auto& [from, to] :
             {std::pair(KARVEX_PLUGINS "/tpmedia.so", "plugins/tpmedia.so"),
              {KARVEX_SOURCE "/fuzz/corpus/models/tetra.obj", "it.obj"}})
            ASSERT_TRUE(QFile::copy(QString::fromLatin1(from), file(to)));
    }

    cEntityData* addStatue(const char* model, float x = 0) {
        const float origin[3] = {x, 0, 0};
        cEntityData* entity = map().addEntity("statue", origin, EF_POINT);
        addEpairLast(entity, "model", model);
        updateEntity(entity, UM_RENDER_KEYS | UM_MODEL_KEYS | UM_ATTACH);
        return entity;
    }
    const cModelRecord* recordOf(const cEntityData* entity) const {
        if (entity->attachKind != AK_MODEL)
            return nullptr;
        return static_cast<cModelRecord*>(static_cast<cAttachment*>(entity->attachment)->record);
    }
    const cModelManager& models() const { return window->services().models; }
};

// Seen from above the model has its edges along -16 and from 48 on one axis to 48 on the other.
TEST_F(FigureToolTest, aModelIsPickedByItsEdgesMovedAndUndone) {
    cEntityData* statue = addStatue("it.obj");
    ASSERT_TRUE(recordOf(statue));
    objectsAdded();
    click(top, pixel(top, 40, 40));
    EXPECT_EQ(selectedEntities(), 0) << "in its box, beside the model";
    click(top, pixel(top, 0, -16));
    ASSERT_EQ(selectedEntities(), 1);
    expectBounds(statue->mins, statue->maxs, {-16, -16, -8}, {48, 48, 56});
    expectUndoable([&] {
        const QPoint from = pixel(top, 16, 20);
        drag(top, from, from + QPoint(64, 0));
    });
    EXPECT_EQ(statue->origin[0], 64);
    expectBounds(statue->mins, statue->maxs, {48, -16, -8}, {112, 48, 56});
}

TEST_F(FigureToolTest, modelsThatAreMissingAreNamedOnceAndShowTheirBox) {
    for (const float x : {0.0f, 100.0f, 200.0f}) {
        const cEntityData* entity = addStatue("none.mdl", x);
        EXPECT_EQ(recordOf(entity), nullptr);
        expectBounds(entity->mins, entity->maxs, {x - 8, -8, -8}, {x + 8, 8, 8});
    }
    EXPECT_EQ(console().count(QStringLiteral("can't open \"none.mdl\"")), 1);
}

TEST_F(FigureToolTest, picturesFollowTheBrightnessAndGoWithTheirLastMap) {
    cEntityData* statue = addStatue("it.obj");
    const cModelRecord* plain = recordOf(statue);
    project->game.config->textureBrightness = 80;
    window->services().configs.precache(project->game.config);
    const cModelRecord* bright = recordOf(statue);
    ASSERT_TRUE(bright);
    EXPECT_NE(bright, plain);
    EXPECT_EQ(plain->refCount, 0);
    EXPECT_EQ(bright->refCount, 1);
    EXPECT_EQ(models().models.size(), 2u);
    cProject* second = newProject();
    EXPECT_EQ(models().models.size(), 1u) << "the plain one is in no map";
    second->dirty = false;
    project->dirty = false;
    window->removeProject(project);
    project = newProject();
    EXPECT_TRUE(models().models.empty());
}

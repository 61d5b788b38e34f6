// SPDX-License-Identifier: MIT
// Maps of two games open at once: each finds its own textures, classes and detail, whatever is
// done to the other in between.
#include "document/tEntityClass.h"
#include "document/tFaceMapping.h"
#include "document/tTexture.h"
#include "operations/tClipboard.h"
#include "operations/tStructure.h"
#include "support/tMapTest.h"

class MapContext : public cMapTest {
protected:
    MapContext() {
        host.addTexture("wall", 64, 64);
        other.addTexture("WALL", 256, 32);
        host.mapProfile.detailContentMask = 1;
        other.mapProfile.detailContentMask = 2;
        other.mapProfile.flags = PF_ALPHA_KEY;
        for (cTestGame* game : {static_cast<cTestGame*>(&host), &other})
            game->addClass(QStringLiteral("light"), CK_POINT)->maxs[2] = game == &other ? 40 : 20;
    }
    // All that one game gives and the other does not.
    void expectOf(const cMap& of, cTestGame& game, const char* when) {
        const cTexture* wall = game.findTexture("wall");
        EXPECT_EQ(checkMapInvariants(of).toStdString(), "") << when;
        int faces = 0;
        for (const cEntityData* entity : entitiesOf(of.data)) {
            if (entity->flags & EF_POINT) {
                EXPECT_EQ(entity->entity->entityClass, game.findClass("light", CF_POINT)) << when;
                EXPECT_EQ(entity->renderColor[3], &game == &other ? 127 : 255) << when;
            }
            for (const cBrushData* brush : brushesOf(entity)) {
                for (const cFaceData* face : facesOf(brush)) {
                    EXPECT_EQ(face->texture, wall) << when;
                    const float u = vecDot(face->vertices->xyz, face->tex.uAxis);
                    EXPECT_FLOAT_EQ(face->vertices->st[0],
                                    (u + face->tex.uShift) / float(wall->width))
                        << when;
                    ++faces;
                }
            }
        }
        EXPECT_EQ(wall->useCount, faces) << when;
        EXPECT_EQ(wall->refCount, faces) << when;
    }
    void expectBoth(const char* when) {
        expectOf(map, host, when);
        expectOf(second, other, when);
    }

    cTestGame other;
    cMap second{other};
};

TEST_F(MapContext, twoGamesAreNeverMixedUp) {
    addWorldTo(second);
    for (cMap* each : {&map, &second}) {
        const float mins[3] = {16, 32, 48}, maxs[3] = {80, 96, 112}, above[3] = {48, 64, 200};
        selectedPush(each->data.selectedBrushes, addBox(*each, each->world(), mins, maxs));
        cEntityData* light = each->addEntity("light", above, EF_POINT);
        addEpairLast(light, "alpha", "0.5");
        updateEntity(light, UM_RENDER_KEYS);
        selectedPush(each->data.selectedEntities, light);
    }
    expectBoth("made");

    for (cMap* each : {&map, &second}) {
        EXPECT_TRUE(setSelectionDetail(*each, true));
        const cBrushData* brush = each->world()->brushes;
        EXPECT_EQ(brush->faces->tex.contentFlags, each == &map ? 1u : 2u);
        EXPECT_TRUE(isDetail(brush));
    }
    cClipboard clipboard;
    clipboard.copySelection(map, true);
    cPasteOptions options;
    clipboard.paste(second, options, "Paste");
    EXPECT_FALSE(isDetail(second.world()->brushesTail)) << "by the bits of the game it came from";
    expectBoth("pasted");
    clipboard.cutSelection(second, true);
    clipboard.paste(map, options, "Paste");
    expectBoth("cut and pasted the other way");
    for (int i = 0; i < 3; ++i) {
        second.history->undo();
        map.history->undo();
        expectBoth("undone in turn");
    }
    while (second.history->canRedo()) {
        second.history->redo();
        expectBoth("redone");
    }
    map.clearMap();
    EXPECT_EQ(host.findTexture("wall")->refCount, 0);
    EXPECT_TRUE(host.classes.size() == 1 && host.textures.size() == 1) << "nothing was missed";
}

// A set that is read late may bring what one game lacked, or what another lacks of that name.
TEST_F(MapContext, namesAreLookedUpAgainWhenTexturesHaveComeOrGone) {
    cubeAt(0);
    cEntityClass* mark = host.addClass(QStringLiteral("mark"), CK_POINT);
    mark->flags = ECF_DECAL;
    mark->decal = QStringLiteral("Wall");
    cEntityData* decal = pointAt(200, 0, 0, "mark");
    cTexture* wall = host.findTexture("wall");
    EXPECT_EQ(wall->refCount, 7);
    map.renewFaces();
    EXPECT_EQ(wall->refCount, 7) << "nothing has changed";

    auto known = host.textures.extract("WALL");
    map.renewFaces();
    cTexture* hole = host.findTexture("wall");
    EXPECT_TRUE(hole->flags & TF_PLACEHOLDER);
    EXPECT_EQ(known.mapped().refCount, 0);
    EXPECT_EQ(hole->refCount, 7);
    EXPECT_EQ(static_cast<cAttachment*>(decal->attachment)->record, hole);

    hole->flags = TF_REPLACED; // filled in place
    hole->width = 128;
    map.renewFaces();
    const cFaceData* face = world->brushes->faces;
    const float u = vecDot(face->vertices->xyz, face->tex.uAxis);
    EXPECT_FLOAT_EQ(face->vertices->st[0], (u + face->tex.uShift) / 128);
    EXPECT_EQ(hole->refCount, 7);
}

// SPDX-License-Identifier: MIT
#include "document/tFaceMapping.h"
#include "document/tTexture.h"
#include "operations/tFaceEdits.h"
#include "operations/tPrimitives.h"
#include "support/tMapTest.h"

class FaceEdits : public cMapTest {
protected:
    static constexpr int WIDTH = 64, HEIGHT = 32;

    FaceEdits() {
        host.addTexture("wall", WIDTH, HEIGHT);
        host.addTexture("stone", WIDTH, HEIGHT);
    }

    void selectFaces(std::initializer_list<cFaceData*> faces) {
        host.pickingFaces = true;
        map.clearSelection();
        for (cFaceData* face : faces)
            selectedPush(map.data.selectedFaces, face);
    }
    cFaceData* faceTowards(const cBrushData* brush, float x, float y, float z) {
        const float normal[3] = {x, y, z};
        for (cFaceData* face : facesOf(brush))
            if (vecDot(face->normal, normal) > 0.999f * vecLength(normal))
                return face;
        return nullptr;
    }
    // An upright pillar; its sides in the order in which they meet.
    std::vector<cFaceData*> pillar(int sides) {
        cPrimitiveParams params = {};
        params.map = &map.data;
        qstrncpy(params.face.name, "wall", sizeof params.face.name);
        params.face.uScale = params.face.vScale = 1;
        params.sides = sides;
        params.flags = 1 | 4;
        for (int i = 0; i < 3; ++i) {
            params.axes[i] = i;
            params.mins[i] = 1000;
            params.maxs[i] = 1000 + 128.0f;
        }
        EXPECT_TRUE(createCylinder(params));
        map.clearSelection();
        std::vector<cFaceData*> around;
        for (cFaceData* face : facesOf(map.world()->brushesTail))
            if (std::fabs(face->normal[2]) < 0.5f)
                around.push_back(face);
        std::sort(around.begin(), around.end(), [](const cFaceData* a, const cFaceData* b) {
            return std::atan2(a->normal[1], a->normal[0]) < std::atan2(b->normal[1], b->normal[0]);
        });
        return around;
    }
    // How far the texture jumps where two faces meet, in texels.
    static double jump(const cFaceData* a, const cFaceData* b) {
        double most = 0;
        for (int i = 0; i < a->vertexCount; ++i) {
            for (int k = 0; k < b->vertexCount; ++k) {
                float way[3];
                vecSubtract(a->vertices[i].xyz, b->vertices[k].xyz, way);
                if (vecLength(way) > 0.02f)
                    continue;
                for (int axis = 0; axis < 2; ++axis) {
                    const double turns =
                        double(a->vertices[i].st[axis]) - double(b->vertices[k].st[axis]);
                    const int size = axis == 0 ? WIDTH : HEIGHT;
                    most = std::max(most, std::fabs(turns - std::round(turns)) * size);
                }
            }
        }
        return most;
    }
    // The law, in one line of the case that breaks it.
    void step(const char* title, const std::function<void()>& edit) {
        SCOPED_TRACE(title);
        law(edit);
        EXPECT_TRUE(isStep(title));
    }
};

TEST_F(FaceEdits, everyFieldIsAStepThatUndoTakesBack) {
    cBrushData* brush = cubeAt(0);
    cFaceData *top = faceTowards(brush, 0, 0, 1), *side = faceTowards(brush, 1, 0, 0);
    selectFaces({top, side});
    step("Scale Texture", [&] { setTextureScale(map, 0, 0.0005f); });
    EXPECT_EQ(top->tex.uScale, 1);
    step("Scale Texture", [&] { setTextureScale(map, 1, -0.5f); });
    step("Shift Texture", [&] { setTextureShift(map, 1, 12.5f); });
    step("Rotate Texture", [&] { setTextureRotation(map, -90); });
    EXPECT_EQ(side->tex.rotation, 270);
    step("Change Texture Value", [&] { setTextureValue(map, 77); });
    step("Surface Flags", [&] { setSurfaceFlags(map, 0x30, 0x11); });
    step("Content Flags", [&] { setContentFlags(map, 0x80000003, 0x80000001); });
    EXPECT_EQ(top->tex.surfaceFlags, 0x10u);
    EXPECT_EQ(side->tex.contentFlags, 0x80000001u);
    step("Reset Texture", [&] { resetTexture(map); });
    step("Align Texture", [&] { alignTexture(map, FT_ALIGN_FACE); });
    setTextureShift(map, 0, 1);
    const uint32_t last = map.history->lastStep();
    setTextureShift(map, 0, 2, eStep::Joined);
    dragTexture(map, top, 5, 0, eStep::Joined);
    EXPECT_EQ(map.history->lastStep(), last);
    map.history->undo();
    EXPECT_EQ(top->tex.uShift, 0) << "what has joined goes with the step";
    EXPECT_TRUE(isWhole());
    map.clearSelection();
    setTextureShift(map, 0, 1);
    EXPECT_TRUE(isStep("Align Texture")) << "nothing is selected";
}

// The number and the axes stay in step, whichever way the rotation goes.
TEST_F(FaceEdits, rotationIsThatOfTheAxes) {
    cFaceData* face = faceTowards(cubeAt(0), 0, 0, 1);
    selectFaces({face});
    const cFaceTexture straight = face->tex;
    for (const float degrees : {30.0f, 0.0f, -90.0f, 360.0f, 360.0f, 45.5f, 0.0f}) {
        setTextureRotation(map, degrees);
        cFaceTexture wanted = straight;
        std::swap(wanted, face->tex);
        rotateAxes(face, degrees);
        std::swap(wanted, face->tex);
        for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(face->tex.uAxis[i], wanted.uAxis[i], 1e-5f) << degrees;
            EXPECT_NEAR(face->tex.vAxis[i], wanted.vAxis[i], 1e-5f) << degrees;
        }
    }
}

// By the mapping of the corners, exact to a thousandth of a texel.
TEST_F(FaceEdits, justifyPutsTheEdgesWhereTheyBelong) {
    cBrushData *near = cubeAt(0), *far = cubeAt(100.25f, 7, 0, 96);
    const auto range = [&](std::initializer_list<const cFaceData*> faces, int axis, float out[2]) {
        out[0] = 1e9f;
        out[1] = -1e9f;
        for (const cFaceData* face : faces)
            for (int i = 0; i < face->vertexCount; ++i) {
                out[0] = std::min(out[0], face->vertices[i].st[axis]);
                out[1] = std::max(out[1], face->vertices[i].st[axis]);
            }
    };
    const auto isWhole = [](float turns, int size) {
        return std::fabs(turns - std::round(turns)) * float(size) < 0.001f;
    };
    int cases = 0;
    for (const float rotation : {0.0f, 30.0f, 45.0f, 90.0f, 200.0f})
        for (const float scale : {1.0f, -0.5f, 0.25f})
            for (const uint32_t align : {FT_ALIGN_WORLD, FT_ALIGN_FACE})
                for (const bool asOne : {false, true})
                    for (int mode = JUSTIFY_TOP; mode <= JUSTIFY_FIT; ++mode) {
                        cFaceData *a = faceTowards(near, 0, -1, 0), *b = faceTowards(far, 0, -1, 0);
                        selectFaces({a, b});
                        alignTexture(map, align);
                        setTextureRotation(map, rotation);
                        setTextureScale(map, 0, scale);
                        justifyTexture(map, mode, asOne, 3, 2);
                        float s[2], t[2];
                        asOne ? range({a, b}, 0, s) : range({a}, 0, s);
                        asOne ? range({a, b}, 1, t) : range({a}, 1, t);
                        SCOPED_TRACE(testing::Message() << rotation << ' ' << scale << ' ' << align
                                                        << ' ' << asOne << ' ' << mode);
                        EXPECT_TRUE(mode != JUSTIFY_TOP || isWhole(t[0], HEIGHT));
                        EXPECT_TRUE(mode != JUSTIFY_BOTTOM || isWhole(t[1], HEIGHT));
                        EXPECT_TRUE(mode != JUSTIFY_LEFT || isWhole(s[0], WIDTH));
                        EXPECT_TRUE(mode != JUSTIFY_RIGHT || isWhole(s[1], WIDTH));
                        EXPECT_TRUE(mode != JUSTIFY_CENTER ||
                                    isWhole((s[0] + s[1]) / 2 - 0.5f, WIDTH));
                        EXPECT_TRUE(mode != JUSTIFY_FIT || std::fabs(s[1] - s[0] - 3) < 1e-4f);
                        EXPECT_TRUE(mode != JUSTIFY_FIT || std::fabs(t[1] - t[0] - 2) < 1e-4f);
                        EXPECT_TRUE(mode != JUSTIFY_FIT ||
                                    (isWhole(s[0], WIDTH) && isWhole(t[0], HEIGHT)));
                        EXPECT_EQ(std::signbit(a->tex.uScale), std::signbit(scale));
                        ++cases;
                    }
    EXPECT_EQ(cases, 5 * 3 * 2 * 2 * 6);
}

// Painted from side to side the texture runs on at every edge but the closing one, and a drag on
// one side keeps it so.
TEST_F(FaceEdits, aPillarIsWrappedWithoutAJump) {
    for (const uint32_t align : {FT_ALIGN_WORLD, FT_ALIGN_FACE}) {
        std::vector<cFaceData*> around = pillar(16);
        ASSERT_EQ(around.size(), 16u);
        selectFaces({around[0]});
        alignTexture(map, align);
        setTextureScale(map, 0, -0.35f);
        setTextureShift(map, 1, 7.25f);
        cFaceValues values;
        values.shift[0] = 99.0f; // not for what is wrapped
        step("Apply Texture", [&] {
            std::vector<cPaintedFace> painted;
            for (size_t i = 1; i < around.size(); ++i)
                painted.push_back({around[i], around[i - 1]});
            paintFaces(map, painted, "wall", &values);
        });
        const auto expectWrapped = [&] {
            for (size_t i = 1; i < around.size(); ++i) {
                ASSERT_TRUE(shareEdge(around[i], around[i - 1]));
                EXPECT_LT(jump(around[i], around[i - 1]), 0.01) << i;
            }
        };
        expectWrapped();
        map.clearSelection();
        for (cFaceData* face : around)
            selectedPush(map.data.selectedFaces, face);
        const float before = around[5]->vertices[0].st[0] * WIDTH;
        dragTexture(map, around[5], 3.5f, -2, eStep::New);
        EXPECT_NEAR(std::remainder(around[5]->vertices[0].st[0] * WIDTH - before - 3.5f, WIDTH), 0,
                    0.001f);
        expectWrapped();
    }
}

TEST_F(FaceEdits, aBrushIsSpreadOverFromOneFace) {
    cFaceData* top = faceTowards(cubeAt(1000, -300), 0, 0, 1);
    selectFaces({top});
    setTextureScale(map, 0, 0.5f);
    setTextureShift(map, 1, 5);
    const std::vector<cPaintedFace> spread = spreadOver(top);
    ASSERT_EQ(spread.size(), 5u);
    step("Apply Texture", [&] { paintFaces(map, spread, "stone", nullptr); });
    for (const cPaintedFace& painted : spread) {
        EXPECT_STREQ(painted.face->tex.name, "stone");
        EXPECT_LT(jump(painted.face, painted.reference), 0.01);
    }
    EXPECT_STREQ(top->tex.name, "wall");
}

// On the screen of the camera S runs right and T down, from its middle.
TEST_F(FaceEdits, alignedToTheViewATextureStandsUpright) {
    cFaceData* face = faceTowards(cubeAt(0), 0, -1, 0);
    const cViewAxes view = {{10, -200, 20}, {1, 0, 0}, {0, 0, 1}};
    const float scale[2] = {0.5f, 0.0001f};
    step("Align to View", [&] { alignFaceToView(map, face, view, scale); });
    for (int i = 0; i < face->vertexCount; ++i) {
        const float* p = face->vertices[i].xyz;
        const float s = face->vertices[i].st[0] * WIDTH - (p[0] - 10) / 0.5f;
        const float t = face->vertices[i].st[1] * HEIGHT - (20 - p[2]);
        EXPECT_NEAR(std::remainder(s, float(WIDTH)), 0, 0.001f);
        EXPECT_NEAR(std::remainder(t, float(HEIGHT)), 0, 0.001f);
    }
    const uint32_t last = map.history->lastStep();
    alignFaceToView(map, faceTowards(face->brush, 0, 0, 1), view, scale);
    EXPECT_EQ(map.history->lastStep(), last) << "the camera looks along it";
    EXPECT_EQ(printed("edge-on"), 1);
}

TEST_F(FaceEdits, anotherTextureLeavesWhatIsTheFacesOwn) {
    host.mapProfile.detailContentMask = 0x8;
    host.findTexture("wall")->surfaceFlags = 1;
    cTexture* stone = host.findTexture("stone");
    stone->surfaceFlags = 2;
    stone->value = 50;
    stone->contentFlags = 4;
    cBrushData* brush = cubeAt(0);
    for (cFaceData* face : facesOf(brush)) {
        face->tex.surfaceFlags = 1;
        face->tex.contentFlags = 8;
    }
    cFaceData* own = brush->faces;
    own->tex.surfaceFlags = 3;
    map.select(brush);
    step("Apply Texture", [&] { applyTextureToSelection(map, "stone"); });
    for (const cFaceData* face : facesOf(brush)) {
        EXPECT_EQ(face->tex.surfaceFlags, face == own ? 3u : 2u);
        EXPECT_EQ(face->tex.contentFlags, 8u) << "its detail bit, and so its own";
        EXPECT_EQ(face->tex.value, 50u);
    }
}

TEST_F(FaceEdits, replacingByName) {
    cBrushData *open = cubeAt(0), *hidden = cubeAt(100);
    hidden->flags |= BF_HIDDEN;
    const std::string longName(60, 'w');
    setTextureName(hidden->faces, ("a" + longName).c_str());
    setTextureName(open->faces, ("b" + longName).c_str());
    const auto replaced = [&](const cTextureSearch& search, const char* by) {
        cReplaced result;
        law([&] { result = replaceTextures(map, search, by); });
        return std::make_pair(result.count, result.refused);
    };
    EXPECT_EQ(replaced({"nothing"}, "x"), std::make_pair(0, 0));
    EXPECT_EQ(replaced({"Wall"}, "stone"), std::make_pair(5, 0));
    EXPECT_EQ(replaced({"TON", nullptr, MATCH_SUBSTITUTE}, "wallton"), std::make_pair(5, 0));
    EXPECT_STREQ(open->facesTail->tex.name, "swalltone");
    EXPECT_EQ(replaced({"W", nullptr, MATCH_SUBSTITUTE, false, true}, "vv"), std::make_pair(10, 2))
        << "names that would be too long stay";
    EXPECT_EQ(strlen(open->faces->tex.name), 61u);
    EXPECT_EQ(replaced({"vv", nullptr, MATCH_PART, true, true, 2}, "stone"), std::make_pair(0, 0));
    map.select(open);
    EXPECT_EQ(replaced({"vv", nullptr, MATCH_PART, true, true, 2}, "stone"), std::make_pair(5, 0));
    EXPECT_EQ(open->facesTail->tex.uScale, 2);
    EXPECT_EQ(open->facesTail->texture, host.findTexture("stone"));

    map.clearSelection();
    EXPECT_EQ(markTextures(map, {"stone"}), 1);
    EXPECT_TRUE(isSelected(open));
    host.pickingFaces = true;
    EXPECT_EQ(markTextures(map, {"STONE", nullptr, MATCH_PART, false, false, 0.5f}), 5);
    EXPECT_TRUE(isStep("Modify Texture Scale"));
    EXPECT_EQ(countOf(selectedFacesOf(map.data)), 5);
    EXPECT_EQ(open->facesTail->tex.uScale, 1);
    map.history->undo();
    EXPECT_EQ(open->facesTail->tex.uScale, 2);
}

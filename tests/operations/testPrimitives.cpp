// SPDX-License-Identifier: MIT
#include "operations/tPrimitives.h"

#include "operations/tDefaultRoom.h"
#include "support/tMapTest.h"

#include <array>
#include <cmath>

// World units: what rounding to whole numbers moves a point, and what float leaves of it.
static constexpr float ROUNDING = 0.5f;
static constexpr float TOLERANCE = 0.01f;
static constexpr float CHORD = 0.26f; // of its box, that a ring of three or more sides leaves free

struct cOrientation {
    int axes[3];
    bool bit0;
};

static const cOrientation g_orientations[] = {
    {{0, 1, 2}, true}, {{1, 2, 0}, true}, {{0, 2, 1}, false}};

class Primitives : public cMapTest {
protected:
    cPrimitiveParams params(const float* mins, const float* maxs, const cOrientation& orientation,
                            int sides, bool snap, bool stretch = true) {
        cPrimitiveParams result = {};
        result.map = &map.data;
        qstrncpy(result.face.name, "wall", sizeof result.face.name);
        result.face.uScale = result.face.vScale = 1;
        result.sides = sides;
        result.flags = (orientation.bit0 ? 1u : 0u) | (snap ? 2u : 0u) | (stretch ? 4u : 0u);
        for (int i = 0; i < 3; ++i) {
            result.axes[i] = orientation.axes[i];
            result.mins[i] = mins[i];
            result.maxs[i] = maxs[i];
        }
        return result;
    }

    std::vector<const cBrushData*> brushes() const {
        std::vector<const cBrushData*> list;
        for (const cBrushData* brush : brushesOf(map.world()))
            list.push_back(brush);
        return list;
    }
};

using cVector = std::array<float, 3>;

// The mean of all corners, which lies inside any convex solid.
static cVector middleOf(const cBrushData* brush) {
    cVector sum = {0, 0, 0};
    float count = 0;
    for (const cFaceData* face : facesOf(brush)) {
        for (int i = 0; i < face->vertexCount; ++i, ++count)
            vecAdd(sum.data(), face->vertices[i].xyz, sum.data());
    }
    vecScale(sum.data(), 1 / count, sum.data());
    return sum;
}

static QString checkSolid(const cBrushData* brush, const float* mins, const float* maxs,
                          float margin) {
    QString error;
    if (!checkBrush(brush, false, &error))
        return error;
    for (int i = 0; i < 3; ++i) {
        if (brush->mins[i] < mins[i] - margin || brush->maxs[i] > maxs[i] + margin)
            return QStringLiteral("leaves its box on axis %1").arg(i);
    }
    const cVector middle = middleOf(brush);
    for (const cFaceData* face : facesOf(brush)) {
        if (vecDot(face->normal, middle.data()) - face->dist >= 0)
            return QStringLiteral("a face looks inward");
    }
    return isClosed(brush, 0.02f) ? QString() : QStringLiteral("an edge is open");
}

TEST_F(Primitives, everyOneIsAClosedConvexSolidInItsBox) {
    struct {
        const char* step;
        bool (*create)(const cPrimitiveParams&);
        bool hasSides;
        int extraFaces; // beside one for each side, or in all
    } static const primitives[] = {{"Create Block", createBlock, false, 6},
                                   {"Create Wedge", createWedge, false, 5},
                                   {"Create Cylinder", createCylinder, true, 2},
                                   {"Create Spike", createSpike, true, 1}};
    static const float boxes[][6] = {{-64, -128, 0, 192, 128, 96},
                                     {100.25f, -33.5f, 7.75f, 371.5f, 240.25f, 520.25f},
                                     {-512, -32, -32, 512, 32, 32}};
    struct cCase {
        int orientation;
        int sides;
        bool snap;
    };
    std::vector<cCase> cases;
    for (int orientation : {0, 1, 2}) {
        for (int sides = 3; sides <= 128; ++sides) {
            cases.push_back({orientation, sides, false});
            cases.push_back({orientation, sides, true});
        }
    }
    for (const auto& primitive : primitives) {
        for (const float* box : boxes) {
            for (const cCase& c : cases) {
                if (!primitive.hasSides && c.sides > 3)
                    continue;
                SCOPED_TRACE(testing::Message() << primitive.step << " sides " << c.sides
                                                << " snap " << c.snap << " way " << c.orientation);
                const cPrimitiveParams p =
                    params(box, box + 3, g_orientations[c.orientation], c.sides, c.snap);
                const auto create = [&] { EXPECT_TRUE(primitive.create(p)); };
                const bool isLawChecked = c.sides < 9; // which takes its time
                if (isLawChecked)
                    ASSERT_EQ(checkLaw(map, create, false), QString());
                else
                    create();
                EXPECT_STREQ(map.history->undoName(), primitive.step);
                ASSERT_EQ(brushes().size(), 1u);
                const cBrushData* brush = brushes().front();
                EXPECT_TRUE(isSelected(brush));
                const float margin = c.snap ? ROUNDING + TOLERANCE : TOLERANCE;
                EXPECT_EQ(checkSolid(brush, box, box + 3, margin), QString());
                const int faces = primitive.extraFaces + (primitive.hasSides ? c.sides : 0);
                const bool isLong = box[3] - box[0] > 1000;
                if (c.sides <= (c.snap || isLong ? 8 : 31)) { // finer rings may lose corners
                    EXPECT_EQ(countOf(facesOf(brush)), faces);
                }
                EXPECT_NEAR(brush->maxs[g_orientations[c.orientation].axes[2]],
                            box[3 + g_orientations[c.orientation].axes[2]], margin);
                for (int i = 0; i < 3; ++i) {
                    EXPECT_LT(brush->mins[i], box[i] + margin + CHORD * (box[3 + i] - box[i]));
                    EXPECT_GT(brush->maxs[i], box[3 + i] - margin - CHORD * (box[3 + i] - box[i]));
                }
                map.history->undo();
                if (isLawChecked)
                    map.history->undo(); // its marker
                ASSERT_TRUE(brushes().empty());
            }
        }
    }
}

TEST_F(Primitives, fineRingsInSmallBoxesKeepTheCornersThatTurn) {
    const float mins[3] = {0, 0, 0}, maxs[3] = {7, 5, 16}, sliver[3] = {0.25f, 5, 16};
    EXPECT_TRUE(createCylinder(params(mins, maxs, g_orientations[0], 128, true)));
    ASSERT_EQ(brushes().size(), 1u);
    EXPECT_EQ(checkSolid(brushes().front(), mins, maxs, ROUNDING), QString());
    // Nothing is left of a ring that rounding has put on a line.
    EXPECT_FALSE(createSpike(params(mins, sliver, g_orientations[0], 16, true)));
    EXPECT_FALSE(createCylinder(params(mins, maxs, g_orientations[0], 2, false)));
    EXPECT_EQ(brushes().size(), 1u);
}

TEST_F(Primitives, archesOfEveryKindAreRowsOfSolids) {
    struct {
        cArchShape shape;
        size_t brushCount;
        int faces; // of each
        bool atAllWidths;
    } const arches[] = {
        {{32, 8, 180, 0, 0, true, false}, 8, 6, true},
        {{32, 24, 360, 0, 0, true, false}, 24, 6, true},
        {{16, 3, 90, 45, 0, false, false}, 3, 6, true},
        {{32, 12, 270, 30, 16, true, false}, 12, 6, true}, // a stair
        {{32, 12, 270, 30, 16, true, true}, 24, 5, true},  // a ramp
        {{96, 8, 360, 0, 0, true, false}, 8, 5, false},    // no inner wall
        {{96, 8, 180, 0, 24, true, true}, 8, 5, false},
        {{300, 8, 360, 0, 0, true, false}, 8, 5, false}, // a wall is no wider than its radius
    };
    const float mins[3] = {-96, -96, -96}, maxs[3] = {96, 96, 96};
    for (const auto& arch : arches) {
        for (const cOrientation& orientation : g_orientations) {
            for (int mode = 0; mode < 4; ++mode) {
                const bool snap = mode & 1, wide = (mode & 2) && arch.atAllWidths;
                float high[3] = {maxs[0], maxs[1], maxs[2]};
                high[orientation.axes[0]] += wide ? 128.0f : 0.0f;
                const cPrimitiveParams p = params(mins, high, orientation, 0, snap);
                SCOPED_TRACE(testing::Message() << arch.shape.sides << " sides, height "
                                                << arch.shape.height << " mode " << mode);
                law([&] { EXPECT_TRUE(createArch(p, arch.shape)); });
                EXPECT_TRUE(isStep("Create Arch"));
                EXPECT_EQ(brushes().size(), arch.brushCount);
                high[orientation.axes[2]] += float(arch.shape.height * arch.shape.sides);
                for (const cBrushData* brush : brushes()) {
                    EXPECT_EQ(checkSolid(brush, mins, high, ROUNDING + TOLERANCE), QString());
                    EXPECT_EQ(countOf(facesOf(brush)), arch.faces);
                    EXPECT_EQ(brush->group != nullptr, arch.shape.group);
                }
                EXPECT_EQ(map.data.selectedGroups != nullptr, arch.shape.group);
                map.history->undo();
                map.history->undo();
                EXPECT_TRUE(brushes().empty());
                EXPECT_EQ(map.data.groups, nullptr);
            }
        }
    }
}

static float volumeOf(const cBrushData* brush) {
    double sum = 0;
    const cVector middle = middleOf(brush);
    for (const cFaceData* face : facesOf(brush)) {
        cVector from[3];
        for (int i = 2; i < face->vertexCount; ++i) {
            vecSubtract(face->vertices[0].xyz, middle.data(), from[0].data());
            vecSubtract(face->vertices[i - 1].xyz, middle.data(), from[1].data());
            vecSubtract(face->vertices[i].xyz, middle.data(), from[2].data());
            float across[3];
            vecCross(from[1].data(), from[2].data(), across);
            sum += double(std::fabs(vecDot(from[0].data(), across))) / 6;
        }
    }
    return float(sum);
}

// The area between the two walls on the base, by the corners that the arch should have.
static double areaOf(const cPrimitiveParams& p, const cArchShape& shape) {
    const int a = p.axes[0], b = p.axes[1];
    double half[2] = {(double(p.maxs[a]) - double(p.mins[a])) / 2,
                      (double(p.maxs[b]) - double(p.mins[b])) / 2};
    const double middle[2] = {double(p.mins[a]) + half[0], double(p.mins[b]) + half[1]};
    if (!(p.flags & 4u))
        half[0] = half[1] = std::min(half[0], half[1]);
    const auto corner = [&](int i, double in, double* out) {
        const double angle = (shape.start + double(shape.arc) * i / shape.sides) * M_PI / 180;
        out[0] = middle[0] + (half[0] - in) * std::sin(angle);
        out[1] = middle[1] + (half[1] - in) * std::cos(angle);
        for (int k = 0; k < 2; ++k)
            out[k] = p.flags & 2u ? std::floor(out[k] + 0.5) : out[k];
    };
    double sum = 0;
    for (int i = 0; i < shape.sides; ++i) {
        double corners[4][2];
        corner(i, 0, corners[0]);
        corner(i + 1, 0, corners[1]);
        corner(i + 1, shape.width, corners[2]);
        corner(i, shape.width, corners[3]);
        for (int k = 0; k < 4; ++k) {
            const double* from = corners[k];
            const double* to = corners[(k + 1) % 4];
            sum += (to[0] * from[1] - to[1] * from[0]) / 2;
        }
    }
    return sum;
}

static std::vector<cArchShape> shapesIn(int extent) {
    std::vector<cArchShape> shapes;
    for (const int width : {2, extent / 2 - 3, extent / 2})
        for (const int sides : {4, 7, 31, 100})
            for (const int arc : {45, 181, 360})
                for (const int start : {0, 33})
                    for (const int height : {0, 8})
                        shapes.push_back({width, sides, arc, start, height, true, height > 0});
    return shapes;
}

// Neither holes nor overlaps, whatever rounding, the ellipse and a tight inner wall do.
TEST_F(Primitives, archesFillTheirRing) {
    static const float boxes[][6] = {{-96, -96, -96, 96, 96, 96},
                                     {0.25f, 0.25f, 0.25f, 65.25f, 65.25f, 65.25f},
                                     {-8, 0.25f, 0, 56, 129.25f, 200},
                                     {100.25f, -33.5f, 7.75f, 371.5f, 240.25f, 520.25f}};
    for (int i = 0; i < 4 * 3 * 4; ++i) {
        const float* box = boxes[i % 4];
        const int mode = i / 12;
        const cPrimitiveParams p =
            params(box, box + 3, g_orientations[i / 4 % 3], 0, mode & 1, mode & 2);
        const int a = p.axes[0], b = p.axes[1], c = p.axes[2];
        for (const cArchShape& shape :
             shapesIn(int(std::min(p.maxs[a] - p.mins[a], p.maxs[b] - p.mins[b])))) {
            SCOPED_TRACE(testing::Message()
                         << "box " << i % 4 << " axis " << c << " mode " << mode << " width "
                         << shape.width << " sides " << shape.sides << " arc " << shape.arc
                         << " start " << shape.start << " height " << shape.height);
            ASSERT_TRUE(createArch(p, shape));
            float high[3] = {p.maxs[0], p.maxs[1], p.maxs[2]};
            high[c] += float(shape.height * shape.sides);
            double volume = 0;
            for (const cBrushData* brush : brushes()) {
                volume += double(volumeOf(brush));
                ASSERT_EQ(checkSolid(brush, p.mins, high, ROUNDING + TOLERANCE), QString());
            }
            const double wanted = areaOf(p, shape);
            ASSERT_NEAR(volume / double(p.maxs[c] - p.mins[c]), wanted, 0.02 * wanted + 0.5);
            map.history->undo();
            ASSERT_TRUE(brushes().empty());
        }
    }
}

TEST_F(Primitives, archKeepsItsWallAndItsStart) {
    const float mins[3] = {0, 0, 0}, maxs[3] = {256, 128, 32};
    // Circular without stretching: the smaller half extent is the radius.
    cArchShape quarter{32, 4, 90, 0, 0, true, false};
    ASSERT_TRUE(createArch(params(mins, maxs, g_orientations[0], 0, false, false), quarter));
    float low[3] = {9999, 9999, 9999}, high[3] = {-9999, -9999, -9999};
    for (const cBrushData* brush : brushes())
        T_AddBoxToBounds(brush->mins, brush->maxs, low, high);
    // It starts on the second axis and grows towards the first.
    EXPECT_NEAR(low[0], 128, TOLERANCE);
    EXPECT_NEAR(high[0], 192, TOLERANCE);
    EXPECT_NEAR(low[1], 64, TOLERANCE);
    EXPECT_NEAR(high[1], 128, TOLERANCE);
    map.history->undo();
    ASSERT_TRUE(createArch(params(mins, maxs, g_orientations[0], 0, false, true), quarter));
    EXPECT_NEAR(brushes().back()->maxs[0], 256, TOLERANCE);
}

// ---- The default room and single entities

// Whether a ray from a point leaves the brushes of the world without meeting one.
static bool escapes(const cMap& map, const float* from, const float* direction) {
    for (const cBrushData* brush : brushesOf(map.world())) {
        float enter = 0, leave = 100000;
        for (const cFaceData* face : facesOf(brush)) {
            const float toward = vecDot(face->normal, direction);
            const float above = vecDot(face->normal, from) - face->dist;
            if (toward < 0)
                enter = std::max(enter, -above / toward);
            else if (toward > 0)
                leave = std::min(leave, -above / toward);
            else if (above > 0)
                leave = -1;
        }
        if (enter <= leave)
            return false;
    }
    return true;
}

TEST_F(Primitives, defaultRoomIsSealedAndFurnished) {
    cEntityClass* start = host.addClass(QStringLiteral("info_player_start"), CK_POINT);
    start->mins[2] = -36;
    host.addClass(QStringLiteral("light"), CK_POINT)->offset[2] = 5;
    qstrncpy(host.mapProfile.startEntityClass, "info_player_start", 64);
    qstrncpy(host.mapProfile.roomEntityClass, "light", 64);
    cRoomShape shape;
    shape.x = 256;
    shape.z = 128;
    shape.wall = "brick";
    shape.floor = "tiles";
    ASSERT_TRUE(createDefaultRoom(map, shape));
    EXPECT_FALSE(map.history->canUndo());
    ASSERT_EQ(brushes().size(), 6u);
    EXPECT_EQ(checkMapWhole(map), QString());
    // From the middle to every unit of the walls, and to the edges where two of them meet.
    const float middle[3] = {0, 0, 64};
    for (float x = -128; x <= 128; ++x) {
        for (float y = -256; y <= 256; ++y) {
            for (float z = -64; z <= 64; ++z) {
                const bool atWall =
                    std::fabs(x) == 128 || std::fabs(y) == 256 || std::fabs(z) == 64;
                const float direction[3] = {x, y, z};
                ASSERT_TRUE(!atWall || !escapes(map, middle, direction))
                    << x << ' ' << y << ' ' << z;
            }
        }
    }
    for (const cBrushData* brush : brushes())
        EXPECT_FALSE(brushTouchesBox(brush, middle, middle));
    const float outside[6] = {-160, -288, -32, 160, 288, 160};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(world->mins[i], outside[i]);
        EXPECT_EQ(world->maxs[i], outside[i + 3]);
    }
    int walls = 0, floors = 0;
    for (const cBrushData* brush : brushes()) {
        walls += strcmp(brush->faces->tex.name, "brick") == 0 ? 1 : 0;
        floors += strcmp(brush->faces->tex.name, "tiles") == 0 && brush->maxs[2] == 0 ? 1 : 0;
    }
    EXPECT_EQ(walls, 4);
    EXPECT_EQ(floors, 1);
    const cEntityData* player = map.world()->next;
    EXPECT_STREQ(player->classname, "info_player_start");
    EXPECT_EQ(player->origin[0], -96);
    EXPECT_EQ(player->origin[2], 37); // the feet a unit above the floor
    const cEntityData* light = player->next;
    EXPECT_NEAR(light->origin[2], 0.8f * 128 + 5, TOLERANCE);
    EXPECT_STREQ(getEpairValue(light, "light"), "400");
}

TEST_F(Primitives, entityStandsOffThePointWithItsDefaultsAndYaw) {
    cEntityClass* lamp = host.addClass(QStringLiteral("item_lamp"), CK_POINT);
    lamp->offset[2] = 16;
    lamp->variables = {{VT_STRING, QStringLiteral("style"), {}, {}, QStringLiteral("3"), {}}};
    const float point[3] = {10, 20, 30};
    law([&] { createEntity(map, lamp, point, true); }, false);
    const cEntityData* entity = map.data.entitiesTail;
    EXPECT_EQ(entity->origin[2], 46);
    EXPECT_STREQ(getEpairValue(entity, "style"), "3");
    EXPECT_TRUE(entity->angles[1] >= 0 && entity->angles[1] < 360);
    EXPECT_NE(getEpair(entity, "angles"), nullptr);
    EXPECT_TRUE(isSelected(entity));
    EXPECT_EQ(printed("New entity: item_lamp"), 1);
    EXPECT_EQ(createEntity(map, nullptr, point, false), nullptr);
}

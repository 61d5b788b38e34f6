// SPDX-License-Identifier: MIT
// A small map for random walks, another one by each seed.
#pragma once

#include "document/tEntity.h"
#include "document/tMapLists.h"
#include "support/tMapTools.h"
#include "support/tTestHost.h"

#include <random>

// Boxes in the world and in doors, and lights.
class cWalkedBoxes {
public:
    explicit cWalkedBoxes(unsigned seed) : m_random(seed) {
        host.mapProfile.detailContentMask = 0x8000000;
        host.addTexture("wall", 64, 128);
        host.addClass(QStringLiteral("func_door"), CK_SOLID);
        host.addClass(QStringLiteral("light"), CK_POINT);
        build();
    }

    cTestHost host;
    cMap map{host};

private:
    int number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(m_random); }
    float coordinate() { return float(number(-40, 40) * 16); }

    void build() {
        cEntityData* world = addWorldTo(map);
        for (int i = 0; i < 14; ++i)
            addBoxIn(world);
        for (int i = 0; i < 2; ++i) {
            const float origin[3] = {0, 0, 0};
            cEntityData* door = map.addEntity("func_door", origin, 0);
            addBoxIn(door);
            addBoxIn(door);
        }
        for (int i = 0; i < 5; ++i) {
            const float origin[3] = {coordinate(), coordinate(), coordinate()};
            cEntityData* light = map.addEntity("light", origin, EF_POINT);
            resetEntityFromClass(light);
            addEpairLast(light, i % 2 ? "angle" : "angles", "0");
            updateEntity(light, UM_RENDER_KEYS | UM_ATTACH);
        }
        map.buildCullTree();
    }

    void addBoxIn(cEntityData* owner) {
        float mins[3], maxs[3];
        for (int i = 0; i < 3; ++i) {
            mins[i] = coordinate();
            maxs[i] = mins[i] + float(number(2, 12) * 16);
        }
        addBox(map, owner, mins, maxs);
    }

    std::mt19937 m_random;
};

// SPDX-License-Identifier: MIT
// The fixture of tests on a map: a host, a map with its world, short ways to put objects in and
// to select them, and the law of undo and redo.
#pragma once

#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tFace.h"
#include "document/tGroup.h"
#include "document/tHistory.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "support/tLaw.h"
#include "support/tMapTools.h"
#include "support/tMath.h"
#include "support/tTestHost.h"
#include "support/tVec.h"

#include <gtest/gtest.h>

class cMapTest : public testing::Test {
protected:
    // A cube with its lowest corner there.
    cBrushData* cubeAt(float x, float y = 0, float z = 0, float size = 64,
                       cEntityData* owner = nullptr) {
        const float mins[3] = {x, y, z}, maxs[3] = {x + size, y + size, z + size};
        return addBox(map, owner ? owner : world, mins, maxs);
    }
    cBrushData* cubeIn(cEntityData* owner, float x) { return cubeAt(x, 0, 0, 64, owner); }
    cBrushData* cubeOf(cGroupData* group, float x) {
        cBrushData* brush = cubeAt(x);
        map.joinGroupBrush(brush, group);
        return brush;
    }

    cEntityData* pointAt(float x, float y = 0, float z = 0, const char* classname = "light") {
        const float origin[3] = {x, y, z};
        cEntityData* entity = map.addEntity(classname, origin, EF_POINT);
        updateEntity(entity, UM_REEVALUATE);
        return entity;
    }
    cEntityData* addDoor() {
        const float origin[3] = {10, 20, 30};
        return map.addEntity("func_door", origin, 0);
    }

    void select(std::initializer_list<cBrushData*> brushes) {
        for (cBrushData* brush : brushes) {
            if (!isSelected(brush))
                selectedPush(map.data.selectedBrushes, brush);
        }
    }

    // Undo, redo and the map's invariants; see tLaw.h.
    void law(const std::function<void()>& operation, bool selectionComesBack = true) {
        EXPECT_EQ(checkLaw(map, operation, selectionComesBack).toStdString(), "");
    }
    bool isWhole() const {
        const QString problem = checkMapWhole(map);
        EXPECT_EQ(problem.toStdString(), "");
        return problem.isEmpty();
    }
    bool isStep(const char* name) const { return strcmp(map.history->undoName(), name) == 0; }
    QString sentence() const { return host.panes.at(2); }
    int printed(const char* text) const {
        return host.count(eMessage::Print, QString::fromLatin1(text));
    }
    int failed(const char* text) const {
        return host.count(eMessage::Error, QString::fromLatin1(text));
    }

    cTestHost host;
    cMap map{host};
    cEntityData* world = addWorldTo(map);
};

// Of a list of records, as brushesOf and its like give it.
template<class Range> int countOf(const Range& range) {
    int count = 0;
    for ([[maybe_unused]] const auto* item : range)
        ++count;
    return count;
}

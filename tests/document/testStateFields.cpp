// SPDX-License-Identifier: MIT
// The tables of fields: a state that goes through bytes is the same, and no field lacks its row.
#include "document/tBrush.h"
#include "document/tGroup.h"
#include "document/tStateFields.h"
#include "document/tVisGroup.h"
#include "support/tMapState.h"
#include "support/tMapTest.h"

namespace {
struct cBytes {
    QByteArray data;
    bool reading = false;
    int place = 0;

    bool bytes(void* field, size_t size) {
        if (!reading)
            data.append(static_cast<const char*>(field), int(size));
        else if (place + int(size) <= data.size())
            memcpy(field, data.constData() + place, size);
        else
            return false;
        place += int(size);
        return true;
    }
    bool numbers(float* fields, size_t count, float) {
        return bytes(fields, count * sizeof(float));
    }
    bool count(uint32_t& points) { return bytes(&points, sizeof points); }
    bool text(QByteArray& field) {
        int length = field.isNull() ? -1 : field.size();
        if (!bytes(&length, sizeof length))
            return false;
        if (reading)
            field = length < 0 ? QByteArray() : QByteArray(length, 0);
        return length <= 0 || bytes(field.data(), size_t(length));
    }
};

// Through bytes into states that hold nothing but the lists.
template<class State, class Lists> void throughBytes(std::vector<State>& states, Lists lists) {
    for (State& state : states) {
        cBytes stream;
        ASSERT_TRUE(walkAllFields(state, ALL_FIELDS, stream));
        State read = {};
        lists(state, read);
        stream.reading = true;
        stream.place = 0;
        ASSERT_TRUE(walkAllFields(read, ALL_FIELDS, stream));
        ASSERT_EQ(stream.place, stream.data.size());
        state = read;
    }
}
} // namespace

class StateFields : public cMapTest {};

TEST_F(StateFields, aStateComesBackFromItsBytes) {
    cGroupData* outer = map.addGroup();
    cGroupData* inner = map.addGroup();
    map.joinGroupGroup(inner, outer);
    cubeOf(inner, 0)->reserved = 7;
    cEntityData* door = addDoor();
    cubeIn(door, 100)->brush->addToVisGroup(map.createVisGroup("roof"));
    cEntityData* light = pointAt(1.5f, -2.25f, 1e-7f);
    addEpairLast(light, "angles", "10 20 30");
    addEpairLast(light, "rendercolor", "1 2 3");
    addEpairLast(light, "empty", "");
    updateEntity(light, UM_REEVALUATE);
    light->spawnFlags = 0x80000001u;
    light->skin = 3;
    map.joinGroupEntity(light, outer);
    const cMapState before = stateOf(map);
    cMapState after = stateOf(map);
    throughBytes(after.objects.groups, [](const cGroupState&, cGroupState&) {});
    throughBytes(after.objects.entities, [](const cEntityState& from, cEntityState& to) {
        to.pairs = from.pairs;
        to.brushes = from.brushes;
        to.visGroups = from.visGroups;
    });
    throughBytes(after.objects.brushes, [](const cBrushState& from, cBrushState& to) {
        to.faces = from.faces;
        to.visGroups = from.visGroups;
    });
    throughBytes(after.objects.faces, [](const cFaceState& from, cFaceState& to) {
        to.points.first = from.points.first;
    });
    EXPECT_EQ(firstDifference(before, after).toStdString(), "");
}

// A field without a row makes the state larger than its rows and lists.
TEST_F(StateFields, everyFieldHasItsRow) {
    const auto sizeOfRows = [](const auto& state) {
        size_t sum = 0;
        for (const cStateField& field : fieldsOf(state))
            sum += field.size;
        return sum;
    };
    const auto padded = [](size_t size, size_t to) { return (size + to - 1) / to * to; };
    constexpr size_t range = sizeof(cStateRange);
    EXPECT_EQ(sizeOfRows(cGroupState()), sizeof(cGroupState));
    EXPECT_EQ(sizeOfRows(cFaceState()) + sizeof(cStateRange::first), sizeof(cFaceState));
    EXPECT_EQ(padded(sizeOfRows(cBrushState()), 4) + 2 * range, sizeof(cBrushState));
    const size_t entity = sizeOfRows(cEntityState()) + sizeof(cEntityState::pairs) + 2 * range;
    EXPECT_EQ(padded(entity, alignof(cEntityState)), sizeof(cEntityState));
    const cStateFields head = fieldsOf(cEntityState());
    EXPECT_STREQ(head.first[ENTITY_HEAD - 1].name, "color");
}

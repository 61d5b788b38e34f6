// SPDX-License-Identifier: MIT
#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tMapLists.h"
#include "document/tProjectFile.h"
#include "document/tVisGroup.h"
#include "support/tMapTools.h"
#include "support/tTestHost.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

class ProjectFile : public testing::Test {
protected:
    void SetUp() override {
        T_RandomSeed(1234);
        fill(map);
    }

    // Every kind of object, nested groups, visgroups, selection, a cordon.
    void fill(cMap& target) {
        cEntityData* world = addWorldTo(target);
        addEpairLast(world, "message", "Caf\xe9 \\ \"x\"");
        cGroupData* outer = target.addGroup();
        cGroupData* inner = target.addGroup();
        target.joinGroupGroup(inner, outer);
        cVisGroup* roof = target.createVisGroup("roof");
        target.createVisGroup("");
        for (int i = 0; i < 6; ++i) {
            const float mins[3] = {float(i) * 40, 0.3f, -8};
            const float maxs[3] = {float(i) * 40 + 33.37f, 64, 8};
            cBrushData* brush = addBox(target, world, mins, maxs, i % 2 ? "wall" : "{grate");
            brush->reserved = uint32_t(i) * 7;
            if (i < 2)
                target.joinGroupBrush(brush, inner);
            if (i == 3)
                brush->brush->addToVisGroup(roof);
        }
        const float origin[3] = {1.5f, -2.25f, 1e-7f};
        cEntityData* light = target.addEntity("light", origin, EF_POINT);
        addEpairLast(light, "light", "");
        light->spawnFlags = 0x80000001u;
        updateEntity(light, UM_ATTACH);
        target.joinGroupEntity(light, outer);
        light->entity->addToVisGroup(roof);
        cEntityData* door = target.addEntity("func_door", origin, 0);
        const float mins[3] = {0, 0, 100}, maxs[3] = {10, 20, 130};
        addBox(target, door, mins, maxs);
        selectedPush(target.data.selectedBrushes, world->brushes->next);
        selectedPush(target.data.selectedFaces, world->brushes->faces);
        target.data.cordonMaxs[1] = 77;
        target.finishLoad();
    }

    QString path(const char* name) const { return folder.filePath(QString::fromLatin1(name)); }

    QByteArray savedBytes(cMap& source, const char* name = "map.kvx") {
        EXPECT_TRUE(cProjectFile(source, path(name)).save());
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    QTemporaryDir folder;
    cTestHost host;
    cMap map{nullptr};
};

TEST_F(ProjectFile, loadGivesBackWhatWasSaved) {
    map.clearFaces();
    const QStringList before = dumpMap(map);
    savedBytes(map);
    EXPECT_EQ(checkMapInvariants(map), QString());
    cMap loaded(nullptr);
    ASSERT_TRUE(cProjectFile(loaded, path("map.kvx")).load());
    loaded.finishLoad();
    EXPECT_EQ(checkMapInvariants(loaded), QString());
    const QStringList after = dumpMap(loaded);
    ASSERT_EQ(after.size(), before.size());
    for (int i = 0; i < after.size(); ++i)
        EXPECT_EQ(after[i].toStdString(), before[i].toStdString());
    EXPECT_EQ(loaded.lastGroupId, map.lastGroupId);
    EXPECT_EQ(host.count(eMessage::Print, QStringLiteral("Saving: \"")), 1);
}

TEST_F(ProjectFile, secondSaveHasTheSameBytesButForTiedFaces) {
    map.clearFaces();
    for (int i = 0; i < 5; ++i)
        map.joinGroupBrush(map.world()->brushesTail, map.addGroup());
    const QByteArray first = savedBytes(map);
    cMap second(nullptr), third(nullptr);
    ASSERT_TRUE(cProjectFile(second, QString()).loadBytes(first));
    const QByteArray again = savedBytes(second, "2.kvx");
    EXPECT_EQ(again.size(), first.size());
    ASSERT_TRUE(cProjectFile(third, QString()).loadBytes(again));
    // Ties turn at each load, so the second turn gives the first order back.
    EXPECT_EQ(savedBytes(third, "3.kvx"), savedBytes(map, "4.kvx"));
}

TEST_F(ProjectFile, selectedBrushComesBackSelectedAFaceDoesNot) {
    cMap loaded(nullptr);
    ASSERT_TRUE(cProjectFile(loaded, QString()).loadBytes(savedBytes(map)));
    ASSERT_NE(loaded.data.selectedBrushes, nullptr);
    EXPECT_EQ(loaded.data.selectedBrushes, loaded.world()->brushes->next);
    EXPECT_EQ(loaded.data.selectedFaces, nullptr);
}

TEST_F(ProjectFile, emptyGroupsAreLeftOutWithAMessage) {
    map.addGroup();
    const QByteArray bytes = savedBytes(map);
    EXPECT_EQ(host.count(eMessage::Print, QStringLiteral("1 empty group(s) ignored")), 1);
    cMap loaded(nullptr);
    ASSERT_TRUE(cProjectFile(loaded, QString()).loadBytes(bytes));
    int groups = 0;
    for ([[maybe_unused]] const cGroupData* group : groupsOf(loaded.data))
        ++groups;
    EXPECT_EQ(groups, 2);
}

TEST_F(ProjectFile, olderFileLacksTheReservedWord) {
    // The same file by hand: one world with one brush without faces.
    QByteArray bytes("KVXP");
    const auto put = [&bytes](int32_t value) {
        bytes.append(reinterpret_cast<const char*>(&value), 4);
    };
    put(111);
    for (int i = 0; i < 2 + 6 + 2; ++i)
        put(0);
    put(10);
    bytes.append("worldspawn");
    for (int i = 0; i < 3; ++i)
        put(0);
    put(EF_WORLD);
    for (int i = 0; i < 3; ++i)
        put(0);
    put(-1);
    for (int i = 0; i < 1 + 3 + 4 + 4 + 2; ++i)
        put(0);
    put(1);
    for (int i = 0; i < 6; ++i)
        put(0);
    cMap loaded(nullptr);
    ASSERT_TRUE(cProjectFile(loaded, QString()).loadBytes(bytes));
    ASSERT_NE(loaded.world()->brushes, nullptr);
    EXPECT_EQ(loaded.world()->brushes->reserved, 0u);
    EXPECT_EQ(checkMapInvariants(loaded), QString());
    const QByteArray saved = savedBytes(loaded);
    EXPECT_EQ(saved[4], 112);
    EXPECT_EQ(saved.size(), bytes.size() + 4);
}

TEST_F(ProjectFile, wrongHeadIsRefusedWithItsMessage) {
    QByteArray bytes = savedBytes(map);
    QByteArray wrong = bytes;
    wrong[0] = 'X';
    cMap loaded(nullptr);
    EXPECT_FALSE(cProjectFile(loaded, QString()).loadBytes(wrong));
    EXPECT_EQ(host.count(eMessage::Error, QStringLiteral("bad file header")), 1);
    wrong = bytes;
    wrong[4] = 110;
    EXPECT_FALSE(cProjectFile(loaded, QString()).loadBytes(wrong));
    EXPECT_EQ(host.count(eMessage::Error,
                         QStringLiteral("bad file version (110 should be 111 or higher)")),
              1);
    EXPECT_FALSE(cProjectFile(loaded, path("missing.kvx")).load());
    EXPECT_EQ(host.count(eMessage::Error, QStringLiteral("can't read \"")), 1);
    EXPECT_FALSE(cProjectFile(map, path("no/such/folder.kvx")).save());
    EXPECT_EQ(host.count(eMessage::Error, QStringLiteral("can't write \"")), 1);
}

TEST_F(ProjectFile, fileWithoutEntitiesGetsAWorld) {
    cMap empty(nullptr), loaded(nullptr);
    ASSERT_TRUE(cProjectFile(loaded, QString()).loadBytes(savedBytes(empty)));
    ASSERT_NE(loaded.world(), nullptr);
    EXPECT_STREQ(loaded.world()->classname, "worldspawn");
}

TEST_F(ProjectFile, cutAnywhereItLoadsWhatThereWas) {
    const QByteArray bytes = savedBytes(map);
    int loads = 0;
    for (int size = 0; size < bytes.size(); size += 1 + size / 97) {
        cMap loaded(nullptr);
        // What fails is thrown away; that must not fall over either.
        if (!cProjectFile(loaded, QString()).loadBytes(bytes.left(size)))
            continue;
        loaded.finishLoad();
        ++loads;
        ASSERT_EQ(checkMapInvariants(loaded).toStdString(), "") << "cut at " << size;
    }
    EXPECT_GT(loads, 10);
}

TEST_F(ProjectFile, cutInsideALongListKeepsWhatStandsBeforeTheCut) {
    cMap source(nullptr);
    cEntityData* world = addWorldTo(source);
    const float mins[3] = {0, 0, 0}, maxs[3] = {8, 8, 8};
    for (int i = 0; i < 200; ++i)
        addBox(source, world, mins, maxs);
    const QByteArray bytes = savedBytes(source);
    const int headSize = bytes.indexOf("worldspawn") + 110;
    const int brushSize = (bytes.size() - headSize) / 200;
    cMap loaded(nullptr);
    ASSERT_TRUE(cProjectFile(loaded, QString()).loadBytes(bytes.left(headSize + brushSize * 2)));
    int brushes = 0;
    for (const cBrushData* brush : brushesOf(loaded.world())) {
        EXPECT_EQ(brush->maxs[0], 8);
        ++brushes;
    }
    EXPECT_GE(brushes, 1);
    EXPECT_LE(brushes, 2);
    EXPECT_EQ(loaded.world()->maxs[2], 8) << "bounds of what is left";
    EXPECT_EQ(checkMapInvariants(loaded), QString());
}

TEST_F(ProjectFile, flippedBytesLeaveAConsistentMap) {
    const QByteArray bytes = savedBytes(map);
    const unsigned seed = 424242;
    T_RandomSeed(seed);
    for (int i = 0; i < 3000; ++i) {
        QByteArray broken = bytes;
        for (int flips = T_RandomLong(1, 4); flips > 0; --flips)
            broken[T_RandomLong(0, broken.size() - 1)] = char(T_RandomLong(0, 255));
        cMap loaded(nullptr);
        if (!cProjectFile(loaded, QString()).loadBytes(broken))
            continue;
        loaded.finishLoad();
        ASSERT_EQ(checkMapInvariants(loaded).toStdString(), "")
            << "seed " << seed << " round " << i;
    }
}

TEST_F(ProjectFile, countsPastTheEndTakeNoMemory) {
    QByteArray bytes = savedBytes(map);
    const int32_t huge = 0x7fffffff;
    memcpy(bytes.data() + 8, &huge, 4);
    cMap loaded(nullptr);
    EXPECT_FALSE(cProjectFile(loaded, QString()).loadBytes(bytes));
}

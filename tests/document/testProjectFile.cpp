// SPDX-License-Identifier: MIT
#include "document/tProjectFile.h"
#include "support/tFileSizeLimit.h"
#include "support/tFiles.h"
#include "support/tMapTest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cmath>
#include <sys/stat.h>

class ProjectFile : public cMapTest {
protected:
    // Every kind of object, nested groups, visgroups, selection, a cordon.
    void SetUp() override {
        T_RandomSeed(1234);
        addEpairLast(world, "message", "Caf\xe9 \\ \"x\"");
        cGroupData* outer = map.addGroup();
        cGroupData* inner = map.addGroup();
        map.joinGroupGroup(inner, outer);
        cVisGroup* roof = map.createVisGroup("roof");
        map.createVisGroup("");
        for (int i = 0; i < 6; ++i) {
            const float mins[3] = {float(i) * 40, 0.3f, -8};
            const float maxs[3] = {float(i) * 40 + 33.37f, 64, 8};
            cBrushData* brush = addBox(map, world, mins, maxs, i % 2 ? "wall" : "{grate");
            brush->reserved = uint32_t(i) * 7;
            if (i < 2)
                map.joinGroupBrush(brush, inner);
            if (i == 3)
                brush->brush->addToVisGroup(roof);
        }
        const float origin[3] = {1.5f, -2.25f, 1e-7f};
        cEntityData* light = map.addEntity("light", origin, EF_POINT);
        addEpairLast(light, "light", "");
        light->spawnFlags = 0x80000001u;
        updateEntity(light, UM_ATTACH);
        map.joinGroupEntity(light, outer);
        light->entity->addToVisGroup(roof);
        cEntityData* door = map.addEntity("func_door", origin, 0);
        const float mins[3] = {0, 0, 100}, maxs[3] = {10, 20, 130};
        addBox(map, door, mins, maxs);
        selectedPush(map.data.selectedBrushes, world->brushes->next);
        selectedPush(map.data.selectedFaces, world->brushes->faces);
        map.data.cordonMaxs[1] = 77;
        map.finishLoad();
    }

    QString path(const char* name) const { return folder.filePath(QString::fromLatin1(name)); }

    QByteArray savedBytes(cMap& source, const char* name = "map.kvx") {
        EXPECT_TRUE(cProjectFile(source, path(name)).save());
        return readFile(path(name));
    }

    bool loadInto(cMap& loaded, const QByteArray& bytes) {
        const bool isLoaded = cProjectFile(loaded, QString()).loadBytes(bytes);
        if (isLoaded)
            loaded.finishLoad();
        return isLoaded;
    }

    QTemporaryDir folder;
};

TEST_F(ProjectFile, loadGivesBackWhatWasSavedButForSelectedFacesAndEmptyGroups) {
    const cMapState withFace = storedStateOf(map);
    savedBytes(map);
    cMap loaded(host);
    ASSERT_TRUE(cProjectFile(loaded, path("map.kvx")).load());
    EXPECT_EQ(loaded.data.selectedFaces, nullptr);
    EXPECT_EQ(loaded.data.selectedBrushes, loaded.world()->brushes->next);
    loaded.finishLoad();
    EXPECT_EQ(checkMapInvariants(loaded), QString());
    map.clearFaces();
    EXPECT_NE(firstDifference(storedStateOf(map), withFace), QString());
    EXPECT_EQ(firstDifference(storedStateOf(map), storedStateOf(loaded)).toStdString(), "");
    EXPECT_EQ(loaded.lastGroupId, map.lastGroupId);
    EXPECT_EQ(printed("Saving: \""), 1);
    map.addGroup();
    cMap again(host);
    ASSERT_TRUE(loadInto(again, savedBytes(map)));
    EXPECT_EQ(printed("1 empty group(s) ignored"), 1);
    EXPECT_EQ(firstDifference(storedStateOf(loaded), storedStateOf(again)).toStdString(), "");
}

TEST_F(ProjectFile, secondSaveHasTheSameBytesButForTiedFaces) {
    map.clearFaces();
    for (int i = 0; i < 5; ++i)
        map.joinGroupBrush(map.world()->brushesTail, map.addGroup());
    const QByteArray first = savedBytes(map);
    cMap second(host), third(host);
    ASSERT_TRUE(cProjectFile(second, QString()).loadBytes(first));
    const QByteArray again = savedBytes(second, "2.kvx");
    EXPECT_EQ(again.size(), first.size());
    ASSERT_TRUE(cProjectFile(third, QString()).loadBytes(again));
    // Ties turn at each load, so the second turn gives the first order back.
    EXPECT_EQ(savedBytes(third, "3.kvx"), savedBytes(map, "4.kvx"));
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
    cMap loaded(host);
    ASSERT_TRUE(cProjectFile(loaded, QString()).loadBytes(bytes));
    ASSERT_NE(loaded.world()->brushes, nullptr);
    EXPECT_EQ(loaded.world()->brushes->reserved, 0u);
    EXPECT_EQ(checkMapInvariants(loaded), QString());
    const QByteArray saved = savedBytes(loaded);
    EXPECT_EQ(saved[4], 112);
    EXPECT_EQ(saved.size(), bytes.size() + 4);
}

TEST_F(ProjectFile, failuresHaveTheirMessages) {
    struct cCase {
        int place;
        QByteArray patch;
        const char* message;
    };
    const cCase cases[] = {{0, "X", "bad file header"},
                           {4, "\x6e", "bad file version (110 should be 111 or higher)"},
                           // A count that takes no memory.
                           {8, "\xff\xff\xff\x7f", " is damaged: nothing of it can be read"}};
    const QByteArray bytes = savedBytes(map);
    for (const cCase& c : cases) {
        cMap loaded(host);
        QByteArray wrong = bytes;
        wrong.replace(c.place, c.patch.size(), c.patch);
        EXPECT_FALSE(loadInto(loaded, wrong)) << c.place;
        EXPECT_EQ(failed(c.message), 1) << c.message;
    }
    cMap empty(host), loaded(host);
    EXPECT_FALSE(cProjectFile(loaded, path("missing.kvx")).load());
    EXPECT_EQ(failed("can't read \""), 1);
    ASSERT_EQ(mkfifo(qPrintable(path("pipe.kvx")), 0600), 0);
    EXPECT_FALSE(cProjectFile(loaded, path("pipe.kvx")).load()) << "and nobody waits for a writer";
    EXPECT_EQ(failed("pipe.kvx\" (Invalid argument)"), 1);
    EXPECT_FALSE(cProjectFile(loaded, folder.path()).load());
    EXPECT_EQ(failed("\" (Is a directory)"), 1);
    EXPECT_FALSE(cProjectFile(map, path("no/such/folder.kvx")).save());
    EXPECT_EQ(failed("can't write \""), 1);
    ASSERT_TRUE(loadInto(loaded, savedBytes(empty)));
    ASSERT_NE(loaded.world(), nullptr) << "a file without entities gets one";
}

TEST_F(ProjectFile, aSaveThatFailsLeavesTheOldFile) {
    const QByteArray before = savedBytes(map);
    ASSERT_TRUE(QFile::link(path("map.kvx"), path("link.kvx")));
    ASSERT_TRUE(QFile::setPermissions(path("map.kvx"), QFile::ReadOwner | QFile::WriteOwner));
    const float mins[3] = {0, 0, 0}, maxs[3] = {8, 8, 8};
    addBox(map, world, mins, maxs);
    {
        const cFileSizeLimit limit;
        EXPECT_FALSE(cProjectFile(map, path("link.kvx")).save());
    }
    EXPECT_EQ(failed("link.kvx\" (File too large)"), 1);
    EXPECT_EQ(readFile(path("map.kvx")), before);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 2) << "nothing lies about";

    ASSERT_TRUE(cProjectFile(map, path("link.kvx")).save());
    EXPECT_TRUE(QFileInfo(path("link.kvx")).isSymLink());
    EXPECT_GT(QFileInfo(path("map.kvx")).size(), before.size());
    EXPECT_FALSE(QFileInfo(path("map.kvx")).permission(QFile::ReadOther));
}

TEST_F(ProjectFile, savingChangesNothingInTheMap) {
    map.removeVisGroup(map.visGroups.first());
    map.createVisGroup("third");
    const cMapState before = storedStateOf(map);
    const QList<uint32_t> ids = map.visGroups.keys();
    const uint64_t revision = map.revision();
    map.world()->brushes->brush->addToVisGroup(map.visGroups.last());
    cMap loaded(host);
    ASSERT_TRUE(loadInto(loaded, savedBytes(map)));
    map.world()->brushes->brush->removeFromVisGroup(map.visGroups.last());
    EXPECT_EQ(firstDifference(before, storedStateOf(map)), QString());
    EXPECT_EQ(map.visGroups.keys(), ids);
    EXPECT_EQ(map.revision(), revision);
    EXPECT_EQ(loaded.visGroups.keys(), QList<uint32_t>({1, 2}));
    ASSERT_EQ(loaded.world()->brushes->brush->visGroups.size(), 1);
    EXPECT_STREQ(loaded.world()->brushes->brush->visGroups[0]->name, "third");
}

// Empty and missing class names, and objects after them.
TEST_F(ProjectFile, theClassNameMayBeEmpty) {
    const float origin[3] = {1, 2, 3};
    for (const char* name : {"", "light", ""})
        updateEntity(map.addEntity(name, origin, EF_POINT), 0);
    setText(map.data.entitiesTail->classname, nullptr);
    updateEntity(map.addEntity("last", origin, EF_POINT), 0);
    cMap loaded(host);
    ASSERT_TRUE(loadInto(loaded, savedBytes(map)));
    map.clearFaces();
    EXPECT_EQ(firstDifference(storedStateOf(map), storedStateOf(loaded)).toStdString(), "");
    EXPECT_STREQ(loaded.data.entitiesTail->classname, "last");
    EXPECT_EQ(loaded.data.entitiesTail->prev->classname, nullptr);
}

TEST_F(ProjectFile, numbersOfNoUseBecomeTheDefault) {
    cFaceData* face = map.world()->brushesTail->faces;
    const float nan = std::nanf(""), infinity = HUGE_VALF;
    face->tex.uScale = 0;
    face->tex.vShift = infinity;
    face->next->tex.uAxis[1] = nan;
    face->vertices[0].xyz[2] = infinity;
    map.data.entitiesTail->origin[1] = nan;
    map.data.entitiesTail->scale = infinity;
    cMap loaded(host);
    ASSERT_TRUE(loadInto(loaded, savedBytes(map)));
    EXPECT_EQ(host.count(eMessage::Warning, QStringLiteral("5 number(s) of no use")), 1);
    EXPECT_EQ(loaded.data.entitiesTail->origin[1], 0);
    EXPECT_EQ(loaded.data.entitiesTail->scale, 1);
    for (const cFaceData* read : facesOf(loaded.world()->brushesTail)) {
        EXPECT_EQ(read->tex.uScale, 1);
        EXPECT_EQ(read->tex.vShift, 0);
        EXPECT_TRUE(vectorsEqual(read->tex.uAxis, read->tex.uAxis)) << "no number";
        for (int i = 0; i < read->vertexCount; ++i)
            EXPECT_TRUE(std::isfinite(read->vertices[i].xyz[2]));
    }
    EXPECT_EQ(checkMapInvariants(loaded), QString());
}

TEST_F(ProjectFile, cutAnywhereItLoadsWhatThereWas) {
    const QByteArray bytes = savedBytes(map);
    {
        cMap whole(host);
        ASSERT_TRUE(loadInto(whole, bytes));
        EXPECT_EQ(failed("damaged"), 0);
    }
    int loads = 0;
    for (int size = 0; size < bytes.size(); size += 1 + size / 97) {
        cMap loaded(host);
        // What fails is thrown away; that must not fall over either.
        if (!loadInto(loaded, bytes.left(size)))
            continue;
        ++loads;
        EXPECT_EQ(failed("is damaged: read up to entity"), loads);
        ASSERT_EQ(checkMapInvariants(loaded).toStdString(), "") << "cut at " << size;
    }
    EXPECT_GT(loads, 10);
}

TEST_F(ProjectFile, cutInsideALongListKeepsWhatStandsBeforeTheCut) {
    cMap source(host);
    cEntityData* only = addWorldTo(source);
    const float mins[3] = {0, 0, 0}, maxs[3] = {8, 8, 8};
    for (int i = 0; i < 200; ++i)
        addBox(source, only, mins, maxs);
    const QByteArray bytes = savedBytes(source);
    EXPECT_FALSE(cProjectFile(map, QStringLiteral("/dev/full")).save());
    EXPECT_EQ(failed("can't write \"/dev/full\" (No space left"), 1);
    const int headSize = bytes.indexOf("worldspawn") + 110;
    const int brushSize = (bytes.size() - headSize) / 200;
    cMap loaded(host);
    ASSERT_TRUE(cProjectFile(loaded, QString()).loadBytes(bytes.left(headSize + brushSize * 2)));
    EXPECT_EQ(failed("is damaged: read up to entity 1 of 1"), 1);
    const int brushes = countOf(brushesOf(loaded.world()));
    EXPECT_TRUE(brushes == 1 || brushes == 2) << brushes;
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
        cMap loaded(host);
        if (!loadInto(loaded, broken))
            continue;
        ASSERT_EQ(checkMapInvariants(loaded).toStdString(), "")
            << "seed " << seed << " round " << i;
    }
}

// SPDX-License-Identifier: MIT
// Random walks from real maps, whose planes are not those that their corners give: what is undone
// is undone to the last bit, in the map and in the exported text.
#include "document/tMapLists.h"
#include "plugins/tMapPluginTest.h"
#include "support/tRandomWalk.h"

#include <QDir>
#include <iostream>

class RealMapWalk : public cMapPluginTest {
protected:
    RealMapWalk() {
        host.mapProfile.detailContentMask = 0x8000000;
        host.addTexture("wall", 64, 128);
        host.addClass(str("func_door"), CK_SOLID);
        host.UndoLevels = 10000;
    }

    void walk(const QString& file, const char* text, unsigned seed, int operations) {
        cMap map(host);
        ASSERT_TRUE(importFile(map, file)) << qPrintable(file);
        cRandomWalk walk(host, map, seed);
        walk.isReal = true;
        walk.exportText = [&] { return contents(exportFile(map, text)); };
        QString problem;
        const int segments = qEnvironmentVariable("KARVEX_WALK_SEGMENTS", str("1")).toInt();
        for (int i = 0; i < segments && problem.isEmpty(); ++i) {
            problem = walk.runSegment(operations);
            walk.changeWithoutHistory();
        }
        EXPECT_TRUE(problem.isEmpty())
            << qPrintable(file) << " as " << text << ", seed " << seed << "\n"
            << qPrintable(problem);
    }
};

// By hand: KARVEX_WALK_STEPS for longer ways, KARVEX_WALK_SEGMENTS for as many of them one after
// the other, KARVEX_WALK_SEED for the first seed.
TEST_F(RealMapWalk, wayBackAndForthGivesPlanesAndTextsOfBefore) {
    const QDir real(str(KARVEX_REAL_DATA "/maps"));
    unsigned seed = firstWalkSeed();
    const int steps = qEnvironmentVariable("KARVEX_WALK_STEPS", str("25")).toInt();
    QStringList maps;
    for (const QString& name : real.entryList({str("*.map")}))
        maps << real.filePath(name);
    for (const char* name : {"hall", "hills", "leak"})
        maps << str(KARVEX_SOURCE "/game/maps/%1.map").arg(str(name));
    for (const QString& map : maps) {
        for (const char* text : {"Classic Maps", "Axial Maps"}) {
            std::cout << qPrintable(QFileInfo(map).fileName()) << ", " << text << ", seed " << seed
                      << "\n";
            walk(map, text, seed++, steps);
        }
    }
}

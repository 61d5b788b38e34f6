// SPDX-License-Identifier: MIT
// Random walks from a map of boxes; those from real maps stand with the plug-ins that read them.
#include "support/tRandomWalk.h"
#include "support/tWalkedBoxes.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>
#include <iostream>

static void walkBy(unsigned seed) {
    constexpr int SEGMENTS = 6, OPERATIONS = 40;
    cWalkedBoxes boxes(seed);
    cRandomWalk walk(boxes.host, boxes.map, seed);
    for (int i = 0; i < SEGMENTS; ++i) {
        const QString problem = walk.runSegment(OPERATIONS);
        ASSERT_TRUE(problem.isEmpty()) << "seed " << seed << " segment " << i << "\n"
                                       << qPrintable(problem);
        walk.changeWithoutHistory();
    }
}

// By hand: KARVEX_WALK_SECONDS goes on with new seeds for so long, KARVEX_WALK_SEED is the first.
TEST(RandomWalk, everyStepOfTheWayBackAndForthGivesTheMapOfBefore) {
    unsigned seed = firstWalkSeed();
    std::cout << "seeds 1 to 6, " << seed << " and on\n";
    for (unsigned known = 1; known <= 6; ++known)
        walkBy(known);
    QElapsedTimer timer;
    timer.start();
    const qint64 limit = qEnvironmentVariableIntValue("KARVEX_WALK_SECONDS") * qint64(1000);
    for (int i = 0; !HasFatalFailure() && (i < 2 || timer.elapsed() < limit); ++i)
        walkBy(seed++);
    std::cout << "up to seed " << seed - 1 << "\n";
}

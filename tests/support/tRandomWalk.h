// SPDX-License-Identifier: MIT
// A random walk over all operations on a map: every step of the way back and forth gives the map
// that was there before, to the last bit, and the map is whole at each point.
#pragma once

#include "operations/tClipboard.h"
#include "support/tMapState.h"
#include "support/tTestHost.h"

#include <QStringList>
#include <functional>
#include <random>
#include <string>
#include <vector>

class cMap;

// KARVEX_WALK_SEED, to walk a way again; without it one that nobody has tried.
unsigned firstWalkSeed();

class cRandomWalk {
public:
    // Of a map whose host knows the texture "wall" and the solid class "func_door".
    cRandomWalk(cTestHost& host, cMap& map, unsigned seed);

    // The map as text; compared at both ends of the way where it is given.
    std::function<std::string()> exportText;

    // Asked after every step; what it finds ends the walk.
    std::function<QString()> check;

    // Faces near the limits of our own rule for flat ones, as real maps have them, may be scaled or
    // stretched past it: brushes are not held to that rule then.
    bool isReal = false;

    // So many operations at most, then all the way back and forth again. Empty, or what broke the
    // law, with the last operations.
    QString runSegment(int operations);
    // Hiding and membership are not in the history: they come between two ways.
    void changeWithoutHistory();

    int number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(m_random); }
    bool chance(int oneIn) { return number(1, oneIn) == 1; }
    float coordinate() { return float(number(-40, 40) * 16); }

private:
    void compare(const char* what);
    void compareText(const char* what, const std::string& expected);
    void back();
    void forth();
    void wander();
    void operate();
    void choose();
    int objectCount() const;
    QString change();
    void selectionBounds(float* mins, float* maxs) const;
    QString transform();
    QString rotation(float* matrix);
    QString clone();
    QString paste();
    QString create();
    QString tie();

    cTestHost& m_host;
    cMap& m_map;
    cClipboard m_clipboard;
    std::mt19937 m_random;
    int m_fewest;   // objects, below which none are removed
    int m_most;     // above which none are added
    bool m_isValid; // real maps may hold brushes that are not valid by our own rule
    std::vector<cMapState> m_states; // by how many steps are done
    size_t m_at = 0;
    QStringList m_trail;
    QString m_problem;
};

// SPDX-License-Identifier: MIT
#include "support/tLaw.h"

#include "document/tBrushGeometry.h"
#include "document/tHistory.h"
#include "document/tMapLists.h"
#include "support/tMapTools.h"

#include <cstring>

static constexpr char MARKER[] = "law marker";

QString checkMapWhole(const cMap& map) {
    const QString problem = checkMapInvariants(map);
    if (!problem.isEmpty())
        return problem;
    for (const cEntityData* entity : entitiesOf(map.data)) {
        for (const cBrushData* brush : brushesOf(entity)) {
            QString error;
            if (!checkBrush(brush, true, &error))
                return QStringLiteral("brush %1 is not valid: %2").arg(brush->id).arg(error);
        }
    }
    return QString();
}

static QString stage(const char* name, const QString& problem) {
    return problem.isEmpty() ? QString()
                             : QStringLiteral("%1: %2").arg(QString::fromLatin1(name), problem);
}

static QString compare(const cMap& map, const char* name, const cMapState& expected,
                       bool withSelection) {
    const QString difference = firstDifference(expected, stateOf(map, withSelection));
    return stage(name, difference.isEmpty() ? checkMapWhole(map) : difference);
}

QString checkLaw(cMap& map, const std::function<void()>& operation, bool selectionComesBack) {
    cHistory& history = *map.history;
    history.begin(MARKER);
    history.end();
    const cMapState before = stateOf(map, true);
    const cMapState plainBefore = stateOf(map, false);
    const uint64_t revision = map.revision();
    operation();
    if (map.revision() == revision && !firstDifference(before, stateOf(map, true)).isEmpty())
        return QStringLiteral("a change that no view finds out");
    if (strcmp(history.undoName(), MARKER) == 0)
        return compare(map, "without a step", plainBefore, false);
    QString problem = stage("after the operation", checkMapWhole(map));
    const cMapState after = stateOf(map, false);
    if (problem.isEmpty()) {
        history.undo();
        problem =
            compare(map, "undo", selectionComesBack ? before : plainBefore, selectionComesBack);
    }
    if (problem.isEmpty()) {
        history.redo();
        problem = compare(map, "redo", after, false);
    }
    return problem;
}

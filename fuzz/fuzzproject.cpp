// SPDX-License-Identifier: MIT
// The reader and the writer of project files: whatever the reader accepts is a consistent map, and
// what the writer makes of that is read as the same map.
#include "document/tMapLists.h"
#include "document/tProjectFile.h"
#include "support/tMapTools.h"
#include "tFuzzHost.h"

#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

static void demand(const QString& problem) {
    if (problem.isEmpty())
        return;
    fprintf(stderr, "%s\n", qPrintable(problem));
    abort();
}

// Empty groups go at a save, and a group whose parent goes has none; that may take several.
static bool hasEmptyGroups(const cMap& map) {
    for (const cGroupData* group : groupsOf(map.data)) {
        if (group->memberCount < 1)
            return true;
    }
    return false;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    static cFuzzHost host;
    static QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("saved.kvx"));
    cMap map(host), again(host);
    const QByteArray file(reinterpret_cast<const char*>(bytes), int(size));
    if (!cProjectFile(map, QString()).loadBytes(file))
        return 0;
    map.finishLoad();
    demand(checkMapInvariants(map));
    cProjectFile reader(again, path);
    if (!cProjectFile(map, path).save() || !reader.load() || reader.isDamaged())
        demand(QStringLiteral("what is saved is not read"));
    again.finishLoad();
    if (!hasEmptyGroups(map))
        demand(firstDifference(storedStateOf(map), storedStateOf(again)));
    return 0;
}

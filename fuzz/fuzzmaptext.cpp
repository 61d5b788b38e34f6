// SPDX-License-Identifier: MIT
// The reader and the writer of map texts, through the services a plug-in gets: whatever the reader
// makes of a text is a consistent map, and what the writer makes of that is read as the same map.
#include "common/tMapReader.h"
#include "common/tMapWriter.h"
#include "document/tBrushGeometry.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "pluginhost/tHostServices.h"
#include "support/tMapTools.h"
#include "tFuzzHost.h"

#include <QFile>
#include <QTemporaryDir>
#include <cmath>
#include <cstdio>
#include <cstdlib>

static void demand(const QString& problem) {
    if (problem.isEmpty())
        return;
    fprintf(stderr, "%s\n", qPrintable(problem));
    abort();
}

static bool import(cMap& map, const QByteArray& text) {
    cMapReader reader(hostServices(), &map.data, text.constData(), size_t(text.size()));
    if (!reader.read())
        return false;
    map.finishLoad();
    demand(checkMapInvariants(map));
    return true;
}

static QByteArray exported(cMap& map, eFaceLine kind) {
    static QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("out.map")));
    if (!cMapWriter(hostServices(), &map.data, kind, "seal").write(qPrintable(file.fileName())) ||
        !file.open(QIODevice::ReadOnly))
        demand(QStringLiteral("the map is not written"));
    return file.readAll();
}

// ---- What has to come back

// A brush that is not as thin as a digit: the digits of a text decide nothing about it.
static bool isSound(const cBrushData* brush) {
    static constexpr float LEAST_EDGE = 1, FARTHEST = 16384;
    for (const cFaceData* face : facesOf(brush)) {
        for (int i = 0; i < face->vertexCount; ++i) {
            const float* p = face->vertices[i].xyz;
            const float* q = face->vertices[(i + 1) % face->vertexCount].xyz;
            if (std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]) < LEAST_EDGE ||
                std::hypot(p[0], p[1], p[2]) > FARTHEST)
                return false;
        }
    }
    return checkBrush(brush, false, nullptr);
}

static bool isSound(const cMap& map) {
    for (const cEntityData* entity : entitiesOf(map.data)) {
        for (const cBrushData* brush : brushesOf(entity)) {
            if (!isSound(brush))
                return false;
        }
    }
    return true;
}

static QString plain(const char* text) {
    return QString::fromLatin1(text).replace(QLatin1Char('\r'), QLatin1Char(' '));
}

// Each entity with its keys, and how many brushes it has.
static QStringList summary(const cMap& map) {
    QStringList lines;
    for (const cEntityData* entity : entitiesOf(map.data)) {
        QString line = entity->classname ? plain(entity->classname) : QStringLiteral("(none)");
        for (const cEpair* pair : epairsOf(entity)) {
            if (!cKeptContainers::isKept(pair->key))
                line += QStringLiteral("\n%1=%2").arg(plain(pair->key), plain(pair->value));
        }
        int brushes = 0;
        for ([[maybe_unused]] const cBrushData* brush : brushesOf(entity))
            ++brushes;
        lines << line + (entity->group ? QStringLiteral("\ngrouped") : QString()) +
                     QStringLiteral("\n%1 brushes").arg(brushes);
    }
    lines.sort();
    return lines;
}

static int groupCount(const cMap& map) {
    int count = 0;
    for ([[maybe_unused]] const cGroupData* group : groupsOf(map.data))
        ++count;
    return count;
}

static void demandSame(const cMap& a, const cMap& b) {
    if (summary(a) != summary(b))
        demand(QStringLiteral("other entities, keys or counts of brushes"));
    if (a.visGroups.size() != b.visGroups.size())
        demand(QStringLiteral("other visgroups"));
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    static cFuzzHost host;
    cMap first(host);
    if (!import(first, QByteArray(reinterpret_cast<const char*>(bytes), int(size))))
        return 0;
    const bool sound = isSound(first);
    for (const eFaceLine kind : {eFaceLine::Classic, eFaceLine::Axial}) {
        cMap second(host), third(host);
        import(second, exported(first, kind));
        import(third, exported(second, kind));
        // An entity of a brush that is none any more has another key.
        if (!sound)
            continue;
        demandSame(first, second);
        demandSame(second, third);
        if (groupCount(second) != groupCount(third))
            demand(QStringLiteral("other groups"));
    }
    return 0;
}

// SPDX-License-Identifier: MIT
#include "support/tMapState.h"

#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "support/tMapText.h"

#include <algorithm>
#include <cstring>
#include <map>

template<class Array> static QString listed(const Array& values) {
    QString text;
    for (const auto& value : values)
        text += QStringLiteral(" %1").arg(double(value), 0, 'g', 9);
    return text;
}

static QString textOf(const cVisGroup* visGroup, uint32_t number) {
    return QStringLiteral("visgroup %1 %2 objects %3 visible %4 color%5")
        .arg(number)
        .arg(fromMapText(visGroup->name))
        .arg(visGroup->objectCount)
        .arg(visGroup->visible)
        .arg(listed(visGroup->color));
}

cMapState stateOf(const cMap& map, bool withSelection) {
    cMapState state;
    for (const cGroupData* group : groupsOf(map.data))
        state.objects.take(group);
    for (const cEntityData* entity : entitiesOf(map.data))
        state.objects.take(entity, TAKE_BRUSHES | TAKE_VISGROUPS);
    for (const cVisGroup* visGroup : map.visGroups)
        state.visGroups << textOf(visGroup, visGroup->serial);
    for (const cEntityData* entity : entitiesOf(map.data))
        state.derived << QStringLiteral("entity %1 shows %2 render %3 %4 %5 model %6 %7 %8 %9")
                             .arg(entity->id)
                             .arg(entity->attachKind)
                             .arg(entity->renderFlags)
                             .arg(entity->renderMode)
                             .arg(listed(entity->renderColor))
                             .arg(entity->body)
                             .arg(entity->skin)
                             .arg(entity->sequence)
                             .arg(double(entity->scale));
    const uint32_t mask = withSelection ? ~0u : ~uint32_t(OF_SELECTED);
    for (cGroupState& group : state.objects.groups)
        group.flags &= mask;
    for (cEntityState& entity : state.objects.entities)
        entity.flags &= mask & ~uint32_t(EF_RECOMPUTE_ATTACHMENT);
    for (cBrushState& brush : state.objects.brushes)
        brush.flags &= mask;
    for (cFaceState& face : state.objects.faces)
        face.flags &= mask;
    return state;
}

// ---- Texts; two objects are the same if their texts and the bytes behind them are

static QString textOf(const cGroupState& group) {
    return QStringLiteral("group %1 after %2 parent %3 flags %4 color%5")
        .arg(group.id)
        .arg(group.previousId)
        .arg(group.parentId)
        .arg(group.flags)
        .arg(listed(group.color));
}

static QString textOf(const cObjectStates& all, const cEntityState& entity) {
    QString text = QStringLiteral("entity %1 %2 after %3 group %4 flags %5 spawn %6 key %7")
                       .arg(entity.id)
                       .arg(fromMapText(entity.classname))
                       .arg(entity.previousId)
                       .arg(entity.groupId)
                       .arg(entity.flags)
                       .arg(entity.spawnFlags)
                       .arg(fromMapText(entity.flagsKey)) +
                   listed(entity.origin) + listed(entity.angles) + listed(entity.mins) +
                   listed(entity.maxs) + listed(entity.color);
    for (const auto& [key, value] : entity.pairs)
        text += QStringLiteral(" %1=%2").arg(fromMapText(key), fromMapText(value));
    for (uint32_t i = entity.visGroups.first; i < entity.visGroups.end(); ++i)
        text += QStringLiteral(" visgroup %1").arg(all.serials[i]);
    return text + QStringLiteral(" brushes %1").arg(entity.brushes.count);
}

static QString textOf(const cObjectStates& all, const cFaceState& face) {
    QString text = QStringLiteral("  face %1 flags %2 plane%3 %4 type %5 %6 axes%7 bits %8 %9")
                       .arg(face.id)
                       .arg(face.flags)
                       .arg(listed(face.normal))
                       .arg(double(face.dist), 0, 'g', 9)
                       .arg(face.planeType)
                       .arg(fromMapText(face.tex.name))
                       .arg(listed(face.tex.uAxis) + listed(face.tex.vAxis))
                       .arg(face.tex.contentFlags)
                       .arg(face.tex.surfaceFlags);
    for (float value :
         {face.tex.uShift, face.tex.vShift, face.tex.uScale, face.tex.vScale, face.tex.rotation})
        text += QStringLiteral(" %1").arg(double(value), 0, 'g', 9);
    for (uint32_t i = face.points.first; i < face.points.end(); ++i)
        text += QStringLiteral(" (%1 )").arg(listed(all.points[i]));
    return text;
}

static QString textOf(const cObjectStates& all, const cBrushState& brush) {
    QString text = QStringLiteral("brush %1 of %2 after %3 group %4 flags %5 reserved %6 color%7")
                       .arg(brush.id)
                       .arg(brush.entityId)
                       .arg(brush.previousId)
                       .arg(brush.groupId)
                       .arg(brush.flags)
                       .arg(brush.reserved)
                       .arg(listed(brush.color));
    for (uint32_t i = brush.visGroups.first; i < brush.visGroups.end(); ++i)
        text += QStringLiteral(" visgroup %1").arg(all.serials[i]);
    return text;
}

// ---- What a file keeps

cMapState storedStateOf(const cMap& map) {
    cMapState state = stateOf(map);
    cObjectStates& all = state.objects;
    std::sort(all.groups.begin(), all.groups.end(),
              [](const cGroupState& x, const cGroupState& y) { return x.id < y.id; });
    for (cGroupState& group : all.groups)
        group.previousId = 0;
    std::map<uint32_t, uint32_t> places; // of entities
    for (cEntityState& entity : all.entities) {
        entity.previousId = 0;
        entity.id = places[entity.id] = uint32_t(places.size());
    }
    std::map<uint32_t, uint32_t> numbers; // of visgroups, by serial
    state.visGroups.clear();
    for (const cVisGroup* visGroup : map.visGroups) {
        numbers[visGroup->serial] = visGroup->id;
        state.visGroups << textOf(visGroup, visGroup->id);
    }
    for (uint32_t& serial : all.serials)
        serial = numbers[serial];
    uint32_t place = 0;
    for (cBrushState& brush : all.brushes) {
        brush.entityId = places[brush.entityId];
        brush.previousId = 0;
        brush.id = ++place;
        const auto first = all.faces.begin() + brush.faces.first;
        for (auto face = first; face != first + brush.faces.count; ++face) {
            face->id = 0;
            char* name = face->tex.name; // what a file holds behind its end means nothing
            std::fill(name + strnlen(name, sizeof face->tex.name), name + sizeof face->tex.name,
                      '\0');
        }
        std::sort(first, first + brush.faces.count,
                  [&all](const cFaceState& x, const cFaceState& y) {
                      return textOf(all, x) < textOf(all, y);
                  });
    }
    state.derived = QStringList(listed(map.data.cordonMins) + listed(map.data.cordonMaxs));
    return state;
}

// ---- Comparison

static QString differs(const QString& expected, const QString& got) {
    return expected == got ? QString()
                           : QStringLiteral("expected %1\n     got %2").arg(expected, got);
}

static bool isSame(const cObjectStates& a, const cFaceState& x, const cObjectStates& b,
                   const cFaceState& y) {
    if (x.id == 0 && y.id == 0) // as a file keeps them: what follows from the rest is not compared
        return textOf(a, x) == textOf(b, y);
    return x.id == y.id && x.flags == y.flags && memcmp(&x.tex, &y.tex, sizeof x.tex) == 0 &&
           memcmp(x.normal, y.normal, sizeof x.normal) == 0 &&
           memcmp(&x.dist, &y.dist, sizeof x.dist) == 0 && x.planeType == y.planeType &&
           x.points.count == y.points.count &&
           (x.points.count == 0 || // there may be no array
            memcmp(a.points.data() + x.points.first, b.points.data() + y.points.first,
                   x.points.count * sizeof a.points[0]) == 0);
}

static QString brushDifference(const cObjectStates& a, const cBrushState& x, const cObjectStates& b,
                               const cBrushState& y) {
    const QString own = differs(textOf(a, x), textOf(b, y));
    if (!own.isEmpty() || x.faces.count != y.faces.count)
        return own.isEmpty() ? QStringLiteral("brush %1: %2 faces, got %3")
                                   .arg(x.id)
                                   .arg(x.faces.count)
                                   .arg(y.faces.count)
                             : own;
    for (uint32_t i = 0; i < x.faces.count; ++i) {
        const cFaceState& f = a.faces[x.faces.first + i];
        const cFaceState& g = b.faces[y.faces.first + i];
        if (!isSame(a, f, b, g))
            return QStringLiteral("brush %1, expected\n%2\n     got\n%3")
                .arg(x.id)
                .arg(textOf(a, f), textOf(b, g));
    }
    return QString();
}

template<class T, class Difference>
static QString listDifference(const char* what, const std::vector<T>& a, const std::vector<T>& b,
                              Difference difference) {
    for (size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        const QString found = difference(a[i], b[i]);
        if (!found.isEmpty())
            return found;
    }
    return a.size() == b.size() ? QString()
                                : QStringLiteral("%1 %2, got %3")
                                      .arg(a.size())
                                      .arg(QString::fromLatin1(what))
                                      .arg(b.size());
}

QString firstDifference(const cMapState& expected, const cMapState& got) {
    const cObjectStates& a = expected.objects;
    const cObjectStates& b = got.objects;
    QString found = listDifference(
        "groups", a.groups, b.groups,
        [](const cGroupState& x, const cGroupState& y) { return differs(textOf(x), textOf(y)); });
    if (found.isEmpty())
        found = listDifference("entities", a.entities, b.entities,
                               [&](const cEntityState& x, const cEntityState& y) {
                                   return differs(textOf(a, x), textOf(b, y));
                               });
    if (found.isEmpty())
        found = listDifference("brushes", a.brushes, b.brushes,
                               [&](const cBrushState& x, const cBrushState& y) {
                                   return brushDifference(a, x, b, y);
                               });
    if (found.isEmpty())
        found =
            differs(expected.derived.join(QLatin1Char('\n')), got.derived.join(QLatin1Char('\n')));
    if (found.isEmpty())
        found = differs(expected.visGroups.join(QLatin1Char('\n')),
                        got.visGroups.join(QLatin1Char('\n')));
    return found;
}

// SPDX-License-Identifier: MIT
#include "support/tMapTools.h"

#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tEntity.h"
#include "document/tFace.h"
#include "document/tGroup.h"
#include "document/tMapLists.h"
#include "document/tTexture.h"
#include "document/tVisGroup.h"

#include <QSet>
#include <map>

cEntityData* addWorldTo(cMap& map) {
    return map.addWorld("worldspawn");
}

cBrushData* addBox(cMap& map, cEntityData* entity, const float* mins, const float* maxs,
                   const char* texture) {
    cBrushData* brush = map.addBrush(entity);
    for (int side = 0; side < 6; ++side) {
        cFaceTexture tex = {};
        tex.uScale = tex.vScale = 1;
        qstrncpy(tex.name, texture, sizeof tex.name);
        cFaceData* face = map.addFace(brush, tex, 0);
        const int axis = side / 2;
        const bool upper = side % 2 != 0;
        face->normal[axis] = upper ? 1.0f : -1.0f;
        face->dist = upper ? maxs[axis] : -mins[axis];
        face->planeType = axis;
        face->flags |= FF_RESET_AXES;
    }
    updateEntity(entity, UM_WINDINGS);
    return brush;
}

static QString floats(const float* values, int count) {
    QString text;
    for (int i = 0; i < count; ++i)
        text += QString::number(double(values[i]), 'g', 9) + QLatin1Char(' ');
    return text;
}

static QString dumpFace(const cFaceData* face, uint32_t flagMask = ~0u) {
    const cFaceTexture& tex = face->tex;
    QString text = QStringLiteral("face %1 plane %2 tex %3 %4 %5 %6")
                       .arg(face->flags & flagMask)
                       .arg(floats(face->normal, 3) + floats(&face->dist, 1))
                       .arg(floats(tex.uAxis, 11))
                       .arg(tex.contentFlags)
                       .arg(tex.surfaceFlags)
                       .arg(QString::fromLocal8Bit(tex.name));
    for (int i = 0; i < face->vertexCount; ++i)
        text += QStringLiteral(" v ") + floats(face->vertices[i].xyz, 3);
    return text;
}

static QString memberText(const QList<cVisGroup*>& visGroups) {
    QString text;
    for (const cVisGroup* visGroup : visGroups)
        text += QString::number(visGroup->id) + QLatin1Char(' ');
    return text;
}

static void dumpBrush(const cBrushData* brush, QStringList& lines) {
    lines << QStringLiteral("brush %1 reserved %2 group %3 root %4 color %5 vis %6")
                 .arg(brush->flags)
                 .arg(brush->reserved)
                 .arg(brush->group ? brush->group->id : 0)
                 .arg(brush->rootGroup ? brush->rootGroup->id : 0)
                 .arg(brush->brush->baseColor[0])
                 .arg(memberText(brush->brush->visGroups));
    QStringList faces;
    for (const cFaceData* face : facesOf(brush))
        faces << dumpFace(face);
    faces.sort();
    lines << faces;
}

static void dumpEntity(const cEntityData* entity, QStringList& lines) {
    lines << QStringLiteral("entity %1 %2 key %3 spawn %4 group %5 origin %6 vis %7")
                 .arg(QString::fromLocal8Bit(entity->classname))
                 .arg(entity->flags)
                 .arg(QString::fromLocal8Bit(entity->flagsKey))
                 .arg(entity->spawnFlags)
                 .arg(entity->group ? entity->group->id : 0)
                 .arg(floats(entity->origin, 3) + floats(entity->angles, 3))
                 .arg(memberText(entity->entity->visGroups));
    for (const cEpair* pair : epairsOf(entity))
        lines << QStringLiteral("  %1=%2").arg(QString::fromLocal8Bit(pair->key),
                                               QString::fromLocal8Bit(pair->value));
    for (const cBrushData* brush : brushesOf(entity))
        dumpBrush(brush, lines);
}

QStringList dumpMap(const cMap& map) {
    QStringList lines;
    std::map<uint32_t, const cGroupData*> groups;
    for (const cGroupData* group : groupsOf(map.data))
        groups[group->id] = group;
    for (const auto& [id, group] : groups)
        lines << QStringLiteral("group %1 flags %2 members %3 parent %4")
                     .arg(id)
                     .arg(group->flags)
                     .arg(group->memberCount)
                     .arg(group->parent ? group->parent->id : 0);
    for (const cVisGroup* visGroup : map.visGroups)
        lines << QStringLiteral("visgroup %1 %2 objects %3 visible %4")
                     .arg(visGroup->id)
                     .arg(QString::fromLocal8Bit(visGroup->name))
                     .arg(visGroup->objectCount)
                     .arg(visGroup->visible);
    lines << QStringLiteral("cordon ") + floats(map.data.cordonMins, 3) +
                 floats(map.data.cordonMaxs, 3);
    for (const cEntityData* entity : entitiesOf(map.data))
        dumpEntity(entity, lines);
    return lines;
}

// ---- By id

namespace {
// Lines that begin with the kind of object and its id, in that order.
class cDumpById {
public:
    cDumpById(const cMap& map, bool withSelection)
        : m_flags(withSelection ? ~0u : ~uint32_t(OF_SELECTED)) {
        for (const cGroupData* group : groupsOf(map.data))
            addGroup(group);
        for (const cVisGroup* visGroup : map.visGroups)
            add('v', visGroup->serial,
                QStringLiteral("%1 objects %2 visible %3")
                    .arg(QString::fromLocal8Bit(visGroup->name))
                    .arg(visGroup->objectCount)
                    .arg(visGroup->visible));
        for (const cEntityData* entity : entitiesOf(map.data))
            addEntity(entity);
    }

    QStringList lines() {
        m_lines.sort();
        return m_lines;
    }

private:
    void add(char kind, uint32_t id, const QString& text) {
        m_lines << QStringLiteral("%1%2 %3")
                       .arg(QLatin1Char(kind))
                       .arg(id, 10, 10, QLatin1Char('0'))
                       .arg(text);
    }

    QString common(uint32_t flags, const cGroupData* group, const cGroupData* root,
                   const QList<cVisGroup*>& visGroups) const {
        QString text = QStringLiteral("flags %1 group %2 root %3 vis")
                           .arg(flags & m_flags)
                           .arg(group ? group->id : 0)
                           .arg(root ? root->id : 0);
        for (const cVisGroup* visGroup : visGroups)
            text += QStringLiteral(" %1").arg(visGroup->serial);
        return text;
    }

    void addGroup(const cGroupData* group) {
        add('g', group->id,
            QStringLiteral("flags %1 parent %2 members %3 color %4")
                .arg(group->flags & m_flags)
                .arg(group->parent ? group->parent->id : 0)
                .arg(group->memberCount)
                .arg(group->group->baseColor[0]));
    }

    void addBrush(const cBrushData* brush) {
        add('b', brush->id,
            QStringLiteral("owner %1 %2 reserved %3 color %4 box %5")
                .arg(brush->owner->id)
                .arg(common(brush->flags, brush->group, brush->rootGroup, brush->brush->visGroups))
                .arg(brush->reserved)
                .arg(brush->brush->baseColor[0])
                .arg(floats(brush->mins, 3) + floats(brush->maxs, 3)));
        for (const cFaceData* face : facesOf(brush))
            add('f', face->id,
                QStringLiteral("brush %1 %2").arg(brush->id).arg(dumpFace(face, m_flags)));
    }

    void addEntity(const cEntityData* entity) {
        const QList<cVisGroup*>& visGroups = entity->entity->visGroups;
        QString text = QStringLiteral("%1 %2 key %3 spawn %4 place %5 color %6 kind %7")
                           .arg(QString::fromLocal8Bit(entity->classname),
                                common(entity->flags, entity->group, entity->rootGroup, visGroups),
                                QString::fromLocal8Bit(entity->flagsKey))
                           .arg(entity->spawnFlags)
                           .arg(floats(entity->origin, 3) + floats(entity->angles, 3) +
                                floats(entity->mins, 3) + floats(entity->maxs, 3))
                           .arg(entity->entity->color[0])
                           .arg(entity->attachKind);
        for (const cEpair* pair : epairsOf(entity))
            text += QStringLiteral(" %1=%2").arg(QString::fromLocal8Bit(pair->key),
                                                 QString::fromLocal8Bit(pair->value));
        add('e', entity->id, text);
        for (const cBrushData* brush : brushesOf(entity))
            addBrush(brush);
    }

    uint32_t m_flags;
    QStringList m_lines;
};
} // namespace

QStringList dumpById(const cMap& map, bool withSelection) {
    return cDumpById(map, withSelection).lines();
}

QString firstDifference(const QStringList& expected, const QStringList& got) {
    const int common = std::min(expected.size(), got.size());
    for (int i = 0; i < common; ++i) {
        if (expected.at(i) != got.at(i))
            return QStringLiteral("expected %1\n     got %2").arg(expected.at(i), got.at(i));
    }
    if (expected.size() == got.size())
        return QString();
    return expected.size() > common ? QStringLiteral("missing %1").arg(expected.at(common))
                                    : QStringLiteral("too many: %1").arg(got.at(common));
}

void settle(cMap& map) {
    for (cEntityData* entity : entitiesOf(map.data)) {
        for (cBrushData* brush : brushesOf(entity)) {
            brush->flags |= BF_DIRTY;
            for (cFaceData* face : facesOf(brush))
                face->flags |= FF_DIRTY;
        }
        updateEntity(entity, UM_PLANES);
    }
}

// ---- Invariants

namespace {
class cChecker {
public:
    explicit cChecker(const cMap& map) : m_map(map) {}

    QString run() {
        checkEntities();
        checkGroups();
        checkVisGroups();
        checkSelection();
        return m_problem;
    }

private:
    void fail(const QString& text) {
        if (m_problem.isEmpty())
            m_problem = text;
    }

    void checkPick(int pick, ePickKind kind, const void* record) {
        if (pick < 0)
            return;
        if (m_picks.contains(pick))
            fail(QStringLiteral("pick number %1 twice").arg(pick));
        m_picks.insert(pick);
        const cPickTarget target = m_map.picks.target(pick);
        if (target.kind != kind || target.record != record)
            fail(QStringLiteral("pick number %1 stands for another object").arg(pick));
    }

    void countGroup(const cGroupData* group, const cGroupData* root) {
        if (group)
            ++m_members[group];
        if (root != outermostGroup(const_cast<cGroupData*>(group)))
            fail(QStringLiteral("root group is not the end of the chain"));
    }

    void checkFace(const cFaceData* face, const cBrushData* brush) {
        if (face->brush != brush || face->face->data != face)
            fail(QStringLiteral("face and brush disagree"));
        checkPick(face->face->pickId, ePickKind::Face, face);
        if (m_map.findFaceById(brush, face->id) != face)
            fail(QStringLiteral("face is not found by id"));
        if (face->texture) {
            if (face->texture->useCount < 1)
                fail(QStringLiteral("texture in use counts no user"));
            ++m_textures[face->texture];
        }
    }

    void checkBrush(const cBrushData* brush, const cEntityData* entity) {
        if (brush->owner != entity || brush->brush->data != brush)
            fail(QStringLiteral("brush and entity disagree"));
        checkPick(brush->brush->pickId, ePickKind::Brush, brush);
        if (m_map.findBrushById(nullptr, brush->id) != brush)
            fail(QStringLiteral("brush is not found by id"));
        countGroup(brush->group, brush->rootGroup);
        if (brush->group && !(entity->flags & EF_WORLD))
            fail(QStringLiteral("brush of a solid entity is grouped on its own"));
        for (const cVisGroup* visGroup : brush->brush->visGroups)
            ++m_visMembers[visGroup];
        const cFaceData* last = nullptr;
        for (const cFaceData* face : facesOf(brush)) {
            if (face->prev != last)
                fail(QStringLiteral("face list is broken"));
            last = face;
            checkFace(face, brush);
        }
        if (brush->facesTail != last)
            fail(QStringLiteral("face tail is wrong"));
    }

    void checkEntities() {
        const cEntityData* last = nullptr;
        for (const cEntityData* entity : entitiesOf(m_map.data)) {
            if (entity->prev != last || entity->owner != &m_map.data)
                fail(QStringLiteral("entity list is broken"));
            last = entity;
            if (((entity->flags & EF_WORLD) != 0) != (entity == m_map.data.entities))
                fail(QStringLiteral("the world is not the head"));
            checkPick(entity->entity->pickId, ePickKind::Entity, entity);
            if (m_map.findEntityById(entity->id) != entity)
                fail(QStringLiteral("entity is not found by id"));
            if (entity->entity->entityClass && !entity->flagsKey)
                fail(QStringLiteral("entity with a class lacks its flags key"));
            countGroup(entity->group, entity->rootGroup);
            for (const cVisGroup* visGroup : entity->entity->visGroups)
                ++m_visMembers[visGroup];
            const cBrushData* lastBrush = nullptr;
            for (const cBrushData* brush : brushesOf(entity)) {
                if (brush->prev != lastBrush)
                    fail(QStringLiteral("brush list is broken"));
                lastBrush = brush;
                checkBrush(brush, entity);
            }
            if (entity->brushesTail != lastBrush)
                fail(QStringLiteral("brush tail is wrong"));
        }
        if (m_map.data.entitiesTail != last)
            fail(QStringLiteral("entity tail is wrong"));
    }

    void checkGroups() {
        for (const cGroupData* group : groupsOf(m_map.data)) {
            checkPick(group->group->pickId, ePickKind::Group, group);
            if (group->parent)
                ++m_members[group->parent];
            if (m_map.findGroupById(group->id) != group)
                fail(QStringLiteral("group is not found by id"));
        }
        for (const cGroupData* group : groupsOf(m_map.data)) {
            if (group->memberCount != m_members[group])
                fail(QStringLiteral("group %1 counts %2 members, has %3")
                         .arg(group->id)
                         .arg(group->memberCount)
                         .arg(m_members[group]));
        }
    }

    void checkVisGroups() {
        for (auto it = m_map.visGroups.begin(); it != m_map.visGroups.end(); ++it) {
            if (it.value()->objectCount != m_visMembers[it.value()])
                fail(QStringLiteral("visgroup %1 counts wrong").arg(it.key()));
        }
    }

    template<class Range> int checkList(const Range& range) {
        int count = 0;
        for (const auto* item : range) {
            if (!isSelected(item))
                fail(QStringLiteral("object in a selection list lacks the flag"));
            ++count;
        }
        return count;
    }

    void checkSelection() {
        int entities = 0, brushes = 0, faces = 0, groups = 0;
        for (const cEntityData* entity : entitiesOf(m_map.data)) {
            entities += isSelected(entity) ? 1 : 0;
            for (const cBrushData* brush : brushesOf(entity)) {
                brushes += isSelected(brush) ? 1 : 0;
                for (const cFaceData* face : facesOf(brush))
                    faces += isSelected(face) ? 1 : 0;
            }
        }
        for (const cGroupData* group : groupsOf(m_map.data))
            groups += isSelected(group) ? 1 : 0;
        if (entities != checkList(selectedEntitiesOf(m_map.data)) ||
            brushes != checkList(selectedBrushesOf(m_map.data)) ||
            faces != checkList(selectedFacesOf(m_map.data)) ||
            groups != checkList(selectedGroupsOf(m_map.data)))
            fail(QStringLiteral("selection lists and flags disagree"));
    }

    const cMap& m_map;
    QString m_problem;
    QSet<int> m_picks;
    std::map<const cGroupData*, int> m_members;
    std::map<const cVisGroup*, int> m_visMembers;
    std::map<const cTexture*, int> m_textures;
};
} // namespace

QString checkMapInvariants(const cMap& map) {
    return cChecker(map).run();
}

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
#include "support/tMapText.h"
#include "support/tMath.h"
#include "support/tVec.h"

#include <QSet>
#include <algorithm>
#include <map>
#include <utility>
#include <vector>

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

bool isClosed(const cBrushData* brush, float tolerance) {
    std::vector<std::pair<const float*, const float*>> edges;
    for (const cFaceData* face : facesOf(brush))
        for (int i = 0; i < face->vertexCount; ++i)
            edges.emplace_back(face->vertices[i].xyz,
                               face->vertices[(i + 1) % face->vertexCount].xyz);
    const auto meet = [tolerance](const float* a, const float* b) {
        float apart[3];
        vecSubtract(a, b, apart);
        return vecLength(apart) < tolerance;
    };
    return std::all_of(edges.begin(), edges.end(), [&](const auto& edge) {
        return std::any_of(edges.begin(), edges.end(), [&](const auto& other) {
            return meet(edge.first, other.second) && meet(edge.second, other.first);
        });
    });
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
        while (group && group->parent)
            group = group->parent;
        if (root != group)
            fail(QStringLiteral("root group is not the end of the chain"));
    }

    void checkFace(const cFaceData* face, const cBrushData* brush) {
        if (face->brush != brush || face->face->data != face)
            fail(QStringLiteral("face and brush disagree"));
        checkPick(face->face->pickId, ePickKind::Face, face);
        if (m_map.findFaceById(brush, face->id) != face)
            fail(QStringLiteral("face is not found by id"));
        if (face->texture && face->texture->useCount < 1)
            fail(QStringLiteral("texture in use counts no user"));
    }

    // Around the corners, whatever way the brush came about.
    void checkBounds(const cBrushData* brush) {
        float mins[3], maxs[3];
        T_ClearBounds(mins, maxs);
        int corners = 0;
        for (const cFaceData* face : facesOf(brush)) {
            for (int i = 0; i < face->vertexCount; ++i, ++corners)
                T_AddPointToBounds(face->vertices[i].xyz, mins, maxs);
        }
        // By value: which of two zeros it is hangs on the order of the faces.
        if (corners > 0 &&
            !(std::equal(mins, mins + 3, brush->mins) && std::equal(maxs, maxs + 3, brush->maxs)))
            fail(QStringLiteral("brush %1 has other bounds than its corners").arg(brush->id));
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
        checkBounds(brush);
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

    // As many objects in the list as have the flag, and those.
    template<class Range> void checkList(const Range& range, int flagged) {
        for (const auto* item : range) {
            if (!isSelected(item))
                fail(QStringLiteral("object in a selection list lacks the flag"));
            --flagged;
        }
        if (flagged != 0)
            fail(QStringLiteral("selection lists and flags disagree"));
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
        checkList(selectedEntitiesOf(m_map.data), entities);
        checkList(selectedBrushesOf(m_map.data), brushes);
        checkList(selectedFacesOf(m_map.data), faces);
        checkList(selectedGroupsOf(m_map.data), groups);
    }

    const cMap& m_map;
    QString m_problem;
    QSet<int> m_picks;
    std::map<const cGroupData*, int> m_members;
    std::map<const cVisGroup*, int> m_visMembers;
};
} // namespace

QString checkMapInvariants(const cMap& map) {
    return cChecker(map).run();
}

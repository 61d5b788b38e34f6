// SPDX-License-Identifier: MIT
#include "support/tRandomWalk.h"

#include "document/tHistory.h"
#include "document/tMapLists.h"
#include "document/tVisGroup.h"
#include "operations/tPrimitives.h"
#include "operations/tStructure.h"
#include "operations/tTransform.h"
#include "support/tLaw.h"
#include "support/tMapTools.h"
#include "support/tMath.h"

#include <algorithm>
#include <cmath>

unsigned firstWalkSeed() {
    bool isGiven = false;
    const unsigned seed = qEnvironmentVariable("KARVEX_WALK_SEED").toUInt(&isGiven);
    return isGiven ? seed : std::random_device()();
}

cRandomWalk::cRandomWalk(cTestHost& host, cMap& map, unsigned seed)
    : m_host(host), m_map(map), m_random(seed) {
    T_RandomSeed(seed);
    while (m_map.visGroups.size() < 2)
        m_map.createVisGroup("made");
    m_fewest = objectCount() - 10;
    m_most = m_fewest + 35;
    m_isValid = checkMapWhole(m_map).isEmpty();
}

QString cRandomWalk::runSegment(int operations) {
    m_map.history->clear();
    m_states.clear();
    m_states.push_back(stateOf(m_map, false));
    m_at = 0;
    const std::string before = exportText ? exportText() : std::string();
    for (int i = 0; i < operations && m_problem.isEmpty(); ++i) {
        if (chance(4))
            wander();
        else
            operate();
    }
    while (m_at + 1 < m_states.size() && m_problem.isEmpty())
        forth();
    const std::string after = exportText ? exportText() : std::string();
    while (m_at > 0 && m_problem.isEmpty())
        back();
    compareText("undo of all", before);
    while (m_at + 1 < m_states.size() && m_problem.isEmpty())
        forth();
    compareText("redo of all", after);
    return m_problem.isEmpty() ? QString()
                               : m_problem + QLatin1Char('\n') +
                                     QStringList(m_trail.mid(qMax(0, m_trail.size() - 25)))
                                         .join(QStringLiteral(", "));
}

void cRandomWalk::compareText(const char* what, const std::string& expected) {
    if (exportText && m_problem.isEmpty() && exportText() != expected)
        m_problem = QStringLiteral("%1: another text").arg(QString::fromLatin1(what));
}

void cRandomWalk::compare(const char* what) {
    const QString difference = firstDifference(m_states[m_at], stateOf(m_map, false));
    QString problem = difference;
    if (problem.isEmpty())
        problem = m_isValid && !isReal ? checkMapWhole(m_map) : checkMapInvariants(m_map);
    if (problem.isEmpty() && check)
        problem = check();
    if (!problem.isEmpty())
        m_problem = QStringLiteral("%1 to state %2: %3")
                        .arg(QString::fromLatin1(what))
                        .arg(m_at)
                        .arg(problem);
}

void cRandomWalk::back() {
    m_trail << QStringLiteral("undo ") + QString::fromLatin1(m_map.history->undoName());
    m_map.history->undo();
    --m_at;
    compare("undo");
}

void cRandomWalk::forth() {
    m_trail << QStringLiteral("redo ") + QString::fromLatin1(m_map.history->redoName());
    m_map.history->redo();
    ++m_at;
    compare("redo");
}

void cRandomWalk::wander() {
    for (int i = number(1, 3); i > 0 && m_problem.isEmpty(); --i) {
        if (chance(2) && m_at > 0)
            back();
        else if (m_at + 1 < m_states.size())
            forth();
    }
}

void cRandomWalk::operate() {
    choose();
    const uint32_t stepBefore = m_map.history->lastStep();
    m_trail << change();
    if (m_map.history->lastStep() != stepBefore) {
        m_states.resize(m_at + 1);
        m_states.push_back(stateOf(m_map, false));
        ++m_at;
    }
    compare("do");
}

// ---- Selection

void cRandomWalk::choose() {
    if (chance(12)) {
        m_host.IgnoreGroups = !m_host.IgnoreGroups;
        m_map.updateSelectionMode();
        m_map.clearSelectionFull();
    }
    if (chance(2))
        m_map.clearSelection();
    if (chance(3)) {
        float mins[3], maxs[3];
        for (int i = 0; i < 3; ++i) {
            mins[i] = coordinate() - 256;
            maxs[i] = mins[i] + float(number(16, 700));
        }
        m_map.selectInBox(mins, maxs, number(0, 2));
    } else {
        for (int i = number(1, 4); i > 0; --i)
            m_map.selectByPick(number(1, m_map.picks.high()), true);
    }
}

int cRandomWalk::objectCount() const {
    int count = 0;
    for (const cEntityData* entity : entitiesOf(m_map.data)) {
        ++count;
        for ([[maybe_unused]] const cBrushData* brush : brushesOf(entity))
            ++count;
    }
    return count;
}

// ---- Changes

QString cRandomWalk::change() {
    if (!m_map.hasSelection())
        return QStringLiteral("nothing");
    const int count = objectCount();
    switch (number(0, 18)) {
    case 0:
    case 1:
    case 2:
        return transform();
    case 3:
        if (count > m_most)
            return transform();
        return clone();
    case 4:
        flipSelection(m_map, number(0, 2));
        return QStringLiteral("flip");
    case 5:
        alignSelection(m_map, number(0, 2), number(0, 1));
        return QStringLiteral("align");
    case 6:
        snapSelection(m_map, 16, chance(2));
        return QStringLiteral("snap");
    case 7:
    case 8:
        if (m_map.updateSelectionMode() == MODE_GROUPS)
            groupSelection(m_map);
        return QStringLiteral("group");
    case 9:
        if (m_map.updateSelectionMode() == MODE_GROUPS)
            ungroupSelection(m_map);
        return QStringLiteral("ungroup");
    case 10:
        return tie();
    case 11:
        moveSelectionToWorld(m_map);
        return QStringLiteral("move to world");
    case 13:
        m_clipboard.copySelection(m_map, false);
        return QStringLiteral("copy");
    case 14:
        if (count < m_fewest)
            return transform();
        m_clipboard.cutSelection(m_map, false);
        return QStringLiteral("cut");
    case 18:
        m_clipboard.restoreCut();
        return QStringLiteral("restore");
    case 15:
    case 16:
        return count > m_most ? transform() : paste();
    case 17:
        return count > m_most ? transform() : create();
    case 12:
        setSelectionDetail(m_map, chance(2));
        return QStringLiteral("detail");
    default:
        if (count < m_fewest)
            return transform();
        deleteSelection(m_map);
        return QStringLiteral("delete");
    }
}

void cRandomWalk::selectionBounds(float* mins, float* maxs) const {
    T_ClearBounds(mins, maxs);
    for (const cBrushData* brush : selectedBrushesOf(m_map.data))
        T_AddBoxToBounds(brush->mins, brush->maxs, mins, maxs);
    for (const cEntityData* entity : selectedEntitiesOf(m_map.data))
        T_AddBoxToBounds(entity->mins, entity->maxs, mins, maxs);
}

static void identity(float* matrix) {
    for (int i = 0; i < 16; ++i)
        matrix[i] = i % 5 == 0 ? 1.0f : 0.0f;
}

// Far out things come home, and nothing grows or shrinks beyond use.
QString cRandomWalk::transform() {
    float mins[3], maxs[3], center[3], matrix[16];
    selectionBounds(mins, maxs);
    identity(matrix);
    bool isSmall = true, isLarge = true;
    for (int i = 0; i < 3; ++i) {
        center[i] = (mins[i] + maxs[i]) * 0.5f;
        isLarge &= maxs[i] - mins[i] > 64;
        isSmall &= maxs[i] - mins[i] < 1024;
        matrix[i * 4 + 3] = std::round(-center[i] / 64) * 16 + float(number(-8, 8) * 16);
    }
    m_host.TextureLock = chance(2);
    m_host.TextureLockScale = chance(2);
    cTransformRecord record;
    record.center = chance(4) ? nullptr : center;
    record.matrix = matrix;
    QString name = QStringLiteral("move");
    const int kind = number(0, 4);
    if (kind == 1) {
        name = rotation(matrix);
    } else if (kind == 2 && (isSmall || isLarge)) {
        name = QStringLiteral("scale");
        matrix[number(0, 2) * 5] = isSmall ? 1.5f : 0.75f;
    } else if (kind == 3) {
        name = QStringLiteral("shear");
        const int row = number(0, 2);
        matrix[row * 4 + (row + number(1, 2)) % 3] = float(number(-2, 2)) * 0.125f;
    } else if (kind == 4 && isSmall) {
        name = QStringLiteral("stretch");
        identity(matrix);
        const int axis = number(0, 2);
        matrix[axis * 4 + 3] = 32;
        record.sideMask = 1u << (axis + 3);
    }
    transformSelection(m_map, record);
    return name;
}

QString cRandomWalk::rotation(float* matrix) {
    const float angle =
        float(chance(2) ? number(1, 3) * 90 : number(1, 719)) * 0.0087266463f * 2.0f;
    const int a = number(0, 2), b = (a + 1) % 3;
    matrix[a * 5] = matrix[b * 5] = std::cos(angle);
    matrix[b * 4 + a] = std::sin(angle);
    matrix[a * 4 + b] = -std::sin(angle);
    return QStringLiteral("rotate");
}

QString cRandomWalk::clone() {
    float matrix[16];
    identity(matrix);
    matrix[3] = float(number(-4, 4) * 16);
    matrix[7] = 64;
    cTransformRecord record;
    record.matrix = matrix;
    m_host.KeepCloneVisGroup = chance(2);
    cloneSelection(m_map, record);
    return QStringLiteral("clone");
}

QString cRandomWalk::paste() {
    const float target[3] = {coordinate(), coordinate(), coordinate()};
    const float offset[3] = {64, float(number(-4, 4) * 16), 0};
    const float rotation[3] = {0, 0, float(number(-4, 4) * 30)};
    cPasteOptions options;
    options.copies = number(1, 2);
    options.target = chance(2) ? target : nullptr;
    options.offset = chance(2) ? offset : nullptr;
    options.rotation = chance(2) ? rotation : nullptr;
    options.groupCopies = chance(3);
    m_clipboard.paste(m_map, options, "Paste Special");
    return QStringLiteral("paste");
}

QString cRandomWalk::create() {
    cPrimitiveParams params = {};
    params.map = &m_map.data;
    qstrncpy(params.face.name, "wall", sizeof params.face.name);
    params.face.uScale = params.face.vScale = 1;
    params.sides = number(3, 12);
    params.flags = 1u | (chance(2) ? 2u : 0u);
    for (int i = 0; i < 3; ++i) {
        params.axes[i] = i;
        params.mins[i] = coordinate();
        params.maxs[i] = params.mins[i] + float(number(5, 20) * 16);
    }
    switch (number(0, 4)) {
    case 0:
        createBlock(params);
        return QStringLiteral("block");
    case 1:
        createWedge(params);
        return QStringLiteral("wedge");
    case 2:
        createCylinder(params);
        return QStringLiteral("cylinder");
    case 3:
        createSpike(params);
        return QStringLiteral("spike");
    default:
        createArch(params, {16, 3, 120, 0, number(0, 1) * 8, chance(2), chance(2)});
        return QStringLiteral("arch");
    }
}

QString cRandomWalk::tie() {
    if (!m_map.data.selectedBrushes)
        return QStringLiteral("nothing");
    for (cEntityData* entity : selectedEntitiesOf(m_map.data)) {
        if (entity->flags & EF_POINT)
            selectedRemove(m_map.data.selectedEntities, entity);
    }
    cEntityData* owner = m_map.data.selectedBrushes->owner;
    const bool toOwner = chance(2) && !(owner->flags & EF_WORLD);
    tieSelectionToEntity(m_map, "func_door", toOwner ? owner : nullptr);
    return QStringLiteral("tie");
}

void cRandomWalk::changeWithoutHistory() {
    choose();
    cVisGroup* visGroup = m_map.visGroups.first();
    switch (number(0, 5)) {
    case 0:
        m_map.hideSelection();
        break;
    case 1:
        m_map.assignVisGroup(m_map.visGroups.lastKey());
        break;
    case 2:
        m_map.setVisGroupVisible(visGroup);
        break;
    case 3:
        m_map.markVisGroup(visGroup->id);
        break;
    case 4:
        m_map.assignVisGroup(visGroup->id);
        break;
    default:
        m_map.showHidden();
        m_map.selectAll();
        break;
    }
    m_map.computeVisGroupVisibility(); // an empty one that was shown by hand
}

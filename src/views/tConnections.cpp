// SPDX-License-Identifier: MIT
// Lines from each entity with a target to the entities that answer to that name.
#include "views/tMapPainter.h"

#include "document/tEntity.h"
#include "document/tMap.h"
#include "document/tMapContext.h"
#include "document/tMapLists.h"
#include "support/tVec.h"

#include <QByteArray>
#include <QMultiHash>
#include <cmath>
#include <cstring>

static constexpr float HEAD_SPACING = 256.0f; // units of line a head, about
static constexpr float HEAD_LENGTH = 8.0f;
static constexpr float HEAD_HALF_WIDTH = 6.0f;
static constexpr float MIN_LENGTH = 0.01f;

using cTargetNames = QMultiHash<QByteArray, cEntityData*>;

static QByteArray nameOf(const char* value) {
    return QByteArray::fromRawData(value, int(strlen(value)));
}

// A name without the character in front that only says how to fire it.
static const char* withoutPrefix(const char* target, const cMapProfile& profile) {
    const auto& prefixes = profile.targetPrefixCharacters;
    const size_t count = strnlen(prefixes, sizeof prefixes);
    return *target && memchr(prefixes, *target, count) ? target + 1 : target;
}

static cTargetNames visibleTargets(const cMap& map) {
    cTargetNames names;
    for (cEntityData* entity : entitiesOf(map.data)) {
        const char* name = getEpairValue(entity, "targetname");
        if (name && *name && entityVisible(entity))
            names.insert(nameOf(name), entity);
    }
    return names;
}

static void endPoint(const cEntityData* entity, float* out) {
    if (!entity->brushes) {
        vecCopy(entity->origin, out);
        return;
    }
    vecAdd(entity->mins, entity->maxs, out);
    vecScale(out, 0.5f, out);
}

void cMapPainter::drawConnections() {
    const cTargetNames names = visibleTargets(m_map);
    const cMapProfile& profile = m_map.context.profile();
    for (const cEntityData* source : entitiesOf(m_map.data)) {
        const char* target = getEpairValue(source, "target");
        if (!target || !*target || !entityVisible(source))
            continue;
        float start[3], end[3];
        endPoint(source, start);
        const QByteArray name = nameOf(withoutPrefix(target, profile));
        for (auto it = names.constFind(name); it != names.constEnd() && it.key() == name; ++it) {
            endPoint(it.value(), end);
            drawConnection(start, end, it.value()->entity->color);
        }
    }
    m_batch.flush();
}

// The line, and arrow heads along it at even distances.
void cMapPainter::drawConnection(const float* start, const float* end, const uint8_t* rgba) {
    float direction[3], side[3];
    vecSubtract(end, start, direction);
    const float length = vecNormalize(direction);
    if (length < MIN_LENGTH)
        return;
    m_batch.line(start, end, rgba);
    vecCross(direction, m_view.forward, side);
    if (vecNormalize(side) == 0)
        return; // the line is seen end on
    const int count = int(std::lround(length / HEAD_SPACING)) + 1;
    for (int i = 0; i < count; ++i) {
        float tip[3], base[3], corner[3];
        vecMA(start, length * float(2 * i + 1) / float(2 * count), direction, tip);
        vecMA(tip, -HEAD_LENGTH, direction, base);
        for (const float half : {-HEAD_HALF_WIDTH, HEAD_HALF_WIDTH}) {
            vecMA(base, half, side, corner);
            m_batch.line(tip, corner, rgba);
        }
    }
}

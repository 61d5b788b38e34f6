// SPDX-License-Identifier: MIT
#include "operations/tEntityEdits.h"

#include "document/tEntity.h"
#include "document/tEntityAngles.h"
#include "document/tEntityKeys.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "support/tConsole.h"
#include "support/tVec.h"

#include <QHash>
#include <QVector>
#include <algorithm>
#include <cstring>
#include <strings.h>

// Edits those of the entities that the test finds something to do for. A step captures all of them:
// another edit that joins it may find more to do.
template<class Test, class Edit>
static void editEntities(cMap& map, const char* title, eStep step, const cEntityList& entities,
                         Test needsEdit, Edit edit) {
    cEntityList changed;
    std::copy_if(entities.begin(), entities.end(), std::back_inserter(changed), needsEdit);
    if (changed.empty())
        return;
    const cEditStep edited(map, title, step);
    edited.capture([&](cHistory& history) {
        for (const cEntityData* entity : entities)
            history.entityChanged(entity);
    });
    for (cEntityData* entity : changed)
        edit(entity);
}

static bool isText(const char* text, const QByteArray& other) {
    return strcasecmp(text ? text : "", other.constData()) == 0;
}

// ---- Keys

void setKeyvalue(cMap& map, const cEntityList& entities, const QByteArray& key,
                 const QByteArray& value, eEmptyValue empty, eStep step) {
    if (value == NO_CHANGE || isText("classname", key))
        return;
    editEntities(
        map, "Change Keyvalue", step, entities,
        [&](const cEntityData* entity) {
            const cEpair* pair = getEpair(entity, key.constData());
            return pair ? !isText(pair->value, value) : !value.isEmpty();
        },
        [&](cEntityData* entity) {
            if (value.isEmpty() && empty == eEmptyValue::Erases)
                eraseKey(entity, key.constData());
            else
                writeKey(entity, key.constData(), value.constData());
        });
}

bool renameKeyvalue(cMap& map, const cEntityList& entities, const QByteArray& key,
                    const QByteArray& newKey, eStep step) {
    if (newKey.isEmpty() || isText("classname", newKey))
        return false;
    const bool sameName = isText(key.constData(), newKey); // in another case
    for (const cEntityData* entity : entities)
        if (!sameName && getEpair(entity, newKey.constData()))
            return false;
    editEntities(
        map, "Change Keyvalue", step, entities,
        [&](const cEntityData* entity) {
            const cEpair* pair = getEpair(entity, key.constData());
            return pair && newKey != pair->key;
        },
        [&](cEntityData* entity) { renameKey(entity, key.constData(), newKey.constData()); });
    return true;
}

static QByteArray freeKey(const cEntityData* entity, const QByteArray& key) {
    QByteArray name = key;
    for (int number = 1; getEpair(entity, name.constData()); ++number)
        name = key + '#' + QByteArray::number(number);
    return name;
}

QByteArray addKeyvalue(cMap& map, const cEntityList& entities, const QByteArray& key,
                       const QByteArray& value) {
    if (key.isEmpty() || isText("classname", key))
        return QByteArray();
    const QByteArray first = entities.empty() ? key : freeKey(entities.front(), key);
    editEntities(
        map, "Add Keyvalue", eStep::New, entities, [](const cEntityData*) { return true; },
        [&](cEntityData* entity) {
            writeKey(entity, freeKey(entity, key).constData(), value.constData());
        });
    return first;
}

void deleteKeyvalue(cMap& map, const cEntityList& entities, const QByteArray& key) {
    editEntities(
        map, "Delete Keyvalue", eStep::New, entities,
        [&](const cEntityData* entity) { return getEpair(entity, key.constData()) != nullptr; },
        [&](cEntityData* entity) { eraseKey(entity, key.constData()); });
}

// ---- Flags, angles, class

void setEntityFlags(cMap& map, const cEntityList& entities, uint32_t mask, uint32_t value) {
    const auto wanted = [&](const cEntityData* entity) {
        return (entity->spawnFlags & ~mask) | (value & mask);
    };
    editEntities(
        map, "Change Flags", eStep::New, entities,
        [&](const cEntityData* entity) { return wanted(entity) != entity->spawnFlags; },
        [&](cEntityData* entity) { writeSpawnFlags(entity, wanted(entity)); });
}

void setEntityAngle(cMap& map, const cEntityList& entities, int value, eStep step) {
    static constexpr int UP = -1, DOWN = -2;
    const auto wanted = [&](const cEntityData* entity, float* angles) {
        vecCopy(entity->angles, angles);
        if (value == UP || value == DOWN) {
            vecSet(angles, value == UP ? -90.0f : 90.0f, 0.0f, 0.0f);
            return;
        }
        const bool upright = std::fabs(angles[0]) == 90 && angles[1] == 0 && angles[2] == 0;
        if (upright)
            angles[0] = 0;
        angles[1] = float(value);
    };
    editEntities(
        map, "Change Angle", step, entities,
        [&](const cEntityData* entity) {
            float angles[3];
            wanted(entity, angles);
            return memcmp(angles, entity->angles, sizeof angles) != 0;
        },
        [&](cEntityData* entity) {
            float angles[3];
            wanted(entity, angles);
            setEntityAngles(entity, angles);
            updateEntity(entity, 0);
        });
}

void changeEntityClass(cMap& map, const cEntityList& entities, const QByteArray& classname) {
    editEntities(
        map, "Change Class", eStep::New, entities,
        [&](const cEntityData* entity) {
            return !(entity->flags & EF_WORLD) && classname != entity->classname;
        },
        [&](cEntityData* entity) { changeClass(entity, classname.constData()); });
}

// ---- Text

static constexpr char MARKER[] = "!!EPAIRS";

static QByteArray pairLine(const QByteArray& key, const QByteArray& value) {
    return '"' + key + "\" \"" + value + '"';
}

QByteArray copyKeyvalues(const cEntityList& entities) {
    QVector<QByteArray> keys;
    QHash<QByteArray, QByteArray> values;
    bool sameClass = !entities.empty();
    for (const cEntityData* entity : entities) {
        sameClass &= strcmp(entity->classname, entities.front()->classname) == 0;
        for (const cEpair* pair : epairsOf(entity)) {
            if (isText(pair->key, flagsKeyOf(entity)))
                continue;
            const auto known = values.find(pair->key);
            if (known == values.end()) {
                keys += pair->key;
                values.insert(pair->key, pair->value);
            } else if (*known != pair->value) {
                *known = NO_CHANGE;
            }
        }
    }
    QByteArray text = QByteArray(MARKER) + '\n';
    if (sameClass)
        text += pairLine("classname", entities.front()->classname) + '\n';
    for (int i = 0; i < keys.size(); ++i)
        text += (i ? "\n" : "") + pairLine(keys[i], values.value(keys[i]));
    return text;
}

namespace {
struct cPastedPair {
    QByteArray key;
    QByteArray value;
};
} // namespace

// The key ends at its first quote, the value at the last one of the line.
static bool readPair(const QByteArray& line, cPastedPair& pair) {
    static constexpr int MOST_KEY = 255, MOST_VALUE = 1535;
    const int middle = line.indexOf('"', 1);
    const int from = line.indexOf('"', middle + 1), to = line.lastIndexOf('"');
    if (!line.startsWith('"') || middle < 2 || from < 0 || to <= from)
        return false;
    if (!line.mid(middle + 1, from - middle - 1).trimmed().isEmpty())
        return false;
    pair = {line.mid(1, middle - 1).left(MOST_KEY),
            line.mid(from + 1, to - from - 1).left(MOST_VALUE)};
    return true;
}

bool pasteKeyvalues(cMap& map, const cEntityList& entities, const QByteArray& text,
                    QByteArray* classname) {
    QList<QByteArray> lines = text.split('\n');
    if (lines.takeFirst().trimmed() != MARKER)
        return false;
    QVector<cPastedPair> pairs;
    int unread = 0;
    for (const QByteArray& line : qAsConst(lines)) {
        cPastedPair pair;
        if (!readPair(line.trimmed(), pair))
            unread += line.trimmed().isEmpty() ? 0 : 1;
        else if (isText("classname", pair.key))
            *classname = pair.value;
        else if (pair.value != NO_CHANGE)
            pairs += pair;
    }
    if (unread)
        Warning("%i pasted line(s) are no keyvalues", unread);
    const auto differs = [](const cEntityData* entity, const cPastedPair& pair) {
        const cEpair* known = getEpair(entity, pair.key.constData());
        return !known || !isText(known->value, pair.value);
    };
    editEntities(
        map, "Paste Keyvalues", eStep::New, entities,
        [&](const cEntityData* entity) {
            return std::any_of(pairs.begin(), pairs.end(),
                               [&](const cPastedPair& pair) { return differs(entity, pair); });
        },
        [&](cEntityData* entity) {
            for (const cPastedPair& pair : qAsConst(pairs))
                if (differs(entity, pair))
                    writeKey(entity, pair.key.constData(), pair.value.constData());
        });
    return true;
}

// SPDX-License-Identifier: MIT
// A class of entities as a game data file declares it. Entities point at these records; the game
// data reader makes and owns them.
#pragma once

#include <QString>
#include <QVector>
#include <cstdint>

enum eClassKind { CK_WORLD = 0, CK_BASE = 1, CK_GROUP = 2, CK_SOLID = 3, CK_POINT = 4 };

// cEntityClass::flags; a set bit also means that the value was given and is not inherited.
enum {
    ECF_SIZE = 0x001,
    ECF_OFFSET = 0x002,
    ECF_COLOR = 0x004,
    ECF_SPRITE = 0x008,
    ECF_STUDIO = 0x010,
    ECF_DECAL = 0x020,
    ECF_ANGLE = 0x040,
    ECF_LIGHT = 0x080,
    ECF_BODY = 0x100,
    ECF_SKIN = 0x200,
    ECF_SEQUENCE = 0x400,
    ECF_NOSCALE = 0x800
};

// SmartVariable kinds.
enum eVariableType {
    VT_STRING,
    VT_INTEGER,
    VT_FLOAT,
    VT_FLAGS,
    VT_CHOICES,
    VT_COLOR1,
    VT_COLOR255,
    VT_TARGET_SOURCE,
    VT_TARGET_DESTINATION,
    VT_SPRITE,
    VT_STUDIO,
    VT_SOUND,
    VT_DECAL,
    VT_TEXTURE
};

struct cEntityChoice {
    QString title;
    QString value; // of a flags variable: the number of the mask's highest bit, -1 for a mask of 0
    QString help;
};

// One key of a class.
struct cEntityVariable {
    int32_t type = VT_STRING;
    QString name;
    QString title;
    QString help;
    QString defaultValue; // of a flags variable: decimal sum of the masks that default to on
    QVector<cEntityChoice> choices;
};

struct cEntityClass {
    int32_t kind = CK_BASE;
    uint32_t flags = 0; // ECF_ bits
    QString name;
    QString description;
    QString helpLink;
    QString iconSprite;
    QString sprite;
    QString studio;
    QString decal;
    float mins[3] = {-8, -8, -8};
    float maxs[3] = {8, 8, 8};
    float offset[3] = {0, 0, 0};
    uint8_t color[4] = {220, 30, 220, 255};
    int32_t body = 0;
    int32_t skin = 0;
    int32_t sequence = 0;
    QVector<cEntityVariable> variables; // declared and inherited, in order
    cEntityClass* group = nullptr;      // not owned
};

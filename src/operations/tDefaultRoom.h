// SPDX-License-Identifier: MIT
// The closed room that a new map may begin with, and the entities placed one by one.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <QByteArray>

class cMap;
struct cEntityClass;

// What the dialog of a new map asks for; kept from one map to the next. Inner sizes in units.
struct cRoomShape {
    int x = 512;
    int y = 512;
    int z = 160;
    QByteArray wall; // texture names, empty for "notexture"
    QByteArray ceiling;
    QByteArray floor;
};

// Six sealed brushes in the world, the profile's player start and its room entity as a light.
// Opens no history step: the map begins with it. False without a world.
bool createDefaultRoom(cMap& map, const cRoomShape& shape);

// A point entity of the class, its origin moved from the point by the class's offset; it becomes
// the selection. "Create Entity". Null without a class.
cEntityData* createEntity(cMap& map, const cEntityClass* entityClass, const float* point,
                          bool randomYaw);

// SPDX-License-Identifier: MIT
// Edits of the properties of entities, one or many alike. Each is one step of the history, which
// captures the entities before the change; none opens a step with nothing to change. Keys compare
// without regard to case; a value that differs in case alone is not written.
#pragma once

#include "operations/tEditStep.h"
#include "plugininterface/tPluginInterface.h"

#include <QByteArray>
#include <vector>

using cEntityList = std::vector<cEntityData*>;

// Stands for values that differ; written back it changes nothing.
constexpr char NO_CHANGE[] = "(no change)";

enum class eEmptyValue { Erases, Stays }; // what an empty text does to a key

// "Change Keyvalue". Entities without the key get it, unless the value is empty.
void setKeyvalue(cMap& map, const cEntityList& entities, const QByteArray& key,
                 const QByteArray& value, eEmptyValue empty, eStep step = eStep::New);
// "Change Keyvalue". False: the new key is empty or "classname", or one of the entities has it.
bool renameKeyvalue(cMap& map, const cEntityList& entities, const QByteArray& key,
                    const QByteArray& newKey, eStep step = eStep::New);
// "Add Keyvalue". An entity that has the key gets the first of key#1, key#2 that it lacks; gives
// the name that the first entity got. An empty key and "classname" are refused: an empty name.
QByteArray addKeyvalue(cMap& map, const cEntityList& entities, const QByteArray& key,
                       const QByteArray& value);
void deleteKeyvalue(cMap& map, const cEntityList& entities, const QByteArray& key); // "Delete ..."

// "Change Flags": the bits of mask, of which there are 24, become those of value.
void setEntityFlags(cMap& map, const cEntityList& entities, uint32_t mask, uint32_t value);
// "Change Angle": the yaw in degrees, or -1 for up and -2 for down.
void setEntityAngle(cMap& map, const cEntityList& entities, int value, eStep step = eStep::New);
void changeEntityClass(cMap& map, const cEntityList& entities, const QByteArray& classname);

// ---- The clipboard's text

// A first line that names it, the class if all have one, then a line a key of any of them.
QByteArray copyKeyvalues(const cEntityList& entities);
// "Paste Keyvalues". False, and nothing changes, for another text. A line that is no pair is left
// out, with one warning for all. classname, if the text names one, is for the caller to decide.
bool pasteKeyvalues(cMap& map, const cEntityList& entities, const QByteArray& text,
                    QByteArray* classname);

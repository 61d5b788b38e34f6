// SPDX-License-Identifier: MIT
// Name and colour of a visgroup, and membership of objects in it.
#include "document/tVisGroup.h"

#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tMapWatcher.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tMath.h"
#include "support/tSystem.h"

#include <QSet>

static uint32_t g_lastSerial = 0;

cVisGroup::cVisGroup(const char* nameText) : name(Mem_StrDup(nameText)), serial(++g_lastSerial) {
    const uint8_t* min = g_host->schemeColor(COLOR_GROUP_RANDOM_MIN);
    const uint8_t* max = g_host->schemeColor(COLOR_GROUP_RANDOM_MAX);
    for (int i = 0; i < 3; ++i)
        color[i] = uint8_t(((T_RandomLong(0, 255) * (max[i] - min[i])) >> 8) + min[i]);
    color[3] = 255;
}

cVisGroup::~cVisGroup() {
    Mem_Free(name);
}

void cVisGroup::setName(const char* text) {
    char* copy = Mem_StrDup(text);
    Mem_Free(name);
    name = copy;
}

static void addMember(QList<cVisGroup*>& list, cVisGroup* visGroup) {
    if (list.contains(visGroup))
        return;
    list.append(visGroup);
    ++visGroup->objectCount;
}

static void addMembers(QList<cVisGroup*>& list, const QList<cVisGroup*>& added) {
    QSet<cVisGroup*> present(list.begin(), list.end());
    for (cVisGroup* visGroup : added) {
        if (present.contains(visGroup))
            continue;
        present.insert(visGroup);
        list.append(visGroup);
        ++visGroup->objectCount;
    }
}

// False: it was none.
static bool removeMember(QList<cVisGroup*>& list, cVisGroup* visGroup) {
    const int removed = list.removeAll(visGroup);
    visGroup->objectCount -= removed;
    return removed > 0;
}

static void dropMembers(QList<cVisGroup*>& list) {
    for (cVisGroup* visGroup : list)
        --visGroup->objectCount;
    list.clear();
}

void cEntity::addToVisGroup(cVisGroup* visGroup) {
    addMember(visGroups, visGroup);
    noteChange(data);
}
void cEntity::addToVisGroups(const QList<cVisGroup*>& added) {
    addMembers(visGroups, added);
    noteChange(data);
}
void cEntity::removeFromVisGroup(cVisGroup* visGroup) {
    if (removeMember(visGroups, visGroup))
        noteChange(data);
}
void cEntity::dropVisGroups() {
    dropMembers(visGroups);
    noteChange(data);
}

void cBrush::addToVisGroup(cVisGroup* visGroup) {
    addMember(visGroups, visGroup);
    noteChange(data);
}
void cBrush::addToVisGroups(const QList<cVisGroup*>& added) {
    addMembers(visGroups, added);
    noteChange(data);
}
void cBrush::removeFromVisGroup(cVisGroup* visGroup) {
    if (removeMember(visGroups, visGroup))
        noteChange(data);
}
void cBrush::dropVisGroups() {
    dropMembers(visGroups);
    noteChange(data);
}

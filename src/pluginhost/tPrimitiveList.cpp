// SPDX-License-Identifier: MIT
#include "pluginhost/tPrimitiveList.h"

#include "support/tConsole.h"

void cPrimitiveList::registerPrimitive(const cPrimitive* record) {
    if (!record)
        return;
    if (!record->name) {
        Error("registerPrimitive: primitive name is NULL!");
        return;
    }
    if (!record->dispatch) {
        Error("registerPrimitive: dispatch function for \"%s\" is NULL!", record->name);
        return;
    }
    m_primitives.push_back(*record);
    if (!record->category)
        m_primitives.back().category = "(unknown)";
}

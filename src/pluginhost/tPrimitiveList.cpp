// SPDX-License-Identifier: MIT
#include "pluginhost/tPrimitiveList.h"

#include "support/tConsole.h"

#include <algorithm>

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

void cPrimitiveList::setSides(size_t index, int sides) {
    if (index >= m_primitives.size() || m_primitives[index].maxSides < m_primitives[index].minSides)
        return;
    cPrimitive& primitive = m_primitives[index];
    primitive.sides = std::clamp(sides, int(primitive.minSides), int(primitive.maxSides));
}

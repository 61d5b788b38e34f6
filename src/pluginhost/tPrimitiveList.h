// SPDX-License-Identifier: MIT
// The primitives that a block may become: the built-in ones first, then those of the plug-ins.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <vector>

class cPrimitiveList {
public:
    // Copies the words of the record; a record without name or dispatch is refused with an error.
    void registerPrimitive(const cPrimitive* record);
    const std::vector<cPrimitive>& all() const { return m_primitives; }
    // How many sides the next one of that kind gets, kept within the limits of the record.
    void setSides(size_t index, int sides);

private:
    std::vector<cPrimitive> m_primitives;
};

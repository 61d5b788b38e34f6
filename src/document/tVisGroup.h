// SPDX-License-Identifier: MIT
// A visgroup: a named, coloured set of entities and brushes that is shown or hidden as one.
// Not in the history; only the hidden flags of its members are.
#pragma once

#include <cstdint>

class cVisGroup {
public:
    explicit cVisGroup(const char* nameText); // random colour, not visible while empty
    ~cVisGroup();
    cVisGroup(const cVisGroup&) = delete;
    cVisGroup& operator=(const cVisGroup&) = delete;

    void setName(const char* text);

    char* name = nullptr; // owned, 8-bit
    uint8_t color[4];
    uint32_t id = 0;       // unique in the map, its key in cMap::visGroups
    const uint32_t serial; // never changes, unlike the id, and is never given again
    int objectCount = 0;   // entities and brushes that list it
    bool visible = false;
};

// SPDX-License-Identifier: MIT
// A change of a map that is told in one word when the outermost scope closes: whoever edits marks
// what changes, whoever shows the map hears of it once, and nobody who edits refreshes.
#pragma once

#include "document/tMap.h"
#include "support/tHost.h"

class cMapChange {
public:
    // what: MC_ bits that are told at the end, beside those that the map notes meanwhile.
    explicit cMapChange(cMap& map, unsigned what = 0) : m_map(map), m_what(what) {
        map.openChange();
    }
    ~cMapChange() { m_map.closeChange(m_what); }
    cMapChange(const cMapChange&) = delete;
    cMapChange& operator=(const cMapChange&) = delete;

private:
    cMap& m_map;
    const unsigned m_what;
};

// SPDX-License-Identifier: MIT
// Pick numbers of one map: 1 to 0x400000, handed out upward and taken back into a pool, and what
// object each stands for. In the picking pass the number is the object's colour.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <cstdint>
#include <vector>

enum class ePickKind : uint8_t { None, Entity, Brush, Face, Group };

struct cPickTarget {
    ePickKind kind = ePickKind::None;
    void* record = nullptr;
};

class cPickPool {
public:
    static constexpr int LIMIT = 0x400000;

    cPickPool();

    // The next free number, or -1 with the error "too many objects".
    int take(ePickKind kind, void* record);
    void give(int number); // -1 is ignored
    void clear();          // clears the bits; the two counters stay as they are

    cPickTarget target(int number) const;
    int high() const { return m_high; }
    int next() const { return m_next; }

private:
    int takeNumber();

    std::vector<uint64_t> m_bits; // bit n - 1 is number n
    std::vector<cPickTarget> m_targets;
    int m_high = 1;
    int m_next = 1;
};

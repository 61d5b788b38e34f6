// SPDX-License-Identifier: MIT
// Ranges of indices that one call draws; those that follow each other in the buffer become one.
#pragma once

#include <cstdint>
#include <vector>

// What went to OpenGL since the program began; a frame's share is the difference.
struct cDrawTraffic {
    uint64_t calls = 0;
    uint64_t ranges = 0;
    uint64_t bytes = 0; // of vertices, colours and indices
};
extern cDrawTraffic g_drawTraffic;

class cDrawRanges {
public:
    void add(uint32_t first, uint32_t count);
    bool isEmpty() const { return m_counts.empty(); }
    // From the index buffer that is bound, whose first byte that is; forgets the ranges.
    void draw(unsigned primitive, const uint8_t* indices);

private:
    std::vector<uint32_t> m_firsts;
    std::vector<int32_t> m_counts;
    std::vector<const void*> m_places;
};

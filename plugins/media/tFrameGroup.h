// SPDX-License-Identifier: MIT
// Frames and skins stand in a file alone or in groups with times of their own.
#pragma once

#include "media/tBytes.h"

// How many follow, with at moved from the word that tells to the first of them. A group's head may
// have more bytes between their number and their times.
inline uint64_t enterGroup(cBytes file, uint64_t& at, uint64_t moreOfHead = 0) {
    const bool isGroup = file.i32(at) != 0;
    at += 4;
    if (!isGroup)
        return 1;
    const uint64_t count = file.u32(at);
    at += 4 + moreOfHead + 4 * count;
    return count;
}

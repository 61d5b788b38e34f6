// SPDX-License-Identifier: MIT
// Keeps a hostile file from flooding the console: of one kind of message the first 30 are told,
// the rest are counted. A kind is one format of one level.
#pragma once

#include "support/tHost.h"

#include <cstdarg>
#include <map>
#include <string>
#include <utility>

class cMessageCap {
public:
    static constexpr int MOST = 30; // told of a kind

    // The format is a literal: its address stands for it.
    void tell(eMessage level, const char* format, va_list args);
    void tellRest(); // how many of each kind were kept back; begins anew

private:
    struct cKind {
        int count = 0;
        std::string last; // that was told
    };
    std::map<std::pair<eMessage, const char*>, cKind> m_kinds;
};

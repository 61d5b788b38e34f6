// SPDX-License-Identifier: MIT
#include "support/tMessageCap.h"

#include "support/tConsole.h"

#include <cstdarg>
#include <cstdio>

static constexpr size_t TEXT_SIZE = 4096;

static void say(eMessage level, const char* text) {
    if (level == eMessage::Error)
        Error("%s", text);
    else
        Warning("%s", text);
}

void cMessageCap::tell(eMessage level, const char* format, va_list args) {
    cKind& kind = m_kinds[{level, format}];
    if (++kind.count > MOST)
        return;
    char text[TEXT_SIZE];
    vsnprintf(text, sizeof text, format, args);
    say(level, text);
    if (kind.count == MOST)
        kind.last = text;
}

void cMessageCap::tellRest() {
    const auto kinds = std::move(m_kinds);
    m_kinds.clear();
    for (const auto& [key, kind] : kinds)
        if (kind.count > MOST)
            say(key.first,
                ("and " + std::to_string(kind.count - MOST) + " more like: " + kind.last).c_str());
}

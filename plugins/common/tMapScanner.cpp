// SPDX-License-Identifier: MIT
#include "common/tMapScanner.h"

#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstring>

bool cMapScanner::atBlank() const {
    return static_cast<unsigned char>(*m_next) <= ' ';
}

char cMapScanner::peek() {
    while (m_next < m_end) {
        if (*m_next == '\n') {
            ++m_line;
            ++m_next;
        } else if (atBlank()) {
            ++m_next;
        } else if (*m_next == '/' && m_next + 1 < m_end && m_next[1] == '/') {
            while (m_next < m_end && *m_next != '\n')
                ++m_next;
        } else {
            return *m_next;
        }
    }
    return 0;
}

bool cMapScanner::takeIf(char c) {
    if (peek() != c)
        return false;
    take();
    return true;
}

void cMapScanner::skipLine() {
    while (m_next < m_end && *m_next != '\n')
        ++m_next;
    if (m_next == m_end)
        return;
    ++m_next;
    ++m_line;
}

bool cMapScanner::number(double* out) {
    peek();
    const char* start = m_next;
    if (start < m_end && *start == '+')
        ++start;
    double value;
    const auto [stop, error] = std::from_chars(start, m_end, value);
    if (error != std::errc() || !(std::fabs(value) <= double(FLT_MAX)))
        return false;
    *out = value;
    m_next = stop;
    return true;
}

bool cMapScanner::name(std::string* out) {
    const char first = peek();
    if (first == 0)
        return false;
    if (first == '"')
        return quoted(out);
    const char* start = m_next;
    while (m_next < m_end && !atBlank())
        ++m_next;
    takeText(start, out);
    return true;
}

// The text of a file has no zeros; what stands behind one would be lost later.
void cMapScanner::takeText(const char* start, std::string* out) const {
    out->assign(start, strnlen(start, size_t(m_next - start)));
}

bool cMapScanner::quoted(std::string* out) {
    if (!takeIf('"'))
        return false;
    const char* start = m_next;
    while (m_next < m_end && *m_next != '"' && *m_next != '\n')
        ++m_next;
    takeText(start, out);
    if (m_next < m_end && *m_next == '"') {
        ++m_next;
        return true;
    }
    skipLine();
    return false;
}

void cMapScanner::skipBraces() {
    int depth = 0;
    std::string part;
    double ignored;
    while (const char c = peek()) {
        if (c == '(' || c == ')') {
            take();
        } else if (c == '}' || (c == '{' && endsToken(m_next + 1))) {
            take();
            depth += c == '{' ? 1 : -1;
            if (depth <= 0)
                return;
        } else if (!number(&ignored)) {
            name(&part);
        }
    }
}

// Behind a brace that is no part of a name.
bool cMapScanner::endsToken(const char* at) const {
    return at == m_end || static_cast<unsigned char>(*at) <= ' ' || strchr("(){}\"", *at);
}

std::string cMapScanner::word() {
    peek();
    const auto isWordCharacter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_';
    };
    const char* start = m_next;
    while (m_next < m_end && isWordCharacter(*m_next))
        ++m_next;
    return std::string(start, m_next);
}

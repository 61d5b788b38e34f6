// SPDX-License-Identifier: MIT
// Steps through the text of a map file: blanks, comments, numbers, names, quoted texts. Knows
// nothing of what they mean. Braces and brackets in a name are part of the name.
#pragma once

#include <string>

class cMapScanner {
public:
    cMapScanner(const char* text, size_t size) : m_next(text), m_end(text + size) {}

    // The next character that is neither blank nor comment, 0 at the end. Does not consume it.
    char peek();
    void take() { ++m_next; } // consumes the character that peek gave
    bool takeIf(char c);
    void skipLine(); // to behind the next line feed

    // A number that a float can hold; false, and nothing consumed, when none stands here.
    bool number(double* out);
    // Everything up to the next blank, or a quoted text; false at the end.
    bool name(std::string* out);
    // A text in double quotes on one line. False, with the line skipped, if it has no end.
    bool quoted(std::string* out);
    // Letters, digits and underscores; empty when none stands here.
    std::string word();

    // From an opening brace to behind the one that closes it. A brace in a name counts for nothing.
    void skipBraces();

    int line() const { return m_line; }

private:
    bool atBlank() const;
    void takeText(const char* start, std::string* out) const;
    bool endsToken(const char* at) const;

    const char* m_next;
    const char* m_end;
    int m_line = 1;
};

// SPDX-License-Identifier: MIT
// The bytes of a project file in one direction: each call reads or writes its argument. It takes
// the fields of states as walkFields hands them over. Counts and lengths are checked against what
// is left of the file before memory is taken.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <QByteArray>
#include <cstdio>

class cProjectStream {
public:
    cProjectStream(FILE* file, bool writing); // takes the file; null is one that is not open
    ~cProjectStream();
    cProjectStream(const cProjectStream&) = delete;
    cProjectStream& operator=(const cProjectStream&) = delete;

    bool isOpen() const { return m_file != nullptr; }
    bool atEnd() const { return m_left == 0; }
    bool close(); // false when the last bytes were not written

    bool bytes(void* bytes, size_t size);
    template<class T> bool value(T& field) { return bytes(&field, sizeof field); }
    // What is no finite number in a file becomes the default.
    bool numbers(float* fields, size_t count, float byDefault = 0);
    bool text(QByteArray& field); // null and empty differ
    bool count(uint32_t& points) { return checkedCount(points, sizeof(cFaceVertex)); }
    bool vertices(cFaceVertex* vertices, size_t count);
    // A count of records, each of at least that many bytes, that takes memory at once.
    template<class T> bool checkedCount(T& number, size_t recordSize) {
        static_assert(sizeof(T) == sizeof(int32_t));
        return value(number) &&
               (m_writing || (int32_t(number) >= 0 && size_t(number) <= m_left / recordSize));
    }
    // A count of records that are read one by one: of a list that the end of the file cuts short,
    // what is there counts.
    bool listCount(int32_t& number) { return value(number) && number >= 0; }

    void countMended() { ++m_mended; }
    int mended() const { return m_mended; } // numbers of no use that became the default

private:
    void mend(float& number, float byDefault);

    FILE* m_file;
    bool m_writing;
    size_t m_left = 0;
    int m_mended = 0;
};

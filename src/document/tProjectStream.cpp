// SPDX-License-Identifier: MIT
#include "document/tProjectStream.h"

#include <algorithm>
#include <cmath>

cProjectStream::cProjectStream(FILE* file, bool writing) : m_file(file), m_writing(writing) {
    if (!file || writing)
        return;
    fseek(file, 0, SEEK_END);
    m_left = size_t(std::max(0L, ftell(file)));
    rewind(file);
}

cProjectStream::~cProjectStream() {
    if (m_file)
        fclose(m_file);
}

bool cProjectStream::close() {
    const bool closed = fclose(m_file) == 0;
    m_file = nullptr;
    return closed;
}

bool cProjectStream::bytes(void* bytes, size_t size) {
    if (size == 0)
        return true; // there may be no memory behind it
    if (m_writing)
        return fwrite(bytes, 1, size, m_file) == size;
    if (size > m_left)
        return false;
    m_left -= size;
    return fread(bytes, 1, size, m_file) == size;
}

void cProjectStream::mend(float& number, float byDefault) {
    if (m_writing || std::isfinite(number))
        return;
    number = byDefault;
    ++m_mended;
}

// One by one: what stands before the end of the file counts.
bool cProjectStream::numbers(float* fields, size_t count, float byDefault) {
    return std::all_of(fields, fields + count, [&](float& field) {
        if (!value(field))
            return false;
        mend(field, byDefault);
        return true;
    });
}

bool cProjectStream::vertices(cFaceVertex* vertices, size_t count) {
    if (!bytes(vertices, count * sizeof(cFaceVertex)))
        return false;
    for (cFaceVertex* vertex = vertices; vertex != vertices + count; ++vertex) {
        for (float& number : vertex->xyz)
            mend(number, 0);
        for (float& number : vertex->st)
            mend(number, 0);
    }
    return true;
}

bool cProjectStream::text(QByteArray& field) {
    int32_t length = field.isNull() ? -1 : field.size();
    if (!value(length))
        return false;
    if (m_writing)
        return length <= 0 || bytes(const_cast<char*>(field.constData()), size_t(length));
    field = QByteArray();
    if (length < 0)
        return length == -1;
    if (size_t(length) > m_left)
        return false;
    field = QByteArray(length, 0);
    return bytes(field.data(), size_t(length));
}

// SPDX-License-Identifier: MIT
// A stretch of a file's bytes, little end first. Nothing is ever read past its end: what is not
// there reads as zero, so a reader asks holds() where that makes a difference.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

class cBytes {
public:
    cBytes() = default;
    cBytes(const void* data, size_t size)
        : m_data(static_cast<const uint8_t*>(data)), m_size(data ? size : 0) {}

    size_t size() const { return m_size; }
    const uint8_t* data() const { return m_data; }
    bool holds(uint64_t at, uint64_t count) const { return at <= m_size && count <= m_size - at; }

    // Cut to what is there.
    cBytes from(uint64_t at) const {
        return at < m_size ? cBytes(m_data + at, m_size - size_t(at)) : cBytes();
    }
    cBytes part(uint64_t at, uint64_t count) const {
        cBytes rest = from(at);
        rest.m_size = size_t(std::min<uint64_t>(rest.m_size, count));
        return rest;
    }

    uint8_t u8(uint64_t at) const { return read<uint8_t>(at); }
    int8_t i8(uint64_t at) const { return read<int8_t>(at); }
    uint16_t u16(uint64_t at) const { return read<uint16_t>(at); }
    int16_t i16(uint64_t at) const { return read<int16_t>(at); }
    uint32_t u32(uint64_t at) const { return read<uint32_t>(at); }
    int32_t i32(uint64_t at) const { return read<int32_t>(at); }
    float f32(uint64_t at) const { return read<float>(at); }

    bool startsWith(const char* magic) const {
        return holds(0, strlen(magic)) && memcmp(m_data, magic, strlen(magic)) == 0;
    }
    // A field of that many bytes, up to its first zero.
    std::string text(uint64_t at, uint64_t count) const {
        const cBytes field = part(at, count);
        const auto* end = field.m_data + field.m_size;
        return std::string(field.m_data, std::find(field.m_data, end, uint8_t(0)));
    }

private:
    template<class T> T read(uint64_t at) const {
        T value = {};
        if (holds(at, sizeof value))
            memcpy(&value, m_data + at, sizeof value);
        return value;
    }

    const uint8_t* m_data = nullptr;
    size_t m_size = 0;
};

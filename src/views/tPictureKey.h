// SPDX-License-Identifier: MIT
// All that the map's picture in a view depends on, as bytes to compare: while the key stays the
// same the picture kept from an earlier frame is still right.
#pragma once

#include <cstdint>
#include <type_traits>
#include <vector>

class cPictureKey {
public:
    void clear() { m_bytes.clear(); }
    template<class T> void add(const T& value) {
        static_assert(std::is_trivially_copyable_v<T>);
        addBytes(&value, sizeof(T));
    }
    void addBytes(const void* bytes, size_t size) {
        const auto* first = static_cast<const uint8_t*>(bytes);
        m_bytes.insert(m_bytes.end(), first, first + size);
    }
    bool isEmpty() const { return m_bytes.empty(); }
    bool operator==(const cPictureKey& other) const { return m_bytes == other.m_bytes; }
    bool operator!=(const cPictureKey& other) const { return m_bytes != other.m_bytes; }
    void swap(cPictureKey& other) { m_bytes.swap(other.m_bytes); }

private:
    std::vector<uint8_t> m_bytes;
};

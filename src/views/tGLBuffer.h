// SPDX-License-Identifier: MIT
// Bytes that OpenGL draws from: a buffer object, or main memory where there are none or where the
// contexts of the views share nothing. Calls want a current context, but for the destructor.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class cGLBuffer {
public:
    enum eUse { VERTICES, INDICES };

    explicit cGLBuffer(eUse use) : m_use(use) {}
    ~cGLBuffer() { release(); }
    cGLBuffer(const cGLBuffer&) = delete;
    cGLBuffer& operator=(const cGLBuffer&) = delete;

    size_t size() const { return m_size; } // bytes
    bool isEmpty() const { return m_size == 0; }
    void allocate(size_t bytes); // what it held is lost
    void grow(size_t bytes);     // what it held stays
    void write(size_t offset, const void* data, size_t bytes);
    // What it holds now is lost, without a wait for those who still draw it.
    void replace(const void* data, size_t bytes);
    void release();

    // Draws read from it until the next bind of its use; the first byte for the gl...Pointer and
    // glDrawElements calls. Client arrays want unbind() first.
    const uint8_t* bind() const;
    static void unbind();

    // Buffers that are allocated from now on keep to main memory.
    static void keepToMemory(bool keep);
    static uint32_t kind(); // another number when that changes

private:
    unsigned target() const;
    void create(size_t bytes, const void* data);

    eUse m_use;
    unsigned m_name = 0;
    size_t m_size = 0;
    std::vector<uint8_t> m_memory;
};

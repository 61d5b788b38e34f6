// SPDX-License-Identifier: MIT
#include "views/tGLBuffer.h"

#include "views/tDrawRanges.h"

#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <algorithm>
#include <cstring>

static bool s_toMemory = false;
static std::vector<GLuint> s_released; // names to delete when a context is current

static QOpenGLExtraFunctions& gl() {
    return *QOpenGLContext::currentContext()->extraFunctions();
}

static bool hasBuffers() {
    return QOpenGLContext::currentContext() && gl().hasOpenGLFeature(QOpenGLFunctions::Buffers);
}

static bool canCopy() {
    const QOpenGLContext* context = QOpenGLContext::currentContext();
    return context->format().version() >= qMakePair(3, 1) ||
           context->hasExtension(QByteArrayLiteral("GL_ARB_copy_buffer"));
}

void cGLBuffer::keepToMemory(bool keep) {
    s_toMemory = keep;
}

uint32_t cGLBuffer::kind() {
    return s_toMemory ? 2 : 1;
}

unsigned cGLBuffer::target() const {
    return m_use == INDICES ? GL_ELEMENT_ARRAY_BUFFER : GL_ARRAY_BUFFER;
}

void cGLBuffer::release() {
    if (m_name)
        s_released.push_back(m_name);
    m_name = 0;
    m_size = 0;
    m_memory = {};
}

void cGLBuffer::create(size_t bytes, const void* data) {
    if (!s_released.empty())
        gl().glDeleteBuffers(GLsizei(s_released.size()), s_released.data());
    s_released.clear();
    gl().glGenBuffers(1, &m_name);
    gl().glBindBuffer(target(), m_name);
    gl().glBufferData(target(), GLsizeiptr(bytes), data, GL_DYNAMIC_DRAW);
    m_size = bytes;
}

void cGLBuffer::allocate(size_t bytes) {
    release();
    if (hasBuffers() && !s_toMemory) {
        create(bytes, nullptr);
        return;
    }
    m_memory.resize(bytes);
    m_size = bytes;
}

void cGLBuffer::grow(size_t bytes) {
    if (!m_name) {
        m_memory.resize(bytes);
        m_size = bytes;
        return;
    }
    const GLuint before = m_name;
    const size_t held = std::min(m_size, bytes);
    if (canCopy()) {
        create(bytes, nullptr);
        gl().glBindBuffer(GL_COPY_READ_BUFFER, before);
        gl().glCopyBufferSubData(GL_COPY_READ_BUFFER, target(), 0, 0, GLsizeiptr(held));
        gl().glBindBuffer(GL_COPY_READ_BUFFER, 0);
    } else {
        std::vector<uint8_t> bytesHeld(held);
        gl().glBindBuffer(target(), before);
        using cRead = void(QOPENGLF_APIENTRYP)(GLenum, GLintptr, GLsizeiptr, void*);
        const auto read = reinterpret_cast<cRead>(QOpenGLContext::currentContext()->getProcAddress(
            QByteArrayLiteral("glGetBufferSubData"))); // as old as buffers themselves
        read(target(), 0, GLsizeiptr(held), bytesHeld.data());
        create(bytes, nullptr);
        gl().glBufferSubData(target(), 0, GLsizeiptr(held), bytesHeld.data());
    }
    s_released.push_back(before);
}

void cGLBuffer::write(size_t offset, const void* data, size_t bytes) {
    if (bytes == 0)
        return;
    g_drawTraffic.bytes += bytes;
    if (m_name) {
        gl().glBindBuffer(target(), m_name);
        gl().glBufferSubData(target(), GLintptr(offset), GLsizeiptr(bytes), data);
    } else {
        memcpy(m_memory.data() + offset, data, bytes);
    }
}

void cGLBuffer::replace(const void* data, size_t bytes) {
    if (!m_name && m_size < bytes)
        allocate(bytes);
    if (!m_name) {
        write(0, data, bytes);
        return;
    }
    g_drawTraffic.bytes += bytes;
    gl().glBindBuffer(target(), m_name);
    gl().glBufferData(target(), GLsizeiptr(bytes), data, GL_STREAM_DRAW);
    m_size = bytes;
}

const uint8_t* cGLBuffer::bind() const {
    if (hasBuffers())
        gl().glBindBuffer(target(), m_name); // 0 for main memory
    return m_name ? nullptr : m_memory.data();
}

void cGLBuffer::unbind() {
    if (!hasBuffers())
        return;
    gl().glBindBuffer(GL_ARRAY_BUFFER, 0);
    gl().glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
}

// SPDX-License-Identifier: MIT
#include "views/tCachedPicture.h"

#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QOpenGLFramebufferObject>

cCachedPicture::cCachedPicture() = default;
cCachedPicture::~cCachedPicture() = default;

static bool hasBlit() {
    return QOpenGLFramebufferObject::hasOpenGLFramebufferObjects() &&
           QOpenGLFramebufferObject::hasOpenGLFramebufferBlit();
}

bool cCachedPicture::isUsable(const QSize& size) {
    if (m_refused || size.isEmpty())
        return false;
    if (m_buffer && m_buffer->size() == size)
        return true;
    m_key.clear();
    m_refused = !hasBlit();
    if (m_refused)
        return false;
    m_refused = !createBuffer(size);
    return !m_refused;
}

// Depth is copied only between equal formats, and a window may come with a stencil or without.
bool cCachedPicture::createBuffer(const QSize& size) {
    for (const auto attachment :
         {QOpenGLFramebufferObject::CombinedDepthStencil, QOpenGLFramebufferObject::Depth}) {
        m_buffer.reset();
        m_buffer = std::make_unique<QOpenGLFramebufferObject>(size, attachment);
        if (m_buffer->isValid() && copyToWindow(size))
            return true;
    }
    m_buffer.reset();
    return false;
}

// A window with another depth format or with samples refuses the copy.
bool cCachedPicture::copyToWindow(const QSize& size) {
    while (glGetError() != GL_NO_ERROR) {
    }
    auto* gl = QOpenGLContext::currentContext()->extraFunctions();
    gl->glBindFramebuffer(GL_READ_FRAMEBUFFER, m_buffer->handle());
    gl->glBindFramebuffer(GL_DRAW_FRAMEBUFFER,
                          QOpenGLContext::currentContext()->defaultFramebufferObject());
    gl->glBlitFramebuffer(0, 0, size.width(), size.height(), 0, 0, size.width(), size.height(),
                          GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT, GL_NEAREST);
    gl->glBindFramebuffer(GL_FRAMEBUFFER,
                          QOpenGLContext::currentContext()->defaultFramebufferObject());
    return glGetError() == GL_NO_ERROR;
}

void cCachedPicture::begin() {
    m_key.clear();
    m_buffer->bind();
}

void cCachedPicture::end(cPictureKey& key, const cDrawStats& drawn) {
    m_buffer->release();
    m_key.swap(key);
    m_stats = drawn;
    ++m_drawCount;
}

void cCachedPicture::show() {
    copyToWindow(m_buffer->size());
}

bool cCachedPicture::readDepth(int x, int row, float* depth) {
    if (!m_buffer || m_key.isEmpty())
        return false;
    m_buffer->bind();
    glReadPixels(x, row, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, depth);
    m_buffer->release();
    return true;
}

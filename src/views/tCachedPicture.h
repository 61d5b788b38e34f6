// SPDX-License-Identifier: MIT
// The map's picture in one view, kept between frames in a framebuffer object with its depth and
// copied to the window. Where the driver has no such objects, or cannot copy depth to the window,
// isUsable() is false and the view draws straight to the window.
#pragma once

#include "views/tPictureKey.h"
#include "views/tViewInfo.h"

#include <QSize>
#include <memory>

class QOpenGLFramebufferObject;

class cCachedPicture {
public:
    cCachedPicture();
    ~cCachedPicture(); // with the view's context current

    // Makes the buffer fit, in device pixels as all here; a new one is empty.
    bool isUsable(const QSize& size);
    bool isCurrent(const cPictureKey& key) const { return !key.isEmpty() && key == m_key; }
    void invalidate() { m_key.clear(); }
    bool isEmpty() const { return m_key.isEmpty(); }

    void begin(); // what is drawn now goes into the picture
    void end(cPictureKey& key, const cDrawStats& drawn);
    void show(); // to the window
    // The depth of a pixel, counted from the lower edge; false without a picture.
    bool readDepth(int x, int row, float* depth);

    const cDrawStats& stats() const { return m_stats; }
    int drawCount() const { return m_drawCount; } // how often it was drawn anew

private:
    bool createBuffer(const QSize& size);
    bool copyToWindow(const QSize& size);

    std::unique_ptr<QOpenGLFramebufferObject> m_buffer;
    cPictureKey m_key;
    cDrawStats m_stats;
    int m_drawCount = 0;
    bool m_refused = false; // by the driver, for good
};

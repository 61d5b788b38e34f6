// SPDX-License-Identifier: MIT
#include "views/tGLWidget.h"

#include "support/tConsole.h"

#include <QOpenGLContext>

static constexpr int SAMPLES = 4;
static constexpr int DEPTH_BITS = 24;
static constexpr int STENCIL_BITS = 8;

static QGLFormat formatOf(eGLBuffers buffers) {
    QGLFormat format;
    format.setRgba(true);
    format.setDirectRendering(true);
    format.setDoubleBuffer(true);
    format.setDepth(buffers != eGLBuffers::Color);
    format.setStencil(buffers != eGLBuffers::Color);
    format.setSwapInterval(0);
    if (buffers == eGLBuffers::Color)
        return format;
    // Depth with a stencil, as the kept pictures have: depth is copied between equal formats only.
    format.setDepthBufferSize(DEPTH_BITS);
    format.setStencilBufferSize(STENCIL_BITS);
    if (buffers == eGLBuffers::Multisampled) {
        format.setSampleBuffers(true);
        format.setSamples(SAMPLES);
    }
    return format;
}

cGLWidget::cGLWidget(eGLBuffers buffers, QWidget* parent, cGLWidget* share)
    : QGLWidget(formatOf(buffers), parent, share) {}

void cGLWidget::setDefaultFormat() {
    QGLFormat::setDefaultFormat(formatOf(eGLBuffers::Color));
}

void cGLWidget::stopWaitingForScreen() {
    using cSwapInterval = int (*)(int);
    auto* context = QOpenGLContext::currentContext();
    const auto function = reinterpret_cast<cSwapInterval>(
        context->getProcAddress(QByteArrayLiteral("glXSwapIntervalSGI")));
    if (!function) {
        Warning("missing glXSwapIntervalSGI function");
        return;
    }
    function(0);
}

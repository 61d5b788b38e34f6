// SPDX-License-Identifier: MIT
// The base of whatever shows OpenGL: views, previews, and the hidden widget they share textures
// with. It alone names Qt's widget and its formats; another Qt brings another base here.
#pragma once

#include <QGLWidget>

enum class eGLBuffers {
    Color,       // and nothing else
    Depth,       // with a stencil
    Multisampled // likewise
};

class cGLWidget : public QGLWidget {
public:
    // Textures and lists are common to it and to share, which may be null.
    explicit cGLWidget(eGLBuffers buffers, QWidget* parent = nullptr, cGLWidget* share = nullptr);

    // Of widgets that ask for nothing. Before the first widget.
    static void setDefaultFormat();

    // Whether the driver has given more than one sample a pixel.
    bool isMultisampled() const { return format().sampleBuffers(); }

protected:
    void stopWaitingForScreen(); // at each swap of buffers; warns where that can't be had
};

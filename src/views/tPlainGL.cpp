// SPDX-License-Identifier: MIT
#include "views/tPlainGL.h"

#include "views/tGLState.h"

#include <QRectF>
#include <cmath>

#ifndef GL_CLAMP_TO_EDGE
#define GL_CLAMP_TO_EDGE 0x812F
#endif

void initializePlainGL() {
    static const GLenum off[] = {GL_POLYGON_SMOOTH, GL_POLYGON_STIPPLE, GL_DITHER,
                                 GL_INDEX_LOGIC_OP, GL_LIGHTING,        GL_LINE_STIPPLE,
                                 GL_DEPTH_TEST,     GL_CULL_FACE,       GL_TEXTURE_2D};
    for (const GLenum what : off)
        glDisable(what);
    glShadeModel(GL_FLAT);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glEnableClientState(GL_VERTEX_ARRAY);
}

void beginPlainFrame(const QWidget& widget, const uint8_t* rgba) {
    const auto ratio = float(widget.devicePixelRatioF());
    GL_ResetState(GLS_DEFAULT); // the cached word may be another context's
    GL_SetPixelRatio(ratio);
    glViewport(0, 0, int(std::lround(float(widget.width()) * ratio)),
               int(std::lround(float(widget.height()) * ratio)));
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, widget.width(), widget.height(), 0, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glClearColor(float(rgba[0]) / 255, float(rgba[1]) / 255, float(rgba[2]) / 255, 1);
    glClear(GL_COLOR_BUFFER_BIT);
}

static void setWrapping(GLint mode) {
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, mode);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, mode);
}

void drawPlainTexture(unsigned texture, const QRectF& place) {
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, texture);
    applyTextureSampling(1, true, false);
    setWrapping(
        GL_CLAMP_TO_EDGE); // plain clamping would mix a border's black into the outermost texels
    glColor4ub(255, 255, 255, 255);
    glBegin(GL_QUADS);
    glTexCoord2f(0, 0);
    glVertex2d(place.left(), place.top());
    glTexCoord2f(0, 1);
    glVertex2d(place.left(), place.bottom());
    glTexCoord2f(1, 1);
    glVertex2d(place.right(), place.bottom());
    glTexCoord2f(1, 0);
    glVertex2d(place.right(), place.top());
    glEnd();
    setWrapping(GL_REPEAT); // as faces have it
    glBindTexture(GL_TEXTURE_2D, 0);
    glDisable(GL_TEXTURE_2D);
}

// SPDX-License-Identifier: MIT
// Shows one texture, twice its size where there is room, else as large as fits. A paint surface
// only: it takes no input.
#pragma once

#include "views/tGLWidget.h"

struct cTexture;

class cTextureView : public cGLWidget {
public:
    explicit cTextureView(QWidget* parent);

    void setTexture(const cTexture* texture); // null: none. It may go afterwards.

protected:
    void initializeGL() override;
    void resizeGL(int, int) override {}
    void paintGL() override;

private:
    QSizeF shownSize() const; // pixels

    int m_width = 0; // of the texture
    int m_height = 0;
    unsigned m_texture = 0; // OpenGL's name
};

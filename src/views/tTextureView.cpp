// SPDX-License-Identifier: MIT
#include "views/tTextureView.h"

#include "document/tTexture.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "views/tPlainGL.h"
#include "views/tViewHost.h"

cTextureView::cTextureView(QWidget* parent)
    : cGLWidget(eGLBuffers::Color, parent, g_viewHost->shareWidget()) {
    setEnabled(false);
}

void cTextureView::setTexture(const cTexture* texture) {
    const bool hasImage = texture && texture->image;
    m_width = hasImage ? texture->width : 0;
    m_height = hasImage ? texture->height : 0;
    m_texture = hasImage ? texture->image->glName : 0;
    update();
}

void cTextureView::initializeGL() {
    initializePlainGL();
}

QSizeF cTextureView::shownSize() const {
    const qreal side = qMin(width(), height());
    const qreal aspect = qreal(m_width) / m_height;
    QSizeF size(2 * m_width, 2 * m_height);
    if (size.width() > side)
        size = QSizeF(side, m_width > m_height ? side / aspect : size.height());
    if (size.height() > side)
        size = QSizeF(m_height > m_width ? side * aspect : size.width(), side);
    return size;
}

// Black stands for the application's own look.
void cTextureView::paintGL() {
    const uint8_t* scheme = g_host->schemeColor(COLOR_APPLICATION);
    const QColor own = palette().color(QPalette::Active, QPalette::Window);
    const uint8_t window[4] = {uint8_t(own.red()), uint8_t(own.green()), uint8_t(own.blue()), 255};
    beginPlainFrame(*this, scheme[0] || scheme[1] || scheme[2] ? scheme : window);
    if (!m_texture || cBusy::isBusy()) // textures come and go while a set is read
        return;
    QRectF place(QPointF(), shownSize());
    place.moveCenter(QRectF(rect()).center());
    drawPlainTexture(m_texture, place);
}

// SPDX-License-Identifier: MIT
#include "dialogs/tArchPreview.h"

#include <QPainter>
#include <QtMath>

void cArchPreview::setShape(const cArchShape& shape, int extent) {
    m_shape = shape;
    m_extent = qMax(1, extent);
    update();
}

// Angle 0 is up, angles grow clockwise. A full circle ends where it began.
void cArchPreview::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    painter.setPen(Qt::white);
    const double outer = (width() - 1) * 0.5;
    const double scale = double(width() - 1) / m_extent;
    const double inner = qMax(0.0, outer - m_shape.width * scale);
    const QPointF center((width() - 1) * 0.5, (height() - 1) * 0.5);
    QPolygonF outline, hole;
    for (int i = 0; i <= m_shape.sides; ++i) {
        const double angle =
            qDegreesToRadians(m_shape.start + double(m_shape.arc) * i / m_shape.sides);
        const QPointF way(qSin(angle), -qCos(angle));
        outline << center + way * outer;
        hole << center + way * inner;
        painter.drawLine(hole.last(), outline.last());
    }
    painter.drawPolyline(outline);
    painter.drawPolyline(hole);
}

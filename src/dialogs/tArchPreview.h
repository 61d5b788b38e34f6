// SPDX-License-Identifier: MIT
// The little picture of an arch, seen along its height axis.
#pragma once

#include "operations/tPrimitives.h"

#include <QWidget>

class cArchPreview : public QWidget {
    Q_OBJECT

public:
    explicit cArchPreview(QWidget* parent = nullptr) : QWidget(parent) {}

    // extent: the outer diameter in world units, which fills the picture.
    void setShape(const cArchShape& shape, int extent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    cArchShape m_shape;
    int m_extent = 64;
};

// SPDX-License-Identifier: MIT
#include "dialogs/tArchDialog.h"

#include "ui_tArchDialog.h"

static constexpr float LARGEST_EXTENT = 99999; // units
static constexpr int THINNEST_WALL = 2;
static constexpr int FULL_CIRCLE = 360;

cArchDialog::cArchDialog(QWidget* parent) : QDialog(parent), m_ui(new Ui::cArchDialog) {
    m_ui->setupUi(this);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    const auto changed = QOverload<int>::of(&QSpinBox::valueChanged);
    for (QSpinBox* box : findChildren<QSpinBox*>())
        connect(box, changed, this, &cArchDialog::updatePreview);
    for (QCheckBox* box : findChildren<QCheckBox*>())
        connect(box, &QCheckBox::toggled, this, &cArchDialog::updatePreview);
    connect(m_ui->btnCircle, &QPushButton::clicked, this, &cArchDialog::makeCircle);
    updatePreview();
}

cArchDialog::~cArchDialog() = default;

bool cArchDialog::ask(float extent) {
    m_extent = int(qMin(extent, LARGEST_EXTENT));
    const int thickest = qMax(1, m_extent >> 1);
    m_ui->sbWidth->setRange(qMin(THINNEST_WALL, thickest), thickest);
    updatePreview();
    m_ui->sbWidth->setFocus();
    m_ui->sbWidth->selectAll();
    const bool accepted = exec() == Accepted;
    // The dialog stays, its window does not: an activation that arrives after it has been closed
    // would leave a hidden window the active one.
    destroy();
    parentWidget()->activateWindow();
    return accepted;
}

cArchShape cArchDialog::shape() const {
    cArchShape shape;
    shape.width = m_ui->sbWidth->value();
    shape.sides = m_ui->sbSides->value();
    shape.arc = m_ui->sbArc->value();
    shape.start = m_ui->sbStart->value();
    shape.height = m_ui->sbHeight->value();
    shape.group = m_ui->cbGroup->isChecked();
    shape.smoothSlope = m_ui->cbSmoothSlope->isChecked();
    return shape;
}

void cArchDialog::makeCircle() {
    m_ui->sbArc->setValue(FULL_CIRCLE);
}

void cArchDialog::updatePreview() {
    m_ui->cbSmoothSlope->setEnabled(m_ui->sbHeight->value() != 0);
    m_ui->preview->setShape(shape(), m_extent);
}

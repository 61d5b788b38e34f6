// SPDX-License-Identifier: MIT
#include "dialogs/tTransformDialog.h"

#include "support/tMath.h"
#include "support/tVec.h"
#include "ui_tTransformDialog.h"

cTransformDialog::cTransformDialog(QWidget* parent)
    : QDialog(parent), m_ui(new Ui::cTransformDialog) {
    m_ui->setupUi(this);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    m_ui->sbX->setFocus();
    m_ui->sbX->selectAll();
}

cTransformDialog::~cTransformDialog() = default;

void cTransformDialog::matrix(float out[16]) const {
    const float values[3] = {float(m_ui->sbX->value()), float(m_ui->sbY->value()),
                             float(m_ui->sbZ->value())};
    float angles[3] = {0, 0, 0}, factors[3] = {0, 0, 0}, offset[3] = {0, 0, 0};
    if (m_ui->rbRotate->isChecked())
        vecCopy(values, angles);
    else if (m_ui->rbScale->isChecked())
        vecCopy(values, factors);
    else
        vecCopy(values, offset);
    float columns[16];
    T_BuildTransformMatrix(angles[2], angles[1], angles[0], offset, columns);
    T_TransposeMatrix(columns, out);
    for (int i = 0; i < 3; ++i)
        if (factors[i] > 0) // what does not scale stays as it is
            out[i * 5] *= factors[i];
}

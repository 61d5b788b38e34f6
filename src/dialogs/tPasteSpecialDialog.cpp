// SPDX-License-Identifier: MIT
#include "dialogs/tPasteSpecialDialog.h"

#include "support/tVec.h"
#include "ui_tPasteSpecialDialog.h"

cPasteSpecialDialog::cPasteSpecialDialog(const float* mins, const float* maxs, QWidget* parent)
    : QDialog(parent), m_ui(new Ui::cPasteSpecialDialog) {
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    vecSubtract(maxs, mins, m_size);
    connect(m_ui->btnX, &QPushButton::clicked, this, &cPasteSpecialDialog::exec_on_setOffsetX);
    connect(m_ui->btnY, &QPushButton::clicked, this, &cPasteSpecialDialog::exec_on_setOffsetY);
    connect(m_ui->btnZ, &QPushButton::clicked, this, &cPasteSpecialDialog::exec_on_setOffsetZ);
    m_ui->sbCopies->setFocus();
    m_ui->sbCopies->selectAll();
}

cPasteSpecialDialog::~cPasteSpecialDialog() = default;

int cPasteSpecialDialog::copies() const {
    return m_ui->sbCopies->value();
}

bool cPasteSpecialDialog::startsAtCenter() const {
    return m_ui->cbStartCenter->isChecked();
}

bool cPasteSpecialDialog::groupsCopies() const {
    return m_ui->cbGroup->isChecked();
}

bool cPasteSpecialDialog::offset(float out[3]) const {
    const QDoubleSpinBox* boxes[3] = {m_ui->sbX, m_ui->sbY, m_ui->sbZ};
    for (int i = 0; i < 3; ++i)
        out[i] = float(boxes[i]->value());
    return m_ui->groupOffset->isChecked();
}

bool cPasteSpecialDialog::rotation(float out[3]) const {
    const QDoubleSpinBox* boxes[3] = {m_ui->sbXr, m_ui->sbYr, m_ui->sbZr};
    for (int i = 0; i < 3; ++i)
        out[i] = float(boxes[i]->value());
    return m_ui->groupRotation->isChecked();
}

// The box rounds what it shows, so the extent is compared as it would show it.
void cPasteSpecialDialog::setOffset(QDoubleSpinBox* box, int axis) {
    const double size = double(m_size[axis]);
    const bool shown = box->textFromValue(size) == box->textFromValue(box->value());
    box->setValue(shown && size > 0 ? -size : size); // a flat axis shows no "-0"
}

void cPasteSpecialDialog::exec_on_setOffsetX() {
    setOffset(m_ui->sbX, 0);
}

void cPasteSpecialDialog::exec_on_setOffsetY() {
    setOffset(m_ui->sbY, 1);
}

void cPasteSpecialDialog::exec_on_setOffsetZ() {
    setOffset(m_ui->sbZ, 2);
}

// SPDX-License-Identifier: MIT
#include "dialogs/tMessageDialog.h"

#include "ui_tMessageDialog.h"

cMessageDialog::cMessageDialog(const QString& text, const QString& title, QWidget* parent)
    : QDialog(parent), m_ui(new Ui::cMessageDialog) {
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(title);
    m_ui->textEdit->setHtml(text);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

cMessageDialog::~cMessageDialog() = default;

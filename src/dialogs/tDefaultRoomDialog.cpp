// SPDX-License-Identifier: MIT
#include "dialogs/tDefaultRoomDialog.h"

#include "support/tMapText.h"
#include "ui_tDefaultRoomDialog.h"

#include <QMessageBox>
#include <QPushButton>

cDefaultRoomDialog::cDefaultRoomDialog(const cRoomShape& shape, bool skipNext, QWidget* parent)
    : QDialog(parent), m_ui(new Ui::cDefaultRoomDialog) {
    m_ui->setupUi(this);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    m_ui->sbX->setValue(shape.x);
    m_ui->sbY->setValue(shape.y);
    m_ui->sbZ->setValue(shape.z);
    m_ui->txtWall->setText(fromMapText(shape.wall));
    m_ui->txtCeil->setText(fromMapText(shape.ceiling));
    m_ui->txtFloor->setText(fromMapText(shape.floor));
    m_ui->cbNoShow->setChecked(skipNext);
    connect(m_ui->cbNoShow, &QCheckBox::toggled, this, &cDefaultRoomDialog::tellHowToReturn);
    const QPushButton* empty =
        m_ui->buttonBox->addButton(tr("&Empty Map"), QDialogButtonBox::ActionRole);
    connect(empty, &QPushButton::clicked, this, [this] { done(NO_ROOM); });
    m_ui->sbX->setFocus();
    m_ui->sbX->selectAll();
}

cDefaultRoomDialog::~cDefaultRoomDialog() = default;

cRoomShape cDefaultRoomDialog::shape() const {
    cRoomShape shape;
    shape.x = m_ui->sbX->value();
    shape.y = m_ui->sbY->value();
    shape.z = m_ui->sbZ->value();
    shape.wall = toMapText(m_ui->txtWall->text());
    shape.ceiling = toMapText(m_ui->txtCeil->text());
    shape.floor = toMapText(m_ui->txtFloor->text());
    return shape;
}

bool cDefaultRoomDialog::skipNext() const {
    return m_ui->cbNoShow->isChecked();
}

void cDefaultRoomDialog::tellHowToReturn(bool checked) {
    if (checked)
        QMessageBox::information(
            this, QStringLiteral("Karvex"),
            tr("You have chosen not to display the dialog later upon creation of a new map. To "
               "invoke it again, click the \"New\" button (or a corresponding menu item) holding "
               "the SHIFT key."));
}

// SPDX-License-Identifier: MIT
#include "dialogs/tEntityListDialog.h"

#include "ui_tEntityListDialog.h"

#include <QPushButton>

cEntityListDialog::cEntityListDialog(QWidget* parent)
    : QDialog(parent), m_ui(new Ui::cEntityListDialog) {
    m_ui->setupUi(this);
    connect(m_ui->lstEntities, &QListWidget::currentRowChanged, this,
            &cEntityListDialog::exec_on_entityChanged);
    connect(m_ui->lstEntities, &QListWidget::itemDoubleClicked, this, &cEntityListDialog::accept);
    exec_on_entityChanged(-1);
}

cEntityListDialog::~cEntityListDialog() = default;

uint32_t cEntityListDialog::idOf(int row) const {
    const QListWidgetItem* item = m_ui->lstEntities->item(row);
    return item ? item->data(ID_ROLE).toUInt() : 0;
}

void cEntityListDialog::addEntity(const QString& name, uint32_t id) {
    if (m_ids.contains(id))
        return;
    m_ids.insert(id);
    auto* item = new QListWidgetItem(name, m_ui->lstEntities);
    item->setData(ID_ROLE, id);
    if (m_ui->lstEntities->count() == 1)
        m_ui->lstEntities->setCurrentRow(0);
}

uint32_t cEntityListDialog::currentId() const {
    return idOf(m_ui->lstEntities->currentRow());
}

void cEntityListDialog::keep(const std::function<bool(uint32_t id)>& isAlive) {
    for (int row = m_ui->lstEntities->count() - 1; row >= 0; --row) {
        const uint32_t id = idOf(row);
        if (isAlive(id))
            continue;
        m_ids.remove(id);
        delete m_ui->lstEntities->takeItem(row);
    }
    if (m_ids.isEmpty())
        reject();
}

void cEntityListDialog::exec_on_entityChanged(int row) {
    const uint32_t id = idOf(row);
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(id != 0);
    if (id)
        emit entityChanged(id);
}

// SPDX-License-Identifier: MIT
// Shows the titles of the enabled configurations; a double click accepts.
#include "dialogs/tSelectGameCfgDialog.h"

#include "resources/tGameConfigRegistry.h"
#include "ui_tSelectGameCfgDialog.h"

#include <QPushButton>

cSelectGameCfgDialog::cSelectGameCfgDialog(const cGameConfigRegistry& registry, QWidget* parent)
    : QDialog(parent), m_ui(new Ui::cSelectGameCfgDialog) {
    m_ui->setupUi(this);
    setFixedSize(size());
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    fillList(registry);
    connect(m_ui->lstGameCfg, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

cSelectGameCfgDialog::~cSelectGameCfgDialog() = default;

void cSelectGameCfgDialog::fillList(const cGameConfigRegistry& registry) {
    for (const cGameConfig* config : registry.configs)
        if (config->enabled)
            m_ui->lstGameCfg->addItem(config->title);
    m_ui->lstGameCfg->setCurrentRow(0);
}

QString cSelectGameCfgDialog::selectedName() const {
    const QListWidgetItem* item = m_ui->lstGameCfg->currentItem();
    return item ? item->text() : QString();
}

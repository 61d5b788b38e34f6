// SPDX-License-Identifier: MIT
#include "dialogs/tEditGroupsDialog.h"

#include "document/tMap.h"
#include "document/tMapWatcher.h"
#include "document/tVisGroup.h"
#include "support/tHost.h"
#include "support/tMapText.h"
#include "ui_tEditGroupsDialog.h"

#include <QColorDialog>
#include <QMessageBox>

static constexpr int ID_ROLE = 32;

cEditGroupsDialog::cEditGroupsDialog(cMap& map, uint32_t currentId, QWidget* parent)
    : QDialog(parent), m_map(map), m_ui(new Ui::cEditGroupsDialog) {
    m_ui->setupUi(this);
    setFixedSize(size());
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    QListWidgetItem* current = nullptr;
    for (const cVisGroup* group : m_map.visGroups) {
        if (!group)
            continue;
        QListWidgetItem* item = addItem(*group);
        if (group->id == currentId)
            current = item;
    }
    connect(m_ui->lstVisGroups, &QListWidget::currentItemChanged, this,
            &cEditGroupsDialog::exec_on_selectVisGroup);
    connect(m_ui->txtName, &QLineEdit::textEdited, this,
            &cEditGroupsDialog::exec_on_changeVisGroupName);
    connect(m_ui->btnColor, &QPushButton::clicked, this,
            &cEditGroupsDialog::exec_on_pickVisGroupColor);
    connect(m_ui->btnNew, &QPushButton::clicked, this, &cEditGroupsDialog::exec_on_addVisGroup);
    connect(m_ui->btnRemove, &QPushButton::clicked, this,
            &cEditGroupsDialog::exec_on_removeVisGroup);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
    m_ui->lstVisGroups->setCurrentItem(current);
    exec_on_selectVisGroup(current);
}

cEditGroupsDialog::~cEditGroupsDialog() = default;

QListWidgetItem* cEditGroupsDialog::addItem(const cVisGroup& group) {
    auto* item = new QListWidgetItem(fromMapText(group.name), m_ui->lstVisGroups);
    item->setData(ID_ROLE, group.id);
    return item;
}

cVisGroup* cEditGroupsDialog::groupOf(const QListWidgetItem* item) const {
    return item ? m_map.findVisGroup(item->data(ID_ROLE).toUInt()) : nullptr;
}

void cEditGroupsDialog::changed() {
    m_map.changed(MC_VISGROUPS | MC_OBJECTS | MC_EDITED);
}

void cEditGroupsDialog::showColor(const cVisGroup* group) {
    QPalette palette; // the default one without a group
    if (group)
        palette.setColor(QPalette::Window,
                         QColor(group->color[0], group->color[1], group->color[2]));
    m_ui->lblColor->setPalette(palette);
    m_ui->lblColor->setAutoFillBackground(group != nullptr);
}

void cEditGroupsDialog::exec_on_selectVisGroup(QListWidgetItem* item) {
    const cVisGroup* group = groupOf(item);
    m_ui->txtName->setText(group ? fromMapText(group->name) : QString());
    showColor(group);
    for (QWidget* widget :
         {static_cast<QWidget*>(m_ui->txtName), static_cast<QWidget*>(m_ui->btnColor),
          static_cast<QWidget*>(m_ui->btnRemove)})
        widget->setEnabled(group != nullptr);
}

void cEditGroupsDialog::exec_on_addVisGroup() {
    const cVisGroup* group = m_map.createVisGroup("new group");
    if (!group)
        return;
    m_ui->lstVisGroups->setCurrentItem(addItem(*group));
    m_ui->txtName->setFocus();
    m_ui->txtName->selectAll();
}

void cEditGroupsDialog::exec_on_removeVisGroup() {
    QListWidgetItem* item = m_ui->lstVisGroups->currentItem();
    cVisGroup* group = groupOf(item);
    if (!group)
        return;
    if (group->objectCount > 0) {
        const QString question =
            tr("Are you sure to remove visgroup \"%1\" containing %2 objects?")
                .arg(fromMapText(group->name), QString::number(group->objectCount));
        if (QMessageBox::question(this, QStringLiteral("Karvex"), question,
                                  QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes)
            return;
    }
    m_map.removeVisGroup(group);
    delete item;
}

void cEditGroupsDialog::exec_on_pickVisGroupColor() {
    cVisGroup* group = groupOf(m_ui->lstVisGroups->currentItem());
    if (!group)
        return;
    const QColor before(group->color[0], group->color[1], group->color[2]);
    const QColor color = QColorDialog::getColor(before, this, tr("Choose Color"));
    if (!color.isValid())
        return;
    group->color[0] = uint8_t(color.red());
    group->color[1] = uint8_t(color.green());
    group->color[2] = uint8_t(color.blue());
    group->color[3] = 255;
    noteChange(m_map);
    showColor(group);
    changed();
}

void cEditGroupsDialog::exec_on_changeVisGroupName() {
    QListWidgetItem* item = m_ui->lstVisGroups->currentItem();
    cVisGroup* group = groupOf(item);
    if (!group)
        return;
    const QString text = m_ui->txtName->text();
    item->setText(text);
    group->setName(toMapText(text).constData());
    changed();
}

// SPDX-License-Identifier: MIT
#include "dialogs/tTextureBoxes.h"

#include "document/tTexture.h"
#include "resources/tTextureCatalogue.h"
#include "support/tMapText.h"

#include <QComboBox>
#include <QIcon>
#include <QListView>

static constexpr int ICON_SIDE = 24; // pixels

// ---- Groups

static void addGroup(QComboBox& box, const QString& name, const QString& icon) {
    box.addItem(QIcon(icon), name);
}

void fillGroupCombo(QComboBox& box, const cTextureCatalogue& catalogue, const QString& wanted) {
    box.clear();
    if (catalogue.missingCount > 0)
        addGroup(box, cTextureCatalogue::missing(), QStringLiteral(":/qrc/l_all.png"));
    for (const cTextureGroup& group : catalogue.groupList)
        addGroup(box, group.name, group.icon);
    const int row = box.findText(wanted);
    if (row >= 0)
        box.setCurrentIndex(row);
}

// ---- Textures

cTextureListModel::cTextureListModel(cFind catalogue, QComboBox* box)
    : QAbstractListModel(box), m_catalogue(std::move(catalogue)) {
    auto* view = new QListView;
    view->setUniformItemSizes(true); // or each name is measured before the list opens
    view->setLayoutMode(QListView::Batched);
    view->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    box->setView(view);
    box->setModel(this);
    box->setIconSize(QSize(ICON_SIDE, ICON_SIDE));
}

void cTextureListModel::fillTextureCombo(const cTextureCatalogue& catalogue, const QString& group) {
    const bool all = group == cTextureCatalogue::allTextures();
    beginResetModel();
    m_names.clear();
    for (const cTextureEntry& entry : catalogue.entries)
        if (all || entry.group == group)
            m_names.append(fromMapText(entry.texture->name));
    endResetModel();
}

void cTextureListModel::clear() {
    beginResetModel();
    m_names.clear();
    endResetModel();
}

int cTextureListModel::rowOf(const QString& name) const {
    for (int row = 0; row < m_names.size(); ++row)
        if (m_names[row].compare(name, Qt::CaseInsensitive) == 0)
            return row;
    return -1;
}

int cTextureListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_names.size();
}

QVariant cTextureListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_names.size())
        return QVariant();
    const QString& name = m_names[index.row()];
    if (role == Qt::DisplayRole || role == Qt::EditRole || role == Qt::ToolTipRole)
        return name;
    if (role != Qt::DecorationRole)
        return QVariant();
    const cTextureCatalogue* catalogue = m_catalogue();
    const cTexture* texture = catalogue ? catalogue->find(name) : nullptr;
    return texture && texture->icon ? QVariant(*texture->icon) : QVariant();
}

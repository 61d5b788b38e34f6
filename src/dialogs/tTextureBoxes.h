// SPDX-License-Identifier: MIT
// The two combo boxes by which a texture is chosen by name: its group, and the textures of the
// group with their icons.
#pragma once

#include <QAbstractListModel>
#include <QStringList>
#include <functional>

class QComboBox;
class cTextureCatalogue;

// "(Missing Textures)" first where there are any, then the groups; selects the wanted one if it is
// there.
void fillGroupCombo(QComboBox& box, const cTextureCatalogue& catalogue, const QString& wanted);

// The names of one group. Icons are looked up when they are painted, so thousands cost nothing.
class cTextureListModel : public QAbstractListModel {
public:
    using cFind = std::function<const cTextureCatalogue*()>; // null: no icons just now

    cTextureListModel(cFind catalogue, QComboBox* box); // which shows it from now on

    void fillTextureCombo(const cTextureCatalogue& catalogue, const QString& group);
    void clear();
    int rowOf(const QString& name) const; // without regard to case; -1: it is not listed

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    cFind m_catalogue;
    QStringList m_names; // in the order of the catalogue
};

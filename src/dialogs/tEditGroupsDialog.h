// SPDX-License-Identifier: MIT
// Adds, removes, names and colours the visgroups of a map. There is no Cancel: every change
// stands as it is made, and none is in the history.
#pragma once

#include <QDialog>
#include <memory>

class QListWidgetItem;
class cMap;
class cVisGroup;

namespace Ui {
class cEditGroupsDialog;
}

class cEditGroupsDialog : public QDialog {
    Q_OBJECT

public:
    // currentId: the visgroup to start on, 0 for none.
    cEditGroupsDialog(cMap& map, uint32_t currentId, QWidget* parent);
    ~cEditGroupsDialog() override;

private slots:
    void exec_on_addVisGroup();
    void exec_on_removeVisGroup();
    void exec_on_pickVisGroupColor();
    void exec_on_changeVisGroupName();
    void exec_on_selectVisGroup(QListWidgetItem* item);

private:
    QListWidgetItem* addItem(const cVisGroup& group);
    cVisGroup* groupOf(const QListWidgetItem* item) const;
    void showColor(const cVisGroup* group);
    void changed(); // what a view or the file shows

    cMap& m_map;
    std::unique_ptr<Ui::cEditGroupsDialog> m_ui;
};

// SPDX-License-Identifier: MIT
// The choice of one entity out of several. It knows them by id, so that an entity may go while
// the list is up; whoever shows it drops the rows of those that are gone.
#pragma once

#include <QDialog>
#include <QSet>
#include <functional>
#include <memory>

namespace Ui {
class cEntityListDialog;
}

class cEntityListDialog : public QDialog {
    Q_OBJECT

public:
    static constexpr int ID_ROLE = 32; // the entity's id

    explicit cEntityListDialog(QWidget* parent = nullptr);
    ~cEntityListDialog() override;

    // A row, unless the entity has one already; the first becomes the current one.
    void addEntity(const QString& name, uint32_t id);
    uint32_t currentId() const; // 0 with no current row
    // Rows of which it says no go; a list that gets empty is cancelled.
    void keep(const std::function<bool(uint32_t id)>& isAlive);

public slots:
    void exec_on_entityChanged(int row);

signals:
    void entityChanged(uint32_t id); // of the current row

private:
    uint32_t idOf(int row) const;

    std::unique_ptr<Ui::cEntityListDialog> m_ui;
    QSet<uint32_t> m_ids;
};

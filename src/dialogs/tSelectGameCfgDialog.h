// SPDX-License-Identifier: MIT
// The choice of a game configuration when a document is made or opened and several are enabled.
#pragma once

#include <QDialog>
#include <memory>

class cGameConfigRegistry;

namespace Ui {
class cSelectGameCfgDialog;
}

class cSelectGameCfgDialog : public QDialog {
    Q_OBJECT

public:
    cSelectGameCfgDialog(const cGameConfigRegistry& registry, QWidget* parent);
    ~cSelectGameCfgDialog() override;

    QString selectedName() const; // title of the current row, empty with none

private:
    void fillList(const cGameConfigRegistry& registry);

    std::unique_ptr<Ui::cSelectGameCfgDialog> m_ui;
};

// SPDX-License-Identifier: MIT
// Shows a longer text, taken as HTML, for reading only.
#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class cMessageDialog;
}

class cMessageDialog : public QDialog {
    Q_OBJECT

public:
    cMessageDialog(const QString& text, const QString& title, QWidget* parent);
    ~cMessageDialog() override;

private:
    std::unique_ptr<Ui::cMessageDialog> m_ui;
};

// SPDX-License-Identifier: MIT
// Asks for three values that turn, scale or move the selection, and makes a matrix of them.
#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class cTransformDialog;
}

class cTransformDialog : public QDialog {
    Q_OBJECT

public:
    explicit cTransformDialog(QWidget* parent = nullptr);
    ~cTransformDialog() override;

    // 4x4, row-major, translation in the last column.
    void matrix(float out[16]) const;

private:
    std::unique_ptr<Ui::cTransformDialog> m_ui;
};

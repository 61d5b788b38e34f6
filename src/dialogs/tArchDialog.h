// SPDX-License-Identifier: MIT
// Asks for the shape of an arch. One object serves the whole program, so its values survive from
// one arch to the next.
#pragma once

#include "operations/tPrimitives.h"

#include <QDialog>
#include <memory>

namespace Ui {
class cArchDialog;
}

class cArchDialog : public QDialog {
    Q_OBJECT

public:
    explicit cArchDialog(QWidget* parent = nullptr);
    ~cArchDialog() override;

    // Modal. extent: the smaller one of the arch's box on its base, in units; the wall is at most
    // half of it. False after Cancel.
    bool ask(float extent);
    cArchShape shape() const;

public slots:
    void makeCircle();
    void updatePreview();

private:
    std::unique_ptr<Ui::cArchDialog> m_ui;
    int m_extent = 64;
};

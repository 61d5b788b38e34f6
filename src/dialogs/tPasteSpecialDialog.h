// SPDX-License-Identifier: MIT
// How often the clipboard is pasted, and how each copy is moved and turned against the one before.
#pragma once

#include <QDialog>
#include <memory>

class QDoubleSpinBox;

namespace Ui {
class cPasteSpecialDialog;
}

class cPasteSpecialDialog : public QDialog {
    Q_OBJECT

public:
    // Bounds of the clipboard's contents; the offset buttons take their extents.
    cPasteSpecialDialog(const float* mins, const float* maxs, QWidget* parent = nullptr);
    ~cPasteSpecialDialog() override;

    int copies() const;
    bool startsAtCenter() const; // of the original, not at the mouse
    bool groupsCopies() const;
    bool offset(float out[3]) const;   // world units a copy; false: not given
    bool rotation(float out[3]) const; // degrees a copy; false: not given

public slots:
    void exec_on_setOffsetX();
    void exec_on_setOffsetY();
    void exec_on_setOffsetZ();

private:
    void setOffset(QDoubleSpinBox* box, int axis);

    std::unique_ptr<Ui::cPasteSpecialDialog> m_ui;
    float m_size[3];
};

// SPDX-License-Identifier: MIT
// The window that is up during one long operation: a title, a changing line and a moving picture.
// It has no close button; whoever made it takes it away.
#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class cWaitDialog;
}

class cWaitDialog : public QDialog {
    Q_OBJECT

public:
    cWaitDialog(const QString& title, const QString& text, QWidget* parent = nullptr);
    ~cWaitDialog() override;

    // Both run the event loop once, without user input.
    void setTitle(const QString& text);
    void setText(const QString& text);
    void centerOnMainWindow(); // over the parent; raises and activates as well

protected:
    void reject() override {} // Esc does not end the operation
    void closeEvent(QCloseEvent* event) override;

private:
    std::unique_ptr<Ui::cWaitDialog> m_ui;
};

// The one that is up, or null.
extern cWaitDialog* g_waitDialog;

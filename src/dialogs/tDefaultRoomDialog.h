// SPDX-License-Identifier: MIT
// Asks whether a new map begins with a closed room, and which one, or stays empty.
#pragma once

#include "operations/tDefaultRoom.h"

#include <QDialog>
#include <memory>

namespace Ui {
class cDefaultRoomDialog;
}

class cDefaultRoomDialog : public QDialog {
    Q_OBJECT

public:
    static constexpr int NO_ROOM = 2; // a result, beside Accepted and Rejected

    // skipNext: the dialog came although new maps do without it.
    cDefaultRoomDialog(const cRoomShape& shape, bool skipNext, QWidget* parent = nullptr);
    ~cDefaultRoomDialog() override;

    cRoomShape shape() const;
    bool skipNext() const; // new maps shall not ask again

private:
    void tellHowToReturn(bool checked);

    std::unique_ptr<Ui::cDefaultRoomDialog> m_ui;
};

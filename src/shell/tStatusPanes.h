// SPDX-License-Identifier: MIT
// The seven panes of the status bar.
#pragma once

#include <QString>
#include <array>

class QLabel;
class QStatusBar;

// Numbers of the panes. Messages that come and go show in the first.
enum ePane {
    PANE_MESSAGE,
    PANE_GAME,
    PANE_SELECTION,
    PANE_POSITION,
    PANE_BOX,
    PANE_ZOOM,
    PANE_SNAP,
    PANE_COUNT
};

class cStatusPanes {
public:
    cStatusPanes(QStatusBar& bar, const QString& longestMessage);

    // Shows at once. Nothing for a number that is no pane's.
    void setText(const QString& text, int pane);
    QLabel* label(int pane) const { return m_labels[size_t(pane)]; }

private:
    std::array<QLabel*, PANE_COUNT> m_labels = {};
};

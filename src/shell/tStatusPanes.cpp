// SPDX-License-Identifier: MIT
#include "shell/tStatusPanes.h"

#include <QLabel>
#include <QStatusBar>

// Each pane has room for such a text, in whatever font.
cStatusPanes::cStatusPanes(QStatusBar& bar, const QString& longestMessage) {
    constexpr int MARGIN = 12;
    const QString samples[PANE_COUNT] = {longestMessage,
                                         QStringLiteral("Some game (profile)"),
                                         QStringLiteral("group of 1000 objects."),
                                         QStringLiteral("@-4096, -4096"),
                                         QStringLiteral("4096w 4096l 4096h"),
                                         QStringLiteral("Zoom: 100"),
                                         QStringLiteral("Snap: Off Grid: 512")};
    for (int pane = 0; pane < PANE_COUNT; ++pane) {
        auto* label = new QLabel(&bar);
        label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        label->setTextFormat(Qt::PlainText);
        label->setMinimumWidth(label->fontMetrics().horizontalAdvance(samples[pane]) + MARGIN);
        if (pane == PANE_MESSAGE) // a long message is cut and does not widen the window
            label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        bar.addPermanentWidget(label, pane == PANE_MESSAGE ? 1 : 0);
        m_labels[size_t(pane)] = label;
    }
}

void cStatusPanes::setText(const QString& text, int pane) {
    if (pane < 0 || pane >= PANE_COUNT)
        return;
    label(pane)->setText(text);
    label(pane)->repaint();
}

// SPDX-License-Identifier: MIT
// The message console: a dock with the last lines of all that the program has to say. The print
// functions write to it through the main window.
#pragma once

#include "support/tHost.h"

#include <QDockWidget>
#include <QElapsedTimer>

class QTextEdit;

class cConsoleDock : public QDockWidget {
public:
    static constexpr int LINES = 10000; // it keeps the last of them

    explicit cConsoleDock(QWidget* parent);

    // Text that is not HTML is shown as it stands, markup and all. A run of messages lets the
    // window repaint now and then.
    void append(const QString& text, bool isHtml, bool bold);
    void appendColored(const QString& text, bool isHtml, bool bold, const QColor& color);
    void message(eMessage level, const char* text); // 8-bit in the locale codec, with markup

    void lookLikePanel(); // after a change of the application's palette
    QTextEdit* text() const { return m_text; }

private:
    QTextEdit* m_text;
    QElapsedTimer m_sinceEvents; // were last let run
};

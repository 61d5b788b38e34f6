// SPDX-License-Identifier: MIT
#include "shell/tConsoleDock.h"

#include "shell/tMainWindow.h"
#include "support/tMapText.h"

#include <QApplication>
#include <QTextDocument>
#include <QTextEdit>

// How often a run of messages lets the window repaint, in ms.
static constexpr int EVENT_INTERVAL = 50;

cConsoleDock::cConsoleDock(QWidget* parent)
    : QDockWidget(cMainWindow::tr("Messages"), parent), m_text(new QTextEdit) {
    setObjectName(QStringLiteral("console"));
    m_text->setObjectName(QStringLiteral("ConsoleText"));
    m_text->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_text->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_text->setUndoRedoEnabled(false);
    m_text->document()->setMaximumBlockCount(LINES);
    m_text->setReadOnly(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_text->setAutoFillBackground(true);
    m_text->setStatusTip(cMainWindow::helpTip());
    setWidget(m_text);
    lookLikePanel();
    m_sinceEvents.start();
}

void cConsoleDock::lookLikePanel() {
    QPalette panel = QApplication::palette();
    panel.setBrush(QPalette::Base, panel.window());
    m_text->setPalette(panel);
}

void cConsoleDock::message(eMessage level, const char* text) {
    QString line = fromMapText(text);
    if (level == eMessage::Warning)
        line = QStringLiteral("<font color=\"#FF6000\"><b>Warning:</b></font> ") + line;
    else if (level == eMessage::Error)
        line = QStringLiteral("<font color=\"red\"><b>Error:</b></font> ") + line;
    append(line, true, false);
}

void cConsoleDock::append(const QString& text, bool isHtml, bool bold) {
    QString line = text;
    if (!isHtml)
        line.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    if (bold)
        line = QStringLiteral("<b>%1</b>").arg(line);
    // The element makes the text edit take even a plain line as HTML.
    m_text->append(QStringLiteral("<span>%1</span>").arg(line));
    m_text->moveCursor(QTextCursor::End);
    if (!g_closing && m_sinceEvents.elapsed() >= EVENT_INTERVAL) {
        m_sinceEvents.start();
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
}

void cConsoleDock::appendColored(const QString& text, bool isHtml, bool bold, const QColor& color) {
    QString line = text;
    if (!isHtml)
        line.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    line = QStringLiteral("<font color=\"%1\">%2</font>").arg(color.name(), line);
    append(line, true, bold);
}

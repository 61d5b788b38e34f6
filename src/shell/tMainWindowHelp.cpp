// SPDX-License-Identifier: MIT
// The Help menu.
#include "dialogs/tMessageDialog.h"
#include "shell/tCommandMenus.h"
#include "shell/tCustomAction.h"
#include "shell/tMainWindow.h"
#include "support/tConsole.h"
#include "support/tMapText.h"
#include "support/tSystem.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QUrl>
#include <algorithm>
#include <iterator>

// ---- Help

// Files beside the program, and pages of general use. A row without text is a separator.
static const struct {
    const char* text;
    const char* link;
} g_webLinks[] = {
    {"&Polyhedra and Half-Spaces", "https://en.wikipedia.org/wiki/Convex_polytope"},
    {"&Constructive Solid Geometry", "https://en.wikipedia.org/wiki/Constructive_solid_geometry"},
    {"&Binary Space Partitioning", "https://en.wikipedia.org/wiki/Binary_space_partitioning"},
    {nullptr, nullptr},
    {"&Level Design", "https://en.wikipedia.org/wiki/Level_design"},
};

static void openAddress(const QUrl& url) {
    Print("openUrl: \"%s\"", toMapText(url.toString()).constData());
    QDesktopServices::openUrl(url);
}

void cMainWindow::createWebMenu() {
    QMenu* menu = m_menus->webMenu;
    for (const auto& link : g_webLinks) {
        if (!link.text) {
            menu->addSeparator();
            continue;
        }
        auto* action = new QCustomAction(tr(link.text), menu);
        action->value = QString::fromLatin1(link.link);
        action->setStatusTip(action->value);
        connect(action, &QAction::triggered, this, [action] { openAddress(QUrl(action->value)); });
        menu->addAction(action);
    }
}

void cMainWindow::cmdHelpTopics() {
    const QString path = QDir(appBaseDir()).filePath(QStringLiteral("TDKManual.pdf"));
    if (QFileInfo::exists(path))
        openAddress(QUrl::fromLocalFile(path));
    else
        Error("help file \"%s\" doesn't exist!", toMapText(path).constData());
}

void cMainWindow::cmdHelpCmdList() {
    const QString format = QStringLiteral("%1: %2");
    QStringList lines;
    QList<const QAction*> all;
    std::copy(m_menus->actions.begin(), m_menus->actions.end(), std::back_inserter(all));
    std::copy(m_menus->toolActions.begin(), m_menus->toolActions.end(), std::back_inserter(all));
    for (const QAction* action : qAsConst(all)) {
        const QString tip = action->statusTip();
        const QString text = tip.isEmpty() ? action->text().remove(QLatin1Char('&')) : tip;
        if (!action->shortcut().isEmpty())
            lines.append(format.arg(text, action->shortcut().toString()));
    }
    for (QString& line : lines)
        line = line.toHtmlEscaped();
    lines.sort();
    cMessageDialog(lines.join(QStringLiteral("<br>")), tr("Command List"), this).exec();
}

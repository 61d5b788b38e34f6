// SPDX-License-Identifier: MIT
// The tooltip rule that menus, bars and plug-in entries share.
#include "shell/tCustomAction.h"

QString tooltipWithShortcut(const QString& text, const QKeySequence& shortcut) {
    if (shortcut.isEmpty())
        return text;
    return QStringLiteral("%1 [%2]").arg(text, shortcut.toString(QKeySequence::PortableText));
}

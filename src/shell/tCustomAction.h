// SPDX-License-Identifier: MIT
// Actions and separators that know how they behave without a document and under which tools.
// Made from the rows of the command table, or for the entries of plug-ins; cCommandMenus brings
// them up to date by these fields.
#pragma once

#include <QAction>

struct cCommandRow;

struct cActionRules {
    bool hideWithoutDocument = false;
    bool disableWithoutDocument = false;
    uint32_t toolMask = 0;            // bit n: disabled while tool n is current
    const cCommandRow* row = nullptr; // null: of a plug-in
};

class QCustomAction : public QAction, public cActionRules {
public:
    using QAction::QAction;

    int toolIndex = -1; // number of a tool, a plug-in action or a colour scheme
    QString value;      // object name of a dock, or the target of a link
};

class QCustomSeparator : public QAction, public cActionRules {
public:
    explicit QCustomSeparator(QObject* parent) : QAction(parent) { setSeparator(true); }
};

// "%1 [%2]" of text and shortcut, or the text alone.
QString tooltipWithShortcut(const QString& text, const QKeySequence& shortcut);

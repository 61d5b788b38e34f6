// SPDX-License-Identifier: MIT
// Asking for the names of files to open and to save under.
#pragma once

#include <QList>
#include <QString>

class QWidget;

struct cSaveFilter {
    QString filter;    // as a file dialog shows it
    QString extension; // with its point
};

// Filters of several kinds as one text.
QString joinFilters(const QStringList& filters);

// proposal: a name without extension. A name without a suffix gets the extension of the filter
// that was chosen. What is there already is asked about. Empty after Cancel.
QString askSaveName(QWidget* parent, const QString& directory, const QList<cSaveFilter>& filters,
                    const QString& proposal = QString());

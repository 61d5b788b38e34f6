// SPDX-License-Identifier: MIT
// The files opened and saved last, and their entries in the File menu. Stored with the settings.
#pragma once

#include <QList>
#include <QObject>
#include <QStringList>

class QAction;
class QMenu;
class cIniFile;

class cRecentFiles : public QObject {
    Q_OBJECT

public:
    static constexpr int COUNT = 8; // of those that show and are stored

    // The entries stand in menu before end, below separator, which shows while there are any.
    cRecentFiles(QMenu& menu, QAction* end, QAction* separator);

    void add(const QString& path); // as the first one
    void refresh();                // drops what is on disk no more
    void read(const cIniFile& file);
    void write(cIniFile& file) const;
    const QStringList& paths() const { return m_paths; }

signals:
    void chosen(const QString& path);

private:
    void chooseEntry();

    QStringList m_paths; // most recent first
    QAction* m_separator;
    QList<QAction*> m_entries;
};

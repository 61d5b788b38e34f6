// SPDX-License-Identifier: MIT
#include "shell/tRecentFiles.h"

#include "support/tIniFile.h"

#include <QAction>
#include <QFileInfo>
#include <QMenu>

static const QString GROUP = QStringLiteral("RecentFiles");
static const QString KEY = QStringLiteral("RecentFile");

cRecentFiles::cRecentFiles(QMenu& menu, QAction* end, QAction* separator) : m_separator(separator) {
    for (int i = 0; i < COUNT; ++i) {
        auto* entry = new QAction(&menu);
        connect(entry, &QAction::triggered, this, &cRecentFiles::chooseEntry);
        menu.insertAction(end, entry);
        m_entries.append(entry);
    }
    refresh();
}

void cRecentFiles::add(const QString& path) {
    m_paths.removeAll(path);
    m_paths.prepend(path);
    refresh();
}

static void showFile(QAction* entry, int number, const QFileInfo& info) {
    const QString name = info.fileName().replace(QLatin1Char('&'), QLatin1String("&&"));
    entry->setText(QStringLiteral("&%1 %2").arg(number).arg(name));
    entry->setStatusTip(info.canonicalFilePath());
    entry->setData(info.canonicalFilePath());
}

void cRecentFiles::refresh() {
    for (int i = m_paths.size() - 1; i >= 0; --i)
        if (!QFileInfo::exists(m_paths[i]))
            m_paths.removeAt(i);
    for (int i = 0; i < COUNT; ++i) {
        m_entries[i]->setVisible(i < m_paths.size());
        if (i < m_paths.size())
            showFile(m_entries[i], i + 1, QFileInfo(m_paths[i]));
    }
    m_separator->setVisible(!m_paths.isEmpty());
}

void cRecentFiles::chooseEntry() {
    if (const auto* entry = qobject_cast<const QAction*>(sender()))
        emit chosen(entry->data().toString());
}

// ---- Settings

void cRecentFiles::read(const cIniFile& file) {
    m_paths += file.list(GROUP, KEY, COUNT);
    refresh();
}

void cRecentFiles::write(cIniFile& file) const {
    file.setList(GROUP, KEY, COUNT, m_paths);
}

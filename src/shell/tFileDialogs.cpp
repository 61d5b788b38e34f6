// SPDX-License-Identifier: MIT
#include "shell/tFileDialogs.h"

#include "shell/tMainWindow.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

QString joinFilters(const QStringList& filters) {
    return filters.join(QStringLiteral(";;"));
}

// The dialog adds none to a name that holds a point, and has asked of another file than this one.
static QString withSuffix(QWidget* parent, const QString& name, const QString& suffix) {
    const QString whole = name + QLatin1Char('.') + suffix;
    const QString question = cMainWindow::tr("%1 already exists.\nDo you want to replace it?")
                                 .arg(QFileInfo(whole).fileName());
    if (QFileInfo::exists(whole) &&
        QMessageBox::warning(parent, QStringLiteral("Karvex"), question,
                             QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes)
        return QString();
    return whole;
}

// The extension is added inside the dialog, so that it asks before the real name is overwritten.
QString askSaveName(QWidget* parent, const QString& directory, const QList<cSaveFilter>& filters,
                    const QString& proposal) {
    QStringList texts;
    for (const cSaveFilter& filter : filters)
        texts.append(filter.filter);
    QFileDialog dialog(parent, QString(), directory, joinFilters(texts));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.selectFile(proposal);
    const auto followFilter = [&](const QString& chosen) {
        dialog.setDefaultSuffix(filters[qMax(0, texts.indexOf(chosen))].extension.mid(1));
    };
    followFilter(texts.first());
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, followFilter);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    const QString name = dialog.selectedFiles().first();
    for (const cSaveFilter& filter : filters)
        if (name.endsWith(filter.extension, Qt::CaseInsensitive))
            return name;
    return withSuffix(parent, name, dialog.defaultSuffix());
}

// SPDX-License-Identifier: MIT
// The labels and the picture; g_waitDialog is set and cleared by whoever shows it.
#include "dialogs/tWaitDialog.h"

#include "ui_tWaitDialog.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QMovie>

cWaitDialog* g_waitDialog = nullptr;

cWaitDialog::cWaitDialog(const QString& title, const QString& text, QWidget* parent)
    : QDialog(parent, Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      m_ui(new Ui::cWaitDialog) {
    m_ui->setupUi(this);
    setFixedSize(size());
    m_ui->lblTitle->setText(title);
    m_ui->lblText->setText(text);
    auto* movie = new QMovie(QStringLiteral(":/qrc/drum.gif"), QByteArray(), this);
    movie->setCacheMode(QMovie::CacheAll);
    m_ui->lblDrums->setMovie(movie);
    movie->start();
}

cWaitDialog::~cWaitDialog() = default;

void cWaitDialog::setTitle(const QString& text) {
    m_ui->lblTitle->setText(text);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void cWaitDialog::setText(const QString& text) {
    m_ui->lblText->setText(text);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void cWaitDialog::centerOnMainWindow() {
    if (const QWidget* parent = parentWidget())
        move(parent->mapToGlobal(parent->rect().center()) - rect().center());
    raise();
    activateWindow();
}

void cWaitDialog::closeEvent(QCloseEvent* event) {
    event->ignore();
}

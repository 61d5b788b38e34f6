// SPDX-License-Identifier: MIT
#include "support/tMapText.h"

#include <QTextCodec>

void setMapCodec() {
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("Windows-1251"));
}

QString fromMapText(const char* text) {
    return QString::fromLocal8Bit(text);
}

QString fromMapText(const QByteArray& bytes) {
    return QString::fromLocal8Bit(bytes);
}

QByteArray toMapText(const QString& text) {
    return text.toLocal8Bit();
}

bool hasMapText(QChar c) {
    return QTextCodec::codecForLocale()->canEncode(c);
}

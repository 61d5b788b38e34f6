// SPDX-License-Identifier: MIT
// Text of maps, files, plug-ins and the console, which is 8 bits a character in one codec, and the
// QString of the same text. Nothing else converts between the two or names the codec.
#pragma once

#include <QByteArray>
#include <QString>

// The codec becomes Windows-1251, for file names as well; before, it is the system's. Called once
// at start-up, after the command line is taken.
void setMapCodec();

QString fromMapText(const char* text);        // a null pointer gives a null string
QString fromMapText(const QByteArray& bytes); // up to a zero byte
QByteArray toMapText(const QString& text);    // what the codec lacks becomes a question mark
bool hasMapText(QChar c);                     // whether the codec has the character

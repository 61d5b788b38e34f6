// SPDX-License-Identifier: MIT
// Short ways to texts and to whole files.
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

inline QString str(const char* text) {
    return QString::fromLatin1(text);
}

// With the folders on the way to it; gives the path back.
inline QString writeFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    EXPECT_EQ(file.write(bytes), bytes.size());
    return path;
}

inline QByteArray readFile(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

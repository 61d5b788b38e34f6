// SPDX-License-Identifier: MIT
// Reads a settings file in the INI format of QSettings as plain texts. QSettings itself would
// build any kind of object that a value asks for ("@Variant(...)"), of any size; a file that is
// cut, flipped or hostile must not decide that. Writing stays with QSettings.
#pragma once

#include <QHash>
#include <QString>

class cIniFile {
public:
    // A file that cannot be read gives an empty one. Bytes are in the locale codec.
    explicit cIniFile(const QString& path);

    // Groups and keys compare without regard to case.
    bool contains(const QString& group, const QString& key) const;
    QString value(const QString& group, const QString& key,
                  const QString& absent = QString()) const;

    // The text that a value stands for: quotes and escapes resolved, a list joined by ", ".
    static QString decodedValue(const QString& raw);
    // A key or group name with its percent signs resolved.
    static QString decodedName(const QString& raw);

private:
    void parse(const QString& text);
    void parseLine(const QString& line, QString& group);

    QHash<QString, QString> m_values; // by "group/key" in lower case
};

// SPDX-License-Identifier: MIT
// A settings file in the INI format of QSettings, as plain texts. QSettings itself would build any
// kind of object that a value asks for ("@Variant(...)"), of any size, and does so when it writes,
// too; a file that is cut, flipped or hostile must not decide that. Cost and memory grow with the
// size of the file.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <vector>

class cIniFile {
public:
    // What is no plain file, or cannot be read, gives an empty one. Bytes are in the locale codec.
    explicit cIniFile(const QString& path);

    // Changes reach the disk by this alone, as a whole or not at all; what nobody has changed is
    // written as it was read. False: the file stays as it was.
    bool save() const;

    // Groups and keys compare without regard to case.
    bool contains(const QString& group, const QString& key) const;
    QString value(const QString& group, const QString& key,
                  const QString& absent = QString()) const;

    void setValue(const QString& group, const QString& key, const QString& text);
    void remove(const QString& group, const QString& key);
    void clear();

    // A list under the keys stem1, stem2 and so on, count of them at most; empty texts are left
    // out. Those of an earlier, longer one go.
    QStringList list(const QString& group, const QString& stem, int count) const;
    void setList(const QString& group, const QString& stem, int count, const QStringList& texts);

    // The text that a value stands for: quotes and escapes resolved, a list joined by ", ".
    static QString decodedValue(const QString& raw);
    // A key or group name with its percent signs resolved.
    static QString decodedName(const QString& raw);
    // Their reverse; what the codec of the locale lacks becomes an escape.
    static QString encodedValue(const QString& text);
    static QString encodedName(const QString& name);

private:
    struct cEntry {
        QString key;
        QString raw; // as it stands in the file; null: removed
    };
    struct cGroup {
        QString name;
        std::vector<cEntry> entries;
        QHash<QString, size_t> places; // of entries, by the key in lower case
    };

    void parse(const QString& text);
    void parseLine(const QString& line, size_t& group);
    size_t groupPlace(const QString& name); // makes it when there is none
    void store(size_t group, const QString& key, const QString& raw);
    QString rawValue(const QString& group, const QString& key) const; // null: absent

    QString m_path;
    std::vector<cGroup> m_groups;
    QHash<QString, size_t> m_groupPlaces; // by the name in lower case
};

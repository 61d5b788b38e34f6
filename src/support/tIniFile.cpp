// SPDX-License-Identifier: MIT
#include "support/tIniFile.h"

#include "support/tMapText.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cctype>
#include <cstring>

cIniFile::cIniFile(const QString& path) : m_path(path) {
    QFile file(path);
    if (QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly))
        parse(fromMapText(file.readAll()));
}

// ---- Entries

QString cIniFile::rawValue(const QString& group, const QString& key) const {
    const auto place = m_groupPlaces.constFind(group.toLower());
    if (place == m_groupPlaces.constEnd())
        return QString();
    const cGroup& found = m_groups[*place];
    const auto entry = found.places.constFind(key.toLower());
    return entry == found.places.constEnd() ? QString() : found.entries[*entry].raw;
}

bool cIniFile::contains(const QString& group, const QString& key) const {
    return !rawValue(group, key).isNull();
}

QString cIniFile::value(const QString& group, const QString& key, const QString& absent) const {
    const QString raw = rawValue(group, key);
    return raw.isNull() ? absent : decodedValue(raw);
}

size_t cIniFile::groupPlace(const QString& name) {
    const QString lower = name.toLower();
    const auto found = m_groupPlaces.constFind(lower);
    if (found != m_groupPlaces.constEnd())
        return *found;
    m_groupPlaces.insert(lower, m_groups.size());
    m_groups.push_back({name, {}, {}});
    return m_groups.size() - 1;
}

void cIniFile::store(size_t group, const QString& key, const QString& raw) {
    cGroup& into = m_groups[group];
    const QString lower = key.toLower();
    const auto found = into.places.constFind(lower);
    if (found != into.places.constEnd()) {
        into.entries[*found].raw = raw;
        return;
    }
    into.places.insert(lower, into.entries.size());
    into.entries.push_back({key, raw});
}

void cIniFile::setValue(const QString& group, const QString& key, const QString& text) {
    store(groupPlace(group), key, encodedValue(text));
}

void cIniFile::remove(const QString& group, const QString& key) {
    if (contains(group, key))
        store(groupPlace(group), key, QString());
}

static QString listKey(const QString& stem, int index) {
    return stem + QString::number(index + 1);
}

QStringList cIniFile::list(const QString& group, const QString& stem, int count) const {
    QStringList texts;
    for (int i = 0; i < count; ++i)
        texts.append(value(group, listKey(stem, i)));
    texts.removeAll(QString());
    return texts;
}

void cIniFile::setList(const QString& group, const QString& stem, int count,
                       const QStringList& texts) {
    for (int i = 0; i < count; ++i) {
        if (i < texts.size())
            setValue(group, listKey(stem, i), texts[i]);
        else
            remove(group, listKey(stem, i));
    }
}

void cIniFile::clear() {
    m_groups.clear();
    m_groupPlaces.clear();
}

// ---- Lines

void cIniFile::parse(const QString& text) {
    size_t group = groupPlace(QStringLiteral("General")); // of keys before the first group
    QString line;
    for (QStringRef part : text.splitRef(QLatin1Char('\n'))) {
        if (part.endsWith(QLatin1Char('\r')))
            part.chop(1);
        line += part;
        if (line.endsWith(QLatin1Char('\\')) && !line.endsWith(QStringLiteral("\\\\"))) {
            line.chop(1); // goes on in the next line
            continue;
        }
        parseLine(line, group);
        line.clear();
    }
    parseLine(line, group);
}

void cIniFile::parseLine(const QString& line, size_t& group) {
    const QString text = line.trimmed();
    if (text.startsWith(QLatin1Char('['))) {
        const int end = text.indexOf(QLatin1Char(']'));
        group = groupPlace(decodedName(text.mid(1, (end < 0 ? text.size() : end) - 1).trimmed()));
        return;
    }
    const int equals = text.indexOf(QLatin1Char('='));
    if (equals <= 0 || text.startsWith(QLatin1Char(';')))
        return;
    store(group, decodedName(text.left(equals).trimmed()), text.mid(equals + 1));
}

static QString lineOf(const QString& key, const QString& raw) {
    return cIniFile::encodedName(key) + QLatin1Char('=') + raw + QLatin1Char('\n');
}

bool cIniFile::save() const {
    QString text;
    for (const cGroup& group : m_groups) {
        QString lines;
        for (const cEntry& entry : group.entries)
            if (!entry.raw.isNull())
                lines += lineOf(entry.key, entry.raw);
        if (!lines.isEmpty())
            text += (text.isEmpty() ? QString() : QStringLiteral("\n")) + QLatin1Char('[') +
                    encodedName(group.name) + QStringLiteral("]\n") + lines;
    }
    QSaveFile file(m_path);
    file.setDirectWriteFallback(true); // where the folder takes no new file
    const QByteArray bytes = toMapText(text);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

// ---- Names

QString cIniFile::decodedName(const QString& raw) {
    QString name;
    for (int i = 0; i < raw.size(); ++i) {
        const bool wide = raw.midRef(i + 1, 1) == QLatin1String("U");
        const QStringRef digits = wide ? raw.midRef(i + 2, 4) : raw.midRef(i + 1, 2);
        bool isHex = false;
        const ushort code = digits.toUShort(&isHex, 16);
        if (raw[i] != QLatin1Char('%') || !isHex || digits.size() != (wide ? 4 : 2)) {
            name += raw[i] == QLatin1Char('\\') ? QLatin1Char('/') : raw[i];
            continue;
        }
        name += QChar(code);
        i += wide ? 5 : 2;
    }
    return name;
}

QString cIniFile::encodedName(const QString& name) {
    QString raw;
    raw.reserve(name.size());
    for (const QChar c : name) {
        const ushort code = c.unicode();
        const bool plain = code < 0x80 && (c.isLetterOrNumber() || strchr("_-.", char(code)));
        if (code == '/')
            raw += QLatin1Char('\\');
        else if (plain && code)
            raw += c;
        else if (code <= 0xFF)
            raw += QString::asprintf("%%%02X", unsigned(code));
        else
            raw += QString::asprintf("%%U%04X", unsigned(code));
    }
    return raw;
}

// ---- Values

namespace {

// One pass over a value; what stands outside quotes is trimmed piece by piece.
class cValueDecoder {
public:
    explicit cValueDecoder(const QString& raw) : m_raw(raw) {}

    QString decode() {
        for (; m_at < m_raw.size(); ++m_at) {
            const QChar c = m_raw[m_at];
            if (c == QLatin1Char('"')) {
                m_quoted = !m_quoted;
                m_kept = m_piece.size();
            } else if (c == QLatin1Char('\\')) {
                escape();
                m_kept = m_piece.size();
            } else if (!m_quoted && c == QLatin1Char(',')) {
                endPiece();
                m_text += QStringLiteral(", ");
            } else if (!m_quoted && c == QLatin1Char(';')) {
                break; // a comment
            } else if (m_quoted || !c.isSpace() || !m_piece.isEmpty()) {
                m_piece += c;
                if (m_quoted || !c.isSpace())
                    m_kept = m_piece.size();
            }
        }
        endPiece();
        return m_text;
    }

private:
    void endPiece() {
        m_text += m_piece.leftRef(m_kept);
        m_piece.clear();
        m_kept = 0;
    }

    void escape() {
        static const char CODES[] = "abfnrtv0";
        static const char VALUES[] = "\a\b\f\n\r\t\v\0";
        if (++m_at >= m_raw.size())
            return;
        const char c = m_raw[m_at].toLatin1();
        if (c == 'x') {
            number();
            return;
        }
        const char* code = c ? strchr(CODES, c) : nullptr;
        m_piece += code ? QChar(QLatin1Char(VALUES[code - CODES])) : m_raw[m_at];
    }

    // Hexadecimal digits, as many as there are.
    void number() {
        unsigned value = 0;
        while (m_at + 1 < m_raw.size()) {
            bool isDigit = false;
            const unsigned digit = m_raw.midRef(m_at + 1, 1).toUInt(&isDigit, 16);
            if (!isDigit)
                break;
            value = value * 16 + digit;
            ++m_at;
        }
        m_piece += QChar(ushort(value));
    }

    const QString& m_raw;
    QString m_text;
    QString m_piece;
    int m_kept = 0; // of m_piece; blanks behind it fall away
    int m_at = 0;
    bool m_quoted = false;
};

} // namespace

QString cIniFile::decodedValue(const QString& raw) {
    const QString text = cValueDecoder(raw).decode();
    if (text.startsWith(QStringLiteral("@@")))
        return text.mid(1);
    // Texts with a zero in them are written so; no other kind of object is a text.
    for (const char* wrapper : {"@String(", "@ByteArray("}) {
        const QLatin1String start(wrapper);
        if (text.startsWith(start) && text.endsWith(QLatin1Char(')')))
            return text.mid(start.size(), text.size() - start.size() - 1);
    }
    if (text == QStringLiteral("@Invalid()"))
        return QString();
    return text;
}

// A zero and what the codec lacks are written by their number, and so is a digit behind a number.
QString cIniFile::encodedValue(const QString& text) {
    static const QString MARKS = QStringLiteral("\"\\\n\r\t");
    static const char NAMES[] = "\"\\nrt";
    QString raw = text.startsWith(QLatin1Char('@')) ? QStringLiteral("@") : QStringLiteral("");
    bool number = false;
    for (const QChar c : text) {
        const int mark = MARKS.indexOf(c);
        const bool digit = c.unicode() < 0x80 && isxdigit(c.unicode());
        const bool byNumber =
            mark < 0 && (c.unicode() < ' ' || !hasMapText(c) || (number && digit));
        if (mark >= 0)
            (raw += QLatin1Char('\\')) += QLatin1Char(NAMES[mark]);
        else if (byNumber)
            raw += QString::asprintf("\\x%x", unsigned(c.unicode()));
        else
            raw += c;
        number = byNumber;
    }
    const bool special = raw.contains(QLatin1Char(';')) || raw.contains(QLatin1Char(',')) ||
                         raw.contains(QLatin1Char('=')) || raw != raw.trimmed() || raw != text;
    return special ? QLatin1Char('"') + raw + QLatin1Char('"') : raw;
}

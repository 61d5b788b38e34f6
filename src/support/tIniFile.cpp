// SPDX-License-Identifier: MIT
#include "support/tIniFile.h"

#include <QFile>
#include <cstring>

static QString nameOf(const QString& group, const QString& key) {
    return group.toLower() + QLatin1Char('/') + key.toLower();
}

cIniFile::cIniFile(const QString& path) {
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        parse(QString::fromLocal8Bit(file.readAll()));
}

bool cIniFile::contains(const QString& group, const QString& key) const {
    return m_values.contains(nameOf(group, key));
}

QString cIniFile::value(const QString& group, const QString& key, const QString& absent) const {
    return m_values.value(nameOf(group, key), absent);
}

// ---- Lines

void cIniFile::parse(const QString& text) {
    QString group = QStringLiteral("General"); // of keys before the first group
    QString line;
    for (QString part : text.split(QLatin1Char('\n'))) {
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

void cIniFile::parseLine(const QString& line, QString& group) {
    const QString text = line.trimmed();
    if (text.startsWith(QLatin1Char('['))) {
        const int end = text.indexOf(QLatin1Char(']'));
        group = decodedName(text.mid(1, (end < 0 ? text.size() : end) - 1).trimmed());
        return;
    }
    const int equals = text.indexOf(QLatin1Char('='));
    if (equals <= 0 || text.startsWith(QLatin1Char(';')))
        return;
    const QString key = decodedName(text.left(equals).trimmed());
    m_values.insert(nameOf(group, key), decodedValue(text.mid(equals + 1)));
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

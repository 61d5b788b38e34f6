// SPDX-License-Identifier: MIT
// The reader of settings files: what QSettings writes comes back, what nobody should write harms
// nothing.
#include "support/tIniFile.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextCodec>
#include <gtest/gtest.h>

static QString str(const char* text) {
    return QString::fromLatin1(text);
}

TEST(IniFileTest, textWrittenBySettingsComesBack) {
    QTextCodec* before = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("Windows-1251"));
    QStringList texts = {QString(QChar(0x416)) + str("f0"), QString(QChar(0)) + str("zero")};
    for (const char* text :
         {"", "plain", " blanks ", "a, b;c = \"d\" % \\ /", "C:\\games\\x", "line\nbreak\ttab\r",
          "@Variant(x)", "@@", "-a, -b", "1", "true", "[x]", "%41"})
        texts << str(text);
    QTemporaryDir folder;
    const QString path = folder.filePath(str("a.ini"));
    {
        QSettings file(path, QSettings::IniFormat);
        file.setIniCodec(QTextCodec::codecForLocale());
        for (int i = 0; i < texts.size(); ++i)
            file.setValue(str("Group %1/Key %2, =").arg(i / 4).arg(i), texts[i]);
        file.setValue(str("alone"), 7);
        file.setValue(str("Group 0/flag"), true);
    }
    const cIniFile file(path);
    for (int i = 0; i < texts.size(); ++i) {
        const QString group = str("group %1").arg(i / 4);
        const QString key = str("Key %1, =").arg(i);
        EXPECT_TRUE(file.contains(group, key)) << i;
        EXPECT_EQ(file.value(group, key).toStdString(), texts[i].toStdString()) << i;
    }
    EXPECT_EQ(file.value(str("General"), str("ALONE")), str("7"));
    EXPECT_EQ(file.value(str("Group 0"), str("flag")), str("true"));
    EXPECT_EQ(file.value(str("Group 0"), str("none"), str("absent")), str("absent"));
    QTextCodec::setCodecForLocale(before);
}

TEST(IniFileTest, textWrittenByHand) {
    const std::pair<const char*, const char*> cases[] = {
        {" a b ", "a b"},   {"a;comment", "a"},     {"\"a;b\" ", "a;b"},         {"a,b", "a, b"},
        {"\"open", "open"}, {"a\\", "a"},           {"\\x41zz", "Azz"},          {"\\x", ""},
        {"@Invalid()", ""}, {"\"a\" \"b\"", "a b"}, {"@Size(1 2)", "@Size(1 2)"}};
    for (const auto& c : cases) {
        QString text = cIniFile::decodedValue(str(c.first));
        text.remove(QChar(0));
        EXPECT_EQ(text.toStdString(), c.second) << c.first;
    }
    EXPECT_EQ(cIniFile::decodedName(str("a%20b%U0041%zz%4")).toStdString(), "a bA%zz%4");
}

TEST(IniFileTest, everyCutOfAFileIsRead) {
    QTemporaryDir folder;
    const QByteArray text("[Gr%20oup\\x]\r\nkey=\"a\\x41\\\n b\", c\n=x\n;n=1\n[open\nk=v\\");
    for (int size = 0; size <= text.size(); ++size) {
        const QString path = folder.filePath(QString::number(size));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.left(size));
        file.close();
        const cIniFile read(path);
        EXPECT_FALSE(read.contains(QString(), QString()));
        EXPECT_EQ(read.contains(str("open"), str("k")), size >= text.size() - 2) << size;
    }
    EXPECT_FALSE(cIniFile(str("/absent.ini")).contains(str("a"), str("b")));
}

// SPDX-License-Identifier: MIT
// Settings files: what was written comes back, what nobody should write harms nothing.
#include "support/tIniFile.h"
#include "support/tFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextCodec>
#include <gtest/gtest.h>

// What QSettings has written, and what the class itself has; QSettings reads that, too.
TEST(IniFileTest, textComesBackWhoeverWroteIt) {
    QTextCodec* before = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("Windows-1251"));
    QStringList texts = {QString(QChar(0x416)) + str("f0"), QString(QChar(0)) + str("0zero"),
                         QString(QChar(0x4e2d)) + str("abc")}; // the codec lacks the last one
    for (const char* text :
         {"", "plain", " blanks ", "a, b;c = \"d\" % \\ /", "C:\\games\\", "line\nbreak\ttab\r",
          "@Variant(x)", "@@", "-a, -b", "1", "true", "[x]", "%41", "=", ";"})
        texts << str(text);
    const auto groupOf = [](int i) { return str("Group %1 %2").arg(i / 4).arg(QChar(0x416)); };
    const auto keyOf = [](int i) { return str("Key %1, =").arg(i); };
    QTemporaryDir folder;
    const QString path = folder.filePath(str("a.ini"));
    for (const bool bySettings : {true, false}) {
        QFile::remove(path);
        if (bySettings) {
            QSettings file(path, QSettings::IniFormat);
            file.setIniCodec(QTextCodec::codecForLocale());
            for (int i = 0; i < texts.size(); ++i)
                if (i != 2) // it would write a question mark
                    file.setValue(groupOf(i) + QLatin1Char('/') + keyOf(i), texts[i]);
            file.setValue(str("alone"), 7);
        } else {
            cIniFile file(path);
            for (int i = 0; i < texts.size(); ++i)
                file.setValue(groupOf(i), keyOf(i), texts[i]);
            file.setValue(str("General"), str("alone"), str("8"));
            file.setValue(str("GENERAL"), str("Alone"), str("7"));
            ASSERT_TRUE(file.save());
        }
        const cIniFile file(path);
        QSettings settings(path, QSettings::IniFormat);
        settings.setIniCodec(QTextCodec::codecForLocale());
        for (int i = bySettings ? 3 : 0; i < texts.size(); ++i) {
            const QString other =
                settings.value(groupOf(i) + QLatin1Char('/') + keyOf(i)).toString();
            EXPECT_TRUE(file.contains(groupOf(i).toUpper(), keyOf(i))) << i;
            EXPECT_EQ(file.value(groupOf(i), keyOf(i)).toStdString(), texts[i].toStdString()) << i;
            EXPECT_EQ(other.toStdString(), texts[i].toStdString()) << i;
        }
        EXPECT_EQ(file.value(str("General"), str("ALONE")), str("7"));
        EXPECT_EQ(file.value(str("General"), str("none"), str("absent")), str("absent"));
    }
    QTextCodec::setCodecForLocale(before);
}

TEST(IniFileTest, savedOverKeepsWhatNobodyChangedAsItWas) {
    QTemporaryDir folder;
    const QString path = folder.filePath(str("a.ini"));
    const QByteArray kept("hostile=@Variant(\\0\\0\\0\\x1c\\xff\\xff\\xff\\xff)\n"
                          "list=a, b,  \"c;\" ; of somebody\n");
    writeFile(path, "top=1\r\n[Own%20group]\n" + kept + "Old=2\ngone=3\n[empty]\n[Gone]\na=b\n");
    cIniFile file(path);
    file.setValue(str("own group"), str("OLD"), str("a=b"));
    file.setValue(str("New"), str("k"), QString());
    file.remove(str("own group"), str("gone"));
    file.remove(str("gone"), str("a"));
    file.remove(str("never"), str("there"));
    EXPECT_FALSE(file.contains(str("gone"), str("a")));
    for (int i = 0; i < 2; ++i) { // and once more as it stands
        ASSERT_TRUE(i == 0 ? file.save() : cIniFile(path).save());
        EXPECT_EQ(readFile(path).toStdString(),
                  ("[General]\ntop=1\n\n[Own%20group]\n" + kept + "Old=\"a=b\"\n\n[New]\nk=\n")
                      .toStdString());
    }
    file.clear();
    ASSERT_TRUE(file.save());
    EXPECT_EQ(QFileInfo(path).size(), 0);
    EXPECT_FALSE(cIniFile(folder.path()).save()) << "no file can stand there";
}

// Names that repeat a long group, and titles that are all taken, cost what the file is long.
TEST(IniFileTest, aLongGroupOfManyKeysIsNotMultiplied) {
    QTemporaryDir folder;
    const QString path = folder.filePath(str("a.ini"));
    QByteArray text = "[" + QByteArray(500000, 'g') + "]\n";
    for (int i = 0; i < 100000; ++i)
        text += QByteArray::number(i) + "=\n";
    writeFile(path, text);
    const cIniFile read(path);
    EXPECT_TRUE(read.contains(QString(500000, QLatin1Char('G')), str("99999")));
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
        writeFile(path, text.left(size));
        const cIniFile read(path);
        EXPECT_FALSE(read.contains(QString(), QString()));
        EXPECT_EQ(read.contains(str("open"), str("k")), size >= text.size() - 2) << size;
    }
    EXPECT_FALSE(cIniFile(str("/absent.ini")).contains(str("a"), str("b")));
}

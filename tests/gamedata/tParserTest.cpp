// SPDX-License-Identifier: MIT
// The tokenizer: what a token is, lines, includes, failures, hostile text.
#include "gamedata/tParser.h"

#include "support/tFiles.h"
#include "support/tMapText.h"
#include "support/tTestHost.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::FloatEq;
using testing::Pointwise;

static std::vector<std::string> tokensOf(const std::string& text) {
    cParser::loadMemory(text.data(), int(text.size()));
    std::vector<std::string> tokens;
    while (cParser::getToken(true))
        tokens.push_back(cParser::token());
    return tokens;
}

class cParserTest : public testing::Test {
protected:
    ~cParserTest() override { cParser::close(); }

    QString write(const QString& name, const QByteArray& text) {
        return writeFile(m_folder.filePath(name), text);
    }
    bool load(const QString& name, const QByteArray& text) {
        return cParser::loadFile(toMapText(write(name, text)).constData());
    }
    int errors(const char* text) {
        return m_host.count(eMessage::Error, QString::fromLatin1(text));
    }

    cTestHost m_host;
    QTemporaryDir m_folder;
};

TEST_F(cParserTest, splitsTextIntoTokens) {
    using list = std::vector<std::string>;
    const std::vector<std::pair<std::string, list>> cases = {
        {"", {}},
        {" \t\r\n\x01", {}},
        {"a=b", {"a", "=", "b"}},
        {"a/b a\"b 1.5e3 a//b /x", {"a/b", "a\"b", "1.5e3", "a//b", "/x"}},
        {"{}()'=[]:@,;", {"{", "}", "(", ")", "'", "=", "[", "]", ":", "@", ",", ";"}},
        {"a // b\nc", {"a", "c"}},
        {"a /* x\n */ b /**/ c", {"a", "b", "c"}},
        {"a // no end", {"a"}},
        {"a /* no end *", {"a"}},
        {"a /", {"a", "/"}},
        {"\"two words\" \"\" \"a\\\"b", {"two words", "", "a\\", "b"}},
        {"\"open", {"open"}},
        {"\"a\nb\"c", {"a\nb", "c"}},
        {"\xE0\xFF!", {"\xE0\xFF!"}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(tokensOf(c.first), c.second) << c.first;
    EXPECT_TRUE(m_host.messages.empty());
}

TEST_F(cParserTest, tokenMustStandOnTheLineWhenItMayNotCrossIt) {
    struct cCase {
        const char* text;
        const char* error; // of the second token; null: it is there
        int line;
    };
    const cCase cases[] = {{"a b", nullptr, 1},
                           {"a\nb", "line 1 is incomplete", 1},
                           {"\n\na\nb", "line 3 is incomplete", 3},
                           {"a", "line 1 is incomplete", 1},
                           {"a // b", "line 1 is incomplete", 1},
                           {"a /* x */ b", "line 1 is incomplete", 1},
                           {"a \r b", nullptr, 1},
                           {"/*\n\n*/ a \"x\ny\" b", nullptr, 3}};
    for (const cCase& c : cases) {
        m_host.messages.clear();
        const std::string text(c.text);
        cParser::loadMemory(text.data(), int(text.size()));
        ASSERT_TRUE(cParser::getToken(true)) << c.text;
        EXPECT_EQ(cParser::getToken(false), c.error == nullptr) << c.text;
        EXPECT_EQ(cParser::hasFailed(), c.error != nullptr) << c.text;
        EXPECT_EQ(cParser::currentLine(), c.line) << c.text;
        EXPECT_EQ(errors(c.error ? c.error : "line"), c.error ? 1 : 0) << c.text;
    }
}

TEST_F(cParserTest, failureSticksUntilCleared) {
    const char text[] = "one\ntwo";
    cParser::loadMemory(text, sizeof text - 1);
    cParser::getToken(true);
    for (const bool crossLine : {false, true})
        EXPECT_FALSE(cParser::getToken(crossLine));
    cParser::clearFailure();
    EXPECT_TRUE(cParser::getToken(true));
    EXPECT_STREQ(cParser::token(), "two");
    cParser::clearFailure();
    cParser::parseError("%s", std::string(3000, 'x').c_str());
    EXPECT_EQ(m_host.messages.back().text,
              QStringLiteral("parse error at line 2: ") + QString(1279, QLatin1Char('x')));
    EXPECT_TRUE(cParser::hasFailed());
}

TEST_F(cParserTest, looksAheadAndTakesBack) {
    const char text[] = "a // comment\n \t\nb";
    cParser::loadMemory(text, sizeof text - 1);
    EXPECT_TRUE(cParser::tokenAvailable());
    EXPECT_TRUE(cParser::getToken(true));
    EXPECT_TRUE(cParser::tokenAvailable()) << "a comment counts";
    EXPECT_TRUE(cParser::getToken(true));
    cParser::ungetToken();
    EXPECT_FALSE(cParser::tokenAvailable()) << "the token pushed back does not count";
    EXPECT_TRUE(cParser::getToken(false)) << "though the cursor stands on a later line";
    EXPECT_STREQ(cParser::token(), "b");
    EXPECT_FALSE(cParser::getToken(true));
    EXPECT_FALSE(cParser::hasFailed());
}

TEST_F(cParserTest, tokenLengthIsLimited) {
    for (const std::string quote : {"", "\""}) {
        const std::string fits = quote + std::string(1023, 'x') + quote;
        EXPECT_EQ(tokensOf(fits).size(), 1u);
        EXPECT_EQ(errors("token too large"), 0);
        EXPECT_TRUE(tokensOf("\n" + quote + std::string(1024, 'x') + quote + " y").empty());
        EXPECT_EQ(errors("token too large on line 2"), 1);
        EXPECT_TRUE(cParser::hasFailed());
        m_host.messages.clear();
    }
}

TEST_F(cParserTest, matchReportsAnotherTokenAndTheEnd) {
    const char text[] = "Same\nsame";
    cParser::loadMemory(text, sizeof text - 1);
    cParser::matchToken("Same");
    EXPECT_FALSE(cParser::hasFailed());
    cParser::matchToken("Same");
    EXPECT_EQ(errors("bad token `same' at line 2 (expected `Same')"), 1);
    cParser::clearFailure();
    cParser::matchToken("same");
    EXPECT_EQ(errors("line 2 is incomplete"), 1);
}

TEST_F(cParserTest, readsNestsOfNumbers) {
    const char text[] = "((1 2.5) (-3 4e1)) (((1 2)(3 4)) ((5 6)(7 x)))";
    cParser::loadMemory(text, sizeof text - 1);
    float matrix[4];
    cParser::parseMatrix(2, 2, matrix);
    EXPECT_THAT(matrix, ElementsAre(1.0f, 2.5f, -3.0f, 40.0f));
    float cube[8];
    cParser::parseCube(2, 2, 2, cube);
    EXPECT_THAT(cube, ElementsAre(1.f, 2.f, 3.f, 4.f, 5.f, 6.f, 7.f, 0.f));
    EXPECT_FALSE(cParser::hasFailed());

    const char broken[] = "( 1 2\n3 )";
    cParser::loadMemory(broken, sizeof broken - 1);
    cParser::parseVector(3, matrix);
    EXPECT_TRUE(cParser::hasFailed());
}

TEST_F(cParserTest, includeIsTransparent) {
    write(QStringLiteral("inner"), "x y");
    ASSERT_TRUE(load(QStringLiteral("outer"), "a\n\"include\" inner\nb\n"));
    std::string seen;
    while (cParser::getToken(true))
        seen += cParser::token() + std::to_string(cParser::currentLine()) + ' ';
    EXPECT_EQ(seen, "a1 x1 y1 b3 ");
    EXPECT_EQ(m_host.count(eMessage::Print, QStringLiteral("Entering: ")), 2);
    EXPECT_EQ(m_host.count(eMessage::Print, QStringLiteral("Returning to \"") +
                                                m_folder.filePath(QStringLiteral("outer"))),
              1);
    EXPECT_EQ(errors(""), 0);
}

TEST_F(cParserTest, includeFailures) {
    write(QStringLiteral("inner"), "x");
    ASSERT_TRUE(load(QStringLiteral("a"), "include\ninner"));
    EXPECT_FALSE(cParser::getToken(true));
    EXPECT_EQ(errors("line 1 is incomplete"), 1);

    ASSERT_TRUE(load(QStringLiteral("b"), "include absent next"));
    EXPECT_TRUE(cParser::getToken(true));
    EXPECT_STREQ(cParser::token(), "next");
    EXPECT_EQ(errors("can't open"), 1);
    EXPECT_FALSE(cParser::hasFailed());

    m_host.messages.clear();
    ASSERT_TRUE(load(QStringLiteral("c"), "include inner tail"));
    EXPECT_TRUE(cParser::getToken(true));
    EXPECT_FALSE(cParser::getToken(false)) << "the included text ended";
    EXPECT_EQ(errors("line 1 is incomplete"), 1);
}

TEST_F(cParserTest, refusesWhatIsNoPlainFile) {
    ASSERT_TRUE(load(QStringLiteral("empty"), ""));
    EXPECT_FALSE(cParser::getToken(true));
    ASSERT_TRUE(load(QStringLiteral("good"), "a b"));
    cParser::getToken(true);
    for (const QString& path :
         {m_folder.path(), m_folder.filePath(QStringLiteral("absent")),
          QString(QLatin1Char('/') + QString(300, QLatin1Char('x'))), QStringLiteral("/dev/tty")}) {
        m_host.messages.clear();
        EXPECT_FALSE(cParser::loadFile(toMapText(path).constData()));
        EXPECT_EQ(errors("can't open"), 1) << qPrintable(path);
        EXPECT_FALSE(cParser::getToken(true)) << "nothing is left open";
    }
}

TEST_F(cParserTest, filesThatIncludeThemselvesEnd) {
    ASSERT_TRUE(load(QStringLiteral("self"), "include self\na\n"));
    int count = 0;
    while (cParser::getToken(true))
        ++count;
    EXPECT_EQ(count, 31) << "the top script and 30 nested ones";
    EXPECT_EQ(errors("script file exceeded MAX_INCLUDES"), 1);
    EXPECT_FALSE(cParser::hasFailed());

    // Read to the end these would be opened 2 to the 30th times.
    ASSERT_TRUE(load(QStringLiteral("twice"), "include twice\ninclude twice\na\n"));
    while (cParser::getToken(true))
        ++count;
    EXPECT_LT(count, 5000);
    EXPECT_FALSE(cParser::hasFailed());

    QByteArray words;
    for (int i = 0; i < 100000; ++i)
        words += "include ";
    ASSERT_TRUE(load(QStringLiteral("words"), words));
    EXPECT_FALSE(cParser::getToken(true));
}

TEST_F(cParserTest, everyCutOfATextIsReadToItsEnd) {
    const std::string text = "@a(\"b c\" /* d */ 1 2) = // e\n[ \"x\ny\" : include \"z\" ]";
    for (size_t size = 0; size <= text.size(); ++size) {
        // A block of exactly that size: reading past it is caught by the address sanitizer.
        std::vector<char> cut(text.begin(), text.begin() + ptrdiff_t(size));
        cParser::loadMemory(cut.data(), int(size));
        size_t count = 0;
        while (cParser::getToken(true))
            ++count;
        EXPECT_LE(count, size);
    }
}

// SPDX-License-Identifier: MIT
// Game data: the grammar, inheritance, redeclared keys, errors, grouping, sharing, precaching.
#include "gamedata/tGameData.h"

#include "gamedata/tGameDataRegistry.h"
#include "support/tFiles.h"
#include "support/tTestHost.h"

#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>

using testing::Each;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class cGameDataTest : public testing::Test {
protected:
    void read(const QByteArray& text, bool headerOnly = false) {
        m_host.messages.clear();
        m_data.loadText(text.constData(), text.size(), headerOnly);
    }
    const cEntityClass& only() {
        static const cEntityClass none;
        EXPECT_EQ(m_data.classes.size(), 1);
        return m_data.classes.isEmpty() ? none : *m_data.classes.first();
    }
    const cEntityClass& of(const char* name) {
        static const cEntityClass none;
        const cEntityClass* found = m_data.findNewest(QString::fromLatin1(name));
        EXPECT_TRUE(found) << name;
        return found ? *found : none;
    }
    int errors() { return m_host.count(eMessage::Error, QString()); }
    bool warned(const char* text) {
        return m_host.count(eMessage::Warning, QString::fromLatin1(text)) == 1;
    }
    bool reported(const char* text) {
        return m_host.count(eMessage::Error, QString::fromLatin1(text)) == 1;
    }

    cTestHost m_host;
    cGameData m_data{QStringLiteral("/games/test.fgd")};
};

TEST_F(cGameDataTest, bareSectionHasTheDefaults) {
    read("@ PointClass = light []");
    const cEntityClass& c = only();
    EXPECT_EQ(c.flags, 0u);
    EXPECT_THAT(c.mins, Each(-8.0f));
    EXPECT_THAT(c.maxs, Each(8.0f));
    EXPECT_THAT(c.color, ElementsAre(220, 30, 220, 255));
    EXPECT_EQ(m_data.findClass(str("light"), CK_POINT), &c);
    EXPECT_EQ(m_data.findClass(str("light"), CK_SOLID), nullptr);
    EXPECT_EQ(m_data.findClass(str("Light"), CK_POINT), nullptr) << "names are exact";
}

TEST_F(cGameDataTest, kindFollowsTheKeywordAndTheNameOfTheWorld) {
    read("@solidclass = WorldSpawn [] @SOLIDCLASS = wall [] @baseclass = Base []"
         "@groupclass = grp [] @pointclass = Base []");
    EXPECT_EQ(of("WorldSpawn").kind, CK_WORLD);
    EXPECT_TRUE(m_data.findClass(str("WorldSpawn"), CK_SOLID));
    EXPECT_EQ(of("wall").kind, CK_SOLID);
    EXPECT_EQ(of("Base").kind, CK_POINT) << "the one added last";
    EXPECT_TRUE(m_data.findClass(str("Base"), CK_BASE));
    EXPECT_TRUE(m_data.findClass(str("grp"), CK_GROUP));
    EXPECT_TRUE(m_data.hasGroupClasses);
    EXPECT_EQ(errors(), 0);
}

TEST_F(cGameDataTest, headerItems) {
    read("@pointclass size\n(32 16 8) offset(1 2 3) color(300 -5 12.9) body(3) skin(4) sequence(5)"
         "iconsprite(\"i.spr\") sprite() studio(\"models/a b.mdl\") decal(d) flags(Angle, light "
         "noscale what) = a\n: \"About it\" : \"link\" []");
    const cEntityClass& c = only();
    EXPECT_THAT(c.mins, ElementsAre(-16.f, -8.f, -4.f));
    EXPECT_THAT(c.maxs, ElementsAre(16.f, 8.f, 4.f));
    EXPECT_THAT(c.offset, ElementsAre(1.f, 2.f, 3.f));
    EXPECT_THAT(c.color, ElementsAre(255, 0, 12, 255));
    EXPECT_THAT((std::vector<int>{c.body, c.skin, c.sequence}), ElementsAre(3, 4, 5));
    EXPECT_EQ(QStringList({c.iconSprite, c.sprite, c.studio, c.decal, c.description, c.helpLink}),
              QStringList({str("i.spr"), QString(), str("models/a b.mdl"), str("d"),
                           str("About it"), str("link")}));
    EXPECT_EQ(c.flags, 0xFFFu);
    EXPECT_TRUE(warned("unknown flag `what'"));

    read("@pointclass size(-1 -2 -3, 4 5 6) color(nan 1e99 -1e99) = a []");
    EXPECT_THAT(only().mins, ElementsAre(-1.f, -2.f, -3.f));
    EXPECT_THAT(only().maxs, ElementsAre(4.f, 5.f, 6.f));
    EXPECT_THAT(only().color, ElementsAre(0, 255, 0, 255));
}

TEST_F(cGameDataTest, inheritsWhatTheClassHasNotGiven) {
    read("@baseclass size(2 2 2) sprite(a.spr) flags(angle) = A [ k1 : \"K\" ]\n"
         "@baseclass size(4 4 4) color(1 2 3) sprite(b.spr) body(7) group(g) flags(light) = B : "
         "\"text\" [ k1 k2 ]\n"
         "@pointclass base(A, B absent) = c []\n"
         "@pointclass color(9 9 9) base(B) size(8 8 8) = d []");
    const cEntityClass& c = of("c");
    EXPECT_THAT(c.maxs, Each(1.0f)) << "the first base wins";
    EXPECT_THAT(c.color, ElementsAre(1, 2, 3, 255));
    EXPECT_EQ(c.sprite, str("a.spr"));
    EXPECT_EQ(c.body, 7);
    EXPECT_EQ(c.flags,
              uint32_t(ECF_SIZE | ECF_COLOR | ECF_SPRITE | ECF_BODY | ECF_ANGLE | ECF_LIGHT));
    EXPECT_EQ(c.description, QString());
    QStringList names;
    for (const cEntityVariable& v : c.variables)
        names << v.name;
    EXPECT_EQ(names.join(QLatin1Char(' ')), str("k1 k1 k2")) << "no check for doubles";
    EXPECT_TRUE(warned("undefined base class `absent'"));
    EXPECT_TRUE(warned("bad group class `g'"));
    EXPECT_THAT(of("d").color, ElementsAre(9, 9, 9, 255));
    EXPECT_THAT(of("d").maxs, Each(4.0f)) << "an item after base overwrites";
}

TEST_F(cGameDataTest, groupsNestThroughBase) {
    read("@groupclass = top [] @baseclass = b [] @groupclass base(top) base(b) = sub [ x y ]"
         "@pointclass group(sub) = p [] @pointclass group(b) = q [] @pointclass = top_x []");
    EXPECT_EQ(of("sub").group, &of("top"));
    EXPECT_EQ(of("p").group, &of("sub"));
    EXPECT_EQ(of("q").group, nullptr);
    EXPECT_EQ(of("top_x").group, nullptr) << "a file with group classes gets no automatic groups";
    EXPECT_TRUE(of("sub").variables.isEmpty());
    EXPECT_TRUE(warned("non-group base class `b' for group class"));
    EXPECT_TRUE(warned("bad group class `b'"));
    EXPECT_TRUE(warned("variables in group class: `sub'"));
}

struct cVariableCase {
    const char* text;
    int type;
    const char* title;
    const char* value;
    const char* help;
};

TEST_F(cGameDataTest, variables) {
    const cVariableCase cases[] = {
        {"k", VT_STRING, "k", "", ""},
        {"k(integer)", VT_INTEGER, "k", "", ""},
        {"k(FLOAT) : \"T\" : 1.5", VT_FLOAT, "T", "1.5", ""},
        {"k (color255)\n: \"T\" : \"1 2 3\" : \"H\" // more", VT_COLOR255, "T", "1 2 3", "H"},
        {"k(target_source) : \"T\" // more", VT_TARGET_SOURCE, "T", "", ""},
        {"k(sound) : \"T\" : : \"H\"", VT_SOUND, "T", "", "H"},
        {"k(texture) : : 5", VT_TEXTURE, "k", "5", ""},
        {"k(choices) : \"T\" : 1 = [ 1 : \"One\" ]", VT_CHOICES, "T", "1", ""},
        {"k(flags) =\n[ 1 : \"A\" : 1\n 8 : \"B\" : 5 : \"H\" ]", VT_FLAGS, "k", "9", ""},
        {"k(flags) = [ 1 : \"A\" 2 : \"B\" : 0 ]", VT_FLAGS, "k", "", ""},
    };
    for (const cVariableCase& c : cases) {
        SCOPED_TRACE(c.text);
        read(QByteArray("@pointclass = c [ ") + c.text + "\n last ]");
        ASSERT_EQ(only().variables.size(), 2);
        const cEntityVariable& v = only().variables[0];
        EXPECT_EQ(v.type, c.type);
        EXPECT_EQ(QStringList({v.name, v.title, v.defaultValue, v.help}),
                  QStringList({str("k"), str(c.title), str(c.value), str(c.help)}));
        EXPECT_EQ(errors(), 0);
    }
}

static QStringList entriesOf(const cEntityVariable& variable) {
    QStringList entries;
    for (const cEntityChoice& c : variable.choices)
        entries << c.value + QLatin1Char('|') + c.title + QLatin1Char('|') + c.help;
    return entries;
}

TEST_F(cGameDataTest, entries) {
    read("@pointclass = c [ a(choices) : \"A\" = [ x : \"X\" : \"help\" -1 : \"Y\"\n\"z\" : Z ]\n"
         "b(flags) = [ 0 : \"none\" 1 : \"a\" : : \"h\" 4 : \"c\" : 1 6 : d -2147483648 : e ] ]");
    ASSERT_EQ(only().variables.size(), 2);
    EXPECT_EQ(entriesOf(only().variables[0]),
              QStringList({str("x|X|help"), str("-1|Y|"), str("z|Z|")}));
    EXPECT_EQ(entriesOf(only().variables[1]),
              QStringList({str("-1|none|"), str("0|a|h"), str("2|c|"), str("2|d|"), str("31|e|")}));
    EXPECT_EQ(only().variables[1].defaultValue, str("4"));
}

TEST_F(cGameDataTest, redeclaredKeyIsStoredInPlace) {
    read("@baseclass = b [ k : \"Old\" : 1 : \"help\" f(flags) = [ 1 : \"a\" : 1 2 : \"b\" ] z ]"
         "@pointclass base(b) = c [ k(choices) : \"New\" = [ 1 : \"One\" ]\n"
         "f(flags) = [ 2 : \"B\" : 1 8 : \"d\" ] ]");
    ASSERT_EQ(of("c").variables.size(), 3);
    const cEntityVariable &k = of("c").variables[0], &f = of("c").variables[1];
    EXPECT_EQ(k.type, VT_CHOICES);
    EXPECT_EQ(QStringList({k.title, k.defaultValue, k.help}),
              QStringList({str("New"), QString(), str("help")}));
    EXPECT_EQ(k.choices.size(), 1);
    EXPECT_EQ(entriesOf(f), QStringList({str("0|a|"), str("1|B|"), str("3|d|")}));
    EXPECT_EQ(f.defaultValue, str("3"));
    EXPECT_EQ(entriesOf(of("b").variables[1]), QStringList({str("0|a|"), str("1|b|")}))
        << "the base keeps its own";
}

TEST_F(cGameDataTest, errorDropsItsSectionOnly) {
    const std::pair<const char*, const char*> cases[] = {
        {"@what = a []", "unrecognized section name `what'"},
        {"@pointclass what(1) = a []", "unexpected token `what'"},
        {"@pointclass = a [ k(what) ]", "unknown variable type `what'"},
        {"@pointclass = a [ k(flags) : \"T\" = [ ] ]", "bad token `:' at line 1 (expected `=')"},
        {"@pointclass size(1 2) = a []", "bad token `=' at line 1 (expected `)')"},
        {"@pointclass base(\nb) = a []", "line 1 is incomplete"},
        {"@pointclass = a :\n \"text\" []", "line 1 is incomplete"},
        {"@pointclass = a b []", "bad token `b' at line 1 (expected `[')"},
        {"@pointclass = a [ k(choices) = [ 1\n : \"One\" ] ]", "line 1 is incomplete"},
    };
    for (const auto& c : cases) {
        read(QByteArray(c.first) + "\n@solidclass = good [ k ]");
        EXPECT_TRUE(reported(c.second)) << c.first;
        EXPECT_EQ(errors(), 1) << c.first;
        EXPECT_EQ(only().name, str("good")) << c.first;
    }
}

TEST_F(cGameDataTest, fileThatEndsInASectionDropsIt) {
    const QByteArray text(
        "@pointclass size(1 2 3) = a : \"d\" [ k(choices) : \"T\" = [ 1 : \"x\" ");
    for (int size = 2; size <= text.size(); ++size) {
        read(text.left(size));
        EXPECT_EQ(m_data.classes.size(), 0) << size;
        EXPECT_EQ(errors(), 1) << size;
        EXPECT_EQ(m_data.loadState, 2) << size;
    }
    read("@");
    EXPECT_EQ(errors(), 0);
}

TEST_F(cGameDataTest, sameNameAndKindStaysTheFirst) {
    read("@pointclass color(1 1 1) = a [] @pointclass = a [] @solidclass = a [] text {} outside");
    EXPECT_EQ(m_data.classes.size(), 2);
    EXPECT_EQ(m_data.findClass(str("a"), CK_POINT)->color[0], 1);
    EXPECT_TRUE(m_data.findClass(str("a"), CK_SOLID));
    EXPECT_TRUE(warned("class already defined: `a'"));
}

TEST_F(cGameDataTest, groupsByPrefixWhenTheFileDeclaresNone) {
    read("@pointclass = abc_def [] @solidclass = abc [] @baseclass = abc_base []"
         "@pointclass = _x [] @pointclass = \" _y\" [] @pointclass = lone []");
    const cEntityClass* group = m_data.findClass(str("abc"), CK_GROUP);
    ASSERT_TRUE(group);
    EXPECT_EQ(of("abc_def").group, group);
    EXPECT_EQ(m_data.findClass(str("abc"), CK_SOLID)->group, group);
    for (const char* name : {"abc_base", "_x", " _y", "lone"})
        EXPECT_EQ(of(name).group, nullptr) << name;
    EXPECT_FALSE(m_data.hasGroupClasses);
}

TEST_F(cGameDataTest, headersOnlyStopBehindTheName) {
    read("@baseclass size(2 2 2) = b : \"text\" [ k ]\n@pointclass base(b) = a_b [ broken( ]",
         true);
    EXPECT_EQ(m_data.loadState, 1);
    EXPECT_EQ(errors(), 0);
    EXPECT_EQ(of("a_b").maxs[0], 1.0f);
    EXPECT_EQ(of("b").description, QString());
    EXPECT_EQ(of("a_b").group, nullptr);
}

TEST_F(cGameDataTest, inheritanceCannotMultiplyWithoutEnd) {
    QByteArray text("@baseclass = c0 [ k ]");
    for (int i = 1; i < 60; ++i) {
        const QByteArray base = "c" + QByteArray::number(i - 1);
        text += "@baseclass base(" + base + " " + base + ") = c" + QByteArray::number(i) + " []\n";
    }
    read(text);
    EXPECT_GT(m_host.count(eMessage::Error, QStringLiteral("too many inherited variables")), 0);
    int variables = 0;
    for (const cEntityClass* c : m_data.classes)
        variables += c->variables.size();
    EXPECT_LE(variables, 1000001);
}

TEST_F(cGameDataTest, entriesOfFlagsMultiplyNoMoreThanVariables) {
    QByteArray text("@baseclass = b [ f(flags) = [");
    for (int i = 0; i < 20000; ++i)
        text += " 1:a";
    text += " ] ]\n";
    for (int i = 0; i < 5000; ++i)
        text += "@pointclass base(b) = c" + QByteArray::number(i) + " [ f(flags) = [ 1 : x ] ]\n";
    read(text);
    qint64 entries = 0;
    for (const cEntityClass* c : m_data.classes)
        for (const cEntityVariable& v : c->variables)
            entries += v.choices.size();
    EXPECT_LE(entries, 1020000);
    EXPECT_GE(m_data.classes.size(), 40) << "the first of them are read";
}

// So many that a walk over all classes of one name for each of them would not end in time.
TEST_F(cGameDataTest, oneNameMayBeTakenAnyNumberOfTimes) {
    QByteArray text;
    for (int i = 0; i < 100000; ++i)
        text += i % 2 ? "@pointclass = a_b []\n" : "@solidclass = a_b []\n";
    read(text);
    EXPECT_EQ(m_data.classes.size(), 100001) << "and the group";
    EXPECT_EQ(m_data.solidClasses[str("a_b")]->group, m_data.findClass(str("a"), CK_GROUP));
}

TEST_F(cGameDataTest, messagesOfAKindAreToldThirtyTimesAndThenCounted) {
    QByteArray text;
    for (int i = 0; i < 10000; ++i)
        text += "@pointclass base(none) = a []\n@@";
    read(text + "@pointclass group(bad) = z []");
    const auto count = [&](eMessage level, const char* of) { return m_host.count(level, str(of)); };
    EXPECT_EQ(count(eMessage::Warning, "undefined base class"), 31);
    EXPECT_TRUE(warned("and 9970 more like: undefined base class `none'"));
    EXPECT_TRUE(warned("and 9969 more like: class already defined: `a'"));
    EXPECT_TRUE(reported("and 9970 more like: parse error"));
    EXPECT_TRUE(warned("bad group class `bad'"));
    EXPECT_LT(m_host.messages.size(), 100u);
    read("@pointclass base(none) = a []");
    EXPECT_TRUE(warned("undefined base class `none'")) << "the next file begins anew";
}

// ---- Files

class cTestSource : public cPrecacheSource {
public:
    void makeContextCurrent() override { log << str("context"); }
    const uint8_t* findPalette(const QString& path) override {
        log << path;
        return palette;
    }
    void acquireSprite(const QString& path, const uint8_t* colors) override {
        log << path;
        paletteGiven = paletteGiven && colors == palette;
        ++held[path];
    }
    void releaseSprite(const QString& path) override { --held[path]; }
    void acquireModel(const QString& path, const uint8_t* colors) override {
        acquireSprite(path, colors);
    }
    void releaseModel(const QString& path) override { --held[path]; }

    QStringList log;
    QHash<QString, int> held;
    bool paletteGiven = true;
    uint8_t palette[768];
};

class cGameDataFileTest : public cGameDataTest {
protected:
    QString write(const QByteArray& text) {
        return writeFile(m_folder.filePath(str("a.fgd")), text);
    }

    QTemporaryDir m_folder;
    cTestSource m_source;
    cGameDataRegistry m_registry;
};

TEST_F(cGameDataFileTest, isReadOnceToTheDepthWantedAndSharedByItsHolders) {
    const QString path = write("@pointclass = a [ k ]");
    cGameData* data = m_registry.acquire(path);
    EXPECT_EQ(data->loadState, 0);
    EXPECT_TRUE(data->load(true));
    EXPECT_EQ(data->findNewest(str("a"))->variables.size(), 0);
    EXPECT_TRUE(data->load(false));
    EXPECT_EQ(data->findNewest(str("a"))->variables.size(), 1);
    write("@pointclass = b []");
    EXPECT_TRUE(data->load(true));
    EXPECT_TRUE(data->findNewest(str("a"))) << "what is complete serves the headers too";
    EXPECT_TRUE(data->reload(false));
    EXPECT_TRUE(data->findNewest(str("b")));
    EXPECT_FALSE(data->findNewest(str("a")));
    EXPECT_EQ(m_registry.acquire(path), data);
    m_registry.release(path);
    m_registry.release(str("never held"));
    EXPECT_EQ(m_registry.find(path), data);
    m_registry.release(path);
    EXPECT_EQ(m_registry.find(path), nullptr);
}

TEST_F(cGameDataFileTest, missingFileLeavesNothing) {
    cGameData* data = m_registry.acquire(str("/absent.fgd"));
    EXPECT_FALSE(data->load(false));
    EXPECT_EQ(data->loadState, 0);
    EXPECT_TRUE(reported("can't open \"/absent.fgd\""));
    const QString path = write("@pointclass = a []");
    cGameData* held = m_registry.acquire(path);
    held->load(true);
    QFile::remove(path);
    EXPECT_FALSE(held->load(false));
    EXPECT_EQ(held->loadState, 0);
    EXPECT_TRUE(held->classes.isEmpty());
}

TEST_F(cGameDataFileTest, precachingHoldsSpritesAndModelsUntilCleared) {
    const QString path = write("@pointclass iconsprite(i) sprite(s) studio(m) = a []"
                               "@baseclass sprite(s) = b []");
    m_registry.setPrecacheSource(&m_source);
    cGameData* data = m_registry.acquire(path);
    data->load(false);
    data->precache(str("pal"));
    EXPECT_TRUE(data->precached);
    EXPECT_EQ(m_source.log,
              QStringList({str("context"), str("pal"), str("i"), str("s"), str("m"), str("s")}));
    EXPECT_TRUE(m_source.paletteGiven);
    EXPECT_EQ(m_source.held.value(str("s")), 2);
    data->precache(str("pal"));
    EXPECT_EQ(m_source.held.value(str("s")), 2) << "a second configuration holds nothing more";
    m_registry.release(path);
    EXPECT_THAT(m_source.held.values(), Each(0));
}

TEST_F(cGameDataFileTest, withoutASourceNothingIsHeld) {
    cGameData* data = m_registry.acquire(write("@pointclass sprite(s) = a []"));
    data->load(false);
    data->precache(QString());
    EXPECT_TRUE(data->precached);
    m_registry.setPrecacheSource(&m_source);
    data->clear();
    EXPECT_TRUE(m_source.held.isEmpty());
}

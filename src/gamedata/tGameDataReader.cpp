// SPDX-License-Identifier: MIT
// Sections and their header items.
#include "gamedata/tGameDataReader.h"

#include "gamedata/tGameDataTokens.h"
#include "support/tMapText.h"

#include <QByteArray>
#include <climits>
#include <cmath>
#include <cstdlib>

// A chain of groups makes as many nested levels in the class tree.
static constexpr int MAX_GROUP_DEPTH = 64;
// Bases of bases multiply what a few bytes of text ask for. Counts variables and their entries.
static constexpr qint64 MAX_INHERITED = 1000000;

void cGameDataReader::read() {
    const auto seekSection = [] {
        for (;;) {
            cParser::clearFailure();
            if (cParser::getToken(true) ? tokenIs("@") : !cParser::hasFailed())
                return;
        }
    };
    seekSection();
    while (cParser::getToken(true)) {
        readSection();
        seekSection();
    }
}

bool cGameDataReader::readSection() {
    m_class = std::make_unique<cEntityClass>();
    m_variableIndex.clear();
    m_choiceIndex.clear();
    if (!readKind() || !readHeader() || !readName())
        return false;
    if (!m_headerOnly && (!readDescription() || !readVariables()))
        return false;
    finishClass();
    return true;
}

bool cGameDataReader::readKind() {
    static const struct {
        const char* keyword;
        int kind;
    } SECTIONS[] = {{"solidclass", CK_SOLID},
                    {"pointclass", CK_POINT},
                    {"baseclass", CK_BASE},
                    {"groupclass", CK_GROUP}};
    for (const auto& section : SECTIONS) {
        if (tokenIsWord(section.keyword)) {
            m_class->kind = section.kind;
            return true;
        }
    }
    cParser::parseError("unrecognized section name `%s'", cParser::token());
    return false;
}

// ---- Header items

const cGameDataReader::cHeaderItem cGameDataReader::HEADER_ITEMS[] = {
    {"base", &cGameDataReader::readBase, 0},
    {"group", &cGameDataReader::readGroup, 0},
    {"size", &cGameDataReader::readSize, ECF_SIZE},
    {"offset", &cGameDataReader::readOffset, ECF_OFFSET},
    {"color", &cGameDataReader::readColor, ECF_COLOR},
    {"body", &cGameDataReader::readInteger, ECF_BODY},
    {"skin", &cGameDataReader::readInteger, ECF_SKIN},
    {"sequence", &cGameDataReader::readInteger, ECF_SEQUENCE},
    {"iconsprite", &cGameDataReader::readPath, 0},
    {"sprite", &cGameDataReader::readOptionalPath, ECF_SPRITE},
    {"studio", &cGameDataReader::readOptionalPath, ECF_STUDIO},
    {"decal", &cGameDataReader::readOptionalPath, ECF_DECAL},
    {"flags", &cGameDataReader::readFlags, 0},
};

bool cGameDataReader::readHeader() {
    while (cParser::requireToken(true)) {
        if (tokenIs("="))
            return true;
        if (!readHeaderItem())
            return false;
    }
    return false;
}

bool cGameDataReader::readHeaderItem() {
    for (const cHeaderItem& item : HEADER_ITEMS) {
        if (tokenIsWord(item.keyword))
            return matchNext("(") && (this->*item.read)(item.bit);
    }
    cParser::parseError("unexpected token `%s'", cParser::token());
    return false;
}

static float tokenNumber() {
    const float number = float(strtod(cParser::token(), nullptr));
    return std::isfinite(number) ? number : 0.0f;
}

static int tokenInteger() {
    return int(qBound(long(INT_MIN), strtol(cParser::token(), nullptr, 10), long(INT_MAX)));
}

static bool readNumbers(float* out, int count) {
    for (int i = 0; i < count; ++i) {
        if (!cParser::requireToken(false))
            return false;
        out[i] = tokenNumber();
    }
    return true;
}

// The words up to the closing parenthesis, separated by commas or blanks.
template<class Body> static bool readWords(Body body) {
    while (cParser::requireToken(false)) {
        if (tokenIs(")"))
            return true;
        if (!tokenIs(",") && !body(QByteArray(cParser::token())))
            return false;
    }
    return false;
}

bool cGameDataReader::readBase(int) {
    return readWords([this](const QByteArray& name) { return inherit(name); });
}

static bool tooDeep(const cEntityClass* group) {
    int depth = 1;
    for (; group; group = group->group)
        ++depth;
    return depth > MAX_GROUP_DEPTH;
}

bool cGameDataReader::readGroup(int) {
    if (!cParser::requireToken(false))
        return false;
    cEntityClass* group = m_data.findNewest(tokenText());
    if (group && group->kind == CK_GROUP && !tooDeep(group))
        m_class->group = group;
    else
        cParser::warn("bad group class `%s'", cParser::token());
    return matchNext(")");
}

bool cGameDataReader::readSize(int bit) {
    float* mins = m_class->mins;
    float* maxs = m_class->maxs;
    if (!readNumbers(mins, 3) || !cParser::requireToken(false))
        return false;
    if (tokenIs(",")) {
        if (!readNumbers(maxs, 3))
            return false;
    } else {
        cParser::ungetToken();
        for (int i = 0; i < 3; ++i) {
            maxs[i] = mins[i] / 2;
            mins[i] = -maxs[i];
        }
    }
    m_class->flags |= uint32_t(bit);
    return matchNext(")");
}

bool cGameDataReader::readOffset(int bit) {
    m_class->flags |= uint32_t(bit);
    return readNumbers(m_class->offset, 3) && matchNext(")");
}

bool cGameDataReader::readColor(int bit) {
    for (int i = 0; i < 3; ++i) {
        if (!cParser::requireToken(false))
            return false;
        const double value = strtod(cParser::token(), nullptr);
        m_class->color[i] = uint8_t(value > 0 ? qMin(value, 255.0) : 0.0); // no number is 0
    }
    m_class->color[3] = 255;
    m_class->flags |= uint32_t(bit);
    return matchNext(")");
}

bool cGameDataReader::readInteger(int bit) {
    if (!cParser::requireToken(false))
        return false;
    int32_t& field = bit == ECF_BODY   ? m_class->body
                     : bit == ECF_SKIN ? m_class->skin
                                       : m_class->sequence;
    field = tokenInteger();
    m_class->flags |= uint32_t(bit);
    return matchNext(")");
}

bool cGameDataReader::readPath(int) {
    if (!cParser::requireToken(false))
        return false;
    m_class->iconSprite = tokenText();
    return matchNext(")");
}

bool cGameDataReader::readOptionalPath(int bit) {
    m_class->flags |= uint32_t(bit);
    if (!cParser::requireToken(false))
        return false;
    if (tokenIs(")"))
        return true;
    QString& field = bit == ECF_SPRITE   ? m_class->sprite
                     : bit == ECF_STUDIO ? m_class->studio
                                         : m_class->decal;
    field = tokenText();
    return matchNext(")");
}

bool cGameDataReader::readFlags(int) {
    return readWords([this](const QByteArray& word) {
        static const struct {
            const char* word;
            uint32_t bit;
        } FLAGS[] = {{"angle", ECF_ANGLE}, {"light", ECF_LIGHT}, {"noscale", ECF_NOSCALE}};
        for (const auto& flag : FLAGS) {
            if (qstricmp(word.constData(), flag.word) == 0) {
                m_class->flags |= flag.bit;
                return true;
            }
        }
        cParser::warn("unknown flag `%s'", word.constData());
        return true;
    });
}

// ---- Inheritance

bool cGameDataReader::inherit(const QByteArray& baseName) {
    cEntityClass* base = m_data.findNewest(fromMapText(baseName));
    if (!base) {
        cParser::warn("undefined base class `%s'", baseName.constData());
        return true;
    }
    if (m_class->kind != CK_GROUP)
        return copyInherited(*base);
    if (base->kind == CK_GROUP && !tooDeep(base))
        m_class->group = base;
    else
        cParser::warn("non-group base class `%s' for group class", baseName.constData());
    return true;
}

// What the class has not given itself. The flags come last: they tell what was given.
bool cGameDataReader::copyInherited(const cEntityClass& base) {
    cEntityClass& c = *m_class;
    const auto missing = [&c](uint32_t bit) { return (c.flags & bit) == 0; };
    if (missing(ECF_COLOR))
        std::copy_n(base.color, 4, c.color);
    if (missing(ECF_SIZE)) {
        std::copy_n(base.mins, 3, c.mins);
        std::copy_n(base.maxs, 3, c.maxs);
    }
    if (missing(ECF_OFFSET))
        std::copy_n(base.offset, 3, c.offset);
    if (missing(ECF_BODY))
        c.body = base.body;
    if (missing(ECF_SKIN))
        c.skin = base.skin;
    if (missing(ECF_SEQUENCE))
        c.sequence = base.sequence;
    c.flags |= base.flags;
    for (QString cEntityClass::*path : {&cEntityClass::iconSprite, &cEntityClass::sprite,
                                        &cEntityClass::studio, &cEntityClass::decal}) {
        if ((c.*path).isEmpty())
            c.*path = base.*path;
    }
    if (!mayCopy(base.variables.size()))
        return false;
    c.variables += base.variables;
    return true;
}

bool cGameDataReader::mayCopy(int count) {
    m_inheritedCount += count;
    if (m_inheritedCount <= MAX_INHERITED)
        return true;
    cParser::parseError("too many inherited variables");
    return false;
}

// ---- Name, description, end

bool cGameDataReader::readName() {
    if (!cParser::requireToken(true))
        return false;
    m_class->name = tokenText();
    if (tokenIsWord("worldspawn"))
        m_class->kind = CK_WORLD;
    return true;
}

bool cGameDataReader::readDescription() {
    for (QString* text : {&m_class->description, &m_class->helpLink}) {
        if (!cParser::requireToken(true))
            return false;
        if (!tokenIs(":")) {
            cParser::ungetToken();
            return true;
        }
        if (!cParser::requireToken(false))
            return false;
        *text = tokenText();
    }
    return true;
}

void cGameDataReader::finishClass() {
    const QByteArray name = toMapText(m_class->name);
    if (!m_data.addClass(std::move(m_class)))
        cParser::warn("class already defined: `%s'", name.constData());
}

// SPDX-License-Identifier: MIT
// The variables of a class: what stands between its brackets, and how a redeclared key is stored.
#include "gamedata/tGameDataReader.h"

#include "gamedata/tGameDataTokens.h"
#include "support/tMapText.h"

#include <cstdlib>

// Takes the token if it comes next; with sameLine, on the line of the one before.
static bool accept(const char* text, bool sameLine) {
    const int line = cParser::currentLine();
    if (!cParser::getToken(true))
        return false;
    if (tokenIs(text) && (!sameLine || cParser::currentLine() == line))
        return true;
    cParser::ungetToken();
    return false;
}

static bool expectOnLine(const char* text) {
    if (!cParser::requireToken(false))
        return false;
    cParser::ungetToken();
    return matchNext(text);
}

bool cGameDataReader::readVariables() {
    if (!matchNext("["))
        return false;
    if (m_class->kind == CK_GROUP)
        return skipVariables();
    while (cParser::requireToken(true)) {
        if (tokenIs("]"))
            return true;
        if (!readVariable())
            return false;
    }
    return false;
}

bool cGameDataReader::skipVariables() {
    bool warned = false;
    while (cParser::requireToken(true)) {
        if (tokenIs("]"))
            return true;
        if (!warned)
            cParser::warn("variables in group class: `%s'", toMapText(m_class->name).constData());
        warned = true;
    }
    return false;
}

bool cGameDataReader::readVariable() {
    cEntityVariable variable;
    variable.name = tokenText();
    if (!readType(variable))
        return false;
    if (variable.type != VT_FLAGS && !readTexts(variable))
        return false;
    if ((variable.type == VT_FLAGS || variable.type == VT_CHOICES) && !readChoices(variable))
        return false;
    if (variable.title.isEmpty())
        variable.title = variable.name;
    return store(variable);
}

bool cGameDataReader::readType(cEntityVariable& variable) {
    static const char* const TYPES[] = {"string",   "integer",       "float",
                                        "flags",    "choices",       "color1",
                                        "color255", "target_source", "target_destination",
                                        "sprite",   "studio",        "sound",
                                        "decal",    "texture"};
    if (!accept("(", true))
        return !cParser::hasFailed();
    if (!cParser::requireToken(false))
        return false;
    for (int type = 0; type < int(sizeof TYPES / sizeof TYPES[0]); ++type) {
        if (tokenIsWord(TYPES[type])) {
            variable.type = type;
            return expectOnLine(")");
        }
    }
    cParser::parseError("unknown variable type `%s'", cParser::token());
    return false;
}

// ": title : default : help", where a position is left empty by the next colon.
bool cGameDataReader::readTexts(cEntityVariable& variable) {
    bool colon = accept(":", false);
    for (QString* text : {&variable.title, &variable.defaultValue, &variable.help}) {
        if (!colon)
            break;
        if (!cParser::requireToken(false))
            return false;
        const bool empty = tokenIs(":") && text != &variable.help;
        if (!empty)
            *text = tokenText();
        colon = empty || (text != &variable.help && accept(":", true));
    }
    return !cParser::hasFailed();
}

// ---- Entries

bool cGameDataReader::readChoices(cEntityVariable& variable) {
    if (!matchNext("=") || !matchNext("["))
        return false;
    uint32_t defaults = 0;
    while (cParser::requireToken(true)) {
        if (tokenIs("]")) {
            if (defaults != 0)
                variable.defaultValue = QString::number(int32_t(defaults));
            return true;
        }
        cEntityChoice choice;
        if (!(variable.type == VT_FLAGS ? readFlag(choice, defaults) : readChoice(choice)))
            return false;
        variable.choices.append(choice);
    }
    return false;
}

static bool readTitle(cEntityChoice& choice) {
    if (!expectOnLine(":") || !cParser::requireToken(false))
        return false;
    choice.title = tokenText();
    return true;
}

static bool readHelp(cEntityChoice& choice) {
    if (!cParser::requireToken(false))
        return false;
    choice.help = tokenText();
    return true;
}

bool cGameDataReader::readChoice(cEntityChoice& choice) {
    choice.value = tokenText();
    if (!readTitle(choice))
        return false;
    return accept(":", true) ? readHelp(choice) : !cParser::hasFailed();
}

bool cGameDataReader::readFlag(cEntityChoice& choice, uint32_t& defaults) {
    const uint32_t mask = uint32_t(strtol(cParser::token(), nullptr, 10));
    int highest = -1;
    while (highest < 31 && (uint64_t(mask) >> (highest + 1)) != 0)
        ++highest;
    choice.value = QString::number(highest);
    if (!readTitle(choice))
        return false;
    if (!accept(":", true))
        return !cParser::hasFailed();
    if (!cParser::requireToken(false))
        return false;
    if (tokenIs(":"))
        return readHelp(choice);
    if (strtol(cParser::token(), nullptr, 10) != 0)
        defaults += mask;
    return accept(":", true) ? readHelp(choice) : !cParser::hasFailed();
}

// ---- Storing

bool cGameDataReader::store(const cEntityVariable& variable) {
    QVector<cEntityVariable>& variables = m_class->variables;
    if (m_variableIndex.isEmpty()) {
        for (int i = variables.size() - 1; i >= 0; --i)
            m_variableIndex.insert(variables[i].name, i);
    }
    const auto found = m_variableIndex.constFind(variable.name);
    if (found == m_variableIndex.constEnd()) {
        m_variableIndex.insert(variable.name, variables.size());
        variables.append(variable);
        return true;
    }
    cEntityVariable& old = variables[*found];
    if (variable.type == VT_FLAGS)
        return mergeFlags(*found, variable);
    m_choiceIndex.remove(*found);
    old.type = variable.type;
    old.title = variable.title;
    old.defaultValue = variable.defaultValue;
    old.choices = variable.choices;
    return true;
}

bool cGameDataReader::mergeFlags(int index, const cEntityVariable& added) {
    cEntityVariable& old = m_class->variables[index];
    QHash<QString, int>& byValue = m_choiceIndex[index];
    if (byValue.isEmpty()) {
        if (!mayCopy(old.choices.size()))
            return false;
        for (int i = old.choices.size() - 1; i >= 0; --i)
            byValue.insert(old.choices[i].value, i);
    }
    for (const cEntityChoice& choice : added.choices) {
        const auto found = byValue.constFind(choice.value);
        if (found != byValue.constEnd()) {
            old.choices[*found].title = choice.title;
        } else {
            byValue.insert(choice.value, old.choices.size());
            old.choices.append(choice);
        }
    }
    const int defaults = old.defaultValue.toInt() | added.defaultValue.toInt();
    old.defaultValue = defaults != 0 ? QString::number(defaults) : QString();
    return true;
}

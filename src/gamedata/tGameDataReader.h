// SPDX-License-Identifier: MIT
// The grammar of a game data file. Pulls tokens from the shared cParser, which the caller has
// loaded, and fills one cGameData. An error drops the section it stands in; reading resumes at
// the next "@".
#pragma once

#include "gamedata/tGameData.h"

#include <QHash>

class cGameDataReader {
public:
    cGameDataReader(cGameData& data, bool headerOnly) : m_data(data), m_headerOnly(headerOnly) {}

    void read();

private:
    // Each returns false after an error has been reported.
    bool readSection();
    bool readKind();
    bool readHeader();
    bool readHeaderItem();
    bool readName();
    bool readDescription();
    bool readVariables();
    bool readVariable();
    bool readType(cEntityVariable& variable);
    bool readTexts(cEntityVariable& variable);
    bool readChoices(cEntityVariable& variable);
    bool readChoice(cEntityChoice& choice);
    bool readFlag(cEntityChoice& choice, uint32_t& defaults);
    bool skipVariables();
    void finishClass();

    bool readBase(int bit);
    bool readGroup(int bit);
    bool readSize(int bit);
    bool readOffset(int bit);
    bool readColor(int bit);
    bool readInteger(int bit);
    bool readPath(int bit);
    bool readOptionalPath(int bit);
    bool readFlags(int bit);

    bool inherit(const QByteArray& baseName);
    bool copyInherited(const cEntityClass& base);
    bool mayCopy(int count); // of what is inherited; an error when it is too much
    bool store(const cEntityVariable& variable);
    bool mergeFlags(int index, const cEntityVariable& added);

    struct cHeaderItem {
        const char* keyword;
        bool (cGameDataReader::*read)(int bit);
        int bit;
    };
    static const cHeaderItem HEADER_ITEMS[];

    cGameData& m_data;
    bool m_headerOnly;
    qint64 m_inheritedCount = 0; // over all classes so far
    std::unique_ptr<cEntityClass> m_class;
    QHash<QString, int> m_variableIndex;           // of m_class: the first variable of each name
    QHash<int, QHash<QString, int>> m_choiceIndex; // by variable: the first entry of each value
};

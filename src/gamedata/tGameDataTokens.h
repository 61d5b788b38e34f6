// SPDX-License-Identifier: MIT
// Small questions to the shared tokenizer, for the files of the game data reader.
#pragma once

#include "gamedata/tParser.h"
#include "support/tMapText.h"

#include <QString>
#include <cstring>

inline QString tokenText() {
    return fromMapText(cParser::token());
}

inline bool tokenIs(const char* text) {
    return strcmp(cParser::token(), text) == 0;
}

inline bool tokenIsWord(const char* keyword) { // without regard to case
    return qstricmp(cParser::token(), keyword) == 0;
}

// The next token must be this one; on whatever line it stands.
inline bool matchNext(const char* text) {
    cParser::matchToken(text);
    return !cParser::hasFailed();
}

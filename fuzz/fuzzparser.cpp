// SPDX-License-Identifier: MIT
// The tokenizer under any order of calls: the first 16 bytes choose them, the rest is the text.
#include "gamedata/tParser.h"
#include "tFuzzHost.h"

#include <algorithm>

static constexpr size_t CHOICE_COUNT = 16;

static bool call(unsigned choice) {
    float numbers[3 * 3 * 3];
    switch (choice % 12) {
    case 0:
        return cParser::getToken(false);
    case 1:
        cParser::ungetToken();
        return true;
    case 2:
        return cParser::tokenAvailable() || cParser::getToken(true);
    case 3:
        cParser::matchToken("{");
        return true;
    case 4:
        cParser::parseVector(3, numbers);
        return true;
    case 5:
        cParser::parseMatrix(3, 3, numbers);
        return true;
    case 6:
        cParser::parseCube(3, 3, 3, numbers);
        return true;
    case 7:
        cParser::clearFailure();
        return cParser::getToken(true);
    case 8:
        return cParser::requireToken(false);
    default:
        return cParser::getToken(true);
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static cFuzzHost host;
    if (size < CHOICE_COUNT)
        return 0;
    const auto* text = reinterpret_cast<const char*>(data + CHOICE_COUNT);
    cParser::loadMemory(text, int(size - CHOICE_COUNT));
    // Tokens pushed back come without end.
    const int calls = int(size) * 4;
    int idle = 0;
    for (int i = 0; i < calls && idle < 64; ++i)
        idle = call(data[size_t(i) % CHOICE_COUNT]) ? 0 : idle + 1;
    cParser::close();
    return 0;
}

// SPDX-License-Identifier: MIT
// The game data reader: whole, then headers only; every class must be reachable and consistent.
#include "gamedata/tGameData.h"
#include "tFuzzHost.h"

#include <cstdlib>

static void check(const cGameData& data) {
    int placed = 0;
    for (const cEntityClass* c : data.classes) {
        if (c->group && c->group->kind != CK_GROUP)
            abort();
        placed += c->kind == CK_POINT;
        for (const cEntityVariable& variable : c->variables) {
            if (variable.type < VT_STRING || variable.type > VT_TEXTURE)
                abort();
        }
    }
    if (data.pointClasses.size() > placed)
        abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    static cFuzzHost host;
    cGameData data(QStringLiteral("fuzz.fgd"));
    for (bool headerOnly : {false, true}) {
        data.loadText(reinterpret_cast<const char*>(bytes), int(size), headerOnly);
        check(data);
    }
    return 0;
}

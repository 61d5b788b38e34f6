// SPDX-License-Identifier: MIT
// Texture packages and archives: every texture of what opens is read or refused.
#include "media/tPackage.h"

#include <cstdlib>

static constexpr uint64_t BUDGET = 16 << 20;

static void readAll(std::unique_ptr<cPackage> package) {
    cImageBudget budget(BUDGET);
    cImage image;
    for (int i = 0; package && i < package->count(); ++i) {
        if (!package->read(i, i % 2 ? &GREY_PALETTE : nullptr, budget, image) &&
            image.texels.size() != size_t(image.width) * size_t(image.height))
            abort();
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    cProblem problem = nullptr;
    readAll(openWad(cBytes(bytes, size), problem));
    readAll(openZip(cBytes(bytes, size), problem));
    return 0;
}

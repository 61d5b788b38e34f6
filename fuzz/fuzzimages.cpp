// SPDX-License-Identifier: MIT
// Every reader of picture files on every input: a picture of a size that was granted, or none.
#include "media/tImageReaders.h"

#include <QLoggingCategory>
#include <cstdlib>

static constexpr uint64_t BUDGET = 16 << 20; // pictures of that many bytes are as good as larger

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    for (const cImageFormat& format : imageFormats()) {
        cImageBudget budget(BUDGET);
        cImage image;
        if (format.read(cBytes(bytes, size), budget, image))
            continue;
        if (image.width < 1 || image.height < 1 ||
            image.texels.size() != size_t(image.width) * size_t(image.height) ||
            image.texels.size() * sizeof(cColor) > BUDGET)
            abort();
    }
    return 0;
}

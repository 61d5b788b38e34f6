// SPDX-License-Identifier: MIT
// The reader of project files: whatever it accepts is a consistent map.
#include "document/tProjectFile.h"
#include "support/tMapTools.h"
#include "tFuzzHost.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    static cFuzzHost host;
    cMap map(host);
    const QByteArray file(reinterpret_cast<const char*>(bytes), int(size));
    if (!cProjectFile(map, QString()).loadBytes(file))
        return 0;
    map.finishLoad();
    const QString problem = checkMapInvariants(map);
    if (!problem.isEmpty()) {
        fprintf(stderr, "%s\n", qPrintable(problem));
        abort();
    }
    return 0;
}

// SPDX-License-Identifier: MIT
// The reader of map texts, through the services a plug-in gets: whatever it makes of a text is a
// consistent map that the writer can write.
#include "common/tMapReader.h"
#include "common/tMapWriter.h"
#include "document/tMap.h"
#include "pluginhost/tHostServices.h"
#include "support/tMapTools.h"
#include "tFuzzHost.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    static cFuzzHost host;
    cMap map(host);
    cMapReader reader(hostServices(), &map.data, reinterpret_cast<const char*>(bytes), size);
    if (!reader.read())
        return 0;
    map.finishLoad();
    const QString problem = checkMapInvariants(map);
    if (!problem.isEmpty()) {
        fprintf(stderr, "%s\n", qPrintable(problem));
        abort();
    }
    for (const eFaceLine kind : {eFaceLine::Classic, eFaceLine::Axial})
        cMapWriter(hostServices(), &map.data, kind, "seal").write("/dev/null");
    return 0;
}

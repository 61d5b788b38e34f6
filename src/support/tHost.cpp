// SPDX-License-Identifier: MIT
// The host pointer, the host of a program without one, and the busy counter.
#include "support/tHost.h"

#include "support/tColors.h"

namespace {
class cQuietHost : public cHost {
public:
    void consoleMessage(eMessage, const char*) override {}
    const uint8_t* schemeColor(int index) const override {
        static const uint8_t white[4] = {255, 255, 255, 255};
        static const uint8_t black[4] = {0, 0, 0, 255};
        return index == COLOR_GROUP_RANDOM_MIN ? black : white;
    }
};
} // namespace

static cQuietHost g_quietHost;

cHost* g_host = &g_quietHost;

void setHost(cHost* host) {
    g_host = host ? host : &g_quietHost;
}

bool isHeard() {
    return g_host != &g_quietHost;
}

static int g_busyCount = 0;

cBusy::cBusy() {
    ++g_busyCount;
}

cBusy::~cBusy() {
    if (--g_busyCount == 0)
        g_host->busyEnded();
}

bool cBusy::isBusy() {
    return g_busyCount > 0;
}

// SPDX-License-Identifier: MIT
// The host pointer and the busy counter.
#include "support/tHost.h"

cHost* g_host = nullptr;

static int g_busyCount = 0;

cBusy::cBusy() {
    ++g_busyCount;
}

cBusy::~cBusy() {
    if (--g_busyCount == 0 && g_host)
        g_host->busyEnded();
}

bool cBusy::isBusy() {
    return g_busyCount > 0;
}

/* SPDX-License-Identifier: MIT */
/* A plug-in that does not want to run. */
#include "tPluginInterface.h"

int32_t tpMain(const cHostServices* host) {
    host->Sys_Warning("table of %u bytes is not for me", host->size);
    return 0;
}

void tpEnumActions(tpActionCallback callback, void* manager) {
    static const cAction action = {"never", 0, 0, 0, 0, 0, 0};
    callback(&action, manager);
}

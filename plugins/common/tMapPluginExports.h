// SPDX-License-Identifier: MIT
// The exports of a map text plug-in. Included once by each plug-in, after it has defined PLUGIN.
#pragma once

#include "common/tMapProfiles.h"

#define TP_EXPORT extern "C" __attribute__((visibility("default")))

static constexpr uint32_t MAP_FORMAT = 1;
static const cHostServices* g_services = nullptr;

TP_EXPORT int32_t tpMain(const cHostServices* host) {
    // An older host lacks services that are called here.
    if (!host || host->size < sizeof(cHostServices))
        return 0;
    g_services = host;
    return 1;
}

TP_EXPORT void tpEnumProfiles(tpProfileCallback callback, void* library) {
    const cMapProfile profile = makeProfile(PLUGIN.profile, PLUGIN.title);
    callback(&profile, library);
}

TP_EXPORT int32_t tpEnumExportFormats(tpFormatCallback callback, void* library) {
    return callback(MAP_FORMAT, ".map", PLUGIN.exportName, library);
}

TP_EXPORT int32_t tpEnumImportFormats(tpFormatCallback callback, void* library) {
    return callback(MAP_FORMAT, ".map", "Map Texts", library);
}

TP_EXPORT void tpEnumSurfaceFlags(tpCaptionCallback callback, void* library) {
    enumSurfaceFlags(PLUGIN.profile, callback, library);
}

TP_EXPORT void tpEnumContentFlags(tpCaptionCallback callback, void* library) {
    enumContentFlags(PLUGIN.profile, callback, library);
}

TP_EXPORT int32_t tpImport(uint32_t, const char* path, cMapData* map) {
    return importMap(g_services, path, map);
}

TP_EXPORT int32_t tpExport(uint32_t, const char* path, cMapData* map) {
    return exportMap(g_services, path, map, PLUGIN.kind);
}

// SPDX-License-Identifier: MIT
// What both plug-ins tell of the games they serve, and the exports they share.
#pragma once

#include "common/tMapWriter.h"
#include "tPluginInterface.h"

// What a map text plug-in is.
struct cMapPlugin {
    const char* profile;
    const char* title;
    const char* exportName;
    eFaceLine kind;
};

// A complete profile record under that name and title.
cMapProfile makeProfile(const char* name, const char* title);

int32_t importMap(const cHostServices* host, const char* path, cMapData* map);
int32_t exportMap(const cHostServices* host, const char* path, cMapData* map, eFaceLine kind);

void enumSurfaceFlags(const char* profile, tpCaptionCallback callback, void* library);
void enumContentFlags(const char* profile, tpCaptionCallback callback, void* library);

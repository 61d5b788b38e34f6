/* SPDX-License-Identifier: MIT */
/*
 * A plug-in that offers one of everything. Its texture files hold width and height as two bytes
 * and then grey pixels; its packages hold names of eight bytes, one texture of 8 by 8 each.
 */
#include "tPluginInterface.h"

#include <stdio.h>
#include <string.h>

/* Read by the tests. */
uintptr_t g_lastAction = 0;
const uint8_t* g_palette = 0;
int32_t g_paletteCalls = 0;

int32_t tpMain(const cHostServices* host) {
    host->Sys_DPrint("tpfull on %s", host->Sys_Version());
    return host->size == sizeof(cHostServices);
}

void tpEnumProfiles(tpProfileCallback callback, void* library) {
    static cMapProfile profile;
    profile.library = 77; /* the host writes its own */
    profile.flags = PF_CONTENT_FLAGS;
    profile.detailContentMask = 0x100;
    callback(&profile, library);
    strcpy(profile.name, "test");
    strcpy(profile.title, "Test game");
    callback(&profile, library);
    strcpy(profile.title, "Second of that name");
    callback(&profile, library);
    callback(0, library);
}

int32_t tpEnumExportFormats(tpFormatCallback callback, void* library) {
    return callback(10, ".map", "Test map", library) + callback(11, ".txt", "Test list", library);
}

int32_t tpEnumImportFormats(tpFormatCallback callback, void* library) {
    return callback(20, ".map", "Test map", library) + callback(21, 0, "No extension", library) +
           callback(21, ".x", "No library", 0);
}

int32_t tpEnumTextureFormats(tpFormatCallback callback, void* library) {
    return callback(30, ".grey", "Grey pixels", library);
}

int32_t tpEnumPackageFormats(tpFormatCallback callback, void* library) {
    return callback(40, ".names", "Named squares", library);
}

int32_t tpEnumSpriteFormats(tpFormatCallback callback, void* library) {
    return callback(50, ".spr", "Sprite", library);
}

int32_t tpEnumModelFormats(tpFormatCallback callback, void* library) {
    return callback(60, ".mdl", "Model", library);
}

/* ---- Actions, primitives, captions */

static void act(uintptr_t user) {
    g_lastAction = user;
}

void tpEnumActions(tpActionCallback callback, void* manager) {
    static const cAction actions[] = {
        {"b1", 0, "Beta", 0, 0, 1, act},
        {"none", "text", 0, "Ctrl+1", AF_DISABLE_WITHOUT_PROJECT, 2, act},
        {"a1", 0, "Alpha", 0, 0, 3, act},
        {"b2", 0, "Beta", 0, 0, 4, act},
        {"empty", 0, "", 0, 0, 5, act},
        {0, 0, 0, 0, 0, 6, act},
        {"idle", 0, 0, 0, 0, 7, 0},
    };
    size_t i;
    for (i = 0; i < sizeof actions / sizeof actions[0]; ++i)
        callback(&actions[i], manager);
    callback(0, manager);
    callback(&actions[0], 0);
}

static int32_t build(cPrimitiveParams* parameters) {
    return parameters->sides;
}

int32_t tpEnumPrimitives(tpPrimitiveCallback callback, void* library) {
    static const cPrimitive primitives[] = {{"Slab", 0, 4, 3, 8, build},
                                            {"Block", "Solids", 6, 0, 0, build},
                                            {0, "Solids", 6, 0, 0, build},
                                            {"Ghost", "Solids", 6, 0, 0, 0}};
    size_t i;
    for (i = 0; i < sizeof primitives / sizeof primitives[0]; ++i)
        callback(&primitives[i], library);
    return 2;
}

void tpEnumSurfaceFlags(tpCaptionCallback callback, void* library) {
    callback("test", "slick", 11, library);
    callback("test", "too far", 12, library);
    callback(0, "nobody's", 1, library);
}

void tpEnumContentFlags(tpCaptionCallback callback, void* library) {
    callback("test", "detail", 31, library);
    callback("test", "too far", 32, library);
    callback("other", "below", -1, library);
}

/* ---- Maps */

int32_t tpImport(uint32_t cookie, const char* path, cMapData* map) {
    return cookie == 20 && path && map;
}

int32_t tpExport(uint32_t cookie, const char* path, cMapData* map) {
    return cookie == 10 && path && map;
}

/* ---- Textures */

void tpSetPalette(const uint8_t* palette) {
    g_palette = palette;
    ++g_paletteCalls;
}

int32_t tpFilterTextureName(uint32_t formatId, const char* path) {
    return formatId == 30 && strstr(path, "skip") == 0;
}

int32_t tpLoadTexture(uint32_t formatId, const char* path, const void* data, int32_t size,
                      tpAddTexture add, void* context) {
    const uint8_t* bytes = data;
    const cTextureExtras extras = {0, 1, 2, TX_NODRAW, 4, 0.5f, 10.0f};
    const char* slash = strrchr(path, '/');
    char name[64];
    (void)formatId;
    if (size < 2 || size != 2 + bytes[0] * bytes[1])
        return 0;
    snprintf(name, sizeof name, "%s", slash ? slash + 1 : path);
    *strchr(name, '.') = 0;
    add(path, name, 0x1909, 0, size - 2, bytes[0], bytes[1], 0, &extras, bytes + 2, context);
    return 1;
}

static int32_t readPackage(const char* path, char* names, int32_t room) {
    FILE* file = fopen(path, "rb");
    int32_t size;
    if (!file)
        return -1;
    size = (int32_t)fread(names, 1, (size_t)room, file);
    fclose(file);
    return size / 8;
}

int32_t tpGetPackageInfo(uint32_t formatId, const char* path, tpPackageInfo* info) {
    static const tpPackageInfo zeroed;
    char names[1024];
    (void)formatId;
    if (memcmp(info, &zeroed, sizeof zeroed) != 0)
        return 0;
    info->textureCount = readPackage(path, names, sizeof names);
    return info->textureCount >= 0;
}

int32_t tpLoadPackage(uint32_t formatId, const char* path, tpAddTexture add, void* context) {
    static const uint8_t pixels[64] = {1};
    char names[1024], name[9] = {0}, id[1100];
    const int32_t count = readPackage(path, names, sizeof names);
    int32_t i;
    (void)formatId;
    for (i = 0; i < count; ++i) {
        memcpy(name, names + i * 8, 8);
        snprintf(id, sizeof id, "%s/%s", path, name);
        add(id, name, 0x1909, 0, 64, 8, 8, 0, 0, pixels, context);
    }
    return count > 0;
}

/* ---- Sprites and models */

int32_t tpLoadSprite(uint32_t formatId, const char* path, void* data, int32_t size,
                     cSpriteRecord* sprite, tpAddFrame add, void* unused) {
    (void)formatId, (void)path, (void)data, (void)size, (void)sprite, (void)add, (void)unused;
    return 0;
}

int32_t tpLoadModel(uint32_t formatId, const char* path, void* data, int32_t size,
                    cModelRecord* model, tpAddSkin add, void* unused) {
    (void)formatId, (void)path, (void)data, (void)size, (void)model, (void)add, (void)unused;
    return 0;
}

void tpRenderModel(uint32_t formatId, int32_t mode, float frameTime, cModelRecord* model,
                   cEntityData* entity) {
    (void)formatId, (void)mode, (void)frameTime, (void)model, (void)entity;
}

/* SPDX-License-Identifier: MIT */
/* A plug-in for the program's tests: profile "test", map files that hold nothing but the number
 * of their entities, texture files that hold name and size, and an action that says it ran. */
#include "plugininterface/tPluginInterface.h"

#include <stdio.h>
#include <string.h>

static const cHostServices* g_services;

static cMapData* g_exported;

/* Edits the map that was exported last: a light, and a brush of the world into a visgroup. */
static void editExported(uintptr_t user) {
    static const float origin[3] = {16, 16, 16};
    (void)user;
    if (!g_exported)
        return;
    g_services->Entity_Update(g_services->Entity_Create(g_exported, "light", origin, EF_POINT), 0);
    g_services->Brush_AddToVisGroup(g_exported, g_exported->entities->brushes,
                                    g_services->VisGroup_Create(g_exported));
}

static void sayHello(uintptr_t user) {
    g_services->Sys_Print("test action %i ran", (int)user);
}

int32_t tpMain(const cHostServices* services) {
    g_services = services;
    return 1;
}

void tpEnumProfiles(tpProfileCallback callback, void* library) {
    cMapProfile profile;
    memset(&profile, 0, sizeof profile);
    strcpy(profile.name, "test");
    strcpy(profile.title, "Test game");
    callback(&profile, library);

    strcpy(profile.name, "rich");
    strcpy(profile.title, "Game with decals and detail");
    profile.flags = PF_DECALS_WITHOUT_CLASS;
    profile.detailContentMask = 0x8;
    strcpy(profile.startEntityClass, "info_start");
    strcpy(profile.roomEntityClass, "light");
    strcpy(profile.roomWallTexture, "brick");
    strcpy(profile.roomFloorTexture, "tiles");
    callback(&profile, library);
}

/* A file "name width height". */
int32_t tpEnumTextureFormats(tpFormatCallback callback, void* library) {
    return callback(1, ".size", "Test textures", library);
}

int32_t tpLoadTexture(uint32_t cookie, const char* path, const void* data, int32_t size,
                      tpAddTexture add, void* context) {
    static const uint8_t pixels[256 * 256] = {0};
    char text[64] = {0}, name[64];
    int width, height;
    (void)cookie;
    memcpy(text, data, size < 63 ? (size_t)size : 63);
    if (sscanf(text, "%63s %i %i", name, &width, &height) != 3)
        return 0;
    add(path, name, 0x1909, 0x1909, width * height, width, height, 0, 0, pixels, context);
    return 1;
}

int32_t tpEnumImportFormats(tpFormatCallback callback, void* library) {
    return callback(1, ".map", "Test maps", library);
}

int32_t tpEnumExportFormats(tpFormatCallback callback, void* library) {
    return callback(1, ".map", "Test maps", library) + callback(2, ".tst", "Test texts", library);
}

void tpEnumActions(tpActionCallback callback, void* manager) {
    static const cAction always = {"Say &hello", "Says hello", "Test", "Ctrl+F12", 0, 7, sayHello};
    static const cAction inProject = {
        "With document", 0, "Test", 0, AF_HIDE_WITHOUT_PROJECT | AF_DISABLE_WITHOUT_PROJECT, 8,
        sayHello};
    static const cAction edit = {"Edit", 0, "Test", 0, 0, 9, editExported};
    callback(&always, manager);
    callback(&inProject, manager);
    callback(&edit, manager);
}

/* Makes nothing, and says what it was asked for. */
static int32_t sayParameters(cPrimitiveParams* p) {
    g_services->Sys_Print("shape of %i on %i%i%i, flags %u, texture %s", p->sides, p->axes[0],
                          p->axes[1], p->axes[2], p->flags, p->face.name);
    return 0;
}

int32_t tpEnumPrimitives(tpPrimitiveCallback callback, void* library) {
    static const cPrimitive shape = {"shape", "Test shapes", 5, 4, 9, sayParameters};
    callback(&shape, library);
    return 1;
}

int32_t tpExport(uint32_t cookie, const char* path, cMapData* map) {
    FILE* file = fopen(path, "w");
    int count = 0;
    const cEntityData* entity;
    g_exported = map;
    if (!file)
        return 0;
    for (entity = map->entities; entity; entity = entity->next)
        ++count;
    fprintf(file, "%u %i\n", cookie, count);
    fclose(file);
    return 1;
}

/* A negative count fails after the entities before it were made. */
int32_t tpImport(uint32_t cookie, const char* path, cMapData* map) {
    static const float origin[3] = {0, 0, 0};
    FILE* file = fopen(path, "r");
    unsigned format = 0;
    int count = 0;
    int i;
    (void)cookie;
    if (!file)
        return 0;
    if (fscanf(file, "%u %i", &format, &count) != 2)
        count = -1;
    fclose(file);
    for (i = 0; i < (count < 0 ? -count : count); ++i)
        g_services->Entity_Create(map, i ? "info_null" : "worldspawn", origin, i ? 0 : EF_WORLD);
    return count > 0;
}

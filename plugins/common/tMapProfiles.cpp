// SPDX-License-Identifier: MIT
#include "common/tMapProfiles.h"

#include "common/tMapReader.h"

#include <cstdio>

static const char WALL_TEXTURE[] = "base/wall";
static const char FLOOR_TEXTURE[] = "base/floor";
static const char CEILING_TEXTURE[] = "base/ceiling";
static constexpr uint32_t DETAIL_CONTENT = 0x8000000;

template<size_t N> static void put(char (&field)[N], const char* text) {
    snprintf(field, N, "%s", text);
}

cMapProfile makeProfile(const char* name, const char* title) {
    cMapProfile profile = {};
    profile.flags = PF_NEEDS_PALETTE | PF_SURFACE_FLAGS | PF_CONTENT_FLAGS | PF_LIGHT_VALUE |
                    PF_DECAL_ENTITIES | PF_RENDER_KEYS | PF_ALPHA_KEY;
    put(profile.name, name);
    put(profile.title, title);
    put(profile.compiledMapExtension, ".bsp");
    put(profile.textureExtensions, ".png;.tga;.jpg;.jpeg;.bmp;.pcx");
    put(profile.packageExtensions, ".wad;.pk3;.zip");
    put(profile.spriteExtensions, ".spr");
    put(profile.modelExtensions, ".mdl;.md2;.md3;.obj");
    put(profile.soundExtensions, ".wav;.ogg");
    put(profile.spriteFolder, "sprites");
    put(profile.modelFolder, "models");
    put(profile.soundFolder, "sound");
    put(profile.textureFolder, "textures");
    put(profile.csgOnlyEntsSwitch, "-onlyents");
    put(profile.bspOnlyEntsSwitch, "-onlyents");
    put(profile.visFastSwitch, "-fast");
    put(profile.lightExtraSwitch, "-extra");
    put(profile.gameMapArgument, "+map");
    put(profile.startEntityClass, "info_player_start");
    put(profile.roomEntityClass, "light");
    put(profile.decalEntityClass, "info_decal");
    put(profile.defaultTexture, WALL_TEXTURE);
    put(profile.roomWallTexture, WALL_TEXTURE);
    put(profile.roomFloorTexture, FLOOR_TEXTURE);
    put(profile.roomCeilingTexture, CEILING_TEXTURE);
    put(profile.targetPrefixCharacters, "!+-");
    profile.detailContentMask = DETAIL_CONTENT;
    return profile;
}

int32_t importMap(const cHostServices* host, const char* path, cMapData* map) {
    int32_t size = 0;
    char* text = static_cast<char*>(host->File_Load(path, &size));
    if (!text)
        return 0;
    cMapReader reader(host, map, text, size_t(size));
    const bool read = reader.read();
    host->Sys_Free(text);
    return read ? 1 : 0;
}

int32_t exportMap(const cHostServices* host, const char* path, cMapData* map, eFaceLine kind) {
    cMapWriter writer(host, map, kind, WALL_TEXTURE);
    return writer.write(path) ? 1 : 0;
}

struct cCaption {
    int32_t bit;
    const char* text;
};

void enumSurfaceFlags(const char* profile, tpCaptionCallback callback, void* library) {
    static const cCaption captions[] = {{0, "Light"},      {1, "Slippery"}, {2, "Sky"},
                                        {3, "Liquid"},     {4, "Glass"},    {5, "Scrolling"},
                                        {6, "Not drawn"},  {7, "Hint"},     {8, "Skip"},
                                        {9, "No shadows"}, {10, "Metal"},   {11, "No decals"}};
    for (const cCaption& caption : captions)
        callback(profile, caption.text, caption.bit, library);
}

void enumContentFlags(const char* profile, tpCaptionCallback callback, void* library) {
    static const cCaption captions[] = {{0, "Solid"},        {1, "Window"},        {3, "Lava"},
                                        {4, "Slime"},        {5, "Water"},         {6, "Mist"},
                                        {16, "Player clip"}, {17, "Monster clip"}, {24, "Origin"},
                                        {27, "Detail"},      {28, "Translucent"},  {29, "Ladder"}};
    for (const cCaption& caption : captions)
        callback(profile, caption.text, caption.bit, library);
}

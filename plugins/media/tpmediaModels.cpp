// SPDX-License-Identifier: MIT
// The media plug-in's sprites and models. The block of a file belongs to the plug-in, which gives
// it back once the file is read.
#include "media/tImageReaders.h"
#include "media/tMediaHost.h"
#include "media/tMediaNames.h"
#include "media/tModelDraw.h"
#include "media/tSprite.h"

#include <memory>
#include <unordered_map>

// Of all frames of a sprite, or skins of a model, together.
static constexpr uint64_t PICTURE_BYTES = cImageBudget::MAX_TEXELS * sizeof(cColor);

struct cHostBlock {
    ~cHostBlock() { g_services->Sys_Free(data); }
    void* data;
};

// ---- Sprites

TP_EXPORT int32_t tpEnumSpriteFormats(tpFormatCallback callback, void* library) {
    callback(0, ".spr", "Sprites", library);
    return 1;
}

TP_EXPORT int32_t tpLoadSprite(uint32_t, const char* path, void* data, int32_t size,
                               cSpriteRecord* record, tpAddFrame add, void*) {
    const cHostBlock block{data};
    cFileReport report(path);
    cImageBudget budget(PICTURE_BYTES);
    cSprite sprite;
    if (report.add(readSprite(cBytes(data, size_t(size)), currentPalette(), budget, sprite)))
        return 0;
    for (const cImage& frame : sprite.frames) {
        const cHostImage ready(frame);
        add(record, ready.pixelFormat, ready.compressedFormat, ready.size(), ready.width,
            ready.height, ready.pixels.data());
    }
    record->orientation = sprite.orientation;
    record->width = sprite.frames[0].width;
    record->height = sprite.frames[0].height;
    record->frameCount = int32_t(sprite.frames.size());
    return 1;
}

// ---- Models

struct cModelFormat {
    const char* extension;
    const char* description;
    cModelReader read;
};

static const cModelFormat MODEL_FORMATS[] = {
    {".mdl", "Models with palette skins", readMdl},
    {".md2", "Models of one surface", readMd2},
    {".md3", "Models of several surfaces", readMd3},
    {".obj", "Models in text", readObj},
};

// What stands behind a record of the host.
struct cLoadedModel {
    cModel model; // without the pictures, which are the host's now
    std::vector<const cTextureImage*> images;
};

static std::unordered_map<const cModelRecord*, std::unique_ptr<cLoadedModel>> s_models;

TP_EXPORT int32_t tpEnumModelFormats(tpFormatCallback callback, void* library) {
    return enumFormats(MODEL_FORMATS, callback, library);
}

static bool readSkinFile(const std::string& path, cImageBudget& budget, cImage& image) {
    char found[4096];
    if (!g_services->File_Find(path.c_str(), found, sizeof found))
        return false;
    int32_t size = 0;
    const cHostBlock block{g_services->File_Load(found, &size)};
    return block.data &&
           !imageFormatOf(path)->read(cBytes(block.data, size_t(size)), budget, image);
}

// The file a skin names, in the game or beside the model, in whatever format there is one.
static bool findSkin(const char* modelPath, std::string name, cImageBudget& budget, cImage& image) {
    std::replace(name.begin(), name.end(), '\\', '/');
    const std::string base = name.substr(folderOf(name).size());
    for (const std::string& candidate : {name, folderOf(modelPath) + base}) {
        if (imageFormatOf(candidate) && readSkinFile(candidate, budget, image))
            return true;
        for (const cImageFormat& format : imageFormats()) {
            if (readSkinFile(withoutSuffix(candidate) + format.extension, budget, image))
                return true;
        }
    }
    return false;
}

static const cTextureImage* giveSkin(const char* path, cModelSkin& skin, cImageBudget& budget,
                                     cModelRecord* record, tpAddSkin add) {
    if (skin.image.texels.empty() && !findSkin(path, skin.file, budget, skin.image))
        return nullptr;
    const cHostImage ready(skin.image);
    const cTextureImage* before = record->lastSkin;
    add(record, ready.pixelFormat, ready.compressedFormat, ready.size(), ready.width, ready.height,
        ready.pixels.data());
    record->transparent |= ready.alpha == eAlpha::Blended;
    skin.image = cImage();
    return record->lastSkin == before ? nullptr : record->lastSkin;
}

TP_EXPORT int32_t tpLoadModel(uint32_t format, const char* path, void* data, int32_t size,
                              cModelRecord* record, tpAddSkin add, void*) {
    const cHostBlock block{data};
    cFileReport report(path);
    cImageBudget budget(PICTURE_BYTES);
    auto loaded = std::make_unique<cLoadedModel>();
    cModel& model = loaded->model;
    if (report.add(MODEL_FORMATS[format].read(cBytes(data, size_t(size)), currentPalette(), budget,
                                              model)))
        return 0;
    for (cModelSkin& skin : model.skins)
        loaded->images.push_back(giveSkin(path, skin, budget, record, add));
    const cModelFrame box = model.box({0, model.frames.size()});
    std::copy(box.mins.begin(), box.mins.end(), record->mins);
    std::copy(box.maxs.begin(), box.maxs.end(), record->maxs);
    record->ownsData = 1;
    s_models[record] = std::move(loaded);
    return 1;
}

TP_EXPORT void tpUnloadModel(uint32_t, cModelRecord* record) {
    s_models.erase(record);
}

TP_EXPORT int32_t tpGetModelBounds(uint32_t, float* mins, float* maxs, cModelRecord* record,
                                   cEntityData* entity) {
    const auto found = s_models.find(record);
    if (found == s_models.end())
        return 0;
    const cModelFrame box = turnedBox(found->second->model, *entity);
    std::copy(box.mins.begin(), box.mins.end(), mins);
    std::copy(box.maxs.begin(), box.maxs.end(), maxs);
    return 1;
}

TP_EXPORT void tpRenderModel(uint32_t, int32_t mode, float, cModelRecord* record,
                             cEntityData* entity) {
    const auto found = s_models.find(record);
    if (found != s_models.end())
        drawModel(*g_services, found->second->model, found->second->images, mode, *entity);
}

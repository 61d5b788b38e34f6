// SPDX-License-Identifier: MIT
// The media plug-in: what a game looks like. Here its textures, as image files and in packages.
#include "media/tImageReaders.h"
#include "media/tMediaHost.h"
#include "media/tMediaNames.h"
#include "media/tPackage.h"

#include <filesystem>

struct cPackageFormat {
    const char* extension;
    const char* description;
    cPackageOpener open;
};

static const cPackageFormat PACKAGE_FORMATS[] = {
    {".wad", "Texture packages", openWad},
    {".pk3", "Archives of a game", openZip},
    {".zip", "Archives", openZip},
};

TP_EXPORT int32_t tpEnumTextureFormats(tpFormatCallback callback, void* library) {
    return enumFormats(imageFormats(), callback, library);
}

TP_EXPORT int32_t tpEnumPackageFormats(tpFormatCallback callback, void* library) {
    return enumFormats(PACKAGE_FORMATS, callback, library);
}

// State words: depth is written where a texel is there; what shines through is blended.
static uint32_t renderState(eAlpha alpha) {
    static constexpr uint32_t ALPHA_TEST = 0x1100, BLEND = 0x65;
    return alpha == eAlpha::None ? 0 : alpha == eAlpha::Holes ? ALPHA_TEST : BLEND;
}

static cProblem checkName(const std::string& name) {
    if (name.empty())
        return "the texture has no name";
    return name.size() > LONGEST_TEXTURE_NAME ? "the name is longer than 63 characters" : nullptr;
}

static void give(const std::string& id, const std::string& name, const cImage& image,
                 tpAddTexture add, void* context) {
    const cHostImage ready(image);
    cTextureExtras extras = {};
    extras.renderState = renderState(ready.alpha);
    extras.opacity = 1.0f;
    extras.reserved = 10.0f; // the host's own default
    add(id.c_str(), name.c_str(), ready.pixelFormat, ready.compressedFormat, ready.size(),
        ready.width, ready.height, 0, &extras, ready.pixels.data(), context);
}

TP_EXPORT int32_t tpLoadTexture(uint32_t format, const char* path, const void* data, int32_t size,
                                tpAddTexture add, void* context) {
    cFileReport report(path);
    cImageBudget budget;
    cImage image;
    const std::string name = textureName(path);
    if (report.add(checkName(name)) ||
        report.add(imageFormats()[format].read(cBytes(data, size_t(size)), budget, image)))
        return 0;
    give(path, name, image, add, context);
    return 1;
}

// A pipe would wait for its writer.
static std::unique_ptr<cPackage> openPackage(uint32_t format, const char* path, cProblem& problem) {
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error))
        return PACKAGE_FORMATS[format].open(path, problem);
    problem = "there is no such file";
    return nullptr;
}

TP_EXPORT int32_t tpGetPackageInfo(uint32_t format, const char* path, tpPackageInfo* info) {
    cProblem problem = nullptr;
    const auto package = openPackage(format, path, problem);
    cFileReport(path).add(problem); // the host does not go on to load such a file
    info->textureCount = package ? package->count() : 0;
    return package ? 1 : 0;
}

TP_EXPORT int32_t tpLoadPackage(uint32_t format, const char* path, tpAddTexture add,
                                void* context) {
    cFileReport report(path);
    cProblem problem = nullptr;
    const auto package = openPackage(format, path, problem);
    report.add(problem);
    if (!package)
        return 0;
    cImageBudget budget;
    cImage image;
    for (int i = 0; i < package->count(); ++i) {
        const std::string name = package->name(i);
        if (!report.add(checkName(name), package->id(i)) &&
            !report.add(package->read(i, currentPalette(), budget, image), package->id(i)))
            give(std::string(path) + "/" + package->id(i), name, image, add, context);
    }
    return 1;
}

/* SPDX-License-Identifier: MIT */
/* A plug-in that announces formats of every kind and lacks the functions they need. */
#include "tPluginInterface.h"

int32_t tpMain(const cHostServices* host) {
    return host != 0;
}

int32_t tpEnumImportFormats(tpFormatCallback callback, void* library) {
    return callback(1, ".imp", "Import", library);
}

int32_t tpEnumExportFormats(tpFormatCallback callback, void* library) {
    return callback(1, ".exp", "Export", library);
}

int32_t tpEnumTextureFormats(tpFormatCallback callback, void* library) {
    return callback(1, ".tex", "Texture", library);
}

int32_t tpEnumPackageFormats(tpFormatCallback callback, void* library) {
    return callback(1, ".pak", "Package", library);
}

int32_t tpEnumSpriteFormats(tpFormatCallback callback, void* library) {
    return callback(1, ".spr", "Sprite", library);
}

int32_t tpEnumModelFormats(tpFormatCallback callback, void* library) {
    callback(1, ".mdl", "Model", library);
    return 7; /* what the plug-in claims is what the console says */
}

int32_t tpLoadModel(uint32_t formatId, const char* path, void* data, int32_t size,
                    cModelRecord* model, tpAddSkin add, void* unused) {
    (void)formatId, (void)path, (void)data, (void)size, (void)model, (void)add, (void)unused;
    return 0;
}

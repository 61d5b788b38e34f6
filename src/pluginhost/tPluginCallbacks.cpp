// SPDX-License-Identifier: MIT
// Enters what a plug-in offers in the list of whoever uses it.
#include "pluginhost/tPluginCallbacks.h"

#include "pluginhost/tFlagCaptions.h"
#include "pluginhost/tPluginManager.h"
#include "resources/tGameConfigRegistry.h"
#include "resources/tModelManager.h"
#include "resources/tTextureManager.h"
#include "support/tConsole.h"
#include "support/tMapText.h"

static cPluginContext* contextOf(void* context) {
    return static_cast<cPluginContext*>(context);
}

// A format as the plug-in announces it, and the exports that it needs.
struct cOffer {
    const char* kind; // for the warnings
    const char* extension;
    const char* description;
    cPluginContext* plugin;

    template<class Function> Function optional(const char* symbol) const {
        return reinterpret_cast<Function>(plugin->library->resolve(symbol));
    }
    template<class Function> Function required(const char* symbol) const {
        const Function function = optional<Function>(symbol);
        if (!function)
            Warning("Plugin \"%s\" defines %s format \"%s\" (%s), but doesn't export \"%s\" "
                    "function!",
                    toMapText(plugin->library->fileName()).constData(), kind, extension,
                    description, symbol);
        return function;
    }
    QString extensionText() const { return fromMapText(extension); }
    QString descriptionText() const { return fromMapText(description); }
    bool isComplete() const { return extension && description && plugin; }
};

void cPluginCallbacks::profile(const cMapProfile* record, void* context) {
    cPluginContext* plugin = contextOf(context);
    if (plugin && plugin->manager->m_targets.configs)
        plugin->manager->m_targets.configs->registerProfile(plugin->number, record);
}

// ---- Formats

static int32_t enterMapFormat(QList<cMapFormat>& list, uint32_t cookie, const cOffer& offer,
                              const char* symbol) {
    const tpMapFunction function = offer.optional<tpMapFunction>(symbol);
    if (function)
        list.append({offer.plugin->number, cookie, offer.extensionText(), offer.descriptionText(),
                     function});
    return 1;
}

int32_t cPluginCallbacks::exportFormat(uint32_t cookie, const char* extension,
                                       const char* description, void* context) {
    const cOffer offer = {"map", extension, description, contextOf(context)};
    return offer.isComplete()
               ? enterMapFormat(offer.plugin->manager->exportFormats, cookie, offer, "tpExport")
               : 0;
}

int32_t cPluginCallbacks::importFormat(uint32_t cookie, const char* extension,
                                       const char* description, void* context) {
    const cOffer offer = {"map", extension, description, contextOf(context)};
    return offer.isComplete()
               ? enterMapFormat(offer.plugin->manager->importFormats, cookie, offer, "tpImport")
               : 0;
}

int32_t cPluginCallbacks::textureFormat(uint32_t cookie, const char* extension,
                                        const char* description, void* context) {
    const cOffer offer = {"texture", extension, description, contextOf(context)};
    if (!offer.isComplete())
        return 0;
    const auto load = offer.required<tpLoadTextureFunction>("tpLoadTexture");
    if (!load)
        return 0;
    if (cTextureManager* textures = offer.plugin->manager->m_targets.textures)
        textures->addTextureFormat(
            {cookie, offer.extensionText(), offer.descriptionText(),
             offer.optional<tpSetPaletteFunction>("tpSetPalette"),
             offer.optional<tpFilterTextureNameFunction>("tpFilterTextureName"), load});
    return 1;
}

int32_t cPluginCallbacks::packageFormat(uint32_t cookie, const char* extension,
                                        const char* description, void* context) {
    const cOffer offer = {"package", extension, description, contextOf(context)};
    if (!offer.isComplete())
        return 0;
    const auto getInfo = offer.required<tpGetPackageInfoFunction>("tpGetPackageInfo");
    if (!getInfo)
        return 0;
    const auto load = offer.required<tpLoadPackageFunction>("tpLoadPackage");
    if (!load)
        return 0;
    if (cTextureManager* textures = offer.plugin->manager->m_targets.textures)
        textures->addPackageFormat({cookie, offer.extensionText(), offer.descriptionText(),
                                    offer.optional<tpSetPaletteFunction>("tpSetPalette"), getInfo,
                                    load});
    return 1;
}

int32_t cPluginCallbacks::spriteFormat(uint32_t cookie, const char* extension,
                                       const char* description, void* context) {
    const cOffer offer = {"sprite", extension, description, contextOf(context)};
    if (!offer.isComplete())
        return 0;
    const auto load = offer.required<tpLoadSpriteFunction>("tpLoadSprite");
    if (!load)
        return 0;
    if (cModelManager* models = offer.plugin->manager->m_targets.models)
        models->addSpriteFormat({cookie, offer.extensionText(), offer.descriptionText(), nullptr,
                                 offer.optional<tpSetPaletteFunction>("tpSetPalette"), 0, load,
                                 offer.optional<tpUnloadSpriteFunction>("tpUnloadSprite")});
    return 1;
}

int32_t cPluginCallbacks::modelFormat(uint32_t cookie, const char* extension,
                                      const char* description, void* context) {
    const cOffer offer = {"model", extension, description, contextOf(context)};
    if (!offer.isComplete())
        return 0;
    const auto load = offer.required<tpLoadModelFunction>("tpLoadModel");
    if (!load)
        return 0;
    const auto render = offer.required<tpRenderModelFunction>("tpRenderModel");
    if (!render)
        return 0;
    if (cModelManager* models = offer.plugin->manager->m_targets.models)
        models->addModelFormat({cookie, offer.extensionText(), offer.descriptionText(), nullptr,
                                offer.optional<tpSetPaletteFunction>("tpSetPalette"),
                                offer.optional<tpGetModelBoundsFunction>("tpGetModelBounds"),
                                render, load,
                                offer.optional<tpUnloadModelFunction>("tpUnloadModel")});
    return 1;
}

// ---- Actions, primitives, captions

void cPluginCallbacks::action(const cAction* record, void* manager) {
    if (record && manager)
        static_cast<cPluginManager*>(manager)->registerAction(record);
}

void cPluginCallbacks::primitive(const cPrimitive* record, void* context) {
    const cPluginContext* plugin = contextOf(context);
    if (record && plugin && plugin->manager->m_targets.registerPrimitive)
        plugin->manager->m_targets.registerPrimitive(record);
}

void cPluginCallbacks::surfaceCaption(const char* profileName, const char* caption, int32_t index,
                                      void* context) {
    const cPluginContext* plugin = contextOf(context);
    if (plugin && plugin->manager->m_targets.captions)
        plugin->manager->m_targets.captions->setSurface(profileName, caption, index);
}

void cPluginCallbacks::contentCaption(const char* profileName, const char* caption, int32_t index,
                                      void* context) {
    const cPluginContext* plugin = contextOf(context);
    if (plugin && plugin->manager->m_targets.captions)
        plugin->manager->m_targets.captions->setContent(profileName, caption, index);
}

// SPDX-License-Identifier: MIT
// The game of one project, as its map asks for it: what the registry, the textures and the models
// hold under the project's configuration, whichever document is the active one.
#pragma once

#include "document/tMapContext.h"

class cGameConfigRegistry;
class cModelManager;
class cTextureCatalogue;
class cTextureManager;
struct cGameConfig;

class cGameContext : public cMapContext {
public:
    // All outlive the context.
    cGameContext(const cGameConfigRegistry& configs, cTextureManager& textures,
                 cModelManager& models)
        : m_configs(configs), m_textures(textures), m_models(models) {}

    cTextureCatalogue* catalogue() const; // never null

    cTexture* findTexture(const char* name) override;
    cTexture* addMissingTexture(const char* name) override;
    void releaseTexture(cTexture* texture) override;
    cEntityClass* findClass(const char* name, eClassFilter filter) override;
    const cMapProfile& profile() const override;
    const uint8_t* palette() const override;
    void* acquireAttachment(eAttachKind kind, const char* name) override;
    void releaseAttachment(eAttachKind kind, void* record) override;

    cGameConfig* config = nullptr; // null until the project has one, and once it has gone

private:
    const cGameConfigRegistry& m_configs;
    cTextureManager& m_textures;
    cModelManager& m_models;
};

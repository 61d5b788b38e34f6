// SPDX-License-Identifier: MIT
#include "resources/tGameContext.h"

#include "resources/tGameConfigRegistry.h"
#include "resources/tModelManager.h"
#include "resources/tTextureCatalogue.h"
#include "resources/tTextureManager.h"
#include "support/tMapText.h"
#include "support/tSystem.h"

cTextureCatalogue* cGameContext::catalogue() const {
    return m_configs.catalogueOf(config);
}

cTexture* cGameContext::findTexture(const char* name) {
    return catalogue()->findShown(fromMapText(name));
}

cTexture* cGameContext::addMissingTexture(const char* name) {
    return catalogue()->addMissing(fromMapText(name));
}

void cGameContext::releaseTexture(cTexture* texture) {
    m_textures.releaseTexture(texture);
}

cEntityClass* cGameContext::findClass(const char* name, eClassFilter filter) {
    return m_configs.findClass(config, fromMapText(name), filter);
}

const cMapProfile& cGameContext::profile() const {
    return *m_configs.profileOf(config);
}

const uint8_t* cGameContext::palette() const {
    return config ? m_textures.findPalette(config->paletteFile) : nullptr;
}

void* cGameContext::acquireAttachment(eAttachKind kind, const char* name) {
    const cActiveConfigScope scope(config);
    m_models.setBaseDirectory(config ? config->gameBasedir : QString());
    if (kind == AK_SPRITE) {
        cSpriteRecord* sprite = m_models.loadSprite(fromMapText(name), palette());
        if (sprite->loaded && sprite->frames)
            return sprite;
        m_models.releaseSprite(sprite);
        return nullptr;
    }
    cModelRecord* model = m_models.loadModel(fromMapText(name), palette());
    if (model->loaded)
        return model;
    m_models.releaseModel(model);
    return nullptr;
}

void cGameContext::releaseAttachment(eAttachKind kind, void* record) {
    if (kind == AK_SPRITE)
        m_models.releaseSprite(static_cast<cSpriteRecord*>(record));
    else
        m_models.releaseModel(static_cast<cModelRecord*>(record));
}

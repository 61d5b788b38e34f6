// SPDX-License-Identifier: MIT
#include "resources/tGameContext.h"

#include "resources/tGameConfigRegistry.h"
#include "resources/tTextureCatalogue.h"
#include "resources/tTextureManager.h"
#include "support/tMapText.h"

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

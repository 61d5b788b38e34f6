// SPDX-License-Identifier: MIT
// Brings decoded images to OpenGL through the hidden widget that all views share their textures
// with. Images keep the size that their source gave them; the card gets powers of two.
#pragma once

#include "resources/tTextureManager.h"
#include "views/tTexturePixels.h"

#include <QIcon>
#include <memory>
#include <vector>

class cGLWidget;

class cTextureUpload : public cTextureUploader {
public:
    static constexpr int MAX_SIDE = MAX_RESAMPLED_WIDTH; // texels; larger images are reduced

    explicit cTextureUpload(cGLWidget& widget); // which outlives it
    ~cTextureUpload() override;

    void makeContextCurrent() override;
    // Fills glName, and an icon of 24 by 24 where one is wanted, which the caller owns. pixels are
    // width by height of the image's format, and are not needed afterwards. Takes the brightness
    // of the active configuration and the settings for textures.
    void upload(cTextureImage* image, const void* pixels, QIcon** iconOut) override;
    void free(cTextureImage* image) override;

    // The checker that stands for what is missing; this owns it.
    cTextureManager::cDefaultTexture defaultTexture();

private:
    void checkExtensions();
    cPixels nextHalf(const cPixels& image, bool halveWidth, bool halveHeight);
    cPixels fitted(cPixels image, int width, int height);
    void sendLevels(cPixels image, unsigned internalFormat, bool chain);

    cGLWidget& m_widget;
    bool m_extensionsChecked = false;
    bool m_hasCompression = false;
    bool m_hasAutoMipmap = false;
    std::vector<uint8_t> m_level; // the first level, where the image itself is not fit to send
    int m_halfBuffer = 0;
    cTextureImage m_defaultImage = {};
    std::unique_ptr<QIcon> m_defaultIcon;
};

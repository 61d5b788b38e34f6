// SPDX-License-Identifier: MIT
#include "views/tTextureUpload.h"

#include "support/tConsole.h"
#include "support/tHost.h"
#include "support/tMath.h"
#include "support/tSettings.h"
#include "support/tSystem.h"
#include "views/tGLWidget.h"

#include <QPixmap>
#include <algorithm>

// ---- Formats

static GLenum clientFormat(uint32_t glFormat) {
    switch (glFormat) {
    case GL_RGB:
    case GL_COMPRESSED_RGB:
        return GL_RGB;
    case GL_LUMINANCE:
    case GL_COMPRESSED_LUMINANCE:
        return GL_LUMINANCE;
    case GL_LUMINANCE_ALPHA:
    case GL_COMPRESSED_LUMINANCE_ALPHA:
        return GL_LUMINANCE_ALPHA;
    default:
        return GL_RGBA;
    }
}

static GLenum formatOfChannels(int channels) {
    static constexpr GLenum FORMATS[] = {GL_LUMINANCE, GL_LUMINANCE_ALPHA, GL_RGB, GL_RGBA};
    return FORMATS[channels - 1];
}

static int channelsOf(uint32_t glFormat) {
    for (int channels = 1; channels < 4; ++channels)
        if (clientFormat(glFormat) == formatOfChannels(channels))
            return channels;
    return 4;
}

// ---- The context

cTextureUpload::cTextureUpload(cGLWidget& widget) : m_widget(widget) {}

cTextureUpload::~cTextureUpload() {
    free(&m_defaultImage);
}

void cTextureUpload::makeContextCurrent() {
    m_widget.makeCurrent();
    if (!m_extensionsChecked)
        checkExtensions();
}

void cTextureUpload::checkExtensions() {
    static bool toBeTold = true;
    const QList<QByteArray> words =
        QByteArray(reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS))).split(' ');
    const auto has = [&](const char* extension) {
        if (!words.contains(extension))
            return false;
        if (toBeTold)
            Print("Using extension: %s", extension);
        return true;
    };
    m_hasCompression = has("GL_ARB_texture_compression");
    m_hasAutoMipmap = has("GL_SGIS_generate_mipmap");
    if (m_hasCompression)
        glHint(GL_TEXTURE_COMPRESSION_HINT, GL_NICEST);
    if (m_hasAutoMipmap)
        glHint(GL_GENERATE_MIPMAP_HINT, GL_NICEST);
    m_extensionsChecked = true;
    toBeTold = false;
}

// ---- Icons

static QIcon* newIcon(const cPixels& image, const cBrightnessTable& table) {
    static constexpr int SIDE = 24, INNER = SIDE - 2;
    uint8_t bytes[INNER * INNER * 4];
    const cPixels small = resamplePoint(image, INNER, INNER, bytes);
    brighten(small, table, bytes);
    QImage picture(SIDE, SIDE, QImage::Format_ARGB32);
    picture.fill(qRgba(255, 255, 255, 0));
    const bool isGrey = image.channels < 3;
    const bool hasAlpha = image.channels % 2 == 0;
    const uint8_t* p = bytes;
    for (int y = 1; y <= INNER; ++y) {
        for (int x = 1; x <= INNER; ++x, p += image.channels)
            picture.setPixel(x, y,
                             qRgba(p[0], p[isGrey ? 0 : 1], p[isGrey ? 0 : 2],
                                   hasAlpha ? p[image.channels - 1] : 255));
    }
    return new QIcon(QPixmap::fromImage(picture));
}

// ---- Upload

static int targetSide(int side, const cSettings& settings) {
    const int power = std::min(T_NextPowerOf2(side), cTextureUpload::MAX_SIDE);
    const bool halved = settings.HalfSizeTextures && power > settings.MinHalfSizeTextureDims;
    return halved ? std::max(power / 2, 1) : power;
}

// Two buffers take turns, so that the image may be what this gave last.
cPixels cTextureUpload::nextHalf(const cPixels& image, bool halveWidth, bool halveHeight) {
    m_halfBuffer ^= 1;
    const int width = halveWidth ? image.width / 2 : image.width;
    const int height = halveHeight ? image.height / 2 : image.height;
    void* out = TempBuffer_GetInternalSpace(m_halfBuffer, width * height * image.channels);
    return halve(image, halveWidth, halveHeight, static_cast<uint8_t*>(out));
}

// Blending takes two neighbours alone: what is more than twice too large is averaged before.
cPixels cTextureUpload::fitted(cPixels image, int width, int height) {
    while (image.width >= 2 * width || image.height >= 2 * height)
        image = nextHalf(image, image.width >= 2 * width, image.height >= 2 * height);
    if (image.width == width && image.height == height)
        return image;
    return resampleSmooth(image, width, height, m_level.data());
}

void cTextureUpload::sendLevels(cPixels image, unsigned internalFormat, bool chain) {
    const GLenum format = formatOfChannels(image.channels);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1); // rows have no padding
    for (int level = 0;; ++level) {
        glTexImage2D(GL_TEXTURE_2D, level, GLint(internalFormat), image.width, image.height, 0,
                     format, GL_UNSIGNED_BYTE, image.bytes);
        if (!chain || (image.width < 2 && image.height < 2))
            break;
        image = nextHalf(image, image.width > 1, image.height > 1);
    }
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4); // what OpenGL begins with
}

static void setParameters(bool autoMipmap) {
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_NEAREST);
    if (autoMipmap)
        glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, GL_TRUE);
}

void cTextureUpload::upload(cTextureImage* image, const void* pixels, QIcon** iconOut) {
    makeContextCurrent(); // events processed since the last one have changed it
    const cSettings& settings = *g_host;
    const double factor = Sys_TextureBrightness();
    const cBrightnessTable table = brightnessTable(factor);
    const cPixels source = {image->width, image->height, channelsOf(image->glFormat),
                            static_cast<const uint8_t*>(pixels)};
    if (iconOut)
        *iconOut = newIcon(source, table);
    m_level.resize(size_t(MAX_SIDE) * MAX_SIDE * 4);
    cPixels level =
        fitted(source, targetSide(image->width, settings), targetSide(image->height, settings));
    if (factor != 1.0) {
        brighten(level, table, m_level.data());
        level.bytes = m_level.data();
    }
    const bool autoMipmap = m_hasAutoMipmap && settings.AutoMipmaps;
    const bool compress = m_hasCompression && settings.TextureCompression;
    uint32_t internalFormat = compress ? image->compressedFormat : image->glFormat;
    if (internalFormat == 0)
        internalFormat = clientFormat(image->glFormat);
    glGenTextures(1, &image->glName);
    glBindTexture(GL_TEXTURE_2D, image->glName);
    setParameters(autoMipmap);
    sendLevels(level, internalFormat, !autoMipmap);
    glBindTexture(GL_TEXTURE_2D, 0);
}

void cTextureUpload::free(cTextureImage* image) {
    if (image->glName == 0)
        return;
    makeContextCurrent();
    glDeleteTextures(1, &image->glName);
    image->glName = 0;
}

// ---- What is missing

cTextureManager::cDefaultTexture cTextureUpload::defaultTexture() {
    static constexpr int SIDE = 32;
    if (!m_defaultIcon) {
        uint8_t pixels[SIDE * SIDE * 4];
        for (int i = 0; i < SIDE * SIDE; ++i) {
            const bool isLeft = i % SIDE < SIDE / 2, isTop = i / SIDE < SIDE / 2;
            const uint8_t color = isLeft == isTop ? 255 : 0;
            const uint8_t rgba[4] = {color, 0, color, 255};
            std::copy(rgba, rgba + 4, pixels + i * 4);
        }
        m_defaultImage = {1, SIDE, SIDE, 3072, GL_RGBA, GL_RGBA, 0, nullptr};
        QIcon* icon = nullptr;
        upload(&m_defaultImage, pixels, &icon);
        m_defaultIcon.reset(icon);
    }
    return {SIDE, SIDE, m_defaultIcon.get(), &m_defaultImage};
}

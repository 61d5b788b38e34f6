// SPDX-License-Identifier: MIT
// Textures, images, placeholders and palettes, and the callback that plug-ins deliver through.
#include "resources/tTextureManager.h"

#include "support/tConsole.h"
#include "support/tHost.h"
#include "support/tMapText.h"
#include "support/tSystem.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <cstring>

static constexpr int PALETTE_SIZE = 768;

cTextureManager::~cTextureManager() {
    clear();
}

void cTextureManager::clear() {
    qDeleteAll(packages);
    packages.clear();
    const QList<cTexture*> all = m_sourceIds.keys();
    for (cTexture* texture : all)
        freeTexture(texture);
    textures.clear();
    m_sourceIds.clear();
    const QList<cTextureImage*> rest = images.values(); // those that came without a texture
    for (cTextureImage* image : rest)
        releaseImage(image);
    images.clear();
    m_imageIds.clear();
    palettes.clear();
}

// ---- Textures

static void setName(cTexture* texture, const char* name) {
    qstrncpy(texture->name, name, sizeof texture->name);
}

static cTexture* newTexture(uint32_t flags) {
    cTexture* texture = new cTexture{};
    texture->refCount = 1;
    texture->flags = flags;
    texture->opacity = 1.0f;
    return texture;
}

cTexture* cTextureManager::obtainTexture(const QString& sourceId, const QString& name) {
    cTexture* texture = m_placeholders ? m_placeholders->take(name.toUpper()) : nullptr;
    if (texture) {
        texture->image = nullptr; // borrowed, like the icon
        texture->icon = nullptr;
        texture->flags = TF_REPLACED;
    } else {
        texture = newTexture(0);
    }
    textures.insert(sourceId, texture);
    m_sourceIds.insert(texture, sourceId);
    return texture;
}

cTexture* cTextureManager::makePlaceholder(const QString& name) const {
    cTexture* texture = newTexture(TF_PLACEHOLDER);
    texture->width = m_default.width;
    texture->height = m_default.height;
    texture->icon = m_default.icon;
    texture->image = m_default.image;
    setName(texture, toMapText(name).constData());
    return texture;
}

void cTextureManager::releaseTexture(cTexture* texture) {
    if (!texture || --texture->refCount > 0)
        return;
    // Another texture may stand under the same id by now: that one stays.
    const QString sourceId = m_sourceIds.take(texture);
    if (textures.value(sourceId) == texture)
        textures.remove(sourceId);
    freeTexture(texture);
}

void cTextureManager::freeTexture(cTexture* texture) {
    if ((texture->flags & TF_PLACEHOLDER) == 0) {
        delete texture->icon;
        releaseImage(texture->image);
    }
    delete texture;
}

void cTextureManager::releaseImage(cTextureImage* image) {
    if (!image || --image->refCount > 0)
        return;
    images.remove(m_imageIds.take(image));
    if (m_uploader)
        m_uploader->free(image);
    delete image;
}

void cTextureManager::clearReplacedMarks() {
    for (cTexture* texture : qAsConst(textures))
        texture->flags &= ~uint32_t(TF_REPLACED);
}

// ---- What plug-ins deliver

static void copyExtras(cTexture* texture, const cTextureExtras& extras) {
    texture->renderState = extras.renderState;
    texture->surfaceFlags = extras.surfaceFlags;
    texture->contentFlags = extras.contentFlags;
    texture->extraFlags = extras.extraFlags;
    texture->value = extras.value;
    texture->opacity = extras.opacity;
    texture->reserved = extras.reserved;
}

// An image that is known by the id keeps its place in memory.
cTextureImage* cTextureManager::addImage(const QString& sourceId, const cTextureImage& record,
                                         const void* pixels, QIcon** iconOut) {
    cTextureImage*& image = images[sourceId];
    if (!image) {
        image = new cTextureImage(record);
        m_imageIds.insert(image, sourceId);
    } else {
        if (m_uploader)
            m_uploader->free(image);
        *image = record;
    }
    if (m_uploader)
        m_uploader->upload(image, pixels, iconOut);
    return image;
}

// With one reference more; null when none has the id.
cTexture* cTextureManager::renewTexture(const QString& sourceId) {
    cTexture* texture = textures.value(sourceId);
    if (!texture)
        return nullptr;
    delete texture->icon;
    ++texture->refCount;
    texture->flags |= TF_REPLACED;
    return texture;
}

static bool isRefused(const char* name, int width, int height) {
    const auto fits = [](int side) { return side > 0 && side <= cTextureManager::MAX_IMAGE_SIDE; };
    if (!fits(width) || !fits(height)) {
        Warning("texture \"%s\" has a bad size, %i by %i", name, width, height);
        return true;
    }
    if (strlen(name) >= sizeof cTexture::name) {
        Warning("the name of texture \"%s\" is too long", name);
        return true;
    }
    return false;
}

bool cTextureManager::isTimeForEvents() const {
    constexpr int INTERVAL = 50; // milliseconds
    return !QCoreApplication::closingDown() &&
           (!m_sinceEvents.isValid() || m_sinceEvents.hasExpired(INTERVAL));
}

// The window repaints during long loads.
void cTextureManager::keepPainting() {
    if (!isTimeForEvents())
        return;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    m_sinceEvents.start();
}

void cTextureManager::addTexture(const char* sourceId, const char* name, uint32_t glFormat,
                                 uint32_t compressedFormat, int32_t dataSize, int32_t width,
                                 int32_t height, uint32_t flags, const cTextureExtras* extras,
                                 const void* pixels, void* context) {
    if (!name || !pixels || !context || isRefused(name, width, height))
        return;
    cTexturePackage* package = static_cast<cTexturePackage*>(context);
    cTextureManager& manager = *package->manager;
    const QString id = fromMapText(sourceId ? sourceId : name) + package->look;
    if (manager.m_delivered.contains(id))
        return;
    manager.m_delivered.insert(id);
    const cTextureImage record = {1, width,  height, dataSize, glFormat, compressedFormat,
                                  0, nullptr};
    if (flags & TT_IMAGE_ONLY) {
        manager.addImage(id, record, pixels, nullptr);
        return;
    }
    QIcon* icon = nullptr;
    cTextureImage* image = manager.addImage(id, record, pixels, &icon);
    cTexture* texture = manager.renewTexture(id);
    if (!texture)
        texture = manager.obtainTexture(id, fromMapText(name));
    texture->width = width;
    texture->height = height;
    texture->image = image;
    texture->icon = icon;
    texture->labelWidth = 0;
    setName(texture, name);
    if (extras)
        copyExtras(texture, *extras);
    package->textures.push_back(texture);
    manager.keepPainting();
}

// ---- Palettes

bool cTextureManager::loadPalette(const QString& path, const QString& base) {
    const uint stamp = stampOf({QFileInfo(path)});
    if (palettes.contains(path) && m_paletteStamps.value(path) == stamp)
        return true;
    m_paletteStamps.insert(path, stamp);
    g_host->showProgress(QStringLiteral("Precaching: ") + relativePath(base, path));
    palettes.insert(path, QByteArray(PALETTE_SIZE, '\xFF'));
    QFile file(path);
    // The size comes first: opening a pipe would wait for its writer.
    if (QFileInfo(path).size() != PALETTE_SIZE || !file.open(QIODevice::ReadOnly)) {
        Warning("palette must contain exactly 256 colors");
        return false;
    }
    const QByteArray bytes = file.read(PALETTE_SIZE);
    if (bytes.size() != PALETTE_SIZE) {
        Warning("palette must contain exactly 256 colors");
        return false;
    }
    palettes.insert(path, bytes);
    return true;
}

const uint8_t* cTextureManager::findPalette(const QString& path) const {
    const auto found = palettes.constFind(path);
    return found == palettes.constEnd() ? nullptr
                                        : reinterpret_cast<const uint8_t*>(found->constData());
}

// SPDX-License-Identifier: MIT
#include "resources/tModelManager.h"

#include "resources/tTextureManager.h"
#include "support/tConsole.h"
#include "support/tHost.h"
#include "support/tMapText.h"
#include "support/tSystem.h"

#include <QFileInfo>
#include <algorithm>
#include <tuple>

bool cModelSource::operator<(const cModelSource& other) const {
    return std::tie(path, palette, brightness, settings) <
           std::tie(other.path, other.palette, other.brightness, other.settings);
}

// ---- What differs between sprites and models

static cTextureImage*& firstImage(cSpriteRecord& sprite) {
    return sprite.frames;
}

static cTextureImage*& firstImage(cModelRecord& model) {
    return model.skins;
}

static cTextureImage*& lastImage(cSpriteRecord& sprite) {
    return sprite.lastFrame;
}

static cTextureImage*& lastImage(cModelRecord& model) {
    return model.lastSkin;
}

static int32_t loadWith(const cSpriteFormat& format, const char* path, void* data, int32_t size,
                        cSpriteRecord& sprite) {
    return format.load(format.id, path, data, size, &sprite, cModelManager::addFrame, nullptr);
}

static int32_t loadWith(const cModelFormat& format, const char* path, void* data, int32_t size,
                        cModelRecord& model) {
    return format.load(format.id, path, data, size, &model, cModelManager::addSkin, nullptr);
}

// The plug-in's own count might be of frames that were refused.
static void becomeLoaded(cSpriteRecord& sprite, const cSpriteFormat& format) {
    sprite.loaded = 1;
    sprite.formatId = format.id;
    sprite.unload = format.unload;
    sprite.frameCount = 0;
    for (const cTextureImage* frame = sprite.frames; frame; frame = frame->next)
        ++sprite.frameCount;
}

static void becomeLoaded(cModelRecord& model, const cModelFormat& format) {
    model.loaded = 1;
    model.formatId = format.id;
    model.render = format.render;
    model.getBounds = format.getBounds;
    model.unload = format.unload;
}

// ---- Pictures

// Whose load is under way: the callbacks carry no context.
static cTextureUploader* s_uploader = nullptr;

template<class Record>
static void addImage(Record* record, const cTextureImage& image, const void* pixels) {
    const auto fits = [](int side) { return side > 0 && side <= cTextureManager::MAX_IMAGE_SIDE; };
    if (!record || !pixels)
        return;
    if (!fits(image.width) || !fits(image.height)) {
        Warning("a picture has a bad size, %i by %i", image.width, image.height);
        return;
    }
    auto* added = new cTextureImage(image);
    cTextureImage*& last = lastImage(*record);
    (last ? last->next : firstImage(*record)) = added;
    last = added;
    if (s_uploader)
        s_uploader->upload(added, pixels, nullptr);
}

void cModelManager::addFrame(cSpriteRecord* sprite, uint32_t glFormat, uint32_t compressedFormat,
                             int32_t dataSize, int32_t width, int32_t height, const void* pixels) {
    addImage(sprite, {1, width, height, dataSize, glFormat, compressedFormat, 0, nullptr}, pixels);
}

void cModelManager::addSkin(cModelRecord* model, uint32_t glFormat, uint32_t compressedFormat,
                            int32_t dataSize, int32_t width, int32_t height, const void* pixels) {
    addImage(model, {1, width, height, dataSize, glFormat, compressedFormat, 0, nullptr}, pixels);
}

template<class Record> void cModelManager::freeImages(Record& record) {
    for (cTextureImage *image = firstImage(record), *next; image; image = next) {
        next = image->next;
        if (m_uploader)
            m_uploader->free(image);
        delete image;
    }
    firstImage(record) = lastImage(record) = nullptr;
}

// ---- Loading

// A name is looked for once, however many entities bear it.
QString cModelManager::resolve(const QString& name) {
    const cConfigFolders* folders = activeConfig();
    const QString key = folders ? name + QLatin1Char('\n') + folders->gameModdir +
                                      QLatin1Char('\n') + folders->gameBasedir
                                : name;
    const auto known = m_paths.constFind(key);
    if (known != m_paths.constEnd())
        return *known;
    char found[260];
    File_Find(toMapText(name).constData(), found, sizeof found);
    return *m_paths.insert(key, fromMapText(found).replace(QLatin1Char('\\'), QLatin1Char('/')));
}

// Each try has a block of its own, which is the plug-in's from then on.
template<class Record, class Format>
void cModelManager::read(Record& record, const QList<Format>& formats, const QString& path,
                         const uint8_t* palette) {
    const QString extension = QLatin1Char('.') + QFileInfo(path).suffix().toLower();
    const QByteArray name = toMapText(path);
    const int warned = warningCount();
    bool isTried = false;
    for (const Format& format : formats) {
        if (format.extension != extension)
            continue;
        g_host->showProgress(
            QStringLiteral("Precaching: %1").arg(relativePath(baseDirectory, path)));
        DPrint("Loading: \"%s\"", name.constData());
        int size = 0;
        void* data = File_Load(name.constData(), &size);
        if (!data)
            return; // which is told
        if (format.setPalette)
            format.setPalette(palette);
        if (loadWith(format, name.constData(), data, size, record)) {
            becomeLoaded(record, format);
            return;
        }
        const int32_t users = record.refCount;
        freeImages(record);
        record = {};
        record.refCount = users;
        isTried = true;
    }
    if (isTried && warningCount() == warned) // else the plug-in has told why
        Warning("can't read \"%s\"", name.constData());
}

template<class Record, class Format>
Record* cModelManager::load(cModelRecords<Record>& records, const QList<Format>& formats,
                            const QString& name, const uint8_t* palette) {
    const cModelSource source = {resolve(name),
                                 palette ? QByteArray(reinterpret_cast<const char*>(palette), 768)
                                         : QByteArray(),
                                 Sys_TextureBrightness(), m_settings};
    const auto [place, isNew] = records.emplace(source, Record{});
    Record& record = place->second;
    ++record.refCount;
    if (isNew) {
        const cBusy busy; // progress lets events run, and the map may be half built
        s_uploader = m_uploader;
        read(record, formats, source.path, palette);
        s_uploader = nullptr;
    }
    return &record;
}

cSpriteRecord* cModelManager::loadSprite(const QString& name, const uint8_t* palette) {
    return load(sprites, spriteFormats, name, palette);
}

cModelRecord* cModelManager::loadModel(const QString& name, const uint8_t* palette) {
    return load(models, modelFormats, name, palette);
}

void cModelManager::releaseSprite(cSpriteRecord* sprite) {
    if (sprite)
        --sprite->refCount;
}

void cModelManager::releaseModel(cModelRecord* model) {
    if (model)
        --model->refCount;
}

// ---- The end

template<class Record> void cModelManager::freeRecord(Record& record) {
    freeImages(record);
    if (record.ownsData && record.unload)
        record.unload(record.formatId, &record);
}

template<class Record> bool cModelManager::freeUnused(cModelRecords<Record>& records, bool all) {
    const size_t before = records.size();
    for (auto it = records.begin(); it != records.end();) {
        if (!all && it->second.refCount > 0) {
            ++it;
            continue;
        }
        freeRecord(it->second);
        it = records.erase(it);
    }
    return records.size() != before;
}

void cModelManager::purge(bool all) {
    m_paths.clear();
    const bool spritesGone = freeUnused(sprites, all);
    const bool modelsGone = freeUnused(models, all);
    if ((spritesGone || modelsGone) && recordsGone)
        recordsGone();
}

void cModelManager::purge() {
    purge(false);
}

void cModelManager::clear() {
    purge(true);
}

void cModelManager::outdate() {
    ++m_settings;
    m_paths.clear();
}

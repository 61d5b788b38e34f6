// SPDX-License-Identifier: MIT
// Texture sets of cTextureManager: sharing by key, what they hold, loading through the plug-ins.
#include "resources/tTextureManager.h"

#include "support/tConsole.h"
#include "support/tHost.h"
#include "support/tMapText.h"
#include "support/tSystem.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>

static QString extensionOf(const QString& path) {
    return QLatin1Char('.') + QFileInfo(path).suffix().toLower();
}

bool cTextureManager::isPackageExtension(const QString& extension) const {
    return std::any_of(packageFormats.begin(), packageFormats.end(),
                       [&](const cPackageFormat& f) { return f.extension == extension; });
}

bool cTextureManager::acceptsName(const QString& path) const {
    const QString extension = extensionOf(path);
    const QByteArray name = toMapText(path);
    return std::none_of(textureFormats.begin(), textureFormats.end(), [&](const cTextureFormat& f) {
        return f.extension == extension && f.filterName && !f.filterName(f.id, name.constData());
    });
}

// ---- Sharing

cTexturePackage* cTextureManager::acquirePackage(const QString& key) {
    cTexturePackage*& package = packages[key];
    if (package) {
        ++package->refCount;
        return package;
    }
    const int split = key.lastIndexOf(QStringLiteral("::"));
    package = new cTexturePackage;
    package->manager = this;
    package->path = split < 0 ? key : key.left(split);
    package->filter = split < 0 ? QString() : key.mid(split + 2);
    if (QFileInfo(package->path).isDir())
        package->kind = PK_DIRECTORY;
    else if (isPackageExtension(extensionOf(package->path)))
        package->kind = PK_PACKAGE;
    return package;
}

void cTextureManager::releasePackage(const QString& key) {
    cTexturePackage* package = findPackage(key);
    if (!package || --package->refCount > 0)
        return;
    unloadPackage(package);
    packages.remove(key);
    delete package;
}

void cTextureManager::unloadPackage(cTexturePackage* package) {
    for (cTexture* texture : package->textures)
        releaseTexture(texture);
    package->textures.clear();
    package->loaded = false;
}

// ---- Contents

static QFileInfoList filesOf(const cTexturePackage& package) {
    const QStringList patterns = package.filter.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    return QDir(package.path).entryInfoList(patterns, QDir::Files | QDir::Readable);
}

cTexturePackage* cTextureManager::packageInfo(cTexturePackage* package) const {
    if (package->infoValid)
        return package;
    package->size = package->count = 0;
    if (package->kind == PK_DIRECTORY) {
        for (const QFileInfo& file : filesOf(*package)) {
            package->size += file.size();
            ++package->count;
        }
    } else {
        package->size = QFileInfo(package->path).size();
        package->count = package->kind == PK_FILE ? 1 : packageCount(*package);
    }
    package->infoValid = true;
    return package;
}

int cTextureManager::packageCount(const cTexturePackage& package) const {
    const QString extension = extensionOf(package.path);
    const QByteArray path = toMapText(package.path);
    for (const cPackageFormat& format : packageFormats) {
        tpPackageInfo info = {};
        if (format.extension == extension && format.getInfo(format.id, path.constData(), &info))
            return info.textureCount;
    }
    return 0;
}

// ---- Loading

template<class Format> static void givePalette(Format& format, const uint8_t* palette) {
    if (!format.setPalette || palette == format.lastPalette)
        return;
    format.setPalette(palette);
    format.lastPalette = palette;
}

static void showLoading(const QString& base, const QString& path) {
    if (g_host)
        g_host->showProgress(QStringLiteral("Precaching: %1").arg(relativePath(base, path)));
}

bool cTextureManager::loadPackage(cTexturePackage* package, const QString& base,
                                  const QString& paletteFile) {
    if (package->loaded)
        return true;
    const uint8_t* palette = paletteFile.isEmpty() ? nullptr : findPalette(paletteFile);
    if (m_uploader)
        m_uploader->makeContextCurrent();
    Print("Loading textures from \"%s\"...", toMapText(package->path).constData());
    if (package->kind == PK_DIRECTORY)
        return package->loaded = loadDirectory(package, base, palette);
    showLoading(base, package->path);
    if (package->kind == PK_PACKAGE)
        return package->loaded = loadPackageFile(package, palette);
    package->textures.reserve(1);
    return package->loaded = loadFile(package, package->path, palette);
}

bool cTextureManager::loadPackageFile(cTexturePackage* package, const uint8_t* palette) {
    if (packageInfo(package)->count < 1)
        return true;
    // The count is the plug-in's word; a texture takes at least a byte of its file.
    package->textures.reserve(size_t(std::min(qint64(package->count), package->size)));
    const QString extension = extensionOf(package->path);
    const QByteArray path = toMapText(package->path);
    for (cPackageFormat& format : packageFormats) {
        if (format.extension != extension)
            continue;
        givePalette(format, palette);
        if (format.load(format.id, path.constData(), addTexture, package))
            return true;
    }
    return false;
}

bool cTextureManager::loadDirectory(cTexturePackage* package, const QString& base,
                                    const uint8_t* palette) {
    const QFileInfoList files = filesOf(*package);
    package->textures.reserve(size_t(files.size()));
    bool loaded = false;
    for (const QFileInfo& file : files) {
        const QString path = file.canonicalFilePath();
        if (!acceptsName(path))
            continue;
        showLoading(base, path);
        loaded |= loadFile(package, path, palette);
    }
    return loaded;
}

bool cTextureManager::loadFile(cTexturePackage* package, const QString& path,
                               const uint8_t* palette) {
    if (cTexture* present = textures.value(path)) {
        ++present->refCount;
        package->textures.push_back(present);
        Warning("duplicate texture \"%s\"", present->name);
        return true;
    }
    const QString extension = extensionOf(path);
    const auto reads = [&](const cTextureFormat& f) { return f.extension == extension; };
    if (std::none_of(textureFormats.begin(), textureFormats.end(), reads))
        return false;
    const QByteArray name = toMapText(path);
    int size = 0;
    void* data = File_Load(name.constData(), &size);
    bool loaded = false;
    for (cTextureFormat& format : textureFormats) {
        if (!data || loaded || !reads(format))
            continue;
        givePalette(format, palette);
        loaded = format.load(format.id, name.constData(), data, size, addTexture, package) != 0;
    }
    Mem_Free(data);
    return loaded;
}

// SPDX-License-Identifier: MIT
// Texture sets of cTextureManager: sharing by key, what they hold, loading through the plug-ins.
#include "resources/tTextureManager.h"

#include "support/tConsole.h"
#include "support/tHost.h"
#include "support/tMapText.h"
#include "support/tSystem.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <algorithm>
#include <tuple>
#include <utility>

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

static std::pair<QString, QString> partsOf(const QString& key) {
    const int split = key.lastIndexOf(QStringLiteral("::"));
    return split < 0 ? std::make_pair(key, QString())
                     : std::make_pair(key.left(split), key.mid(split + 2));
}

// ---- Sharing

static QString lookOf(const QString& paletteFile) {
    return QStringLiteral("\n%1\n%2").arg(Sys_TextureBrightness()).arg(paletteFile);
}

QString cTextureManager::packageId(const QString& key, const QString& paletteFile) {
    return key + lookOf(paletteFile);
}

cTexturePackage* cTextureManager::acquirePackage(const QString& key, const QString& paletteFile) {
    const QString id = packageId(key, paletteFile);
    cTexturePackage*& package = packages[id];
    if (package) {
        ++package->refCount;
        return package;
    }
    package = new cTexturePackage;
    package->manager = this;
    package->id = id;
    package->palette = paletteFile;
    package->look = lookOf(paletteFile);
    std::tie(package->path, package->filter) = partsOf(key);
    if (QFileInfo(package->path).isDir())
        package->kind = PK_DIRECTORY;
    else if (isPackageExtension(extensionOf(package->path)))
        package->kind = PK_PACKAGE;
    return package;
}

void cTextureManager::releasePackage(cTexturePackage* package) {
    if (!package || --package->refCount > 0)
        return;
    unloadPackage(package);
    packages.remove(package->id);
    delete package;
}

void cTextureManager::unloadPackage(cTexturePackage* package) {
    for (cTexture* texture : package->textures)
        releaseTexture(texture);
    package->textures.clear();
    package->loaded = false;
}

// ---- Contents

static QFileInfoList filesIn(const QString& folder, const QString& filter) {
    const QStringList patterns = filter.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    return QDir(folder).entryInfoList(patterns, QDir::Files | QDir::Readable);
}

static QFileInfoList filesOf(const cTexturePackage& package) {
    return package.kind == PK_DIRECTORY ? filesIn(package.path, package.filter)
                                        : QFileInfoList{QFileInfo(package.path)};
}

bool cTextureManager::holdsImages(const QString& folder, const QString& filter) const {
    const QFileInfoList files = filesIn(folder, filter);
    return std::any_of(files.begin(), files.end(), [&](const QFileInfo& file) {
        const QString extension = extensionOf(file.filePath());
        return std::any_of(textureFormats.begin(), textureFormats.end(),
                           [&](const cTextureFormat& f) { return f.extension == extension; });
    });
}

QStringList cTextureManager::expandedKey(const QString& key) const {
    constexpr int MOST_FOLDERS = 1000;
    const auto [path, filter] = partsOf(key);
    if (!QFileInfo(path).isDir())
        return {key};
    QStringList folders;
    QDirIterator tree(path, QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (tree.hasNext() && folders.size() < MOST_FOLDERS)
        folders << tree.next();
    folders.sort();
    folders.prepend(path);
    QStringList keys;
    for (const QString& folder : qAsConst(folders)) {
        if (holdsImages(folder, filter))
            keys << folder + QStringLiteral("::") + filter;
    }
    return keys.isEmpty() ? QStringList(key) : keys;
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
    return -1;
}

// ---- Loading

template<class Format> static void givePalette(const Format& format, const uint8_t* palette) {
    if (format.setPalette)
        format.setPalette(palette);
}

uint cTextureManager::stampOf(const QFileInfoList& files) {
    uint stamp = 0;
    for (const QFileInfo& file : files) {
        const qint64 time = file.exists() ? file.lastModified().toMSecsSinceEpoch() : 0;
        stamp = qHash(file.fileName(), qHash(file.size(), qHash(time, stamp)));
    }
    return stamp;
}

static uint stampOf(const cTexturePackage& package) {
    QFileInfoList files = filesOf(package);
    if (!package.palette.isEmpty())
        files << QFileInfo(package.palette);
    return cTextureManager::stampOf(files);
}

void cTextureManager::outdate() {
    for (cTexturePackage* package : qAsConst(packages))
        package->outdated = package->loaded;
}

void cTextureManager::showLoading(const QString& base, const QString& path) const {
    if (isTimeForEvents())
        g_host->showProgress(QStringLiteral("Precaching: %1").arg(relativePath(base, path)));
}

bool cTextureManager::isUpToDate(const cTexturePackage& package) const {
    return package.loaded && !package.outdated && package.stamp == ::stampOf(package);
}

bool cTextureManager::loadPackage(cTexturePackage* package, const QString& base) {
    const uint stamp = ::stampOf(*package);
    if (package->tried && stamp == package->stamp && !package->outdated)
        return package->loaded;
    const int warned = warningCount();
    const cBusy busy; // events are processed, and views would paint half a set
    const std::vector<cTexture*> before = std::exchange(package->textures, {});
    m_rereading = package->loaded;
    m_duplicateTold = false;
    m_delivered.clear();
    package->infoValid = package->outdated = false;
    package->tried = true;
    package->stamp = stamp;
    package->loaded = readSet(package, base, findPalette(package->palette));
    m_delivered.clear();
    if (!package->loaded) {
        unloadPackage(package);
        if (warningCount() == warned) // else the plug-in has told why
            Warning("can't read textures from \"%s\"", toMapText(package->path).constData());
    }
    for (cTexture* texture : before)
        releaseTexture(texture);
    return package->loaded;
}

bool cTextureManager::readSet(cTexturePackage* package, const QString& base,
                              const uint8_t* palette) {
    if (m_uploader)
        m_uploader->makeContextCurrent();
    Print("Loading textures from \"%s\"...", toMapText(package->path).constData());
    if (package->kind == PK_DIRECTORY)
        return loadDirectory(package, base, palette);
    showLoading(base, package->path);
    if (package->kind == PK_PACKAGE)
        return loadPackageFile(package, palette);
    package->textures.reserve(1);
    return loadFile(package, package->path, palette);
}

bool cTextureManager::loadPackageFile(cTexturePackage* package, const uint8_t* palette) {
    if (packageInfo(package)->count < 1)
        return package->count == 0; // -1: no format knows the file
    // The count is the plug-in's word; a texture takes at least a byte of its file.
    package->textures.reserve(size_t(std::min(qint64(package->count), package->size)));
    const QString extension = extensionOf(package->path);
    const QByteArray path = toMapText(package->path);
    for (const cPackageFormat& format : qAsConst(packageFormats)) {
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
    cTexture* present = m_rereading ? nullptr : textures.value(path + package->look);
    if (present) {
        ++present->refCount;
        package->textures.push_back(present);
        if (!std::exchange(m_duplicateTold, true))
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
    for (const cTextureFormat& format : qAsConst(textureFormats)) {
        if (!data || loaded || !reads(format))
            continue;
        givePalette(format, palette);
        loaded = format.load(format.id, name.constData(), data, size, addTexture, package) != 0;
    }
    Mem_Free(data);
    return loaded;
}

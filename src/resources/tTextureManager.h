// SPDX-License-Identifier: MIT
// Every texture, image, texture set and palette of the program, shared by all configurations.
// Plug-ins read the files; this walks folders, calls them and takes the images through a
// callback. Pixels go straight to the uploader and are not kept. GUI thread only.
#pragma once

#include "document/tTexture.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

struct cTextureFormat {
    uint32_t id;
    QString extension; // with its leading point
    QString description;
    tpSetPaletteFunction setPalette;        // or null
    tpFilterTextureNameFunction filterName; // or null
    tpLoadTextureFunction load;
};

struct cPackageFormat {
    uint32_t id;
    QString extension;
    QString description;
    tpSetPaletteFunction setPalette; // or null
    tpGetPackageInfoFunction getInfo;
    tpLoadPackageFunction load;
};

enum ePackageKind { PK_DIRECTORY = 0, PK_FILE = 1, PK_PACKAGE = 2 };

// What a load depended on.
struct cTextureSource {
    qint64 size = -1; // bytes of all files
    qint64 time = 0;  // of the newest
    QString palette;  // path
    double brightness = 0;

    bool operator==(const cTextureSource& other) const {
        return size == other.size && time == other.time && palette == other.palette &&
               brightness == other.brightness;
    }
};

// A texture set: a directory, one image file, or a package file.
struct cTexturePackage {
    int refCount = 1; // game configurations
    QString path;
    QString filter; // of a directory: name patterns separated by ";"
    bool loaded = false;
    bool infoValid = false;          // size and count are known
    int kind = PK_FILE;              // ePackageKind
    qint64 size = 0;                 // bytes
    int count = 0;                   // textures
    std::vector<cTexture*> textures; // with a reference on each

    cTextureSource failed; // the last load that failed
    QString palette;       // path; this and the next: of the load that is held
    double brightness = 0;
    bool outdated = false; // settings have changed since

    class cTextureManager* manager = nullptr;
};

// Brings decoded pixels to OpenGL. The texture preview implements it; without one, images keep
// glName 0 and textures have no icon.
class cTextureUploader {
public:
    virtual ~cTextureUploader() = default;

    virtual void makeContextCurrent() = 0;
    virtual void upload(cTextureImage* image, const void* pixels, QIcon** iconOut) = 0;
    virtual void free(cTextureImage* image) = 0;
};

class cTextureManager {
public:
    // What a placeholder borrows.
    struct cDefaultTexture {
        int width = 64;
        int height = 64;
        QIcon* icon = nullptr;
        cTextureImage* image = nullptr;
    };

    cTextureManager() = default;
    ~cTextureManager();
    cTextureManager(const cTextureManager&) = delete;
    cTextureManager& operator=(const cTextureManager&) = delete;

    void addTextureFormat(const cTextureFormat& format) { textureFormats.append(format); }
    void addPackageFormat(const cPackageFormat& format) { packageFormats.append(format); }
    bool isPackageExtension(const QString& extension) const;
    bool acceptsName(const QString& path) const; // false: a format's name filter refuses it

    // A key is "path::filter".
    cTexturePackage* acquirePackage(const QString& key);
    void releasePackage(const QString& key);
    cTexturePackage* findPackage(const QString& key) const { return packages.value(key); }
    cTexturePackage* packageInfo(cTexturePackage* package) const; // fills size and count
    // True if the set is in memory now, with that palette and the active brightness; one that is
    // there with others is read again, and its textures stay the same objects. A set that no
    // format reads stays not loaded, and is not tried again until its files or the palette change.
    bool loadPackage(cTexturePackage* package, const QString& base, const QString& paletteFile);
    // Loaded with that palette, the active brightness and the settings of now.
    bool isUpToDate(const cTexturePackage& package, const QString& paletteFile) const;
    void outdate(); // every set that is loaded is to be read again, as settings have changed
    void unloadPackage(cTexturePackage* package);

    bool loadPalette(const QString& path, const QString& base);
    const uint8_t* findPalette(const QString& path) const; // 768 bytes or null

    // A new texture with one reference; a real one adopts the placeholder of its name.
    cTexture* obtainTexture(const QString& sourceId, const QString& name, uint32_t flags);
    cTexture* findPlaceholder(const QString& name) const;
    cTexture* addPlaceholder(const QString& name);
    void releaseTexture(cTexture* texture);
    void clearReplacedMarks();
    void clear();

    void setUploader(cTextureUploader* uploader) { m_uploader = uploader; }
    void setDefaultTexture(const cDefaultTexture& texture) { m_default = texture; }

    QList<cTextureFormat> textureFormats;
    QList<cPackageFormat> packageFormats;
    QMap<QString, cTexture*> placeholders; // by upper-case name
    QHash<QString, cTexturePackage*> packages;
    QHash<QString, cTexture*> textures;    // by source id
    QHash<QString, cTextureImage*> images; // by source id
    QHash<QString, QByteArray> palettes;   // by path

    // The callback of the load functions; context is the cTexturePackage. Within one load the first
    // of a source id stays; a later load renews the same texture. Refuses, with a line, sides above
    // MAX_IMAGE_SIDE and names that a face cannot hold.
    static void addTexture(const char* sourceId, const char* name, uint32_t glFormat,
                           uint32_t compressedFormat, int32_t dataSize, int32_t width,
                           int32_t height, uint32_t flags, const cTextureExtras* extras,
                           const void* pixels, void* context);

    static constexpr int MAX_IMAGE_SIDE = 16384; // texels

private:
    bool readSet(cTexturePackage* package, const QString& base, const uint8_t* palette);
    bool loadPackageFile(cTexturePackage* package, const uint8_t* palette);
    bool loadDirectory(cTexturePackage* package, const QString& base, const uint8_t* palette);
    bool loadFile(cTexturePackage* package, const QString& path, const uint8_t* palette);
    int packageCount(const cTexturePackage& package) const;
    cTextureImage* addImage(const QString& sourceId, const cTextureImage& record,
                            const void* pixels, QIcon** iconOut);
    cTexture* renewTexture(const QString& sourceId);
    void keepPainting();
    QString forgetSource(cTexture* texture);
    void freeTexture(cTexture* texture);
    void releaseImage(cTextureImage* image);

    QHash<cTexture*, QString> m_sourceIds; // where each texture stands in textures
    QHash<cTextureImage*, QString> m_imageIds;
    cTextureUploader* m_uploader = nullptr;
    cDefaultTexture m_default;
    QSet<QString> m_delivered;    // source ids that the load under way has given
    bool m_rereading = false;     // the load under way renews what is there
    bool m_duplicateTold = false; // in the load under way
    QElapsedTimer m_sinceEvents;
};

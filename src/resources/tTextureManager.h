// SPDX-License-Identifier: MIT
// Every texture, image, texture set and palette of the program, shared by all configurations.
// Plug-ins read the files; this walks folders, calls them and takes the images through a
// callback. Pixels go straight to the uploader and are not kept. GUI thread only.
#pragma once

#include "document/tTexture.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QFileInfo>
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

// A texture set: a directory, one image file, or a package file. The same files with another
// palette or brightness are another set, so that games do not mix.
struct cTexturePackage {
    int refCount = 1; // game configurations
    QString id;       // where it stands in cTextureManager::packages
    QString path;
    QString filter; // of a directory: name patterns separated by ";"
    bool loaded = false;
    bool infoValid = false;          // size and count are known
    int kind = PK_FILE;              // ePackageKind
    qint64 size = 0;                 // bytes
    int count = 0;                   // textures; -1: no format knows the package
    std::vector<cTexture*> textures; // with a reference on each

    QString palette;       // path, or empty
    QString look;          // behind the source ids of its textures: palette and brightness
    uint stamp = 0;        // of its files at the last try to load it
    bool tried = false;    // to load it
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

    // A key is "path::filter". A set is for the palette of that path and the active brightness.
    cTexturePackage* acquirePackage(const QString& key, const QString& paletteFile = QString());
    void releasePackage(cTexturePackage* package);
    static QString packageId(const QString& key, const QString& paletteFile);
    // The keys of all folders with images in the tree of a folder, itself first when it has some;
    // of anything else its own key.
    QStringList expandedKey(const QString& key) const;
    cTexturePackage* packageInfo(cTexturePackage* package) const; // fills size and count
    // True if the set is in memory now; one whose files or palette have changed is read again, and
    // its textures stay the same objects. A set that no format reads stays not loaded, and is not
    // tried again until then.
    bool loadPackage(cTexturePackage* package, const QString& base);
    bool isUpToDate(const cTexturePackage& package) const; // loaded as its files and settings are
    void outdate(); // every set that is loaded is to be read again, as settings have changed
    void unloadPackage(cTexturePackage* package);

    bool loadPalette(const QString& path, const QString& base);
    const uint8_t* findPalette(const QString& path) const; // 768 bytes or null
    static uint stampOf(const QFileInfoList& files);       // another when one has changed

    // A new texture with one reference; it adopts the placeholder of its name.
    cTexture* obtainTexture(const QString& sourceId, const QString& name);
    // The placeholders that loads from now on adopt, by upper-case name; or null. The reference of
    // who holds them there goes to the set.
    void adoptFrom(QMap<QString, cTexture*>* placeholders) { m_placeholders = placeholders; }
    cTexture* makePlaceholder(const QString& name) const; // with one reference
    void releaseTexture(cTexture* texture);
    void clearReplacedMarks();
    void clear();

    void setUploader(cTextureUploader* uploader) { m_uploader = uploader; }
    void setDefaultTexture(const cDefaultTexture& texture) { m_default = texture; }

    QList<cTextureFormat> textureFormats;
    QList<cPackageFormat> packageFormats;
    QHash<QString, cTexturePackage*> packages; // by id
    QHash<QString, cTexture*> textures;        // by source id and look
    QHash<QString, cTextureImage*> images;     // by the same
    QHash<QString, QByteArray> palettes;       // by path

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
    bool holdsImages(const QString& folder, const QString& filter) const;
    bool loadPackageFile(cTexturePackage* package, const uint8_t* palette);
    bool loadDirectory(cTexturePackage* package, const QString& base, const uint8_t* palette);
    bool loadFile(cTexturePackage* package, const QString& path, const uint8_t* palette);
    int packageCount(const cTexturePackage& package) const;
    cTextureImage* addImage(const QString& sourceId, const cTextureImage& record,
                            const void* pixels, QIcon** iconOut);
    cTexture* renewTexture(const QString& sourceId);
    void keepPainting();
    bool isTimeForEvents() const;
    void showLoading(const QString& base, const QString& path) const;
    void freeTexture(cTexture* texture);
    void releaseImage(cTextureImage* image);

    QMap<QString, cTexture*>* m_placeholders = nullptr;
    QHash<QString, uint> m_paletteStamps;
    QHash<cTexture*, QString> m_sourceIds; // where each texture stands in textures
    QHash<cTextureImage*, QString> m_imageIds;
    cTextureUploader* m_uploader = nullptr;
    cDefaultTexture m_default;
    QSet<QString> m_delivered;    // source ids that the load under way has given
    bool m_rereading = false;     // the load under way renews what is there
    bool m_duplicateTold = false; // in the load under way
    QElapsedTimer m_sinceEvents;
};

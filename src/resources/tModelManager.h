// SPDX-License-Identifier: MIT
// The sprites and models that entities show, shared by all open maps and counted by their users.
// Plug-ins read the files. What could not be read keeps its record, so that it costs one try and
// one line on the console however many entities name it. One per program, GUI thread only.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <functional>
#include <map>

class cTextureUploader;

struct cSpriteFormat {
    uint32_t id;
    QString extension; // with its leading point
    QString description;
    const uint8_t* lastPalette;
    tpSetPaletteFunction setPalette; // or null
    uint32_t reserved;
    tpLoadSpriteFunction load;
    tpUnloadSpriteFunction unload; // or null
};

struct cModelFormat {
    uint32_t id;
    QString extension;
    QString description;
    const uint8_t* lastPalette;
    tpSetPaletteFunction setPalette;    // or null
    tpGetModelBoundsFunction getBounds; // or null
    tpRenderModelFunction render;
    tpLoadModelFunction load;
    tpUnloadModelFunction unload; // or null
};

// What a record was read from and with.
struct cModelSource {
    QString path;       // as File_Find gives it, with slashes
    QByteArray palette; // 768 bytes, or empty
    double brightness;
    int settings; // a number for those of the upload

    bool operator<(const cModelSource& other) const;
};

template<class Record> using cModelRecords = std::map<cModelSource, Record>;

class cModelManager {
public:
    cModelManager() = default;
    ~cModelManager() { clear(); }
    cModelManager(const cModelManager&) = delete;
    cModelManager& operator=(const cModelManager&) = delete;

    void addSpriteFormat(const cSpriteFormat& format) { spriteFormats.append(format); }
    void addModelFormat(const cModelFormat& format) { modelFormats.append(format); }
    void setBaseDirectory(const QString& directory) { baseDirectory = directory; }
    void setUploader(cTextureUploader* uploader) { m_uploader = uploader; }

    // The record of that file under the active configuration, with a reference taken; never null,
    // not loaded if the file can't be read. A record stays at its place until it is freed. palette:
    // 768 bytes, or null.
    cSpriteRecord* loadSprite(const QString& name, const uint8_t* palette);
    cModelRecord* loadModel(const QString& name, const uint8_t* palette);
    // Take the reference back; nothing is freed. Null does nothing.
    void releaseSprite(cSpriteRecord* sprite);
    void releaseModel(cModelRecord* model);

    // Frees what has no users. Not while a map is being loaded, whose entities come one by one.
    void purge();
    void clear();   // frees all, whoever still uses it
    void outdate(); // settings of the upload have changed: what is asked for from now on is read

    // The callbacks of the load functions. They refuse, with a line, sides that are not 1 to
    // cTextureManager::MAX_IMAGE_SIDE.
    static void addFrame(cSpriteRecord* sprite, uint32_t glFormat, uint32_t compressedFormat,
                         int32_t dataSize, int32_t width, int32_t height, const void* pixels);
    static void addSkin(cModelRecord* model, uint32_t glFormat, uint32_t compressedFormat,
                        int32_t dataSize, int32_t width, int32_t height, const void* pixels);

    QList<cSpriteFormat> spriteFormats;
    QList<cModelFormat> modelFormats;
    cModelRecords<cSpriteRecord> sprites;
    cModelRecords<cModelRecord> models;
    QString baseDirectory;             // of progress texts
    std::function<void()> recordsGone; // called when records have been freed

private:
    using cNames = QHash<QString, QString>; // path by name and the folders it was looked for in

    template<class Record, class Format>
    Record* load(cModelRecords<Record>& records, const QList<Format>& formats, const QString& name,
                 const uint8_t* palette);
    template<class Record, class Format>
    void read(Record& record, const QList<Format>& formats, const QString& path,
              const uint8_t* palette);
    template<class Record> void freeRecord(Record& record);
    template<class Record> void freeImages(Record& record);
    template<class Record> bool freeUnused(cModelRecords<Record>& records, bool all);
    QString resolve(const QString& name);
    void purge(bool all);

    cTextureUploader* m_uploader = nullptr;
    cNames m_paths;
    int m_settings = 0;
};

// SPDX-License-Identifier: MIT
// What tests of the media plug-in share: the plug-in, loaded from disk, and an uploader that keeps
// the pixels it gets.
#pragma once

#include "pluginhost/tPluginManager.h"
#include "resources/tModelManager.h"
#include "resources/tTextureManager.h"
#include "support/tTestHost.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <gmock/gmock.h>

// Bytes of texels as they came, with three or four channels.
inline QImage pictureOf(uint32_t glFormat, int width, int height, const void* pixels) {
    static constexpr uint32_t RGBA = 0x1908;
    const bool alpha = glFormat == RGBA;
    return QImage(static_cast<const uchar*>(pixels), width, height, width * (alpha ? 4 : 3),
                  alpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888)
        .convertToFormat(QImage::Format_ARGB32);
}

// The folder with files of other makers, where it stands beside the source.
inline QStringList realData() {
    const QString folder = QStringLiteral(KARVEX_REAL_DATA);
    return folder.isEmpty() ? QStringList() : QStringList(folder);
}

class cKeepingUploader : public cTextureUploader {
public:
    void makeContextCurrent() override {}
    void upload(cTextureImage* image, const void* pixels, QIcon**) override {
        pictures[image] = pictureOf(image->glFormat, image->width, image->height, pixels);
    }
    void free(cTextureImage* image) override { pictures.erase(image); }

    std::map<const cTextureImage*, QImage> pictures;
};

class cMediaTest : public testing::Test {
protected:
    cMediaTest() {
        cPluginTargets targets;
        targets.textures = &textures;
        targets.models = &models;
        plugins = std::make_unique<cPluginManager>(targets);
        EXPECT_TRUE(plugins->load(QStringLiteral(KARVEX_PLUGINS "/tpmedia.so")));
        textures.setUploader(&uploader);
        host.messages.clear();
    }
    ~cMediaTest() override { textures.clear(); }

    static QString seed(const QString& path) {
        return QStringLiteral(KARVEX_SOURCE "/fuzz/corpus/") + path;
    }
    static QByteArray contents(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }
    QString write(const QString& name, const QByteArray& bytes) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    cTexturePackage* load(const QString& path, const QString& palette = QString()) {
        EXPECT_TRUE(palette.isEmpty() || textures.loadPalette(palette, QString()));
        cTexturePackage* package = textures.acquirePackage(path + QStringLiteral("::"), palette);
        textures.loadPackage(package, QString());
        return package;
    }
    static std::vector<std::string> names(const cTexturePackage* package) {
        std::vector<std::string> names;
        for (const cTexture* texture : package->textures)
            names.push_back(texture->name);
        return names;
    }
    QImage picture(const cTexture* texture) const { return uploader.pictures.at(texture->image); }
    int warnings() const { return host.count(eMessage::Warning, QString()); }

    QTemporaryDir folder;
    cTestHost host;
    cKeepingUploader uploader;
    cTextureManager textures;
    cModelManager models;
    std::unique_ptr<cPluginManager> plugins;
};

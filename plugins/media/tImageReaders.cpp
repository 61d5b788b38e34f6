// SPDX-License-Identifier: MIT
// The picture formats, and those of them that Qt reads.
#include "media/tImageReaders.h"

#include <QBuffer>
#include <QImageReader>
#include <cstring>
#include <strings.h>

static cProblem readByQt(const char* format, cBytes file, cImageBudget& budget, cImage& image) {
    QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(file.data()), int(file.size()));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (!size.isValid())
        return "this is no picture of its kind";
    if (const cProblem problem = budget.take(size.width(), size.height()))
        return problem;
    const QImage read = reader.read().convertToFormat(QImage::Format_RGBA8888);
    if (read.size() != size)
        return "the picture is damaged";
    image.resize(size.width(), size.height());
    for (int y = 0; y < image.height; ++y)
        memcpy(image.row(y), read.constScanLine(y), size_t(image.width) * sizeof(cColor));
    return nullptr;
}

static cProblem readPng(cBytes file, cImageBudget& budget, cImage& image) {
    return readByQt("png", file, budget, image);
}

static cProblem readJpeg(cBytes file, cImageBudget& budget, cImage& image) {
    return readByQt("jpeg", file, budget, image);
}

static cProblem readBmp(cBytes file, cImageBudget& budget, cImage& image) {
    return readByQt("bmp", file, budget, image);
}

const std::vector<cImageFormat>& imageFormats() {
    static const std::vector<cImageFormat> formats = {
        {".png", "PNG images", readPng},      {".tga", "TGA images", readTga},
        {".jpg", "JPEG images", readJpeg},    {".jpeg", "JPEG images", readJpeg},
        {".bmp", "Windows bitmaps", readBmp}, {".pcx", "PCX images", readPcx},
    };
    return formats;
}

const cImageFormat* imageFormatOf(const std::string& path) {
    for (const cImageFormat& format : imageFormats()) {
        const size_t length = strlen(format.extension);
        if (path.size() >= length &&
            strcasecmp(path.c_str() + path.size() - length, format.extension) == 0)
            return &format;
    }
    return nullptr;
}

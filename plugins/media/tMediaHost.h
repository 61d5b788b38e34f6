// SPDX-License-Identifier: MIT
// What the exports of this plug-in share: the services, the palette, pictures on their way to the
// host, and one line for whatever is wrong with a file.
#pragma once

#include "media/tBytes.h"
#include "media/tImage.h"

#include <string>
#include <tPluginInterface.h>

#define TP_EXPORT extern "C" __attribute__((visibility("default")))

extern const cHostServices* g_services;
const cPalette* currentPalette(); // or null

// A format's id is its place in its table.
template<class Formats>
int32_t enumFormats(const Formats& formats, tpFormatCallback callback, void* library) {
    uint32_t id = 0;
    for (const auto& format : formats)
        callback(id++, format.extension, format.description, library);
    return int32_t(id);
}

// A picture in the form the host takes: three bytes a texel when all of it is solid.
struct cHostImage {
    explicit cHostImage(const cImage& image);

    int32_t width, height;
    eAlpha alpha;
    uint32_t pixelFormat, compressedFormat;
    std::vector<uint8_t> pixels;
    int32_t size() const { return int32_t(pixels.size()); }
};

// One warning a file, whatever is wrong in it, when it goes.
class cFileReport {
public:
    explicit cFileReport(const char* path) : m_path(path) {}
    ~cFileReport();

    // True if there is a problem; name is that of the part it is in, or empty.
    bool add(cProblem problem, const std::string& name = std::string());

private:
    std::string m_path, m_first;
    int m_count = 0;
};

// SPDX-License-Identifier: MIT
#include "media/tMediaNames.h"

#include <cstring>
#include <strings.h>

size_t behindTexturesFolder(const std::string& path) {
    static const char FOLDER[] = "textures/";
    const size_t length = strlen(FOLDER);
    for (size_t at = path.size(); at-- > 0;) {
        const bool starts = at == 0 || path[at - 1] == '/';
        if (starts && strncasecmp(path.c_str() + at, FOLDER, length) == 0)
            return at + length;
    }
    return std::string::npos;
}

std::string textureName(const std::string& path) {
    const size_t below = behindTexturesFolder(path);
    return withoutSuffix(path.substr(below == std::string::npos ? folderOf(path).size() : below));
}

std::string folderOf(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}

std::string withoutSuffix(const std::string& path) {
    const size_t point = path.rfind('.');
    return point == std::string::npos || point < folderOf(path).size() ? path
                                                                       : path.substr(0, point);
}

// SPDX-License-Identifier: MIT
// The names of textures, from the paths of their files.
#pragma once

#include <string>

// What faces can store, without the terminating zero.
static constexpr size_t LONGEST_TEXTURE_NAME = 63;

// Behind the last folder "textures" of a path, in whatever case; npos when there is none.
size_t behindTexturesFolder(const std::string& path);
// The path below such a folder, else the base name; both without the suffix.
std::string textureName(const std::string& path);

std::string folderOf(const std::string& path); // with its last slash
std::string withoutSuffix(const std::string& path);

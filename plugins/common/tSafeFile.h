// SPDX-License-Identifier: MIT
// Writes a file beside the one it is to be, and takes its place once all is written: what fails
// leaves the old file as it was. What is no ordinary file, or lies in a folder that takes no new
// one, is written in place.
#pragma once

#include <cstdio>
#include <string>

class cSafeFile {
public:
    explicit cSafeFile(const char* path); // isOpen() tells; errno says why not
    ~cSafeFile();                         // without finish() nothing is left but the old file
    cSafeFile(const cSafeFile&) = delete;
    cSafeFile& operator=(const cSafeFile&) = delete;

    bool isOpen() const { return m_file != nullptr; }
    void write(const std::string& text);
    // False, with errno, when any of it failed.
    bool finish();

private:
    FILE* m_file = nullptr;
    std::string m_path;      // of the file it is to be, links followed
    std::string m_temporary; // empty when written in place
    int m_error = 0;         // the first one
};

// SPDX-License-Identifier: MIT
#include "common/tSafeFile.h"

#include <cerrno>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

// Of a file that is not there yet, as the process makes files.
static mode_t usualMode() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

static std::string followLinks(const char* path) {
    char* real = realpath(path, nullptr);
    const std::string followed = real ? real : path;
    free(real);
    return followed;
}

cSafeFile::cSafeFile(const char* path) : m_path(followLinks(path)) {
    struct stat old;
    const bool exists = stat(m_path.c_str(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode)) {
        m_file = fopen(m_path.c_str(), "wb");
        return;
    }
    // What may not be written may not be replaced either.
    if (exists && access(m_path.c_str(), W_OK) != 0)
        return;
    m_temporary = m_path + ".XXXXXX";
    const int descriptor = mkstemp(&m_temporary[0]);
    if (descriptor < 0) {
        m_temporary.clear();
        if (exists) // in a folder that takes no new file
            m_file = fopen(m_path.c_str(), "wb");
        return;
    }
    fchmod(descriptor, exists ? old.st_mode & 07777 : usualMode());
    m_file = fdopen(descriptor, "wb");
}

cSafeFile::~cSafeFile() {
    if (!m_file)
        return;
    fclose(m_file);
    if (!m_temporary.empty())
        unlink(m_temporary.c_str());
}

void cSafeFile::write(const std::string& text) {
    if (fwrite(text.data(), 1, text.size(), m_file) != text.size() && !m_error)
        m_error = errno;
}

bool cSafeFile::finish() {
    FILE* file = m_file;
    m_file = nullptr;
    if (fclose(file) != 0 && !m_error)
        m_error = errno;
    if (m_temporary.empty()) {
        errno = m_error;
        return m_error == 0;
    }
    if (m_error == 0 && rename(m_temporary.c_str(), m_path.c_str()) == 0)
        return true;
    const int error = m_error ? m_error : errno;
    unlink(m_temporary.c_str());
    errno = error;
    return false;
}

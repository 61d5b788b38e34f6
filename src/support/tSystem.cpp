// SPDX-License-Identifier: MIT
// Memory, buffers, time, files and numbers that everything leans on.
#include "support/tSystem.h"

#include "support/tConsole.h"
#include "support/tMapText.h"
#include "support/tMath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <strings.h>
#include <sys/stat.h>
#include <sys/time.h>

// ---- Memory

void* Mem_Alloc(size_t size) {
    return calloc(1, size);
}

void Mem_Free(void* block) {
    free(block);
}

char* Mem_StrDup(const char* text) {
    if (!text)
        return nullptr;
    const size_t size = strlen(text) + 1;
    char* copy = static_cast<char*>(Mem_Alloc(size));
    if (copy)
        memcpy(copy, text, size);
    return copy;
}

char* Mem_StrDupQ(const QString& text) {
    return text.isEmpty() ? nullptr : Mem_StrDup(toMapText(text).constData());
}

struct cTempBuffer {
    int size;
    void* block;
};

static cTempBuffer g_tempBuffers[6];
static cTempBuffer g_internalBuffers[2];

static void* growBuffer(cTempBuffer& buffer, int size) {
    if (size > buffer.size) {
        Mem_Free(buffer.block);
        buffer.block = Mem_Alloc(size_t(size));
        buffer.size = buffer.block ? size : 0;
    }
    return buffer.block;
}

void* TempBuffer_GetSpace(int index, int size) {
    if (index < 0 || index > 5) {
        Error("TempBuffer_GetSpace: invalid buffer index %i", index);
        return nullptr;
    }
    if (size <= 0) {
        Error("TempBuffer_GetSpace: invalid size %i", size);
        return nullptr;
    }
    return growBuffer(g_tempBuffers[index], size);
}

void* TempBuffer_GetInternalSpace(int index, int size) {
    if (index < 0 || index > 1) {
        Error("TempBuffer_GetInternalSpace: invalid buffer index %i", index);
        return nullptr;
    }
    if (size <= 0) {
        Error("TempBuffer_GetInternalSpace: invalid size %i", size);
        return nullptr;
    }
    return growBuffer(g_internalBuffers[index], size);
}

static void freeBuffer(cTempBuffer& buffer) {
    Mem_Free(buffer.block);
    buffer = {};
}

void TempBuffer_FreeAll() {
    for (cTempBuffer& buffer : g_tempBuffers)
        freeBuffer(buffer);
    for (cTempBuffer& buffer : g_internalBuffers)
        freeBuffer(buffer);
}

// ---- Machine and time

double Sys_Time() {
    static long base = -1;
    timeval now;
    gettimeofday(&now, nullptr);
    if (base < 0)
        base = long(now.tv_sec);
    return double(long(now.tv_sec) - base) + double(now.tv_usec) * 1e-6;
}

// The digits after the key, in kilobytes; a number past 32 bits stands for the most there can be.
static uint32_t kilobytesOf(const char* text) {
    constexpr uint32_t OVERFLOWN = 0xFFF00000u;
    while (*text && static_cast<unsigned char>(*text) <= 32)
        ++text;
    uint64_t number = 0;
    for (; *text >= '0' && *text <= '9'; ++text) {
        number = number * 10 + uint64_t(*text - '0');
        if (number > 0xFFFFFFFFu)
            return OVERFLOWN;
    }
    return uint32_t(number);
}

uint32_t Sys_PhysicalMemory() {
    static const char key[] = "MemTotal:";
    constexpr size_t keyLength = sizeof key - 1;
    FILE* file = fopen("/proc/meminfo", "r");
    if (!file) {
        perror("Couldn't open /proc/meminfo");
        return 0;
    }
    char line[1023];
    uint32_t megabytes = 0;
    while (fgets(line, sizeof line, file)) {
        if (strncasecmp(line, key, keyLength) == 0) {
            megabytes = kilobytesOf(line + keyLength) / 1024;
            break;
        }
    }
    if (ferror(file))
        perror("Couldn't read /proc/meminfo");
    fclose(file);
    return megabytes;
}

// ---- The active configuration

static cConfigFolders* g_activeConfig = nullptr;
static cConfigFolders* g_previousConfig = nullptr;

void setActiveConfig(cConfigFolders* config) {
    g_previousConfig = g_activeConfig;
    g_activeConfig = config;
}

void restoreActiveConfig() {
    g_activeConfig = g_previousConfig;
}

cConfigFolders* activeConfig() {
    return g_activeConfig;
}

cActiveConfigScope::cActiveConfigScope(cConfigFolders* config)
    : m_active(g_activeConfig), m_previous(g_previousConfig) {
    setActiveConfig(config);
}

cActiveConfigScope::~cActiveConfigScope() {
    g_activeConfig = m_active;
    g_previousConfig = m_previous;
}

double Sys_TextureBrightness() {
    constexpr int UNCHANGED = 33; // by the formula 0.995
    if (!g_activeConfig || g_activeConfig->textureBrightness == UNCHANGED)
        return 1.0;
    return g_activeConfig->textureBrightness * 0.015 + 0.5;
}

// ---- Files

static QString& baseDir() {
    static QString directory;
    return directory;
}

QString appBaseDir() {
    return baseDir();
}

void setAppBaseDir(const QString& directory) {
    baseDir() = directory;
}

static bool copyCanonical(const QString& path, char* out, int outSize) {
    const QFileInfo info(path);
    if (!info.exists())
        return false;
    T_Sprintf(out, size_t(outSize), "%s", toMapText(info.canonicalFilePath()).constData());
    return true;
}

bool File_Find(const char* name, char* out, int outSize) {
    if (!name || !out || outSize <= 0)
        return false;
    const QString wanted = fromMapText(name).replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (!wanted.isEmpty() && copyCanonical(wanted, out, outSize))
        return true;
    QStringList folders;
    if (g_activeConfig)
        folders << g_activeConfig->gameModdir << g_activeConfig->gameBasedir;
    folders << appBaseDir();
    for (const QString& folder : folders) {
        if (!folder.isEmpty() && !wanted.isEmpty() &&
            copyCanonical(QStringLiteral("%1/%2").arg(folder, wanted), out, outSize))
            return true;
    }
    T_Sprintf(out, size_t(outSize), "%s", name);
    return false;
}

// A folder and a device open without complaint, and a pipe waits for its writer.
FILE* File_Open(const char* path, int* sizeOut) {
    struct stat status;
    if (stat(path, &status) != 0)
        return nullptr;
    errno = S_ISDIR(status.st_mode)     ? EISDIR
            : !S_ISREG(status.st_mode)  ? EINVAL
            : status.st_size >= INT_MAX ? EFBIG
                                        : 0;
    if (errno != 0)
        return nullptr;
    *sizeOut = int(status.st_size);
    return fopen(path, "rb");
}

void* File_Load(const char* path, int* sizeOut) {
    int size = 0;
    FILE* file = File_Open(path, &size);
    if (!file) {
        Error("can't open \"%s\" (%s)", path, strerror(errno));
        return nullptr;
    }
    errno = 0; // stays so when the file has become shorter
    char* block = static_cast<char*>(Mem_Alloc(size_t(size) + 1));
    const bool complete = block && fread(block, 1, size_t(size), file) == size_t(size);
    const int error = errno;
    fclose(file);
    if (!complete) {
        Error("can't read %i bytes from \"%s\" (%s)", size, path, strerror(error));
        Mem_Free(block);
        return nullptr;
    }
    if (sizeOut)
        *sizeOut = size;
    return block;
}

QString relativePath(const QString& base, const QString& path) {
    if (base.isEmpty())
        return path;
    QString folder = base;
    QString file = path;
    folder.replace(QLatin1Char('\\'), QLatin1Char('/'));
    file.replace(QLatin1Char('\\'), QLatin1Char('/'));
    const QString parent = QDir(QStringLiteral("%1/..").arg(folder)).canonicalPath();
    if (parent.isEmpty() || !file.startsWith(parent))
        return file;
    // The root ends with its slash already.
    return file.mid(parent.endsWith(QLatin1Char('/')) ? parent.size() : parent.size() + 1);
}

// ---- Numbers

static constexpr float PLANE_NORMAL_EPSILON = 0.0001f;
static constexpr float PLANE_DIST_EPSILON = 0.01f;
static constexpr float VECTOR_EQUAL_EPSILON = 0.02f;
static constexpr float VECTOR_ZERO_EPSILON = 0.001f;
static constexpr double SNAP_EPSILON = 0.01;

int floorLog2(int n) {
    int log = -1;
    for (unsigned bits = unsigned(n); bits; bits >>= 1)
        ++log;
    return log;
}

bool planesEqual(const cPlane& a, const cPlane& b, bool flip) {
    const float sign = flip ? -1.0f : 1.0f;
    for (int i = 0; i < 3; ++i) {
        if (!(std::fabs(a.normal[i] - sign * b.normal[i]) < PLANE_NORMAL_EPSILON))
            return false;
    }
    return std::fabs(a.dist - sign * b.dist) < PLANE_DIST_EPSILON;
}

bool vectorsEqual(const float* a, const float* b) {
    for (int i = 0; i < 3; ++i) {
        if (!(std::fabs(a[i] - b[i]) < VECTOR_EQUAL_EPSILON))
            return false;
    }
    return true;
}

bool vectorIsZero(const float* v) {
    for (int i = 0; i < 3; ++i) {
        if (!(std::fabs(v[i]) < VECTOR_ZERO_EPSILON))
            return false;
    }
    return true;
}

double roundHalfAway(float x) {
    if (x > 0)
        return std::floor(double(x) + 0.5);
    return x < 0 ? std::ceil(double(x) - 0.5) : 0.0;
}

void snapVector(float* v) {
    for (int i = 0; i < 3; ++i) {
        const double rounded = roundHalfAway(v[i]);
        if (std::fabs(double(v[i]) - rounded) < SNAP_EPSILON)
            v[i] = float(rounded) + 0.0f; // no negative zero
    }
}

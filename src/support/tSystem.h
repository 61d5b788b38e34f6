// SPDX-License-Identifier: MIT
// Zero-filling memory, reusable buffers, time, files and the number helpers with their
// tolerances. Most of it is handed to plug-ins too, so the contracts are part of that border.
// All state is static; GUI thread only.
#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>
#include <cstdio>

struct cPlane;

// ---- Memory

void* Mem_Alloc(size_t size);           // zero-filled; null on failure
void Mem_Free(void* block);             // null is allowed
char* Mem_StrDup(const char* text);     // null gives null
char* Mem_StrDupQ(const QString& text); // local 8-bit form; an empty text gives null

// Scratch that only grows. The pointer is valid until the next call with the same index and a
// larger size; a buffer that need not grow keeps its contents.
void* TempBuffer_GetSpace(int index, int size);         // index 0 to 5
void* TempBuffer_GetInternalSpace(int index, int size); // index 0 to 1, for the texture upload
void TempBuffer_FreeAll();

// ---- Machine and time

double Sys_Time();             // seconds since the whole second of the first call
uint32_t Sys_PhysicalMemory(); // megabytes, 0 when unknown

// ---- The configuration that file lookups and plug-ins run under

struct cConfigFolders {
    QString gameBasedir;
    QString gameModdir;
    int textureBrightness = 50; // slider value; the factor is value * 0.015 + 0.5
};

void setActiveConfig(cConfigFolders* config); // remembers the one before
void restoreActiveConfig();                   // goes back one step; there is no deeper stack
cConfigFolders* activeConfig();

// Sets the active configuration for a scope; unlike the pair above it nests.
class cActiveConfigScope {
public:
    explicit cActiveConfigScope(cConfigFolders* config);
    ~cActiveConfigScope();
    cActiveConfigScope(const cActiveConfigScope&) = delete;
    cActiveConfigScope& operator=(const cActiveConfigScope&) = delete;

private:
    cConfigFolders* m_active;
    cConfigFolders* m_previous;
};

double Sys_TextureBrightness(); // of the active configuration, else 1.0

// ---- Files

QString appBaseDir(); // the directory of the program's files
void setAppBaseDir(const QString& directory);

// Looks a file up as the game would: as it stands (backslashes turned), then in the mod, base and
// program folders. out gets the canonical path, or the name unchanged when there is no hit.
bool File_Find(const char* name, char* out, int outSize);
// For reading, with its size; null, with the reason in errno, for all but a plain file below 2 GB.
FILE* File_Open(const char* path, int* sizeOut);
// The whole file with a zero behind it; null and an Error on failure. Freed with Mem_Free.
void* File_Load(const char* path, int* sizeOut);
// path as shown to the user, starting with base's own last component where it lies below base.
QString relativePath(const QString& base, const QString& path);

// ---- Numbers

int floorLog2(int n);                                          // -1 for 0
bool planesEqual(const cPlane& a, const cPlane& b, bool flip); // flip negates b
bool vectorsEqual(const float* a, const float* b);             // each component within 0.02
bool vectorIsZero(const float* v);                             // each component below 0.001
double roundHalfAway(float x);
void snapVector(float* v); // components within 0.01 of an integer become that integer

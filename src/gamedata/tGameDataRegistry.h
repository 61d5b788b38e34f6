// SPDX-License-Identifier: MIT
// The game data files in use, shared by all configurations that name them. One per program.
#pragma once

#include <QHash>
#include <QString>
#include <cstdint>

class cGameData;

// The caches of sprites and models as game data sees them. Whoever owns those caches hands an
// instance to the registry; with none, precaching acquires nothing.
class cPrecacheSource {
public:
    virtual ~cPrecacheSource() = default;

    virtual void makeContextCurrent() = 0;
    virtual const uint8_t* findPalette(const QString& path) = 0; // 768 bytes or null
    virtual void acquireSprite(const QString& path, const uint8_t* palette) = 0;
    virtual void releaseSprite(const QString& path) = 0;
    virtual void acquireModel(const QString& path, const uint8_t* palette) = 0;
    virtual void releaseModel(const QString& path) = 0;
};

class cGameDataRegistry {
public:
    cGameDataRegistry() = default;
    ~cGameDataRegistry(); // with all files that remain
    cGameDataRegistry(const cGameDataRegistry&) = delete;
    cGameDataRegistry& operator=(const cGameDataRegistry&) = delete;

    cGameData* acquire(const QString& path); // never reads the file
    void release(const QString& path);       // a path not held is ignored
    cGameData* find(const QString& path) const;

    void setPrecacheSource(cPrecacheSource* source) { m_source = source; }
    cPrecacheSource* precacheSource() const { return m_source; }

private:
    QHash<QString, cGameData*> m_files; // owned
    cPrecacheSource* m_source = nullptr;
};

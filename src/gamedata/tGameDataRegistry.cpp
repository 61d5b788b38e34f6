// SPDX-License-Identifier: MIT
// Counts the holders of each game data file.
#include "gamedata/tGameDataRegistry.h"

#include "gamedata/tGameData.h"

cGameDataRegistry::~cGameDataRegistry() {
    qDeleteAll(m_files);
}

cGameData* cGameDataRegistry::acquire(const QString& path) {
    cGameData*& file = m_files[path];
    if (file)
        ++file->refCount;
    else
        file = new cGameData(path, this);
    return file;
}

void cGameDataRegistry::release(const QString& path) {
    cGameData* file = find(path);
    if (!file || --file->refCount > 0)
        return;
    m_files.remove(path);
    delete file;
}

cGameData* cGameDataRegistry::find(const QString& path) const {
    return m_files.value(path);
}

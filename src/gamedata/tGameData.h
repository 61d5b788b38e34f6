// SPDX-License-Identifier: MIT
// One game data file in memory: the entity classes it declares. Reads the file through the shared
// cParser; goes on after errors, each of which costs the section it stands in. Owns its classes.
#pragma once

#include "document/tEntityClass.h"

#include <QHash>
#include <QMultiMap>
#include <QString>
#include <memory>
#include <vector>

class cGameDataRegistry;
class cPrecacheSource;

class cGameData {
public:
    explicit cGameData(const QString& path, const cGameDataRegistry* owner = nullptr);
    ~cGameData();
    cGameData(const cGameData&) = delete;
    cGameData& operator=(const cGameData&) = delete;

    // Reads the file unless it is read that far already. False only if it cannot be opened; a
    // file with errors counts as read. headerOnly skips descriptions and variables.
    bool load(bool headerOnly);
    // The same from a text in memory, unconditionally; for tests and fuzzing.
    void loadText(const char* text, int size, bool headerOnly);
    bool reload(bool headerOnly);
    // Gives up what precache holds and all classes; name, path and refCount stay.
    void clear();

    // By exact name. Solid and world classes are found by either kind, as are the others by
    // their own. Null when there is none.
    cEntityClass* findClass(const QString& name, int kind) const;
    // Any kind; the most recently added class of that name.
    cEntityClass* findNewest(const QString& name) const;

    // Acquires the sprites and models that the classes name, with the palette of that file; an
    // empty name asks for none.
    void precache(const QString& paletteFile);

    int loadState = 0; // 0 nothing read, 1 headers only, 2 complete
    bool precached = false;
    bool hasGroupClasses = false;
    int refCount = 1;
    QString fileName;                          // without directory, for messages
    QString filePath;                          // as passed in; also the registry's key
    QMultiMap<QString, cEntityClass*> classes; // all of them, owned; iteration is by name
    // Of those of one name the one added last, as a walk of classes finds it.
    QHash<QString, cEntityClass*> pointClasses; // kind 4
    QHash<QString, cEntityClass*> solidClasses; // kinds 0 and 3
    QHash<QString, cEntityClass*> baseClasses;  // kind 1
    QHash<QString, cEntityClass*> groupClasses; // kind 2

private:
    friend class cGameDataReader;

    void readSections(bool headerOnly);
    bool addClass(std::unique_ptr<cEntityClass> entityClass); // false: name and kind were taken
    void enter(cEntityClass* entityClass);
    static QHash<QString, cEntityClass*> cGameData::*const TABLES[5];
    void groupByPrefix();

    const cGameDataRegistry* m_owner;
    cPrecacheSource* m_heldThrough = nullptr; // who acquired what precached holds
};

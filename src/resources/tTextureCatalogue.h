// SPDX-License-Identifier: MIT
// The textures of one configuration as editing sees them: names to textures, and the groups for
// the combo boxes and the browser. Holds a reference on its placeholders, and no other.
#pragma once

#include <QHash>
#include <QList>
#include <QMap>
#include <QMultiMap>
#include <QString>

struct cGameConfig;
struct cTexture;
struct cTexturePackage;
class cTextureManager;

struct cTextureEntry {
    QString group;
    cTexturePackage* package = nullptr;
    cTexture* texture = nullptr;
};

// One group for display.
struct cTextureGroup {
    QString name;
    QString icon; // resource path
};

class cTextureCatalogue {
public:
    static QString allTextures();   // "(All Textures)"
    static QString miscellaneous(); // "(Miscellaneous)"
    static QString missing();       // "(Missing Textures)"

    explicit cTextureCatalogue(cTextureManager& manager) : m_manager(manager) {}
    ~cTextureCatalogue();
    cTextureCatalogue(const cTextureCatalogue&) = delete;
    cTextureCatalogue& operator=(const cTextureCatalogue&) = delete;

    void rebuild(const cGameConfig& config);
    cTexture* find(const QString& name) const; // without regard to case; null when unknown
    // What a face of that name shows: a name without a folder that is in no set stands for the one
    // texture of that name in some folder.
    cTexture* findShown(const QString& name) const;
    // For new faces: the preferred one, else the first wall, else the first of all; or null.
    cTexture* defaultTexture(const QString& preferred) const;
    QString groupOf(const QString& name) const;
    QString decalGroup() const;
    // The placeholder of that name, made when there is none. No reference is taken.
    cTexture* addMissing(const QString& name);
    void addMissingEntries(); // of those in use; the others go
    void removeMissingEntries();
    void refreshMissing(); // both

    QMultiMap<QString, cTexturePackage*> groups;
    QMap<QString, cTextureEntry> entries; // by upper-case name
    QList<cTextureGroup> groupList;
    int missingCount = 0;
    QMap<QString, cTexture*> placeholders; // by upper-case name

private:
    void addEntry(const QString& name, const cTextureEntry& entry);
    void buildGroupList();

    cTextureManager& m_manager;
    QHash<QString, cTexture*> m_byBaseName; // in upper case; null where there are several
};

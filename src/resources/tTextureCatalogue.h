// SPDX-License-Identifier: MIT
// The textures of one configuration as editing sees them: names to textures, and the groups for
// the combo boxes and the browser. Holds no references.
#pragma once

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

    void rebuild(const cGameConfig& config);
    cTexture* find(const QString& name) const; // without regard to case; null when unknown
    QString groupOf(const QString& name) const;
    QString decalGroup() const;
    // The placeholder of that name, made when there is none. No reference is taken.
    cTexture* addMissing(const QString& name);
    void addMissingEntries();
    void removeMissingEntries();

    QMultiMap<QString, cTexturePackage*> groups;
    QMap<QString, cTextureEntry> entries; // by upper-case name
    QList<cTextureGroup> groupList;
    int missingCount = 0;

private:
    void addEntry(const QString& name, const cTextureEntry& entry);
    void buildGroupList();

    cTextureManager& m_manager;
};

// SPDX-License-Identifier: MIT
// All game configurations, the map profiles of the plug-ins, and one texture catalogue per
// configuration. Reads and writes TDKGameCfg.ini. The preferences dialog edits a copy and gives it
// back with assign. GUI thread only.
#pragma once

#include "document/tEntityClass.h"
#include "document/tMapContext.h"
#include "plugininterface/tPluginInterface.h"
#include "resources/tGameConfig.h"

#include <QHash>
#include <QList>
#include <QString>
#include <functional>
#include <memory>

class cGameData;
class cGameDataRegistry;
class cModelManager;
class cTextureCatalogue;
class cTextureManager;

// What the registry asks of the program above it. An unset one is not called.
struct cGameConfigCallbacks {
    std::function<void(const QString& text)> showWaitDialog; // keeps one that is up already
    std::function<void()> hideWaitDialog;                    // and destroys it
    // The configurations are new objects: every project looks its own up again by title.
    std::function<void()> reconfigureProjects;
    // Textures have come or gone: every open map renews its faces.
    std::function<void()> renewFaces;
};

class cGameConfigRegistry {
public:
    // models may be null. All three outlive the registry.
    cGameConfigRegistry(cGameDataRegistry& gameData, cTextureManager& textures,
                        cModelManager* models);
    ~cGameConfigRegistry();
    cGameConfigRegistry(const cGameConfigRegistry&) = delete;
    cGameConfigRegistry& operator=(const cGameConfigRegistry&) = delete;

    static QString defaultPath(); // TDKGameCfg.ini beside the program

    // Replaces what is held by the content of the file. Paths that are not absolute are looked
    // for in the mod, base and program folders. Unless NoPrecache is on, precaches the enabled one
    // if it is the only one.
    void load(const QString& path = defaultPath());
    void save(const QString& path = defaultPath()) const;

    // Copies the record under its name; library is the plug-in's number.
    void registerProfile(uint32_t library, const cMapProfile* record);
    const cMapProfile* profileOf(const cGameConfig* config) const; // never null
    // Never null: what has no configuration shares one with nothing but placeholders.
    cTextureCatalogue* catalogueOf(const cGameConfig* config) const;

    void setCurrent(cGameConfig* config);
    void setCurrentByTitle(const QString& title);

    cGameConfig* find(const QString& title) const { return configsByTitle.value(title); }
    // A title that is taken gets a number behind it.
    cGameConfig* addConfig(const QString& title);
    // These two do nothing when the new title is taken.
    bool copyConfig(const QString& oldTitle, const QString& newTitle);
    void renameConfig(const QString& oldTitle, const QString& newTitle);
    void removeConfig(const QString& title); // refused while a project is on it
    // Becomes a copy of the other registry. The other one keeps its references to game data and
    // texture sets until it goes, so what both name is not read again.
    void assign(const cGameConfigRegistry& other, bool precacheUsed);

    cEntityClass* findClass(const cGameConfig* config, const QString& name,
                            eClassFilter filter) const;
    cEntityClass* findWorldspawn(const cGameConfig* config) const;
    bool needsPrecache(cGameConfig* config) const;
    void precache(cGameConfig* config);
    void reloadTextures(); // the sets that are loaded, as settings have changed

    cGameConfig* current = nullptr;
    const cMapProfile* currentProfile; // never null: all zero when none applies
    cTextureCatalogue* currentCatalogue = nullptr;
    QList<cGameConfig*> configs; // in file order, owned
    QHash<QString, cGameConfig*> configsByTitle;
    QHash<QString, cMapProfile*> profiles;         // by name, owned
    QHash<QString, cTextureCatalogue*> catalogues; // by title, owned
    cGameConfigCallbacks callbacks;

private:
    void enter(cGameConfig* config);
    void acquireResources(cGameConfig& config);
    void releaseResources(cGameConfig& config);
    QVector<cTexturePackage*> takePackages(cGameConfig& config);
    void releasePackages(const QVector<cTexturePackage*>& packages);
    bool packagesAreOld(const cGameConfig& config) const;
    void precacheOnlyEnabled();
    void clear();
    void clearConfigs();
    cGameConfig* known(const QString& title) const; // warns when null
    void readResources(cGameConfig* config);
    void rebuildCatalogue(cGameConfig* config);
    void followRead(cGameConfig* config, const cGameConfig& read);
    void renewFaces();
    void buildTrees(cGameConfig* config) const;
    void fillAssigned(cGameConfig* config, bool precacheUsed);
    QString titleOfActive() const;

    cGameDataRegistry& m_gameData;
    cTextureManager& m_textures;
    cModelManager* m_models;
    std::unique_ptr<cTextureCatalogue> m_noGame; // of catalogueOf
    QHash<QString, int> m_titleNumbers;          // the next to try behind a title that is taken
};

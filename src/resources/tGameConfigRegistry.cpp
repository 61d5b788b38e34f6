// SPDX-License-Identifier: MIT
// The list of configurations and what goes with each: profile, catalogue, classes, precaching.
#include "resources/tGameConfigRegistry.h"

#include "gamedata/tGameData.h"
#include "gamedata/tGameDataRegistry.h"
#include "resources/tEntityClassTree.h"
#include "resources/tModelManager.h"
#include "resources/tTextureCatalogue.h"
#include "resources/tTextureManager.h"
#include "support/tConsole.h"
#include "support/tHost.h"
#include "support/tMapText.h"

#include <algorithm>
#include <utility>

static const cMapProfile NO_PROFILE = {};

cGameConfigRegistry::cGameConfigRegistry(cGameDataRegistry& gameData, cTextureManager& textures,
                                         cModelManager* models)
    : currentProfile(&NO_PROFILE),
      m_gameData(gameData),
      m_textures(textures),
      m_models(models),
      m_noGame(std::make_unique<cTextureCatalogue>(textures)) {}

cGameConfigRegistry::~cGameConfigRegistry() {
    clear();
}

// ---- Profiles

void cGameConfigRegistry::registerProfile(uint32_t library, const cMapProfile* record) {
    if (!record)
        return;
    cMapProfile copy = *record;
    copy.library = library;
    copy.name[sizeof copy.name - 1] = 0;
    if (copy.name[0] == 0) {
        Warning("empty profile name!");
        return;
    }
    const QString name = fromMapText(copy.name);
    if (profiles.contains(name)) {
        Warning("profile \"%s\" is already registered!", copy.name);
        return;
    }
    profiles.insert(name, new cMapProfile(copy));
}

const cMapProfile* cGameConfigRegistry::profileOf(const cGameConfig* config) const {
    const cMapProfile* profile = config ? profiles.value(config->mapProfile) : nullptr;
    return profile ? profile : &NO_PROFILE;
}

cTextureCatalogue* cGameConfigRegistry::catalogueOf(const cGameConfig* config) const {
    return config ? catalogues.value(config->title, m_noGame.get()) : m_noGame.get();
}

// ---- The current configuration

void cGameConfigRegistry::setCurrent(cGameConfig* config) {
    current = config;
    currentCatalogue = config ? catalogues.value(config->title) : nullptr;
    currentProfile = profileOf(config);
}

void cGameConfigRegistry::setCurrentByTitle(const QString& title) {
    setCurrent(find(title));
}

// ---- The list

void cGameConfigRegistry::enter(cGameConfig* config) {
    // The title is the key of every table.
    const QString wanted = config->title;
    if (configsByTitle.contains(wanted)) {
        int& number = m_titleNumbers[wanted];
        number = qMax(number, configs.size());
        do
            config->title = QStringLiteral("%1 (%2)").arg(wanted).arg(number++);
        while (configsByTitle.contains(config->title));
    }
    configs.append(config);
    configsByTitle.insert(config->title, config);
    catalogues.insert(config->title, new cTextureCatalogue(m_textures));
}

void cGameConfigRegistry::acquireResources(cGameConfig& config) {
    for (const QString& path : qAsConst(config.gameData))
        m_gameData.acquire(path);
    takePackages(config);
}

static QStringList packageKeys(const cTextureManager& textures, const cGameConfig& config) {
    QStringList keys;
    for (const QString& parcel : config.parcels)
        keys << textures.expandedKey(parcel);
    keys.removeDuplicates();
    return keys;
}

// Takes the sets as the configuration names them now; gives those that it had.
QVector<cTexturePackage*> cGameConfigRegistry::takePackages(cGameConfig& config) {
    const cActiveConfigScope active(&config); // its brightness
    const QVector<cTexturePackage*> before = std::exchange(config.packages, {});
    for (const QString& key : packageKeys(m_textures, config))
        config.packages.append(m_textures.acquirePackage(key, config.paletteFile));
    return before;
}

void cGameConfigRegistry::releasePackages(const QVector<cTexturePackage*>& packages) {
    for (cTexturePackage* package : packages)
        m_textures.releasePackage(package);
}

void cGameConfigRegistry::releaseResources(cGameConfig& config) {
    // Sprites and models are found by the folders of the configuration that names them.
    const cActiveConfigScope active(&config);
    for (const QString& path : qAsConst(config.gameData))
        m_gameData.release(path);
    releasePackages(std::exchange(config.packages, {}));
    config.solidClassTree = config.pointClassTree = cEntityClassNode();
}

cGameConfig* cGameConfigRegistry::known(const QString& title) const {
    cGameConfig* config = find(title);
    if (!config)
        Warning("no such config: %s", toMapText(title).constData());
    return config;
}

cGameConfig* cGameConfigRegistry::addConfig(const QString& title) {
    cGameConfig* config = new cGameConfig;
    config->title = title;
    enter(config);
    return config;
}

// Without what the registry gives each.
static cGameConfig* copyOf(const cGameConfig& source) {
    cGameConfig* copy = new cGameConfig(source);
    copy->solidClassTree = copy->pointClassTree = cEntityClassNode();
    copy->packages.clear();
    return copy;
}

bool cGameConfigRegistry::copyConfig(const QString& oldTitle, const QString& newTitle) {
    const cGameConfig* source = known(oldTitle);
    if (!source || find(newTitle))
        return false;
    cGameConfig* copy = copyOf(*source);
    copy->useCount = 0;
    copy->title = newTitle;
    acquireResources(*copy);
    enter(copy);
    followRead(copy, *source);
    return true;
}

void cGameConfigRegistry::renameConfig(const QString& oldTitle, const QString& newTitle) {
    cGameConfig* config = known(oldTitle);
    if (!config || find(newTitle))
        return;
    config->title = newTitle;
    configsByTitle.remove(oldTitle);
    configsByTitle.insert(newTitle, config);
    catalogues.insert(newTitle, catalogues.take(oldTitle));
}

// Neither the active configuration nor the remembered one may be one that goes.
static void deactivate(const cGameConfig* config) {
    const auto kept = [config](cConfigFolders* folders) {
        return folders == config ? nullptr : folders;
    };
    cConfigFolders* active = activeConfig();
    restoreActiveConfig();
    setActiveConfig(kept(activeConfig()));
    setActiveConfig(kept(active));
}

void cGameConfigRegistry::removeConfig(const QString& title) {
    cGameConfig* config = known(title);
    if (!config)
        return;
    if (config->useCount > 0) {
        Warning("tried to remove in-use config: %s", toMapText(title).constData());
        return;
    }
    releaseResources(*config);
    deactivate(config);
    configs.removeOne(config);
    configsByTitle.remove(title);
    if (config == current)
        setCurrent(nullptr);
    delete catalogues.take(title);
    delete config;
}

void cGameConfigRegistry::clearConfigs() {
    setCurrent(nullptr);
    for (cGameConfig* config : qAsConst(configs))
        releaseResources(*config);
    for (const cGameConfig* config : qAsConst(configs))
        deactivate(config);
    qDeleteAll(catalogues);
    catalogues.clear();
    qDeleteAll(configs);
    configs.clear();
    m_titleNumbers.clear();
    configsByTitle.clear();
}

void cGameConfigRegistry::clear() {
    clearConfigs();
    qDeleteAll(profiles);
    profiles.clear();
}

// ---- Taking over an edited copy

void cGameConfigRegistry::assign(const cGameConfigRegistry& other, bool precacheUsed) {
    if (&other == this)
        return;
    const cBusy busy; // nothing is painted while projects point at what has gone
    const QString activeTitle = titleOfActive();
    clear();
    for (const cMapProfile* profile : other.profiles)
        profiles.insert(fromMapText(profile->name), new cMapProfile(*profile));
    for (const cGameConfig* source : other.configs) {
        cGameConfig* config = copyOf(*source);
        acquireResources(*config);
        enter(config);
        fillAssigned(config, precacheUsed);
        if (other.current && config->title == other.current->title)
            setCurrent(config);
    }
    if (callbacks.hideWaitDialog)
        callbacks.hideWaitDialog();
    if (!activeTitle.isNull())
        setActiveConfig(find(activeTitle));
    if (callbacks.reconfigureProjects)
        callbacks.reconfigureProjects();
    renewFaces();
}

void cGameConfigRegistry::renewFaces() {
    if (callbacks.renewFaces) {
        callbacks.renewFaces();
        m_textures.clearReplacedMarks();
    }
    for (cTextureCatalogue* catalogue : qAsConst(catalogues))
        catalogue->refreshMissing();
}

// Null unless the active configuration is one of this registry.
QString cGameConfigRegistry::titleOfActive() const {
    for (const cGameConfig* config : configs) {
        if (config == activeConfig())
            return config->title;
    }
    return QString();
}

void cGameConfigRegistry::fillAssigned(cGameConfig* config, bool precacheUsed) {
    if (precacheUsed && config->useCount > 0 && needsPrecache(config)) {
        if (callbacks.showWaitDialog)
            callbacks.showWaitDialog(QStringLiteral("Precaching game configuration..."));
        readResources(config);
        return;
    }
    buildTrees(config);
    rebuildCatalogue(config);
}

void cGameConfigRegistry::rebuildCatalogue(cGameConfig* config) {
    cTextureCatalogue* catalogue = catalogueOf(config);
    catalogue->rebuild(*config);
    catalogue->addMissingEntries();
}

// ---- Classes

static cEntityClass* findAny(const cGameData& data, const QString& name) {
    for (int kind : {CK_SOLID, CK_POINT, CK_BASE, CK_GROUP}) {
        if (cEntityClass* found = data.findClass(name, kind))
            return found;
    }
    return nullptr;
}

cEntityClass* cGameConfigRegistry::findClass(const cGameConfig* config, const QString& name,
                                             eClassFilter filter) const {
    static const int KINDS[] = {CK_SOLID, CK_POINT, CK_WORLD};
    if (!config)
        return nullptr;
    for (const QString& path : config->gameData) {
        const cGameData* data = m_gameData.find(path);
        if (!data || data->loadState == 0)
            continue;
        cEntityClass* found =
            filter == CF_ANY ? findAny(*data, name) : data->findClass(name, KINDS[filter]);
        if (found)
            return found;
    }
    return nullptr;
}

cEntityClass* cGameConfigRegistry::findWorldspawn(const cGameConfig* config) const {
    if (!config)
        return nullptr;
    for (const QString& path : config->gameData) {
        const cGameData* data = m_gameData.find(path);
        if (!data)
            continue;
        for (cEntityClass* c : data->classes) {
            if (c->kind == CK_WORLD)
                return c;
        }
    }
    return nullptr;
}

// ---- Precaching

bool cGameConfigRegistry::needsPrecache(cGameConfig* config) const {
    if (!config)
        return false;
    const cActiveConfigScope active(config); // its brightness
    for (const QString& path : config->gameData) {
        const cGameData* data = m_gameData.find(path);
        if (!data || data->loadState != 2)
            return true;
    }
    return packagesAreOld(*config) ||
           std::any_of(config->packages.begin(), config->packages.end(),
                       [&](auto* package) { return !m_textures.isUpToDate(*package); });
}

// Other folders, or another palette or brightness.
bool cGameConfigRegistry::packagesAreOld(const cGameConfig& config) const {
    const QStringList keys = packageKeys(m_textures, config);
    return !std::equal(keys.begin(), keys.end(), config.packages.begin(), config.packages.end(),
                       [&](const QString& key, const cTexturePackage* package) {
                           return package->id ==
                                  cTextureManager::packageId(key, config.paletteFile);
                       });
}

void cGameConfigRegistry::buildTrees(cGameConfig* config) const {
    cEntityClassTreeBuilder solids;
    cEntityClassTreeBuilder points;
    for (const QString& path : qAsConst(config->gameData)) {
        const cGameData* data = m_gameData.find(path);
        if (!data)
            continue;
        for (cEntityClass* c : data->classes) {
            if (c->kind == CK_SOLID)
                solids.add(c);
            else if (c->kind == CK_POINT)
                points.add(c);
        }
    }
    config->solidClassTree = solids.build();
    config->pointClassTree = points.build();
}

void cGameConfigRegistry::precache(cGameConfig* config) {
    if (!config)
        return;
    const cBusy busy;
    readResources(config);
    renewFaces();
}

void cGameConfigRegistry::reloadTextures() {
    const cBusy busy;
    m_textures.outdate();
    if (m_models)
        m_models->outdate();
    for (cGameConfig* config : qAsConst(configs)) {
        const cActiveConfigScope active(config);
        if (!config->paletteFile.isEmpty() && !config->packages.isEmpty())
            m_textures.loadPalette(config->paletteFile, config->gameBasedir);
        for (cTexturePackage* package : qAsConst(config->packages)) {
            if (package->outdated)
                m_textures.loadPackage(package, config->gameBasedir);
        }
        rebuildCatalogue(config);
    }
    renewFaces();
    if (m_models)
        m_models->purge(); // what was shown until now
}

void cGameConfigRegistry::readResources(cGameConfig* config) {
    const cActiveConfigScope active(config);
    config->solidClassTree = config->pointClassTree = cEntityClassNode();
    if (!config->paletteFile.isEmpty())
        m_textures.loadPalette(config->paletteFile, config->gameBasedir);
    if (m_models)
        m_models->setBaseDirectory(config->gameBasedir);
    for (const QString& path : qAsConst(config->gameData)) {
        cGameData* data = m_gameData.find(path);
        if (data && data->load(false))
            data->precache(config->paletteFile);
    }
    buildTrees(config);
    const QVector<cTexturePackage*> before = takePackages(*config);
    m_textures.adoptFrom(&catalogueOf(config)->placeholders);
    for (cTexturePackage* package : qAsConst(config->packages))
        m_textures.loadPackage(package, config->gameBasedir);
    m_textures.adoptFrom(nullptr);
    rebuildCatalogue(config);
    for (cGameConfig* other : qAsConst(configs))
        if (other != config)
            followRead(other, *config);
    releasePackages(before); // the catalogue named their textures until now
}

template<class List> static bool share(const List& a, const List& b) {
    return std::any_of(a.begin(), a.end(), [&](const auto& one) { return b.contains(one); });
}

// What two configurations share is read once, for both.
void cGameConfigRegistry::followRead(cGameConfig* config, const cGameConfig& read) {
    if (share(config->gameData, read.gameData))
        buildTrees(config);
    if (!share(config->packages, read.packages))
        return;
    const cActiveConfigScope active(config);
    rebuildCatalogue(config);
}

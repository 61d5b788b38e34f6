// SPDX-License-Identifier: MIT
#include "resources/tTextureCatalogue.h"

#include "resources/tGameConfig.h"
#include "resources/tTextureManager.h"
#include "support/tMapText.h"

QString cTextureCatalogue::allTextures() {
    return QStringLiteral("(All Textures)");
}

QString cTextureCatalogue::miscellaneous() {
    return QStringLiteral("(Miscellaneous)");
}

QString cTextureCatalogue::missing() {
    return QStringLiteral("(Missing Textures)");
}

// ---- Building

void cTextureCatalogue::addEntry(const QString& name, const cTextureEntry& entry) {
    const QString key = name.toUpper();
    if (!entries.contains(key))
        entries.insert(key, entry);
}

void cTextureCatalogue::rebuild(const cGameConfig& config) {
    groups.clear();
    entries.clear();
    missingCount = 0;
    for (const QString& key : config.parcels) {
        cTexturePackage* package = m_manager.findPackage(key);
        if (!package || m_manager.packageInfo(package)->count < 1)
            continue;
        const QString group = package->kind == PK_FILE
                                  ? miscellaneous()
                                  : relativePath(config.gameBasedir, package->path);
        groups.insert(allTextures(), package);
        groups.insert(group, package);
        for (cTexture* texture : package->textures)
            addEntry(fromMapText(texture->name), {group, package, texture});
    }
    buildGroupList();
}

void cTextureCatalogue::buildGroupList() {
    groupList.clear();
    for (const QString& name : groups.uniqueKeys()) {
        QString icon = QStringLiteral(":/qrc/l_dir.png");
        if (name == allTextures() || name == miscellaneous())
            icon = QStringLiteral(":/qrc/l_all.png");
        else if (groups.value(name)->kind == PK_PACKAGE)
            icon = QStringLiteral(":/qrc/l_wad.png");
        groupList.append({name, icon});
    }
}

// ---- Lookups

cTexture* cTextureCatalogue::find(const QString& name) const {
    return entries.value(name.toUpper()).texture;
}

QString cTextureCatalogue::groupOf(const QString& name) const {
    const auto found = entries.constFind(name.toUpper());
    return found == entries.constEnd() ? allTextures() : found->group;
}

QString cTextureCatalogue::decalGroup() const {
    for (const cTextureGroup& group : groupList) {
        if (group.name.contains(QStringLiteral("decals")))
            return group.name;
    }
    return allTextures();
}

// ---- Missing textures

cTexture* cTextureCatalogue::addMissing(const QString& name) {
    cTexture* texture = m_manager.findPlaceholder(name);
    if (!texture)
        texture = m_manager.addPlaceholder(name);
    const QString key = name.toUpper();
    if (!entries.contains(key)) {
        entries.insert(key, {missing(), nullptr, texture});
        ++missingCount;
    }
    return texture;
}

void cTextureCatalogue::addMissingEntries() {
    const QMap<QString, cTexture*>& placeholders = m_manager.placeholders;
    for (auto it = placeholders.constBegin(); it != placeholders.constEnd(); ++it) {
        if (entries.contains(it.key()))
            continue;
        entries.insert(it.key(), {missing(), nullptr, it.value()});
        ++missingCount;
    }
}

void cTextureCatalogue::removeMissingEntries() {
    if (missingCount == 0)
        return;
    for (auto it = entries.begin(); it != entries.end();)
        it = it->group == missing() ? entries.erase(it) : ++it;
    missingCount = 0;
}

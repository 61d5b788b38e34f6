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

cTextureCatalogue::~cTextureCatalogue() {
    for (cTexture* placeholder : qAsConst(placeholders))
        m_manager.releaseTexture(placeholder);
}

// ---- Building

void cTextureCatalogue::addEntry(const QString& name, const cTextureEntry& entry) {
    const QString key = name.toUpper();
    if (entries.contains(key))
        return;
    entries.insert(key, entry);
    const QString base = key.mid(key.lastIndexOf(QLatin1Char('/')) + 1);
    const bool isFirst = !m_byBaseName.contains(base);
    m_byBaseName.insert(base, isFirst ? entry.texture : nullptr);
}

void cTextureCatalogue::rebuild(const cGameConfig& config) {
    groups.clear();
    entries.clear();
    m_byBaseName.clear();
    missingCount = 0;
    for (cTexturePackage* package : config.packages) {
        if (m_manager.packageInfo(package)->count < 1)
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

cTexture* cTextureCatalogue::findShown(const QString& name) const {
    const QString key = name.toUpper();
    const auto found = entries.constFind(key);
    if (found != entries.constEnd() && found->package)
        return found->texture;
    if (cTexture* namesake = m_byBaseName.value(key))
        return namesake;
    return found == entries.constEnd() ? nullptr : found->texture;
}

cTexture* cTextureCatalogue::defaultTexture(const QString& preferred) const {
    const auto known = entries.constFind(preferred.toUpper());
    if (known != entries.constEnd() && known->package)
        return known->texture;
    cTexture* first = nullptr;
    for (auto it = entries.constBegin(); it != entries.constEnd(); ++it) {
        if (!it->package)
            continue;
        if (it.key().contains(QStringLiteral("WALL")))
            return it->texture;
        if (!first)
            first = it->texture;
    }
    return first;
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
    const QString key = name.toUpper();
    cTexture*& texture = placeholders[key];
    if (!texture)
        texture = m_manager.makePlaceholder(name);
    if (!entries.contains(key)) {
        entries.insert(key, {missing(), nullptr, texture});
        ++missingCount;
    }
    return texture;
}

void cTextureCatalogue::addMissingEntries() {
    for (auto it = placeholders.begin(); it != placeholders.end();) {
        const bool isUsed = it.value()->refCount > 1;
        if (isUsed && !entries.contains(it.key())) {
            entries.insert(it.key(), {missing(), nullptr, it.value()});
            ++missingCount;
        }
        if (!isUsed)
            m_manager.releaseTexture(it.value());
        it = isUsed ? std::next(it) : placeholders.erase(it);
    }
}

void cTextureCatalogue::refreshMissing() {
    removeMissingEntries();
    addMissingEntries();
}

void cTextureCatalogue::removeMissingEntries() {
    if (missingCount == 0)
        return;
    for (auto it = entries.begin(); it != entries.end();)
        it = it->group == missing() ? entries.erase(it) : ++it;
    missingCount = 0;
}

// SPDX-License-Identifier: MIT
// A game data file's life: reading on demand, the class tables, automatic grouping, precaching.
#include "gamedata/tGameData.h"

#include "gamedata/tGameDataReader.h"
#include "gamedata/tGameDataRegistry.h"
#include "gamedata/tParser.h"
#include "support/tHost.h"
#include "support/tMapText.h"
#include "support/tSystem.h"

#include <QFileInfo>

cGameData::cGameData(const QString& path, const cGameDataRegistry* owner)
    : fileName(QFileInfo(path).fileName()), filePath(path), m_owner(owner) {}

cGameData::~cGameData() {
    clear();
}

// A path that is not absolute lies in one of the game's folders or beside the program.
static QByteArray resolved(const QString& path) {
    const QByteArray name = toMapText(path);
    if (!QFileInfo(path).isRelative())
        return name;
    char found[4096];
    File_Find(name.constData(), found, sizeof found);
    return QByteArray(found);
}

bool cGameData::load(bool headerOnly) {
    if (loadState > (headerOnly ? 0 : 1))
        return true;
    if (loadState != 0)
        clear();
    g_host->showProgress(QStringLiteral("Precaching: %1").arg(fileName));
    if (!cParser::loadFile(resolved(filePath).constData()))
        return false;
    readSections(headerOnly);
    return true;
}

void cGameData::loadText(const char* text, int size, bool headerOnly) {
    clear();
    cParser::loadMemory(text, size);
    readSections(headerOnly);
}

void cGameData::readSections(bool headerOnly) {
    cGameDataReader(*this, headerOnly).read();
    if (!headerOnly && !hasGroupClasses)
        groupByPrefix();
    loadState = headerOnly ? 1 : 2;
}

bool cGameData::reload(bool headerOnly) {
    if (loadState != 0)
        clear();
    return load(headerOnly);
}

void cGameData::clear() {
    if (precached && m_heldThrough) {
        for (const cEntityClass* c : qAsConst(classes)) {
            for (const QString* sprite : {&c->iconSprite, &c->sprite}) {
                if (!sprite->isEmpty())
                    m_heldThrough->releaseSprite(*sprite);
            }
            if (!c->studio.isEmpty())
                m_heldThrough->releaseModel(c->studio);
        }
    }
    m_heldThrough = nullptr;
    for (const auto table : TABLES)
        (this->*table).clear();
    qDeleteAll(classes);
    classes.clear();
    loadState = 0;
    precached = hasGroupClasses = false;
}

// ---- Tables

// By kind.
QHash<QString, cEntityClass*> cGameData::*const cGameData::TABLES[] = {
    &cGameData::solidClasses, &cGameData::baseClasses, &cGameData::groupClasses,
    &cGameData::solidClasses, &cGameData::pointClasses};

cEntityClass* cGameData::findClass(const QString& name, int kind) const {
    return (this->*TABLES[kind]).value(name);
}

cEntityClass* cGameData::findNewest(const QString& name) const {
    return classes.value(name);
}

bool cGameData::addClass(std::unique_ptr<cEntityClass> entityClass) {
    const cEntityClass* before = findNewest(entityClass->name);
    if (before && before->kind == entityClass->kind)
        return false;
    hasGroupClasses |= entityClass->kind == CK_GROUP;
    enter(entityClass.release());
    return true;
}

void cGameData::enter(cEntityClass* entityClass) {
    classes.insert(entityClass->name, entityClass);
    (this->*TABLES[entityClass->kind]).insert(entityClass->name, entityClass);
}

// ---- Grouping of files that declare no group

static bool isPlaced(const cEntityClass* c) {
    return c->kind == CK_SOLID || c->kind == CK_POINT;
}

void cGameData::groupByPrefix() {
    const QList<cEntityClass*> declared = classes.values();
    for (cEntityClass* c : declared) {
        const int end = c->name.indexOf(QLatin1Char('_'));
        if (!isPlaced(c) || end <= 0 || c->name.left(end).trimmed().isEmpty())
            continue;
        const QString prefix = c->name.left(end);
        c->group = groupClasses.value(prefix);
        if (c->group)
            continue;
        c->group = new cEntityClass;
        c->group->kind = CK_GROUP;
        c->group->name = prefix;
        enter(c->group);
    }
    for (cEntityClass* c : declared) {
        if (isPlaced(c) && !c->group)
            c->group = groupClasses.value(c->name);
    }
}

// ---- Precaching

void cGameData::precache(const QString& paletteFile) {
    if (precached)
        return;
    cPrecacheSource* source = m_owner ? m_owner->precacheSource() : nullptr;
    if (source) {
        source->makeContextCurrent();
        const uint8_t* palette = paletteFile.isEmpty() ? nullptr : source->findPalette(paletteFile);
        for (const cEntityClass* c : qAsConst(classes)) {
            for (const QString* sprite : {&c->iconSprite, &c->sprite}) {
                if (!sprite->isEmpty())
                    source->acquireSprite(*sprite, palette);
            }
            if (!c->studio.isEmpty())
                source->acquireModel(c->studio, palette);
        }
    }
    m_heldThrough = source;
    precached = true;
}

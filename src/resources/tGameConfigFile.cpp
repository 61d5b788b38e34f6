// SPDX-License-Identifier: MIT
// TDKGameCfg.ini: one group per configuration, "Config0", "Config1", ... without gaps. One table
// of keys serves reading and writing.
#include "resources/tGameConfigRegistry.h"

#include "support/tConsole.h"
#include "support/tHost.h"
#include "support/tIniFile.h"
#include "support/tMapText.h"

#include <QDir>
#include <QFileInfo>

struct cTextKey {
    const char* key;
    QString cGameConfig::*field;
};

// Paths; other paths lie in the first two, so these are read before them.
static const cTextKey FOLDER_KEYS[] = {
    {"GameBasedir", &cGameConfig::gameBasedir},
    {"GameModdir", &cGameConfig::gameModdir},
    {"MapSourceFileDirectory", &cGameConfig::mapSourceFileDirectory},
};

static const cTextKey TEXT_KEYS[] = {
    {"MapProfile", &cGameConfig::mapProfile},
    {"DefaultPointClass", &cGameConfig::defaultPointClass},
    {"DefaultSolidClass", &cGameConfig::defaultSolidClass},
    {"GameExecutable", &cGameConfig::gameExecutable},
    {"GameCommandLine", &cGameConfig::gameCommandLine},
};

static QString keyOf(const char* text) {
    return QString::fromLatin1(text);
}

static QString groupOf(int index) {
    return QStringLiteral("Config%1").arg(index);
}

QString cGameConfigRegistry::defaultPath() {
    return appBaseDir() + QStringLiteral("/TDKGameCfg.ini");
}

// ---- Paths

// Where a path of the file leads: as it stands when absolute, else to the first of the mod, base
// and program folders that has it, else to the program folder.
static QString resolvedPath(cGameConfig& config, const QString& stored) {
    if (stored.isEmpty() || !QFileInfo(stored).isRelative())
        return stored;
    QString name = stored;
    name.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (name.size() > 1 && name[1] == QLatin1Char(':'))
        return stored; // of another system, with its drive
    QString path;
    for (const QString& folder : {config.gameModdir, config.gameBasedir, appBaseDir()}) {
        if (folder.isEmpty() || QFileInfo(folder).isRelative())
            continue;
        path = QDir::cleanPath(folder + QLatin1Char('/') + name);
        if (QFileInfo::exists(path))
            break;
    }
    config.storedPaths.insert(path, stored);
    return path;
}

// The same for the path in a key "path::filter".
static QString resolvedKey(cGameConfig& config, const QString& stored) {
    const int split = stored.lastIndexOf(QStringLiteral("::"));
    const QString path = split < 0 ? stored : stored.left(split);
    const QString key = resolvedPath(config, path) + stored.mid(path.size());
    if (key != stored)
        config.storedPaths.insert(key, stored);
    return key;
}

static QString storedPath(const cGameConfig& config, const QString& path) {
    return config.storedPaths.value(path, path);
}

// ---- Reading

// One group of the file.
struct cGroupReader {
    const cIniFile& file;
    QString group;

    QString text(const QString& key) const { return file.value(group, key); }
    QString text(const char* key) const { return text(keyOf(key)); }
    int number(const char* key, int absent) const {
        const QString value = file.value(group, keyOf(key));
        return value.isNull() ? absent : value.toInt();
    }
    QStringList list(const QString& pattern) const {
        QStringList result;
        for (int i = 0; file.contains(group, pattern.arg(i)); ++i)
            result.append(text(pattern.arg(i)));
        return result;
    }
};

static void readConfig(const cGroupReader& reader, cGameConfig& config) {
    config.title = reader.text("Title");
    config.enabled = QVariant(reader.text("Enabled")).toBool();
    config.textureFormat = reader.number("TextureFormat", 0);
    config.textureBrightness = reader.number("TextureBrightness", 50);
    for (const cTextKey& text : TEXT_KEYS)
        config.*text.field = reader.text(text.key);
    for (const cTextKey& folder : FOLDER_KEYS)
        config.*folder.field = resolvedPath(config, reader.text(folder.key));
    config.paletteFile = resolvedPath(config, reader.text("PaletteFile"));
    for (int i = 0; i < cGameConfig::MAP_TOOL_COUNT; ++i)
        config.mapTool[i] = reader.text(QStringLiteral("MapTool%1").arg(i));
    for (const QString& path : reader.list(QStringLiteral("GameData%1")))
        config.gameData.append(resolvedPath(config, path));
    for (const QString& key : reader.list(QStringLiteral("Parcel%1")))
        config.parcels.append(resolvedKey(config, key));
}

void cGameConfigRegistry::load(const QString& path) {
    clearConfigs();
    const cIniFile file(path);
    for (int i = 0; file.contains(groupOf(i), keyOf("Title")); ++i) {
        cGameConfig* config = new cGameConfig;
        readConfig({file, groupOf(i)}, *config);
        enter(config);
        acquireResources(*config);
    }
    if (!g_host->NoPrecache)
        precacheOnlyEnabled();
    renewFaces();
}

// Of several nobody knows yet which one will be asked for.
void cGameConfigRegistry::precacheOnlyEnabled() {
    cGameConfig* only = nullptr;
    for (cGameConfig* config : qAsConst(configs)) {
        if (config->enabled && only)
            return;
        if (config->enabled)
            only = config;
    }
    if (only)
        readResources(only);
}

// ---- Writing

static void writeConfig(cIniFile& file, const QString& group, const cGameConfig& config) {
    const auto put = [&](const QString& key, const QString& text) {
        file.setValue(group, key, text);
    };
    put(keyOf("Title"), config.title);
    put(keyOf("Enabled"), QVariant(config.enabled).toString());
    put(keyOf("TextureFormat"), QString::number(config.textureFormat));
    for (const cTextKey& text : TEXT_KEYS)
        put(keyOf(text.key), config.*text.field);
    for (const cTextKey& folder : FOLDER_KEYS)
        put(keyOf(folder.key), storedPath(config, config.*folder.field));
    put(keyOf("TextureBrightness"), QString::number(config.textureBrightness));
    put(keyOf("PaletteFile"), storedPath(config, config.paletteFile));
    for (int i = 0; i < cGameConfig::MAP_TOOL_COUNT; ++i)
        put(QStringLiteral("MapTool%1").arg(i), config.mapTool[i]);
    for (int i = 0; i < config.gameData.size(); ++i)
        put(QStringLiteral("GameData%1").arg(i), storedPath(config, config.gameData[i]));
    for (int i = 0; i < config.parcels.size(); ++i)
        put(QStringLiteral("Parcel%1").arg(i), storedPath(config, config.parcels[i]));
}

void cGameConfigRegistry::save(const QString& path) const {
    cIniFile file(path);
    file.clear();
    for (int i = 0; i < configs.size(); ++i)
        writeConfig(file, groupOf(i), *configs[i]);
    if (!file.save())
        Error("can't write \"%s\"", toMapText(path).constData());
}

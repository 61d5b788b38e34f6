// SPDX-License-Identifier: MIT
// TDKGameCfg.ini: one group per configuration, "Config0", "Config1", ... without gaps. One table
// of keys serves reading and writing.
#include "resources/tGameConfigRegistry.h"

#include "support/tConsole.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QTextCodec>

struct cTextKey {
    const char* key;
    QString cGameConfig::*field;
    bool isPath; // looked for in the game's folders when it is not absolute
};

// In the order of the file; the folders come first because other paths lie in them.
static const cTextKey FOLDER_KEYS[] = {
    {"GameBasedir", &cGameConfig::gameBasedir, true},
    {"GameModdir", &cGameConfig::gameModdir, true},
    {"MapSourceFileDirectory", &cGameConfig::mapSourceFileDirectory, true},
};

static const cTextKey TEXT_KEYS[] = {
    {"MapProfile", &cGameConfig::mapProfile, false},
    {"DefaultPointClass", &cGameConfig::defaultPointClass, false},
    {"DefaultSolidClass", &cGameConfig::defaultSolidClass, false},
    {"GameExecutable", &cGameConfig::gameExecutable, false},
    {"GameCommandLine", &cGameConfig::gameCommandLine, false},
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

static QString readText(const QSettings& file, const QString& key) {
    const QVariant value = file.value(key);
    // A text with commas that was written without quotes comes back as a list.
    return value.type() == QVariant::StringList ? value.toStringList().join(QStringLiteral(", "))
                                                : value.toString();
}

static QStringList readList(const QSettings& file, const QString& pattern) {
    QStringList list;
    for (int i = 0; file.contains(pattern.arg(i)); ++i)
        list.append(readText(file, pattern.arg(i)));
    return list;
}

static void readConfig(const QSettings& file, cGameConfig& config) {
    config.title = readText(file, keyOf("Title"));
    config.enabled = file.value(keyOf("Enabled"), false).toBool();
    config.textureFormat = file.value(keyOf("TextureFormat"), 0).toInt();
    config.textureBrightness = file.value(keyOf("TextureBrightness"), 50).toInt();
    for (const cTextKey& text : TEXT_KEYS)
        config.*text.field = readText(file, keyOf(text.key));
    for (const cTextKey& folder : FOLDER_KEYS)
        config.*folder.field = resolvedPath(config, readText(file, keyOf(folder.key)));
    config.paletteFile = resolvedPath(config, readText(file, keyOf("PaletteFile")));
    for (int i = 0; i < cGameConfig::MAP_TOOL_COUNT; ++i)
        config.mapTool[i] = readText(file, QStringLiteral("MapTool%1").arg(i));
    for (const QString& path : readList(file, QStringLiteral("GameData%1")))
        config.gameData.append(resolvedPath(config, path));
    for (const QString& key : readList(file, QStringLiteral("Parcel%1")))
        config.parcels.append(resolvedKey(config, key));
}

void cGameConfigRegistry::load(const QString& path) {
    clearConfigs();
    QSettings file(path, QSettings::IniFormat);
    file.setIniCodec(QTextCodec::codecForLocale());
    for (int i = 0;; ++i) {
        file.beginGroup(groupOf(i));
        if (!file.contains(keyOf("Title")))
            break;
        cGameConfig* config = new cGameConfig;
        readConfig(file, *config);
        file.endGroup();
        enter(config);
        acquireResources(*config);
        if (g_host && !g_host->NoPrecache)
            precache(config);
    }
}

// ---- Writing

static void writeConfig(QSettings& file, const cGameConfig& config) {
    file.setValue(keyOf("Title"), config.title);
    file.setValue(keyOf("Enabled"), config.enabled);
    file.setValue(keyOf("TextureFormat"), config.textureFormat);
    for (const cTextKey& text : TEXT_KEYS)
        file.setValue(keyOf(text.key), config.*text.field);
    for (const cTextKey& folder : FOLDER_KEYS)
        file.setValue(keyOf(folder.key), storedPath(config, config.*folder.field));
    file.setValue(keyOf("TextureBrightness"), config.textureBrightness);
    file.setValue(keyOf("PaletteFile"), storedPath(config, config.paletteFile));
    for (int i = 0; i < cGameConfig::MAP_TOOL_COUNT; ++i)
        file.setValue(QStringLiteral("MapTool%1").arg(i), config.mapTool[i]);
    for (int i = 0; i < config.gameData.size(); ++i)
        file.setValue(QStringLiteral("GameData%1").arg(i), storedPath(config, config.gameData[i]));
    for (int i = 0; i < config.parcels.size(); ++i)
        file.setValue(QStringLiteral("Parcel%1").arg(i), storedPath(config, config.parcels[i]));
}

void cGameConfigRegistry::save(const QString& path) const {
    QSettings file(path, QSettings::IniFormat);
    file.setIniCodec(QTextCodec::codecForLocale());
    file.clear();
    for (int i = 0; i < configs.size(); ++i) {
        file.beginGroup(groupOf(i));
        writeConfig(file, *configs[i]);
        file.endGroup();
    }
    file.sync();
    if (file.status() != QSettings::NoError)
        Error("can't write \"%s\"", path.toLocal8Bit().constData());
}

// SPDX-License-Identifier: MIT
// All the editor must know about one game: its game data files and texture sets, where it lies,
// and which map profile describes its maps. cGameConfigRegistry makes, stores and frees them.
#pragma once

#include "support/tSystem.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>

struct cEntityClass;
struct cTexturePackage;

// One node of a class tree: a group with its name, or a leaf with its class.
struct cEntityClassNode {
    QString name;                        // empty for a leaf
    cEntityClass* entityClass = nullptr; // null for a group
    QList<cEntityClassNode> children;
};

// Which texture sets the file dialogs offer.
enum eTextureSource { TS_PACKAGES = 1, TS_EXTERNAL = 2, TS_ALL = 3 };

// The two folders and the brightness stand in cConfigFolders, for the file lookups of the core.
struct cGameConfig : cConfigFolders {
    static constexpr int MAP_TOOL_COUNT = 4; // CSG, BSP, VIS, LIGHT

    int useCount = 0;                // open projects on this configuration
    int textureFormat = TS_PACKAGES; // eTextureSource
    bool enabled = true;             // offered for new projects
    QString title;                   // unique
    QStringList gameData;            // paths of game data files, in search order
    QString mapProfile;              // name of the map profile
    QString defaultPointClass;
    QString defaultSolidClass;
    QString gameExecutable;
    QString gameCommandLine;
    QString mapSourceFileDirectory;
    QString mapTool[MAP_TOOL_COUNT];
    QStringList parcels; // keys of texture sets, "path::filter"
    // The sets of the parcels, taken and given back by the registry: for a folder one for each
    // folder with images in its tree.
    QVector<cTexturePackage*> packages;
    QString paletteFile; // path of a 768-byte palette
    cEntityClassNode solidClassTree;
    cEntityClassNode pointClassTree;

    // A path of the file that is not absolute is resolved when it is read; this leads from the
    // resolved path back to the text that was written, so that saving keeps it.
    QHash<QString, QString> storedPaths;
};

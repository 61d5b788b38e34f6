// SPDX-License-Identifier: MIT
// The formats in which plug-ins read sprites and models, and the folder their progress texts are
// relative to. One per program.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <QList>
#include <QString>

struct cSpriteFormat {
    uint32_t id;
    QString extension; // with its leading point
    QString description;
    const uint8_t* lastPalette;
    tpSetPaletteFunction setPalette; // or null
    uint32_t reserved;
    tpLoadSpriteFunction load;
    tpUnloadSpriteFunction unload; // or null
};

struct cModelFormat {
    uint32_t id;
    QString extension;
    QString description;
    const uint8_t* lastPalette;
    tpSetPaletteFunction setPalette;    // or null
    tpGetModelBoundsFunction getBounds; // or null
    tpRenderModelFunction render;
    tpLoadModelFunction load;
    tpUnloadModelFunction unload; // or null
};

class cModelManager {
public:
    void addSpriteFormat(const cSpriteFormat& format) { spriteFormats.append(format); }
    void addModelFormat(const cModelFormat& format) { modelFormats.append(format); }
    void setBaseDirectory(const QString& directory) { baseDirectory = directory; }

    QList<cSpriteFormat> spriteFormats;
    QList<cModelFormat> modelFormats;
    QString baseDirectory;
};

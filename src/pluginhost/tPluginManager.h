// SPDX-License-Identifier: MIT
// Loads the plug-ins, once, before any project exists, and keeps what they offer: map formats and
// actions here, the rest with whoever uses it. Loaded libraries stay mapped to the end of the
// process, because the registries hold function pointers into them.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <QLibrary>
#include <QList>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

class cFlagCaptions;
class cGameConfigRegistry;
class cModelManager;
class cTextureManager;
struct cPluginContext;

// One map format of a plug-in; it belongs to the profiles with the same library.
struct cMapFormat {
    uint32_t library; // the plug-in's number, from 1
    uint32_t id;      // passed back with each call
    QString extension;
    QString description;
    tpMapFunction function; // tpImport or tpExport
};

// Where the offers of a plug-in go. A null target drops them.
struct cPluginTargets {
    cGameConfigRegistry* configs = nullptr;
    cTextureManager* textures = nullptr;
    cModelManager* models = nullptr;
    cFlagCaptions* captions = nullptr;
    std::function<void(const cPrimitive* record)> registerPrimitive;
};

class cPluginManager {
public:
    explicit cPluginManager(const cPluginTargets& targets);
    ~cPluginManager();
    cPluginManager(const cPluginManager&) = delete;
    cPluginManager& operator=(const cPluginManager&) = delete;

    static QString defaultDirectory(); // "plugins" beside the program

    // Every tp*.so of the directory in the order of its name. A failure costs its message only.
    void loadAll(const QString& directory = defaultDirectory());
    bool load(const QString& path);

    void registerAction(const cAction* record);
    // Under the current configuration; opens no history step.
    void runAction(int index) const;

    // The format that a profile's plug-in has for that extension, or null.
    static const cMapFormat* findFormat(const QList<cMapFormat>& formats, uint32_t library,
                                        const QString& extension);

    std::vector<std::unique_ptr<QLibrary>> libraries;
    std::vector<std::unique_ptr<cAction>> actions; // by category, as the menu shows them
    QList<cMapFormat> exportFormats;
    QList<cMapFormat> importFormats;

private:
    friend struct cPluginCallbacks;

    bool start(QLibrary& library);
    void enumerate(cPluginContext& context);
    void sortActions();

    cPluginTargets m_targets;
    std::vector<std::unique_ptr<cPluginContext>> m_contexts; // plug-ins may keep the word
};

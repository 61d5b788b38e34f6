// SPDX-License-Identifier: MIT
#include "pluginhost/tPluginManager.h"

#include "pluginhost/tHostServices.h"
#include "pluginhost/tPluginCallbacks.h"
#include "resources/tGameConfigRegistry.h"
#include "support/tConsole.h"
#include "support/tHost.h"
#include "support/tMapText.h"
#include "support/tSystem.h"

#include <QDir>
#include <algorithm>
#include <cstring>

cPluginManager::cPluginManager(const cPluginTargets& targets) : m_targets(targets) {}

// The libraries stay mapped: a QLibrary object that goes unloads nothing.
cPluginManager::~cPluginManager() = default;

QString cPluginManager::defaultDirectory() {
    return appBaseDir() + QStringLiteral("/plugins");
}

// ---- Loading

void cPluginManager::loadAll(const QString& directory) {
    setActiveConfig(nullptr);
    const QFileInfoList files =
        QDir(directory).entryInfoList({QStringLiteral("tp*.so")}, QDir::Files);
    for (const QFileInfo& file : files) {
        g_host->showProgress(QStringLiteral("Loading plugins: %1").arg(file.fileName()));
        load(file.canonicalFilePath());
    }
    sortActions();
}

bool cPluginManager::load(const QString& path) {
    auto library = std::make_unique<QLibrary>(path);
    library->setLoadHints(QLibrary::ResolveAllSymbolsHint);
    if (!start(*library)) {
        library->unload();
        return false;
    }
    Print("Adding: \"%s\"", toMapText(path).constData());
    m_contexts.push_back(std::make_unique<cPluginContext>(
        cPluginContext{this, library.get(), uint32_t(libraries.size() + 1)}));
    enumerate(*m_contexts.back());
    libraries.push_back(std::move(library));
    return true;
}

bool cPluginManager::start(QLibrary& library) {
    const QByteArray path = toMapText(library.fileName());
    if (!library.load()) {
        Error("Couldn't load \"%s\"", path.constData());
        return false;
    }
    const auto main = reinterpret_cast<tpMainFunction>(library.resolve("tpMain"));
    if (!main) {
        Error("Couldn't find \"tpMain\" export in \"%s\"", path.constData());
        return false;
    }
    if (!main(hostServices())) {
        Error("Couldn't initialize \"%s\"", path.constData());
        return false;
    }
    return true;
}

struct cFormatStep {
    const char* symbol;
    tpFormatCallback callback;
    const char* message;
};

static const cFormatStep FORMAT_STEPS[] = {
    {"tpEnumExportFormats", cPluginCallbacks::exportFormat, "%i map export format(s) registered"},
    {"tpEnumImportFormats", cPluginCallbacks::importFormat, "%i map import format(s) registered"},
    {"tpEnumTextureFormats", cPluginCallbacks::textureFormat, "%i texture format(s) registered"},
    {"tpEnumPackageFormats", cPluginCallbacks::packageFormat, "%i package format(s) registered"},
    {"tpEnumSpriteFormats", cPluginCallbacks::spriteFormat, "%i sprite format(s) registered"},
    {"tpEnumModelFormats", cPluginCallbacks::modelFormat, "%i model format(s) registered"},
};

static void printCount(const char* message, int count) {
    if (count != 0)
        Print("%s", QString::asprintf(message, count).toLatin1().constData());
}

void cPluginManager::enumerate(cPluginContext& context) {
    const auto resolve = [&context](auto function, const char* symbol) {
        return reinterpret_cast<decltype(function)>(context.library->resolve(symbol));
    };
    if (auto profiles = resolve(tpEnumProfilesFunction(), "tpEnumProfiles"))
        profiles(cPluginCallbacks::profile, &context);
    for (const cFormatStep& step : FORMAT_STEPS) {
        if (auto formats = resolve(tpEnumFormatsFunction(), step.symbol))
            printCount(step.message, formats(step.callback, &context));
    }
    if (auto list = resolve(tpEnumActionsFunction(), "tpEnumActions"))
        list(cPluginCallbacks::action, this);
    if (auto list = resolve(tpEnumPrimitivesFunction(), "tpEnumPrimitives"))
        printCount("%i primitive type(s) registered", list(cPluginCallbacks::primitive, &context));
    if (auto captions = resolve(tpEnumCaptionsFunction(), "tpEnumSurfaceFlags"))
        captions(cPluginCallbacks::surfaceCaption, &context);
    if (auto captions = resolve(tpEnumCaptionsFunction(), "tpEnumContentFlags"))
        captions(cPluginCallbacks::contentCaption, &context);
}

// ---- Actions

void cPluginManager::registerAction(const cAction* record) {
    if (!record->title) {
        Error("registerAction: action title is NULL!");
        return;
    }
    if (!record->dispatch) {
        Error("registerAction: dispatch function for \"%s\" is NULL!", record->title);
        return;
    }
    actions.push_back(std::make_unique<cAction>(*record));
}

void cPluginManager::sortActions() {
    std::stable_sort(actions.begin(), actions.end(), [](const auto& a, const auto& b) {
        if (!a->category || !b->category)
            return a->category && !b->category;
        return strcmp(a->category, b->category) < 0;
    });
}

void cPluginManager::runAction(int index) const {
    if (index < 0 || index >= int(actions.size()))
        return;
    if (m_targets.configs)
        setActiveConfig(m_targets.configs->current);
    const cAction& action = *actions[size_t(index)];
    action.dispatch(action.user);
}

const cMapFormat* cPluginManager::findFormat(const QList<cMapFormat>& formats, uint32_t library,
                                             const QString& extension) {
    for (const cMapFormat& format : formats) {
        if (format.library == library && format.extension == extension)
            return &format;
    }
    return nullptr;
}

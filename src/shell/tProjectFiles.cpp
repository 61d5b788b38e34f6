// SPDX-License-Identifier: MIT
// How a project reaches the disk and comes back: its own format, and the formats of the plug-ins.
#include "document/tProjectFile.h"
#include "resources/tTextureCatalogue.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "shell/tServices.h"
#include "support/tConsole.h"
#include "support/tMapText.h"
#include "support/tSystem.h"

#include <QApplication>
#include <QFileInfo>

// The wait cursor, for as long as it lives.
class cWaitCursor {
public:
    cWaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~cWaitCursor() { QApplication::restoreOverrideCursor(); }
    cWaitCursor(const cWaitCursor&) = delete;
    cWaitCursor& operator=(const cWaitCursor&) = delete;
};

static bool isProjectFile(const QString& file) {
    return !QFileInfo(file).suffix().compare(QLatin1String("kvx"), Qt::CaseInsensitive);
}

static QString extensionOf(const QString& file) {
    return QLatin1Char('.') + QFileInfo(file).suffix().toLower();
}

static QString fileNameOf(const QString& file) {
    return QFileInfo(file).fileName();
}

// library 0 stands for any.
static QList<const cMapFormat*> fittingFormats(const QList<cMapFormat>& formats, uint32_t library,
                                               const QString& extension) {
    QList<const cMapFormat*> fitting;
    for (const cMapFormat& format : formats)
        if ((!library || format.library == library) &&
            !format.extension.compare(extension, Qt::CaseInsensitive))
            fitting.append(&format);
    return fitting;
}

bool cProject::runFormats(const QList<const cMapFormat*>& formats, const QString& file) {
    const cActiveConfigScope scope(game.config);
    const QByteArray name = toMapText(file);
    return std::all_of(formats.begin(), formats.end(), [&](const cMapFormat* format) {
        return format->function(format->id, name.constData(), &map->data) != 0;
    });
}

// ---- Load

bool cProject::loadProject(const QString& file) {
    if (!selectGameConfig())
        return false;
    const cWaitCursor waitCursor;
    const cBusy busy;
    map->clearMap();
    activateConfig();
    cTextureCatalogue* catalogue = game.catalogue();
    catalogue->removeMissingEntries();
    bool isDamaged = false;
    const bool read = readFile(file, &isDamaged);
    catalogue->addMissingEntries();
    if (!read) {
        map->clearMap();
        return false;
    }
    map->finishLoad();
    exportPath.clear();
    if (isDamaged)
        becomeRecovered(file);
    else
        becomeFile(file);
    Print("Loaded project with game configuration \"%s\"", toMapText(gameConfigName).constData());
    return true;
}

bool cProject::readFile(const QString& file, bool* isDamaged) {
    if (!isProjectFile(file))
        return importMap(file);
    cProjectFile reader(*map, file);
    const bool read = reader.load();
    *isDamaged = reader.isDamaged();
    return read;
}

bool cProject::importMap(const QString& file) {
    const cMapProfile& own = game.profile();
    if (!own.library)
        return false;
    const QList<cMapFormat>& formats = g_mainWindow->services().plugins.importFormats;
    const QString extension = extensionOf(file);
    QList<const cMapFormat*> fitting = fittingFormats(formats, own.library, extension);
    if (fitting.isEmpty()) {
        fitting = fittingFormats(formats, 0, extension);
        if (!fitting.isEmpty())
            Warning("map format is not native for \"%s\", loading anyway...", own.title);
    }
    if (fitting.isEmpty()) {
        Error("map format is not supported");
        return false;
    }
    return runFormats(fitting, file);
}

// ---- Save

bool cProject::saveProject(const QString& file) {
    const cBusy busy;
    if (isProjectFile(file)) {
        if (!cProjectFile(*map, file).save())
            return false;
        becomeFile(file);
        return true;
    }
    const cMapProfile& own = game.profile();
    QList<const cMapFormat*> fitting;
    if (own.library)
        fitting = fittingFormats(g_mainWindow->services().plugins.exportFormats, own.library,
                                 extensionOf(file));
    if (fitting.isEmpty()) {
        Error("map format is not supported (please save the project as either KVX or any format "
              "supported by %s plugin)",
              own.name);
        return false;
    }
    if (!runFormats(fitting, file))
        return false;
    becomeFile(file);
    return true;
}

void cProject::becomeFile(const QString& file) {
    isNew = false;
    path = file;
    title = fileNameOf(file);
    setDirty(false);
}

// What could be read of a damaged file is a new map: no save goes over the file unasked.
void cProject::becomeRecovered(const QString& file) {
    isNew = true;
    path.clear();
    title = QFileInfo(file).completeBaseName() + QStringLiteral("-recovered");
    setDirty(true);
}

bool cProject::exportProject(const QString& file) {
    const cMapProfile& own = game.profile();
    if (!own.library)
        return false;
    const cBusy busy;
    const QList<const cMapFormat*> fitting = fittingFormats(
        g_mainWindow->services().plugins.exportFormats, own.library, QStringLiteral(".map"));
    if (fitting.isEmpty()) {
        Error("map format is not supported");
        return false;
    }
    if (!runFormats(fitting, file))
        return false;
    exportPath = file;
    return true;
}

// SPDX-License-Identifier: MIT
// Building the main window and taking it down. The order of both is fixed: the console first, so
// that every later message reaches it, the services' data last.
#include "shell/tMainWindow.h"

#include "dialogs/tTextureBrowserDialog.h"
#include "dialogs/tTextureReplaceDialog.h"
#include "dialogs/tWaitDialog.h"
#include "document/tWinding.h"
#include "operations/tClipboard.h"
#include "shell/tClassMenus.h"
#include "shell/tCommandMenus.h"
#include "shell/tConsoleDock.h"
#include "shell/tFilterDock.h"
#include "shell/tLayoutStorage.h"
#include "shell/tObjectsDock.h"
#include "shell/tProject.h"
#include "shell/tRecentFiles.h"
#include "shell/tScreenElements.h"
#include "shell/tServices.h"
#include "shell/tSettingsStorage.h"
#include "shell/tStatusPanes.h"
#include "shell/tTexturesDock.h"
#include "shell/tTieToEntity.h"
#include "shell/tToolSwitch.h"
#include "shell/tWindowList.h"
#include "support/tConsole.h"
#include "support/tMapText.h"
#include "support/tSystem.h"
#include "views/tGLWidget.h"
#include "views/tModelPoses.h"
#include "views/tTextureUpload.h"

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QScreen>
#include <QStatusBar>
#include <utility>

cMainWindow* g_mainWindow = nullptr;
bool g_closing = false;

// ---- Steps of the construction

// Until there is a stored layout, most of the screen, in its middle.
static void resizeToScreen(QWidget& window) {
    constexpr double SCREEN_SHARE = 0.85;
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    QRect place(QPoint(), available.size() * SCREEN_SHARE);
    place.moveCenter(available.center());
    window.setGeometry(place);
}

static QPixmap cursorPixmap(const char* name) {
    return QPixmap(QStringLiteral(":/qrc/%1.png").arg(QLatin1String(name)));
}

static std::array<QCursor, TC_COUNT> loadCursors() {
    struct {
        eToolCursor cursor;
        const char* name;
        int x;
        int y;
    } static const spots[] = {
        {TC_MAGNIFY, "c_magnify", 9, 9}, {TC_CROSS, "c_cross", 16, 15},
        {TC_TEXTURE, "c_texture", 1, 1}, {TC_DECAL, "c_decal", 3, 3},
        {TC_ENTITY, "c_entity", 7, 7},   {TC_BRUSH, "c_brush", 6, 6},
        {TC_ROTATE, "c_rotate", 15, 15},
    };
    std::array<QCursor, TC_COUNT> cursors;
    for (const auto& spot : spots)
        cursors[spot.cursor] = QCursor(cursorPixmap(spot.name), spot.x, spot.y);
    return cursors;
}

// A dock that floats is a window of its own. One that came before the main window is taken for no
// part of it and stays beneath.
static void showFloatingDocks(const QWidget& window) {
    for (auto* dock : window.findChildren<QDockWidget*>()) {
        if (!dock->isFloating() || dock->isHidden())
            continue;
        const QRect place = dock->geometry();
        dock->hide();
        dock->show();
        dock->setGeometry(place);
    }
}

cMainWindow::cMainWindow() : m_startPalette(QApplication::palette()) {
    g_mainWindow = this;
    setHost(this);
    g_viewHost = this;
    g_closing = false;
    m_clipboard = std::make_unique<cClipboard>();
    g_clipboard = m_clipboard.get();
    TempBuffer_FreeAll();
    setObjectName(QStringLiteral("TDK_MainWindow"));
    setWindowTitle(tr("Karvex"));
    setWindowIcon(QIcon(QStringLiteral(":/qrc/karvex16.png")));
    resizeToScreen(*this);
    cGLWidget::setDefaultFormat(); // views that need depth ask for it themselves
    m_console = new cConsoleDock(this);
    Print("%s", toMapText(tr("%1 initialized (ELF build %2 %3)")
                              .arg(QStringLiteral("Karvex"), QStringLiteral(__DATE__),
                                   QStringLiteral(__TIME__)))
                    .constData());
    m_services = std::make_unique<cServices>();
    connectConfigs();
    m_shareWidget = std::make_unique<cGLWidget>(eGLBuffers::Color);
    m_textureUpload = std::make_unique<cTextureUpload>(*m_shareWidget);
    m_services->textures.setUploader(m_textureUpload.get());
    m_services->models.setUploader(m_textureUpload.get());
    m_services->models.recordsGone = [] { cModelPoses::shared().clear(); };
    m_services->textures.setDefaultTexture(m_textureUpload->defaultTexture());
    createDocks();
    createDialogs();
    createMdiArea();
    m_panes = std::make_unique<cStatusPanes>(*statusBar(), helpTip());
    connect(statusBar(), &QStatusBar::messageChanged, this,
            [this](const QString& text) { setStatusPane(text, PANE_MESSAGE); });
    createMenus();
    m_tools = std::make_unique<cToolSwitch>(*this);
    connect(m_tools.get(), &cToolSwitch::changed, this, &cMainWindow::showTool);
    m_tieToEntity = std::make_unique<cTieToEntity>(*this);
    m_cameraCursor = cursorPixmap("c_camera");
    m_toolCursors = loadCursors();
    showProgress(tr("Loading plugins..."));
    m_services->plugins.loadAll();
    createPluginMenu();
    showProgress(tr("Loading settings..."));
    m_storage->load();
    m_menus->createToolBar(SmallToolIcons);
    m_elements->addBar(m_menus->bars.last());
    showProgress(tr("Loading color schemes..."));
    m_storage->loadColors();
    applyPalette();
    showProgress(tr("Loading..."));
    m_layout->load();
    updateUi();
    show();
    raise();
    showFloatingDocks(*this);
    updateScreenElements(); // what shows is known only now
    m_services->configs.load();
    qApp->installEventFilter(this);
    statusBar()->showMessage(m_mdiArea->statusTip());
}

cMainWindow::~cMainWindow() {
    g_closing = true;
    qApp->removeEventFilter(this);
    for (QObject* child : findChildren<QObject*>())
        child->disconnect(this); // what hides or goes from here on finds a window half gone
    for (cProject* project : projects)
        project->detachWindows();
    g_clipboard->forgetSource();
    qDeleteAll(std::exchange(projects, {}));
    delete m_mdiArea;
    m_tools.reset();
    g_clipboard = nullptr;
    m_clipboard.reset();
    m_tieToEntity.reset();
    m_services.reset();
    m_textureUpload.reset();
    m_shareWidget.reset();
    windingFreeLists();
    TempBuffer_FreeAll();
    g_viewHost = nullptr;
    setHost(nullptr);
    g_mainWindow = nullptr;
}

void cMainWindow::connectConfigs() {
    cGameConfigCallbacks& calls = m_services->configs.callbacks;
    calls.showWaitDialog = [this](const QString& text) { showWaitDialog(text); };
    calls.hideWaitDialog = [this] { hideWaitDialog(); };
    calls.reconfigureProjects = [this] {
        m_classMenus->forgetConfig();
        m_objectsDock->forgetConfig();
        for (cProject* project : qAsConst(projects))
            project->reconfigure();
    };
    calls.renewFaces = [this] {
        m_texturesDock->forget();
        for (cProject* project : qAsConst(projects)) {
            project->map->renewFaces();
            project->redrawViews(REDRAW_ALL);
        }
    };
}

// ---- Docks and the middle

void cMainWindow::createDocks() {
    setDockOptions(AnimatedDocks | AllowTabbedDocks);
    setCorner(Qt::TopLeftCorner, Qt::TopDockWidgetArea);
    setCorner(Qt::TopRightCorner, Qt::TopDockWidgetArea);
    setCorner(Qt::BottomLeftCorner, Qt::BottomDockWidgetArea);
    setCorner(Qt::BottomRightCorner, Qt::BottomDockWidgetArea);
    m_objectsDock = new cObjectsDock(m_services->primitives, m_services->configs, this);
    connect(m_objectsDock, &cObjectsDock::classChosen, this,
            [this] { redrawAllViews(REDRAW_3D); }); // the class's box about the point
    connect(m_objectsDock, &cObjectsDock::moveToWorld, this, &cMainWindow::cmdToolsMoveToWorld);
    connect(m_objectsDock, &cObjectsDock::tieToEntity, this, &cMainWindow::cmdToolsTieToEntity);
    connect(m_objectsDock, &cObjectsDock::notBuilt, this, &cMainWindow::tellUnderDevelopment);
    m_texturesDock = new cTexturesDock([this] { return activeProject(); }, this);
    connect(m_texturesDock, &cTexturesDock::browse, this, &cMainWindow::execBrowseTexture);
    connect(m_texturesDock, &cTexturesDock::replace, this, &cMainWindow::cmdToolsTextureReplace);
    const auto activeMap = [this] {
        return activeProject() ? activeProject()->map.get() : nullptr;
    };
    m_filterDock = new cFilterDock(activeMap, this);

    constexpr Qt::DockWidgetAreas SIDES = Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea;
    const struct {
        QDockWidget* dock;
        Qt::DockWidgetArea area;
        Qt::DockWidgetAreas allowed;
    } places[] = {{m_console, Qt::BottomDockWidgetArea, Qt::AllDockWidgetAreas},
                  {m_objectsDock, Qt::RightDockWidgetArea, SIDES},
                  {m_texturesDock, Qt::RightDockWidgetArea, SIDES},
                  {m_filterDock, Qt::RightDockWidgetArea, SIDES}};
    for (const auto& place : places) {
        place.dock->setAllowedAreas(place.allowed);
        place.dock->setStatusTip(helpTip());
        addDockWidget(place.area, place.dock);
        connect(place.dock, &QDockWidget::visibilityChanged, this,
                &cMainWindow::updateScreenElements);
    }
}

void cMainWindow::createDialogs() {
    m_textureReplace = new cTextureReplaceDialog(this);
    m_textureReplace->browseTexture = [this](const QString& name) {
        return browseTexture(name, QString());
    };
    m_textureBrowser = new cTextureBrowserDialog(this);
    m_textureBrowser->replaceTextures = [this](const QString& name) {
        return replaceTextures(name);
    };
    connect(m_textureBrowser, &cTextureBrowserDialog::scaleModeChanged, this, [this](int mode) {
        cSettings after = *this;
        after.TextureBrowserScaleMode = mode;
        applySettings(after);
    });
}

void cMainWindow::createMdiArea() {
    m_mdiArea = new QMdiArea(this);
    m_mdiArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_mdiArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_mdiArea->setStatusTip(helpTip());
    connect(m_mdiArea, &QMdiArea::subWindowActivated, this,
            &cMainWindow::changeSubwindowActiveState);
    setCentralWidget(m_mdiArea);
}

// ---- Menus and bars

void cMainWindow::createMenus() {
    m_menus = std::make_unique<cCommandMenus>(*this);
    createWebMenu();
    m_classMenus = std::make_unique<cClassMenus>(*this, *m_menus, m_services->configs);
    m_recentFiles = std::make_unique<cRecentFiles>(*m_menus->fileMenu, m_menus->recentEnd,
                                                   m_menus->recentSeparator);
    connect(m_recentFiles.get(), &cRecentFiles::chosen, this, [this](const QString& path) {
        openFile(path);
        checkActiveState(false);
    });
    m_windowList =
        std::make_unique<cWindowList>(*m_menus->windowMenu, m_menus->windowSeparator, *m_mdiArea);
    connect(m_menus->windowMenu, &QMenu::aboutToShow, this,
            [this] { m_windowList->update(activeChild()); });
    const QList<QPair<QDockWidget*, QString>> docks = {{m_objectsDock, tr("New &Objects")},
                                                       {m_texturesDock, tr("Te&xture Bar")},
                                                       {m_filterDock, tr("&Filter Control")}};
    m_elements = std::make_unique<cScreenElements>(*m_menus->elementsMenu, m_menus->bars, docks,
                                                   statusBar());
    m_storage = std::make_unique<cSettingsStorage>(*this, *m_recentFiles, m_services->colors,
                                                   *m_textureBrowser);
    m_layout = std::make_unique<cLayoutStorage>(*this, *m_textureBrowser);
}

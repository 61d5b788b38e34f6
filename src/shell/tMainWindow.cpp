// SPDX-License-Identifier: MIT
// Building the main window and taking it down. The order of both is fixed: the console first, so
// that every later message reaches it, the plug-ins' data last.
#include "shell/tMainWindow.h"

#include "dialogs/tArchDialog.h"
#include "dialogs/tEntityListDialog.h"
#include "dialogs/tWaitDialog.h"
#include "document/tHistory.h"
#include "document/tWinding.h"
#include "gamedata/tGameDataRegistry.h"
#include "operations/tClipboard.h"
#include "pluginhost/tFlagCaptions.h"
#include "pluginhost/tHostServices.h"
#include "pluginhost/tPluginManager.h"
#include "pluginhost/tPrimitiveList.h"
#include "resources/tGameConfigRegistry.h"
#include "resources/tModelManager.h"
#include "resources/tTextureManager.h"
#include "shell/tColorScheme.h"
#include "shell/tProject.h"
#include "support/tConsole.h"
#include "support/tMapText.h"
#include "support/tSystem.h"
#include "tools/tToolFactory.h"
#include "views/tGLWidget.h"
#include "views/tTool.h"

#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>
#include <QSignalMapper>
#include <QStatusBar>
#include <QTextDocument>
#include <QTextEdit>
#include <utility>

cMainWindow* g_mainWindow = nullptr;
bool g_closing = false;

static QString helpTip() {
    return cMainWindow::tr("For Help, press F1");
}

cMainWindow::cMainWindow() : m_startPalette(QApplication::palette()) {
    g_mainWindow = this;
    g_host = this;
    g_viewHost = this;
    g_closing = false;
    createClipboard();
    TempBuffer_FreeAll();
    setObjectName(QStringLiteral("TDK_MainWindow"));
    setWindowTitle(tr("Karvex"));
    setWindowIcon(QIcon(QStringLiteral(":/qrc/karvex16.png")));
    resizeToScreen();
    cGLWidget::setDefaultFormat(); // views that need depth ask for it themselves
    createDocks();
    Print("%s", toMapText(tr("%1 initialized (ELF build %2 %3)")
                              .arg(QStringLiteral("Karvex"), QStringLiteral(__DATE__),
                                   QStringLiteral(__TIME__)))
                    .constData());
    createServices();
    createMdiArea();
    createStatusBar();
    createActions();
    createTools();
    loadCursors();
    loadPlugins();
    showProgress(tr("Loading settings..."));
    loadSettings();
    createToolBar();
    showProgress(tr("Loading color schemes..."));
    loadColorSchemes();
    showProgress(tr("Loading..."));
    loadLayout();
    updateUi();
    show();
    raise();
    showFloatingDocks();
    updateScreenElements(); // what shows is known only now
    m_configs->load();
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
    currentTool = suspendedTool = nullptr;
    for (auto& tool : tools)
        tool.reset();
    g_clipboard = nullptr;
    m_clipboard.reset();
    delete m_entityList;
    m_colors.reset();
    setHostServiceContext({});
    m_plugins.reset();
    m_configs.reset();
    m_gameData.reset();
    m_textures.reset();
    m_models.reset();
    m_captions.reset();
    m_primitives.reset();
    m_shareWidget.reset();
    windingFreeLists();
    TempBuffer_FreeAll();
    g_viewHost = nullptr;
    g_host = nullptr;
    g_mainWindow = nullptr;
}

// Until there is a stored layout, most of the screen, in its middle.
void cMainWindow::resizeToScreen() {
    constexpr double SCREEN_SHARE = 0.85;
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    QRect place(QPoint(), available.size() * SCREEN_SHARE);
    place.moveCenter(available.center());
    setGeometry(place);
}

void cMainWindow::createDocks() {
    setDockOptions(AnimatedDocks | AllowTabbedDocks);
    setCorner(Qt::TopLeftCorner, Qt::TopDockWidgetArea);
    setCorner(Qt::TopRightCorner, Qt::TopDockWidgetArea);
    setCorner(Qt::BottomLeftCorner, Qt::BottomDockWidgetArea);
    setCorner(Qt::BottomRightCorner, Qt::BottomDockWidgetArea);
    createConsole();
    createObjectDock();
    createVisGroupDock();
}

QDockWidget* cMainWindow::addDock(const QString& title, const char* name, QWidget* widget,
                                  Qt::DockWidgetArea area, Qt::DockWidgetAreas allowed) {
    auto* dock = new QDockWidget(title, this);
    dock->setObjectName(QString::fromLatin1(name));
    dock->setAllowedAreas(allowed);
    dock->setStatusTip(helpTip());
    dock->setWidget(widget);
    addDockWidget(area, dock);
    connect(dock, &QDockWidget::visibilityChanged, this, &cMainWindow::updateScreenElements);
    return dock;
}

void cMainWindow::createConsole() {
    m_consoleText = new QTextEdit;
    m_consoleText->setObjectName(QStringLiteral("ConsoleText"));
    m_consoleText->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_consoleText->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_consoleText->setUndoRedoEnabled(false);
    m_consoleText->document()->setMaximumBlockCount(CONSOLE_LINES);
    m_consoleText->setReadOnly(true);
    m_consoleText->setTextInteractionFlags(Qt::TextSelectableByMouse |
                                           Qt::TextSelectableByKeyboard);
    m_consoleText->setAutoFillBackground(true);
    m_consoleText->setStatusTip(helpTip());
    makeConsoleLookLikePanel();

    m_consoleDock = addDock(tr("Messages"), "console", m_consoleText, Qt::BottomDockWidgetArea,
                            Qt::AllDockWidgetAreas);
    m_consoleEvents.start();
}

void cMainWindow::makeConsoleLookLikePanel() {
    QPalette panel = QApplication::palette();
    panel.setBrush(QPalette::Base, panel.window());
    m_consoleText->setPalette(panel);
}

void cMainWindow::createServices() {
    m_colors = std::make_unique<cColorScheme>();
    m_models = std::make_unique<cModelManager>();
    m_textures = std::make_unique<cTextureManager>();
    m_gameData = std::make_unique<cGameDataRegistry>();
    m_captions = std::make_unique<cFlagCaptions>();
    m_primitives = std::make_unique<cPrimitiveList>();
    registerPrimitives();
    m_configs = std::make_unique<cGameConfigRegistry>(*m_gameData, *m_textures, m_models.get());
    connectConfigs();

    cPluginTargets targets;
    targets.configs = m_configs.get();
    targets.textures = m_textures.get();
    targets.models = m_models.get();
    targets.captions = m_captions.get();
    targets.registerPrimitive = [this](const cPrimitive* record) {
        m_primitives->registerPrimitive(record);
    };
    m_plugins = std::make_unique<cPluginManager>(targets);

    cHostServiceContext context;
    context.textures = m_textures.get();
    context.configOf = [](const cMapData* map) -> const cGameConfig* {
        const cProject* project = map ? cMap::of(const_cast<cMapData*>(map))->project : nullptr;
        return project ? project->game.config : nullptr;
    };
    setHostServiceContext(context);
    m_shareWidget = std::make_unique<cGLWidget>(eGLBuffers::Color);
}

void cMainWindow::connectConfigs() {
    cGameConfigCallbacks& calls = m_configs->callbacks;
    calls.showWaitDialog = [this](const QString& text) { showWaitDialog(text); };
    calls.hideWaitDialog = [this] { hideWaitDialog(); };
    calls.reconfigureProjects = [this] {
        m_classMenuConfig = nullptr; // the new one may lie at the same address
        m_listedConfig = nullptr;
        currentClassStale = true;
        for (cProject* project : projects)
            project->reconfigure();
    };
    calls.renewFaces = [this] {
        for (cProject* project : projects) {
            project->map->renewFaces();
            project->redrawViews(REDRAW_ALL);
        }
    };
}

void cMainWindow::createMdiArea() {
    m_mdiArea = new QMdiArea(this);
    m_mdiArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_mdiArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_mdiArea->setStatusTip(helpTip());
    connect(m_mdiArea, &QMdiArea::subWindowActivated, this,
            &cMainWindow::changeSubwindowActiveState);
    m_windowMapper = new QSignalMapper(this);
    connect(m_windowMapper, &QSignalMapper::mappedWidget, this, &cMainWindow::setActiveChildWindow);
    setCentralWidget(m_mdiArea);
}

void cMainWindow::createStatusBar() {
    constexpr int PANE_MARGIN = 12;
    // Each pane has room for such a text, in whatever font.
    const QString samples[STATUS_PANES] = {helpTip(),
                                           QStringLiteral("Some game (profile)"),
                                           QStringLiteral("group of 1000 objects."),
                                           QStringLiteral("@-4096, -4096"),
                                           QStringLiteral("4096w 4096l 4096h"),
                                           QStringLiteral("Zoom: 100"),
                                           QStringLiteral("Snap: Off Grid: 512")};
    for (int pane = 0; pane < STATUS_PANES; ++pane) {
        auto* label = new QLabel(this);
        label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        label->setTextFormat(Qt::PlainText);
        label->setMinimumWidth(label->fontMetrics().horizontalAdvance(samples[pane]) + PANE_MARGIN);
        if (pane == 0) // a long message is cut and does not widen the window
            label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        statusBar()->addPermanentWidget(label, pane == 0 ? 1 : 0);
        m_statusPanes[size_t(pane)] = label;
    }
    connect(statusBar(), &QStatusBar::messageChanged, this, &cMainWindow::updateStatusBar);
}

// The block tool exists before the entity tool, which falls back on it.
void cMainWindow::createTools() {
    static constexpr int order[TOOL_COUNT] = {TOOL_SELECT, TOOL_MAGNIFY, TOOL_CAMERA, TOOL_BLOCK,
                                              TOOL_ENTITY, TOOL_TEXTURE, TOOL_DECAL,  TOOL_CLIP,
                                              TOOL_VERTEX, TOOL_CORDON,  TOOL_PATH};
    for (int id : order)
        tools[size_t(id)] = makeTool(id);
    currentTool = tools[TOOL_SELECT].get();
    suspendedTool = nullptr;
}

static QPixmap cursorPixmap(const char* name) {
    return QPixmap(QStringLiteral(":/qrc/%1.png").arg(QLatin1String(name)));
}

void cMainWindow::loadCursors() {
    moveCursor = cursorPixmap("c_move");
    cameraCursor = cursorPixmap("c_camera");
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
    for (const auto& spot : spots)
        m_toolCursors[spot.cursor] = QCursor(cursorPixmap(spot.name), spot.x, spot.y);
}

void cMainWindow::loadPlugins() {
    showProgress(tr("Loading plugins..."));
    m_plugins->loadAll();
    createPluginMenu();
}

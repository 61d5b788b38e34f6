// SPDX-License-Identifier: MIT
// The one main window. It owns every long-lived service and the open documents, is the host of
// the core and of the views, and holds a slot for each command. Its code lies by subject in
// tMainWindow*.cpp. A command slot is thin: find the active document, ask, call one operation.
#pragma once

#include "shell/tCommandTable.h"
#include "support/tHost.h"
#include "views/tTool.h"
#include "views/tViewHost.h"

#include <QCursor>
#include <QElapsedTimer>
#include <QMainWindow>
#include <QPalette>
#include <QPixmap>
#include <QPointer>
#include <array>
#include <memory>
#include <vector>

class QActionGroup;
class QApplication;
class QDockWidget;
class QFile;
class QLabel;
class QMdiArea;
class QMdiSubWindow;
class QSettings;
class QSignalMapper;
class QSplashScreen;
class QTextEdit;
class cChildWindow;
class cColorScheme;
class cFlagCaptions;
class cGameConfigRegistry;
class cGameDataRegistry;
class cModelManager;
class cPluginManager;
class cPrimitiveList;
class cTextureManager;
class cWaitDialog;
class QCustomAction;
class QCustomSeparator;
struct cMapFormat;

extern cMainWindow* g_mainWindow;   // set as the first act of its constructor
extern QApplication* g_application; // made by main
extern QSplashScreen* g_splash;     // null once start-up is over
extern bool g_closing;              // from the start of the close until it is vetoed or done

// Bits of updateActionStates.
enum eActionState { AS_CLIPBOARD = 1, AS_UNDO = 2, AS_GROUP = 4, AS_DETAIL = 8, AS_ALL = -1 };

class cMainWindow : public QMainWindow, public cHost, public cViewHost {
    Q_OBJECT

public:
    static constexpr int MIN_GRID = 1;
    static constexpr int MAX_GRID = 512;
    static constexpr int MESSAGE_TIME = 5000; // ms that a short state message stays
    static constexpr int STATUS_PANES = 7;
    static constexpr int RECENT_FILES = 8;

    cMainWindow();
    ~cMainWindow() override;

    // ---- Documents

    cChildWindow* activeChild() const; // of the active sub-window, else of the current one
    cProject* activeProject() const;
    cChildWindow* addChild(cProject* project);
    cProject* findProjectByPath(const QString& path) const;
    void removeProject(cProject* project);
    // Opens a file, or raises the windows that show it already. False after a beep.
    bool openFile(const QString& path);
    // The command line's file; a name without a point is ignored.
    void openArgument(const QString& path);
    // The windows of a new or opened project, by the user's settings.
    void createProjectWindows(cProject* project);
    // Every window puts its own question; false if one has stayed.
    bool closeAllWindows();
    void openGameProfiles(); // where game configurations are set up

    // ---- cHost

    void consoleMessage(eMessage level, const char* text) override;
    bool isPrecaching() const override;
    void showProgress(const QString& text) override;
    void setStatusPane(const QString& text, int pane) override;
    void projectDirty(cProject* project) override;
    int currentToolId() const override;
    cTexture* findTexture(const char* name) override;
    cTexture* addMissingTexture(const char* name) override;
    void releaseTexture(cTexture* texture) override;
    cEntityClass* findClass(const char* name, eClassFilter filter) override;
    const cMapProfile& profile() const override;
    const uint8_t* schemeColor(int index) const override;

    // ---- cViewHost

    void setActiveCanvas(cCanvas* canvas) override;
    cTool* cameraTool() const override;
    QMenu* popupMenu(const char* title) const override;
    QGLWidget* shareWidget() override;
    // Nothing opens while there is no properties dialog.
    void openObjectProperties() override {}
    void updateViewControls() override;
    bool isActiveWindow(const cChildWindow* window) const override;

    // The one for precaching; a wait window that is up already stays.
    void showWaitDialog(const QString& text);
    void hideWaitDialog();

    // ---- Console

    // Text that is not HTML is shown as it stands, markup and all.
    void appendConsole(const QString& text, bool isHtml, bool bold);
    void appendConsoleColored(const QString& text, bool isHtml, bool bold, const QColor& color);

    // ---- Refreshing

    void notifyTools(); // gives the tools the active canvas, then refreshes the Edit commands
    void updateUi();
    void updateDocumentActions();
    void updateToolActions();
    void updateActionStates(int mask); // eActionState bits
    void updateSnapPane();
    void redrawAllViews(int mask);
    void applyPalette();

    // ---- Settings, layout, recent files

    void loadSettings();
    void saveSettings();
    void loadLayout();
    void saveLayout();
    void addRecentFile(const QString& path);
    void refreshRecentFiles();

    // Asks for a file name to save under. A name without a suffix gets the extension of the
    // filter that was chosen. Empty after Cancel.
    struct cSaveFilter {
        QString filter;
        QString extension;
    };
    QString askSaveName(const QString& directory, const QList<cSaveFilter>& filters);

    cPluginManager& plugins() { return *m_plugins; }
    cGameConfigRegistry& configs() { return *m_configs; }
    cGameDataRegistry& gameData() { return *m_gameData; }
    cTextureManager& textures() { return *m_textures; }
    cColorScheme& colors() { return *m_colors; }
    QMdiArea* mdiArea() const { return m_mdiArea; }
    QTextEdit* consoleText() const { return m_consoleText; }
    QLabel* statusPane(int pane) const { return m_statusPanes[size_t(pane)]; }

    QPixmap moveCursor;
    QPixmap cameraCursor;
    QCursor magnifyCursor;
    QCursor crossCursor;
    QCursor textureCursor;
    QCursor decalCursor;
    QCursor entityCursor;
    QCursor brushCursor;
    QCursor rotateCursor;
    QList<cProject*> projects; // open documents, in opening order, owned
    QStringList recentFiles;   // most recent first
    std::array<std::unique_ptr<cTool>, TOOL_COUNT> tools;
    std::vector<QAction*> actions; // every action and named separator made from the table

public slots:
    void changeSubwindowActiveState(QMdiSubWindow* window);
    void setActiveChildWindow(QWidget* window);
    void checkActiveState(bool clearConfig);
    void updateScreenElements();
    void updateWindowList();
    void updateLayout() { updateUi(); }
    void updateStatusBar(const QString& text);
    void toggleToolbar();
    void toggleStatusBar();
    void toggleDockWidget();
    void openRecentFile();
    void runPluginAction();
    void msgFeatureUnderDevelopment(); // names the sender

    void cmdFileNew();
    void cmdFileOpen();
    void cmdFileClose();
    void cmdFileCloseAll();
    void cmdFileSave();
    void cmdFileSaveAs();
    void cmdFileExport();
    void cmdFileExportAgain();
    void cmdFileExit();

    void cmdMapToggleGridSnap();
    void cmdMapToggleGrid();
    void cmdMapToggleGrid3D();
    void cmdMapSmallerGrid();
    void cmdMapBiggerGrid();
    void cmdMapLoadWindowState();
    void cmdMapSaveWindowState();

    void cmdView2DXY();
    void cmdView2DYZ();
    void cmdView2DXZ();
    void cmdView3DWireframe();
    void cmdView3DFilled();
    void cmdView3DTextured();
    void cmdViewAutosize();
    void cmdViewToggleTexTrans();
    void cmdViewToggleEntTrans();
    void cmdViewToggleConnections();
    void cmdViewToggleModels2D();
    void cmdViewToggleNodraw();
    void cmdViewToggleItems();
    void cmdViewTogglePaths();
    void cmdViewToggleDetail();

    void cmdWindowNew();
    void cmdWindowCascade();
    void cmdWindowTile();
    void cmdWindowNext();
    void cmdWindowPrev();
    void cmdWindowMessages();
    void cmdWindowExportMessages();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    // Construction, in order (tMainWindow.cpp)
    void resizeToScreen();
    void setDefaultGLFormat();
    void createDocks();
    void createConsole();
    void makeConsoleLookLikePanel();
    void createServices();
    void connectConfigs();
    void createMdiArea();
    void createStatusBar();
    void createTools();
    void loadCursors();
    void loadPlugins();

    // Actions (tMainWindowActions.cpp)
    void createActions();
    void createMenus();
    QMenu* openMenu(const char* title);
    void createMenuRow(const cCommandRow& row, QMenu* menu);
    void createBars();
    void createPopups();
    QCustomAction* createAction(const cCommandRow& row, QObject* parent);
    QCustomSeparator* createSeparator(const cCommandRow& row, QObject* parent);
    void createRecentActions();
    void createPluginMenu();
    void buildScreenElementsMenu();
    QCustomAction* addElement(const QString& text, void (cMainWindow::*slot)());

    // Updates (tMainWindowUpdate.cpp)
    void updateMenuVisibility();
    void setActionChecked(const char* id, bool checked);
    void updateSettingChecks();
    bool toggle(bool& setting);
    bool toggleAndRedraw(bool& setting, int mask, const char* on, const char* off);
    void toggleHideBit(int bit);
    void setViewType(int type, int mode);
    void activateProject(cProject* project);
    void returnToActiveProject();
    void updateTimers();
    cProject* projectOf(const cCanvas* canvas) const;

    // Events (tMainWindowEvents.cpp)
    bool takesKeys(QObject* watched) const;
    void keyDown(int key);
    void keyUp(int key);
    bool changeGridByKey(int key);
    void setGridSize(int size);
    void keepShortcut(QEvent* event);
    void runKeptShortcut(int key, Qt::KeyboardModifiers modifiers);
    void leaveFaceMode();
    void tellUnderDevelopment(const QString& command);

    // Files (tMainWindowFile.cpp)
    QString openFilters() const;
    QList<cSaveFilter> exportFilters(bool mapOnly) const;
    QString startDirectory() const;

    // Layout (tMainWindowLayout.cpp)
    bool readMainBlock(QFile& file);
    bool readBrowserBlock(QFile& file);
    bool readChildBlock(QFile& file);
    bool writeMainBlock(QFile& file);
    bool writeBrowserBlock(QFile& file);
    bool writeChildBlock(QFile& file);
    void loadColorSchemes();

    QPalette m_startPalette; // what the application had at start
    bool m_paletteChanged = false;

    std::unique_ptr<cColorScheme> m_colors;
    std::unique_ptr<cModelManager> m_models;
    std::unique_ptr<cTextureManager> m_textures;
    std::unique_ptr<cGameDataRegistry> m_gameData;
    std::unique_ptr<cFlagCaptions> m_captions;
    std::unique_ptr<cPrimitiveList> m_primitives;
    std::unique_ptr<cGameConfigRegistry> m_configs;
    std::unique_ptr<cPluginManager> m_plugins;

    QDockWidget* m_consoleDock = nullptr;
    QTextEdit* m_consoleText = nullptr;
    QElapsedTimer m_consoleEvents; // since the console last let events run
    QMdiArea* m_mdiArea = nullptr;
    QSignalMapper* m_windowMapper = nullptr;
    std::array<QLabel*, STATUS_PANES> m_statusPanes = {};
    std::unique_ptr<QGLWidget> m_shareWidget;
    std::unique_ptr<cWaitDialog> m_waitDialog;

    QList<QMenu*> m_menus; // of the menu bar
    QList<QToolBar*> m_toolBars;
    QList<QMenu*> m_popups;
    QMenu* m_windowMenu = nullptr;
    QMenu* m_pluginMenu = nullptr;
    QMenu* m_elementsMenu = nullptr;
    QAction* m_recentSeparator = nullptr;
    QAction* m_recentEnd = nullptr;
    QAction* m_windowSeparator = nullptr;
    QList<QAction*> m_recentActions;
    QList<QCustomAction*> m_pluginActions;
    QList<QCustomAction*> m_elementActions;
    QList<QAction*> m_windowActions;
    QList<const cCommandRow*> m_rowsWithShortcut; // whose first action exists already

    QByteArray m_browserGeometry; // of the texture browser, whose place in the file is kept
    QByteArray m_childGeometry;
    quint8 m_childMaximized = 0;
    quint8 m_hasChildLayout = 0;
};

// SPDX-License-Identifier: MIT
// The one main window. It owns every long-lived service and the open documents, is the host of
// the core and of the views, and holds a slot for each command. Its code lies by subject in
// tMainWindow*.cpp. A command slot is thin: find the active document, ask, call one operation.
#pragma once

#include "operations/tDefaultRoom.h"
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
class QCheckBox;
class QComboBox;
class QDockWidget;
class QFile;
class QLabel;
class QListWidgetItem;
class QMdiArea;
class QMdiSubWindow;
class QPushButton;
class QSignalMapper;
class QSpinBox;
class QSplashScreen;
class QTextEdit;
class QVisGroupList;
class cArchDialog;
class cChildWindow;
class cClipboard;
class cColorScheme;
class cEntityListDialog;
class cFlagCaptions;
class cGameConfigRegistry;
class cGameDataRegistry;
class cModelManager;
class cPluginManager;
class cPrimitiveList;
class cProject;
class cTextureManager;
class cWaitDialog;
class QCustomAction;
class QCustomSeparator;
struct cEntityClassNode;
struct cEntityData;
struct cGameConfig;
struct cMapFormat;
struct cPasteOptions;

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
    static constexpr int CONSOLE_LINES = 10000; // the console keeps the last of them

    cMainWindow();
    ~cMainWindow() override;

    // ---- Documents

    cChildWindow* activeChild() const; // of the active sub-window, else of the current one
    cProject* activeProject() const;
    const cMapProfile& profile() const; // of the active document's game
    cChildWindow* addChild(cProject* project);
    cProject* findProjectByPath(const QString& path) const;
    void removeProject(cProject* project);
    // Opens a file, or raises the windows that show it already. False after a beep.
    bool openFile(const QString& path);
    // The command line's file; a name without a point is ignored.
    void openArgument(const QString& path);
    // The windows of a new or opened project, by the user's settings.
    void createProjectWindows(cProject* project);
    // Every document asks once, before the first of its windows goes; one that refuses keeps them
    // all. False if one has stayed.
    bool closeAllWindows();
    void openGameProfiles(); // where game configurations are set up

    // ---- cHost

    void consoleMessage(eMessage level, const char* text) override;
    bool isPrecaching() const override;
    void showProgress(const QString& text) override;
    void setStatusPane(const QString& text, int pane) override;
    void busyEnded() override;
    void mapChanged(cMap& map, unsigned what) override;
    int currentToolId() const override;
    const uint8_t* schemeColor(int index) const override;

    // ---- cViewHost

    void setActiveCanvas(cCanvas* canvas) override;
    // The view of the active window that commands go to, and the 2D view for those that go by
    // its axes. Null without a document or such a view.
    cCanvas* commandCanvas() const;
    cCanvas* flatCanvas() const;
    cTool* cameraTool() const override;
    QMenu* popupMenu(const char* title) const override;
    cGLWidget* shareWidget() override;
    void openObjectProperties() override; // as by its command, where that is enabled
    void updateViewControls() override;
    bool isActiveWindow(const cChildWindow* window) const override;
    const QCursor& toolCursor(eToolCursor cursor) const override { return m_toolCursors[cursor]; }
    const QPixmap& cameraIcon() const override { return cameraCursor; }
    void notifyTools(); // every tool gets the active canvas; then refreshes the Edit commands
    void updateUi();    // menus, bars and docks
    void setTool(int id) override;
    const cPrimitive* currentPrimitive() const override;
    cEntityClass* currentClass() override; // looked up again when its name or the game changes
    cTexture* currentTexture() override;   // of the map profile
    bool randomYaw() const override;
    // parts: 1 hides the point classes, 2 rebuilds their menu, 4 that of the solid classes.
    void updateEntityMenus(const QString& text, int parts) override;

    // ---- New objects (tMainWindowObjects.cpp)

    // The room that the user wants a new map to begin with; null for none. False: no map is wanted
    // at all. The dialog is skipped as the settings say, unless it is forced.
    bool askDefaultRoom(bool forced, const cRoomShape** room);
    cArchDialog& archDialog(); // one for the program's life: it keeps its values

    // The one for precaching; a wait window that is up already stays.
    void showWaitDialog(const QString& text);
    void hideWaitDialog();

    // ---- Console

    // Text that is not HTML is shown as it stands, markup and all.
    void appendConsole(const QString& text, bool isHtml, bool bold);
    void appendConsoleColored(const QString& text, bool isHtml, bool bold, const QColor& color);

    // ---- Refreshing

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
    // proposal: a name without extension. Null: cancelled.
    QString askSaveName(const QString& directory, const QList<cSaveFilter>& filters,
                        const QString& proposal = QString());

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
    QList<cProject*> projects; // open documents, in opening order, owned
    QStringList recentFiles;   // most recent first
    std::array<std::unique_ptr<cTool>, TOOL_COUNT> tools;
    std::vector<QAction*> actions;           // every action and named separator made from the table
    std::vector<QCustomAction*> toolActions; // of the tool bar
    QString currentClassName;                // of the point entity that is created next
    bool currentClassStale = false;          // its reader looks the name up again
    QString tieClassName;                    // for the next Tie to Entity

    // True if no vertex morph is under way, or the user lets it end.
    bool confirmLeaveMorph(const QString& question);
    bool confirmLeaveMorph(); // for commands that change brushes

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
    void exportOrBeep(cProject& project); // to its exportPath
    QString withSuffix(const QString& name, const QString& suffix);
    void msgFeatureUnderDevelopment(); // names the sender

    void cmdFileNew();
    void cmdFileOpen();
    void cmdFileClose();
    void cmdFileCloseAll();
    void cmdFileSave();
    void cmdFileSaveAs();
    void cmdFileExport();
    void cmdFileExportAgain();
    void cmdFileRun();
    void cmdFileExit();

    void cmdEditUndo();
    void cmdEditRedo();
    void cmdEditToggleUndoRedo();
    void cmdEditCut();
    void cmdEditCopy();
    void cmdEditPaste();
    void cmdEditPasteSpecial();
    void cmdEditDelete();
    void cmdEditSelectTouching();
    void cmdEditSelectInside();
    void cmdEditSelectHandles();
    void cmdEditSelectNone();
    void cmdEditSelectAll();
    void cmdEditSelectByHandles();
    void cmdEditSelectAuto();
    void cmdEditCreateObject();
    void cmdEditCreateObjectEx();
    void cmdEditProperties();

    void cmdMapToggleGridSnap();
    void cmdMapToggleGrid();
    void cmdMapToggleGrid3D();
    void cmdMapSmallerGrid();
    void cmdMapBiggerGrid();
    void cmdMapLoadWindowState();
    void cmdMapSaveWindowState();
    void cmdMapGotoBrush();
    void cmdMapGotoCoords();
    void cmdMapShowInfo();
    void cmdMapEntityReport();
    void cmdMapCheckForProblems();
    void cmdMapProperties();
    void cmdMapLoadPointfile();
    void cmdMapUnloadPointfile();
    void cmdMapLoadPortalfile();
    void cmdMapUnloadPortalfile();

    void cmdView2DXY();
    void cmdView2DYZ();
    void cmdView2DXZ();
    void cmdView3DWireframe();
    void cmdView3DFilled();
    void cmdView3DTextured();
    void cmdViewAutosize();
    void cmdViewCenterOnSelection();
    void cmdViewToggleTexTrans();
    void cmdViewToggleEntTrans();
    void cmdViewToggleConnections();
    void cmdViewToggleModels2D();
    void cmdViewToggleNodraw();
    void cmdViewToggleItems();
    void cmdViewTogglePaths();
    void cmdViewToggleDetail();
    void cmdViewHideSelection();
    void cmdViewHideNotSelection();
    void cmdViewShowHidden();

    void cmdToolsCarve();
    void cmdToolsMerge();
    void cmdToolsHollow();
    void cmdToolsGroup();
    void cmdToolsUngroup();
    void cmdToolsIgnoreGroups();
    void cmdToolsMakeStructural();
    void cmdToolsMakeDetail();
    void cmdToolsTieToEntity();
    void cmdToolsTieToEntityEx();
    void cmdToolsMoveToWorld();
    void cmdToolsTextureReplace();
    void cmdToolsTextureLock();
    void cmdToolsTextureLockScale();
    void cmdToolsTextureAlignToView();
    void cmdToolsTextureAlignment();
    void cmdToolsSnapToGrid();
    void cmdToolsSnapToGrid2();
    void cmdToolsTransform();
    void cmdToolsToggleVertexRes();
    void cmdToolsAlignLeft();
    void cmdToolsAlignRight();
    void cmdToolsAlignTop();
    void cmdToolsAlignBottom();
    void cmdToolsFlipHorz();
    void cmdToolsFlipVert();
    void cmdToolsCordon();
    void cmdToolsOptions();

    void toolSelect() override;
    void toolMagnify();
    void toolCamera();
    void toolEntity();
    void toolBrush();
    void toolTextureApplication();
    void toolApplyTexture();
    void toolApplyDecals();
    void toolClipper();
    void toolVertexManipulation();
    void toolCordon();
    void toolPath();

    void cmdWindowNew();
    void cmdWindowCascade();
    void cmdWindowTile();
    void cmdWindowNext();
    void cmdWindowPrev();
    void cmdWindowMessages();
    void cmdWindowExportMessages();

    void cmdHelpTopics();
    void cmdHelpOnWeb();
    void cmdHelpCmdList();
    void cmdHelpAbout();

    void editCategoryList();
    void editObjectList();
    void editFaceCount(int count);

    void assignVisGroup();
    void editVisGroups();
    void markVisGroup();
    void purgeVisGroups();
    void selectVisGroup(QListWidgetItem* item);
    void changeVisGroupVis(QListWidgetItem* item);
    void mergeVisGroups(QListWidgetItem* source, QListWidgetItem* target);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    // Construction, in order (tMainWindow.cpp)
    void resizeToScreen();
    void createDocks();
    QDockWidget* addDock(const QString& title, const char* name, QWidget* widget,
                         Qt::DockWidgetArea area, Qt::DockWidgetAreas allowed);
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
    QMenu* openSubMenu(const char* title, QMenu* menu);
    void createMenuRow(const cCommandRow& row, QMenu* menu);
    void createBars();
    void createPopups();
    void createNamedMenu(const cCommandRow& row, QMenu* menu);
    QCustomAction* createAction(const cCommandRow& row, QObject* parent);
    QCustomAction* makeAction(const cCommandRow& row, QObject* parent); // without entering it
    QCustomSeparator* createSeparator(const cCommandRow& row, QObject* parent);
    QCustomSeparator* createBarSeparator(const cCommandRow& row, QToolBar* bar);
    void createRecentActions();
    void createPluginMenu();
    void buildScreenElementsMenu();
    QCustomAction* addElement(const QString& text, void (cMainWindow::*slot)());
    void insertBarElement(const QToolBar* bar);
    void createToolBar();            // tMainWindowToolBar.cpp
    void createWebMenu(QMenu* menu); // tMainWindowHelp.cpp

    // Class menus (tMainWindowClasses.cpp)
    void rebuildClassMenus(const cGameConfig& config, int parts);
    void rebuildClassMenu(const char* placeholder, const cEntityClassNode& root, cCommandSlot slot,
                          QList<QAction*>& entries);
    void addClassNode(const cEntityClassNode& node, QMenu* menu, cCommandSlot slot);
    void setTextOf(const char* id, const QString& text);

    // Tools (tMainWindowTools.cpp)
    void switchTool(int id);
    void setPendingTool(int id);
    void setTemporaryTool(int id);
    void endSuspendedTool(int next);
    void makeCurrent(int id);
    void refreshToolViews();

    // Editing (tMainWindowEdit.cpp, tMainWindowGroups.cpp)
    void dropHiddenEverywhere();
    cMap* mapToGroup(const char* refusal) const;
    void setDetail(bool detail);
    void createVisGroupDock();
    void rebuildVisGroupList();

    // The clipboard of objects (tMainWindowClipboard.cpp)
    void createClipboard();
    void pasteTarget(float target[3]);
    void pasteObjects(cMap& map, const cPasteOptions& options, const char* stepName);

    // Tie to Entity (tMainWindowTie.cpp)
    bool canTie(cMap& map);
    bool confirmDeselectPoints(cMap& map);
    void chooseTieTarget(cMap& map);
    void confirmTieTo(cMap& map, cEntityData* owner);
    void listTieTargets(const std::vector<cEntityData*>& owners);
    // What maps have told since the last turn of the event loop, to all that shows them; before a
    // press or a key as well, which must not meet what is old.
    void showChanges();
    void showChange(cProject& project, unsigned what);
    void updateEntityList(); // what is gone from the map goes from the list
    void tieToListed();
    void cancelTie();
    void tieSelection(cMap& map, cEntityData* target);

    // New objects (tMainWindowObjects.cpp)
    void registerPrimitives();
    void createObjectDock();
    QWidget* createObjectButtons();
    void updateObjectDock();
    void fillCategories();
    void fillObjects();
    void updateFaceCount();
    QStringList pointClassNames() const; // of the current configuration, in order

    // Updates (tMainWindowUpdate.cpp)
    struct cActionStates;
    cActionStates actionStates() const;
    static void applyHistoryStates(QAction* action, const cActionStates& states);
    void updateMenuVisibility();
    void setActionChecked(const char* id, bool checked);
    void updateSettingChecks();
    bool toggle(bool& setting);
    bool toggleAndRedraw(bool& setting, int mask, const char* on, const char* off);
    void toggleHideBit(int bit);
    void setViewType(int type, int mode);
    void activateProject(cProject* project);
    void returnToActiveProject();
    void leaveViews();
    void enterViews(const cChildWindow& child);
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
    void showFloatingDocks();
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

    std::unique_ptr<cArchDialog> m_archDialog;
    cRoomShape m_room;
    QByteArray m_roomProfile; // name of the map profile whose textures it got
    QComboBox* m_categories = nullptr;
    QComboBox* m_objects = nullptr;
    QSpinBox* m_faceCount = nullptr;
    QCheckBox* m_randomYaw = nullptr;
    QList<QWidget*> m_objectLists;   // with their labels
    QList<QWidget*> m_brushButtons;  // of the dock, that want a selected brush
    QList<QWidget*> m_objectButtons; // and whatever else wants a document only
    size_t m_primitive = 0;          // place in the list of primitives
    int m_listedTool = -2; // whose objects the dock lists; -1 for none, -2 before the first time
    const cGameConfig* m_listedConfig = nullptr; // only compared
    cEntityClass* m_currentClass = nullptr;

    QVisGroupList* m_visGroups = nullptr;
    QPushButton* m_btnAssign = nullptr;
    QPushButton* m_btnMark = nullptr;
    QList<QWidget*> m_visGroupWidgets; // all six of the dock

    const cGameConfig* m_classMenuConfig = nullptr; // only compared
    QList<QAction*> m_pointClassEntries;
    QList<QAction*> m_solidClassEntries;
    bool m_pointClassesHidden = false;
    QString m_createText; // the class that EditCreate names

    QDockWidget* m_consoleDock = nullptr;
    QTextEdit* m_consoleText = nullptr;
    QElapsedTimer m_consoleEvents; // since the console last let events run
    QMdiArea* m_mdiArea = nullptr;
    QSignalMapper* m_windowMapper = nullptr;
    std::array<QLabel*, STATUS_PANES> m_statusPanes = {};
    std::array<QCursor, TC_COUNT> m_toolCursors;
    std::unique_ptr<cGLWidget> m_shareWidget;
    std::unique_ptr<cWaitDialog> m_waitDialog;
    std::unique_ptr<cClipboard> m_clipboard; // g_clipboard
    QPointer<cEntityListDialog> m_entityList;
    cProject* m_listedProject = nullptr;  // whose entities it shows
    QHash<cProject*, unsigned> m_changes; // MC_ bits, not shown yet

    QList<QMenu*> m_menus; // of the menu bar
    QList<QToolBar*> m_toolBars;
    QList<QAction*> m_barSeparators;
    QList<QMenu*> m_popups;
    QMenu* m_windowMenu = nullptr;
    QMenu* m_pluginMenu = nullptr;
    QMenu* m_elementsMenu = nullptr;
    QMenu* m_schemesMenu = nullptr;
    QAction* m_elementsEnd = nullptr; // of the bars in the menu of screen elements
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

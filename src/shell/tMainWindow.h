// SPDX-License-Identifier: MIT
// The one main window. It owns every long-lived service, the open documents and its own parts
// (docks, menus, panes, stored files: a class each), is the host of the core and of the views, and
// has a slot for each command. Its code lies by subject in tMainWindow*.cpp. A command slot is
// thin: find the active document, ask, call one operation.
#pragma once

#include "operations/tDefaultRoom.h"
#include "shell/tCommandState.h"
#include "support/tHost.h"
#include "views/tViewHost.h"

#include <QCursor>
#include <QHash>
#include <QMainWindow>
#include <QPalette>
#include <QPixmap>
#include <array>
#include <memory>

class QApplication;
class QMdiArea;
class QMdiSubWindow;
class QSplashScreen;
class cChildWindow;
class cClassMenus;
class cClipboard;
class cCommandMenus;
class cConsoleDock;
class cFilterDock;
class cLayoutStorage;
class cMainWindow;
class cObjectsDock;
class cProject;
class cRecentFiles;
class cScreenElements;
class cSettingsStorage;
class cStatusPanes;
class cTextureBrowserDialog;
class cTextureReplaceDialog;
class cTextureUpload;
class cTexturesDock;
class cTieToEntity;
class cToolSwitch;
class cWaitDialog;
class cWindowList;
struct cServices;

extern cMainWindow* g_mainWindow;   // set as the first act of its constructor
extern QApplication* g_application; // made by main
extern QSplashScreen* g_splash;     // null once start-up is over
extern bool g_closing;              // from the start of the close until it is vetoed or done

class cMainWindow : public QMainWindow, public cHost, public cViewHost {
    Q_OBJECT

public:
    static constexpr int MESSAGE_TIME = 5000; // ms that a short state message stays

    cMainWindow();
    ~cMainWindow() override;
    static QString helpTip() { return tr("For Help, press F1"); }

    // ---- Documents

    cChildWindow* activeChild() const; // of the active sub-window, else of the current one
    cProject* activeProject() const;
    const cMapProfile& profile() const; // of the active document's game
    cChildWindow* addChild(cProject* project);
    cProject* findProjectByPath(const QString& path) const;
    void removeProject(cProject* project);
    // Opens a file, or raises the windows that show it already. False after a beep.
    bool openFile(const QString& path);
    void openArgument(const QString& path);       // of the command line; ignored without a point
    void createProjectWindows(cProject* project); // a new or opened one's, by the settings
    // Every document asks once, before the first of its windows goes; one that refuses keeps them
    // all. False if one has stayed.
    bool closeAllWindows();
    void openGameProfiles(); // where game configurations are set up
    // The room that the user wants a new map to begin with; null for none. False: no map is wanted
    // at all. The dialog is skipped as the settings say, unless it is forced.
    bool askDefaultRoom(bool forced, const cRoomShape** room);
    // The one for precaching; a wait window that is up already stays.
    void showWaitDialog(const QString& text);
    void hideWaitDialog();

    // ---- cHost

    void consoleMessage(eMessage level, const char* text) override;
    bool isPrecaching() const override;
    void showProgress(const QString& text) override;
    void setStatusPane(const QString& text, int pane) override; // ePane
    void busyEnded() override;
    void mapChanged(cMap& map, unsigned what) override;
    bool picksFaces() const override;
    const uint8_t* schemeColor(int index) const override;

    // ---- cViewHost

    void setActiveCanvas(cCanvas* canvas) override;
    // The view of the active window that commands go to, and the 2D view for those that go by
    // its axes. Null without a document or such a view.
    cCanvas* commandCanvas() const;
    cCanvas* flatCanvas() const;
    int currentToolId() const; // TOOL_; -1 before there are tools
    cTool* cameraTool() const override;
    QMenu* popupMenu(const char* title) const override;
    cGLWidget* shareWidget() override;
    void openObjectProperties() override; // as by its command, where that is enabled
    void updateViewControls() override { updateCommands(); }
    bool isActiveWindow(const cChildWindow* window) const override;
    const QCursor& toolCursor(eToolCursor cursor) const override { return m_toolCursors[cursor]; }
    const QPixmap& cameraIcon() const override { return m_cameraCursor; }
    void setTool(int id) override;
    const cPrimitive* currentPrimitive() const override;
    cEntityClass* currentClass() override;
    cTexture* currentTexture() override; // of the active document
    bool randomYaw() const override;
    void updateEntityMenus(const QString& text, int parts) override; // as cClassMenus::update

    // ---- Textures

    // Lets the user pick one by eye, among those of a group or, with an empty name, of all. Gives
    // the name it ended on, which may be the one it began with. Windows that stay on top make room
    // meanwhile.
    QString browseTexture(const QString& name, const QString& group);
    // The name of what has taken the texture's place, or empty.
    QString replaceTextures(const QString& name);

    // ---- Settings

    // The one way settings change while the program runs: takes them over and does what follows
    // from each that differs, by the effects of its row. Gives them back, eSettingEffect bits.
    unsigned applySettings(const cSettings& after);
    void setGridSize(int size); // within its limits
    void applyPalette();        // the application's, of the colour scheme

    // ---- Refreshing

    void notifyTools();    // every tool gets the active canvas
    void updateCommands(); // all that follows the state of the program: commands and objects dock
    void updateUi();       // menus, bars and docks
    void redrawAllViews(int mask);

    // ---- Parts

    cCommandMenus& menus() { return *m_menus; }
    cToolSwitch& toolSwitch() { return *m_tools; }
    cTieToEntity& tieToEntity() { return *m_tieToEntity; }
    cRecentFiles& recentFiles() { return *m_recentFiles; }
    cConsoleDock& console() { return *m_console; }
    cStatusPanes& panes() { return *m_panes; }
    QMdiArea* mdiArea() const { return m_mdiArea; }
    cServices& services() const { return *m_services; }

    QList<cProject*> projects; // open documents, in opening order, owned

    // True if no vertex morph is under way, or the user lets it end. Empty: the usual question.
    bool confirmLeaveMorph(const QString& question = QString());

public slots:
    void changeSubwindowActiveState(QMdiSubWindow* window);
    void setActiveChildWindow(QWidget* window);
    void checkActiveState(bool clearConfig);
    void updateScreenElements();
    void execBrowseTexture();
    void runPluginAction();
    void toolApplyTexture();
    void cmdToolsTextureReplace();
    void cmdToolsTextureAlignToView();
    void msgFeatureUnderDevelopment(); // names the sender: a command that is not built yet
    void toggleSetting();              // that of the sender's row, as its check mark says

    void cmdFileNew();
    void cmdFileOpen();
    void cmdFileClose();
    void cmdFileCloseAll();
    void cmdFileSave();
    void cmdFileSaveAs();
    void cmdFileExport();
    void cmdFileExportAgain();
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
    void cmdEditCreateObject();
    void cmdEditCreateObjectEx();
    void cmdEditProperties();

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
    void cmdViewCenterOnSelection();
    void cmdViewHideSelection();
    void cmdViewHideNotSelection();
    void cmdViewShowHidden();

    void cmdToolsGroup();
    void cmdToolsUngroup();
    void cmdToolsMakeStructural();
    void cmdToolsMakeDetail();
    void cmdToolsTieToEntity();
    void cmdToolsTieToEntityEx();
    void cmdToolsMoveToWorld();
    void cmdToolsSnapToGrid();
    void cmdToolsSnapToGrid2();
    void cmdToolsTransform();
    void cmdToolsAlignLeft();
    void cmdToolsAlignRight();
    void cmdToolsAlignTop();
    void cmdToolsAlignBottom();
    void cmdToolsFlipHorz();
    void cmdToolsFlipVert();

    void toolSelect() override;
    void toolMagnify();
    void toolCamera();
    void toolEntity();
    void toolBrush();
    void toolTextureApplication();
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
    void cmdHelpCmdList();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    // Construction, in order (tMainWindow.cpp)
    void connectConfigs();
    void createDocks();
    void createDialogs();
    void createMdiArea();
    void createMenus();
    void createPluginMenu(); // tMainWindowPlugins.cpp
    void createWebMenu();    // tMainWindowHelp.cpp

    // Documents (tMainWindowDocument.cpp, tMainWindowFile.cpp)
    void activateProject(cProject* project);
    void returnToActiveProject();
    void updateTimers();
    // What maps have told since the last turn of the event loop, to all that shows them; before a
    // press or a key as well, which must not meet what is old.
    void showChanges();
    void showChange(cProject& project, unsigned what);
    void tellUnderDevelopment(const QString& command);

    // Commands
    cCommandState commandState() const;
    void updateSnapPane();
    void updateBoxPane(); // of the current tool's box in the active document
    void setPendingTool(int id);
    void leaveFaceMode();
    void showTool(); // the current one, in views and commands

    QPalette m_startPalette; // what the application had at start
    bool m_paletteChanged = false;
    std::array<QCursor, TC_COUNT> m_toolCursors;
    QPixmap m_cameraCursor;
    cRoomShape m_room;                    // as it was asked for last
    QByteArray m_roomProfile;             // name of the map profile whose textures it got
    QHash<cProject*, unsigned> m_changes; // MC_ bits, not shown yet

    std::unique_ptr<cClipboard> m_clipboard; // g_clipboard
    std::unique_ptr<cServices> m_services;
    std::unique_ptr<cGLWidget> m_shareWidget;
    std::unique_ptr<cTextureUpload> m_textureUpload;
    std::unique_ptr<cWaitDialog> m_waitDialog;
    cConsoleDock* m_console = nullptr;
    cObjectsDock* m_objectsDock = nullptr;
    cTexturesDock* m_texturesDock = nullptr;
    cFilterDock* m_filterDock = nullptr;
    cTextureBrowserDialog* m_textureBrowser = nullptr;
    cTextureReplaceDialog* m_textureReplace = nullptr;
    QMdiArea* m_mdiArea = nullptr;
    std::unique_ptr<cStatusPanes> m_panes;
    std::unique_ptr<cCommandMenus> m_menus;
    std::unique_ptr<cClassMenus> m_classMenus;
    std::unique_ptr<cScreenElements> m_elements;
    std::unique_ptr<cWindowList> m_windowList;
    std::unique_ptr<cRecentFiles> m_recentFiles;
    std::unique_ptr<cSettingsStorage> m_storage;
    std::unique_ptr<cLayoutStorage> m_layout;
    std::unique_ptr<cToolSwitch> m_tools;
    std::unique_ptr<cTieToEntity> m_tieToEntity;
};

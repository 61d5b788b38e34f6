// SPDX-License-Identifier: MIT
// One open document: its map, its game configuration, its file names and its windows. Asks before
// it goes away. It lives in the shell because it holds windows and puts questions; the map knows
// it as an opaque pointer only.
#pragma once

#include "document/tMap.h"
#include "resources/tGameContext.h"
#include "views/tDocumentViews.h"

#include <QString>
#include <memory>

struct cGameConfig;
struct cMapFormat;

// The texture that new faces get, as the Textures dock shows it.
struct cTextureChoice {
    QString name;
    QString group; // that it was chosen from
};

class cProject : public cDocumentViews {
public:
    cProject();
    ~cProject() override;
    cProject(const cProject&) = delete;
    cProject& operator=(const cProject&) = delete;

    // Fills a fresh project. False: nothing was made; the caller deletes the project.
    bool newProject();
    bool loadProject(const QString& path);

    bool saveProject(const QString& path);   // project format, or what the suffix asks for
    bool exportProject(const QString& path); // neither dirty nor title change
    bool confirmClose();                     // "Save changes"; true: go on
    bool closeProject();                     // all windows, after the question; false: refused
    void detachWindows();                    // the program ends: no window knows the project

    // False: the map is as it is on disk. True: something changed that no undo takes back.
    void setDirty(bool flag);
    void changed(unsigned what); // MC_ bits; undo and redo may come back to what is on disk
    void updateTitles();
    QString baseName() const; // the title without extension, to propose for a file
    void reconfigure();       // the configurations are new objects
    void activateConfig();    // for file lookups, and the lists of textures and classes

    // ---- cDocumentViews

    bool windowClosing(cChildWindow* window) override;
    cConfigFolders* viewConfig() override;
    cMap* viewMap() override { return map.get(); }

    bool isNew = true; // until saved or loaded
    bool dirty = false;
    bool closing = false; // the last window has gone: nothing is asked any more
    QString path;         // empty on a new project
    QString exportPath;   // of the last export, not stored
    QString title;        // for window titles and questions
    QString gameConfigName;
    cGameContext game; // its configuration counts this project in its useCount
    std::unique_ptr<cMap> map;
    cTextureChoice texture; // empty until the document is first shown

private:
    bool selectGameConfig();
    void refuseWithoutConfig(const QString& text);
    void takeConfig(cGameConfig* config);
    void precacheConfig();
    void createWorldspawn();
    bool readFile(const QString& file, bool* isDamaged);
    void becomeRecovered(const QString& file);
    bool saveOrBeep(const QString& file);
    bool importMap(const QString& file);
    bool saveAsNewFile();
    void becomeFile(const QString& file);
    void findDirty();
    // Runs the formats that fit, in order; false at the first that fails.
    bool runFormats(const QList<const cMapFormat*>& formats, const QString& file);

    uint32_t m_savedState = 0;    // of the history
    bool m_changedBeside = false; // since the save, by what is no step
};

// SPDX-License-Identifier: MIT
// All that the core asks of the program above it. cMainWindow is the one host of the running
// program; a test brings its own. The core never includes the main window.
#pragma once

#include "support/tSettings.h"

#include <QString>
#include <cstdint>

class cMap;
class cProject;
struct cEntityClass;
struct cMapProfile;
struct cTexture;

enum class eMessage { Print, Debug, Warning, Error };

// How findClass looks a class up.
enum eClassFilter { CF_SOLID = 0, CF_POINT = 1, CF_WORLD = 2, CF_ANY = 3 };

// What an entity may show in place of its box; the value of cEntityData::attachKind.
enum eAttachKind { AK_NONE = 0, AK_SPRITE = 1, AK_DECAL = 2, AK_MODEL = 3 };

class cHost : public cSettings {
public:
    virtual ~cHost() = default;

    // One line for the message console; text is 8-bit in the locale codec and may hold markup.
    virtual void consoleMessage(eMessage level, const char* text) = 0;
    // True while a splash or wait window is up, when debug messages are dropped.
    virtual bool isPrecaching() const { return false; }
    virtual void showProgress(const QString& /*text*/) {}
    virtual void setStatusPane(const QString& /*text*/, int /*pane*/) {}

    // The last cBusy has gone: what views did not paint meanwhile is painted.
    virtual void busyEnded() {}

    virtual void projectDirty(cProject* /*project*/) {}
    virtual void historyChanged() {} // what can be undone or redone
    // The set of visgroups, their member counts or what is visible of them.
    virtual void visGroupsChanged(cMap& /*map*/) {}
    // An edit is about to change the map: a running vertex morph ends with what it has reached.
    virtual void endMorph() {}
    // False for a map whose texts stay out of the status panes, since another one is shown.
    virtual bool showsTextsOf(const cMap& /*map*/) const { return true; }
    // The selection sentence was just described; whoever shows the selection refreshes.
    virtual void selectionDescribed(cMap& /*map*/) {}
    virtual int currentToolId() const { return 0; }

    // The texture of that name under the current configuration, or null. No reference is taken.
    virtual cTexture* findTexture(const char* name) = 0;
    // A placeholder of that name; an existing one is returned again. No reference is taken.
    virtual cTexture* addMissingTexture(const char* name) = 0;
    // Lowers refCount and frees the texture at 0.
    virtual void releaseTexture(cTexture* texture) = 0;

    // The class of that name under the current configuration, or null.
    virtual cEntityClass* findClass(const char* name, eClassFilter filter) = 0;
    // The current configuration's map profile; all zero when there is none.
    virtual const cMapProfile& profile() const = 0;

    // The sprite or model record of that name, with a reference taken, or null.
    virtual void* acquireAttachment(eAttachKind /*kind*/, const char* /*name*/) { return nullptr; }
    virtual void releaseAttachment(eAttachKind /*kind*/, void* /*record*/) {}

    // RGBA of a scheme colour, by its index of support/tColors.h.
    virtual const uint8_t* schemeColor(int index) const = 0;
};

// Null before the main window exists and after it has gone.
extern cHost* g_host;

// While an instance lives, views paint nothing: the map is half built. They make up for it when
// the last one goes. Nests.
class cBusy {
public:
    cBusy();
    ~cBusy();
    cBusy(const cBusy&) = delete;
    cBusy& operator=(const cBusy&) = delete;

    static bool isBusy();
};

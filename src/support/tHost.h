// SPDX-License-Identifier: MIT
// All that the core asks of the program above it. cMainWindow is the one host of the running
// program; a test brings its own. The core never includes the main window.
#pragma once

#include "support/tSettings.h"

#include <QString>
#include <cstdint>

class cMap;
class cProject;

enum class eMessage { Print, Debug, Warning, Error };

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

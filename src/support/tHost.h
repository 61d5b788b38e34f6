// SPDX-License-Identifier: MIT
// All that the core asks of the program above it. cMainWindow is the one host of the running
// program; a test brings its own. The core never includes the main window.
#pragma once

#include "support/tSettings.h"

#include <QString>
#include <cstdint>

class cMap;

enum class eMessage { Print, Debug, Warning, Error };

// What changes in a map.
enum eMapChange : unsigned {
    MC_OBJECTS = 1,   // what views show
    MC_SELECTION = 2, // what is selected, or how it is described
    MC_VISGROUPS = 4, // the set of visgroups, their members, what is visible of them
    MC_HISTORY = 8,   // what can be undone or redone
    MC_EDITED = 16,   // something that is not saved; without MC_HISTORY, that undo leaves alone
    MC_ALL = 31
};

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

    // The one word of a change, MC_ bits; at the end of each step of the history, and of whatever
    // else changes a map. Who shows it refreshes, later and once for many.
    virtual void mapChanged(cMap& /*map*/, unsigned /*what*/) {}
    // An edit is about to change the map: a running vertex morph ends with what it has reached.
    virtual void endMorph() {}
    // The tool in use picks faces, not objects.
    virtual bool picksFaces() const { return false; }

    // RGBA of a scheme colour, by its index of support/tColors.h.
    virtual const uint8_t* schemeColor(int index) const = 0;
};

// Never null: before the main window exists and after it has gone it is a host that hears nothing
// and has the settings' defaults.
extern cHost* g_host;

void setHost(cHost* host); // null: nobody listens any more
bool isHeard();            // somebody listens

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

// SPDX-License-Identifier: MIT
// What the commands depend on, gathered once for each update: whether they are there, enabled and
// checked, and how those read that name something. The rows of the command table ask it.
#pragma once

#include "support/tSettings.h"

#include <QString>

struct cCommandState {
    const cSettings* settings = nullptr;

    // ---- The active document; false and empty without one

    bool hasDocument = false;
    bool canCopy = false;
    bool canPaste = false;
    bool canGroup = false;
    bool canUndo = false;
    bool canRedo = false;
    bool hasSelection = false;
    bool hasBrushes = false; // selected ones
    bool hasDetail = false;  // its game knows detail brushes
    bool hasDecals = false;  // likewise
    int viewType = -1;       // of the view that commands go to
    int renderMode = -1;     // likewise

    // ---- The program

    int tool = -1; // the current one
    bool showsConsole = false;

    // ---- What the commands read that name something

    QString undoText;
    QString redoText;
    QString historyText; // of the one that turns undo off or on
    QString createText;
    QString tieText;
};

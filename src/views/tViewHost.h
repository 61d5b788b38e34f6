// SPDX-License-Identifier: MIT
// What the views ask of the main window beyond cHost. cMainWindow implements it.
#pragma once

#include <cstdint>

class QGLWidget;
class QMenu;
class cCanvas;
class cTool;

// Bits of heldKeys by number: the navigation keys held down.
enum eHeldKey { HK_LEFT, HK_RIGHT, HK_UP, HK_DOWN, HK_W, HK_S, HK_A, HK_D, HK_C };

class cViewHost {
public:
    virtual ~cViewHost() = default;

    // The canvas becomes active; the one before is told and becomes the previous one.
    virtual void setActiveCanvas(cCanvas* canvas) = 0;
    virtual cTool* cameraTool() const = 0;
    virtual QMenu* popupMenu(const char* title) const = 0; // a pop-up of the command table
    virtual QGLWidget* shareWidget() = 0; // the hidden widget all views share their context with
    virtual void openObjectProperties() = 0;
    virtual void updateViewControls() = 0; // check marks of the view commands
    virtual bool isActiveWindow(const class cChildWindow* window) const = 0;

    uint32_t heldKeys = 0;             // eHeldKey bits
    cCanvas* activeCanvas = nullptr;   // cleared by the canvas's destructor
    cCanvas* previousCanvas = nullptr; // likewise
    cTool* currentTool = nullptr;
    cTool* suspendedTool = nullptr; // goes on drawing while a temporary tool is current
};

extern cViewHost* g_viewHost;

// SPDX-License-Identifier: MIT
// What the views ask of the main window beyond cHost. cMainWindow implements it.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <QString>
#include <cstdint>

class QCursor;
class QMenu;
class QPixmap;
class cCanvas;
class cGLWidget;
class cTool;
struct cEntityClass;

// Bits of heldKeys by number: the navigation keys held down.
enum eHeldKey { HK_LEFT, HK_RIGHT, HK_UP, HK_DOWN, HK_W, HK_S, HK_A, HK_D, HK_C };

// The cursors that tools set.
enum eToolCursor {
    TC_MAGNIFY,
    TC_CROSS,
    TC_TEXTURE,
    TC_DECAL,
    TC_ENTITY,
    TC_BRUSH,
    TC_ROTATE,
    TC_COUNT
};

class cViewHost {
public:
    virtual ~cViewHost() = default;

    // The canvas becomes active; the one before is told and becomes the previous one.
    virtual void setActiveCanvas(cCanvas* canvas) = 0;
    virtual cTool* cameraTool() const = 0;
    virtual QMenu* popupMenu(const char* title) const = 0; // a pop-up of the command table
    virtual cGLWidget* shareWidget() = 0; // the hidden widget all views share their context with
    virtual void openObjectProperties() = 0;
    virtual void updateViewControls() = 0; // check marks of the view commands
    virtual bool isActiveWindow(const class cChildWindow* window) const = 0;
    virtual const QCursor& toolCursor(eToolCursor cursor) const = 0;
    virtual const QPixmap& cameraIcon() const = 0; // of the camera tool's look drag
    virtual void setTool(int id) = 0;              // the tool becomes current, as by its button
    virtual void toolSelect() = 0;                 // leaves the current tool

    // ---- What the creating tools make next. Null: nothing is chosen.

    virtual const cPrimitive* currentPrimitive() const { return nullptr; }
    virtual cEntityClass* currentClass() { return nullptr; } // of point entities
    virtual cTexture* currentTexture() { return nullptr; }   // of new faces
    virtual bool randomYaw() const { return false; }         // new entities look anywhere
    // Class menus and the texts that name a class: the class that is created, or empty. With
    // part 1 the menu of point classes is hidden.
    virtual void updateEntityMenus(const QString& /*text*/, int /*parts*/) {}

    uint32_t heldKeys = 0;             // eHeldKey bits
    cCanvas* activeCanvas = nullptr;   // cleared by the canvas's destructor
    cCanvas* previousCanvas = nullptr; // likewise
    cTool* currentTool = nullptr;
    cTool* suspendedTool = nullptr; // goes on drawing while a temporary tool is current
};

extern cViewHost* g_viewHost;

// SPDX-License-Identifier: MIT
// The windows of one open document and what goes over all of them. cProject derives from it, so
// views reach their document without knowing the shell.
#pragma once

#include "document/tSelectionBox.h"

#include <QList>
#include <array>

class cCanvas;
class cChildWindow;
class cMap;
struct cConfigFolders;

// Masks of redrawViews.
enum { REDRAW_2D = 1, REDRAW_3D = 2, REDRAW_ALL = 3 };

// What the selection tool keeps of a document beside its box.
struct cSelectionFrame {
    float center[3] = {};    // of the box when the selection was last measured; drags count from it
    float size[3] = {};      // likewise
    int count = 0;           // selected entities plus brushes
    uint64_t selection = 0;  // which objects those are
    uint64_t edits = 0;      // of the map, as it was measured
    bool rubberBand = false; // the box is a rubber band, not the selection's
    bool moved = false;      // by a drag inside the box, since the last plain click
    int handleMode = 0;      // eHandleMode
};

class cDocumentViews {
public:
    virtual ~cDocumentViews() = default;

    // A user closes a window; false vetoes. After true the window no longer knows the document.
    virtual bool windowClosing(cChildWindow* window) = 0;
    // The configuration to make active while this document draws.
    virtual cConfigFolders* viewConfig() = 0;
    virtual cMap* viewMap() = 0;

    // Each goes over all windows; see the operation of the same name in cChildWindow.
    void redrawViews(int mask);
    void redrawAllNow();
    void paintDropped();
    void centerViews(const float* point);
    void setZoomAll(float zoom);
    void setOffsetAll(float x, float y);
    void setCameraOrigin(const float* point);
    void setCameraAngles(const float* angles);
    void applyScrollbarSetting();
    cCanvas* findCanvas(int axis) const;
    cCanvas* firstCanvas() const;

    QList<cChildWindow*> windows; // in order of creation
    std::array<cSelectionBox, TBX_COUNT> boxes;
    cSelectionFrame selection;
    bool entityOnSurface = false; // the entity tool's point is one clicked in a camera view
};

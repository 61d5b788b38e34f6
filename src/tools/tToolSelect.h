// SPDX-License-Identifier: MIT
// The default tool: picks objects, draws a rubber band, and drags the selection about by its box
// and the handles around it. A drag changes nothing in the map; it builds a matrix and shows a
// preview, and the release applies the matrix in one step of the history.
#pragma once

#include "operations/tTransform.h"
#include "views/tMovingPreview.h"
#include "views/tTool.h"

#include <QPointer>
#include <vector>

class QString;
class cMap;
class cSelectionBox;

// What the handles do; a click inside the box goes on to the next.
enum eHandleMode { HANDLES_SCALE, HANDLES_ROTATE, HANDLES_SHEAR, HANDLES_STRETCH, HANDLES_MODES };

class cToolSelect : public cTool {
public:
    bool setCursor(cCanvas* canvas) override;
    bool contextMenu(cCanvas* canvas, int x, int y, const QPoint& globalPos) override;
    bool keyPress(cCanvas* canvas, int key, Qt::KeyboardModifiers modifiers) override;
    bool mousePress(cCanvas* canvas, int x, int y, int button,
                    Qt::KeyboardModifiers modifiers) override;
    bool mouseRelease(cCanvas* canvas, int x, int y, int button,
                      Qt::KeyboardModifiers modifiers) override;
    bool mouseDoubleClick(cCanvas* canvas, int x, int y, int button,
                          Qt::KeyboardModifiers modifiers) override;
    bool mouseMove(cCanvas* canvas, int x, int y, Qt::MouseButtons buttons,
                   Qt::KeyboardModifiers modifiers) override;
    void draw(cCanvas* canvas, const cViewInfo& view, cDrawStats& stats) override;
    void setCanvas(cCanvas* canvas) override;
    void deactivate() override;

    bool clickConsumed = false; // the press changed the selection and starts no drag
    bool dragging = false;
    bool overBox = false;
    bool skipModeReset = false; // the next setCanvas keeps the handle mode
    bool moved = false;         // by a drag inside the box, since the last plain click
    bool movingPreview = false; // the moving flags of the selection are set
    bool rubberBand = false;    // the box is a rubber band, not the selection's
    int selectedCount = 0;      // entities plus brushes
    int hoverHandle = 0;
    int handleMode = HANDLES_SCALE;
    int rotAxis = -1; // of the outline while it is dragged; -1 for none
    int shearAxis = -1;
    uint32_t sideMask = 0;    // sides that a stretch moves: bit axis min, axis + 3 max
    float dragPoint[3] = {};  // follows the mouse
    float pressPoint[3] = {}; // where the drag began
    float origCenter[3] = {}; // of the box when the selection was last refreshed
    float origSize[3] = {};   // likewise
    float center[3] = {};     // of the box during a drag
    float matrix[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}; // row-major

private:
    // What a drag began on.
    enum eDrag { DRAG_NONE, DRAG_BOX, DRAG_HANDLE, DRAG_VIEW, DRAG_BAND };
    enum eMatrix { MATRIX_SCALE, MATRIX_ROTATE, MATRIX_SHEAR, MATRIX_STRETCH, MATRIX_MOVE };

    // tToolSelect.cpp
    int activeMode() const; // a rubber band only scales
    void showText(const cCanvas& canvas, int mode) const;
    bool hover(cCanvas* canvas, int x, int y);
    int handleUnder(const cCanvas& canvas, const float* point) const;
    void leaveBox();
    bool escape(cCanvas* canvas);
    bool selectInBand(cCanvas* canvas, Qt::KeyboardModifiers modifiers);
    void finishDrag(cCanvas* canvas, int x, int y, Qt::KeyboardModifiers modifiers);
    void advanceMode(cCanvas* canvas);
    void commit(cCanvas* canvas, bool clone, Qt::KeyboardModifiers modifiers);
    void measureSelection(const cCanvas& canvas, cSelectionBox& box);
    void cancelDrag(cCanvas* canvas);
    // tToolSelectDrag.cpp
    void startDrag(cCanvas* canvas, int x, int y);
    void dragStep(cCanvas* canvas, int x, int y, Qt::KeyboardModifiers modifiers);
    eDrag dragKind(const cMap& map, Qt::KeyboardModifiers modifiers) const;
    int dragBox(const cCanvas& canvas, cSelectionBox& box, const float* point);
    int dragHandle(const cCanvas& canvas, cSelectionBox& box, const float* point, int x, int y,
                   Qt::KeyboardModifiers modifiers);
    int dragScale(const cCanvas& canvas, cSelectionBox& box, const float* point);
    int dragRotate(const cCanvas& canvas, cSelectionBox& box, int x, int y, bool shift);
    int dragShear(const cCanvas& canvas, cSelectionBox& box, const float* point);
    int dragStretch(const cCanvas& canvas, cSelectionBox& box, const float* point);
    int dragBand(cSelectionBox& box, const float* point);
    bool stretchFits(const cMap& map, int axis) const;
    void buildMatrix(const cCanvas& canvas, const cSelectionBox& box, eMatrix mode);
    void setMoving(cCanvas* canvas, bool moving);
    void startMoving(cCanvas* canvas);
    void endMoving();
    cTransformRecord transformRecord(const cCanvas& canvas, Qt::KeyboardModifiers modifiers) const;
    // tToolSelectDraw.cpp
    void drawOutline(cCanvas* canvas, const cSelectionBox& box) const;
    void drawReference(cCanvas* canvas, const cMap& map, const cSelectionBox& box) const;
    void drawOrigins(cCanvas* canvas, const cMap& map) const;
    void drawHandles(cCanvas* canvas, const cViewInfo& view, const cSelectionBox& box) const;

    eDrag m_drag = DRAG_NONE;
    Qt::KeyboardModifiers m_modifiers; // of the last drag step
    cMovingPreview m_preview;
    QPointer<cCanvas> m_movingIn;           // whose document has the moving flags
    std::vector<uint32_t> m_movingEntities; // ids of what has the moving flags
    std::vector<uint32_t> m_movingBrushes;
};

// The objects that the selection box of the canvas's document takes in, whatever their depth in
// that view, join the selection (eBoxMode); the box is spent and the tools are told. False
// without an active box.
bool selectWithBox(cCanvas& canvas, int boxMode);

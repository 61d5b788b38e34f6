// SPDX-License-Identifier: MIT
// One drag of the selection tool in a 2D view. It moves the document's box, builds the matrix that
// follows from the box, and keeps the moving flags of the selection set while it lives, over which
// it shows a preview. The map changes at the release, by what record() gives.
#pragma once

#include "operations/tTransform.h"
#include "views/tMovingPreview.h"

#include <QPointer>
#include <vector>

class cCanvas;
class cMap;
class cOverlay;
class cSelectionBox;
struct cSelectionFrame;

// What the handles do; a click inside the box goes on to the next.
enum eHandleMode { HANDLES_SCALE, HANDLES_ROTATE, HANDLES_SHEAR, HANDLES_STRETCH, HANDLES_MODES };

int activeMode(const cSelectionFrame& frame); // a rubber band only scales

class cSelectionDrag {
public:
    // point: snapped, with the depth of the box. Handle and inside: what lay under the press.
    cSelectionDrag(cCanvas* canvas, const float* point, int handle, bool overBox);
    ~cSelectionDrag() { endMoving(); }
    cSelectionDrag(const cSelectionDrag&) = delete;
    cSelectionDrag& operator=(const cSelectionDrag&) = delete;

    // To a snapped point under the pixel x, y. The mode of the status text (eBoxText), or -1
    // where the view only follows.
    int step(const float* point, int x, int y, Qt::KeyboardModifiers modifiers);
    void endMoving(); // the moving flags go

    bool changesSelection() const { return m_kind == DRAG_BOX || m_kind == DRAG_HANDLE; }
    bool changesNothing() const; // it has come back to where it began
    bool isIn(const cMap& map) const;
    cTransformRecord record(Qt::KeyboardModifiers modifiers) const;
    void drawOutline(cOverlay& overlay, const uint8_t* rgba) const; // as the drag shapes the box
    // In another view of the document, too: the square at the point to line up with others.
    void drawReference(cCanvas& canvas, cOverlay& overlay, const uint8_t* rgba) const;
    void drawPreview(cCanvas& canvas, cOverlay& overlay); // over what the overlay holds

private:
    // What a drag began on.
    enum eDrag { DRAG_NONE, DRAG_BOX, DRAG_HANDLE, DRAG_VIEW, DRAG_BAND };
    enum eMatrix { MATRIX_SCALE, MATRIX_ROTATE, MATRIX_SHEAR, MATRIX_STRETCH, MATRIX_MOVE };

    cSelectionBox& box() const;
    cSelectionFrame& frame() const;
    eDrag kindOfStep() const;
    int dragBox(const float* point);
    int dragHandle(const float* point, int x, int y);
    int dragScale(const float* point);
    int dragRotate(int x, int y);
    int dragShear(const float* point);
    int dragStretch(const float* point);
    int dragBand(const float* point);
    bool stretchFits(int axis) const;
    void buildMatrix(eMatrix mode);
    void startMoving();
    void showMoving() const;

    QPointer<cCanvas> m_canvas;
    eDrag m_kind = DRAG_NONE;
    int m_handle;
    bool m_overBox;
    Qt::KeyboardModifiers m_modifiers; // of the last step
    int m_rotAxis = -1;                // of the outline; -1 for none
    int m_shearAxis = -1;
    uint32_t m_sideMask = 0; // sides that a stretch moves: bit axis min, axis + 3 max
    float m_point[3];        // follows the mouse
    float m_pressPoint[3];   // where the drag began
    float m_pivot[3];        // centre and size of the selection's box before the drag
    float m_size[3];
    float m_matrix[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}; // row-major
    bool m_moving = false; // the moving flags of the selection are set
    cMovingPreview m_preview;
    std::vector<uint32_t> m_movingEntities; // ids of what has the moving flags
    std::vector<uint32_t> m_movingBrushes;
};

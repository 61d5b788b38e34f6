// SPDX-License-Identifier: MIT
// The box that tools drag about: a box in the world with handles around it on the two axes of a
// view. Each document has its own five; an inactive box fails every test and ignores every change.
#pragma once

#include <QString>
#include <cstdint>

// Handles, with the view's vertical axis pointing up.
enum eBoxHandle {
    BH_NONE,
    BH_TOP_LEFT,
    BH_TOP_RIGHT,
    BH_BOTTOM_LEFT,
    BH_BOTTOM_RIGHT,
    BH_LEFT,
    BH_RIGHT,
    BH_TOP,
    BH_BOTTOM
};

// Places in cDocumentViews::boxes.
enum eToolBox { TBX_SELECTION, TBX_BLOCK, TBX_ENTITY, TBX_VERTEX, TBX_CORDON, TBX_COUNT };

// Modes of statusText.
enum eBoxText { BT_EXTENTS, BT_CENTER, BT_VIEW_EXTENTS, BT_NONE, BT_ROTATION, BT_SHEAR };

class cSelectionBox {
public:
    void clear();
    void setPoint(const float* point); // clamped to the world
    void setFromTwoPoints(const float* a, const float* b);
    void addPoint(const float* point);
    void move(const float* delta, float* reference);
    void moveAxis(int axis, float distance);
    void addToCorner(int which, int axis, float distance); // which: 0 mins, 1 maxs
    // The angle from pressPoint to point about the centre, in steps of 15 degrees with snap, else
    // of half a degree.
    void setRotation(const float* point, const float* pressPoint, int h, int v, bool snap);
    void setShear(float amount);
    // The sides of the handle follow delta; reference takes the part of it that was possible.
    void resize(const float* delta, int h, int v, int handle, float* reference);

    bool contains(const float* point) const;
    bool containsMargin(const float* point, float margin) const;
    // The handle under a world point; sizes in world units.
    int handleAt(int h, int v, float bulletSize, float offsetH, float offsetV,
                 const float* point) const;
    void nearestCorner(int h, int v, const float* point, float* out) const;
    void handlePoint(int h, int v, int handle, float* out) const;
    QString statusText(int h, int v, int mode) const;

    bool active = false;
    float mins[3] = {0, 0, 0};
    float maxs[3] = {0, 0, 0};
    float rotation = 0; // radians
    float shear = 0;    // world units
};

// Bits of the sides that a handle moves: axis for a min side, axis + 3 for a max side.
uint32_t handleSides(int handle, int h, int v);

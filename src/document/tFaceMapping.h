// SPDX-License-Identifier: MIT
// How a texture lies on a face: coordinates, default axes, texture lock, justify, wrap-around.
// Operations on one face capture nothing for undo; the callers do.
#pragma once

#include "plugininterface/tPluginInterface.h"

class cMapContext;

enum eJustify {
    JUSTIFY_TOP,
    JUSTIFY_BOTTOM,
    JUSTIFY_LEFT,
    JUSTIFY_RIGHT,
    JUSTIFY_CENTER,
    JUSTIFY_FIT
};

// For a block from outside: numbers that are not finite, and scales of 0, become the default; true
// if there were any. Where it was an axis, the face's flags ask for default axes.
bool mendTextureBlock(cFaceTexture& block, uint32_t& faceFlags);
// These two look the name up in the game of the face's map.
void applyTextureBlock(cFaceData* face, const cFaceTexture& block);
void setTextureName(cFaceData* face, const char* name);  // flags and value from the texture
void dropTexture(cFaceData* face, cMapContext& context); // gives up the face's reference
void updateFaceTransparency(cFaceData* face);            // FF_TRANSPARENT from setting and texture

int majorAxis(const cFaceData* face); // row of the aligned axes, or 6 for a zero normal
void resetAxes(cFaceData* face);
void computeAlignFlags(cFaceData* face);
void computeTexCoords(cFaceData* face);
void wrapShifts(cFaceData* face);
void rotateAxes(cFaceData* face, float degrees);
bool axesUsable(const cFaceData* face);
// Follows x -> M (x - pivot) + pivot; matrix is row-major with the translation in column 3.
void textureLock(cFaceData* face, const float* pivot, const float matrix[16], bool lockScale);
void faceExtents(const cFaceData* face, float points[6][3]);
void textureBounds(const cFaceData* face, const float points[6][3], float out[4]);
void justify(cFaceData* face, int mode, const float points[6][3], float fitX, float fitY);
void alignToFace(cFaceData* face, const cFaceData* reference);
void alignToPlane(cFaceData* face, const float* point, const float* uAxis, const float* vAxis);

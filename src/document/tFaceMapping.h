// SPDX-License-Identifier: MIT
// How a texture lies on a face: coordinates, default axes, texture lock, justify, wrap-around.
// Operations on one face capture nothing for undo; the callers do.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <array>
#include <vector>

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
// Flags and value come from the texture.
void setTextureName(cFaceData* face, const char* name);
void setTexture(cFaceData* face, const char* name,
                cTexture* found); // as the name is known, or null
// In place of the one that is there: flags and value of the face's own, and what makes a brush
// detail, stay.
void exchangeTexture(cFaceData* face, const char* name, cTexture* found);
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

// ---- Laying a texture, in tFaceLaying.cpp

// A smaller scale counts as none, and is 1.
constexpr float MIN_TEXTURE_SCALE = 0.001f;
float usableScale(float scale);

// Corners of one face, or of several that are treated as one.
using cPointList = std::vector<std::array<float, 3>>;
void addFacePoints(const cFaceData* face, cPointList& points);

// How far points reach along the axes of a texture: least and greatest p . uAxis and p . vAxis.
struct cTextureExtents {
    float u[2];
    float v[2];
};
void axisExtent(const float* axis, const cPointList& points, float out[2]);
cTextureExtents textureExtents(const cFaceTexture& tex, const cPointList& points);
// Moves the texture, or for JUSTIFY_FIT scales it so that it repeats fitX and fitY times and stays
// as mirrored as it is. Another mode wraps the shifts alone.
void justify(cFaceData* face, int mode, const cTextureExtents& extents, float fitX, float fitY);

bool shareEdge(const cFaceData* a, const cFaceData* b);
// The reference's texture folded about the line where the two planes meet, so that it runs on
// without a jump. Faces of one plane, and opposite ones, take it as it lies.
void alignToFace(cFaceData* face, const cFaceData* reference);
// The texture as it would stand on a screen whose axes are uAxis and vAxis, its corner at the
// point. Not for a face that is seen edge-on.
void alignToPlane(cFaceData* face, const float* point, const float* uAxis, const float* vAxis);

// SPDX-License-Identifier: MIT
// Edits of how faces are textured: of the selected ones where nothing else is said. Each is one
// step of the history, which captures the faces before the change; none opens a step with nothing
// to change.
#pragma once

#include "operations/tEditStep.h"
#include "plugininterface/tPluginInterface.h"

#include <QByteArray>
#include <optional>
#include <vector>

class cMap;

// axis 0 is S, 1 is T. A scale below 0.001 in magnitude is 1.
void setTextureScale(cMap& map, int axis, float scale, eStep step = eStep::New);
void setTextureShift(cMap& map, int axis, float texels, eStep step = eStep::New);
void setTextureRotation(cMap& map, float degrees, eStep step = eStep::New); // stored as 0 to 360
void setTextureValue(cMap& map, uint32_t value, eStep step = eStep::New);
void resetTexture(cMap& map);                // scales 1, shifts 0, turned back
void alignTexture(cMap& map, uint32_t flag); // FT_ALIGN_WORLD or FT_ALIGN_FACE
// Of the bits in mask; value holds them.
void setSurfaceFlags(cMap& map, uint32_t mask, uint32_t value);
void setContentFlags(cMap& map, uint32_t mask, uint32_t value);
// mode is an eJustify; asOne takes the selected faces for one area.
void justifyTexture(cMap& map, int mode, bool asOne, int fitX, int fitY);

// ---- Painting

// What is set is written.
struct cFaceValues {
    std::optional<float> scale[2]; // S, T
    std::optional<float> shift[2]; // texels
    std::optional<float> rotation; // degrees
    std::optional<uint32_t> value;
    uint32_t surfaceMask = 0, surfaceFlags = 0; // bits to write, and what
    uint32_t contentMask = 0, contentFlags = 0;
};

// A face, and the one whose texture runs on over it; null lays it by the values.
struct cPaintedFace {
    cFaceData* face;
    const cFaceData* reference;
};
// With values null the name alone changes. One step, "Apply Texture".
void paintFaces(cMap& map, const std::vector<cPaintedFace>& faces, const char* name,
                const cFaceValues* values);
// All faces of the brush after this one, each with a neighbour that stands before it in the list,
// over shared edges; those that no edge leads to have the first face.
std::vector<cPaintedFace> spreadOver(cFaceData* first);
// The texture of the selected faces and of all faces of the selected brushes; "Apply Texture".
void applyTextureToSelection(cMap& map, const char* name);

// ---- By a view

struct cViewAxes {
    float point[3]; // of the camera
    float right[3];
    float up[3];
};
// "Align to View". A face that the camera looks along stays as it is, with a console line.
void alignFaceToView(cMap& map, cFaceData* face, const cViewAxes& view, const float scale[2]);
void alignSelectionToView(cMap& map, const cViewAxes& view); // selected faces and brushes
// By a mouse drag on one of the selected faces, texels of it; on the others its way is folded over
// the edges, so that a wrapped pillar stays whole. "Shift Texture".
void dragTexture(cMap& map, const cFaceData* pressed, float s, float t, eStep step);

// ---- By name

enum eNameMatch { MATCH_EXACT, MATCH_PART, MATCH_SUBSTITUTE }; // without regard to case

struct cTextureSearch {
    QByteArray find;
    const cTexture* texture = nullptr; // what is shown, in place of the name
    int match = MATCH_EXACT;
    bool marked = false; // selected faces, and those of selected brushes, alone
    bool hidden = false; // of hidden objects as well
    float factor = 1;    // on both scales of what is found; below 0.001 in magnitude 1
};
struct cReplaced {
    int count = 0;   // faces
    int refused = 0; // whose new name would be longer than 63 bytes; they stay as they are
};
// With MATCH_SUBSTITUTE each occurrence in the name gives way, else the whole name. "Replace
// Textures".
cReplaced replaceTextures(cMap& map, const cTextureSearch& search, const QByteArray& replacement);
// Selects what wears it: faces while faces are edited, else brushes. Gives their number. With a
// factor "Modify Texture Scale".
int markTextures(cMap& map, const cTextureSearch& search);

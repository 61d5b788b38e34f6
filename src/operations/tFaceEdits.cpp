// SPDX-License-Identifier: MIT
// Fields of the selected faces, painting, views. Replacing by name is in tTextureReplace.cpp.
#include "operations/tFaceEdits.h"

#include "document/tBrush.h"
#include "document/tBrushGeometry.h"
#include "document/tFaceMapping.h"
#include "document/tMap.h"
#include "document/tMapContext.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "support/tConsole.h"
#include "support/tVec.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>

// ---- Fields

template<class Edit> static void editSelected(cMap& map, const char* title, eStep step, Edit edit) {
    if (!map.data.selectedFaces)
        return;
    const cEditStep edited(map, title, step);
    edited.capture([](cHistory& history) { history.facesChanged(); });
    for (cFaceData* face : selectedFacesOf(map.data)) {
        edit(face);
        rebuildFace(face, 0);
        noteChange(face->brush);
    }
}

static float& scaleOf(cFaceTexture& tex, int axis) {
    return axis == 0 ? tex.uScale : tex.vScale;
}

static float& shiftOf(cFaceTexture& tex, int axis) {
    return axis == 0 ? tex.uShift : tex.vShift;
}

// The axes turn by what the number changes by, which keeps both in step.
static void setRotation(cFaceData* face, float degrees) {
    rotateAxes(face, degrees - face->tex.rotation);
    face->tex.rotation = degrees;
}

void setTextureScale(cMap& map, int axis, float scale, eStep step) {
    editSelected(map, "Scale Texture", step,
                 [&](cFaceData* face) { scaleOf(face->tex, axis) = usableScale(scale); });
}

void setTextureShift(cMap& map, int axis, float texels, eStep step) {
    editSelected(map, "Shift Texture", step,
                 [&](cFaceData* face) { shiftOf(face->tex, axis) = texels; });
}

void setTextureRotation(cMap& map, float degrees, eStep step) {
    const float turn = degrees < 0 ? degrees + 360 : degrees > 360 ? degrees - 360 : degrees;
    editSelected(map, "Rotate Texture", step, [&](cFaceData* face) { setRotation(face, turn); });
}

void setTextureValue(cMap& map, uint32_t value, eStep step) {
    editSelected(map, "Change Texture Value", step,
                 [&](cFaceData* face) { face->tex.value = value; });
}

void resetTexture(cMap& map) {
    editSelected(map, "Reset Texture", eStep::New, [](cFaceData* face) {
        setRotation(face, 0);
        face->tex.uScale = face->tex.vScale = 1;
        face->tex.uShift = face->tex.vShift = 0;
    });
}

void alignTexture(cMap& map, uint32_t flag) {
    editSelected(map, "Align Texture", eStep::New, [&](cFaceData* face) {
        face->tex.alignFlags = flag;
        resetAxes(face);
    });
}

void setSurfaceFlags(cMap& map, uint32_t mask, uint32_t value) {
    editSelected(map, "Surface Flags", eStep::New, [&](cFaceData* face) {
        face->tex.surfaceFlags = (face->tex.surfaceFlags & ~mask) | (value & mask);
    });
}

void setContentFlags(cMap& map, uint32_t mask, uint32_t value) {
    editSelected(map, "Content Flags", eStep::New, [&](cFaceData* face) {
        face->tex.contentFlags = (face->tex.contentFlags & ~mask) | (value & mask);
    });
}

// ---- Justify

namespace {
// How far all selected faces reach along an axis; most faces of a map share their axes.
class cJoinedExtents {
public:
    explicit cJoinedExtents(const cMap& map) {
        for (const cFaceData* face : selectedFacesOf(map.data))
            addFacePoints(face, m_points);
    }
    cTextureExtents of(const cFaceTexture& tex) {
        cTextureExtents extents;
        take(tex.uAxis, extents.u);
        take(tex.vAxis, extents.v);
        return extents;
    }

private:
    void take(const float* axis, float out[2]) {
        const auto [found, isNew] = m_byAxis.try_emplace({axis[0], axis[1], axis[2]});
        if (isNew)
            axisExtent(axis, m_points, found->second.data());
        std::copy_n(found->second.data(), 2, out);
    }

    cPointList m_points;
    std::map<std::array<float, 3>, std::array<float, 2>> m_byAxis;
};
} // namespace

void justifyTexture(cMap& map, int mode, bool asOne, int fitX, int fitY) {
    static const char* const titles[] = {"Justify Top",   "Justify Bottom", "Justify Left",
                                         "Justify Right", "Justify Center", "Fit Texture"};
    cPointList own;
    std::optional<cJoinedExtents> joined;
    if (asOne)
        joined.emplace(map);
    editSelected(map, titles[mode], eStep::New, [&](cFaceData* face) {
        own.clear();
        addFacePoints(face, own);
        const cTextureExtents extents =
            joined ? joined->of(face->tex) : textureExtents(face->tex, own);
        justify(face, mode, extents, float(fitX), float(fitY));
    });
}

// ---- Painting

static void writeValues(cFaceData* face, const cFaceValues& values, bool laid) {
    cFaceTexture& tex = face->tex;
    for (int axis = 0; axis < 2 && laid; ++axis) {
        if (values.scale[axis])
            scaleOf(tex, axis) = usableScale(*values.scale[axis]);
        if (values.shift[axis])
            shiftOf(tex, axis) = *values.shift[axis];
    }
    if (values.rotation && laid)
        setRotation(face, *values.rotation);
    if (values.value)
        tex.value = *values.value;
    tex.surfaceFlags =
        (tex.surfaceFlags & ~values.surfaceMask) | (values.surfaceFlags & values.surfaceMask);
    tex.contentFlags =
        (tex.contentFlags & ~values.contentMask) | (values.contentFlags & values.contentMask);
}

void paintFaces(cMap& map, const std::vector<cPaintedFace>& faces, const char* name,
                const cFaceValues* values) {
    if (faces.empty() || !*name)
        return;
    const cHistoryStep step(map, "Apply Texture");
    step->facesChanged(); // undo brings back the selection of what a step holds
    step->brushesChanged(false);
    for (const cPaintedFace& painted : faces)
        step->faceChanged(painted.face);
    cTexture* found = map.context.findTexture(name);
    for (const cPaintedFace& painted : faces) {
        exchangeTexture(painted.face, name, found);
        if (values)
            writeValues(painted.face, *values, !painted.reference);
        if (painted.reference && painted.reference != painted.face)
            alignToFace(painted.face, painted.reference);
        rebuildFace(painted.face, 0);
        noteChange(painted.face->brush);
    }
}

std::vector<cPaintedFace> spreadOver(cFaceData* first) {
    std::vector<cFaceData*> left;
    for (cFaceData* face : facesOf(first->brush))
        if (face != first)
            left.push_back(face);
    std::vector<cPaintedFace> reached = {{first, nullptr}};
    for (size_t i = 0; i < reached.size(); ++i) {
        const auto isAway = [&](cFaceData* face) {
            const bool next = shareEdge(face, reached[i].face);
            if (next)
                reached.push_back({face, reached[i].face});
            return next;
        };
        left.erase(std::remove_if(left.begin(), left.end(), isAway), left.end());
    }
    for (cFaceData* face : left)
        reached.push_back({face, first});
    reached.erase(reached.begin());
    return reached;
}

// Selected faces and all of selected brushes, each once.
template<class Take> static void eachSelected(const cMap& map, Take take) {
    for (cFaceData* face : selectedFacesOf(map.data))
        if (!isSelected(face->brush))
            take(face);
    for (cBrushData* brush : selectedBrushesOf(map.data))
        for (cFaceData* face : facesOf(brush))
            take(face);
}

void applyTextureToSelection(cMap& map, const char* name) {
    std::vector<cPaintedFace> faces;
    eachSelected(map, [&](cFaceData* face) {
        if (strcmp(face->tex.name, name) != 0)
            faces.push_back({face, nullptr});
    });
    paintFaces(map, faces, name, nullptr);
}

// ---- By a view

static constexpr float EDGE_ON = 0.001f; // sine

// Seen edge-on, a texture would be a smear.
static bool canLay(const cFaceData* face, const cViewAxes& view) {
    float forward[3];
    vecCross(view.right, view.up, forward);
    const bool can = std::fabs(vecDot(forward, face->normal)) > EDGE_ON;
    if (!can)
        Print("a face that is seen edge-on can't be aligned to the view");
    return can;
}

static void layByView(cFaceData* face, const cViewAxes& view) {
    float down[3]; // a texture's T runs down
    vecNegate(view.up, down);
    alignToPlane(face, view.point, view.right, down);
    rebuildFace(face, 0);
    noteChange(face->brush);
}

void alignFaceToView(cMap& map, cFaceData* face, const cViewAxes& view, const float scale[2]) {
    if (!canLay(face, view))
        return;
    const cHistoryStep step(map, "Align to View");
    step->facesChanged();
    step->faceChanged(face);
    face->tex.uScale = scale[0];
    face->tex.vScale = scale[1];
    layByView(face, view);
}

void alignSelectionToView(cMap& map, const cViewAxes& view) {
    std::vector<cFaceData*> faces;
    eachSelected(map, [&](cFaceData* face) {
        if (canLay(face, view))
            faces.push_back(face);
    });
    if (faces.empty())
        return;
    const cHistoryStep step(map, "Align to View");
    step->facesChanged(); // undo brings back the selection of what a step holds
    step->brushesChanged(false);
    for (cFaceData* face : faces)
        step->faceChanged(face);
    for (cFaceData* face : faces)
        layByView(face, view);
}

namespace {
// Which way a drag goes on another face: 1, or -1 where the axis of the face that is dragged,
// folded over the edge, runs against the other's.
struct cDragSigns {
    float s;
    float t;
};
} // namespace

static float signOf(const float* axis, const float* other) {
    return vecDot(axis, other) < 0 ? -1.0f : 1.0f;
}

// Turned as the normal of one face must be to become the other's.
static void foldAxis(const float* axis, const float* from, const float* to, float* out) {
    float e[3], side[3]; // e is as long as the sine, so it serves as it is
    vecCross(from, to, e);
    vecCross(e, axis, side);
    const float cosine = vecDot(from, to);
    for (int i = 0; i < 3; ++i)
        out[i] = axis[i] * cosine + side[i] + e[i] * vecDot(e, axis) / (1 + cosine);
}

static cDragSigns dragSigns(const cFaceData* from, const cFaceTexture& dragged,
                            const cFaceData* to) {
    static constexpr float OPPOSITE = -0.9999f;
    const cFaceTexture& tex = to->tex;
    if (vecDot(from->normal, to->normal) > OPPOSITE) {
        float u[3], v[3];
        foldAxis(dragged.uAxis, from->normal, to->normal, u);
        foldAxis(dragged.vAxis, from->normal, to->normal, v);
        return {signOf(u, tex.uAxis), signOf(v, tex.vAxis)};
    }
    // The back of something: round its side, unless the texture has come over its top.
    const float alongU = signOf(dragged.uAxis, tex.uAxis),
                alongV = signOf(dragged.vAxis, tex.vAxis);
    return alongU > 0 && alongV < 0 ? cDragSigns{1, 1} : cDragSigns{-alongU, alongV};
}

void dragTexture(cMap& map, const cFaceData* pressed, float s, float t, eStep step) {
    const cFaceTexture dragged = pressed->tex;
    editSelected(map, "Shift Texture", step, [&](cFaceData* face) {
        const cDragSigns signs = dragSigns(pressed, dragged, face);
        face->tex.uShift += s * signs.s;
        face->tex.vShift += t * signs.t;
        wrapShifts(face);
    });
}

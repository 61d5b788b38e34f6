// SPDX-License-Identifier: MIT
// One draw of a map into one view: the passes over its objects, what each object looks like, and
// the lines over them. Lives as long as the draw.
#pragma once

#include "plugininterface/tPluginInterface.h"
#include "views/tDrawBatch.h"
#include "views/tViewInfo.h"

#include <vector>

constexpr float MOVING_DIM = 0.75f; // on the colour of what is being dragged

class cMapPainter {
public:
    cMapPainter(cMap& map, cViewInfo& view, cDrawStats& stats);
    ~cMapPainter();
    cMapPainter(const cMapPainter&) = delete;
    cMapPainter& operator=(const cMapPainter&) = delete;

    void draw();
    // One object, if it is visible and belongs to the pass; true if it was drawn.
    bool drawBrush(cBrushData* brush, uint32_t passFlags);
    bool drawEntity(cEntityData* entity, uint32_t passFlags);
    void drawEntityBox(cEntityData* entity); // whatever hides it

private:
    // How the faces of one brush are drawn.
    struct cBrushLook {
        bool selected;
        bool transparent;     // by its entity
        const uint8_t* color; // without selection, where no texture decides
        uint8_t pickColor[4]; // while picking
    };
    enum eDrawnKind { DRAWN_FACE, DRAWN_ENTITY };
    // An object put off to the transparent pass.
    struct cTransparentEntry {
        int distance;
        eDrawnKind kind;
        void* object;
    };

    // tMapDraw.cpp
    void drawPicking();
    void drawPasses();
    void walk(uint32_t passFlags);
    void drawPointfile();
    void drawPortals();
    // tBrushDraw.cpp
    bool isBrushDrawn(const cBrushData* brush, uint32_t passFlags);
    bool isDetailHidden(const cBrushData* brush) const;
    bool isCulled(const float* mins, const float* maxs);
    cBrushLook lookOf(const cBrushData* brush) const;
    const uint8_t* brushColor(const cBrushData* brush) const;
    void drawHandle(const cBrushData* brush, const cBrushLook& look);
    void handleCross(const float* center, const uint8_t* rgba);
    void handleDiamond(const float* center, const uint8_t* rgba);
    // tFaceDraw.cpp
    void drawFace(cFaceData* face, const cBrushLook& look);
    bool isFaceSelected(const cFaceData* face) const;
    bool isFaceTransparent(const cFaceData* face, const cBrushLook& look) const;
    void fillColor(const cFaceData* face, const cBrushLook& look, uint8_t* rgba) const;
    void drawFace2D(const cFaceData* face, const cBrushLook& look, const uint8_t* rgba);
    void drawFace3D(const cFaceData* face, const cBrushLook& look, const uint8_t* rgba);
    void drawFacePick(const cFaceData* face, const cBrushLook& look);
    void fillFace(const cFaceData* face, const uint8_t* rgba);
    void drawTextureAxes(const cFaceData* face);
    void drawFaceGrid(const cFaceData* face, const uint8_t* rgba);
    void drawFaceGridAxis(const cFaceData* face, int axis, const uint8_t* rgba);
    // tEntityDraw.cpp
    bool isEntityDrawn(const cEntityData* entity, uint32_t passFlags);
    bool drawEntityBrushes(cEntityData* entity, uint32_t passFlags);
    void entityColor(const cEntityData* entity, uint8_t* rgba) const;
    void drawBox2D(const float* mins, const float* maxs, const uint8_t* rgba, bool moving);
    void drawBoxSolid(const float* mins, const float* maxs, const uint8_t* rgba, bool shaded);
    void drawAngleArrow(const cEntityData* entity);
    // tTransparentList.cpp
    void putOff(eDrawnKind kind, void* object, const float* center);
    void drawTransparent();
    void drawTransparentFace(const cFaceData* face);
    // tConnections.cpp
    void drawConnections();
    void drawConnection(const float* start, const float* end, const uint8_t* rgba);

    cMap& m_map;
    cViewInfo& m_view;
    cDrawStats& m_stats;
    cDrawBatch& m_batch;
    std::vector<cTransparentEntry>& m_transparent; // empty between draws
};

// rgba with the shade on its colours, cut to bytes as it stands: a negative shade wraps.
void shadeColor(const uint8_t* rgba, float shade, uint8_t* out);
// The colour that stands for a pick number: low, middle, high byte.
void pickColor(int number, uint8_t* rgba);

// SPDX-License-Identifier: MIT
// One draw of a map into one view, from the map's buffers: all objects, the selected ones over
// them, what is seen through after them, then the lines over all. Lives as long as the draw and
// writes to no record.
#pragma once

#include "plugininterface/tPluginInterface.h"
#include "views/tDrawBatch.h"
#include "views/tDrawRanges.h"
#include "views/tMapBuffers.h"
#include "views/tViewInfo.h"

#include <vector>

class cMap;
struct cTextureImage;
struct cTranslucentRun;

// What is seen through: a face, or the entity of a slot.
struct cTranslucentItem {
    const cTranslucentFace* face; // or null
    const cDrawSlot* slot;
};

// Into the view that is set up, with its context current; picks where the view says so.
void drawMap(cMap& map, cViewInfo& view, cDrawStats& stats);
// Whether the view shows the face at all, whatever its brush.
bool isFaceVisible(const cFaceData* face, const cViewInfo& view);

class cMapPainter {
public:
    cMapPainter(cMap& map, cViewInfo& view, cDrawStats& stats);
    ~cMapPainter();
    cMapPainter(const cMapPainter&) = delete;
    cMapPainter& operator=(const cMapPainter&) = delete;

    void draw();

private:
    enum eWhich { UNSELECTED, SELECTED };

    // tMapDraw.cpp
    void findVisible();
    bool isLeafVisible(uint32_t leaf) const { return m_masks[leaf] != 0; }
    bool isHiddenByTraits(uint16_t traits) const;
    bool isHidden(const cDrawKey& key) const;
    bool isPutOff(const cDrawKey& key) const;
    void addRow(uint32_t row, eWhich which);
    void drawRanges(unsigned primitive);
    template<class Take> void eachRow(eDrawKind kind, Take take);
    template<class Draw> void eachSelectedCell(Draw draw);
    void pointAtVertices();
    void pointAtColors(const cGLBuffer& look);
    void pointAtTextured();
    void noColors();
    void drawPointfile();
    void drawPortals();
    // tSolidDraw.cpp
    void drawSolid();
    void drawFaces();
    void drawSelectedFaces();
    void setMarkedColor(const cDrawKey& key);
    void drawSelectedLines(const uint8_t* rgba, bool boxesAlone);
    void drawOutlines();
    void drawWires();
    const cTextureImage* imageOf(const cDrawKey& key) const;
    void bindImage(const cTextureImage* image);
    void drawMarkedFaces();
    void drawMarkedFace(const cFaceData* face);
    // tFlatDraw.cpp
    void drawFlat();
    void drawFlatEdges(eWhich which);
    void drawMarks(eWhich which);
    void drawVertices(eWhich which);
    void drawMoving();
    // tTranslucentDraw.cpp
    void drawTranslucent();
    void gatherTranslucent();
    bool isFaceSeenThrough(const cTranslucentFace& face) const;
    void addTranslucent(const cTranslucentItem& item, const float* place);
    void drawTranslucentFaces(size_t& next, uint32_t& firstIndex);
    void drawTranslucentRuns();
    void drawTranslucentRun(const cTranslucentRun& run, uint32_t first, uint32_t count);
    void drawTranslucentOutline(const cTranslucentFace& face);
    // tFigurePaint.cpp
    bool isReplaced(const cDrawKey& key) const;
    bool isFigurePutOff(const cEntityData* entity) const;
    template<class Take> void eachFigure(Take take);
    void figureColor(const cEntityData* entity, bool isSelected, uint8_t* rgba) const;
    void drawFigures(eWhich which);
    void addFarBox(const cDrawSlot& slot, const uint8_t* rgba);
    void drawFarBoxes(eWhich which);
    void drawTranslucentFigure(const cTranslucentItem& item);
    void drawMovingModel(const cEntityData* entity);
    // tLooseDraw.cpp
    void drawArrows(eWhich which);
    void drawFaceGrids();
    // tConnections.cpp
    void drawConnections();
    void drawConnection(const float* start, const float* end, const uint8_t* rgba);

    struct cScratch; // kept from draw to draw

    cMap& m_map;
    cViewInfo& m_view;
    cDrawStats& m_stats;
    cDrawBatch& m_batch;
    cMapBuffers& m_buffers;
    cScratch& m_scratch;
    std::vector<uint8_t>& m_masks; // by leaf: bit f, its faces of that facing can be seen
    cDrawRanges& m_ranges;
    const uint8_t* m_indices = nullptr; // of the index buffer that is bound
};

// Bits of cMapPainter's masks beside those of the facings.
enum eLeafMask : uint8_t { MASK_VISIBLE = 1 << FACING_OTHER, MASK_WHOLLY_SELECTED = 0x80 };

// SPDX-License-Identifier: MIT
// One draw of a map for picking: what lies near the pixel, each object in the colour of its number.
// Gathered anew each time, as there is little of it. Lives as long as the draw.
#pragma once

#include "plugininterface/tPluginInterface.h"
#include "views/tDrawBatch.h"
#include "views/tViewInfo.h"

class cMap;

class cPickPainter {
public:
    cPickPainter(cMap& map, cViewInfo& view, cDrawStats& stats);
    ~cPickPainter();
    cPickPainter(const cPickPainter&) = delete;
    cPickPainter& operator=(const cPickPainter&) = delete;

    void draw();

private:
    // inside: the parent lies wholly in the frustum.
    void drawBrush(cBrushData* brush, bool inside);
    void drawEntity(cEntityData* entity, bool inside);
    void drawFace(const cFaceData* face, const uint8_t* brushColor);
    void drawFigure(const cEntityData* entity, const uint8_t* rgba);
    void drawHandle(const float* center, const uint8_t* rgba);
    bool isCulled(const float* mins, const float* maxs);

    cMap& m_map;
    cViewInfo& m_view;
    cDrawStats& m_stats;
    cDrawBatch& m_batch;
};

// The colour that stands for a pick number: low, middle, high byte.
void pickColor(int number, uint8_t* rgba);

// SPDX-License-Identifier: MIT
// What entities show in place of their boxes: models and sprites. They are drawn as their records
// stand now, for a map's picture, a pick or the preview of a drag.
#pragma once

#include "views/tModelPoses.h"
#include "views/tViewInfo.h"

// The entity is drawn as its model or sprite in this view; else its box is.
bool hasRenderObject(const cEntityData* entity, const cViewInfo& view);
// The entity's word if it blends, else that of plain transparency.
uint32_t translucentWord(const cEntityData* entity);
// How solid what is seen through is, at least a fifth: 51 to 255.
uint8_t translucentAlpha(const cEntityData* entity);
// The place in its animation that the entity shows, a multiple of step; 0 where step is. changesAt:
// lowered to the time when it looks different.
float framePosition(const cEntityData* entity, float step, const cViewInfo& view,
                    double& changesAt);

// Gathers models and draws those of one look together.
class cModelBatch {
public:
    cModelBatch(const cViewInfo& view, cDrawStats& stats) : m_view(view), m_stats(stats) {}

    // As the entity stands. rgba: where the view shows models in one colour.
    void add(const cEntityData* entity, const uint8_t* rgba);
    void addTranslucent(const cEntityData* entity, const uint8_t* rgba);
    // Where a drag would put it.
    void addMoved(const cEntityData* entity, const float* origin, const float* angles,
                  const uint8_t* rgba);
    void flush();

    float lineWidth = 1; // pixels, where the view shows lines

private:
    struct cEntry {
        const cModelPoses::cPose* pose;
        cModelPlace place;
    };
    cModelCall callOf(const cEntityData* entity);
    void addCall(const cModelCall& call, const float* origin, const uint8_t* rgba);
    void beginModels() const;
    static void endModels();
    bool showsLines() const { return !m_view.is3D || m_view.isWireframe(); }

    const cViewInfo& m_view;
    cDrawStats& m_stats;
    std::vector<cEntry> m_entries;
    std::vector<cModelPlace> m_places;
};

// In a camera view, with no buffer bound; rgba modulates the picture, or is the colour of lines and
// picks. Leaves the state word as it was.
void drawSprite(const cEntityData* entity, const cViewInfo& view, cDrawStats& stats, uint32_t word,
                const uint8_t* rgba);

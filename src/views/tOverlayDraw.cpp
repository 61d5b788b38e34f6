// SPDX-License-Identifier: MIT
// What moves over the map's picture in world space: cordon, camera marker, axis marker.
#include "views/tCanvas.h"

#include "document/tMap.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tSystem.h"
#include "support/tVec.h"
#include "views/tDocumentViews.h"
#include "views/tOverlay.h"
#include "views/tTool.h"
#include "views/tViewHost.h"

#include <cmath>

static bool isCordonTool(const cTool* tool) {
    return tool && tool->getId() == TOOL_CORDON;
}

void cCanvas::drawCordon(cOverlay& overlay) {
    static constexpr float LINE_WIDTH = 2.0f;
    const cMapData& shown = map()->data;
    if (!g_host->EnableCordon || isCordonTool(g_viewHost->currentTool) ||
        isCordonTool(g_viewHost->suspendedTool))
        return;
    const bool bothSet = vecLength(shown.cordonMins) != 0 && vecLength(shown.cordonMaxs) != 0;
    const bool eitherSet = vecLength(shown.cordonMins) != 0 || vecLength(shown.cordonMaxs) != 0;
    if (isCamera() ? !bothSet : !eitherSet)
        return;
    const uint8_t* color = g_host->schemeColor(COLOR_CORDON_LINE);
    const uint8_t half[4] = {color[0], color[1], color[2], uint8_t(color[3] / 2)};
    const uint8_t full[4] = {color[0], color[1], color[2], 255};
    if (isCamera())
        overlay.boxFill(shown.cordonMins, shown.cordonMaxs, half, FILL_BLENDED);
    overlay.box(shown.cordonMins, shown.cordonMaxs, {full, LINE_WIDTH});
}

// center plus pixels along the view's axes
static void markerPoint(const cViewInfo& view, const float* center, float h, float v, float* out) {
    vecCopy(center, out);
    out[view.axisH] += h * view.invZoom;
    out[view.axisV] += v * view.invZoom;
}

// A flat diamond at the camera of the document, and a wedge along its view.
void cCanvas::drawCameraMarker(cOverlay& overlay) {
    static constexpr float HALF_WIDTH = 16, HALF_HEIGHT = 8, WEDGE = 48; // pixels
    static constexpr float HALF_ANGLE = 45;
    static const float diamond[6][2] = {{-HALF_WIDTH, 0},  {0, HALF_HEIGHT}, {HALF_WIDTH, 0},
                                        {0, -HALF_HEIGHT}, {-HALF_WIDTH, 0}, {HALF_WIDTH, 0}};
    const cCanvas* camera = project()->findCanvas(-1);
    if (isCamera() || !viewInfo.has(VF_CAMERA) || !camera)
        return;
    const uint8_t* color = g_host->schemeColor(COLOR_2D_CAMERA);
    float points[6][3], wedge[3][3];
    for (int i = 0; i < 6; ++i)
        markerPoint(viewInfo, camera->origin, diamond[i][0], diamond[i][1], points[i]);
    overlay.polyline(points, 6, color);
    const float angle = camera->angles[axisDepth == 2 ? 1 : 0];
    for (int i = 0; i < 3; ++i) {
        const float radians = (angle + float(i - 1) * HALF_ANGLE) * float(M_PI) / 180.0f;
        const float length = i == 1 ? 0 : WEDGE;
        markerPoint(viewInfo, camera->origin, length * std::cos(radians),
                    length * std::sin(radians), wedge[i]);
    }
    overlay.polyline(wedge, 3, color);
}

static void drawAxisMarker(cOverlay& overlay) {
    static constexpr float LENGTH = 100.0f; // units
    const float center[3] = {0, 0, 0};
    for (int axis = 0; axis < 3; ++axis) {
        float end[3] = {0, 0, 0};
        uint8_t color[4] = {0, 0, 0, 255};
        end[axis] = LENGTH;
        color[axis] = 255;
        overlay.line(center, end, color);
    }
}

void cCanvas::drawWorldOverlays() {
    cOverlay overlay(*this);
    drawCameraMarker(overlay);
    for (cTool* tool : {g_viewHost->suspendedTool, g_viewHost->currentTool})
        if (tool)
            tool->draw(this, viewInfo, overlay);
    drawCordon(overlay);
    if (isCamera())
        drawAxisMarker(overlay);
    overlay.flush();
}

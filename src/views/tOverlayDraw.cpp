// SPDX-License-Identifier: MIT
// What moves over the map's picture in world space: cordon, camera marker, axis marker.
#include "views/tCanvas.h"

#include "document/tMap.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tSystem.h"
#include "support/tVec.h"
#include "views/tDocumentViews.h"
#include "views/tDrawBatch.h"
#include "views/tGLState.h"
#include "views/tTool.h"
#include "views/tViewHost.h"

#include <cmath>

static bool isCordonTool(const cTool* tool) {
    return tool && tool->getId() == TOOL_CORDON;
}

void cCanvas::drawCordon() {
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
    if (isCamera()) {
        GL_State(GLS_DEFAULT | GLS_BLEND_ALPHA);
        glColor4ub(color[0], color[1], color[2], uint8_t(color[3] / 2));
        drawBoxFill(shown.cordonMins, shown.cordonMaxs);
        GL_State(GLS_DEFAULT);
    }
    GL_LineWidth(LINE_WIDTH);
    glColor4ub(color[0], color[1], color[2], 255);
    drawBoxLines(shown.cordonMins, shown.cordonMaxs);
    GL_LineWidth(1);
}

// center plus pixels along the view's axes
static void markerPoint(const cViewInfo& view, const float* center, float h, float v, float* out) {
    vecCopy(center, out);
    out[view.axisH] += h * view.invZoom;
    out[view.axisV] += v * view.invZoom;
}

// A flat diamond at the camera of the document, and a wedge along its view.
void cCanvas::drawCameraMarker() {
    static constexpr float HALF_WIDTH = 16, HALF_HEIGHT = 8, WEDGE = 48; // pixels
    static constexpr float HALF_ANGLE = 45;
    static const float diamond[6][2] = {{-HALF_WIDTH, 0},  {0, HALF_HEIGHT}, {HALF_WIDTH, 0},
                                        {0, -HALF_HEIGHT}, {-HALF_WIDTH, 0}, {HALF_WIDTH, 0}};
    const cCanvas* camera = project()->findCanvas(-1);
    if (isCamera() || !viewInfo.has(VF_CAMERA) || !camera)
        return;
    float p[3];
    glColor4ubv(g_host->schemeColor(COLOR_2D_CAMERA));
    glBegin(GL_LINE_STRIP);
    for (const auto& corner : diamond) {
        markerPoint(viewInfo, camera->origin, corner[0], corner[1], p);
        glVertex3fv(p);
    }
    glEnd();
    const float angle = camera->angles[axisDepth == 2 ? 1 : 0];
    glBegin(GL_LINE_STRIP);
    for (const float side : {-HALF_ANGLE, 0.0f, HALF_ANGLE}) {
        const float radians = (angle + side) * float(M_PI) / 180.0f;
        const float length = side == 0 ? 0 : WEDGE;
        markerPoint(viewInfo, camera->origin, length * std::cos(radians),
                    length * std::sin(radians), p);
        glVertex3fv(p);
    }
    glEnd();
}

void cCanvas::drawAxisMarker() {
    static constexpr float LENGTH = 100.0f; // units
    const float center[3] = {0, 0, 0};
    if (!isCamera())
        return;
    cDrawBatch& batch = cDrawBatch::shared();
    for (int axis = 0; axis < 3; ++axis) {
        float end[3] = {0, 0, 0};
        uint8_t color[4] = {0, 0, 0, 255};
        end[axis] = LENGTH;
        color[axis] = 255;
        batch.line(center, end, color);
    }
    batch.flush();
}

void cCanvas::drawWorldOverlays() {
    drawCameraMarker();
    for (cTool* tool : {g_viewHost->suspendedTool, g_viewHost->currentTool})
        if (tool)
            tool->draw(this, viewInfo, stats);
    drawCordon();
    drawAxisMarker();
}

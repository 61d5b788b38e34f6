// SPDX-License-Identifier: MIT
// Turns mouse drags in the camera view into motion and look. Also serves every other tool while
// free look is on, since the canvas gives it the moves first. Keeps no state of its own: the
// buttons of a drag are flags of the canvas.
#pragma once

#include "views/tTool.h"

class cToolCamera : public cTool {
public:
    bool setCursor(cCanvas* canvas) override;
    bool mouseMove(cCanvas* canvas, int x, int y, Qt::MouseButtons buttons,
                   Qt::KeyboardModifiers modifiers) override;
    void drawOverlay(cCanvas* canvas, const cViewInfo& view, cOverlay& overlay) override;
};

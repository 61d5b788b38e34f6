// SPDX-License-Identifier: MIT
// Zooms 2D views by clicks: the left button in, the right button out.
#pragma once

#include "views/tTool.h"

class cToolMagnify : public cTool {
public:
    bool setCursor(cCanvas* canvas) override;
    bool mousePress(cCanvas* canvas, int x, int y, int button,
                    Qt::KeyboardModifiers modifiers) override;
};

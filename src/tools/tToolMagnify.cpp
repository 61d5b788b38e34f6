// SPDX-License-Identifier: MIT
#include "tools/tToolMagnify.h"

#include "views/tCanvas.h"
#include "views/tViewHost.h"

#include <QCursor>

static constexpr float ZOOM_IN = 2.0f;
static constexpr float ZOOM_OUT = 0.5f;

bool cToolMagnify::setCursor(cCanvas* canvas) {
    if (canvas->isCamera())
        return false;
    canvas->setCursor(g_viewHost->toolCursor(TC_MAGNIFY));
    return true;
}

bool cToolMagnify::mousePress(cCanvas* canvas, int x, int y, int button,
                              Qt::KeyboardModifiers modifiers) {
    if (canvas->isCamera() || (button != TB_LEFT && button != TB_RIGHT))
        return false;
    canvas->zoomAt(canvas->zoom * (button == TB_LEFT ? ZOOM_IN : ZOOM_OUT), x, y);
    canvas->shareZoom((modifiers & Qt::ControlModifier) != 0);
    return true;
}

// SPDX-License-Identifier: MIT
#include "tools/tToolCamera.h"

#include "support/tHost.h"
#include "views/tCanvas.h"
#include "views/tOverlay.h"
#include "views/tViewHost.h"

static constexpr int UNITS_PER_PIXEL = 2;
static constexpr float DEGREES_PER_PIXEL = 0.05f; // at sensitivity 1
static constexpr int PITCH = 0, YAW = 1;

static bool holdsCursor(const cCanvas& canvas) {
    return canvas.isCamera() && (canvas.leftDown || canvas.rightDown || canvas.mouselook);
}

bool cToolCamera::setCursor(cCanvas* canvas) {
    if (!holdsCursor(*canvas))
        return false;
    canvas->setCursor(Qt::BlankCursor);
    return true;
}

void cToolCamera::drawOverlay(cCanvas* canvas, const cViewInfo&, cOverlay& overlay) {
    if (holdsCursor(*canvas))
        overlay.centerIcon(g_viewHost->cameraIcon(), ICON_CUT_OUT);
}

// True if a button has gone down since the last move, whose drag begins.
static bool startsDrag(cCanvas& canvas, Qt::MouseButtons buttons) {
    const bool starts = (!canvas.leftDown && (buttons & Qt::LeftButton)) ||
                        (!canvas.rightDown && (buttons & Qt::RightButton));
    canvas.leftDown = canvas.leftDown || (buttons & Qt::LeftButton);
    canvas.rightDown = canvas.rightDown || (buttons & Qt::RightButton);
    return starts;
}

static void look(cCanvas& canvas, int dx, int dy) {
    const float factor = float(g_host->Sensitivity) * DEGREES_PER_PIXEL;
    canvas.addAngle(YAW, -float(dx) * factor);
    canvas.addAngle(PITCH, (g_host->MouseReverseY ? 1.0f : -1.0f) * float(dy) * factor);
}

static void moveCamera(cCanvas& canvas, int dx, int dy) {
    if (canvas.rightDown) {
        canvas.moveSide(float(UNITS_PER_PIXEL * dx));
        if (canvas.leftDown)
            canvas.moveForward(-float(UNITS_PER_PIXEL * dy));
        else
            canvas.moveUp(-float(UNITS_PER_PIXEL * dy));
    } else if (canvas.leftDown || canvas.mouselook) {
        look(canvas, dx, dy);
    }
}

bool cToolCamera::mouseMove(cCanvas* canvas, int, int, Qt::MouseButtons buttons,
                            Qt::KeyboardModifiers) {
    if (!canvas->isCamera())
        return false;
    if (startsDrag(*canvas, buttons)) { // the first move only centres the cursor
        canvas->updateCursor();
        canvas->requestRedraw(false);
        canvas->warpCursorToCenter();
        return true;
    }
    const QPoint moved = canvas->movedSinceWarp();
    if (moved.isNull())
        return false;
    moveCamera(*canvas, moved.x(), moved.y());
    if (!holdsCursor(*canvas)) {
        return false;
    }
    canvas->markCameraChanged();
    if (g_host->EnergySavingMode && canvas->viewDirty)
        canvas->requestRedraw(true);
    canvas->warpCursorToCenter();
    return true;
}

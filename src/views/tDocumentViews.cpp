// SPDX-License-Identifier: MIT
#include "views/tDocumentViews.h"

#include "views/tCanvas.h"
#include "views/tChildWindow.h"

void cDocumentViews::redrawViews(int mask) {
    for (cChildWindow* window : windows)
        window->redrawViews(mask);
}

void cDocumentViews::redrawAllNow() {
    for (cChildWindow* window : windows)
        window->redrawAllNow();
}

void cDocumentViews::paintDropped() {
    for (const cChildWindow* window : windows)
        for (cCanvas* canvas : window->canvases)
            canvas->paintDropped();
}

void cDocumentViews::centerViews(const float* point) {
    for (cChildWindow* window : windows)
        window->centerViews(point);
}

void cDocumentViews::setZoomAll(float zoom) {
    for (cChildWindow* window : windows)
        window->setZoomAll(zoom);
}

void cDocumentViews::setOffsetAll(float x, float y) {
    for (cChildWindow* window : windows)
        window->setOffsetAll(x, y);
}

void cDocumentViews::setCameraOrigin(const float* point) {
    for (cChildWindow* window : windows)
        window->setCameraOrigin(point);
}

void cDocumentViews::setCameraAngles(const float* angles) {
    for (cChildWindow* window : windows)
        window->setCameraAngles(angles);
}

void cDocumentViews::applyScrollbarSetting() {
    for (cChildWindow* window : windows)
        window->applyScrollbarSetting();
}

cCanvas* cDocumentViews::findCanvas(int axis) const {
    for (const cChildWindow* window : windows)
        if (cCanvas* canvas = window->findCanvas(axis))
            return canvas;
    return nullptr;
}

cCanvas* cDocumentViews::firstCanvas() const {
    for (const cChildWindow* window : windows)
        if (cCanvas* canvas = window->firstCanvas())
            return canvas;
    return nullptr;
}

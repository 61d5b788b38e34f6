// SPDX-License-Identifier: MIT
// What flat widgets of OpenGL have in common: the fixed state, pixels with y downwards, textures as
// they are.
#pragma once

#include "views/tGLWidget.h"

class QRectF;

void initializePlainGL();
// Viewport and matrices count in the widget's pixels; all is cleared to the colour.
void beginPlainFrame(const QWidget& widget, const uint8_t* rgba);
// Smoothed, and no further than its edge.
void drawPlainTexture(unsigned texture, const QRectF& place);

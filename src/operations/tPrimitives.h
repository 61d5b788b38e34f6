// SPDX-License-Identifier: MIT
// The built-in primitives: a box becomes a block, a wedge, a cylinder, a spike or an arch, in one
// history step. The new brushes become the selection. False: nothing was made, since the map has
// no world or the box gives no solid.
#pragma once

#include "plugininterface/tPluginInterface.h"

// What the arch dialog asks for; it is kept from one arch to the next.
struct cArchShape {
    int width = 32; // of the wall, world units
    int sides = 8;  // segments
    int arc = 180;  // degrees
    int start = 0;  // degrees, from the second base axis towards the first
    int height = 0; // each segment lies that much above the one before
    bool group = true;
    bool smoothSlope = false; // a ramp in place of steps
};

bool createBlock(const cPrimitiveParams& params);                         // "Create Block"
bool createWedge(const cPrimitiveParams& params);                         // "Create Wedge"
bool createCylinder(const cPrimitiveParams& params);                      // "Create Cylinder"
bool createSpike(const cPrimitiveParams& params);                         // "Create Spike"
bool createArch(const cPrimitiveParams& params, const cArchShape& shape); // "Create Arch"

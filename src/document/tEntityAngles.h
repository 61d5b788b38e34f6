// SPDX-License-Identifier: MIT
// The one way to turn an entity: the field and its "angles" or "angle" key together.
#pragma once

#include "pluginhost/tPluginInterface.h"

// Pitch, yaw, roll in degrees. An existing "angle" or "angles" key takes the value in its own
// form (-1 up, -2 down or the yaw for "angle"); with neither, "angles" is added.
void setEntityAngles(cEntityData* entity, const float* angles);
// Angles turned by the rotation part of a row-major 4x4 matrix; false if it holds no rotation,
// then out is a copy.
bool rotateAngles(const float* angles, const float matrix[16], float* out);
// Mirrored on an axis.
void flipAngles(const float* angles, int axis, float* out);

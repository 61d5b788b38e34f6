// SPDX-License-Identifier: MIT
// The one way to turn an entity: the field and its "angles" or "angle" key together.
#pragma once

#include "plugininterface/tPluginInterface.h"

// Pitch, yaw, roll in degrees. An existing "angle" or "angles" key, the first of them, takes the
// value in its own form (-1 up, -2 down or the yaw for "angle"); with neither, "angles" is added.
// A model's box follows.
void setEntityAngles(cEntityData* entity, const float* angles);
// The field from that key; without one the field stays.
void readAngleKeys(cEntityData* entity);
// Angles turned by the rotation part of a row-major 4x4 matrix, yaw in 0 to 360, values beside a
// half degree put on it; false if the matrix holds no rotation, then out is a copy.
bool rotateAngles(const float* angles, const float matrix[16], float* out);
// Mirrored on an axis; an upright thing stays upright.
void flipAngles(const float* angles, int axis, float* out);

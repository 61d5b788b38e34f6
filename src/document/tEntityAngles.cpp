// SPDX-License-Identifier: MIT
// Turning entities: angles to vectors and back, and the key that keeps them.
#include "document/tEntityAngles.h"

#include "document/tEntity.h"
#include "document/tMapLists.h"
#include "support/tMath.h"
#include "support/tVec.h"

#include <cstdio>
#include <cstdlib>
#include <strings.h>

static constexpr float UP = -90.0f, DOWN = 90.0f;
static constexpr float ANGLE_UP = -1.0f, ANGLE_DOWN = -2.0f; // of the key "angle"
// Past this forward z yaw and roll turn about the same line; all of it counts as yaw.
static constexpr float GIMBAL_Z = 0.998f;
// Columns that are this far from a right angle belong to a shear, not to a rotation.
static constexpr float SKEW_EPSILON = 0.001f;
// A rotation that moves no unit vector by more is none.
static constexpr float IDENTITY_EPSILON = 1e-6f;
// What a conversion to vectors and back may add to an angle, in degrees.
static constexpr float ANGLE_EPSILON = 0.001f;
// Angles as a drag steps through them lie on halves.
static constexpr float STEPS_PER_DEGREE = 2.0f;
static constexpr float DEGREES_PER_RADIAN = 57.29577951308232f;

// ---- The key

static QByteArray number(float value) {
    return QByteArray::number(double(value), 'g');
}

static QByteArray anglesText(const float* angles) {
    return number(angles[0]) + ' ' + number(angles[1]) + ' ' + number(angles[2]);
}

static float wrapYaw(float yaw) {
    yaw = std::fmod(yaw, 360.0f);
    return yaw < 0 ? yaw + 360.0f : yaw + 0.0f; // no negative zero
}

// One number: straight up and down have their own, everything else is the yaw.
static QByteArray angleText(const float* angles) {
    if (angles[2] == 0 && (angles[0] == UP || angles[0] == DOWN))
        return angles[0] == UP ? "-1" : "-2";
    const bool taken = angles[1] == ANGLE_UP || angles[1] == ANGLE_DOWN;
    return number(taken ? wrapYaw(angles[1]) : angles[1]);
}

// The first of the two keys; single: it is "angle".
static cEpair* angleKeyOf(const cEntityData* entity, bool& single) {
    for (cEpair* pair : epairsOf(entity)) {
        single = pair->key && strcasecmp(pair->key, "angle") == 0;
        if (single || (pair->key && strcasecmp(pair->key, "angles") == 0))
            return pair;
    }
    single = false;
    return nullptr;
}

void readAngleKeys(cEntityData* entity) {
    bool single = false;
    const cEpair* known = angleKeyOf(entity, single);
    if (!known || !known->value)
        return;
    float angles[3] = {0, 0, 0};
    if (!single) {
        sscanf(known->value, "%f %f %f", &angles[0], &angles[1], &angles[2]);
    } else {
        const auto angle = float(strtod(known->value, nullptr));
        if (angle == ANGLE_UP || angle == ANGLE_DOWN)
            angles[0] = angle == ANGLE_UP ? UP : DOWN;
        else
            angles[1] = angle;
    }
    vecCopy(angles, entity->angles);
}

void setEntityAngles(cEntityData* entity, const float* angles) {
    vecCopy(angles, entity->angles);
    bool single = false;
    cEpair* known = angleKeyOf(entity, single);
    const QByteArray text = single ? angleText(angles) : anglesText(angles);
    if (known)
        setText(known->value, text.constData());
    else
        addEpairLast(entity, "angles", text.constData());
    if (entity->attachKind == AK_MODEL)
        updateAttachmentBox(entity);
}

// ---- Turning

// The rotation in a matrix that may scale along its own axes as well: its columns at unit length.
static bool rotationOf(const float matrix[16], float rotation[16]) {
    float columns[3][3];
    for (int i = 0; i < 3; ++i) {
        vecSet(columns[i], matrix[i], matrix[4 + i], matrix[8 + i]);
        if (!(vecNormalize(columns[i]) > 0))
            return false;
    }
    for (int i = 0; i < 3; ++i) {
        if (!(std::fabs(vecDot(columns[i], columns[(i + 1) % 3])) < SKEW_EPSILON))
            return false;
    }
    float third[3];
    vecCross(columns[0], columns[1], third);
    if (vecDot(third, columns[2]) < 0)
        return false; // a mirror
    float moved = 0;
    for (int i = 0; i < 16; ++i)
        rotation[i] = i % 5 == 0 ? 1.0f : 0.0f;
    for (int row = 0; row < 3; ++row) {
        for (int i = 0; i < 3; ++i) {
            moved = std::fmax(moved, std::fabs(columns[i][row] - rotation[row * 4 + i]));
            rotation[row * 4 + i] = columns[i][row];
        }
    }
    return moved > IDENTITY_EPSILON;
}

static float onStep(float degrees) {
    const float step = std::round(degrees * STEPS_PER_DEGREE) / STEPS_PER_DEGREE;
    return std::fabs(step - degrees) < ANGLE_EPSILON ? step + 0.0f : degrees;
}

static void anglesFromVectors(const float* forward, const float* right, const float* up,
                              float* angles) {
    if (std::fabs(forward[2]) > GIMBAL_Z) {
        vecSet(angles, forward[2] > 0 ? UP : DOWN, std::atan2(right[0], -right[1]), 0.0f);
    } else {
        vecSet(angles, -std::asin(forward[2]) * DEGREES_PER_RADIAN,
               std::atan2(forward[1], forward[0]), std::atan2(-right[2], up[2]));
    }
    angles[0] = onStep(angles[0]);
    angles[1] = wrapYaw(onStep(angles[1] * DEGREES_PER_RADIAN));
    angles[2] = onStep(angles[2] * DEGREES_PER_RADIAN);
}

bool rotateAngles(const float* angles, const float matrix[16], float* out) {
    float rotation[16];
    if (!rotationOf(matrix, rotation)) {
        vecCopy(angles, out);
        return false;
    }
    float forward[3], right[3], up[3];
    T_AngleVectors(angles, forward, right, up);
    for (float* v : {forward, right, up}) {
        T_VectorRotate(v, rotation, v);
        T_VectorNormalize(v);
    }
    anglesFromVectors(forward, right, up, out);
    return true;
}

void flipAngles(const float* angles, int axis, float* out) {
    float flipped[3] = {angles[0], angles[1], -angles[2] + 0.0f};
    if (axis == 2)
        flipped[0] = -angles[0] + 0.0f;
    else
        flipped[1] = wrapYaw(axis == 0 ? 180.0f - angles[1] : -angles[1]);
    vecCopy(flipped, out);
}

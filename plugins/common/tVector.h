// SPDX-License-Identifier: MIT
// Arithmetic on points in double.
#pragma once

#include <array>
#include <cmath>

using cVec3 = std::array<double, 3>;

inline cVec3 operator+(const cVec3& a, const cVec3& b) {
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}

inline cVec3 operator-(const cVec3& a, const cVec3& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

inline cVec3 operator*(const cVec3& v, double factor) {
    return {v[0] * factor, v[1] * factor, v[2] * factor};
}

inline double dot(const cVec3& a, const cVec3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

inline cVec3 cross(const cVec3& a, const cVec3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

inline double length(const cVec3& v) {
    return std::sqrt(dot(v, v));
}

inline cVec3 vec3(const float* v) {
    return {double(v[0]), double(v[1]), double(v[2])};
}

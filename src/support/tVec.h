// SPDX-License-Identifier: MIT
// Arithmetic on 3-component arrays, for float and double alike.
#pragma once

#include <cmath>

template<class T> inline T vecDot(const T* a, const T* b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

template<class T> inline void vecCopy(const T* from, T* to) {
    to[0] = from[0];
    to[1] = from[1];
    to[2] = from[2];
}

template<class T> inline void vecSet(T* v, T x, T y, T z) {
    v[0] = x;
    v[1] = y;
    v[2] = z;
}

template<class T> inline void vecAdd(const T* a, const T* b, T* out) {
    out[0] = a[0] + b[0];
    out[1] = a[1] + b[1];
    out[2] = a[2] + b[2];
}

template<class T> inline void vecSubtract(const T* a, const T* b, T* out) {
    out[0] = a[0] - b[0];
    out[1] = a[1] - b[1];
    out[2] = a[2] - b[2];
}

template<class T> inline void vecScale(const T* v, T factor, T* out) {
    out[0] = v[0] * factor;
    out[1] = v[1] * factor;
    out[2] = v[2] * factor;
}

template<class T> inline void vecNegate(const T* v, T* out) {
    out[0] = -v[0];
    out[1] = -v[1];
    out[2] = -v[2];
}

// out = a + factor * b
template<class T> inline void vecMA(const T* a, T factor, const T* b, T* out) {
    out[0] = a[0] + factor * b[0];
    out[1] = a[1] + factor * b[1];
    out[2] = a[2] + factor * b[2];
}

// out must be another array than a and b.
template<class T> inline void vecCross(const T* a, const T* b, T* out) {
    out[0] = a[1] * b[2] - a[2] * b[1];
    out[1] = a[2] * b[0] - a[0] * b[2];
    out[2] = a[0] * b[1] - a[1] * b[0];
}

template<class T> inline T vecLength(const T* v) {
    return std::sqrt(vecDot(v, v));
}

// Unit length in place; returns the former length, and leaves a zero vector alone. Divides, so
// that an axial vector of any length comes out with a component of exactly 1.
template<class T> inline T vecNormalize(T* v) {
    const T length = vecLength(v);
    if (length > T(0))
        vecSet(v, v[0] / length, v[1] / length, v[2] / length);
    return length;
}

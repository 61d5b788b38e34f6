// SPDX-License-Identifier: MIT
// The support library's vector, matrix, bounds and text functions. A vector is 3 floats, angles
// are degrees unless an argument says radians. A matrix is 3 rows of 4 floats: row-major rotation
// with the translation in column 3, as T_TransposeMatrix leaves it.
#pragma once

#include <cstddef>

struct cPlane {
    float normal[3];
    float dist;
    int planeType; // 0, 1, 2 for an axial normal, else 3
    int signBits;  // bit i: component i of the normal is negative
};

void T_MathLib_Initialize(int flags);

float T_VectorNormalize(float* v); // in place; returns the former length
void T_VectorNormalizeFast(float* v);
float T_Sqrt(float x);
void T_SinCos(float radians, float* sine, float* cosine);
void T_SinCosPrecise(float radians, float* sine, float* cosine);

void T_ClearBounds(float* mins, float* maxs); // an empty box that any point enlarges
void T_AddPointToBounds(const float* point, float* mins, float* maxs);
void T_AddBoxToBounds(const float* boxMins, const float* boxMaxs, float* mins, float* maxs);
int T_BoxOnPlaneSide(const float* mins, const float* maxs,
                     const cPlane* plane); // 1 front, 2 back, 3 across
void T_SetPlaneSignbits(cPlane* plane);
int T_SignbitsForNormal(const float* normal);

// forward z is -sin pitch; any output may be null.
void T_AngleVectors(const float* angles, float* forward, float* right, float* up);
void T_RotatePointAroundVector(float* out, const float* axis, const float* point, float degrees);
void T_ProjectPointOnPlane(float* out, const float* point, const float* normal);

// Column order as OpenGL keeps it: 4 columns of 4, the input of T_TransposeMatrix.
void T_BuildTransformMatrix(float zDegrees, float yDegrees, float xDegrees, const float* offset,
                            float matrix[16]);
void T_TransposeMatrix(const float in[16], float out[16]);
void T_VectorRotate(const float* in, const float matrix[16], float* out);
void T_VectorTransform(const float* in, const float matrix[16], float* out);
void T_VectorRotateMulti(int count, const float* in, const float matrix[16], float* out);

int T_RandomLong(int lo, int hi); // both included
void T_RandomSeed(unsigned seed); // for reproducible runs
bool T_IsPowerOf2(int n);
int T_NextPowerOf2(int n);
int T_BestPowerOf2(int n, int max); // the nearer power of 2, at most max

int T_Sprintf(char* buffer, size_t size, const char* format, ...)
    __attribute__((format(printf, 3, 4)));
const char* T_Stristr(const char* text, const char* find); // without regard to case; null if absent
void T_ExtractFilePath(const char* path, char* out, size_t size); // keeps the last "/"
void T_FormatSizeString(char* out, size_t size, long long bytes);

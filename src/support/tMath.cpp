// SPDX-License-Identifier: MIT
// The support library's vector, matrix, bounds and text functions.
#include "support/tMath.h"

#include "support/tVec.h"

#include <cctype>
#include <cfloat>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <random>

static constexpr double RADIANS_PER_DEGREE = 3.14159265358979323846 / 180.0;

static std::mt19937& randomGenerator() {
    static std::mt19937 generator(std::random_device{}());
    return generator;
}

void T_MathLib_Initialize(int) {
    randomGenerator();
}

// ---- Vectors

float T_VectorNormalize(float* v) {
    return vecNormalize(v);
}

void T_VectorNormalizeFast(float* v) {
    vecNormalize(v);
}

float T_Sqrt(float x) {
    return std::sqrt(x);
}

void T_SinCos(float radians, float* sine, float* cosine) {
    *sine = std::sin(radians);
    *cosine = std::cos(radians);
}

void T_SinCosPrecise(float radians, float* sine, float* cosine) {
    *sine = float(std::sin(double(radians)));
    *cosine = float(std::cos(double(radians)));
}

// ---- Bounds

void T_ClearBounds(float* mins, float* maxs) {
    vecSet(mins, FLT_MAX, FLT_MAX, FLT_MAX);
    vecSet(maxs, -FLT_MAX, -FLT_MAX, -FLT_MAX);
}

void T_AddPointToBounds(const float* point, float* mins, float* maxs) {
    for (int i = 0; i < 3; ++i) {
        mins[i] = std::fmin(mins[i], point[i]);
        maxs[i] = std::fmax(maxs[i], point[i]);
    }
}

void T_AddBoxToBounds(const float* boxMins, const float* boxMaxs, float* mins, float* maxs) {
    for (int i = 0; i < 3; ++i) {
        mins[i] = std::fmin(mins[i], boxMins[i]);
        maxs[i] = std::fmax(maxs[i], boxMaxs[i]);
    }
}

int T_BoxOnPlaneSide(const float* mins, const float* maxs, const cPlane* plane) {
    if (plane->planeType >= 0 && plane->planeType < 3) {
        const int axis = plane->planeType;
        const bool flipped = (plane->signBits & (1 << axis)) != 0;
        const float dist = flipped ? -plane->dist : plane->dist;
        if (dist <= mins[axis])
            return flipped ? 2 : 1;
        if (dist >= maxs[axis])
            return flipped ? 1 : 2;
        return 3;
    }
    float nearest = 0;
    float farthest = 0;
    for (int i = 0; i < 3; ++i) {
        const bool negative = (plane->signBits & (1 << i)) != 0;
        nearest += plane->normal[i] * (negative ? maxs[i] : mins[i]);
        farthest += plane->normal[i] * (negative ? mins[i] : maxs[i]);
    }
    return (farthest >= plane->dist ? 1 : 0) | (nearest < plane->dist ? 2 : 0);
}

int T_SignbitsForNormal(const float* normal) {
    return (normal[0] < 0 ? 1 : 0) | (normal[1] < 0 ? 2 : 0) | (normal[2] < 0 ? 4 : 0);
}

void T_SetPlaneSignbits(cPlane* plane) {
    plane->signBits = T_SignbitsForNormal(plane->normal);
}

// ---- Rotation

// Row-major R = Rz Ry Rx, right-handed, in degrees.
static void rotationRows(float zDegrees, float yDegrees, float xDegrees, double rows[3][3]) {
    const double z = double(zDegrees) * RADIANS_PER_DEGREE;
    const double y = double(yDegrees) * RADIANS_PER_DEGREE;
    const double x = double(xDegrees) * RADIANS_PER_DEGREE;
    const double sz = std::sin(z), cz = std::cos(z);
    const double sy = std::sin(y), cy = std::cos(y);
    const double sx = std::sin(x), cx = std::cos(x);
    const double result[3][3] = {{cz * cy, cz * sy * sx - sz * cx, cz * sy * cx + sz * sx},
                                 {sz * cy, sz * sy * sx + cz * cx, sz * sy * cx - cz * sx},
                                 {-sy, cy * sx, cy * cx}};
    memcpy(rows, result, sizeof result);
}

void T_AngleVectors(const float* angles, float* forward, float* right, float* up) {
    double rows[3][3];
    rotationRows(angles[1], angles[0], angles[2], rows);
    for (int i = 0; i < 3; ++i) {
        if (forward)
            forward[i] = float(rows[i][0]);
        if (right)
            right[i] = float(-rows[i][1]);
        if (up)
            up[i] = float(rows[i][2]);
    }
}

void T_RotatePointAroundVector(float* out, const float* axis, const float* point, float degrees) {
    double k[3] = {double(axis[0]), double(axis[1]), double(axis[2])};
    vecNormalize(k);
    const double p[3] = {double(point[0]), double(point[1]), double(point[2])};
    const double angle = double(degrees) * RADIANS_PER_DEGREE;
    const double s = std::sin(angle), c = std::cos(angle);
    double cross[3];
    vecCross(k, p, cross);
    const double along = vecDot(k, p) * (1.0 - c);
    for (int i = 0; i < 3; ++i)
        out[i] = float(p[i] * c + cross[i] * s + k[i] * along);
}

void T_ProjectPointOnPlane(float* out, const float* point, const float* normal) {
    const float squared = vecDot(normal, normal);
    const float along = squared > 0 ? vecDot(point, normal) / squared : 0;
    vecMA(point, -along, normal, out);
}

void T_BuildTransformMatrix(float zDegrees, float yDegrees, float xDegrees, const float* offset,
                            float matrix[16]) {
    double rows[3][3];
    rotationRows(zDegrees, yDegrees, xDegrees, rows);
    for (int column = 0; column < 4; ++column) {
        for (int row = 0; row < 3; ++row)
            matrix[column * 4 + row] = column < 3 ? float(rows[row][column]) : offset[row];
        matrix[column * 4 + 3] = column == 3 ? 1.0f : 0.0f;
    }
}

void T_TransposeMatrix(const float in[16], float out[16]) {
    float result[16];
    for (int i = 0; i < 16; ++i)
        result[i] = in[(i % 4) * 4 + i / 4];
    memcpy(out, result, sizeof result);
}

void T_VectorRotate(const float* in, const float matrix[16], float* out) {
    const float v[3] = {in[0], in[1], in[2]};
    for (int i = 0; i < 3; ++i)
        out[i] = vecDot(matrix + i * 4, v);
}

void T_VectorTransform(const float* in, const float matrix[16], float* out) {
    T_VectorRotate(in, matrix, out);
    for (int i = 0; i < 3; ++i)
        out[i] += matrix[i * 4 + 3];
}

void T_VectorRotateMulti(int count, const float* in, const float matrix[16], float* out) {
    for (int i = 0; i < count; ++i)
        T_VectorRotate(in + i * 3, matrix, out + i * 3);
}

// ---- Numbers

int T_RandomLong(int lo, int hi) {
    return std::uniform_int_distribution<int>(lo, hi)(randomGenerator());
}

void T_RandomSeed(unsigned seed) {
    randomGenerator().seed(seed);
}

bool T_IsPowerOf2(int n) {
    return n > 0 && (n & (n - 1)) == 0;
}

int T_NextPowerOf2(int n) {
    int power = 1;
    while (power < n && power < (1 << 30))
        power <<= 1;
    return power;
}

int T_BestPowerOf2(int n, int max) {
    int power = T_NextPowerOf2(n);
    if (power > 1 && n - power / 2 < power - n)
        power /= 2;
    while (power > max && power > 1)
        power /= 2;
    return power;
}

// ---- Text

int T_Sprintf(char* buffer, size_t size, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int length = vsnprintf(buffer, size, format, args);
    va_end(args);
    return length;
}

const char* T_Stristr(const char* text, const char* find) {
    const size_t length = strlen(find);
    const auto same = [](char a, char b) {
        return tolower(static_cast<unsigned char>(a)) == tolower(static_cast<unsigned char>(b));
    };
    for (;; ++text) {
        size_t i = 0;
        while (i < length && same(text[i], find[i]))
            ++i;
        if (i == length)
            return text;
        if (!*text)
            return nullptr;
    }
}

void T_ExtractFilePath(const char* path, char* out, size_t size) {
    if (size == 0)
        return;
    const char* slash = strrchr(path, '/');
    const size_t length = slash ? size_t(slash - path) + 1 : 0;
    const size_t copied = length < size ? length : size - 1;
    memcpy(out, path, copied);
    out[copied] = 0;
}

void T_FormatSizeString(char* out, size_t size, long long bytes) {
    static const char* const units[] = {"bytes", "KB", "MB", "GB"};
    double value = double(bytes);
    int unit = 0;
    for (; value >= 1024.0 && unit < 3; ++unit)
        value /= 1024.0;
    snprintf(out, size, unit ? "%.2f %s" : "%.0f %s", value, units[unit]);
}

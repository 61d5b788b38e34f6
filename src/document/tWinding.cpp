// SPDX-License-Identifier: MIT
// Winding operations, written once for float and double.
#include "document/tWinding.h"

#include "support/tConsole.h"
#include "support/tHost.h"
#include "support/tMath.h"
#include "support/tSystem.h"
#include "support/tVec.h"

#include <cmath>
#include <cstring>

// A point this near the plane lies on it, in clips and splits.
static constexpr double ON_EPSILON = 0.01;
// Neighbouring points this near on each axis are one point.
static constexpr double DUPLICATE_EPSILON = 0.01;
// Half the edge of the quad that a plane starts with, at the least.
static constexpr int MIN_PLANE_SIZE = 0x40000;
static constexpr double SQRT_3 = 1.732050807569;

enum eSide : uint8_t { SIDE_FRONT, SIDE_BACK, SIDE_ON };

template<class T> static cWindingT<T>*& freeList() {
    static cWindingT<T>* head = nullptr;
    return head;
}

template<class T> cWindingT<T>* windingAlloc() {
    cWindingT<T>*& head = freeList<T>();
    if (!head)
        return static_cast<cWindingT<T>*>(Mem_Alloc(sizeof(cWindingT<T>)));
    cWindingT<T>* w = head;
    head = w->nextFree;
    w->nextFree = nullptr;
    return w;
}

template<class T> void windingFree(cWindingT<T>* w) {
    if (!w)
        return;
    w->count = 0;
    w->nextFree = freeList<T>();
    freeList<T>() = w;
}

template<class T> static void emptyFreeList() {
    while (cWindingT<T>* w = freeList<T>()) {
        freeList<T>() = w->nextFree;
        Mem_Free(w);
    }
}

void windingFreeLists() {
    emptyFreeList<float>();
    emptyFreeList<double>();
}

// The axis with the largest component, the lower one in a tie; -1 when nothing is a number.
template<class T> static int largestAxis(const T* normal) {
    int axis = -1;
    T largest = T(-1);
    for (int i = 0; i < 3; ++i) {
        const T size = std::fabs(normal[i]);
        if (size > largest) {
            largest = size;
            axis = i;
        }
    }
    return axis;
}

template<class T> static void addPoint(cWindingT<T>* w, const T* point) {
    if (w->count < cWindingT<T>::CAPACITY)
        vecCopy(point, w->points[w->count++]);
}

template<class T> void windingInitFromPlane(cWindingT<T>* w, const T* normal, T dist) {
    const int axis = largestAxis(normal);
    if (axis < 0) {
        Error("cWinding :: InitFromPlane: no major axis\n");
        return;
    }
    const int worldSize = g_host->MaxWorldSize;
    const T extent = T(float(worldSize > MIN_PLANE_SIZE ? worldSize : MIN_PLANE_SIZE)) * T(SQRT_3);
    T up[3] = {axis == 2 ? T(1) : T(0), T(0), axis == 2 ? T(0) : T(1)};
    vecMA(up, -vecDot(up, normal), normal, up);
    vecNormalize(up);
    T right[3];
    vecCross(up, normal, right);
    vecNormalize(right);
    vecScale(up, extent, up);
    vecScale(right, extent, right);
    T origin[3];
    vecScale(normal, dist, origin);
    w->count = 4;
    static const int corners[4][2] = {{-1, 1}, {-1, -1}, {1, -1}, {1, 1}}; // right, up
    for (int i = 0; i < 4; ++i) {
        vecMA(origin, T(corners[i][0]), right, w->points[i]);
        vecMA(w->points[i], T(corners[i][1]), up, w->points[i]);
    }
}

template<class T> void windingPlane(const cWindingT<T>* w, T* normalOut, T* distOut) {
    vecSet(normalOut, T(0), T(0), T(0));
    *distOut = T(0);
    if (w->count < 3)
        return;
    T a[3], b[3];
    vecSubtract(w->points[0], w->points[1], a);
    vecSubtract(w->points[2], w->points[1], b);
    vecCross(b, a, normalOut);
    vecNormalize(normalOut);
    *distOut = vecDot(normalOut, w->points[1]);
}

// Where each point lies, with the first one once more behind the last.
template<class T> struct cSides {
    cSides(const cWindingT<T>* w, const T* normal, T dist) {
        distances[0] = T(0);
        sides[0] = SIDE_ON;
        for (int i = 0; i < w->count; ++i) {
            distances[i] = vecDot(w->points[i], normal) - dist;
            sides[i] = double(distances[i]) > ON_EPSILON    ? SIDE_FRONT
                       : double(distances[i]) < -ON_EPSILON ? SIDE_BACK
                                                            : SIDE_ON;
            ++counts[sides[i]];
        }
        distances[w->count] = distances[0];
        sides[w->count] = sides[0];
    }

    bool crosses(int i) const {
        return sides[i] != SIDE_ON && sides[i + 1] != SIDE_ON && sides[i] != sides[i + 1];
    }

    T distances[cWindingT<T>::CAPACITY + 1];
    eSide sides[cWindingT<T>::CAPACITY + 1];
    int counts[3] = {0, 0, 0};
};

// The point of an edge on the plane; exact on the axis of an axial plane.
template<class T>
static void intersectEdge(const cWindingT<T>* w, const cSides<T>& sides, int i, const T* normal,
                          T dist, T* out) {
    const T* p = w->points[i];
    const T* q = w->points[i + 1 < w->count ? i + 1 : 0];
    const T t = sides.distances[i] / (sides.distances[i] - sides.distances[i + 1]);
    for (int axis = 0; axis < 3; ++axis) {
        if (normal[axis] == T(1))
            out[axis] = dist;
        else if (normal[axis] == T(-1))
            out[axis] = -dist;
        else
            out[axis] = p[axis] + (q[axis] - p[axis]) * t;
    }
}

template<class T> cWindingT<T>* windingClip(cWindingT<T>* w, const T* normal, T dist, bool keepOn) {
    const cSides<T> sides(w, normal, dist);
    if (sides.counts[SIDE_FRONT] == 0) {
        if (keepOn && sides.counts[SIDE_BACK] == 0)
            return w;
        windingFree(w);
        return nullptr;
    }
    if (sides.counts[SIDE_BACK] == 0)
        return w;
    cWindingT<T>* result = windingAlloc<T>();
    for (int i = 0; i < w->count; ++i) {
        if (sides.sides[i] != SIDE_BACK)
            addPoint(result, w->points[i]);
        if (!sides.crosses(i))
            continue;
        T point[3];
        intersectEdge(w, sides, i, normal, dist, point);
        addPoint(result, point);
    }
    windingFree(w);
    return result;
}

template<class T> static cWindingT<T>* freeIfEmpty(cWindingT<T>* w) {
    if (w->count > 0)
        return w;
    windingFree(w);
    return nullptr;
}

template<class T>
bool windingSplit(cWindingT<T>* w, const T* normal, T dist, cWindingT<T>** frontOut,
                  cWindingT<T>** backOut) {
    const cSides<T> sides(w, normal, dist);
    *frontOut = *backOut = nullptr;
    if (sides.counts[SIDE_FRONT] == 0 && sides.counts[SIDE_BACK] == 0) {
        windingFree(w);
        return false;
    }
    if (sides.counts[SIDE_FRONT] == 0 || sides.counts[SIDE_BACK] == 0) {
        *(sides.counts[SIDE_FRONT] ? frontOut : backOut) = w;
        return true;
    }
    cWindingT<T>* front = windingAlloc<T>();
    cWindingT<T>* back = windingAlloc<T>();
    for (int i = 0; i < w->count; ++i) {
        if (sides.sides[i] != SIDE_BACK)
            addPoint(front, w->points[i]);
        if (sides.sides[i] != SIDE_FRONT)
            addPoint(back, w->points[i]);
        if (!sides.crosses(i))
            continue;
        T point[3];
        intersectEdge(w, sides, i, normal, dist, point);
        addPoint(front, point);
        addPoint(back, point);
    }
    windingFree(w);
    *frontOut = freeIfEmpty(front);
    *backOut = freeIfEmpty(back);
    return true;
}

template<class T> static bool samePoint(const T* a, const T* b) {
    for (int i = 0; i < 3; ++i) {
        if (double(std::fabs(a[i] - b[i])) > DUPLICATE_EPSILON)
            return false;
    }
    return true;
}

template<class T> static void removePoint(cWindingT<T>* w, int index) {
    --w->count;
    memmove(w->points[index], w->points[index + 1], size_t(w->count - index) * sizeof w->points[0]);
}

template<class T> bool windingRemoveDuplicates(cWindingT<T>* w) {
    bool removed = false;
    for (int i = 0; i < w->count && w->count > 1;) {
        const bool last = i + 1 == w->count;
        if (!samePoint(w->points[i], w->points[last ? 0 : i + 1])) {
            ++i;
            continue;
        }
        removePoint(w, last ? i : i + 1);
        if (last)
            i = w->count - 1;
        removed = true;
    }
    return removed;
}

template<class T> double windingArea(const cWindingT<T>* w) {
    double area = 0;
    for (int i = 2; i < w->count; ++i) {
        T a[3], b[3], cross[3];
        vecSubtract(w->points[i - 1], w->points[0], a);
        vecSubtract(w->points[i], w->points[0], b);
        vecCross(a, b, cross);
        area += 0.5 * double(vecLength(cross));
    }
    return area;
}

#define KVX_INSTANTIATE(T)                                                                         \
    template cWindingT<T>* windingAlloc<T>();                                                      \
    template void windingFree<T>(cWindingT<T>*);                                                   \
    template void windingInitFromPlane<T>(cWindingT<T>*, const T*, T);                             \
    template void windingPlane<T>(const cWindingT<T>*, T*, T*);                                    \
    template cWindingT<T>* windingClip<T>(cWindingT<T>*, const T*, T, bool);                       \
    template bool windingSplit<T>(cWindingT<T>*, const T*, T, cWindingT<T>**, cWindingT<T>**);     \
    template bool windingRemoveDuplicates<T>(cWindingT<T>*);                                       \
    template double windingArea<T>(const cWindingT<T>*);

KVX_INSTANTIATE(float)
KVX_INSTANTIATE(double)

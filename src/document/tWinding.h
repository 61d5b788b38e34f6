// SPDX-License-Identifier: MIT
// Convex polygons of fixed capacity, in float and in double, from free lists. Rebuilds and splits
// work in double so that long chains of clips keep their precision.
#pragma once

struct cPlane;

template<class T> struct cWindingT {
    static constexpr int CAPACITY = 128;

    int count;
    T points[CAPACITY][3];
    cWindingT* nextFree;
};

using cWinding = cWindingT<float>;
using cWindingD = cWindingT<double>;

// An empty winding from the free list, and back.
template<class T> cWindingT<T>* windingAlloc();
template<class T> void windingFree(cWindingT<T>* w);
void windingFreeLists(); // at program end

// Fills w with a huge quad on the plane, counter-clockwise from the front.
template<class T> void windingInitFromPlane(cWindingT<T>* w, const T* normal, T dist);
// The plane of the first three points; zero with fewer.
template<class T> void windingPlane(const cWindingT<T>* w, T* normalOut, T* distOut);
// What is left in front of the plane. Consumes w; null if nothing is left. keepOn keeps a polygon
// that lies in the plane. A result past the capacity is cut to it.
template<class T> cWindingT<T>* windingClip(cWindingT<T>* w, const T* normal, T dist, bool keepOn);
// Both parts, null where there is none. Consumes w; false if it lay in the plane.
template<class T>
bool windingSplit(cWindingT<T>* w, const T* normal, T dist, cWindingT<T>** frontOut,
                  cWindingT<T>** backOut);
template<class T> bool windingRemoveDuplicates(cWindingT<T>* w); // true if a point went
template<class T> double windingArea(const cWindingT<T>* w);
